#include "cli/kullanici_ortak.h"
#include "rights/haklar.h"
#include "rights/yetki_metni.h"

namespace cli {

namespace {

constexpr std::array<Secenek, 4> options = {
    {{"--kullanici", "Yetkileri alınacak kullanıcı", true, Secenek::Tur::Metin, "KULLANICI"},
     {"--kaynak", "Yetkilerin alınacağı firma", true, Secenek::Tur::Metin, "FİRMA"},
     {"--hedef", "Yetkilerin yazılacağı firma", true, Secenek::Tur::Metin, "FİRMA"},
     {"--hedef-kullanici", "Yetkiler bu kullanıcıya yazılır; verilmezse aynı kullanıcıya", false,
      Secenek::Tur::Metin, "KULLANICI"}}};

int run(Ortam& ortam, const Degerler& values) {
  KomutOturumu komut(ortam);
  if (!komut.katalogaBagla()) return reddedildi;
  rights::YetkiDuzeni kaynak, hedef;
  const std::string kullanici = values.metin("kullanici");
  if (!rights::yetkiAc(komut.oturum, kaynak, kullanici, values.metin("kaynak")) ||
      !rights::yetkiAc(komut.oturum, hedef, values.metin("hedef-kullanici", kullanici),
                       values.metin("hedef")) ||
      yoneticininki(komut, hedef))
    return reddedildi;
  return rights::yetkiKopyala(komut.oturum, kaynak, hedef) ? tamam : reddedildi;
}

}  // namespace

const Komut& yetkiKopyalaKomutu() {
  static const Komut command{
      "yetki-kopyala", "Bir kullanıcının yetkilerini başka firmaya ya da kullanıcıya kopyalar",
      "Hedef firmada bulunmayan ambarlar, işyerleri ve kasa kopyalanmaz.", options, run};
  return command;
}

}  // namespace cli
