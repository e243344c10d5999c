// The widgets of the till's settings, built once.
#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QShortcut>
#include <QTabWidget>
#include <tuple>

#include "rights/islem.h"
#include "rights/ui/kasiyer_yetki_frm.h"
#include "ui/form.h"
#include "ui/izgara.h"
#include "ui/theme.h"

namespace rights_ui {

namespace {

using rights::AyarTuru;
using rights::KolonTuru;
using session::HucreTuru;

constexpr int tikGenisligi = 52, yaziGenisligi = 190, kodGenisligi = 150, adGenisligi = 230,
              sozGenisligi = 120;
constexpr int yetkiKolonu = 1, sozKolonu = 3;
constexpr int yanYana = 700;  // width from which frames and grids stand side by side

// A key of this widget alone.
template <typename Action>
void tus(QWidget* widget, int key, Action action) {
  auto* shortcut = new QShortcut(QKeySequence(key), widget);
  shortcut->setContext(Qt::WidgetShortcut);
  QObject::connect(shortcut, &QShortcut::activated, widget, action);
}

// A check box over both columns, or a field behind its caption.
QWidget* alanEkle(QGridLayout* grid, bool kutu, const char* ad, std::string_view caption, int genislik) {
  const int line = grid->rowCount();
  if (kutu) {
    auto* box = new QCheckBox(ui::text(caption));
    box->setObjectName(ad);
    grid->addWidget(box, line, 0, 1, 2);
    return box;
  }
  auto* field = new QLineEdit;
  field->setObjectName(ad);
  if (genislik > 0) field->setMaxLength(genislik);
  grid->addWidget(ui::caption(ui::text(caption), field), line, 0);
  grid->addWidget(field, line, 1);
  return field;
}

QGridLayout* izgaraDuzeni(QWidget* box) {
  auto* grid = new QGridLayout(box);
  grid->setContentsMargins(ui::gap, ui::gap, ui::gap, ui::gap);
  grid->setHorizontalSpacing(ui::gap);
  grid->setVerticalSpacing(2);
  grid->setColumnStretch(1, 1);
  return grid;
}

}  // namespace

KasiyerYetkiFrm::KasiyerYetkiFrm(session::Oturum& oturum, ui::ConsolePort&)
    : Kart("kasiyer", "Kasiyer Yetkileri"), oturum_(oturum) {
  setObjectName("KasiyerYetkiFrm");
  sekmeler_ = new QTabWidget;
  sekmeler_->setObjectName("Sekmeler");
  sekmeler_->addTab(fisSekmesi(), "Yetkiler");
  sekmeler_->addTab(ayarSekmesi(), "Genel Ayarlar");
  sekmeler_->addTab(nesneSekmesi(), "Ekran ve Teraziler");
  sekmeler_->addTab(kisayolSekmesi(), "Kısayollar");
  body()->addWidget(firmaSatiri());
  body()->addWidget(sekmeler_, 1);
  hint()->setText("  F2 (Kaydet)  Escape (Çıkış)");
  std::tie(tamam_, cikis_) = saveAndLeave("TamamBtn", "CikisBtn", {Qt::Key_Escape});
  connect(tamam_, &QPushButton::clicked, this, &KasiyerYetkiFrm::kaydet);
  connect(cikis_, &QPushButton::clicked, this, &KasiyerYetkiFrm::kapan);
}

QWidget* KasiyerYetkiFrm::firmaSatiri() {
  auto* row = new QWidget;
  auto* layout = new QHBoxLayout(row);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(ui::gap);
  firma_ = new QComboBox;
  firma_->setObjectName("Firma_Combo");
  firma_->setMinimumWidth(160);
  layout->addWidget(ui::caption("Yetki Belirlenecek Firma :", firma_));
  layout->addWidget(firma_);
  layout->addStretch(1);
  connect(firma_, &QComboBox::currentIndexChanged, this, &KasiyerYetkiFrm::firmaSecildi);
  return row;
}

// A value opens its list, a word turns into the other one.
QWidget* KasiyerYetkiFrm::fisSekmesi() {
  auto* page = new QWidget;
  auto* layout = new QHBoxLayout(page);
  layout->setContentsMargins(ui::gap, ui::gap, ui::gap, ui::gap);
  fis_ = new ui::Izgara(oturum_, "KasiyerYetkiFrm.FisGrd",
                        {{"Yazi", "Yetki", yaziGenisligi, HucreTuru::Metin, false, true},
                         {"Yetkisi", "Değeri", kodGenisligi, HucreTuru::Metin, false, true},
                         {"Ad", "Adı", adGenisligi, HucreTuru::Metin, false, true},
                         {"Yetkisi2", "Yetkisi", sozGenisligi, HucreTuru::Metin, false, true}});
  fis_->satirEklenir = false;
  fis_->verticalHeader()->hide();
  layout->addWidget(fis_);
  const auto calis = [this](int row, int column) {
    if (row < 0) return;
    const rights::FisTanimi& tanim = rights::fisTanimlari()[static_cast<std::size_t>(row)];
    if (column == sozKolonu && !tanim.hak.empty()) {
      bool& soz = duzen_.FisGrd[static_cast<std::size_t>(row)].Yetkisi2;
      soz = !soz;
      fisGoster();
      fis_->git(row, column);
    } else if (column == yetkiKolonu) {
      degerSec(row);
    }
  };
  connect(fis_, &QAbstractItemView::clicked, this,
          [calis](const QModelIndex& index) { calis(index.row(), index.column()); });
  for (const int key : {Qt::Key_Space, Qt::Key_F4})
    tus(fis_, key, [this, calis] { calis(fis_->satir(), fis_->currentIndex().column()); });
  tus(fis_, Qt::Key_Delete, [this] {
    if (fis_->satir() >= 0) degerSil(fis_->satir());
  });
  fis_->setToolTip(
      "Değer sütununda tıklama, boşluk ya da F4 listeyi açar, Delete değeri siler; Yetkisi sütununda "
      "tıklama ya da boşluk sözü çevirir.");
  return page;
}

void KasiyerYetkiFrm::altAlta(QBoxLayout* yanlar) {
  darOlunca(yanYana, [yanlar](bool dar) {
    yanlar->setDirection(dar ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight);
  });
}

QWidget* KasiyerYetkiFrm::ayarSekmesi() {
  auto* page = new QWidget;
  auto* columns = new QHBoxLayout(page);
  columns->setContentsMargins(ui::gap, ui::gapSmall, ui::gap, ui::gap);
  columns->setSpacing(ui::gap);
  QGroupBox* genel = frame("Frame1", "Genel Ayarlar");
  QGroupBox* aygit = frame("Frame2", "Aygıtlar ve Satış");
  auto* left = izgaraDuzeni(genel);
  for (const rights::AyarTanimi& tanim : rights::ayarTanimlari())
    ayarlar_.push_back(tanim.tur == AyarTuru::Nesne
                           ? nullptr
                           : alanEkle(left, tanim.tur == AyarTuru::Kutu, tanim.kontrol.data(), tanim.yazi,
                                      tanim.tur == AyarTuru::Metin
                                          ? rights::kolonGenisligi("KASIYERCONFIG", tanim.kolon)
                                          : 0));
  auto* right = izgaraDuzeni(aygit);
  for (const rights::Kolon& kolon : rights::kasiyerKolonlari())
    kolonlar_.push_back(
        alanEkle(right, kolon.tur == KolonTuru::Bit, kolon.ad.data(), kolon.yazi, kolon.genislik));
  left->setRowStretch(left->rowCount(), 1);
  right->setRowStretch(right->rowCount(), 1);
  columns->addWidget(genel, 1);
  columns->addWidget(aygit, 1);
  altAlta(columns);
  return ui::scrolling(page);
}

ui::Izgara* KasiyerYetkiFrm::tikIzgarasi(const char* ad, const char* kod, const char* aciklama) {
  auto* grid = new ui::Izgara(oturum_, ad,
                              {{"Sec", "Seç", tikGenisligi, HucreTuru::Tik},
                               {"Kod", kod, kodGenisligi, HucreTuru::Metin, false, true},
                               {"Nesne_Adi", aciklama, kodGenisligi, HucreTuru::Metin, false, true}});
  grid->satirEklenir = false;
  grid->verticalHeader()->hide();
  connect(grid, &QAbstractItemView::clicked, this, [grid](const QModelIndex& index) {
    if (index.column() != 0)
      grid->veri().yaz(index.row(), 0, grid->veri().hucre(index.row(), 0) == "1" ? "0" : "1");
  });
  return grid;
}

QWidget* KasiyerYetkiFrm::nesneSekmesi() {
  auto* page = new QWidget;
  auto* grids = new QHBoxLayout(page);
  grids->setContentsMargins(ui::gap, ui::gap, ui::gap, ui::gap);
  grids->setSpacing(ui::gap);
  nesneler_ = tikIzgarasi("KasiyerYetkiFrm.NesnelerGRD", "Nesne", "Nesne Adı");
  teraziler_ = tikIzgarasi("KasiyerYetkiFrm.TeraziGRD", "Terazi", "Açıklama");
  const std::pair<const char*, ui::Izgara*> sides[] = {{"Satış ekranında görünecek nesneler", nesneler_},
                                                       {"Kullanılacak teraziler", teraziler_}};
  for (const auto& [caption, grid] : sides) {
    auto* side = new QVBoxLayout;
    side->addWidget(ui::caption(caption, grid));
    side->addWidget(grid, 1);
    grids->addLayout(side, 1);
  }
  altAlta(grids);
  return page;
}

QWidget* KasiyerYetkiFrm::kisayolSekmesi() {
  auto* page = new QWidget;
  auto* layout = new QVBoxLayout(page);
  layout->setContentsMargins(ui::gap, ui::gap, ui::gap, ui::gap);
  stoklar_ = new ui::Izgara(oturum_, "KasiyerYetkiFrm.StokFlx",
                            {{"Stok_Kod", "Stok Kodu", kodGenisligi, HucreTuru::Metin, false, true},
                             {"Stok_Adi", "Stok Adı", adGenisligi, HucreTuru::Metin, false, true}});
  stoklar_->satirEklenir = false;
  auto* choose = new QPushButton("Stok Seç");
  choose->setObjectName("StokSecBtn");
  auto* erase = new QPushButton("Satırı Boşalt");
  erase->setObjectName("StokSilBtn");
  auto* buttons = new QHBoxLayout;
  buttons->addWidget(choose);
  buttons->addWidget(erase);
  buttons->addStretch(1);
  layout->addWidget(stoklar_, 1);
  layout->addLayout(buttons);
  const auto bosalt = [this] {
    if (stoklar_->satir() < 0) return;
    duzen_.StokFlx[static_cast<std::size_t>(stoklar_->satir())] = {};
    kisayolGoster();
  };
  connect(choose, &QPushButton::clicked, this, [this] { stokSec(stoklar_->satir()); });
  connect(erase, &QPushButton::clicked, this, bosalt);
  connect(stoklar_, &QAbstractItemView::doubleClicked, this,
          [this](const QModelIndex& index) { stokSec(index.row()); });
  for (const int key : {Qt::Key_Space, Qt::Key_F4})
    tus(stoklar_, key, [this] { stokSec(stoklar_->satir()); });
  tus(stoklar_, Qt::Key_Delete, bosalt);
  return page;
}

}  // namespace rights_ui
