#include <algorithm>

#include "cli/bakim_ortak.h"
#include "cli/komut.h"
#include "maintenance/aktar.h"
#include "session/metin.h"

namespace cli {

namespace {

using Tur = Secenek::Tur;

constexpr std::array<Secenek, 4> options = {
    {{"--kaynak", "Veritabanı dosyalarının durduğu klasör", true, Tur::Metin, "KLASÖR"},
     {"--ad", "Taşınacak veritabanları, virgülle; verilmezse klasördekilerin hepsi", false, Tur::Metin,
      "AD,..."},
     {"--genel", "Tanım veritabanını da taşır; dosyalar sunucuya eklenir", false, Tur::Bayrak, ""},
     {"--evet", "Onay sorusunu evet sayar", false, Tur::Bayrak, ""}}};

// Ticks the named ones; the first name that is not there is told.
std::string sec(std::vector<maintenance::AktarSatiri>& satirlar, const std::string& adlar) {
  for (std::size_t bas = 0; bas < adlar.size();) {
    const std::size_t son = std::min(adlar.find(',', bas), adlar.size());
    const std::string ad = session::Trim(adlar.substr(bas, son - bas));
    const auto satir =
        std::find_if(satirlar.begin(), satirlar.end(), [&](const auto& s) { return s.Database == ad; });
    if (satir == satirlar.end()) return ad;
    satir->Sec = true;
    bas = son + 1;
  }
  return {};
}

int run(Ortam& ortam, const Degerler& values) {
  KomutOturumu komut(ortam);
  if (!komut.katalogaBagla()) return reddedildi;
  komut.kutular.evet = values.var("evet");
  const auto kaynak = tamYol(values.metin("kaynak"));
  auto satirlar = maintenance::aktarListesi(kaynak);
  if (!values.var("ad"))
    for (auto& satir : satirlar) satir.Sec = !maintenance::sunucununKendisi(satir.Database);
  if (const std::string yok = sec(satirlar, values.metin("ad")); !yok.empty()) {
    ortam.err << "Klasörde böyle bir veritabanı yok: " << yok << "\n";
    return reddedildi;
  }
  const std::string hedef = maintenance::aktarHedefi(komut.oturum);
  const bool tasindi = maintenance::Aktar(komut.oturum, kaynak, hedef, satirlar, values.var("genel"));
  komut.ilerleme.bitir();
  return tasindi ? tamam : reddedildi;
}

}  // namespace

const Komut& tasiKomutu() {
  static const Komut command{"tasi", "Başka bir klasördeki veritabanlarını sunucunun veri klasörüne taşır",
                             "Kaynak dosyalar yerinde kalır. Bir veritabanı taşınamazsa hiçbiri taşınmaz; "
                             "sunucu her durumda yeniden "
                             "başlar.",
                             options, run};
  return command;
}

}  // namespace cli
