#include "rights/ui/ekle_frm.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>

#include "rights/islem.h"
#include "ui/console_port.h"
#include "ui/fields.h"
#include "ui/form.h"
#include "ui/theme.h"

namespace rights_ui {
namespace {

using Karti = rights::KullaniciKarti;

constexpr int yanYana = 760;  // width from which the list of companies stands beside the fields

enum Grup { Kullanici, Posta };
struct Alan {
  const char *ad, *yazi;
  Grup grup;
  const char* sutun;
  std::string Karti::*metin;
  const char* tag;
  bool gizli = false;  // a password
};
constexpr Alan alanTablosu[] = {
    {"Kullanici_Adi", "Kullanıcı Adı :", Kullanici, "sysus_nm", &Karti::Kullanici_Adi,
     ";;Firmatreelist;Kullanici_Sifre"},
    {"Kullanici_Sifre", "Şifre :", Kullanici, "sysus", &Karti::Kullanici_Sifre,
     ";Kullanici_Adi;Firmatreelist;Sifre_Onay", true},
    {"Sifre_Onay", "Şifre Onayı :", Kullanici, "sysus", &Karti::Sifre_Onay,
     ";Kullanici_Sifre;Firmatreelist;Yonetici", true},
    {"smtpserver", "Posta Sunucusu :", Posta, "smtpserver", &Karti::smtpserver,
     ";Yonetici;Firmatreelist;smtpserverport"},
    {"smtpserverport", "Kapı No :", Posta, "smtpserverport", &Karti::smtpserverport,
     ";smtpserver;Firmatreelist;sendusername"},
    {"sendusername", "Posta Kullanıcısı :", Posta, "sendusername", &Karti::sendusername,
     ";smtpserverport;Firmatreelist;sendpassword"},
    {"sendpassword", "Posta Şifresi :", Posta, "sendpassword", &Karti::sendpassword,
     ";sendusername;Firmatreelist;Firmatreelist", true},
};

}  // namespace

EkleFrm::EkleFrm(session::Oturum& oturum, ui::ConsolePort& konsol)
    : Kart("kullanici", "Kullanıcı Tanımı"), oturum_(oturum), konsol_(konsol) {
  setObjectName("Ekle_Frm");
  auto* left = new QVBoxLayout;
  left->setSpacing(ui::gapSmall);
  left->addWidget(alanCercevesi("Frame1", "Kullanıcı Bilgileri", Kullanici));
  left->addWidget(alanCercevesi("Frame2", "E-Posta Ayarları", Posta));
  left->addStretch(1);
  auto* frames = new QHBoxLayout;
  frames->setSpacing(ui::gap);
  frames->addLayout(left, 3);
  frames->addWidget(firmaCercevesi(), 2);
  body()->addLayout(frames, 1);
  darOlunca(yanYana, [frames](bool dar) {
    frames->setDirection(dar ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight);
  });
  hint()->setText("  Escape (Çıkış)");
  tamam_ = button("Ekle_Tamam", "Tamam", "kaydet", true);
  vazgec_ = button("Ekle_Vazgec", "Vazgeç", "cikis");
  tuslar();
  connect(tamam_, &QPushButton::clicked, this, &EkleFrm::kaydet);
  connect(vazgec_, &QPushButton::clicked, this, &EkleFrm::kapan);
}

QGroupBox* EkleFrm::alanCercevesi(const char* ad, const QString& baslik, int grup) {
  QGroupBox* box = frame(ad, baslik);
  auto* grid = new QGridLayout(box);
  grid->setContentsMargins(ui::gap, ui::gap, ui::gap, ui::gap);
  grid->setHorizontalSpacing(ui::gap);
  grid->setVerticalSpacing(ui::gapSmall);
  grid->setColumnStretch(1, 1);
  int widest = 0;
  for (const Alan& alan : alanTablosu) widest = std::max(widest, fontMetrics().horizontalAdvance(alan.yazi));
  grid->setColumnMinimumWidth(0, widest + ui::gapSmall);
  for (const Alan& alan : alanTablosu) {
    if (alan.grup != grup) continue;
    auto* edit = new QLineEdit;
    edit->setObjectName(alan.ad);
    edit->setMaxLength(rights::kolonGenisligi("sysuslng", alan.sutun));
    if (alan.gizli) edit->setEchoMode(QLineEdit::Password);
    ui::row(grid, grid->rowCount(), alan.yazi, edit);
    alanlar_.push_back(edit);
  }
  if (grup == Kullanici) {
    yonetici_ = new QCheckBox("Yönetici");
    yonetici_->setObjectName("Yonetici");
    grid->addWidget(yonetici_, grid->rowCount(), 1);
    grid->addWidget(
        ui::wrapped("Ad ve şifre en çok 15 karakter olabilir; şifrede Türkçe harf kullanılamaz.", "ipucu"),
        grid->rowCount(), 1);
  }
  return box;
}

QGroupBox* EkleFrm::firmaCercevesi() {
  QGroupBox* box = frame("Frame3", "Kullanacağı Firmalar");
  firmalar_ = new QListWidget;
  firmalar_->setObjectName("Firmatreelist");
  firmalar_->setMinimumHeight(120);
  konum_ = new QLineEdit;
  konum_->setObjectName("KonumText");
  konum_->setReadOnly(true);
  konum_->setFocusPolicy(Qt::NoFocus);
  auto* layout = new QVBoxLayout(box);
  layout->setContentsMargins(ui::gap, ui::gap, ui::gap, ui::gap);
  layout->addWidget(firmalar_, 1);
  layout->addWidget(konum_);
  connect(firmalar_, &QListWidget::itemChanged, this, &EkleFrm::konumYaz);
  connect(firmalar_, &QListWidget::currentRowChanged, this, &EkleFrm::konumYaz);
  return box;
}

void EkleFrm::tuslar() {
  auto* keys = new ui::FieldKeys(this, ui::cardColours, true);
  for (std::size_t i = 0; i < alanlar_.size(); ++i) keys->watch(alanlar_[i], alanTablosu[i].tag);
  keys->watch(yonetici_, ";Sifre_Onay;Firmatreelist;smtpserver");
  keys->watch(tamam_, ";Firmatreelist;Ekle_Vazgec;");
  keys->watch(vazgec_, "Ekle_Tamam;Firmatreelist;;");
  shortcut(Qt::Key_F2, tamam_);
  shortcut(Qt::Key_Escape, vazgec_);
}

void EkleFrm::ac() {
  const bool okundu = rights::Kullanici_Karti_Ac(oturum_, kart_);
  goster();
  const bool acik = okundu && !oturum_.Inceleme;
  konsol_.Durum_Yaz(oturum_.Yeni_Kayit ? "Yeni Kullanıcı Oluşturuluyor"
                    : oturum_.Inceleme ? "Kullanıcı Tanımı İnceleniyor"
                                       : "Kullanıcı Tanımı Değiştiriliyor");
  for (QLineEdit* alan : alanlar_) alan->setReadOnly(!acik);
  yonetici_->setEnabled(acik);
  firmalar_->setEnabled(acik);
  tamam_->setEnabled(acik);
  if (acik)
    alanlar_[0]->setFocus(Qt::OtherFocusReason);
  else
    vazgec_->setFocus();
}

void EkleFrm::goster() {
  for (std::size_t i = 0; i < alanlar_.size(); ++i) {
    alanlar_[i]->setText(ui::text(kart_.*alanTablosu[i].metin));
    alanlar_[i]->setCursorPosition(0);
  }
  yonetici_->setChecked(kart_.Yonetici);
  firmalar_->clear();
  for (const rights::FirmaSatiri& firma : kart_.Firmatreelist) {
    auto* item = new QListWidgetItem(ui::icon("firma"), ui::text(firma.ad), firmalar_);
    item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable);
    item->setCheckState(firma.secili ? Qt::Checked : Qt::Unchecked);
  }
  firmalar_->setCurrentRow(0);
  subheading()->setText(oturum_.Yeni_Kayit
                            ? QString("Yeni kullanıcı; işaretlenen her firmada bütün yetkilerle başlar")
                            : ui::text(kart_.Eski_Ad) +
                                  (oturum_.Inceleme ? " — inceleme" : " — kart düzenleme"));
  konumYaz();
}

