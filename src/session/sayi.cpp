#include "session/sayi.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "platform/code_page.h"
#include "session/metin.h"

namespace session {

namespace {

constexpr std::string_view plainPattern = "#,##0";

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

char separatorOf(const Oturum& oturum) {
  return oturum.Ondalik_Ayrac.empty() ? ',' : oturum.Ondalik_Ayrac.front();
}

const std::string& patternOf(const Oturum& oturum, SayiTuru tur) {
  const std::array<const std::string*, 5> patterns = {&oturum.AnaPara_Format, &oturum.BirimFiyat_Format,
                                                      &oturum.Doviz_Format, &oturum.DovizBirimFiyat_Format,
                                                      &oturum.Kur_Format};
  return *patterns[static_cast<std::size_t>(tur)];
}

double numberOf(std::string_view text) {
  std::string plain;
  for (const char c : text) {
    if (c == ',')
      plain += '.';
    else if (c != '.')
      plain += c;
  }
  return std::strtod(plain.c_str(), nullptr);
}

std::string cleaned(std::string_view text, char separator) {
  std::string out;
  bool separated = false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    if (isDigit(c) || (c == '-' && i == 0)) out += c;
    if (c == separator && !separated) {
      out += c;
      separated = true;
    }
  }
  return out;
}

}  // namespace

bool sayiMi(std::string_view text) {
  std::string trimmed = Trim(text);
  std::string_view rest = trimmed;
  if (!rest.empty() && (rest.front() == '-' || rest.front() == '+')) rest.remove_prefix(1);
  bool digits = false;
  bool comma = false;
  for (const char c : rest) {
    if (isDigit(c))
      digits = true;
    else if (c == ',' && !comma)
      comma = true;
    else if (c != '.' || comma || !digits)
      return false;
  }
  return digits;
}

std::string sayiyiYaz(double value, std::string_view pattern) {
  if (pattern.empty()) pattern = plainPattern;
  const auto point = pattern.find('.');
  const int decimals = point == std::string_view::npos ? 0 : static_cast<int>(pattern.size() - point - 1);
  // Half a unit away from zero, as the runtime's formatting does; printf alone would round half to even.
  const double scale = std::pow(10.0, decimals);
  const double rounded = std::round(value * scale * (1 + 1e-15)) / scale;
  std::array<char, 400> buffer{};
  std::snprintf(buffer.data(), buffer.size(), "%.*f", decimals, std::fabs(rounded));
  std::string digits = buffer.data();
  std::replace(digits.begin(), digits.end(), '.', ',');
  const auto whole = static_cast<std::ptrdiff_t>(std::min(digits.find(','), digits.size()));
  for (std::ptrdiff_t at = whole - 3; at > 0; at -= 3) digits.insert(static_cast<std::size_t>(at), 1, '.');
  return rounded < 0 ? "-" + digits : digits;
}

std::string Sayi_Bicimle(const Oturum& oturum, std::string_view value, SayiTuru tur) {
  std::string text = Trim(value);
  if (sayiMi(text)) return sayiyiYaz(numberOf(text), patternOf(oturum, tur));
  const char separator = separatorOf(oturum);
  if (!text.empty() && text.front() == separator) text.insert(text.begin(), '0');
  return cleaned(text, separator);
}

std::string Rakam_Temizle(std::string_view text, int from, int to) {
  std::u32string letters = platform::toUtf32(text);
  std::u32string out;
  int position = 0;
  for (const char32_t c : letters) {
    if (c == U'-') continue;
    ++position;
    const bool inside = position >= from && position <= to;
    if (!inside || (c >= U'0' && c <= U'9')) out += c;
  }
  return platform::toUtf8(out);
}

void Yuzde_Goster(YuzdeCubugu& cubuk, float step, const std::function<void()>& pump) {
  const float next = cubuk.value + step;
  if (next <= cubuk.maximum) cubuk.value = next;
  const double percent = static_cast<double>(cubuk.value / cubuk.maximum * 100.0F);
  const long whole = std::lround(percent);
  // The pattern "#" writes no digit for nought.
  cubuk.label = (whole == 0 ? std::string() : std::to_string(whole)) + "%";
  if (cubuk.label.find(',') == std::string::npos && pump) pump();
}

}  // namespace session
