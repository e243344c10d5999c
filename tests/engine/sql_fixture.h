// Evaluates the SQLite texts that the engine writes for operators and functions.
#pragma once

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <functional>
#include <string>
#include <vector>

#include "engine/function/functions.h"
#include "engine/value/convert.h"
#include "engine/value/error.h"

namespace engine::testing {

struct Operand {
  Type type;
  Datum value;
};

inline Type charType(int n) {
  return {TypeId::Char, static_cast<std::uint16_t>(n)};
}
inline Type varChar(int n) {
  return {TypeId::VarChar, static_cast<std::uint16_t>(n)};
}
inline Type decimal(int p, int s) {
  return {TypeId::Decimal, 0, static_cast<std::uint8_t>(p), static_cast<std::uint8_t>(s)};
}

inline Operand lit(LiteralKind kind, const char* text) {
  const Literal literal{kind, text, 0};
  return {literalType(literal), literalDatum(literal)};
}
inline Operand text(const char* value) {
  return lit(LiteralKind::Text, value);
}
inline Operand number(std::int64_t value) {
  return {{TypeId::Int}, value};
}
inline Operand exact(const char* value) {
  return lit(LiteralKind::Decimal, value);
}
inline Operand floating(double value) {
  return {{TypeId::Float}, value};
}
inline Operand null() {
  return {{TypeId::Null}, {}};
}
// A text literal brought to any type.
inline Operand as(const Type& type, const char* value) {
  return {type, convert(value, varChar(8000), type)};
}
inline Operand money(const char* value) {
  return as({TypeId::Money}, value);
}
inline Operand date(const char* value) {
  return as({TypeId::DateTime}, value);
}
inline Operand fixed(int width, const char* value) {
  return as(charType(width), value);
}

class SqlFixture : public ::testing::Test {
 protected:
  SqlFixture() {
    sqlite3_open(":memory:", &connection_);
    registerFunctions(connection_, &context_);
  }
  ~SqlFixture() override { sqlite3_close(connection_); }

  // One column of every row; parameters are ?1, ?2 ...
  std::vector<Datum> rows(const std::string& sql, const std::vector<Operand>& operands, int column = 0) {
    sqlite3_stmt* statement = nullptr;
    if (sqlite3_prepare_v2(connection_, sql.c_str(), -1, &statement, nullptr) != SQLITE_OK)
      throw std::runtime_error(std::string(sqlite3_errmsg(connection_)) + " in " + sql);
    for (std::size_t i = 0; i < operands.size(); ++i)
      bind(statement, static_cast<int>(i) + 1, operands[i].value);
    std::vector<Datum> result;
    int code;
    while ((code = sqlite3_step(statement)) == SQLITE_ROW) result.push_back(cell(statement, column));
    const std::string message = code == SQLITE_DONE ? "" : sqlite3_errmsg(connection_);
    sqlite3_finalize(statement);
    if (message.empty()) return result;
    rethrowEncoded(message.c_str());
    throw std::runtime_error(message);
  }

  Datum evaluate(const std::string& expression, const std::vector<Operand>& operands) {
    return rows("SELECT " + expression, operands).at(0);
  }

  FunctionContext context_;

 private:
  static void bind(sqlite3_stmt* statement, int index, const Datum& value) {
    if (value.isInteger()) sqlite3_bind_int64(statement, index, value.integer());
    if (value.isReal()) sqlite3_bind_double(statement, index, value.real());
    if (value.isText())
      sqlite3_bind_text(statement, index, value.text().data(), static_cast<int>(value.text().size()),
                        SQLITE_TRANSIENT);
    if (value.isBlob())
      sqlite3_bind_blob(statement, index, value.bytes().data(), static_cast<int>(value.bytes().size()),
                        SQLITE_TRANSIENT);
  }
  static Datum cell(sqlite3_stmt* statement, int index) {
    const auto bytes = [&](const void* data) {
      return std::string(static_cast<const char*>(data),
                         static_cast<std::size_t>(sqlite3_column_bytes(statement, index)));
    };
    switch (sqlite3_column_type(statement, index)) {
      case SQLITE_INTEGER:
        return static_cast<std::int64_t>(sqlite3_column_int64(statement, index));
      case SQLITE_FLOAT:
        return sqlite3_column_double(statement, index);
      case SQLITE_TEXT:
        return bytes(sqlite3_column_text(statement, index));
      case SQLITE_BLOB:
        return Blob{bytes(sqlite3_column_blob(statement, index))};
      default:
        return {};
    }
  }

  sqlite3* connection_ = nullptr;
};

// The number of the Error that an action throws; 0 when it throws none.
inline int errorOf(const std::function<void()>& action) {
  try {
    action();
  } catch (const Error& error) {
    return error.number();
  }
  return 0;
}

inline std::string shown(const Datum& value, const Type& type) {
  return value.isNull() ? "NULL" : displayText(value, type);
}

}  // namespace engine::testing
