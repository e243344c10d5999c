#include "ui/izgara_modeli.h"

#include <QColor>
#include <QFont>
#include <algorithm>

#include "ui/renkler.h"
#include "ui/theme.h"

namespace ui {

using session::HucreTuru;
using session::IzgaraSatiri;

namespace {
constexpr std::size_t geriSiniri = 200;  // steps kept
}

void IzgaraModeli::kolonlariKur(Kolonlar kolonlar) {
  beginResetModel();
  kolonlar_ = std::move(kolonlar);
  listeler_.assign(kolonlar_.size(), {});
  satirlar_.clear();
  asil_.clear();
  endResetModel();
}

void IzgaraModeli::listeKur(int kolon, std::vector<session::ListeSecenegi> liste) {
  listeler_[size(kolon)] = std::move(liste);
  if (!satirlar_.empty()) emit dataChanged(index(0, kolon), index(adet() - 1, kolon));
}

void IzgaraModeli::doldur(const session::IzgaraSatirlari& satirlar) {
  beginResetModel();
  asil_ = satirlar;
  for (IzgaraSatiri& satir : asil_) satir.hucreler.resize(kolonlar_.size());
  satirlar_.clear();
  satirlar_.reserve(asil_.size());
  for (std::size_t i = 0; i < asil_.size(); ++i) satirlar_.push_back({asil_[i], static_cast<int>(i)});
  geri_.clear();
  ileri_.clear();
  endResetModel();
  emit icerikDegisti();
}

void IzgaraModeli::kaydedildi() {
  asil_ = satirlar();
  for (std::size_t i = 0; i < satirlar_.size(); ++i) satirlar_[i].asil = static_cast<int>(i);
  geri_.clear();
  ileri_.clear();
  if (adet() > 0) emit headerDataChanged(Qt::Vertical, 0, adet() - 1);
}

session::IzgaraSatirlari IzgaraModeli::satirlar() const {
  session::IzgaraSatirlari sonuc;
  sonuc.reserve(satirlar_.size());
  for (const Satir& satir : satirlar_) sonuc.push_back(satir.veri);
  return sonuc;
}

bool IzgaraModeli::bos(int satir) const {
  const auto& hucreler = this->satir(satir).hucreler;
  for (std::size_t i = 0; i < hucreler.size(); ++i)
    if (!hucreler[i].empty() && static_cast<int>(i) != kendiliginden &&
        !(kolonlar_[i].tur == HucreTuru::Tik && hucreler[i] == "0"))
      return false;
  return true;
}

bool IzgaraModeli::duzenlenirMi(int satir, int kolon) const {
  if (satir < 0 || satir >= adet()) return false;
  const session::IzgaraKolonu& k = kolonlar_[size(kolon)];
  return !k.salt && !k.gizli && !gizli(satir) && (!duzenlenir || duzenlenir(satir, kolon));
}

// --- Writing

IzgaraModeli::Satir IzgaraModeli::bosSatir() const {
  Satir satir;
  satir.veri.hucreler.resize(kolonlar_.size());
  return satir;
}

IzgaraModeli::Degisim IzgaraModeli::uygula(int ilk, int eskiAdet, std::vector<Satir> yeni) {
  const int yeniAdet = static_cast<int>(yeni.size());
  const int ortak = std::min(eskiAdet, yeniAdet);
  Degisim degisim{ilk, {}, yeniAdet};
  degisim.eski.reserve(size(eskiAdet));
  const auto bas = satirlar_.begin() + ilk;
  for (int i = 0; i < eskiAdet; ++i) degisim.eski.push_back(std::move(bas[i]));
  std::move(yeni.begin(), yeni.begin() + ortak, bas);
  if (yeniAdet > ortak) {
    beginInsertRows({}, ilk + ortak, ilk + yeniAdet - 1);
    satirlar_.insert(satirlar_.begin() + ilk + ortak, std::make_move_iterator(yeni.begin() + ortak),
                     std::make_move_iterator(yeni.end()));
    endInsertRows();
  } else if (eskiAdet > ortak) {
    beginRemoveRows({}, ilk + ortak, ilk + eskiAdet - 1);
    satirlar_.erase(satirlar_.begin() + ilk + ortak, satirlar_.begin() + ilk + eskiAdet);
    endRemoveRows();
  }
  if (ortak > 0) emit dataChanged(index(ilk, 0), index(ilk + ortak - 1, columnCount() - 1));
  // Row numbers and marks stand in the side header.
  const int son = eskiAdet == yeniAdet ? ilk + ortak - 1 : adet() - 1;
  if (son >= ilk) emit headerDataChanged(Qt::Vertical, ilk, son);
  return degisim;
}

void IzgaraModeli::degistir(int ilk, int eskiAdet, std::vector<Satir> yeni) {
  const Adim adim(*this);
  adim_.push_back(uygula(ilk, eskiAdet, std::move(yeni)));
}

void IzgaraModeli::adimBitti() {
  if (--derinlik_ > 0 || adim_.empty()) return;
  geri_.push_back(std::move(adim_));
  adim_.clear();
  ileri_.clear();
  if (geri_.size() > geriSiniri) geri_.erase(geri_.begin());
  emit icerikDegisti();
}

void IzgaraModeli::tersineUygula(std::vector<std::vector<Degisim>>& kaynak,
                                 std::vector<std::vector<Degisim>>& hedef) {
  if (kaynak.empty()) return;
  std::vector<Degisim> adim = std::move(kaynak.back());
  kaynak.pop_back();
  std::vector<Degisim> ters;
  for (auto it = adim.rbegin(); it != adim.rend(); ++it)
    ters.push_back(uygula(it->ilk, it->yeni, std::move(it->eski)));
  hedef.push_back(std::move(ters));
  emit icerikDegisti();
}

void IzgaraModeli::geriAl() {
  tersineUygula(geri_, ileri_);
}
void IzgaraModeli::yinele() {
  tersineUygula(ileri_, geri_);
}

// Takes back what the step that is under way has changed so far.
void IzgaraModeli::adimiGeriAl() {
  for (auto it = adim_.rbegin(); it != adim_.rend(); ++it) uygula(it->ilk, it->yeni, std::move(it->eski));
  adim_.clear();
  emit icerikDegisti();
}

std::string IzgaraModeli::denetle(int satir, int kolon, std::string& metin) {
  const session::IzgaraKolonu& k = kolonlar_[size(kolon)];
  if (std::string hata = session::hucreDenetle(k, metin); !hata.empty()) return hata;
  if (k.tur == HucreTuru::Liste && !metin.empty()) {
    const auto& liste = listeler_[size(kolon)];
    if (std::ranges::find(liste, metin, &session::ListeSecenegi::deger) == liste.end())
      return std::string(k.baslik) + ": “" + metin + "” listede yok.";
  }
  return denetim ? denetim(satir, kolon, metin) : std::string();
}

std::string IzgaraModeli::yaz(int satir, int kolon, std::string metin) {
  if (std::string hata = denetle(satir, kolon, metin); !hata.empty()) return hata;
  if (hucre(satir, kolon) == metin) return {};
  const Adim adim(*this);
  koy(satir, kolon, std::move(metin));
  if (yazildi) yazildi(satir, kolon);
  return {};
}

void IzgaraModeli::koy(int satir, int kolon, std::string metin) {
  if (hucre(satir, kolon) == metin) return;
  Satir yeni = satirlar_[size(satir)];
  yeni.veri.hucreler[size(kolon)] = std::move(metin);
  std::vector<Satir> satirlar;
  satirlar.push_back(std::move(yeni));
  degistir(satir, 1, std::move(satirlar));
}

void IzgaraModeli::satirEkle(int nereye, IzgaraSatiri satir) {
  satir.hucreler.resize(kolonlar_.size());
  std::vector<Satir> satirlar;
  satirlar.push_back({std::move(satir), -1});
  degistir(nereye, 0, std::move(satirlar));
}

void IzgaraModeli::satirCikar(int satir) {
  degistir(satir, 1, {});
}

void IzgaraModeli::gizle(int satir) {
  Satir yeni = satirlar_[size(satir)];
  yeni.veri.gizli = true;
  std::vector<Satir> satirlar;
  satirlar.push_back(std::move(yeni));
  degistir(satir, 1, std::move(satirlar));
}

void IzgaraModeli::hepsiniDegistir(const session::IzgaraSatirlari& satirlar) {
  std::vector<Satir> yeni;
  for (const IzgaraSatiri& satir : satirlar) yeni.push_back({satir, -1});
  degistir(0, adet(), std::move(yeni));
}

std::string IzgaraModeli::yapistir(int satir, int kolon, const std::vector<std::vector<std::string>>& blok,
                                   bool uzar) {
  const Adim adim(*this);
  std::vector<int> hedefler;  // visible columns from the cell on
  for (int k = kolon; k < columnCount(); ++k)
    if (!kolonlar_[size(k)].gizli) hedefler.push_back(k);
  // The rows that are missing come at once: one by one, each would move the view.
  int eksik = static_cast<int>(blok.size());
  for (int i = satir; i < adet() && eksik > 0; ++i) eksik -= gizli(i) ? 0 : 1;
  if (eksik > 0 && uzar) degistir(adet(), 0, std::vector<Satir>(size(eksik), bosSatir()));
  int at = satir;
  for (std::size_t i = 0; i < blok.size(); ++i, ++at) {
    while (at < adet() && gizli(at)) ++at;
    if (at >= adet()) break;
    for (std::size_t j = 0; j < blok[i].size() && j < hedefler.size(); ++j) {
      if (!duzenlenirMi(at, hedefler[j])) continue;
      const std::string hata = yaz(at, hedefler[j], blok[i][j]);
      if (hata.empty()) continue;
      adimiGeriAl();
      return "Yapıştırılan " + std::to_string(i + 1) + ". satır: " + hata;
    }
  }
  return {};
}

// --- Marks

bool IzgaraModeli::satirDegisti(int satir) const {
  const Satir& s = satirlar_[size(satir)];
  return s.asil < 0 ? !bos(satir) && !s.veri.gizli : s.veri != asil_[size(s.asil)];
}

bool IzgaraModeli::degisti() const {
  std::size_t eskiler = 0;
  for (int i = 0; i < adet(); ++i) {
    if (satirDegisti(i)) return true;
    if (satirlar_[size(i)].asil >= 0) ++eskiler;
  }
  return eskiler != asil_.size();
}

// --- Model

int IzgaraModeli::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : adet();
}
int IzgaraModeli::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(kolonlar_.size());
}

