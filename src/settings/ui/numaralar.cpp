#include "settings/ui/numaralar.h"

#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>

#include "session/metin.h"
#include "settings/firma_baglanti.h"
#include "settings/ui/firma_secimi.h"
#include "settings/ui/kayit_tuslari.h"
#include "settings/ui/uzerine_sor.h"
#include "ui/form.h"
#include "ui/izgara.h"
#include "ui/theme.h"

namespace settings_ui {

namespace {

enum Kolon { Etiket, Anahtar, No, Eski };
constexpr int satirBoyu = 23;  // 350 twips

ui::IzgaraModeli::Kolonlar kolonlar() {
  using session::HucreTuru;
  return {{"Etiket", "İşlem Tipi", 300, HucreTuru::Metin, false, true},
          {"Anahtar", "", 0, HucreTuru::Metin, true},
          {"No", "İşlem Görmüş Son Numara", 240},
          {"Eski", "", 0, HucreTuru::Metin, true}};
}

}  // namespace

Numaralar::Numaralar(session::Oturum& oturum, ui::ConsolePort&)
    : Kart("numarator", "Fiş Numaraları"),
      oturum_(oturum),
      firma_(new FirmaSecimi("Ayarların Uygulananacağı Firma :")),
      izgara_(new ui::Izgara(oturum, "Numaralar_Frm.FisGrd", kolonlar())),
      hata_(ui::wrapped({}, "uyari")) {
  setObjectName("Numaralar_Frm");
  izgara_->satirEklenir = false;
  izgara_->verticalHeader()->setDefaultSectionSize(satirBoyu);
  izgara_->veri().duzenlenir = [this](int satir, int) { return var_[static_cast<std::size_t>(satir)]; };
  hata_->hide();
  body()->addWidget(firma_);
  body()->addWidget(hata_);
  body()->addWidget(izgara_, 1);
  const auto [tamam, iptal] = saveAndLeave("TamamBtn", "IptalBtn");
  tamam_ = tamam;
  hint()->setText(kayitTuslari);
  connect(firma_, &FirmaSecimi::degisti, this, [this] {
    // The numbers of one company do not go over to the next.
    if (izgara_->birakilir()) return firmaDegisti();
    firma_->sec(secili_);
  });
  connect(tamam_, &QPushButton::clicked, this, &Numaralar::kaydet);
  connect(iptal, &QPushButton::clicked, this, [this] {
    if (izgara_->birakilir()) kapan();
  });
}

void Numaralar::ac() {
  firma_->doldur(settings::Firma_Listesi(oturum_));
  firmaDegisti();
  izgara_->setFocus();
}

void Numaralar::firmaDegisti() {
  secili_ = firma_->firma();
  subheading()->setText(ui::text(secili_));
  std::string hata = secili_.empty() ? "Katalogda firma yok." : settings::Firma_Bagla(oturum_, secili_);
  settings::NumaraListesi liste;
  if (hata.empty()) {
    liste = settings::Numaralari_Oku(oturum_);
    hata = liste.hata;
  }
  session::IzgaraSatirlari satirlar;
  var_.clear();
  for (const settings::Numara& n : liste.numaralar) {
    satirlar.push_back({{n.etiket, n.anahtar, n.numara, n.numara}});
    var_.push_back(n.var);
  }
  izgara_->doldur(satirlar);
  izgara_->git(0, No);
  hata_->setText(ui::text(hata));
  hata_->setVisible(!hata.empty());
  tamam_->setEnabled(hata.empty());
  izgara_->setEnabled(hata.empty());
}

// The suite's programs count on while the screen is open.
bool Numaralar::baskasininki(const std::vector<settings::NumaraYazisi>& yazilar) {
  const auto simdiki = settings::Numaralari_Oku(oturum_);
  std::vector<std::string> farklar;
  for (const auto& satir : izgara_->veri().satirlar())
    for (const settings::Numara& n : simdiki.numaralar)
      if (n.anahtar == satir.hucreler[Anahtar] && n.numara != satir.hucreler[Eski] &&
          std::ranges::find(yazilar, n.anahtar, &settings::NumaraYazisi::anahtar) != yazilar.end())
        farklar.push_back(n.etiket + ": " + satir.hucreler[Eski] + " → " + n.numara);
  return farklar.empty() || uzerineSorulur(oturum_, "Bu numaralar", farklar);
}

void Numaralar::kaydet() {
  oturum_.Son_Hata.clear();
  if (!izgara_->duzenlemeyiBitir()) return;
  std::vector<settings::NumaraYazisi> yazilar;
  const auto satirlar = izgara_->veri().satirlar();
  for (const auto& satir : satirlar) {
    const std::string yeni = session::Trim(satir.hucreler[No]);
    if (!yeni.empty() && yeni != session::Trim(satir.hucreler[Eski]))
      yazilar.push_back({satir.hucreler[Anahtar], yeni});
  }
  if (!yazilar.empty() && !baskasininki(yazilar)) return;
  if (const std::string hata = settings::Numaralari_Yaz(oturum_, yazilar); !hata.empty()) {
    oturum_.kutular->message(hata, session::Icon::Stop);
    return;
  }
  const int satir = izgara_->satir();
  firmaDegisti();
  izgara_->git(satir, No);
  oturum_.kutular->message("Fiş Numaraları Başarı İle Ayarlandı.");
}

}  // namespace settings_ui
