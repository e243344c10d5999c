#include "rights/ui/kasiyer_yetki_frm.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QTabWidget>

#include "rights/ui/arama_listesi.h"
#include "ui/boxes.h"
#include "ui/console_port.h"
#include "ui/izgara.h"
#include "ui/theme.h"

namespace rights_ui {

namespace {

using rights::AyarTuru;
using rights::KolonTuru;

void koy(QWidget* alan, const db::Value& deger) {
  if (auto* box = qobject_cast<QCheckBox*>(alan)) box->setChecked(deger.boolean());
  if (auto* field = qobject_cast<QLineEdit*>(alan)) {
    field->setText(ui::text(deger.trimmed()));
    field->setCursorPosition(0);
  }
}

db::Value al(const QWidget* alan) {
  if (const auto* box = qobject_cast<const QCheckBox*>(alan)) return box->isChecked();
  return ui::utf8(qobject_cast<const QLineEdit*>(alan)->text().trimmed());
}

std::string tik(bool acik) {
  return acik ? "1" : "0";
}

}  // namespace

void KasiyerYetkiFrm::ac() {
  const ui::WaitCursor wait;
  const QScopedValueRollback showing(gosteriyor_, true);
  if (!rights::Kasiyer_Yukle(oturum_, duzen_)) {
    QMetaObject::invokeMethod(
        this, [this] { kapan(); }, Qt::QueuedConnection);
    return;
  }
  firma_->clear();
  for (const std::string& firma : duzen_.Firma_Combo) firma_->addItem(ui::icon("firma"), ui::text(firma));
  sekmeler_->setCurrentIndex(0);
  goster();
  firma_->setFocus(Qt::OtherFocusReason);
}

void KasiyerYetkiFrm::firmaSecildi(int sira) {
  if (gosteriyor_ || sira < 0) return;
  const std::string firma = duzen_.Firma_Combo[static_cast<std::size_t>(sira)];
  rights::KasiyerDuzeni yeni;
  yeni.Kullanici_ID = duzen_.Kullanici_ID;
  yeni.Firma_Combo = duzen_.Firma_Combo;
  isYap(oturum_, {"Kasiyer ayarları okunuyor"}, [&] { rights::Kasiyer_Firma_Sec(oturum_, yeni, firma); });
  duzen_ = yeni;
  goster();
}

void KasiyerYetkiFrm::goster() {
  const QScopedValueRollback showing(gosteriyor_, true);
  subheading()->setText(ui::text(duzen_.Kullanici_Ad));
  fisGoster();
  for (std::size_t i = 0; i < kolonlar_.size(); ++i) koy(kolonlar_[i], duzen_.kolonlar[i]);
  session::IzgaraSatirlari nesneler;
  for (std::size_t i = 0; i < ayarlar_.size(); ++i) {
    const rights::AyarTanimi& tanim = rights::ayarTanimlari()[i];
    if (tanim.tur == AyarTuru::Nesne)
      nesneler.push_back(
          {{tik(duzen_.ayarlar[i].boolean()), std::string(tanim.yazi), std::string(tanim.kolon)}});
    else
      koy(ayarlar_[i], duzen_.ayarlar[i]);
  }
  nesneler_->doldur(nesneler);
  session::IzgaraSatirlari teraziler;
  for (const rights::TeraziSatiri& terazi : duzen_.TeraziGRD)
    teraziler.push_back({{tik(terazi.Sec), terazi.kod, terazi.aciklama}});
  teraziler_->doldur(teraziler);
  duzen_.StokFlx.resize(std::max(duzen_.StokFlx.size(), static_cast<std::size_t>(rights::enCokKisayol)));
  kisayolGoster();
  tamam_->setEnabled(duzen_.okundu);
}

void KasiyerYetkiFrm::fisGoster() {
  session::IzgaraSatirlari rows;
  for (std::size_t i = 0; i < duzen_.FisGrd.size(); ++i) {
    const rights::FisTanimi& tanim = rights::fisTanimlari()[i];
    const rights::FisDegeri& fis = duzen_.FisGrd[i];
    const std::string word =
        tanim.hak.empty() ? "" : std::string(fis.Yetkisi2 ? tanim.soz.evet : tanim.soz.hayir);
    rows.push_back({{std::string(tanim.yazi), fis.Yetkisi, fis.ad, word}});
  }
  const int row = fis_->satir();
  fis_->doldur(rows);
  if (row >= 0) fis_->git(row, 1);
}

void KasiyerYetkiFrm::kisayolGoster() {
  session::IzgaraSatirlari rows;
  for (const rights::KisayolSatiri& kisayol : duzen_.StokFlx)
    rows.push_back({{kisayol.Stok_Kod, kisayol.Stok_Adi}});
  const int row = stoklar_->satir();
  stoklar_->doldur(rows);
  stoklar_->git(std::max(row, 0), 0);
}

// The words of FisGrd lie in duzen_ as flags already: a click turns them there.
void KasiyerYetkiFrm::oku() {
  for (std::size_t i = 0; i < kolonlar_.size(); ++i) duzen_.kolonlar[i] = al(kolonlar_[i]);
  int nesne = 0;
  for (std::size_t i = 0; i < ayarlar_.size(); ++i)
    duzen_.ayarlar[i] = rights::ayarTanimlari()[i].tur == AyarTuru::Nesne
                            ? db::Value(nesneler_->veri().hucre(nesne++, 0) == "1")
                            : al(ayarlar_[i]);
  for (std::size_t i = 0; i < duzen_.TeraziGRD.size(); ++i)
    duzen_.TeraziGRD[i].Sec = teraziler_->veri().hucre(static_cast<int>(i), 0) == "1";
}

void KasiyerYetkiFrm::degerSec(int satir) {
  const rights::FisTanimi& tanim = rights::fisTanimlari()[static_cast<std::size_t>(satir)];
  if (!duzen_.okundu || tanim.arama == rights::AramaTuru::Yok) return;
  AramaListesi liste(oturum_, duzen_, tanim.arama, this);
  if (liste.exec() != QDialog::Accepted) return;
  rights::FisDegeri& fis = duzen_.FisGrd[static_cast<std::size_t>(satir)];
  fis.Yetkisi = liste.secilen().kod;
  fis.ad = liste.secilen().ad;
  fisGoster();
}

void KasiyerYetkiFrm::degerSil(int satir) {
  rights::FisDegeri& fis = duzen_.FisGrd[static_cast<std::size_t>(satir)];
  fis.Yetkisi.clear();
  fis.ad.clear();
  fisGoster();
}

void KasiyerYetkiFrm::stokSec(int satir) {
  if (!duzen_.okundu || satir < 0) return;
  AramaListesi liste(oturum_, duzen_, rights::AramaTuru::Stok, this);
  if (liste.exec() != QDialog::Accepted) return;
  duzen_.StokFlx[static_cast<std::size_t>(satir)] = {std::stoll(liste.secilen().id), liste.secilen().kod,
                                                     liste.secilen().ad};
  kisayolGoster();
}

void KasiyerYetkiFrm::kaydet() {
  oku();
  isYap(oturum_, {"Kasiyer yetkileri kaydediliyor"}, [&] { rights::Kasiyer_Yetki_Kaydet(oturum_, duzen_); });
}

}  // namespace rights_ui
