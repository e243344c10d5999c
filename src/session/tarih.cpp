#include "session/tarih.h"

#include <array>
#include <chrono>
#include <cstdio>
#include <span>

namespace session {

namespace {

namespace chr = std::chrono;

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

std::string digitsOf(std::string_view text) {
  std::string digits;
  for (const char c : text)
    if (isDigit(c)) digits += c;
  return digits;
}

// One two-digit part of a field with its limit and what is said past it; limit 0: the rest, unchecked.
struct Part {
  int limit;
  std::string_view message;
};

constexpr std::array<Part, 3> dateParts = {
    {{31, "Gün alanını yanlış girdiniz."}, {12, "Ay alanını yanlış girdiniz."}, {0, ""}}};
constexpr std::array<Part, 3> timeParts = {{{23, "Saat Alanını Yanlış Girdiniz."},
                                            {59, "Dakika Alanını Yanlış Girdiniz."},
                                            {59, "Saniye Alanını Yanlış Girdiniz."}}};

AlanSonucu rebuild(std::string_view text, std::span<const Part, 3> parts, char separator, bool onlyBetween) {
  const std::string digits = digitsOf(text);
  if (digits.empty()) return {};
  AlanSonucu result;
  for (std::size_t i = 0; i < parts.size(); ++i) {
    const bool last = i + 1 == parts.size();
    const std::string piece = digits.size() > i * 2
                                  ? digits.substr(i * 2, last && parts[i].limit == 0 ? std::string::npos : 2)
                                  : "";
    if (!piece.empty() && parts[i].limit != 0 && std::stoi(piece) > parts[i].limit)
      return {"", std::string(parts[i].message)};
    if (i > 0 && (!piece.empty() || !onlyBetween)) result.metin += separator;
    result.metin += piece;
  }
  return result;
}

std::string shown(Boxes& kutular, const AlanSonucu& sonuc) {
  if (!sonuc.hata.empty()) kutular.message(sonuc.hata);
  return sonuc.metin;
}

chr::sys_days daysOf(const db::DateTime& d) {
  return chr::year{d.year} / chr::month{static_cast<unsigned>(d.month)} /
         chr::day{static_cast<unsigned>(d.day)};
}

db::DateTime dateOf(chr::sys_days days) {
  const chr::year_month_day ymd{days};
  db::DateTime date;
  date.year = static_cast<int>(ymd.year());
  date.month = static_cast<int>(static_cast<unsigned>(ymd.month()));
  date.day = static_cast<int>(static_cast<unsigned>(ymd.day()));
  return date;
}

}  // namespace

AlanSonucu tarihAlani(std::string_view text, bool uzun) {
  return rebuild(text, dateParts, '/', uzun);
}
AlanSonucu saatAlani(std::string_view text) {
  return rebuild(text, timeParts, ':', true);
}

std::string Tarih_Alan_Dogrula(Boxes& kutular, std::string_view text, bool uzun) {
  return shown(kutular, tarihAlani(text, uzun));
}
std::string Saat_Alan_Dogrula(Boxes& kutular, std::string_view text) {
  return shown(kutular, saatAlani(text));
}

MaskeSonucu tarihMaskesi(std::string_view text, int imlec, bool silme) {
  int before = 0;  // digits left of the caret
  int position = 0;
  std::string digits;
  for (const char c : text) {
    const bool continues = (static_cast<unsigned char>(c) & 0xC0) == 0x80;
    if (!continues) ++position;
    if (!isDigit(c) || digits.size() == 8) continue;
    digits += c;
    if (position <= imlec) ++before;
  }
  MaskeSonucu result;
  for (std::size_t i = 0; i < digits.size(); ++i) {
    result.metin += digits[i];
    // Deleting would never get past a separator that comes back at once.
    const bool more = i + 1 < digits.size();
    if ((i == 1 || i == 3) && (more || !silme)) result.metin += '/';
  }
  result.imlec = before + (before > 2 ? 1 : 0) + (before > 4 ? 1 : 0);
  const bool atSeparator = before == 2 || before == 4;
  if (atSeparator && !silme) ++result.imlec;
  return result;
}

bool tarihOku(std::string_view text, db::DateTime& tarih) {
  if (text.size() != 10) return false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool separator = i == 2 || i == 5;
    if (separator ? (text[i] != '/' && text[i] != '.' && text[i] != '-') : !isDigit(text[i])) return false;
  }
  const auto number = [&](std::size_t from, std::size_t count) {
    return std::stoi(std::string(text.substr(from, count)));
  };
  const chr::year_month_day ymd{chr::year{number(6, 4)}, chr::month{static_cast<unsigned>(number(3, 2))},
                                chr::day{static_cast<unsigned>(number(0, 2))}};
  if (!ymd.ok()) return false;
  tarih = dateOf(ymd);
  return true;
}

bool tarihMi(std::string_view text) {
  db::DateTime ignored;
  return tarihOku(text, ignored);
}

std::string tarihYaz(const db::DateTime& tarih) {
  std::array<char, 40> buffer{};
  std::snprintf(buffer.data(), buffer.size(), "%02d/%02d/%04d", tarih.day, tarih.month, tarih.year);
  return buffer.data();
}

HaftaBasi Hafta_Basi(const db::DateTime& tarih) {
  const chr::sys_days day = daysOf(tarih);
  const int fromMonday = static_cast<int>(chr::weekday{day}.iso_encoding()) - 1;
  HaftaBasi result{dateOf(day - chr::days{fromMonday}), 0};
  while (result.tarih.year < tarih.year) {
    result.tarih = dateOf(daysOf(result.tarih) + chr::weeks{1});
    ++result.adim;
  }
  return result;
}

}  // namespace session
