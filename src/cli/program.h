// The command line program behind main().
#pragma once

#include <string>
#include <vector>

#include "cli/ortam.h"

namespace cli {

inline constexpr std::string_view programAciklamasi = "Zembera yönetici konsolunun komut satırı";

// `argumanlar` without the program's name. Gives the exit code.
int calistir(Ortam& ortam, const std::vector<std::string>& argumanlar);

}  // namespace cli
