#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>

#include "engine/language/parser.h"
#include "engine/value.h"

namespace engine {
namespace {

enum class CharClass : std::uint8_t { Bad, Blank, Letter, Digit, Mark, Symbol };

// Letters begin an identifier; digits and marks (@ $ #) go on with it. Every byte of a multi-byte
// character counts as a letter, so Turkish letters and broken UTF-8 both pass through as they are.
constexpr auto charClasses = [] {
  std::array<CharClass, 256> table{};
  for (int c = 1; c <= ' '; ++c) table[c] = CharClass::Blank;
  for (int c = 'a'; c <= 'z'; ++c) table[c] = CharClass::Letter;
  for (int c = 'A'; c <= 'Z'; ++c) table[c] = CharClass::Letter;
  for (int c = '0'; c <= '9'; ++c) table[c] = CharClass::Digit;
  for (int c = 0x80; c <= 0xFF; ++c) table[c] = CharClass::Letter;
  table['_'] = table['#'] = CharClass::Letter;
  table['@'] = table['$'] = CharClass::Mark;
  for (char c : std::string_view("()+-*/%=<>!,.;:&|^~"))
    table[static_cast<unsigned char>(c)] = CharClass::Symbol;
  return table;
}();

constexpr std::size_t maxIdentifier = 128;  // characters
constexpr std::size_t maxList = 250'000;    // values in a row: SQLite binds no more
constexpr std::size_t expectedTokens = 65'536;
constexpr std::size_t maxQuoted = 120;  // bytes of the batch that an error text repeats

CharClass classOf(char c) {
  return charClasses[static_cast<unsigned char>(c)];
}
bool isDigit(char c) {
  return c >= '0' && c <= '9';
}
bool isHexDigit(char c) {
  return isDigit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}
bool isContinuation(char c) {
  return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
}

std::string_view beginning(std::string_view text) {
  std::size_t size = std::min(text.size(), maxQuoted);
  while (size > 0 && size < text.size() && isContinuation(text[size])) --size;
  return text.substr(0, size);
}

[[noreturn]] void fail(int number, const std::string& text, int line) {
  Error error(number, text, 15);
  error.setLine(line);
  throw error;
}

class Lexer {
 public:
  explicit Lexer(std::string_view batch) : text_(batch) {
    if (text_.starts_with("\xEF\xBB\xBF")) pos_ = 3;
    tokens_.reserve(std::min(batch.size() / 4 + 8, expectedTokens));
  }

  std::vector<Token> run() {
    for (;;) {
      skipBlanks();
      if (pos_ >= text_.size()) break;
      next();
    }
    add(TokenKind::End, pos_);
    return std::move(tokens_);
  }

 private:
  char at(std::size_t i) const { return i < text_.size() ? text_[i] : '\0'; }

  void add(TokenKind kind, std::size_t end, LiteralKind literal = LiteralKind::Null) {
    Token& token = tokens_.emplace_back();
    token.kind = kind;
    token.literal = literal;
    token.line = line_;
    token.offset = pos_;
    token.source = text_.substr(pos_, end - pos_);
    pos_ = end;
    limitList(token);
  }

  // No statement has room for a list that long; told here, before it has cost its memory.
  void limitList(const Token& token) {
    if (token.kind == TokenKind::Literal) {
      if (++listed_ > maxList)
        fail(8623,
             "The query processor ran out of internal resources and could not produce a query plan. Simplify "
             "the query.",
             line_);
    } else if (listed_ > 0 &&
               (token.kind != TokenKind::Symbol || (token.source[0] != ',' && token.source[0] != '-'))) {
      listed_ = 0;
    }
  }

  void skipBlanks() {
    for (; pos_ < text_.size(); ++pos_) {
      char c = text_[pos_];
      if (c == '\n') ++line_;
      if (classOf(c) == CharClass::Blank) continue;
      if (c == '-' && at(pos_ + 1) == '-') {
        std::size_t end = text_.find('\n', pos_);
        pos_ = (end == text_.npos ? text_.size() : end) - 1;
      } else if (c == '/' && at(pos_ + 1) == '*') {
        skipComment();
      } else {
        return;
      }
    }
  }

