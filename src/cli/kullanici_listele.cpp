#include <map>

#include "cli/kullanici_ortak.h"
#include "cli/metin_satirlari.h"
#include "cli/sonuc_yaz.h"

namespace cli {

namespace {

constexpr std::array<Secenek, 1> options = {{bicimTsv}};
constexpr std::string_view basliklar[] = {"Ad", "No", "Yonetici", "Firmalar"};

int run(Ortam& ortam, const Degerler& values) {
  const Bicim bicim = bicimi(values, Bicim::Tsv);
  KomutOturumu komut(ortam);
  if (!komut.katalogaBagla()) return reddedildi;
  std::vector<std::vector<std::string>> satirlar;
  for (const rights::KullaniciOzeti& user : rights::kullaniciOzetleri(komut.oturum)) {
    std::string firmalar;
    for (const std::string& firma : user.firmalar) firmalar += (firmalar.empty() ? "" : ",") + firma;
    satirlar.push_back({user.ad, std::to_string(user.id), user.yonetici ? "1" : "0", firmalar});
  }
  const MetinSatirlari rows(basliklar, satirlar);
  sonucYaz(ortam, rows, bicim);
  return tamam;
}

}  // namespace

const Komut& kullaniciListeleKomutu() {
  static const Komut command{"kullanici-listele", "Kullanıcıları ve kullandıkları firmaları listeler", "",
                             options, run};
  return command;
}

}  // namespace cli
