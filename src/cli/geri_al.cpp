#include "cli/bakim_ortak.h"
#include "cli/komut.h"
#include "maintenance/yedek.h"

namespace cli {

namespace {

using Tur = Secenek::Tur;

constexpr std::array<Secenek, 4> options = {
    {{"KLASOR", "Yedeğin klasörü", false, Tur::Konum, ""},
     {"--sunucu-dosyasi", "Başka makinedeki sunucunun yedek dosyası, o makinedeki yoluyla", false, Tur::Metin,
      "YOL"},
     {"--ad", "--sunucu-dosyasi ile: geri alınacak firmanın veritabanı adı", false, Tur::Metin, "FİRMA"},
     {"--evet", "Onay sorusunu evet sayar", false, Tur::Bayrak, ""}}};

int run(Ortam& ortam, const Degerler& values) {
  if (values.var("KLASOR") == values.var("sunucu-dosyasi") ||
      values.var("ad") != values.var("sunucu-dosyasi")) {
    ortam.err << "KLASOR ya da --sunucu-dosyasi ile --ad verilmeli.\n";
    return yanlisKullanim;
  }
  KomutOturumu komut(ortam);
  if (!komut.katalogaBagla()) return reddedildi;
  komut.kutular.evet = values.var("evet");
  if (values.var("KLASOR")) {
    const bool tamamlandi = maintenance::Geri_Al(komut.oturum, tamYol(values.metin("KLASOR")));
    komut.ilerleme.bitir();
    return tamamlandi ? tamam : reddedildi;
  }
  const std::string ad = firmaBul(komut, values.metin("ad"));
  if (ad.empty() || !komut.kutular.ask("\"" + ad +
                                           "\" firmasının bilgileri yedektekilerle değiştirilecek. "
                                           "Devam edilsin mi?",
                                       session::Icon::Question, session::defaultTitle))
    return reddedildi;
  return maintenance::Sunucuda_Geri_Al(komut.oturum, ad, values.metin("sunucu-dosyasi")) ? tamam : reddedildi;
}

}  // namespace

const Komut& geriAlKomutu() {
  static const Komut command{"geri-al", "Bir firmayı yedek klasöründeki iki dosyadan geri alır",
                             "Yedek önce denetlenir; geri alınan veritabanı açılamazsa önceki bilgiler "
                             "yerine konur. Terminal yokken "
                             "--evet gerekir.",
                             options, run};
  return command;
}

}  // namespace cli
