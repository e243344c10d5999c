#include "settings/ui/tanim_ekrani.h"

#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>

#include "session/metin.h"
#include "settings/ui/arama_kutusu.h"
#include "settings/ui/kayit_tuslari.h"
#include "settings/ui/uzerine_sor.h"
#include "ui/console_port.h"
#include "ui/form.h"
#include "ui/izgara.h"
#include "ui/theme.h"

namespace settings_ui {

using settings::SatirSilme;

namespace {

constexpr int izgaraBoyu = 330, isyeriBoyu = 180;

std::string metni(const ui::IzgaraModeli& veri, int satir, std::string_view kolon) {
  return session::Trim(veri.hucre(satir, veri.kolon(kolon)));
}

}  // namespace

TanimEkrani::TanimEkrani(session::Oturum& oturum, ui::ConsolePort& konsol, const Gorunum& gorunum)
    : Kart(gorunum.resim, gorunum.baslik), oturum_(oturum), konsol_(konsol), hata_(ui::wrapped({}, "uyari")) {
  for (const std::string_view ad : gorunum.turler) {
    bolumler_.push_back(std::make_unique<Bolum>(Bolum{settings::tanimBul(ad), nullptr, {}, nullptr, -1, {}}));
    izgaraKur(*bolumler_.back());
  }
  const settings::TanimTuru& tur = *bolum().tur;
  setObjectName(ui::text(tur.ekran));
  hata_->setObjectName("TanimHata");
  hata_->hide();
  auto* kapat = new QToolButton;
  kapat->setObjectName("KapatButon");
  kapat->setText("✕");
  kapat->setAutoRaise(true);
  kapat->setToolTip("Kapat");
  kapat->setAccessibleName("Kapat");
  auto* ust = new QHBoxLayout;
  ust->setSpacing(ui::gap);
  auto* yanYana = new QHBoxLayout;
  yanYana->setSpacing(ui::gap);
  for (const auto& b : bolumler_) {
    ust->addWidget(new AramaKutusu(*b->izgara), 1);
    yanYana->addWidget(b->izgara, 1);
  }
  if (bolumler_.size() == 1) ust->addStretch(2);
  ust->addWidget(kapat);
  body()->addLayout(ust);
  body()->addWidget(hata_);
  body()->addLayout(yanYana, 1);
  if (tur.satirSilme != SatirSilme::Yok) {
    auto* silBtn = button("SilBtn", "Sil", "sil");
    connect(silBtn, &QPushButton::clicked, this, [this] { sil(bolum()); });
  }
  const auto [kaydet, cikis] = saveAndLeave("KaydetBtn", "CikisBtn", {Qt::Key_F3});
  kaydet_ = kaydet;
  // The others leave by F3 alone.
  if (tur.escapeCikar) shortcut(Qt::Key_Escape, cikis);
  hint()->setText(kayitTuslari);
  connect(kaydet_, &QPushButton::clicked, this, &TanimEkrani::kaydetBas);
  connect(cikis, &QPushButton::clicked, this, &TanimEkrani::cik);
  connect(kapat, &QToolButton::clicked, this, &TanimEkrani::cik);
}

void TanimEkrani::izgaraKur(Bolum& b) {
  const settings::TanimTuru& tur = *b.tur;
  b.izgara = new ui::Izgara(oturum_, ui::text(std::string(tur.ekran) + "." + std::string(tur.izgara)),
                            {tur.kolonlar.begin(), tur.kolonlar.end()});
  b.izgara->setMinimumHeight(izgaraBoyu);
  b.izgara->satirEklenir = tur.satirEklenir;
  b.izgara->deleteSatirSiler = tur.satirSilme != SatirSilme::Yok;
  if (tur.ad == "isyeri") b.izgara->satirEkleyen = "Isyeri_Adi";
  if (tur.turuncu) b.izgara->setProperty("rol", "turuncu");
  kurallar(b);
}

void TanimEkrani::kurallar(Bolum& b) {
  ui::Izgara& izgara = *b.izgara;
  ui::IzgaraModeli& veri = izgara.veri();
  veri.denetim = [this, &b](int satir, int kolon, std::string& metin) {
    return denetle(b, satir, kolon, metin);
  };
  veri.yazildi = [this, &b](int satir, int kolon) { yazildi(b, satir, kolon); };
  veri.duzenlenir = [this, &b](int satir, int kolon) { return duzenlenir(b, satir, kolon); };
  izgara.girilir = [this, &b](int satir) { return girilir(b, satir); };
  connect(&veri, &ui::IzgaraModeli::icerikDegisti, this, [&b] { b.sayac.reset(); });
  connect(&izgara, &ui::Izgara::satirSecildi, this, [this, &b](int satir) { satirSecildi(b, satir); });
  connect(&izgara, &ui::Izgara::ctrlEnter, this,
          [this, &b](int satir, int kolon) { sonrakiKod(b, satir, kolon); });
  connect(&izgara, &ui::Izgara::silIstendi, this, [this, &b] { sil(b); });
  if (b.tur->satirSilme != SatirSilme::Yok || !b.tur->satirEklenir) return;
  // Three grids side by side: Down on a filled last row makes the next one, on an empty one goes to the name.
  izgara.geriKolonu = b.tur->adKolonu;
  connect(&izgara, &ui::Izgara::kenardanCikildi, this, [&b](int tus) {
    ui::IzgaraModeli& satirlar = b.izgara->veri();
    if (tus == Qt::Key_Down && !metni(satirlar, satirlar.adet() - 1, b.tur->adKolonu).empty())
      satirlar.satirEkle(satirlar.adet());
  });
}

// --- Opening

void TanimEkrani::ac() {
  hata_->hide();
  kaydet_->setEnabled(true);
  konsol_.Durum_Yaz(windowTitle() + "     " + kayitTuslari);
  subheading()->setText(ui::text(oturum_.Secili_Firma));
  const QScopedValueRollback dolduruluyor(dolduruluyor_, true);
  std::string hata = settings::Tanim_Firma_Bagla(oturum_);
  for (const auto& b : bolumler_) {
    b->izgara->setEnabled(hata.empty());
    b->izgara->doldur({});
    if (hata.empty()) doldur(*b);
  }
  if (!hata.empty()) {
    hata_->setText(ui::text(hata));
    hata_->show();
    kaydet_->setEnabled(false);
    return;
  }
  acildi();
  izgara().setFocus();
}

void TanimEkrani::doldur(Bolum& b) {
  const settings::TanimTuru& tur = *b.tur;
  ui::Izgara& izgara = *b.izgara;
  auto liste = settings::Tanim_Yukle(oturum_, tur);
  if (!liste.hata.empty()) {
    hata_->setText(ui::text(liste.hata));
    hata_->show();
    kaydet_->setEnabled(false);
    izgara.setEnabled(false);
  }
  auto okunan = liste.satirlar;
  session::IzgaraSatirlari numarali;
  if (izgara.veri().kolon("Ambar_No") >= 0 &&
      tur.kolonlar[static_cast<std::size_t>(izgara.veri().kolon("Ambar_No"))].tur ==
          session::HucreTuru::Liste)
    izgara.listeKur("Ambar_No", settings::Bagli_Ambarlar(oturum_));
  izgara.veri().kendiliginden =
      tur.ad == "doviz" || bolumler_.size() > 1 ? -1 : settings::kolonu(tur, tur.kod);
  if (tur.ad == "fiyat") izgara.kolonGoster("Ambar_Fiyati", oturum_.Parametre.AmbarKarNoktasidir);
  // Prices have their numbers from the start: the column takes no edits.
  for (int no = 1; liste.satirlar.empty() && tur.ad == "fiyat" && no <= tur.enCokSatir; ++no)
    numarali.push_back({{std::to_string(no), "", "0", "0", ""}});
  if (!numarali.empty()) liste.satirlar = std::move(numarali);
  if (liste.satirlar.empty() && tur.satirEklenir) {
    session::IzgaraSatiri ilk;
    ilk.hucreler.resize(tur.kolonlar.size());
    // An empty table of codes starts with "1".
    if (tur.ad == "isyeri" || tur.ad == "satici" || tur.ad == "ambar")
      ilk.hucreler[static_cast<std::size_t>(settings::kolonu(tur, tur.kod))] = "1";
    liste.satirlar.push_back(std::move(ilk));
  }
  b.hareketli.clear();
  b.sayac.reset();
  b.okunan = std::move(okunan);
  izgara.doldur(liste.satirlar);
  izgara.git(0, tur.kod == tur.adKolonu || tur.ad == "fiyat" ? tur.adKolonu : tur.kod);
}

// --- Rules of the cells

std::string TanimEkrani::denetle(Bolum& b, int satir, int kolon, const std::string& metin) {
  const settings::TanimTuru& tur = *b.tur;
  const ui::IzgaraModeli& veri = b.izgara->veri();
  if (!tur.kodKontrol || kolon != veri.kolon(tur.kod)) return {};
  if (!b.sayac) b.sayac = std::make_unique<settings::AnahtarSayaci>(tur, veri.satirlar());
  const std::string& eski = veri.hucre(satir, kolon);
  std::string hata =
      tur.kodKontrol(metin, veri.hucre(satir, veri.kolon(tur.adKolonu)), b.sayac->baskasinda(eski, metin));
  // Counted on within a pasted block; the end of the step counts anew.
  if (hata.empty()) b.sayac->degisti(eski, metin);
  return hata;
}

void TanimEkrani::yazildi(Bolum& b, int satir, int kolon) {
  ui::IzgaraModeli& veri = b.izgara->veri();
  // Where three grids stand side by side, a text in the last row makes room for the next.
  if (bolumler_.size() > 1 && satir == veri.adet() - 1) veri.satirEkle(veri.adet());
  const std::string_view anahtar = b.tur->kolonlar[static_cast<std::size_t>(kolon)].anahtar;
  if (std::ranges::find(b.tur->tekTikler, anahtar) == b.tur->tekTikler.end() ||
      veri.hucre(satir, kolon) != "1")
    return;
  // Only one row has the tick, and none without number and text.
  if (metni(veri, satir, b.tur->kod).empty() || metni(veri, satir, b.tur->adKolonu).empty())
    return veri.koy(satir, kolon, "0");
  for (int i = 0; i < veri.adet(); ++i)
    if (i != satir && veri.hucre(i, kolon) == "1") veri.koy(i, kolon, "0");
}

bool TanimEkrani::duzenlenir(Bolum& b, int satir, int kolon) {
  if (b.tur->enCokSatir > 0 && satir >= b.tur->enCokSatir) return false;
  const auto bulunan = b.hareketli.find(satir);
  if (b.tur->ad != "ambar" || kolon != b.izgara->veri().kolon("Ambar_No") || bulunan == b.hareketli.end())
    return true;
  return !bulunan->second;
}

bool TanimEkrani::girilir(const Bolum& b, int satir) const {
  const ui::IzgaraModeli& veri = b.izgara->veri();
  if (satir == 0 || !b.tur->satirEklenir || satir >= veri.adet()) return true;
  if (b.tur->ad == "isyeri" || b.tur->ad == "satici") return !metni(veri, satir - 1, b.tur->kod).empty();
  return !veri.bos(satir) || !metni(veri, satir - 1, b.tur->adKolonu).empty();
}

void TanimEkrani::satirSecildi(Bolum& b, int satir) {
  ui::IzgaraModeli& veri = b.izgara->veri();
  if (dolduruluyor_ || satir < 0) return;
  const int kod = veri.kolon(b.tur->kod);
  const bool bosKod = session::Trim(veri.hucre(satir, kod)).empty();
  if (b.tur->ad == "ambar") {
    const std::string no = veri.hucre(satir, kod);
    if (!bosKod && !veri.hucre(satir, 0).empty() && !b.hareketli.contains(satir))
      b.hareketli[satir] = settings::Ambar_Hareketli(oturum_, no);
    if (bosKod)
      veri.koy(satir, kod,
               satir == 0 ? "1" : std::to_string(std::atoi(veri.hucre(satir - 1, kod).c_str()) + 1));
  }
  if (b.tur->ad == "satici" && bosKod) {
    std::string son;
    for (int i = 0; i < satir; ++i)
      if (!veri.gizli(i) && !metni(veri, i, b.tur->kod).empty()) son = metni(veri, i, b.tur->kod);
    veri.koy(satir, kod, settings::Sonraki_Kod(son));
  }
}

void TanimEkrani::sonrakiKod(Bolum& b, int satir, int) {
  if (b.tur->ad != "isyeri" && b.tur->ad != "satici") return;
  ui::IzgaraModeli& veri = b.izgara->veri();
  const std::string kod = metni(veri, satir, b.tur->kod);
  if (kod.empty()) return;
  if (satir + 1 >= veri.adet()) veri.satirEkle(veri.adet());
  if (const std::string hata = veri.yaz(satir + 1, veri.kolon(b.tur->kod), settings::Sonraki_Kod(kod));
      hata.empty())
    b.izgara->git(satir + 1, b.tur->kod);
}

// --- Removing

void TanimEkrani::sil(Bolum& b) {
  ui::Izgara& izgara = *b.izgara;
  const int satir = izgara.satir();
  if (satir < 0 || !izgara.duzenlemeyiBitir()) return;
  const bool gider = settings::Satir_Silinir(oturum_, *b.tur, izgara.veri().satir(satir));
  izgara.setFocus();
  if (!gider) return;
  ui::IzgaraModeli& veri = izgara.veri();
  const ui::IzgaraModeli::Adim adim(veri);
  switch (b.tur->satirSilme) {
    case SatirSilme::Gizle:
      return gizle(b, satir);
    case SatirSilme::Cikar:
      veri.satirCikar(satir);
      b.hareketli.clear();
      if (veri.adet() == 0) veri.satirEkle(0);
      break;
    case SatirSilme::Kaydir:
      veri.satirCikar(satir);
      veri.satirEkle(veri.adet());
      break;
    case SatirSilme::Yok:
      return;
  }
  izgara.git(std::min(satir, veri.adet() - 1), b.tur->kod);
}

void TanimEkrani::gizle(Bolum& b, int satir) {
  ui::IzgaraModeli& veri = b.izgara->veri();
  veri.gizle(satir);
  int hedef = satir - 1;
  while (hedef >= 0 && veri.gizli(hedef)) --hedef;
  // From the first row on to the first one that is left, or into a new one.
  for (int i = 0; hedef < 0 && i < veri.adet(); ++i)
    if (!veri.gizli(i)) hedef = i;
  if (hedef < 0) {
    hedef = veri.adet();
    veri.satirEkle(hedef);
  }
  b.izgara->git(hedef, b.tur->kod);
}

// --- Saving, leaving

void TanimEkrani::hataGoster(Bolum& b, const settings::Kontrol& kontrol) {
  oturum_.Son_Hata = kontrol.hata;
  oturum_.kutular->message(kontrol.hata, session::Icon::Information);
  if (kontrol.satir >= 0) b.izgara->duzenle(kontrol.satir, kontrol.kolon);
}

bool TanimEkrani::kaydet() {
  oturum_.Son_Hata.clear();
  for (const auto& b : bolumler_)
    if (!b->izgara->duzenlemeyiBitir()) return false;
  for (const auto& b : bolumler_)
    if (const auto kontrol = b->tur->kontrol(b->izgara->veri().satirlar(), b->izgara->satir());
        !kontrol.hata.empty()) {
      hataGoster(*b, kontrol);
      return false;
    }
  std::vector<settings::TanimIzgarasi> izgaralar;
  for (const auto& b : bolumler_) izgaralar.push_back({b->tur, b->izgara->veri().satirlar(), b->okunan});
  const auto kayit = settings::Tanim_Kaydet(oturum_, izgaralar);
  if (!kayit.hata.empty()) {
    oturum_.kutular->message(kayit.hata, session::Icon::Stop);
    return false;
  }
  if (kayit.aradaki.empty()) return true;
  // What both made is checked as a whole and stored, unless a third one came in between.
  return baskasininki(kayit) && kaydet();
}

bool TanimEkrani::baskasininki(const settings::ListeKaydi& kayit) {
  if (!uzerineSorulur(oturum_, "Bu tanımlar", kayit.aradaki)) return false;
  for (std::size_t i = 0; i < bolumler_.size(); ++i) {
    Bolum& b = *bolumler_[i];
    b.izgara->veri().hepsiniDegistir(settings::birlestir(settings::cakismaKurali(*b.tur), b.okunan,
                                                         kayit.simdiki[i], b.izgara->veri().satirlar()));
    b.okunan = kayit.simdiki[i];
    b.hareketli.clear();
  }
  return true;
}

void TanimEkrani::kaydetBas() {
  if (!kaydet()) return;
  for (const auto& b : bolumler_) b->izgara->veri().kaydedildi();
  cik();
}

bool TanimEkrani::birakilir() {
  for (const auto& b : bolumler_)
    if (!b->izgara->birakilir()) return false;
  return true;
}

void TanimEkrani::cik() {
  if (!birakilir()) return;
  settings::Tanim_Firma_Birak(oturum_);
  kapan();
}

// --- Workplaces

IsyeriEkrani::IsyeriEkrani(session::Oturum& oturum, ui::ConsolePort& konsol)
    : TanimEkrani(oturum, konsol, {"isyeri", "İşyeri Tanımları", {"isyeri"}}),
      bagHata_(ui::wrapped({}, "uyari")) {
  struct Parca {
    settings::Bag bag;
    const char *ad, *baslik;
  };
  constexpr Parca parcalar[] = {{settings::Bag::Ambar, "AmbarFlx", "Bağlı Ambarlar"},
                                {settings::Bag::Satici, "SaticiFlx", "Bağlı Satıcılar"}};
  bagHata_->setObjectName("BagHata");
  auto* duzen = new QHBoxLayout;
  duzen->setSpacing(ui::gap);
  for (const Parca& parca : parcalar) {
    const auto kolonlar = settings::bagKolonlari(parca.bag);
    auto* izgara =
        new ui::Izgara(oturum, QString("Isyeri_Tanimlari.") + parca.ad, {kolonlar.begin(), kolonlar.end()});
    izgara->satirEklenir = false;
    izgara->setMinimumHeight(160);
    baglar_[static_cast<std::size_t>(parca.bag)] = izgara;
    auto* cerceve = frame((std::string(parca.ad) + "_Frame").c_str(), parca.baslik);
    auto* ic = new QVBoxLayout(cerceve);
    ic->setContentsMargins(ui::gapSmall, ui::gapSmall, ui::gapSmall, ui::gapSmall);
    ic->addWidget(izgara);
    duzen->addWidget(cerceve, 1);
    izgara->veri().yazildi = [this, bag = parca.bag](int, int) {
      bagYazildi_[static_cast<std::size_t>(bag)] = true;
    };
    connect(&izgara->veri(), &ui::IzgaraModeli::icerikDegisti, this,
            [this, bag = parca.bag] { bagKaydet(bag); });
  }
  this->izgara().setMinimumHeight(isyeriBoyu);
  body()->addWidget(bagHata_);
  body()->addLayout(duzen);
  connect(&this->izgara(), &ui::Izgara::satirSecildi, this, [this] {
    bagListele(settings::Bag::Ambar);
    bagListele(settings::Bag::Satici);
  });
}

std::string IsyeriEkrani::seciliId() {
  const int satir = izgara().satir();
  return satir < 0 ? "" : izgara().veri().hucre(satir, izgara().veri().kolon("Isyeri_ID"));
}

void IsyeriEkrani::acildi() {
  bagHata_->hide();
  bagListele(settings::Bag::Ambar);
  bagListele(settings::Bag::Satici);
}

void IsyeriEkrani::bagListele(settings::Bag bag) {
  if (bagHata_->isVisibleTo(this)) return;
  const auto liste = settings::Bag_Listele(oturum_, bag, seciliId());
  bagIzgarasi(bag).setEnabled(liste.hata.empty());
  bagYazildi_[static_cast<std::size_t>(bag)] = false;
  bagIzgarasi(bag).doldur(liste.satirlar);
  if (liste.hata.empty()) return;
  bagHata_->setText(ui::text(liste.hata));
  bagHata_->show();
}

void IsyeriEkrani::bagKaydet(settings::Bag bag) {
  bool& yazildi = bagYazildi_[static_cast<std::size_t>(bag)];
  if (!yazildi) return;
  yazildi = false;
  ui::IzgaraModeli& veri = bagIzgarasi(bag).veri();
  const auto kontrol = settings::Bag_Kaydet(oturum_, bag, seciliId(), veri.satirlar(),
                                            izgara().veri().satirlar(), izgara().satir());
  if (!kontrol.hata.empty()) oturum_.kutular->message(kontrol.hata, session::Icon::Information);
  // What is stored is no step of undo any more; of a workplace without a row nothing is.
  veri.kaydedildi();
}

}  // namespace settings_ui
