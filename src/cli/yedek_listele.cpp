#include "cli/bakim_ortak.h"
#include "cli/komut.h"
#include "cli/metin_satirlari.h"
#include "cli/sonuc_yaz.h"
#include "maintenance/yedek.h"
#include "maintenance/yedek_kaydi.h"
#include "session/tarih.h"

namespace cli {

namespace {

using Tur = Secenek::Tur;

constexpr std::array<Secenek, 2> options = {
    {{"--hedef", "Yedek klasörlerinin durduğu klasör; verilmezse her firmanın kayıtlı son yedeği yazılır",
      false, Tur::Metin, "KLASÖR"},
     bicimTsv}};

constexpr std::array<std::string_view, 4> basliklar = {"Firma", "Tarih", "Bayt", "Klasör"};

constexpr std::array<std::string_view, 3> sonBasliklar = {"Firma", "Son_Yedek", "Klasör"};

int sonYedekler(Ortam& ortam, Bicim bicim) {
  KomutOturumu komut(ortam);
  if (!komut.sunucuyuOku()) return reddedildi;
  std::vector<std::vector<std::string>> satirlar;
  for (const auto& kayit : maintenance::YedekKayitlari(ortam.dizin).sonYedekler(komut.oturum.Server_Adi))
    satirlar.push_back({kayit.veritabani, session::tarihYaz(kayit.zaman), kayit.yer});
  sonucYaz(ortam, MetinSatirlari(sonBasliklar, satirlar), bicim);
  return tamam;
}

int run(Ortam& ortam, const Degerler& values) {
  const Bicim bicim = bicimi(values, Bicim::Tsv);
  if (values.metin("hedef").empty()) return sonYedekler(ortam, bicim);
  const auto dizin = tamYol(values.metin("hedef"));
  std::error_code hata;
  if (!std::filesystem::is_directory(dizin, hata)) {
    ortam.err << "Klasör bulunamadı: " << dizin.string() << "\n";
    return reddedildi;
  }
  std::vector<std::vector<std::string>> satirlar;
  for (const auto& kayit : maintenance::yedekleriListele(dizin))
    satirlar.push_back(
        {kayit.firma, session::tarihYaz(kayit.gun), std::to_string(kayit.boyut), kayit.klasor.string()});
  sonucYaz(ortam, MetinSatirlari(basliklar, satirlar), bicim);
  return tamam;
}

}  // namespace

const Komut& yedekListeleKomutu() {
  static const Komut command{"yedek-listele", "Bir klasördeki yedekleri firma firma, eskiden yeniye listeler",
                             "", options, run};
  return command;
}

}  // namespace cli
