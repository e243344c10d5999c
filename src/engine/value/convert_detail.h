// The pieces of convert() by target, and its shared errors. Values are not NULL here.
#pragma once

#include <string>
#include <string_view>

#include "engine/value/convert.h"

namespace engine {

Datum toInteger(const Datum& value, const Type& from, const Type& to);
Datum toMoney(const Datum& value, const Type& from, const Type& to);
Datum toDecimal(const Datum& value, const Type& from, const Type& to);
Datum toApproximate(const Datum& value, const Type& from, const Type& to);
Datum toDateTime(const Datum& value, const Type& from, const Type& to, int style,
                 const ConvertContext& context);
Datum toText(const Datum& value, const Type& from, const Type& to, int style, bool assignment);
Datum toBinary(const Datum& value, const Type& from, const Type& to, bool assignment);

// The big-endian number in the last eight bytes, sign-extended from the leftmost of `width` bytes.
std::int64_t bytesToInteger(std::string_view bytes, int width);

// The name of a type in messages: DECIMAL is "numeric" there.
const char* messageName(TypeId id);
[[noreturn]] void throwOverflow(const char* from, TypeId to);   // 8115
[[noreturn]] void throwFloatOverflow(double value, TypeId to);  // 232
[[noreturn]] void throwNotAllowed(TypeId from, TypeId to);      // 529
[[noreturn]] void throwTruncated();                             // 8152

std::string_view trimBlanks(std::string_view text);
bool equalIgnoringAsciiCase(std::string_view left, std::string_view right);

}  // namespace engine
