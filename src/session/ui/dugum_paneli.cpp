#include "session/ui/dugum_paneli.h"

#include <QAction>
#include <QFrame>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QToolButton>
#include <QVBoxLayout>

#include "session/tarih.h"
#include "session/ui/bilgi_okuyucu.h"
#include "ui/fields.h"
#include "ui/resim.h"
#include "ui/theme.h"

namespace session_ui {
namespace {

constexpr int pictureSize = 48, rowCount = 10, buttonIcon = 20;

QLabel* label(const char* role, bool wrap = false) {
  auto* result = new QLabel;
  result->setProperty("rol", role);
  result->setTextFormat(Qt::PlainText);
  result->setWordWrap(wrap);
  return result;
}

// A text that scrolls, and can be selected and copied; the whole of it is in the tip.
QLineEdit* deger(const char* role) {
  auto* result = new QLineEdit;
  result->setProperty("rol", role);
  result->setReadOnly(true);
  result->setFrame(false);
  result->setFocusPolicy(Qt::ClickFocus);
  return result;
}

void yaz(QLineEdit* alan, const QString& metin) {
  alan->setText(metin);
  alan->setCursorPosition(0);
  alan->setToolTip(metin);
}

QString zamanYazisi(const db::DateTime& an) {
  return ui::text(session::tarihYaz(an)) +
         QString("  %1:%2").arg(an.hour, 2, 10, QChar('0')).arg(an.minute, 2, 10, QChar('0'));
}

constexpr const char* supervisorHint =
    "Enter veya çift tıklama: değiştir\nInsert: yeni kayıt\nDelete: sil\nSağ tuş: bütün işlemler";
constexpr const char* userHint = "Sağ tuş: bütün işlemler";

}  // namespace

DugumPaneli::DugumPaneli(const session::Oturum& oturum, const std::vector<QAction*>& komutlar)
    : oturum_(oturum),
      resim_(new ui::Resim(pictureSize)),
      altbaslik_(label("altbaslik", true)),
      ipucu_(label("ipucu", true)),
      geride_(new QLabel),
      baslik_(deger("baslik")),
      komutlar_(new QWidget),
      okuyucu_(new BilgiOkuyucu(this)) {
  setProperty("rol", "kart");
  setAttribute(Qt::WA_StyledBackground);
  connect(okuyucu_, &BilgiOkuyucu::okundu, this, &DugumPaneli::bilgiGeldi);
  auto* titles = new QVBoxLayout;
  titles->setSpacing(0);
  titles->addWidget(baslik_);
  titles->addWidget(altbaslik_);
  auto* head = new QHBoxLayout;
  head->setSpacing(ui::gap);
  head->addWidget(resim_);
  head->addLayout(titles, 1);

  auto* grid = new QGridLayout;
  grid->setHorizontalSpacing(ui::gapLarge);
  grid->setVerticalSpacing(ui::gapSmall);
  grid->setColumnStretch(1, 1);
  for (int i = 0; i < rowCount; ++i) {
    satirlar_.push_back({label("alan"), deger("deger")});
    satirlar_.back().yazi->setBuddy(satirlar_.back().deger);
    grid->addWidget(satirlar_.back().yazi, i, 0);
    grid->addWidget(satirlar_.back().deger, i, 1);
  }

  auto* buttons = new QGridLayout(komutlar_);
  buttons->setContentsMargins(0, 0, 0, 0);
  buttons->setSpacing(ui::gapSmall);
  constexpr int perRow = 2;
  int place = 0;
  for (QAction* komut : komutlar) {
    auto* button = new QToolButton;
    button->setProperty("rol", "komut");
    button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    button->setIconSize(ui::captionIconSize(buttonIcon));
    button->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    button->setFocusPolicy(Qt::TabFocus);
    button->setDefaultAction(komut);
    ui::pressByEnter(button);
    connect(komut, &QAction::changed, button, [button, komut] { button->setVisible(komut->isVisible()); });
    buttons->addWidget(button, place / perRow, place % perRow);
    ++place;
  }

  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(ui::gapLarge, ui::gapLarge, ui::gapLarge, ui::gapLarge);
  layout->setSpacing(ui::gapLarge);
  layout->addLayout(head);
  layout->addLayout(grid);
  layout->addWidget(guncelleSatiri());
  layout->addWidget(komutlar_);
  layout->addWidget(girisSatiri());
  layout->addStretch(1);
  layout->addWidget(ipucu_);
}

// Shown where the schema is behind.
QWidget* DugumPaneli::guncelleSatiri() {
  guncelle_ = new QWidget;
  guncelle_->setObjectName("GuncelleFrm");
  guncelle_->setProperty("rol", "uyari");
  guncelle_->setAttribute(Qt::WA_StyledBackground);
  geride_->setObjectName("GerideLbl");
  geride_->setWordWrap(true);
  auto* guncelle = new QPushButton("Güncelle");
  guncelle->setObjectName("GuncelleBtn");
  auto* dene = new QPushButton("Dene");
  dene->setObjectName("GuncelleDeneBtn");
  dene->setToolTip("Güncellemeyi çalıştırıp geri alır: nelerin değişeceğini söyler, hiçbir şeyi değiştirmez");
  auto* row = new QHBoxLayout;
  row->addStretch(1);
  row->addWidget(dene);
  row->addWidget(guncelle);
  auto* layout = new QVBoxLayout(guncelle_);
  layout->addWidget(geride_);
  layout->addLayout(row);
  connect(guncelle, &QPushButton::clicked, this, [this] { emit this->guncelle(false); });
  connect(dene, &QPushButton::clicked, this, [this] { emit this->guncelle(true); });
  return guncelle_;
}

// Shown in the console that came up without a catalog.
QWidget* DugumPaneli::girisSatiri() {
  giris_ = new QWidget;
  auto* don = new QPushButton("Girişe Dön");
  don->setObjectName("GiriseDonBtn");
  auto* ayar = new QPushButton("Sunucu Ayarları…");
  ayar->setObjectName("BaglantiAyariBtn");
  auto* row = new QHBoxLayout(giris_);
  row->setContentsMargins(0, 0, 0, 0);
  row->addWidget(don);
  row->addWidget(ayar);
  row->addStretch(1);
  connect(don, &QPushButton::clicked, this, &DugumPaneli::girisAc);
  connect(ayar, &QPushButton::clicked, this, &DugumPaneli::baglantiAyari);
  return giris_;
}

void DugumPaneli::birak() {
  okuyucu_->birak();
}

void DugumPaneli::doldur(const QString& resim, const QString& baslik, const QString& altbaslik) {
  resim_->goster(resim);
  resim_->setAccessibleName(altbaslik);
  yaz(baslik_, baslik);
  altbaslik_->setText(altbaslik);
  for (const Satir& s : satirlar_) {
    s.yazi->setVisible(false);
    s.deger->setVisible(false);
  }
  dolu_ = 0;
  guncelle_->setVisible(false);
  giris_->setVisible(false);
  komutlar_->setVisible(true);
  ipucu_->setText(oturum_.Supervisor ? supervisorHint : userHint);
}

void DugumPaneli::satir(const QString& yazi, const QString& metin) {
  const Satir& s = satirlar_[dolu_++];
  s.yazi->setText(yazi);
  yaz(s.deger, metin);
  s.deger->setAccessibleName(yazi);
  s.yazi->setVisible(true);
  s.deger->setVisible(true);
}

// Without `bilgi` what is read in the background is not there yet.
void DugumPaneli::firmaSatirlari(const OkunanBilgi* bilgi) {
  const auto bekle = [&](const auto& deger, auto yazi) {
    if (!bilgi) return QString("okunuyor…");
    return deger ? yazi(*deger) : QString("bilinmiyor");
  };
  const OkunanBilgi b = bilgi ? *bilgi : OkunanBilgi{};
  const QString eksik = b.eksik ? ui::text(company::upgrade::eksikYazisi(*b.eksik)) : QString();
  const bool eski = dugum_.surum != session::programSurumu;
  const bool geride = eski || !eksik.isEmpty();
  QStringList surum{dugum_.surum.empty() ? QString("bilinmiyor") : ui::text(dugum_.surum)};
  if (bilgi && eski) surum << "güncel: " + ui::text(session::programSurumu);
  geride_->setText("Veritabanının şeması geride" + (eksik.isEmpty() ? QString(".") : ": " + eksik + "."));
  doldur("firma", ui::text(dugum_.text), b.veritabaniVar ? "Firma veritabanı" : "Veritabanı sunucuda yok");
  satir("Unvan", ui::text(dugum_.unvan));
  satir("Firma Kodu", ui::text(dugum_.kod));
  if (dugum_.bas && dugum_.bit)
    satir("Dönem", ui::text(session::tarihYaz(*dugum_.bas) + " – " + session::tarihYaz(*dugum_.bit)));
  satir("Diskteki Boyut", bekle(b.boyut, [](double bayt) { return ui::text(session::boyutYazisi(bayt)); }));
  satir("Şema Sürümü", surum.join(", "));
  satir("Kullanıcı Sayısı", bekle(b.kullanici, [](std::int64_t n) { return QString::number(n); }));
  satir("Kullanıcıları", dugum_.baglar.empty() ? QString("(yok)") : ui::text(dugum_.baglar));
  if (oturum_.yedekler)
    satir("Son Yedek", !bilgi ? "okunuyor…" : b.sonYedek ? zamanYazisi(*b.sonYedek) : "kayıtlı yedek yok");
  satir("Sunucu", ui::text(oturum_.Server_Adi));
  satir("Veri Klasörü", ui::text(oturum_.Veri_Klasoru));
  guncelle_->setVisible(bilgi && b.veritabaniVar && geride && oturum_.Supervisor);
}

void DugumPaneli::bilgiGeldi(qint64 id, const OkunanBilgi& bilgi) {
  if (dugum_.kind == session::dugum::F && dugum_.id == id) firmaSatirlari(&bilgi);
}

void DugumPaneli::goster(const session::Dugum& dugum, int altSayisi) {
  dugum_ = dugum;
  const QString ad = ui::text(dugum.text);
  if (dugum.kind == session::dugum::F) {
    firmaSatirlari(nullptr);
    okuyucu_->iste(oturum_, dugum);
    return;
  }
  okuyucu_->birak();
  if (dugum.kind == session::dugum::K) {
    const bool yonetici = dugum.id == 1;
    doldur("kullanici", ad, yonetici ? "Yönetici (Supervisor)" : "Kullanıcı");
    satir("Kullanıcı No", QString::number(dugum.id));
    satir("Firmaları", dugum.baglar.empty() ? QString("(yok)") : ui::text(dugum.baglar));
  } else {
    const bool firma = dugum.kind == session::dugum::FT;
    doldur(firma ? "firmalar" : "kullanicilar", ad,
           firma ? "Firmalar ve dönem veritabanları" : "Program kullanıcıları");
    satir(firma ? "Firma Sayısı" : "Kullanıcı Sayısı", QString::number(altSayisi));
  }
}

void DugumPaneli::bos() {
  dugum_ = {};
  doldur("sunucu", "Tanım veritabanına ulaşılamadı",
         "Firma ve kullanıcı listesi bağlantı kurulmadan gösterilemez.");
  satir("Sunucu", oturum_.Server_Adi.empty() ? QString("(belirtilmemiş)") : ui::text(oturum_.Server_Adi));
  komutlar_->setVisible(false);
  giris_->setVisible(true);
  ipucu_->setText("Sunucu bilgilerini düzeltmek ya da yeniden denemek için yukarıdaki düğmeleri kullanınız.");
}

}  // namespace session_ui
