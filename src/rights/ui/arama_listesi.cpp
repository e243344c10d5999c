#include "rights/ui/arama_listesi.h"

#include <QComboBox>
#include <QCoreApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>
#include <QTimer>
#include <QVBoxLayout>

#include "ui/boxes.h"
#include "ui/theme.h"
#include "ui/uzun_is.h"

namespace rights_ui {

namespace {

constexpr QSize boyut(560, 440);
constexpr int kodGenisligi = 180;

}  // namespace

AramaListesi::AramaListesi(session::Oturum& oturum, const rights::KasiyerDuzeni& duzen, rights::AramaTuru tur,
                           QWidget* parent)
    : QDialog(parent),
      oturum_(oturum),
      duzen_(duzen),
      tur_(tur),
      arama_(new QLineEdit),
      liste_(new QTableWidget(0, 2)),
      ozet_(new QLabel),
      secBtn_(new QPushButton("Seç")),
      saat_(new QTimer(this)) {
  const rights::AramaTanimi& tanim = rights::aramaTanimi(tur);
  setObjectName(tur == rights::AramaTuru::Stok ? "StokFrm" : "AramaFrm");
  setWindowTitle(tur == rights::AramaTuru::Stok ? QString("Stok Listesi") : ui::text(tanim.kodBasligi));
  resize(boyut);
  arama_->setObjectName("Arama");
  arama_->setPlaceholderText("Aranacak metin; baştaki boşluk içinde arar");
  saat_->setObjectName("AramaTimer");
  saat_->setSingleShot(true);
  saat_->setInterval(rights::aramaBekleme);
  liste_->setObjectName(tur == rights::AramaTuru::Stok ? "TDBG1" : "TDBG2");
  liste_->setHorizontalHeaderLabels({ui::text(tanim.kodBasligi), ui::text(tanim.adBasligi)});
  liste_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  liste_->setSelectionBehavior(QAbstractItemView::SelectRows);
  liste_->setSelectionMode(QAbstractItemView::SingleSelection);
  liste_->setTabKeyNavigation(false);
  liste_->verticalHeader()->hide();
  liste_->horizontalHeader()->resizeSection(0, kodGenisligi);
  liste_->horizontalHeader()->setStretchLastSection(true);
  liste_->horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  liste_->horizontalHeader()->setHighlightSections(false);
  liste_->horizontalHeader()->setSortIndicatorShown(true);
  liste_->horizontalHeader()->setSortIndicator(0, Qt::AscendingOrder);
  liste_->horizontalHeader()->setSectionsClickable(true);
  ozet_->setProperty("rol", "ipucu");
  secBtn_->setObjectName("SecBtn");
  secBtn_->setProperty("rol", "ana");
  secBtn_->setAutoDefault(false);
  auto* leave = new QPushButton("Vazgeç");
  leave->setAutoDefault(false);

  auto* top = new QHBoxLayout;
  top->addWidget(arama_, 1);
  if (tur == rights::AramaTuru::Stok) {
    listeTipi_ = new QComboBox;
    listeTipi_->setObjectName("Liste_Tipi");
    listeTipi_->addItems({"Tümü", "Aktif Olanlar", "Aktif Olmayanlar"});
    listeTipi_->setCurrentIndex(1);
    top->addWidget(listeTipi_);
    connect(listeTipi_, &QComboBox::currentIndexChanged, this, &AramaListesi::ara);
  }
  auto* foot = new QHBoxLayout;
  foot->addWidget(ozet_, 1);
  foot->addWidget(secBtn_);
  foot->addWidget(leave);
  auto* all = new QVBoxLayout(this);
  all->setContentsMargins(ui::gap, ui::gap, ui::gap, ui::gap);
  all->setSpacing(ui::gap);
  all->addLayout(top);
  all->addWidget(liste_, 1);
  all->addLayout(foot);

  arama_->installEventFilter(this);
  liste_->installEventFilter(this);
  connect(arama_, &QLineEdit::textEdited, saat_, qOverload<>(&QTimer::start));
  connect(saat_, &QTimer::timeout, this, &AramaListesi::ara);
  connect(liste_, &QTableWidget::cellDoubleClicked, this, &AramaListesi::sec);
  connect(secBtn_, &QPushButton::clicked, this, &AramaListesi::sec);
  connect(leave, &QPushButton::clicked, this, &QDialog::reject);
  connect(liste_->horizontalHeader(), &QHeaderView::sectionClicked, this, [this](int column) {
    adaGore_ = column == 1;
    liste_->horizontalHeader()->setSortIndicator(column, Qt::AscendingOrder);
    ara();
  });
  ara();
  arama_->setFocus();
}

// Keys that write go to the field from wherever they are typed; those that move go to the list.
bool AramaListesi::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::KeyPress) return QDialog::eventFilter(watched, event);
  auto* press = static_cast<QKeyEvent*>(event);
  switch (press->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
      sec();
      return true;
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
      if (watched == liste_) return false;
      QCoreApplication::sendEvent(liste_, event);
      return true;
    default:
      break;
  }
  const QString typed = press->key() == Qt::Key_Backspace ? QString(QChar(8)) : press->text();
  if (typed.isEmpty() || press->modifiers() & (Qt::ControlModifier | Qt::AltModifier)) return false;
  // In the field itself only what its own editing does not know: a blank at the beginning.
  if (watched == arama_ && !(typed == " " && arama_->text().isEmpty())) return false;
  std::string text = ui::utf8(arama_->text());
  if (!rights::Arama_Tus(text, typed.toUcs4().front())) return false;
  arama_->setText(ui::text(text));
  saat_->start();
  return true;
}

void AramaListesi::ara() {
  saat_->stop();
  if (ui::isSuruyor()) return;
  const ui::WaitCursor wait;
  const auto tip =
      listeTipi_ ? static_cast<rights::ListeTipi>(listeTipi_->currentIndex()) : rights::ListeTipi::Tumu;
  rights::aramaListesi(oturum_, duzen_, tur_, ui::utf8(arama_->text()), adaGore_, tip, satirlar_);
  liste_->setRowCount(static_cast<int>(satirlar_.size()));
  for (int row = 0; row < liste_->rowCount(); ++row) {
    const rights::AramaSatiri& satir = satirlar_[static_cast<std::size_t>(row)];
    liste_->setItem(row, 0, new QTableWidgetItem(ui::text(satir.kod)));
    liste_->setItem(row, 1, new QTableWidgetItem(ui::text(satir.ad)));
  }
  if (liste_->rowCount() > 0) liste_->setCurrentCell(0, 0);
  secBtn_->setEnabled(liste_->rowCount() > 0);
  const bool full = satirlar_.size() == static_cast<std::size_t>(rights::aramaSiniri);
  ozet_->setText(full ? QString("İlk %1 kayıt; aramayı daraltınız.").arg(rights::aramaSiniri)
                      : QString("%1 kayıt").arg(satirlar_.size()));
}

void AramaListesi::sec() {
  // What is still to be searched is searched first: Enter means what has been typed.
  if (saat_->isActive()) ara();
  const int row = liste_->currentRow();
  if (row < 0) return;
  secilen_ = satirlar_[static_cast<std::size_t>(row)];
  accept();
}

}  // namespace rights_ui
