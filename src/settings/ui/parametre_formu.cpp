#include "settings/ui/parametre_formu.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QRadioButton>
#include <QVBoxLayout>
#include <algorithm>

#include "settings/ui/duzen_izgarasi.h"
#include "settings/ui/renk_paneli.h"
#include "ui/date_edit.h"
#include "ui/fields.h"
#include "ui/theme.h"

namespace settings_ui {

using settings::Parametre;
using T = settings::ParametreTuru;

namespace {

constexpr int dipNotBoyu = 96, sayiGenisligi = 140;

int numara(std::size_t sira) {
  return static_cast<int>(sira);
}

}  // namespace

ParametreFormu::ParametreFormu(session::Oturum& oturum, settings::ParametreEkrani ekran, QObject* parent)
    : QObject(parent),
      renkSec(renkSor),
      oturum_(oturum),
      ekran_(ekran),
      alanlar_(settings::parametreler().size()),
      gosterilen_(settings::parametreler().size()) {}

QWidget* ParametreFormu::kontrol(std::size_t sira) {
  if (!alanlar_[sira].kontrol) {
    alanlar_[sira] = yap(sira);
    alanlar_[sira].kontrol->setObjectName(ui::text(settings::parametreler()[sira].kontrol));
    alanlar_[sira].kontrol->setAccessibleName(
        ui::text(settings::parametreAdi(settings::parametreler()[sira])));
  }
  return alanlar_[sira].kontrol;
}

ParametreFormu::Alan ParametreFormu::yap(std::size_t sira) {
  const Parametre& p = settings::parametreler()[sira];
  switch (p.tur) {
    case T::Tik:
      return tik(p, sira);
    case T::Liste:
    case T::YaziListesi:
    case T::Yonelim:
      return liste(p, sira);
    case T::Firma:
    case T::Ambar:
      return metinListesi(sira);
    case T::Secim:
      return secim(p, sira);
    case T::Renk:
      return renk(sira);
    case T::UzunYazi:
      return uzunYazi(sira);
    default:
      return satir(p, sira);
  }
}

ParametreFormu::Alan ParametreFormu::tik(const Parametre& p, std::size_t sira) {
  auto* kutu = new QCheckBox(ui::text(p.yazi));
  connect(kutu, &QCheckBox::toggled, this, [this, sira] { emit degisti(numara(sira)); });
  return {kutu, [kutu] { return std::string(kutu->isChecked() ? "1" : "0"); },
          [kutu](const std::string& deger) { kutu->setChecked(deger == "1"); }};
}

ParametreFormu::Alan ParametreFormu::satir(const Parametre& p, std::size_t sira) {
  QLineEdit* alan = p.tur == T::Tarih ? new ui::DateEdit(*oturum_.kutular) : new QLineEdit;
  if (p.tur == T::Sayi || p.tur == T::Milimetre) {
    alan->setAlignment(Qt::AlignRight);
    alan->setMaximumWidth(ui::byLetters(sayiGenisligi));
  } else if (p.tur == T::Tarih) {
    alan->setMaximumWidth(ui::byLetters(sayiGenisligi));
  }
  connect(alan, &QLineEdit::textChanged, this, [this, sira] { emit degisti(numara(sira)); });
  return {alan, [alan] { return ui::utf8(alan->text()); },
          [alan](const std::string& deger) {
            alan->setText(ui::text(deger));
            alan->setCursorPosition(0);
          }};
}

ParametreFormu::Alan ParametreFormu::liste(const Parametre& p, std::size_t sira) {
  auto* liste = new QComboBox;
  for (const auto secenek : p.secenekler) liste->addItem(ui::text(secenek));
  connect(liste, &QComboBox::currentIndexChanged, this, [this, sira] { emit degisti(numara(sira)); });
  return {
      liste,
      [liste] { return liste->currentIndex() < 0 ? std::string() : std::to_string(liste->currentIndex()); },
      [liste, p](const std::string& deger) {
        // A direction that is not known leaves the cell as it was.
        if (deger.empty() && p.tur == T::Yonelim) return;
        liste->setCurrentIndex(deger.empty() ? -1 : std::atoi(deger.c_str()));
      }};
}

ParametreFormu::Alan ParametreFormu::metinListesi(std::size_t sira) {
  auto* liste = new QComboBox;
  liste->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  liste->setMinimumContentsLength(18);
  connect(liste, &QComboBox::currentIndexChanged, this, [this, sira] { emit degisti(numara(sira)); });
  return {liste, [liste] { return ui::utf8(liste->currentData().toString()); },
          [liste](const std::string& deger) {
            int yer = liste->findData(ui::text(deger));
            if (yer < 0 && !deger.empty()) {  // no longer in the list: shown as it is stored
              liste->addItem(ui::text(deger), ui::text(deger));
              yer = liste->count() - 1;
            }
            liste->setCurrentIndex(yer);
          }};
}

ParametreFormu::Alan ParametreFormu::secim(const Parametre& p, std::size_t sira) {
  auto* grup = new QWidget;
  auto* dugmeler = new QButtonGroup(grup);
  auto* duzen = new QHBoxLayout(grup);
  duzen->setContentsMargins(0, 0, 0, 0);
  duzen->setSpacing(ui::gap);
  for (std::size_t i = 0; i < p.secenekler.size(); ++i) {
    auto* dugme = new QRadioButton(ui::text(p.secenekler[i]).trimmed());
    dugme->setObjectName(ui::text(p.kontrol) + "_" + QString::number(i));
    dugmeler->addButton(dugme, static_cast<int>(i));
    duzen->addWidget(dugme);
  }
  duzen->addStretch(1);
  connect(dugmeler, &QButtonGroup::idToggled, this, [this, sira] { emit degisti(numara(sira)); });
  return {grup,
          [dugmeler] {
            return dugmeler->checkedId() < 0 ? std::string() : std::to_string(dugmeler->checkedId());
          },
          [dugmeler](const std::string& deger) {
            dugmeler->setExclusive(false);
            for (QAbstractButton* dugme : dugmeler->buttons()) dugme->setChecked(false);
            dugmeler->setExclusive(true);
            if (QAbstractButton* dugme = dugmeler->button(deger.empty() ? -1 : std::atoi(deger.c_str())))
              dugme->setChecked(true);
          }};
}

ParametreFormu::Alan ParametreFormu::renk(std::size_t sira) {
  auto* panel = new RenkPaneli;
  connect(panel, &QPushButton::clicked, this, [this, panel, sira] {
    const auto secilen = renkSec(panel->renk(), panel);
    if (!secilen) return;
    panel->renkKoy(*secilen);
    emit degisti(numara(sira));
  });
  return {panel, [panel] { return std::to_string(panel->renk()); },
          [panel](const std::string& deger) {
            panel->renkKoy(static_cast<unsigned>(std::atoll(deger.c_str())));
          }};
}

ParametreFormu::Alan ParametreFormu::uzunYazi(std::size_t sira) {
  auto* alan = new QPlainTextEdit;
  alan->setFixedHeight(dipNotBoyu);
  alan->setTabChangesFocus(true);
  connect(alan, &QPlainTextEdit::textChanged, this, [this, sira] { emit degisti(numara(sira)); });
  return {alan, [alan] { return ui::utf8(alan->toPlainText()); },
          [alan](const std::string& deger) { alan->setPlainText(ui::text(deger)); }};
}

void ParametreFormu::yaninaKoy(const char* ad, QWidget* parca) {
  parcalar_[ad].push_back(parca);
}

void ParametreFormu::gorunur(const char* ad, bool gorunur) {
  const auto at = hucreler_.find(ad);
  if (at != hucreler_.end()) at->second.first->goster(at->second.second, gorunur);
}

// A control without a caption of its own stands beside the one before it.
QWidget* ParametreFormu::satirKur(const std::vector<std::size_t>& siralar) {
  const auto tablo = settings::parametreler();
  std::vector<QWidget*> parcalar;
  for (const std::size_t sira : siralar) {
    if (sira != siralar.front() && tablo[sira].tur == T::Sayi) {
      auto* yazi = new QLabel(ui::text(settings::parametreAdi(tablo[sira])));
      yazi->setProperty("rol", "alan");
      parcalar.push_back(yazi);
    }
    parcalar.push_back(kontrol(sira));
    for (QWidget* parca : parcalar_[std::string(tablo[sira].kontrol)]) parcalar.push_back(parca);
  }
  if (parcalar.size() == 1) return parcalar.front();
  auto* satir = new QWidget;
  auto* duzen = new QHBoxLayout(satir);
  duzen->setContentsMargins(0, 0, 0, 0);
  duzen->setSpacing(ui::gapSmall);
  for (QWidget* parca : parcalar) duzen->addWidget(parca, qobject_cast<QLineEdit*>(parca) ? 1 : 0);
  if (!qobject_cast<QLineEdit*>(parcalar.front())) duzen->setStretch(0, 1);
  return satir;
}

QGroupBox* ParametreFormu::cerceve(settings::Cerceve hangi, const QString& baslik, Sutunlar sutunlar) {
  auto* kutu = new QGroupBox(baslik);
  auto* duzen = new QVBoxLayout(kutu);
  duzen->setContentsMargins(ui::gap, ui::gap, ui::gap, ui::gap);
  duzen->setSpacing(ui::gap);
  const auto tablo = settings::parametreler();
  std::vector<std::size_t> tikler;
  std::vector<std::vector<std::size_t>> satirlar;
  for (std::size_t i = 0; i < tablo.size(); ++i) {
    if (tablo[i].cerceve != hangi) continue;
    if (tablo[i].tur == T::Tik)
      tikler.push_back(i);
    else if (tablo[i].yazi.empty() && !satirlar.empty() &&
             (tablo[i].tur == T::Renk || tablo[satirlar.back()[0]].tur == T::Secim))
      satirlar.back().push_back(i);
    else
      satirlar.push_back({i});
  }
  if (!satirlar.empty()) {
    auto* izgara = new DuzenIzgarasi(sutunlar.alan, 2);
    for (const auto& satir : satirlar) {
      const Parametre& p = tablo[satir[0]];
      QLabel* yazi = nullptr;
      if (!p.yazi.empty() && ui::text(p.yazi).trimmed() != baslik.trimmed()) {
        yazi = new QLabel(ui::text(p.yazi));
        yazi->setProperty("rol", "alan");
        yazi->setObjectName(p.kontrol == "BrGrm" ? "Label2" : ui::text(p.kontrol) + "Lbl");
      }
      QWidget* parca = satirKur(satir);
      izgara->ekle(yazi, parca);
      hucreler_[std::string(p.kontrol)] = {izgara, parca};
    }
    duzen->addWidget(izgara);
  }
  if (!tikler.empty()) {
    auto* izgara = new DuzenIzgarasi(sutunlar.tik, 3);
    for (const std::size_t sira : tikler) izgara->ekle(nullptr, kontrol(sira));
    duzen->addWidget(izgara);
  }
  return kutu;
}

void ParametreFormu::goster(const settings::Gosterilen& degerler) {
  for (std::size_t i = 0; i < degerler.size(); ++i) goster(i, degerler[i]);
}

void ParametreFormu::goster(std::size_t sira, const std::string& deger) {
  gosterilen_[sira] = deger;
  if (alanlar_[sira].kontrol) alanlar_[sira].yaz(deger);
}

std::string ParametreFormu::oku(std::size_t sira) const {
  return alanlar_[sira].kontrol ? alanlar_[sira].oku() : gosterilen_[sira];
}

settings::Gosterilen ParametreFormu::oku() const {
  settings::Gosterilen sonuc;
  for (std::size_t i = 0; i < alanlar_.size(); ++i) sonuc.push_back(oku(i));
  return sonuc;
}

namespace {

void doldur(QComboBox& liste, const std::vector<session::ListeSecenegi>& secenekler) {
  const QVariant eski = liste.currentData();
  const QSignalBlocker sessiz(&liste);
  liste.clear();
  for (const auto& secenek : secenekler) liste.addItem(ui::text(secenek.yazi), ui::text(secenek.deger));
  int yer = liste.findData(eski);
  if (yer < 0 && !eski.toString().isEmpty()) {
    liste.addItem(eski.toString(), eski);
    yer = liste.count() - 1;
  }
  liste.setCurrentIndex(yer);
}

}  // namespace

void ParametreFormu::firmaListesi(const std::vector<settings::Firma>& firmalar) {
  std::vector<session::ListeSecenegi> secenekler{
      {std::string(settings::baglantiYok), std::string(settings::baglantiYok)}};
  for (const auto& firma : firmalar)
    secenekler.push_back({firma.sysfrm_dbnm, firma.sysfrm_dbnm + "  (" + firma.sysfrm_kd + ")"});
  doldur(*qobject_cast<QComboBox*>(kontrol("TransferFirma")), secenekler);
}

void ParametreFormu::ambarListesi(const std::vector<session::ListeSecenegi>& ambarlar) {
  doldur(*qobject_cast<QComboBox*>(kontrol("Ambar_No")), ambarlar);
}

}  // namespace settings_ui
