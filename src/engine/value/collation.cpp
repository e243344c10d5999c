#include "engine/value/collation.h"

#include <unicode/uchar.h>
#include <unicode/ucol.h>
#include <unicode/ucoleitr.h>

#include <algorithm>
#include <array>
#include <vector>

#include "engine/value/convert.h"
#include "engine/value/error.h"
#include "engine/value/like.h"

namespace engine {
namespace {

constexpr char32_t tableSize = 0x180;  // Basic Latin, Latin-1, Latin Extended-A

// Ranks of a character in the order of the collation. Only characters that stand for exactly one
// letter have them; the others (ligatures, ignorable ones) have primary 0 and go through ICU.
struct Rank {
  std::uint16_t primary = 0;
  std::uint16_t secondary = 0;
};

class Collator {
 public:
  Collator() {
    UErrorCode status = U_ZERO_ERROR;
    secondary_ = ucol_open("tr", &status);
    UCollator* primary = ucol_open("tr", &status);
    if (U_FAILURE(status))
      throw Error(448, std::string("Invalid collation 'Turkish_CI_AS': ") + u_errorName(status));
    ucol_setStrength(secondary_, UCOL_SECONDARY);
    ucol_setStrength(primary, UCOL_PRIMARY);
    makeRanks(primary);
    ucol_close(primary);
    makeCases();
  }
  ~Collator() { ucol_close(secondary_); }
  Collator(const Collator&) = delete;
  Collator& operator=(const Collator&) = delete;

  Rank rank(char32_t c) const { return c < tableSize ? ranks_[c] : Rank{}; }
  char32_t upper(char32_t c) const { return c < tableSize ? upper_[c] : u_toupper(static_cast<UChar32>(c)); }
  char32_t lower(char32_t c) const { return c < tableSize ? lower_[c] : u_tolower(static_cast<UChar32>(c)); }
  // The first character of equal weight, upper case where there is one.
  char32_t representative(char32_t c) const { return c < tableSize ? representative_[c] : upper(c); }

  int compare(std::string_view left, std::string_view right) const {
    UErrorCode status = U_ZERO_ERROR;
    return ucol_strcollUTF8(secondary_, left.data(), static_cast<int>(left.size()), right.data(),
                            static_cast<int>(right.size()), &status);
  }

 private:
  // One primary weight, first, and after it nothing but accents.
  bool isSimple(char32_t c) const {
    const auto unit = static_cast<UChar>(c);
    UErrorCode status = U_ZERO_ERROR;
    UCollationElements* elements = ucol_openElements(secondary_, &unit, 1, &status);
    bool simple = false;
    for (int i = 0; U_SUCCESS(status); ++i) {
      const int element = ucol_next(elements, &status);
      if (element == UCOL_NULLORDER) break;
      const bool primary = ucol_primaryOrder(element) != 0;
      if (primary != (i == 0)) {
        simple = false;
        break;
      }
      simple = true;
    }
    ucol_closeElements(elements);
    return simple;
  }

  void makeRanks(const UCollator* primary) {
    std::vector<UChar> simple;
    for (char32_t c = 0; c < tableSize; ++c)
      if (isSimple(c)) simple.push_back(static_cast<UChar>(c));
    const auto order = [](const UCollator* by, UChar a, UChar b) { return ucol_strcoll(by, &a, 1, &b, 1); };
    std::stable_sort(simple.begin(), simple.end(),
                     [&](UChar a, UChar b) { return order(secondary_, a, b) == UCOL_LESS; });
    Rank rank{0, 1};
    for (std::size_t i = 0; i < simple.size(); ++i) {
      if (i == 0 || order(primary, simple[i - 1], simple[i]) != UCOL_EQUAL) {
        rank = {static_cast<std::uint16_t>(rank.primary + 1), 1};
      } else if (order(secondary_, simple[i - 1], simple[i]) != UCOL_EQUAL) {
        ++rank.secondary;
      }
      ranks_[simple[i]] = rank;
    }
  }

  // A character of code page 1254 never leaves it by its case.
  static char32_t changed(char32_t from, char32_t to) {
    return toCp1254(from) >= 0 && toCp1254(to) < 0 ? from : to;
  }

  void makeCases() {
    for (char32_t c = 0; c < tableSize; ++c) {
      upper_[c] = changed(c, u_toupper(static_cast<UChar32>(c)));
      lower_[c] = changed(c, u_tolower(static_cast<UChar32>(c)));
    }
    upper_[U'i'] = 0x130;
    lower_[0x130] = U'i';
    upper_[0x131] = U'I';
    lower_[U'I'] = 0x131;
    for (char32_t c = 0; c < tableSize; ++c) {
      representative_[c] = upper_[c];
      for (char32_t first = 0; ranks_[c].primary && first < tableSize; ++first) {
        if (ranks_[first].primary != ranks_[c].primary || ranks_[first].secondary != ranks_[c].secondary)
          continue;
        representative_[c] = upper_[first];
        break;
      }
    }
  }

