#include "cli/kullanici_ortak.h"
#include "cli/metin_satirlari.h"
#include "cli/sonuc_yaz.h"
#include "rights/kasiyer_metni.h"

namespace cli {

namespace {

constexpr std::array<Secenek, 3> options = {
    {{"--kullanici", "Kullanıcının adı", true, Secenek::Tur::Metin, "KULLANICI"},
     {"--firma", "Firmanın veritabanı adı", true, Secenek::Tur::Metin, "FİRMA"},
     bicimTsv}};
constexpr std::string_view basliklar[] = {"Ayar", "Kolon", "Deger"};

int run(Ortam& ortam, const Degerler& values) {
  const Bicim bicim = bicimi(values, Bicim::Tsv);
  KomutOturumu komut(ortam);
  if (!komut.katalogaBagla()) return reddedildi;
  rights::KasiyerDuzeni duzen;
  if (!rights::kasiyerAc(komut.oturum, duzen, values.metin("kullanici"), values.metin("firma")))
    return reddedildi;
  if (bicim == Bicim::Json) {
    ortam.out << rights::kasiyerJson(duzen);
    return tamam;
  }
  const auto satirlar = rights::kasiyerListesi(duzen);
  sonucYaz(ortam, MetinSatirlari(basliklar, satirlar), bicim);
  return tamam;
}

}  // namespace

const Komut& kasiyerGosterKomutu() {
  static const Komut command{"kasiyer-goster",
                             "Bir kullanıcının bir firmadaki kasiyer yetki ve ayarlarını yazar",
                             "json biçimini kasiyer-yaz geri okur.", options, run};
  return command;
}

}  // namespace cli
