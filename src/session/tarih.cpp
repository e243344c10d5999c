#include "session/tarih.h"

#include <algorithm>
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

namespace {

constexpr std::array<std::size_t, 3> maskWidths = {2, 2, 4};

bool isSeparator(char c) {
  return c == '/' || c == '.' || c == '-' || c == ' ';
}

// The field's text as its parts, with the caret told as part and place in it.
struct Masked {
  std::array<std::string, 3> parts;
  std::size_t count = 1;  // parts that were begun
  std::size_t caretPart = 0, caretPlace = 0;

  // The separator that ends the current part; a second one in a row ends nothing.
  void separate() {
    if (parts[count - 1].empty() || count == parts.size()) return;
    if (parts[count - 1].size() == 1) parts[count - 1].insert(0, 1, '0');
    ++count;
  }
};

// YYYY-MM-DD, as other programs copy it, in this field's order; anything else as it stands.
std::string dayFirst(std::string_view text) {
  const bool iso = text.size() == 10 && isSeparator(text[4]) && isSeparator(text[7]) &&
                   std::ranges::all_of(text.substr(0, 4), isDigit) &&
                   std::ranges::all_of(text.substr(5, 2), isDigit) &&
                   std::ranges::all_of(text.substr(8, 2), isDigit);
  if (!iso) return std::string(text);
  return std::string(text.substr(8, 2)) + "/" + std::string(text.substr(5, 2)) + "/" +
         std::string(text.substr(0, 4));
}

}  // namespace

MaskeSonucu tarihMaskesi(std::string_view text, int imlec, bool silme) {
  const std::string day = dayFirst(text);
  const bool turned = day != text;
  Masked masked;
  int position = 0;
  const auto last = std::find_if(day.rbegin(), day.rend(), isSeparator);
  const auto behindLast = static_cast<std::size_t>(day.rend() - last);
  for (std::size_t i = 0; i < day.size(); ++i) {
    const char c = day[i];
    const bool continues = (static_cast<unsigned char>(c) & 0xC0) == 0x80;
    if (!continues) ++position;
    const bool left = turned || position <= imlec;
    if (isSeparator(c)) {
      // A part that is being emptied keeps its place.
      if (silme && masked.parts[masked.count - 1].size() < 2 && masked.count < 3)
        ++masked.count;
      else
        masked.separate();
      if (left) masked.caretPart = masked.count - 1, masked.caretPlace = 0;
    } else if (isDigit(c)) {
      std::string* part = &masked.parts[masked.count - 1];
      // Digits typed on go into the next part, but never out of one that was ended.
      if (part->size() == maskWidths[masked.count - 1] && i >= behindLast && masked.count < 3) {
        ++masked.count;
        part = &masked.parts[masked.count - 1];
      }
      if (part->size() < maskWidths[masked.count - 1]) *part += c;
      if (left) masked.caretPart = masked.count - 1, masked.caretPlace = part->size();
    }
  }
  const std::size_t at = masked.count - 1;
  if (!silme && at < 2 && masked.parts[at].size() == 2) {
    if (masked.caretPart == at && masked.caretPlace == 2) masked.caretPart = at + 1, masked.caretPlace = 0;
    ++masked.count;
  }
  // Deleting would never get past a separator that comes back at once.
  while (silme && masked.count > 1 && masked.parts[masked.count - 1].empty()) --masked.count;

  MaskeSonucu result;
  for (std::size_t i = 0; i < masked.count; ++i) {
    if (i > 0) result.metin += '/';
    if (i == masked.caretPart) result.imlec = static_cast<int>(result.metin.size() + masked.caretPlace);
    result.metin += masked.parts[i];
  }
  result.imlec = std::min(result.imlec, static_cast<int>(result.metin.size()));
  if (masked.caretPart >= masked.count) result.imlec = static_cast<int>(result.metin.size());
  return result;
}

std::string tarihTamamla(std::string_view text) {
  std::string result;
  std::string part;
  const auto end = [&] {
    if (part.size() == 1) result += '0';
    result += part;
    part.clear();
  };
  for (const char c : dayFirst(text)) {
    if (isDigit(c)) {
      part += c;
    } else {
      end();
      result += c;
    }
  }
  end();
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
