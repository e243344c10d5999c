#include "cli/komut.h"
#include "cli/oturum_ac.h"
#include "session/firma_bul.h"
#include "session/konsol.h"

namespace cli {

namespace {

constexpr std::array<Secenek, 2> options = {
    {{"--ad", "Silinecek firmanın veritabanı adı", true, Secenek::Tur::Metin, "FİRMA"},
     {"--evet", "Onay sorusunu evet sayar", false, Secenek::Tur::Bayrak, ""}}};

int run(Ortam& ortam, const Degerler& values) {
  KomutOturumu komut(ortam);
  if (!komut.katalogaBagla()) return reddedildi;
  komut.kutular.evet = values.var("evet");
  const auto firma = session::Firma_Bul(komut.oturum, values.metin("ad"));
  if (!firma) {
    ortam.err << "Bu isimle bir firma yok: " << values.metin("ad") << "\n";
    return reddedildi;
  }
  return session::MNSil(komut.oturum, {std::string(session::dugum::F), firma->ad, firma->id, "", ""})
                 .listeyiYenile
             ? tamam
             : reddedildi;
}

}  // namespace

const Komut& firmaSilKomutu() {
  static const Komut command{"firma-sil", "Bir firmayı tüm hareketleriyle birlikte siler",
                             "Geri alınamaz. Terminal yokken --evet gerekir.", options, run};
  return command;
}

}  // namespace cli
