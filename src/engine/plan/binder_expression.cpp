#include <algorithm>

#include "engine/plan/binder.h"
#include "engine/value.h"

namespace engine {
namespace {

const Type intType{TypeId::Int};

struct GlobalName {
  const char* name;
  SystemValue value;
  Type type;
};

const GlobalName globalNames[] = {
    {"@@rowcount", SystemValue::RowCount, {TypeId::Int}},
    {"@@error", SystemValue::Error, {TypeId::Int}},
    {"@@identity", SystemValue::Identity, {TypeId::Decimal, 0, 18, 0}},
    {"@@trancount", SystemValue::TranCount, {TypeId::Int}},
    {"@@spid", SystemValue::Spid, {TypeId::SmallInt}},
    {"@@max_precision", SystemValue::MaxPrecision, {TypeId::TinyInt}},
    {"@@version", SystemValue::Version, {TypeId::NVarChar, 300}},
    {"@@servername", SystemValue::ServerName, {TypeId::NVarChar, 128}},
    {"@@nestlevel", SystemValue::NestLevel, {TypeId::Int}},
};

// True when the conversion of a constant can raise no error, so that it may happen before it is needed.
bool isSafeConversion(const Type& from, const Type& to) {
  if (isCharacter(from.id) && isCharacter(to.id)) return true;
  return isNumeric(from.id) && (isApproximate(to.id) || isCharacter(to.id));
}

bool isTrue(const std::string& left, const std::string& right) {
  return foldName(left) == foldName(right);
}

bool samePointer(const ExprPtr& left, const ExprPtr& right) {
  if (!left || !right) return !left && !right;
  return sameExpr(*left, *right);
}

}  // namespace

std::string quoteName(std::string_view name) {
  std::string quoted = "\"";
  for (const char c : name) {
    if (c == '"') quoted += '"';
    quoted += c;
  }
  return quoted + '"';
}

bool sameExpr(const Expr& a, const Expr& b) {
  if (a.kind != b.kind || a.select || b.select) return false;
  if (a.literal.kind != b.literal.kind || a.literal.text != b.literal.text) return false;
  // A column may be written with and without its table.
  if (!isTrue(a.name, b.name)) return false;
  if (!a.table.empty() && !b.table.empty() && !isTrue(a.table, b.table)) return false;
  if (a.unary != b.unary || a.binary != b.binary || a.negated != b.negated || a.star != b.star ||
      a.distinct != b.distinct || !(a.type == b.type))
    return false;
  if (a.window || b.window)
    if (!a.window || !b.window || *a.window != *b.window) return false;
  if (a.args.size() != b.args.size() || a.whens.size() != b.whens.size()) return false;
  for (std::size_t i = 0; i < a.args.size(); ++i)
    if (!samePointer(a.args[i], b.args[i])) return false;
  for (std::size_t i = 0; i < a.whens.size(); ++i)
    if (!samePointer(a.whens[i].when, b.whens[i].when) || !samePointer(a.whens[i].then, b.whens[i].then))
      return false;
  return samePointer(a.left, b.left) && samePointer(a.right, b.right);
}

bool containsAggregate(const Expr& expr) {
  if (expr.kind == Expr::Kind::Function && isAggregateName(foldName(expr.name))) return true;
  const auto inside = [](const ExprPtr& e) { return e && containsAggregate(*e); };
  if (inside(expr.left) || inside(expr.right)) return true;
  if (std::any_of(expr.args.begin(), expr.args.end(), inside)) return true;
  return std::any_of(expr.whens.begin(), expr.whens.end(),
                     [&](const WhenClause& w) { return inside(w.when) || inside(w.then); });
}

bool containsSubquery(const Expr& expr) {
  if (expr.select) return true;
  const auto inside = [](const ExprPtr& e) { return e && containsSubquery(*e); };
  if (inside(expr.left) || inside(expr.right)) return true;
  if (std::any_of(expr.args.begin(), expr.args.end(), inside)) return true;
  return std::any_of(expr.whens.begin(), expr.whens.end(),
                     [&](const WhenClause& w) { return inside(w.when) || inside(w.then); });
}

void requireReasonable(const std::string& sql) {
  constexpr std::size_t longest = 4'000'000;
  if (sql.size() > longest) throwTooLarge();
}

void throwTooLarge() {
  throw Error(
      8623,
      "The query processor ran out of internal resources and could not produce a query plan. Simplify "
      "the query.");
}

Binder::Binder(const BindContext& context) : context_(context) {}

BoundExpr Binder::addParameter(ParameterSource source) {
  BoundExpr expr;
  expr.type = source.to;
  expr.nullable = source.kind != ParameterSource::Kind::Literal;
  parameters_.push_back(std::move(source));
  expr.parameter = static_cast<int>(parameters_.size()) - 1;
  expr.sql = "?" + std::to_string(parameters_.size());
  return expr;
}

BoundExpr Binder::systemParameter(SystemValue value, const Type& type) {
  ParameterSource source;
  source.kind = ParameterSource::Kind::System;
  source.index = static_cast<int>(value);
  source.from = source.to = type;
  return addParameter(std::move(source));
}

BoundExpr Binder::bindLiteral(const Literal& literal, bool negate) {
  if (literal.kind == LiteralKind::Null) {
    BoundExpr null;
    null.sql = "NULL";
    return null;
  }
  ParameterSource source;
  source.index = literal.ordinal;
  source.fixed = context_.fixedLiterals;
  // A long text stands in the batch's own list alone.
  if (source.fixed || source.index < 0 || literal.text.size() <= longLiteral) source.value = literal;
  source.negate = negate;
  source.from = source.to = literalType(literal);
  return addParameter(std::move(source));
}

BoundExpr Binder::bindValue(const Expr& expr, Scope* scope) {
  BoundExpr bound = bind(expr, scope);
  if (bound.condition) throw Error(102, "Incorrect syntax near a condition where a value is expected.");
  return bound;
}

BoundExpr Binder::bindCondition(const Expr& expr, Scope* scope) {
  BoundExpr bound = bind(expr, scope);
  if (!bound.condition)
    throw Error(4145,
                "An expression of non-boolean type specified in a context where a condition is expected.");
  return bound;
}

// What GROUP BY has made of the expression, if it groups by it.
const BoundExpr* Binder::boundGroup(const Expr& expr, const Scope* scope) {
  if (!scope || !scope->grouped || scope->inAggregate > 0 || expr.kind == Expr::Kind::Column) return nullptr;
  for (const auto& [group, bound] : scope->groups)
    if (sameExpr(*group, expr)) return &bound;
  return nullptr;
}

BoundExpr Binder::bind(const Expr& expr, Scope* scope) {
  if (const BoundExpr* group = boundGroup(expr, scope)) return *group;
  switch (expr.kind) {
    case Expr::Kind::Literal:
      return bindLiteral(expr.literal, false);
    case Expr::Kind::Column:
      return bindColumn(expr, scope);
    case Expr::Kind::Variable:
      return bindVariable(expr);
    case Expr::Kind::GlobalVariable:
      return bindGlobal(expr);
    case Expr::Kind::Unary:
      return expr.unary == UnaryOp::Not ? bindLogic(expr, scope) : bindUnary(expr, scope);
    case Expr::Kind::Binary:
      return bindBinary(expr, scope);
    case Expr::Kind::IsNull: {
      BoundExpr operand = bindValue(*expr.left, scope);
      BoundExpr test;
      test.sql = "(" + operand.sql + (expr.negated ? " IS NOT NULL)" : " IS NULL)");
      test.condition = true;
      test.type = intType;
      return test;
    }
    case Expr::Kind::Between:
      return bindBetween(expr, scope);
    case Expr::Kind::InList:
      return bindInList(expr, scope);
    case Expr::Kind::InSelect:
      return bindInSelect(expr, scope);
    case Expr::Kind::Quantified:
      return bindQuantified(expr, scope);
    case Expr::Kind::Exists:
      return bindExists(expr, scope);
    case Expr::Kind::Like:
      return bindLike(expr, scope);
    case Expr::Kind::Case:
      return bindCase(expr, scope);
    case Expr::Kind::Function:
      return bindFunction(expr, scope);
    case Expr::Kind::Window:
      return bindWindow(expr, scope);
    case Expr::Kind::Convert:
    case Expr::Kind::Cast:
      return bindConversion(expr, scope);
    case Expr::Kind::Scalar:
      return bindScalar(expr, scope);
    case Expr::Kind::Collate:
      return bindCollate(expr, scope);
    case Expr::Kind::Star:
      throw Error(102, "Incorrect syntax near '*'.");
    case Expr::Kind::Default:
      throw Error(156, "Incorrect syntax near the keyword 'DEFAULT'.");
  }
  throw Error(102, "Incorrect syntax.");
}

BoundExpr Binder::bindVariable(const Expr& expr) {
  const int slot = context_.variables ? context_.variables->find(expr.name) : -1;
  if (slot < 0) throw Error(137, "Must declare the scalar variable \"" + expr.name + "\".", 15);
  const Type& type = context_.variables->variables[static_cast<std::size_t>(slot)].type;
  if (stepwise_) {
    BoundExpr bound;
    bound.type = type;
    bound.sql = "z_var(" + std::to_string(slot) + ")";
    return bound;
  }
  ParameterSource source;
  source.kind = ParameterSource::Kind::Variable;
  source.index = slot;
  source.from = source.to = type;
  return addParameter(std::move(source));
}

BoundExpr Binder::bindGlobal(const Expr& expr) {
  const std::string name = foldName(expr.name);
  for (const GlobalName& known : globalNames)
    if (name == known.name) return systemParameter(known.value, known.type);
  throw Error(137, "Must declare the scalar variable \"" + expr.name + "\".", 15);
}

BoundExpr Binder::bindUnary(const Expr& expr, Scope* scope) {
  const Expr& operand = *expr.left;
  if (expr.unary == UnaryOp::Minus && operand.kind == Expr::Kind::Literal &&
      isNumeric(literalType(operand.literal).id))
    return bindLiteral(operand.literal, true);
  BoundExpr inner = bindValue(operand, scope);
  if (expr.unary == UnaryOp::Plus && inner.parameter >= 0) return inner;
  BoundExpr bound;
  bound.type = unaryType(expr.unary, inner.type);
  bound.sql = unarySql(expr.unary, inner.sql, inner.type);
  bound.nullable = inner.nullable;
  return bound;
}

BoundExpr Binder::bindBinary(const Expr& expr, Scope* scope) {
  switch (expr.binary) {
    case BinaryOp::And:
    case BinaryOp::Or:
      return bindLogic(expr, scope);
    case BinaryOp::Equal:
    case BinaryOp::NotEqual:
    case BinaryOp::Less:
    case BinaryOp::LessEqual:
    case BinaryOp::Greater:
    case BinaryOp::GreaterEqual:
      return compare(expr.binary, bindValue(*expr.left, scope), bindValue(*expr.right, scope));
    default:
      break;
  }
  return bindArithmetic(expr, scope);
}

// An integer literal beside a DECIMAL is one itself, of as many digits as it has.
BoundExpr Binder::exactOperand(const BoundExpr& operand, const Type& other) {
  if (other.id != TypeId::Decimal || operand.parameter < 0 || operand.type != intType) return operand;
  ParameterSource source = parameter(operand.parameter);
  if (source.kind != ParameterSource::Kind::Literal || source.to != source.from) return operand;
  const std::string& digits = source.value.text;
  const std::size_t zeros = std::min(digits.find_first_not_of('0'), digits.size() - 1);
  source.to = {TypeId::Decimal, 0, static_cast<std::uint8_t>(digits.size() - zeros), 0};
  return addParameter(std::move(source));
}

// SQLite goes on with an infinity where the server stops; columns and parameters hold none.
BoundExpr Binder::finite(const BoundExpr& expr) {
  if (!isApproximate(expr.type.id) || expr.column || expr.parameter >= 0) return expr;
  BoundExpr checked = expr;
  checked.sql = "z_f8(" + expr.sql + ")";
  return checked;
}

Type Binder::unify(const std::vector<BoundExpr>& exprs) {
  Type type;
  for (const BoundExpr& expr : exprs) type = commonType(type, expr.type);
  return type.id == TypeId::Null ? intType : type;
}

// The operand of a simple CASE stands once where SQLite's own form can compare it as it is, so that nested
// ones do not multiply; else in each test.
std::string Binder::caseTests(const Expr& expr, Scope* scope, std::vector<std::string>& tests) {
  if (!expr.left) {
    for (const WhenClause& clause : expr.whens) tests.push_back(bindCondition(*clause.when, scope).sql);
    return {};
  }
  const BoundExpr operand = bindValue(*expr.left, scope);
  std::vector<BoundExpr> values;
  for (const WhenClause& clause : expr.whens) values.push_back(bindValue(*clause.when, scope));
  const bool once = operand.type.id != TypeId::Null && !isLongText(operand.type.id) &&
                    std::all_of(values.begin(), values.end(), [&](const BoundExpr& value) {
                      return isCharacter(operand.type.id)
                                 ? isCharacter(value.type.id) && !isLongText(value.type.id)
                                 : comparisonType(operand.type, value.type) == operand.type;
                    });
  for (const BoundExpr& value : values) {
    if (!once)
      tests.push_back(compare(BinaryOp::Equal, operand, value).sql);
    else if (isCharacter(operand.type.id))
      tests.push_back("(" + value.sql + ") COLLATE " + sqliteCollation);
    else
      tests.push_back(convert(value, operand.type).sql);
  }
  return once ? " " + finite(operand).sql : std::string();
}

BoundExpr Binder::bindCase(const Expr& expr, Scope* scope) {
  ++lazy_;
  std::vector<std::string> tests;
  std::vector<BoundExpr> results;
  const std::string operand = caseTests(expr, scope, tests);
  for (const WhenClause& clause : expr.whens) results.push_back(bindValue(*clause.then, scope));
  if (expr.right) results.push_back(bindValue(*expr.right, scope));
  BoundExpr bound;
  bound.type = unify(results);
  bound.nullable = !expr.right;
  bound.sql = "(CASE" + operand;
  for (std::size_t i = 0; i < results.size(); ++i) {
    const bool otherwise = i >= tests.size();
    bound.sql += otherwise ? std::string(" ELSE ") : " WHEN " + tests[i] + " THEN ";
    bound.sql += convert(results[i], bound.type).sql;
    bound.nullable = bound.nullable || results[i].nullable;
  }
  bound.sql += " END)";
  requireReasonable(bound.sql);
  --lazy_;
  return bound;
}

BoundExpr Binder::convert(const BoundExpr& expr, const Type& type, bool assign, const std::string& column) {
  if (expr.type == type && !(assign && expr.parameter >= 0)) return expr;
  if (expr.type.id == TypeId::Null) {
    BoundExpr null = expr;
    null.type = type;
    return null;
  }
  if (expr.parameter >= 0 && parameter(expr.parameter).from == expr.type &&
      (lazy_ == 0 || isSafeConversion(expr.type, type))) {
    ParameterSource source = parameter(expr.parameter);
    source.to = type;
    source.assign = assign;
    source.column = column;
    BoundExpr bound = addParameter(std::move(source));
    bound.nullable = expr.nullable;
    return bound;
  }
  BoundExpr bound;
  bound.type = type;
  bound.nullable = expr.nullable;
  bound.sql = convertSql(expr.sql, expr.type, type, 0, assign);
  return bound;
}

BoundExpr Binder::assignTo(const BoundExpr& expr, const ColumnInfo& column) {
  requireImplicit(expr.type, column.type);
  return convert(finite(expr), column.type, true, column.name);
}

BoundExpr Binder::bindDefault(const Expr& expr, const ColumnInfo& column) {
  const bool outside = context_.fixedLiterals;
  context_.fixedLiterals = true;
  BoundExpr bound = assignTo(bindValue(expr, nullptr), column);
  context_.fixedLiterals = outside;
  return bound;
}

BoundExpr Binder::bindConversion(const Expr& expr, Scope* scope) {
  const BoundExpr operand = bindValue(*expr.left, scope);
  int style = 0;
  if (!expr.args.empty()) {
    const Expr& written = *expr.args[0];
    const bool minus = written.kind == Expr::Kind::Unary && written.unary == UnaryOp::Minus;
    const Expr& number = minus ? *written.left : written;
    if (number.kind != Expr::Kind::Literal || number.literal.kind != LiteralKind::Integer)
      throw Error(8116, "Argument data type is invalid for argument 3 of convert function.");
    style = std::atoi(number.literal.text.c_str()) * (minus ? -1 : 1);
    if (context_.structural && number.literal.ordinal >= 0 && !context_.fixedLiterals)
      context_.structural->push_back(number.literal.ordinal);
  }
  if (style == 0) {
    BoundExpr bound = convert(operand, expr.type);
    bound.column = false;
    if (bound.type == operand.type)
      bound.parameter = -1;  // CAST(5 AS INT) is an INT, no literal of one digit
    return bound;
  }
  BoundExpr bound;
  bound.type = expr.type;
  bound.nullable = operand.nullable;
  bound.sql = convertSql(operand.sql, operand.type, expr.type, style);
  return bound;
}

// The server has one collation; a COLLATE clause changes nothing but is checked for its operand.
BoundExpr Binder::bindCollate(const Expr& expr, Scope* scope) {
  BoundExpr bound = bindValue(*expr.left, scope);
  if (!isCharacter(bound.type.id) && bound.type.id != TypeId::Null)
    throw Error(
        447, std::string("Expression type ") + typeName(bound.type.id) + " is invalid for COLLATE clause.");
  return bound;
}

BoundStatement Binder::finish(const std::string& sql) const {
  BoundStatement done;
  std::vector<int> renumbered(parameters_.size(), 0);
  bool quoted = false;
  for (std::size_t i = 0; i < sql.size(); ++i) {
    const char c = sql[i];
    if (c == '"') quoted = !quoted;
    // A statement with a union in FROM is repeated for each of its SELECTs; in the copies SQLite loses the
    // places of ON, and of SELECTs with RIGHT or FULL joins the conditions.
    if (c == unionEnd && !quoted) {
      if (outerJoins_) done.sql += " LIMIT -1 OFFSET 0";
      continue;
    }
    done.sql += c;
    if (quoted || c != '?') continue;
    std::size_t number = 0;
    while (i + 1 < sql.size() && sql[i + 1] >= '0' && sql[i + 1] <= '9')
      number = number * 10 + static_cast<std::size_t>(sql[++i] - '0');
    int& target = renumbered[number - 1];
    if (target == 0) {
      done.parameters.push_back(parameters_[number - 1]);
      target = static_cast<int>(done.parameters.size());
      continue;  // a bare ? takes the next number; SQLite looks through all numbers for one that is given
    }
    done.sql += std::to_string(target);
  }
  return done;
}

bool Binder::readsVariable(const std::vector<std::string>& names) const {
  for (const ParameterSource& source : parameters_) {
    if (source.kind != ParameterSource::Kind::Variable) continue;
    const std::string& read = context_.variables->variables[static_cast<std::size_t>(source.index)].name;
    if (std::any_of(names.begin(), names.end(), [&](const std::string& n) { return foldName(n) == read; }))
      return true;
  }
  return false;
}

}  // namespace engine
