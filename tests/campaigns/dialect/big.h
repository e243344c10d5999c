// Whole numbers of any width, for judging the server's arithmetic: plain school methods on nine digits at a
// time, sharing nothing with what they judge.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace campaign {

class Big {
 public:
  Big() = default;
  Big(std::int64_t value);
  static Big digits(std::string_view text);  // [-]0..9...
  static Big tenTo(int exponent);

  bool zero() const { return limbs_.empty(); }
  bool negative() const { return negative_; }
  Big absolute() const;
  std::string text() const;
  int digitCount() const;  // of zero: 0

  Big operator-() const;
  friend Big operator+(const Big& a, const Big& b);
  friend Big operator-(const Big& a, const Big& b) { return a + -b; }
  friend Big operator*(const Big& a, const Big& b);
  friend Big operator/(const Big& a, const Big& b);  // toward zero; b is not 0
  friend Big operator%(const Big& a, const Big& b) { return a - a / b * b; }
  friend bool operator==(const Big&, const Big&) = default;
  friend bool operator<(const Big& a, const Big& b);

 private:
  void trim();
  static int compareMagnitude(const Big& a, const Big& b);

  std::vector<std::uint32_t> limbs_;  // lowest first, each below 10^9
  bool negative_ = false;
};

// a / b with halves away from zero.
Big dividedRounding(const Big& a, const Big& b);
// value * 10^(to - from), halves away from zero where digits are lost.
Big atScale(const Big& value, int from, int to);

}  // namespace campaign
