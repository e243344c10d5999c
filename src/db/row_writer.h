// The statements by which a recordset writes its rows, generated from what is known of its columns.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "db/connection.h"
#include "db/table_name.h"

namespace db {

// One assigned value per field; empty where nothing was assigned.
using RowChanges = std::vector<std::optional<Value>>;

class RowWriter {
 public:
  // Throws SqlError StatementRefused when the rows do not come from exactly one table.
  RowWriter(Connection& connection, std::string_view sql, const std::vector<FieldInfo>& fields);

  // Sends an INSERT. Gives the new identity number when the table has an identity field here.
  std::optional<std::int64_t> insert(const RowChanges& changes);
  // Sends an UPDATE of the row whose present values `original` gives. Throws StatementRefused when the
  // row is no longer there.
  void update(const RowChanges& changes, const std::function<Value(int)>& original);

  int identityField() const { return identity_; }  // -1 when there is none

 private:
  struct Column {
    std::string name;  // empty for an expression, which cannot be written
    FieldType type;
  };
  std::string condition(const std::function<Value(int)>& original) const;
  std::string comparison(int field, const Value& value) const;
  void readFields(const std::vector<FieldInfo>& fields);
  void readCatalog(std::string_view sql, const std::vector<FieldInfo>& fields);
  static void dropPartialKey(std::vector<bool>& keyParts, const std::vector<TableColumn>& known);
  void chooseKey(const std::vector<bool>& keyParts);

  Connection& connection_;
  TableName table_;
  std::vector<Column> columns_;
  std::vector<int> keys_;  // fields that find a row again
  int identity_ = -1;
};

}  // namespace db
