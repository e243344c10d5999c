#include "session/ui/sunucu_hazirlama.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "ui/fields.h"
#include "ui/resim.h"
#include "ui/theme.h"
#include "ui/uzun_is.h"

namespace session_ui {
namespace {

constexpr int nameWidth = 15;  // width of sysuslng.sysus_nm
constexpr int textWidth = 400, headingIcon = 40;

QLineEdit* entry(QGridLayout* grid, int line, const char* name, const QString& caption, bool password) {
  auto* edit = new QLineEdit;
  edit->setObjectName(name);
  // A password cut short in silence would never be typed again as it is kept: its length is checked.
  if (password)
    edit->setEchoMode(QLineEdit::Password);
  else
    edit->setMaxLength(nameWidth);
  auto* label = new QLabel(caption);
  label->setProperty("rol", "alan");
  label->setBuddy(edit);
  grid->addWidget(label, line, 0, Qt::AlignRight | Qt::AlignVCenter);
  grid->addWidget(edit, line, 1);
  return edit;
}

}  // namespace

SunucuHazirlama::SunucuHazirlama(session::Oturum& oturum, const SunucuHazirlayici& hazirla, QWidget* parent)
    : QDialog(parent), oturum_(oturum), hazirlayici_(hazirla), hata_(new QLabel) {
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
  grid->setHorizontalSpacing(ui::gap);
  grid->setVerticalSpacing(ui::gapSmall);
  yonetici_ = entry(grid, 0, "YoneticiAdi", "Yönetici Adı :", false);
  sifre_ = entry(grid, 1, "YoneticiSifre", "Şifre :", true);
  tekrar_ = entry(grid, 2, "YoneticiSifre2", "Şifre (Tekrar) :", true);
  yonetici_->setText("KORVENA");
  auto* kural = new QLabel(yoneticiKurali);
  kural->setProperty("rol", "ipucu");
  kural->setWordWrap(true);
  grid->addWidget(kural, 3, 1);
  hata_->setObjectName("HataLbl");
  hata_->setWordWrap(true);
  hata_->setProperty("rol", "hata");
  hata_->setMinimumHeight(hata_->fontMetrics().height() * 2);

  hazirlaBtn_ = new QPushButton("Hazırla");
  hazirlaBtn_->setObjectName("HazirlaBtn");
  hazirlaBtn_->setProperty("rol", "ana");
  hazirlaBtn_->setDefault(true);
  auto* vazgec = new QPushButton("Vazgeç");
  vazgec->setObjectName("VazgecBtn");
  vazgec->setAutoDefault(false);
  auto* buttons = new QHBoxLayout;
  buttons->addStretch(1);
  buttons->addWidget(hazirlaBtn_);
  buttons->addWidget(vazgec);

  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(ui::gapLarge, ui::gapLarge, ui::gapLarge, ui::gapLarge);
  layout->setSpacing(ui::gap);
  layout->addLayout(head);
  layout->addLayout(grid);
  layout->addWidget(hata_);
  layout->addLayout(buttons);

  auto* keys = new ui::FieldKeys(this, ui::loginColours, false);
  keys->watch(yonetici_, ";YoneticiSifre2;;YoneticiSifre");
  keys->watch(sifre_, ";YoneticiAdi;;YoneticiSifre2");
  keys->watch(tekrar_, ";YoneticiSifre;;HazirlaBtn");
  sifre_->setFocus();
  connect(hazirlaBtn_, &QPushButton::clicked, this, &SunucuHazirlama::hazirla);
  connect(vazgec, &QPushButton::clicked, this, &QDialog::reject);
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
    hata = "İki şifre birbirinden farklı.";
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
