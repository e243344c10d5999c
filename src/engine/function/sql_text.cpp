// The z_ functions of text. Positions and lengths count characters.
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <memory>

#include "engine/function/sqlite_values.h"
#include "engine/value.h"

namespace engine {
namespace {

using Values = sqlite3_value**;

constexpr std::int64_t longestText = 8000;

std::string_view characters(std::string_view text, std::int64_t from, std::int64_t count) {
  const std::size_t start = characterOffset(text, from);
  text.remove_prefix(start);
  return text.substr(0, characterOffset(text, count));
}

void len(sqlite3_context* context, int, Values values) {
  std::string_view text = textOf(values[0]);
  while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
  sqlite3_result_int64(context, characterCount(text));
}

[[noreturn]] void throwLength(int number, const char* function) {
  throw Error(number, std::string("Invalid length parameter passed to the ") + function + " function.");
}

void left(sqlite3_context* context, int, Values values) {
  const std::int64_t count = sqlite3_value_int64(values[1]);
  if (count < 0) throwLength(537, "LEFT or SUBSTRING");
  setText(context, characters(textOf(values[0]), 0, count));
}

void right(sqlite3_context* context, int, Values values) {
  const std::string_view text = textOf(values[0]);
  const std::int64_t count = sqlite3_value_int64(values[1]);
  if (count < 0) throwLength(536, "right");
  setText(context, text.substr(characterOffset(text, characterCount(text) - count)));
}

void substring(sqlite3_context* context, int, Values values) {
  const std::int64_t start = sqlite3_value_int64(values[1]) - 1, count = sqlite3_value_int64(values[2]);
  if (count < 0) throw Error(537, "Invalid length parameter passed to the LEFT or SUBSTRING function.");
  const std::int64_t from = std::max<std::int64_t>(0, start);
  const std::int64_t size = std::max<std::int64_t>(0, start + count - from);
  if (sqlite3_value_type(values[0]) != SQLITE_BLOB)
    return setText(context, characters(textOf(values[0]), from, size));
  const std::string_view bytes = blobOf(values[0]);
  setBlob(context, bytes.substr(std::min<std::size_t>(from, bytes.size()), size));
}

void upper(sqlite3_context* context, int, Values values) {
  setText(context, upperText(textOf(values[0])));
}
void lower(sqlite3_context* context, int, Values values) {
  setText(context, lowerText(textOf(values[0])));
}

void reverse(sqlite3_context* context, int, Values values) {
  const std::string_view text = textOf(values[0]);
  std::string reversed(text.size(), ' ');
  std::size_t place = text.size();
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t start = at;
    nextCharacter(text, at);
    place -= at - start;
    text.copy(reversed.data() + place, at - start, start);
  }
  setText(context, reversed);
}

void replace(sqlite3_context* context, int, Values values) {
  const std::string text = replaceText(textOf(values[0]), textOf(values[1]), textOf(values[2]));
  setText(context, characters(text, 0, sqlite3_value_int64(values[3])));
}

// z_replicate(text, times, longest)
void replicate(sqlite3_context* context, int, Values values) {
  const std::string_view text = textOf(values[0]);
  const std::int64_t times = sqlite3_value_int64(values[1]), longest = sqlite3_value_int64(values[2]);
  if (times < 0) return;
  std::string repeated;
  for (std::int64_t i = 0; i < std::min(times, longest) && !text.empty(); ++i) repeated += text;
  setText(context, characters(repeated, 0, longest));
}

void stuff(sqlite3_context* context, int, Values values) {
  const std::string_view text = textOf(values[0]);
  const std::int64_t start = sqlite3_value_int64(values[1]), count = sqlite3_value_int64(values[2]);
  if (start <= 0 || count < 0 || start > characterCount(text)) return;
  std::string stuffed(characters(text, 0, start - 1));
  stuffed += textOf(values[3]);
  stuffed += text.substr(characterOffset(text, start - 1 + count));
  setText(context, characters(stuffed, 0, longestText));
}

// printf rounds a value halfway between two results to the even one, STR away from zero.
double awayFromHalf(double value, std::int64_t decimals) {
  const double factor = std::pow(10.0, static_cast<double>(decimals));
  const double scaled = value * factor;
  const bool exact = std::fma(value, factor, -scaled) == 0;
  if (!exact || std::fabs(scaled - std::trunc(scaled)) != 0.5) return value;
  return std::nextafter(value, std::copysign(HUGE_VAL, value));
}

// Right-aligned; fewer decimals when there is no room for them, asterisks when there is none for the rest.
void str(sqlite3_context* context, int, Values values) {
  constexpr std::int64_t mostDecimals = 16;
  const double value = sqlite3_value_double(values[0]);
  const std::int64_t width = sqlite3_value_int64(values[1]);
  std::int64_t decimals = std::clamp<std::int64_t>(sqlite3_value_int64(values[2]), 0, mostDecimals);
  if (width <= 0 || width > longestText) return;
  std::array<char, 400> buffer;
  const auto print = [&](std::int64_t places) {
    return std::snprintf(buffer.data(), buffer.size(), "%.*f", static_cast<int>(places),
                         awayFromHalf(value, places));
  };
  const std::int64_t whole = print(0);
  decimals = std::max<std::int64_t>(0, std::min(decimals, width - whole - 1));
  if (whole > width) return setText(context, std::string(static_cast<std::size_t>(width), '*'));
  const int size = print(decimals);
  std::string text(static_cast<std::size_t>(std::max<std::int64_t>(0, width - size)), ' ');
  setText(context, text.append(buffer.data(), static_cast<std::size_t>(size)));
}

void setCharacter(sqlite3_context* context, char32_t character) {
  std::string text;
  if (character != ' ') appendCharacter(text, character);  // CHAR(1) is kept without its blanks
  setText(context, text);
}

void character(sqlite3_context* context, int, Values values) {
  const std::int64_t code = sqlite3_value_int64(values[0]);
  if (code >= 0 && code <= 255) setCharacter(context, fromCp1254(static_cast<unsigned char>(code)));
}

void unicodeCharacter(sqlite3_context* context, int, Values values) {
  const std::int64_t code = sqlite3_value_int64(values[0]);
  if (code >= 0 && code <= 0xFFFF) setCharacter(context, static_cast<char32_t>(code));
}

void ascii(sqlite3_context* context, int, Values values) {
  const std::string_view text = textOf(values[0]);
  std::size_t at = 0;
  if (!text.empty()) sqlite3_result_int(context, std::max(0, toCp1254(nextCharacter(text, at))));
}

void unicode(sqlite3_context* context, int, Values values) {
  const std::string_view text = textOf(values[0]);
  std::size_t at = 0;
  if (!text.empty()) sqlite3_result_int64(context, nextCharacter(text, at));
}

void charIndex(sqlite3_context* context, int, Values values) {
  sqlite3_result_int64(context,
                       findText(textOf(values[0]), textOf(values[1]), sqlite3_value_int64(values[2])));
}

void patIndex(sqlite3_context* context, int, Values values) {
  const bool exact = sqlite3_value_int(values[2]) != 0;
  const auto* known = static_cast<LikePattern*>(sqlite3_get_auxdata(context, 0));
  if (known) return sqlite3_result_int64(context, known->find(textOf(values[1]), exact));
  auto pattern = std::make_unique<LikePattern>(textOf(values[0]));
  sqlite3_result_int64(context, pattern->find(textOf(values[1]), exact));
  sqlite3_set_auxdata(context, 0, pattern.release(), [](void* p) { delete static_cast<LikePattern*>(p); });
}

void quoteName(sqlite3_context* context, int, Values values) {
  constexpr std::int64_t longestName = 128;
  constexpr std::array<std::string_view, 5> pairs = {"[]", "\"\"", "''", "()", "{}"};
  const std::string_view text = textOf(values[0]), mark = textOf(values[1]);
  if (characterCount(text) > longestName || mark.empty()) return;
  for (const std::string_view pair : pairs) {
    if (pair.find(mark[0]) == pair.npos) continue;
    std::string quoted(1, pair[0]);
    for (const char c : text) quoted.append(c == pair[1] ? 2 : 1, c);
    return setText(context, quoted + pair[1]);
  }
}

constexpr std::array functions = {
    SqlFunction{"z_len", 1, strict<len>},
    SqlFunction{"z_left", 2, strict<left>},
    SqlFunction{"z_right", 2, strict<right>},
    SqlFunction{"z_substr", 3, strict<substring>},
    SqlFunction{"z_upper", 1, strict<upper>},
    SqlFunction{"z_lower", 1, strict<lower>},
    SqlFunction{"z_reverse", 1, strict<reverse>},
    SqlFunction{"z_replace", 4, strict<replace>},
    SqlFunction{"z_replicate", 3, strict<replicate>},
    SqlFunction{"z_stuff", 4, strict<stuff>},
    SqlFunction{"z_str", 3, strict<str>},
    SqlFunction{"z_char", 1, strict<character>},
    SqlFunction{"z_nchar", 1, strict<unicodeCharacter>},
    SqlFunction{"z_ascii", 1, strict<ascii>},
    SqlFunction{"z_unicode", 1, strict<unicode>},
    SqlFunction{"z_charindex", 3, strict<charIndex>},
    SqlFunction{"z_patindex", 3, strict<patIndex>},
    SqlFunction{"z_quotename", 2, strict<quoteName>},
};

}  // namespace

std::span<const SqlFunction> textSqlFunctions() {
  return functions;
}

}  // namespace engine
