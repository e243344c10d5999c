// The greatest or least value among the rows that share a key with a row around:
//
//   SELECT .. FROM a WHERE a.n = (SELECT MAX(b.n) FROM b WHERE b.k = a.k)
//
// Without an index on the key SQLite walks `b` anew for every row of `a`, for it takes the subquery to run
// once. Where `a` is read whole anyway, the extremes of all keys are therefore gathered once, and each row
// looks its own up.
#include <algorithm>

#include "engine/plan/binder.h"

namespace engine {
namespace {

bool isColumn(const ExprPtr& expr) {
  return expr && expr->kind == Expr::Kind::Column;
}

bool isExtremeByKey(const SelectStatement& select) {
  const SelectCore& core = select.cores[0];
  if (select.cores.size() != 1 || !select.orderBy.empty() || core.distinct || core.top || core.having)
    return false;
  if (core.items.size() != 1 || core.from.size() != 1 || !core.groupBy.empty() || !core.where) return false;
  const Expr& value = *core.items[0].expr;
  const std::string name = foldName(value.name);
  return core.from[0]->kind == TableSource::Kind::Table && value.kind == Expr::Kind::Function &&
         (name == "max" || name == "min") && value.args.size() == 1 && isColumn(value.args[0]) &&
         core.where->kind == Expr::Kind::Binary && core.where->binary == BinaryOp::Equal &&
         isColumn(core.where->left) && isColumn(core.where->right);
}

// A condition by which an index could find some rows.
bool picks(const Expr& where) {
  if (where.kind == Expr::Kind::Binary && where.binary == BinaryOp::And)
    return picks(*where.left) || picks(*where.right);
  if (where.kind == Expr::Kind::InList || where.kind == Expr::Kind::InSelect ||
      where.kind == Expr::Kind::Between || where.kind == Expr::Kind::IsNull ||
      where.kind == Expr::Kind::Quantified || where.kind == Expr::Kind::Like)
    return true;
  if (where.kind != Expr::Kind::Binary || !where.left || !where.right) return false;
  return (isColumn(where.left) && !containsSubquery(*where.right)) ||
         (isColumn(where.right) && !containsSubquery(*where.left));
}

bool isReadWhole(const Scope& scope) {
  return scope.core && scope.sources.size() == 1 && scope.sources[0].table && !scope.core->top &&
         !(scope.core->where && picks(*scope.core->where));
}

bool leadsAnIndex(const TableInfo& table, const std::string& column) {
  const int ordinal = table.columnIndex(column);
  return std::any_of(table.indexes.begin(), table.indexes.end(), [&](const IndexInfo& index) {
    return !index.parts.empty() && index.parts[0].column == ordinal;
  });
}

}  // namespace

std::string Binder::extremeByKey(const SelectStatement& select, Scope* around) {
  if (!around || !isExtremeByKey(select)) return {};
  const SelectCore& core = select.cores[0];
  const Expr& value = *core.items[0].expr;
  Scope scope;
  scope.parent = around;
  const std::string from = bindFrom(core.from, scope);
  const Expr *key = core.where->left.get(), *probe = core.where->right.get();
  if (scopeOf(*key, &scope) != &scope) std::swap(key, probe);
  const Scope* const outside = scopeOf(*probe, &scope);
  if (scopeOf(*key, &scope) != &scope || scopeOf(*value.args[0], &scope) != &scope) return {};
  if (!outside || outside == &scope || !isReadWhole(*outside)) return {};
  const TableInfo* const table = scope.sources[0].table;
  if (!table || leadsAnIndex(*table, key->name)) return {};
  const BoundExpr k = bindValue(*key, &scope), p = bindValue(*probe, &scope),
                  v = bindValue(*value.args[0], &scope);
  for (const BoundExpr* const part : {&k, &p, &v})
    if (!part->column || !isInteger(part->type.id)) return {};
  const std::string handle = newHandle();
  return "(WITH " + handle + "(k,v) AS MATERIALIZED (SELECT " + k.sql + "," + foldName(value.name) + "(" +
         v.sql + ") FROM " + from + " GROUP BY " + k.sql + ") SELECT v FROM " + handle + " WHERE k=" + p.sql +
         ")";
}

}  // namespace engine
