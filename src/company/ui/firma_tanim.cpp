#include "company/ui/firma_tanim.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>
#include <utility>

#include "company/firma_karti.h"
#include "company/kart_alanlari.h"
#include "session/tarih.h"
#include "ui/console_port.h"
#include "ui/date_edit.h"
#include "ui/fields.h"
#include "ui/form.h"
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
  const char* tag;
};

// Down and up walk through the whole card; left and right cross between the two lower frames.
constexpr Alan alanTablosu[] = {
    {"Firma_Adi", "Database Adı  :", Grup::Firma, "sysfrm_dbnm", ";;;Firma_Kodu"},
    {"Firma_Kodu", "Firma Kodu  :", Grup::Firma, "sysfrm_kd", ";Firma_Adi;;Firma_Unvani"},
    {"Firma_Unvani", "Firma Unvanı :", Grup::Firma, "sysfrm_nm", ";Firma_Kodu;;Adres"},
    {"Adres", "Adres  :", Grup::Adres, "Adres", ";Firma_Unvani;Bas_Tar;Sehir"},
    {"Sehir", "Şehir  :", Grup::Adres, "sehir", ";Adres;Bit_Tar;Ulke"},
    {"Ulke", "Ülke :", Grup::Adres, "Ulke", ";Sehir;Vergi_Dairesi;Tel1"},
    {"Tel1", "Telefon (1) :", Grup::Adres, "Tel1", ";Ulke;Vergi_Numarasi;Tel2"},
    {"Tel2", "Telefon (2) :", Grup::Adres, "Tel2", ";Tel1;StandartHesapPlani|Vergi_Numarasi;Fax"},
    {"Fax", "Fax :", Grup::Adres, "Fax", ";Tel2;StandartHesapPlani|Vergi_Numarasi;Bas_Tar"},
    {"Bas_Tar", "Mali Yıl Başlangıç :", Grup::Mali, "Mali_Yil_Baslangic", "Adres;Fax;;Bit_Tar"},
    {"Bit_Tar", "Mali Yıl Bitiş :", Grup::Mali, "Mali_Yil_Bitis", "Sehir;Bas_Tar;;Vergi_Dairesi"},
    {"Vergi_Dairesi", "Vergi Dairesi  :", Grup::Mali, "Vergi_Dairesi", "Ulke;Bit_Tar;;Vergi_Numarasi"},
    {"Vergi_Numarasi", "Vergi Numarası :", Grup::Mali, "Vergi_Numarasi",
     "Tel1;Vergi_Dairesi;;StandartHesapPlani|KaydetBtn"},
};

QString altBaslik(const session::Oturum& oturum, const company::FirmaKarti& kart) {
  if (oturum.Yeni_Kayit) return "Yeni firma ve dönem veritabanı oluşturulacak";
  return ui::text(kart.Firma_Adi) + (oturum.Inceleme ? " — inceleme" : " — kart düzenleme");
}

// What the status bar tells of the card in each of its uses.
QString ekranAdi(const session::Oturum& oturum) {
  if (oturum.Yeni_Kayit) return "Yeni Firma Oluşturuluyor";
  return oturum.Inceleme ? "Firma Tanımı İnceleniyor" : "Firma Tanımı Değiştiriliyor";
}

}  // namespace

FirmaTanim::FirmaTanim(session::Oturum& oturum, ui::ConsolePort& konsol)
    : Kart("firma", "Firma Tanımı"), oturum_(oturum), konsol_(konsol) {
  setObjectName("Firma_Tanım");
  uyari_ = new QLabel;
  uyari_->setObjectName("UyariLbl");
  uyari_->setProperty("rol", "hata");
  body()->addWidget(uyari_);
  cerceveler();
  ambarCercevesi();
  body()->addStretch(1);
  kaydetBtn_ = button("KaydetBtn", "Kaydet", "kaydet", true);
  cikisBtn_ = button("CikisBtn", "Çıkış", "cikis");
  tuslar();
  connect(kaydetBtn_, &QPushButton::clicked, this, &FirmaTanim::kaydet);
  connect(cikisBtn_, &QPushButton::clicked, this, &FirmaTanim::cikis);
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
    const bool tarih = company::kartAlani(alan.sutun).tarih;
    QLineEdit* edit = tarih ? new ui::DateEdit(*oturum_.kutular) : new QLineEdit;
    edit->setObjectName(alan.ad);
    if (const auto width = company::kartAlaniGenisligi(alan.sutun); width > 0)
      edit->setMaxLength(static_cast<int>(width));
    ui::row(grid, grid->rowCount(), alan.yazi, edit);
    alanlar_.push_back(edit);
  }
  auto* firma = static_cast<QGridLayout*>(frame1_->layout());
  kural_ = ui::wrapped("Database Adı harfle başlar, yalnız harf ve rakam içerir; sonradan değiştirilemez.",
                       "ipucu");
  kural_->setObjectName("KuralLbl");
  firma->addWidget(kural_, firma->rowCount(), 1);
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
  altCerceveler_->setDirection(width() < ui::byLetters(yanYana) ? QBoxLayout::TopToBottom
                                                                : QBoxLayout::LeftToRight);
}

