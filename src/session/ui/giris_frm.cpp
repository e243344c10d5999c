#include "session/ui/giris_frm.h"

#include <QApplication>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QShortcut>
#include <QTimer>
#include <QVBoxLayout>
#include <memory>

#include "company/ilk_kurulum.h"
#include "session/giris.h"
#include "session/statements.h"
#include "session/ui/ilk_kurulum_penceresi.h"
#include "session/ui/sunucu_hazirlama.h"
#include "ui/fields.h"
#include "ui/form.h"
#include "ui/tekrar.h"
#include "ui/theme.h"
#include "ui/uzun_is.h"
#include "ui/yer.h"

namespace session_ui {
namespace {

constexpr int artWidth = 250, fieldWidth = 230, windowHeight = 350;

// The picture on the left, drawn from its vector form at whatever size and scale the screen has.
class Zemin : public QWidget {
 public:
  Zemin() : picture_(ui::icon("zemin")), mark_(ui::icon("zembera")) {
    setObjectName("Zemin");
    setFixedWidth(artWidth);
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    const int tall = std::max(height(), width() * 400 / 260);
    picture_.paint(&painter, QRect(0, height() - tall, tall * 260 / 400, tall));
    mark_.paint(&painter, QRect(26, 30, 52, 52));
    painter.setPen(Qt::white);
    QFont big = font();
    big.setPointSize(21);
    painter.setFont(big);
    painter.drawText(QRect(26, 92, width() - 40, 40), Qt::AlignLeft | Qt::AlignVCenter, "Zembera");
    painter.setPen(QColor(0xCF, 0xDF, 0xEE));
    painter.setFont(font());
    painter.drawText(QRect(27, 132, width() - 40, 24), Qt::AlignLeft | Qt::AlignVCenter, "Yönetim Konsolu");
  }

