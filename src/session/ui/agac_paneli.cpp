#include "session/ui/agac_paneli.h"

#include <QCollator>
#include <QEvent>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTabBar>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "session/metin.h"
#include "ui/theme.h"

namespace session_ui {
namespace {

constexpr int treeIcon = 20, enDarUnvan = 70;
constexpr int siraRolu = Qt::UserRole;
enum Sutun { AdSutunu, UnvanSutunu, KodSutunu, SutunSayisi };

// Image list of the tree by image index.
QString dugumResmi(std::string_view kind) {
  if (kind == session::dugum::FT) return "firmalar";
  if (kind == session::dugum::KT) return "kullanicilar";
  return session::resimSirasi(kind) == 1 ? "firma" : "kullanici";
}

bool yaprakMi(std::string_view kind) {
  return kind == session::dugum::F || kind == session::dugum::K;
}

// Branches keep their places whatever the order.
class Oge : public QTreeWidgetItem {
 public:
  using QTreeWidgetItem::QTreeWidgetItem;
  bool operator<(const QTreeWidgetItem& other) const override {
    if (!parent()) {
      const bool once = data(0, siraRolu).toInt() < other.data(0, siraRolu).toInt();
      return treeWidget()->header()->sortIndicatorOrder() == Qt::AscendingOrder ? once : !once;
    }
    static const QCollator sirala = [] {
      QCollator collator(QLocale(QLocale::Turkish, QLocale::Turkey));
      collator.setNumericMode(true);
      return collator;
    }();
    const int sutun = treeWidget()->sortColumn();
    return sirala.compare(text(sutun), other.text(sutun)) < 0;
  }
};

struct Agac : QTreeWidget {
  using QTreeWidget::sizeHintForColumn;
  // A click beside the rows leaves the current one seen: the panel goes on showing it.
  QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex& yer,
                                                       const QEvent* olay) const override {
    return yer.isValid() ? QTreeWidget::selectionCommand(yer, olay) : QItemSelectionModel::NoUpdate;
  }
};

}  // namespace

AgacPaneli::AgacPaneli(QWidget* parent)
    : QWidget(parent),
      sekmeler_(new QTabBar),
      suzgec_(new QLineEdit),
      agac_(new Agac),
      bosLbl_(new QLabel("Süzgece uyan kayıt yok.")),
      kopuk_(new QWidget) {
  sekmeler_->setObjectName("Dallar");
  sekmeler_->addTab("Firmalar");
  sekmeler_->addTab("Kullanıcılar");
  sekmeler_->setExpanding(true);
  sekmeler_->setDrawBase(false);
  suzgec_->setObjectName("Suzgec");
  suzgec_->setPlaceholderText("Ad, unvan ya da kod ara  (Ctrl+F)");
  suzgec_->setClearButtonEnabled(false);
  suzgec_->setAccessibleName("Firma ve kullanıcı süzgeci");
  suzgec_->installEventFilter(this);
  bosLbl_->setProperty("rol", "ipucu");
  bosLbl_->setVisible(false);

  agac_->setObjectName("AlanTreeList");
  agac_->setAccessibleName("Firmalar ve kullanıcılar");
  agac_->setColumnCount(SutunSayisi);
  agac_->setHeaderLabels({"Ad", "Unvan", "Kod"});
  agac_->header()->setStretchLastSection(false);
  agac_->header()->setSectionsMovable(false);
  agac_->header()->setSectionResizeMode(QHeaderView::Fixed);
  agac_->header()->setSortIndicatorClearable(true);
  agac_->setTextElideMode(Qt::ElideMiddle);
  agac_->setIconSize(QSize(treeIcon, treeIcon));
  agac_->setExpandsOnDoubleClick(false);
  agac_->setContextMenuPolicy(Qt::CustomContextMenu);
  agac_->setSortingEnabled(true);
  agac_->sortByColumn(-1, Qt::AscendingOrder);
  agac_->viewport()->installEventFilter(this);

  kopuk_->setObjectName("KopukFrm");
  kopuk_->setProperty("rol", "uyari");
  kopuk_->setAttribute(Qt::WA_StyledBackground);
  auto* text = new QLabel("Liste okunamadı; görünen eski listedir.");
  text->setWordWrap(true);
  auto* again = new QPushButton("Yeniden Bağlan");
  again->setObjectName("YenidenBaglanBtn");
  auto* row = new QHBoxLayout(kopuk_);
  row->addWidget(text, 1);
  row->addWidget(again);
  kopuk_->setVisible(false);

  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(ui::gapSmall);
  layout->addWidget(sekmeler_);
  layout->addWidget(suzgec_);
  layout->addWidget(kopuk_);
  layout->addWidget(bosLbl_);
  layout->addWidget(agac_, 1);
  setTabOrder(sekmeler_, suzgec_);
  setTabOrder(suzgec_, agac_);

  connect(again, &QPushButton::clicked, this, &AgacPaneli::yenidenBaglan);
  connect(suzgec_, &QLineEdit::textChanged, this, &AgacPaneli::suz);
  connect(sekmeler_, &QTabBar::currentChanged, this, &AgacPaneli::sekmeyiUygula);
  connect(agac_, &QTreeWidget::currentItemChanged, this, [this](const QTreeWidgetItem* oge) {
    sekmeyiSec(oge);
    emit seciliDegisti();
  });
}