  // Leaves pos_ on the comment's last character.
  void skipComment() {
    int depth = 1;
    for (pos_ += 2; pos_ < text_.size(); ++pos_) {
      if (text_[pos_] == '\n') ++line_;
      if (text_[pos_] == '/' && at(pos_ + 1) == '*') {
        ++depth;
        ++pos_;
      } else if (text_[pos_] == '*' && at(pos_ + 1) == '/') {
        ++pos_;
        if (--depth == 0) return;
      }
    }
    fail(113, "Missing end comment mark '*/'.", line_);
  }

  void next() {
    char c = text_[pos_];
    switch (classOf(c)) {
      case CharClass::Letter:
        if ((c == 'N' || c == 'n') && at(pos_ + 1) == '\'') return quoted(LiteralKind::NText, pos_ + 1, '\'');
        return word(TokenKind::Word);
      case CharClass::Digit:
        return number();
      case CharClass::Mark:
        return c == '@' ? variable() : money();
      case CharClass::Symbol:
        if (c == '.' && isDigit(at(pos_ + 1))) return number();
        return add(TokenKind::Symbol, pos_ + 1);
      default:
        break;
    }
    if (c == '\'') return quoted(LiteralKind::Text, pos_, '\'');
    if (c == '"') return quotedWord('"');
    if (c == '[') return quotedWord(']');
    if (c == '{') fail(50000, "'ODBC escape {' is not supported by the embedded server.", line_);
    fail(102, std::string("Incorrect syntax near '") + (c == '\0' ? "" : std::string(1, c)) + "'.", line_);
  }

  std::size_t endOfWord(std::size_t i) const {
    while (i < text_.size()) {
      CharClass c = classOf(text_[i]);
      if (c != CharClass::Letter && c != CharClass::Digit && c != CharClass::Mark) break;
      ++i;
    }
    return i;
  }

  void word(TokenKind kind) {
    std::size_t end = endOfWord(pos_);
    checkLength(text_.substr(pos_, end - pos_));
    add(kind, end);
  }

  void variable() {
    bool global = at(pos_ + 1) == '@';
    word(global ? TokenKind::GlobalVariable : TokenKind::Variable);
  }

  void checkLength(std::string_view name) const {
    if (name.size() <= maxIdentifier) return;
    std::size_t characters = 0;
    for (char c : name) characters += isContinuation(c) ? 0 : 1;
    if (characters > maxIdentifier)
      fail(103,
           "The identifier that starts with '" + std::string(beginning(name)) +
               "' is too long. Maximum length is 128.",
           line_);
  }

  // End of a quoted run whose opening mark stands at `open`; a doubled closing mark goes on with it.
  std::size_t endOfQuoted(std::size_t open, char close) {
    int line = line_;
    for (std::size_t i = open + 1; i < text_.size(); ++i) {
      if (text_[i] == '\n') ++line_;
      if (text_[i] != close) continue;
      if (at(i + 1) != close) return i + 1;
      ++i;
    }
    fail(105,
         "Unclosed quotation mark after the character string '" +
             std::string(beginning(text_.substr(open + 1))) + "'.",
         line);
  }

  void quoted(LiteralKind kind, std::size_t open, char close) {
    int line = line_;
    std::size_t end = endOfQuoted(open, close);
    add(TokenKind::Literal, end, kind);
    tokens_.back().line = line;
  }

  void quotedWord(char close) {
    int line = line_;
    std::size_t end = endOfQuoted(pos_, close);
    add(TokenKind::QuotedWord, end);
    Token& token = tokens_.back();
    token.line = line;
    if (token.source.size() == 2)
      fail(1038,
           "An object or column name is missing or empty. For SELECT INTO statements, verify each "
           "column has a name. For other statements, look for empty alias names. Aliases defined as "
           "\"\" or [] are not allowed. Change the alias to a valid name.",
           line);
    if (token.source.find('\0') != std::string_view::npos)
      fail(15004, "A name contains an invalid character.", line);
    if (token.source.size() > maxIdentifier + 2) checkLength(token.value());
  }

