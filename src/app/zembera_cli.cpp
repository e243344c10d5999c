// zembera-cli: the procedures from a shell.
#include <iostream>

#include "cli/program.h"
#include "db/drivers.h"
#include "platform/folders.h"
#include "platform/terminal.h"

int main(int argc, char** argv) {
  cli::Ortam ortam{std::cin,
                   std::cout,
                   std::cerr,
                   platform::inputIsTerminal(),
                   platform::errorIsTerminal() && platform::terminalDraws(),
                   platform::programFolder(),
                   db::makeConnectionFactory,
                   platform::outputIsTerminal() && platform::coloursWanted(),
                   platform::errorIsTerminal() && platform::coloursWanted()};
  return cli::calistir(ortam, platform::arguments(argc, argv));
}
