#include "ui/izgara.h"

#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QScopedValueRollback>
#include <QStyle>
#include <QTimer>
#include <algorithm>

#include "session/statements.h"
#include "ui/izgara_delege.h"
#include "ui/theme.h"

namespace ui {

namespace {

constexpr std::string_view kok = "HKEY_CURRENT_USER", anahtar = "Software\\Korvena\\Zembera\\Izgara";
constexpr int satirBoyu = 28, enDar = 30, bekleme = 400;  // pixels, milliseconds

}  // namespace

Izgara::Izgara(session::Oturum& oturum, const QString& ad, IzgaraModeli::Kolonlar kolonlar, QWidget* parent)
    : QTableView(parent),
      oturum_(oturum),
      ad_(ad),
      model_(new IzgaraModeli(this)),
      genislikSaati_(new QTimer(this)) {
  setObjectName(ad.section('.', -1));
  setModel(model_);
  model_->kolonlariKur(std::move(kolonlar));
  setItemDelegate(new IzgaraDelege(this));
  setSelectionMode(ContiguousSelection);
  setEditTriggers(DoubleClicked | AnyKeyPressed);
  setTabKeyNavigation(false);
  setVerticalScrollMode(ScrollPerPixel);
  setHorizontalScrollMode(ScrollPerPixel);
  setWordWrap(false);
  verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  verticalHeader()->setDefaultSectionSize(satirBoyu);
  verticalHeader()->setDefaultAlignment(Qt::AlignRight | Qt::AlignVCenter);
  horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  horizontalHeader()->setMinimumSectionSize(enDar);
  horizontalHeader()->setStretchLastSection(true);
  horizontalHeader()->setHighlightSections(false);
  genislikleriOku();
  genislikSaati_->setSingleShot(true);
  genislikSaati_->setInterval(bekleme);
  connect(genislikSaati_, &QTimer::timeout, this, &Izgara::genislikleriYaz);
  connect(horizontalHeader(), &QHeaderView::sectionResized, this, [this](int kolon) {
    // The last one follows the window: that is nobody's wish.
    if (isVisible() && kolon != sonGorunurKolon()) genislikSaati_->start();
  });
  connect(model_, &QAbstractItemModel::dataChanged, this,
          [this](const QModelIndex& ilk, const QModelIndex& son) { gizliSatirlar(ilk.row(), son.row()); });
  connect(model_, &QAbstractItemModel::modelReset, this, [this] { gizliSatirlar(0, model_->adet() - 1); });
  connect(model_, &QAbstractItemModel::rowsInserted, this,
          [this](const QModelIndex&, int ilk, int son) { gizliSatirlar(ilk, son); });
}

void Izgara::doldur(const session::IzgaraSatirlari& satirlar) {
  if (editor_) closeEditor(editor_, QAbstractItemDelegate::NoHint);
  editor_ = nullptr;
  model_->doldur(satirlar);
}

void Izgara::listeKur(std::string_view kolon, std::vector<session::ListeSecenegi> liste) {
  model_->listeKur(model_->kolon(kolon), std::move(liste));
}

void Izgara::kolonGoster(std::string_view kolon, bool goster) {
  setColumnHidden(model_->kolon(kolon), !goster);
}

void Izgara::gizliSatirlar(int ilk, int son) {
  for (int i = ilk; i <= son; ++i)
    if (isRowHidden(i) != model_->gizli(i)) setRowHidden(i, model_->gizli(i));
}

// Grids of the role "turuncu" paint their selection while they have the focus.
void Izgara::odakGoster(bool odakta) {
  if (!property("rol").isValid()) return;
  setProperty("odakta", odakta);
  style()->unpolish(this);
  style()->polish(this);
}

void Izgara::focusInEvent(QFocusEvent* event) {
  QTableView::focusInEvent(event);
  odakGoster(true);
}

void Izgara::focusOutEvent(QFocusEvent* event) {
  QTableView::focusOutEvent(event);
  odakGoster(false);
}

// --- Moving

void Izgara::git(int satir, int kolon) {
  if (satir < 0 || satir >= model_->adet()) return;
  setCurrentIndex(model_->index(satir, kolon));
  scrollTo(currentIndex());
}

void Izgara::duzenle(int satir, std::string_view kolon) {
  git(satir, kolon);
  setFocus();
  edit(currentIndex());
}

bool Izgara::sonGorunurSatir(int satir) const {
  for (int i = satir + 1; i < model_->adet(); ++i)
    if (!model_->gizli(i)) return false;
  return true;
}

int Izgara::sonGorunurKolon() const {
  int kolon = model_->columnCount() - 1;
  while (kolon > 0 && isColumnHidden(kolon)) --kolon;
  return kolon;
}

void Izgara::ilerle(bool geri, bool ekle) {
  const QModelIndex simdi = currentIndex();
  if (!simdi.isValid()) return;
  const int kolonSayisi = model_->columnCount();
  const int adim = geri ? -1 : 1;
  const auto gidilir = [&](int satir, int kolon) {
    return !isColumnHidden(kolon) && !model_->kolonlar()[static_cast<std::size_t>(kolon)].salt &&
           !model_->gizli(satir);
  };
  const auto eklenecek = [&] { return ekle && satirEklenir && sonGorunurSatir(simdi.row()); };
  const auto satirEkleSona = [&] {
    model_->satirEkle(model_->adet(), yeniSatir ? yeniSatir(model_->adet()) : session::IzgaraSatiri{});
  };
  if (!satirEkleyen.empty() && simdi.column() == model_->kolon(satirEkleyen) && eklenecek()) satirEkleSona();
  for (int kolon = simdi.column() + adim; kolon >= 0 && kolon < kolonSayisi; kolon += adim)
    if (gidilir(simdi.row(), kolon)) return git(simdi.row(), kolon);
  if (satirEkleyen.empty() && eklenecek()) satirEkleSona();
  for (int satir = simdi.row() + adim; satir >= 0 && satir < model_->adet(); satir += adim)
    for (int i = 0; i < kolonSayisi; ++i)
      if (const int kolon = geri ? kolonSayisi - 1 - i : i; gidilir(satir, kolon)) return git(satir, kolon);
}

void Izgara::currentChanged(const QModelIndex& now, const QModelIndex& before) {
  QTableView::currentChanged(now, before);
  if (geriGidiyor_ || !now.isValid()) return;
  if (now.row() != before.row() && girilir && !girilir(now.row())) {
    const QScopedValueRollback geri(geriGidiyor_, true);
    // The selection model is still at work on the move: what it sets now would be overwritten.
    QMetaObject::invokeMethod(
        this,
        [this, yer = QPersistentModelIndex(before)] {
          const QScopedValueRollback icerde(geriGidiyor_, true);
          if (yer.isValid())
            setCurrentIndex(geriKolonu.empty() ? QModelIndex(yer)
                                               : model_->index(yer.row(), model_->kolon(geriKolonu)));
        },
        Qt::QueuedConnection);
    return;
  }
  if (now.row() != before.row()) emit satirSecildi(now.row());
  emit hucreyeGirildi(now.row(), now.column());
}

// --- Keys

bool Izgara::event(QEvent* event) {
  // Tab would leave the grid, and shortcuts of the screen would take the grid's own keys.
  if (event->type() == QEvent::ShortcutOverride) {
    const auto* press = static_cast<QKeyEvent*>(event);
    for (const auto tus : {QKeySequence::Copy, QKeySequence::Cut, QKeySequence::Paste, QKeySequence::Undo,
                           QKeySequence::Redo, QKeySequence::SelectAll})
      if (press->matches(tus)) {
        event->accept();
        return true;
      }
  }
  if (event->type() == QEvent::KeyPress) {
    auto* press = static_cast<QKeyEvent*>(event);
    if (press->key() == Qt::Key_Tab || press->key() == Qt::Key_Backtab) {
      const bool geri = press->key() == Qt::Key_Backtab;
      const QModelIndex once = currentIndex();
      ilerle(geri, false);
      // Behind the last cell and before the first the focus goes on to the screen's next control.
      if (once == currentIndex()) focusNextPrevChild(!geri);
      return true;
    }
  }
  return QTableView::event(event);
}

bool Izgara::tusIsle(QKeyEvent* event) {
  if (event->matches(QKeySequence::Copy)) return kopyala(), true;
  if (event->matches(QKeySequence::Cut)) return kopyala(), temizle(), true;
  if (event->matches(QKeySequence::Paste)) return yapistir(), true;
  if (event->matches(QKeySequence::Undo)) return model_->geriAl(), true;
  if (event->matches(QKeySequence::Redo) ||
      (event->key() == Qt::Key_Y && event->modifiers() == Qt::ControlModifier))
    return model_->yinele(), true;
  const QModelIndex index = currentIndex();
  if ((event->key() == Qt::Key_Up && index.row() == 0) ||
      (event->key() == Qt::Key_Down && index.isValid() && sonGorunurSatir(index.row())))
    emit kenardanCikildi(event->key());
  const bool tik = index.isValid() && index.data(Qt::CheckStateRole).isValid();
  switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
      if (event->modifiers().testFlag(Qt::ControlModifier)) {
        emit ctrlEnter(index.row(), index.column());
        return true;
      }
      if (tik) degistirTik(index);
      ilerle(false, true);
      return true;
    case Qt::Key_Space:
      if (!tik) return false;
      degistirTik(index);
      return true;
    case Qt::Key_F2:
      if (index.isValid()) edit(index);
      return true;
    case Qt::Key_Delete:
      if (deleteSatirSiler)
        emit silIstendi();
      else
        temizle();
      return true;
    default:
      return false;
  }
}

