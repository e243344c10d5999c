#include "engine/value/decimal.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace engine {
namespace {

__extension__ typedef unsigned __int128 UInt128;

constexpr std::array<Int128, 39> makePowers() {
  std::array<Int128, 39> powers{};
  powers[0] = 1;
  for (int i = 1; i < 39; ++i) powers[i] = powers[i - 1] * 10;
  return powers;
}
constexpr std::array<Int128, 39> powers = makePowers();

UInt128 magnitude(Int128 value) {
  return value < 0 ? -static_cast<UInt128>(value) : static_cast<UInt128>(value);
}

// 256 bits in two halves.
struct Wide {
  UInt128 high = 0, low = 0;
};

Wide multiplyWide(UInt128 left, UInt128 right) {
  constexpr UInt128 mask = ~std::uint64_t{0};
  const UInt128 a = left >> 64, b = left & mask, c = right >> 64, d = right & mask;
  const UInt128 bd = b * d, ad = a * d, bc = b * c, ac = a * c;
  const UInt128 middle = (bd >> 64) + (ad & mask) + (bc & mask);
  return {ac + (ad >> 64) + (bc >> 64) + (middle >> 64), (middle << 64) | (bd & mask)};
}

// Long division, bit by bit in the lower half.
Wide divideWide(Wide dividend, UInt128 divisor, UInt128& remainder) {
  Wide quotient{dividend.high / divisor, 0};
  remainder = dividend.high % divisor;
  for (int bit = 127; bit >= 0; --bit) {
    const bool carry = remainder >> 127;
    remainder = remainder << 1 | (dividend.low >> bit & 1);
    quotient.low <<= 1;
    if (carry || remainder >= divisor) {
      remainder -= divisor;
      quotient.low |= 1;
    }
  }
  return quotient;
}

// The number with its sign; false when it does not fit.
bool signedValue(Wide value, bool negative, Int128& out) {
  if (value.high || value.low >> 127) return false;
  out = static_cast<Int128>(value.low);
  if (negative) out = -out;
  return true;
}

UInt128 power(int exponent) {
  return static_cast<UInt128>(powerOfTen(exponent));
}

bool isBlank(char c) {
  return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

// Takes the digits from `at` on; those past 38 in all are dropped (fraction) or overflow (whole part).
bool readDigits(std::string_view text, std::size_t& at, Exact& number, bool fraction, bool& overflow) {
  const std::size_t start = at;
  bool dropped = false;
  for (; at < text.size() && text[at] >= '0' && text[at] <= '9'; ++at) {
    if (number.value >= powers[37]) {
      if (!fraction) overflow = true;
      if (fraction && !dropped) number.roundsUp = text[at] >= '5';
      dropped = true;
      continue;
    }
    number.value = number.value * 10 + (text[at] - '0');
    if (fraction) ++number.scale;
  }
  return at > start;
}

}  // namespace

Int128 powerOfTen(int exponent) {
  return powers[static_cast<std::size_t>(std::clamp(exponent, 0, 38))];
}

bool fitsPrecision(Int128 value, int precision) {
  const Int128 limit = powerOfTen(precision);
  return value < limit && value > -limit;
}

bool multiplyOverflows(Int128 left, Int128 right, Int128& product) {
  return __builtin_mul_overflow(left, right, &product);
}

bool rescale(Int128& value, int fromScale, int toScale) {
  if (toScale >= fromScale) return !multiplyOverflows(value, powerOfTen(toScale - fromScale), value);
  const int drop = fromScale - toScale;
  if (drop > 38) {
    value = 0;
    return true;
  }
  const Int128 divisor = powerOfTen(drop);
  const Int128 rest = value % divisor;
  value /= divisor;
  if (rest >= divisor - rest && rest > 0) ++value;
  if (-rest >= divisor + rest && rest < 0) --value;
  return true;
}

bool multiplyScaled(Int128 left, Int128 right, int drop, Int128& product) {
  Wide wide = multiplyWide(magnitude(left), magnitude(right));
  UInt128 remainder = 0;
  // Two products of 38 digits can lose 39 and more. What the first step cuts off is less than one unit of the
  // second, so that it cannot decide a tie.
  if (drop > 38) wide = divideWide(wide, power(drop - 38), remainder);
  const UInt128 divisor = power(std::min(drop, 38));
  wide = divideWide(wide, divisor, remainder);
  if (remainder >= divisor - remainder && remainder > 0) ++wide.low;
  return signedValue(wide, (left < 0) != (right < 0), product);
}

bool divideScaled(Int128 left, int raise, Int128 right, Int128& quotient) {
  const UInt128 divisor = magnitude(right);
  const bool negative = (left < 0) != (right < 0);
  UInt128 remainder = 0;
  Wide wide = divideWide(multiplyWide(magnitude(left), power(std::min(raise, 38))), divisor, remainder);
  if (raise > 38) {
    // a * 10^raise may need more than 256 bits: the rest of the digits comes from the remainder.
    const UInt128 more = power(raise - 38);
    if (wide.high) return false;
    wide = multiplyWide(wide.low, more);
    const Wide rest = divideWide(multiplyWide(remainder, more), divisor, remainder);
    wide.low += rest.low;
    if (wide.low < rest.low) return false;
  }
  return signedValue(wide, negative, quotient);
}

Int128 moduloScaled(Int128 left, int leftScale, Int128 right, int rightScale) {
  UInt128 remainder = magnitude(left);
  if (leftScale <= rightScale) {
    divideWide(multiplyWide(remainder, power(rightScale - leftScale)), magnitude(right), remainder);
  } else {
    const Wide divisor = multiplyWide(magnitude(right), power(leftScale - rightScale));
    if (!divisor.high) remainder %= divisor.low;
  }
  const auto value = static_cast<Int128>(remainder);
  return left < 0 ? -value : value;
}

std::string encodeDecimal(Int128 value) {
  UInt128 bits = static_cast<UInt128>(value) ^ (static_cast<UInt128>(1) << 127);
  std::string bytes(16, '\0');
  for (int i = 15; i >= 0; --i, bits >>= 8) bytes[i] = static_cast<char>(bits & 0xff);
  return bytes;
}

Int128 decodeDecimal(std::string_view bytes) {
  UInt128 bits = 0;
  for (std::size_t i = 0; i < std::min<std::size_t>(16, bytes.size()); ++i)
    bits = bits << 8 | static_cast<unsigned char>(bytes[i]);
  return static_cast<Int128>(bits ^ (static_cast<UInt128>(1) << 127));
}

std::string encodeForComparison(Int128 value, int scale) {
  Wide wide = multiplyWide(magnitude(value), power(38 - scale));
  if (value < 0) {
    wide.low = ~wide.low + 1;
    wide.high = ~wide.high + (wide.low == 0);
  }
  // The halves of encodeDecimal() order as signed numbers; the lower one is without a sign.
  const UInt128 sign = static_cast<UInt128>(1) << 127;
  return encodeDecimal(static_cast<Int128>(wide.high)) + encodeDecimal(static_cast<Int128>(wide.low ^ sign));
}

Int128 decimalValue(const Datum& value) {
  return value.isBlob() ? decodeDecimal(value.bytes()) : static_cast<Int128>(value.integer());
}

Datum decimalDatum(Int128 value, const Type& type) {
  if (type.precision <= 18) return static_cast<std::int64_t>(value);
  return Blob{encodeDecimal(value)};
}

std::string decimalText(Int128 value, int scale) {
  std::array<char, 48> buffer;
  char* at = buffer.data() + buffer.size();
  UInt128 rest = magnitude(value);
  int digits = 0;
  while (rest > 0 || digits <= scale) {
    if (digits == scale && scale > 0) *--at = '.';
    *--at = static_cast<char>('0' + static_cast<int>(rest % 10));
    rest /= 10;
    ++digits;
  }
  if (value < 0) *--at = '-';
  return std::string(at, buffer.data() + buffer.size());
}

double decimalToDouble(Int128 value, int scale) {
  constexpr Int128 exactLimit = Int128{1} << 53;
  if (value < exactLimit && value > -exactLimit && scale <= 22)
    return static_cast<double>(value) / static_cast<double>(powerOfTen(scale));
  const std::string text = decimalText(value, scale);
  double nearest = 0;
  std::from_chars(text.data(), text.data() + text.size(), nearest);
  return nearest;
}

Exact exactValue(const Datum& value, const Type& type) {
  if (type.id == TypeId::Decimal) return {decimalValue(value), type.scale};
  return {value.integer(), isMoney(type.id) ? 4 : 0};
}

bool readExact(std::string_view text, Exact& number, bool& overflow) {
  number = {};
  overflow = false;
  std::size_t at = 0;
  const auto skipBlanks = [&] {
    while (at < text.size() && isBlank(text[at])) ++at;
  };
  skipBlanks();
  if (at == text.size()) return true;
  const bool negative = text[at] == '-';
  if (negative || text[at] == '+') ++at;
  skipBlanks();
  bool any = readDigits(text, at, number, false, overflow);
  if (at < text.size() && text[at] == '.') {
    ++at;
    bool ignored = false;
    any = readDigits(text, at, number, true, ignored) || any;
  }
  skipBlanks();
  if (negative) number.value = -number.value;
  return any && at == text.size();
}

}  // namespace engine
