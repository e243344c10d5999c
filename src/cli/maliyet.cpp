#include "cli/komut.h"
#include "cli/metin_satirlari.h"
#include "cli/oturum_ac.h"
#include "cli/sonuc_yaz.h"
#include "rollover/kanit.h"
#include "rollover/maliyet_gecmisi.h"

namespace cli {

namespace {

constexpr std::array<Secenek, 3> options = {
    {{"--ad", "Firmanın veritabanı adı", true, Secenek::Tur::Metin, "FİRMA"},
     {"--stok", "Stok kodu", true, Secenek::Tur::Metin, "KOD"},
     bicimTsv}};
constexpr std::array<std::string_view, 10> basliklar = {
    "Tarih", "Fiş No",  "İşlem Tipi",   "Ambar",       "Giriş",
    "Çıkış", "Maliyet", "Kalan Miktar", "Kalan Değer", "Birim Maliyet"};

constexpr std::string_view more =
    "Stoğun hareketlerini devrin maliyet hesabındaki sırayla yürütür ve her satırın ardından kalan miktarı, "
    "değeri ve\n"
    "birim maliyeti yazar.";

int run(Ortam& ortam, const Degerler& v) {
  KomutOturumu komut(ortam);
  if (!komut.katalogaBagla()) return reddedildi;
  const auto g = rollover::Maliyet_Gecmisi(komut.oturum, komut.firma(v.metin("ad")), v.metin("stok"));
  if (!g.hata.empty()) {
    ortam.err << g.hata << "\n";
    return reddedildi;
  }
  std::vector<std::vector<std::string>> satirlar;
  for (const rollover::MaliyetSatiri& s : g.satirlar)
    satirlar.push_back({s.tarih, s.fisNo, s.islemTipi, std::to_string(s.ambar), rollover::paraMetni(s.giris),
                        rollover::paraMetni(s.cikis), rollover::paraMetni(s.maliyet),
                        rollover::paraMetni(s.miktar), rollover::paraMetni(s.deger),
                        rollover::paraMetni(s.birimMaliyet)});
  sonucYaz(ortam, MetinSatirlari(basliklar, satirlar), bicimi(v, Bicim::Tsv));
  ortam.bilgi() << g.stokKod << " " << g.stokAd << ": " << g.satirlar.size() << " hareket, birim maliyet "
                << rollover::paraMetni(g.satirlar.empty() ? rollover::Para{} : g.satirlar.back().birimMaliyet)
                << "\n";
  return tamam;
}

}  // namespace

const Komut& maliyetKomutu() {
  static const Komut command{"maliyet", "Bir stoğun maliyet hesabını satır satır gösterir", more, options,
                             run};
  return command;
}

}  // namespace cli
