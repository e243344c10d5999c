// The currency type of the rollover: fixed point with four decimals.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace rollover {

struct Para {
  std::int64_t birim = 0;  // ten-thousandths

  static Para tam(std::int64_t sayi) { return {sayi * 10'000}; }
  // Nearest ten-thousandth, a half to the even one.
  static Para sayidan(double deger);
  double sayi() const { return static_cast<double>(birim) / 10'000; }

  Para operator-() const { return {-birim}; }
  Para operator+(Para b) const { return {birim + b.birim}; }
  Para operator-(Para b) const { return {birim - b.birim}; }
  Para operator*(Para b) const;  // a half to the even ten-thousandth
  // Division of floating numbers, stored back.
  Para operator/(Para b) const { return sayidan(static_cast<double>(birim) / static_cast<double>(b.birim)); }
  auto operator<=>(const Para&) const = default;
};

// "-12.5": no needless zeros, a point before the decimals. Valid in SQL.
std::string sqlMetni(Para deger);

// Decimals of a number pattern: 2 for "#,##0.00".
int haneSayisi(std::string_view bicim);
// A number through the money format and back: the fifteen digits that it shows, rounded to `hane` decimals,
// a half away from zero.
Para paraBicimle(double deger, int hane);

// Digits of the number's text in the workstation's form, its first comma as `ayrac`; everything else, the
// sign with it, is dropped.
std::string UnVey_Frmt(Para deger, std::string_view ayrac);

}  // namespace rollover
