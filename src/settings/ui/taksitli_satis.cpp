#include "settings/ui/taksitli_satis.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

#include "session/sayi.h"
#include "settings/ui/firma_secimi.h"
#include "settings/ui/kayit_tuslari.h"
#include "settings/ui/parametre_formu.h"
#include "settings/ui/parametre_kaydi.h"
#include "ui/theme.h"

namespace settings_ui {

using settings::Cerceve;

TaksitliSatis::TaksitliSatis(session::Oturum& oturum, ui::ConsolePort&)
    // Two blanks stand between the second and the third word.
    : Kart("taksit", "Taksitli Satış  Parametreleri"),
      oturum_(oturum),
      form_(new ParametreFormu(oturum, settings::ParametreEkrani::Taksit, this)),
      firma_(new FirmaSecimi("Ayarların Uygulananacağı Firma :")),
      kopyala_(new QCheckBox("Bu Ayarları Kopyala")) {
  setObjectName("TaksitliSatisTanimlar_Frm");
  kopyala_->setObjectName("Kopyala");
  firma_->sagaEkle(kopyala_);
  body()->addWidget(firma_);
  body()->addWidget(form_->cerceve(Cerceve::Taksit, "Taksit Tanımları"));
  body()->addWidget(form_->cerceve(Cerceve::SatisIptal, "SATIŞ İPTAL DURUMU ", {900, 290}));
  body()->addWidget(form_->cerceve(Cerceve::TahsilatIptal, "TAHSİLAT İPTAL DURUMU", {900, 290}));
  body()->addWidget(form_->cerceve(Cerceve::Makbuz, "Makbuz"));
  body()->addWidget(form_->cerceve(Cerceve::DipNot, "Dip Notlar", {430, 290}));
  body()->addStretch(1);
  karsilastir_ = button("KarsilastirBtn", "Karşılaştır…", "incele");
  const auto [tamam, iptal] = saveAndLeave("TamamBtn", "IptalBtn");
  tamam_ = tamam;
  hint()->setText(kayitTuslari);
  connect(firma_, &FirmaSecimi::degisti, this, &TaksitliSatis::firmaDegisti);
  connect(tamam_, &QPushButton::clicked, this, &TaksitliSatis::kaydet);
  connect(iptal, &QPushButton::clicked, this, [this] { kapan(); });
  connect(karsilastir_, &QPushButton::clicked, this, [this] {
    if (Firma_Kaydi_) karsilastir(oturum_, *Firma_Kaydi_, *form_, settings::ParametreEkrani::Taksit, this);
  });
}

void TaksitliSatis::ac() {
  kopyala_->setChecked(false);
  firma_->doldur(settings::Firma_Listesi(oturum_));
  firmaDegisti();
  firma_->setFocus();
}

void TaksitliSatis::firmaDegisti() {
  const std::string firma = firma_->firma();
  Firma_Kaydi_ = firma.empty() ? std::nullopt : settings::Firma_Kaydi_Ac(oturum_, firma);
  tamam_->setEnabled(Firma_Kaydi_.has_value());
  karsilastir_->setEnabled(Firma_Kaydi_.has_value());
  subheading()->setText(ui::text(firma));
  if (!Firma_Kaydi_) {
    if (!firma.empty()) oturum_.kutular->message(oturum_.Son_Hata, session::Icon::Stop);
    return;
  }
  if (!kopyala_->isChecked()) formuDoldur(oturum_, *Firma_Kaydi_, *form_);
}

void TaksitliSatis::kaydet() {
  oturum_.Son_Hata.clear();
  // A count that is no number goes back to its default and is looked at again; nothing is said.
  for (const char* alan : {"TahsilatIhtarSayisi", "IhtarSayisi"}) {
    const auto sira = static_cast<std::size_t>(settings::parametreSirasi(alan));
    if (session::sayiMi(form_->oku(sira))) continue;
    form_->goster(sira, "0");
    form_->kontrol(sira)->setFocus();
  }
  if (!formuKaydet(oturum_, *Firma_Kaydi_, *form_, settings::ParametreEkrani::Taksit)) return;
  oturum_.kutular->message("Taksitli Satış Parametreleri Kaydedildi.");
}

}  // namespace settings_ui
