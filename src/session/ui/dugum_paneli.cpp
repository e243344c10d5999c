#include "session/ui/dugum_paneli.h"

#include <QAction>
#include <QFrame>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QStyle>
#include <QToolButton>
#include <QVBoxLayout>

#include "session/konsol.h"
#include "ui/fields.h"
#include "ui/theme.h"

namespace session_ui {
namespace {

constexpr int pictureSize = 48, rowCount = 4, buttonIcon = 20;

QLabel* label(const char* role, bool wrap = false) {
  auto* result = new QLabel;
  result->setProperty("rol", role);
  result->setTextFormat(Qt::PlainText);
  result->setWordWrap(wrap);
  return result;
}

// Names and paths have no place to break: they are cut with dots where the window is narrow, and the whole
// text is in the tip.
class KisaYazi : public QLabel {
 public:
  explicit KisaYazi(const char* role) {
    setProperty("rol", role);
    setTextFormat(Qt::PlainText);
  }
  QSize minimumSizeHint() const override { return {0, QLabel::minimumSizeHint().height()}; }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    const QString shown = fontMetrics().elidedText(text(), Qt::ElideMiddle, width());
    setToolTip(shown == text() ? QString() : text());
    style()->drawItemText(&painter, rect(), Qt::AlignLeft | Qt::AlignVCenter, palette(), isEnabled(), shown,
                          foregroundRole());
  }
};

constexpr const char* supervisorHint =
    "Enter veya çift tıklama: değiştir\nInsert: yeni kayıt\nDelete: sil\nSağ tuş: bütün işlemler";
constexpr const char* userHint = "Sağ tuş: bütün işlemler";

}  // namespace

DugumPaneli::DugumPaneli(const session::Oturum& oturum, const std::vector<QAction*>& komutlar)
    : oturum_(oturum),
      resim_(new QLabel),
      baslik_(new KisaYazi("baslik")),
      altbaslik_(label("altbaslik", true)),
      ipucu_(label("ipucu", true)),
      komutlar_(new QWidget) {
  setProperty("rol", "kart");
  setAttribute(Qt::WA_StyledBackground);
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
    satirlar_.emplace_back(label("alan"), new KisaYazi("deger"));
    grid->addWidget(satirlar_.back().first, i, 0);
    grid->addWidget(satirlar_.back().second, i, 1);
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
  layout->addWidget(komutlar_);
  layout->addStretch(1);
  layout->addWidget(ipucu_);
}

void DugumPaneli::doldur(const QString& resim, const QString& baslik, const QString& altbaslik) {
  resim_->setPixmap(ui::icon(resim).pixmap(QSize(pictureSize, pictureSize), devicePixelRatioF()));
  baslik_->setText(baslik);
  altbaslik_->setText(altbaslik);
  for (auto& [yazi, deger] : satirlar_) {
    yazi->clear();
    deger->clear();
    yazi->setVisible(false);
    deger->setVisible(false);
  }
  komutlar_->setVisible(true);
  ipucu_->setText(oturum_.Supervisor ? supervisorHint : userHint);
}

void DugumPaneli::satir(int sira, const QString& yazi, const QString& deger) {
  auto& [sol, sag] = satirlar_[static_cast<std::size_t>(sira)];
  sol->setText(yazi);
  sag->setText(deger);
  sol->setVisible(true);
  sag->setVisible(true);
}

void DugumPaneli::goster(const session::Dugum& dugum, int altSayisi) {
  const QString ad = ui::text(dugum.text);
  if (dugum.kind == session::dugum::F) {
    doldur("firma", ad, "Firma veritabanı");
    satir(0, "Firma Kodu", ui::text(dugum.kod));
    satir(1, "Sunucu", ui::text(oturum_.Server_Adi));
    satir(2, "Veri Klasörü", ui::text(oturum_.Veri_Klasoru));
    satir(3, "Kullanıcıları", dugum.baglar.empty() ? QString("(yok)") : ui::text(dugum.baglar));
  } else if (dugum.kind == session::dugum::K) {
    const bool yonetici = dugum.id == 1;
    doldur("kullanici", ad, yonetici ? "Yönetici (Supervisor)" : "Kullanıcı");
    satir(0, "Kullanıcı No", QString::number(dugum.id));
    satir(1, "Firmaları", dugum.baglar.empty() ? QString("(yok)") : ui::text(dugum.baglar));
  } else {
    const bool firma = dugum.kind == session::dugum::FT;
    doldur(firma ? "firmalar" : "kullanicilar", ad,
           firma ? "Firmalar ve dönem veritabanları" : "Program kullanıcıları");
    satir(0, firma ? "Firma Sayısı" : "Kullanıcı Sayısı", QString::number(altSayisi));
  }
}

void DugumPaneli::bos() {
  doldur("sunucu", "Tanım veritabanına ulaşılamadı",
         "Firma ve kullanıcı listesi bağlantı kurulmadan gösterilemez.");
  satir(0, "Sunucu", oturum_.Server_Adi.empty() ? QString("(belirtilmemiş)") : ui::text(oturum_.Server_Adi));
  komutlar_->setVisible(false);
  ipucu_->setText(
      "Sunucu parametrelerini düzeltmek ya da veritabanlarını aktarmak için soldaki açık düğmeleri "
      "kullanınız.");
}

}  // namespace session_ui
