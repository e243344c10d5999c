#include "cli/program.h"

#include <array>

#include "cli/komut.h"
#include "cli/yardim.h"
#include "db/error.h"
#include "session/oturum.h"

namespace cli {

namespace {

constexpr std::array<const Komut& (*)(), 41> commands = {kurKomutu,
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
                                                         sunucuDurdurKomutu,
                                                         sunucuDurumKomutu,
                                                         offlineKomutu,
                                                         tamamlaKomutu};

CLI::App* addCommand(CLI::App& app, const Komut& komut) {
  CLI::App* sub = app.add_subcommand(std::string(komut.ad), std::string(komut.aciklama));
  sub->group(komut.gizli ? "" : "Komutlar");
  turkceKonus(*sub);
  for (const Secenek& secenek : komut.secenekler) secenekEkle(*sub, secenek);
  std::string footer;
  if (!komut.ek.empty()) footer += std::string(komut.ek) + "\n\n";
  sub->footer(footer + cikisKodlariMetni(komut.kodlar));
  return sub;
}

// What was written may still lie in the stream: a full disk shows only when it leaves.
int written(Ortam& ortam, int code) {
  if (ortam.out.flush()) return code;
  ortam.err << "Çıktı yazılamadı.\n";
  return reddedildi;
}

int runCommand(Ortam& ortam, const Komut& komut, const CLI::App& sub) {
  const Degerler values = degerlerOku(sub, komut.secenekler);
  if (const std::string hata = secimHatasi(values, komut.secenekler); !hata.empty()) {
    ortam.err << hata << "\n";
    return yanlisKullanim;
  }
  try {
    const int code = written(ortam, komut.calistir(ortam, values));
    if (code != tamam) ortam.err << ortam.bekleyen;
    return code;
  } catch (const db::SqlError& error) {
    ortam.err << boyali(ortam.hataRenkli, kirmizi, "Sunucu hatası: ") << error.what() << "\n";
  } catch (const std::exception& error) {
    ortam.err << boyali(ortam.hataRenkli, kirmizi, "Hata: ") << error.what() << "\n";
  }
  return reddedildi;
}

void takeGeneral(Ortam& ortam, const Degerler& genel) {
  if (genel.var("dizin")) ortam.dizin = std::filesystem::absolute(genel.metin("dizin"));
  ortam.sessiz = genel.var("sessiz");
}

// What may be said without a command; nothing when a command is due.
std::optional<int> withoutCommand(Ortam& ortam, const CLI::App& app) {
  if (app.count("--surum") == 0) return std::nullopt;
  ortam.out << "Zembera " << session::programSurumu << "\n";
  return written(ortam, tamam);
}

}  // namespace

std::span<const Komut& (*const)()> komutlar() {
  return commands;
}

int calistir(Ortam& ortam, const std::vector<std::string>& argumanlar) {
  CLI::App app(std::string(programAciklamasi), "zembera-cli");
  turkceKonus(app);
  app.footer(cikisKodlariMetni(genelKodlar));
  app.require_subcommand(0, 1);
  app.fallthrough();
  for (const Secenek& secenek : genelSecenekler()) secenekEkle(app, secenek);
  std::vector<CLI::App*> subs;
  subs.reserve(commands.size());
  for (const auto command : commands) subs.push_back(addCommand(app, command()));

  std::vector<std::string> reversed(argumanlar.rbegin(), argumanlar.rend());
  try {
    app.parse(reversed);
    if (const auto code = withoutCommand(ortam, app)) return *code;
    if (app.get_subcommands().empty()) throw CLI::RequiredError("KOMUT");
  } catch (const CLI::CallForHelp&) {
    const auto shown = app.get_subcommands();
    ortam.out << (shown.empty() ? app.help() : shown.front()->help("zembera-cli"));
    return tamam;
  } catch (const CLI::ParseError& error) {
    ortam.err << turkceHata(app, error) << "\nYardım için: zembera-cli [KOMUT] --help\n";
    return yanlisKullanim;
  }
  takeGeneral(ortam, degerlerOku(app, genelSecenekler()));
  for (std::size_t i = 0; i < subs.size(); ++i)
    if (subs[i]->parsed()) return runCommand(ortam, commands[i](), *subs[i]);
  return yanlisKullanim;
}

}  // namespace cli
