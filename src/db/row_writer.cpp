#include "db/row_writer.h"

#include <algorithm>

namespace db {
namespace {

[[noreturn]] void refuse(const std::string& text) {
  throw SqlError(ErrorKind::StatementRefused, 0, text);
}

bool isText(FieldType type) {
  return type >= FieldType::Char && type <= FieldType::NText;
}
bool isLong(FieldType type) {
  return type == FieldType::Text || type == FieldType::NText;
}

// Keeps the last rows and whether any statement touched a row.
class WriteSink : public BatchSink {
 public:
  void onRows(std::unique_ptr<Rows> rows) override { rows_ = std::move(rows); }
  void onRowCount(std::int64_t rows) override {
    counted_ = true;
    if (rows > 0) touched_ = true;
  }
  void onMessage(const std::string&) override {}

  const Rows* rows() const { return rows_.get(); }
  // Under SET NOCOUNT nothing is counted, which tells nothing.
  bool missedRow() const { return counted_ && !touched_; }

 private:
  std::unique_ptr<Rows> rows_;
  bool counted_ = false, touched_ = false;
};

std::string withoutTrailingBlanks(const std::string& text) {
  const auto last = text.find_last_not_of(' ');
  return last == std::string::npos ? std::string() : text.substr(0, last + 1);
}

}  // namespace

RowWriter::RowWriter(Connection& connection, std::string_view sql, const std::vector<FieldInfo>& fields)
    : connection_(connection) {
  const bool told =
      std::any_of(fields.begin(), fields.end(), [](const FieldInfo& f) { return !f.baseTable.empty(); });
  if (told) {
    readFields(fields);
  } else {
    readCatalog(sql, fields);
  }
}

void RowWriter::readFields(const std::vector<FieldInfo>& fields) {
  std::vector<bool> keyParts;
  for (const auto& field : fields) {
    columns_.push_back({field.baseColumn, field.type});
    keyParts.push_back(field.keyPart && !field.baseColumn.empty());
    if (field.baseTable.empty()) continue;
    if (table_.table.empty()) {
      table_ = {field.baseDatabase, field.baseTable};
    } else if (!sameName(table_.table, field.baseTable) || !sameName(table_.database, field.baseDatabase)) {
      refuse("Insufficient base table information for updating or refreshing.");
    }
    if (field.identity) identity_ = static_cast<int>(columns_.size()) - 1;
  }
  if (identity_ < 0) dropPartialKey(keyParts, connection_.tableColumns(table_.database, table_.table));
  chooseKey(keyParts);
}

// A key is one only when every part of it was selected.
void RowWriter::dropPartialKey(std::vector<bool>& keyParts, const std::vector<TableColumn>& known) {
  const auto parts = std::count_if(known.begin(), known.end(), [](const auto& c) { return c.keyPart; });
  if (!known.empty() && parts != std::count(keyParts.begin(), keyParts.end(), true)) {
    keyParts.assign(keyParts.size(), false);
  }
}

void RowWriter::readCatalog(std::string_view sql, const std::vector<FieldInfo>& fields) {
  const auto table = tableOfSelect(sql);
  if (!table) refuse("Insufficient base table information for updating or refreshing.");
  table_ = *table;
  const auto known = connection_.tableColumns(table_.database, table_.table);
  std::vector<bool> keyParts;
  for (const auto& field : fields) {
    const auto column = std::find_if(known.begin(), known.end(),
                                     [&](const TableColumn& c) { return sameName(c.name, field.name); });
    const bool found = column != known.end();
    columns_.push_back({found || known.empty() ? field.name : "", field.type});
    keyParts.push_back(found && column->keyPart);
    if (field.identity || (found && column->identity)) identity_ = static_cast<int>(columns_.size()) - 1;
  }
  dropPartialKey(keyParts, known);
  chooseKey(keyParts);
}

void RowWriter::chooseKey(const std::vector<bool>& keyParts) {
  if (identity_ >= 0) {
    keys_ = {identity_};
    return;
  }
  for (std::size_t i = 0; i < keyParts.size(); ++i) {
    if (keyParts[i]) keys_.push_back(static_cast<int>(i));
  }
  if (!keys_.empty()) return;
  for (std::size_t i = 0; i < columns_.size(); ++i) {
    // Long text cannot be compared.
    if (!columns_[i].name.empty() && !isLong(columns_[i].type)) keys_.push_back(static_cast<int>(i));
  }
}

std::string RowWriter::comparison(int field, const Value& value) const {
  const Column& column = columns_[static_cast<std::size_t>(field)];
  const std::string name = bracketed(column.name);
  if (value.isNull()) return name + " IS NULL";
  const auto* text = isText(column.type) ? value.as<std::string>() : nullptr;
  return name + "=" + literal(text ? Value(withoutTrailingBlanks(*text)) : value);
}

std::string RowWriter::condition(const std::function<Value(int)>& original) const {
  if (keys_.empty()) refuse("Insufficient key column information for updating or refreshing.");
  std::string out;
  for (const int field : keys_) {
    if (!out.empty()) out += " AND ";
    out += comparison(field, original(field));
  }
  return out;
}

std::optional<std::int64_t> RowWriter::insert(const RowChanges& changes) {
  std::string names, values;
  for (std::size_t i = 0; i < changes.size(); ++i) {
    if (!changes[i]) continue;
    if (columns_[i].name.empty()) refuse("Field cannot be updated.");
    const char* comma = names.empty() ? "" : ",";
    names += comma + bracketed(columns_[i].name);
    values += comma + literal(*changes[i]);
  }
  std::string batch = "INSERT INTO " + qualifiedName(table_);
  batch += names.empty() ? " DEFAULT VALUES" : " (" + names + ") VALUES (" + values + ")";
  // SCOPE_IDENTITY and not @@IDENTITY: a trigger on the table may insert elsewhere.
  if (identity_ >= 0) batch += "; SELECT SCOPE_IDENTITY()";

  WriteSink sink;
  connection_.run(batch, sink);
  if (identity_ < 0 || !sink.rows() || sink.rows()->count() == 0) return std::nullopt;
  const Value number = sink.rows()->value(0, 0);
  return number.isNull() ? std::nullopt : std::optional(number.integer());
}

void RowWriter::update(const RowChanges& changes, const std::function<Value(int)>& original) {
  std::string assignments;
  for (std::size_t i = 0; i < changes.size(); ++i) {
    if (!changes[i]) continue;
    if (columns_[i].name.empty()) refuse("Field cannot be updated.");
    if (!assignments.empty()) assignments += ",";
    assignments += bracketed(columns_[i].name) + "=" + literal(*changes[i]);
  }
  if (assignments.empty()) return;
  WriteSink sink;
  connection_.run("UPDATE " + qualifiedName(table_) + " SET " + assignments + " WHERE " + condition(original),
                  sink);
  if (sink.missedRow()) {
    refuse("Row cannot be located for updating. Some values may have been changed since it was last read.");
  }
}

}  // namespace db