  UCollator* secondary_ = nullptr;
  std::array<Rank, tableSize> ranks_{};
  std::array<char32_t, tableSize> upper_{}, lower_{}, representative_{};
};

const Collator& collator() {
  static const Collator instance;
  return instance;
}

std::string_view withoutTrailingBlanks(std::string_view text) {
  while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
  return text;
}

// nextCharacter() with the common cases in line.
inline char32_t step(std::string_view text, std::size_t& at) {
  const auto byte = static_cast<unsigned char>(text[at]);
  if (byte < 0x80) {
    ++at;
    return byte;
  }
  if (byte >= 0xC2 && byte < 0xE0 && at + 1 < text.size() && (text[at + 1] & 0xC0) == 0x80) {
    at += 2;
    return static_cast<char32_t>((byte & 0x1F) << 6 | (text[at - 1] & 0x3F));
  }
  return nextCharacter(text, at);
}

// Bytes of the characters that both texts begin with.
std::size_t commonPrefix(std::string_view left, std::string_view right) {
  const auto [l, r] =
      std::mismatch(left.begin(), left.begin() + std::min(left.size(), right.size()), right.begin());
  auto length = static_cast<std::size_t>(l - left.begin());
  while (length > 0 && ((length < left.size() && (left[length] & 0xC0) == 0x80) ||
                        (length < right.size() && (right[length] & 0xC0) == 0x80)))
    --length;
  return length;
}

// Characters from U+0300 on may combine with the one before them.
bool mayCombine(std::string_view text, std::size_t at) {
  return at < text.size() && static_cast<unsigned char>(text[at]) >= 0xCC;
}

template <typename Change>
std::string changedText(std::string_view text, Change change) {
  std::string result;
  result.reserve(text.size());
  for (std::size_t at = 0; at < text.size();) appendCharacter(result, change(nextCharacter(text, at)));
  return result;
}

}  // namespace

int compareText(std::string_view left, std::string_view right) {
  left = withoutTrailingBlanks(left);
  right = withoutTrailingBlanks(right);
  if (left == right) return 0;
  const Collator& by = collator();
  int accents = 0;
  std::size_t l = commonPrefix(left, right), r = l;
  while (l < left.size() && r < right.size()) {
    const Rank a = by.rank(step(left, l));
    const Rank b = by.rank(step(right, r));
    if (!a.primary || !b.primary) return by.compare(left, right);
    if (a.primary != b.primary) {
      if (mayCombine(left, l) || mayCombine(right, r)) return by.compare(left, right);
      return a.primary < b.primary ? -1 : 1;
    }
    if (!accents) accents = static_cast<int>(a.secondary) - static_cast<int>(b.secondary);
  }
  if (l == left.size() && r == right.size()) return accents;
  // The rest of the longer one decides unless it holds nothing but accents and ignorable characters.
  const std::string_view rest = l < left.size() ? left.substr(l) : right.substr(r);
  std::size_t first = 0;
  if (!by.rank(nextCharacter(rest, first)).primary || mayCombine(rest, first)) return by.compare(left, right);
  return l < left.size() ? 1 : -1;
}

bool equalText(std::string_view left, std::string_view right) {
  return compareText(left, right) == 0;
}

namespace {

std::string foldedAscii(std::string_view text) {
  std::string folded(withoutTrailingBlanks(text));
  for (char& c : folded)
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  return folded;
}

}  // namespace

// Equal names are equal bytes once folded; the others stand in the order of texts.
int compareNames(std::string_view left, std::string_view right) {
  const std::string l = foldedAscii(left), r = foldedAscii(right);
  if (l == r) return 0;
  const int order = compareText(l, r);
  return order != 0 ? order : l.compare(r);
}

char32_t upperCharacter(char32_t character) {
  return collator().upper(character);
}
char32_t lowerCharacter(char32_t character) {
  return collator().lower(character);
}

std::string upperText(std::string_view text) {
  return changedText(text, [&by = collator()](char32_t c) { return by.upper(c); });
}

std::string lowerText(std::string_view text) {
  return changedText(text, [&by = collator()](char32_t c) { return by.lower(c); });
}

std::string foldKey(std::string_view text) {
  return changedText(withoutTrailingBlanks(text),
                     [&by = collator()](char32_t c) { return by.representative(c); });
}

std::uint32_t characterWeight(char32_t character) {
  const Rank rank = collator().rank(character);
  if (rank.primary) return static_cast<std::uint32_t>(rank.primary) << 16 | rank.secondary;
  return 0x80000000U | upperCharacter(character);
}

namespace {

std::vector<std::uint32_t> weightsOf(std::string_view text) {
  std::vector<std::uint32_t> weights;
  weights.reserve(text.size());
  for (std::size_t at = 0; at < text.size();) weights.push_back(characterWeight(nextCharacter(text, at)));
  return weights;
}

// The byte after the occurrence that starts at `at`; npos when there is none.
std::size_t matchEnd(const std::vector<std::uint32_t>& needle, std::string_view text, std::size_t at) {
  for (const std::uint32_t weight : needle)
    if (at >= text.size() || characterWeight(nextCharacter(text, at)) != weight) return text.npos;
  return at;
}

}  // namespace

std::int64_t findText(std::string_view needle, std::string_view text, std::int64_t start) {
  if (needle.empty()) return 0;
  const std::vector<std::uint32_t> weights = weightsOf(needle);
  std::int64_t position = std::max<std::int64_t>(1, start);
  for (std::size_t at = characterOffset(text, position - 1); at < text.size(); ++position) {
    if (matchEnd(weights, text, at) != text.npos) return position;
    nextCharacter(text, at);
  }
  return 0;
}

std::string replaceText(std::string_view text, std::string_view from, std::string_view to) {
  if (from.empty()) return std::string(text);
  const std::vector<std::uint32_t> weights = weightsOf(from);
  std::string result;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = matchEnd(weights, text, at);
    if (end != text.npos) {
      result += to;
      at = end;
      continue;
    }
    const std::size_t start = at;
    nextCharacter(text, at);
    result += text.substr(start, at - start);
  }
  return result;
}

}  // namespace engine
