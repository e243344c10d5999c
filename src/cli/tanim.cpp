#include <algorithm>
#include <fstream>
#include <iterator>

#include "cli/komut.h"
#include "cli/metin_satirlari.h"
#include "cli/oturum_ac.h"
#include "cli/sonuc_yaz.h"
#include "settings/firma_baglanti.h"
#include "settings/numara.h"
#include "settings/tanim_dosyasi.h"

namespace cli {

namespace {

constexpr std::array<std::string_view, 11> turler = {"isyeri", "ambar", "satici", "fiyat",    "doviz", "renk",
                                                     "beden",  "drop",  "tarti",  "terminal", "rapor"};
constexpr std::array<Secenek, 5> tanimOptions = {
    {{"TUR", "Tanımların türü", true, Secenek::Tur::Konum, "", turler, "tanım türü"},
     {"--ad", "Firmanın veritabanı adı (terminal ve rapor için gerekmez)", false, Secenek::Tur::Metin,
      "FİRMA"},
     {"-i,--girdi", "Tanımları bu dosyadan alır (sekmeyle ayrılmış, UTF-8; - standart girdi)", false,
      Secenek::Tur::Metin, "DOSYA"},
     {"--dene", "Yazmaz, neyin değişeceğini gösterir", false, Secenek::Tur::Bayrak, ""},
     bicimTsv}};

constexpr std::string_view tanimMore =
    "-i verilmezse tanımları listeler. Dosyanın ilk satırı kolon adlarıdır; listenin yazdığı dosya olduğu\n"
    "gibi geri alınabilir. Bir satır koduyla var olan kayda yazılır, bulunamazsa eklenir; kimlik yalnız "
    "aynı\n"
    "kodlu satırları ayırır. Rapor metni aynısı varsa durur, yoksa eklenir.\n"
    "Ekranın denetimlerinden biri bile bir satırı reddederse satırı söylenir ve hiçbir şey yazılmaz.\n"
    "Yazılanlar metin olarak bildirilir, --bicim verilirse tablo olarak.";

int listele(Ortam& ortam, session::Oturum& oturum, const settings::ListeTuru& tur, Bicim bicim) {
  const auto liste = tur.yukle(oturum, tur);
  if (!liste.hata.empty()) {
    ortam.err << liste.hata << "\n";
    return reddedildi;
  }
  std::vector<std::string_view> basliklar;
  std::vector<std::size_t> kolonlar;  // a hidden column without a heading is none of the table's
  for (std::size_t i = 0; i < tur.kolonlar.size(); ++i) {
    if (tur.kolonlar[i].gizli && tur.kolonlar[i].baslik.empty() && tur.kolonlar[i].anahtar != tur.kimlik)
      continue;
    basliklar.push_back(tur.kolonlar[i].anahtar);
    kolonlar.push_back(i);
  }
  std::vector<std::vector<std::string>> satirlar;
  for (const auto& satir : liste.satirlar) {
    std::vector<std::string> hucreler;
    for (const std::size_t i : kolonlar) hucreler.push_back(satir.hucreler[i]);
    satirlar.push_back(std::move(hucreler));
  }
  sonucYaz(ortam, MetinSatirlari(basliklar, satirlar), bicim);
  return tamam;
}

std::optional<std::string> girdi(Ortam& ortam, const std::string& dosya) {
  if (dosya == "-") return std::string(std::istreambuf_iterator<char>(ortam.in), {});
  std::ifstream akis(dosya, std::ios::binary);
  if (!akis) {
    ortam.err << "Dosya okunamadı: " << dosya << "\n";
    return std::nullopt;
  }
  return std::string(std::istreambuf_iterator<char>(akis), {});
}

constexpr std::array<std::string_view, 5> farkBasliklari = {"Islem", "Satir", "Kolon", "Eski", "Yeni"};

void farkEkle(Degisiklikler& rapor, const settings::SatirFarki& fark) {
  const bool yeni = fark.kolonlar.empty();
  std::string metin = (yeni ? "+ " : "~ ") + fark.satir;
  std::vector<std::vector<std::string>> satirlar;
  if (yeni) satirlar.push_back({"ekle", fark.satir, "", "", ""});
  for (const auto& kolon : fark.kolonlar) {
    metin.append("  ").append(kolon.ad).append(": ").append(kolon.eski).append(" -> ").append(kolon.yeni);
    satirlar.push_back({"degistir", fark.satir, kolon.ad, kolon.eski, kolon.yeni});
  }
  rapor.ekle(metin + "\n", std::move(satirlar));
}

int yukle(Ortam& ortam, session::Oturum& oturum, const settings::ListeTuru& tur, const Degerler& values) {
  const auto metin = girdi(ortam, values.metin("girdi"));
  if (!metin) return reddedildi;
  const bool dene = values.var("dene");
  const auto sonuc = settings::Liste_Yukle(oturum, tur, *metin, dene);
  if (!sonuc.hata.empty()) {
    ortam.err << sonuc.hata << "\nHiçbir şey yazılmadı.\n";
    return reddedildi;
  }
  Degisiklikler rapor(ortam, values, farkBasliklari);
  for (const auto& fark : sonuc.farklar) farkEkle(rapor, fark);
  rapor.ekle(std::to_string(sonuc.eklenen) + " satır " + (dene ? "eklenecek, " : "eklendi, ") +
                 std::to_string(sonuc.degisen) + " satır " + (dene ? "değişecek\n" : "değişti\n"),
             {});
  rapor.bitir();
  return tamam;
}

int tanim(Ortam& ortam, const Degerler& values) {
  const settings::ListeTuru* tur = settings::listeTuru(values.metin("TUR"));
  const Bicim bicim = bicimi(values, Bicim::Tsv);
  if (tur->firmali && !values.var("ad")) {
    ortam.err << "Zorunlu seçenek verilmedi: --ad\n";
    return yanlisKullanim;
  }
  KomutOturumu komut(ortam);
  if (!komut.katalogaBagla()) return reddedildi;
  if (const std::string hata = settings::Liste_Bagla(komut.oturum, *tur, komut.firma(values.metin("ad")));
      !hata.empty()) {
    ortam.err << hata << "\n";
    return reddedildi;
  }
  return values.var("girdi") ? yukle(ortam, komut.oturum, *tur, values)
                             : listele(ortam, komut.oturum, *tur, bicim);
}

// --- Counters

constexpr std::array<Secenek, 4> numaraOptions = {
    {{"--ad", "Firmanın veritabanı adı", true, Secenek::Tur::Metin, "FİRMA"},
     {"--yaz", "Yazılacak son numara; birden çok kez verilebilir", false, Secenek::Tur::Coklu, "ANAHTAR=NO"},
     {"--dene", "Yazmaz, neyin değişeceğini gösterir", false, Secenek::Tur::Bayrak, ""},
     bicimTablo}};

constexpr std::string_view numaraMore =
    "--yaz verilmezse sayaçları listeler. BARKOD 23, öbür sayaçlar 10 karakterdir; uzun numara kesilir.\n"
    "Yazılanlar metin olarak bildirilir, --bicim verilirse tablo olarak.";

int numaraListele(Ortam& ortam, const settings::NumaraListesi& liste, Bicim bicim) {
  static constexpr std::array<std::string_view, 3> basliklar = {"Anahtar", "Numara", "Etiket"};
  std::vector<std::vector<std::string>> satirlar;
  for (const auto& n : liste.numaralar) satirlar.push_back({n.anahtar, n.numara, n.etiket});
  sonucYaz(ortam, MetinSatirlari(basliklar, satirlar), bicim);
  return tamam;
}

int numaraYaz(Ortam& ortam, session::Oturum& oturum, const settings::NumaraListesi& liste,
              const Degerler& values) {
  static constexpr std::array<std::string_view, 3> basliklar = {"Anahtar", "Eski", "Yeni"};
  std::vector<settings::NumaraYazisi> yazilar;
  std::string hata, metin;
  std::vector<std::vector<std::string>> satirlar;
  for (const std::string& atama : values.liste("yaz")) {
    const std::size_t esit = std::min(atama.find('='), atama.size());
    const std::string anahtar = atama.substr(0, esit),
                      numara = atama.substr(std::min(esit + 1, atama.size()));
    const auto at = std::find_if(liste.numaralar.begin(), liste.numaralar.end(),
                                 [&](const auto& n) { return n.anahtar == anahtar; });
    if (at == liste.numaralar.end())
      hata = "Bilinmeyen sayaç: " + anahtar;
    else if (numara.empty())
      hata = "ANAHTAR=NO bekleniyordu: " + atama;
    else if (!at->var)
      hata = "IP_" + anahtar + " tablosu yok.";
    else if (const auto harf = session::yabanciHarf(numara))
      hata = anahtar + ": “" + *harf + "” harfi kullanılamaz (1254 Türkçe kod sayfasında yok).";
    if (!hata.empty()) break;
    yazilar.push_back({anahtar, numara});
    satirlar.push_back(
        {anahtar, at->numara, std::string(session::ilkHarfler(numara, settings::numaraUzunlugu(anahtar)))});
    metin += anahtar + ": " + satirlar.back()[1] + " -> " + satirlar.back()[2] + "\n";
  }
  if (hata.empty() && !values.var("dene")) hata = settings::Numaralari_Yaz(oturum, yazilar);
  if (!hata.empty()) {
    ortam.err << hata << "\nHiçbir şey yazılmadı.\n";
    return reddedildi;
  }
  Degisiklikler rapor(ortam, values, basliklar);
  rapor.ekle(metin, std::move(satirlar));
  rapor.bitir();
  return tamam;
}

int numara(Ortam& ortam, const Degerler& values) {
  const Bicim bicim = bicimi(values, Bicim::Tablo);
  KomutOturumu komut(ortam);
  if (!komut.katalogaBagla()) return reddedildi;
  settings::NumaraListesi liste;
  // The catalog knows whether there is such a company.
  komut.oturum.Secili_Firma = komut.firma(values.metin("ad"));
  liste.hata = settings::Tanim_Firma_Bagla(komut.oturum);
  if (liste.hata.empty()) liste.hata = settings::Firma_Bagla(komut.oturum, komut.oturum.Secili_Firma);
  if (liste.hata.empty()) liste = settings::Numaralari_Oku(komut.oturum);
  if (!liste.hata.empty()) {
    ortam.err << liste.hata << "\n";
    return reddedildi;
  }
  return values.liste("yaz").empty() ? numaraListele(ortam, liste, bicim)
                                     : numaraYaz(ortam, komut.oturum, liste, values);
}

}  // namespace

const Komut& tanimKomutu() {
  static const Komut command{"tanim", "Firmanın tanımlarını listeler ya da bir dosyadan alır", tanimMore,
                             tanimOptions, tanim};
  return command;
}

const Komut& numaraKomutu() {
  static const Komut command{"numara", "Fiş numarası sayaçlarını listeler ya da yazar", numaraMore,
                             numaraOptions, numara};
  return command;
}

}  // namespace cli
