#include <algorithm>

#include "cli/komut.h"
#include "cli/metin_satirlari.h"
#include "cli/oturum_ac.h"
#include "cli/parametre_ortak.h"
#include "cli/sonuc_yaz.h"

namespace cli {

namespace {

using settings::FirmaKaydi;
using settings::Parametre;

constexpr std::array<Secenek, 5> kopyalaOptions = {
    {{"--kaynak", "Parametreleri alınacak firma", true, Secenek::Tur::Metin, "FİRMA"},
     {"--hedef", "Parametreleri yazılacak firma; birden çok kez verilebilir", true, Secenek::Tur::Coklu,
      "FİRMA"},
     {"--kolon", "Yalnız bu parametre; birden çok kez verilebilir", false, Secenek::Tur::Coklu, "KOLON"},
     {"--dene", "Yazmaz, neyin değişeceğini gösterir", false, Secenek::Tur::Bayrak, ""},
     bicimMetin}};

constexpr std::string_view kopyalaMore =
    "--kolon verilmezse bütün parametreler kopyalanır; emanet ambarı (Emanet_Ambar_No) firmanın kendi\n"
    "ambarıdır ve yalnız adıyla istenirse kopyalanır. Bir firmanın parametreleri tek deyimle yazılır.";

// The parameters named; the reason in `hata` when one is unknown.
std::vector<const Parametre*> kolonlar(const std::vector<std::string>& adlar, std::string& hata) {
  std::vector<const Parametre*> sonuc;
  for (const std::string& ad : adlar) {
    const Parametre* p = settings::parametreBul(ad);
    if (!p) hata = "Bilinmeyen parametre: " + ad;
    sonuc.push_back(p);
  }
  return sonuc;
}

int kopyala(Ortam& ortam, const Degerler& values) {
  std::string hata;
  const auto secilen = kolonlar(values.liste("kolon"), hata);
  if (!hata.empty()) {
    ortam.err << hata << "\n";
    return yanlisKullanim;
  }
  KomutOturumu komut(ortam);
  if (!komut.katalogaBagla()) return reddedildi;
  std::vector<std::string> adlar{values.metin("kaynak")};
  adlar.insert(adlar.end(), values.liste("hedef").begin(), values.liste("hedef").end());
  for (std::string& ad : adlar) ad = komut.firma(ad);
  auto kayitlar = settings::Firma_Kayitlari(komut.oturum, adlar);
  if (kayitlar.empty()) {
    ortam.err << komut.oturum.Son_Hata << "\nHiçbir şey yazılmadı.\n";
    return reddedildi;
  }
  Degisiklikler rapor(ortam, values, degisiklikBasliklari);
  int sonuc = tamam;
  for (std::size_t i = 1; i < kayitlar.size(); ++i) {
    const auto yeni = settings::kopyalanan(kayitlar[0], kayitlar[i], secilen);
    if (const std::string engel = parametreEngeli(komut, kayitlar[i], yeni); !engel.empty()) {
      ortam.err << kayitlar[i].sysfrm_dbnm << ": " << engel << "\n";
      sonuc = reddedildi;
      continue;
    }
    if (parametreYaz(komut, kayitlar[i], yeni, values.var("dene"), rapor) != tamam) sonuc = reddedildi;
  }
  rapor.bitir();
  return sonuc;
}

constexpr std::array<Secenek, 3> karsilastirOptions = {
    {{"BIRINCI", "Firma", true, Secenek::Tur::Konum, ""},
     {"IKINCI", "Karşılaştırılacak firma", true, Secenek::Tur::Konum, ""},
     bicimTablo}};

constexpr std::string_view karsilastirMore = "Yalnız farklı olan parametreleri yazar.";

int karsilastir(Ortam& ortam, const Degerler& values) {
  const Bicim bicim = bicimi(values, Bicim::Tablo);
  KomutOturumu komut(ortam);
  if (!komut.katalogaBagla()) return reddedildi;
  const auto kayitlar =
      settings::Firma_Kayitlari(komut.oturum, {values.metin("BIRINCI"), values.metin("IKINCI")});
  if (kayitlar.empty()) {
    ortam.err << komut.oturum.Son_Hata << "\n";
    return reddedildi;
  }
  const auto farklar = settings::farklar(kayitlar[0].degerler, kayitlar[1].degerler);
  const std::array<std::string_view, 4> basliklar = {"Kolon", kayitlar[0].sysfrm_dbnm,
                                                     kayitlar[1].sysfrm_dbnm, "Baslik"};
  std::vector<std::vector<std::string>> satirlar;
  for (const auto& fark : farklar)
    satirlar.push_back({std::string(fark.parametre->sutun), settings::depoMetni(*fark.parametre, fark.eski),
                        settings::depoMetni(*fark.parametre, fark.yeni),
                        settings::parametreAdi(*fark.parametre)});
  if (!satirlar.empty() || bicim != Bicim::Tablo)
    sonucYaz(ortam, MetinSatirlari(basliklar, satirlar), bicim);
  else
    ortam.haber() << "Parametreler aynı.\n";
  return satirlar.empty() ? tamam : reddedildi;
}

}  // namespace

const Komut& parametreKopyalaKomutu() {
  static const Komut command{"parametre-kopyala", "Bir firmanın parametrelerini başka firmalara kopyalar",
                             kopyalaMore, kopyalaOptions, kopyala};
  return command;
}

const Komut& parametreKarsilastirKomutu() {
  static const Komut command{"parametre-karsilastir",
                             "İki firmanın parametrelerini karşılaştırır",
                             karsilastirMore,
                             karsilastirOptions,
                             karsilastir,
                             farkKodlari};
  return command;
}

}  // namespace cli
