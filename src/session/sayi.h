// Numbers as texts, in the form that the workstation's regional settings force: comma before the
// decimals, point between thousands.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "session/oturum.h"

namespace session {

enum class SayiTuru : std::uint8_t { Tutar, BirimFiyat, DovizTutar, DovizBirimFiyat, Kur };

// True for a text that reads as a number: blanks around, a sign, digits, thousands points, one comma.
bool sayiMi(std::string_view text);

// A numeric text by the session's pattern of `tur`; any other text cleaned to what can still become a
// number: digits, a leading "-", the first decimal separator ("0" put before a leading one).
std::string Sayi_Bicimle(const Oturum& oturum, std::string_view value, SayiTuru tur);
// `value` by a pattern of the form "#,##0" or "#,##0.00".
std::string sayiyiYaz(double value, std::string_view pattern);

// Removes every "-", then leaves only the digits in the characters from..to (from 1) of the text.
std::string Rakam_Temizle(std::string_view text, int from, int to);

// The bar that Yuzde_Goster moves and the label that it writes.
struct YuzdeCubugu {
  float value = 0;
  float maximum = 100;
  std::string label;
};
// Adds `step` in single precision; running past the maximum changes nothing. Writes the label ("37%") and
// calls `pump` when it shows a whole percentage.
void Yuzde_Goster(YuzdeCubugu& cubuk, float step, const std::function<void()>& pump);

}  // namespace session
