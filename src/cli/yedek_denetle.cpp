#include "cli/bakim_ortak.h"
#include "cli/komut.h"
#include "cli/metin_satirlari.h"
#include "cli/sonuc_yaz.h"
#include "maintenance/yedek_denetim.h"

namespace cli {

namespace {

using Tur = Secenek::Tur;

constexpr std::array<Secenek, 3> options = {
    {{"KLASOR", "Yedeğin klasörü", true, Tur::Konum, ""},
     {"--tablolar", "Denetimin satırları yerine her tablonun satır sayısını ve toplamını yazar", false,
      Tur::Bayrak, ""},
     bicimTablo}};

constexpr std::array<std::string_view, 3> basliklar = {"Konu", "Durum", "Açıklama"};
constexpr std::array<std::string_view, 3> tabloBasliklari = {"Tablo", "Satır", "Toplam"};

constexpr CikisKodlari kodlar = {"yedek sağlam", "yedek kusurlu ya da denetlenemedi", "yanlış kullanım"};

int run(Ortam& ortam, const Degerler& values) {
  const Bicim bicim = bicimi(values, Bicim::Tablo);
  KomutOturumu komut(ortam);
  if (!komut.sunucuyuOku()) return reddedildi;
  const auto denetim = maintenance::Yedek_Denetle(komut.oturum, tamYol(values.metin("KLASOR")));
  komut.ilerleme.bitir();
  if (denetim.vazgecildi) ortam.err << "Vazgeçildi; yedek denetlenmedi.\n";
  if (!denetim.calisti) return reddedildi;
  const bool tablolar = values.var("tablolar");
  std::vector<std::vector<std::string>> satirlar;
  if (tablolar)
    for (const auto& t : denetim.tablolar)
      satirlar.push_back({t.name, std::to_string(t.rows), maintenance::toplamYaz(t.sum)});
  else
    for (const auto& satir : denetim.satirlar)
      satirlar.push_back({satir.konu, std::string(maintenance::durumYazisi(satir.durum)), satir.aciklama});
  sonucYaz(ortam, MetinSatirlari(tablolar ? tabloBasliklari : basliklar, satirlar), bicim);
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
