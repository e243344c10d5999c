#include <algorithm>

#include "engine/catalog.h"
#include "engine/execute/executor.h"
#include "engine/language.h"
#include "engine/value.h"

namespace engine {

// An UPDATE or DELETE on its way to SQLite.
struct Executor::ChangeShape {
  Scope scope;
  std::size_t target = 0;  // of scope.sources
  std::string sqlTable;
  std::string handle;               // of the target
  std::string from;                 // FROM with the target in it; empty: the plain form serves
  std::string where;                // with its WHERE
  std::string limit;                // TOP
  std::vector<std::string> names;   // columns set, quoted
  std::vector<std::string> values;  // and what to
  bool viaRows = false;             // values are gathered for all rows before the first is written
};

namespace {

bool readsVariables(const Expr& expr) {
  if (expr.kind == Expr::Kind::Variable) return true;
  const auto inside = [](const ExprPtr& e) { return e && readsVariables(*e); };
  if (inside(expr.left) || inside(expr.right)) return true;
  return std::any_of(expr.args.begin(), expr.args.end(), inside);
}

// The entry of FROM that an UPDATE or DELETE means by its target: by alias or name, else the only one
// of that table. -1: none, the target stands beside FROM.
int findTarget(const Scope& scope, const ObjectName& target, const std::string& database) {
  const std::string name = foldName(target.object);
  int byTable = -1, count = 0;
  for (std::size_t i = 0; i < scope.sources.size(); ++i) {
    const Source& source = scope.sources[i];
    if (source.alias == name &&
        (source.aliased ? target.database.empty() : source.database == foldName(database)))
      return static_cast<int>(i);
    if (source.table && foldName(source.table->name) == name &&
        foldName(source.tableDatabase) == foldName(database)) {
      byTable = static_cast<int>(i);
      ++count;
    }
  }
  return count == 1 ? byTable : -1;
}

std::string joined(const std::vector<std::string>& parts) {
  std::string text;
  for (const std::string& part : parts) text += (text.empty() ? "" : ", ") + part;
  return text;
}

std::string columnList(const TableInfo& table) {
  std::string list;
  for (const ColumnInfo& column : table.columns) list += (list.empty() ? "" : ",") + quoteName(column.name);
  return list;
}

}  // namespace

void Executor::bindChangeTarget(const ObjectName& target,
                                const std::vector<std::unique_ptr<TableSource>>& from, const Expr* where,
                                const Expr* top, Action action, ChangeShape& shape, Binder& binder) {
  if (from.empty()) {
    binder.bindTarget(target, shape.scope);
  } else {
    shape.from = binder.bindFrom(from, shape.scope);
    const std::string database = target.database.empty() ? context_.database : target.database;
    int found = findTarget(shape.scope, target, database);
    if (found < 0) {
      const Source& added = binder.bindTarget(target, shape.scope);
      found = static_cast<int>(shape.scope.sources.size()) - 1;
      shape.from =
          binder.sqlName(*added.table, added.tableDatabase) + " AS " + added.handle + ", " + shape.from;
    }
    shape.target = static_cast<std::size_t>(found);
  }
  const Source& source = shape.scope.sources[shape.target];
  if (!source.table)
    throw Error(4406, "'" + target.object + "' is not a table whose rows can be changed beside FROM.");
  binder.needTarget(source, action);
  shape.handle = source.handle;
  shape.sqlTable = binder.sqlName(*source.table, source.tableDatabase);
  shape.where = source.rowFilter;
  if (where) {
    const std::string own = binder.bindCondition(*where, &shape.scope).sql;
    shape.where = shape.where.empty() ? own : "(" + shape.where + ") AND (" + own + ")";
  }
  if (!shape.where.empty()) shape.where = " WHERE " + shape.where;
  if (top) shape.limit = binder.topLimit(*top, false, {});
}

void Executor::bindAssignments(const UpdateStatement& update, ChangeShape& shape, Binder& binder) {
  const Source& target = shape.scope.sources[shape.target];
  const TableInfo& table = *target.table;
  std::vector<std::string> before, loose;  // SET @v = expr: evaluated beside the first column
  for (const Assignment& assignment : update.set) {
    std::string variable;
    if (!assignment.variable.empty())
      variable = "z_set(" + std::to_string(variableSlot(assignment.variable)) + ",";
    if (assignment.column.empty()) {
      const BoundExpr value = binder.bindValue(*assignment.value, &shape.scope);
      (shape.names.empty() ? before : loose)
          .push_back(variable + std::to_string(packType(value.type)) + "," + value.sql + ")");
      continue;
    }
    const int ordinal = target.ordinalOf(assignment.column);
    if (ordinal < 0) throw Error(207, "Invalid column name '" + assignment.column + "'.");
    const ColumnInfo& column = table.columns[static_cast<std::size_t>(ordinal)];
    if (column.identity) throw Error(8102, "Cannot update identity column '" + column.name + "'.");
    const std::string name = quoteName(column.name);
    if (std::find(shape.names.begin(), shape.names.end(), name) != shape.names.end())
      throw Error(264,
                  "The column name '" + column.name +
                      "' is specified more than once in the SET clause or column list of an INSERT. A column "
                      "cannot be assigned more than one value in the same clause. Modify the clause to make "
                      "sure that a column is updated only once. If this statement updates or inserts columns "
                      "into a view, column aliasing can conceal the duplication in your code.");
    BoundExpr value;
    if (assignment.value->kind != Expr::Kind::Default) {
      value = binder.assignTo(binder.bindValue(*assignment.value, &shape.scope), column);
    } else if (column.defaultText.empty()) {
      value.sql = "NULL";
    } else {
      const ExprPtr written = parseExpression(column.defaultText);
      value = binder.bindDefault(*written, column);
    }
    shape.viaRows = shape.viaRows || containsSubquery(*assignment.value);
    if (!variable.empty())
      value.sql = variable + std::to_string(packType(column.type)) + "," + value.sql + ")";
    shape.names.push_back(name);
    shape.values.push_back(value.sql);
  }
  if (loose.empty() && before.empty()) return;
  if (shape.names.empty()) {
    shape.names.push_back(quoteName(table.columns[0].name));
    shape.values.push_back(shape.handle + "." + shape.names[0]);
  }
  if (!loose.empty()) shape.values[0] = "z_pick(" + shape.values[0] + "," + joined(loose) + ")";
  if (!before.empty())
    shape.values[0] = "(CASE z_pick(1," + joined(before) + ") WHEN 1 THEN " + shape.values[0] + " END)";
}

// The statements around the change itself, which all name the same rows.
void Executor::finishChange(CompiledChange& plan, const ChangeShape& shape, Binder& binder,
                            TriggerEvent event) {
  const Source& target = shape.scope.sources[shape.target];
  plan.tableDatabase = target.tableDatabase;
  plan.catalog = store_.catalog(target.tableDatabase);
  plan.table = plan.catalog->tables.find(foldName(target.table->name));
  const bool fires =
      std::any_of(plan.table->triggers.begin(), plan.table->triggers.end(),
                  [&](const auto& t) { return event == TriggerEvent::Update ? t->onUpdate : t->onDelete; });
  finishCompile(plan, binder);
  plan.constrained = isConstrained(*plan.table, *plan.catalog, event,
                                   event == TriggerEvent::Update ? &plan.updated : nullptr);
  const bool checked = event == TriggerEvent::Update && !target.checked.empty();
  if (!fires && !plan.constrained && !checked) return;
  const std::string rows = shape.from.empty() ? shape.sqlTable + " AS " + shape.handle : shape.from;
  const TriggerTables tables = triggerTables(plan.table, plan.tableDatabase);
  const std::string sql = "INSERT INTO " + tables.deleted + " SELECT rowid," + columnList(*plan.table) +
                          " FROM " + shape.sqlTable + " WHERE rowid IN (SELECT " + shape.handle +
                          ".rowid FROM " + rows + shape.where + shape.limit + ")";
  plan.capture = Prepared(store_.handle(), binder.finish(sql));
  if (checked) prepareViewCheck(plan.viewCheck, target, tables, binder);
}

std::unique_ptr<CompiledChange> Executor::compileUpdate(const UpdateStatement& update) {
  auto made = std::make_unique<CompiledChange>();
  Binder binder(bindContext());
  binder.enterCommon(update.with, update.maxRecursion);
  ChangeShape shape;
  std::vector<int> slots;
  for (const Assignment& assignment : update.set)
    if (!assignment.variable.empty()) slots.push_back(variableSlot(assignment.variable));
  if (!slots.empty() && std::any_of(update.set.begin(), update.set.end(),
                                    [](const Assignment& a) { return readsVariables(*a.value); }))
    binder.setStepwiseVariables(slots);
  bindChangeTarget(update.target, update.from, update.where.get(), update.top.get(), Action::Update, shape,
                   binder);
  bindAssignments(update, shape, binder);
  const Source& target = shape.scope.sources[shape.target];
  for (const Assignment& assignment : update.set)
    if (const int ordinal = target.ordinalOf(assignment.column); ordinal >= 0)
      made->updated.push_back(ordinal);

  const std::string rows = shape.from.empty() ? shape.sqlTable + " AS " + shape.handle : shape.from;
  std::string source = "SELECT " + shape.handle + ".rowid AS rid";
  for (std::size_t i = 0; i < shape.values.size(); ++i)
    source += ", " + shape.values[i] + " AS v" + std::to_string(i);
  source += " FROM " + rows + shape.where + shape.limit;

  std::string sets;
  const bool plain = shape.from.empty() && shape.limit.empty() && !shape.viaRows;
  for (std::size_t i = 0; i < shape.names.size(); ++i)
    sets += (i ? ", " : "") + shape.names[i] + "=" + (plain ? shape.values[i] : "s.v" + std::to_string(i));
  const std::string sql =
      plain ? "UPDATE " + shape.sqlTable + " AS " + shape.handle + " SET " + sets + shape.where
            : "UPDATE " + shape.sqlTable + " AS u SET " + sets + " FROM (" + source +
                  ") AS s WHERE u.rowid=s.rid";
  made->change = Prepared(store_.handle(), binder.finish(sql));
  made->detour = binder.finish("CREATE TEMP TABLE zb_detour AS " + source);
  finishChange(*made, shape, binder, TriggerEvent::Update);
  return made;
}

std::unique_ptr<CompiledChange> Executor::compileDelete(const DeleteStatement& remove) {
  auto made = std::make_unique<CompiledChange>();
  Binder binder(bindContext());
  binder.enterCommon(remove.with, remove.maxRecursion);
  ChangeShape shape;
  bindChangeTarget(remove.target, remove.from, remove.where.get(), remove.top.get(), Action::Delete, shape,
                   binder);
  std::string sql = "DELETE FROM " + shape.sqlTable;
  if (shape.from.empty() && shape.limit.empty())
    sql += " AS " + shape.handle + shape.where;
  else
    sql += " WHERE rowid IN (SELECT " + shape.handle + ".rowid FROM " +
           (shape.from.empty() ? shape.sqlTable + " AS " + shape.handle : shape.from) + shape.where +
           shape.limit + ")";
  made->change = Prepared(store_.handle(), binder.finish(sql));
  finishChange(*made, shape, binder, TriggerEvent::Delete);
  return made;
}

// SQLite checks a unique index row by row, so that SET id=id+1 stumbles over rows that are still to be
// moved. The rows are then taken out with their new values and put back as a set.
void Executor::detour(CompiledChange& plan) {
  sqlite3* connection = store_.handle();
  Transaction transaction(*this);
  lite::exec(connection, "DROP TABLE IF EXISTS temp.zb_detour");
  lite::exec(connection, "DROP TABLE IF EXISTS temp.zb_moved");
  Prepared gather(connection, plan.detour);
  bindParameters(gather);
  runPrepared(gather, *plan.catalog, "UPDATE");
  const std::string table = store_.attach(plan.tableDatabase) + "." + quoteName(plan.table->name);
  std::string fresh;
  for (std::size_t i = 0; i < plan.table->columns.size(); ++i) {
    const auto set = std::find(plan.updated.begin(), plan.updated.end(), static_cast<int>(i));
    fresh += set == plan.updated.end() ? ", t." + quoteName(plan.table->columns[i].name)
                                       : ", s.v" + std::to_string(set - plan.updated.begin());
  }
  lite::exec(connection, "CREATE TEMP TABLE zb_moved AS SELECT s.rid" + fresh +
                             " FROM temp.zb_detour s JOIN " + table + " t ON t.rowid=s.rid");
  lite::exec(connection, "DELETE FROM " + table + " WHERE rowid IN (SELECT rid FROM temp.zb_detour)");
  Prepared back(
      connection,
      {"INSERT INTO " + table + "(rowid," + columnList(*plan.table) + ") SELECT * FROM temp.zb_moved", {}});
  runPrepared(back, *plan.catalog, "UPDATE");
  rowCount_ = sqlite3_changes64(connection);
  lite::exec(connection, "DROP TABLE temp.zb_detour");
  lite::exec(connection, "DROP TABLE temp.zb_moved");
  transaction.commit();
}

void Executor::changeRows(CompiledChange& plan, TriggerEvent event) {
  bindParameters(plan.change);
  int constraint = 0;
  const ChangeNote note(store_);
  {
    PreparedUse use(plan.change);
    while (plan.change.step(&constraint)) {
    }
    rowCount_ = sqlite3_changes64(store_.handle());
  }
  if (!constraint) return;
  const Error error = constraintError(*plan.catalog, sqlite3_errmsg(store_.handle()),
                                      event == TriggerEvent::Update ? "UPDATE" : "DELETE");
  if (event != TriggerEvent::Update || constraint == SQLITE_CONSTRAINT_NOTNULL) throw error;
  note.forget();
  detour(plan);
}

// The rows that are about to change, as they are; returns how many.
std::int64_t Executor::captureRows(CompiledChange& plan, const TriggerTables& tables, TriggerEvent event) {
  clearTriggerTables(tables, event);
  bindParameters(plan.capture);
  runPrepared(plan.capture, *plan.catalog, "UPDATE");
  return sqlite3_changes64(store_.handle());
}

void Executor::copyUpdated(const TriggerTables& tables) {
  Prepared& copy = internal("INSERT INTO " + tables.inserted + " SELECT rowid" + tables.columns + " FROM " +
                            store_.attach(tables.database) + "." + quoteName(tables.table->name) +
                            " WHERE rowid IN (SELECT zb_rid FROM " + tables.deleted + ")");
  PreparedUse use(copy);
  while (copy.step()) {
  }
}

void Executor::runChange(CompiledChange& plan, TriggerEvent event) {
  const bool updates = event == TriggerEvent::Update;
  if (!plan.constrained && !plan.viewCheck && triggersFor(*plan.table, plan.tableDatabase, event).empty()) {
    levels_ > 0 ? store_.writeLock(plan.tableDatabase) : store_.expectWrite(plan.tableDatabase);
    changeRows(plan, event);
  } else {
    const TriggerTables tables = triggerTables(plan.table, plan.tableDatabase);
    Transaction transaction(*this);
    store_.writeLock(plan.tableDatabase);
    captureRows(plan, tables, event);
    changeRows(plan, event);
    const std::int64_t count = rowCount_;
    if (updates) copyUpdated(tables);
    std::vector<Fired> fired{{tables, event, updates ? &plan.updated : nullptr}};
    testView(plan.viewCheck);
    if (plan.constrained) keepRules(tables, event, fired[0].updated, updates ? "UPDATE" : "DELETE", fired);
    for (auto each = fired.rbegin(); each != fired.rend(); ++each)
      fire(each->tables, each->event, each->updated);
    rowCount_ = count;
    transaction.commit();
  }
  told(event == TriggerEvent::Update ? Command::Update : Command::Delete, true);
}

// A transaction that has read a database can no longer wait for its lock without finding what it read
// overtaken: it takes the lock before the names of the statement are looked up there.
void Executor::lockAhead(const ObjectName& target) {
  if (levels_ == 0 || target.object.starts_with('#')) return;
  const std::string& database = target.database.empty() ? context_.database : target.database;
  if (store_.databaseExists(database) && rights_.in(database).allows(Action::Update))
    store_.writeLock(database);
}

void Executor::runUpdate(const UpdateStatement& update) {
  lockAhead(update.target);
  runChange(compiled<CompiledChange>(&update, [&] { return compileUpdate(update); }), TriggerEvent::Update);
}

void Executor::runDelete(const DeleteStatement& remove) {
  lockAhead(remove.target);
  runChange(compiled<CompiledChange>(&remove, [&] { return compileDelete(remove); }), TriggerEvent::Delete);
}

void Executor::runTruncate(const TruncateStatement& truncate) {
  Binder binder(bindContext());
  Scope scope;
  lockAhead(truncate.table);
  const std::string& database = truncate.table.database;
  rights_.enter(database.empty() ? context_.database : database);
  const auto in = store_.catalog(database.empty() ? context_.database : database);
  if (!in->table(truncate.table.object) && !in->view(truncate.table.object))
    throw Error(4701, "Cannot find the object \"" + truncate.table.object +
                          "\" because it does not exist or you do not have permissions.");
  const Source& source = binder.bindTarget(truncate.table, scope);
  if (!source.view.empty())
    throw Error(4708, "Could not truncate object '" + truncate.table.object + "' because it is not a table.");
  rights_.needAlter(source.tableDatabase, source.table->name);
  const std::string table = binder.sqlName(*source.table, source.tableDatabase);
  const auto catalog = store_.catalog(source.tableDatabase);
  for (const auto& [folded, other] : catalog->tables)
    for (const ForeignKeyInfo& key : other->foreignKeys)
      if (key.table == source.table->id && other->id != key.table)
        throw Error(4712, "Cannot truncate table '" + source.table->name +
                              "' because it is being referenced by a FOREIGN KEY constraint.");
  Transaction transaction(*this);
  store_.writeLock(source.tableDatabase);
  lite::exec(store_.handle(), "DELETE FROM " + table);
  if (source.table->identityColumn() >= 0) resetIdentity(store_, source.tableDatabase, *source.table);
  transaction.commit();
  rowCount_ = 0;
}

}  // namespace engine
