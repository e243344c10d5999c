// What the server says of itself.
#pragma once

#include <string>

namespace engine {

inline constexpr const char* serverVersion =
    "Zembera SQL 8.00.2012 (embedded)\n\tTurkish_CI_AS, code page 1254\n";

// @@SERVERNAME: the machine's name in capitals.
std::string serverName();

}  // namespace engine
