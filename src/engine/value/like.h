// Patterns of LIKE and PATINDEX, read once and matched often.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

namespace engine {

// Characters are equal when their weights are; see collation.cpp.
std::uint32_t characterWeight(char32_t character);

class LikePattern {
 public:
  explicit LikePattern(std::string_view pattern, std::optional<char32_t> escape = {});

  // The whole text, blanks at its end aside; `exact`: with them, as Unicode text is compared. Time is at most
  // length of text times length of pattern.
  bool matches(std::string_view text, bool exact = false) const;
  // 1-based character position of the first match of the pattern without its leading %; 0: none.
  std::int64_t find(std::string_view text, bool exact = false) const;
  // True when blanks that pad the text could make a difference.
  bool seesPadding() const { return seesPadding_; }

 private:
  enum class Kind : std::uint8_t { One, Any, Set, Many };
  struct Element {
    Kind kind = Kind::One;
    bool negated = false;
    std::uint32_t weight = 0;
    std::vector<std::pair<char32_t, char32_t>> ranges;
  };

  bool readSet(std::string_view pattern, std::size_t& at, std::optional<char32_t> escape);
  bool accepts(const Element& element, char32_t character) const;
  bool matchFrom(std::string_view text, std::size_t at, std::size_t element, bool blanksAside) const;

  std::vector<Element> elements_;
  bool broken_ = false;
  bool seesPadding_ = false;
};

}  // namespace engine
