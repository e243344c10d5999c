#include "cli/kullanici_ortak.h"
#include "platform/files.h"
#include "rights/cizelge.h"

namespace cli {

namespace {

constexpr std::array<Secenek, 6> options = {
    {{"--firma", "Firmanın veritabanı adı", true, Secenek::Tur::Metin, "AD"},
     {"--bicim", "csv (varsayılan) ya da html", false, Secenek::Tur::Metin, "BİÇİM"},
     {"-o,--cikti", "Yazılacak dosya; verilmezse standart çıktı", false, Secenek::Tur::Metin, "DOSYA"},
     {"--ara", "Yalnız bu sözleri taşıyan yetkiler", false, Secenek::Tur::Metin, "SÖZLER"},
     {"--dal", "Yalnız bu bölüm: Kasa, Stok, Kasiyer …", false, Secenek::Tur::Metin, "AD"},
     {"--farkli", "Yalnız kiminde olup kiminde olmayan yetkiler", false, Secenek::Tur::Bayrak, ""}}};

int run(Ortam& ortam, const Degerler& values) {
  const std::string bicim = values.metin("bicim", "csv");
  if (bicim != "csv" && bicim != "html") {
    ortam.err << "Bilinmeyen biçim: " << bicim << " (csv ya da html)\n";
    return yanlisKullanim;
  }
  KomutOturumu komut(ortam);
  if (!komut.katalogaBagla()) return reddedildi;
  rights::Cizelge cizelge;
  if (!rights::cizelgeOku(komut.oturum, values.metin("firma"), cizelge)) return reddedildi;
  const auto satirlar =
      rights::cizelgeSatirlari(cizelge, {values.metin("ara"), values.metin("dal"), values.var("farkli")});
  const std::string text =
      bicim == "csv" ? rights::cizelgeCsv(cizelge, satirlar) : rights::cizelgeHtml(cizelge, satirlar);
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
