// CHECK and FOREIGN KEY at work. A statement's rows are judged together, after all of them are written: the
// rules are queries over its tables of old and new rows (`deleted`, `inserted`), which SQLite answers by the
// keys' own indexes.
#include <algorithm>

#include "engine/execute/constraint_plan.h"
#include "engine/execute/executor.h"
#include "engine/language.h"

namespace engine {

namespace {

using Pairs = std::vector<std::pair<int, int>>;  // colids here and there

const ColumnInfo& columnOf(const TableInfo& table, int id) {
  return *std::find_if(table.columns.begin(), table.columns.end(),
                       [id](const ColumnInfo& c) { return c.id == id; });
}

int ordinalOf(const TableInfo& table, int id) {
  return static_cast<int>(&columnOf(table, id) - table.columns.data());
}

std::string columnSql(const std::string& handle, const TableInfo& table, int id) {
  return handle + "." + quoteName(columnOf(table, id).name);
}

// here.a=there.x AND here.b=there.y
std::string joinOn(const Pairs& columns, const std::string& here, const TableInfo& table,
                   const std::string& there, const TableInfo& other) {
  std::string on;
  for (const auto& [mine, theirs] : columns)
    on += (on.empty() ? "" : " AND ") + columnSql(there, other, theirs) + "=" + columnSql(here, table, mine);
  return on;
}

std::vector<int> ordinals(const Pairs& columns, const TableInfo& table, bool here) {
  std::vector<int> found;
  for (const auto& [mine, theirs] : columns) found.push_back(ordinalOf(table, here ? mine : theirs));
  return found;
}

std::vector<int> ordinals(const std::vector<int>& columns, const TableInfo& table) {
  std::vector<int> found;
  for (const int column : columns) found.push_back(ordinalOf(table, column));
  return found;
}

std::string place(const std::string& database, const TableInfo& table, const std::string& column) {
  return " The conflict occurred in database \"" + database + "\", table \"dbo." + table.name + "\"" +
         (column.empty() ? "" : ", column '" + column + "'") + ".";
}

std::string conflictOf(const ForeignKeyInfo& key, const TableInfo& table, const TableInfo& other,
                       const std::string& database, bool fromHere) {
  const bool same = table.id == other.id;
  const TableInfo& named = fromHere ? other : table;
  const int column = fromHere ? key.columns.front().second : key.columns.front().first;
  return std::string(fromHere ? (same ? "FOREIGN KEY SAME TABLE" : "FOREIGN KEY")
                              : (same ? "SAME TABLE REFERENCE" : "REFERENCE")) +
         " constraint \"" + key.name + "\"." +
         place(database, named, key.columns.size() == 1 ? columnOf(named, column).name : std::string());
}

std::string conflictOf(const CheckInfo& check, const TableInfo& table, const std::string& database) {
  return "CHECK constraint \"" + check.name + "\"." +
         place(database, table,
               check.columns.size() == 1 ? columnOf(table, check.columns.front()).name : std::string());
}

Error conflict(const char* statement, const std::string& with) {
  return Error(547, std::string("The ") + statement + " statement conflicted with the " + with, 16, 0);
}

// The rows of `rows` whose foreign key points nowhere.
std::string danglingSql(const ForeignKeyInfo& key, const TableInfo& table, const std::string& rows,
                        const TableInfo& other, const std::string& otherSql) {
  std::string given;
  for (const auto& [mine, theirs] : key.columns) given += columnSql("i", table, mine) + " IS NOT NULL AND ";
  return "SELECT 1 FROM " + rows + " AS i WHERE " + given + "NOT EXISTS(SELECT 1 FROM " + otherSql +
         " AS p WHERE " + joinOn(key.columns, "i", table, "p", other) + ") LIMIT 1";
}

bool isTouched(const std::vector<int>& columns, const std::vector<int>* updated) {
  return !updated || columns.empty() || std::any_of(columns.begin(), columns.end(), [&](int column) {
    return std::find(updated->begin(), updated->end(), column) != updated->end();
  });
}

const TableInfo* tableById(const DatabaseCatalog& catalog, std::int64_t id) {
  for (const auto& [folded, table] : catalog.tables)
    if (table->id == id) return table.get();
  return nullptr;
}

}  // namespace

bool isConstrained(const TableInfo& table, const DatabaseCatalog& catalog, TriggerEvent event,
                   const std::vector<int>* updated) {
  if (event != TriggerEvent::Delete) {
    for (const CheckInfo& check : table.checks)
      if (!check.disabled && isTouched(ordinals(check.columns, table), updated)) return true;
    for (const ForeignKeyInfo& key : table.foreignKeys)
      if (!key.disabled && isTouched(ordinals(key.columns, table, true), updated)) return true;
  }
  if (event == TriggerEvent::Insert) return false;
  for (const auto& [folded, other] : catalog.tables)
    for (const ForeignKeyInfo& key : other->foreignKeys)
      if (key.table == table.id && !key.disabled && isTouched(ordinals(key.columns, table, false), updated))
        return true;
  return false;
}

// The rows that break a condition, as a query over `rows` that have the shape of the table.
BoundStatement Executor::checkStatement(const TableInfo& table, const std::string& database,
                                        const std::string& rows, const std::string& condition) {
  BindContext context = bindContext();
  context.database = context.chain = database;
  context.variables = nullptr;
  context.trigger = nullptr;
  context.fixedLiterals = true;
  Binder binder(context);
  Scope scope;
  const std::string handle = binder.bindRows(table, database, scope).handle;
  const ExprPtr parsed = parseCondition(condition);
  return binder.finish("SELECT 1 FROM " + rows + " AS " + handle + " WHERE NOT (" +
                       binder.bindCondition(*parsed, &scope).sql + ") LIMIT 1");
}

void Executor::compileOwnRules(CompiledRules& rules, const TriggerTables& tables,
                               const DatabaseCatalog& catalog) {
  const TableInfo& table = *tables.table;
  for (const CheckInfo& check : table.checks) {
    if (check.disabled) continue;
    RuleTest& test = rules.own.emplace_back();
    test.query =
        Prepared(store_.handle(), checkStatement(table, tables.database, tables.inserted, check.text));
    test.columns = ordinals(check.columns, table);
    test.conflict = conflictOf(check, table, catalog.name);
  }
  const std::string alias = store_.attach(tables.database) + ".";
  for (const ForeignKeyInfo& key : table.foreignKeys) {
    const TableInfo* other = key.disabled ? nullptr : tableById(catalog, key.table);
    if (!other) continue;
    RuleTest& test = rules.own.emplace_back();
    test.query =
        Prepared(store_.handle(),
                 {danglingSql(key, table, tables.inserted, *other, alias + quoteName(other->name)), {}});
    test.columns = ordinals(key.columns, table, true);
    test.conflict = conflictOf(key, table, *other, catalog.name, true);
  }
}

// What happens to the rows of `child` that refer to rows of this table which go or get another key.
void Executor::compileStep(CompiledRules& rules, const TriggerTables& tables, TriggerEvent event,
                           const std::shared_ptr<const TableInfo>& child, const ForeignKeyInfo& key,
                           const std::shared_ptr<const DatabaseCatalog>& catalog) {
  const KeyAction action = event == TriggerEvent::Delete ? key.onDelete : key.onUpdate;
  const TriggerTables rows = triggerTables(child, tables.database);
  const TableInfo& table = *tables.table;
  Binder binder(bindContext());
  RuleStep& step = rules.steps.emplace_back();
  step.removes = event == TriggerEvent::Delete && action == KeyAction::Cascade;
  if (event == TriggerEvent::Update) step.columns = ordinals(key.columns, table, false);
  CompiledChange& change = step.change;
  change.catalog = catalog;
  change.table = child;
  change.tableDatabase = tables.database;

  std::string from = " JOIN " + tables.deleted + " AS d ON " + joinOn(key.columns, "c", *child, "d", table);
  if (event == TriggerEvent::Update) {
    std::string moved;
    for (const auto& [mine, theirs] : key.columns)
      moved += (moved.empty() ? "" : " OR ") + columnSql("n", table, theirs) + " IS NOT " +
               columnSql("d", table, theirs) + " COLLATE BINARY";
    from += " JOIN " + tables.inserted + " AS n ON n.zb_rid=d.zb_rid AND (" + moved + ")";
  }
  const std::string childSql = binder.sqlName(*child, tables.database);
  std::string columns;
  for (const ColumnInfo& column : child->columns) columns += ",c." + quoteName(column.name);
  change.capture = Prepared(store_.handle(), {"INSERT INTO " + rows.deleted + " SELECT c.rowid" + columns +
                                                  " FROM " + childSql + " AS c" + from,
                                              {}});
  if (step.removes) {
    change.change = Prepared(
        store_.handle(),
        {"DELETE FROM " + childSql + " WHERE rowid IN (SELECT zb_rid FROM " + rows.deleted + ")", {}});
  } else {
    std::string values, sets;
    for (std::size_t i = 0; i < key.columns.size(); ++i) {
      const ColumnInfo& column = columnOf(*child, key.columns[i].first);
      std::string value = "NULL";
      if (action == KeyAction::Cascade)
        value = columnSql("n", table, key.columns[i].second);
      else if (action == KeyAction::SetDefault && !column.defaultText.empty())
        value = binder.bindDefault(*parseExpression(column.defaultText), column).sql;
      values += ", " + value + " AS v" + std::to_string(i);
      sets += (i ? ", " : "") + quoteName(column.name) + "=s.v" + std::to_string(i);
      change.updated.push_back(ordinalOf(*child, column.id));
    }
    const std::string source = "SELECT c.zb_rid AS rid" + values + " FROM " + rows.deleted + " AS c" + from;
    change.change =
        Prepared(store_.handle(), binder.finish("UPDATE " + childSql + " AS u SET " + sets + " FROM (" +
                                                source + ") AS s WHERE u.rowid=s.rid"));
    change.detour = binder.finish("CREATE TEMP TABLE zb_detour AS " + source);
  }
  finishCompile(change, binder);
}

void Executor::compileReferences(CompiledRules& rules, const TriggerTables& tables, TriggerEvent event,
                                 const std::shared_ptr<const DatabaseCatalog>& catalog) {
  const TableInfo& table = *tables.table;
  const std::string alias = store_.attach(tables.database) + ".";
  for (const auto& [folded, child] : catalog->tables)
    for (const ForeignKeyInfo& key : child->foreignKeys) {
      if (key.table != table.id || key.disabled) continue;
      const KeyAction action = event == TriggerEvent::Delete ? key.onDelete : key.onUpdate;
      if (action != KeyAction::NoAction) {
        compileStep(rules, tables, event, child, key, catalog);
        continue;
      }
      RuleTest& test = rules.references.emplace_back();
      const std::string childSql = alias + quoteName(child->name), tableSql = alias + quoteName(table.name);
      test.query =
          Prepared(store_.handle(), {"SELECT 1 FROM " + tables.deleted + " AS d JOIN " + childSql +
                                         " AS c ON " + joinOn(key.columns, "c", *child, "d", table) +
                                         " WHERE NOT EXISTS(SELECT 1 FROM " + tableSql + " AS p WHERE " +
                                         joinOn(key.columns, "c", *child, "p", table) + ") LIMIT 1",
                                     {}});
      if (event == TriggerEvent::Update) test.columns = ordinals(key.columns, table, false);
      test.conflict = conflictOf(key, *child, table, catalog->name, false);
    }
}

CompiledRules& Executor::rulesOf(const TriggerTables& tables, TriggerEvent event) {
  std::unique_ptr<CompiledRules>& slot =
      rules_[tables.deleted + "/" + std::to_string(static_cast<int>(event))];
  if (slot && slot->stamp == store_.catalogStamp()) return *slot;
  auto made = std::make_unique<CompiledRules>();
  const auto catalog = store_.catalog(tables.database);
  if (event != TriggerEvent::Delete) compileOwnRules(*made, tables, *catalog);
  if (event != TriggerEvent::Insert) compileReferences(*made, tables, event, catalog);
  made->stamp = store_.catalogStamp();
  slot = std::move(made);
  return *slot;
}

void Executor::testRules(std::vector<RuleTest>& tests, const std::vector<int>* updated,
                         const char* statement) {
  for (RuleTest& test : tests) {
    if (!isTouched(test.columns, updated)) continue;
    bindParameters(test.query);
    PreparedUse use(test.query);
    if (test.query.step()) throw conflict(statement, test.conflict);
  }
}

// Old and new rows stand in `tables`. What fires for the tables that are changed on the way is added to
// `fired`; it fires once everything is done, the last change first.
void Executor::keepRules(const TriggerTables& tables, TriggerEvent event, const std::vector<int>* updated,
                         const char* statement, std::vector<Fired>& fired) {
  if (!isConstrained(*tables.table, *store_.catalog(tables.database), event, updated)) return;
  CompiledRules& rules = rulesOf(tables, event);
  testRules(rules.own, updated, statement);
  for (RuleStep& step : rules.steps) {
    if (!isTouched(step.columns, updated)) continue;
    CompiledChange& change = step.change;
    const TriggerEvent next = step.removes ? TriggerEvent::Delete : TriggerEvent::Update;
    const TriggerTables rows = triggerTables(change.table, change.tableDatabase);
    if (captureRows(change, rows, next) == 0) continue;
    changeRows(change, next);
    if (next == TriggerEvent::Update) copyUpdated(rows);
    const std::vector<int>* set = step.removes ? nullptr : &change.updated;
    fired.push_back({rows, next, set});
    keepRules(rows, next, set, statement, fired);
  }
  testRules(rules.references, updated, statement);
}

// The rows that a view made WITH CHECK OPTION would not show, among the new ones.
void Executor::prepareViewCheck(Prepared& check, const Source& target, const TriggerTables& tables,
                                Binder& binder) {
  if (target.checked.empty()) return;
  check =
      Prepared(store_.handle(), binder.finish("SELECT 1 FROM " + tables.inserted + " AS " + target.handle +
                                              " WHERE NOT coalesce((" + target.checked + "),0) LIMIT 1"));
}

void Executor::testView(Prepared& check) {
  if (!check) return;
  bindParameters(check);
  PreparedUse use(check);
  if (check.step())
    throw Error(
        550,
        "The attempted insert or update failed because the target view either specifies WITH CHECK OPTION or "
        "spans a view that specifies WITH CHECK OPTION and one or more rows resulting from the operation did "
        "not qualify under the CHECK OPTION constraint.");
}

// For ALTER TABLE: 547 where a row of the table breaks the rule. Without `rows` only the names are looked at.
void Executor::verifyRule(const std::string& database, const TableInfo& table, const CheckInfo* check,
                          const ForeignKeyInfo* key, bool rows) {
  const auto catalog = store_.catalog(database);
  const std::string alias = store_.attach(database) + ".", tableSql = alias + quoteName(table.name);
  Prepared query;
  std::string with;
  if (check) {
    query = Prepared(store_.handle(), checkStatement(table, database, tableSql, check->text));
    with = conflictOf(*check, table, catalog->name);
  } else {
    const TableInfo* other = key->table == table.id ? &table : tableById(*catalog, key->table);
    if (!other) return;
    query = Prepared(store_.handle(),
                     {danglingSql(*key, table, tableSql, *other, alias + quoteName(other->name)), {}});
    with = conflictOf(*key, table, *other, catalog->name, true);
  }
  bindParameters(query);
  if (rows && query.step()) throw conflict("ALTER TABLE", with);
}

}  // namespace engine
