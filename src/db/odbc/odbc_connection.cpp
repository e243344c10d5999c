#include "db/odbc/odbc_connection.h"

#include <algorithm>
#include <array>
#include <optional>

#include "db/odbc/odbc_rows.h"
#include "db/table_name.h"

namespace db {
namespace {

constexpr std::intptr_t loginTimeoutSeconds = 15;
// How often in a row a batch may fail with the very same words of the server: a loop of statements may,
// a driver that keeps giving its last error for ever does.
constexpr int sameFailures = 1000;

// Diagnostics that are no failure: class 01 is a warning, 00 success.
bool isWarning(const Diagnostic& d) {
  return d.state.starts_with("01") || d.state.starts_with("00");
}

// Runs through the results of one statement.
class BatchRun {
 public:
  BatchRun(const OdbcHandle& statement, const OdbcDialect& dialect, BatchSink& sink)
      : statement_(statement), dialect_(dialect), sink_(sink) {}

  // `code` is what starting the statement gave. Every result is asked for, also behind a failure, so
  // that the server gets to the end of the batch.
  void all(SQLRETURN code) {
    while (code != SQL_NO_DATA || !started_) {
      if (succeeded(code)) stuck_ = 0;
      if (!take(code)) break;
      started_ = true;
      code = SQLMoreResults(statement_.get());
    }
    if (failure_) throw *failure_;
  }

 private:
  // False when there is no point in asking for more.
  bool take(SQLRETURN code) {
    if (code == SQL_ERROR || code == SQL_INVALID_HANDLE) return keepFailure();
    if (code == SQL_SUCCESS_WITH_INFO) passMessages();
    if (code != SQL_NO_DATA) {
      SQLSMALLINT columns = 0;
      SQLNumResultCols(statement_.get(), &columns);
      if (columns > 0) return takeRows();
    }
    SQLLEN count = -1;
    SQLRowCount(statement_.get(), &count);
    if (count >= 0 && !failure_) sink_.onRowCount(count);
    return true;
  }

  bool takeRows() {
    while (true) {
      auto rows = std::make_unique<OdbcRows>(statement_.get(), dialect_);
      const auto got = rows->fetch(statement_.get(), failure_ ? 0 : sink_.pageRows());
      if (got == OdbcRows::Fetched::Failed) return keepFailure();
      if (!failure_) sink_.onRows(std::move(rows));
      if (got == OdbcRows::Fetched::All) return true;
    }
  }

  void passMessages() {
    for (const auto& d : statement_.diagnostics()) {
      if (!failure_ && dialect_.isMessage(d)) sink_.onMessage(withoutDriverNames(d.text));
    }
  }

  bool keepFailure() {
    const auto diagnostics = statement_.diagnostics();
    if (!failure_) passMessages();
    const SqlError error = dialect_.error(diagnostics, false);
    if (!failure_) failure_ = error;
    const bool lost = error.kind() == ErrorKind::LinkBroken || isStuck(diagnostics);
    if (lost) failure_ = SqlError(ErrorKind::LinkBroken, failure_->serverNumber(), failure_->what());
    // HY010: the driver has no statement running any more.
    const bool ended = std::any_of(diagnostics.begin(), diagnostics.end(),
                                   [](const Diagnostic& d) { return d.state == "HY010"; });
    return !lost && !ended;
  }

  // A link that broke while rows came makes some drivers answer each further call with the same failure: it
  // brings nothing new, and the batch would never end. What the driver says of itself is believed once.
  bool isStuck(const std::vector<Diagnostic>& diagnostics) {
    const bool same = stuck_ > 0 && diagnostics == lastFailure_;
    const bool driversOwn = std::all_of(diagnostics.begin(), diagnostics.end(),
                                        [](const Diagnostic& d) { return d.native == 0; });
    stuck_ = same ? stuck_ + 1 : 1;
    lastFailure_ = diagnostics;
    return stuck_ > (driversOwn ? 1 : sameFailures);
  }

