#include "maintenance/ui/yedek_frm.h"

#include <QComboBox>
#include <QDir>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QInputDialog>
#include <QLabel>
#include <QLocale>
#include <QMenu>
#include <QPushButton>
#include <QTableWidget>
#include <QTimer>
#include <QTreeView>

#include "maintenance/servis.h"
#include "maintenance/servis_kontrol.h"
#include "maintenance/ui/klasor_secici.h"
#include "maintenance/yedek.h"
#include "maintenance/yedek_denetim.h"
#include "ui/form.h"
#include "ui/theme.h"

namespace maintenance_ui {
namespace {

constexpr const char* durusUyarisi =
    "Dosyalar kopyalanırken sunucu durur ve bütün kullanıcıların bağlantısı kesilir; kopya bitince sunucu "
    "yeniden başlar. Yedek, seçili klasörün altında yeni bir klasöre alınır.";
constexpr const char* uzakUyarisi =
    "Sunucu başka bir makinede: dosyalarına buradan ulaşılamaz. Yedek, sunucunun kendi yedekleme komutuyla, "
    "yolu sorulan ve o makinede bulunan bir dosyaya alınır.";

// The server's own disk: only its administrator knows a path there.
std::string uzakYol(QWidget* ekran, const QString& baslik) {
  return ui::utf8(
      QInputDialog::getText(ekran, baslik, "Sunucunun diskindeki yedek dosyası (tam yol):").trimmed());
}

}  // namespace

YedekFrm::YedekFrm(session::Oturum& oturum, ui::ConsolePort&)
    : Kart("yedek", "Yedekleme İşlemleri"),
      oturum_(oturum),
      klasorler_(new KlasorSecici({"Drive1", "Dir1", "File2"})),
      firma_(new QComboBox),
      baba_(new QMenu("Dosya", this)),
      denetim_(new QTableWidget) {
  setObjectName("YedekFrm");
  subheading()->setObjectName("AltBaslik");
  firma_->setObjectName("Firma_Combo");
  firma_->setMinimumContentsLength(24);
  auto* ust = new QHBoxLayout;
  ust->setSpacing(ui::gap);
  ust->addWidget(ui::caption("İşlem Yapılacak Firma :", firma_));
  ust->addWidget(firma_);
  ust->addStretch(1);
  auto* baslat = new QPushButton("STRT");
  baslat->setObjectName("Command1");
  baslat->setToolTip("Sunucunun servisini başlatır");
  auto* durdur = new QPushButton("Stop");
  durdur->setObjectName("Command2");
  durdur->setToolTip("Sunucunun servisini durdurur; bütün kullanıcıların bağlantısı kesilir");
  ust->addWidget(baslat);
  ust->addWidget(durdur);
  auto* uyari = new QLabel;
  uyari->setObjectName("DurusUyarisi");
  uyari->setWordWrap(true);
  uyari->setProperty("rol", "ipucu");
  body()->addLayout(ust);
  body()->addWidget(uyari);
  body()->addWidget(klasorler_, 1);
  denetimKur();
  body()->addWidget(denetim_);
  yedekle_ = button("YedekleBtn", "Yedekle", "kaydet", true);
  canli_ = button("CanliYedekBtn", "Canlı Yedekle", "canli");
  canli_->setToolTip("Sunucuyu durdurmadan, herkes çalışırken yedek alır");
  denetle_ = button("YedekDenetimiBtn", "Yedek Denetimi", "incele");
  denetle_->setToolTip("Seçili klasördeki yedeği açıp okur; canlı firmaya dokunmaz");
  geriAl_ = button("Geri_Al", "Geri Al", "yedek");
  auto* cikis = button("CikisBtn", "Çıkış", "cikis");
  shortcut(Qt::Key_F3, cikis);
  shortcut(Qt::Key_Escape, cikis);
  hint()->setText("Sağ tuş: klasör işlemleri");
  menuKur();
  connect(firma_, &QComboBox::activated, this, &YedekFrm::uyar);
  connect(yedekle_, &QPushButton::clicked, this, [this] { yedekle(false); });
  connect(canli_, &QPushButton::clicked, this, [this] { yedekle(true); });
  connect(denetle_, &QPushButton::clicked, this, [this] { denetle(klasorler_->klasor()); });
  connect(geriAl_, &QPushButton::clicked, this, &YedekFrm::geriAl);
  connect(cikis, &QPushButton::clicked, this, [this] { kapan(); });
  connect(baslat, &QPushButton::clicked, this, [this] { servis(true); });
  connect(durdur, &QPushButton::clicked, this, [this] { servis(false); });
}

void YedekFrm::denetimKur() {
  denetim_->setObjectName("DenetimGrd");
  denetim_->setAccessibleName("Yedek denetiminin sonucu");
  denetim_->setColumnCount(3);
  denetim_->setHorizontalHeaderLabels({"Konu", "Durum", "Açıklama"});
  denetim_->verticalHeader()->hide();
  denetim_->horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  for (int i = 0; i < denetim_->columnCount(); ++i)
    denetim_->horizontalHeader()->setSectionResizeMode(
        i, i == 2 ? QHeaderView::Stretch : QHeaderView::ResizeToContents);
  denetim_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  denetim_->setSelectionBehavior(QAbstractItemView::SelectRows);
  denetim_->setWordWrap(true);
  denetim_->setVisible(false);
}

void YedekFrm::menuKur() {
  baba_->setObjectName("Baba");
  const struct {
    const char *ad, *yazi, *resim;
    void (YedekFrm::*is)();
  } satirlar[] = {{"MNYeni_Klasor", "Yeni Klasör Oluştur", "ekle", &YedekFrm::yeniKlasor},
                  {"MnIsim", "Yeniden Adlandır", "degistir", &YedekFrm::yenidenAdlandir},
                  {"MNSil", "Sil", "sil", &YedekFrm::klasoruSil}};
  for (const auto& satir : satirlar) {
    QAction* eylem = baba_->addAction(ui::icon(satir.resim), satir.yazi, this, satir.is);
    eylem->setObjectName(satir.ad);
  }
  connect(klasorler_, &KlasorSecici::menuIstendi, this, [this](const QPoint& yer) { baba_->popup(yer); });
}

void YedekFrm::ac() {
  const QString once = firma_->currentText();
  firma_->clear();
  for (const std::string& ad : maintenance::firmaAdlari(oturum_)) firma_->addItem(ui::text(ad));
  firma_->setCurrentIndex(std::max(0, firma_->findText(once)));
  yedekle_->setEnabled(firma_->count() > 0);
  const bool uzak = maintenance::sunucuYeri(oturum_) == maintenance::SunucuYeri::Uzak;
  uyar();
  klasorler_->setEnabled(!uzak);
  const bool yerel = maintenance::sunucuYeri(oturum_) == maintenance::SunucuYeri::Yerel;
  canli_->setEnabled(yerel && firma_->count() > 0);
  denetle_->setEnabled(yerel);
  denetim_->setVisible(false);
  if (klasorler_->klasor().empty()) klasorler_->git(ui::utf8(QDir::homePath()));
  klasorler_->yenile();
  firma_->setFocus();
}

void YedekFrm::uyar() {
  auto* etiket = findChild<QLabel*>("DurusUyarisi");
  if (maintenance::sunucuYeri(oturum_) == maintenance::SunucuYeri::Uzak) return etiket->setText(uzakUyarisi);
  const auto sure = maintenance::Beklenen_Kesinti(oturum_, ui::utf8(firma_->currentText()));
  etiket->setText(durusUyarisi + (sure
                                      ? " Beklenen kesinti: " + QLocale().toString(*sure, 'f', 1) + " saniye."
                                      : QString()));
}

void YedekFrm::yedekle(bool canli) {
  const std::string firma = ui::utf8(firma_->currentText());
  if (maintenance::sunucuYeri(oturum_) == maintenance::SunucuYeri::Uzak) {
    const std::string yol = uzakYol(this, "Yedekle");
    if (!yol.empty())
      isYap(oturum_, {"Sunucu yedek alıyor"}, [&] { maintenance::Sunucuda_Yedekle(oturum_, firma, yol); });
    return;
  }
  const std::filesystem::path dizin = klasorler_->klasor();
  maintenance::YedekSonucu sonuc;
  isYap(oturum_, {canli ? "Canlı yedek alınıyor" : "Yedek alınıyor", ui::Vazgec::Var}, [&] {
    sonuc = canli ? maintenance::Canli_Yedekle(oturum_, firma, dizin)
                  : maintenance::Yedekle(oturum_, firma, dizin);
  });
  klasorler_->yenile();
  if (!sonuc.tamam) return;
  uyar();
  klasorler_->git(sonuc.klasor);
  subheading()->setText(
      ui::text(sonuc.klasor.string()) +
      (canli ? QString(" — sunucu hiç durmadı")
             : " — sunucu " + QLocale().toString(sonuc.kesinti, 'f', 1) + " saniye kapalı kaldı"));
  if (denetle_->isEnabled()) denetle(sonuc.klasor);
}

void YedekFrm::denetle(const std::filesystem::path& klasor) {
  maintenance::YedekDenetimi sonuc;
  isYap(oturum_, {"Yedek denetleniyor", ui::Vazgec::Var},
        [&] { sonuc = maintenance::Yedek_Denetle(oturum_, klasor); });
  denetim_->setVisible(sonuc.calisti);
  if (!sonuc.calisti) return;
  // The result takes room from the tree: the folder stays in sight.
  QTimer::singleShot(0, this, [this] { klasorler_->agac()->scrollTo(klasorler_->agac()->currentIndex()); });
  denetim_->setRowCount(static_cast<int>(sonuc.satirlar.size()));
  constexpr const char* resimler[] = {"saglam", "bilgi", "uyari"};
  for (int i = 0; i < denetim_->rowCount(); ++i) {
    const auto& satir = sonuc.satirlar[static_cast<std::size_t>(i)];
    const QString durum = ui::text(std::string(maintenance::durumYazisi(satir.durum)));
    denetim_->setItem(i, 0, new QTableWidgetItem(ui::text(satir.konu)));
    denetim_->setItem(i, 1,
                      new QTableWidgetItem(ui::icon(resimler[static_cast<std::size_t>(satir.durum)]), durum));
    denetim_->setItem(i, 2, new QTableWidgetItem(ui::text(satir.aciklama)));
  }
  denetim_->resizeRowsToContents();
  constexpr int enCokSatir = 6;
  denetim_->setFixedHeight(denetim_->horizontalHeader()->sizeHint().height() + 2 * denetim_->frameWidth() +
                           denetim_->rowHeight(0) * std::min(denetim_->rowCount(), enCokSatir) + 4);
  const QString hukum =
      ui::text(sonuc.firma) + (sonuc.saglam ? ": yedek sağlam" : ": YEDEK KUSURLU") +
      (sonuc.onceki ? ", önceki denetim " + ui::text(maintenance::anYaz(*sonuc.onceki)) : QString());
  const QString once = subheading()->text();
  subheading()->setText(once.contains("sunucu") ? once + "; " + hukum : hukum);
}

void YedekFrm::geriAl() {
  if (maintenance::sunucuYeri(oturum_) == maintenance::SunucuYeri::Uzak) {
    const std::string firma = ui::utf8(firma_->currentText()), yol = uzakYol(this, "Geri Al");
    if (!yol.empty() &&
        oturum_.kutular->ask("\"" + firma +
                             "\" firmasının bilgileri yedektekilerle değiştirilecek. Devam edilsin mi?"))
      isYap(oturum_, {"Sunucu geri alıyor"}, [&] { maintenance::Sunucuda_Geri_Al(oturum_, firma, yol); });
    return;
  }
  const std::filesystem::path klasor = klasorler_->klasor();
  isYap(oturum_, {"Yedekten geri alınıyor", ui::Vazgec::Var}, [&] { maintenance::Geri_Al(oturum_, klasor); });
}

void YedekFrm::servis(bool baslat) {
  std::string hata;
  if (!isYap(oturum_, {baslat ? "Sunucu başlatılıyor" : "Sunucu durduruluyor"}, [&] {
        hata = baslat ? maintenance::Servis_Baslat(oturum_) : maintenance::Servis_Durdur(oturum_);
      }))
    return;
  if (!hata.empty()) oturum_.kutular->message(hata, session::Icon::Stop);
  subheading()->setText(!hata.empty() ? QString() : baslat ? "Sunucu çalışıyor" : "Sunucu durdu");
}

void YedekFrm::git(const std::filesystem::path& klasor, const std::string& hata) {
  if (!hata.empty()) oturum_.kutular->message(hata, session::Icon::Stop);
  if (!klasor.empty()) klasorler_->git(klasor);
}

void YedekFrm::yeniKlasor() {
  const auto dizin = klasorler_->klasor();
  const QString ad =
      QInputDialog::getText(this, "Yeni Kalsör Oluştur", "Oluşturmak İstediğiniz Klasörün Adını Belirtiniz",
                            QLineEdit::Normal, ui::text(maintenance::yeniKlasorAdi(dizin)));
  if (ad.isEmpty()) return;
  std::string hata;
  git(maintenance::klasorOlustur(dizin, ui::utf8(ad), hata), hata);
}

void YedekFrm::yenidenAdlandir() {
  const auto klasor = klasorler_->klasor();
  const QString ad = QInputDialog::getText(this, "Korvena [Yeniden Adlandır]", "Lütfen Yeni İsimi Yazınız",
                                           QLineEdit::Normal, ui::text(klasor.filename().string()));
  if (ad.isEmpty()) return;
  std::string hata;
  git(maintenance::klasorAdlandir(klasor, ui::utf8(ad), hata), hata);
}

void YedekFrm::klasoruSil() {
  std::string hata;
  git(maintenance::klasorSil(oturum_, klasorler_->klasor(), hata), hata);
}

}  // namespace maintenance_ui
