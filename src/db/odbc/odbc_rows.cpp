#include "db/odbc/odbc_rows.h"

#include <algorithm>
#include <cstring>
#include <limits>

#include "db/odbc/odbc_connection.h"

namespace db {
namespace {

constexpr std::size_t pieceSize = std::size_t{16} * 1024;  // of a long value, per call

std::string textAttribute(SQLHSTMT statement, SQLUSMALLINT column, SQLUSMALLINT attribute) {
  SQLWCHAR buffer[512] = {};
  SQLSMALLINT bytes = 0;
  if (!succeeded(SQLColAttributeW(statement, column, attribute, buffer, sizeof buffer, &bytes, nullptr))) {
    return {};
  }
  const std::size_t size = static_cast<std::size_t>(std::max<SQLSMALLINT>(bytes, 0)) / sizeof(SQLWCHAR);
  return fromWide(buffer, std::min(size, std::size(buffer) - 1));
}

SQLLEN numberAttribute(SQLHSTMT statement, SQLUSMALLINT column, SQLUSMALLINT attribute) {
  SQLLEN value = 0;
  return succeeded(SQLColAttributeW(statement, column, attribute, nullptr, 0, nullptr, &value)) ? value : 0;
}

bool isMoney(FieldType type) {
  return type == FieldType::Money || type == FieldType::SmallMoney;
}

FieldInfo describe(SQLHSTMT statement, SQLUSMALLINT column, const OdbcDialect& dialect) {
  const auto number = [&](SQLUSMALLINT attribute) { return numberAttribute(statement, column, attribute); };
  FieldInfo field;
  field.name = textAttribute(statement, column, SQL_DESC_NAME);
  field.type = dialect.fieldType(textAttribute(statement, column, SQL_DESC_TYPE_NAME),
                                 static_cast<int>(number(SQL_DESC_CONCISE_TYPE)));
  if (field.type == FieldType::Decimal) {
    field.size = static_cast<int>(number(SQL_DESC_PRECISION));
    field.scale = static_cast<int>(number(SQL_DESC_SCALE));
  } else if (isMoney(field.type)) {
    field.scale = 4;
  } else if (field.type >= FieldType::Char) {
    const SQLLEN size = number(SQL_DESC_LENGTH);
    field.size = static_cast<int>(std::clamp<SQLLEN>(size, 0, std::numeric_limits<int>::max()));
  }
  field.nullable = number(SQL_DESC_NULLABLE) != SQL_NO_NULLS;
  field.identity = number(SQL_DESC_AUTO_UNIQUE_VALUE) == SQL_TRUE;
  return field;
}

// Texts end in a NUL that is no part of the value.
std::size_t endingOf(SQLSMALLINT type) {
  return type == SQL_C_BINARY ? 0 : type == SQL_C_WCHAR ? sizeof(SQLWCHAR) : 1;
}

// The whole of a value read as SQL_C_CHAR, SQL_C_WCHAR or SQL_C_BINARY, piece by piece. False on failure;
// `null` tells NULL.
bool readLong(SQLHSTMT statement, SQLUSMALLINT column, SQLSMALLINT type, std::string& out, bool& null) {
  thread_local std::vector<char> piece(pieceSize);
  const std::size_t ending = endingOf(type);
  const std::size_t room = piece.size() - ending;
  null = false;
  for (;;) {
    SQLLEN left = 0;
    const SQLRETURN code =
        SQLGetData(statement, column, type, piece.data(), static_cast<SQLLEN>(piece.size()), &left);
    if (code == SQL_NO_DATA) return true;
    if (!succeeded(code)) return false;
    if (left == SQL_NULL_DATA) {
      null = true;
      return true;
    }
    const bool more = left == SQL_NO_TOTAL || static_cast<std::size_t>(left) > room;
    out.append(piece.data(), more ? room : static_cast<std::size_t>(left));
    if (!more) return true;
  }
}

// `wide` is aligned for its characters.
Value textOf(const char* wide, std::size_t bytes) {
  return Value(fromWide(reinterpret_cast<const SQLWCHAR*>(wide), bytes / sizeof(SQLWCHAR)));
}

bool readText(SQLHSTMT statement, SQLUSMALLINT column, Value& out) {
  std::string wide;
  bool null = false;
  if (!readLong(statement, column, SQL_C_WCHAR, wide, null)) return false;
  if (!null) out = textOf(wide.data(), wide.size());
  return true;
}

template <class T>
bool readFixed(SQLHSTMT statement, SQLUSMALLINT column, SQLSMALLINT type, T& out, bool& null) {
  SQLLEN indicator = 0;
  if (!succeeded(SQLGetData(statement, column, type, &out, sizeof out, &indicator))) return false;
  null = indicator == SQL_NULL_DATA;
  return true;
}

bool readInteger(SQLHSTMT statement, SQLUSMALLINT column, bool bit, Value& out) {
  SQLBIGINT value = 0;
  bool null = false;
  if (!readFixed(statement, column, SQL_C_SBIGINT, value, null)) return false;
  if (!null) out = bit ? Value(value != 0) : Value(static_cast<std::int64_t>(value));
  return true;
}

bool readReal(SQLHSTMT statement, SQLUSMALLINT column, Value& out) {
  double value = 0;
  bool null = false;
  if (!readFixed(statement, column, SQL_C_DOUBLE, value, null)) return false;
  if (!null) out = Value(value);
  return true;
}

Value dateOf(const SQL_TIMESTAMP_STRUCT& t) {
  constexpr int nanosPerMilli = 1000000;
  const int milli = std::min(999, static_cast<int>((t.fraction + nanosPerMilli / 2) / nanosPerMilli));
  return Value(DateTime{t.year, t.month, t.day, t.hour, t.minute, t.second, milli});
}

bool readDate(SQLHSTMT statement, SQLUSMALLINT column, Value& out) {
  SQL_TIMESTAMP_STRUCT t = {};
  bool null = false;
  if (!readFixed(statement, column, SQL_C_TYPE_TIMESTAMP, t, null)) return false;
  if (!null) out = dateOf(t);
  return true;
}

// A number too wide for a Decimal keeps its exact digits as text.
Value decimalOf(std::string text, int scale) {
  Decimal number;
  return parseDecimal(text, scale, number) ? Value(number) : Value(std::move(text));
}

bool readDecimal(SQLHSTMT statement, SQLUSMALLINT column, int scale, Value& out) {
  std::string text;
  bool null = false;
  if (!readLong(statement, column, SQL_C_CHAR, text, null)) return false;
  if (!null) out = decimalOf(std::move(text), scale);
  return true;
}

struct PlaceKind {
  SQLSMALLINT type;
  std::size_t size;  // 0: of no known size, or too long
};

PlaceKind placeOf(const FieldInfo& field) {
  constexpr std::size_t longestNumber = 64, longestText = 4000, longestBytes = 8000;
  const auto size = static_cast<std::size_t>(field.size);
  if (field.type <= FieldType::BigInt) return {SQL_C_SBIGINT, sizeof(SQLBIGINT)};
  if (field.type <= FieldType::Decimal) return {SQL_C_CHAR, longestNumber};
  if (field.type <= FieldType::Float) return {SQL_C_DOUBLE, sizeof(double)};
  if (field.type <= FieldType::DateTime) return {SQL_C_TYPE_TIMESTAMP, sizeof(SQL_TIMESTAMP_STRUCT)};
  if (field.type < FieldType::Binary)
    return {SQL_C_WCHAR, size == 0 || size > longestText ? 0 : (size + 1) * sizeof(SQLWCHAR)};
  return {SQL_C_BINARY, size > longestBytes ? 0 : size};
}

template <class T>
T valueAt(const std::vector<char>& room) {
  T value;
  std::memcpy(&value, room.data(), sizeof value);
  return value;
}

bool readCell(SQLHSTMT statement, SQLUSMALLINT column, const FieldInfo& field, Value& out) {
  if (field.type <= FieldType::BigInt) {
    return readInteger(statement, column, field.type == FieldType::Bit, out);
  }
  if (field.type <= FieldType::Decimal) return readDecimal(statement, column, field.scale, out);
  if (field.type <= FieldType::Float) return readReal(statement, column, out);
  if (field.type <= FieldType::DateTime) return readDate(statement, column, out);
  if (field.type < FieldType::Binary) return readText(statement, column, out);
  std::string bytes;
  bool null = false;
  if (!readLong(statement, column, SQL_C_BINARY, bytes, null)) return false;
  if (!null) out = Value(Bytes{std::move(bytes)});
  return true;
}

}  // namespace

bool parseDecimal(std::string_view text, int scale, Decimal& out) {
  const bool negative = text.starts_with('-');
  if (negative) text.remove_prefix(1);
  const std::size_t point = std::min(text.find('.'), text.size());
  const std::string_view fraction = point < text.size() ? text.substr(point + 1) : std::string_view();
  std::string digits(text.substr(0, point));
  digits += fraction.substr(0, static_cast<std::size_t>(scale));
  digits.append(static_cast<std::size_t>(scale) - std::min(fraction.size(), static_cast<std::size_t>(scale)),
                '0');
  if (digits.empty() || digits.find_first_not_of("0123456789") != std::string::npos) return false;
  std::int64_t value = 0;
  for (const char c : digits) {
    if (__builtin_mul_overflow(value, 10, &value) || __builtin_sub_overflow(value, c - '0', &value)) {
      return false;
    }
  }
  if (!negative && value == std::numeric_limits<std::int64_t>::min()) return false;
  out = {negative ? value : -value, scale};
  return true;
}

OdbcRows::OdbcRows(SQLHSTMT statement, const OdbcDialect& dialect) {
  SQLSMALLINT columns = 0;
  SQLNumResultCols(statement, &columns);
  for (SQLSMALLINT i = 1; i <= columns; ++i) {
    fields_.push_back(describe(statement, static_cast<SQLUSMALLINT>(i), dialect));
  }
}

// The columns before the first long one: drivers hand out a value in pieces only behind the bound ones.
void OdbcRows::bind(SQLHSTMT statement) {
  places_.reserve(fields_.size());  // the driver keeps their addresses
  for (std::size_t i = 0; i < fields_.size(); ++i) {
    const PlaceKind kind = placeOf(fields_[i]);
    if (kind.size == 0) return;
    Place& place = places_.emplace_back(Place{kind.type, std::vector<char>(kind.size), 0});
    if (succeeded(SQLBindCol(statement, static_cast<SQLUSMALLINT>(i + 1), place.type, place.room.data(),
                             static_cast<SQLLEN>(place.room.size()), &place.length)))
      continue;
    places_.pop_back();
    return;
  }
}

bool OdbcRows::takePlace(const Place& place, const FieldInfo& field, Value& out) const {
  if (place.length == SQL_NULL_DATA) return true;
  const auto size = static_cast<std::size_t>(place.length);
  switch (place.type) {
    case SQL_C_SBIGINT: {
      const auto value = valueAt<SQLBIGINT>(place.room);
      out = field.type == FieldType::Bit ? Value(value != 0) : Value(static_cast<std::int64_t>(value));
      return true;
    }
    case SQL_C_DOUBLE:
      out = Value(valueAt<double>(place.room));
      return true;
    case SQL_C_TYPE_TIMESTAMP:
      out = dateOf(valueAt<SQL_TIMESTAMP_STRUCT>(place.room));
      return true;
    default:
      break;
  }
  const std::size_t ending = endingOf(place.type);
  if (size > place.room.size() || place.room.size() - size < ending) return false;  // longer than described
  if (place.type == SQL_C_CHAR)
    out = decimalOf({place.room.data(), size}, field.scale);
  else
    out =
        place.type == SQL_C_WCHAR ? textOf(place.room.data(), size) : Value(Bytes{{place.room.data(), size}});
  return true;
}

Value& OdbcRows::newCell() {
  if (cells_.empty() || cells_.back().size() == chunkSize) {
    cells_.emplace_back();
    if (cells_.size() > 1) cells_.back().reserve(chunkSize);
  }
  return cells_.back().emplace_back();
}

bool OdbcRows::fetchRow(SQLHSTMT statement) {
  for (std::size_t i = 0; i < fields_.size(); ++i) {
    Value& cell = newCell();
    const bool read = i < places_.size()
                          ? takePlace(places_[i], fields_[i], cell)
                          : readCell(statement, static_cast<SQLUSMALLINT>(i + 1), fields_[i], cell);
    if (!read) return false;
  }
  ++rows_;
  return true;
}

OdbcRows::Fetched OdbcRows::fetch(SQLHSTMT statement, std::int64_t most) {
  // What the driver knows of places ends with them.
  struct Unbind {
    OdbcRows& rows;
    SQLHSTMT statement;
    ~Unbind() {
      if (!rows.places_.empty()) SQLFreeStmt(statement, SQL_UNBIND);
      rows.places_.clear();
    }
  } unbind{*this, statement};
  // Calls through the driver manager cost more than the values; below some rows binding does.
  constexpr std::int64_t rowsBeforeBinding = 4;
  while (most == 0 || rows_ < most) {
    if (rows_ == rowsBeforeBinding) bind(statement);
    const SQLRETURN code = SQLFetch(statement);
    if (code == SQL_NO_DATA) return Fetched::All;
    if (!succeeded(code) || !fetchRow(statement)) return Fetched::Failed;
  }
  return Fetched::Page;
}

}  // namespace db
