// The built-in functions and aggregates that depend on nothing but their arguments, the clock and the
// session's date settings. How the binder uses them:
//
//   const FunctionInfo* info = findFunction(name);             // null: not one of ours
//   BoundFunction bound = bindFunction(*info, arguments);      // throws 174, 189, 155, 8116, 8117, 206
//   std::string sql = functionSql(bound, argumentSqls, distinct);
//
// The template of a BoundFunction holds every conversion and padding of its arguments, so that the
// arguments are given in the physical form of their own types. An argument may occur in it twice:
// parameters in arguments must be numbered or named.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "engine/value.h"

struct sqlite3;

namespace engine {

struct BoundFunction;
struct FunctionArgument;

struct FunctionInfo {
  const char* name;  // upper case
  int minArguments;
  int maxArguments;
  bool aggregate;
  // The first argument is the bare name of a date part: DATEADD(day, ...); it is no expression, and
  // its place in the list of SQL texts is ignored.
  bool datePart;
  // The type of the result depends on the value of constant arguments (a bit per argument): a plan
  // that knows them is only good for the same values. LEFT('..', 3) is VARCHAR(3).
  unsigned structural;
  BoundFunction (*bind)(const FunctionInfo& info, std::span<const FunctionArgument> arguments);
};

// By ASCII folding. COUNT(*) is COUNT with no argument.
const FunctionInfo* findFunction(std::string_view name);

struct FunctionArgument {
  Type type;
  std::optional<Datum> constant;  // when it is a literal whose value shapes the plan
  std::string word;               // the bare name, when it is a date part
  bool nullable = true;
};

struct BoundFunction {
  Type result;
  bool nullable = true;   // when an argument is
  bool ownNulls = false;  // can give NULL from arguments that are not
  bool aggregate = false;
  bool deterministic = true;
  std::string sql;  // template: $1, $2 .. are the arguments, $D the place of DISTINCT
};

BoundFunction bindFunction(const FunctionInfo& info, std::span<const FunctionArgument> arguments);
std::string functionSql(const BoundFunction& bound, std::span<const std::string> arguments,
                        bool distinct = false);

// What the functions of one connection share with its session, which owns it.
struct FunctionContext : ConvertContext {
  int dateFirst = 7;               // SET DATEFIRST
  std::int64_t statementTime = 0;  // GETDATE() within one statement, in ticks; 0: read the clock
  std::uint64_t randomState = 0;   // RAND(); 0: not yet seeded
};

// Local time in ticks.
std::int64_t currentTicks();

// Registers the collation TRCI and the z_ functions on a connection; `context` must outlive it.
void registerFunctions(sqlite3* connection, FunctionContext* context);

}  // namespace engine
