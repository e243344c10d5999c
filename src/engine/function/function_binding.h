// What the binders of the function families share.
#pragma once

#include <span>
#include <string>

#include "engine/function/functions.h"

namespace engine {

using Arguments = std::span<const FunctionArgument>;

inline constexpr int longestText = 8000;
inline constexpr int longestUnicode = 4000;

std::string parameter(std::size_t index);  // "$1" for 0

[[noreturn]] void throwArgument(const FunctionInfo& info, Arguments arguments, std::size_t index);  // 8116
[[noreturn]] void throwOperand(const FunctionInfo& info, const Type& type);                         // 8117

// Text as the functions see it: padded when of fixed width, converted when no text.
std::string textArgument(Arguments arguments, std::size_t index);
// VARCHAR or NVARCHAR of the argument's width.
Type textArgumentType(const Type& type);
Type varyingText(bool unicode, std::int64_t length);
std::string argumentAs(Arguments arguments, std::size_t index, const Type& type);
// The integer value of a constant argument; `otherwise` when it is unknown or NULL.
std::int64_t constantInteger(Arguments arguments, std::size_t index, std::int64_t otherwise);

BoundFunction bound(const Type& result, std::string sql, bool nullable = true);
// One that gives NULL for arguments out of its reach.
BoundFunction boundWithNulls(const Type& result, std::string sql);

// The families' tables.
std::span<const FunctionInfo> textFunctions();
std::span<const FunctionInfo> numberFunctions();
std::span<const FunctionInfo> dateFunctions();
std::span<const FunctionInfo> generalFunctions();  // ISNULL .. NEWID and the aggregates

}  // namespace engine