QTreeWidgetItem* AgacPaneli::ogeYap(std::size_t sira, QTreeWidgetItem* dal) {
  const session::Dugum& d = dugumler_[sira];
  auto* oge = dal ? new Oge(dal) : new Oge(agac_);
  oge->setText(AdSutunu, ui::text(d.text));
  oge->setText(UnvanSutunu, ui::text(d.unvan));
  oge->setText(KodSutunu, ui::text(d.kod));
  oge->setIcon(AdSutunu, ui::icon(dugumResmi(d.kind)));
  oge->setData(0, siraRolu, static_cast<int>(sira));
  if (!dal) {
    oge->setFirstColumnSpanned(true);
    return oge;
  }
  QStringList tip{ui::text(d.text)};
  if (!d.unvan.empty()) tip << ui::text(d.unvan);
  if (!d.kod.empty()) tip << "Kod: " + ui::text(d.kod);
  for (int sutun = 0; sutun < SutunSayisi; ++sutun) oge->setToolTip(sutun, tip.join('\n'));
  return oge;
}

void AgacPaneli::doldur(std::vector<session::Dugum> dugumler) {
  const session::Dugum eski = secili();
  const QTreeWidgetItem* eskiOge = agac_->currentItem();
  const int eskiYer = eskiOge && eskiOge->parent()
                          ? eskiOge->parent()->indexOfChild(const_cast<QTreeWidgetItem*>(eskiOge))
                          : -1;
  const bool ilk = dugumler_.empty();
  dugumler_ = std::move(dugumler);
  {
    const QSignalBlocker sessiz(agac_);
    agac_->clear();
    QTreeWidgetItem *dal = nullptr, *eskiDal = nullptr;
    for (std::size_t i = 0; i < dugumler_.size(); ++i) {
      const session::Dugum& d = dugumler_[i];
      if (yaprakMi(d.kind)) {
        ogeYap(i, dal);
        continue;
      }
      dal = ogeYap(i, nullptr);
      if (d.kind == eski.kind || std::string(d.kind) == eski.kind + "T") eskiDal = dal;
    }
    agac_->expandAll();
    for (int i = 0; i < sekmeler_->count() && i < agac_->topLevelItemCount(); ++i)
      sekmeler_->setTabText(i, QString("%1 (%2)")
                                   .arg(i == 0 ? "Firmalar" : "Kullanıcılar")
                                   .arg(agac_->topLevelItem(i)->childCount()));
    QTreeWidgetItem* yeni = ilk ? nullptr : yaprak(eski);
    if (!yeni && eskiDal && eskiYer >= 0 && eskiDal->childCount() > 0)
      yeni = eskiDal->child(std::min(eskiYer, eskiDal->childCount() - 1));
    if (!yeni) yeni = eskiDal ? eskiDal : agac_->topLevelItem(0);
    agac_->setCurrentItem(yeni);
  }
  suz();
  sekmeyiSec(agac_->currentItem());
  sekmeyiUygula(sekmeler_->currentIndex());
  sutunlar();
  emit seciliDegisti();
}

session::Dugum AgacPaneli::secili() const {
  const QTreeWidgetItem* oge = agac_->currentItem();
  return oge ? dugumler_[static_cast<std::size_t>(oge->data(0, siraRolu).toInt())] : session::Dugum{};
}

int AgacPaneli::altSayisi() const {
  return agac_->currentItem() ? agac_->currentItem()->childCount() : 0;
}

QTreeWidgetItem* AgacPaneli::yaprak(const session::Dugum& dugum) const {
  for (int i = 0; i < agac_->topLevelItemCount(); ++i) {
    QTreeWidgetItem* dal = agac_->topLevelItem(i);
    for (int j = 0; j < dal->childCount(); ++j) {
      const auto& d = dugumler_[static_cast<std::size_t>(dal->child(j)->data(0, siraRolu).toInt())];
      if (d.kind == dugum.kind && d.id == dugum.id) return dal->child(j);
    }
  }
  return nullptr;
}

bool AgacPaneli::sec(const QString& ad) {
  for (QTreeWidgetItem* oge : agac_->findItems(ad, Qt::MatchFixedString | Qt::MatchRecursive)) {
    if (!oge->parent()) continue;
    suzgec_->clear();
    agac_->setCurrentItem(oge);
    agac_->scrollToItem(oge);
    return true;
  }
  return false;
}

