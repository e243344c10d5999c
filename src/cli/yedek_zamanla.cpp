#include <cctype>
#include <charconv>

#include "cli/bakim_ortak.h"
#include "cli/komut.h"
#include "platform/timer.h"

namespace cli {

namespace {

using Tur = Secenek::Tur;

constexpr const char* birim = "zembera-yedek";

constexpr std::array<Secenek, 5> options = {
    {{"--hedef", "Yedek klasörlerinin açılacağı klasör", false, Tur::Metin, "KLASÖR"},
     {"--saat", "Her gün alınacağı saat, SS:DD (varsayılan 23:00)", false, Tur::Metin, "SAAT"},
     {"--sakla", "Eksiksiz saklanacak gün sayısı (varsayılan 14)", false, Tur::Metin, "GÜN"},
     {"--durdurarak", "Canlı almaz; kopyalanırken sunucu durur", false, Tur::Bayrak, ""},
     {"--kaldir", "Zamanlamayı kaldırır", false, Tur::Bayrak, ""}}};

bool saatMi(const std::string& s) {
  const auto rakam = [&](std::size_t i) { return std::isdigit(static_cast<unsigned char>(s[i])) != 0; };
  return s.size() == 5 && s[2] == ':' && rakam(0) && rakam(1) && rakam(3) && rakam(4) && s < "24:00" &&
         s[3] < '6';
}

bool gunMu(const std::string& s) {
  int gun = 0;
  const auto [son, hata] = std::from_chars(s.data(), s.data() + s.size(), gun);
  return hata == std::errc() && son == s.data() + s.size() && gun >= 1;
}

int kaldir(Ortam& ortam) {
  const bool vardi = platform::removeTimer(birim);
  ortam.haber() << (vardi ? "Zamanlama kaldırıldı." : "Kurulu bir zamanlama yok.") << "\n";
  return tamam;
}

int run(Ortam& ortam, const Degerler& values) {
  const std::string saat = values.metin("saat", "23:00"), gun = values.metin("sakla", "14");
  if (values.var("kaldir") == values.var("hedef")) {
    ortam.err << "--hedef ya da --kaldir, ikisinden biri verilmeli.\n";
    return yanlisKullanim;
  }
  if (values.var("kaldir")) return kaldir(ortam);
  if (!saatMi(saat) || !gunMu(gun)) {
    ortam.err << "--saat SS:DD, --sakla en az 1 gün olmalı.\n";
    return yanlisKullanim;
  }
  const auto hedef = tamYol(values.metin("hedef"));
  std::error_code yok;
  if (!std::filesystem::is_directory(hedef, yok)) {
    ortam.err << "Klasör bulunamadı: " << hedef.string() << "\n";
    return reddedildi;
  }
  platform::DailyTimer is;
  is.name = birim;
  is.description = "Zembera yedekleri";
  is.time = saat;
  is.arguments = {(platform::executableFolder() / "zembera-cli").string(),
                  "--dizin",
                  ortam.dizin.string(),
                  "--sessiz",
                  "yedekle",
                  "--hepsi",
                  "--hedef",
                  hedef.string(),
                  "--sakla",
                  gun};
  if (!values.var("durdurarak")) is.arguments.emplace_back("--canli");
  const std::string hata = platform::installTimer(is);
  const auto dosya = platform::userUnitFolder() / (is.name + ".timer");
  if (!std::filesystem::exists(dosya, yok)) {
    ortam.err << "Zamanlama yazılamadı: " << hata << "\n";
    return reddedildi;
  }
  if (!hata.empty())
    ortam.err << "Zamanlama yazıldı, ama sistem onu devreye alamadı: " << hata << "\n"
              << "Devreye almak için: systemctl --user enable --now " << is.name << ".timer\n";
  ortam.haber() << dosya.string() << "\n";
  return hata.empty() ? tamam : reddedildi;
}

}  // namespace

const Komut& yedekZamanlaKomutu() {
  static const Komut command{
      "yedek-zamanla",
      "Bütün firmaların her gün yedeklenmesini sistemin zamanlayıcısına yazar ya da kaldırır",
      "Bu kullanıcının systemd servisi ve zamanlayıcısı yazılır: zembera-yedek. Parola yazılmaz; o, her "
      "zaman "
      "olduğu gibi sys.inf dosyasından okunur. Kullanıcı oturum açmamışken de çalışması için: loginctl "
      "enable-linger.",
      options, run};
  return command;
}

}  // namespace cli
