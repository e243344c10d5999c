// Rows as one text.
#pragma once

#include <memory>
#include <string>

#include "db/connection.h"

namespace support {

// Rows joined by newlines, values by '|'; texts are trimmed.
inline std::string satirlar(const std::unique_ptr<db::Rows>& rows) {
  std::string out;
  for (std::int64_t row = 0; rows && row < rows->count(); ++row) {
    if (row) out += '\n';
    for (int column = 0; column < static_cast<int>(rows->fields().size()); ++column) {
      const db::Value value = rows->value(row, column);
      out += (column ? "|" : "") + (value.isNull() ? "NULL" : value.trimmed());
    }
  }
  return out;
}

}  // namespace support
