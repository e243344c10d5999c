// Rows read from an ODBC statement.
#pragma once

#include <vector>

#include "db/connection.h"
#include "db/odbc/odbc_handle.h"

namespace db {

class OdbcDialect;

class OdbcRows : public Rows {
 public:
  // Reads the description of the statement's present result set.
  OdbcRows(SQLHSTMT statement, const OdbcDialect& dialect);
  // Fetches the rows that are left, at most `most` of them unless that is 0. When a fetch failed, the
  // statement's diagnostics tell why.
  enum class Fetched : std::uint8_t { All, Page, Failed };
  Fetched fetch(SQLHSTMT statement, std::int64_t most);

  const std::vector<FieldInfo>& fields() const override { return fields_; }
  std::int64_t count() const override { return rows_; }
  Value value(std::int64_t row, int column) const override {
    const std::size_t at = static_cast<std::size_t>(row) * fields_.size() + static_cast<std::size_t>(column);
    return cells_.at(at / chunkSize).at(at % chunkSize);
  }

 private:
  // The place that the driver puts a column's value to while it fetches a row.
  struct Place {
    SQLSMALLINT type = 0;
    std::vector<char> room;
    SQLLEN length = 0;
  };
  bool fetchRow(SQLHSTMT statement);
  void bind(SQLHSTMT statement);
  bool takePlace(const Place& place, const FieldInfo& field, Value& out) const;

  std::vector<FieldInfo> fields_;
  std::vector<Place> places_;  // of the first columns; none before many rows have come
  Value& newCell();

  static constexpr std::size_t chunkSize = 8192;
  std::vector<std::vector<Value>> cells_;  // row after row, cut into chunks that need not move
  std::int64_t rows_ = 0;
};

// "-12.5" with scale 4 is -125000; false when the text is no such number or does not fit 64 bits.
bool parseDecimal(std::string_view text, int scale, Decimal& out);

}  // namespace db
