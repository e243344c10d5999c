#include "session/ui/ilk_kurulum_penceresi.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QStackedWidget>
#include <QVBoxLayout>
#include <memory>

#include "catalog/sunucu_hazirla.h"
#include "company/ilk_kurulum.h"
#include "session/ui/sunucu_hazirlama.h"
#include "ui/fields.h"
#include "ui/form.h"
#include "ui/resim.h"
#include "ui/theme.h"
#include "ui/uzun_is.h"

namespace session_ui {
namespace {

constexpr int windowWidth = 560, headingIcon = 40, indent = 26;

struct YolYazisi {
  const char *ad, *baslik, *aciklama;
};
// In the order of Yol.
constexpr YolYazisi yolYazilari[] = {
    {"HazirlaYolu", "Bu bilgisayarı hazırla", "Veriler bu bilgisayarda tutulur; başka bir program gerekmez."},
    {"BaglanYolu", "Bir sunucuya bağlan", "Ağdaki bir SQL Server'a ya da hazır bir yerel sunucuya."},
    {"OrnekYolu", "Örnek verilerle dene",
     "Bu bilgisayarı hazırlar ve bir yıllık örnek verisi olan ORNEK firmasını oluşturur."}};

QGridLayout* fieldGrid(QWidget* page) {
  auto* grid = new QGridLayout(page);
  grid->setContentsMargins(0, 0, 0, 0);
  grid->setHorizontalSpacing(ui::gap);
  grid->setVerticalSpacing(ui::gapSmall);
  return grid;
}

}  // namespace

IlkKurulumPenceresi::IlkKurulumPenceresi(session::Oturum& oturum, const QString& eksik, QWidget* parent)
    : QDialog(parent), oturum_(oturum), hata_(ui::wrapped({}, "hata")), iyi_(ui::wrapped({}, "tamam")) {
  setObjectName("IlkKurulum");
  setWindowTitle("Zembera – Kurulum");
  setMinimumWidth(windowWidth);
  auto* picture = new ui::Resim(headingIcon, "sunucu");
  auto* head = new QHBoxLayout;
  head->setSpacing(ui::gap);
  head->addWidget(picture, 0, Qt::AlignTop);
  auto* titles = new QVBoxLayout;
  titles->addWidget(
      ui::wrapped(eksik.isEmpty() ? "Sunucu Ayarları" : "Nasıl başlamak istersiniz?", "baslik"));
  const QString dosya = ui::text(session::sysInfYolu(oturum.platform->programFolder()).string());
  auto* neden = ui::wrapped(eksik.isEmpty() ? "Ayarlar şu dosyaya yazılır: " + dosya
                                            : eksik + "\nAyarlar şu dosyaya yazılacak: " + dosya,
                            "altbaslik");
  neden->setObjectName("NedenLbl");
  titles->addWidget(neden);
  head->addLayout(titles, 1);

  sayfalar_ = new QStackedWidget;
  sayfalar_->addWidget(yoneticiSayfasi());
  sayfalar_->addWidget(sunucuSayfasi());
  hata_->setObjectName("HataLbl");
  iyi_->setObjectName("IyiLbl");

  tamamBtn_ = new QPushButton;
  tamamBtn_->setObjectName("KurTamamBtn");

  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(ui::gapLarge, ui::gapLarge, ui::gapLarge, ui::gapLarge);
  layout->setSpacing(ui::gap);
  layout->addLayout(head);
  layout->addWidget(yollar());
  layout->addWidget(sayfalar_);
  layout->addWidget(hata_);
  layout->addWidget(iyi_);
  layout->addStretch(1);
  layout->addLayout(ui::dialogButtons(this, tamamBtn_));

  auto* keys = new ui::FieldKeys(this, ui::loginColours, false);
  keys->watch(yonetici_, ";;;YoneticiSifre");
  keys->watch(sifre_, ";YoneticiAdi;;YoneticiSifre2");
  keys->watch(tekrar_, ";YoneticiSifre;;KurTamamBtn");
  keys->watch(sunucu_, ";;;SqlGiris");
  keys->watch(giris_, ";SunucuAdi;;SqlSifre");
  keys->watch(sqlSifre_, ";SqlGiris;;SinaBtn");
  connect(tamamBtn_, &QPushButton::clicked, this, &IlkKurulumPenceresi::tamam);
  for (QLineEdit* alan : {yonetici_, sifre_, tekrar_})
    connect(alan, &QLineEdit::textChanged, this, &IlkKurulumPenceresi::denetle);
  yollar_[eksik.isEmpty() ? Baglan : Hazirla]->setChecked(true);
  yolDegisti();
}

QWidget* IlkKurulumPenceresi::yollar() {
  auto* all = new QWidget;
  auto* layout = new QVBoxLayout(all);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  for (int i = 0; i < 3; ++i) {
    const YolYazisi& yazi = yolYazilari[i];
    yollar_[i] = new QRadioButton(yazi.baslik);
    yollar_[i]->setObjectName(yazi.ad);
    yollar_[i]->setAccessibleDescription(yazi.aciklama);
    auto* aciklama = ui::wrapped(yazi.aciklama, "ipucu");
    aciklama->setContentsMargins(indent, 0, 0, ui::gapSmall);
    layout->addWidget(yollar_[i]);
    layout->addWidget(aciklama);
    connect(yollar_[i], &QRadioButton::clicked, this, &IlkKurulumPenceresi::yolDegisti);
  }
  return all;
}

QWidget* IlkKurulumPenceresi::yoneticiSayfasi() {
  auto* page = new QWidget;
  const YoneticiAlanlari alanlar = yoneticiAlanlari(fieldGrid(page));
  yonetici_ = alanlar.ad;
  sifre_ = alanlar.sifre;
  tekrar_ = alanlar.tekrar;
  return page;
}

QWidget* IlkKurulumPenceresi::sunucuSayfasi() {
  auto* page = new QWidget;
  auto* grid = fieldGrid(page);
  sunucu_ = alanEkle(grid, 0, "SunucuAdi", "Sunucu :", false);
  giris_ = alanEkle(grid, 1, "SqlGiris", "SQL Kullanıcı Adı :", false);
  sqlSifre_ = alanEkle(grid, 2, "SqlSifre", "SQL Şifresi :", true);
  sunucu_->setText(ui::text(oturum_.Server_Adi));
  giris_->setText(oturum_.SQL_Login.empty() ? QString("sa") : ui::text(oturum_.SQL_Login));
  sunucu_->setPlaceholderText("BİLGİSAYAR  ya da  BİLGİSAYAR\\ÖRNEK  ya da  BİLGİSAYAR,KAPI");
  auto* sina = new QPushButton("Bağlantıyı Sına");
  sina->setObjectName("SinaBtn");
  sina->setAutoDefault(false);
  grid->addWidget(sina, 3, 1, Qt::AlignLeft);
  connect(sina, &QPushButton::clicked, this, &IlkKurulumPenceresi::sina);
  return page;
}

IlkKurulumPenceresi::Yol IlkKurulumPenceresi::yol() const {
  for (const Yol yol : {Hazirla, Baglan})
    if (yollar_[yol]->isChecked()) return yol;
  return Ornek;
}

void IlkKurulumPenceresi::yolDegisti() {
  constexpr const char* yazilar[] = {"Hazırla", "Bağlan", "Örnekle Başla"};
  tamamBtn_->setText(yazilar[yol()]);
  sayfalar_->setCurrentIndex(yol() == Baglan ? 1 : 0);
  iyi_->clear();
  iyi_->setVisible(false);
  denetle();
  (yol() == Baglan ? sunucu_ : sifre_)->setFocus(Qt::OtherFocusReason);
}

// What is wrong with name and password is said while they are typed, not before anything was.
void IlkKurulumPenceresi::denetle() {
  QString hata;
  if (yol() != Baglan && !sifre_->text().isEmpty()) {
    hata = ui::text(catalog::yoneticiHatasi(ui::utf8(yonetici_->text()), ui::utf8(sifre_->text())));
    if (hata.isEmpty() && !tekrar_->text().isEmpty() && !sifre_->text().startsWith(tekrar_->text()))
      hata = sifrelerFarkli;
  }
  hata_->setText(hata);
  hata_->setVisible(!hata.isEmpty());
}

void IlkKurulumPenceresi::sina() {
  const session::SysInf degerler{ui::utf8(sunucu_->text()), ui::utf8(giris_->text()),
                                 ui::utf8(sqlSifre_->text())};
  const auto hata = std::make_shared<std::string>();
  const auto sonuc = ui::birakilabilirIs(
      this, oturum_, "Sunucunun yanıtı bekleniyor",
      [degerler, hata](session::Oturum& o) { *hata = company::Sunucuyu_Sina(o, degerler); });
  if (sonuc != ui::IsSonucu::Bitti) return;
  hata_->setText(ui::text(*hata));
  hata_->setVisible(!hata->empty());
  iyi_->setText("Sunucu yanıt verdi ve kullanıcıyı tanıdı.");
  iyi_->setVisible(hata->empty());
}

void IlkKurulumPenceresi::tamam() {
  const auto hata = std::make_shared<std::string>();
  ui::IsSonucu sonuc;
  if (yol() == Baglan) {
    const session::SysInf degerler{ui::utf8(sunucu_->text()), ui::utf8(giris_->text()),
                                   ui::utf8(sqlSifre_->text())};
    sonuc = ui::birakilabilirIs(
        this, oturum_, "Sunucunun yanıtı bekleniyor",
        [degerler, hata](session::Oturum& o) { *hata = company::Sunucuya_Bagla(o, degerler); });
  } else if (sifre_->text() != tekrar_->text()) {
    *hata = sifrelerFarkli;
    tekrar_->setFocus(Qt::OtherFocusReason);
    sonuc = ui::IsSonucu::Bitti;
  } else {
    const company::IlkKurulum kurulum{ui::utf8(yonetici_->text().trimmed()), ui::utf8(sifre_->text()),
                                      yol() == Ornek};
    sonuc = ui::uzunIs(this, oturum_,
                       {yol() == Ornek ? "Örnek firma hazırlanıyor" : "Bu bilgisayar hazırlanıyor"},
                       [&] { *hata = company::Bu_Makineyi_Hazirla(oturum_, kurulum); });
  }
  if (sonuc != ui::IsSonucu::Bitti) return;
  hata_->setText(ui::text(*hata));
  hata_->setVisible(!hata->empty());
  if (hata->empty()) accept();
}

QString IlkKurulumPenceresi::yonetici() const {
  return yol() == Baglan ? QString() : yonetici_->text().trimmed();
}
QString IlkKurulumPenceresi::sifre() const {
  return yol() == Baglan ? QString() : sifre_->text();
}

}  // namespace session_ui
