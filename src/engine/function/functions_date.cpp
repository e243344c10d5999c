// Date functions: types and templates.
#include <array>

#include "engine/function/function_binding.h"
#include "engine/value.h"

namespace engine {
namespace {

constexpr Type integer{TypeId::Int};
constexpr Type dateTime{TypeId::DateTime};

std::string lowerName(const FunctionInfo& info) {
  std::string name = info.name;
  for (char& c : name) c = c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
  return name;
}

std::string partCode(const FunctionInfo& info, Arguments arguments) {
  const auto part = findDatePart(arguments[0].word);
  if (!part)
    throw Error(155, '\'' + arguments[0].word + "' is not a recognized " + lowerName(info) + " option.", 15);
  return std::to_string(static_cast<int>(*part));
}

BoundFunction bindDateAdd(const FunctionInfo& info, Arguments arguments) {
  const bool small = arguments[2].type.id == TypeId::SmallDateTime;
  const std::string sql = "z_dateadd(" + partCode(info, arguments) + ',' + argumentAs(arguments, 1, integer) +
                          ',' + argumentAs(arguments, 2, dateTime) + ')';
  return bound(small ? Type{TypeId::SmallDateTime} : dateTime, small ? "z_sdt(" + sql + ')' : sql);
}

BoundFunction bindDateDiff(const FunctionInfo& info, Arguments arguments) {
  return bound(integer, "z_datediff(" + partCode(info, arguments) + ',' + argumentAs(arguments, 1, dateTime) +
                            ',' + argumentAs(arguments, 2, dateTime) + ')');
}

BoundFunction bindDatePart(const FunctionInfo& info, Arguments arguments) {
  return bound(integer,
               "z_datepart(" + partCode(info, arguments) + ',' + argumentAs(arguments, 1, dateTime) + ')');
}

BoundFunction bindDateName(const FunctionInfo& info, Arguments arguments) {
  return bound({TypeId::NVarChar, 30},
               "z_datename(" + partCode(info, arguments) + ',' + argumentAs(arguments, 1, dateTime) + ')');
}

// DAY, MONTH, YEAR
BoundFunction bindPart(const FunctionInfo& info, Arguments arguments) {
  const int code = static_cast<int>(*findDatePart(info.name));
  return bound(integer,
               "z_datepart(" + std::to_string(code) + ',' + argumentAs(arguments, 0, dateTime) + ')');
}

BoundFunction bindNow(const FunctionInfo& info, Arguments) {
  BoundFunction function = bound(dateTime, info.name[3] == 'U' ? "z_utcnow()" : "z_now()", false);
  function.deterministic = false;
  return function;
}

BoundFunction bindIsDate(const FunctionInfo&, Arguments arguments) {
  const Type& type = arguments[0].type;
  if (isDateTime(type.id)) return bound(integer, "($1 IS NOT NULL)", false);
  if (isCharacter(type.id)) return bound(integer, "z_isdate($1)", false);
  return bound(integer, "z_isdate(" + textArgument(arguments, 0) + ')', false);
}

constexpr std::array functions = {
    FunctionInfo{"GETDATE", 0, 0, false, false, 0, bindNow},
    FunctionInfo{"CURRENT_TIMESTAMP", 0, 0, false, false, 0, bindNow},
    FunctionInfo{"GETUTCDATE", 0, 0, false, false, 0, bindNow},
    FunctionInfo{"DATEADD", 3, 3, false, true, 0, bindDateAdd},
    FunctionInfo{"DATEDIFF", 3, 3, false, true, 0, bindDateDiff},
    FunctionInfo{"DATEPART", 2, 2, false, true, 0, bindDatePart},
    FunctionInfo{"DATENAME", 2, 2, false, true, 0, bindDateName},
    FunctionInfo{"DAY", 1, 1, false, false, 0, bindPart},
    FunctionInfo{"MONTH", 1, 1, false, false, 0, bindPart},
    FunctionInfo{"YEAR", 1, 1, false, false, 0, bindPart},
    FunctionInfo{"ISDATE", 1, 1, false, false, 0, bindIsDate},
};

}  // namespace

std::span<const FunctionInfo> dateFunctions() {
  return functions;
}

}  // namespace engine
