// The driver that scenarios work with. With ZEMBERA_AGDAN=1 in the environment everything that is sent to the
// embedded server goes over the network and the ODBC driver: statement for statement what is sent to a SQL Server.
#pragma once

#include <filesystem>
#include <memory>

#include "db/connection.h"

namespace support {

std::unique_ptr<db::ConnectionFactory> surucuYap(const std::filesystem::path& dizin);

}  // namespace support
