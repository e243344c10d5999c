// zembera-sunucu: the embedded server of one data folder for the programs of other machines.
#include <sys/resource.h>

#include <CLI/CLI.hpp>
#include <csignal>
#include <iostream>
#include <mutex>
#include <system_error>

#include "engine/server.h"
#include "tds/server.h"

namespace {

constexpr int refused = 1, wrongUse = 2;

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
    return refused;
  } catch (const std::runtime_error& error) {
    tell(std::string("Sunucu açılamadı: ") + error.what());
    return refused;
  }
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App app("Bir veri klasörünü ağdaki programlara SQL Server olarak sunar", "zembera-sunucu");
  std::string folder;
  tds::Options options;
  app.add_option("--klasor", folder, "Veri klasörü")->required();
  app.add_option("--adres", options.address, "Dinlenecek adres (varsayılan 127.0.0.1)");
  app.add_option("--kapi", options.port, "Dinlenecek kapı (varsayılan 1433; 0: boş bir kapı)");
  app.add_option("--baglanti", options.mostConnections, "En çok bağlantı (varsayılan 1000)");
  app.add_option("--sertifika", options.certificate,
                 "TLS sertifikası, PEM (yoksa veri klasöründe kendisi bir tane yapar)");
  app.add_option("--anahtar", options.key, "Sertifikanın anahtarı, PEM (yoksa sertifika dosyasında)");
  app.add_flag("--yerel-sifresiz", options.plainOnThisMachine,
               "Bu makinedeki programlar TLS olmadan da bağlanabilir");
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? 0 : wrongUse;
  }
  return serve(folder, std::move(options));
}