void Izgara::keyPressEvent(QKeyEvent* event) {
  if (tusIsle(event)) return event->accept();
  QTableView::keyPressEvent(event);
}

void Izgara::mousePressEvent(QMouseEvent* event) {
  const QModelIndex tiklanan = indexAt(event->position().toPoint());
  if (editor_ && tiklanan != currentIndex() && !duzenlemeyiBitir()) return;
  QTableView::mousePressEvent(event);
  if (event->button() == Qt::LeftButton && tiklanan.isValid() && tiklanan == currentIndex() &&
      tiklanan.data(Qt::CheckStateRole).isValid())
    degistirTik(tiklanan);
}

void Izgara::degistirTik(const QModelIndex& index) {
  if (!model_->duzenlenirMi(index.row(), index.column())) return;
  const bool dolu = model_->hucre(index.row(), index.column()) == "1";
  if (const auto hata = model_->yaz(index.row(), index.column(), dolu ? "0" : "1"); !hata.empty())
    hataGoster(hata);
}

// --- Editing

void Izgara::hataGoster(const std::string& hata) {
  const QScopedValueRollback denetim(denetimde_, true);
  oturum_.kutular->message(hata, session::Icon::Information);
}

bool Izgara::editordenYaz(QWidget* editor, const QModelIndex& index) {
  if (denetimde_) return false;
  const QString metin = IzgaraDelege::editorMetni(editor);
  const std::string hata = model_->yaz(index.row(), index.column(), utf8(metin));
  if (hata.empty()) return true;
  hataGoster(hata);
  // The editor closes behind this call when the focus left it: what was typed comes back in a new one.
  QTimer::singleShot(0, this, [this, yer = QPersistentModelIndex(index), metin] {
    if (!yer.isValid() || state() == EditingState) return;
    setCurrentIndex(yer);
    setFocus();
    edit(yer);
    if (auto* satir = qobject_cast<QLineEdit*>(editor_)) {
      satir->setText(metin);
      satir->selectAll();
    }
  });
  return false;
}

