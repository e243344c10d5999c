#include "tds/cursors.h"

#include <algorithm>
#include <array>

#include "tds/bytes.h"

namespace tds {

namespace {

using engine::Datum;
using engine::Type;
using engine::TypeId;

const Type integer{TypeId::Int};

constexpr std::int64_t fetchFirst = 1, fetchNext = 2, fetchPrevious = 4, fetchLast = 8, fetchAbsolute = 16,
                       fetchRelative = 32, fetchRefresh = 128, fetchInfo = 256, fetchPreviousStrict = 512;
constexpr std::int64_t changeUpdate = 1, changeDelete = 2, changeInsert = 4, changeRefresh = 8,
                       changeSetPosition = 32;
constexpr std::int64_t scrollKeyset = 1, scrollForwardOnly = 4, scrollStatic = 8, scrollFastForward = 16,
                       lockReadOnly = 1, lockOptimistic = 4;
constexpr int rowThere = 1, rowMissing = 2;

std::string bracketed(const std::string& name) {
  std::string out = "[";
  for (const char c : name) out += c == ']' ? std::string("]]") : std::string(1, c);
  return out + "]";
}

std::string tableOf(const engine::ResultColumn& column) {
  return bracketed(column.baseDatabase) + ".dbo." + bracketed(column.baseTable);
}

// The columns that find a row of the one table behind the query; empty when there is none.
std::vector<std::size_t> keysOf(const std::vector<engine::ResultColumn>& columns) {
  std::vector<std::size_t> identity, keys;
  const engine::ResultColumn* table = nullptr;
  for (std::size_t i = 0; i < columns.size(); ++i) {
    const auto& column = columns[i];
    if (column.baseTable.empty()) continue;
    if (table && (column.baseTable != table->baseTable || column.baseDatabase != table->baseDatabase))
      return {};
    table = &column;
    if (column.identity) identity.push_back(i);
    if (column.keyPart) keys.push_back(i);
  }
  return identity.empty() ? keys : identity;
}

[[noreturn]] void failHandle() {
  throw engine::Error(16916, "A cursor with the given name or handle does not exist.");
}

// Values that a call gives back, in the order of its parameters.
void putBack(const Call& call, std::size_t index, std::int64_t value, Answer& answer) {
  if (index < call.parameters.size() && call.parameters[index].output)
    putReturnValue(answer.tokens(), static_cast<std::uint16_t>(index), call.parameters[index].name, integer,
                   value, answer.version());
}

}  // namespace

// Keeps the rows of the first query of a batch.
class Cursors::Reader : public engine::ResultSink {
 public:
  explicit Reader(Cursor& cursor) : cursor_(cursor) {}
  std::int64_t rowsAtATime() const override { return 64; }
  void onRows(const engine::ResultSet& rows, bool first) override {
    if (first) {
      if (done_) throw engine::Error(16937, "A server cursor is not allowed on a batch of several queries.");
      cursor_.columns = rows.columns();
      cursor_.keys = keysOf(cursor_.columns);
    }
    const RowWriter writer(cursor_.columns, Version::V71);
    for (std::int64_t i = 0; i < rows.rowCount(); ++i) {
      Row& row = cursor_.rows.emplace_back();
      writer.row(row.bytes, rows, i);
      row.bytes.shrink_to_fit();
      for (const std::size_t key : cursor_.keys) row.key.push_back(rows.datum(i, static_cast<int>(key)));
      cursor_.memory.take(sizeof(Row) + row.bytes.size() + row.key.size() * sizeof(Datum));
    }
  }
  void onRowsEnd(std::int64_t, bool) override { done_ = true; }
  void onResultSet(engine::ResultSet&& set) override {
    onRows(set, true);
    done_ = true;
  }
  void onRowCount(std::int64_t) override {}
  void onMessage(int, const std::string&) override {}
  bool found() const { return done_; }

