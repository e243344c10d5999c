#include "engine/plan/binder.h"
#include "engine/value.h"

namespace engine {
namespace {

BoundExpr condition(std::string sql) {
  BoundExpr bound;
  bound.sql = std::move(sql);
  bound.type = {TypeId::Int};
  bound.condition = true;
  return bound;
}

// A subquery's column as an operand.
BoundExpr columnOf(const ResultColumn& column, std::string sql) {
  BoundExpr bound;
  bound.sql = std::move(sql);
  bound.type = column.type;
  bound.origin.naming = column.naming;
  return bound;
}

}  // namespace

// Constants are brought to the common type here, so that a column on the other side stays bare for its
// index.
BoundExpr Binder::compare(BinaryOp op, const BoundExpr& left, const BoundExpr& right) {
  const Type type = comparisonType(left.type, right.type);
  const auto operand = [&](const BoundExpr& side) {
    const bool texts = isCharacter(side.type.id) && isCharacter(type.id);
    return side.parameter >= 0 && !texts ? convert(side, type) : finite(side);
  };
  const BoundExpr a = operand(left), b = operand(right);
  const bool names = a.origin.naming || b.origin.naming;
  return condition(
      "(" + comparisonSql(op, a.sql, a.type, b.sql, b.type, names ? sqliteNames : sqliteCollation) + ")");
}

BoundExpr Binder::bindBetween(const Expr& expr, Scope* scope) {
  const BoundExpr value = bindValue(*expr.left, scope);
  const BoundExpr low = compare(BinaryOp::GreaterEqual, value, bindValue(*expr.args[0], scope));
  const BoundExpr high = compare(BinaryOp::LessEqual, value, bindValue(*expr.args[1], scope));
  return condition(std::string(expr.negated ? "(NOT " : "(") + "(" + low.sql + " AND " + high.sql + "))");
}

BoundExpr Binder::bindInList(const Expr& expr, Scope* scope) {
  const BoundExpr value = bindValue(*expr.left, scope);
  std::vector<BoundExpr> items;
  Type type = value.type;
  for (const ExprPtr& arg : expr.args) {
    items.push_back(bindValue(*arg, scope));
    requireComparable(BinaryOp::Equal, value.type, items.back().type);
    type = comparisonType(type, items.back().type);
  }
  std::string sql =
      "(" + (isCharacter(type.id) && isCharacter(value.type.id) ? value : convert(value, type)).sql;
  if (isCharacter(type.id) && !value.column) sql += std::string(" COLLATE ") + sqliteCollation;
  sql += expr.negated ? " NOT IN (" : " IN (";
  for (std::size_t i = 0; i < items.size(); ++i) {
    const bool texts = isCharacter(type.id) && isCharacter(items[i].type.id);
    sql += (i ? "," : "") + (texts ? items[i] : convert(items[i], type)).sql;
  }
  return condition(sql + "))");
}

// The subquery of IN, ANY, ALL and of a value: exactly one column.
BoundSelect Binder::bindOneColumn(const Expr& expr, Scope* scope) {
  CoreShape shape;
  shape.subquery = true;
  BoundSelect select = bindSelect(*expr.select, scope, shape);
  if (select.columns.size() != 1)
    throw Error(116,
                "Only one expression can be specified in the select list when the subquery is not "
                "introduced with EXISTS.");
  return select;
}

BoundExpr Binder::bindInSelect(const Expr& expr, Scope* scope) {
  const BoundExpr value = bindValue(*expr.left, scope);
  const BoundSelect select = bindOneColumn(expr, scope);
  requireComparable(BinaryOp::Equal, value.type, select.columns[0].type);
  const Type type = comparisonType(value.type, select.columns[0].type);
  const bool texts = isCharacter(value.type.id) && isCharacter(select.columns[0].type.id);
  std::string sql = "(" + (texts ? value : convert(value, type)).sql;
  if (isCharacter(type.id) && !value.column) sql += std::string(" COLLATE ") + sqliteCollation;
  sql += expr.negated ? " NOT IN (" : " IN (";
  if (texts || select.columns[0].type == type) {
    sql += select.sql;
  } else {
    const BoundExpr column = convert(columnOf(select.columns[0], "c0"), type);
    sql += "SELECT " + column.sql + " FROM (" + select.sql + ")";
  }
  return condition(sql + "))");
}

BoundExpr Binder::bindQuantified(const Expr& expr, Scope* scope) {
  const bool any = expr.quantifier == Quantifier::Any;
  if ((any && expr.binary == BinaryOp::Equal) || (!any && expr.binary == BinaryOp::NotEqual)) {
    const BoundExpr value = bindValue(*expr.left, scope);
    const BoundSelect select = bindOneColumn(expr, scope);
    const Type type = comparisonType(value.type, select.columns[0].type);
    const bool texts = isCharacter(value.type.id) && isCharacter(select.columns[0].type.id);
    const std::string handle = newHandle();
    const BoundExpr column = columnOf(select.columns[0], handle + ".c0");
    std::string sql = "(" + (texts ? value : convert(value, type)).sql;
    if (isCharacter(type.id) && !value.column) sql += std::string(" COLLATE ") + sqliteCollation;
    sql += any ? " IN (" : " NOT IN (";
    if (texts || column.type == type)
      sql += select.sql;
    else
      sql += "SELECT " + convert(column, type).sql + " FROM (" + select.sql + ") " + handle;
    return condition(sql + "))");
  }
  const BoundExpr value = bindValue(*expr.left, scope);
  const BoundSelect select = bindOneColumn(expr, scope);
  const std::string handle = newHandle();
  const std::string test = compare(expr.binary, value, columnOf(select.columns[0], handle + ".c0")).sql;
  // 1 true, 0 unknown, -1 false; ANY takes the greatest, ALL the least; of no row ANY is false, ALL true.
  const std::string verdict = std::string("(SELECT ") + (any ? "max" : "min") + "(CASE " + test +
                              " WHEN 1 THEN 1 WHEN 0 THEN -1 ELSE 0 END) FROM (" + select.sql + ") " +
                              handle + ")";
  return condition("(CASE coalesce(" + verdict + (any ? ",-1" : ",1") +
                   ") WHEN 1 THEN 1 WHEN -1 THEN 0 END)");
}

BoundExpr Binder::bindExists(const Expr& expr, Scope* scope) {
  CoreShape shape;
  shape.subquery = true;
  const BoundSelect select = bindSelect(*expr.select, scope, shape);
  return condition("EXISTS (" + select.sql + ")");
}

BoundExpr Binder::bindLike(const Expr& expr, Scope* scope) {
  const auto text = [&](const Expr& side) {
    BoundExpr bound = bindValue(side, scope);
    if (isCharacter(bound.type.id)) return bound;
    return convert(bound, {TypeId::VarChar, 255});
  };
  BoundExpr value = text(*expr.left);
  BoundExpr pattern = text(*expr.right);
  if (value.origin.naming)
    for (BoundExpr* side : {&value, &pattern}) side->sql = "lower(" + side->sql + ")";
  const std::string escape = expr.args.empty() ? std::string() : text(*expr.args[0]).sql;
  return condition("(" + likeSql(value.sql, value.type, pattern.sql, pattern.type, escape, expr.negated) +
                   ")");
}

BoundExpr Binder::bindScalar(const Expr& expr, Scope* scope) {
  const BoundSelect select = bindOneColumn(expr, scope);
  BoundExpr bound;
  bound.type = select.columns[0].type;
  if (bound.type.id == TypeId::Null) bound.type = {TypeId::Int};
  bound.sql = extremeByKey(*expr.select, scope);
  if (!bound.sql.empty()) return bound;
  // More than one row is error 512, which z_one raises; SQLite itself would take the first row.
  bound.sql = select.singleRow
                  ? "(" + select.sql + ")"
                  : "(SELECT z_one(count(*), c0) FROM (SELECT c0 FROM (" + select.sql + ") LIMIT 2))";
  return bound;
}

}  // namespace engine