// The frame of warehouses carries no logic and no rows.
void FirmaTanim::ambarCercevesi() {
  frame2_ = frame("Frame2", "Ambar Tanımları");
  auto* grid = new QTableWidget(0, 2);
  grid->setObjectName("FisGrd");
  grid->setHorizontalHeaderLabels({"Ambar No", "Ambar Adı"});
  grid->horizontalHeader()->setStretchLastSection(true);
  auto* erase = new QPushButton(ui::icon("sil"), "Sil");
  erase->setObjectName("SilBtn");
  erase->setEnabled(false);
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
  uyari_->setText(ui::text(durum.Uyari));
  uyari_->setVisible(!durum.Uyari.empty());
  kural_->setVisible(oturum_.Yeni_Kayit);
  konsol_.Durum_Yaz(ekranAdi(oturum_));
}

// An inspected card shows its texts read-only: they scroll, and can be selected and copied.
void FirmaTanim::goster(const company::FirmaKarti& kart, const company::KartDurumu& durum) {
  for (std::size_t i = 0; i < alanlar_.size(); ++i) {
    alanlar_[i]->setText(ui::text(kart.*company::kartAlani(alanTablosu[i].sutun).text));
    alanlar_[i]->setCursorPosition(0);
    alanlar_[i]->setReadOnly(!durum.Kayit_Acik);
  }
  hesapPlani_->setChecked(kart.StandartHesapPlani);
  hesapPlani_->setEnabled(durum.StandartHesapPlani_Acik && durum.Kayit_Acik);
  if (durum.Firma_Adi_Salt) alanlar_[0]->setReadOnly(true);
  frame2_->setVisible(durum.Frame2_Gorunur);
  frame2_->setEnabled(durum.Kayit_Acik);
  kaydetBtn_->setEnabled(durum.Kayit_Acik);
  hint()->setText(ui::text(durum.DurumPanel));
  if (!durum.Kayit_Acik)
    cikisBtn_->setFocus();
  else
    alanlar_[durum.Firma_Adi_Salt ? 1 : 0]->setFocus(Qt::OtherFocusReason);
}

company::FirmaKarti FirmaTanim::oku() const {
  company::FirmaKarti kart;
  for (std::size_t i = 0; i < alanlar_.size(); ++i) {
    const company::KartAlani& alan = company::kartAlani(alanTablosu[i].sutun);
    const std::string yazi = ui::utf8(alanlar_[i]->text());
    kart.*alan.text = alan.tarih ? session::tarihTamamla(yazi) : yazi;
  }
  kart.StandartHesapPlani = hesapPlani_->isChecked() && hesapPlani_->isEnabled();
  return kart;
}

void FirmaTanim::hataliAlanaGit(std::string_view sutun) {
  for (std::size_t i = 0; i < alanlar_.size(); ++i)
    if (alanTablosu[i].sutun == sutun) alanlar_[i]->setFocus(Qt::OtherFocusReason);
}

void FirmaTanim::kaydet() {
  company::FirmaKarti kart = oku();
  bool bitti = false;
  const QString baslik = oturum_.Yeni_Kayit ? "Firma oluşturuluyor" : "Firma kartı yazılıyor";
  // A card's own row is written too soon for anybody to give it up.
  const auto vazgec = oturum_.Yeni_Kayit || kart.StandartHesapPlani ? ui::Vazgec::Var : ui::Vazgec::Yok;
  // A company that stood already when Vazgeç was pressed is there.
  if (ui::uzunIs(this, oturum_, {baslik, vazgec}, [&] { bitti = company::Kaydet(oturum_, kart); }) ==
      ui::IsSonucu::Reddedildi)
    return;
  if (kart.Vazgecildi) return konsol_.Durum_Yaz("Firma oluşturmaktan vazgeçildi");
  if (!bitti) {
    hataliAlanaGit(kart.Hatali_Alan);
    listeEski_ = listeEski_ || kart.Hata_Metni.empty();
    return;
  }
  const bool olustu = oturum_.Yeni_Kayit && oturum_.Son_Hata.empty();
  konsol_.Alan_Listesi_Doldur();
  listeEski_ = false;
  kapan();
  if (olustu) konsol_.Eklenen_Sec(ui::text(oturum_.Hedef_Firma_Adi));
}

// A creation that broke off may have left a row in the list.
void FirmaTanim::cikis() {
  if (ui::isSuruyor()) return;
  if (std::exchange(listeEski_, false)) konsol_.Alan_Listesi_Doldur();
  kapan();
}

}  // namespace company_ui
