#include <iterator>

#include "cli/kullanici_ortak.h"
#include "platform/files.h"
#include "rights/kasiyer_metni.h"

namespace cli {

namespace {

constexpr std::array<Secenek, 3> options = {
    {{"--kullanici", "Kullanıcının adı", true, Secenek::Tur::Metin, "KULLANICI"},
     {"--firma", "Firmanın veritabanı adı", true, Secenek::Tur::Metin, "FİRMA"},
     {"-i,--girdi", "Ayarların JSON dosyası; - standart girdidir", true, Secenek::Tur::Metin, "DOSYA"}}};

int run(Ortam& ortam, const Degerler& values) {
  const std::string ad = values.metin("girdi");
  const auto json = ad == "-" ? std::optional(std::string(std::istreambuf_iterator<char>(ortam.in), {}))
                              : platform::readFile(ad);
  if (!json) {
    ortam.err << "Dosya okunamadı: " << ad << "\n";
    return reddedildi;
  }
  KomutOturumu komut(ortam);
  if (!komut.katalogaBagla()) return reddedildi;
  rights::KasiyerDuzeni duzen;
  if (!rights::kasiyerAc(komut.oturum, duzen, values.metin("kullanici"), values.metin("firma")))
    return reddedildi;
  if (const std::string hata = rights::kasiyerJsonOku(komut.oturum, *json, duzen); !hata.empty()) {
    ortam.err << ad << ": " << hata << "\nHiçbir şey yazılmadı.\n";
    return reddedildi;
  }
  return rights::Kasiyer_Yetki_Kaydet(komut.oturum, duzen) ? tamam : reddedildi;
}

}  // namespace

const Komut& kasiyerYazKomutu() {
  static const Komut command{
      "kasiyer-yaz", "Bir kullanıcının bir firmadaki kasiyer ayarlarını JSON dosyasından yazar",
      "Dosya, kasiyer-goster --bicim json çıktısının bütünü ya da bir parçasıdır; verilmeyenler\n"
      "olduğu gibi kalır, \"kisayollar\" verilirse bütün kısayolların yerine geçer.",
      options, run};
  return command;
}

}  // namespace cli
