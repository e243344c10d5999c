#include "session/metin.h"

#include <unicode/uchar.h>

#include <algorithm>
#include <array>

#include "platform/code_page.h"

namespace session {

namespace {

char32_t upper(char32_t c) {
  if (c == U'i') return U'İ';
  if (c == U'ı') return U'I';
  return static_cast<char32_t>(u_toupper(static_cast<UChar32>(c)));
}

// Applies `code(c, i)` to every byte of the text in code page 1254; i counts from 1.
template <class Code>
std::optional<std::string> recode(std::string_view text, Code code) {
  const auto bytes = platform::encode1254Exactly(text);
  if (!bytes) return std::nullopt;
  std::string out;
  for (std::size_t i = 0; i < bytes->size(); ++i) {
    const int c = code(static_cast<unsigned char>((*bytes)[i]), static_cast<int>(i) + 1);
    if (c < 0 || c > 255) return std::nullopt;
    out += static_cast<char>(c);
  }
  return platform::decode1254(out);
}

constexpr std::array<std::u32string_view, 3> codeSequences = {
    U"ABCÇDEFGĞHIİJKLMNOÖPQRSŞTUÜVWXYZ", U"abcçdefgğhıijklmnoöpqrsştuüvwxyz", U"0123456789"};

}  // namespace

std::string Buyuk_Harf(std::string_view text) {
  std::u32string letters = platform::toUtf32(text);
  std::transform(letters.begin(), letters.end(), letters.begin(), upper);
  return platform::toUtf8(letters);
}

std::string Buyuk_Harf_Arama(std::string_view text) {
  return Buyuk_Harf(text);
}

std::optional<std::string> Sifrele(std::string_view text) {
  return recode(text, [](int c, int i) { return c * 2 + i; });
}

std::optional<std::string> Sifre_Coz(std::string_view text) {
  return recode(text, [](int c, int i) { return c < i ? -1 : (c - i) / 2; });
}

std::string Trim(std::string_view text) {
  const auto first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return std::string(text.substr(first, text.find_last_not_of(' ') - first + 1));
}

bool denetimKarakteriVar(std::string_view text) {
  return std::any_of(text.begin(), text.end(),
                     [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; });
}

std::string Ay_Adi(int n) {
  // "HAZIRAN" and "EYLUL" without their dotted letters: the suite's programs compare with these texts.
  static constexpr std::array<std::string_view, 12> names = {"OCAK",  "ŞUBAT",   "MART",   "NİSAN",
                                                             "MAYIS", "HAZIRAN", "TEMMUZ", "AĞUSTOS",
                                                             "EYLUL", "EKİM",    "KASIM",  "ARALIK"};
  if (n < 1 || n > 12) return {};
  return std::string(names[static_cast<std::size_t>(n - 1)]);
}

std::string Kod_Artir(std::string_view code) {
  std::u32string letters = platform::toUtf32(code);
  for (auto at = letters.rbegin(); at != letters.rend(); ++at) {
    for (const auto sequence : codeSequences) {
      const auto position = sequence.find(*at);
      if (position == std::u32string_view::npos) continue;
      const bool carries = position + 1 == sequence.size();
      *at = sequence[carries ? 0 : position + 1];
      if (!carries) return platform::toUtf8(letters);
    }
  }
  return platform::toUtf8(letters);
}

std::string Liste_Metni(std::string_view entry, int index) {
  for (int column = 0;; ++column) {
    const auto bar = entry.find('|');
    const auto text = entry.substr(0, bar);
    if (column == index) return std::string(text.substr(0, text.find('\t')));
    if (bar == std::string_view::npos) return {};
    entry.remove_prefix(bar + 1);
  }
}

}  // namespace session
