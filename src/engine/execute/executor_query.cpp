#include <algorithm>
#include <cmath>

#include "engine/execute/executor.h"

namespace engine {
namespace {

// One cell of a result set, straight from SQLite's row.
void addCell(ResultSet& set, sqlite3_stmt* statement, int column, const Type& type) {
  switch (sqlite3_column_type(statement, column)) {
    case SQLITE_INTEGER: {
      const std::int64_t value = sqlite3_column_int64(statement, column);
      return isApproximate(type.id) ? set.addReal(static_cast<double>(value)) : set.addInteger(value);
    }
    case SQLITE_FLOAT: {
      const double value = sqlite3_column_double(statement, column);
      if (!isApproximate(type.id) || !std::isfinite(value))
        throw Error(8115, std::string("Arithmetic overflow error converting expression to data type ") +
                              typeName(type.id) + ".");
      return set.addReal(value);
    }
    case SQLITE_TEXT: {
      const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement, column));
      return set.addText({text, static_cast<std::size_t>(sqlite3_column_bytes(statement, column))});
    }
    case SQLITE_BLOB: {
      const auto* bytes = static_cast<const char*>(sqlite3_column_blob(statement, column));
      return set.addBlob({bytes, static_cast<std::size_t>(sqlite3_column_bytes(statement, column))});
    }
    default:
      return set.addNull();
  }
}

bool isOneTable(const SelectStatement& select) {
  return select.cores.size() == 1 && select.cores[0].from.size() == 1 &&
         select.cores[0].from[0]->kind == TableSource::Kind::Table;
}

}  // namespace

std::unique_ptr<CompiledQuery> Executor::compileQuery(const SelectStatement& select) {
  auto made = std::make_unique<CompiledQuery>();
  auto binder = std::make_unique<Binder>(bindContext());
  BoundSelect bound = binder->bindQuery(select);
  std::string sql = bound.sql;
  for (const std::string& name : bound.variables) made->slots.push_back(variableSlot(name));
  if (!bound.variables.empty() && binder->readsVariable(bound.variables)) {
    made->stepwise = true;
    binder = std::make_unique<Binder>(bindContext());
    binder->setStepwiseVariables(made->slots);
    bound = binder->bindQuery(select);
    sql = bound.sql;
  }
  made->columns = bound.columns;
  made->query = Prepared(store_.handle(), binder->finish(sql));
  finishCompile(*made, *binder);
  return made;
}

void Executor::runSelect(const SelectStatement& select) {
  for (const SelectCore& core : select.cores) {
    if (!core.into) continue;
    Binder binder(bindContext());
    BoundSelect bound;
    try {
      bound = binder.bindQuery(select);
    } catch (const Error& error) {
      noteCompileError(error);
      throw;
    }
    return selectInto(select, bound, binder);
  }
  CompiledQuery& query = compiled<CompiledQuery>(&select, [&] { return compileQuery(select); });
  bindParameters(query.query);
  if (!query.slots.empty()) return runAssignment(query);
  deliver(query);
}

void Executor::deliver(CompiledQuery& query) {
  ResultSet set(query.columns);
  PreparedUse use(query.query);
  const int columns = static_cast<int>(query.columns.size());
  const std::int64_t portion = resultsWanted() ? sink_->rowsAtATime() : 0;
  std::int64_t before = 0;  // rows in the portions that are gone
  try {
    while (query.query.step()) {
      if (portion > 0 && set.rowCount() == portion) {
        sink_->onRows(set, before == 0);
        before += portion;
        set.clearRows();
      }
      set.beginRow();
      for (int i = 0; i < columns; ++i)
        addCell(set, query.query.get(), i, query.columns[static_cast<std::size_t>(i)].type);
    }
  } catch (const Error& error) {
    // Nobody tells the client of a caught one that its rows are at their end.
    if (before > 0 && isCaught(error)) sink_->onRowsEnd(before, false);
    throw;
  }
  rowCount_ = before + set.rowCount();
  if (portion > 0) {
    sink_->onRows(set, before == 0);
    sink_->onRowsEnd(rowCount_, !noCount_);
  } else if (resultsWanted()) {
    sink_->onResultSet(std::move(set));
  }
}

// The last row wins; without a row the variables keep their values.
void Executor::runAssignment(CompiledQuery& query) {
  PreparedUse use(query.query);
  std::vector<Datum> last(query.slots.size());
  std::int64_t rows = 0;
  while (query.query.step()) {
    ++rows;
    if (query.stepwise) continue;
    for (std::size_t i = 0; i < last.size(); ++i)
      last[i] = columnDatum(query.query.get(), static_cast<int>(i));
  }
  rowCount_ = rows;
  if (rows == 0 || query.stepwise) return;
  for (std::size_t i = 0; i < last.size(); ++i) assign(query.slots[i], last[i], query.columns[i].type);
}

// Columns of SELECT INTO: types and NULL as the query has them; identity goes along from a single table that
// is not grouped, when it is listed once.
std::vector<ColumnInfo> Executor::columnsFor(const SelectStatement& select, const BoundSelect& bound) {
  std::vector<ColumnInfo> columns;
  const bool carriesIdentity = isOneTable(select) && select.cores[0].groupBy.empty() &&
                               std::count_if(bound.columns.begin(), bound.columns.end(),
                                             [](const ResultColumn& column) { return column.identity; }) == 1;
  for (const ResultColumn& from : bound.columns) {
    ColumnInfo column;
    column.name = from.name;
    column.type = from.type;
    column.nullable = from.nullable;
    if (carriesIdentity && from.identity && !from.baseTable.empty()) {
      const TableInfo* table = store_.catalog(from.baseDatabase)->table(from.baseTable);
      const int position = table ? table->columnIndex(from.baseColumn) : -1;
      if (position >= 0) {
        const ColumnInfo& base = table->columns[static_cast<std::size_t>(position)];
        column.identity = true;
        column.seed = base.seed;
        column.step = base.step;
      }
    }
    columns.push_back(std::move(column));
  }
  return columns;
}

void Executor::selectInto(const SelectStatement& select, const BoundSelect& bound, Binder& binder) {
  const ObjectName& name = *bound.into->into;
  const std::string database = name.database.empty() ? context_.database : name.database;
  rights_.needCreate(database, "CREATE TABLE");
  const std::vector<ColumnInfo> columns = columnsFor(select, bound);
  Transaction transaction(*this);
  createTableFrom(store_, database, name.object, columns);
  const auto catalog = store_.catalog(database);
  const TableInfo* table = catalog->table(name.object);
  std::string names;
  for (const ColumnInfo& column : columns) names += (names.empty() ? "" : ",") + quoteName(column.name);
  const std::string target = binder.sqlName(*table, database);
  Prepared insert(store_.handle(), binder.finish("INSERT INTO " + target + "(" + names + ") " + bound.sql));
  bindParameters(insert);
  runPrepared(insert, *catalog, "INSERT");
  const std::int64_t rows = sqlite3_changes64(store_.handle());
  if (const int identity = table->identityColumn(); identity >= 0 && rows > 0) {
    Prepared top(store_.handle(),
                 {"SELECT max(" + quoteName(table->columns[static_cast<std::size_t>(identity)].name) +
                      ") FROM " + target,
                  {}});
    if (top.step()) {
      identity_ = columnDatum(top.get(), 0);
      noteIdentity(store_, database, *table, identity_.integer());
    }
  } else if (identity < 0) {
    identity_ = Datum();
  }
  transaction.commit();
  rowCount_ = rows;
  told(Command::SelectInto, true);
}

}  // namespace engine