void AgacPaneli::baglantiKoptu(bool koptu) {
  kopuk_->setVisible(koptu);
}

void AgacPaneli::suzgeceGit() {
  suzgec_->setFocus(Qt::ShortcutFocusReason);
  suzgec_->selectAll();
}

// The other branch is out of sight, and so is a current node in it.
void AgacPaneli::sekmeyiUygula(int sekme) {
  for (int i = 0; i < agac_->topLevelItemCount(); ++i) agac_->topLevelItem(i)->setHidden(i != sekme);
  QTreeWidgetItem* oge = agac_->currentItem();
  while (oge && oge->parent()) oge = oge->parent();
  if (oge && agac_->indexOfTopLevelItem(oge) != sekme) agac_->setCurrentItem(agac_->topLevelItem(sekme));
  sutunlar();
}

void AgacPaneli::sekmeyiSec(const QTreeWidgetItem* oge) {
  while (oge && oge->parent()) oge = oge->parent();
  const int dal = oge ? agac_->indexOfTopLevelItem(const_cast<QTreeWidgetItem*>(oge)) : -1;
  if (dal >= 0 && dal < sekmeler_->count()) sekmeler_->setCurrentIndex(dal);
}

void AgacPaneli::suz() {
  const QString aranan = ui::text(session::Buyuk_Harf(ui::utf8(suzgec_->text().trimmed())));
  int gorunen = 0;
  for (int i = 0; i < agac_->topLevelItemCount(); ++i) {
    QTreeWidgetItem* dal = agac_->topLevelItem(i);
    for (int j = 0; j < dal->childCount(); ++j) {
      QTreeWidgetItem* oge = dal->child(j);
      bool uyar = aranan.isEmpty();
      for (int sutun = 0; !uyar && sutun < SutunSayisi; ++sutun)
        uyar = ui::text(session::Buyuk_Harf(ui::utf8(oge->text(sutun)))).contains(aranan);
      oge->setHidden(!uyar);
      gorunen += uyar && i == sekmeler_->currentIndex() ? 1 : 0;
    }
  }
  bosLbl_->setVisible(!aranan.isEmpty() && gorunen == 0);
}

// Names are shown whole first, then codes, then as much of the titles as there is room for.
void AgacPaneli::sutunlar() {
  const int yer = agac_->viewport()->width();
  const bool firmalar = sekmeler_->currentIndex() == 0;
  const auto* olculen = static_cast<const Agac*>(agac_);
  const int ad = std::min(olculen->sizeHintForColumn(AdSutunu) + ui::gap, yer);
  const int kod = std::max(olculen->sizeHintForColumn(KodSutunu) + ui::gap,
                           olculen->header()->sectionSizeHint(KodSutunu));
  const int kalan = yer - ad;
  const bool kodVar = firmalar && kod <= kalan;
  const int unvan = kalan - (kodVar ? kod : 0);
  const bool unvanVar = firmalar && unvan >= enDarUnvan;
  agac_->setHeaderHidden(!firmalar);
  agac_->setColumnHidden(KodSutunu, !kodVar);
  agac_->setColumnHidden(UnvanSutunu, !unvanVar);
  agac_->header()->resizeSection(AdSutunu, unvanVar ? ad : yer - (kodVar ? kod : 0));
  if (unvanVar) agac_->header()->resizeSection(UnvanSutunu, unvan);
  if (kodVar) agac_->header()->resizeSection(KodSutunu, kod);
}

bool AgacPaneli::eventFilter(QObject* watched, QEvent* event) {
  if (watched == agac_->viewport() && event->type() == QEvent::Resize) sutunlar();
  if (watched == suzgec_ && event->type() == QEvent::KeyPress) {
    const int tus = static_cast<QKeyEvent*>(event)->key();
    if (tus == Qt::Key_Escape) suzgec_->clear();
    const bool asagi = tus == Qt::Key_Down || tus == Qt::Key_Return || tus == Qt::Key_Enter;
    if (asagi) {
      // The first that is left, unless the current one is.
      QTreeWidgetItem* dal = agac_->topLevelItem(sekmeler_->currentIndex());
      QTreeWidgetItem* oge = agac_->currentItem();
      for (int j = 0; dal && (!oge || oge->isHidden() || oge == dal) && j < dal->childCount(); ++j)
        if (!dal->child(j)->isHidden()) oge = dal->child(j);
      if (oge && !oge->isHidden()) agac_->setCurrentItem(oge);
    }
    if (asagi || tus == Qt::Key_Escape) {
      agac_->setFocus();
      return true;
    }
  }
  return QWidget::eventFilter(watched, event);
}

}  // namespace session_ui
