#include "engine/store/table_sums.h"

#include <cmath>

#include "engine/store/row_mix.h"

namespace engine::store {

namespace {

using Kind = Field::Kind;

void asStored(Field& field, bool real) {
  if (!real || field.kind != Kind::Integer) return;
  field.kind = Kind::Real;
  field.real = static_cast<double>(field.integer);
}

// As SQLite hands it out: the sum of a table is the same through a statement.
void addValue(Mix& mix, const Field& field) {
  constexpr std::uint64_t types[] = {SQLITE_NULL, SQLITE_INTEGER, SQLITE_FLOAT, SQLITE_TEXT, SQLITE_BLOB};
  mix.add(types[static_cast<std::size_t>(field.kind)]);
  if (field.kind == Kind::Integer) mix.add(static_cast<std::uint64_t>(field.integer));
  if (field.kind == Kind::Real) mix.add(field.real);
  if (field.kind == Kind::Text || field.kind == Kind::Blob) mix.add(field.bytes.data(), field.bytes.size());
}

// A number by its value: row and entry may write the same one in two ways.
void addKey(Mix& mix, Field field) {
  constexpr double limit = 9.2e18;
  if (field.kind == Kind::Real && std::fabs(field.real) < limit && std::trunc(field.real) == field.real) {
    field.kind = Kind::Integer;
    field.integer = static_cast<std::int64_t>(field.real);
  }
  addValue(mix, field);
}

bool isNull(const Field& field) {
  return field.kind == Kind::Null;
}

}  // namespace

TableSums::TableSums(TablePlan plan)
    : plan_(std::move(plan)), ofRows_(plan_.indexes.size()), ofEntries_(plan_.indexes.size()) {
  row_.resize(plan_.columns.size());
}

void TableSums::addRow(std::int64_t rowid, std::span<Field> fields) {
  if (fields.size() > plan_.columns.size()) throw Malformed{"a row has more fields than its table"};
  for (std::size_t i = 0; i < plan_.columns.size(); ++i) {
    const ColumnPlan& column = plan_.columns[i];
    Field& field = row_[i] = i < fields.size() ? fields[i] : column.fill;
    asStored(field, column.real);
    if (isNull(field) ? !column.nullable : !canHold(column.type, field))
      throw Malformed{"a row holds a value that its column cannot have"};
  }
  Mix mix;
  for (const int place : plan_.order) addValue(mix, row_[static_cast<std::size_t>(place)]);
  ++rows_;
  sum_ += mix.sum();
  addToIndexes(rowid);
}

void TableSums::addToIndexes(std::int64_t rowid) {
  for (std::size_t i = 0; i < plan_.indexes.size(); ++i) {
    const IndexPlan& index = plan_.indexes[i];
    Mix mix;
    bool anyNull = false;
    for (const KeyPlan& key : index.keys) {
      const Field& field = row_[static_cast<std::size_t>(key.column)];
      anyNull = anyNull || isNull(field);
      addKey(mix, isNull(field) ? key.forNull : field);
    }
    if (index.nullsOnly && !anyNull) continue;
    mix.add(static_cast<std::uint64_t>(rowid));
    ++ofRows_[i].count;
    ofRows_[i].sum += mix.sum();
  }
}

void TableSums::addEntry(std::size_t which, std::span<const Field> fields) {
  const IndexPlan& index = plan_.indexes[which];
  if (fields.size() != index.keys.size() + 1 || fields.back().kind != Kind::Integer)
    throw Malformed{"an entry is not one of its index"};
  Mix mix;
  for (std::size_t i = 0; i < index.keys.size(); ++i) {
    Field field = fields[i];
    asStored(field, index.keys[i].real);
    addKey(mix, field);
  }
  mix.add(static_cast<std::uint64_t>(fields.back().integer));
  ++ofEntries_[which].count;
  ofEntries_[which].sum += mix.sum();
}

int TableSums::compareEntries(std::size_t which, std::span<const Field> left, std::span<const Field> right,
                              bool& sameKey) const {
  const IndexPlan& index = plan_.indexes[which];
  if (left.size() != index.keys.size() + 1 || right.size() != left.size())
    throw Malformed{"an entry is not one of its index"};
  bool anyNull = false;
  sameKey = false;
  for (std::size_t i = 0; i < index.keys.size(); ++i) {
    const int order = compareFields(left[i], right[i], index.keys[i].turkish);
    if (order != 0) return index.keys[i].descending ? -order : order;
    anyNull = anyNull || isNull(left[i]);
  }
  sameKey = !anyNull;
  return compareFields(left.back(), right.back(), false);
}

std::optional<std::string> TableSums::mismatch() const {
  for (std::size_t i = 0; i < plan_.indexes.size(); ++i)
    if (ofRows_[i] != ofEntries_[i]) return plan_.indexes[i].name;
  return std::nullopt;
}

}  // namespace engine::store
