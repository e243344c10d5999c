#include "campaigns/dialect/exact.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace campaign {
namespace {

constexpr int overflow = 8115, divisionByZero = 8134;

Shape asDecimal(const Shape& shape) {
  switch (shape.kind) {
    case Kind::Bit:
      return decimalShape(1, 0);
    case Kind::TinyInt:
      return decimalShape(3, 0);
    case Kind::SmallInt:
      return decimalShape(5, 0);
    case Kind::Int:
      return decimalShape(10, 0);
    case Kind::BigInt:
      return decimalShape(19, 0);
    case Kind::SmallMoney:
      return decimalShape(10, 4);
    case Kind::Money:
      return decimalShape(19, 4);
    default:
      return shape;
  }
}

// The documentation's rule for results of more than 38 digits, of * and /.
Shape reduced(int precision, int scale) {
  if (precision <= 38) return decimalShape(precision, scale);
  const int whole = precision - scale;
  if (whole <= 32) return decimalShape(38, std::min(scale, 38 - whole));
  return decimalShape(38, std::min(scale, 6));
}

Shape decimalOperator(char op, const Shape& a, const Shape& b) {
  const int p1 = a.precision, s1 = a.scale, p2 = b.precision, s2 = b.scale;
  switch (op) {
    case '*':
      return reduced(p1 + p2 + 1, s1 + s2);
    case '/': {
      const int scale = std::max(6, s1 + p2 + 1);
      return reduced(p1 - s1 + s2 + scale, scale);
    }
    case '%':
      return decimalShape(std::max(1, std::min(p1 - s1, p2 - s2) + std::max(s1, s2)), std::max(s1, s2));
    default: {
      const int whole = std::max(p1 - s1, p2 - s2), scale = std::max(s1, s2);
      const int precision = std::min(38, whole + scale + 1);
      return decimalShape(precision, std::min(scale, precision - whole));
    }
  }
}

// An integer literal beside a decimal has as many digits as are written.
Shape besideDecimal(const Value& value) {
  if (!value.literal) return asDecimal(value.shape);
  return decimalShape(std::max(1, value.exact.digitCount()), 0);
}

Value made(const Shape& shape, const Big& exact) {
  if (!fits(exact, shape)) return failed(shape, overflow);
  Value out;
  out.shape = shape;
  out.exact = exact;
  return out;
}

Value madeReal(double real) {
  if (!std::isfinite(real)) return failed({Kind::Float}, overflow);
  Value out;
  out.shape = {Kind::Float};
  out.real = real;
  return out;
}

Value decimalOperation(char op, const Value& a, const Value& b, const Shape& result) {
  const int s1 = a.shape.scale, s2 = b.shape.scale;
  switch (op) {
    case '*':
      return made(result, atScale(a.exact * b.exact, s1 + s2, result.scale));
    case '/':
      return made(result, a.exact * Big::tenTo(std::max(0, result.scale - s1 + s2)) / b.exact);
    case '%': {
      const int scale = std::max(s1, s2);
      return made(result, atScale(a.exact, s1, scale) % atScale(b.exact, s2, scale));
    }
    default: {
      const Big x = atScale(a.exact, s1, result.scale), y = atScale(b.exact, s2, result.scale);
      return made(result, op == '+' ? x + y : x - y);
    }
  }
}

Value integerOperation(char op, const Big& a, const Big& b, const Shape& shape) {
  switch (op) {
    case '+':
      return made(shape, a + b);
    case '-':
      return made(shape, a - b);
    case '*':
      return made(shape, shape.money() ? dividedRounding(a * b, Big::tenTo(4)) : a * b);
    case '/':
      return made(shape, (shape.money() ? a * Big::tenTo(4) : a) / b);
    default:
      return made(shape, a % b);
  }
}

Value realOperation(char op, double a, double b) {
  if (op == '/' && b == 0) return failed({Kind::Float}, divisionByZero);
  return madeReal(op == '+' ? a + b : op == '-' ? a - b : op == '*' ? a * b : a / b);
}

}  // namespace

