// Types and values of chance, with the edges more often than chance would have them.
#include <algorithm>
#include <cmath>

#include "campaigns/dialect/exact_cases.h"

namespace campaign {
namespace {

Big digitsOf(Chance& chance, int count) {
  std::string text;
  for (int i = 0; i < count; ++i) text += static_cast<char>('0' + chance.below(10));
  // Runs of the same digit carry, and a 5 with zeros behind it is a tie.
  if (count > 2 && chance.oneIn(4)) {
    const int from = chance.below(count);
    const char digit = chance.of("0594");
    for (int i = from; i < count; ++i) text[static_cast<std::size_t>(i)] = digit ? digit : '9';
    if (chance.oneIn(2)) text[static_cast<std::size_t>(from)] = '5';
  }
  return Big::digits(text);
}

Big lowest(const Shape& shape) {
  switch (shape.kind) {
    case Kind::Bit:
    case Kind::TinyInt:
      return 0;
    case Kind::SmallInt:
      return -32768;
    case Kind::Int:
    case Kind::SmallMoney:
      return -2147483648LL;
    case Kind::Decimal:
      return Big(1) - Big::tenTo(shape.precision);
    default:
      return Big::digits("-9223372036854775808");
  }
}

Big highest(const Shape& shape) {
  if (shape.kind == Kind::Bit) return 1;
  if (shape.kind == Kind::TinyInt) return 255;
  return shape.kind == Kind::Decimal ? -lowest(shape) : -lowest(shape) - 1;
}

int mostDigits(const Shape& shape) {
  return shape.kind == Kind::Decimal ? shape.precision : highest(shape).digitCount();
}

std::string numberText(Chance& chance, const Shape& like) {
  if (chance.oneIn(25)) {
    static const std::string odd[] = {"", " ", "abc", "1,5", "12x", "1 2", "--1", "0", "-0", "007"};
    return chance.of(odd);
  }
  Shape shape = like;
  if (shape.text() || shape.kind == Kind::Float) shape = decimalShape(9, 3);
  int scale = shape.digitsBehindPoint();
  Value value = valueOf(chance, shape, shape);
  Big digits = value.null ? Big(0) : value.exact;
  // More or fewer digits behind the point than the type has.
  if (!shape.integer() && chance.oneIn(2)) {
    const int more = chance.between(1, chance.oneIn(4) ? 30 : 3);
    digits =
        digits * Big::tenTo(more) + (digits.negative() ? -digitsOf(chance, more) : digitsOf(chance, more));
    scale += more;
  }
  std::string text = pointed(digits, scale);
  if (!shape.integer() && chance.oneIn(6) && text.find('.') == std::string::npos) text += '.';
  if (text.starts_with("0.") && chance.oneIn(3)) text.erase(0, 1);
  if (text[0] != '-' && chance.oneIn(8)) text.insert(0, "+");
  if (chance.oneIn(8)) text.insert(0, " ");
  if (chance.oneIn(8)) text += "  ";
  return text;
}

}  // namespace

Shape numberShape(Chance& chance) {
  static constexpr Kind others[] = {Kind::TinyInt, Kind::SmallInt, Kind::Int,        Kind::Int,  Kind::BigInt,
                                    Kind::Money,   Kind::Money,    Kind::SmallMoney, Kind::Float};
  if (chance.oneIn(2)) return {chance.of(others)};
  static constexpr int precisions[] = {1, 5, 8, 9, 18, 19, 28, 37, 38, 38, 38};
  const int precision = chance.oneIn(3) ? chance.between(1, 38) : chance.of(precisions);
  static constexpr int scales[] = {0, 2, 4, 6};
  const int scale = chance.oneIn(3) ? chance.between(0, precision) : std::min(precision, chance.of(scales));
  return decimalShape(precision, scale);
}

Shape textShape(Chance& chance) {
  static constexpr Kind kinds[] = {Kind::Char, Kind::VarChar, Kind::NVarChar};
  return {chance.of(kinds), 0, 0, 80};
}

Value valueOf(Chance& chance, const Shape& shape, const Shape& like) {
  Value out;
  out.shape = shape;
  if (chance.oneIn(16)) {
    out.null = true;
    return out;
  }
  if (shape.text()) {
    out.text = numberText(chance, like);
    if (shape.kind == Kind::Char)
      while (!out.text.empty() && out.text.back() == ' ') out.text.pop_back();
    return out;
  }
  if (shape.kind == Kind::Float) {
    // Few enough binary places that sums and products of some are exact.
    out.real = std::ldexp(chance.between(-4000, 4000), -chance.below(7));
    return out;
  }
  if (chance.oneIn(12)) {
    const Big edges[] = {0, 1, lowest(shape), highest(shape), highest(shape) / 2};
    out.exact = chance.of(edges);
    return out;
  }
  do {
    out.exact = digitsOf(chance, chance.between(0, mostDigits(shape)));
    if (shape.kind != Kind::TinyInt && chance.oneIn(3)) out.exact = -out.exact;
  } while (!fits(out.exact, shape));
  return out;
}

std::string literalOf(const Value& value) {
  if (value.null) return "NULL";
  if (value.shape.text()) return "'" + value.text + "'";
  if (value.shape.kind == Kind::Float) return value.shown() + "e0";
  return "'" + value.shown() + "'";  // text, which every exact type reads to its last digit
}

}  // namespace campaign
