#include "cli/kullanici_ortak.h"
#include "cli/metin_satirlari.h"
#include "cli/sonuc_yaz.h"
#include "rights/haklar.h"
#include "rights/yetki_metni.h"

namespace cli {

namespace {

constexpr std::array<std::string_view, 5> bicimler = {"agac", "tsv", "tablo", "json", "metin"};
constexpr std::array<Secenek, 3> options = {
    {{"--kullanici", "Kullanıcının adı", true, Secenek::Tur::Metin, "KULLANICI"},
     {"--firma", "Firmanın veritabanı adı", true, Secenek::Tur::Metin, "FİRMA"},
     {"--bicim", "Yetkilerin biçimi (varsayılan agac)", false, Secenek::Tur::Metin, "BİÇİM", bicimler}}};
constexpr std::string_view basliklar[] = {"Yetki", "Kolon", "Yer", "Deger"};

int run(Ortam& ortam, const Degerler& values) {
  const std::string bicim = values.metin("bicim", "agac");
  KomutOturumu komut(ortam);
  if (!komut.katalogaBagla()) return reddedildi;
  rights::YetkiDuzeni duzen;
  if (!rights::yetkiAc(komut.oturum, duzen, values.metin("kullanici"), values.metin("firma")))
    return reddedildi;
  if (bicim == "tsv" || bicim == "tablo")
    sonucYaz(ortam, MetinSatirlari(basliklar, rights::yetkiListesi(duzen)), bicimi(values, Bicim::Tsv));
  else
    ortam.out << (bicim == "json" ? rights::yetkiJson(duzen) : rights::yetkiAgacMetni(duzen));
  return tamam;
}

}  // namespace

const Komut& yetkiGosterKomutu() {
  static const Komut command{"yetki-goster", "Bir kullanıcının bir firmadaki yetkilerini yazar",
                             "json biçimini yetki-yaz geri okur: kolonlar veritabanında durdukları gibidir.",
                             options, run};
  return command;
}

}  // namespace cli
