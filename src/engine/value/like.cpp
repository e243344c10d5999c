#include "engine/value/like.h"

#include <algorithm>

#include "engine/value/collation.h"
#include "engine/value/convert.h"

namespace engine {
namespace {

bool onlyBlanks(std::string_view text, std::size_t from) {
  return text.find_first_not_of(' ', from) == text.npos;
}

bool inRange(char32_t character, char32_t low, char32_t high) {
  if (low == high) return characterWeight(character) == characterWeight(low);
  std::string texts[3];
  appendCharacter(texts[0], low);
  appendCharacter(texts[1], character);
  appendCharacter(texts[2], high);
  if (character == ' ') return low <= ' ' && high >= ' ';
  return compareText(texts[0], texts[1]) <= 0 && compareText(texts[1], texts[2]) <= 0;
}

}  // namespace

LikePattern::LikePattern(std::string_view pattern, std::optional<char32_t> escape) {
  for (std::size_t at = 0; at < pattern.size();) {
    const char32_t character = nextCharacter(pattern, at);
    Element element;
    if (escape && character == *escape) {
      if (at == pattern.size()) {
        broken_ = true;
        return;
      }
      element.weight = characterWeight(nextCharacter(pattern, at));
    } else if (character == '%') {
      if (!elements_.empty() && elements_.back().kind == Kind::Many) continue;
      element.kind = Kind::Many;
    } else if (character == '_') {
      element.kind = Kind::Any;
      seesPadding_ = true;
    } else if (character == '[') {
      if (readSet(pattern, at, escape)) continue;
      broken_ = true;
      return;
    } else {
      element.weight = characterWeight(character);
      seesPadding_ = seesPadding_ || character == ' ';
    }
    elements_.push_back(std::move(element));
  }
}

bool LikePattern::readSet(std::string_view pattern, std::size_t& at, std::optional<char32_t> escape) {
  Element element;
  element.kind = Kind::Set;
  seesPadding_ = true;
  const auto character = [&](bool& closing) {
    char32_t c = nextCharacter(pattern, at);
    closing = c == ']';
    if (escape && c == *escape && at < pattern.size()) {
      c = nextCharacter(pattern, at);
      closing = false;
    }
    return c;
  };
  if (at < pattern.size() && pattern[at] == '^') {
    element.negated = true;
    ++at;
  }
  while (at < pattern.size()) {
    bool closing;
    const char32_t low = character(closing);
    if (closing) {
      elements_.push_back(std::move(element));
      return true;
    }
    char32_t high = low;
    if (at + 1 < pattern.size() && pattern[at] == '-' && pattern[at + 1] != ']') {
      ++at;
      high = character(closing);
    }
    element.ranges.emplace_back(low, high);
  }
  return false;
}

bool LikePattern::accepts(const Element& element, char32_t character) const {
  if (element.kind == Kind::Any) return true;
  if (element.kind == Kind::One) return characterWeight(character) == element.weight;
  const bool listed = std::any_of(element.ranges.begin(), element.ranges.end(), [&](const auto& range) {
    return inRange(character, range.first, range.second);
  });
  return listed != element.negated;
}

// Only the latest % needs to be tried again: an earlier one can do no better.
bool LikePattern::matchFrom(std::string_view text, std::size_t at, std::size_t element,
                            bool blanksAside) const {
  constexpr std::size_t none = static_cast<std::size_t>(-1);
  std::size_t retryElement = none, retryAt = 0;
  while (true) {
    if (element == elements_.size()) {
      if (at == text.size() || (blanksAside && onlyBlanks(text, at))) return true;
    } else if (elements_[element].kind == Kind::Many) {
      if (++element == elements_.size()) return true;
      retryElement = element;
      retryAt = at;
      continue;
    } else if (at < text.size()) {
      std::size_t next = at;
      if (accepts(elements_[element], nextCharacter(text, next))) {
        at = next;
        ++element;
        continue;
      }
    }
    if (retryElement == none || retryAt >= text.size()) return false;
    nextCharacter(text, retryAt);
    at = retryAt;
    element = retryElement;
  }
}

bool LikePattern::matches(std::string_view text, bool exact) const {
  return !broken_ && matchFrom(text, 0, 0, !exact);
}

std::int64_t LikePattern::find(std::string_view text, bool exact) const {
  if (broken_ || elements_.empty()) return 0;
  const bool anywhere = elements_.front().kind == Kind::Many;
  if (anywhere && elements_.size() == 1) return 1;
  std::int64_t position = 1;
  for (std::size_t at = 0; at <= text.size(); ++position) {
    if (matchFrom(text, at, anywhere ? 1 : 0, !exact)) return position;
    if (!anywhere || at == text.size()) return 0;
    nextCharacter(text, at);
  }
  return 0;
}

bool likeMatch(std::string_view text, std::string_view pattern, std::optional<char32_t> escape) {
  return LikePattern(pattern, escape).matches(text);
}

std::int64_t findPattern(std::string_view pattern, std::string_view text) {
  return LikePattern(pattern).find(text);
}

}  // namespace engine