void EkleFrm::konumYaz() {
  int secili = 0;
  for (int i = 0; i < firmalar_->count(); ++i)
    secili += firmalar_->item(i)->checkState() == Qt::Checked ? 1 : 0;
  konum_->setText(QString("Firma %1 / %2, seçili %3")
                      .arg(firmalar_->currentRow() + 1)
                      .arg(firmalar_->count())
                      .arg(secili));
}

void EkleFrm::oku() {
  for (std::size_t i = 0; i < alanlar_.size(); ++i)
    kart_.*alanTablosu[i].metin = ui::utf8(alanlar_[i]->text());
  kart_.Yonetici = yonetici_->isChecked();
  for (std::size_t i = 0; i < kart_.Firmatreelist.size(); ++i)
    kart_.Firmatreelist[i].secili = firmalar_->item(static_cast<int>(i))->checkState() == Qt::Checked;
}

void EkleFrm::kaydet() {
  oku();
  rights::KullaniciSonucu sonuc;
  isYap(oturum_, {"Kullanıcı kaydediliyor"}, [&] { sonuc = rights::Ekle_Tamam(oturum_, kart_); });
  if (sonuc.kaydedildi) {
    konsol_.Alan_Listesi_Doldur();
    kapan();
  } else if (sonuc.odak != rights::KullaniciOdak::Yok) {
    alanlar_[sonuc.odak == rights::KullaniciOdak::Kullanici_Sifre ? 1 : 0]->setFocus(Qt::OtherFocusReason);
  }
}

}  // namespace rights_ui
