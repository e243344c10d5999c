#include "cli/komut.h"
#include "cli/oturum_ac.h"
#include "rollover/kanit.h"
#include "rollover/maliyet_gecmisi.h"

namespace cli {

namespace {

constexpr std::array<Secenek, 2> options = {
    {{"--ad", "Firmanın veritabanı adı", true, Secenek::Tur::Metin, "AD"},
     {"--stok", "Stok kodu", true, Secenek::Tur::Metin, "KOD"}}};

constexpr std::string_view more =
    "Stoğun hareketlerini devrin maliyet hesabındaki sırayla yürütür ve her satırın ardından kalan miktarı, "
    "değeri ve\n"
    "birim maliyeti yazar (sekmeyle ayrılmış).";

int run(Ortam& ortam, const Degerler& v) {
  KomutOturumu komut(ortam);
  if (!komut.katalogaBagla()) return reddedildi;
  const auto g = rollover::Maliyet_Gecmisi(komut.oturum, v.metin("ad"), v.metin("stok"));
  if (!g.hata.empty()) {
    ortam.err << g.hata << "\n";
    return reddedildi;
  }
  ortam.out << "Tarih\tFiş No\tİşlem Tipi\tAmbar\tGiriş\tÇıkış\tMaliyet\tKalan Miktar\tKalan Değer\tBirim "
               "Maliyet\n";
  for (const rollover::MaliyetSatiri& s : g.satirlar)
    ortam.out << s.tarih << "\t" << s.fisNo << "\t" << s.islemTipi << "\t" << s.ambar << "\t"
              << rollover::paraMetni(s.giris) << "\t" << rollover::paraMetni(s.cikis) << "\t"
              << rollover::paraMetni(s.maliyet) << "\t" << rollover::paraMetni(s.miktar) << "\t"
              << rollover::paraMetni(s.deger) << "\t" << rollover::paraMetni(s.birimMaliyet) << "\n";
  ortam.err << g.stokKod << " " << g.stokAd << ": " << g.satirlar.size() << " hareket, birim maliyet "
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
