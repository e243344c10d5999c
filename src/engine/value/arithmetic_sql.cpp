// Operators as SQLite expressions: native where SQLite's own operator is exact, a z_ function that
// checks the result or does the work where it is not.
#include <algorithm>

#include "engine/value/arithmetic.h"
#include "engine/value/arithmetic_detail.h"
#include "engine/value/collation.h"
#include "engine/value/convert_detail.h"
#include "engine/value/error.h"

namespace engine {
namespace {

constexpr int longestText = 8000;
constexpr int longestUnicode = 4000;

std::string call(const char* function, const std::string& argument) {
  return std::string(function) + '(' + argument + ')';
}

std::string call(const char* function, const std::string& left, const std::string& right) {
  return std::string(function) + '(' + left + ',' + right + ')';
}

const char* symbol(BinaryOp op) {
  switch (op) {
    case BinaryOp::Add:
      return "+";
    case BinaryOp::Subtract:
      return "-";
    case BinaryOp::Multiply:
      return "*";
    case BinaryOp::Divide:
      return "/";
    case BinaryOp::Modulo:
      return "%";
    case BinaryOp::BitAnd:
      return "&";
    case BinaryOp::BitOr:
      return "|";
    case BinaryOp::Equal:
      return "=";
    case BinaryOp::NotEqual:
      return "<>";
    case BinaryOp::Less:
      return "<";
    case BinaryOp::LessEqual:
      return "<=";
    case BinaryOp::Greater:
      return ">";
    case BinaryOp::GreaterEqual:
      return ">=";
    default:
      return "";
  }
}

std::string plain(BinaryOp op, const std::string& left, const std::string& right) {
  return left + ' ' + symbol(op) + ' ' + right;
}

// The function that lets a number pass when it fits the type.
const char* checker(TypeId type) {
  switch (type) {
    case TypeId::TinyInt:
      return "z_i1";
    case TypeId::SmallInt:
      return "z_i2";
    case TypeId::BigInt:
      return "z_i8";
    case TypeId::Money:
      return "z_m8";
    case TypeId::SmallMoney:
      return "z_m4";
    case TypeId::DateTime:
      return "z_dt";
    case TypeId::SmallDateTime:
      return "z_sdt";
    default:
      return "z_i4";
  }
}

std::string integerSql(BinaryOp op, const std::string& left, const std::string& right, TypeId type) {
  switch (op) {
    case BinaryOp::Divide:
      return call(type == TypeId::BigInt ? "z_bdiv" : "z_idiv", left, right);
    case BinaryOp::Modulo:
      return call("z_imod", left, right);
    case BinaryOp::BitXor:
      return call("z_xor", left, right);
    case BinaryOp::BitAnd:
    case BinaryOp::BitOr:
      return '(' + plain(op, left, right) + ')';
    default:
      return call(checker(type), plain(op, left, right));
  }
}

std::string moneySql(BinaryOp op, const std::string& left, const Type& leftType, const std::string& right,
                     const Type& rightType, const Type& result) {
  const bool small = result.id == TypeId::SmallMoney;
  // An integer whose every value the money type holds needs no four decimals of its own.
  const auto plainFactor = [&](const Type& type) {
    return isInteger(type.id) && type.id <= (small ? TypeId::SmallInt : TypeId::Int);
  };
  if (op == BinaryOp::Multiply && (plainFactor(leftType) || plainFactor(rightType)))
    return call(checker(result.id), plain(op, left, right));
  const std::string a = convertSql(left, leftType, result), b = convertSql(right, rightType, result);
  if (op == BinaryOp::Multiply) return call(small ? "z_smul" : "z_mmul", a, b);
  if (op == BinaryOp::Divide) return call(small ? "z_sdiv" : "z_mdiv", a, b);
  if (op == BinaryOp::Modulo) return call("z_imod", a, b);
  return call(checker(result.id), plain(op, a, b));
}

std::string decimalSql(BinaryOp op, const std::string& left, const Type& leftType, const std::string& right,
                       const Type& rightType, const Type& result) {
  const Type a = operandType(leftType, rightType, result), b = operandType(rightType, leftType, result);
  const bool narrow = result.precision <= 18 && a.precision <= 18 && b.precision <= 18;
  if (narrow && op == BinaryOp::Multiply)
    return '(' + plain(op, convertSql(left, leftType, a), convertSql(right, rightType, b)) + ')';
  if (narrow && (op == BinaryOp::Add || op == BinaryOp::Subtract)) {
    const auto scaled = [&](const std::string& sql, const Type& from, const Type& operand) {
      return convertSql(convertSql(sql, from, operand), operand, result);
    };
    return '(' + plain(op, scaled(left, leftType, a), scaled(right, rightType, b)) + ')';
  }
  return "z_ar(" + std::to_string(static_cast<int>(op)) + ',' + left + ',' + right + ',' +
         std::to_string(packType(leftType)) + ',' + std::to_string(packType(rightType)) + ')';
}

std::string dateOperand(const std::string& sql, const Type& type) {
  if (isInteger(type.id)) return '(' + sql + '*' + std::to_string(ticksPerDay) + ')';
  return convertSql(sql, type, {TypeId::DateTime});
}

std::string concatenationSql(const std::string& left, const Type& leftType, const std::string& right,
                             const Type& rightType, const Type& result) {
  const int length = leftType.length + rightType.length;
  std::string joined =
      padSql(left, leftType) + "||" + (isFixedText(result.id) ? right : padSql(right, rightType));
  if (length > (isUnicode(result.id) ? longestUnicode : longestText))
    return convertSql(joined, {isUnicode(result.id) ? TypeId::NVarChar : TypeId::VarChar, 16000}, result);
  return isFixedText(result.id) ? call("rtrim", joined) : '(' + joined + ')';
}

Type varyingText(const Type& type) {
  return isUnicode(type.id) ? Type{TypeId::NVarChar, longestUnicode} : Type{TypeId::VarChar, longestText};
}

}  // namespace

std::string arithmeticSql(BinaryOp op, const std::string& left, const Type& leftType,
                          const std::string& right, const Type& rightType) {
  const Type result = arithmeticType(op, leftType, rightType);
  if (leftType.id == TypeId::Null || rightType.id == TypeId::Null) return "NULL";
  if (isCharacter(result.id)) return concatenationSql(left, leftType, right, rightType, result);
  if (isBinary(result.id)) return "CAST(" + left + "||" + right + " AS BLOB)";
  if (isDateTime(result.id))
    return call(checker(result.id), plain(op, dateOperand(left, leftType), dateOperand(right, rightType)));
  if (isMoney(result.id)) return moneySql(op, left, leftType, right, rightType, result);
  if (result.id == TypeId::Decimal) return decimalSql(op, left, leftType, right, rightType, result);
  const std::string a = convertSql(left, leftType, result), b = convertSql(right, rightType, result);
  if (isInteger(result.id)) return integerSql(op, a, b, result.id);
  const std::string value = op == BinaryOp::Divide ? call("z_fdiv", a, b) : '(' + plain(op, a, b) + ')';
  return convertSql(value, {TypeId::Float}, result);
}

std::string unarySql(UnaryOp op, const std::string& operand, const Type& type) {
  const Type result = unaryType(op, type);
  if (op == UnaryOp::Plus || type.id == TypeId::Null) return operand;
  if (op == UnaryOp::BitNot) {
    if (type.id == TypeId::Bit) return '(' + operand + "=0)";
    return type.id == TypeId::TinyInt ? "(~" + operand + "&255)" : "(~" + operand + ')';
  }
  const std::string negated = "-(" + operand + ')';
  if (isApproximate(type.id) || (type.id == TypeId::Decimal && type.precision <= 18))
    return '(' + negated + ')';
  return type.id == TypeId::Decimal ? call("z_neg", operand) : call(checker(result.id), negated);
}

void requireComparable(BinaryOp op, const Type& left, const Type& right) {
  if (!isLongText(left.id) && !isLongText(right.id)) return;
  const char* name = op == BinaryOp::Equal       ? "equal to"
                     : op == BinaryOp::NotEqual  ? "not equal to"
                     : op == BinaryOp::Less      ? "less than"
                     : op == BinaryOp::LessEqual ? "less than or equal to"
                     : op == BinaryOp::Greater   ? "greater than"
                                                 : "greater than or equal to";
  throw Error(402, std::string("The data types ") + messageName(left.id) + " and " + messageName(right.id) +
                       " are incompatible in the " + name + " operator.");
}

std::string comparisonSql(BinaryOp op, const std::string& left, const Type& leftType,
                          const std::string& right, const Type& rightType, const char* collation) {
  requireComparable(op, leftType, rightType);
  const bool leftText = isCharacter(leftType.id), rightText = isCharacter(rightType.id);
  if (leftText && rightText)
    return '(' + left + ' ' + symbol(op) + " (" + right + ") COLLATE " + collation + ')';
  const Type common = comparisonType(leftType, rightType);
  const std::string a = convertSql(left, leftType, common), b = convertSql(right, rightType, common);
  return '(' + plain(op, a, b) + ')';
}

std::string likeSql(const std::string& text, const Type& textType, const std::string& pattern,
                    const Type& patternType, const std::string& escape, bool negated) {
  const bool isText = isCharacter(textType.id);
  // Unicode on either side makes the blanks at the end of the text count.
  const bool unicode = isUnicode(textType.id) || isUnicode(patternType.id);
  std::string sql = "z_like(";
  sql += !isText   ? convertSql(text, textType, varyingText(textType))
         : unicode ? padSql(text, textType)
                   : text;
  sql += ',';
  sql += isCharacter(patternType.id) ? padSql(pattern, patternType)
                                     : convertSql(pattern, patternType, varyingText(patternType));
  sql += ',' + std::to_string(unicode ? -1 : isFixedText(textType.id) ? textType.length : 0);
  if (!escape.empty()) sql += ',' + escape;
  return negated ? "(NOT " + sql + "))" : sql + ')';
}

}  // namespace engine
