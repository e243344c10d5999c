// A connection to one server; two drivers stand behind it (embedded/, odbc/).
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "db/error.h"
#include "db/value.h"

namespace db {

enum class FieldType : std::uint8_t {
  Bit,
  TinyInt,
  SmallInt,
  Int,
  BigInt,
  SmallMoney,
  Money,
  Decimal,
  Real,
  Float,
  SmallDateTime,
  DateTime,
  Char,
  VarChar,
  Text,
  NChar,
  NVarChar,
  NText,
  Binary,
  VarBinary,
};

struct FieldInfo {
  std::string name;
  FieldType type = FieldType::VarChar;
  int size = 0;   // characters of text, bytes of binary, precision of decimals; 0 otherwise
  int scale = 0;  // digits behind the point of Decimal; 4 for money
  bool nullable = true;
  bool identity = false;
  bool keyPart = false;                             // part of the primary key of its table
  std::string baseDatabase, baseTable, baseColumn;  // empty for an expression or when unknown
};

// Rows of one result set, all at hand; Char values are padded to their size as the server gives them.
class Rows {
 public:
  virtual ~Rows() = default;
  virtual const std::vector<FieldInfo>& fields() const = 0;
  virtual std::int64_t count() const = 0;
  virtual Value value(std::int64_t row, int column) const = 0;
};

// Receives a batch's results in order.
class BatchSink {
 public:
  virtual ~BatchSink() = default;
  virtual void onRows(std::unique_ptr<Rows> rows) = 0;
  virtual void onRowCount(std::int64_t rows) = 0;
  virtual void onMessage(const std::string& text) = 0;
  // How many rows onRows takes at most; a longer result set comes in several pages, each of which lives as
  // long as the call. 0: the whole at once, to be kept.
  virtual std::int64_t pageRows() const { return 0; }
};

struct ConnectionParts {
  std::string server;  // "(yerel)", "(yerel):FOLDER", HOST, HOST\INSTANCE, HOST,PORT
  std::string login;
  std::string password;
  std::string database;
  bool integrated = false;  // Windows / Kerberos authentication instead of login and password
};

// A column of a table as the server's catalog knows it.
struct TableColumn {
  std::string name;
  FieldType type = FieldType::VarChar;
  bool identity = false;
  bool keyPart = false;
};

enum class State : std::uint8_t { Closed = 0, Open = 1 };

class Connection {
 public:
  virtual ~Connection() = default;
  // Throws SqlError LoginRefused or LinkBroken. An open connection is closed first.
  virtual void open(const ConnectionParts& parts) = 0;
  virtual void close() = 0;
  virtual State state() const = 0;
  // The connection string as a person may see it: the password is never in it.
  virtual std::string connectionText() const = 0;
  virtual const ConnectionParts& parts() const = 0;

  // Runs one batch. The first error is thrown as SqlError after what came before it reached the sink.
  virtual void run(std::string_view batch, BatchSink& sink) = 0;

  // Runs one batch and drops its results; returns the rows touched by its last data statement.
  std::int64_t execute(std::string_view batch);
  // Runs one batch and returns its first result set; null when it has none.
  std::unique_ptr<Rows> query(std::string_view batch);

  // Runs a query and gives its rows page by page while the server makes them; no more than a page of them is
  // held. The connection takes nothing else meanwhile. An SqlError may come behind rows; what `take` throws
  // ends the query.
  void stream(std::string_view batch, std::int64_t page, const std::function<void(const Rows&)>& take);

  // Columns of a table as far as the driver can tell; `database` empty: the current one. Empty when
  // there is no such table.
  virtual std::vector<TableColumn> tableColumns(const std::string& /*database*/,
                                                const std::string& /*table*/) {
    return {};
  }

  // Plan cache counters where the driver has one.
  struct PlanCounters {
    std::int64_t hits = 0, misses = 0;
  };
  virtual std::optional<PlanCounters> planCounters() const { return std::nullopt; }
};

// What a table holds: its rows, and a sum over all their values that does not depend on their order.
struct TableDigest {
  std::string name;
  std::int64_t rows = 0;
  std::uint64_t sum = 0;
  bool operator==(const TableDigest&) const = default;
};

// What one reading of a whole copy has found.
struct CopyFindings {
  bool told = false;                // false: this way says nothing of such a file
  std::string doubt;                // empty: all is well; what is damaged tells DBCC
  std::vector<TableDigest> tables;  // when all is well
};

// Pages, indexes and rows of a copy checked while the bytes of its data file pass by, once and in order.
class CopyReading {
 public:
  virtual ~CopyReading() = default;
  virtual void take(const char* bytes, std::size_t count) = 0;
  virtual CopyFindings finish() = 0;
};

// A pair of database files that no server has open, for reading.
class DatabaseCopy {
 public:
  virtual ~DatabaseCopy() = default;
  virtual Connection& connection() = 0;  // stands on the database
  // The data file that is read: the pair's own, or one that has taken its log in.
  virtual std::filesystem::path file() const = 0;
  virtual std::unique_ptr<CopyReading> read() = 0;
  virtual std::vector<TableDigest> tables() = 0;
};

// What only a server inside this process offers: its making and its service. Errors are SqlError.
class LocalServer {
 public:
  virtual ~LocalServer() = default;
  virtual std::filesystem::path folder() const = 0;
  virtual bool exists() const = 0;
  // Makes the folder and an empty server whose administrator is `login`.
  virtual void create(const std::string& login, const std::string& password) = 0;
  virtual bool running() const = 0;  // false also when it does not exist
  virtual void stop() = 0;           // no effect on a stopped one
  // Reads every page of a pair of files that no server has open, and holds both against each other.
  // `step` gets pages done and in all; false breaks off with an error.
  using Step = std::function<bool(std::int64_t, std::int64_t)>;
  virtual void check(const std::filesystem::path& data, const std::filesystem::path& log,
                     const std::string& name, const Step& step) = 0;
  virtual void start() = 0;
  // The pair as it lies there; it stays as it is. Where its log has to be taken in first, that is done with
  // a copy in the scratch folder.
  virtual std::unique_ptr<DatabaseCopy> openCopy(const std::filesystem::path& data,
                                                 const std::filesystem::path& log, const std::string& name,
                                                 const std::filesystem::path& scratch) = 0;
  // The database as it is at this moment, as a pair under names that must be free, while others go on
  // writing. False breaks off, and nothing is left. What the original's tables held at that moment.
  virtual std::vector<TableDigest> copyLive(const std::string& database, const std::filesystem::path& data,
                                            const std::filesystem::path& log, const Step& step) = 0;
  // What an administrator should know: files open to others, databases that could not be opened or cleaned
  // up. Empty when all is well. `close` shuts what is open to others first.
  virtual std::vector<std::string> remarks(bool /*close*/ = false) { return {}; }
  // Where the server lay when it was made; another folder than folder() when it has been moved.
  virtual std::filesystem::path recordedFolder() const { return folder(); }
};

// Makes closed connections for a server name; chosen once, in app/.
class ConnectionFactory {
 public:
  virtual ~ConnectionFactory() = default;
  virtual std::unique_ptr<Connection> make(const std::string& server) = 0;
  // The server named when it is one inside this process; null for one on the network.
  virtual std::unique_ptr<LocalServer> local(const std::string& /*server*/) { return nullptr; }
};

}  // namespace db
