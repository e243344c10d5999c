// ISNULL and its kin, NEWID, and the aggregates: types and templates.
#include <algorithm>
#include <array>

#include "engine/function/function_binding.h"
#include "engine/value.h"

namespace engine {
namespace {

constexpr Type integer{TypeId::Int};
constexpr Type bigInteger{TypeId::BigInt};
constexpr int manyArguments = 4096;
constexpr std::size_t callWidth = 100;  // SQLite takes 127 arguments in one call

BoundFunction bindIsNull(const FunctionInfo&, Arguments arguments) {
  const Type type = arguments[0].type.id == TypeId::Null ? arguments[1].type : arguments[0].type;
  return bound(type, "coalesce($1," + argumentAs(arguments, 1, type) + ')',
               arguments[0].nullable && arguments[1].nullable);
}

BoundFunction bindCoalesce(const FunctionInfo&, Arguments arguments) {
  Type type;
  bool nullable = false;  // by its first argument alone it might be: it is a CASE
  for (const FunctionArgument& argument : arguments) {
    type = commonType(type, argument.type);
    nullable = nullable || argument.nullable;
  }
  if (type.id == TypeId::Null)
    throw Error(
        4127,
        "At least one of the arguments to COALESCE must be an expression that is not the NULL constant.");
  std::string sql = "coalesce(", end = ")";
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const bool full = i > 0 && i % callWidth == 0 && i + 1 < arguments.size();
    sql += std::string(i ? "," : "") + (full ? "coalesce(" : "") + argumentAs(arguments, i, type);
    if (full) end += ')';
  }
  return bound(type, sql + end, nullable);
}

BoundFunction bindNullIf(const FunctionInfo&, Arguments arguments) {
  const Type &first = arguments[0].type, &second = arguments[1].type;
  if (first.id == TypeId::Null)
    throw Error(4151,
                "The type of the first argument to NULLIF cannot be the NULL constant because the type of "
                "the first argument has to be known.");
  // SQLite's own function looks at its first argument once, so that nested ones do not multiply.
  if (isCharacter(first.id) && isCharacter(second.id) && !isLongText(first.id) && !isLongText(second.id))
    return bound(first, std::string("nullif($1,($2) COLLATE ") + sqliteCollation + ')');
  if (comparisonType(first, second) == first)
    return bound(first, "nullif($1," + argumentAs(arguments, 1, first) + ')');
  const std::string equal = comparisonSql(BinaryOp::Equal, "$1", first, "$2", second);
  return bound(first, "CASE WHEN " + equal + " THEN NULL ELSE $1 END");
}

BoundFunction bindNewId(const FunctionInfo&, Arguments) {
  BoundFunction function = bound({TypeId::Char, 36}, "z_newid()", false);
  function.deterministic = false;
  return function;
}

// ---- aggregates ----

std::string collated(const Type& type) {
  return isCharacter(type.id) ? std::string("$D$1 COLLATE ") + sqliteCollation : "$D$1";
}

BoundFunction bindCount(const FunctionInfo& info, Arguments arguments) {
  const Type result = info.name[5] ? bigInteger : integer;
  if (arguments.empty()) return bound(result, "count(*)", false);
  if (isLongText(arguments[0].type.id)) throwOperand(info, arguments[0].type);
  return bound(result, "count(" + collated(arguments[0].type) + ')', false);
}

BoundFunction bindExtreme(const FunctionInfo& info, Arguments arguments) {
  const Type& type = arguments[0].type;
  if (type.id == TypeId::Bit || type.id == TypeId::Null || isLongText(type.id)) throwOperand(info, type);
  return bound(type, (info.name[1] == 'I' ? "min(" : "max(") + collated(type) + ')');
}

BoundFunction bindSum(const FunctionInfo& info, Arguments arguments) {
  const Type& type = arguments[0].type;
  switch (type.id) {
    case TypeId::TinyInt:
    case TypeId::SmallInt:
    case TypeId::Int:
      return bound(integer, "z_sumi4($D$1)");
    case TypeId::BigInt:
      return bound(bigInteger, "z_sumi8($D$1)");
    case TypeId::SmallMoney:
    case TypeId::Money:
      return bound({TypeId::Money}, "z_summ($D$1)");
    case TypeId::Decimal:
      return bound({TypeId::Decimal, 0, 38, type.scale}, "z_sumd($D$1)");
    case TypeId::Real:
    case TypeId::Float:
      return bound({TypeId::Float}, "sum($D$1)");
    default:
      throwOperand(info, type);
  }
}

BoundFunction bindAvg(const FunctionInfo& info, Arguments arguments) {
  constexpr int averageScale = 6;
  const Type& type = arguments[0].type;
  switch (type.id) {
    case TypeId::TinyInt:
    case TypeId::SmallInt:
    case TypeId::Int:
      return bound(integer, "z_avgi4($D$1)");
    case TypeId::BigInt:
      return bound(bigInteger, "z_avgi8($D$1)");
    case TypeId::SmallMoney:
    case TypeId::Money:
      return bound({TypeId::Money}, "z_avgi8($D$1)");
    case TypeId::Decimal: {
      const int raise = std::max(0, averageScale - type.scale);
      const Type wide{TypeId::Decimal, 0, 38, static_cast<std::uint8_t>(type.scale + raise)};
      return bound(wide, "z_avgd" + std::to_string(raise) + "($D$1)");
    }
    case TypeId::Real:
    case TypeId::Float:
      return bound({TypeId::Float}, "avg($D$1)");
    default:
      throwOperand(info, type);
  }
}

constexpr std::array functions = {
    FunctionInfo{"ISNULL", 2, 2, false, false, 0, bindIsNull},
    FunctionInfo{"COALESCE", 2, manyArguments, false, false, 0, bindCoalesce},
    FunctionInfo{"NULLIF", 2, 2, false, false, 0, bindNullIf},
    FunctionInfo{"NEWID", 0, 0, false, false, 0, bindNewId},
    FunctionInfo{"COUNT", 0, 1, true, false, 0, bindCount},
    FunctionInfo{"COUNT_BIG", 0, 1, true, false, 0, bindCount},
    FunctionInfo{"MIN", 1, 1, true, false, 0, bindExtreme},
    FunctionInfo{"MAX", 1, 1, true, false, 0, bindExtreme},
    FunctionInfo{"SUM", 1, 1, true, false, 0, bindSum},
    FunctionInfo{"AVG", 1, 1, true, false, 0, bindAvg},
};

}  // namespace

std::span<const FunctionInfo> generalFunctions() {
  return functions;
}

}  // namespace engine
