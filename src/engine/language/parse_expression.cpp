// Operators by precedence climbing. SQL Server's order, tightest first: ~, then * / %, then signs and
// + - & ^ |, then predicates, NOT, AND, OR.
#include "engine/language/sql_parser.h"

namespace engine {
namespace {

bool isPredicate(const Expr& expr) {
  switch (expr.kind) {
    case Expr::Kind::Unary:
      return expr.unary == UnaryOp::Not;
    case Expr::Kind::Binary:
      return expr.binary >= BinaryOp::Equal;
    case Expr::Kind::IsNull:
    case Expr::Kind::Between:
    case Expr::Kind::InList:
    case Expr::Kind::InSelect:
    case Expr::Kind::Quantified:
    case Expr::Kind::Exists:
    case Expr::Kind::Like:
      return true;
    case Expr::Kind::Function:
      return expr.name == "UPDATE";
    default:
      return false;
  }
}

}  // namespace

ExprPtr SqlParser::make(Expr::Kind kind) const {
  auto expr = std::make_unique<Expr>();
  expr->kind = kind;
  expr->line = line();
  return expr;
}

ExprPtr SqlParser::finish(ExprPtr expr) const {
  int height = 0;
  auto under = [&height](const ExprPtr& child) {
    if (child && child->height > height) height = child->height;
  };
  under(expr->left);
  under(expr->right);
  for (const ExprPtr& arg : expr->args) under(arg);
  for (const WhenClause& clause : expr->whens) {
    under(clause.when);
    under(clause.then);
  }
  if (expr->select) height = std::max(height, expr->select->height);
  expr->height = height + 1;
  if (expr->height > maxHeight)
    fail(191,
         "Some part of your SQL statement is nested too deeply. Rewrite the query or break it up into "
         "smaller queries.");
  return expr;
}

ExprPtr SqlParser::binary(BinaryOp op, ExprPtr left, ExprPtr right) {
  ExprPtr expr = make(Expr::Kind::Binary);
  expr->binary = op;
  expr->line = left->line;
  expr->left = std::move(left);
  expr->right = std::move(right);
  return finish(std::move(expr));
}

void SqlParser::requirePredicate(const Expr& expr) const {
  if (isPredicate(expr)) return;
  std::size_t at = atEnd() && pos_ > 0 ? pos_ - 1 : pos_;
  fail(4145,
       "An expression of non-boolean type specified in a context where a condition is expected, near '" +
           tokens_[at].value().substr(0, 120) + "'.");
}

ExprPtr SqlParser::expression() {
  ExprPtr expr = operators(Additive);
  tallest_ = std::max(tallest_, expr->height);
  return expr;
}

ExprPtr SqlParser::condition() {
  ExprPtr expr = operators(Or);
  requirePredicate(*expr);
  tallest_ = std::max(tallest_, expr->height);
  return expr;
}

SqlParser::Operator SqlParser::peekOperator() const {
  struct Symbol {
    char first, second;
    Operator found;
  };
  // Two-character operators may hold a blank; longer ones come first.
  static constexpr Symbol symbols[] = {
      {'<', '>', {Comparison, BinaryOp::NotEqual, 2}},
      {'<', '=', {Comparison, BinaryOp::LessEqual, 2}},
      {'>', '=', {Comparison, BinaryOp::GreaterEqual, 2}},
      {'!', '=', {Comparison, BinaryOp::NotEqual, 2}},
      {'!', '<', {Comparison, BinaryOp::GreaterEqual, 2}},
      {'!', '>', {Comparison, BinaryOp::LessEqual, 2}},
      {'=', 0, {Comparison, BinaryOp::Equal, 1}},
      {'<', 0, {Comparison, BinaryOp::Less, 1}},
      {'>', 0, {Comparison, BinaryOp::Greater, 1}},
      {'+', 0, {Additive, BinaryOp::Add, 1}},
      {'-', 0, {Additive, BinaryOp::Subtract, 1}},
      {'&', 0, {Additive, BinaryOp::BitAnd, 1}},
      {'|', 0, {Additive, BinaryOp::BitOr, 1}},
      {'^', 0, {Additive, BinaryOp::BitXor, 1}},
      {'*', 0, {Multiplicative, BinaryOp::Multiply, 1}},
      {'/', 0, {Multiplicative, BinaryOp::Divide, 1}},
      {'%', 0, {Multiplicative, BinaryOp::Modulo, 1}},
  };
  if (isKind(TokenKind::Symbol)) {
    for (const Symbol& symbol : symbols)
      if (isSymbol(symbol.first) && (symbol.second == 0 || isSymbol(symbol.second, 1))) return symbol.found;
    return {};
  }
  if (!isKind(TokenKind::Word) || !reserved_[pos_]) return {};
  if (isWord("AND")) return {And, BinaryOp::And, 1};
  if (isWord("OR")) return {Or, BinaryOp::Or, 1};
  bool named = isAnyWord({"IS", "IN", "LIKE", "BETWEEN"}) ||
               (isWord("NOT") && isAnyWord({"IN", "LIKE", "BETWEEN"}, 1));
  return named ? Operator{Comparison, BinaryOp::Equal, 0} : Operator{};
}

ExprPtr SqlParser::operators(int level) {
  ExprPtr left = leading(level);
  for (;;) {
    Operator op = peekOperator();
    if (op.level == 0 || op.level < level) return left;
    bool logical = op.level <= And;
    if (logical) requirePredicate(*left);
    if (!logical && isPredicate(*left)) syntaxError();
    if (op.level == Comparison) {
      left = predicate(std::move(left), op);
      continue;
    }
    pos_ += static_cast<std::size_t>(op.tokens);
    ExprPtr right = operators(op.level + 1);
    if (logical) requirePredicate(*right);
    left = binary(op.op, std::move(left), std::move(right));
  }
}

// What an operand may begin with before its first operator: NOT, a sign, or a primary.
ExprPtr SqlParser::leading(int level) {
  if (level <= Not && isWord("NOT")) {
    Nesting nesting(*this, Light);
    ExprPtr expr = make(Expr::Kind::Unary);
    ++pos_;
    expr->unary = UnaryOp::Not;
    expr->left = operators(Not);
    requirePredicate(*expr->left);
    return finish(std::move(expr));
  }
  if (isSymbol('-')) return signedOperand(UnaryOp::Minus);
  if (isSymbol('+')) return signedOperand(UnaryOp::Plus);
  if (isSymbol('~')) return signedOperand(UnaryOp::BitNot);
  ExprPtr expr = primary(level);
  while (isWord("COLLATE")) {
    ExprPtr collate = make(Expr::Kind::Collate);
    ++pos_;
    collate->name = name();
    collate->left = std::move(expr);
    expr = finish(std::move(collate));
  }
  return expr;
}

// A sign binds less tightly than * / %: 8 / -2 * 2 is 8 / -(2 * 2).
ExprPtr SqlParser::signedOperand(UnaryOp op) {
  Nesting nesting(*this, Light);
  ExprPtr expr = make(Expr::Kind::Unary);
  ++pos_;
  expr->unary = op;
  expr->left = op == UnaryOp::BitNot ? leading(Multiplicative) : operators(Multiplicative);
  return finish(std::move(expr));
}

ExprPtr SqlParser::primary(int level) {
  switch (token().kind) {
    case TokenKind::Literal:
      return literal();
    case TokenKind::Variable:
    case TokenKind::GlobalVariable:
      return variableExpr();
    case TokenKind::QuotedWord:
      return nameOrCall();
    case TokenKind::Word:
      if (level <= Comparison && isWord("EXISTS")) return existsPredicate();
      if (level <= Comparison && isWord("UPDATE")) return updatePredicate();
      return reserved_[pos_] ? wordOperand() : nameOrCall();
    case TokenKind::Symbol:
      if (isSymbol('(')) return bracketed(level);
      break;
    case TokenKind::End:
      break;
  }
  syntaxError();
}

// Where a condition is due, brackets may hold one too: WHERE (a=1 OR b=2) AND (c+1)*2>d.
ExprPtr SqlParser::bracketed(int level) {
  if (isWord("SELECT", 1)) return scalar(subquery());
  Nesting nesting(*this, Light);
  ++pos_;
  ExprPtr expr = operators(level <= Comparison ? static_cast<int>(Or) : static_cast<int>(Additive));
  if (expr->kind == Expr::Kind::Scalar && isAnyWord({"UNION", "EXCEPT", "INTERSECT"})) {
    unions(*expr->select);
    expr = finish(std::move(expr));
  }
  expectSymbol(')');
  return expr;
}

ExprPtr SqlParser::literal() {
  ExprPtr expr = make(Expr::Kind::Literal);
  expr->literal = {token().literal, token().value(), ordinals_[pos_]};
  ++pos_;
  return expr;
}

ExprPtr SqlParser::variableExpr() {
  ExprPtr expr = make(isKind(TokenKind::Variable) ? Expr::Kind::Variable : Expr::Kind::GlobalVariable);
  expr->name = token().value();
  ++pos_;
  return expr;
}

ExprPtr SqlParser::nameOrCall() {
  if (isSymbol('(', 1)) return call(name());
  ExprPtr expr = make(Expr::Kind::Column);
  std::vector<std::string> parts = nameParts(4);
  std::string* const targets[] = {&expr->name, &expr->table, &expr->owner, &expr->database};
  for (std::size_t i = 0; i < parts.size(); ++i) *targets[i] = std::move(parts[parts.size() - 1 - i]);
  if (isSymbol('(')) unsupported("user-defined function " + expr->name);
  return expr;
}

}  // namespace engine
