#include <algorithm>

#include "cli/komut.h"
#include "cli/oturum_ac.h"
#include "session/konsol.h"
#include "session/metin.h"

namespace cli {

namespace {

constexpr std::array<Secenek, 2> options = {
    {{"--ad", "Silinecek firmanın veritabanı adı", true, Secenek::Tur::Metin, "AD"},
     {"--evet", "Onay sorusunu evet sayar", false, Secenek::Tur::Bayrak, ""}}};

int run(Ortam& ortam, const Degerler& values) {
  KomutOturumu komut(ortam);
  if (!komut.katalogaBagla()) return reddedildi;
  komut.kutular.evet = values.var("evet");
  const std::string wanted = session::Buyuk_Harf(session::Trim(values.metin("ad")));
  const auto nodes = session::Firma_Listesi_Doldur(komut.oturum);
  const auto node = std::find_if(nodes.begin(), nodes.end(), [&](const session::Dugum& n) {
    return session::Buyuk_Harf(n.text) == wanted;
  });
  if (node == nodes.end()) {
    ortam.err << "Bu isimle bir firma yok: " << values.metin("ad") << "\n";
    return reddedildi;
  }
  return session::MNSil(komut.oturum, *node).listeyiYenile ? tamam : reddedildi;
}

}  // namespace

const Komut& firmaSilKomutu() {
  static const Komut command{"firma-sil", "Bir firmayı tüm hareketleriyle birlikte siler",
                             "Geri alınamaz. Terminal yokken --evet gerekir.", options, run};
  return command;
}

}  // namespace cli
