// function OVER (PARTITION BY .. ORDER BY ..): SQLite's own windows over the dialect's functions.
#include <algorithm>

#include "engine/function.h"
#include "engine/plan/binder.h"

namespace engine {
namespace {

struct RankingFunction {
  const char* name;
  const char* sql;
  std::size_t arguments;
};

constexpr RankingFunction rankings[] = {
    {"row_number", "row_number()", 0},
    {"rank", "rank()", 0},
    {"dense_rank", "dense_rank()", 0},
    {"ntile", "ntile(z_tiles(", 1},
};

// SQL Server's other functions of windows.
constexpr const char* missing[] = {"lag",          "lead",      "first_value",     "last_value",
                                   "percent_rank", "cume_dist", "percentile_cont", "percentile_disc"};

const RankingFunction* findRanking(const std::string& name) {
  const auto found = std::find_if(std::begin(rankings), std::end(rankings),
                                  [&](const RankingFunction& each) { return name == each.name; });
  return found == std::end(rankings) ? nullptr : found;
}

}  // namespace

bool isRankingName(std::string_view foldedName) {
  return findRanking(std::string(foldedName)) != nullptr;
}

// The function with its arguments, before OVER.
BoundExpr Binder::windowFunction(const Expr& expr, Scope* scope) {
  const std::string name = foldName(expr.name);
  const WindowClause& window = *expr.window;
  BoundExpr result;
  if (const RankingFunction* ranking = findRanking(name)) {
    if (window.arguments != ranking->arguments)
      throw Error(
          174, "The " + name + " function requires " + std::to_string(ranking->arguments) + " argument(s).",
          15);
    if (window.descending.empty())
      throw Error(4112, "The function '" + expr.name + "' must have an OVER clause with ORDER BY.", 15);
    if (!window.frame.empty())
      throw Error(10752, "The function '" + expr.name + "' may not have a window frame.", 15);
    result.type = {TypeId::BigInt};
    result.nullable = false;
    result.sql = ranking->sql;
    if (ranking->arguments > 0)
      result.sql += convert(bindValue(*expr.args[0], scope), result.type).sql + "))";
    return result;
  }
  if (std::find(std::begin(missing), std::end(missing), name) != std::end(missing))
    throw Error(50000, "'" + expr.name + "' is not supported by the embedded server.");
  const FunctionInfo* info = findFunction(name);
  if (!info) throw Error(195, "'" + expr.name + "' is not a recognized built-in function name.", 15);
  if (!info->aggregate)
    throw Error(4113,
                "The function '" + expr.name +
                    "' is not a valid windowing function, and cannot be used with the OVER clause.",
                15);
  std::vector<FunctionArgument> arguments;
  std::vector<std::string> sqls;
  for (std::size_t i = 0; i < window.arguments; ++i) {
    const BoundExpr bound = bindValue(*expr.args[i], scope);
    arguments.push_back({bound.type, std::nullopt, {}});
    sqls.push_back(bound.sql);
  }
  const BoundFunction function = engine::bindFunction(*info, arguments);
  result.type = function.result;
  result.nullable = function.nullable;
  result.sql = functionSql(function, sqls);
  return result;
}

std::string Binder::windowTerms(const Expr& expr, std::size_t from, std::size_t to, Scope* scope) {
  std::string terms;
  const std::size_t order = expr.window->arguments + expr.window->partitions;
  for (std::size_t i = from; i < to; ++i) {
    const BoundExpr term = bindValue(*expr.args[i], scope);
    if (isLongText(term.type.id)) throw notSortable();
    terms += (i > from ? ", " : "") + withCollation(term);
    if (i >= order && expr.window->descending[i - order]) terms += " DESC";
  }
  return terms;
}

BoundExpr Binder::bindWindow(const Expr& expr, Scope* scope) {
  if (scope && (scope->inWindow || scope->inAggregate > 0))
    throw Error(4109,
                "Windowed functions cannot be used in the context of another windowed function or aggregate.",
                15);
  if (!scope || !scope->aggregatesAllowed || scope->clause == Scope::Clause::Having)
    throw Error(4108, "Windowed functions can only appear in the SELECT or ORDER BY clauses.", 15);
  const WindowClause& window = *expr.window;
  const std::size_t partition = window.arguments, order = partition + window.partitions;
  scope->inWindow = true;
  BoundExpr result = windowFunction(expr, scope);
  std::string clause;
  if (window.partitions > 0) clause = "PARTITION BY " + windowTerms(expr, partition, order, scope);
  if (!window.descending.empty())
    clause +=
        (clause.empty() ? "ORDER BY " : " ORDER BY ") + windowTerms(expr, order, expr.args.size(), scope);
  if (!window.frame.empty()) clause += ' ' + window.frame;
  scope->inWindow = false;
  result.sql += " OVER (" + clause + ")";
  return result;
}

}  // namespace engine
