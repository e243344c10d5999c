#include "settings/ui/grup_sayfasi.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "session/sayi.h"
#include "ui/form.h"
#include "ui/izgara.h"
#include "ui/theme.h"

namespace settings_ui {

using settings::Grup;

namespace {
constexpr int izgaraBoyu = 150;
}

GrupSayfasi::GrupSayfasi(session::Oturum& oturum) : oturum_(oturum), hata_(ui::wrapped({}, "uyari")) {
  hata_->setObjectName("GrupHata");
  hata_->hide();
  auto* sutunlar = new QHBoxLayout;
  sutunlar->setSpacing(ui::gap);
  sutunlar->addWidget(sutun(Grup::AnaGrup, "AnaGrupFlx", "AnSilBtn"), 1);
  sutunlar->addWidget(sutun(Grup::AltBaslik, "AltBasFlx", "AltBasSilBtn"), 1);
  sutunlar->addWidget(sutun(Grup::AltGrup, "AltGrupFlx", "AltTnmSilBtn"), 1);
  auto* duzen = new QVBoxLayout(this);
  duzen->setContentsMargins(ui::gap, ui::gap, ui::gap, ui::gap);
  duzen->addWidget(hata_);
  duzen->addLayout(sutunlar, 1);
  connect(&izgara(Grup::AnaGrup), &ui::Izgara::satirSecildi, this, [this](int satir) {
    secim_.Secili_Ana_Grup_ID = kimlik(Grup::AnaGrup, satir);
    AltBaslik_Listele();
  });
  connect(&izgara(Grup::AltBaslik), &ui::Izgara::satirSecildi, this, [this](int satir) {
    secim_.Secili_Alt_Grup_BasID = kimlik(Grup::AltBaslik, satir);
    AltGrup_Listele();
  });
}

QWidget* GrupSayfasi::sutun(Grup grup, const char* ad, const char* silAdi) {
  const auto kolonlar = settings::grupKolonlari(grup);
  auto* tablo =
      new ui::Izgara(oturum_, QString("SabitTanimlar_Frm.") + ad, {kolonlar.begin(), kolonlar.end()});
  tablo->setMinimumHeight(izgaraBoyu);
  izgaralar_[static_cast<std::size_t>(grup)] = tablo;
  tablo->veri().yazildi = [this, grup](int satir, int) { yazilan_[static_cast<std::size_t>(grup)] = satir; };
  // Stored behind the edit, so that a stored row is no step of undo any more.
  connect(&tablo->veri(), &ui::IzgaraModeli::icerikDegisti, this, [this, grup] { kaydet(grup); });
  // The button is laid out and does nothing: group rows cannot be deleted on this screen.
  auto* sil = new QPushButton(ui::captionIcon("sil"), "Sil");
  sil->setObjectName(silAdi);
  auto* parca = new QWidget;
  auto* duzen = new QVBoxLayout(parca);
  duzen->setContentsMargins(0, 0, 0, 0);
  duzen->setSpacing(ui::gapSmall);
  duzen->addWidget(tablo, 1);
  duzen->addWidget(sil, 0, Qt::AlignLeft);
  return parca;
}

std::int64_t GrupSayfasi::kimlik(Grup grup, int satir) const {
  const auto& veri = izgara(grup).veri();
  if (satir < 0 || satir >= veri.adet() || !session::sayiMi(veri.hucre(satir, 0))) return 0;
  return std::atoll(veri.hucre(satir, 0).c_str());
}

void GrupSayfasi::listele(Grup grup) {
  auto liste = settings::Grup_Listele(oturum_, grup, secim_);
  if (!liste.hata.empty()) {
    hata_->setText(ui::text(liste.hata));
    hata_->show();
  }
  setEnabled(hata_->isHidden());
  liste.satirlar.emplace_back();
  izgara(grup).doldur(liste.satirlar);
  yazilan_[static_cast<std::size_t>(grup)] = -1;
}

void GrupSayfasi::AnaGrup_Listele() {
  hata_->hide();
  setEnabled(true);
  secim_ = {};
  listele(Grup::AnaGrup);
  const QSignalBlocker sessiz(&izgara(Grup::AnaGrup));
  izgara(Grup::AnaGrup).git(0, 1);
  secim_.Secili_Ana_Grup_ID = kimlik(Grup::AnaGrup, 0);
  if (hata_->isHidden()) AltBaslik_Listele();
}

void GrupSayfasi::AltBaslik_Listele() {
  listele(Grup::AltBaslik);
  const QSignalBlocker sessiz(&izgara(Grup::AltBaslik));
  izgara(Grup::AltBaslik).git(0, 2);
  secim_.Secili_Alt_Grup_BasID = kimlik(Grup::AltBaslik, 0);
  AltGrup_Listele();
}

void GrupSayfasi::AltGrup_Listele() {
  listele(Grup::AltGrup);
}

void GrupSayfasi::kaydet(Grup grup) {
  int& yazilan = yazilan_[static_cast<std::size_t>(grup)];
  if (yazilan < 0) return;
  const int satir = yazilan;
  yazilan = -1;
  auto& veri = izgara(grup).veri();
  const auto sonuc =
      settings::Grup_Kaydet(oturum_, grup, veri.satirlar(), static_cast<std::size_t>(satir), secim_);
  if (!sonuc.hata.empty()) {
    oturum_.kutular->message(sonuc.hata, session::Icon::Stop);
    return;
  }
  if (sonuc.kimlik.empty()) return;
  veri.koy(satir, 0, sonuc.kimlik);
  if (satir == veri.adet() - 1) veri.satirEkle(veri.adet());
  veri.kaydedildi();
  if (grup == Grup::AnaGrup && satir == izgara(grup).satir()) secim_.Secili_Ana_Grup_ID = kimlik(grup, satir);
  if (grup == Grup::AltBaslik && satir == izgara(grup).satir())
    secim_.Secili_Alt_Grup_BasID = kimlik(grup, satir);
}

}  // namespace settings_ui
