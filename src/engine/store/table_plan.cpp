#include "engine/store/table_plan.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <map>

namespace engine::store {

namespace {

using Kind = Field::Kind;

std::string pragma(const std::string& alias, const char* name, const std::string& of) {
  return "PRAGMA " + alias + "." + name + "(" + lite::quoted(of) + ")";
}

std::uint32_t rootOf(sqlite3* db, const std::string& alias, const std::string& name) {
  lite::Stmt row(db, "SELECT rootpage FROM " + alias + ".sqlite_master WHERE name=? COLLATE NOCASE");
  row.bind(name);
  if (!row.step()) throw Unplanned{name + " is missing from the file"};
  return static_cast<std::uint32_t>(row.integer(0));
}

// The value of a default, as a statement of the engine's own wrote it.
void setFill(sqlite3* db, const std::string& text, ColumnPlan& column) {
  lite::Stmt value(db, "SELECT typeof(x), x FROM (SELECT " + text + " AS x)");
  if (!value.step()) throw Unplanned{"a default without a value"};
  const std::string type = value.text(0);
  if (type == "integer") {
    column.fill.kind = Kind::Integer;
    column.fill.integer = value.integer(1);
  } else if (type == "text") {
    column.fill.kind = Kind::Text;
    column.text = value.text(1);
  } else if (type == "real") {
    column.fill.kind = Kind::Real;
    column.fill.real = std::strtod(text.c_str(), nullptr);
  } else if (type != "null") {
    throw Unplanned{"a default of type " + type};
  }
}

void planColumns(sqlite3* db, const std::string& alias, const TableInfo& table, TablePlan& plan) {
  std::map<std::string, int> places;
  lite::Stmt rows(db, pragma(alias, "table_xinfo", table.name));
  while (rows.step()) {
    const std::string name = rows.text(1);
    const int which = table.columnIndex(name);
    if (which < 0 || rows.integer(5) != 0 || rows.integer(6) != 0)
      throw Unplanned{table.name + "." + name + " is no plain column"};
    const ColumnInfo& column = table.columns[static_cast<std::size_t>(which)];
    places[column.name] = static_cast<int>(plan.columns.size());
    ColumnPlan& next = plan.columns.emplace_back();
    next.type = column.type;
    next.nullable = column.nullable;
    next.real = isApproximate(column.type.id);
    if (!rows.isNull(4)) setFill(db, rows.text(4), next);
  }
  for (ColumnPlan& each : plan.columns)
    if (each.fill.kind == Kind::Text) each.fill.bytes = each.text;
  for (const ColumnInfo& column : table.columns) {
    const auto at = places.find(column.name);
    if (at == places.end()) throw Unplanned{table.name + "." + column.name + " is missing from the file"};
    plan.order.push_back(at->second);
  }
}

void planKeys(sqlite3* db, const std::string& alias, const TablePlan& table, IndexPlan& index) {
  lite::Stmt rows(db, pragma(alias, "index_xinfo", index.name));
  while (rows.step()) {
    if (rows.integer(5) == 0) continue;  // the rowid
    const auto column = rows.integer(1);
    const std::string collation = rows.text(4);
    if (column < 0 || (collation != "BINARY" && collation != sqliteCollation))
      throw Unplanned{index.name + " is no plain index"};
    KeyPlan& key = index.keys.emplace_back();
    key.column = static_cast<int>(column);
    key.turkish = collation == sqliteCollation;
    key.descending = rows.integer(3) != 0;
    key.real = table.columns[static_cast<std::size_t>(column)].real;
  }
}

// The index beside a unique one: over expressions, so that SQLite tells no columns. NULLs that are equal.
IndexPlan nullsOf(const IndexPlan& index, const TablePlan& table, const std::string& name) {
  IndexPlan nulls = index;
  nulls.name = name;
  nulls.nullsOnly = true;
  for (KeyPlan& key : nulls.keys) {
    const Type& type = table.columns[static_cast<std::size_t>(key.column)].type;
    const bool bytes = isBinary(type.id) || (type.id == TypeId::Decimal && type.precision > 18);
    key.descending = false;
    key.forNull.kind = bytes ? Kind::Integer : Kind::Blob;
    key.forNull.bytes = "";
  }
  return nulls;
}

void planIndexes(sqlite3* db, const std::string& alias, TablePlan& plan) {
  std::vector<std::string> ofNulls;
  {
    lite::Stmt rows(db, pragma(alias, "index_list", plan.name));
    while (rows.step()) {
      if (rows.integer(4) != 0) {
        ofNulls.push_back(rows.text(1));
        continue;
      }
      IndexPlan& index = plan.indexes.emplace_back();
      index.name = rows.text(1);
      index.unique = rows.integer(2) != 0;
      planKeys(db, alias, plan, index);
    }
  }
  for (const std::string& name : ofNulls) {
    const auto base = std::find_if(plan.indexes.begin(), plan.indexes.end(),
                                   [&](const IndexPlan& each) { return each.name + "_n" == name; });
    if (base == plan.indexes.end()) throw Unplanned{name + " is no plain index"};
    const IndexPlan nulls = nullsOf(*base, plan, name);
    plan.indexes.push_back(nulls);
  }
  for (IndexPlan& index : plan.indexes) index.root = rootOf(db, alias, index.name);
}

bool isBetween(const Field& value, std::int64_t low, std::int64_t high) {
  return value.kind == Kind::Integer && value.integer >= low && value.integer <= high;
}

template <class Number>
bool isWithin(const Field& value) {
  return isBetween(value, std::numeric_limits<Number>::min(), std::numeric_limits<Number>::max());
}

// Eight bytes at a time: all but those that go on with a character.
std::size_t characters(std::string_view text) {
  constexpr std::uint64_t ones = 0x0101010101010101U;
  std::size_t count = text.size(), at = 0;
  for (; at + sizeof ones <= text.size(); at += sizeof ones) {
    std::uint64_t word = 0;
    std::memcpy(&word, text.data() + at, sizeof word);
    count -= static_cast<std::size_t>((((word >> 7) & ~(word >> 6) & ones) * ones) >> 56);
  }
  for (; at < text.size(); ++at) count -= (static_cast<unsigned char>(text[at]) & 0xC0) == 0x80 ? 1 : 0;
  return count;
}

bool fitsText(const Field& value, std::size_t longest) {
  return value.kind == Kind::Text && (value.bytes.size() <= longest || characters(value.bytes) <= longest);
}

bool fitsDecimal(const Type& type, const Field& value) {
  constexpr int shortDecimal = 18;
  if (type.precision > shortDecimal) return value.kind == Kind::Blob && value.bytes.size() == 16;
  std::int64_t power = 1;
  for (int i = 0; i < type.precision; ++i) power *= 10;
  return isBetween(value, 1 - power, power - 1);
}

int rank(const Field& field) {
  constexpr int ranks[] = {0, 1, 1, 2, 3};
  return ranks[static_cast<std::size_t>(field.kind)];
}

template <class Number>
int compareNumbers(Number left, Number right) {
  return left < right ? -1 : left > right ? 1 : 0;
}

int compareBytes(std::string_view left, std::string_view right) {
  const int order = std::memcmp(left.data(), right.data(), std::min(left.size(), right.size()));
  return order != 0 ? order : compareNumbers(left.size(), right.size());
}

// Exact: the significand of a long double holds every 64-bit integer.
static_assert(std::numeric_limits<long double>::digits >= 64 || sizeof(long double) == sizeof(double));
long double numberOf(const Field& field) {
  return field.kind == Kind::Integer ? static_cast<long double>(field.integer) : field.real;
}

}  // namespace

TablePlan planTable(sqlite3* db, const std::string& alias, const TableInfo& table) {
  TablePlan plan;
  plan.name = table.name;
  plan.root = rootOf(db, alias, table.name);
  planColumns(db, alias, table, plan);
  planIndexes(db, alias, plan);
  return plan;
}

bool canHold(const Type& type, const Field& value) {
  // Ticks of 1753-01-01 and of the last one of 9999-12-31.
  constexpr std::int64_t ticksPerDay = 300LL * 86400, firstDay = -53690, daysEnd = 2958464;
  switch (type.id) {
    case TypeId::Bit:
      return isBetween(value, 0, 1);
    case TypeId::TinyInt:
      return isWithin<std::uint8_t>(value);
    case TypeId::SmallInt:
      return isWithin<std::int16_t>(value);
    case TypeId::Int:
    case TypeId::SmallMoney:
      return isWithin<std::int32_t>(value);
    case TypeId::BigInt:
    case TypeId::Money:
      return value.kind == Kind::Integer;
    case TypeId::Decimal:
      return fitsDecimal(type, value);
    case TypeId::Real:
    case TypeId::Float:
      return value.kind == Kind::Real || value.kind == Kind::Integer;
    case TypeId::SmallDateTime:
    case TypeId::DateTime:
      return isBetween(value, firstDay * ticksPerDay, daysEnd * ticksPerDay - 1);
    case TypeId::Binary:
    case TypeId::VarBinary:
      return value.kind == Kind::Blob && (type.length == 0 || value.bytes.size() <= type.length);
    case TypeId::Text:
    case TypeId::NText:
      return value.kind == Kind::Text;
    case TypeId::Char:
    case TypeId::VarChar:
    case TypeId::NChar:
    case TypeId::NVarChar:
      return fitsText(value, type.length == 0 ? std::numeric_limits<std::size_t>::max() : type.length);
    case TypeId::Null:
      break;
  }
  return true;
}

int compareFields(const Field& left, const Field& right, bool turkish) {
  if (rank(left) != rank(right)) return rank(left) - rank(right);
  switch (left.kind) {
    case Kind::Null:
      return 0;
    case Kind::Integer:
    case Kind::Real:
      if (left.kind == Kind::Integer && right.kind == Kind::Integer)
        return compareNumbers(left.integer, right.integer);
      return compareNumbers(numberOf(left), numberOf(right));
    case Kind::Text:
      if (left.bytes == right.bytes) return 0;
      return turkish ? compareText(left.bytes, right.bytes) : compareBytes(left.bytes, right.bytes);
    case Kind::Blob:
      return compareBytes(left.bytes, right.bytes);
  }
  return 0;
}

}  // namespace engine::store
