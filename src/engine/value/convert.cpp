#include "engine/value/convert.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <limits>

#include "engine/value/convert_detail.h"
#include "engine/value/datetime.h"
#include "engine/value/decimal.h"
#include "engine/value/error.h"

namespace engine {
namespace {

struct Range {
  std::int64_t low, high;
};

Range rangeOf(TypeId id) {
  switch (id) {
    case TypeId::TinyInt:
      return {0, 255};
    case TypeId::SmallInt:
      return {-32768, 32767};
    case TypeId::Int:
      return {std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::int32_t>::max()};
    case TypeId::SmallMoney:
      return {std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::int32_t>::max()};
    default:
      return {std::numeric_limits<std::int64_t>::min(), std::numeric_limits<std::int64_t>::max()};
  }
}

bool inRange(Int128 value, TypeId id) {
  const Range range = rangeOf(id);
  return value >= range.low && value <= range.high;
}

[[noreturn]] void throwConversion(const Datum& value, TypeId from, TypeId to) {
  throw Error(245, std::string("Conversion failed when converting the ") + typeName(from) + " value '" +
                       value.text() + "' to data type " + typeName(to) + '.');
}

[[noreturn]] void throwDataType(TypeId from, TypeId to) {
  throw Error(8114,
              std::string("Error converting data type ") + typeName(from) + " to " + messageName(to) + '.');
}

[[noreturn]] void throwTextOverflow(const Datum& value, TypeId from, TypeId to) {
  if (to == TypeId::BigInt) throwOverflow("expression", to);
  const std::string start =
      std::string("The conversion of the ") + typeName(from) + " value '" + value.text();
  if (to == TypeId::Int) throw Error(248, start + "' overflowed an int column.");
  throw Error(244, start + "' overflowed an " + (to == TypeId::TinyInt ? "INT1" : "INT2") +
                       " column. Use a larger integer column.");
}

std::int64_t textToBit(const Datum& value, TypeId from) {
  const std::string_view text = trimBlanks(value.text());
  if (equalIgnoringAsciiCase(text, "true")) return 1;
  if (equalIgnoringAsciiCase(text, "false")) return 0;
  Exact number;
  bool overflow;
  if (text.find('.') != text.npos || !readExact(text, number, overflow))
    throwConversion(value, from, TypeId::Bit);
  return overflow || number.value != 0;
}

std::int64_t textToInteger(const Datum& value, TypeId from, TypeId to) {
  const std::string_view text = trimBlanks(value.text());
  if (text == "-" || text == "+") return 0;
  Exact number;
  bool overflow;
  if (text.find('.') != text.npos || !readExact(text, number, overflow)) {
    if (to == TypeId::BigInt) throwDataType(from, to);
    throwConversion(value, from, to);
  }
  if (overflow || !inRange(number.value, to)) throwTextOverflow(value, from, to);
  return static_cast<std::int64_t>(number.value);
}

// The signs of currencies that code page 1254 holds.
std::string withoutCurrency(std::string_view text) {
  std::string digits;
  bool sign = false;
  for (std::size_t i = 0; i < text.size();) {
    const char32_t character = nextCharacter(text, i);
    if (!sign && (character == '$' || character == 0xA3 || character == 0xA4 || character == 0xA5 ||
                  character == 0x20AC))
      sign = true;
    else if (character != ',')
      appendCharacter(digits, character);
  }
  return digits;
}

Exact textToMoney(const Datum& value, TypeId to) {
  Exact number;
  bool overflow;
  if (!readExact(withoutCurrency(trimBlanks(value.text())), number, overflow))
    throw Error(235, "Cannot convert a char value to money. The char value has incorrect syntax.");
  if (overflow) throwOverflow("expression", to);
  return number;
}

double textToDouble(const Datum& value, TypeId from, TypeId to) {
  std::string_view text = trimBlanks(value.text());
  if (text.empty()) return 0;
  const bool negative = text[0] == '-';
  if (negative || text[0] == '+') text.remove_prefix(1);
  text = trimBlanks(text);
  if (text.empty() || !(text[0] == '.' || (text[0] >= '0' && text[0] <= '9'))) throwDataType(from, to);
  double number = 0;
  const auto [end, code] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (end != text.data() + text.size()) throwDataType(from, to);
  if (code == std::errc::result_out_of_range) throwOverflow("expression", to);
  if (code != std::errc()) throwDataType(from, to);
  return negative ? -number : number;
}

// Seventeen significant digits, which is what a FLOAT brings into a DECIMAL.
bool doubleToExact(double value, int scale, Int128& result) {
  if (!std::isfinite(value) || std::fabs(value) >= 1e38) return false;
  std::array<char, 64> buffer;
  std::snprintf(buffer.data(), buffer.size(), "%.16e", value);
  const std::string_view text(buffer.data());
  const auto mark = text.find('e');
  Exact number;
  bool overflow;
  readExact(text.substr(0, mark), number, overflow);
  const int exponent = std::atoi(buffer.data() + mark + 1);
  result = number.value;
  return rescale(result, 16 - exponent, scale);
}

// comparisonType()'s own.
Datum comparedDecimal(Exact exact, bool fits, const Type& from) {
  if (!fits) throwOverflow(messageName(from.id), TypeId::Decimal);
  if (exact.scale > maxPrecision) {
    rescale(exact.value, exact.scale, maxPrecision);
    exact.scale = maxPrecision;
  }
  return Blob{encodeForComparison(exact.value, exact.scale)};
}

double ticksToDays(std::int64_t ticks) {
  return static_cast<double>(ticks) / ticksPerDay;
}

std::int64_t roundDays(std::int64_t ticks) {
  const std::int64_t half = ticks + ticksPerDay / 2;
  return half >= 0 ? half / ticksPerDay : -((-half + ticksPerDay - 1) / ticksPerDay);
}

std::int64_t roundToMinute(std::int64_t ticks) {
  return (ticks + ticksPerMinute / 2) / ticksPerMinute * ticksPerMinute;
}

Datum textToDateTime(const Datum& value, const Type& from, const Type& to, int style,
                     const ConvertContext& context) {
  std::int64_t ticks = 0;
  switch (readDateTime(value.text(), styleDateFormat(style, context.dateFormat), ticks)) {
    case DateReading::Date:
      break;
    case DateReading::NotADate:
      if (to.id == TypeId::SmallDateTime)
        throw Error(295, "Conversion failed when converting character string to smalldatetime data type.");
      throw Error(241, "Conversion failed when converting date and/or time from character string.");
    case DateReading::OutOfRange:
      throw Error(242, std::string("The conversion of a ") + typeName(from.id) + " data type to a " +
                           typeName(to.id) + " data type resulted in an out-of-range value.");
  }
  if (to.id == TypeId::DateTime) return ticks;
  if (ticks < 0 || roundToMinute(ticks) > maxSmallDateTime)
    throw Error(242, std::string("The conversion of a ") + typeName(from.id) +
                         " data type to a smalldatetime data type resulted in an out-of-range value.");
  return roundToMinute(ticks);
}

std::int64_t daysToTicks(const Datum& value, const Type& from, TypeId to) {
  if (isInteger(from.id)) {
    const std::int64_t days = value.integer();
    if (days < -53690 || days > 2958463) throwOverflow("expression", to);
    return days * ticksPerDay;
  }
  const Exact exact = isApproximate(from.id) ? Exact{} : exactValue(value, from);
  const double days = isApproximate(from.id) ? value.real() : decimalToDouble(exact.value, exact.scale);
  if (!(days >= -53690 && days < 2958464)) throwOverflow("expression", to);
  return std::llround(days * ticksPerDay);
}

}  // namespace

Datum toInteger(const Datum& value, const Type& from, const Type& to) {
  if (isCharacter(from.id))
    return to.id == TypeId::Bit ? textToBit(value, from.id) : textToInteger(value, from.id, to.id);
  if (isApproximate(from.id)) {
    if (to.id == TypeId::Bit) return static_cast<std::int64_t>(value.real() != 0);
    const double whole = std::trunc(value.real());
    if (!(std::fabs(whole) < 9.3e18) || !inRange(static_cast<Int128>(whole), to.id))
      throwFloatOverflow(value.real(), to.id);
    return static_cast<std::int64_t>(whole);
  }
  if (isBinary(from.id))
    return to.id == TypeId::Bit ? std::int64_t{bytesToInteger(value.bytes(), 1) != 0}
                                : bytesToInteger(value.bytes(), storageLength(to));
  Exact exact = isDateTime(from.id) ? Exact{roundDays(value.integer()), 0} : exactValue(value, from);
  if (to.id == TypeId::Bit) return static_cast<std::int64_t>(exact.value != 0);
  if (isMoney(from.id))
    rescale(exact.value, exact.scale, 0);
  else
    exact.value /= powerOfTen(exact.scale);
  if (!inRange(exact.value, to.id)) {
    if (isInteger(from.id) && to.id != TypeId::Int && to.id != TypeId::BigInt)
      throw Error(220, std::string("Arithmetic overflow error for data type ") + typeName(to.id) +
                           ", value = " + decimalText(exact.value, 0) + '.');
    throwOverflow(from.id == TypeId::Decimal ? "numeric" : "expression", to.id);
  }
  return static_cast<std::int64_t>(exact.value);
}

std::int64_t roundToMoney(double value) {
  const double scaled = std::round(value * 10000);
  if (!(std::fabs(scaled) < 9.2233720368547758e18)) throwFloatOverflow(value, TypeId::Money);
  return static_cast<std::int64_t>(scaled);
}

Datum toMoney(const Datum& value, const Type& from, const Type& to) {
  if (isApproximate(from.id) || isDateTime(from.id)) {
    const double number = isDateTime(from.id) ? ticksToDays(value.integer()) : value.real();
    const std::int64_t money = roundToMoney(number);
    if (!inRange(money, to.id)) throwFloatOverflow(number, to.id);
    return money;
  }
  if (isBinary(from.id)) return bytesToInteger(value.bytes(), storageLength(to));
  Exact exact = isCharacter(from.id) ? textToMoney(value, to.id) : exactValue(value, from);
  if (!rescale(exact.value, exact.scale, 4) || !inRange(exact.value, to.id))
    throwOverflow(from.id == TypeId::Decimal ? "numeric" : "expression", to.id);
  return static_cast<std::int64_t>(exact.value);
}

Datum toDecimal(const Datum& value, const Type& from, const Type& to) {
  Exact exact;
  bool fits = true;
  if (isApproximate(from.id) || isDateTime(from.id)) {
    fits = doubleToExact(isDateTime(from.id) ? ticksToDays(value.integer()) : value.real(), to.scale,
                         exact.value);
  } else {
    if (isCharacter(from.id)) {
      bool overflow;
      if (trimBlanks(value.text()).empty() || !readExact(value.text(), exact, overflow))
        throwDataType(from.id, to.id);
      if (exact.roundsUp && exact.scale <= to.scale) exact.value += exact.value < 0 ? -1 : 1;
      fits = !overflow;
    } else {
      exact = exactValue(value, from);
    }
    if (to.precision > maxPrecision) return comparedDecimal(exact, fits, from);
    fits = fits && rescale(exact.value, exact.scale, to.scale);
  }
  if (!fits || !fitsPrecision(exact.value, to.precision)) throwOverflow(messageName(from.id), to.id);
  return decimalDatum(exact.value, to);
}

Datum toApproximate(const Datum& value, const Type& from, const Type& to) {
  double number = 0;
  if (isApproximate(from.id)) {
    number = value.real();
  } else if (isCharacter(from.id)) {
    number = textToDouble(value, from.id, to.id);
  } else if (isDateTime(from.id)) {
    number = ticksToDays(value.integer());
  } else {
    const Exact exact = exactValue(value, from);
    number = decimalToDouble(exact.value, exact.scale);
  }
  if (to.id == TypeId::Float) return number;
  if (std::fabs(number) > std::numeric_limits<float>::max()) throwFloatOverflow(number, to.id);
  return static_cast<double>(static_cast<float>(number));
}

Datum toDateTime(const Datum& value, const Type& from, const Type& to, int style,
                 const ConvertContext& context) {
  if (isCharacter(from.id)) return textToDateTime(value, from, to, style, context);
  std::int64_t ticks = 0;
  if (isDateTime(from.id)) {
    ticks = value.integer();
  } else if (isBinary(from.id)) {
    const std::int64_t bits = bytesToInteger(value.bytes(), 8);
    ticks = static_cast<std::int32_t>(bits >> 32) * ticksPerDay + (bits & 0xffffffff);
    if (ticks < minDateTime || ticks > maxDateTime) throwOverflow("expression", to.id);
  } else {
    ticks = daysToTicks(value, from, to.id);
  }
  if (to.id == TypeId::DateTime) return ticks;
  if (ticks < 0 || roundToMinute(ticks) > maxSmallDateTime) {
    if (from.id == TypeId::DateTime)
      throw Error(242,
                  "The conversion of a datetime data type to a smalldatetime data type resulted in an "
                  "out-of-range value.");
    throwOverflow("expression", to.id);
  }
  return roundToMinute(ticks);
}

Datum convert(const Datum& value, const Type& from, const Type& to, int style, bool assignment,
              const ConvertContext& context) {
  if (value.isNull() || from.id == TypeId::Null || to.id == TypeId::Null) return value;
  if (from == to && !isCharacter(to.id)) return value;
  if (isCharacter(to.id)) return toText(value, from, to, style, assignment);
  if (isLongText(from.id)) throwNotAllowed(from.id, to.id);
  if (isBinary(to.id)) return toBinary(value, from, to, assignment);
  if (isBinary(from.id) && (isApproximate(to.id) || to.id == TypeId::Decimal))
    throwNotAllowed(from.id, to.id);
  if (isDateTime(to.id)) return toDateTime(value, from, to, style, context);
  if (isInteger(to.id)) return toInteger(value, from, to);
  if (isMoney(to.id)) return toMoney(value, from, to);
  return to.id == TypeId::Decimal ? toDecimal(value, from, to) : toApproximate(value, from, to);
}

bool isDateText(std::string_view text, const ConvertContext& context) {
  std::int64_t ticks = 0;
  return !trimBlanks(text).empty() && readDateTime(text, context.dateFormat, ticks) == DateReading::Date;
}

bool isNumericText(std::string_view text) {
  const std::string_view digits = trimBlanks(text);
  if (digits.empty()) return false;
  if (digits.size() == 1 && std::string_view("+-.,$").find(digits[0]) != std::string_view::npos) return true;
  const auto converts = [&](const Type& to) {
    try {
      convert(Datum(std::string(digits)), {TypeId::VarChar, 8000}, to);
      return true;
    } catch (const Error&) {
      return false;
    }
  };
  const auto exponent = digits.find_first_of("dD");  // Fortran's way of writing an exponent counts too
  if (exponent != digits.npos && digits.find_first_of("eE") == digits.npos) {
    std::string other(digits);
    other[exponent] = 'e';
    return isNumericText(other);
  }
  return converts({TypeId::Float}) || converts({TypeId::Money});
}

}  // namespace engine
