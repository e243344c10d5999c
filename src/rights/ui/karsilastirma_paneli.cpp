#include "rights/ui/karsilastirma_paneli.h"

#include <QComboBox>
#include <QGridLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTableWidget>

#include "rights/haklar.h"
#include "session/konsol.h"
#include "ui/boxes.h"
#include "ui/form.h"
#include "ui/theme.h"

namespace rights_ui {

namespace {

constexpr int degerGenisligi = 90;

}  // namespace

KarsilastirmaPaneli::KarsilastirmaPaneli(session::Oturum& oturum, Gosterilen gosterilen)
    : oturum_(oturum),
      gosterilen_(std::move(gosterilen)),
      kullanici_(new QComboBox),
      firma_(new QComboBox),
      liste_(new QTableWidget(0, 3)),
      ozet_(new QLabel) {
  kullanici_->setObjectName("Karsi_Kullanici");
  firma_->setObjectName("Karsi_Firma");
  liste_->setObjectName("FarkGrd");
  liste_->setHorizontalHeaderLabels({"Yetki", "", ""});
  liste_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  liste_->setSelectionBehavior(QAbstractItemView::SelectRows);
  liste_->setSelectionMode(QAbstractItemView::SingleSelection);
  liste_->setWordWrap(false);
  liste_->setTextElideMode(Qt::ElideLeft);
  liste_->verticalHeader()->hide();
  liste_->horizontalHeader()->setSectionResizeMode(0, QHeaderView::Stretch);
  for (const int column : {1, 2}) liste_->horizontalHeader()->resizeSection(column, degerGenisligi);
  ozet_->setProperty("rol", "ipucu");
  ozet_->setObjectName("FarkOzeti");
  ozet_->setWordWrap(true);
  auto* run = new QPushButton("Karşılaştır");
  run->setObjectName("KarsilastirBtn");

  auto* grid = new QGridLayout(this);
  grid->setContentsMargins(ui::gap, ui::gap, ui::gap, ui::gap);
  grid->setHorizontalSpacing(ui::gap);
  grid->setVerticalSpacing(ui::gapSmall);
  grid->setColumnStretch(1, 1);
  grid->addWidget(ui::caption("Kullanıcı :", kullanici_), 0, 0);
  grid->addWidget(kullanici_, 0, 1);
  grid->addWidget(ui::caption("Firma :", firma_), 1, 0);
  grid->addWidget(firma_, 1, 1);
  grid->addWidget(run, 0, 2, 2, 1, Qt::AlignVCenter);
  grid->addWidget(ozet_, 2, 0, 1, 3);
  grid->addWidget(liste_, 3, 0, 1, 3);
  grid->setRowStretch(3, 1);
  connect(run, &QPushButton::clicked, this, &KarsilastirmaPaneli::karsilastir);
  connect(liste_, &QTableWidget::currentCellChanged, this, [this](int row) {
    const QTableWidgetItem* item = row < 0 ? nullptr : liste_->item(row, 0);
    if (item && item->data(Qt::UserRole).toInt() >= 0) emit hakSecildi(item->data(Qt::UserRole).toInt());
  });
}

void KarsilastirmaPaneli::kur(const rights::YetkiDuzeni& duzen) {
  liste_->setRowCount(0);
  ozet_->setText("Başka bir kullanıcı ya da firma seçip Karşılaştır düğmesine basınız.");
  ad_ = duzen.Kullanici_Ad;
  kullanici_->clear();
  firma_->clear();
  for (const std::string& firma : duzen.Firma_Combo) firma_->addItem(ui::text(firma));
  firma_->setCurrentText(ui::text(duzen.firma));
}

// Only when they are looked at: the editor opens without a further statement.
void KarsilastirmaPaneli::listeleriDoldur() {
  if (kullanici_->count() > 0) return;
  const QString firma = firma_->currentText();
  for (const session::Dugum& user : session::Kullanici_Listesi_Doldur(oturum_))
    kullanici_->addItem(ui::text(user.text));
  firma_->clear();
  for (const session::Dugum& company : session::Firma_Listesi_Doldur(oturum_))
    firma_->addItem(ui::text(company.text));
  kullanici_->setCurrentText(ui::text(ad_));
  firma_->setCurrentText(firma);
}

void KarsilastirmaPaneli::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  listeleriDoldur();
}

void KarsilastirmaPaneli::karsilastir() {
  const ui::WaitCursor wait;
  liste_->setRowCount(0);
  rights::YetkiDuzeni other;
  if (!rights::yetkiAc(oturum_, other, ui::utf8(kullanici_->currentText()),
                       ui::utf8(firma_->currentText()))) {
    ozet_->clear();
    return;
  }
  const rights::YetkiDuzeni shown = gosterilen_();
  const auto farklar = rights::farklar(shown, other);
  const QString sol = ui::text(shown.Kullanici_Ad), sag = ui::text(other.Kullanici_Ad);
  const bool ayniKisi = sol == sag;
  liste_->setHorizontalHeaderLabels(
      {"Yetki", ayniKisi ? ui::text(shown.firma) : sol, ayniKisi ? ui::text(other.firma) : sag});
  liste_->setRowCount(static_cast<int>(farklar.size()));
  for (int row = 0; row < liste_->rowCount(); ++row) {
    const rights::Fark& fark = farklar[static_cast<std::size_t>(row)];
    auto* yol = new QTableWidgetItem(ui::text(fark.yol));
    yol->setToolTip(yol->text());
    yol->setData(Qt::UserRole, fark.satir);
    liste_->setItem(row, 0, yol);
    liste_->setItem(row, 1, new QTableWidgetItem(ui::text(fark.sol)));
    liste_->setItem(row, 2, new QTableWidgetItem(ui::text(fark.sag)));
  }
  ozet_->setText(farklar.empty()
                     ? QString("Aralarında fark yok.")
                     : QString("%1 fark. Bir satır seçilirse yetki ağaçta gösterilir.").arg(farklar.size()));
}

}  // namespace rights_ui
