// The drivers of data access; included by app/ and tests alone.
#pragma once

#include <filesystem>
#include <memory>

#include "db/connection.h"

namespace db {

// Chooses by server name: "(yerel)" is the embedded server in the folder `veri` of the program's folder,
// "(yerel):FOLDER" the one in FOLDER (relative to the program's folder); anything else is a SQL Server
// reached through ODBC.
std::unique_ptr<ConnectionFactory> makeConnectionFactory(const std::filesystem::path& programFolder);

}  // namespace db
