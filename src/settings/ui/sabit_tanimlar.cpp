#include "settings/ui/sabit_tanimlar.h"

#include <QCheckBox>
#include <QFileDialog>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QTabWidget>
#include <QTableWidget>

#include "session/sayi.h"
#include "settings/firma_baglanti.h"
#include "settings/firma_parametre.h"
#include "settings/ui/duzen_izgarasi.h"
#include "settings/ui/firma_secimi.h"
#include "settings/ui/grup_sayfasi.h"
#include "settings/ui/kayit_tuslari.h"
#include "settings/ui/parametre_formu.h"
#include "settings/ui/parametre_kaydi.h"
#include "ui/form.h"
#include "ui/theme.h"

namespace settings_ui {

using settings::Cerceve;

namespace {

constexpr double ornekSayi = 1234567.891234;
constexpr const char* haneler[] = {"AnaParaVirgul", "BirimFiyatVirGul", "DovizVirgul",
                                   "DovizBirimFiyatVirgul", "KurVirgul"};
constexpr int digerSekmesi = 3, enCokHane = 9;

constexpr const char* moduller[] = {"KASA",  "CARİ",      "FATURA", "STOK",     "SİPARİŞ",
                                    "BANKA", "ÇEK SENET", "ÜRETİM", "PERSONEL", "MUHASEBE"};
constexpr const char* riskler[] = {"Açık Hesap Risk Hesabına Dahil Edilir",
                                   "Ödenmemiş Çekler Risk Hesabına Dahil Edilir",
                                   "Ödenmemiş Senetler Risk Hesabına Dahil Edilir"};

QString ftrSor(QWidget* ana) {
  return QFileDialog::getOpenFileName(ana, "Dizayn", {}, "Text dosyalar (*.ftr)");
}

// A page of frames below one another that scrolls by itself.
QWidget* sayfa(std::initializer_list<QWidget*> cerceveler) {
  auto* ic = new QWidget;
  auto* duzen = new QVBoxLayout(ic);
  duzen->setContentsMargins(ui::gap, ui::gapSmall, ui::gap, ui::gap);
  duzen->setSpacing(ui::gapSmall);
  for (QWidget* cerceve : cerceveler) duzen->addWidget(cerceve);
  duzen->addStretch(1);
  return ui::scrolling(ic);
}

QTableWidget* tablo(const char* ad, const QStringList& basliklar, int satir) {
  auto* t = new QTableWidget(satir, static_cast<int>(basliklar.size()));
  t->setObjectName(ad);
  t->setHorizontalHeaderLabels(basliklar);
  t->setEditTriggers(QAbstractItemView::NoEditTriggers);
  t->verticalHeader()->hide();
  t->horizontalHeader()->setStretchLastSection(true);
  t->setMinimumHeight(200);
  return t;
}

}  // namespace

SabitTanimlar::SabitTanimlar(session::Oturum& oturum, ui::ConsolePort&)
    // The caption's letters are the system's own.
    : Kart("sabit", "Firma Paramaetreleri"),
      dosyaSec(ftrSor),
      oturum_(oturum),
      form_(new ParametreFormu(oturum, settings::ParametreEkrani::Sabit, this)),
      firma_(new FirmaSecimi("Ayarlanacak Firma :")),
      kopyala_(new QCheckBox("Bu Ayarları Kopyala")),
      sekmeler_(new QTabWidget) {
  setObjectName("SabitTanimlar_Frm");
  kopyala_->setObjectName("Kopyala");
  firma_->sagaEkle(kopyala_);
  sekmeler_->setObjectName("SSTab1");
  sekmeler_->addTab(genelSekme(), "Genel Parametreler");
  sekmeler_->addTab(stokSekme(), "Stok Parametreleri");
  sekmeler_->addTab(maliyetSekme(), "Maliyet Ve Muhasebe");
  sekmeler_->addTab(digerSekme(), "Diğer Parametreler");
  sekmeler_->addTab(webSekme(), "Web Config");
  body()->addWidget(firma_);
  body()->addWidget(sekmeler_, 1);
  body()->addWidget(riskTanimi());
  karsilastir_ = button("KarsilastirBtn", "Karşılaştır…", "incele");
  const auto [tamam, iptal] = saveAndLeave("TamamBtn", "IptalBtn");
  tamam_ = tamam;
  hint()->setText(kayitTuslari);
  connect(firma_, &FirmaSecimi::degisti, this, &SabitTanimlar::firmaDegisti);
  connect(form_, &ParametreFormu::degisti, this, &SabitTanimlar::parametreDegisti);
  connect(tamam_, &QPushButton::clicked, this, &SabitTanimlar::kaydet);
  connect(iptal, &QPushButton::clicked, this, [this] { kapan(); });
  connect(karsilastir_, &QPushButton::clicked, this, [this] {
    if (Firma_Kaydi_) karsilastir(oturum_, *Firma_Kaydi_, *form_, settings::ParametreEkrani::Sabit, this);
  });
}

// --- Tabs

QWidget* SabitTanimlar::dizaynDugmesi(const char* ad, const char* alan) {
  auto* dugme = new QPushButton("Seç…");
  dugme->setObjectName(ad);
  connect(dugme, &QPushButton::clicked, this, [this, alan] {
    QString yol = dosyaSec(this);
    if (yol.isEmpty()) return;
    // The name alone: behind the last separator, before the first point.
    yol.replace('/', '\\');
    const QString dosya = yol.section('\\', -1);
    form_->goster(static_cast<std::size_t>(settings::parametreSirasi(alan)),
                  ui::utf8(dosya.section('.', 0, 0)));
  });
  return dugme;
}

QWidget* SabitTanimlar::genelSekme() {
  form_->yaninaKoy("DefTasarim", dizaynDugmesi("FaturaDizayn", "DefTasarim"));
  form_->yaninaKoy("DefIrsaliyeTasarim", dizaynDugmesi("IrsaliyeDizayn", "DefIrsaliyeTasarim"));
  return sayfa({form_->cerceve(Cerceve::Genel, "Genel Çalışma Parametreleri")});
}

QWidget* SabitTanimlar::stokSekme() {
  return sayfa({form_->cerceve(Cerceve::StokSeviye, "Stok Seviye Kontrolü", {900, 290}),
                form_->cerceve(Cerceve::StokBakiye, "Stok Listesinde Bakiye Gösterimi")});
}

QWidget* SabitTanimlar::maliyetSekme() {
  return sayfa({form_->cerceve(Cerceve::Maliyet, "Maliyetlendirme Davranışı"),
                form_->cerceve(Cerceve::Muhasebe, "Muhasebeleştirme Davranışı")});
}

// How a number looks with the decimals that are being set.
QLabel* SabitTanimlar::onizleme(const char* ad) {
  auto* etiket = new QLabel;
  etiket->setObjectName(QString(ad) + "Onizleme");
  etiket->setProperty("rol", "ipucu");
  etiket->setMinimumWidth(ui::byLetters(170));
  onizlemeler_.emplace_back(static_cast<std::size_t>(settings::parametreSirasi(ad)), etiket);
  return etiket;
}

QWidget* SabitTanimlar::digerSekme() {
  for (const char* hane : haneler) form_->yaninaKoy(hane, onizleme(hane));
  auto* yanYana = new QWidget;
  auto* duzen = new QHBoxLayout(yanYana);
  duzen->setContentsMargins(0, 0, 0, 0);
  duzen->setSpacing(ui::gap);
  auto* sag = new QVBoxLayout;
  sag->setSpacing(ui::gapSmall);
  duzen->addWidget(form_->cerceve(Cerceve::Virgul, "Virgülden Sonraki Hane Sayısı", {900, 290}), 1);
  sag->addWidget(form_->cerceve(Cerceve::Kilit, "Kayıt Kilitleri", {900, 290}));
  sag->addWidget(form_->cerceve(Cerceve::Emanet, "Emanet İşlemi", {900, 290}));
  duzen->addLayout(sag, 1);
  return sayfa({yanYana, islemTipTanimlari()});
}

// Laid out without behaviour: nothing loads, edits or saves these grids.
QWidget* SabitTanimlar::islemTipTanimlari() {
  auto* cerceve = frame("Frame_IslemTip", "İŞLEM TİP TANIMLARI");
  auto* modul = tablo("ModulFlx", {"Modul_No", "Modul"}, static_cast<int>(std::size(moduller)));
  for (int i = 0; i < modul->rowCount(); ++i) {
    modul->setItem(i, 0, new QTableWidgetItem(QString::number(i + 1)));
    modul->setItem(i, 1, new QTableWidgetItem(moduller[i]));
  }
  auto* tip =
      tablo("TipFlx", {"Tip_ID", "No", "İşlem Tip Adı", "Borç \\ Çıkış", "Alacak \\ Giriş", "İşlem Dah."}, 1);
  tip->setColumnHidden(0, true);
  tip->setColumnWidth(1, ui::byLetters(50));
  tip->setColumnWidth(2, ui::byLetters(150));
  auto* sil = new QPushButton(ui::captionIcon("sil"), "Sil");
  sil->setObjectName("Command1");
  modul->setMaximumWidth(ui::byLetters(240));
  modul->setColumnWidth(0, ui::byLetters(80));
  auto* sag = new QVBoxLayout;
  sag->setSpacing(ui::gapSmall);
  sag->addWidget(tip, 1);
  sag->addWidget(sil, 0, Qt::AlignLeft);
  auto* duzen = new QHBoxLayout(cerceve);
  duzen->setContentsMargins(ui::gap, ui::gap, ui::gap, ui::gap);
  duzen->addWidget(modul, 1);
  duzen->addLayout(sag, 2);
  return cerceve;
}

QWidget* SabitTanimlar::webSekme() {
  auto* alt = new QTabWidget;
  alt->setObjectName("SSTab2");
  gruplar_ = new GrupSayfasi(oturum_);
  alt->addTab(gruplar_, "Grup Kod Parametreleri");
  alt->addTab(sayfa({form_->cerceve(Cerceve::Web, "Web Sabit Tanımları")}), "Web Sabit Tanımları");
  return alt;
}

// Neither loaded nor saved.
QWidget* SabitTanimlar::riskTanimi() {
  auto* cerceve = frame("Frame_Risk", "Risk Tanımı");
  auto* duzen = new QVBoxLayout(cerceve);
  duzen->setContentsMargins(ui::gap, ui::gapSmall, ui::gap, ui::gapSmall);
  auto* izgara = new DuzenIzgarasi(315, 3);
  int i = 0;
  for (const char* risk : riskler) {
    auto* kutu = new QCheckBox(risk);
    kutu->setObjectName("RiskChk_" + QString::number(i++));
    izgara->ekle(nullptr, kutu);
  }
  duzen->addWidget(izgara);
  return cerceve;
}

// --- Opening, change of company

void SabitTanimlar::ac() {
  kopyala_->setChecked(false);
  sekmeler_->setCurrentIndex(0);
  const auto firmalar = settings::Firma_Listesi(oturum_);
  firma_->doldur(firmalar);
  form_->firmaListesi(firmalar);
  firmaDegisti();
  firma_->setFocus();
}

void SabitTanimlar::firmaDegisti() {
  const std::string firma = firma_->firma();
  Firma_Kaydi_ = firma.empty() ? std::nullopt : settings::Firma_Kaydi_Ac(oturum_, firma);
  tamam_->setEnabled(Firma_Kaydi_.has_value());
  karsilastir_->setEnabled(Firma_Kaydi_.has_value());
  subheading()->setText(ui::text(firma));
  if (!Firma_Kaydi_) {
    if (!firma.empty()) oturum_.kutular->message(oturum_.Son_Hata, session::Icon::Stop);
    return;
  }
  const QScopedValueRollback dolduruluyor(dolduruluyor_, true);
  // While Kopyala is checked the controls keep what they show: saving writes it into the company now chosen.
  if (!kopyala_->isChecked()) {
    formuDoldur(oturum_, *Firma_Kaydi_, *form_);
    emanetNo_ = form_->oku(static_cast<std::size_t>(settings::parametreSirasi("Ambar_No")));
  }
  ikinciBolum(firma);
  for (const char* hane : haneler) parametreDegisti(settings::parametreSirasi(hane));
  parametreDegisti(settings::parametreSirasi("MKTVG"));
}

// The part that works on the company's own database.
void SabitTanimlar::ikinciBolum(const std::string& firma) {
  if (const std::string hata = settings::Firma_Bagla(oturum_, firma); !hata.empty())
    oturum_.kutular->message(hata, session::Icon::Stop);
  form_->ambarListesi(oturum_.Baglanti2 ? settings::Ambar_Listesi(oturum_)
                                        : std::vector<session::ListeSecenegi>{});
  gruplar_->AnaGrup_Listele();
}

// --- Rules of single controls

void SabitTanimlar::parametreDegisti(int sira) {
  const auto& p = settings::parametreler()[static_cast<std::size_t>(sira)];
  if (p.kontrol == "MKTVG") {
    const bool acik = form_->oku(static_cast<std::size_t>(sira)) == "1";
    for (const char* alan : {"MKTVGTUT", "AMKTVGTUT", "BrGrm"}) form_->gorunur(alan, acik);
  }
  if (p.kontrol == "Ambar_No" && !dolduruluyor_) emanetAmbari();
  for (const auto& [hane, etiket] : onizlemeler_) {
    if (hane != static_cast<std::size_t>(sira)) continue;
    const QString metin = ui::text(form_->oku(hane));
    const int sayi = std::clamp(metin.toInt(), 0, enCokHane);
    etiket->setText("→ " + ui::text(session::sayiyiYaz(ornekSayi, settings::sayiBicimi(sayi))));
  }
}

void SabitTanimlar::emanetAmbari() {
  if (!settings::Emanet_Ambari_Hareketli(oturum_, emanetNo_)) return;
  const auto sira = static_cast<std::size_t>(settings::parametreSirasi("Ambar_No"));
  if (form_->oku(sira) == emanetNo_) return;
  oturum_.kutular->message(std::string(settings::emanetAmbariHatasi));
  const QScopedValueRollback geri(dolduruluyor_, true);
  form_->goster(sira, emanetNo_);
}

void SabitTanimlar::kaydet() {
  oturum_.Son_Hata.clear();
  const auto bas = static_cast<std::size_t>(settings::parametreSirasi("KilitBasTarih"));
  const auto bit = static_cast<std::size_t>(settings::parametreSirasi("KilitBitTarih"));
  const auto kilit = settings::Kilit_Tarih_Kontrol(form_->oku(bas), form_->oku(bit));
  oturum_.Son_Hata = kilit.hata;
  if (!kilit.hata.empty()) {
    oturum_.kutular->message(kilit.hata, session::Icon::Stop);
    sekmeler_->setCurrentIndex(digerSekmesi);
    form_->kontrol(kilit.odak == settings::KilitAlani::KilitBitTarih ? bit : bas)->setFocus();
    return;
  }
  if (!formuKaydet(oturum_, *Firma_Kaydi_, *form_, settings::ParametreEkrani::Sabit)) return;
  oturum_.kutular->message("Firma Parametreleri Kaydedildi.");
}

}  // namespace settings_ui
