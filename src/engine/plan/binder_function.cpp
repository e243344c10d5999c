#include <algorithm>
#include <array>

#include "engine/function.h"
#include "engine/plan/binder.h"
#include "engine/value.h"

namespace engine {
namespace {

const Type intType{TypeId::Int};
const Type nameType{TypeId::NVarChar, 128};

// Functions that ask the session or the catalog. With arguments they are SQL functions of the session,
// which take names as text and ids as numbers.
struct SystemFunction {
  const char* name;
  const char* sql;  // SQL function; null when there are no arguments
  Type result;
  int minArguments, maxArguments;
  SystemValue plain;  // the value without arguments
  bool hasPlain;
};

const std::array systemFunctions = {
    SystemFunction{"db_name", "z_db_name", nameType, 0, 1, SystemValue::DatabaseName, true},
    SystemFunction{"db_id", "z_db_id", {TypeId::SmallInt}, 0, 1, SystemValue::DatabaseId, true},
    SystemFunction{"object_id", "z_object_id", intType, 1, 2, {}, false},
    SystemFunction{"object_name", "z_object_name", nameType, 1, 2, {}, false},
    SystemFunction{"object_schema_name", "z_object_schema", nameType, 1, 2, {}, false},
    SystemFunction{"col_name", "z_col_name", nameType, 2, 2, {}, false},
    SystemFunction{"columnproperty", "z_column_property", intType, 3, 3, {}, false},
    SystemFunction{"indexproperty", "z_index_property", intType, 3, 3, {}, false},
    SystemFunction{"serverproperty", "z_server_property", nameType, 1, 1, {}, false},
    SystemFunction{"databasepropertyex", "z_database_property", nameType, 2, 2, {}, false},
    SystemFunction{"has_dbaccess", "z_has_dbaccess", intType, 1, 1, {}, false},
    SystemFunction{"is_srvrolemember", "z_is_srvrolemember", intType, 1, 2, {}, false},
    SystemFunction{"type_name", "z_type_name", nameType, 1, 1, {}, false},
    SystemFunction{"type_id", "z_type_id", intType, 1, 1, {}, false},
    SystemFunction{"schema_name", "z_schema_name", nameType, 0, 1, {}, false},
    SystemFunction{"schema_id", "z_schema_id", intType, 0, 1, {}, false},
    SystemFunction{"col_length", "z_col_length", {TypeId::SmallInt}, 2, 2, {}, false},
    SystemFunction{"objectproperty", "z_object_property", intType, 2, 2, {}, false},
    SystemFunction{"ident_current", "z_ident_current", {TypeId::Decimal, 0, 18, 0}, 1, 1, {}, false},
    SystemFunction{"user_name", "z_user_name", nameType, 0, 1, SystemValue::UserName, true},
    SystemFunction{"suser_name", "z_suser_name", nameType, 0, 1, SystemValue::Login, true},
    SystemFunction{"suser_sname", "z_suser_name", nameType, 0, 1, SystemValue::Login, true},
    SystemFunction{"user", nullptr, nameType, 0, 0, SystemValue::UserName, true},
    SystemFunction{"current_user", nullptr, nameType, 0, 0, SystemValue::UserName, true},
    SystemFunction{"session_user", nullptr, nameType, 0, 0, SystemValue::UserName, true},
    SystemFunction{"system_user", nullptr, nameType, 0, 0, SystemValue::Login, true},
    SystemFunction{
        "scope_identity", nullptr, {TypeId::Decimal, 0, 18, 0}, 0, 0, SystemValue::ScopeIdentity, true},
    SystemFunction{"error_number", nullptr, intType, 0, 0, SystemValue::ErrorNumber, true},
    SystemFunction{"error_severity", nullptr, intType, 0, 0, SystemValue::ErrorSeverity, true},
    SystemFunction{"error_state", nullptr, intType, 0, 0, SystemValue::ErrorState, true},
    SystemFunction{"error_line", nullptr, intType, 0, 0, SystemValue::ErrorLine, true},
    SystemFunction{"error_procedure", nullptr, nameType, 0, 0, SystemValue::ErrorProcedure, true},
    SystemFunction{"error_message", nullptr, {TypeId::NVarChar, 4000}, 0, 0, SystemValue::ErrorMessage, true},
    SystemFunction{"xact_state", nullptr, {TypeId::SmallInt}, 0, 0, SystemValue::TransactionState, true},
    SystemFunction{"getdate", nullptr, {TypeId::DateTime}, 0, 0, SystemValue::Now, true},
    SystemFunction{"current_timestamp", nullptr, {TypeId::DateTime}, 0, 0, SystemValue::Now, true},
};

// SQL_VARIANT there is none: a property that is a number has the type of one where it is written as a
// literal.
bool isVariant(std::string_view function) {
  return function == "serverproperty" || function == "databasepropertyex";
}
bool isNumberProperty(const Expr& property) {
  if (property.kind != Expr::Kind::Literal) return false;
  const std::string name = foldName(property.literal.text);
  return name.starts_with("is") || name == "engineedition" || name == "lcid" || name == "processid" ||
         name == "version" || name == "sqlsortorder";
}

Error nestedAggregate() {
  return Error(
      130, "Cannot perform an aggregate function on an expression containing an aggregate or a subquery.");
}

Error argumentCount(const std::string& name, int count) {
  return Error(174, "The " + name + " function requires " + std::to_string(count) + " argument(s).", 15);
}

}  // namespace

bool isAggregateName(std::string_view foldedName) {
  const FunctionInfo* info = findFunction(foldedName);
  return info && info->aggregate;
}

std::optional<BoundExpr> Binder::bindSystemFunction(const Expr& expr, const std::string& name, Scope* scope) {
  for (const SystemFunction& known : systemFunctions) {
    if (name != known.name) continue;
    const int count = static_cast<int>(expr.args.size());
    if (count < known.minArguments || count > known.maxArguments)
      throw argumentCount(name, known.minArguments);
    if (count == 0 && known.hasPlain) return systemParameter(known.plain, known.result);
    BoundExpr bound;
    bound.type = known.result;
    bound.sql = std::string(known.sql) + "(";
    for (int i = 0; i < count; ++i) {
      BoundExpr arg = bindValue(*expr.args[static_cast<std::size_t>(i)], scope);
      if (!isCharacter(arg.type.id)) arg = convert(arg, intType);
      bound.sql += (i ? "," : "") + arg.sql;
    }
    if (isVariant(name)) {
      const Expr& property = *expr.args.back();
      const bool number = isNumberProperty(property);
      if (number) bound.type = intType;
      bound.sql += number ? ",1" : ",0";
      if (context_.structural && property.kind == Expr::Kind::Literal && property.literal.ordinal >= 0 &&
          !context_.fixedLiterals)
        context_.structural->push_back(property.literal.ordinal);
    }
    bound.sql += ")";
    return bound;
  }
  return std::nullopt;
}

BoundExpr Binder::bindFunction(const Expr& expr, Scope* scope) {
  const std::string name = foldName(expr.name);
  if (name == "update" && context_.trigger && expr.args.size() == 1) {
    BoundExpr test;
    test.sql = "z_updated(" + bindLiteral({LiteralKind::Text, expr.args[0]->name, -1}, false).sql + ")";
    test.type = intType;
    test.condition = true;
    return test;
  }
  if (auto system = bindSystemFunction(expr, name, scope)) return *system;
  const FunctionInfo* info = findFunction(expr.name);
  if (!info && isRankingName(name))
    throw Error(10753, "The function '" + expr.name + "' must have an OVER clause.", 15);
  if (!info) throw Error(195, "'" + expr.name + "' is not a recognized built-in function name.", 15);
  if (info->aggregate) return bindAggregate(expr, scope);

  std::vector<FunctionArgument> arguments;
  std::vector<std::string> sqls;
  bool nullable = false;
  const bool branches = name == "coalesce" || name == "isnull" || name == "nullif";
  if (branches) ++lazy_;
  for (std::size_t i = 0; i < expr.args.size(); ++i) {
    const Expr& written = *expr.args[i];
    FunctionArgument argument;
    if (info->datePart && i == 0) {
      argument.word = written.name;
      arguments.push_back(argument);
      sqls.emplace_back();
      continue;
    }
    const BoundExpr bound = bindValue(written, scope);
    argument.type = bound.type;
    argument.nullable = bound.nullable;
    if (written.kind == Expr::Kind::Literal && i < 32 && (info->structural >> i & 1)) {
      argument.constant = literalDatum(written.literal);
      if (context_.structural && written.literal.ordinal >= 0 && !context_.fixedLiterals)
        context_.structural->push_back(written.literal.ordinal);
    }
    arguments.push_back(argument);
    sqls.push_back(bound.sql);
    nullable = nullable || bound.nullable;
  }
  if (branches) --lazy_;
  const BoundFunction function = engine::bindFunction(*info, arguments);
  BoundExpr result;
  result.type = function.result;
  result.nullable = function.nullable && (nullable || branches || function.ownNulls);
  result.sql = functionSql(function, sqls);
  requireReasonable(result.sql);
  return result;
}

// The scope whose rows an aggregate is over: that of its innermost column.
Scope* Binder::aggregateScope(const Expr& expr, Scope* scope) {
  Scope* owner = nullptr;
  const auto inside = [&](Scope* found) {
    for (Scope* at = scope; found && at; at = at->parent)
      if (at == owner || at == found) {
        owner = at;
        return;
      }
  };
  forEachColumn(expr, [&](const Expr& column) { inside(scopeOf(column, scope)); });
  return owner && !owner->gathered.empty() ? owner : scope;
}

// Whether the expression holds an aggregate over the rows of `scope` itself.
bool Binder::aggregatesItself(const Expr& expr, Scope& scope) {
  if (expr.kind == Expr::Kind::Function && isAggregateName(foldName(expr.name)))
    return aggregateScope(expr, &scope) == &scope;
  const auto inside = [&](const ExprPtr& e) { return e && aggregatesItself(*e, scope); };
  if (inside(expr.left) || inside(expr.right)) return true;
  if (std::any_of(expr.args.begin(), expr.args.end(), inside)) return true;
  return std::any_of(expr.whens.begin(), expr.whens.end(),
                     [&](const WhenClause& w) { return inside(w.when) || inside(w.then); });
}

BoundExpr Binder::bindAggregate(const Expr& expr, Scope* from) {
  Scope* scope = from ? aggregateScope(expr, from) : from;
  if (scope && from->inAggregate > 0) throw nestedAggregate();
  if (!scope || !scope->aggregatesAllowed)
    throw Error(147,
                "An aggregate may not appear in the WHERE clause unless it is in a subquery contained in a "
                "HAVING clause or a select list, and the column being aggregated is an outer reference.");
  if (scope->inAggregate > 0) throw nestedAggregate();
  std::vector<FunctionArgument> arguments;
  std::vector<std::string> sqls;
  ++scope->inAggregate;
  for (const ExprPtr& arg : expr.args) {
    if (containsSubquery(*arg)) throw nestedAggregate();
    const BoundExpr bound = bindValue(*arg, scope);
    arguments.push_back({bound.type, std::nullopt, {}});
    sqls.push_back(bound.sql);
  }
  --scope->inAggregate;
  const FunctionInfo* info = findFunction(expr.name);
  const BoundFunction function = engine::bindFunction(*info, arguments);
  BoundExpr result;
  result.type = function.result;
  result.nullable = function.nullable;
  result.aggregate = true;
  result.sql = functionSql(function, sqls, expr.distinct);
  if (!scope->gathered.empty()) {
    const std::string name = scope->gathered + ".a" + std::to_string(scope->aggregates.size());
    scope->aggregates.push_back(std::exchange(result.sql, name));
  }
  return result;
}

}  // namespace engine
