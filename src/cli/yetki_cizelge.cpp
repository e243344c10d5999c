#include <sstream>

#include "cli/kullanici_ortak.h"
#include "cli/metin_satirlari.h"
#include "cli/sonuc_yaz.h"
#include "platform/files.h"
#include "rights/cizelge.h"

namespace cli {

namespace {

constexpr std::array<std::string_view, 6> bicimler = {"csv", "html", "tsv", "tablo", "json", "metin"};
constexpr std::array<Secenek, 6> options = {
    {{"--firma", "Firmanın veritabanı adı", true, Secenek::Tur::Metin, "FİRMA"},
     {"--bicim", "Çizelgenin biçimi (varsayılan csv)", false, Secenek::Tur::Metin, "BİÇİM", bicimler},
     {"-o,--cikti", "Yazılacak dosya; verilmezse standart çıktı", false, Secenek::Tur::Metin, "DOSYA"},
     {"--ara", "Yalnız bu sözleri taşıyan yetkiler", false, Secenek::Tur::Metin, "SÖZLER"},
     {"--dal", "Yalnız bu bölüm: Kasa, Stok, Kasiyer …", false, Secenek::Tur::Metin, "AD"},
     {"--farkli", "Yalnız kiminde olup kiminde olmayan yetkiler", false, Secenek::Tur::Bayrak, ""}}};

std::string tablo(const rights::Cizelge& cizelge, const std::vector<std::size_t>& satirlar, Bicim bicim) {
  const auto metinler = rights::cizelgeTablosu(cizelge, satirlar);
  const std::vector<std::string_view> basliklar(metinler.front().begin(), metinler.front().end());
  std::ostringstream out;
  sonucYaz(out, MetinSatirlari(basliklar, {metinler.begin() + 1, metinler.end()}), bicim);
  return out.str();
}

int run(Ortam& ortam, const Degerler& values) {
  const std::string bicim = values.metin("bicim", "csv");
  KomutOturumu komut(ortam);
  if (!komut.katalogaBagla()) return reddedildi;
  rights::Cizelge cizelge;
  if (!rights::cizelgeOku(komut.oturum, values.metin("firma"), cizelge)) return reddedildi;
  const auto satirlar =
      rights::cizelgeSatirlari(cizelge, {values.metin("ara"), values.metin("dal"), values.var("farkli")});
  std::string text;
  if (bicim == "csv")
    text = rights::cizelgeCsv(cizelge, satirlar);
  else if (bicim == "html")
    text = rights::cizelgeHtml(cizelge, satirlar);
  else
    text = tablo(cizelge, satirlar, bicimi(values, Bicim::Tsv));
  if (!values.var("cikti")) {
    ortam.out << text;
    return tamam;
  }
  if (const std::error_code error = platform::writeFileSafely(values.metin("cikti"), text)) {
    ortam.err << "Dosya yazılamadı: " << values.metin("cikti") << ": " << error.message() << "\n";
    return reddedildi;
  }
  return tamam;
}

}  // namespace

const Komut& yetkiCizelgeKomutu() {
  static const Komut command{"yetki-cizelge",
                             "Bir firmanın yetki çizelgesini yazar: satırlar yetki, sütunlar kullanıcı",
                             "html, kendi araması ve süzgeçleri olan tek bir sayfadır.", options, run};
  return command;
}

}  // namespace cli
