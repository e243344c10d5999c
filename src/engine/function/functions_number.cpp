// Number functions: types and templates.
#include <algorithm>
#include <array>

#include "engine/function/function_binding.h"
#include "engine/value.h"

namespace engine {
namespace {

constexpr Type floating{TypeId::Float};
constexpr Type integer{TypeId::Int};

// The type in which the functions of any number work: small integers widen, text becomes FLOAT.
Type workingType(const FunctionInfo& info, Arguments arguments) {
  const Type& type = arguments[0].type;
  switch (type.id) {
    case TypeId::TinyInt:
    case TypeId::SmallInt:
      return integer;
    case TypeId::SmallMoney:
      return {TypeId::Money};
    case TypeId::Int:
    case TypeId::BigInt:
    case TypeId::Money:
    case TypeId::Decimal:
    case TypeId::Float:
      return type;
    case TypeId::Bit:
    case TypeId::Real:
    case TypeId::Char:
    case TypeId::VarChar:
    case TypeId::NChar:
    case TypeId::NVarChar:
    case TypeId::Null:
      return floating;
    default:
      throwArgument(info, arguments, 0);
  }
}

// function(value, packed type): same type out as in. A DECIMAL has room for `whole` digits before the point.
BoundFunction bindSameNumber(const FunctionInfo& info, Arguments arguments, const char* function,
                             int whole = 0) {
  Type type = workingType(info, arguments);
  if (type.id == TypeId::Decimal)
    type.precision =
        static_cast<std::uint8_t>(std::clamp<int>(type.scale + whole, type.precision, maxPrecision));
  return bound(type, std::string(function) + '(' + argumentAs(arguments, 0, type) + ',' +
                         std::to_string(packType(type)) + ')');
}

BoundFunction bindAbs(const FunctionInfo& info, Arguments arguments) {
  return bindSameNumber(info, arguments, "z_abs");
}
BoundFunction bindSign(const FunctionInfo& info, Arguments arguments) {
  return bindSameNumber(info, arguments, "z_sign", 1);
}

BoundFunction bindFloor(const FunctionInfo& info, Arguments arguments) {
  BoundFunction function = bindSameNumber(info, arguments, info.name[0] == 'C' ? "z_ceiling" : "z_floor");
  if (isInteger(function.result.id)) function.sql = "$1";
  function.result.scale = 0;
  return function;
}

BoundFunction bindRound(const FunctionInfo& info, Arguments arguments) {
  const Type type = workingType(info, arguments);
  return bound(type, "z_round(" + argumentAs(arguments, 0, type) + ',' + argumentAs(arguments, 1, integer) +
                         ',' + (arguments.size() > 2 ? argumentAs(arguments, 2, integer) : "0") + ',' +
                         std::to_string(packType(type)) + ')');
}

BoundFunction bindPower(const FunctionInfo& info, Arguments arguments) {
  Type type = workingType(info, arguments);
  if (type.id == TypeId::Decimal) type.precision = 38;
  return bound(type, convertSql("z_power(" + argumentAs(arguments, 0, floating) + ',' +
                                    argumentAs(arguments, 1, floating) + ')',
                                floating, type));
}

std::string lowerName(const FunctionInfo& info) {
  std::string name = info.name;
  for (char& c : name) c = c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
  return name;
}

// FLOAT functions of one or two FLOATs: z_sqrt and so on.
BoundFunction bindFloat(const FunctionInfo& info, Arguments arguments) {
  std::string sql = "z_" + lowerName(info) + '(' + argumentAs(arguments, 0, floating);
  if (arguments.size() > 1) sql += ',' + argumentAs(arguments, 1, floating);
  return bound(floating, sql + ')');
}

BoundFunction bindPi(const FunctionInfo&, Arguments) {
  return bound(floating, "3.141592653589793", false);
}

BoundFunction bindRand(const FunctionInfo&, Arguments arguments) {
  BoundFunction function = bound(
      floating, arguments.empty() ? "z_rand()" : "z_rand(" + argumentAs(arguments, 0, integer) + ')', false);
  function.deterministic = false;
  return function;
}

BoundFunction bindIsNumeric(const FunctionInfo&, Arguments arguments) {
  const Type& type = arguments[0].type;
  if (isNumeric(type.id)) return bound(integer, "($1 IS NOT NULL)", false);
  return bound(integer, isCharacter(type.id) ? "z_isnumeric($1)" : "0", false);
}

constexpr std::array functions = {
    FunctionInfo{"ABS", 1, 1, false, false, 0, bindAbs},
    FunctionInfo{"SIGN", 1, 1, false, false, 0, bindSign},
    FunctionInfo{"FLOOR", 1, 1, false, false, 0, bindFloor},
    FunctionInfo{"CEILING", 1, 1, false, false, 0, bindFloor},
    FunctionInfo{"ROUND", 2, 3, false, false, 0, bindRound},
    FunctionInfo{"POWER", 2, 2, false, false, 0, bindPower},
    FunctionInfo{"SQRT", 1, 1, false, false, 0, bindFloat},
    FunctionInfo{"SQUARE", 1, 1, false, false, 0, bindFloat},
    FunctionInfo{"EXP", 1, 1, false, false, 0, bindFloat},
    FunctionInfo{"LOG", 1, 1, false, false, 0, bindFloat},
    FunctionInfo{"LOG10", 1, 1, false, false, 0, bindFloat},
    FunctionInfo{"SIN", 1, 1, false, false, 0, bindFloat},
    FunctionInfo{"COS", 1, 1, false, false, 0, bindFloat},
    FunctionInfo{"TAN", 1, 1, false, false, 0, bindFloat},
    FunctionInfo{"COT", 1, 1, false, false, 0, bindFloat},
    FunctionInfo{"ASIN", 1, 1, false, false, 0, bindFloat},
    FunctionInfo{"ACOS", 1, 1, false, false, 0, bindFloat},
    FunctionInfo{"ATAN", 1, 1, false, false, 0, bindFloat},
    FunctionInfo{"ATN2", 2, 2, false, false, 0, bindFloat},
    FunctionInfo{"DEGREES", 1, 1, false, false, 0, bindFloat},
    FunctionInfo{"RADIANS", 1, 1, false, false, 0, bindFloat},
    FunctionInfo{"PI", 0, 0, false, false, 0, bindPi},
    FunctionInfo{"RAND", 0, 1, false, false, 0, bindRand},
    FunctionInfo{"ISNUMERIC", 1, 1, false, false, 0, bindIsNumeric},
};

}  // namespace

std::span<const FunctionInfo> numberFunctions() {
  return functions;
}

}  // namespace engine
