#include "engine/function/functions.h"

#include <algorithm>
#include <cstdlib>
#include <unordered_map>

#include "engine/function/function_binding.h"
#include "engine/value.h"

namespace engine {
namespace {

using Index = std::unordered_map<std::string_view, const FunctionInfo*>;

Index makeIndex() {
  Index index;
  for (const auto family : {textFunctions(), numberFunctions(), dateFunctions(), generalFunctions()})
    for (const FunctionInfo& info : family) index.emplace(info.name, &info);
  return index;
}

std::string upperAscii(std::string_view name) {
  std::string upper(name);
  for (char& c : upper)
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 32);
  return upper;
}

std::string lowerAscii(std::string_view name) {
  std::string lower(name);
  for (char& c : lower)
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c + 32);
  return lower;
}

[[noreturn]] void throwCount(const FunctionInfo& info) {
  const std::string name = lowerAscii(info.name);
  if (info.minArguments == info.maxArguments)
    throw Error(
        174, "The " + name + " function requires " + std::to_string(info.minArguments) + " argument(s).", 15);
  throw Error(189,
              "The " + name + " function requires " + std::to_string(info.minArguments) + " to " +
                  std::to_string(info.maxArguments) + " arguments.",
              15);
}

}  // namespace

const FunctionInfo* findFunction(std::string_view name) {
  static const Index index = makeIndex();
  const std::string upper = upperAscii(name);
  const auto found = index.find(upper);
  return found == index.end() ? nullptr : found->second;
}

BoundFunction bindFunction(const FunctionInfo& info, std::span<const FunctionArgument> arguments) {
  const int count = static_cast<int>(arguments.size());
  if (count < info.minArguments || count > info.maxArguments) throwCount(info);
  BoundFunction function = info.bind(info, arguments);
  function.aggregate = info.aggregate;
  return function;
}

std::string functionSql(const BoundFunction& bound, std::span<const std::string> arguments, bool distinct) {
  std::string sql;
  for (std::size_t at = 0; at < bound.sql.size(); ++at) {
    if (bound.sql[at] != '$' || at + 1 == bound.sql.size()) {
      sql += bound.sql[at];
      continue;
    }
    if (bound.sql[++at] == 'D') {
      sql += distinct ? "DISTINCT " : "";
      continue;
    }
    const std::size_t number = std::strtoul(bound.sql.c_str() + at, nullptr, 10);
    sql += arguments[number - 1];
    while (at + 1 < bound.sql.size() && bound.sql[at + 1] >= '0' && bound.sql[at + 1] <= '9') ++at;
  }
  return sql;
}

// ---- shared by the families ----

std::string parameter(std::size_t index) {
  return '$' + std::to_string(index + 1);
}

void throwArgument(const FunctionInfo& info, Arguments arguments, std::size_t index) {
  throw Error(8116, std::string("Argument data type ") + typeName(arguments[index].type.id) +
                        " is invalid for argument " + std::to_string(index + 1) + " of " +
                        lowerAscii(info.name) + " function.");
}

void throwOperand(const FunctionInfo& info, const Type& type) {
  const char* name = type.id == TypeId::Null ? "NULL" : typeName(type.id);
  throw Error(8117, std::string("Operand data type ") + name + " is invalid for " + lowerAscii(info.name) +
                        " operator.");
}

std::string textArgument(Arguments arguments, std::size_t index) {
  const Type& type = arguments[index].type;
  if (isCharacter(type.id)) return padSql(parameter(index), type);
  return convertSql(parameter(index), type, {TypeId::VarChar, longestText});
}

Type varyingText(bool unicode, std::int64_t length) {
  const std::int64_t limit = unicode ? longestUnicode : longestText;
  return {unicode ? TypeId::NVarChar : TypeId::VarChar,
          static_cast<std::uint16_t>(std::clamp<std::int64_t>(length, 1, limit))};
}

Type textArgumentType(const Type& type) {
  constexpr int widestNumber = 40;
  if (isLongText(type.id)) return varyingText(isUnicode(type.id), longestText);
  if (isCharacter(type.id)) return varyingText(isUnicode(type.id), type.length);
  return varyingText(false, type.id == TypeId::Null ? 1 : isBinary(type.id) ? type.length : widestNumber);
}

std::string argumentAs(Arguments arguments, std::size_t index, const Type& type) {
  return convertSql(parameter(index), arguments[index].type, type);
}

std::int64_t constantInteger(Arguments arguments, std::size_t index, std::int64_t otherwise) {
  const auto& constant = arguments[index].constant;
  return constant && constant->isInteger() && isInteger(arguments[index].type.id) ? constant->integer()
                                                                                  : otherwise;
}

BoundFunction boundWithNulls(const Type& result, std::string sql) {
  BoundFunction function = bound(result, std::move(sql));
  function.ownNulls = true;
  return function;
}

BoundFunction bound(const Type& result, std::string sql, bool nullable) {
  BoundFunction function;
  function.result = result;
  function.sql = std::move(sql);
  function.nullable = nullable;
  return function;
}

}  // namespace engine
