#include <algorithm>

#include "engine/catalog.h"
#include "engine/execute/executor.h"
#include "engine/language.h"

namespace engine {

// What an INSERT writes: the columns of the statement, then those that fill themselves.
struct Executor::InsertShape {
  const TableInfo* table = nullptr;
  std::string database;
  std::string sqlTable;
  std::vector<int> given;   // ordinals of the columns that the statement fills, in its order
  std::vector<int> filled;  // identity and columns with a default
  bool named = false;       // the statement has a column list
  int identity = -1;
  bool explicitIdentity = false;
  bool singleRow = false;
};

namespace {

std::vector<const ColumnInfo*> targetColumns(const TableInfo& table, const std::vector<int>& ordinals) {
  std::vector<const ColumnInfo*> targets;
  targets.reserve(ordinals.size());
  for (const int ordinal : ordinals) targets.push_back(&table.columns[static_cast<std::size_t>(ordinal)]);
  return targets;
}

Error valueCount(bool named, std::size_t columns, std::size_t values) {
  if (!named) return Error(213, "Column name or number of supplied values does not match table definition.");
  const bool fewer = values < columns;
  return Error(fewer ? 109 : 110,
               std::string("There are ") + (fewer ? "more" : "fewer") +
                   " columns in the INSERT statement than values specified in the VALUES clause. "
                   "The number of values in the VALUES clause must match the number of columns "
                   "specified in the INSERT statement.");
}

}  // namespace

bool Executor::identityInsertOn(const std::string& database, const TableInfo& table) const {
  return identityInsert_ == foldName(database) + "." + foldName(table.name);
}

void Executor::insertColumns(const InsertStatement& insert, const Source& target, InsertShape& shape) {
  const TableInfo& table = *shape.table;
  shape.identity = table.identityColumn();
  shape.named = !insert.columns.empty();
  const bool open = identityInsertOn(shape.database, table);
  std::vector<bool> seen(table.columns.size(), false);
  if (insert.defaultValues) {
    // every column fills itself
  } else if (!shape.named) {
    for (const SourceColumn& column : target.columns)
      if (const int ordinal = target.ordinalOf(column.info.name); ordinal != shape.identity)
        shape.given.push_back(ordinal);
  }
  for (const std::string& name : insert.columns) {
    const int ordinal = target.ordinalOf(name);
    if (ordinal < 0) throw Error(207, "Invalid column name '" + name + "'.");
    if (seen[static_cast<std::size_t>(ordinal)])
      throw Error(264,
                  "The column name '" + name +
                      "' is specified more than once in the SET clause or column list of an INSERT. A column "
                      "cannot be assigned more than one value in the same clause. Modify the clause to make "
                      "sure that a column is updated only once. If this statement updates or inserts columns "
                      "into a view, column aliasing can conceal the duplication in your code.");
    seen[static_cast<std::size_t>(ordinal)] = true;
    shape.given.push_back(ordinal);
  }
  shape.explicitIdentity =
      std::find(shape.given.begin(), shape.given.end(), shape.identity) != shape.given.end() &&
      shape.identity >= 0;
  if (shape.explicitIdentity && !open)
    throw Error(544, "Cannot insert explicit value for identity column in table '" + table.name +
                         "' when IDENTITY_INSERT is set to OFF.");
  if (!shape.explicitIdentity && open && shape.identity >= 0)
    throw Error(shape.named ? 545 : 8101,
                shape.named
                    ? "Explicit value must be specified for identity column in table '" + table.name +
                          "' when IDENTITY_INSERT is set to ON."
                    : "An explicit value for the identity column in table '" + table.name +
                          "' can only be specified when a column list is used and IDENTITY_INSERT is ON.");
  for (int i = 0; i < static_cast<int>(table.columns.size()); ++i) {
    if (std::find(shape.given.begin(), shape.given.end(), i) != shape.given.end()) continue;
    const ColumnInfo& column = table.columns[static_cast<std::size_t>(i)];
    // A NOT NULL column that came with a default, later dropped, still has it in SQLite's eyes.
    if (i == shape.identity || !column.defaultText.empty() || !column.nullable) shape.filled.push_back(i);
  }
}

// The identity's next value or the column's default; the default's literals are its own.
std::string Executor::fillColumn(const InsertShape& shape, int ordinal, Binder& binder) {
  const ColumnInfo& column = shape.table->columns[static_cast<std::size_t>(ordinal)];
  if (ordinal == shape.identity)
    return shape.singleRow ? binder.systemParameter(SystemValue::NextIdentity, column.type).sql
                           : "z_identity()";
  if (column.defaultText.empty()) return "NULL";
  const ExprPtr value = parseExpression(column.defaultText);
  return binder.bindDefault(*value, column).sql;
}

std::string Executor::insertValues(const InsertStatement& insert, InsertShape& shape, Binder& binder) {
  const auto targets = targetColumns(*shape.table, shape.given);
  shape.singleRow = insert.values.size() <= 1;
  std::string sql = " VALUES";
  static const std::vector<ExprPtr> none;
  const std::size_t rows = std::max<std::size_t>(1, insert.values.size());
  for (std::size_t row = 0; row < rows; ++row) {
    const std::vector<ExprPtr>& values = insert.defaultValues ? none : insert.values[row];
    if (values.size() != targets.size()) throw valueCount(shape.named, targets.size(), values.size());
    std::string list;
    for (std::size_t i = 0; i < values.size(); ++i) {
      if (values[i]->kind == Expr::Kind::Default)
        list += "," + fillColumn(shape, shape.given[i], binder);
      else
        list += "," + binder.assignTo(binder.bindValue(*values[i], nullptr), *targets[i]).sql;
    }
    for (const int ordinal : shape.filled) list += "," + fillColumn(shape, ordinal, binder);
    if (list.empty()) list = ",NULL";
    sql += (row ? ",(" : "(") + list.substr(1) + ")";
  }
  return sql;
}

std::string Executor::insertSelect(const InsertStatement& insert, InsertShape& shape, Binder& binder) {
  const BoundSelect source =
      binder.bindSource(*insert.select, targetColumns(*shape.table, shape.given), shape.named);
  if (source.columns.size() != shape.given.size()) {
    if (!shape.named) throw valueCount(false, shape.given.size(), source.columns.size());
    const bool fewer = source.columns.size() < shape.given.size();
    throw Error(fewer ? 120 : 121, std::string("The select list for the INSERT statement contains ") +
                                       (fewer ? "fewer" : "more") +
                                       " items than the insert list. The number of SELECT values must match "
                                       "the number of INSERT columns.");
  }
  if (shape.filled.empty()) return " " + source.sql;
  std::string extra;
  for (const int ordinal : shape.filled) extra += ", " + fillColumn(shape, ordinal, binder);
  return " SELECT s.*" + extra + " FROM (" + source.sql + ") AS s";
}

std::unique_ptr<CompiledInsert> Executor::compileInsert(const InsertStatement& insert) {
  Binder binder(bindContext());
  binder.enterCommon(insert.with);
  Scope scope;
  auto made = std::make_unique<CompiledInsert>();
  InsertShape shape;
  const Source& target = binder.bindTarget(insert.target, scope);
  binder.needTarget(target, Action::Insert);
  shape.table = target.table;
  shape.database = target.tableDatabase;
  shape.sqlTable = binder.sqlName(*target.table, shape.database);
  insertColumns(insert, target, shape);

  const std::string rows =
      insert.select ? insertSelect(insert, shape, binder) : insertValues(insert, shape, binder);
  std::string names;
  std::vector<int> all = shape.given;
  all.insert(all.end(), shape.filled.begin(), shape.filled.end());
  if (all.empty()) all.push_back(0);
  for (const int ordinal : all)
    names +=
        (names.empty() ? "" : ",") + quoteName(shape.table->columns[static_cast<std::size_t>(ordinal)].name);
  std::string sql = "INSERT INTO " + shape.sqlTable + "(" + names + ")" + rows;

  made->catalog = store_.catalog(shape.database);
  made->table = made->catalog->tables.find(foldName(shape.table->name));
  made->tableDatabase = shape.database;
  made->makesIdentity = shape.identity >= 0 && !shape.explicitIdentity;
  if (shape.explicitIdentity) made->identityInput = shape.identity;
  made->firesTriggers = std::any_of(made->table->triggers.begin(), made->table->triggers.end(),
                                    [](const auto& trigger) { return trigger->onInsert; });
  made->singleRow = shape.singleRow;
  made->constrained =
      isConstrained(*made->table, *made->catalog, TriggerEvent::Insert) || !target.checked.empty();
  // One row is known by its number without RETURNING, which costs SQLite a temporary table.
  if (((made->firesTriggers || made->constrained) && !made->singleRow) || shape.explicitIdentity)
    sql += " RETURNING rowid";
  if (shape.explicitIdentity)
    sql += "," + quoteName(shape.table->columns[static_cast<std::size_t>(shape.identity)].name);
  made->insert = Prepared(store_.handle(), binder.finish(sql));
  if (!target.checked.empty())
    prepareViewCheck(made->viewCheck, target, triggerTables(made->table, shape.database), binder);
  finishCompile(*made, binder);
  return made;
}

void Executor::runPrepared(Prepared& prepared, const DatabaseCatalog& catalog, const char* verb) {
  PreparedUse use(prepared);
  int constraint = 0;
  while (prepared.step(&constraint)) {
  }
  if (constraint) throw constraintError(catalog, sqlite3_errmsg(store_.handle()), verb);
}

// Runs the statement, gathers the new rows and takes down the identity values.
void Executor::insertRows(CompiledInsert& plan, std::vector<std::int64_t>* rows) {
  const IdentityRun outside = identityRun_;
  identityRun_ = {};
  identityRun_.table = plan.table.get();
  identityRun_.database = plan.tableDatabase;
  if (plan.makesIdentity)
    identityRun_.step = plan.table->columns[static_cast<std::size_t>(plan.table->identityColumn())].step;
  struct Restore {
    Store& store;
    IdentityRun& now;
    const IdentityRun& before;
    ~Restore() {
      if (now.last != now.first) spendIdentity(store, now.database, *now.table, now.last);
      now = before;
    }
  } restore{store_, identityRun_, outside};

  bindParameters(plan.insert);
  const ChangeNote note(store_);
  PreparedUse use(plan.insert);
  int constraint = 0;
  Datum explicitLast;
  std::optional<std::int64_t> furthest;
  while (plan.insert.step(&constraint)) {
    if (rows) rows->push_back(sqlite3_column_int64(plan.insert.get(), 0));
    if (plan.identityInput < 0) continue;
    const std::int64_t value = sqlite3_column_int64(plan.insert.get(), 1);
    explicitLast = value;
    furthest = furthest ? std::max(*furthest, value) : value;
  }
  if (constraint) throw constraintError(*plan.catalog, sqlite3_errmsg(store_.handle()), "INSERT");
  rowCount_ = sqlite3_changes64(store_.handle());
  if (rows && plan.singleRow && plan.identityInput < 0)
    rows->push_back(sqlite3_last_insert_rowid(store_.handle()));
  if (furthest) noteIdentity(store_, plan.tableDatabase, *plan.table, *furthest);
  if (identityRun_.used && identityRun_.last != identityRun_.first)
    noteIdentity(store_, plan.tableDatabase, *plan.table, identityRun_.last);
  if (plan.table->identityColumn() < 0) identity_ = Datum();
  if (!furthest && !identityRun_.used) return;
  identity_ = furthest ? explicitLast : Datum(identityRun_.last);
  (nesting_ > 0 || frame_->procedure ? frame_->scopeIdentity : topIdentity_) = identity_;
}

void Executor::runInsert(const InsertStatement& insert) {
  lockAhead(insert.target);
  // Whether an identity column must or may not be given is part of the plan.
  CompiledInsert& plan = compiled<CompiledInsert>(&insert, [&] { return compileInsert(insert); });
  if (plan.makesIdentity == identityInsertOn(plan.tableDatabase, *plan.table) &&
      plan.table->identityColumn() >= 0) {
    frame_->plan->compiled.erase(&insert);
    return runInsert(insert);
  }
  // Inside a transaction a single row needs no level of its own: should it be refused, its identity value
  // is spent all the same.
  const bool alone = plan.makesIdentity ? levels_ > 0 && plan.singleRow : plan.identityInput < 0;
  if (!plan.firesTriggers && !plan.constrained && alone) {
    levels_ > 0 ? store_.writeLock(plan.tableDatabase) : store_.expectWrite(plan.tableDatabase);
    insertRows(plan, nullptr);
  } else {
    std::optional<TriggerTables> tables;
    if (plan.constrained ||
        (plan.firesTriggers && !triggersFor(*plan.table, plan.tableDatabase, TriggerEvent::Insert).empty()))
      tables = triggerTables(plan.table, plan.tableDatabase);
    Transaction transaction(*this);
    store_.writeLock(plan.tableDatabase);
    std::vector<std::int64_t> rows;
    insertRows(plan, &rows);
    if (tables) {
      const std::int64_t count = rowCount_;
      copyInserted(*tables, rows);
      testView(plan.viewCheck);
      std::vector<Fired> none;
      if (plan.constrained) keepRules(*tables, TriggerEvent::Insert, nullptr, "INSERT", none);
      fire(*tables, TriggerEvent::Insert, nullptr);
      rowCount_ = count;
    }
    transaction.commit();
  }
  told(Command::Insert, true);
}

}  // namespace engine
