// What a batch gives back.
#pragma once

#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "engine/value/datum.h"
#include "engine/value/error.h"
#include "engine/value/type.h"

namespace engine {

struct ResultColumn {
  std::string name;  // empty for an unnamed expression
  Type type;
  bool nullable = true;
  bool identity = false;
  bool keyPart = false;  // part of its table's primary key
  // Where the column comes from when it is a plain column of a table; empty otherwise.
  std::string baseDatabase, baseTable, baseColumn;
  bool naming = false;  // of a system table: compares by the rule of names
};

// A variable that a batch finds declared.
struct Parameter {
  std::string name;  // with @
  Type type;
  Datum value;  // in the form of the type
};

// One materialised result set: all rows in one buffer, so that reading many rows costs no allocation
// per value. Cells hold physical forms (type.h).
class ResultSet {
 public:
  explicit ResultSet(std::vector<ResultColumn> columns) : columns_(std::move(columns)) {}

  const std::vector<ResultColumn>& columns() const { return columns_; }
  std::int64_t rowCount() const { return rows_; }

  void beginRow() { ++rows_; }
  // Drops the rows and keeps the columns and a part of the memory.
  void clearRows();
  void addNull();
  void addInteger(std::int64_t value);
  void addReal(double value);
  void addText(std::string_view value);
  void addBlob(std::string_view value);

  bool isNull(std::int64_t row, int column) const;
  std::int64_t integer(std::int64_t row, int column) const;
  double real(std::int64_t row, int column) const;
  std::string_view text(std::int64_t row, int column) const;  // valid as long as the set lives
  Datum datum(std::int64_t row, int column) const;

 private:
  enum class Kind : std::uint8_t { Null, Integer, Real, Text, Blob };
  struct Cell {
    Kind kind;
    std::uint32_t length;
    union {
      std::int64_t integer;
      double real;
      const char* text;
    };
  };
  const Cell& cell(std::int64_t row, int column) const;
  const char* keep(std::string_view value);

  std::vector<ResultColumn> columns_;
  std::vector<Cell> cells_;
  std::deque<std::unique_ptr<char[]>> chunks_;
  std::size_t chunkUsed_ = 0, chunkSize_ = 0;
  std::int64_t rows_ = 0;
};

// A statement that changes rows or definitions.
enum class Command : std::uint8_t {
  Insert,
  Update,
  Delete,
  SelectInto,
  CreateTable,
  AlterTable,
  DropTable,
  CreateIndex,
  DropIndex,
  CreateDatabase,
  DropDatabase,
  CreateView,
  DropView,
  CreateTrigger,
  DropTrigger,
  CreateProcedure,
  DropProcedure,
};

// Receives the results of a batch in order.
class ResultSink {
 public:
  virtual ~ResultSink() = default;
  virtual void onResultSet(ResultSet&& set) = 0;
  virtual void onRowCount(std::int64_t rows) = 0;  // INSERT, UPDATE, DELETE; not under NOCOUNT
  virtual void onMessage(int number, const std::string& text) = 0;  // PRINT, informational

  // ---- for those who pass on what comes while the batch still runs ----

  // The end of such a statement; `counted`: it has changed `rows`, not under NOCOUNT.
  virtual void onCommand(Command /*command*/, std::int64_t rows, bool counted) {
    if (counted) onRowCount(rows);
  }
  // The same as onMessage() with severity, state and line.
  virtual void onInfo(const Error& message) { onMessage(message.number(), message.what()); }
  // An error that ends no more than its statement. True: it has been told, and what follows is wanted, too;
  // otherwise it is thrown at the end of the batch.
  virtual bool onError(const Error&) { return false; }
  // Rows at a time that a query is delivered in; 0: all at once, by onResultSet().
  virtual std::int64_t rowsAtATime() const { return 0; }
  // The first or next rows of a query; there may be none. A statement that fails between them ends its rows.
  virtual void onRows(const ResultSet& /*rows*/, bool /*first*/) {}
  // Behind the last rows: how many they were; `counted`: not under NOCOUNT.
  virtual void onRowsEnd(std::int64_t /*rows*/, bool /*counted*/) {}
};

}  // namespace engine
