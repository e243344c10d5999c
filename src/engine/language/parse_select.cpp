#include "engine/language/keywords.h"
#include "engine/language/sql_parser.h"

namespace engine {
namespace {

// SELECT * over a bracketed query that cannot be taken apart.
SelectCore starOver(SelectPtr select, int line) {
  SelectCore core;
  SelectItem& item = core.items.emplace_back();
  item.expr = std::make_unique<Expr>();
  item.expr->kind = Expr::Kind::Star;
  item.expr->line = line;
  auto source = std::make_unique<TableSource>();
  source->kind = TableSource::Kind::Derived;
  source->line = line;
  source->select = std::move(select);
  core.from.push_back(std::move(source));
  return core;
}

// (SELECT TOP 5 .. ORDER BY a) goes on with UNION or an ORDER BY of its own.
void encloseOrdered(SelectStatement& select, int line) {
  auto inner = std::make_unique<SelectStatement>(std::move(select));
  select = SelectStatement();
  select.height = inner->height;
  select.cores.push_back(starOver(std::move(inner), line));
}

}  // namespace

// A whole query: terms, UNION, ORDER BY. Brackets are a term's own affair.
SelectPtr SqlParser::selectStatement() {
  Nesting nesting(*this, Heavy);
  int outer = std::exchange(tallest_, 0);
  SelectPtr select = queryTerm();
  unions(*select);
  orderBy(*select);
  queryOptions(select->maxRecursion);
  select->height = std::max(select->height, tallest_ + 1);
  tallest_ = std::max(outer, select->height);
  return select;
}

SelectPtr SqlParser::subquery() {
  expectSymbol('(');
  SelectPtr select = selectStatement();
  expectSymbol(')');
  return select;
}

ExprPtr SqlParser::scalar(SelectPtr select) {
  ExprPtr expr = make(Expr::Kind::Scalar);
  expr->select = std::move(select);
  return finish(std::move(expr));
}

SelectPtr SqlParser::queryTerm() {
  if (isSymbol('(')) return subquery();
  if (!isWord("SELECT")) syntaxError();
  auto select = std::make_unique<SelectStatement>();
  select->cores.push_back(core());
  return select;
}

// UNION and EXCEPT from left to right; INTERSECT binds stronger.
void SqlParser::unions(SelectStatement& select) {
  intersections(select);
  for (;;) {
    SetOp op = SetOp::Union;
    if (isWord("EXCEPT"))
      op = SetOp::Except;
    else if (!isWord("UNION"))
      return;
    addTerm(select, op, true);
  }
}

void SqlParser::intersections(SelectStatement& select) {
  while (isWord("INTERSECT")) addTerm(select, SetOp::Intersect, false);
}

// Stands on the operator.
void SqlParser::addTerm(SelectStatement& select, SetOp op, bool bindsIntersections) {
  const std::size_t word = pos_++;
  if (!select.orderBy.empty()) encloseOrdered(select, tokens_[word].line);
  if (op == SetOp::Union && accept("ALL")) op = SetOp::UnionAll;
  if (op != SetOp::UnionAll && isWord("ALL"))
    fail(324, "The 'ALL' version of the " + upperAscii(tokens_[word].source) + " operator is not supported.");
  select.setOps.push_back(op);
  int termLine = line();
  SelectPtr term = queryTerm();
  if (bindsIntersections) intersections(*term);
  select.height = std::max(select.height, std::max(term->height, tallest_ + 1));
  if (term->cores.size() == 1 && term->orderBy.empty())
    select.cores.push_back(std::move(term->cores[0]));
  else
    select.cores.push_back(starOver(std::move(term), termLine));
}

SelectCore SqlParser::core() {
  SelectCore core;
  std::size_t first = pos_;
  const bool mayStore = std::exchange(mayStore_, false);
  expect("SELECT");
  if (!accept("ALL")) core.distinct = accept("DISTINCT");
  if (isWord("TOP")) core.top = topClause(&core.topPercent);
  if (isWord("WITH") && isWord("TIES", 1)) unsupported("WITH TIES");
  do core.items.push_back(selectItem());
  while (acceptSymbol(','));
  if (isWord("INTO") && !mayStore) syntaxError();
  if (accept("INTO")) core.into = objectName();
  coreClauses(core, first);
  return core;
}

// Where rows are grouped or made distinct, equal expressions of the select list and the other clauses
// must be recognised as equal, so that the literals in them belong to the statement's shape.
void SqlParser::coreClauses(SelectCore& core, std::size_t first) {
  std::size_t itemsEnd = pos_;
  if (accept("FROM")) core.from = sources();
  core.where = whereClause();
  std::size_t grouping = pos_;
  if (accept("GROUP")) {
    expect("BY");
    if (isWord("ALL")) unsupported("GROUP BY ALL");
    core.groupBy = expressions();
    if (isWord("WITH") && isAnyWord({"ROLLUP", "CUBE"}, 1)) unsupported("GROUP BY ... WITH");
  }
  if (accept("HAVING")) core.having = condition();
  if (core.groupBy.empty() && !core.distinct) return;
  markStructural(first, itemsEnd);
  markStructural(grouping, pos_);
}

ExprPtr SqlParser::whereClause() {
  if (!accept("WHERE")) return nullptr;
  if (isWord("CURRENT") && isWord("OF", 1)) unsupported("WHERE CURRENT OF");
  return condition();
}

// TOP 10, TOP (@n), TOP 10 PERCENT.
ExprPtr SqlParser::topClause(bool* percent) {
  expect("TOP");
  ExprPtr top;
  if (acceptSymbol('(')) {
    top = expression();
    expectSymbol(')');
  } else {
    if (!isKind(TokenKind::Literal) || isText()) syntaxError();
    top = literal();
  }
  bool found = accept("PERCENT");
  if (percent)
    *percent = found;
  else if (found)
    unsupported("TOP PERCENT");
  return top;
}

SelectItem SqlParser::selectItem() {
  SelectItem item;
  if (starItem(item)) return item;
  bool compound = isSymbol('=', 2) && (isSymbol('+', 1) || isSymbol('-', 1) || isSymbol('*', 1) ||
                                       isSymbol('/', 1) || isSymbol('%', 1));
  if (isKind(TokenKind::Variable) && (isSymbol('=', 1) || compound)) {
    ExprPtr target = variableExpr();
    item.variable = target->name;
    item.expr = assigned(std::move(target));
  } else if ((isName() || isText()) && isSymbol('=', 1)) {
    item.alias = itemAlias();
    expectSymbol('=');
    item.expr = expression();
  } else {
    item.expr = expression();
    if (accept("AS") || isName() || isText()) item.alias = itemAlias();
  }
  return item;
}

// * and t.*, d..t.*
bool SqlParser::starItem(SelectItem& item) {
  std::size_t ahead = 0;
  while ((isName(ahead) && isSymbol('.', ahead + 1)) || (ahead > 0 && isSymbol('.', ahead)))
    ahead += isSymbol('.', ahead) ? 1 : 2;
  if (!isSymbol('*', ahead)) return false;
  item.expr = make(Expr::Kind::Star);
  std::vector<std::string> parts;
  while (!isSymbol('*')) {
    parts.push_back(isSymbol('.') ? std::string() : name());
    expectSymbol('.');
  }
  expectSymbol('*');
  std::string* const targets[] = {&item.expr->table, &item.expr->owner, &item.expr->database};
  if (parts.size() > std::size(targets)) syntaxError();
  for (std::size_t i = 0; i < parts.size(); ++i) *targets[i] = std::move(parts[parts.size() - 1 - i]);
  return true;
}

std::string SqlParser::itemAlias() {
  if (!isText()) return name();
  markStructural(pos_, pos_ + 1);
  return tokens_[pos_++].value();
}

void SqlParser::orderBy(SelectStatement& select) {
  if (!isWord("ORDER")) return;
  if (!select.orderBy.empty()) encloseOrdered(select, line());
  std::size_t first = pos_++;
  expect("BY");
  do {
    OrderItem& item = select.orderBy.emplace_back();
    item.expr = expression();
    item.descending = accept("DESC");
    if (!item.descending) accept("ASC");
  } while (acceptSymbol(','));
  markStructural(first, pos_);
  if (isWord("OFFSET")) unsupported("OFFSET");
}

// Of the hints only MAXRECURSION means anything here.
void SqlParser::queryOptions(std::optional<int>& maxRecursion) {
  if (isWord("COMPUTE")) unsupported("COMPUTE");
  if (isWord("FOR")) unsupported("FOR " + token(1).value().substr(0, 20));
  if (!accept("OPTION")) return;
  std::size_t first = pos_;
  skipBrackets();
  for (std::size_t i = first; i + 1 < pos_; ++i) {
    const Token& number = tokens_[i + 1];
    if (!equalsKeyword(tokens_[i].source, "MAXRECURSION") || number.kind != TokenKind::Literal) continue;
    constexpr long most = 32767;
    const long value = std::strtol(number.value().c_str(), nullptr, 10);
    if (value > most)
      fail(310, "The value " + number.value().substr(0, 20) +
                    " specified for the MAXRECURSION option exceeds the allowed maximum of 32767.");
    maxRecursion = static_cast<int>(value);
  }
}

std::vector<ExprPtr> SqlParser::expressions() {
  std::vector<ExprPtr> list;
  do list.push_back(expression());
  while (acceptSymbol(','));
  return list;
}

}  // namespace engine
