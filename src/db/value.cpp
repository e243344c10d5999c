#include "db/value.h"

#include <charconv>
#include <cmath>
#include <cstdio>
#include <optional>

namespace db {
namespace {

std::string_view trim(std::string_view text) {
  const auto first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::string decimalText(const Decimal& value) {
  const bool negative = value.unscaled < 0;
  const auto raw = static_cast<std::uint64_t>(value.unscaled);
  std::string digits = std::to_string(negative ? 0 - raw : raw);
  if (value.scale > 0) {
    const auto scale = static_cast<std::size_t>(value.scale);
    if (digits.size() <= scale) digits.insert(0, scale + 1 - digits.size(), '0');
    digits.insert(digits.size() - scale, ".");
  }
  return negative ? "-" + digits : digits;
}

std::string realText(double value, bool scientific) {
  char buffer[64];
  const auto end = scientific
                       ? std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::scientific)
                       : std::to_chars(buffer, buffer + sizeof buffer, value);
  return {buffer, end.ptr};
}

std::string dateText(const DateTime& v, const char* format) {
  char buffer[96];
  const int length = std::snprintf(buffer, sizeof buffer, format, v.year, v.month, v.day, v.hour, v.minute,
                                   v.second, v.millisecond);
  return {buffer, static_cast<std::size_t>(length)};
}

std::string hexText(std::string_view bytes) {
  static constexpr char digits[] = "0123456789ABCDEF";
  std::string out = "0x";
  out.reserve(2 + bytes.size() * 2);
  for (const unsigned char c : bytes) {
    out += digits[c >> 4];
    out += digits[c & 15];
  }
  return out;
}

std::optional<double> parseReal(std::string_view text) {
  text = trim(text);
  if (text.starts_with('+')) text.remove_prefix(1);
  double value = 0;
  const auto end = std::from_chars(text.data(), text.data() + text.size(), value);
  if (end.ec != std::errc() || end.ptr != text.data() + text.size()) return std::nullopt;
  return value;
}

std::optional<std::int64_t> parseInteger(std::string_view text) {
  text = trim(text);
  if (text.starts_with('+')) text.remove_prefix(1);
  std::int64_t value = 0;
  const auto end = std::from_chars(text.data(), text.data() + text.size(), value);
  if (end.ec != std::errc() || end.ptr != text.data() + text.size()) return std::nullopt;
  return value;
}

// Half to even, clamped to what fits; not a number gives 0.
std::int64_t roundReal(double value) {
  if (std::isnan(value)) return 0;
  const double rounded = std::nearbyint(value);
  if (rounded >= 9223372036854775808.0) return INT64_MAX;
  if (rounded < -9223372036854775808.0) return INT64_MIN;
  return static_cast<std::int64_t>(rounded);
}

std::int64_t roundDecimal(const Decimal& value) {
  std::int64_t divisor = 1;
  for (int i = 0; i < value.scale; ++i) {
    if (divisor > INT64_MAX / 10) return 0;
    divisor *= 10;
  }
  std::int64_t whole = value.unscaled / divisor;
  const std::int64_t rest = value.unscaled % divisor;
  const std::int64_t distance = rest < 0 ? -rest : rest;
  const std::int64_t other = divisor - distance;
  if (distance > other || (distance == other && divisor > 1 && whole % 2 != 0)) {
    whole += value.unscaled < 0 ? -1 : 1;
  }
  return whole;
}

struct TextOf {
  std::string operator()(std::monostate) const { return {}; }
  std::string operator()(bool v) const { return v ? "1" : "0"; }
  std::string operator()(std::int64_t v) const { return std::to_string(v); }
  std::string operator()(double v) const { return realText(v, false); }
  std::string operator()(const Decimal& v) const { return decimalText(v); }
  std::string operator()(const DateTime& v) const {
    return dateText(v, "%04d-%02d-%02d %02d:%02d:%02d.%03d");
  }
  std::string operator()(const std::string& v) const { return v; }
  std::string operator()(const Bytes& v) const { return hexText(v.data); }
};

struct LiteralOf {
  std::string operator()(std::monostate) const { return "NULL"; }
  std::string operator()(bool v) const { return v ? "1" : "0"; }
  std::string operator()(std::int64_t v) const { return std::to_string(v); }
  // The exponent makes the server read a float and not a decimal. It has no literal for the rest.
  std::string operator()(double v) const { return std::isfinite(v) ? realText(v, true) : "NULL"; }
  std::string operator()(const Decimal& v) const { return decimalText(v); }
  std::string operator()(const DateTime& v) const {
    return dateText(v, "'%04d%02d%02d %02d:%02d:%02d.%03d'");
  }
  std::string operator()(const std::string& v) const { return "'" + escape(v) + "'"; }
  std::string operator()(const Bytes& v) const { return hexText(v.data); }
};

}  // namespace

std::string Value::text() const {
  return std::visit(TextOf(), v_);
}

std::string Value::trimmed() const {
  if (const auto* text = as<std::string>()) return std::string(trim(*text));
  return text();
}

std::int64_t Value::integer() const {
  if (const auto* v = as<std::int64_t>()) return *v;
  if (const auto* v = as<bool>()) return *v ? 1 : 0;
  if (const auto* v = as<double>()) return roundReal(*v);
  if (const auto* v = as<Decimal>()) return roundDecimal(*v);
  if (const auto* v = as<std::string>()) {
    if (const auto whole = parseInteger(*v)) return *whole;
    return roundReal(parseReal(*v).value_or(0));
  }
  return 0;
}

double Value::real() const {
  if (const auto* v = as<double>()) return *v;
  if (const auto* v = as<std::int64_t>()) return static_cast<double>(*v);
  if (const auto* v = as<bool>()) return *v ? 1 : 0;
  if (const auto* v = as<Decimal>()) return parseReal(decimalText(*v)).value_or(0);
  if (const auto* v = as<std::string>()) return parseReal(*v).value_or(0);
  return 0;
}

bool Value::boolean() const {
  if (const auto* v = as<bool>()) return *v;
  if (const auto* v = as<std::string>()) {
    const std::string_view word = trim(*v);
    if (word == "True" || word == "true" || word == "TRUE") return true;
  }
  return real() != 0;
}

std::string literal(const Value& value) {
  return std::visit(LiteralOf(), value.v_);
}

std::string escape(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  for (const char c : text) {
    if (c == '\'') out += c;
    out += c;
  }
  return out;
}

}  // namespace db
