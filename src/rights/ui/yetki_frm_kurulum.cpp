// The widgets of the rights editor, built once.
#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QSplitter>
#include <QTabWidget>
#include <tuple>

#include "rights/ui/karsilastirma_paneli.h"
#include "rights/ui/yetki_frm.h"
#include "ui/boxes.h"
#include "ui/fields.h"
#include "ui/form.h"
#include "ui/izgara.h"
#include "ui/theme.h"
#include "ui/tik_agaci.h"

namespace rights_ui {

namespace {

using session::HucreTuru;

constexpr int tikGenisligi = 52, kodGenisligi = 82, adGenisligi = 108, isaretGenisligi = 80;
constexpr int sonucYuksekligi = 150, agacEnAz = 350, sekmeEnAz = 350,
              yanYana = 790;  // width from which tree and tabs stand side by side

// "Tümüne Uygula": a box and the caption of the rows that it goes to.
struct Uygulama {
  const char *ad, *yazi;
};
constexpr Uygulama uygulamalar[] = {{"EkleCbx", "Ekle"},
                                    {"DegistirCbx", "Değiştir"},
                                    {"InceleCbx", "İncele"},
                                    {"SilCbx", "Sil"},
                                    {"BakiyeCbx", "Bakiye"}};

// Kinds of accounts as the account card has them.
constexpr const char* hesapTurleri[] = {"", "Alıcı", "Satıcı", "Alıcı + Satıcı"};

QComboBox* liste(const char* ad) {
  auto* box = new QComboBox;
  box->setObjectName(ad);
  box->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  box->setMinimumContentsLength(9);
  return box;
}

}  // namespace

YetkiFrm::YetkiFrm(session::Oturum& oturum, ui::ConsolePort& konsol)
    : Kart("yetki", "Kullanıcı Yetkileri"), oturum_(oturum), konsol_(konsol) {
  setObjectName("Yetki_Frm");
  auto* splitter = new QSplitter;
  splitter->setChildrenCollapsible(false);
  splitter->setHandleWidth(ui::gap);
  splitter->addWidget(agacTarafi());
  splitter->addWidget(sekmeler());
  splitter->setSizes({agacEnAz + 60, sekmeEnAz + 60});
  darOlunca(yanYana, [splitter](bool dar) { splitter->setOrientation(dar ? Qt::Vertical : Qt::Horizontal); });
  body()->addWidget(firmaSatiri());
  body()->addWidget(splitter, 1);
  hint()->setText("  F2 (Kaydet)  Escape (Çıkış)  Ctrl+F (Yetki ara)");
  std::tie(tamam_, cikis_) = saveAndLeave("TamamBtn", "CikisBtn", {Qt::Key_Escape});
  connect(tamam_, &QPushButton::clicked, this, &YetkiFrm::kaydet);
  connect(cikis_, &QPushButton::clicked, this, &YetkiFrm::kapan);
}

QWidget* YetkiFrm::firmaSatiri() {
  auto* row = new QWidget;
  auto* company = new QHBoxLayout;
  auto* layout = new QHBoxLayout(row);
  layout->setContentsMargins(0, 0, 0, 0);
  for (QHBoxLayout* each : {company, layout}) each->setSpacing(ui::gap);
  firma_ = liste("Firma_Combo");
  firma_->setMinimumWidth(160);
  kopyala_ = new QCheckBox("Bu Ayarları Kopyala");
  kopyala_->setObjectName("Kopyala");
  kopyala_->setToolTip(
      "İşaretliyken başka bir firma seçilirse ekrandaki ayarlar kalır; Kaydet onları o firmaya yazar.");
  company->addWidget(ui::caption("Yetki Belirlenecek Firma :", firma_));
  company->addWidget(firma_, 1);
  layout->addLayout(company);
  layout->addWidget(kopyala_);
  layout->addStretch(1);
  darOlunca(yanYana, [layout](bool dar) {
    layout->setDirection(dar ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight);
  });
  connect(firma_, &QComboBox::currentIndexChanged, this, &YetkiFrm::firmaSecildi);
  return row;
}

QWidget* YetkiFrm::agacTarafi() {
  auto* side = new QWidget;
  side->setMinimumWidth(ui::byLetters(agacEnAz));
  auto* layout = new QVBoxLayout(side);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(ui::gapSmall);
  arama_ = new QLineEdit;
  arama_->setObjectName("Arama");
  arama_->setPlaceholderText("Yetki ara, örneğin: çek iade");
  arama_->setClearButtonEnabled(true);
  bulunanlar_ = new QListWidget;
  bulunanlar_->setObjectName("AramaSonuc");
  bulunanlar_->setMaximumHeight(sonucYuksekligi);
  bulunanlar_->hide();
  agac_ = new ui::TikAgaciGorunumu(session::TikAgaci(rights::yetkiAgaci().satirlar));
  agac_->setObjectName("treelist");
  agac_->setMinimumHeight(140);
  agac_->setContextMenuPolicy(Qt::CustomContextMenu);
  layout->addWidget(arama_);
  layout->addWidget(bulunanlar_);
  layout->addWidget(agac_, 1);
  layout->addWidget(tumuneUygula());
  connect(agac_, &QWidget::customContextMenuRequested, this, &YetkiFrm::agacMenusu);
  connect(arama_, &QLineEdit::textChanged, this, &YetkiFrm::ara);
  const auto git = [this](const QListWidgetItem* item) {
    if (!item || !item->data(Qt::UserRole).isValid()) return;
    agac_->goster(item->data(Qt::UserRole).toInt());
  };
  connect(bulunanlar_, &QListWidget::currentItemChanged, this, git);
  connect(bulunanlar_, &QListWidget::itemActivated, this, [this] { agac_->setFocus(); });
  connect(arama_, &QLineEdit::returnPressed, this, [this] {
    if (bulunanlar_->count() == 0) return;
    bulunanlar_->setCurrentRow(0);
    bulunanlar_->setFocus();
  });
  auto* find = new QAction(this);
  find->setShortcut(QKeySequence::Find);
  find->setShortcutContext(Qt::WidgetWithChildrenShortcut);
  connect(find, &QAction::triggered, arama_, [this] {
    arama_->setFocus();
    arama_->selectAll();
  });
  addAction(find);
  return side;
}

QWidget* YetkiFrm::tumuneUygula() {
  QGroupBox* box = frame("Frame1", "Tümüne Uygula");
  auto* layout = new QHBoxLayout(box);
  layout->setContentsMargins(ui::gapSmall, ui::gapSmall, ui::gapSmall, ui::gapSmall);
  layout->setSpacing(ui::gapSmall);
  for (const Uygulama& uygulama : uygulamalar) {
    auto* each = new QCheckBox(uygulama.yazi);
    each->setObjectName(uygulama.ad);
    layout->addWidget(each);
    connect(each, &QCheckBox::clicked, this, [this, yazi = uygulama.yazi](bool acik) {
      agac_->agac().yaziyaUygula(yazi, acik);
      agac_->model().yenile();
    });
  }
  return box;
}

QWidget* YetkiFrm::sekmeler() {
  sekmeler_ = new QTabWidget;
  sekmeler_->setObjectName("Sekmeler");
  sekmeler_->setMinimumWidth(ui::byLetters(sekmeEnAz));
  sekmeler_->addTab(genelSekmesi(), "Genel");
  sekmeler_->addTab(kasiyerSekmesi(), "Kasiyer");
  sekmeler_->addTab(yerSekmesi(), "Ambar ve İşyeri");
  karsilastirma_ = new KarsilastirmaPaneli(oturum_, [this] {
    oku();
    rights::YetkiDuzeni shown = duzen_;
    shown.satir = rights::gosterilenSatir(duzen_.treelist, duzen_.satir);
    return shown;
  });
  sekmeler_->addTab(karsilastirma_, "Karşılaştır");
  connect(karsilastirma_, &KarsilastirmaPaneli::hakSecildi, this, [this](int row) { agac_->goster(row); });
  return sekmeler_;
}

QCheckBox* YetkiFrm::kutu(const rights::Kolon& kolon) {
  auto* box = new QCheckBox(ui::text(kolon.yazi));
  box->setObjectName(ui::text(kolon.ad));
  kutular_.emplace_back(box, *rights::kolonSirasi(kolon.ad));
  return box;
}

QWidget* YetkiFrm::genelSekmesi() {
  auto* page = new QWidget;
  auto* layout = new QVBoxLayout(page);
  layout->setContentsMargins(ui::gap, ui::gap, ui::gap, ui::gap);
  genel_ = bayrakIzgarasi("Yetki_Frm.YetkiGenelGrd", rights::Bolum::Genel);
  genel_->setFixedHeight(158);
  layout->addWidget(genel_);

  auto* grid = new QGridLayout;
  grid->setHorizontalSpacing(ui::gap);
  grid->setVerticalSpacing(2);
  hesapTuru_ = liste("HesapTuruFlx");
  for (const char* tur : hesapTurleri) hesapTuru_->addItem(tur);
  kasa_ = liste("Def_Kasa_Kod");
  cari_ = liste("Def_Cari_Kod");
  gun_ = new QLineEdit;
  gun_->setObjectName("KntGun");
  gun_->setMaxLength(5);
  gun_->setMaximumWidth(ui::byLetters(80));
  const std::pair<const char*, QComboBox*> rows[] = {
      {"Cari Hesap Yetkisi :", hesapTuru_}, {"Kul. Kasa Kodu", kasa_}, {"Kul. Peşin Cari Kodu", cari_}};
  int line = 0;
  for (const auto& [caption, box] : rows) {
    grid->addWidget(ui::caption(caption, box), line, 0);
    grid->addWidget(box, line++, 1);
  }
  QCheckBox* tahsilat = nullptr;
  for (const rights::Kolon& kolon : rights::kolonlar()) {
    if (kolon.bolum != rights::Bolum::Kutu || kolon.tur != rights::KolonTuru::Bit) continue;
    QCheckBox* box = kutu(kolon);
    grid->addWidget(box, line++, 0, 1, 2);
    if (kolon.ad == "BGTahAl") tahsilat = box;
  }
  grid->addWidget(ui::caption("Gün Geçmiş Ödemeleri Kontrol Et", gun_), line, 0);
  grid->addWidget(gun_, line, 1);
  grid->setColumnStretch(1, 1);
  gun_->setEnabled(false);
  connect(tahsilat, &QCheckBox::toggled, gun_, &QLineEdit::setEnabled);
  layout->addLayout(grid);
  layout->addStretch(1);
  return ui::scrolling(page);
}

QWidget* YetkiFrm::kasiyerSekmesi() {
  auto* page = new QWidget;
  auto* layout = new QVBoxLayout(page);
  layout->setContentsMargins(ui::gap, ui::gap, ui::gap, ui::gap);
  kasiyer_ = bayrakIzgarasi("Yetki_Frm.YetkiKasiyerGrd", rights::Bolum::Kasiyer);
  layout->addWidget(kasiyer_);
  return page;
}

QWidget* YetkiFrm::yerSekmesi() {
  auto* page = new QWidget;
  auto* layout = new QVBoxLayout(page);
  layout->setContentsMargins(ui::gap, ui::gap, ui::gap, ui::gap);
  ambar_ = yerIzgarasi("Yetki_Frm.YetkiAmbarGrd", "Ambar No", "Merkez_Ambar", "Merkez",
                       &rights::YetkiDuzeni::YetkiAmbarGrd);
  isyeri_ = yerIzgarasi("Yetki_Frm.YetkiIsyeriGrd", "İşyeri Kodu", "Def_Isyeri", "Varsayılan",
                        &rights::YetkiDuzeni::YetkiIsyeriGrd);
  layout->addWidget(ui::caption("Kullanabileceği ambarlar", ambar_));
  layout->addWidget(ambar_, 1);
  layout->addWidget(ui::caption("Kullanabileceği işyerleri", isyeri_));
  layout->addWidget(isyeri_, 1);
  return page;
}

ui::Izgara* YetkiFrm::bayrakIzgarasi(const char* ad, rights::Bolum) {
  auto* grid = new ui::Izgara(oturum_, ad,
                              {{"Sec", "Seç", tikGenisligi, HucreTuru::Tik},
                               {"Yazi", "Yetki", adGenisligi, HucreTuru::Metin, false, true}});
  grid->satirEklenir = false;
  grid->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  grid->verticalHeader()->hide();
  // A click beside the box counts, too.
  connect(grid, &QAbstractItemView::clicked, this, [grid](const QModelIndex& index) {
    if (index.column() != 0)
      grid->veri().yaz(index.row(), 0, grid->veri().hucre(index.row(), 0) == "1" ? "0" : "1");
  });
  return grid;
}

ui::Izgara* YetkiFrm::yerIzgarasi(const char* ad, const char* kod, const char* isaret,
                                  const char* isaretBasligi, rights::Yerler rights::YetkiDuzeni::*yerler) {
  auto* grid = new ui::Izgara(oturum_, ad,
                              {{"Sec", "Seç", tikGenisligi, HucreTuru::Tik},
                               {"Kod", kod, kodGenisligi, HucreTuru::Metin, false, true},
                               {"Ad", "Adı", adGenisligi, HucreTuru::Metin, false, true},
                               {isaret, isaretBasligi, isaretGenisligi, HucreTuru::Tik}});
  grid->satirEklenir = false;
  grid->verticalHeader()->hide();
  grid->setMinimumHeight(90);
  grid->veri().yazildi = [this, grid, yerler](int satir, int kolon) {
    yerYazildi(grid, duzen_.*yerler, satir, kolon);
  };
  connect(grid, &QAbstractItemView::clicked, this, [grid](const QModelIndex& index) {
    if (index.column() == 1 || index.column() == 2)
      grid->veri().yaz(index.row(), 0, grid->veri().hucre(index.row(), 0) == "1" ? "0" : "1");
  });
  return grid;
}

}  // namespace rights_ui
