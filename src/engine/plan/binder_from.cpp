#include <algorithm>

#include "engine/catalog.h"
#include "engine/language.h"
#include "engine/plan/binder.h"

namespace engine {
namespace {

constexpr int maxViewDepth = 32;

Error invalidObject(const ObjectName& name) {
  return Error(208, "Invalid object name '" + written(name) + "'.");
}

bool isKeyPart(const TableInfo& table, int column) {
  for (const IndexInfo& index : table.indexes)
    if (index.primaryKey)
      return std::any_of(index.parts.begin(), index.parts.end(),
                         [&](const IndexPart& part) { return part.column == column; });
  return false;
}

}  // namespace

void Binder::addTableColumns(const TableInfo& table, const std::string& database, Source& source) {
  source.columns.reserve(table.columns.size());
  for (std::size_t i = 0; i < table.columns.size(); ++i) {
    const ColumnInfo& info = table.columns[i];
    SourceColumn column;
    column.key = foldName(info.name);
    column.sql = source.handle + "." + quoteName(info.name);
    column.info = {info.name, info.type,  info.nullable, info.identity, isKeyPart(table, static_cast<int>(i)),
                   database,  table.name, info.name};
    column.ordinal = static_cast<int>(i);
    source.columns.push_back(std::move(column));
  }
}

namespace {

void addDerivedColumn(const ResultColumn& from, const std::string& name, std::size_t position,
                      Source& source) {
  SourceColumn column;
  column.key = foldName(name);
  column.sql = source.handle + ".c" + std::to_string(position);
  column.info.name = name;
  column.info.type = from.type;
  column.info.nullable = from.nullable;
  source.columns.push_back(std::move(column));
}

void allowNull(Scope& scope, std::size_t from, std::size_t to) {
  for (std::size_t i = from; i < to; ++i)
    for (SourceColumn& column : scope.sources[i].columns) column.info.nullable = true;
}

void checkDuplicate(const Scope& scope, const Source& added) {
  for (const Source& source : scope.sources)
    if (source.alias == added.alias && source.aliased && added.aliased)
      throw Error(1011,
                  "The correlation name '" + added.shown + "' is specified multiple times in a FROM clause.");
    else if (source.alias == added.alias && source.aliased == added.aliased &&
             source.database == added.database)
      throw Error(1013, "The objects \"" + source.shown + "\" and \"" + added.shown +
                            "\" in the FROM clause have the same exposed names. Use correlation names to "
                            "distinguish them.");
}

bool hasOuterJoin(const TableSource& source) {
  if (source.kind != TableSource::Kind::Join) return false;
  return source.join == JoinKind::Right || source.join == JoinKind::Full || hasOuterJoin(*source.left) ||
         hasOuterJoin(*source.right);
}

// Whether the text has a column of the source `handle`.
bool mentions(const std::string& sql, const std::string& handle) {
  const std::string prefix = handle + ".";
  for (auto at = sql.find(prefix); at != sql.npos; at = sql.find(prefix, at + 1)) {
    const char before = at > 0 ? sql[at - 1] : ' ';
    const bool inName = before == '_' || (before >= '0' && before <= '9') || (before >= 'a' && before <= 'z');
    if (!inName) return true;
  }
  return false;
}

// A query in FROM. Merged into joins with RIGHT or FULL, SQLite takes a column of it that is a constant for
// a value even where its row is missing; into those with LEFT, a column of a query around.
std::string inBrackets(BoundSelect& select, const Scope& scope) {
  const bool plain = std::all_of(select.columns.begin(), select.columns.end(),
                                 [](const ResultColumn& column) { return !column.baseColumn.empty(); });
  if ((!plain && scope.outerJoins) || select.outerColumn) keepApart(select);
  return "(" + select.sql + ")";
}

}  // namespace

std::string written(const ObjectName& name) {
  if (name.object.starts_with('#') || name.object.starts_with('@')) return name.object;
  std::string text = name.database;
  if (!name.database.empty()) text += '.';
  if (!name.owner.empty() || !name.database.empty()) text += name.owner + '.';
  return text + name.object;
}

Error columnListError(const std::string& name, bool more) {
  return Error(more ? 8158 : 8159, "'" + name + "' has " + (more ? "more" : "fewer") +
                                       " columns than were specified in the column list.");
}

std::string Binder::resolveDatabase(const ObjectName& name) {
  const std::string& database = name.database.empty() ? context_.database : name.database;
  if (foldName(database) == temporaryDatabase) return temporaryDatabase;
  if (!name.database.empty() && !context_.store->databaseExists(name.database)) {
    if (const auto trouble = context_.store->instance().trouble(foldName(name.database)))
      throw Error(*trouble);
    throw invalidObject(name);
  }
  if (context_.access && foldName(database) != foldName(context_.chain)) context_.access->enter(database);
  return database;
}

// The name under which a table lies in its database.
std::string Binder::storedName(const ObjectName& name) const {
  if (name.database != temporaryDatabase) return name.object;
  if (viewQuery_)
    throw Error(
        4508,
        "Views or functions are not allowed on temporary tables. Table names that begin with '#' denote "
        "temporary tables.");
  if (!name.object.starts_with('@')) return name.object;
  if (!context_.variables || !context_.variables->hasTable(name.object))
    throw Error(1087, "Must declare the table variable \"" + name.object + "\".", 15);
  return name.object + context_.tableSuffix;
}

void Binder::need(const std::string& database, const std::string& object, Action action) const {
  if (context_.access && foldName(database) != foldName(context_.chain))
    context_.access->need(database, object, action);
}

std::string Binder::sqlName(const TableInfo& table, const std::string& database) {
  databases_.insert(foldName(database));
  return context_.store->attach(database) + "." + quoteName(table.name);
}

const TableInfo* Binder::pseudoTable(const ObjectName& name, std::string& sql) const {
  if (!context_.trigger || !name.database.empty() || !name.owner.empty()) return nullptr;
  const std::string key = foldName(name.object);
  if (key != "inserted" && key != "deleted") return nullptr;
  sql = key == "inserted" ? context_.trigger->inserted : context_.trigger->deleted;
  return context_.trigger->table.get();
}

Source& Binder::bindTarget(const ObjectName& name, Scope& scope) {
  if (findCommon(name) >= 0)
    throw Error(50000, "Changing rows through the common table expression '" + name.object +
                           "' is not supported by the embedded server.");
  const std::string database = resolveDatabase(name);
  if (isSystemSchema(name.owner) && findSchemaView(name.owner, name.object))
    throw Error(259, "Ad hoc updates to system catalogs are not allowed.");
  if (!isKnownOwner(name.owner)) throw invalidObject(name);
  catalogs_.push_back(context_.store->catalog(database));
  if (!catalogs_.back()->table(storedName(name)) && !catalogs_.back()->view(name.object)) {
    if (findSystemTable(name.object)) throw Error(259, "Ad hoc updates to system catalogs are not allowed.");
    throw invalidObject(name);
  }
  Source source;
  source.alias = foldName(name.object);
  source.shown = source.title = written(name);
  source.database = foldName(database);
  source.handle = newHandle();
  source.target = true;
  bindUpdatable(name, database, source);
  scope.sources.push_back(std::move(source));
  return scope.sources.back();
}

Source& Binder::bindRows(const TableInfo& table, const std::string& database, Scope& scope) {
  Source source;
  source.alias = foldName(table.name);
  source.shown = source.title = table.name;
  source.database = foldName(database);
  source.handle = newHandle();
  source.table = &table;
  source.tableDatabase = database;
  addTableColumns(table, database, source);
  scope.sources.push_back(std::move(source));
  return scope.sources.back();
}

std::string Binder::bindFrom(const std::vector<std::unique_ptr<TableSource>>& from, Scope& scope) {
  std::string sql;
  for (const auto& source : from) scope.outerJoins = scope.outerJoins || hasOuterJoin(*source);
  outerJoins_ = outerJoins_ || scope.outerJoins;
  for (const auto& source : from) {
    const FromPiece piece = bindTableSource(*source, scope);
    // A × (B left join C) is (A × B) left join C, since an ON sees nothing of A; RIGHT and FULL are not.
    const bool bracket = piece.outer && !sql.empty();
    if (!sql.empty()) sql += ", ";
    sql += bracket ? "(" + piece.sql + ")" : piece.sql;
  }
  return sql;
}

Binder::FromPiece Binder::bindTableSource(const TableSource& source, Scope& scope) {
  switch (source.kind) {
    case TableSource::Kind::Table:
      return bindNamed(source, scope);
    case TableSource::Kind::Derived:
      return bindDerived(source, scope);
    case TableSource::Kind::Join:
      break;
  }
  return bindJoin(source, scope);
}

Binder::FromPiece Binder::bindJoin(const TableSource& source, Scope& scope) {
  const std::size_t first = scope.sources.size();
  const FromPiece left = bindTableSource(*source.left, scope);
  const std::size_t middle = scope.sources.size();
  const FromPiece right = bindTableSource(*source.right, scope);
  const char* word = " JOIN ";
  if (source.join == JoinKind::Left) word = " LEFT JOIN ";
  if (source.join == JoinKind::Right) word = " RIGHT JOIN ";
  if (source.join == JoinKind::Full) word = " FULL JOIN ";
  FromPiece piece;
  piece.compound = true;
  piece.outer = left.outer || right.outer || source.join == JoinKind::Right || source.join == JoinKind::Full;
  piece.sql = left.sql + word + (right.compound ? "(" + right.sql + ")" : right.sql);
  if (source.on) {
    const std::size_t outside = scope.visibleFrom;
    scope.visibleFrom = first;
    piece.sql += " ON " + bindOn(*source.on, scope, first, middle);
    scope.visibleFrom = outside;
  }
  // The side that may find no partner gives NULLs.
  if (source.join == JoinKind::Right || source.join == JoinKind::Full) allowNull(scope, first, middle);
  if (source.join == JoinKind::Left || source.join == JoinKind::Full)
    allowNull(scope, middle, scope.sources.size());
  return piece;
}

// A term without a column of its join is a constant to SQLite, which asks it once and before all rows: where
// it does not hold, the rows that RIGHT and FULL joins owe behind it are lost. Such terms are tied to a
// column.
std::string Binder::bindOn(const Expr& on, Scope& scope, std::size_t first, std::size_t middle) {
  if (!scope.outerJoins) return bindCondition(on, &scope).sql;
  if (on.kind == Expr::Kind::Binary && on.binary == BinaryOp::And)
    return "(" + bindOn(*on.left, scope, first, middle) + " AND " + bindOn(*on.right, scope, first, middle) +
           ")";
  const std::string sql = bindCondition(on, &scope).sql;
  for (std::size_t i = first; i < scope.sources.size(); ++i)
    if (mentions(sql, scope.sources[i].handle)) return sql;
  const Source& source = scope.sources[middle];
  return source.columns.empty() ? sql : "z_tied(" + sql + "," + source.columns[0].sql + ")";
}

Binder::FromPiece Binder::bindNamed(const TableSource& at, Scope& scope) {
  if (const int common = findCommon(at.name); common >= 0)
    return bindCommon(at, static_cast<std::size_t>(common), scope);
  Source source;
  source.aliased = !at.alias.empty();
  source.alias = foldName(source.aliased ? at.alias : at.name.object);
  source.title = written(at.name);
  source.shown = source.aliased ? at.alias : source.title;
  source.handle = newHandle();
  FromPiece piece;
  if (const TableInfo* pseudo = pseudoTable(at.name, piece.sql)) {
    addTableColumns(*pseudo, context_.trigger->database, source);
    for (SourceColumn& column : source.columns) {
      column.info.baseDatabase.clear();
      column.info.baseTable.clear();
      column.info.baseColumn.clear();
    }
  } else {
    const std::string database = resolveDatabase(at.name);
    const bool system = isSystemSchema(at.name.owner);
    if (!system && !isKnownOwner(at.name.owner)) throw invalidObject(at.name);
    if (!source.aliased) source.database = foldName(database);
    catalogs_.push_back(context_.store->catalog(database));
    const auto catalog = catalogs_.back();
    if (system) {
      if (!bindSystemTable(database, at.name, source, piece.sql)) throw invalidObject(at.name);
    } else if (const TableInfo* table = catalog->table(storedName(at.name))) {
      need(database, table->name, Action::Select);
      piece.sql = sqlName(*table, database);
      source.table = table;
      source.tableDatabase = database;
      addTableColumns(*table, catalog->name, source);
    } else if (const ViewInfo* view = catalog->view(at.name.object)) {
      need(database, view->name, Action::Select);
      piece.sql = bindView(*view, database, source, scope);
    } else if (!bindSystemTable(database, at.name, source, piece.sql)) {
      throw invalidObject(at.name);
    }
  }
  checkDuplicate(scope, source);
  piece.sql += " AS " + source.handle;
  scope.sources.push_back(std::move(source));
  return piece;
}

Binder::FromPiece Binder::bindDerived(const TableSource& at, Scope& scope) {
  CoreShape shape;
  shape.subquery = true;
  return addDerived(bindSelect(*at.select, scope.parent, shape), at.alias, at.alias, at.columnAliases, scope);
}

Binder::FromPiece Binder::addDerived(BoundSelect select, const std::string& title, const std::string& alias,
                                     const std::vector<std::string>& columns, Scope& scope) {
  Source source;
  source.aliased = true;
  source.handle = newHandle();
  source.alias = alias.empty() ? source.handle : foldName(alias);
  source.shown = source.title = alias;
  if (!columns.empty() && columns.size() != select.columns.size())
    throw columnListError(title, select.columns.size() > columns.size());
  for (std::size_t i = 0; i < select.columns.size(); ++i) {
    const std::string& name = columns.empty() ? select.columns[i].name : columns[i];
    if (name.empty() && !title.empty())
      throw Error(
          8155, "No column name was specified for column " + std::to_string(i + 1) + " of '" + title + "'.");
    const auto same = std::count_if(source.columns.begin(), source.columns.end(), [&](const SourceColumn& c) {
      return !name.empty() && c.key == foldName(name);
    });
    if (same > 0 && !title.empty())
      throw Error(8156, "The column '" + name + "' was specified multiple times for '" + title + "'.");
    addDerivedColumn(select.columns[i], name, i, source);
  }
  checkDuplicate(scope, source);
  FromPiece piece;
  piece.sql = inBrackets(select, scope) + " AS " + source.handle;
  scope.sources.push_back(std::move(source));
  return piece;
}

// What the recursive part of a common table expression has of itself: the rows of the level before.
Binder::FromPiece Binder::bindRecursiveReference(const TableSource& at, CommonEntry& entry, Scope& scope) {
  Source source;
  source.aliased = true;
  source.handle = newHandle();
  source.shown = source.title = at.alias.empty() ? entry.table->name : at.alias;
  source.alias = foldName(source.shown);
  for (std::size_t i = 0; i < entry.columns.size(); ++i)
    addDerivedColumn(entry.columns[i], entry.columns[i].name, i, source);
  checkDuplicate(scope, source);
  entry.level = source.handle + ".zl";
  FromPiece piece;
  piece.sql = entry.handle + " AS " + source.handle;
  scope.sources.push_back(std::move(source));
  return piece;
}

// System tables are subqueries too, whose columns keep their own names.
bool Binder::bindSystemTable(const std::string& in, const ObjectName& name, Source& source,
                             std::string& sql) {
  constexpr const char* master = "master";
  const bool named = isSystemSchema(name.owner);
  const SystemTable* table = named ? findSchemaView(name.owner, name.object) : findSystemTable(name.object);
  if (!table || (!named && table->masterOnly && foldName(in) != master)) return false;
  const std::string database = table->masterOnly ? master : in;
  if (context_.access) context_.access->needSystem(database, table->name);
  databases_.insert(foldName(database));
  sql = "(" + systemTableSql(*table, context_.store->attach(database)) + ")";
  for (const ViewColumn& viewColumn : table->columns) {
    SourceColumn column;
    column.key = foldName(viewColumn.name);
    column.sql = source.handle + "." + quoteName(viewColumn.name);
    column.info.name = viewColumn.name;
    column.info.type = viewColumn.type;
    column.info.nullable = viewColumn.nullable;
    column.info.naming = viewColumn.type == nameType;
    source.columns.push_back(std::move(column));
  }
  return true;
}

// A view is its query as a derived table, bound in the view's own database. Its columns are those it
// had at creation, whatever * would give now.
std::string Binder::bindView(const ViewInfo& view, const std::string& database, Source& source,
                             const Scope& scope) {
  if (!throughViews_) {
    for (const ViewColumn& column : view.columns) {
      ResultColumn as;
      as.type = column.type;
      as.nullable = column.nullable;
      addDerivedColumn(as, column.name, source.columns.size(), source);
    }
    return view.name;
  }
  if (++viewDepth_ > maxViewDepth)
    throw Error(4429, "View '" + view.name + "' refers to itself or nests more than 32 levels deep.");
  const std::shared_ptr<const Batch> batch = viewBatch(view);
  const auto& statement = std::get<CreateViewStatement>(batch->statements.at(0)->node);

  const BindContext outside = context_;
  context_.database = context_.chain = database;
  context_.variables = nullptr;
  context_.trigger = nullptr;
  context_.fixedLiterals = true;
  const std::size_t commonFrom = std::exchange(commonFrom_, common_.size());
  const std::size_t commonTo = std::exchange(commonTo_, common_.size());
  std::vector<std::string> names;
  for (const ViewColumn& column : view.columns) names.push_back(column.name);
  CoreShape shape;
  shape.subquery = true;
  shape.columnCount = static_cast<int>(names.size());
  if (statement.columns.empty()) shape.starNames = &names;
  BoundSelect select = bindSelect(*statement.select, nullptr, shape);
  context_ = outside;
  commonFrom_ = commonFrom;
  commonTo_ = commonTo;
  --viewDepth_;

  if (select.columns.size() != names.size())
    throw Error(4502, "View '" + view.name + "' has other columns than its tables give now.");
  for (std::size_t i = 0; i < names.size(); ++i) addDerivedColumn(select.columns[i], names[i], i, source);
  return inBrackets(select, scope);
}

}  // namespace engine
