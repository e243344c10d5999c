// A connection through ODBC, whatever the server; what one kind of server needs beyond ODBC is told by
// its dialect.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "db/connection.h"
#include "db/odbc/odbc_handle.h"
#include "db/table_name.h"

namespace db {

class OdbcDialect {
 public:
  virtual ~OdbcDialect() = default;
  // The text for SQLDriverConnect; it holds the password and goes nowhere else.
  virtual std::string driverText(const ConnectionParts& parts) const = 0;
  // A batch to run on every new connection; empty for none.
  virtual std::string sessionSettings() const { return {}; }
  // The failure that diagnostics tell. Here by SQLSTATE alone: 28000 is a refused login; class 08, a
  // timeout and everything while `opening` a broken link; the rest a refused statement.
  virtual SqlError error(const std::vector<Diagnostic>& diagnostics, bool opening) const;
  // The failure of connecting. Here the diagnostics' own.
  virtual SqlError openingError(const std::vector<Diagnostic>& diagnostics, const ConnectionParts&) const {
    return error(diagnostics, true);
  }
  // True for a message meant for whoever ran the batch (PRINT).
  virtual bool isMessage(const Diagnostic&) const { return false; }
  // A query for the columns of a table: name, name of the type, 1 for identity, 1 for a part of the primary
  // key. Empty where the driver's own catalog functions are asked.
  virtual std::string columnsQuery(const TableName&) const { return {}; }
  // The type of a column by the server's name for it and the ODBC type. Here by the latter alone.
  virtual FieldType fieldType(const std::string& typeName, int odbcType) const;
};

// The server's text without the bracketed names of driver manager and driver before it.
std::string withoutDriverNames(const std::string& text);
bool isLinkState(const std::string& state);

class OdbcConnection : public Connection {
 public:
  explicit OdbcConnection(std::unique_ptr<OdbcDialect> dialect) : dialect_(std::move(dialect)) {}
  ~OdbcConnection() override { disconnect(); }

  void open(const ConnectionParts& parts) override;
  void close() override;
  State state() const override { return open_ ? State::Open : State::Closed; }
  std::string connectionText() const override;
  const ConnectionParts& parts() const override { return parts_; }
  // After a broken link the next batch connects anew first.
  void run(std::string_view batch, BatchSink& sink) override;
  std::vector<TableColumn> tableColumns(const std::string& database, const std::string& table) override;

 private:
  void connect();
  void disconnect();
  void requireLink();
  OdbcHandle statement();
  void runOnLink(std::string_view batch, BatchSink& sink);
  std::vector<TableColumn> askServer(const std::string& query);
  std::vector<TableColumn> askDriver(const std::string& database, const std::string& table);

  std::unique_ptr<OdbcDialect> dialect_;
  ConnectionParts parts_;
  std::map<std::string, std::vector<TableColumn>> columns_;  // by query; until a batch may have changed them
  OdbcHandle environment_, link_;
  bool open_ = false;       // from open() to close()
  bool connected_ = false;  // false while open after the link broke
};

}  // namespace db
