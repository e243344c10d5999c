#include "maintenance/ui/server_para_frm.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include "ui/fields.h"
#include "ui/form.h"
#include "ui/theme.h"

namespace maintenance_ui {
namespace {

using maintenance::ServerPara;

struct Alan {
  const char *ad, *yazi, *tag;
  std::string ServerPara::*metin;
  bool gizli, ana;
};
constexpr Alan alanTablosu[] = {
    {"SunucuAdi", "SQL Server Adı :", ";;;sqlKullanici", &ServerPara::SunucuAdi, false, true},
    {"sqlKullanici", "SQL Kullanıcı Adı :", ";SunucuAdi;;sqlSifre", &ServerPara::sqlKullanici, false, true},
    {"sqlSifre", "SQL Kullanıcı Şifresi :", ";sqlKullanici;;SNDeg", &ServerPara::sqlSifre, true, true},
    {"MasterAd", "Master Kullanıcı Adı :", ";SNDeg;;MasterSifre", &ServerPara::MasterAd, false, false},
    {"MasterSifre", "Master Kullanıcı Şifre :", ";MasterAd;;SifreTekrar", &ServerPara::MasterSifre, true,
     false},
    {"SifreTekrar", "Master Kullanıcı Şifre Tekrar :", ";MasterSifre;;Kaydet", &ServerPara::SifreTekrar, true,
     false},
};

}  // namespace

ServerParaFrm::ServerParaFrm(session::Oturum& oturum, ui::ConsolePort&)
    : Kart("sunucu", "Server Parametre Tanımları"),
      oturum_(oturum),
      snDeg_(new QCheckBox("Program Girişi Esnasında Sunucu Değiştirilebilir")),
      sonuc_(new QLabel) {
  setObjectName("ServerParaFrm");
  snDeg_->setObjectName("SNDeg");
  sonuc_->setObjectName("BaglantiSonucu");
  sonuc_->setWordWrap(true);
  sonuc_->setTextFormat(Qt::PlainText);
  sonuc_->setTextInteractionFlags(Qt::TextSelectableByMouse);
  auto* ana = frame("Frame1", "SQL Server");
  auto* master = frame("Frame2", "Master Kullanıcı");
  auto* keys = new ui::FieldKeys(this, ui::cardColours, true);
  int genislik = 0;
  for (const Alan& alan : alanTablosu)
    genislik = std::max(genislik, fontMetrics().horizontalAdvance(alan.yazi));
  for (QGroupBox* kutu : {ana, master}) {
    auto* grid = new QGridLayout(kutu);
    grid->setContentsMargins(ui::gap, ui::gap, ui::gap, ui::gap);
    grid->setHorizontalSpacing(ui::gap);
    grid->setColumnMinimumWidth(0, genislik + ui::gapSmall);
    grid->setColumnStretch(1, 1);
    body()->addWidget(kutu);
  }
  for (const Alan& alan : alanTablosu) {
    auto* edit = new QLineEdit;
    edit->setObjectName(alan.ad);
    if (alan.gizli) edit->setEchoMode(QLineEdit::Password);
    auto* grid = static_cast<QGridLayout*>((alan.ana ? ana : master)->layout());
    ui::row(grid, grid->rowCount(), alan.yazi, edit);
    keys->watch(edit, alan.tag);
    alanlar_.push_back(edit);
  }
  auto* anaGrid = static_cast<QGridLayout*>(ana->layout());
  anaGrid->addWidget(snDeg_, anaGrid->rowCount(), 1);
  keys->watch(snDeg_, ";sqlSifre;;MasterAd");
  auto* not_ = new QLabel(
      "Değişiklik bir sonraki girişte geçerli olur. Master kullanıcı bilgileri yalnızca karşılaştırılır, "
      "saklanmaz.");
  not_->setProperty("rol", "ipucu");
  not_->setWordWrap(true);
  body()->addWidget(not_);
  body()->addWidget(sonuc_);
  body()->addStretch(1);
  auto* deneBtn = button("DeneBtn", "Bağlantıyı Dene", "incele");
  auto* kaydetBtn = button("Kaydet", "KAYDET", "kaydet", true);
  auto* cikis = button("Cikis", "ÇIKIŞ", "cikis");
  hint()->setText("  Escape (Çıkış)  F2 (Kaydet)");
  shortcut(Qt::Key_F2, kaydetBtn);
  shortcut(Qt::Key_F3, cikis);
  shortcut(Qt::Key_Escape, cikis);
  connect(deneBtn, &QPushButton::clicked, this, &ServerParaFrm::dene);
  connect(kaydetBtn, &QPushButton::clicked, this, &ServerParaFrm::kaydet);
  connect(cikis, &QPushButton::clicked, this, [this] { kapan(); });
}

void ServerParaFrm::ac() {
  const ServerPara para = maintenance::Server_Para_Ac(oturum_);
  for (std::size_t i = 0; i < alanlar_.size(); ++i)
    alanlar_[i]->setText(ui::text(para.*alanTablosu[i].metin));
  if (para.SNDeg) snDeg_->setChecked(*para.SNDeg);
  sonuc_->clear();
  alanlar_[0]->setFocus(Qt::OtherFocusReason);
}

ServerPara ServerParaFrm::oku() const {
  ServerPara para;
  for (std::size_t i = 0; i < alanlar_.size(); ++i)
    para.*alanTablosu[i].metin = ui::utf8(alanlar_[i]->text());
  para.SNDeg = snDeg_->isChecked();
  return para;
}

void ServerParaFrm::kaydet() {
  if (maintenance::Server_Para_Kaydet(oturum_, oku())) kapan();
}

void ServerParaFrm::dene() {
  sonuc_->clear();
  const ServerPara para = oku();
  auto deneme = std::make_shared<maintenance::BaglantiDenemesi>();
  if (ui::birakilabilirIs(this, oturum_, "Bağlantı deneniyor", [para, deneme](session::Oturum& kopya) {
        *deneme = maintenance::Baglantiyi_Dene(kopya, para);
      }) != ui::IsSonucu::Bitti)
    return;
  sonuc_->setText((deneme->tamam ? "✓  " : "✗  ") + ui::text(deneme->metin));
}

}  // namespace maintenance_ui
