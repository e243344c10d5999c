#include "maintenance/ui/db_aktar_frm.h"

#include <QCheckBox>
#include <QDir>
#include <QGridLayout>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTableWidget>
#include <QTreeView>

#include "maintenance/aktar.h"
#include "maintenance/ui/klasor_secici.h"
#include "platform/folders.h"
#include "ui/console_port.h"
#include "ui/theme.h"

namespace maintenance_ui {

DbAktarFrm::DbAktarFrm(session::Oturum& oturum, ui::ConsolePort& konsol)
    : Kart("aktar", "Database Aktar"),
      oturum_(oturum),
      konsol_(konsol),
      kaynak_(new KlasorSecici({"Drive2", "Dir2", "File3"})),
      hedef_(new KlasorSecici({"Drive1", "Dir1", "File1"})),
      base_(new QTableWidget),
      genel_(new QCheckBox("Tüm Firma Genel Bilgileri İle Taşı (Defination_DB)")) {
  setObjectName("DbAktarFRm");
  base_->setObjectName("Base");
  base_->setColumnCount(2);
  base_->setHorizontalHeaderLabels({"Database Adı", "Seç"});
  base_->verticalHeader()->hide();
  base_->horizontalHeader()->setSectionResizeMode(0, QHeaderView::Stretch);
  base_->setSelectionMode(QAbstractItemView::SingleSelection);
  genel_->setObjectName("Genel");
  auto* hepsi = new QPushButton("Tümünü Seç");
  hepsi->setObjectName("TmS");
  auto* hicbiri = new QPushButton("Tümünü Kaldır");
  hicbiri->setObjectName("TmK");

  auto* kaynakKutusu = frame("Frame1", "Kaynak Dosyayı Seçiniz :");
  auto* kaynakGrid = new QGridLayout(kaynakKutusu);
  kaynakGrid->setContentsMargins(ui::gap, ui::gap, ui::gap, ui::gap);
  kaynakGrid->addWidget(kaynak_, 0, 0, 2, 1);
  kaynakGrid->addWidget(base_, 0, 1, 1, 2);
  kaynakGrid->addWidget(hepsi, 1, 1);
  kaynakGrid->addWidget(hicbiri, 1, 2);
  kaynakGrid->setColumnStretch(0, 3);
  kaynakGrid->setColumnStretch(1, 1);
  kaynakGrid->setColumnStretch(2, 1);
  auto* hedefKutusu = frame("Frame2", "Hedef Dosyayı Seçiniz :");
  auto* hedefGrid = new QGridLayout(hedefKutusu);
  hedefGrid->setContentsMargins(ui::gap, ui::gap, ui::gap, ui::gap);
  hedefGrid->addWidget(hedef_, 0, 0);
  body()->addWidget(kaynakKutusu, 3);
  body()->addWidget(hedefKutusu, 2);
  body()->addWidget(genel_);
  auto* aktarBtn = button("AktarBtn", "Aktarım İşlemini Başlat", "kaydet", true);
  auto* cikisBtn = button("CikisBtn", "Çıkış", "cikis");
  shortcut(Qt::Key_F3, cikisBtn);
  shortcut(Qt::Key_Escape, cikisBtn);
  hint()->setText("Escape: çıkış");
  connect(kaynak_, &KlasorSecici::degisti, this, &DbAktarFrm::kaynakDegisti);
  connect(hepsi, &QPushButton::clicked, this, [this] { hepsini(true); });
  connect(hicbiri, &QPushButton::clicked, this, [this] { hepsini(false); });
  connect(aktarBtn, &QPushButton::clicked, this, &DbAktarFrm::aktar);
  connect(cikisBtn, &QPushButton::clicked, this, [this] { kapan(); });
}

void DbAktarFrm::ac() {
  hedefYolu_ = maintenance::aktarHedefi(oturum_);
  if (!hedefYolu_.empty()) hedef_->git(platform::hostPath(hedefYolu_));
  if (kaynak_->klasor().empty()) kaynak_->git(ui::utf8(QDir::homePath()));
  genel_->setChecked(false);
  kaynakDegisti();
  kaynak_->agac()->setFocus();
}

void DbAktarFrm::kaynakDegisti() {
  const auto satirlar = maintenance::aktarListesi(kaynak_->klasor());
  base_->setRowCount(static_cast<int>(satirlar.size()));
  for (int i = 0; i < base_->rowCount(); ++i) {
    auto* ad = new QTableWidgetItem(ui::text(satirlar[static_cast<std::size_t>(i)].Database));
    ad->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable);
    auto* sec = new QTableWidgetItem;
    sec->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable);
    sec->setCheckState(Qt::Unchecked);
    base_->setItem(i, 0, ad);
    base_->setItem(i, 1, sec);
  }
}

void DbAktarFrm::hepsini(bool sec) {
  for (int i = 0; i < base_->rowCount(); ++i)
    base_->item(i, 1)->setCheckState(sec ? Qt::Checked : Qt::Unchecked);
}

void DbAktarFrm::aktar() {
  std::vector<maintenance::AktarSatiri> satirlar;
  for (int i = 0; i < base_->rowCount(); ++i)
    satirlar.push_back({ui::utf8(base_->item(i, 0)->text()), base_->item(i, 1)->checkState() == Qt::Checked});
  const auto kaynak = kaynak_->klasor(), secilen = hedef_->klasor();
  const bool genel = genel_->isChecked();
  // As the catalog writes the folder, unless another one was chosen.
  const std::string hedef = platform::hostPath(hedefYolu_) == secilen ? hedefYolu_ : secilen.string();
  bool aktarildi = false;
  isYap(oturum_, {"Veritabanları aktarılıyor", ui::Vazgec::Var},
        [&] { aktarildi = maintenance::Aktar(oturum_, kaynak, hedef, satirlar, genel); });
  hedef_->yenile();
  if (aktarildi) konsol_.Alan_Listesi_Doldur();
}

}  // namespace maintenance_ui
