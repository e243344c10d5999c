// Code page 1254 and UTF-8.
#include <unicode/unorm2.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <array>
#include <utility>

#include "engine/value/convert.h"

namespace engine {
namespace {

constexpr char32_t broken = 0xFFFD;
// 0x80 .. 0x9F; from 0xA0 on the page is Latin-1 but for the six Turkish letters. Bytes that the page leaves
// open stand for the control characters of the same number: texts that hold arbitrary bytes survive.
constexpr std::array<char32_t, 32> lowHalf = {0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                              0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x008E, 0x008F,
                                              0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                              0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x009E, 0x0178};
constexpr std::array<std::pair<unsigned char, char32_t>, 6> turkish = {
    {{0xD0, 0x011E}, {0xDD, 0x0130}, {0xDE, 0x015E}, {0xF0, 0x011F}, {0xFD, 0x0131}, {0xFE, 0x015F}}};

constexpr std::array<char32_t, 256> makePage() {
  std::array<char32_t, 256> page{};
  for (int i = 0; i < 256; ++i) page[i] = i;
  for (int i = 0; i < 32; ++i) page[0x80 + i] = lowHalf[i];
  for (const auto& [byte, character] : turkish) page[byte] = character;
  return page;
}
constexpr std::array<char32_t, 256> page = makePage();

using Entry = std::pair<char32_t, unsigned char>;
std::array<Entry, 128> makeReverse() {
  std::array<Entry, 128> reverse;
  for (int i = 0; i < 128; ++i) reverse[i] = {page[0x80 + i], static_cast<unsigned char>(0x80 + i)};
  std::sort(reverse.begin(), reverse.end());
  return reverse;
}

// Characters that look alike but do not decompose to what the page holds.
constexpr std::array<std::pair<char32_t, char>, 12> lookAlikes = {{{0x2010, '-'},
                                                                   {0x2011, '-'},
                                                                   {0x2012, '-'},
                                                                   {0x2015, '-'},
                                                                   {0x2212, '-'},
                                                                   {0x2032, '\''},
                                                                   {0x2033, '"'},
                                                                   {0x2044, '/'},
                                                                   {0x2215, '/'},
                                                                   {0x2217, '*'},
                                                                   {0x0142, 'l'},
                                                                   {0x0141, 'L'}}};

char32_t bestFit(char32_t character) {
  for (const auto& [from, to] : lookAlikes)
    if (from == character) return static_cast<unsigned char>(to);
  UErrorCode status = U_ZERO_ERROR;
  const UNormalizer2* normalizer = unorm2_getNFKDInstance(&status);
  std::array<UChar, 32> parts;
  const int length = U_FAILURE(status) ? -1
                                       : unorm2_getDecomposition(normalizer, static_cast<UChar32>(character),
                                                                 parts.data(), parts.size(), &status);
  if (length <= 0 || U_FAILURE(status) || parts[0] == character) return '?';
  return toCp1254(parts[0]) >= 0 ? parts[0] : U'?';
}

}  // namespace

bool isAscii(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<signed char>(c) >= 0; });
}

std::int64_t characterCount(std::string_view utf8) {
  return std::count_if(utf8.begin(), utf8.end(), [](char c) { return (c & 0xC0) != 0x80; });
}

std::size_t characterOffset(std::string_view utf8, std::int64_t index) {
  if (index <= 0) return 0;
  for (std::size_t i = 0; i < utf8.size(); ++i)
    if ((utf8[i] & 0xC0) != 0x80 && index-- == 0) return i;
  return utf8.size();
}

char32_t nextCharacter(std::string_view utf8, std::size_t& position) {
  const auto byte = static_cast<unsigned char>(utf8[position]);
  if (byte < 0x80) {
    ++position;
    return byte;
  }
  const char* text = utf8.data();
  auto at = static_cast<std::int64_t>(position);
  const auto length = static_cast<std::int64_t>(utf8.size());
  UChar32 character;
  U8_NEXT(text, at, length, character);
  position = static_cast<std::size_t>(at);
  return character < 0 ? broken : static_cast<char32_t>(character);
}

void appendCharacter(std::string& utf8, char32_t character) {
  if (character < 0x80) {
    utf8 += static_cast<char>(character);
    return;
  }
  if (character > 0x10FFFF || (character >= 0xD800 && character <= 0xDFFF)) character = broken;
  std::array<char, 4> bytes;
  int length = 0;
  U8_APPEND_UNSAFE(bytes.data(), length, character);
  utf8.append(bytes.data(), length);
}

char32_t fromCp1254(unsigned char byte) {
  return page[byte];
}

int toCp1254(char32_t character) {
  if (character < 0x80) return static_cast<int>(character);
  if (character == broken) return -1;
  static const std::array<Entry, 128> reverse = makeReverse();
  const auto found = std::lower_bound(reverse.begin(), reverse.end(), Entry{character, 0});
  return found != reverse.end() && found->first == character ? found->second : -1;
}

std::string fitCp1254(std::string_view utf8) {
  if (isAscii(utf8)) return std::string(utf8);
  std::string fitted;
  fitted.reserve(utf8.size());
  for (std::size_t i = 0; i < utf8.size();) {
    const char32_t character = nextCharacter(utf8, i);
    appendCharacter(fitted, toCp1254(character) >= 0 ? character : bestFit(character));
  }
  return fitted;
}

}  // namespace engine
