// Which subqueries look at the groups of the query around them.
#include <algorithm>

#include "engine/plan/binder.h"

namespace engine {
namespace {

bool anyChild(const Expr& expr, const std::function<bool(const Expr&)>& test) {
  const auto inside = [&](const ExprPtr& e) { return e && test(*e); };
  if (inside(expr.left) || inside(expr.right)) return true;
  if (std::any_of(expr.args.begin(), expr.args.end(), inside)) return true;
  return std::any_of(expr.whens.begin(), expr.whens.end(),
                     [&](const WhenClause& w) { return inside(w.when) || inside(w.then); });
}

using Names = std::vector<std::string>;

void exposedNames(const TableSource& source, Names& names) {
  if (source.kind == TableSource::Kind::Join) {
    exposedNames(*source.left, names);
    exposedNames(*source.right, names);
    return;
  }
  names.push_back(foldName(source.alias.empty() ? source.name.object : source.alias));
}

bool asks(const SelectStatement& select, const Names& known);

// An aggregate over none of the tables that the subquery knows, in the expression or in a query under it.
// `known` empty: aggregates are not allowed here, so that each one is of a query around.
bool asksIn(const Expr& expr, const Names& known, bool own) {
  if (expr.kind == Expr::Kind::Function && isAggregateName(foldName(expr.name))) {
    if (!own) return true;
    bool outside = false;
    forEachColumn(expr, [&](const Expr& column) {
      const std::string table = foldName(column.table);
      outside = outside || (!table.empty() && std::find(known.begin(), known.end(), table) == known.end());
    });
    if (outside) return true;
  }
  if (expr.select && asks(*expr.select, known)) return true;
  return anyChild(expr, [&](const Expr& child) { return asksIn(child, known, own); });
}

bool asksInJoin(const TableSource& source, const Names& known) {
  if (source.kind == TableSource::Kind::Derived) return asks(*source.select, known);
  if (source.kind != TableSource::Kind::Join) return false;
  return (source.on && asksIn(*source.on, known, false)) || asksInJoin(*source.left, known) ||
         asksInJoin(*source.right, known);
}

bool asks(const SelectStatement& select, const Names& around) {
  return std::any_of(select.cores.begin(), select.cores.end(), [&](const SelectCore& core) {
    Names known = around;
    for (const auto& source : core.from) exposedNames(*source, known);
    for (const auto& source : core.from)
      if (asksInJoin(*source, known)) return true;
    if (core.where && asksIn(*core.where, known, false)) return true;
    if (core.having && asksIn(*core.having, known, true)) return true;
    return std::any_of(core.items.begin(), core.items.end(),
                       [&](const SelectItem& item) { return item.expr && asksIn(*item.expr, known, true); });
  });
}

// In the list, HAVING or ORDER BY of the grouped query itself.
bool looksAtGroups(const Expr& expr) {
  if (expr.kind == Expr::Kind::Quantified && containsAggregate(*expr.left)) return true;
  if (expr.select && asks(*expr.select, {})) return true;
  return anyChild(expr, looksAtGroups);
}

}  // namespace

void forEachColumn(const Expr& expr, const std::function<void(const Expr&)>& action) {
  if (expr.kind == Expr::Kind::Column) action(expr);
  anyChild(expr, [&](const Expr& child) {
    forEachColumn(child, action);
    return false;
  });
}

bool subqueriesAskAggregates(const SelectStatement& select, const SelectCore& core) {
  if (core.having && looksAtGroups(*core.having)) return true;
  return std::any_of(core.items.begin(), core.items.end(),
                     [](const SelectItem& item) { return item.expr && looksAtGroups(*item.expr); }) ||
         std::any_of(select.orderBy.begin(), select.orderBy.end(),
                     [](const OrderItem& item) { return looksAtGroups(*item.expr); });
}

}  // namespace engine