 private:
  Cursor& cursor_;
  bool done_ = false;
};

// sp_cursoropen cursor OUTPUT, statement, scroll OUTPUT, locks OUTPUT, rows OUTPUT [, declarations, values
// ...]
void Cursors::open(const Call& call, Answer& answer) {
  if (call.parameters.size() < 2)
    throw engine::Error(
        201, "Procedure or function 'sp_cursoropen' expects parameter '@stmt', which was not supplied.");
  constexpr std::size_t declarations = 5;
  Cursor made;
  made.memory = Share(allowance_);
  made.text = call.text(1);
  made.memory.take(sizeof(Cursor) + made.text.size());
  made.parameters = bindValues(parseDeclarations(call.text(declarations)), call.parameters,
                               std::min(call.parameters.size(), declarations + 1));
  Reader reader(made);
  std::vector<engine::Parameter> values = made.parameters;
  session_.execute(made.text, values, reader);
  if (!reader.found())
    throw engine::Error(16937, "A server cursor is not allowed on a batch without a query.");
  const bool changeable = !made.keys.empty();
  const auto rows = static_cast<std::int64_t>(made.rows.size());
  const std::int64_t wanted = call.number(2).value_or(scrollStatic) & 31;
  RowWriter(made.columns, answer.version()).describeForCursor(answer.tokens());
  answer.statementEnd(0, commandSelect, 0);
  cursors_[++lastHandle_] = std::move(made);
  putReturnStatus(answer.tokens(), 0);
  putBack(call, 0, lastHandle_, answer);
  const bool forward = (wanted & (scrollForwardOnly | scrollFastForward)) != 0;
  putBack(call, 2, forward ? scrollForwardOnly : changeable ? scrollKeyset : scrollStatic, answer);
  putBack(call, 3, changeable ? lockOptimistic : lockReadOnly, answer);
  putBack(call, 4, rows, answer);
}

Cursors::Cursor& Cursors::at(const Call& call) {
  const auto handle = call.number(0);
  const auto found = handle ? cursors_.find(static_cast<std::int32_t>(*handle)) : cursors_.end();
  if (found == cursors_.end()) failHandle();
  return found->second;
}

// The rows keep their places; what is not found any more is missing.
void Cursors::refresh(Cursor& cursor) {
  if (!cursor.stale) return;
  cursor.stale = false;
  Cursor now;
  now.memory = Share(allowance_);
  Reader reader(now);
  std::vector<engine::Parameter> values = cursor.parameters;
  session_.execute(cursor.text, values, reader);
  const auto name = [](const Row& row) {
    std::string text;
    for (const Datum& part : row.key) {
      if (part.isInteger()) text += std::to_string(part.integer());
      if (part.isReal()) text += std::to_string(part.real());
      if (part.isText()) text += part.text();
      if (part.isBlob()) text += part.bytes();
      text += '\0';
    }
    return text;
  };
  std::map<std::string, Row*> byKey;
  for (Row& row : now.rows) byKey[name(row)] = &row;
  for (Row& row : cursor.rows) {
    const auto found = byKey.find(name(row));
    row.missing = found == byKey.end();
    if (row.missing) continue;
    row.bytes = std::move(found->second->bytes);
    byKey.erase(found);
  }
  for (Row& row : now.rows) {
    if (!byKey.contains(name(row))) continue;
    cursor.memory.take(sizeof(Row) + row.bytes.size() + row.key.size() * sizeof(Datum));
    cursor.rows.push_back(std::move(row));
  }
}

void Cursors::move(Cursor& cursor, std::int64_t kind, std::int64_t row, std::int64_t count) const {
  const auto all = static_cast<std::int64_t>(cursor.rows.size());
  std::int64_t first = cursor.first;
  switch (kind) {
    case fetchFirst:
      first = 1;
      break;
    case fetchNext:
      first = cursor.last + 1;
      break;
    case fetchPrevious:
    case fetchPreviousStrict:
      first = cursor.first - count;
      if (kind == fetchPrevious && first < 1 && cursor.first > 1) first = 1;
      break;
    case fetchLast:
      first = std::max<std::int64_t>(1, all - count + 1);
      break;
    case fetchAbsolute:
      first = row < 0 ? all + row + 1 : row;
      break;
    case fetchRelative:
      first = cursor.first + row;
      break;
    case fetchRefresh:
      return;
    default:
      throw engine::Error(16902, "sp_cursorfetch: The value of the parameter 'fetchtype' is invalid.");
  }
  if (first < 1) {
    cursor.first = cursor.last = 0;
  } else {
    cursor.first = std::min(first, all + 1);
    cursor.last = std::min(all, cursor.first + std::max<std::int64_t>(count, 0) - 1);
  }
}

void Cursors::sendRows(const Cursor& cursor, Answer& answer) const {
  RowWriter(cursor.columns, answer.version()).describeForCursor(answer.tokens());
  std::int64_t count = 0;
  for (std::int64_t i = std::max<std::int64_t>(cursor.first, 1); i <= cursor.last; ++i, ++count) {
    const Row& row = cursor.rows[static_cast<std::size_t>(i - 1)];
    std::string& to = answer.tokens();
    to += row.bytes;
    writeValue(to, integer, row.missing ? rowMissing : rowThere);
    answer.sendWhenFull();
  }
  answer.statementEnd(doneCount, commandSelect, count);
}

// sp_cursorfetch cursor, kind, row OUTPUT, rows OUTPUT
void Cursors::fetch(const Call& call, Answer& answer) {
  Cursor& cursor = at(call);
  const std::int64_t kind = call.number(1).value_or(fetchNext) & ~std::int64_t{1024};
  refresh(cursor);
  if (kind == fetchInfo) {
    putReturnStatus(answer.tokens(), 0);
    const auto all = static_cast<std::int64_t>(cursor.rows.size());
    putBack(call, 2, std::min(cursor.first, all), answer);
    putBack(call, 3, all, answer);
    return;
  }
  constexpr std::int64_t mostRows = 100000;
  move(cursor, kind, call.number(2).value_or(0),
       std::clamp<std::int64_t>(call.number(3).value_or(1), 0, mostRows));
  sendRows(cursor, answer);
  putReturnStatus(answer.tokens(), 0);
}

// The assignments of a positioned change: pairs of column and variable.
struct Cursors::Change {
  std::vector<engine::Parameter> values;
  std::vector<std::string> columns;
  explicit Change(const Call& call) {
    constexpr std::size_t firstValue = 4;
    for (std::size_t i = firstValue; i < call.parameters.size(); ++i) {
      const CallParameter& parameter = call.parameters[i];
      if (parameter.name.size() < 2)
        throw engine::Error(16902, "sp_cursor: The value of the parameter 'value' is invalid.");
      columns.push_back(bracketed(parameter.name.substr(1)));
      values.push_back({"@v" + std::to_string(i), parameter.type, parameter.value});
    }
  }
};

void Cursors::changeRow(Cursor& cursor, const Row& row, const Call& call, bool update, Answer& answer) {
  if (row.missing)
    throw engine::Error(16934,
                        "Optimistic concurrency check failed. The row was modified outside of this cursor.");
  Change change(call);
  const engine::ResultColumn& any = cursor.columns[cursor.keys.front()];
  std::string text = update ? "UPDATE " + tableOf(any) + " SET " : "DELETE FROM " + tableOf(any);
  if (!update) change.values.clear();
  for (std::size_t i = 0; update && i < change.columns.size(); ++i)
    text += (i > 0 ? "," : "") + change.columns[i] + "=" + change.values[i].name;
  for (std::size_t i = 0; i < cursor.keys.size(); ++i) {
    const engine::ResultColumn& column = cursor.columns[cursor.keys[i]];
    const std::string variable = "@k" + std::to_string(i);
    text += (i == 0 ? " WHERE " : " AND ") + bracketed(column.baseColumn) + "=" + variable;
    change.values.push_back({variable, column.type, row.key[i]});
  }
  session_.execute(text, change.values, answer);
  cursor.stale = true;
}

void Cursors::insertRow(const Cursor& cursor, const Call& call, Answer& answer) {
  Change change(call);
  std::string columns, values;
  for (std::size_t i = 0; i < change.columns.size(); ++i) {
    columns += (i > 0 ? "," : "") + change.columns[i];
    values += (i > 0 ? "," : "") + change.values[i].name;
  }
  session_.execute("INSERT INTO " + tableOf(cursor.columns[cursor.keys.front()]) + "(" + columns +
                       ") VALUES(" + values + ")",
                   change.values, answer);
}

// sp_cursor cursor, kind, row, table, values ...: `row` counts within the rows that were fetched last, 0 is
// all.
void Cursors::change(const Call& call, Answer& answer) {
  Cursor& cursor = at(call);
  const std::int64_t kind = call.number(1).value_or(0), row = call.number(2).value_or(0);
  if ((kind & (changeUpdate | changeDelete | changeInsert)) != 0 && cursor.keys.empty())
    throw engine::Error(16929, "The cursor is READ ONLY.");
  if ((kind & changeInsert) != 0) {
    insertRow(cursor, call, answer);
    cursor.stale = true;
  } else if ((kind & (changeUpdate | changeDelete)) != 0) {
    const std::int64_t from = row == 0 ? cursor.first : cursor.first + row - 1;
    const std::int64_t to = row == 0 ? cursor.last : from;
    if (from < 1 || to > cursor.last)
      throw engine::Error(16931, "There are no rows in the current fetch buffer.");
    for (std::int64_t i = from; i <= to; ++i)
      changeRow(cursor, cursor.rows[static_cast<std::size_t>(i - 1)], call, (kind & changeUpdate) != 0,
                answer);
  } else if ((kind & changeRefresh) != 0) {
    cursor.stale = true;
    refresh(cursor);
    sendRows(cursor, answer);
  } else if ((kind & changeSetPosition) == 0) {
    throw engine::Error(16902, "sp_cursor: The value of the parameter 'optype' is invalid.");
  }
  putReturnStatus(answer.tokens(), answer.failed() ? 1 : 0);
}

// Names and pointers to long texts: nothing here depends on them.
void Cursors::option(const Call& call, Answer& answer) {
  at(call);
  putReturnStatus(answer.tokens(), 0);
}

void Cursors::close(const Call& call, Answer& answer) {
  at(call);
  cursors_.erase(static_cast<std::int32_t>(*call.number(0)));
  putReturnStatus(answer.tokens(), 0);
}

}  // namespace tds
