#include "engine/value/type.h"

#include <algorithm>
#include <array>

#include "engine/value/error.h"

namespace engine {
namespace {

struct TypeFacts {
  const char* name;
  const char* shown;
  int systemType;
  int storage;  // bytes; 0: by length or precision
  int precedence;
};

constexpr std::array<TypeFacts, 21> facts = {{
    {"null", "NULL", 56, 4, 0},
    {"bit", "BIT", 104, 1, 12},
    {"tinyint", "TINYINT", 48, 1, 13},
    {"smallint", "SMALLINT", 52, 2, 14},
    {"int", "INT", 56, 4, 15},
    {"bigint", "BIGINT", 127, 8, 16},
    {"smallmoney", "SMALLMONEY", 122, 4, 17},
    {"money", "MONEY", 60, 8, 18},
    {"decimal", "DECIMAL", 106, 0, 19},
    {"real", "REAL", 59, 4, 20},
    {"float", "FLOAT", 62, 8, 21},
    {"smalldatetime", "SMALLDATETIME", 58, 4, 22},
    {"datetime", "DATETIME", 61, 8, 23},
    {"char", "CHAR", 175, 0, 3},
    {"varchar", "VARCHAR", 167, 0, 4},
    {"text", "TEXT", 35, 16, 9},
    {"nchar", "NCHAR", 239, 0, 5},
    {"nvarchar", "NVARCHAR", 231, 0, 6},
    {"ntext", "NTEXT", 99, 16, 10},
    {"binary", "BINARY", 173, 0, 1},
    {"varbinary", "VARBINARY", 165, 0, 2},
}};

const TypeFacts& factsOf(TypeId id) {
  return facts[static_cast<std::size_t>(id)];
}

bool isVarying(TypeId id) {
  return id == TypeId::VarChar || id == TypeId::NVarChar;
}

// The DECIMAL that holds every value of an exact type.
Type asDecimal(const Type& type) {
  const auto decimal = [](int precision, int scale) {
    return Type{TypeId::Decimal, 0, static_cast<std::uint8_t>(precision), static_cast<std::uint8_t>(scale)};
  };
  switch (type.id) {
    case TypeId::Bit:
      return decimal(1, 0);
    case TypeId::TinyInt:
      return decimal(3, 0);
    case TypeId::SmallInt:
      return decimal(5, 0);
    case TypeId::Int:
      return decimal(10, 0);
    case TypeId::BigInt:
      return decimal(19, 0);
    case TypeId::SmallMoney:
      return decimal(10, 4);
    case TypeId::Money:
      return decimal(19, 4);
    case TypeId::Decimal:
      return type;
    default:
      return decimal(18, 0);
  }
}

Type commonDecimal(const Type& left, const Type& right) {
  const int scale = std::max(left.scale, right.scale);
  const int whole = std::max(left.precision - left.scale, right.precision - right.scale);
  const int precision = std::min(38, whole + scale);
  return {TypeId::Decimal, 0, static_cast<std::uint8_t>(precision),
          static_cast<std::uint8_t>(std::min(scale, 38 - std::min(whole, 38)))};
}

Type commonText(const Type& left, const Type& right) {
  const bool unicode = isUnicode(left.id) || isUnicode(right.id);
  if (isLongText(left.id) || isLongText(right.id)) return {unicode ? TypeId::NText : TypeId::Text};
  const bool varying = isVarying(left.id) || isVarying(right.id);
  const int length = std::min<int>(std::max(left.length, right.length), unicode ? 4000 : 8000);
  const TypeId id =
      unicode ? (varying ? TypeId::NVarChar : TypeId::NChar) : (varying ? TypeId::VarChar : TypeId::Char);
  return {id, static_cast<std::uint16_t>(length)};
}

bool clashes(const Type& higher, const Type& lower) {
  if (isLongText(higher.id) || isLongText(lower.id)) return !isCharacter(higher.id) || !isCharacter(lower.id);
  return isBinary(lower.id) && isApproximate(higher.id);
}

}  // namespace

bool isCharacter(TypeId id) {
  return id >= TypeId::Char && id <= TypeId::NText;
}
bool isUnicode(TypeId id) {
  return id >= TypeId::NChar && id <= TypeId::NText;
}
bool isFixedText(TypeId id) {
  return id == TypeId::Char || id == TypeId::NChar;
}
bool isLongText(TypeId id) {
  return id == TypeId::Text || id == TypeId::NText;
}
bool isInteger(TypeId id) {
  return id >= TypeId::Bit && id <= TypeId::BigInt;
}
bool isMoney(TypeId id) {
  return id == TypeId::SmallMoney || id == TypeId::Money;
}
bool isApproximate(TypeId id) {
  return id == TypeId::Real || id == TypeId::Float;
}
bool isNumeric(TypeId id) {
  return id >= TypeId::Bit && id <= TypeId::Float;
}
bool isDateTime(TypeId id) {
  return id == TypeId::SmallDateTime || id == TypeId::DateTime;
}
bool isBinary(TypeId id) {
  return id == TypeId::Binary || id == TypeId::VarBinary;
}

int storageLength(const Type& type) {
  if (const int bytes = factsOf(type.id).storage) return bytes;
  if (type.id != TypeId::Decimal) return isUnicode(type.id) ? type.length * 2 : type.length;
  if (type.precision <= 9) return 5;
  if (type.precision <= 19) return 9;
  return type.precision <= 28 ? 13 : 17;
}

int systemType(const Type& type) {
  constexpr int numeric = 108;
  if (type.id == TypeId::Decimal && type.length == numericMark) return numeric;
  return factsOf(type.id).systemType;
}

const char* typeName(TypeId id) {
  return factsOf(id).name;
}

std::string describe(const Type& type) {
  std::string text = factsOf(type.id).shown;
  if (type.id == TypeId::Decimal)
    return (type.length == numericMark ? "NUMERIC" : text) + '(' + std::to_string(type.precision) + ',' +
           std::to_string(type.scale) + ')';
  if ((isCharacter(type.id) && !isLongText(type.id)) || isBinary(type.id))
    text += '(' + std::to_string(type.length) + ')';
  return text;
}

int precedence(TypeId id) {
  return factsOf(id).precedence;
}

Type commonType(const Type& left, const Type& right) {
  if (left.id == TypeId::Null) return right;
  if (right.id == TypeId::Null || left == right) return left;
  const bool leftWins = precedence(left.id) >= precedence(right.id);
  const Type& higher = leftWins ? left : right;
  const Type& lower = leftWins ? right : left;
  if (clashes(higher, lower))
    throw Error(206, std::string("Operand type clash: ") + typeName(left.id) + " is incompatible with " +
                         typeName(right.id));
  if (isCharacter(left.id) && isCharacter(right.id)) return commonText(left, right);
  if (isBinary(left.id) && isBinary(right.id)) return {higher.id, std::max(left.length, right.length)};
  if (isCharacter(higher.id) && isBinary(lower.id)) return {higher.id, std::max(left.length, right.length)};
  if (higher.id == TypeId::Decimal && isNumeric(lower.id))
    return commonDecimal(asDecimal(left), asDecimal(right));
  return higher;
}

Type comparisonType(const Type& left, const Type& right) {
  const Type common = commonType(left, right);
  if (common.id != TypeId::Decimal || !isNumeric(left.id) || !isNumeric(right.id)) return common;
  const Type a = asDecimal(left), b = asDecimal(right);
  const int whole = std::max(a.precision - a.scale, b.precision - b.scale);
  const bool fits = whole + std::max(a.scale, b.scale) <= 38;
  return fits ? common : Type{TypeId::Decimal, 0, 76, 38};
}

std::int64_t packType(const Type& type) {
  return static_cast<std::int64_t>(type.id) | static_cast<std::int64_t>(type.length) << 8 |
         static_cast<std::int64_t>(type.precision) << 24 | static_cast<std::int64_t>(type.scale) << 32;
}

Type unpackType(std::int64_t packed) {
  const auto id = static_cast<std::uint8_t>(packed & 0xff);
  if (id >= facts.size()) return {};
  return {static_cast<TypeId>(id), static_cast<std::uint16_t>(packed >> 8 & 0xffff),
          static_cast<std::uint8_t>(packed >> 24 & 0xff), static_cast<std::uint8_t>(packed >> 32 & 0xff)};
}

}  // namespace engine
