// Literals of the dialect, and the SQL texts of conversions.
#include <algorithm>
#include <charconv>

#include "engine/value/convert.h"
#include "engine/value/convert_detail.h"
#include "engine/value/decimal.h"
#include "engine/value/error.h"

namespace engine {
namespace {

constexpr int maxTextLength = 8000;
constexpr int maxUnicodeLength = 4000;

Type decimalType(int precision, int scale) {
  return {TypeId::Decimal, 0, static_cast<std::uint8_t>(precision), static_cast<std::uint8_t>(scale)};
}

std::string_view withoutZeros(std::string_view digits) {
  const auto first = digits.find_first_not_of('0');
  return first == digits.npos ? std::string_view{} : digits.substr(first);
}

bool fitsInt(std::string_view digits) {
  std::int64_t value = 0;
  const auto [end, code] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
  return code == std::errc() && end == digits.data() + digits.size() && value <= 2147483647;
}

Type exactLiteralType(std::string_view text) {
  const auto point = std::min(text.find('.'), text.size());
  const std::size_t whole = withoutZeros(text.substr(0, point)).size();
  const std::size_t scale = point < text.size() ? text.size() - point - 1 : 0;
  if (whole + scale > maxPrecision)
    throw Error(1007, "The number '" + std::string(text) +
                          "' is out of the range for numeric representation (maximum precision 38).");
  return decimalType(static_cast<int>(std::max<std::size_t>(1, whole + scale)), static_cast<int>(scale));
}

Type textLiteralType(std::string_view text, bool unicode) {
  const std::int64_t length = std::max<std::int64_t>(1, characterCount(text));
  if (length > (unicode ? maxUnicodeLength : maxTextLength)) return {unicode ? TypeId::NText : TypeId::Text};
  return {unicode ? TypeId::NVarChar : TypeId::VarChar, static_cast<std::uint16_t>(length)};
}

int wholeDigits(TypeId id) {
  switch (id) {
    case TypeId::Bit:
      return 1;
    case TypeId::TinyInt:
      return 3;
    case TypeId::SmallInt:
      return 5;
    case TypeId::Int:
      return 10;
    default:
      return 19;
  }
}

// The expression for text to text, or empty when it takes z_cv.
std::string textConversion(const std::string& sql, const Type& from, const Type& to) {
  if (isUnicode(from.id) && !isUnicode(to.id)) return {};
  const bool fits = isLongText(to.id) || (!isLongText(from.id) && from.length <= to.length);
  if (!fits) return {};
  if (isFixedText(from.id)) return isFixedText(to.id) ? sql : padSql(sql, from);
  return isFixedText(to.id) ? "rtrim(" + sql + ')' : sql;
}

std::string scaledSql(const std::string& sql, int scale) {
  if (scale == 0) return sql;
  return '(' + sql + '*' + std::to_string(static_cast<std::int64_t>(powerOfTen(scale))) + ')';
}

std::string integerConversion(const std::string& sql, const Type& from, const Type& to) {
  if (to.id == TypeId::Bit) return '(' + sql + "<>0)";
  if (isInteger(to.id)) return from.id < to.id ? sql : std::string();
  if (to.id == TypeId::Float) return "CAST(" + sql + " AS REAL)";
  if (to.id == TypeId::Real && from.id < TypeId::Int) return "CAST(" + sql + " AS REAL)";
  if (to.id == TypeId::Money && from.id <= TypeId::Int) return scaledSql(sql, 4);
  if (to.id == TypeId::SmallMoney && from.id <= TypeId::SmallInt) return scaledSql(sql, 4);
  if (to.id == TypeId::Decimal && to.precision <= 18 && wholeDigits(from.id) + to.scale <= to.precision)
    return scaledSql(sql, to.scale);
  return {};
}

// An exact native expression, or empty when there is none.
std::string nativeConversion(const std::string& sql, const Type& from, const Type& to) {
  if (isCharacter(from.id) && isCharacter(to.id)) return textConversion(sql, from, to);
  if (isInteger(from.id)) return integerConversion(sql, from, to);
  if (from.id == TypeId::SmallMoney && to.id == TypeId::Float) return '(' + sql + "/10000.0)";
  if (from.id == TypeId::Money && to.id == TypeId::Float) return "z_mf(" + sql + ')';
  const bool same = (from.id == TypeId::SmallMoney && to.id == TypeId::Money) ||
                    (from.id == TypeId::Real && to.id == TypeId::Float) ||
                    (from.id == TypeId::SmallDateTime && to.id == TypeId::DateTime) ||
                    (isBinary(from.id) && to.id == TypeId::VarBinary && from.length <= to.length);
  if (same) return sql;
  if (from.id != TypeId::Decimal || to.id != TypeId::Decimal || to.precision > maxPrecision) return {};
  const bool narrow = from.precision <= 18 && to.precision <= 18;
  const bool room = from.precision - from.scale <= to.precision - to.scale;
  if (from.scale == to.scale && room && (narrow || from.precision > 18)) return sql;
  return narrow && room && from.scale <= to.scale ? scaledSql(sql, to.scale - from.scale) : std::string();
}

}  // namespace

Type literalType(const Literal& literal) {
  switch (literal.kind) {
    case LiteralKind::Null:
      return {TypeId::Null};
    case LiteralKind::Integer:
      return fitsInt(literal.text) ? Type{TypeId::Int} : exactLiteralType(literal.text);
    case LiteralKind::Decimal:
      return exactLiteralType(literal.text);
    case LiteralKind::Float:
      return {TypeId::Float};
    case LiteralKind::Money:
      return {TypeId::Money};
    case LiteralKind::Text:
      return textLiteralType(literal.text, false);
    case LiteralKind::NText:
      return textLiteralType(literal.text, true);
    case LiteralKind::Binary:
      return {TypeId::VarBinary,
              static_cast<std::uint16_t>(std::clamp<std::size_t>(literal.text.size(), 1, maxTextLength))};
  }
  return {};
}

namespace {

std::int64_t wholeNumber(std::string_view digits) {
  std::int64_t value = 0;
  std::from_chars(digits.data(), digits.data() + digits.size(), value);
  return value;
}

}  // namespace

Datum literalDatum(const Literal& literal) {
  switch (literal.kind) {
    case LiteralKind::Null:
      return {};
    case LiteralKind::Text:
      return fitCp1254(literal.text);
    case LiteralKind::NText:
      return literal.text;
    case LiteralKind::Binary:
      return Blob{literal.text};
    case LiteralKind::Integer:
      if (fitsInt(literal.text)) return wholeNumber(literal.text);
      [[fallthrough]];
    default:
      return convert(Datum(literal.text), {TypeId::VarChar, maxTextLength}, literalType(literal));
  }
}

std::string padSql(const std::string& sql, const Type& type) {
  return isFixedText(type.id) ? "z_pad(" + sql + ',' + std::to_string(type.length) + ')' : sql;
}

std::string convertSql(const std::string& sql, const Type& from, const Type& to, int style, bool assignment) {
  if (from == to || from.id == TypeId::Null || to.id == TypeId::Null) return sql;
  if (std::string native = nativeConversion(sql, from, to); !native.empty()) return native;
  std::string call =
      "z_cv(" + sql + ',' + std::to_string(packType(from)) + ',' + std::to_string(packType(to));
  if (style != 0 || assignment) call += ',' + std::to_string(style) + (assignment ? ",1" : ",0");
  return call + ')';
}

}  // namespace engine
