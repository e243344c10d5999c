#include "engine/language/sql_parser.h"

namespace engine {

ExprPtr SqlParser::predicate(ExprPtr left, const Operator& op) {
  if (op.tokens > 0) return comparison(std::move(left), op);
  if (isWord("IS")) return isNullPredicate(std::move(left));
  bool negated = accept("NOT");
  ExprPtr result = isWord("IN")     ? inPredicate(std::move(left))
                   : isWord("LIKE") ? likePredicate(std::move(left))
                                    : betweenPredicate(std::move(left));
  result->negated = negated;
  return finish(std::move(result));
}

ExprPtr SqlParser::comparison(ExprPtr left, const Operator& op) {
  pos_ += static_cast<std::size_t>(op.tokens);
  if (!isAnyWord({"ANY", "SOME", "ALL"})) return binary(op.op, std::move(left), operators(Additive));
  ExprPtr expr = make(Expr::Kind::Quantified);
  expr->binary = op.op;
  expr->quantifier = isWord("ALL") ? Quantifier::All : Quantifier::Any;
  ++pos_;
  expr->left = std::move(left);
  expr->select = subquery();
  return finish(std::move(expr));
}

ExprPtr SqlParser::isNullPredicate(ExprPtr left) {
  ExprPtr expr = make(Expr::Kind::IsNull);
  expect("IS");
  expr->negated = accept("NOT");
  expect("NULL");
  expr->left = std::move(left);
  return finish(std::move(expr));
}

ExprPtr SqlParser::inPredicate(ExprPtr left) {
  ExprPtr expr = make(Expr::Kind::InList);
  expect("IN");
  if (isSymbol('(') && isWord("SELECT", 1)) {
    expr->kind = Expr::Kind::InSelect;
    expr->select = subquery();
  } else {
    Nesting nesting(*this, Light);
    expectSymbol('(');
    expr->args = expressions();
    if (expr->args.size() == 1 && expr->args[0]->kind == Expr::Kind::Scalar && isWord("UNION")) {
      expr->kind = Expr::Kind::InSelect;
      expr->select = std::move(expr->args[0]->select);
      expr->args.clear();
      unions(*expr->select);
    }
    expectSymbol(')');
  }
  expr->left = std::move(left);
  return expr;
}

ExprPtr SqlParser::betweenPredicate(ExprPtr left) {
  ExprPtr expr = make(Expr::Kind::Between);
  expect("BETWEEN");
  expr->left = std::move(left);
  expr->args.push_back(operators(Additive));
  expect("AND");
  expr->args.push_back(operators(Additive));
  return expr;
}

ExprPtr SqlParser::likePredicate(ExprPtr left) {
  ExprPtr expr = make(Expr::Kind::Like);
  expect("LIKE");
  expr->left = std::move(left);
  expr->right = operators(Additive);
  if (accept("ESCAPE")) expr->args.push_back(operators(Additive));
  return expr;
}

ExprPtr SqlParser::existsPredicate() {
  ExprPtr expr = make(Expr::Kind::Exists);
  expect("EXISTS");
  expr->select = subquery();
  return finish(std::move(expr));
}

// Inside a trigger: does the statement name the column in its SET or INSERT list?
ExprPtr SqlParser::updatePredicate() {
  ExprPtr expr = make(Expr::Kind::Function);
  expect("UPDATE");
  expr->name = "UPDATE";
  expectSymbol('(');
  ExprPtr column = make(Expr::Kind::Column);
  column->name = name();
  expr->args.push_back(std::move(column));
  expectSymbol(')');
  return finish(std::move(expr));
}

}  // namespace engine
