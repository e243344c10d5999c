#include "cli/program.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>

#include "cli/komut.h"
#include "db/error.h"
#include "platform/code_page.h"

namespace cli {

namespace {

constexpr std::string_view exitCodes =
    "Çıkış kodları: 0 tamam, 1 işlem reddedildi ya da yapılamadı, 2 yanlış kullanım.";

constexpr std::array commands = {kurKomutu,
                                 sqlKomutu,
                                 firmaListeleKomutu,
                                 firmaOlusturKomutu,
                                 firmaSilKomutu,
                                 guncelleKomutu,
                                 ornekVeriKomutu,
                                 semaKomutu,
                                 denetleKomutu,
                                 sunucuAyarlaKomutu,
                                 parametreKomutu,
                                 parametreKopyalaKomutu,
                                 parametreKarsilastirKomutu,
                                 numaraKomutu,
                                 tanimKomutu,
                                 devirKomutu,
                                 maliyetKomutu,
                                 kullaniciListeleKomutu,
                                 kullaniciEkleKomutu,
                                 kullaniciDegistirKomutu,
                                 kullaniciSilKomutu,
                                 yetkiGosterKomutu,
                                 yetkiYazKomutu,
                                 yetkiKopyalaKomutu,
                                 yetkiKarsilastirKomutu,
                                 yetkiCizelgeKomutu,
                                 kasiyerGosterKomutu,
                                 kasiyerYazKomutu,
                                 yedekleKomutu,
                                 yedekListeleKomutu,
                                 yedekDenetleKomutu,
                                 yedekZamanlaKomutu,
                                 geriAlKomutu,
                                 tasiKomutu,
                                 servisKomutu,
                                 sunucuKomutu,
                                 sunucuBaslatKomutu,
                                 offlineKomutu};

std::string valueName(std::string_view option) {
  const auto last = option.substr(option.rfind(',') + 1);  // npos + 1 is 0
  return std::string(last.substr(std::min(last.find_first_not_of('-'), last.size())));
}

// The library pads by bytes, which Turkish letters throw out of line.
class Formatter : public CLI::Formatter {
 public:
  std::string make_option(const CLI::Option* option, bool positional) const override {
    std::string left = "  " + make_option_name(option, positional) + make_option_opts(option);
    const std::size_t width = platform::toUtf32(left).size();
    left += width < get_column_width() ? std::string(get_column_width() - width, ' ')
                                       : "\n" + std::string(get_column_width(), ' ');
    return left + make_option_desc(option) + "\n";
  }
};

void speakTurkish(CLI::App& app) {
  const auto formatter = std::make_shared<Formatter>();
  formatter->column_width(32);
  formatter->label("Usage", "Kullanım");
  formatter->label("OPTIONS", "SEÇENEKLER");
  formatter->label("SUBCOMMAND", "KOMUT");
  formatter->label("SUBCOMMANDS", "KOMUTLAR");
  formatter->label("REQUIRED", "(zorunlu)");
  formatter->label("Positionals", "Bağımsız değişkenler");
  app.formatter(formatter);
  app.option_defaults()->group("Seçenekler");
  app.set_help_flag("-h,--help", "Bu yardımı gösterir")->group("Seçenekler");
}

void addOption(CLI::App& app, const Secenek& secenek) {
  const std::string name(secenek.ad);
  const std::string help(secenek.aciklama);
  if (secenek.tur == Secenek::Tur::Bayrak) {
    app.add_flag(name, help);
    return;
  }
  CLI::Option* option = app.add_option(name)->description(help)->required(secenek.zorunlu);
  option->type_name(secenek.tur == Secenek::Tur::Konum ? "" : std::string(secenek.degerAdi));
  option->type_size(1);
  option->expected(1);
  if (secenek.tur == Secenek::Tur::Coklu)
    option->multi_option_policy(CLI::MultiOptionPolicy::TakeAll)
        ->expected(1, 1 << 20)
        ->allow_extra_args(false);
}

CLI::App* addCommand(CLI::App& app, const Komut& komut) {
  CLI::App* sub = app.add_subcommand(std::string(komut.ad), std::string(komut.aciklama));
  sub->group("Komutlar");
  speakTurkish(*sub);
  for (const Secenek& secenek : komut.secenekler) addOption(*sub, secenek);
  std::string footer;
  if (!komut.ek.empty()) footer += std::string(komut.ek) + "\n\n";
  sub->footer(footer + std::string(exitCodes));
  return sub;
}

Degerler valuesOf(CLI::App& sub, const Komut& komut) {
  Degerler values;
  for (const Secenek& secenek : komut.secenekler) {
    const std::string name = valueName(secenek.ad);
    const std::string spelling(secenek.ad.substr(secenek.ad.rfind(',') + 1));
    const CLI::Option* option = sub.get_option(spelling);
    if (option->count() == 0) continue;
    if (secenek.tur == Secenek::Tur::Coklu) {
      for (const std::string& result : option->results()) values.ekle(name, result);
      continue;
    }
    values.koy(name, secenek.tur == Secenek::Tur::Bayrak ? "1" : option->results().back());
  }
  return values;
}

// The parser's own texts are English; the person reads the part that is his.
std::string turkishText(const CLI::App& app, const CLI::ParseError& error) {
  const std::string what = error.what();
  const auto colon = what.find(": ");
  const std::string behind = colon == std::string::npos ? what : what.substr(colon + 2);
  const std::string first = what.substr(0, what.find_first_of(" :"));
  if (dynamic_cast<const CLI::RequiredError*>(&error) != nullptr) {
    if (first.starts_with("--") || first == "IFADE") return "Zorunlu seçenek verilmedi: " + first;
    const auto strangers = app.remaining();
    return strangers.empty() ? "Komut verilmedi." : "Bilinmeyen komut: " + strangers.front();
  }
  if (dynamic_cast<const CLI::ExtrasError*>(&error) != nullptr)
    return "Beklenmeyen bağımsız değişken: " + behind;
  if (dynamic_cast<const CLI::ArgumentMismatch*>(&error) != nullptr)
    return "Seçeneğin değeri eksik ya da fazla: " + first;
  return "Yanlış kullanım: " + what;
}

// What was written may still lie in the stream: a full disk shows only when it leaves.
int written(Ortam& ortam, int code) {
  if (ortam.out.flush()) return code;
  ortam.err << "Çıktı yazılamadı.\n";
  return reddedildi;
}

int runCommand(Ortam& ortam, const Komut& komut, const Degerler& values) {
  try {
    return written(ortam, komut.calistir(ortam, values));
  } catch (const db::SqlError& error) {
    ortam.err << "Sunucu hatası: " << error.what() << "\n";
  } catch (const std::exception& error) {
    ortam.err << "Hata: " << error.what() << "\n";
  }
  return reddedildi;
}

}  // namespace

int calistir(Ortam& ortam, const std::vector<std::string>& argumanlar) {
  CLI::App app("Zembera yönetici konsolunun komut satırı", "zembera-cli");
  speakTurkish(app);
  app.footer(std::string(exitCodes));
  app.require_subcommand(1);
  app.fallthrough();
  std::string folder;
  app.add_option("--dizin", folder, "Programın klasörü: sys.inf burada durur")->type_name("DİZİN");
  std::vector<CLI::App*> subs;
  subs.reserve(commands.size());
  for (const auto command : commands) subs.push_back(addCommand(app, command()));

  std::vector<std::string> reversed(argumanlar.rbegin(), argumanlar.rend());
  try {
    app.parse(reversed);
  } catch (const CLI::CallForHelp&) {
    const auto shown = app.get_subcommands();
    ortam.out << (shown.empty() ? app.help() : shown.front()->help("zembera-cli"));
    return tamam;
  } catch (const CLI::ParseError& error) {
    ortam.err << turkishText(app, error) << "\nYardım için: zembera-cli [KOMUT] --help\n";
    return yanlisKullanim;
  }
  if (!folder.empty()) ortam.dizin = std::filesystem::absolute(folder);
  for (std::size_t i = 0; i < subs.size(); ++i)
    if (subs[i]->parsed()) return runCommand(ortam, commands[i](), valuesOf(*subs[i], commands[i]()));
  return yanlisKullanim;
}

}  // namespace cli
