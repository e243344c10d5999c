// Operators: result types, evaluation, and the SQLite expressions that do the same.
//
// Errors: 402, 403, 8117 (the operator does not take the types), 206 (clash), 8115 (overflow),
// 8134 (division by zero), and those of convert.h when text meets numbers.
#pragma once

#include <string>

#include "engine/value/collation.h"
#include "engine/value/convert.h"
#include "engine/value/datum.h"
#include "engine/value/operator.h"
#include "engine/value/type.h"

namespace engine {

// Add .. BitXor. NULL with a type takes the other type; NULL with NULL is INT.
Type arithmeticType(BinaryOp op, const Type& left, const Type& right);
Datum arithmetic(BinaryOp op, const Datum& left, const Type& leftType, const Datum& right,
                 const Type& rightType, const ConvertContext& context = {});
// The whole expression, its conversions and padding included; operands in the form of their types.
std::string arithmeticSql(BinaryOp op, const std::string& left, const Type& leftType,
                          const std::string& right, const Type& rightType);

// Minus, Plus, BitNot.
Type unaryType(UnaryOp op, const Type& type);
Datum unary(UnaryOp op, const Datum& value, const Type& type);
std::string unarySql(UnaryOp op, const std::string& operand, const Type& type);

// Throws 402 where one side is TEXT or NTEXT.
void requireComparable(BinaryOp op, const Type& left, const Type& right);
// Equal .. GreaterEqual: the operands brought to their common type; text under the server's collation,
// where a plain column stays bare, so that its index serves. The result is 1, 0 or NULL.
std::string comparisonSql(BinaryOp op, const std::string& left, const Type& leftType,
                          const std::string& right, const Type& rightType,
                          const char* collation = sqliteCollation);
// Negative, zero, positive; both values not NULL.
int compareDatums(const Datum& left, const Type& leftType, const Datum& right, const Type& rightType,
                  const ConvertContext& context = {});

// text [NOT] LIKE pattern [ESCAPE escape]; `escape` empty when absent. The result is 1, 0 or NULL.
std::string likeSql(const std::string& text, const Type& textType, const std::string& pattern,
                    const Type& patternType, const std::string& escape, bool negated);

}  // namespace engine