  void number() {
    if (text_[pos_] == '0' && (at(pos_ + 1) == 'x' || at(pos_ + 1) == 'X')) return binary();
    std::size_t i = pos_;
    while (isDigit(at(i))) ++i;
    LiteralKind kind = LiteralKind::Integer;
    if (at(i) == '.') {
      kind = LiteralKind::Decimal;
      ++i;
      while (isDigit(at(i))) ++i;
    }
    if (std::size_t end = endOfExponent(i); end != i) {
      kind = LiteralKind::Float;
      i = end;
      checkFloat(std::string(text_.substr(pos_, i - pos_)));
    }
    if (kind == LiteralKind::Integer && !fitsInt(text_.substr(pos_, i - pos_))) kind = LiteralKind::Decimal;
    add(TokenKind::Literal, i, kind);
  }

  void checkFloat(const std::string& digits) const {
    constexpr std::size_t shown = 128;
    if (std::isinf(std::strtod(digits.c_str(), nullptr)))
      fail(168,
           "The floating point value '" + digits.substr(0, shown) +
               "' is out of the range of computer representation (8 bytes).",
           line_);
  }

  // `1e3`, `1e+3`, and `1e`, which is 1e0; 1 before a word such as `else` is no exponent.
  std::size_t endOfExponent(std::size_t i) const {
    if (at(i) != 'e' && at(i) != 'E') return i;
    std::size_t end = i + 1;
    if ((at(end) == '+' || at(end) == '-') && isDigit(at(end + 1))) ++end;
    if (end == i + 1 && endOfWord(end) != end && !isDigit(at(end))) return i;
    while (isDigit(at(end))) ++end;
    return end;
  }

  static bool fitsInt(std::string_view digits) {
    while (digits.size() > 1 && digits[0] == '0') digits.remove_prefix(1);
    return digits.size() < 10 || (digits.size() == 10 && digits <= "2147483647");
  }

  void binary() {
    std::size_t i = pos_ + 2;
    while (isHexDigit(at(i))) ++i;
    add(TokenKind::Literal, i, LiteralKind::Binary);
  }

  void money() {
    std::size_t i = pos_ + 1;
    while (isDigit(at(i))) ++i;
    if (at(i) == '.') ++i;
    while (isDigit(at(i))) ++i;
    add(TokenKind::Literal, i, LiteralKind::Money);
  }

  std::string_view text_;
  std::size_t pos_ = 0;
  int line_ = 1;
  std::size_t listed_ = 0;  // literals since the last bracket or word
  std::vector<Token> tokens_;
};

std::string unquote(std::string_view body, char close) {
  if (body.find(close) == body.npos) return std::string(body);
  std::string result;
  result.reserve(body.size());
  for (std::size_t i = 0; i < body.size(); ++i) {
    result += body[i];
    if (body[i] == close) ++i;
  }
  return result;
}

int hexValue(char c) {
  return isDigit(c) ? c - '0' : (c | 0x20) - 'a' + 10;
}

std::string bytesOf(std::string_view digits) {
  std::string result;
  std::size_t i = 0;
  if (digits.size() % 2 != 0) result += static_cast<char>(hexValue(digits[i++]));
  for (; i < digits.size(); i += 2)
    result += static_cast<char>(hexValue(digits[i]) * 16 + hexValue(digits[i + 1]));
  return result;
}

std::string literalValue(LiteralKind kind, std::string_view source) {
  switch (kind) {
    case LiteralKind::Text:
      return unquote(source.substr(1, source.size() - 2), '\'');
    case LiteralKind::NText:
      return unquote(source.substr(2, source.size() - 3), '\'');
    case LiteralKind::Binary:
      return bytesOf(source.substr(2));
    case LiteralKind::Money:
      return std::string(source.substr(1));
    default:
      return std::string(source);
  }
}

}  // namespace

std::string Token::value() const {
  if (kind == TokenKind::Literal) return literalValue(literal, source);
  if (kind == TokenKind::QuotedWord) return unquote(source.substr(1, source.size() - 2), source.back());
  return std::string(source);
}

std::vector<Token> tokenize(std::string_view batch) {
  return Lexer(batch).run();
}

}  // namespace engine
