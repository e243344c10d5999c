// Columns and rows of an answer.
#pragma once

#include <string>
#include <vector>

#include "engine/server.h"
#include "tds/login.h"

namespace tds {

inline constexpr std::string_view turkishCollation{"\x1F\x04\xD0\x00\x00", 5};  // Turkish_CI_AS

// The description of a type, as COLMETADATA and RETURNVALUE have it.
void writeType(std::string& to, const engine::Type& type);
// A value by itself, behind such a description.
void writeValue(std::string& to, const engine::Type& type, const engine::Datum& value);

// COLMETADATA and the rows under it.
class RowWriter {
 public:
  RowWriter(std::vector<engine::ResultColumn> columns, Version version);
  const std::vector<engine::ResultColumn>& columns() const { return columns_; }
  void describe(std::string& to) const;
  // The same with one more column that clients hide: the state of a row in a cursor.
  void describeForCursor(std::string& to) const;
  // ROW, or NBCROW where that is shorter and the client knows it.
  void row(std::string& to, const engine::ResultSet& set, std::int64_t row) const;

 private:
  void describe(std::string& to, std::size_t more) const;

  std::vector<engine::ResultColumn> columns_;
  Version version_;
};

}  // namespace tds
