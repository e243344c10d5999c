// OVER (PARTITION BY .. ORDER BY .. ROWS ..)
#include "engine/language/keywords.h"
#include "engine/language/sql_parser.h"

namespace engine {
namespace {

// Places of a frame's bounds along the rows.
enum Place : int { FirstRow, Before, Here, Behind, LastRow };

}  // namespace

// Stands on OVER.
ExprPtr SqlParser::over(ExprPtr call) {
  Nesting nesting(*this, Light);
  expect("OVER");
  if (!isSymbol('(')) unsupported("OVER with a window name");
  expectSymbol('(');
  if (call->distinct) fail(10759, "Use of DISTINCT is not allowed with the OVER clause.");
  call->kind = Expr::Kind::Window;
  call->window = std::make_unique<WindowClause>();
  WindowClause& window = *call->window;
  window.arguments = call->args.size();
  const auto add = [&](ExprPtr expr) { call->args.push_back(std::move(expr)); };
  if (accept("PARTITION")) {
    expect("BY");
    do add(expression());
    while (acceptSymbol(','));
    window.partitions = call->args.size() - window.arguments;
  }
  if (accept("ORDER")) {
    expect("BY");
    do {
      if (isKind(TokenKind::Literal) &&
          (isSymbol(',', 1) || isSymbol(')', 1) || isAnyWord({"ASC", "DESC"}, 1)))
        fail(isIntegerLiteral() ? 5308 : 5309,
             std::string("Windowed functions, aggregates and NEXT VALUE FOR functions do not support ") +
                 (isIntegerLiteral() ? "integer indices" : "constants") + " as ORDER BY clause expressions.");
      add(expression());
      window.descending.push_back(accept("DESC"));
      if (!window.descending.back()) accept("ASC");
    } while (acceptSymbol(','));
  }
  if (isAnyWord({"ROWS", "RANGE"})) windowFrame(window);
  expectSymbol(')');
  return finish(std::move(call));
}

// ROWS | RANGE bound, or BETWEEN bound AND bound.
void SqlParser::windowFrame(WindowClause& window) {
  const bool rows = isWord("ROWS");
  ++pos_;
  const std::size_t first = pos_;
  const bool between = accept("BETWEEN");
  const FrameBound from = frameBound(rows);
  if (between) expect("AND");
  const FrameBound to = between ? frameBound(rows) : FrameBound{Here, "CURRENT ROW"};
  if (from.place > to.place || from.place == LastRow || to.place == FirstRow)
    fail(4193,
         "'" + sourceSince(first) + "' is not a valid window frame and cannot be used with the OVER clause.");
  if (window.descending.empty()) fail(10756, "Window frame with ROWS or RANGE must have an ORDER BY clause.");
  window.frame = std::string(rows ? "ROWS" : "RANGE") + " BETWEEN " + from.text + " AND " + to.text;
}

SqlParser::FrameBound SqlParser::frameBound(bool rows) {
  FrameBound bound;
  if (accept("CURRENT")) {
    if (!isWord("ROW")) syntaxError();
    ++pos_;
    return {Here, "CURRENT ROW"};
  }
  if (isWord("UNBOUNDED")) {
    ++pos_;
    bound = {FirstRow, "UNBOUNDED"};
  } else {
    if (!isIntegerLiteral()) syntaxError();
    if (!rows) fail(4194, "RANGE is only supported with UNBOUNDED and CURRENT ROW window frame delimiters.");
    bound = {Before, std::to_string(integer())};
  }
  if (!isAnyWord({"PRECEDING", "FOLLOWING"})) syntaxError();
  if (isWord("FOLLOWING")) bound.place = bound.place == FirstRow ? LastRow : Behind;
  bound.text += ' ' + upperAscii(tokens_[pos_++].source);
  return bound;
}

}  // namespace engine