std::string Shape::sql() const {
  static constexpr const char* names[] = {"BIT",   "TINYINT", "SMALLINT", "INT",  "BIGINT",  "SMALLMONEY",
                                          "MONEY", "DECIMAL", "FLOAT",    "CHAR", "VARCHAR", "NVARCHAR"};
  std::string out = names[static_cast<int>(kind)];
  if (kind == Kind::Decimal) out += "(" + std::to_string(precision) + "," + std::to_string(scale) + ")";
  if (text()) out += "(" + std::to_string(width) + ")";
  return out;
}

std::string Value::shown() const {
  if (!errors.empty()) {
    std::string out;
    for (const int error : errors) out += (out.empty() ? "!" : " or !") + std::to_string(error);
    return out;
  }
  if (null) return "NULL";
  if (shape.text()) return "'" + text + "'";
  if (shape.kind != Kind::Float) return pointed(exact, shape.digitsBehindPoint());
  char buffer[64];
  std::snprintf(buffer, sizeof buffer, "%.17g", real == 0 ? 0.0 : real);
  return buffer;
}

std::string pointed(const Big& value, int scale) {
  std::string digits = value.absolute().text();
  const auto behind = static_cast<std::size_t>(scale);
  if (digits.size() <= behind) digits.insert(0, behind + 1 - digits.size(), '0');
  if (behind > 0) digits.insert(digits.size() - behind, ".");
  return (value.negative() ? "-" : "") + digits;
}

double nearestDouble(const Big& value, int scale) {
  return std::strtod(pointed(value, scale).c_str(), nullptr);
}

bool fits(const Big& value, const Shape& shape) {
  const auto within = [&](const char* low, const char* high) {
    return !(value < Big::digits(low)) && !(Big::digits(high) < value);
  };
  switch (shape.kind) {
    case Kind::Bit:
      return within("0", "1");
    case Kind::TinyInt:
      return within("0", "255");
    case Kind::SmallInt:
      return within("-32768", "32767");
    case Kind::Int:
    case Kind::SmallMoney:
      return within("-2147483648", "2147483647");
    case Kind::BigInt:
    case Kind::Money:
      return within("-9223372036854775808", "9223372036854775807");
    default:
      return value.digitCount() <= shape.precision;
  }
}

Value failed(const Shape& shape, int error) {
  Value out;
  out.shape = shape;
  out.errors.insert(error);
  return out;
}

Shape commonShape(const Shape& a, const Shape& b) {
  if (a == b) return a;
  const Shape &low = a.kind < b.kind ? a : b, &high = a.kind < b.kind ? b : a;
  if (high.text() && !low.text()) return low;
  if (high.text()) {
    const Kind kind = high.kind == Kind::Char && low.kind != Kind::Char ? low.kind : high.kind;
    return {kind, 0, 0, std::max(a.width, b.width)};
  }
  if (high.kind != Kind::Decimal) return high;
  const Shape x = asDecimal(a), y = asDecimal(b);
  const int whole = std::max(x.precision - x.scale, y.precision - y.scale),
            scale = std::max(x.scale, y.scale);
  return decimalShape(std::min(38, whole + scale), std::min(scale, 38 - whole));
}

Shape operatorShape(char op, const Value& a, const Value& b) {
  const Kind kind = a.shape.text()   ? b.shape.kind
                    : b.shape.text() ? a.shape.kind
                                     : std::max(a.shape.kind, b.shape.kind);
  if (kind != Kind::Decimal) return {kind};
  // A text is what its partner is.
  const Shape left = a.shape.text() ? b.shape : besideDecimal(a);
  const Shape right = b.shape.text() ? a.shape : besideDecimal(b);
  return decimalOperator(op, left, right);
}

