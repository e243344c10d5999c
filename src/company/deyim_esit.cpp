#include "company/deyim_esit.h"

#include <algorithm>

namespace company {

namespace {

bool isBlank(char c) {
  return c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == '\f' || c == '\v';
}

bool isWord(char c) {
  return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_' || c == '@' ||
         c == '#' || c == '$' || static_cast<unsigned char>(c) >= 0x80;
}

char upper(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

struct Token {
  enum class Kind { End, Word, Literal, Sign } kind = Kind::End;
  std::string_view text;  // of a quoted name what stands between the quotes

  bool operator==(const Token& other) const {
    if (kind != other.kind) return false;
    if (kind != Kind::Word) return text == other.text;
    return std::ranges::equal(text, other.text, [](char x, char y) { return upper(x) == upper(y); });
  }
};

class Tokens {
 public:
  explicit Tokens(std::string_view text) : rest_(text) {}

  Token next() {
    skip();
    if (rest_.empty()) return {};
    const char c = rest_.front();
    if (c == '\'') return {Token::Kind::Literal, quoted('\'')};
    if (c == '[' || c == '"') return {Token::Kind::Word, quoted(c == '[' ? ']' : c)};
    if (!isWord(c)) return {Token::Kind::Sign, take(1)};
    return {Token::Kind::Word,
            take(static_cast<std::size_t>(std::ranges::find_if_not(rest_, isWord) - rest_.begin()))};
  }

 private:
  std::string_view take(std::size_t count) {
    const std::string_view out = rest_.substr(0, count);
    rest_.remove_prefix(out.size());
    return out;
  }
  // Up to the closing sign; a doubled one is part of the text.
  std::string_view quoted(char end) {
    std::size_t at = 1;
    while (at < rest_.size() && (rest_[at] != end || (at + 1 < rest_.size() && rest_[at + 1] == end)))
      at += rest_[at] == end ? 2 : 1;
    const std::string_view whole = take(at + 1);
    return whole.substr(1, at - 1);
  }
  void skip() {
    for (;;) {
      while (!rest_.empty() && isBlank(rest_.front())) take(1);
      if (rest_.starts_with("--"))
        take(std::min(rest_.find('\n'), rest_.size()));
      else if (rest_.starts_with("/*"))
        take(std::min(rest_.find("*/", 2), rest_.size() - 2) + 2);
      else
        return;
    }
  }

  std::string_view rest_;
};

}  // namespace

bool deyimEsit(std::string_view a, std::string_view b) {
  Tokens x(a), y(b);
  for (;;) {
    const Token left = x.next();
    if (left != y.next()) return false;
    if (left.kind == Token::Kind::End) return true;
  }
}

}  // namespace company
