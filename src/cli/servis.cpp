#include "maintenance/servis.h"

#include "cli/bakim_ortak.h"
#include "cli/komut.h"
#include "cli/metin_satirlari.h"
#include "cli/sonuc_yaz.h"

namespace cli {

namespace {

using maintenance::Bulgu;
using Tur = Secenek::Tur;

constexpr std::array<Secenek, 5> options = {
    {{"--ad", "Firmanın veritabanı adı", true, Tur::Metin, "FİRMA"},
     {"--kilitler", "Kullanıcılardan kalan kayıt kilitlerini temizler", false, Tur::Bayrak, ""},
     {"--baglantilar", "Fatura ve irsaliye bağlantılarına bakar", false, Tur::Bayrak, ""},
     {"--denetle", "Bütün denetimleri yapar", false, Tur::Bayrak, ""},
     bicimTsv}};

int bulgulariYaz(Ortam& ortam, const std::vector<Bulgu>& bulgular, Bicim bicim) {
  int code = tamam;
  const bool json = bicim == Bicim::Json;
  bool first = true;
  for (const Bulgu& bulgu : bulgular) {
    if (!bulgu.hata.empty()) {
      ortam.err << bulgu.denetim->ad << ": denetlenemedi: " << bulgu.hata << "\n";
      code = reddedildi;
      continue;
    }
    ortam.bilgi() << bulgu.denetim->ad << ": " << bulgu.satirlar.size() << "\n";
    if (bulgu.satirlar.empty()) continue;
    code = reddedildi;
    if (json)
      ortam.out << (first ? "{" : ",\n") << jsonMetni(bulgu.denetim->ad) << ": ";
    else
      ortam.out << "## " << bulgu.denetim->ad << "\n";
    first = false;
    const std::vector<std::string_view> basliklar(bulgu.basliklar.begin(), bulgu.basliklar.end());
    sonucYaz(ortam, MetinSatirlari(basliklar, bulgu.satirlar), bicim);
  }
  if (json) ortam.out << (first ? "{}\n" : "}\n");
  return code;
}

int run(Ortam& ortam, const Degerler& values) {
  const Bicim bicim = bicimi(values, Bicim::Tsv);
  if (!values.var("kilitler") && !values.var("baglantilar") && !values.var("denetle")) {
    ortam.err << "--kilitler, --baglantilar ya da --denetle verilmeli.\n";
    return yanlisKullanim;
  }
  KomutOturumu komut(ortam);
  if (!komut.katalogaBagla()) return reddedildi;
  const std::string ad = firmaBul(komut, values.metin("ad"));
  if (ad.empty() || !maintenance::servisFirmasi(komut.oturum, ad)) return reddedildi;
  if (values.var("kilitler") && !maintenance::Kilitleri_Temizle(komut.oturum)) return reddedildi;
  std::vector<Bulgu> bulgular;
  if (values.var("denetle"))
    bulgular = maintenance::Denetle(komut.oturum, ad);
  else if (values.var("baglantilar"))
    bulgular = maintenance::Fatura_Irsaliye_Baglantilari(komut.oturum);
  komut.ilerleme.bitir();
  return bulgulariYaz(ortam, bulgular, bicim);
}

}  // namespace

const Komut& servisKomutu() {
  static const Komut command{"servis",
                             "Kilitleri temizler, defterde birbirini tutmayanları gösterir",
                             "Hiçbir şeyi kendiliğinden onarmaz.",
                             options,
                             run,
                             bulguKodlari};
  return command;
}

}  // namespace cli
