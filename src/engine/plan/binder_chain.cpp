// Chains of AND, OR, + and their like. Programs write them with thousands of members; they lean left in
// the tree, and SQLite takes neither text nested some 90 levels deep nor a tree of more than 1,000 levels.
#include <algorithm>
#include <array>

#include "engine/plan/binder.h"
#include "engine/value.h"

namespace engine {
namespace {

// Up to here each operator becomes SQLite's own.
constexpr std::size_t plainChain = 16;
// Steps of one z_fold(), which takes one argument more than steps, and the list of types.
constexpr std::size_t foldedSteps = 120;

bool isConnective(BinaryOp op) {
  return op == BinaryOp::And || op == BinaryOp::Or;
}

bool isComparison(BinaryOp op) {
  static constexpr std::array comparisons = {BinaryOp::Equal,     BinaryOp::NotEqual, BinaryOp::Less,
                                             BinaryOp::LessEqual, BinaryOp::Greater,  BinaryOp::GreaterEqual};
  return std::find(comparisons.begin(), comparisons.end(), op) != comparisons.end();
}

// The conditions in order under one connective, as a tree of the least depth.
std::string balanced(const std::vector<std::string>& conditions, std::size_t from, std::size_t to,
                     const char* connective) {
  if (to - from == 1) return conditions[from];
  const std::size_t middle = from + (to - from) / 2;
  return "(" + balanced(conditions, from, middle, connective) + connective +
         balanced(conditions, middle, to, connective) + ")";
}

}  // namespace

BoundExpr Binder::bindLogic(const Expr& expr, Scope* scope) {
  BoundExpr bound;
  bound.type = {TypeId::Int};
  bound.condition = true;
  if (expr.kind == Expr::Kind::Unary) {
    bound.sql = "(NOT " + bindCondition(*expr.left, scope).sql + ")";
    return bound;
  }
  std::vector<const Expr*> members;
  const Expr* node = &expr;
  for (; node->kind == Expr::Kind::Binary && node->binary == expr.binary; node = node->left.get())
    members.push_back(node->right.get());
  members.push_back(node);
  std::vector<std::string> conditions;
  for (auto member = members.rbegin(); member != members.rend(); ++member)
    conditions.push_back(bindCondition(**member, scope).sql);
  bound.sql = balanced(conditions, 0, conditions.size(), expr.binary == BinaryOp::And ? " AND " : " OR ");
  return bound;
}

BoundExpr Binder::bindArithmetic(const Expr& expr, Scope* scope) {
  std::vector<const Expr*> steps;
  const Expr* node = &expr;
  do {
    steps.push_back(node);
    node = node->left.get();
  } while (node->kind == Expr::Kind::Binary && !isConnective(node->binary) && !isComparison(node->binary) &&
           !boundGroup(*node, scope));
  std::reverse(steps.begin(), steps.end());
  BoundExpr value = bindValue(*node, scope);
  if (steps.size() > plainChain) return foldChain(std::move(value), steps, scope);
  for (const Expr* step : steps) value = operate(step->binary, value, bindValue(*step->right, scope));
  return value;
}

BoundExpr Binder::operate(BinaryOp op, BoundExpr left, BoundExpr right) {
  left = exactOperand(left, right.type);
  right = exactOperand(right, left.type);
  BoundExpr bound;
  bound.type = arithmeticType(op, left.type, right.type);
  // Constants take the result's form once, ahead of the rows.
  if (isApproximate(bound.type.id)) {
    if (left.parameter >= 0) left = convert(left, bound.type);
    if (right.parameter >= 0) right = convert(right, bound.type);
  }
  bound.sql = arithmeticSql(op, left.sql, left.type, right.sql, right.type);
  // An arithmetic result may overflow, so the server takes it for one that can be NULL.
  bound.nullable = left.nullable || right.nullable || isNumeric(bound.type.id);
  return bound;
}

// z_fold(value, operand, ..., 'type op type op type ...')
BoundExpr Binder::foldChain(BoundExpr value, const std::vector<const Expr*>& steps, Scope* scope) {
  for (std::size_t from = 0; from < steps.size(); from += foldedSteps) {
    const std::size_t to = std::min(steps.size(), from + foldedSteps);
    // A literal at the head is what its first partner makes of it.
    if (from == 0) value = exactOperand(value, bindValue(*steps[0]->right, scope).type);
    std::string program = std::to_string(packType(value.type));
    std::string sql = "z_fold(" + value.sql;
    for (std::size_t i = from; i < to; ++i) {
      const BinaryOp op = steps[i]->binary;
      const BoundExpr operand = exactOperand(bindValue(*steps[i]->right, scope), value.type);
      value.type = arithmeticType(op, value.type, operand.type);
      value.nullable = value.nullable || operand.nullable;
      sql += ',' + operand.sql;
      program += ' ' + std::to_string(static_cast<int>(op)) + ' ' + std::to_string(packType(operand.type));
    }
    value.sql = sql.append(",'").append(program).append("')");
  }
  value.parameter = -1;
  value.column = false;
  return value;
}

}  // namespace engine
