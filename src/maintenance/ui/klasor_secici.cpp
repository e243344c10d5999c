#include "maintenance/ui/klasor_secici.h"

#include <QComboBox>
#include <QFileSystemModel>
#include <QGridLayout>
#include <QHeaderView>
#include <QLineEdit>
#include <QListWidget>
#include <QLocale>
#include <QStorageInfo>
#include <QTreeView>

#include "maintenance/yedek.h"
#include "ui/theme.h"

namespace maintenance_ui {
namespace {

QString yol(const std::filesystem::path& klasor) {
  return ui::text(klasor.string());
}

}  // namespace

KlasorSecici::KlasorSecici(const Adlar& adlar, QWidget* parent)
    : QWidget(parent),
      model_(new QFileSystemModel(this)),
      surucu_(new QComboBox),
      agac_(new QTreeView),
      yol_(new QLineEdit),
      dosyalar_(new QListWidget) {
  surucu_->setObjectName(adlar.surucu);
  agac_->setObjectName(adlar.klasor);
  dosyalar_->setObjectName(adlar.dosya);
  surucu_->setAccessibleName("Sürücü");
  agac_->setAccessibleName("Klasörler");
  dosyalar_->setAccessibleName("Klasördeki dosyalar");
  yol_->setObjectName(QString(adlar.klasor) + "_Yol");
  yol_->setAccessibleName("Klasörün yolu");
  yol_->setToolTip("Klasörün yolu; yazıp Enter'a basınca oraya gidilir");
  model_->setFilter(QDir::AllDirs | QDir::NoDotAndDotDot);
  model_->setRootPath("/");
  agac_->setModel(model_);
  agac_->setHeaderHidden(true);
  for (int kolon = 1; kolon < model_->columnCount(); ++kolon) agac_->hideColumn(kolon);
  agac_->setContextMenuPolicy(Qt::CustomContextMenu);
  for (const QStorageInfo& disk : QStorageInfo::mountedVolumes())
    if (disk.isReady() && (disk.isRoot() || !disk.device().isEmpty()) &&
        surucu_->findData(disk.rootPath()) < 0 &&
        (disk.isRoot() || disk.device().startsWith("/dev/") || disk.rootPath().contains(":")))
      surucu_->addItem(ui::icon("yedek"), disk.rootPath(), disk.rootPath());
  auto* grid = new QGridLayout(this);
  grid->setContentsMargins(0, 0, 0, 0);
  grid->setSpacing(ui::gapSmall);
  grid->addWidget(surucu_, 0, 0);
  grid->addWidget(agac_, 1, 0);
  grid->addWidget(yol_, 0, 1);
  grid->addWidget(dosyalar_, 1, 1);
  grid->setColumnStretch(0, 3);
  grid->setColumnStretch(1, 2);
  connect(surucu_, &QComboBox::activated, this, [this] { surucuDegisti(); });
  connect(agac_->selectionModel(), &QItemSelectionModel::currentChanged, this, [this] {
    yenile();
    emit degisti();
  });
  // The tree is read in the background: only then is there something to scroll to.
  connect(model_, &QFileSystemModel::directoryLoaded, this,
          [this] { agac_->scrollTo(agac_->currentIndex(), QAbstractItemView::PositionAtCenter); });
  connect(yol_, &QLineEdit::returnPressed, this, [this] {
    if (!git(ui::utf8(yol_->text().trimmed()))) yol_->setText(yol(klasor()));
  });
  connect(agac_, &QTreeView::customContextMenuRequested, this,
          [this](const QPoint& yer) { emit menuIstendi(agac_->viewport()->mapToGlobal(yer)); });
}

std::filesystem::path KlasorSecici::klasor() const {
  return ui::utf8(model_->filePath(agac_->currentIndex()));
}

bool KlasorSecici::git(const std::filesystem::path& klasor) {
  const QModelIndex yer = model_->index(yol(klasor));
  if (!yer.isValid()) return false;
  agac_->setCurrentIndex(yer);
  agac_->expand(yer);
  agac_->scrollTo(yer);
  yenile();
  return true;
}

void KlasorSecici::yenile() {
  dosyalar_->clear();
  const std::filesystem::path dizin = klasor();
  yol_->setText(yol(dizin));
  for (const std::string& ad : maintenance::klasorDosyalari(dizin)) {
    std::error_code hata;
    const auto boy = std::filesystem::file_size(dizin / ad, hata);
    dosyalar_->addItem(
        ui::text(ad) +
        (hata ? QString() : "   (" + QLocale().formattedDataSize(static_cast<qint64>(boy)) + ")"));
  }
}

void KlasorSecici::surucuDegisti() {
  if (!git(ui::utf8(surucu_->currentData().toString()))) surucu_->setCurrentIndex(0);
}

}  // namespace maintenance_ui
