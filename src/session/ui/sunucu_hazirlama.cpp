#include "session/ui/sunucu_hazirlama.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "ui/fields.h"
#include "ui/form.h"
#include "ui/resim.h"
#include "ui/theme.h"
#include "ui/uzun_is.h"

namespace session_ui {
namespace {

constexpr int nameWidth = 15;  // width of sysuslng.sysus_nm
constexpr int textWidth = 400, headingIcon = 40;

}  // namespace

QLineEdit* alanEkle(QGridLayout* grid, int line, const char* name, const QString& caption, bool password) {
  auto* edit = new QLineEdit;
  edit->setObjectName(name);
  if (password) edit->setEchoMode(QLineEdit::Password);
  ui::row(grid, line, caption, edit);
  return edit;
}

YoneticiAlanlari yoneticiAlanlari(QGridLayout* grid) {
  grid->setHorizontalSpacing(ui::gap);
  grid->setVerticalSpacing(ui::gapSmall);
  const YoneticiAlanlari alanlar{alanEkle(grid, 0, "YoneticiAdi", "Yönetici Adı :", false),
                                 alanEkle(grid, 1, "YoneticiSifre", "Şifre :", true),
                                 alanEkle(grid, 2, "YoneticiSifre2", "Şifre (Tekrar) :", true)};
  alanlar.ad->setText("KORVENA");
  grid->addWidget(ui::wrapped(yoneticiKurali, "ipucu"), 3, 1);
  return alanlar;
}

SunucuHazirlama::SunucuHazirlama(session::Oturum& oturum, const SunucuHazirlayici& hazirla, QWidget* parent)
    : QDialog(parent), oturum_(oturum), hazirlayici_(hazirla), hata_(ui::wrapped({}, "hata")) {
  setWindowTitle("Sunucu Hazırlama");
  auto* picture = new ui::Resim(headingIcon, "sunucu");
  auto* text = new QLabel(
      "Bu sunucuda tanım veritabanı bulunamadı. Sunucuyu kullanıma hazırlamak için yöneticinin adını ve "
      "şifresini belirleyiniz.");
  text->setWordWrap(true);
  text->setMinimumWidth(textWidth);
  auto* head = new QHBoxLayout;
  head->setSpacing(ui::gap);
  head->addWidget(picture, 0, Qt::AlignTop);
  head->addWidget(text, 1);

  auto* grid = new QGridLayout;
  const YoneticiAlanlari alanlar = yoneticiAlanlari(grid);
  yonetici_ = alanlar.ad;
  sifre_ = alanlar.sifre;
  tekrar_ = alanlar.tekrar;
  // A password cut short in silence would never be typed again as it is kept: its length is checked.
  yonetici_->setMaxLength(nameWidth);
  hata_->setObjectName("HataLbl");
  hata_->setMinimumHeight(hata_->fontMetrics().height() * 2);

  hazirlaBtn_ = new QPushButton("Hazırla");
  hazirlaBtn_->setObjectName("HazirlaBtn");

  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(ui::gapLarge, ui::gapLarge, ui::gapLarge, ui::gapLarge);
  layout->setSpacing(ui::gap);
  layout->addLayout(head);
  layout->addLayout(grid);
  layout->addWidget(hata_);
  layout->addLayout(ui::dialogButtons(this, hazirlaBtn_));

  auto* keys = new ui::FieldKeys(this, ui::loginColours, false);
  keys->watch(yonetici_, ";YoneticiSifre2;;YoneticiSifre");
  keys->watch(sifre_, ";YoneticiAdi;;YoneticiSifre2");
  keys->watch(tekrar_, ";YoneticiSifre;;HazirlaBtn");
  sifre_->setFocus();
  connect(hazirlaBtn_, &QPushButton::clicked, this, &SunucuHazirlama::hazirla);
}

QString SunucuHazirlama::yonetici() const {
  return yonetici_->text();
}
QString SunucuHazirlama::sifre() const {
  return sifre_->text();
}

void SunucuHazirlama::hazirla() {
  QString hata;
  if (sifre_->text() != tekrar_->text()) {
    hata = sifrelerFarkli;
    tekrar_->setFocus(Qt::OtherFocusReason);
    tekrar_->selectAll();
  } else {
    const std::string ad = ui::utf8(yonetici_->text().trimmed()), sifre = ui::utf8(sifre_->text());
    std::string sonuc;
    if (ui::uzunIs(this, oturum_, {"Sunucu hazırlanıyor"},
                   [&] { sonuc = hazirlayici_(oturum_, ad, sifre); }) != ui::IsSonucu::Bitti)
      return;
    hata = ui::text(sonuc);
  }
  hata_->setText(hata);
  if (hata.isEmpty()) accept();
}

}  // namespace session_ui
