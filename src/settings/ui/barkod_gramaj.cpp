#include "settings/ui/barkod_gramaj.h"

#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "settings/firma_baglanti.h"
#include "settings/tarti.h"
#include "settings/ui/firma_secimi.h"
#include "settings/ui/kayit_tuslari.h"
#include "settings/ui/uzerine_sor.h"
#include "ui/form.h"
#include "ui/izgara.h"
#include "ui/theme.h"

namespace settings_ui {

BarkodGramaj::BarkodGramaj(session::Oturum& oturum, ui::ConsolePort&)
    : Kart("terazi", "Firma Parametreleri"),
      oturum_(oturum),
      firma_(new FirmaSecimi("Ayarların Uygulananacağı Firma :")),
      hata_(ui::wrapped({}, "uyari")) {
  setObjectName("BarkodGramajFrm");
  const auto kolonlar = settings::tartiKolonlari();
  izgara_ = new ui::Izgara(oturum, "BarkodGramajFrm.FisGrd", {kolonlar.begin(), kolonlar.end()});
  izgara_->setMinimumHeight(240);
  izgara_->deleteSatirSiler = true;
  izgara_->yeniSatir = [](int) { return settings::bosTartiSatiri(); };
  ui::IzgaraModeli& veri = izgara_->veri();
  veri.kendiliginden = settings::CD;
  // A row without a word on counts would not be saved: it is a weight unless the tick says otherwise.
  veri.yazildi = [&veri](int satir, int) {
    if (veri.hucre(satir, settings::Adetli).empty()) veri.koy(satir, settings::Adetli, "0");
    if (veri.hucre(satir, settings::CD).empty()) veri.koy(satir, settings::CD, "1");
  };
  hata_->hide();
  body()->addWidget(firma_);
  body()->addWidget(hata_);
  body()->addWidget(izgara_, 1);
  body()->addWidget(deneme());
  auto* silBtn = button("SilBtn", "Sil", "sil");
  const auto [tamam, iptal] = saveAndLeave("TamamBtn", "IptalBtn");
  tamam_ = tamam;
  hint()->setText(kayitTuslari);
  connect(firma_, &FirmaSecimi::degisti, this, [this] {
    if (izgara_->birakilir()) return firmaDegisti();
    firma_->sec(secili_);
  });
  connect(izgara_, &ui::Izgara::silIstendi, this, &BarkodGramaj::sil);
  // Moving to CD goes to GR of the same row.
  connect(izgara_, &ui::Izgara::hucreyeGirildi, this, [this](int satir, int kolon) {
    if (kolon == settings::CD)
      QMetaObject::invokeMethod(
          this, [this, satir] { izgara_->git(satir, settings::GR); }, Qt::QueuedConnection);
  });
  connect(&veri, &ui::IzgaraModeli::icerikDegisti, this, &BarkodGramaj::barkodDene);
  connect(silBtn, &QPushButton::clicked, this, &BarkodGramaj::sil);
  connect(tamam_, &QPushButton::clicked, this, &BarkodGramaj::kaydet);
  connect(iptal, &QPushButton::clicked, this, [this] {
    if (izgara_->birakilir()) kapan();
  });
}

QWidget* BarkodGramaj::deneme() {
  auto* cerceve = frame("DenemeFrame", "Barkod denemesi");
  barkod_ = new QLineEdit;
  barkod_->setObjectName("DenemeBarkodu");
  barkod_->setMaxLength(13);
  barkod_->setPlaceholderText("13 haneli barkod");
  barkod_->setMaximumWidth(ui::byLetters(190));
  sonuc_ = new QLabel;
  sonuc_->setObjectName("DenemeSonucu");
  sonuc_->setTextFormat(Qt::PlainText);
  sonuc_->setWordWrap(true);
  auto* duzen = new QHBoxLayout(cerceve);
  duzen->setContentsMargins(ui::gap, ui::gap, ui::gap, ui::gap);
  duzen->setSpacing(ui::gap);
  duzen->addWidget(barkod_);
  duzen->addWidget(sonuc_, 1);
  connect(barkod_, &QLineEdit::textChanged, this, &BarkodGramaj::barkodDene);
  return cerceve;
}

void BarkodGramaj::ac() {
  barkod_->clear();
  firma_->doldur(settings::Firma_Listesi(oturum_));
  firmaDegisti();
  izgara_->setFocus();
}

void BarkodGramaj::firmaDegisti() {
  secili_ = firma_->firma();
  subheading()->setText(ui::text(secili_));
  std::string hata = secili_.empty() ? "Katalogda firma yok." : settings::Firma_Bagla(oturum_, secili_);
  settings::TartiListesi liste;
  if (hata.empty()) {
    liste = settings::Tarti_Yukle(oturum_);
    hata = liste.hata;
  }
  okunan_ = liste.satirlar;
  liste.satirlar.push_back(settings::bosTartiSatiri());
  izgara_->doldur(liste.satirlar);
  izgara_->git(0, settings::Bayrak_Kodu);
  hata_->setText(ui::text(hata));
  hata_->setVisible(!hata.empty());
  tamam_->setEnabled(hata.empty());
  izgara_->setEnabled(hata.empty());
}

void BarkodGramaj::sil() {
  const int satir = izgara_->satir();
  if (satir < 0 || !izgara_->duzenlemeyiBitir()) return;
  izgara_->veri().gizle(satir);
  for (int i = 0; i < izgara_->veri().adet(); ++i)
    if (const int hedef = (satir + i) % izgara_->veri().adet(); !izgara_->veri().gizli(hedef))
      return izgara_->git(hedef, settings::Bayrak_Kodu);
  izgara_->veri().satirEkle(izgara_->veri().adet(), settings::bosTartiSatiri());
  izgara_->git(izgara_->veri().adet() - 1, settings::Bayrak_Kodu);
}

void BarkodGramaj::kaydet() {
  oturum_.Son_Hata.clear();
  if (!izgara_->duzenlemeyiBitir()) return;
  auto satirlar = izgara_->veri().satirlar();
  oturum_.Son_Hata = settings::Tarti_Kontrol(satirlar);
  if (!oturum_.Son_Hata.empty()) {
    oturum_.kutular->message(oturum_.Son_Hata, session::Icon::Stop);
    return;
  }
  const auto kayit = settings::Tarti_Kaydet(oturum_, satirlar, okunan_);
  if (!kayit.hata.empty()) {
    oturum_.kutular->message(kayit.hata, session::Icon::Stop);
    return;
  }
  if (!kayit.aradaki.empty()) {
    if (!uzerineSorulur(oturum_, "Bu tasarımlar", kayit.aradaki)) return;
    izgara_->veri().hepsiniDegistir(
        settings::birlestir(settings::tartiCakismasi(), okunan_, kayit.simdiki.front(), satirlar));
    okunan_ = kayit.simdiki.front();
    return kaydet();
  }
  izgara_->veri().kaydedildi();
  kapan();
}

void BarkodGramaj::barkodDene() {
  if (barkod_->text().isEmpty())
    return sonuc_->setText("Bir barkod yazın: bayrak, stok kodu, kilogram ve gram görünür.");
  const auto b = settings::Tarti_Coz(izgara_->veri().satirlar(), ui::utf8(barkod_->text()));
  if (!b.onUcHane)
    return sonuc_->setText(QString("Barkod 13 rakam olmalı (%1 karakter).").arg(barkod_->text().size()));
  QString metin = "Bayrak " + ui::text(b.bayrak);
  if (!b.tasarimVar)
    metin += ": bu bayrağa uyan bir tasarım yok";
  else if (b.adetli)
    metin += "   Stok kodu " + ui::text(b.stokKodu) + "   Adet " + ui::text(b.kg + b.gr);
  else
    metin += "   Stok kodu " + ui::text(b.stokKodu) + "   Kilogram " + ui::text(b.kg) + "   Gram " +
             ui::text(b.gr);
  metin += b.kontrolDogru ? QString("   Check digit %1 doğru").arg(b.kontrol)
                          : QString("   Check digit %1 yanlış, %2 olmalı").arg(b.kontrol).arg(b.beklenen);
  sonuc_->setText(metin);
}

}  // namespace settings_ui
