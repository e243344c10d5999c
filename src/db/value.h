// One value as it comes from or goes to a server, whatever the driver.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <variant>

namespace db {

// Exact decimal number: unscaled / 10^scale. Money has scale 4.
struct Decimal {
  std::int64_t unscaled = 0;
  int scale = 0;
  friend bool operator==(const Decimal&, const Decimal&) = default;
};

// Calendar date and time of day without zone; milliseconds as the server rounds them (0, 3, 7).
struct DateTime {
  int year = 1900, month = 1, day = 1, hour = 0, minute = 0, second = 0, millisecond = 0;
  // The check sees the zero that the compiler compares with.
  friend auto operator<=>(const DateTime&, const DateTime&) = default;  // NOLINT(modernize-use-nullptr)
};

struct Bytes {
  std::string data;
  friend bool operator==(const Bytes&, const Bytes&) = default;
};

class Value {
 public:
  Value() = default;  // NULL
  Value(bool v) : v_(v) {}
  Value(int v) : v_(static_cast<std::int64_t>(v)) {}
  Value(std::int64_t v) : v_(v) {}
  Value(double v) : v_(v) {}
  Value(Decimal v) : v_(v) {}
  Value(DateTime v) : v_(v) {}
  Value(std::string v) : v_(std::move(v)) {}
  Value(std::string_view v) : v_(std::string(v)) {}
  Value(const char* v) : v_(std::string(v)) {}
  Value(Bytes v) : v_(std::move(v)) {}

  bool isNull() const { return v_.index() == 0; }
  template <class T>
  const T* as() const {
    return std::get_if<T>(&v_);
  }

  // Conversions that never fail: NULL gives "", 0, false; text is read as a number where it is one, else 0.
  // Fractions are rounded to the nearest integer, halves to the even one.
  std::string text() const;     // dates as YYYY-MM-DD HH:MM:SS.mmm, decimals with their scale, bits 1 and 0
  std::string trimmed() const;  // text() without blanks at both ends
  std::int64_t integer() const;
  double real() const;
  bool boolean() const;

  friend bool operator==(const Value&, const Value&) = default;
  friend std::string literal(const Value& value);

 private:
  std::variant<std::monostate, bool, std::int64_t, double, Decimal, DateTime, std::string, Bytes> v_;
};

// The one place where a value becomes SQL text. Text: 'a''b' with apostrophes doubled; numbers as they
// are; dates as '20120131 13:45:00.000'; bits 1 and 0; NULL as NULL.
std::string literal(const Value& value);
// The inside of a text literal: doubles apostrophes, adds no quotes. For statements whose text has its
// own quotes around the value.
std::string escape(std::string_view text);

}  // namespace db
