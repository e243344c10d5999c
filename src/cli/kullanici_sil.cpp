#include "cli/kullanici_ortak.h"
#include "session/konsol.h"

namespace cli {

namespace {

constexpr std::array<Secenek, 2> options = {
    {{"--ad", "Silinecek kullanıcının adı", true, Secenek::Tur::Metin, "KULLANICI"},
     {"--evet", "Onay sorusunu evet sayar", false, Secenek::Tur::Bayrak, ""}}};

int run(Ortam& ortam, const Degerler& values) {
  KomutOturumu komut(ortam);
  if (!komut.katalogaBagla()) return reddedildi;
  komut.kutular.evet = values.var("evet");
  const auto id = kullaniciBul(komut, values.metin("ad"));
  if (!id) return reddedildi;
  session::Dugum node;
  node.kind = session::dugum::K;
  node.id = *id;
  return session::MNSil(komut.oturum, node).listeyiYenile ? tamam : reddedildi;
}

}  // namespace

const Komut& kullaniciSilKomutu() {
  static const Komut command{"kullanici-sil", "Bir kullanıcıyı ve bütün yetkilerini siler",
                             "Terminal yokken --evet gerekir.", options, run};
  return command;
}

}  // namespace cli