QString IzgaraModeli::gorunen(int satir, int kolon) const {
  const std::string& metin = hucre(satir, kolon);
  if (kolonlar_[size(kolon)].tur == HucreTuru::Liste)
    for (const auto& secenek : listeler_[size(kolon)])
      if (secenek.deger == metin) return text(secenek.yazi);
  return text(metin);
}

QVariant IzgaraModeli::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  const session::IzgaraKolonu& k = kolonlar_[size(index.column())];
  switch (role) {
    case Qt::DisplayRole:
      return k.tur == HucreTuru::Tik ? QVariant() : gorunen(index.row(), index.column());
    case Qt::EditRole:
      return text(hucre(index.row(), index.column()));
    case Qt::CheckStateRole:
      if (k.tur != HucreTuru::Tik) return {};
      return hucre(index.row(), index.column()) == "1" ? Qt::Checked : Qt::Unchecked;
    case Qt::TextAlignmentRole:
      return static_cast<int>((k.tur == HucreTuru::Sayi ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter);
    case Qt::ForegroundRole:
      return duzenlenirMi(index.row(), index.column()) ? QVariant() : renk(QColor(0x56, 0x65, 0x75));
    default:
      return {};
  }
}

QVariant IzgaraModeli::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation == Qt::Horizontal)
    return role == Qt::DisplayRole ? text(kolonlar_[size(section)].baslik) : QVariant();
  if (section >= adet()) return {};
  const bool degisik = satirDegisti(section);
  if (role == Qt::DisplayRole) return (degisik ? "● " : "") + QString::number(section + 1);
  if (role == Qt::ForegroundRole && degisik) return renk(QColor(0xa8, 0x4f, 0x00));
  if (role == Qt::ToolTipRole && degisik) return "Bu satırda kaydedilmemiş değişiklik var";
  return {};
}

Qt::ItemFlags IzgaraModeli::flags(const QModelIndex& index) const {
  Qt::ItemFlags bayraklar = Qt::ItemIsSelectable | Qt::ItemIsEnabled;
  if (duzenlenirMi(index.row(), index.column()) && kolonlar_[size(index.column())].tur != HucreTuru::Tik)
    bayraklar |= Qt::ItemIsEditable;
  return bayraklar;
}

bool IzgaraModeli::setData(const QModelIndex& index, const QVariant& value, int role) {
  if (role != Qt::EditRole) return false;
  return yaz(index.row(), index.column(), utf8(value.toString())).empty();
}

}  // namespace ui
