#include "cli/bakim_ortak.h"
#include "cli/komut.h"
#include "cli/metin_satirlari.h"
#include "cli/sonuc_yaz.h"
#include "maintenance/yedek.h"
#include "session/tarih.h"

namespace cli {

namespace {

using Tur = Secenek::Tur;

constexpr std::array<Secenek, 2> options = {
    {{"--hedef", "Yedek klasörlerinin durduğu klasör", true, Tur::Metin, "KLASÖR"},
     {"--bicim", "tsv (varsayılan), tablo ya da json", false, Tur::Metin, "BİÇİM"}}};

constexpr std::array<std::string_view, 4> basliklar = {"Firma", "Tarih", "Bayt", "Klasör"};

int run(Ortam& ortam, const Degerler& values) {
  const auto bicim = bicimOku(values.metin("bicim", "tsv"));
  if (!bicim) {
    ortam.err << "Bilinmeyen biçim: " << values.metin("bicim") << "\n";
    return yanlisKullanim;
  }
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
  sonucYaz(ortam.out, MetinSatirlari(basliklar, satirlar), *bicim);
  return tamam;
}

}  // namespace

const Komut& yedekListeleKomutu() {
  static const Komut command{"yedek-listele", "Bir klasördeki yedekleri firma firma, eskiden yeniye listeler",
                             "", options, run};
  return command;
}

}  // namespace cli
