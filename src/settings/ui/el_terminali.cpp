#include "settings/ui/el_terminali.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFileDialog>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QTableWidget>
#include <QVBoxLayout>

#include "session/metin.h"
#include "session/sayi.h"
#include "settings/ui/uzerine_sor.h"
#include "ui/fields.h"
#include "ui/izgara.h"
#include "ui/theme.h"

namespace settings_ui {

namespace {

enum Kolon { YetkiLbl, Secim, Bas, Adet };

ui::IzgaraModeli::Kolonlar kolonlar() {
  using session::HucreTuru;
  return {{"YetkiLbl", "Alan Adı", 120, HucreTuru::Metin, false, true},
          {"Secim", "Seçim", 60, HucreTuru::Tik},
          {"Bas", "Başlangıç", 88, HucreTuru::Sayi, false, false, false, 5},
          {"Adet", "Hane Sayısı", 96, HucreTuru::Sayi, false, false, false, 5}};
}

QString dosyaSor(QWidget* ana) {
  return QFileDialog::getOpenFileName(ana, "Okunacak dosya", {},
                                      "Text dosyalar (*.txt);;Excel Belgeleri (*.xls)");
}

QLineEdit* alan(const char* ad) {
  auto* sonuc = new QLineEdit;
  sonuc->setObjectName(ad);
  return sonuc;
}

QCheckBox* kutu(const char* ad, const char* yazi) {
  auto* sonuc = new QCheckBox(yazi);
  sonuc->setObjectName(ad);
  return sonuc;
}

}  // namespace

ElTerminali::ElTerminali(session::Oturum& oturum, ui::ConsolePort&)
    : Kart("terminal", "El Terminali Tanımları"),
      dosyaSec(dosyaSor),
      oturum_(oturum),
      Tanim_Kod_(new QComboBox),
      Tanim_ID_(alan("Tanim_ID")),
      Tanim_Ad_(alan("Tanim_Ad")),
      Dosya_Yol_(alan("Dosya_Yol")),
      Ayirac_(alan("Ayirac")),
      ParcaAdedi_(alan("ParcaAdedi")),
      AyiracVar_(kutu("AyiracVar", "Ayıraç Kullan")),
      MiktarParcali_(kutu("MiktarParcali", "Miktarlar Parçalıdır")) {
  setObjectName("ElTerminaliTanimKartifrm");
  izgaraKur();
  body()->addWidget(alanlar());
  auto* altta = new QHBoxLayout;
  altta->setSpacing(ui::gap);
  altta->addWidget(izgara_, 1);
  altta->addWidget(onizlemeCercevesi(), 1);
  body()->addLayout(altta, 1);
  auto* ekle = button("EkleBtn", "Yeni", "ekle");
  auto* silBtn = button("SilBtn", "Sil", "sil");
  const auto [tamam, iptal] = saveAndLeave("TamamBtn", "IptalBtn");
  connect(ekle, &QPushButton::clicked, this, &ElTerminali::yeni);
  connect(silBtn, &QPushButton::clicked, this, &ElTerminali::sil);
  connect(tamam, &QPushButton::clicked, this, &ElTerminali::kaydet);
  connect(iptal, &QPushButton::clicked, this, [this] {
    if (birakilir()) kapan();
  });
}

QWidget* ElTerminali::alanlar() {
  Tanim_Kod_->setObjectName("Tanim_Kod");
  Tanim_Kod_->setEditable(true);
  Tanim_Kod_->setInsertPolicy(QComboBox::NoInsert);
  Tanim_Kod_->lineEdit()->setMaxLength(26);
  Tanim_Ad_->setMaxLength(50);
  Ayirac_->setMaxLength(1);
  Ayirac_->setMaximumWidth(ui::byLetters(60));
  ParcaAdedi_->setMaxLength(5);
  ParcaAdedi_->setMaximumWidth(ui::byLetters(80));
  auto* cerceve = new QGroupBox("Tanım");
  auto* duzen = new QGridLayout(cerceve);
  duzen->setContentsMargins(ui::gap, ui::gap, ui::gap, ui::gap);
  duzen->setHorizontalSpacing(ui::gap);
  duzen->setVerticalSpacing(ui::gapSmall);
  const auto etiket = [&](const char* yazi, int satir, int sutun) {
    auto* e = new QLabel(yazi);
    e->setProperty("rol", "alan");
    duzen->addWidget(e, satir, sutun, Qt::AlignRight | Qt::AlignVCenter);
  };
  etiket("Tanım Kodu :", 0, 0);
  duzen->addWidget(Tanim_Kod_, 0, 1);
  etiket("Tanım Açıklaması :", 0, 2);
  duzen->addWidget(Tanim_Ad_, 0, 3, 1, 2);
  etiket("Okunacak Dosya :", 1, 0);
  duzen->addWidget(Dosya_Yol_, 1, 1, 1, 3);
  auto* sec = new QPushButton("Seç…");
  sec->setObjectName("brws");
  duzen->addWidget(sec, 1, 4);
  auto* kutular = new QHBoxLayout;
  kutular->setSpacing(ui::gap);
  for (QWidget* parca : {static_cast<QWidget*>(AyiracVar_), static_cast<QWidget*>(Ayirac_),
                         static_cast<QWidget*>(MiktarParcali_), static_cast<QWidget*>(ParcaAdedi_)})
    kutular->addWidget(parca);
  kutular->addStretch(1);
  duzen->addLayout(kutular, 2, 1, 1, 4);
  duzen->setColumnStretch(1, 1);
  duzen->setColumnStretch(3, 1);
  Tanim_ID_->setParent(cerceve);
  Tanim_ID_->hide();
  auto* tuslar = new ui::FieldKeys(this, ui::cardColours, true);
  tuslar->watch(Tanim_Ad_, ";Tanim_Kod;;Dosya_Yol");
  tuslar->watch(Dosya_Yol_, ";Tanim_Ad;brws;Ayirac|FisGrd");
  tuslar->watch(Ayirac_, ";Dosya_Yol;ParcaAdedi;ParcaAdedi|FisGrd");
  tuslar->watch(ParcaAdedi_, "Ayirac;Dosya_Yol;;FisGrd");
  connect(sec, &QPushButton::clicked, this, [this] {
    if (const QString yol = dosyaSec(this); !yol.isEmpty()) {
      Dosya_Yol_->setText(yol);
      onizle();
    }
  });
  connect(Tanim_Kod_, &QComboBox::activated, this, &ElTerminali::tanimSec);
  connect(Tanim_Kod_->lineEdit(), &QLineEdit::returnPressed, this, &ElTerminali::tanimSec);
  connect(AyiracVar_, &QCheckBox::toggled, this, &ElTerminali::onizle);
  connect(Ayirac_, &QLineEdit::textChanged, this, &ElTerminali::onizle);
  return cerceve;
}

void ElTerminali::izgaraKur() {
  izgara_ = new ui::Izgara(oturum_, "ElTerminaliTanimKartifrm.FisGrd", kolonlar());
  izgara_->satirEklenir = false;
  izgara_->setMinimumHeight(300);
  ui::IzgaraModeli& veri = izgara_->veri();
  // The width means nothing with a separator; an old value stays and is written back.
  veri.duzenlenir = [this](int, int kolon) { return kolon != Adet || !AyiracVar_->isChecked(); };
  veri.denetim = [](int, int kolon, std::string& metin) {
    if ((kolon == Bas || kolon == Adet) && !session::sayiMi(metin)) metin.clear();
    return std::string();
  };
  connect(&veri, &ui::IzgaraModeli::icerikDegisti, this, &ElTerminali::onizle);
  // What is no number is cleared while it is typed.
  connect(izgara_, &ui::Izgara::yaziliyor, this, [](int kolon, QLineEdit* alan) {
    if (kolon != Bas && kolon != Adet) return;
    connect(alan, &QLineEdit::textEdited, alan, [alan](const QString& metin) {
      if (!session::sayiMi(ui::utf8(metin))) alan->clear();
    });
  });
  izgara_->setProperty(ui::tagProperty, ";Ayirac|Dosya_Yol;;TamamBtn");
  connect(izgara_, &ui::Izgara::kenardanCikildi, this,
          [this](int tus) { ui::Alan_Gecis_Tus(*this, ui::windowsKey(tus), izgara_, false); });
}

QWidget* ElTerminali::onizlemeCercevesi() {
  auto* cerceve = frame("OnizlemeFrame", "Dosya önizlemesi");
  onizleme_ = new QTableWidget;
  onizleme_->setObjectName("OnizlemeGrd");
  onizleme_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  onizlemeHatasi_ = new QLabel;
  onizlemeHatasi_->setObjectName("OnizlemeHatasi");
  onizlemeHatasi_->setProperty("rol", "ipucu");
  onizlemeHatasi_->setWordWrap(true);
  auto* duzen = new QVBoxLayout(cerceve);
  duzen->setContentsMargins(ui::gapSmall, ui::gapSmall, ui::gapSmall, ui::gapSmall);
  duzen->addWidget(onizleme_, 1);
  duzen->addWidget(onizlemeHatasi_);
  return cerceve;
}

// --- Showing

void ElTerminali::listeDoldur(const std::vector<session::ListeSecenegi>& liste, const QString& secili) {
  Tanim_Kod_->clear();
  for (const auto& tanim : liste)
    Tanim_Kod_->addItem(ui::text(tanim.deger + (tanim.yazi.empty() ? "" : "  —  " + tanim.yazi)),
                        ui::text(tanim.deger));
  Tanim_Kod_->setCurrentIndex(Tanim_Kod_->findData(secili));
  Tanim_Kod_->setEditText(secili);
}

QString ElTerminali::kod() const {
  const QString yazi = Tanim_Kod_->currentText();
  const int yer = Tanim_Kod_->findText(yazi);
  return (yer < 0 ? yazi : Tanim_Kod_->itemData(yer).toString()).trimmed();
}

void ElTerminali::ac() {
  Yeni_Kayit_ = false;
  listeDoldur(settings::Terminal_Listesi(oturum_), {});
  settings::TerminalTanimi ilk;
  const auto ogeler = settings::terminalOgeleri();
  for (std::size_t i = 0; i < ogeler.size(); ++i) ilk.ogeler[i].Secim = ogeler[i].tasarimdaSecili;
  goster(ilk);
  Tanim_Kod_->setFocus();
}

void ElTerminali::tanimSec() {
  const QString secilen = kod();
  const auto tanim = settings::Terminal_Oku(oturum_, ui::utf8(secilen));
  if (!tanim) {
    const QString kimlik = Tanim_ID_->text();
    temizle();
    if (Yeni_Kayit_) Tanim_ID_->setText(kimlik);
    Tanim_Kod_->setEditText(secilen);
    return;
  }
  Yeni_Kayit_ = false;
  goster(*tanim);
  yuklenen_ = *tanim;
}

void ElTerminali::temizle() {
  settings::TerminalTanimi bos;
  bos.MiktarParcali = MiktarParcali_->isChecked();
  bos.ParcaAdedi = ui::utf8(ParcaAdedi_->text());
  goster(bos);
}

void ElTerminali::goster(const settings::TerminalTanimi& t) {
  const QScopedValueRollback dolduruluyor(dolduruluyor_, true);
  Tanim_ID_->setText(ui::text(t.Tanim_ID));
  Tanim_Kod_->setEditText(ui::text(t.Tanim_Kod));
  Tanim_Ad_->setText(ui::text(t.Tanim_Ad));
  Dosya_Yol_->setText(ui::text(t.Dosya_Yol));
  AyiracVar_->setChecked(t.AyiracVar);
  Ayirac_->setText(ui::text(t.Ayirac));
  MiktarParcali_->setChecked(t.MiktarParcali);
  ParcaAdedi_->setText(ui::text(t.ParcaAdedi));
  session::IzgaraSatirlari satirlar;
  const auto ogeler = settings::terminalOgeleri();
  for (std::size_t i = 0; i < ogeler.size(); ++i)
    satirlar.push_back(
        {{std::string(ogeler[i].yazi), t.ogeler[i].Secim ? "1" : "0", t.ogeler[i].Bas, t.ogeler[i].Adet}});
  izgara_->doldur(satirlar);
  izgara_->git(0, Secim);
  okunan_ = oku();
  dolduruluyor_ = false;
  onizle();
}

settings::TerminalTanimi ElTerminali::oku() const {
  settings::TerminalTanimi t;
  t.Tanim_ID = ui::utf8(Tanim_ID_->text());
  t.Tanim_Kod = ui::utf8(kod());
  t.Tanim_Ad = ui::utf8(Tanim_Ad_->text());
  t.Dosya_Yol = ui::utf8(Dosya_Yol_->text());
  t.AyiracVar = AyiracVar_->isChecked();
  t.Ayirac = ui::utf8(Ayirac_->text());
  t.MiktarParcali = MiktarParcali_->isChecked();
  t.ParcaAdedi = ui::utf8(ParcaAdedi_->text());
  const ui::IzgaraModeli& veri = izgara_->veri();
  for (int i = 0; i < veri.adet(); ++i)
    t.ogeler[static_cast<std::size_t>(i)] = {veri.hucre(i, Secim) == "1", veri.hucre(i, Bas),
                                             veri.hucre(i, Adet)};
  return t;
}

void ElTerminali::onizle() {
  if (dolduruluyor_) return;
  onizleme_->clear();
  onizleme_->setRowCount(0);
  const settings::TerminalTanimi t = oku();
  if (t.Dosya_Yol.empty()) {
    onizleme_->setColumnCount(0);
    onizlemeHatasi_->setText("Bir dosya seçilince ilk satırları tanıma göre bölünmüş olarak görünür.");
    return;
  }
  const auto o = settings::Terminal_Onizle(t, std::filesystem::path(t.Dosya_Yol));
  onizleme_->setColumnCount(static_cast<int>(o.basliklar.size()));
  for (std::size_t i = 0; i < o.basliklar.size(); ++i)
    onizleme_->setHorizontalHeaderItem(static_cast<int>(i), new QTableWidgetItem(ui::text(o.basliklar[i])));
  onizleme_->setRowCount(static_cast<int>(o.satirlar.size()));
  for (std::size_t s = 0; s < o.satirlar.size(); ++s)
    for (std::size_t k = 0; k < o.satirlar[s].size(); ++k)
      onizleme_->setItem(static_cast<int>(s), static_cast<int>(k),
                         new QTableWidgetItem(ui::text(o.satirlar[s][k])));
  onizleme_->resizeColumnsToContents();
  onizlemeHatasi_->setText(o.hata.empty() ? QString("İlk %1 satır").arg(o.satirlar.size())
                                          : ui::text(o.hata));
}

// --- Buttons

void ElTerminali::yeni() {
  if (!birakilir()) return;
  temizle();
  Yeni_Kayit_ = true;
  Tanim_ID_->setText("0");
  okunan_ = oku();
  Tanim_Kod_->setFocus();
}

void ElTerminali::kaydet() {
  oturum_.Son_Hata.clear();
  if (!izgara_->duzenlemeyiBitir()) return;
  const settings::TerminalTanimi t = oku();
  if (!Yeni_Kayit_ && yuklenen_.Tanim_ID == t.Tanim_ID && !t.Tanim_ID.empty()) {
    const auto farklar = settings::Terminal_Farklari(oturum_, yuklenen_);
    if (!farklar.empty() && !uzerineSorulur(oturum_, "Bu tanım", farklar)) return;
  }
  if (const std::string hata = settings::Terminal_Kaydet(oturum_, t, Yeni_Kayit_); !hata.empty()) {
    oturum_.kutular->message(hata, session::Icon::Stop);
    return;
  }
  Yeni_Kayit_ = false;
  listeDoldur(settings::Terminal_Listesi_Yenile(oturum_), ui::text(t.Tanim_Kod));
  temizle();
  if (const auto yeniden = settings::Terminal_Oku(oturum_, t.Tanim_Kod)) {
    goster(*yeniden);
    yuklenen_ = *yeniden;
  }
  oturum_.kutular->message("Dış Veri Aktarım Parametresi Kaydedildi.");
}

void ElTerminali::sil() {
  const std::string kimlik = ui::utf8(Tanim_ID_->text());
  if (!session::sayiMi(kimlik) || kimlik == "0") return;
  if (!oturum_.kutular->ask("Seçili Veri Alım Parametresi Silinecektir. Onaylıyormusunuz?")) return;
  const int yer = std::max(Tanim_Kod_->findData(kod()), 0);
  settings::Terminal_Sil(oturum_, kimlik);
  temizle();
  listeDoldur(settings::Terminal_Listesi_Yenile(oturum_), {});
  if (Tanim_Kod_->count() == 0) return;
  // What now stands at the old place.
  Tanim_Kod_->setCurrentIndex(std::min(yer, Tanim_Kod_->count() - 1));
  tanimSec();
}

bool ElTerminali::birakilir() {
  if (oku() == okunan_) return true;
  return oturum_.kutular->ask("Kaydedilmemiş değişiklikler var. Kaydetmeden devam etmek istiyor musunuz?");
}

}  // namespace settings_ui
