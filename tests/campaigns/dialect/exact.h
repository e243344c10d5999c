// What arithmetic means: types of results, conversions and operators, by the rules that the dialect's
// documentation gives, on numbers of any width.
#pragma once

#include <set>
#include <string>
#include <vector>

#include "campaigns/dialect/big.h"

namespace campaign {

enum class Kind : std::uint8_t {
  Bit,
  TinyInt,
  SmallInt,
  Int,
  BigInt,
  SmallMoney,
  Money,
  Decimal,
  Float,
  Char,
  VarChar,
  NVarChar
};

struct Shape {
  Kind kind = Kind::Int;
  int precision = 0;  // of Decimal
  int scale = 0;
  int width = 0;  // of texts

  bool text() const { return kind >= Kind::Char; }
  bool integer() const { return kind <= Kind::BigInt; }
  bool money() const { return kind == Kind::SmallMoney || kind == Kind::Money; }
  int digitsBehindPoint() const { return money() ? 4 : scale; }
  std::string sql() const;
  friend bool operator==(const Shape&, const Shape&) = default;
};

inline Shape decimalShape(int precision, int scale) {
  return {Kind::Decimal, precision, scale, 0};
}

// One value, or the errors of which one must be told in its place.
struct Value {
  Shape shape;
  std::set<int> errors;
  bool null = false;
  Big exact;  // integers, money and decimals, times 10^digitsBehindPoint
  double real = 0;
  std::string text;
  bool literal = false;  // an integer as it stands in the statement
  // A side that is NULL beside one that cannot be converted: whether the error is told is left open.
  bool open = false;

  std::string shown() const;
};

// value / 10^scale as a person writes it.
std::string pointed(const Big& value, int scale);
double nearestDouble(const Big& value, int scale);

// The type of a op b; op is one of + - * / %.
Shape operatorShape(char op, const Value& a, const Value& b);
// The common type of CASE, COALESCE and their like.
Shape commonShape(const Shape& a, const Shape& b);
Value operate(char op, const Value& a, const Value& b);
Value negated(const Value& a);
Value converted(const Value& a, const Shape& to);
bool fits(const Big& value, const Shape& shape);
Value failed(const Shape& shape, int error);

// Negative, zero, positive, or the errors of bringing both to their common type; neither is NULL.
Value order(const Value& a, const Value& b);

// name: ABS, FLOOR, CEILING, ROUND (places, cut).
Value function(const std::string& name, const Value& a, int places = 0, bool cut = false);
// name: COUNT, SUM, AVG, MIN, MAX.
Value aggregate(const std::string& name, const Shape& shape, const std::vector<Value>& values, bool distinct);

}  // namespace campaign