Value operate(char op, const Value& a, const Value& b) {
  const Shape result = operatorShape(op, a, b);
  Value out;
  out.shape = result;
  out.errors = a.errors;
  out.errors.insert(b.errors.begin(), b.errors.end());
  out.null = a.null || b.null;
  out.open = a.open || b.open;
  // Each side takes the common type; with decimals a text takes its partner's, everything else its own.
  const auto operand = [&](const Value& value, const Value& other) {
    if (result.kind != Kind::Decimal) return converted(value, result);
    if (value.shape.text()) return converted(value, asDecimal(other.shape));
    Value exact = value;
    exact.shape = asDecimal(value.shape);
    return exact;
  };
  const Value x = operand(a, b), y = operand(b, a);
  if (out.errors.empty() && out.null) {
    out.open = out.open || !x.errors.empty() || !y.errors.empty();
    return out;
  }
  out.errors.insert(x.errors.begin(), x.errors.end());
  out.errors.insert(y.errors.begin(), y.errors.end());
  if (!out.errors.empty() || out.open) return out;
  if (result.kind == Kind::Float) return realOperation(op, x.real, y.real);
  if ((op == '/' || op == '%') && y.exact.zero()) return failed(result, divisionByZero);
  return result.kind == Kind::Decimal ? decimalOperation(op, x, y, result)
                                      : integerOperation(op, x.exact, y.exact, result);
}

// Exact numbers are compared as they are, however many digits both would need together.
Value order(const Value& a, const Value& b) {
  const Shape common = commonShape(a.shape, b.shape);
  const auto side = [&](const Value& value, const Value& other) {
    if (common.kind != Kind::Decimal) return converted(value, common);
    if (value.shape.text()) return converted(value, asDecimal(other.shape));
    Value exact = value;
    exact.shape = asDecimal(value.shape);
    return exact;
  };
  const Value x = side(a, b), y = side(b, a);
  Value out;
  out.errors = x.errors;
  out.errors.insert(y.errors.begin(), y.errors.end());
  const int scale = std::max(x.shape.digitsBehindPoint(), y.shape.digitsBehindPoint());
  const Big first = atScale(x.exact, x.shape.digitsBehindPoint(), scale),
            second = atScale(y.exact, y.shape.digitsBehindPoint(), scale);
  const bool less = common.kind == Kind::Float ? x.real < y.real : first < second;
  const bool more = common.kind == Kind::Float ? x.real > y.real : second < first;
  out.exact = less ? -1 : more ? 1 : 0;
  return out;
}

Value negated(const Value& a) {
  Value out = a;  // of a literal, one itself
  if (a.shape.kind == Kind::TinyInt) out.shape = {Kind::SmallInt};
  if (!a.errors.empty() || a.null) return out;
  out.real = -a.real;
  out.exact = -a.exact;
  return a.shape.kind == Kind::Float || fits(out.exact, out.shape) ? out : failed(out.shape, overflow);
}

Value function(const std::string& name, const Value& a, int places, bool cut) {
  Shape shape = a.shape;
  if (shape.kind == Kind::TinyInt || shape.kind == Kind::SmallInt) shape = {Kind::Int};
  if (shape.kind == Kind::SmallMoney) shape = {Kind::Money};
  Value out = a;
  out.shape = shape;
  out.literal = false;
  const bool whole = name == "FLOOR" || name == "CEILING";
  if (whole && shape.kind == Kind::Decimal) out.shape = decimalShape(shape.precision, 0);
  if (!a.errors.empty() || a.null) return out;
  if (name == "ABS") return made(shape, a.exact.absolute());
  const int scale = shape.digitsBehindPoint();
  if (name == "ROUND") {
    if (places >= scale) return out;
    const Big unit = Big::tenTo(scale - places);
    return made(shape, (cut ? a.exact / unit : dividedRounding(a.exact, unit)) * unit);
  }
  const Big unit = Big::tenTo(scale);
  Big value = a.exact / unit;
  const bool rest = !(a.exact % unit).zero();
  if (rest && name == "FLOOR" && a.exact.negative()) value = value - 1;
  if (rest && name == "CEILING" && !a.exact.negative()) value = value + 1;
  return made(out.shape, shape.kind == Kind::Decimal ? value : value * unit);
}

}  // namespace campaign
