// Text functions: types and templates.
#include <algorithm>
#include <array>

#include "engine/function/function_binding.h"

namespace engine {
namespace {

constexpr Type integer{TypeId::Int};

std::string call(const char* function, std::initializer_list<std::string> arguments) {
  std::string sql = function;
  const char* separator = "(";
  for (const std::string& argument : arguments) {
    sql += separator + argument;
    separator = ",";
  }
  return sql + ')';
}

void refuseLongText(const FunctionInfo& info, Arguments arguments, std::size_t index) {
  if (isLongText(arguments[index].type.id)) throwArgument(info, arguments, index);
}

Type wideResult(Arguments arguments) {
  const bool unicode =
      std::any_of(arguments.begin(), arguments.end(), [](const auto& a) { return isUnicode(a.type.id); });
  return varyingText(unicode, longestText);
}

BoundFunction bindLen(const FunctionInfo& info, Arguments arguments) {
  refuseLongText(info, arguments, 0);
  const Type& type = arguments[0].type;
  if (isBinary(type.id)) return bound(integer, "length($1)");
  return bound(integer, call("z_len", {isCharacter(type.id) ? "$1" : textArgument(arguments, 0)}));
}

BoundFunction bindDataLength(const FunctionInfo&, Arguments arguments) {
  const Type& type = arguments[0].type;
  if (type.id == TypeId::Null) return bound(integer, "NULL");
  if (isFixedText(type.id) || !(isCharacter(type.id) || isBinary(type.id)))
    return bound(integer, "(length($1)*0+" + std::to_string(storageLength(type)) + ')');
  return bound(integer, isUnicode(type.id) ? "(length($1)*2)" : "length($1)");
}

BoundFunction bindLeft(const FunctionInfo& info, Arguments arguments) {
  refuseLongText(info, arguments, 0);
  const Type text = textArgumentType(arguments[0].type);
  const std::int64_t length = constantInteger(arguments, 1, text.length);
  const Type result = varyingText(isUnicode(text.id), std::min<std::int64_t>(length, text.length));
  return bound(result, call(info.name[0] == 'L' ? "z_left" : "z_right",
                            {textArgument(arguments, 0), argumentAs(arguments, 1, integer)}));
}

BoundFunction bindSubstring(const FunctionInfo& info, Arguments arguments) {
  const Type& type = arguments[0].type;
  const bool binary = isBinary(type.id);
  if (!binary && !isCharacter(type.id)) throwArgument(info, arguments, 0);
  const Type text = binary ? type : textArgumentType(type);
  const auto length =
      std::clamp<std::int64_t>(constantInteger(arguments, 2, text.length), 1, std::max<int>(1, text.length));
  const Type result = binary ? Type{TypeId::VarBinary, static_cast<std::uint16_t>(length)}
                             : varyingText(isUnicode(text.id), length);
  return bound(
      result, call("z_substr", {binary ? "$1" : textArgument(arguments, 0), argumentAs(arguments, 1, integer),
                                argumentAs(arguments, 2, integer)}));
}

BoundFunction bindRTrim(const FunctionInfo& info, Arguments arguments) {
  refuseLongText(info, arguments, 0);
  const Type& type = arguments[0].type;
  const Type result = textArgumentType(type);
  if (isFixedText(type.id)) return bound(result, "$1");  // its form has no trailing blanks
  return bound(result, call("rtrim", {textArgument(arguments, 0)}));
}

// Functions of one text that keep its width.
BoundFunction bindSameText(const FunctionInfo& info, Arguments arguments, const char* function) {
  refuseLongText(info, arguments, 0);
  return bound(textArgumentType(arguments[0].type), call(function, {textArgument(arguments, 0)}));
}
BoundFunction bindLTrim(const FunctionInfo& info, Arguments a) {
  return bindSameText(info, a, "ltrim");
}
BoundFunction bindUpper(const FunctionInfo& info, Arguments a) {
  return bindSameText(info, a, "z_upper");
}
BoundFunction bindLower(const FunctionInfo& info, Arguments a) {
  return bindSameText(info, a, "z_lower");
}
BoundFunction bindReverse(const FunctionInfo& info, Arguments a) {
  return bindSameText(info, a, "z_reverse");
}

BoundFunction bindReplace(const FunctionInfo& info, Arguments arguments) {
  for (std::size_t i = 0; i < arguments.size(); ++i) refuseLongText(info, arguments, i);
  const Type result = wideResult(arguments);
  return bound(result, call("z_replace", {textArgument(arguments, 0), textArgument(arguments, 1),
                                          textArgument(arguments, 2), std::to_string(result.length)}));
}

BoundFunction bindReplicate(const FunctionInfo& info, Arguments arguments) {
  refuseLongText(info, arguments, 0);
  const Type text = textArgumentType(arguments[0].type);
  const std::int64_t times = constantInteger(arguments, 1, longestText);
  const Type result =
      varyingText(isUnicode(text.id), text.length * std::clamp<std::int64_t>(times, 0, longestText));
  return boundWithNulls(result,
                        call("z_replicate", {textArgument(arguments, 0), argumentAs(arguments, 1, integer),
                                             std::to_string(result.length)}));
}

BoundFunction bindSpace(const FunctionInfo&, Arguments arguments) {
  const Type result = varyingText(false, constantInteger(arguments, 0, longestText));
  return boundWithNulls(
      result, call("z_replicate", {"' '", argumentAs(arguments, 0, integer), std::to_string(longestText)}));
}

BoundFunction bindStuff(const FunctionInfo& info, Arguments arguments) {
  refuseLongText(info, arguments, 0);
  const Type text = textArgumentType(arguments[0].type), inserted = textArgumentType(arguments[3].type);
  const Type result =
      varyingText(isUnicode(text.id) || isUnicode(inserted.id), text.length + inserted.length);
  return boundWithNulls(
      result, call("z_stuff",
                   {textArgument(arguments, 0), argumentAs(arguments, 1, integer),
                    argumentAs(arguments, 2, integer), "coalesce(" + textArgument(arguments, 3) + ",'')"}));
}

BoundFunction bindStr(const FunctionInfo&, Arguments arguments) {
  constexpr int defaultWidth = 10, widest = 255;
  const std::int64_t width = arguments.size() > 1 ? constantInteger(arguments, 1, widest) : defaultWidth;
  return boundWithNulls(varyingText(false, width),
                        call("z_str", {argumentAs(arguments, 0, {TypeId::Float}),
                                       arguments.size() > 1 ? argumentAs(arguments, 1, integer) : "10",
                                       arguments.size() > 2 ? argumentAs(arguments, 2, integer) : "0"}));
}

BoundFunction bindChar(const FunctionInfo& info, Arguments arguments) {
  const bool unicode = info.name[0] == 'N';
  return boundWithNulls({unicode ? TypeId::NChar : TypeId::Char, 1},
                        call(unicode ? "z_nchar" : "z_char", {argumentAs(arguments, 0, integer)}));
}

BoundFunction bindAscii(const FunctionInfo& info, Arguments arguments) {
  return boundWithNulls(integer,
                        call(info.name[0] == 'U' ? "z_unicode" : "z_ascii", {textArgument(arguments, 0)}));
}

BoundFunction bindCharIndex(const FunctionInfo&, Arguments arguments) {
  return bound(integer,
               call("z_charindex", {textArgument(arguments, 0), textArgument(arguments, 1),
                                    arguments.size() > 2 ? argumentAs(arguments, 2, integer) : "1"}));
}

BoundFunction bindPatIndex(const FunctionInfo&, Arguments arguments) {
  const bool unicode = isUnicode(arguments[0].type.id) || isUnicode(arguments[1].type.id);
  return bound(integer, call("z_patindex",
                             {textArgument(arguments, 0), textArgument(arguments, 1), unicode ? "1" : "0"}));
}

BoundFunction bindQuoteName(const FunctionInfo&, Arguments arguments) {
  return boundWithNulls({TypeId::NVarChar, 258},
                        call("z_quotename", {textArgument(arguments, 0),
                                             arguments.size() > 1 ? textArgument(arguments, 1) : "'['"}));
}

constexpr std::array functions = {
    FunctionInfo{"LEN", 1, 1, false, false, 0, bindLen},
    FunctionInfo{"DATALENGTH", 1, 1, false, false, 0, bindDataLength},
    FunctionInfo{"LEFT", 2, 2, false, false, 2, bindLeft},
    FunctionInfo{"RIGHT", 2, 2, false, false, 2, bindLeft},
    FunctionInfo{"SUBSTRING", 3, 3, false, false, 4, bindSubstring},
    FunctionInfo{"LTRIM", 1, 1, false, false, 0, bindLTrim},
    FunctionInfo{"RTRIM", 1, 1, false, false, 0, bindRTrim},
    FunctionInfo{"UPPER", 1, 1, false, false, 0, bindUpper},
    FunctionInfo{"LOWER", 1, 1, false, false, 0, bindLower},
    FunctionInfo{"REVERSE", 1, 1, false, false, 0, bindReverse},
    FunctionInfo{"REPLACE", 3, 3, false, false, 0, bindReplace},
    FunctionInfo{"REPLICATE", 2, 2, false, false, 2, bindReplicate},
    FunctionInfo{"SPACE", 1, 1, false, false, 1, bindSpace},
    FunctionInfo{"STUFF", 4, 4, false, false, 0, bindStuff},
    FunctionInfo{"STR", 1, 3, false, false, 2, bindStr},
    FunctionInfo{"CHAR", 1, 1, false, false, 0, bindChar},
    FunctionInfo{"NCHAR", 1, 1, false, false, 0, bindChar},
    FunctionInfo{"ASCII", 1, 1, false, false, 0, bindAscii},
    FunctionInfo{"UNICODE", 1, 1, false, false, 0, bindAscii},
    FunctionInfo{"CHARINDEX", 2, 3, false, false, 0, bindCharIndex},
    FunctionInfo{"PATINDEX", 2, 2, false, false, 0, bindPatIndex},
    FunctionInfo{"QUOTENAME", 1, 2, false, false, 0, bindQuoteName},
};

}  // namespace

std::span<const FunctionInfo> textFunctions() {
  return functions;
}

}  // namespace engine
