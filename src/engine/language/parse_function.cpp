#include "engine/language/keywords.h"
#include "engine/language/sql_parser.h"

namespace engine {

// An operand that begins with a reserved word.
ExprPtr SqlParser::wordOperand() {
  if (isWord("CASE")) return caseExpr();
  if (isWord("CONVERT")) return convertExpr();
  if (isWord("NULL")) {
    ExprPtr null = make(Expr::Kind::Literal);
    ++pos_;
    return null;
  }
  if (isAnyWord({"LEFT", "RIGHT", "COALESCE", "NULLIF"}) && isSymbol('(', 1))
    return call(upperAscii(tokens_[pos_++].source));
  if (isAnyWord({"USER", "CURRENT_USER", "SESSION_USER", "SYSTEM_USER", "CURRENT_TIMESTAMP"})) {
    ExprPtr function = make(Expr::Kind::Function);
    function->name = upperAscii(tokens_[pos_++].source);
    return function;
  }
  if (isAnyWord({"TRY_CONVERT", "CONTAINS", "FREETEXT", "IDENTITYCOL", "ROWGUIDCOL", "IDENTITY"}))
    unsupported(upperAscii(token().source));
  syntaxError();
}

ExprPtr SqlParser::caseExpr() {
  Nesting nesting(*this, Light);
  ExprPtr expr = make(Expr::Kind::Case);
  if (++cases_ > mostCases) fail(125, "Case expressions may only be nested to level 10.");
  expect("CASE");
  if (!isWord("WHEN")) expr->left = operators(Additive);
  do {
    expect("WHEN");
    WhenClause& clause = expr->whens.emplace_back();
    clause.when = expr->left ? operators(Additive) : condition();
    expect("THEN");
    clause.then = operators(Additive);
  } while (isWord("WHEN"));
  if (accept("ELSE")) expr->right = operators(Additive);
  expect("END");
  --cases_;
  return finish(std::move(expr));
}

ExprPtr SqlParser::convertExpr() {
  Nesting nesting(*this, Light);
  ExprPtr expr = make(Expr::Kind::Convert);
  expect("CONVERT");
  expectSymbol('(');
  expr->type = type(nullptr);
  expectSymbol(',');
  expr->left = operators(Additive);
  if (acceptSymbol(',')) {
    std::size_t first = pos_;
    expr->args.push_back(operators(Additive));
    markStructural(first, pos_);
  }
  expectSymbol(')');
  return finish(std::move(expr));
}

// Stands behind CAST, on its bracket.
ExprPtr SqlParser::castExpr() {
  Nesting nesting(*this, Light);
  ExprPtr expr = make(Expr::Kind::Cast);
  expectSymbol('(');
  expr->left = operators(Additive);
  expect("AS");
  expr->type = type(nullptr);
  expectSymbol(')');
  return finish(std::move(expr));
}

// IIF(condition, a, b) is CASE WHEN condition THEN a ELSE b END. Stands behind its name.
ExprPtr SqlParser::choiceExpr() {
  Nesting nesting(*this, Light);
  ExprPtr expr = make(Expr::Kind::Case);
  if (++cases_ > mostCases) fail(125, "Case expressions may only be nested to level 10.");
  expectSymbol('(');
  WhenClause& clause = expr->whens.emplace_back();
  clause.when = condition();
  expectSymbol(',');
  clause.then = operators(Additive);
  expectSymbol(',');
  expr->right = operators(Additive);
  expectSymbol(')');
  --cases_;
  return finish(std::move(expr));
}

// Stands behind the function's name, on its bracket.
ExprPtr SqlParser::call(std::string name) {
  if (equalsKeyword(name, "CAST")) return castExpr();
  if (equalsKeyword(name, "IIF")) return choiceExpr();
  for (const std::string_view missing : {"TRY_CAST", "TRY_CONVERT", "PARSE", "TRY_PARSE"})
    if (equalsKeyword(name, missing)) unsupported(missing);
  Nesting nesting(*this, Light);
  ExprPtr expr = make(Expr::Kind::Function);
  expr->name = std::move(name);
  expectSymbol('(');
  if (!isSymbol(')')) {
    if (accept("DISTINCT"))
      expr->distinct = true;
    else
      accept("ALL");
    if (isSymbol('*') && (equalsKeyword(expr->name, "COUNT") || equalsKeyword(expr->name, "COUNT_BIG"))) {
      ++pos_;
      expr->star = true;
    } else {
      expr->args = expressions();
    }
  }
  expectSymbol(')');
  if (isWord("OVER")) return over(std::move(expr));
  return finish(std::move(expr));
}

}  // namespace engine
