// zembera-sunucu: the embedded server of one data folder for the programs of other machines.
#include <sys/resource.h>

#include <charconv>
#include <csignal>
#include <iostream>
#include <mutex>
#include <system_error>

#include "app/sunucu_secenekleri.h"
#include "cli/yardim.h"
#include "engine/server.h"
#include "session/oturum.h"
#include "tds/server.h"

namespace {

void tell(const std::string& line) {
  static std::mutex one;
  const std::lock_guard lock(one);
  std::cerr << line << std::endl;  // each line at once, for whoever reads the log
}

// Every client opens a handful of files.
void raiseFileLimit() {
  rlimit limit{};
  if (getrlimit(RLIMIT_NOFILE, &limit) != 0) return;
  limit.rlim_cur = limit.rlim_max;
  setrlimit(RLIMIT_NOFILE, &limit);
}

int serve(const std::string& folder, tds::Options options) {
  // Before any thread: they all leave the signals to the wait below.
  sigset_t signals;
  sigemptyset(&signals);
  for (const int signal : {SIGINT, SIGTERM}) sigaddset(&signals, signal);
  pthread_sigmask(SIG_BLOCK, &signals, nullptr);
  raiseFileLimit();
  options.log = tell;
  const std::string place = options.address + ",";
  try {
    const auto engine = engine::Server::open(folder);
    for (const auto& left : engine->leftOvers()) tell("\"" + left.name + "\": " + left.error.what());
    tds::Server server(engine, std::move(options));
    tell("Sunucu dinliyor: " + place + std::to_string(server.port()) + ", klasör " +
         engine->folder().string());
    int signal = 0;
    sigwait(&signals, &signal);
    tell("Sunucu duruyor.");
    server.stop();
  } catch (const std::system_error& error) {
    tell(std::string("Bu adres dinlenemiyor: ") + error.what());
    return cli::reddedildi;
  } catch (const std::runtime_error& error) {
    tell(std::string("Sunucu açılamadı: ") + error.what());
    return cli::reddedildi;
  }
  return cli::tamam;
}

// Takes the number of an option; false, and told, when it is not one between `least` and `most`.
template <class Number>
bool takeNumber(const cli::Degerler& values, const char* name, Number least, Number most, Number& number) {
  if (!values.var(name)) return true;
  const std::string text = values.metin(name);
  Number given{};
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), given);
  if (error == std::errc() && end == text.data() + text.size() && given >= least && given <= most) {
    number = given;
    return true;
  }
  std::cerr << "--" << name << " " << least << " ile " << most << " arasında bir sayı olmalı: " << text
            << "\n";
  return false;
}

bool takeOptions(const cli::Degerler& values, tds::Options& options) {
  options.address = values.metin("adres", options.address);
  options.certificate = values.metin("sertifika");
  options.key = values.metin("anahtar");
  options.plainOnThisMachine = values.var("yerel-sifresiz");
  return takeNumber<std::uint16_t>(values, "kapi", 0, 65535, options.port) &&
         takeNumber<std::size_t>(values, "baglanti", 1, 100000, options.mostConnections);
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App program(std::string(app::sunucuAciklamasi), "zembera-sunucu");
  cli::turkceKonus(program);
  program.footer(cli::cikisKodlariMetni(app::sunucuKodlari));
  for (const cli::Secenek& secenek : app::sunucuSecenekleri) cli::secenekEkle(program, secenek);
  try {
    program.parse(argc, argv);
  } catch (const CLI::CallForHelp&) {
    std::cout << program.help();
    return cli::tamam;
  } catch (const CLI::ParseError& error) {
    // The version is told without a folder, too.
    if (dynamic_cast<const CLI::RequiredError*>(&error) == nullptr || program.count("--surum") == 0) {
      std::cerr << cli::turkceHata(program, error) << "\nYardım için: zembera-sunucu --help\n";
      return cli::yanlisKullanim;
    }
  }
  const cli::Degerler values = cli::degerlerOku(program, app::sunucuSecenekleri);
  if (values.var("surum")) {
    std::cout << "Zembera " << session::programSurumu << "\n";
    return cli::tamam;
  }
  tds::Options options;
  if (!takeOptions(values, options)) return cli::yanlisKullanim;
  return serve(values.metin("klasor"), std::move(options));
}
