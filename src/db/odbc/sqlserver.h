// Microsoft SQL Server through ODBC: everything that is peculiar to it.
#pragma once

#include <memory>
#include <string>

#include "db/odbc/odbc_connection.h"

namespace db {

class SqlServerDialect : public OdbcDialect {
 public:
  // `driver`: name or library file of the ODBC driver; empty: FreeTDS where there is one, else any
  // registered SQL Server driver.
  explicit SqlServerDialect(std::string driver = {}) : driver_(std::move(driver)) {}

  // Throws SqlError LinkBroken when the machine has no driver.
  std::string driverText(const ConnectionParts& parts) const override;
  std::string sessionSettings() const override;
  SqlError error(const std::vector<Diagnostic>& diagnostics, bool opening) const override;
  // Names the server that was not reached.
  SqlError openingError(const std::vector<Diagnostic>& diagnostics,
                        const ConnectionParts& parts) const override;
  // From the system tables, which every release of the server has: its catalog procedures may be missing, and
  // one that is aborts the transaction that the call stands in.
  std::string columnsQuery(const TableName& table) const override;
  bool isMessage(const Diagnostic& diagnostic) const override;
  FieldType fieldType(const std::string& typeName, int odbcType) const override;

 private:
  std::string driver_;
};

std::unique_ptr<Connection> makeSqlServerConnection();

}  // namespace db
