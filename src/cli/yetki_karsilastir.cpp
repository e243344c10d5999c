#include "cli/kullanici_ortak.h"
#include "cli/metin_satirlari.h"
#include "cli/sonuc_yaz.h"
#include "rights/haklar.h"

namespace cli {

namespace {

constexpr std::array<Secenek, 5> options = {
    {{"--kullanici", "Kullanıcının adı", true, Secenek::Tur::Metin, "KULLANICI"},
     {"--firma", "Firmanın veritabanı adı", true, Secenek::Tur::Metin, "FİRMA"},
     {"--diger-kullanici", "Karşılaştırılacak kullanıcı; verilmezse aynı kullanıcı", false,
      Secenek::Tur::Metin, "KULLANICI"},
     {"--diger-firma", "Karşılaştırılacak firma; verilmezse aynı firma", false, Secenek::Tur::Metin, "FİRMA"},
     bicimTsv}};

int run(Ortam& ortam, const Degerler& values) {
  const Bicim bicim = bicimi(values, Bicim::Tsv);
  if (!values.var("diger-kullanici") && !values.var("diger-firma")) {
    ortam.err << "--diger-kullanici ya da --diger-firma verilmelidir.\n";
    return yanlisKullanim;
  }
  KomutOturumu komut(ortam);
  if (!komut.katalogaBagla()) return reddedildi;
  const std::string kullanici = values.metin("kullanici"), firma = values.metin("firma");
  rights::YetkiDuzeni sol, sag;
  if (!rights::yetkiAc(komut.oturum, sol, kullanici, firma) ||
      !rights::yetkiAc(komut.oturum, sag, values.metin("diger-kullanici", kullanici),
                       values.metin("diger-firma", firma)))
    return reddedildi;
  std::vector<std::vector<std::string>> satirlar;
  for (const rights::Fark& fark : rights::farklar(sol, sag))
    satirlar.push_back({fark.yol, fark.sol, fark.sag});
  const std::string solAd = sol.Kullanici_Ad + "/" + sol.firma, sagAd = sag.Kullanici_Ad + "/" + sag.firma;
  const std::string_view basliklar[] = {"Yetki", solAd, sagAd};
  sonucYaz(ortam, MetinSatirlari(basliklar, satirlar), bicim);
  return satirlar.empty() ? tamam : reddedildi;
}

}  // namespace

const Komut& yetkiKarsilastirKomutu() {
  static const Komut command{"yetki-karsilastir",
                             "İki kullanıcının ya da iki firmadaki yetkilerin farkını yazar",
                             "Birinde olup ötekinde olmayan yetkileri yazar.",
                             options,
                             run,
                             farkKodlari};
  return command;
}

}  // namespace cli
