#include "cli/bakim_ortak.h"
#include "cli/komut.h"
#include "cli/metin_satirlari.h"
#include "cli/sonuc_yaz.h"
#include "maintenance/yedek_denetim.h"

namespace cli {

namespace {

using Tur = Secenek::Tur;

constexpr std::array<Secenek, 2> options = {
    {{"KLASOR", "Yedeğin klasörü", true, Tur::Konum, ""}, bicimTablo}};

constexpr std::array<std::string_view, 3> basliklar = {"Konu", "Durum", "Açıklama"};

constexpr CikisKodlari kodlar = {"yedek sağlam", "yedek kusurlu ya da denetlenemedi", "yanlış kullanım"};

int run(Ortam& ortam, const Degerler& values) {
  const Bicim bicim = bicimi(values, Bicim::Tablo);
  KomutOturumu komut(ortam);
  if (!komut.sunucuyuOku()) return reddedildi;
  const auto denetim = maintenance::Yedek_Denetle(komut.oturum, tamYol(values.metin("KLASOR")));
  komut.ilerleme.bitir();
  if (!denetim.calisti) return reddedildi;
  std::vector<std::vector<std::string>> satirlar;
  for (const auto& satir : denetim.satirlar)
    satirlar.push_back({satir.konu, std::string(maintenance::durumYazisi(satir.durum)), satir.aciklama});
  sonucYaz(ortam, MetinSatirlari(basliklar, satirlar), bicim);
  (denetim.saglam ? ortam.bilgi() : ortam.err)
      << denetim.firma << ": " << (denetim.saglam ? "yedek sağlam." : "YEDEK KUSURLU.")
      << (denetim.onceki
              ? " Bundan önce " + maintenance::anYaz(*denetim.onceki) + " tarihinde sağlam bulunmuştu."
              : " Daha önce denetlenmemişti.")
      << "\n";
  return denetim.saglam ? tamam : reddedildi;
}

}  // namespace

const Komut& yedekDenetleKomutu() {
  static const Komut command{
      "yedek-denetle",
      "Bir yedeği açıp okur ve geri alınabileceğini kanıtlar",
      "Dosyalar yedeğin alındığı andakilerle karşılaştırılır; sayfalar, dizinler, şema ve bütün tablolar "
      "okunur. Canlı firmaya dokunulmaz, yedek de olduğu gibi kalır.",
      options,
      run,
      kodlar};
  return command;
}

}  // namespace cli
