// Rows of one statement with a cursor, in the manner of ADO: the form in which the procedures of the
// system read and write single rows.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "db/connection.h"

namespace db {

enum class Cursor : std::uint8_t { Keyset = 1, Static = 3 };
enum class Lock : std::uint8_t { ReadOnly = 1, BatchOptimistic = 4 };

class Recordset {
 public:
  // Runs `sql`. A statement without rows (DDL, INSERT ...) leaves the recordset closed, which is no
  // error. An open recordset is closed first. Throws SqlError.
  void open(Connection& connection, std::string_view sql, Cursor cursor = Cursor::Keyset,
            Lock lock = Lock::ReadOnly);
  void close();
  State state() const;

  bool eof() const;
  std::int64_t recordCount() const;  // right after open; includes rows added since
  void moveFirst();
  void moveNext();

  const std::vector<FieldInfo>& fields() const;
  int fieldIndex(std::string_view name) const;  // ASCII case ignored; -1 when there is none
  // Value of the current row. Throws SqlError (StatementRefused kind, "Item cannot be found ...") on an
  // unknown name, on a closed recordset and at end of file.
  Value field(std::string_view name) const;
  Value field(int ordinal) const;

  // Writing, on a recordset opened BatchOptimistic over one table. set() on the current or new row;
  // a new row's unset columns are left out of the INSERT and take their defaults.
  void addNew();
  void set(std::string_view name, Value value);
  // Sends the pending changes of the current row (update) or of all rows (updateBatch) as generated
  // INSERT and UPDATE statements keyed by the identity column, else the primary key, else all original
  // values. After an INSERT the identity field holds the new number. Changes that fail stay pending
  // only until cancelUpdate() or close(). An UPDATE that finds no row any more throws StatementRefused.
  void update();
  void updateBatch();
  void cancelUpdate();

 private:
  struct Impl;
  std::shared_ptr<Impl> impl_;
};

}  // namespace db
