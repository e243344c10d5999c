#include "rights/ui/yetki_frm.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QTabWidget>

#include "rights/haklar.h"
#include "rights/ui/karsilastirma_paneli.h"
#include "session/sayi.h"
#include "ui/boxes.h"
#include "ui/console_port.h"
#include "ui/izgara.h"
#include "ui/theme.h"
#include "ui/tik_agaci.h"

namespace rights_ui {

namespace {

constexpr int secKolonu = 0, isaretKolonu = 3;

std::string tik(bool acik) {
  return acik ? "1" : "0";
}

// The rows of a grid of flags are the columns of its part of the vocabulary.
session::IzgaraSatirlari bayraklar(const rights::YetkiSatiri& satir, rights::Bolum bolum) {
  session::IzgaraSatirlari rows;
  for (std::size_t i = 0; i < rights::kolonlar().size(); ++i) {
    const rights::Kolon& kolon = rights::kolonlar()[i];
    if (kolon.bolum == bolum && kolon.tur == rights::KolonTuru::Bit)
      rows.push_back({{tik(rights::verilmis(satir, i, 0)), std::string(kolon.yazi)}});
  }
  return rows;
}

void bayraklariOku(const ui::Izgara& izgara, rights::YetkiSatiri& satir, rights::Bolum bolum) {
  int row = 0;
  for (std::size_t i = 0; i < rights::kolonlar().size(); ++i) {
    const rights::Kolon& kolon = rights::kolonlar()[i];
    if (kolon.bolum == bolum && kolon.tur == rights::KolonTuru::Bit && row < izgara.veri().adet())
      satir.degerler[i] = izgara.veri().hucre(row++, secKolonu) == "1";
  }
}

void yerleriOku(const ui::Izgara& izgara, rights::Yerler& yerler) {
  for (int row = 0; row < izgara.veri().adet(); ++row) {
    yerler[static_cast<std::size_t>(row)].Sec = izgara.veri().hucre(row, secKolonu) == "1";
    yerler[static_cast<std::size_t>(row)].varsayilan = izgara.veri().hucre(row, isaretKolonu) == "1";
  }
}

// The entry with that text; a text without an entry gets one, so that saving keeps it.
void sec(QComboBox* liste, const std::string& metin) {
  int at = liste->findText(ui::text(metin));
  if (at < 0) {
    liste->addItem(ui::text(metin));
    at = liste->count() - 1;
  }
  liste->setCurrentIndex(at);
}

}  // namespace

void YetkiFrm::ac() {
  const ui::WaitCursor wait;
  const QScopedValueRollback showing(gosteriyor_, true);
  duzen_.Kopyala = false;
  const bool acik = rights::Yetki_Yukle(oturum_, duzen_);
  if (!acik) {
    QMetaObject::invokeMethod(
        this, [this] { kapan(); }, Qt::QueuedConnection);
    return;
  }
  firma_->clear();
  for (const std::string& firma : duzen_.Firma_Combo) firma_->addItem(ui::icon("firma"), ui::text(firma));
  kopyala_->setChecked(false);
  arama_->clear();
  sekmeler_->setCurrentIndex(0);
  agac_->collapseAll();
  agac_->setCurrentIndex(agac_->model().index(0));
  goster();
  firma_->setFocus(Qt::OtherFocusReason);
}

void YetkiFrm::firmaSecildi(int sira) {
  if (gosteriyor_ || sira < 0) return;
  oku();
  duzen_.Kopyala = kopyala_->isChecked();
  const std::string firma = duzen_.Firma_Combo[static_cast<std::size_t>(sira)];
  isYap(oturum_, {"Yetkiler okunuyor"}, [&] { rights::Firma_Sec(oturum_, duzen_, firma); });
  if (!duzen_.Kopyala) goster();
}

void YetkiFrm::goster() {
  const QScopedValueRollback showing(gosteriyor_, true);
  subheading()->setText(ui::text(duzen_.Kullanici_Ad));
  agac_->agac() = duzen_.treelist;
  agac_->model().yenile();
  genel_->doldur(bayraklar(duzen_.satir, rights::Bolum::Genel));
  kasiyer_->doldur(bayraklar(duzen_.satir, rights::Bolum::Kasiyer));
  yerleriGoster(ambar_, duzen_.YetkiAmbarGrd);
  yerleriGoster(isyeri_, duzen_.YetkiIsyeriGrd);
  for (const auto& [kutu, kolon] : kutular_) kutu->setChecked(rights::verilmis(duzen_.satir, kolon, 0));
  gun_->setText(QString::number(duzen_.satir["KntGun"].integer()));
  sec(hesapTuru_, duzen_.satir["Cari_Tipi"].trimmed());
  QStringList kasalar{""}, cariler{""};
  for (const auto& kasa : duzen_.kasalar) kasalar << ui::text(kasa.kod);
  for (const std::string& cari : duzen_.cariler) cariler << ui::text(cari);
  kasa_->clear();
  kasa_->addItems(kasalar);
  cari_->clear();
  cari_->addItems(cariler);
  sec(kasa_, duzen_.Def_Kasa_Kod);
  sec(cari_, duzen_.Def_Cari_Kod);
  karsilastirma_->kur(duzen_);
  tamam_->setEnabled(duzen_.okundu);
}

void YetkiFrm::yerleriGoster(ui::Izgara* izgara, const rights::Yerler& yerler) {
  session::IzgaraSatirlari rows;
  for (const rights::YerYetkisi& yer : yerler)
    rows.push_back({{tik(yer.Sec), yer.kod, yer.ad, tik(yer.varsayilan)}});
  izgara->doldur(rows);
}

// One mark in the whole grid, and none on a row that is not ticked.
void YetkiFrm::yerYazildi(ui::Izgara* izgara, rights::Yerler& yerler, int satir, int kolon) {
  const bool acik = izgara->veri().hucre(satir, kolon) == "1";
  const auto at = static_cast<std::size_t>(satir);
  yerleriOku(*izgara, yerler);  // a step taken back has changed the grid alone
  if (kolon == isaretKolonu)
    rights::varsayilanYap(yerler, at, acik);
  else if (!acik)
    yerler[at].varsayilan = false;
  for (int row = 0; row < izgara->veri().adet(); ++row) {
    const rights::YerYetkisi& yer = yerler[static_cast<std::size_t>(row)];
    izgara->veri().koy(row, secKolonu, tik(yer.Sec));
    izgara->veri().koy(row, isaretKolonu, tik(yer.varsayilan));
  }
}

void YetkiFrm::oku() {
  duzen_.treelist = agac_->agac();
  bayraklariOku(*genel_, duzen_.satir, rights::Bolum::Genel);
  bayraklariOku(*kasiyer_, duzen_.satir, rights::Bolum::Kasiyer);
  yerleriOku(*ambar_, duzen_.YetkiAmbarGrd);
  yerleriOku(*isyeri_, duzen_.YetkiIsyeriGrd);
  for (const auto& [kutu, kolon] : kutular_) duzen_.satir.degerler[kolon] = kutu->isChecked();
  // A text that is no number counts as 0.
  duzen_.satir["KntGun"] = session::sayiMi(ui::utf8(gun_->text())) ? gun_->text().trimmed().toInt() : 0;
  duzen_.satir["Cari_Tipi"] = ui::utf8(hesapTuru_->currentText());
  duzen_.Def_Kasa_Kod = ui::utf8(kasa_->currentText());
  duzen_.Def_Cari_Kod = ui::utf8(cari_->currentText());
}

void YetkiFrm::kaydet() {
  oku();
  bool yazildi = false;
  isYap(oturum_, {"Yetkiler kaydediliyor"}, [&] { yazildi = rights::TamamBtn(oturum_, duzen_); });
  if (!yazildi) return;
  for (ui::Izgara* izgara : {genel_, kasiyer_, ambar_, isyeri_}) izgara->veri().kaydedildi();
}

void YetkiFrm::ara(const QString& sozler) {
  bulunanlar_->clear();
  for (const int row : rights::hakAra(ui::utf8(sozler))) {
    auto* item = new QListWidgetItem(ui::text(rights::hakYolu(row)), bulunanlar_);
    item->setData(Qt::UserRole, row);
  }
  const bool bos = sozler.trimmed().isEmpty();
  if (!bos && bulunanlar_->count() == 0) {
    auto* item = new QListWidgetItem("Bu sözlerle bir yetki yok.", bulunanlar_);
    item->setFlags(Qt::NoItemFlags);
  }
  bulunanlar_->setVisible(!bos);
}

void YetkiFrm::agacMenusu(const QPoint& yer) {
  QMenu menu(this);
  menu.setObjectName("MnHepsi");
  menu.addAction("Tümünü Aç", agac_, &QTreeView::expandAll)->setObjectName("MnTumunuAc");
  menu.addAction("Tümünü Kapat", agac_, &QTreeView::collapseAll)->setObjectName("MnTumunuKapa");
  menu.exec(agac_->viewport()->mapToGlobal(yer));
}

}  // namespace rights_ui