 private:
  QIcon picture_, mark_;
};

QLineEdit* field(const char* name, bool password, const QString& text = {}) {
  auto* result = new QLineEdit(text);
  result->setObjectName(name);
  result->setFixedWidth(fieldWidth);
  if (password) result->setEchoMode(QLineEdit::Password);
  return result;
}

void row(QGridLayout* grid, int line, const char* labelName, const QString& caption, QLineEdit* edit) {
  ui::row(grid, line, caption, edit)->setObjectName(labelName);
}

}  // namespace

GirisFrm::GirisFrm(session::Oturum& oturum, SunucuHazirlayici hazirla)
    : oturum_(oturum),
      hazirla_(std::move(hazirla)),
      kullanici_(field("Kullanici", false, "Korvena")),
      sifre_(field("Sifre", true)),
      server_(field("Server", false)),
      sqlSa_(field("SQLsaTxt", false)),
      sqlSaSifre_(field("SQLsaSifreTxt", true)),
      msKullanici_(field("MsKullanici_Adi", false, "Korvena")),
      msSifre_(field("MsSifresi", true)) {
  setWindowTitle("Zembera");
  setObjectName("Giris_Frm");
  auto* layout = new QHBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->addWidget(soldakiResim());
  layout->addWidget(alanlar(), 1);
  layout->setSizeConstraint(QLayout::SetFixedSize);
  tuslariBagla();
  connect(tamamBtn_, &QPushButton::clicked, this, &GirisFrm::tamam);
  connect(cikisBtn_, &QPushButton::clicked, this, &GirisFrm::cikis);
}

QWidget* GirisFrm::soldakiResim() {
  return new Zemin;
}

QWidget* GirisFrm::alanlar() {
  auto* title = new QLabel("Oturum Açma");
  title->setProperty("rol", "baslik");
  auto* hint = new QLabel("Kullanıcı adınızı ve şifrenizi giriniz.");
  hint->setProperty("rol", "altbaslik");
  sunucuLbl_ = new QLabel;
  sunucuLbl_->setObjectName("SunucuLbl");
  sunucuLbl_->setProperty("rol", "altbaslik");
  sunucuLbl_->setTextFormat(Qt::PlainText);

  auto* frame = new QWidget;
  frame->setObjectName("KlFrm");
  auto* grid = new QGridLayout(frame);
  grid->setContentsMargins(0, ui::gap, 0, ui::gap);
  grid->setHorizontalSpacing(ui::gap);
  grid->setVerticalSpacing(ui::gap);
  row(grid, 0, "Label4", "Kullanıcı Adı  :", kullanici_);
  row(grid, 1, "Label5", "Şifre :", sifre_);

  tamamBtn_ = new QPushButton("Tamam");
  tamamBtn_->setObjectName("TamamBtn");
  tamamBtn_->setProperty("rol", "ana");
  cikisBtn_ = new QPushButton("Çıkış");
  cikisBtn_->setObjectName("CikisBtn");
  auto* ayar = new QPushButton("Sunucu Ayarları…");
  ayar->setObjectName("SunucuAyarBtn");
  ayar->setProperty("rol", "duz");
  ayar->setToolTip(
      "Bu bilgisayarı hazırlamak, başka bir sunucuya bağlanmak ya da örnek verilerle denemek için");
  connect(ayar, &QPushButton::clicked, this, &GirisFrm::baglantiAyari);
  auto* buttons = new QHBoxLayout;
  buttons->setSpacing(ui::gap);
  buttons->addWidget(ayar);
  buttons->addStretch(1);
  buttons->addWidget(tamamBtn_);
  buttons->addWidget(cikisBtn_);

  auto* side = new QWidget;
  side->setMinimumHeight(windowHeight);
  auto* layout = new QVBoxLayout(side);
  layout->setContentsMargins(32, 24, 32, 24);
  layout->setSpacing(ui::gapSmall);
  layout->addStretch(1);
  layout->addWidget(title);
  layout->addWidget(hint);
  layout->addWidget(sunucuLbl_);
  layout->addWidget(frame);
  layout->addWidget(etkisizAlanlar());
  layout->addLayout(buttons);
  layout->addStretch(1);
  return side;
}

// No step of the login reads these fields; they keep their place in the keys and colours, out of sight.
QWidget* GirisFrm::etkisizAlanlar() {
  auto* all = new QWidget;
  all->setObjectName("SunucuFrm");
  auto* grid = new QGridLayout(all);
  grid->setContentsMargins(0, 0, 0, ui::gap);
  row(grid, 0, "Label1", "Server Adı :", server_);
  row(grid, 1, "Label2", "Admin Adı :", sqlSa_);
  row(grid, 2, "Label3", "Admin Şifre :", sqlSaSifre_);
  auto* master = new QGroupBox;
  master->setObjectName("MsFrm");
  auto* inner = new QGridLayout(master);
  row(inner, 0, "Label18", "Master Kullanıcı Adı  :", msKullanici_);
  row(inner, 1, "Label17", "Master Şifre :", msSifre_);
  tm_ = new QPushButton("Tamam");
  tm_->setObjectName("Tm");
  inner->addWidget(tm_, 2, 1, Qt::AlignRight);
  grid->addWidget(master, 3, 0, 1, 2);
  all->setVisible(false);
  return all;
}

void GirisFrm::tuslariBagla() {
  // Down and Up go round Kullanici, Sifre, Server, SQLsaTxt, SQLsaSifreTxt; behind each bar stands the
  // next field of the ring for the case that a field is out of sight.
  struct Alan {
    QLineEdit* edit;
    const char* tag;
  };
  const Alan fields[] = {
      {kullanici_, ";SQLsaSifreTxt|SQLsaTxt|Server|Sifre;;Sifre"},
      {sifre_, ";Kullanici;;Server|SQLsaTxt|SQLsaSifreTxt|Kullanici"},
      {server_, ";Sifre;;SQLsaTxt"},
      {sqlSa_, ";Server;;SQLsaSifreTxt"},
      {sqlSaSifre_, ";SQLsaTxt;;Kullanici"},
      {msKullanici_, ";;;MsSifresi"},
      {msSifre_, ";MsKullanici_Adi;;"},
  };
  auto* keys = new ui::FieldKeys(this, ui::loginColours, false);
  for (const Alan& alan : fields) {
    keys->watch(alan.edit, alan.tag);
    QPushButton* enter = alan.edit == msKullanici_ || alan.edit == msSifre_ ? tm_ : tamamBtn_;
    connect(alan.edit, &QLineEdit::returnPressed, enter, &QPushButton::click);
  }
  keys->watch(tamamBtn_, ";Server|Sifre;CikisBtn;");
  keys->watch(cikisBtn_, "TamamBtn;Server|Sifre;;");

  auto* version = new QShortcut(QKeySequence("Ctrl+Shift+V"), this);
  connect(version, &QShortcut::activated, this, [this] { session::Versiyon_Bilgisi(oturum_); });
}

// The user name comes filled, so the password is what is missing.
void GirisFrm::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  sifre_->setFocus(Qt::OtherFocusReason);
  sunucuyuYaz();
  if (!company::Kurulum_Eksigi(oturum_).empty()) QTimer::singleShot(0, this, &GirisFrm::baglantiAyari);
}

