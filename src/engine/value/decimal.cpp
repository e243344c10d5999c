#include "engine/value/decimal.h"

#include <algorithm>
#include <array>

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

// Long division bit by bit; false when the quotient does not fit 127 bits.
bool divideWide(Wide dividend, UInt128 divisor, UInt128& quotient, UInt128& remainder) {
  if (dividend.high >= divisor) return false;
  quotient = 0;
  remainder = dividend.high;
  for (int bit = 127; bit >= 0; --bit) {
    const bool carry = remainder >> 127;
    remainder = remainder << 1 | (dividend.low >> bit & 1);
    quotient <<= 1;
    if (carry || remainder >= divisor) {
      remainder -= divisor;
      quotient |= 1;
    }
  }
  return !(quotient >> 127);
}

bool isBlank(char c) {
  return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

// Takes the digits from `at` on; those past 38 in all are dropped (fraction) or overflow (whole part).
bool readDigits(std::string_view text, std::size_t& at, Exact& number, bool fraction, bool& overflow) {
  const std::size_t start = at;
  for (; at < text.size() && text[at] >= '0' && text[at] <= '9'; ++at) {
    if (number.value >= powers[37]) {
      if (!fraction) overflow = true;
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
  UInt128 quotient, remainder;
  const auto divisor = static_cast<UInt128>(powerOfTen(drop));
  const Wide wide = multiplyWide(magnitude(left), magnitude(right));
  if (!divideWide(wide, divisor, quotient, remainder)) return false;
  if (remainder >= divisor - remainder && remainder > 0) ++quotient;
  if (quotient >> 127) return false;
  product = static_cast<Int128>(quotient);
  if ((left < 0) != (right < 0)) product = -product;
  return true;
}

bool divideScaled(Int128 left, int raise, Int128 right, Int128& quotient) {
  Wide wide = multiplyWide(magnitude(left), static_cast<UInt128>(powerOfTen(std::min(raise, 38))));
  if (raise > 38) {
    if (wide.high) return false;
    wide = multiplyWide(wide.low, static_cast<UInt128>(powerOfTen(raise - 38)));
  }
  UInt128 whole, remainder;
  if (!divideWide(wide, magnitude(right), whole, remainder)) return false;
  quotient = static_cast<Int128>(whole);
  if ((left < 0) != (right < 0)) quotient = -quotient;
  return true;
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
  return static_cast<double>(static_cast<long double>(value) / static_cast<long double>(powerOfTen(scale)));
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
