#include "engine/value/arithmetic.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "engine/value/arithmetic_detail.h"
#include "engine/value/collation.h"
#include "engine/value/convert_detail.h"
#include "engine/value/error.h"

namespace engine {
namespace {

constexpr int maxTextLength = 8000;
constexpr int maxUnicodeLength = 4000;
constexpr int minDivisionScale = 6;

const char* operatorName(BinaryOp op) {
  switch (op) {
    case BinaryOp::Add:
      return "add";
    case BinaryOp::Subtract:
      return "subtract";
    case BinaryOp::Multiply:
      return "multiply";
    case BinaryOp::Divide:
      return "divide";
    case BinaryOp::Modulo:
      return "modulo";
    case BinaryOp::BitAnd:
      return "'&'";
    case BinaryOp::BitOr:
      return "'|'";
    default:
      return "'^'";
  }
}

bool isBitwise(BinaryOp op) {
  return op == BinaryOp::BitAnd || op == BinaryOp::BitOr || op == BinaryOp::BitXor;
}

[[noreturn]] void throwInvalid(BinaryOp op, const Type& left, const Type& right) {
  if (left.id == right.id)
    throw Error(8117, std::string("Operand data type ") + messageName(left.id) + " is invalid for " +
                          operatorName(op) + " operator.");
  throw Error(402, std::string("The data types ") + messageName(left.id) + " and " + messageName(right.id) +
                       " are incompatible in the " + operatorName(op) + " operator.");
}

Type decimalType(int precision, int scale) {
  if (precision > maxPrecision) {
    const int whole = precision - scale;
    scale = std::max(std::min(scale, maxPrecision - whole), std::min(scale, minDivisionScale));
    precision = maxPrecision;
  }
  return {TypeId::Decimal, 0, static_cast<std::uint8_t>(std::max(1, precision)),
          static_cast<std::uint8_t>(scale)};
}

Type decimalResult(BinaryOp op, const Type& left, const Type& right) {
  const int p1 = left.precision, s1 = left.scale, p2 = right.precision, s2 = right.scale;
  const int scale = std::max(s1, s2);
  switch (op) {
    case BinaryOp::Multiply:
      return decimalType(p1 + p2 + 1, s1 + s2);
    case BinaryOp::Divide: {
      const int divided = std::max(minDivisionScale, s1 + p2 + 1);
      return decimalType(p1 - s1 + s2 + divided, divided);
    }
    case BinaryOp::Modulo:
      return decimalType(std::min(p1 - s1, p2 - s2) + scale, scale);
    default: {
      // A 39th digit is the carry's: it takes no decimal, as long as the whole digits of both sides fit.
      const int whole = std::max(p1 - s1, p2 - s2);
      const int precision = std::min(maxPrecision, whole + scale + 1);
      return decimalType(precision, std::min(scale, precision - whole));
    }
  }
}

Type concatenationType(const Type& left, const Type& right) {
  if (isLongText(left.id) || isLongText(right.id)) throwInvalid(BinaryOp::Add, left, right);
  Type result = commonType(left, right);
  const int limit = isUnicode(result.id) ? maxUnicodeLength : maxTextLength;
  result.length = static_cast<std::uint16_t>(std::min(limit, left.length + right.length));
  return result;
}

Type dateResult(BinaryOp op, const Type& left, const Type& right) {
  if ((op != BinaryOp::Add && op != BinaryOp::Subtract) || isLongText(left.id) || isLongText(right.id))
    throwInvalid(op, left, right);
  const bool full = left.id == TypeId::DateTime || right.id == TypeId::DateTime;
  return {full ? TypeId::DateTime : TypeId::SmallDateTime};
}

std::string concatenate(const Datum& left, const Type& leftType, const Datum& right, const Type& rightType) {
  const auto padded = [](const Datum& value, const Type& type) {
    std::string text = value.text();
    if (isFixedText(type.id)) text.append(std::max<std::int64_t>(0, type.length - characterCount(text)), ' ');
    return text;
  };
  return padded(left, leftType) + padded(right, rightType);
}

Datum integerArithmetic(BinaryOp op, std::int64_t left, std::int64_t right, TypeId type) {
  switch (op) {
    case BinaryOp::Add:
      return checkInteger(static_cast<Int128>(left) + right, type);
    case BinaryOp::Subtract:
      return checkInteger(static_cast<Int128>(left) - right, type);
    case BinaryOp::Multiply:
      return checkInteger(static_cast<Int128>(left) * right, type);
    case BinaryOp::Divide:
      if (right == 0) throwDivideByZero();
      return checkInteger(static_cast<Int128>(left) / right, type);
    case BinaryOp::Modulo:
      if (right == 0) throwDivideByZero();
      return right == -1 ? std::int64_t{0} : left % right;
    case BinaryOp::BitAnd:
      return left & right;
    case BinaryOp::BitOr:
      return left | right;
    default:
      return left ^ right;
  }
}

Datum moneyArithmetic(BinaryOp op, std::int64_t left, std::int64_t right, TypeId type) {
  switch (op) {
    case BinaryOp::Add:
      return checkMoney(static_cast<Int128>(left) + right, type);
    case BinaryOp::Subtract:
      return checkMoney(static_cast<Int128>(left) - right, type);
    case BinaryOp::Multiply:
      return moneyProduct(left, right, type);
    case BinaryOp::Divide:
      return moneyQuotient(left, right, type);
    default:
      return integerArithmetic(op, left, right, TypeId::BigInt);
  }
}

Datum floatArithmetic(BinaryOp op, double left, double right, const Type& type) {
  if (op == BinaryOp::Divide && right == 0) throwDivideByZero();
  double value = op == BinaryOp::Add        ? left + right
                 : op == BinaryOp::Subtract ? left - right
                 : op == BinaryOp::Multiply ? left * right
                                            : left / right;
  if (type.id == TypeId::Real && std::isfinite(value)) value = static_cast<float>(value);
  if (!std::isfinite(value)) throwExpressionOverflow(type.id);
  return value;
}

}  // namespace

void throwDivideByZero() {
  throw Error(8134, "Divide by zero error encountered.");
}
void throwExpressionOverflow(TypeId type) {
  throwOverflow("expression", type);
}
void throwDateOverflow(TypeId type) {
  throw Error(517, std::string("Adding a value to a '") + typeName(type) + "' column caused an overflow.");
}

std::int64_t checkInteger(Int128 value, TypeId type) {
  using I32 = std::numeric_limits<std::int32_t>;
  using I64 = std::numeric_limits<std::int64_t>;
  const bool fits = type == TypeId::TinyInt    ? value >= 0 && value <= 255
                    : type == TypeId::SmallInt ? value >= -32768 && value <= 32767
                    : type == TypeId::BigInt   ? value >= I64::min() && value <= I64::max()
                                               : value >= I32::min() && value <= I32::max();
  if (!fits) throwExpressionOverflow(type);
  return static_cast<std::int64_t>(value);
}

std::int64_t checkMoney(Int128 value, TypeId type) {
  try {
    return checkInteger(value, type == TypeId::Money ? TypeId::BigInt : TypeId::Int);
  } catch (const Error&) {
    throwExpressionOverflow(type);
  }
}

std::int64_t checkTicks(Int128 ticks, TypeId type) {
  if (ticks < minDateTime || ticks > maxDateTime) throwDateOverflow(type);
  const auto value = static_cast<std::int64_t>(ticks);
  if (type == TypeId::DateTime) return value;
  const std::int64_t minutes = (value + ticksPerMinute / 2) / ticksPerMinute * ticksPerMinute;
  if (value < 0 || minutes > maxSmallDateTime) throwDateOverflow(type);
  return minutes;
}

std::int64_t moneyProduct(std::int64_t left, std::int64_t right, TypeId type) {
  Int128 product = static_cast<Int128>(left) * right;
  rescale(product, 4, 0);
  return checkMoney(product, type);
}

std::int64_t moneyQuotient(std::int64_t left, std::int64_t right, TypeId type) {
  if (right == 0) throwDivideByZero();
  return checkMoney(static_cast<Int128>(left) * 10000 / right, type);
}

Type asDecimal(const Type& type) {
  switch (type.id) {
    case TypeId::Bit:
      return decimalType(1, 0);
    case TypeId::TinyInt:
      return decimalType(3, 0);
    case TypeId::SmallInt:
      return decimalType(5, 0);
    case TypeId::Int:
      return decimalType(10, 0);
    case TypeId::BigInt:
      return decimalType(19, 0);
    case TypeId::SmallMoney:
      return decimalType(10, 4);
    case TypeId::Money:
      return decimalType(19, 4);
    default:
      return type;
  }
}

Type operandType(const Type& operand, const Type& other, const Type& result) {
  if (isDateTime(result.id)) return {TypeId::DateTime};
  if (result.id != TypeId::Decimal) return result;
  return asDecimal(isCharacter(operand.id) || isBinary(operand.id) ? other : operand);
}

Datum decimalArithmetic(BinaryOp op, const Exact& left, const Exact& right, const Type& result) {
  Int128 a = left.value, b = right.value, value = 0;
  bool fits = true;
  if ((op == BinaryOp::Divide || op == BinaryOp::Modulo) && b == 0) throwDivideByZero();
  switch (op) {
    case BinaryOp::Multiply:
      fits = multiplyScaled(a, b, left.scale + right.scale - result.scale, value);
      break;
    case BinaryOp::Divide:
      fits = divideScaled(a, result.scale - left.scale + right.scale, b, value);
      break;
    case BinaryOp::Modulo:
      value = moduloScaled(a, left.scale, b, right.scale);
      break;
    default:
      fits = rescale(a, left.scale, result.scale) && rescale(b, right.scale, result.scale) &&
             !(op == BinaryOp::Add ? __builtin_add_overflow(a, b, &value)
                                   : __builtin_sub_overflow(a, b, &value));
  }
  if (!fits || !fitsPrecision(value, result.precision)) throwExpressionOverflow(TypeId::Decimal);
  return decimalDatum(value, result);
}

Type arithmeticType(BinaryOp op, const Type& leftType, const Type& rightType) {
  if (leftType.id == TypeId::Null && rightType.id == TypeId::Null) return {TypeId::Int};
  const Type& left = leftType.id == TypeId::Null ? rightType : leftType;
  const Type& right = rightType.id == TypeId::Null ? leftType : rightType;
  if (isCharacter(left.id) && isCharacter(right.id)) {
    if (op != BinaryOp::Add) throwInvalid(op, left, right);
    return concatenationType(left, right);
  }
  if (isBinary(left.id) && isBinary(right.id)) {
    if (op != BinaryOp::Add) throwInvalid(op, left, right);
    return {TypeId::VarBinary,
            static_cast<std::uint16_t>(std::min(maxTextLength, left.length + right.length))};
  }
  if (isDateTime(left.id) || isDateTime(right.id)) return dateResult(op, left, right);
  const Type common = commonType(left, right);
  if (!isNumeric(common.id) || (isBitwise(op) && !isInteger(common.id)) ||
      (op == BinaryOp::Modulo && isApproximate(common.id)) || (common.id == TypeId::Bit && !isBitwise(op)))
    throwInvalid(op, left, right);
  if (common.id != TypeId::Decimal) return common;
  const bool leftPlain = isCharacter(left.id) || isBinary(left.id);
  const bool rightPlain = isCharacter(right.id) || isBinary(right.id);
  return decimalResult(op, asDecimal(leftPlain ? right : left), asDecimal(rightPlain ? left : right));
}

Datum arithmetic(BinaryOp op, const Datum& left, const Type& leftType, const Datum& right,
                 const Type& rightType, const ConvertContext& context) {
  const Type result = arithmeticType(op, leftType, rightType);
  if (left.isNull() || right.isNull()) return {};
  if (isCharacter(result.id)) {
    const Type joined{TypeId::VarChar, maxTextLength};
    return convert(concatenate(left, leftType, right, rightType),
                   isUnicode(result.id) ? Type{TypeId::NVarChar, maxTextLength} : joined, result);
  }
  if (isBinary(result.id)) return Blob{(left.bytes() + right.bytes()).substr(0, maxTextLength)};
  const Type a = operandType(leftType, rightType, result), b = operandType(rightType, leftType, result);
  const Datum x = convert(left, leftType, a, 0, false, context);
  const Datum y = convert(right, rightType, b, 0, false, context);
  if (isDateTime(result.id))
    return checkTicks(op == BinaryOp::Add ? static_cast<Int128>(x.integer()) + y.integer()
                                          : static_cast<Int128>(x.integer()) - y.integer(),
                      result.id);
  if (result.id == TypeId::Decimal) return decimalArithmetic(op, exactValue(x, a), exactValue(y, b), result);
  if (isApproximate(result.id)) return floatArithmetic(op, x.real(), y.real(), result);
  return isMoney(result.id) ? moneyArithmetic(op, x.integer(), y.integer(), result.id)
                            : integerArithmetic(op, x.integer(), y.integer(), result.id);
}

Type unaryType(UnaryOp op, const Type& type) {
  if (type.id == TypeId::Null) return {TypeId::Int};
  const bool fits = op == UnaryOp::Plus     ? true
                    : op == UnaryOp::BitNot ? isInteger(type.id)
                                            : isNumeric(type.id) && type.id != TypeId::Bit;
  if (!fits)
    throw Error(8117, std::string("Operand data type ") + messageName(type.id) + " is invalid for " +
                          (op == UnaryOp::BitNot ? "'~'" : "minus") + " operator.");
  return op == UnaryOp::Minus && type.id == TypeId::TinyInt ? Type{TypeId::SmallInt} : type;
}

Datum unary(UnaryOp op, const Datum& value, const Type& type) {
  const Type result = unaryType(op, type);
  if (value.isNull() || op == UnaryOp::Plus) return value;
  if (op == UnaryOp::BitNot) {
    if (type.id == TypeId::Bit) return static_cast<std::int64_t>(value.integer() == 0);
    return type.id == TypeId::TinyInt ? ~value.integer() & 255 : ~value.integer();
  }
  if (isApproximate(type.id)) return -value.real();
  if (type.id == TypeId::Decimal) return decimalDatum(-decimalValue(value), type);
  const Int128 negated = -static_cast<Int128>(value.integer());
  return isMoney(type.id) ? checkMoney(negated, type.id) : checkInteger(negated, result.id);
}

int compareDatums(const Datum& left, const Type& leftType, const Datum& right, const Type& rightType,
                  const ConvertContext& context) {
  if (left.isText() && right.isText()) return compareText(left.text(), right.text());
  const Type common = comparisonType(leftType, rightType);
  const Datum a = convert(left, leftType, common, 0, false, context);
  const Datum b = convert(right, rightType, common, 0, false, context);
  if (a.isInteger()) return a.integer() < b.integer() ? -1 : a.integer() > b.integer();
  if (a.isReal()) return a.real() < b.real() ? -1 : a.real() > b.real();
  if (a.isText()) return compareText(a.text(), b.text());
  return a.bytes().compare(b.bytes());
}

}  // namespace engine
