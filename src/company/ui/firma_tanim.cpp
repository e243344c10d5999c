#include "company/ui/firma_tanim.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>
#include <cstdlib>

#include "catalog/katalog.h"
#include "company/firma_karti.h"
#include "ui/console_port.h"
#include "ui/date_edit.h"
#include "ui/fields.h"
#include "ui/theme.h"

namespace company_ui {
namespace {

constexpr int yanYana = 760;  // width from which two frames stand side by side

enum class Grup { Firma, Adres, Mali };

struct Alan {
  const char* ad;
  const char* yazi;
  Grup grup;
  std::string_view sutun;
  std::string company::FirmaKarti::*metin;
  const char* tag;
  bool tarih = false;
};

using Kart = company::FirmaKarti;
// Down and up walk through the whole card; left and right cross between the two lower frames.
constexpr Alan alanTablosu[] = {
    {"Firma_Adi", "Database Adı  :", Grup::Firma, "sysfrm_dbnm", &Kart::Firma_Adi, ";;;Firma_Kodu"},
    {"Firma_Kodu", "Firma Kodu  :", Grup::Firma, "sysfrm_kd", &Kart::Firma_Kodu, ";Firma_Adi;;Firma_Unvani"},
    {"Firma_Unvani", "Firma Unvanı :", Grup::Firma, "sysfrm_nm", &Kart::Firma_Unvani, ";Firma_Kodu;;Adres"},
    {"Adres", "Adres  :", Grup::Adres, "Adres", &Kart::Adres, ";Firma_Unvani;Bas_Tar;Sehir"},
    {"Sehir", "Şehir  :", Grup::Adres, "sehir", &Kart::Sehir, ";Adres;Bit_Tar;Ulke"},
    {"Ulke", "Ülke :", Grup::Adres, "Ulke", &Kart::Ulke, ";Sehir;Vergi_Dairesi;Tel1"},
    {"Tel1", "Telefon (1) :", Grup::Adres, "Tel1", &Kart::Tel1, ";Ulke;Vergi_Numarasi;Tel2"},
    {"Tel2", "Telefon (2) :", Grup::Adres, "Tel2", &Kart::Tel2,
     ";Tel1;StandartHesapPlani|Vergi_Numarasi;Fax"},
    {"Fax", "Fax :", Grup::Adres, "Fax", &Kart::Fax, ";Tel2;StandartHesapPlani|Vergi_Numarasi;Bas_Tar"},
    {"Bas_Tar", "Mali Yıl Başlangıç :", Grup::Mali, "", &Kart::Bas_Tar, "Adres;Fax;;Bit_Tar", true},
    {"Bit_Tar", "Mali Yıl Bitiş :", Grup::Mali, "", &Kart::Bit_Tar, "Sehir;Bas_Tar;;Vergi_Dairesi", true},
    {"Vergi_Dairesi", "Vergi Dairesi  :", Grup::Mali, "Vergi_Dairesi", &Kart::Vergi_Dairesi,
     "Ulke;Bit_Tar;;Vergi_Numarasi"},
    {"Vergi_Numarasi", "Vergi Numarası :", Grup::Mali, "Vergi_Numarasi", &Kart::Vergi_Numarasi,
     "Tel1;Vergi_Dairesi;;StandartHesapPlani|KaydetBtn"},
};

// Characters of a text column of sysfrmlng; 0 for one without a limit.
int sutunGenisligi(std::string_view sutun) {
  for (const catalog::TableDef& table : catalog::catalogTables()) {
    const catalog::ColumnDef* column = table.name == "sysfrmlng" ? table.column(sutun) : nullptr;
    if (!column) continue;
    const std::size_t bracket = column->type.find('(');
    return bracket == std::string::npos ? 0 : std::atoi(column->type.c_str() + bracket + 1);
  }
  return 0;
}

QString altBaslik(const session::Oturum& oturum, const company::FirmaKarti& kart) {
  if (oturum.Yeni_Kayit) return "Yeni firma ve dönem veritabanı oluşturulacak";
  return ui::text(kart.Firma_Adi) + (oturum.Inceleme ? " — inceleme" : " — kart düzenleme");
}

}  // namespace

FirmaTanim::FirmaTanim(session::Oturum& oturum, ui::ConsolePort& konsol)
    : Kart("firma", "Firma Tanımı"), oturum_(oturum), konsol_(konsol) {
  setObjectName("Firma_Tanım");
  cerceveler();
  ambarCercevesi();
  body()->addStretch(1);
  kaydetBtn_ = button("KaydetBtn", "Kaydet", "kaydet", true);
  cikisBtn_ = button("CikisBtn", "Çıkış", "cikis");
  tuslar();
  connect(kaydetBtn_, &QPushButton::clicked, this, &FirmaTanim::kaydet);
  connect(cikisBtn_, &QPushButton::clicked, this, &FirmaTanim::kapan);
}

void FirmaTanim::cerceveler() {
  frame1_ = frame("Frame1", "Firma Bilgileri");
  frame3_ = frame("Frame3", "Adres Bilgileri");
  frame4_ = frame("Frame4", "Mali Bilgileri");
  QGroupBox* const boxes[] = {frame1_, frame3_, frame4_};
  // The two frames on the left share one width for their captions, so that the fields stand in line.
  int left = 0, right = 0;
  for (const Alan& alan : alanTablosu) {
    int& width = alan.grup == Grup::Mali ? right : left;
    width = std::max(width, fontMetrics().horizontalAdvance(alan.yazi));
  }
  for (QGroupBox* box : boxes) {
    auto* grid = new QGridLayout(box);
    grid->setContentsMargins(ui::gap, ui::gap, ui::gap, ui::gap);
    grid->setHorizontalSpacing(ui::gap);
    grid->setVerticalSpacing(ui::gapSmall);
    grid->setColumnMinimumWidth(0, (box == frame4_ ? right : left) + ui::gapSmall);
    grid->setColumnStretch(1, 1);
  }
  for (const Alan& alan : alanTablosu) {
    auto* grid = static_cast<QGridLayout*>(boxes[static_cast<int>(alan.grup)]->layout());
    QLineEdit* edit = alan.tarih ? new ui::DateEdit(*oturum_.kutular) : new QLineEdit;
    edit->setObjectName(alan.ad);
    if (const int width = alan.tarih ? 0 : sutunGenisligi(alan.sutun); width > 0) edit->setMaxLength(width);
    row(grid, grid->rowCount(), alan.yazi, edit);
    alanlar_.push_back(edit);
  }
  auto* mali = static_cast<QGridLayout*>(frame4_->layout());
  hesapPlani_ = new QCheckBox("Standart Hesap Planını Oluştur");
  hesapPlani_->setObjectName("StandartHesapPlani");
  mali->addWidget(hesapPlani_, mali->rowCount(), 1);
  for (QGroupBox* box : boxes) {
    auto* grid = static_cast<QGridLayout*>(box->layout());
    grid->setRowStretch(grid->rowCount(), 1);
  }
  altCerceveler_ = new QHBoxLayout;
  altCerceveler_->setSpacing(ui::gap);
  altCerceveler_->addWidget(frame3_, 1);
  altCerceveler_->addWidget(frame4_, 1);
  body()->addWidget(frame1_);
  body()->addLayout(altCerceveler_);
}

// The two frames stand side by side where there is room for both.
void FirmaTanim::resizeEvent(QResizeEvent* event) {
  Kart::resizeEvent(event);
  altCerceveler_->setDirection(width() < yanYana ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight);
}

// The frame of warehouses carries no logic and no rows.
void FirmaTanim::ambarCercevesi() {
  frame2_ = frame("Frame2", "Ambar Tanımları");
  auto* grid = new QTableWidget(0, 2);
  grid->setObjectName("FisGrd");
  auto* erase = new QPushButton(ui::icon("sil"), "Sil");
  erase->setObjectName("SilBtn");
  auto* layout = new QHBoxLayout(frame2_);
  layout->addWidget(grid, 1);
  layout->addWidget(erase, 0, Qt::AlignTop);
  frame2_->setVisible(false);
  body()->addWidget(frame2_);
}

void FirmaTanim::tuslar() {
  auto* keys = new ui::FieldKeys(this, ui::cardColours, true);
  for (std::size_t i = 0; i < alanlar_.size(); ++i) keys->watch(alanlar_[i], alanTablosu[i].tag);
  keys->watch(hesapPlani_, "Fax;Vergi_Numarasi;;KaydetBtn");
  keys->watch(kaydetBtn_, ";Vergi_Numarasi;CikisBtn;");
  keys->watch(cikisBtn_, "KaydetBtn;;;");
  shortcut(Qt::Key_F2, kaydetBtn_);
  shortcut(Qt::Key_Escape, cikisBtn_);
}

void FirmaTanim::ac() {
  company::FirmaKarti kart;
  const company::KartDurumu durum = company::Firma_Karti_Ac(oturum_, kart);
  goster(kart, durum);
  subheading()->setText(altBaslik(oturum_, kart));
}

void FirmaTanim::goster(const company::FirmaKarti& kart, const company::KartDurumu& durum) {
  for (std::size_t i = 0; i < alanlar_.size(); ++i) {
    alanlar_[i]->setText(ui::text(kart.*alanTablosu[i].metin));
    alanlar_[i]->setCursorPosition(0);
  }
  hesapPlani_->setChecked(kart.StandartHesapPlani);
  hesapPlani_->setEnabled(durum.StandartHesapPlani_Acik);
  alanlar_[0]->setReadOnly(durum.Firma_Adi_Salt);
  for (QWidget* part : {static_cast<QWidget*>(frame1_), static_cast<QWidget*>(frame3_),
                        static_cast<QWidget*>(frame4_), static_cast<QWidget*>(kaydetBtn_)})
    part->setEnabled(durum.Kayit_Acik);
  alanlar_[2]->setEnabled(durum.Kayit_Acik);
  hint()->setText(ui::text(durum.DurumPanel));
  if (!durum.Kayit_Acik)
    cikisBtn_->setFocus();
  else
    alanlar_[durum.Firma_Adi_Salt ? 1 : 0]->setFocus(Qt::OtherFocusReason);
}

company::FirmaKarti FirmaTanim::oku() const {
  company::FirmaKarti kart;
  for (std::size_t i = 0; i < alanlar_.size(); ++i)
    kart.*alanTablosu[i].metin = ui::utf8(alanlar_[i]->text());
  kart.StandartHesapPlani = hesapPlani_->isChecked() && hesapPlani_->isEnabled();
  return kart;
}

void FirmaTanim::kaydet() {
  company::FirmaKarti kart = oku();
  bool bitti = false;
  const QString baslik = oturum_.Yeni_Kayit ? "Firma oluşturuluyor" : "Firma kartı yazılıyor";
  if (!isYap(oturum_, {baslik}, [&] { bitti = company::Kaydet(oturum_, kart); }) || !bitti) return;
  konsol_.Alan_Listesi_Doldur();
  kapan();
}

}  // namespace company_ui
