#include "cli/yardim.h"

#include <algorithm>

#include "platform/code_page.h"

namespace cli {

namespace {

constexpr std::array<Secenek, 3> genel = {
    {{"--dizin", "Programın klasörü: sys.inf burada durur", false, Secenek::Tur::Metin, "DİZİN"},
     {"--sessiz", "Yalnız sorulanı ve hataları yazar; zamanlayıcılar için", false, Secenek::Tur::Bayrak, ""},
     {"--surum", "Sürümü yazar", false, Secenek::Tur::Bayrak, ""}}};

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

std::string helpText(const Secenek& secenek) {
  std::string text(secenek.aciklama);
  if (!secenek.secimler.empty()) text += ": " + secimMetni(secenek);
  return text;
}

}  // namespace

std::span<const Secenek> genelSecenekler() {
  return genel;
}

std::string secenekAdi(const Secenek& secenek) {
  const auto last = secenek.ad.substr(secenek.ad.rfind(',') + 1);  // npos + 1 is 0
  return std::string(last.substr(std::min(last.find_first_not_of('-'), last.size())));
}

std::string secimMetni(const Secenek& secenek) {
  std::string text;
  for (std::size_t i = 0; i < secenek.secimler.size(); ++i) {
    if (i > 0) text += i + 1 == secenek.secimler.size() ? " ya da " : ", ";
    text += secenek.secimler[i];
  }
  return text;
}

std::string cikisKodlariMetni(const CikisKodlari& kodlar) {
  std::string text = "Çıkış kodları: ";
  for (std::size_t kod = 0; kod < kodlar.size(); ++kod)
    text.append(kod == 0 ? "" : ", ").append(std::to_string(kod) + " ").append(kodlar[kod]);
  return text + ".";
}

void turkceKonus(CLI::App& app) {
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

void secenekEkle(CLI::App& app, const Secenek& secenek) {
  const std::string name(secenek.ad);
  const std::string help = helpText(secenek);
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

Degerler degerlerOku(const CLI::App& app, std::span<const Secenek> secenekler) {
  Degerler values;
  for (const Secenek& secenek : secenekler) {
    const std::string name = secenekAdi(secenek);
    const std::string spelling(secenek.ad.substr(secenek.ad.rfind(',') + 1));
    const CLI::Option* option = app.get_option(spelling);
    if (option->count() == 0) continue;
    if (secenek.tur == Secenek::Tur::Coklu) {
      for (const std::string& result : option->results()) values.ekle(name, result);
      continue;
    }
    values.koy(name, secenek.tur == Secenek::Tur::Bayrak ? "1" : option->results().back());
  }
  return values;
}

std::string secimHatasi(const Degerler& degerler, std::span<const Secenek> secenekler) {
  for (const Secenek& secenek : secenekler) {
    const std::string ad = secenekAdi(secenek), deger = degerler.metin(ad);
    if (secenek.secimler.empty() || !degerler.var(ad) ||
        std::find(secenek.secimler.begin(), secenek.secimler.end(), deger) != secenek.secimler.end())
      continue;
    return "Bilinmeyen " + std::string(secenek.secimAdi) + ": " + deger + " (" + secimMetni(secenek) + ")";
  }
  return {};
}

std::string turkceHata(const CLI::App& app, const CLI::ParseError& hata) {
  const std::string what = hata.what();
  const auto colon = what.find(": ");
  const std::string behind = colon == std::string::npos ? what : what.substr(colon + 2);
  const std::string first = what.substr(0, what.find_first_of(" :"));
  if (dynamic_cast<const CLI::RequiredError*>(&hata) != nullptr) {
    if (first.starts_with("--") || first == "IFADE") return "Zorunlu seçenek verilmedi: " + first;
    return "Komut verilmedi.";
  }
  const auto strangers = app.remaining();
  if (!app.get_subcommands({}).empty() && app.get_subcommands().empty() && !strangers.empty() &&
      !strangers.front().starts_with("-"))
    return "Bilinmeyen komut: " + strangers.front();
  if (dynamic_cast<const CLI::ExtrasError*>(&hata) != nullptr)
    return "Beklenmeyen bağımsız değişken: " + behind;
  if (dynamic_cast<const CLI::ArgumentMismatch*>(&hata) != nullptr)
    return "Seçeneğin değeri eksik ya da fazla: " + first;
  return "Yanlış kullanım: " + what;
}

}  // namespace cli
