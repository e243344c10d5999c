#include "rollover/para.h"

#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace rollover {

namespace {

constexpr std::int64_t olcek = 10'000;
constexpr double enBuyuk = 9.2e18;

std::int64_t sigdir(double birim) {
  if (std::isnan(birim)) return 0;
  if (birim > enBuyuk) return INT64_MAX;
  if (birim < -enBuyuk) return INT64_MIN + 1;
  return static_cast<std::int64_t>(std::nearbyint(birim));
}

}  // namespace

Para Para::sayidan(double deger) {
  return {sigdir(deger * static_cast<double>(olcek))};
}

Para Para::operator*(Para b) const {
  __extension__ using Genis = __int128;
  const Genis carpim = static_cast<Genis>(birim) * b.birim;
  Genis bolum = carpim / olcek;
  const Genis kalan = carpim % olcek;
  const Genis ikiKat = (kalan < 0 ? -kalan : kalan) * 2;
  if (ikiKat > olcek || (ikiKat == olcek && bolum % 2 != 0)) bolum += carpim < 0 ? -1 : 1;
  if (bolum > INT64_MAX || bolum < INT64_MIN) return {bolum < 0 ? INT64_MIN + 1 : INT64_MAX};
  return {static_cast<std::int64_t>(bolum)};
}

std::string sqlMetni(Para deger) {
  const std::int64_t mutlak = std::llabs(deger.birim);
  std::string out = std::to_string(mutlak / olcek);
  if (const std::int64_t kesir = mutlak % olcek; kesir != 0) {
    std::array<char, 8> buffer{};
    std::snprintf(buffer.data(), buffer.size(), "%04d", static_cast<int>(kesir));
    std::string text = buffer.data();
    text.erase(text.find_last_not_of('0') + 1);
    out += "." + text;
  }
  return deger.birim < 0 ? "-" + out : out;
}

int haneSayisi(std::string_view bicim) {
  const auto nokta = bicim.find('.');
  return nokta == std::string_view::npos ? 0 : static_cast<int>(bicim.size() - nokta - 1);
}

Para paraBicimle(double deger, int hane) {
  if (!std::isfinite(deger) || deger == 0) return {};
  // d.dddddddddddddde+XX: fifteen digits and the power of ten of the first.
  std::array<char, 40> buffer{};
  std::snprintf(buffer.data(), buffer.size(), "%.14e", std::fabs(deger));
  const std::string text = buffer.data();
  const auto e = text.find('e');
  const int us = std::atoi(text.c_str() + e + 1);
  const std::string rakamlar = text.substr(0, 1) + text.substr(2, e - 2);
  const int kalan = us + 1 + hane;  // digits that stay
  constexpr int rakam = 15;
  if (kalan < 0) return {};
  if (kalan >= rakam || hane > 4) return Para::sayidan(deger);
  long double sayi = 0;
  for (int i = 0; i < kalan; ++i) sayi = sayi * 10 + (rakamlar[static_cast<std::size_t>(i)] - '0');
  if (rakamlar[static_cast<std::size_t>(kalan)] >= '5') sayi += 1;
  for (int i = hane; i < 4; ++i) sayi *= 10;
  const Para sonuc{sigdir(static_cast<double>(sayi))};
  return deger < 0 ? -sonuc : sonuc;
}

std::string UnVey_Frmt(Para deger, std::string_view ayrac) {
  std::string out;
  bool virgul = false;
  for (const char c : sqlMetni(deger)) {
    if (c >= '0' && c <= '9') {
      out += c;
    } else if (c == '.' && !virgul) {
      // The workstation writes a comma here.
      out += ayrac;
      virgul = true;
    }
  }
  return out;
}

}  // namespace rollover