  const OdbcHandle& statement_;
  const OdbcDialect& dialect_;
  BatchSink& sink_;
  std::optional<SqlError> failure_;
  std::vector<Diagnostic> lastFailure_;
  int stuck_ = 0;  // failed calls in a row that brought the same
  bool started_ = false;
};

// Words behind which columns may be others, or those of another database.
bool mayChangeColumns(std::string_view batch) {
  static constexpr std::array<std::string_view, 5> words = {"ALTER", "CREATE", "DROP", "RENAME", "USE"};
  const auto same = [](char a, char b) { return (a >= 'a' && a <= 'z' ? a - 'a' + 'A' : a) == b; };
  return std::any_of(words.begin(), words.end(), [&](std::string_view word) {
    return std::search(batch.begin(), batch.end(), word.begin(), word.end(), same) != batch.end();
  });
}

class NoResults : public BatchSink {
 public:
  void onRows(std::unique_ptr<Rows>) override {}
  void onRowCount(std::int64_t) override {}
  void onMessage(const std::string&) override {}
};

}  // namespace

bool isLinkState(const std::string& state) {
  return state.starts_with("08") || state == "HYT00" || state == "HYT01";
}

std::string withoutDriverNames(const std::string& text) {
  std::size_t start = 0;
  while (start < text.size() && text[start] == '[') {
    const auto end = text.find(']', start);
    if (end == std::string::npos) break;
    const bool server = text.compare(start, end + 1 - start, "[SQL Server]") == 0;
    start = end + 1;
    if (server) break;  // what follows is the server's own text, brackets and all
  }
  return text.substr(start);
}

SqlError OdbcDialect::error(const std::vector<Diagnostic>& diagnostics, bool opening) const {
  auto first = std::find_if_not(diagnostics.begin(), diagnostics.end(), isWarning);
  if (first == diagnostics.end()) first = diagnostics.begin();
  if (first == diagnostics.end()) return {ErrorKind::LinkBroken, 0, "Unspecified error"};
  ErrorKind kind = ErrorKind::StatementRefused;
  const bool lost = std::any_of(diagnostics.begin(), diagnostics.end(),
                                [](const Diagnostic& d) { return isLinkState(d.state); });
  if (opening || lost) kind = ErrorKind::LinkBroken;
  if (first->state == "28000") kind = ErrorKind::LoginRefused;
  return {kind, first->native, withoutDriverNames(first->text)};
}

FieldType OdbcDialect::fieldType(const std::string&, int odbcType) const {
  struct Entry {
    int odbcType;
    FieldType type;
  };
  static constexpr Entry entries[] = {
      {SQL_BIT, FieldType::Bit},
      {SQL_TINYINT, FieldType::TinyInt},
      {SQL_SMALLINT, FieldType::SmallInt},
      {SQL_INTEGER, FieldType::Int},
      {SQL_BIGINT, FieldType::BigInt},
      {SQL_DECIMAL, FieldType::Decimal},
      {SQL_NUMERIC, FieldType::Decimal},
      {SQL_REAL, FieldType::Real},
      {SQL_FLOAT, FieldType::Float},
      {SQL_DOUBLE, FieldType::Float},
      {SQL_TYPE_TIMESTAMP, FieldType::DateTime},
      {SQL_TYPE_DATE, FieldType::DateTime},
      {SQL_TIMESTAMP, FieldType::DateTime},
      {SQL_CHAR, FieldType::Char},
      {SQL_VARCHAR, FieldType::VarChar},
      {SQL_LONGVARCHAR, FieldType::Text},
      {SQL_WCHAR, FieldType::NChar},
      {SQL_WVARCHAR, FieldType::NVarChar},
      {SQL_WLONGVARCHAR, FieldType::NText},
      {SQL_BINARY, FieldType::Binary},
      {SQL_VARBINARY, FieldType::VarBinary},
      {SQL_LONGVARBINARY, FieldType::VarBinary},
  };
  for (const auto& entry : entries) {
    if (entry.odbcType == odbcType) return entry.type;
  }
  return FieldType::VarChar;
}

void OdbcConnection::open(const ConnectionParts& parts) {
  close();
  parts_ = parts;
  connect();
  open_ = true;
}

void OdbcConnection::close() {
  disconnect();
  columns_.clear();
  open_ = false;
}

void OdbcConnection::connect() {
  if (environment_.get() == SQL_NULL_HANDLE) {
    environment_ = OdbcHandle(SQL_HANDLE_ENV, SQL_NULL_HANDLE);
    SQLSetEnvAttr(environment_.get(), SQL_ATTR_ODBC_VERSION, reinterpret_cast<SQLPOINTER>(SQL_OV_ODBC3), 0);
  }
  link_ = OdbcHandle(SQL_HANDLE_DBC, environment_.get());
  if (link_.get() == SQL_NULL_HANDLE) throw dialect_->error(environment_.diagnostics(), true);
  // ODBC passes numbers in a pointer's place.
  auto* const timeout =
      reinterpret_cast<SQLPOINTER>(loginTimeoutSeconds);  // NOLINT(performance-no-int-to-ptr)
  SQLSetConnectAttr(link_.get(), SQL_ATTR_LOGIN_TIMEOUT, timeout, 0);
  WideText text(dialect_->driverText(parts_));
  const SQLRETURN code = SQLDriverConnectW(link_.get(), nullptr, text.data(), text.size(), nullptr, 0,
                                           nullptr, SQL_DRIVER_NOPROMPT);
  if (!succeeded(code)) throw dialect_->openingError(link_.diagnostics(), parts_);
  connected_ = true;
  if (const std::string settings = dialect_->sessionSettings(); !settings.empty()) {
    NoResults sink;
    runOnLink(settings, sink);
  }
}

void OdbcConnection::disconnect() {
  if (connected_) SQLDisconnect(link_.get());
  connected_ = false;
  link_ = OdbcHandle();
}

void OdbcConnection::requireLink() {
  if (!open_) {
    throw SqlError(ErrorKind::StatementRefused, 0, "Operation is not allowed when the object is closed.");
  }
  if (!connected_) connect();
}

OdbcHandle OdbcConnection::statement() {
  OdbcHandle handle(SQL_HANDLE_STMT, link_.get());
  if (handle.get() == SQL_NULL_HANDLE) throw dialect_->error(link_.diagnostics(), true);
  return handle;
}

void OdbcConnection::runOnLink(std::string_view batch, BatchSink& sink) {
  const OdbcHandle handle = statement();
  WideText text(batch);
  BatchRun(handle, *dialect_, sink).all(SQLExecDirectW(handle.get(), text.data(), text.longSize()));
}

std::string OdbcConnection::connectionText() const {
  std::string text = "Provider=ODBC;";
  if (parts_.integrated) text += "Integrated Security=SSPI;";
  return text + "User ID=" + parts_.login + ";Initial Catalog=" + parts_.database +
         ";Data Source=" + parts_.server;
}

void OdbcConnection::run(std::string_view batch, BatchSink& sink) {
  requireLink();
  if (!columns_.empty() && mayChangeColumns(batch)) columns_.clear();
  try {
    runOnLink(batch, sink);
  } catch (const SqlError& error) {
    if (error.kind() == ErrorKind::LinkBroken) disconnect();
    throw;
  }
}

std::vector<TableColumn> OdbcConnection::tableColumns(const std::string& database, const std::string& table) {
  const std::string query = dialect_->columnsQuery({database, table});
  if (query.empty()) return askDriver(database, table);
  if (const auto known = columns_.find(query); known != columns_.end()) return known->second;
  // What is not there yet another connection may make.
  std::vector<TableColumn> found = askServer(query);
  if (!found.empty()) columns_[query] = found;
  return found;
}

std::vector<TableColumn> OdbcConnection::askServer(const std::string& query) {
  std::vector<TableColumn> out;
  std::unique_ptr<Rows> rows;
  try {
    rows = this->query(query);
  } catch (const SqlError& error) {
    if (error.kind() != ErrorKind::StatementRefused) throw;
  }
  for (std::int64_t i = 0; rows && i < rows->count(); ++i)
    out.push_back({rows->value(i, 0).trimmed(), dialect_->fieldType(rows->value(i, 1).trimmed(), SQL_VARCHAR),
                   rows->value(i, 2).integer() != 0, rows->value(i, 3).integer() != 0});
  return out;
}

std::vector<TableColumn> OdbcConnection::askDriver(const std::string& database, const std::string& table) {
  requireLink();
  WideText catalogText(database), tableText(table);
  SQLWCHAR* catalog = database.empty() ? nullptr : catalogText.data();
  // Positions in the result sets that ODBC lays down, from 0.
  constexpr int tableName = 2, columnName = 3, dataType = 4, typeName = 5;

  std::vector<TableColumn> out;
  {
    const OdbcHandle handle = statement();
    if (!succeeded(SQLColumnsW(handle.get(), catalog, catalogText.size(), nullptr, 0, tableText.data(),
                               tableText.size(), nullptr, 0))) {
      return out;
    }
    OdbcRows rows(handle.get(), *dialect_);
    rows.fetch(handle.get(), 0);
    for (std::int64_t i = 0; i < rows.count(); ++i) {
      // The name was taken as a pattern: others may match it too.
      if (!sameName(rows.value(i, tableName).trimmed(), table)) continue;
      const std::string type = rows.value(i, typeName).trimmed();
      out.push_back({rows.value(i, columnName).trimmed(),
                     dialect_->fieldType(type, static_cast<int>(rows.value(i, dataType).integer())),
                     type.find("identity") != std::string::npos, false});
    }
  }
  const OdbcHandle handle = statement();
  if (!succeeded(SQLPrimaryKeysW(handle.get(), catalog, catalogText.size(), nullptr, 0, tableText.data(),
                                 tableText.size()))) {
    return out;
  }
  OdbcRows keys(handle.get(), *dialect_);
  keys.fetch(handle.get(), 0);
  for (std::int64_t i = 0; i < keys.count(); ++i) {
    const std::string name = keys.value(i, columnName).trimmed();
    for (auto& column : out) column.keyPart = column.keyPart || sameName(column.name, name);
  }
  return out;
}

}  // namespace db