bool Izgara::duzenlemeyiBitir() {
  if (!editor_ || state() != EditingState) return true;
  QWidget* editor = editor_;
  if (!editordenYaz(editor, currentIndex())) {
    editor->setFocus();
    if (auto* satir = qobject_cast<QLineEdit*>(editor)) satir->selectAll();
    return false;
  }
  editor_ = nullptr;
  closeEditor(editor, QAbstractItemDelegate::NoHint);
  return true;
}

bool Izgara::birakilir() {
  if (!model_->degisti()) return true;
  return oturum_.kutular->ask("Kaydedilmemiş satırlar var. Kaydetmeden çıkmak istiyor musunuz?");
}

// --- Clipboard

void Izgara::kopyala() {
  std::vector<std::vector<std::string>> blok;
  const QModelIndexList secili = selectionModel()->selectedIndexes();
  int ilk = model_->adet(), son = -1;
  for (const QModelIndex& i : secili) {
    ilk = std::min(ilk, i.row());
    son = std::max(son, i.row());
  }
  for (int satir = ilk; satir <= son; ++satir) {
    if (model_->gizli(satir)) continue;
    std::vector<std::string> hucreler;
    for (int kolon = 0; kolon < model_->columnCount(); ++kolon)
      if (!isColumnHidden(kolon) && selectionModel()->isSelected(model_->index(satir, kolon)))
        hucreler.push_back(model_->hucre(satir, kolon));
    blok.push_back(std::move(hucreler));
  }
  QApplication::clipboard()->setText(text(session::tabloYaz(blok)));
}

void Izgara::yapistir() {
  const QModelIndex index = currentIndex();
  const auto blok = session::tabloOku(utf8(QApplication::clipboard()->text()));
  if (!index.isValid() || blok.empty()) return;
  if (const auto hata = model_->yapistir(index.row(), index.column(), blok, satirEklenir); !hata.empty())
    hataGoster(hata);
}

void Izgara::temizle() {
  const IzgaraModeli::Adim adim(*model_);
  for (const QModelIndex& index : selectionModel()->selectedIndexes())
    if (model_->duzenlenirMi(index.row(), index.column())) {
      if (const auto hata = model_->yaz(index.row(), index.column(), {}); !hata.empty())
        return hataGoster(hata);
    }
}

// --- Column widths

void Izgara::genislikleriOku() {
  const QStringList kayitli =
      text(oturum_.platform->registryRead(kok, anahtar, utf8(ad_))).split(',', Qt::SkipEmptyParts);
  const auto& kolonlar = model_->kolonlar();
  for (std::size_t i = 0; i < kolonlar.size(); ++i) {
    const int sira = static_cast<int>(i);
    const int yazili = kayitli.value(sira).toInt();
    setColumnHidden(sira, kolonlar[i].gizli);
    if (const int genislik = yazili >= enDar ? yazili : byLetters(kolonlar[i].genislik); genislik > 0)
      setColumnWidth(sira, genislik);
  }
}

void Izgara::genislikleriYaz() {
  QStringList genislikler;
  for (int i = 0; i < model_->columnCount(); ++i)
    genislikler += QString::number(isColumnHidden(i) ? 0 : columnWidth(i));
  oturum_.platform->registryWrite(kok, anahtar, utf8(ad_), utf8(genislikler.join(',')));
}

}  // namespace ui
