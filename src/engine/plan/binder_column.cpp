#include <algorithm>

#include "engine/plan/binder.h"

namespace engine {
namespace {

std::string written(const Expr& expr) {
  std::string text;
  for (const std::string* part : {&expr.database, &expr.owner, &expr.table})
    if (!part->empty()) text += *part + '.';
  return text + expr.name;
}

// Whether the qualifier of a column means this entry of FROM; `table` is its folded name.
bool isMeant(const Source& source, const Expr& expr, const std::string& table) {
  if (source.alias != table) return false;
  if (expr.database.empty()) return true;
  return !source.aliased && source.database == foldName(expr.database);
}

// The group that is the column itself.
const BoundExpr* groupOf(const Scope& scope, const SourceColumn& column) {
  if (!scope.grouped || scope.inAggregate > 0) return nullptr;
  for (std::size_t i = 0; i < scope.groups.size(); ++i)
    if (scope.groups[i].second.column && scope.groupSqls[i] == column.sql) return &scope.groups[i].second;
  return nullptr;
}

struct Found {
  const Source* source = nullptr;
  const SourceColumn* column = nullptr;
  bool sourceSeen = false;
};

// `key` and `table`: the folded names of the column and of its qualifier.
Found findColumn(const Scope& scope, const Expr& expr, const std::string& key, const std::string& table) {
  Found found;
  for (std::size_t i = scope.visibleFrom; i < scope.sources.size(); ++i) {
    const Source& source = scope.sources[i];
    if (!expr.table.empty()) {
      if (!isMeant(source, expr, table)) continue;
      found.sourceSeen = true;
    }
    for (const SourceColumn& column : source.columns) {
      if (column.key != key) continue;
      if (found.column) throw Error(209, "Ambiguous column name '" + expr.name + "'.");
      found.source = &source;
      found.column = &column;
    }
  }
  return found;
}

}  // namespace

Error ungroupedColumn(const Scope& scope, const Source& source, const SourceColumn& column) {
  struct Place {
    int number;
    const char *quote, *clause;
  };
  static constexpr Place places[] = {
      {8120, "'", "select list"}, {8121, "'", "HAVING clause"}, {8127, "\"", "ORDER BY clause"}};
  const Place& place = places[static_cast<std::size_t>(scope.clause)];
  const std::string name = source.title.empty() ? column.info.name : source.title + "." + column.info.name;
  return Error(place.number,
               std::string("Column ") + place.quote + name + place.quote + " is invalid in the " +
                   place.clause +
                   " because it is not contained in either an aggregate function or the GROUP BY "
                   "clause.");
}

int VariableTable::find(std::string_view name) const {
  const std::string key = foldName(name);
  for (std::size_t i = 0; i < variables.size(); ++i)
    if (variables[i].name == key) return static_cast<int>(i);
  return -1;
}

bool VariableTable::hasTable(std::string_view name) const {
  return std::any_of(tables.begin(), tables.end(), [&](const CreateTableStatement* table) {
    return foldName(table->name.object) == foldName(name);
  });
}

// The scope that a column is found in, from `scope` outwards.
Scope* Binder::scopeOf(const Expr& column, Scope* scope) {
  const std::string key = foldName(column.name), table = foldName(column.table);
  for (Scope* at = scope; at; at = at->parent)
    if (const Found found = findColumn(*at, column, key, table); found.column || found.sourceSeen) return at;
  return nullptr;
}

BoundExpr Binder::bindColumn(const Expr& expr, Scope* scope) {
  const std::string key = foldName(expr.name), table = foldName(expr.table);
  for (Scope* at = scope; at; at = at->parent) {
    const Found found = findColumn(*at, expr, key, table);
    if (!found.column) {
      if (found.sourceSeen) break;
      continue;
    }
    // Columns outside of aggregates must be built of what the query groups by.
    const BoundExpr* group = groupOf(*at, *found.column);
    if (at->grouped && at->inAggregate == 0 && !group)
      throw ungroupedColumn(*at, *found.source, *found.column);
    if (found.source->target) needTarget(*found.source, Action::Select);
    BoundExpr bound;
    bound.sql = group ? group->sql : found.column->sql;
    bound.type = found.column->info.type;
    bound.nullable = found.column->info.nullable;
    bound.column = true;
    bound.outer = at != scope;
    bound.origin = found.column->info;
    return bound;
  }
  bool qualified = !expr.table.empty();
  for (Scope* at = scope; at && qualified; at = at->parent)
    for (const Source& source : at->sources)
      if (isMeant(source, expr, table)) qualified = false;
  if (qualified) throw Error(4104, "The multi-part identifier \"" + written(expr) + "\" could not be bound.");
  throw Error(207, "Invalid column name '" + expr.name + "'.");
}

}  // namespace engine
