// What the server says of itself.
#pragma once

#include <string>

namespace engine {

inline constexpr const char* serverVersion =
    "Zembera SQL 8.00.2012 is the T-SQL server inside this program, which keeps its databases in SQLite "
    "files and is no Microsoft SQL Server.";

// @@SERVERNAME: the machine's name in capitals.
std::string serverName();

}  // namespace engine
