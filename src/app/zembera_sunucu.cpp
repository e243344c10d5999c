// zembera-sunucu: the embedded server of one data folder for the programs of other machines.
#include <sys/resource.h>

#include <CLI/CLI.hpp>
#include <csignal>
#include <iostream>
#include <mutex>
#include <system_error>

#include "app/sunucu_secenekleri.h"
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
  CLI::App program(std::string(app::sunucuAciklamasi), "zembera-sunucu");
  std::string folder;
  tds::Options options;
  const auto ad = [](std::size_t i) { return std::string(app::sunucuSecenekleri[i].ad); };
  const auto metin = [](std::size_t i) { return std::string(app::sunucuSecenekleri[i].aciklama); };
  program.add_option(ad(0), folder, metin(0))->required();
  program.add_option(ad(1), options.address, metin(1));
  program.add_option(ad(2), options.port, metin(2));
  program.add_option(ad(3), options.mostConnections, metin(3));
  program.add_option(ad(4), options.certificate, metin(4));
  program.add_option(ad(5), options.key, metin(5));
  program.add_flag(ad(6), options.plainOnThisMachine, metin(6));
  try {
    program.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return program.exit(error) == 0 ? 0 : wrongUse;
  }
  return serve(folder, std::move(options));
}
