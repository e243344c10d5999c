// Conversions and aggregates.
#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "campaigns/dialect/exact.h"

namespace campaign {
namespace {

constexpr int overflow = 8115;

struct Digits {
  bool number = false;
  bool empty = false;
  bool point = false;
  Big value;      // all digits
  int scale = 0;  // of them behind the point
};

// [blanks] [sign] digits [. digits] [blanks]
Digits read(std::string text) {
  Digits out;
  while (!text.empty() && text.back() == ' ') text.pop_back();
  text.erase(0, text.find_first_not_of(' '));
  out.empty = text.empty();
  const bool minus = !text.empty() && text[0] == '-';
  if (minus || (!text.empty() && text[0] == '+')) text.erase(0, 1);
  const auto point = text.find('.');
  out.point = point != std::string::npos;
  if (out.point) {
    out.scale = static_cast<int>(text.size() - point - 1);
    text.erase(point, 1);
  }
  out.number = !text.empty() && text.find_first_not_of("0123456789") == std::string::npos;
  if (out.number) out.value = Big::digits((minus ? "-" : "") + text);
  return out;
}

Value ofText(const Value& a, const Shape& to) {
  std::string written = a.text;
  if (to.money()) std::erase(written, ',');  // between thousands, or wherever
  const Digits digits = read(written);
  Value out;
  out.shape = to;
  if (to.integer()) {
    const int wrong = to.kind == Kind::BigInt ? 8114 : 245;
    if (!digits.empty && (!digits.number || digits.point)) return failed(to, wrong);
    out.exact = to.kind == Kind::Bit && !digits.value.zero() ? Big(1) : digits.value;
    if (fits(out.exact, to)) return out;
    return failed(to, to.kind == Kind::Int ? 248 : to.kind == Kind::BigInt ? overflow : 244);
  }
  if (to.kind == Kind::Float) {
    if (!digits.empty && !digits.number) return failed(to, 8114);
    out.real = digits.empty ? 0 : nearestDouble(digits.value, digits.scale);
    return out;
  }
  if (digits.empty && to.money()) return out;
  if (!digits.number) return failed(to, to.money() ? 235 : 8114);
  out.exact = atScale(digits.value, digits.scale, to.digitsBehindPoint());
  return fits(out.exact, to) ? out : failed(to, overflow);
}

// A FLOAT that is a multiple of 1/2^20, as an exact number.
Value ofReal(double real, const Shape& to) {
  Value out;
  out.shape = to;
  if (to.kind == Kind::Bit) {
    out.exact = real != 0 ? 1 : 0;
    return out;
  }
  const Big scaled = Big(static_cast<std::int64_t>(std::ldexp(real, 20)));
  const Big unit = Big(1 << 20);
  out.exact =
      to.integer() ? scaled / unit : dividedRounding(scaled * Big::tenTo(to.digitsBehindPoint()), unit);
  return fits(out.exact, to) ? out : failed(to, to.kind == Kind::Decimal ? overflow : 232);
}

Value ofExact(const Value& a, const Shape& to) {
  const int scale = a.shape.digitsBehindPoint();
  Value out;
  out.shape = to;
  if (to.kind == Kind::Bit) {
    out.exact = a.exact.zero() ? 0 : 1;
    return out;
  }
  if (to.integer())
    out.exact = a.shape.money() ? dividedRounding(a.exact, Big::tenTo(scale)) : a.exact / Big::tenTo(scale);
  else
    out.exact = atScale(a.exact, scale, to.digitsBehindPoint());
  if (fits(out.exact, to)) return out;
  const bool small = to.kind == Kind::TinyInt || to.kind == Kind::SmallInt;
  return failed(to, a.shape.integer() && small ? 220 : overflow);
}

std::string written(const Value& a) {
  if (a.shape.money()) return pointed(dividedRounding(a.exact, 100), 2);
  return pointed(a.exact, a.shape.digitsBehindPoint());
}

Value toText(const Value& a, const Shape& to) {
  Value out;
  out.shape = to;
  if (a.shape.text()) {
    out.text = a.text.substr(0, static_cast<std::size_t>(to.width));
  } else {
    out.text = written(a);
    if (out.text.size() > static_cast<std::size_t>(to.width)) {
      const bool star = a.shape.integer() && a.shape.kind != Kind::BigInt && to.kind != Kind::NVarChar;
      if (!star) return failed(to, a.shape.money() ? 234 : overflow);
      out.text = "*";
    }
  }
  if (to.kind == Kind::Char)
    while (!out.text.empty() && out.text.back() == ' ') out.text.pop_back();
  return out;
}

bool before(const Value& a, const Value& b) {
  return a.shape.kind == Kind::Float ? a.real < b.real : a.exact < b.exact;
}

Value quotient(const Value& sum, int count, Shape shape) {
  Value out = sum;
  out.shape = shape;
  if (shape.kind == Kind::Float) {
    out.real = sum.real / count;
    return out;
  }
  const int raise = shape.digitsBehindPoint() - sum.shape.digitsBehindPoint();
  out.exact = sum.exact * Big::tenTo(raise) / Big(count);
  return fits(out.exact, shape) ? out : failed(shape, overflow);
}

}  // namespace

Value converted(const Value& a, const Shape& to) {
  Value out;
  out.shape = to;
  out.errors = a.errors;
  out.null = a.null;
  out.open = a.open;
  if (!a.errors.empty() || a.null) return out;
  if (to.text()) return toText(a, to);
  if (a.shape.text()) return ofText(a, to);
  if (to.kind == Kind::Float) {
    out.real = a.shape.kind == Kind::Float ? a.real : nearestDouble(a.exact, a.shape.digitsBehindPoint());
    return out;
  }
  return a.shape.kind == Kind::Float ? ofReal(a.real, to) : ofExact(a, to);
}

Value aggregate(const std::string& name, const Shape& shape, const std::vector<Value>& values,
                bool distinct) {
  std::vector<Value> list;
  for (const Value& value : values) {
    const auto same = [&](const Value& other) { return !before(value, other) && !before(other, value); };
    if (value.null || (distinct && std::any_of(list.begin(), list.end(), same))) continue;
    list.push_back(value);
  }
  Value out;
  out.shape = shape;
  if (name == "COUNT") {
    out.shape = {Kind::Int};
    out.exact = static_cast<std::int64_t>(list.size());
    return out;
  }
  const bool extreme = name == "MIN" || name == "MAX";
  if (!extreme) {
    if (shape.kind < Kind::Int) out.shape = {Kind::Int};
    if (shape.kind == Kind::SmallMoney) out.shape = {Kind::Money};
    if (shape.kind == Kind::Decimal) out.shape = decimalShape(38, shape.scale);
  }
  const Shape average = shape.kind == Kind::Decimal ? decimalShape(38, std::max(6, shape.scale)) : out.shape;
  if (list.empty()) {
    out.null = true;
    if (name == "AVG") out.shape = average;
    return out;
  }
  if (extreme) {
    const auto found = name == "MIN" ? std::min_element(list.begin(), list.end(), before)
                                     : std::max_element(list.begin(), list.end(), before);
    return *found;
  }
  for (const Value& value : list) {
    out.exact = out.exact + value.exact;
    out.real += value.real;
  }
  if (shape.kind != Kind::Float && !fits(out.exact, out.shape)) return failed(out.shape, overflow);
  return name == "SUM" ? out : quotient(out, static_cast<int>(list.size()), average);
}

}  // namespace campaign
