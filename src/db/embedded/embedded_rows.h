// A result set of the embedded server as rows of values.
#pragma once

#include <memory>
#include <vector>

#include "db/connection.h"
#include "engine/server.h"

namespace db {

class EmbeddedRows : public Rows {
 public:
  explicit EmbeddedRows(engine::ResultSet&& set);
  explicit EmbeddedRows(const engine::ResultSet& page);  // which outlives these

  const std::vector<FieldInfo>& fields() const override { return fields_; }
  std::int64_t count() const override { return set_->rowCount(); }
  Value value(std::int64_t row, int column) const override;

 private:
  // How a cell becomes a value, settled once per column.
  enum class Form : std::uint8_t { Bit, Integer, Real, Scaled, WideDecimal, Date, Text, Padded, Bytes };
  static Form formOf(const engine::Type& type);
  void describe();

  std::unique_ptr<const engine::ResultSet> own_;
  const engine::ResultSet* set_;
  std::vector<FieldInfo> fields_;
  std::vector<Form> forms_;
};

}  // namespace db
