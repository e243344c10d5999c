// The command line program behind main().
#pragma once

#include <string>
#include <vector>

#include "cli/ortam.h"

namespace cli {

// `argumanlar` without the program's name. Gives the exit code.
int calistir(Ortam& ortam, const std::vector<std::string>& argumanlar);

}  // namespace cli
