#include <iterator>

#include "cli/kullanici_ortak.h"
#include "platform/files.h"
#include "rights/haklar.h"
#include "rights/yetki_metni.h"

namespace cli {

namespace {

constexpr std::array<Secenek, 3> options = {
    {{"--kullanici", "Kullanıcının adı", true, Secenek::Tur::Metin, "KULLANICI"},
     {"--firma", "Firmanın veritabanı adı", true, Secenek::Tur::Metin, "FİRMA"},
     {"-i,--girdi", "Yetkilerin JSON dosyası; - standart girdidir", true, Secenek::Tur::Metin, "DOSYA"}}};

std::optional<std::string> girdi(Ortam& ortam, const std::string& ad) {
  if (ad == "-") return std::string(std::istreambuf_iterator<char>(ortam.in), {});
  return platform::readFile(ad);
}

int run(Ortam& ortam, const Degerler& values) {
  const auto json = girdi(ortam, values.metin("girdi"));
  if (!json) {
    ortam.err << "Dosya okunamadı: " << values.metin("girdi") << "\n";
    return reddedildi;
  }
  KomutOturumu komut(ortam);
  if (!komut.katalogaBagla()) return reddedildi;
  rights::YetkiDuzeni duzen;
  rights::JsonKapsami kapsam;
  if (!rights::yetkiAc(komut.oturum, duzen, values.metin("kullanici"), values.metin("firma")) ||
      yoneticininki(komut, duzen))
    return reddedildi;
  if (const std::string hata = rights::yetkiJsonOku(*json, duzen, kapsam); !hata.empty()) {
    ortam.err << values.metin("girdi") << ": " << hata << "\nHiçbir şey yazılmadı.\n";
    return reddedildi;
  }
  return rights::yetkiJsonYaz(komut.oturum, duzen, kapsam) ? tamam : reddedildi;
}

}  // namespace

const Komut& yetkiYazKomutu() {
  static const Komut command{
      "yetki-yaz", "Bir kullanıcının bir firmadaki yetkilerini JSON dosyasından yazar",
      "Dosya, yetki-goster --bicim json çıktısının bütünü ya da bir parçasıdır. Bilinmeyen bir yetki, "
      "yanlış\n"
      "uzunluk ya da 0 ve 1 dışında bir değer, satırıyla söylenir ve hiçbir şey yazılmaz.",
      options, run};
  return command;
}

}  // namespace cli