void GirisFrm::sunucuyuYaz() {
  sunucuLbl_->setText("Sunucu: " +
                      (oturum_.Server_Adi.empty() ? QString("belirtilmemiş") : ui::text(oturum_.Server_Adi)));
}

// A server that does not answer can hold this up for the better part of a minute: then it can be left, and
// the screen stays.
session::GirisSonucu GirisFrm::dene(const QString& kullanici, const QString& sifre) {
  const auto sonuc = std::make_shared<session::GirisSonucu>();
  const auto son =
      ui::birakilabilirIs(this, oturum_, "Sunucunun yanıtı bekleniyor: " + ui::text(oturum_.Server_Adi),
                          [sonuc, ad = ui::utf8(kullanici), gizli = ui::utf8(sifre)](session::Oturum& o) {
                            *sonuc = session::Giris_Tamam(o, ad, gizli);
                          });
  if (son == ui::IsSonucu::Bitti) return *sonuc;
  session::GirisSonucu kal;
  kal.odak = session::GirisOdak::Sifre;
  return kal;
}

void GirisFrm::baglantiAyari() {
  if (suruyor_ || bitti_) return;
  const QScopedValueRollback suruyor(suruyor_, true);
  IlkKurulumPenceresi pencere(oturum_, ui::text(company::Kurulum_Eksigi(oturum_)), this);
  ui::ortala(pencere);
  const bool kuruldu = pencere.exec() == QDialog::Accepted;
  ui::ekranDegisti();
  sunucuyuYaz();
  if (!kuruldu || pencere.yonetici().isEmpty()) return;
  // Who has just made a supervisor need not type him once more.
  kullanici_->setText(pencere.yonetici());
  uygula(dene(pencere.yonetici(), pencere.sifre()));
}

void GirisFrm::tamam() {
  if (suruyor_ || bitti_) return;
  const QScopedValueRollback suruyor(suruyor_, true);
  session::GirisSonucu sonuc = dene(kullanici_->text(), sifre_->text());
  if (sonuc.adim == session::GirisSonucu::Adim::KatalogYok) sonuc = katalogsuz(sonuc);
  uygula(sonuc);
}

session::GirisSonucu GirisFrm::katalogsuz(const session::GirisSonucu& sonuc) {
  if (hazirla_) {
    SunucuHazirlama dialog(oturum_, hazirla_, this);
    if (dialog.exec() == QDialog::Accepted) {
      kullanici_->setText(dialog.yonetici());
      session::GirisSonucu tekrar = dene(dialog.yonetici(), dialog.sifre());
      if (tekrar.adim != session::GirisSonucu::Adim::KatalogYok) return tekrar;
      return session::Giris_Basarisiz(oturum_, tekrar.hataNo, tekrar.hataMetni);
    }
  }
  return session::Giris_Basarisiz(oturum_, sonuc.hataNo, sonuc.hataMetni);
}

void GirisFrm::uygula(const session::GirisSonucu& sonuc) {
  if (sonuc.adim != session::GirisSonucu::Adim::EkrandaKal) {
    bitti_ = true;
    emit konsolAc();
    return;
  }
  if (sonuc.sifreyiBosalt) sifre_->clear();
  if (sonuc.odak == session::GirisOdak::Yok) return;
  QLineEdit* target = sonuc.odak == session::GirisOdak::Sifre ? sifre_ : kullanici_;
  target->setFocus(Qt::OtherFocusReason);
  target->selectAll();
}

}  // namespace session_ui
