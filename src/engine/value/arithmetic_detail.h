// What evaluation and SQL texts of operators share.
#pragma once

#include <cstdint>

#include "engine/value/arithmetic.h"
#include "engine/value/decimal.h"

namespace engine {

[[noreturn]] void throwDivideByZero();
[[noreturn]] void throwExpressionOverflow(TypeId type);
[[noreturn]] void throwDateOverflow(TypeId type);

std::int64_t checkInteger(Int128 value, TypeId type);
std::int64_t checkMoney(Int128 value, TypeId type);
std::int64_t checkTicks(Int128 ticks, TypeId type);
std::int64_t moneyProduct(std::int64_t left, std::int64_t right, TypeId type);
std::int64_t moneyQuotient(std::int64_t left, std::int64_t right, TypeId type);
Datum decimalArithmetic(BinaryOp op, const Exact& left, const Exact& right, const Type& result);

// The DECIMAL that holds every value of an exact type.
Type asDecimal(const Type& type);
// The type that an operand takes before the operator works on it. Beside a DECIMAL a text takes the type of
// the other side; the result's would move its point.
Type operandType(const Type& operand, const Type& other, const Type& result);

}  // namespace engine
