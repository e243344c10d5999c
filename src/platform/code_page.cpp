#include "platform/code_page.h"

#include <algorithm>
#include <array>

namespace platform {

namespace {

// Bytes 0x80 to 0x9F; the rest equals Latin-1 but for the six Turkish letters below.
constexpr std::array<char32_t, 32> upperControl = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x008E, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x009E, 0x0178};

struct Letter {
  std::uint8_t byte;
  char32_t character;
};
constexpr std::array<Letter, 6> turkish = {
    {{0xD0, U'Ğ'}, {0xDD, U'İ'}, {0xDE, U'Ş'}, {0xF0, U'ğ'}, {0xFD, U'ı'}, {0xFE, U'ş'}}};

constexpr char32_t broken = 0xFFFD;

// Reads one character at `at` and moves behind it.
char32_t decodeOne(std::string_view text, std::size_t& at) {
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  const unsigned char lead = byte(at++);
  if (lead < 0x80) return lead;
  const int more = lead >= 0xF0 && lead < 0xF5 ? 3 : lead >= 0xE0 ? 2 : lead >= 0xC2 ? 1 : 0;
  if (more == 0 || lead >= 0xF5) return broken;
  char32_t value = lead & (0x3F >> more);
  std::size_t next = at;
  for (int i = 0; i < more; ++i, ++next) {
    if (next >= text.size() || (byte(next) & 0xC0) != 0x80) return broken;
    value = (value << 6) | (byte(next) & 0x3F);
  }
  constexpr std::array<char32_t, 4> least = {0, 0x80, 0x800, 0x10000};
  if (value < least[static_cast<std::size_t>(more)] || value > 0x10FFFF ||
      (value >= 0xD800 && value < 0xE000))
    return broken;
  at = next;
  return value;
}

void append(std::string& out, char32_t c) {
  const auto put = [&](char32_t byte) { out += static_cast<char>(byte); };
  if (c < 0x80) {
    put(c);
  } else if (c < 0x800) {
    put(0xC0 | (c >> 6));
    put(0x80 | (c & 0x3F));
  } else if (c < 0x10000) {
    put(0xE0 | (c >> 12));
    put(0x80 | ((c >> 6) & 0x3F));
    put(0x80 | (c & 0x3F));
  } else {
    put(0xF0 | (c >> 18));
    put(0x80 | ((c >> 12) & 0x3F));
    put(0x80 | ((c >> 6) & 0x3F));
    put(0x80 | (c & 0x3F));
  }
}

}  // namespace

std::optional<std::uint8_t> byteOf(char32_t character) {
  if (character < 0x80) return static_cast<std::uint8_t>(character);
  const auto* letter =
      std::find_if(turkish.begin(), turkish.end(), [&](const Letter& l) { return l.character == character; });
  if (letter != turkish.end()) return letter->byte;
  const auto* control = std::find(upperControl.begin(), upperControl.end(), character);
  if (control != upperControl.end())
    return static_cast<std::uint8_t>(0x80 + (control - upperControl.begin()));
  if (character < 0xA0 || character > 0xFF) return std::nullopt;
  const auto byte = static_cast<std::uint8_t>(character);
  const bool taken =
      std::any_of(turkish.begin(), turkish.end(), [&](const Letter& l) { return l.byte == byte; });
  return taken ? std::nullopt : std::optional(byte);
}

char32_t characterOf(std::uint8_t byte) {
  if (byte >= 0x80 && byte < 0xA0) return upperControl[byte - 0x80U];
  const auto* letter =
      std::find_if(turkish.begin(), turkish.end(), [&](const Letter& l) { return l.byte == byte; });
  return letter != turkish.end() ? letter->character : char32_t{byte};
}

std::string encode1254(std::string_view utf8) {
  std::string bytes;
  for (std::size_t at = 0; at < utf8.size();)
    bytes += static_cast<char>(byteOf(decodeOne(utf8, at)).value_or('?'));
  return bytes;
}

std::optional<std::string> encode1254Exactly(std::string_view utf8) {
  std::string bytes;
  for (std::size_t at = 0; at < utf8.size();) {
    const auto byte = byteOf(decodeOne(utf8, at));
    if (!byte) return std::nullopt;
    bytes += static_cast<char>(*byte);
  }
  return bytes;
}

std::string decode1254(std::string_view bytes) {
  std::string text;
  for (const char byte : bytes) append(text, characterOf(static_cast<std::uint8_t>(byte)));
  return text;
}

bool isUtf8(std::string_view text) {
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t start = at;
    // U+FFFD written out in full is a character like any other; a broken sequence is one byte long.
    if (decodeOne(text, at) == broken && at - start == 1) return false;
  }
  return true;
}

std::u32string toUtf32(std::string_view utf8) {
  std::u32string text;
  for (std::size_t at = 0; at < utf8.size();) text += decodeOne(utf8, at);
  return text;
}

std::string toUtf8(std::u32string_view text) {
  std::string utf8;
  for (const char32_t c : text) append(utf8, c);
  return utf8;
}

}  // namespace platform
