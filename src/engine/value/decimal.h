// DECIMAL arithmetic on scaled 128-bit integers.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "engine/value/datum.h"
#include "engine/value/type.h"

namespace engine {

__extension__ typedef __int128 Int128;

inline constexpr int maxPrecision = 38;

Int128 powerOfTen(int exponent);  // 0 .. 38
bool fitsPrecision(Int128 value, int precision);

// Brings a value from one scale to another, halves away from zero; false when it overflows 128 bits.
bool rescale(Int128& value, int fromScale, int toScale);
bool multiplyOverflows(Int128 left, Int128 right, Int128& product);
// left * right / 10^drop, rounded half away from zero, through 256 bits; drop up to 76; false when it does
// not fit.
bool multiplyScaled(Int128 left, Int128 right, int drop, Int128& product);
// left * 10^raise / right, cut toward zero, without losing a digit; raise up to 76, right not 0; false when
// it does not fit.
bool divideScaled(Int128 left, int raise, Int128 right, Int128& quotient);
// The remainder of left * 10^-leftScale by right * 10^-rightScale, in the larger scale; right is not 0.
Int128 moduloScaled(Int128 left, int leftScale, Int128 right, int rightScale);

// A DECIMAL in its physical form, and the 16 bytes of the wide ones (type.h).
Int128 decimalValue(const Datum& value);
Datum decimalDatum(Int128 value, const Type& type);
std::string encodeDecimal(Int128 value);
Int128 decodeDecimal(std::string_view bytes);

// 32 bytes of value * 10^(38 - scale), in the order of the values; for comparisons alone. Scale 0 .. 38.
std::string encodeForComparison(Int128 value, int scale);

std::string decimalText(Int128 value, int scale);
double decimalToDouble(Int128 value, int scale);

// An exact type's value as value * 10^-scale: integers, money, decimals.
struct Exact {
  Int128 value = 0;
  int scale = 0;
  bool roundsUp = false;  // by a digit behind those that fit, which readExact() has dropped
};
Exact exactValue(const Datum& value, const Type& type);

// Reads [sign] digits [. digits] with blanks around; empty text is 0. False when it is no number;
// `overflow` is set when it has more than 38 digits before the point.
bool readExact(std::string_view text, Exact& number, bool& overflow);

}  // namespace engine
