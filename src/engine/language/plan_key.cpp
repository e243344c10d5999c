#include <charconv>

#include "engine/language/keywords.h"
#include "engine/language/parser.h"

namespace engine {
namespace {

constexpr std::size_t longText = 8000;  // beyond it a literal is of another type

bool isOneOf(const Token& token, std::string_view symbols) {
  return token.kind == TokenKind::Symbol && symbols.find(token.source[0]) != symbols.npos;
}

// An integer meets another operand of arithmetic, brackets around it aside; only there its digits can be
// seen in a type.
bool isOperand(const Token& before, const Token& after) {
  constexpr std::string_view operators = "+-*/%";
  return isOneOf(before, operators) || isOneOf(after, operators) ||
         (isOneOf(before, "(") && isOneOf(after, ")"));
}

// Follows the batch token by token and tells where a text literal's length cannot be seen in any type.
class Context {
 public:
  // To be called for each token in turn.
  void pass(const Token& token) {
    if (token.kind == TokenKind::Word)
      passWord(token.source);
    else if (token.kind == TokenKind::Symbol && token.source[0] == '(')
      ++depth_;
    else if (token.kind == TokenKind::Symbol && token.source[0] == ')')
      --depth_;
  }

  bool lengthMatters(const Token& before, const Token& after) const {
    if (after.kind == TokenKind::Symbol && after.source[0] != ')' && after.source[0] != ',' &&
        after.source[0] != ';')
      return true;
    if (before.kind != TokenKind::Symbol) return true;
    char c = before.source[0];
    if (values_) return !(depth_ == 1 && (c == '(' || c == ','));
    return !(sides_ && (c == '=' || c == '<' || c == '>'));
  }

 private:
  void passWord(std::string_view word) {
    if (word.size() < 3 || word.size() > 6) return;
    if (equalsKeyword(word, "SELECT") || equalsKeyword(word, "EXEC")) {
      values_ = sides_ = false;
    } else if (equalsKeyword(word, "VALUES")) {
      values_ = true;
      depth_ = 0;
    } else if (equalsKeyword(word, "SET") || equalsKeyword(word, "WHERE")) {
      values_ = false;
      sides_ = true;
    }
  }

  int depth_ = 0;
  bool values_ = false;
  bool sides_ = false;
};

void append(std::string& key, std::size_t number) {
  char digits[24];
  auto [end, error] = std::to_chars(digits, digits + sizeof digits, number);
  key.append(digits, end);
}

std::size_t characters(std::string_view text) {
  std::size_t count = 0;
  for (char c : text) count += (static_cast<unsigned char>(c) & 0xC0) != 0x80;
  return count;
}

// Digits before and after the point, and leading zeros: all that precision and scale can depend on.
void appendDigits(std::string& key, std::string_view number) {
  std::size_t point = std::min(number.find('.'), number.size());
  append(key, point);
  key += '.';
  append(key, number.size() - point);
  key += '.';
  append(key, std::min(number.find_first_not_of('0'), number.size()));
}

std::size_t digits(std::string_view integer) {
  return integer.size() - std::min(integer.find_first_not_of('0'), integer.size());
}

// A mark begins with an apostrophe, as no other token of a key does.
void appendMark(std::string& key, const Literal& literal, const Context& context, const Token& before,
                const Token& after) {
  static constexpr char marks[] = {'0', 'i', 'd', 'f', 'm', 't', 'n', 'b'};
  key += '\'';
  key += marks[static_cast<std::size_t>(literal.kind)];
  switch (literal.kind) {
    case LiteralKind::Decimal:
      return appendDigits(key, literal.text);
    case LiteralKind::Integer:
      if (isOperand(before, after)) append(key, digits(literal.text));
      return;
    case LiteralKind::Binary:
      return append(key, literal.text.size());
    case LiteralKind::Text:
    case LiteralKind::NText:
      if (context.lengthMatters(before, after) || literal.text.size() > longText / 2)
        append(key, characters(literal.text));
      return;
    default:
      return;
  }
}

}  // namespace

std::string planKey(const std::vector<Token>& tokens, std::vector<Literal>& literals) {
  static const Token nothing;
  std::string key;
  key.reserve(tokens.back().offset + tokens.size() + 16);
  Context context;
  literals.clear();
  literals.reserve(tokens.size() / 3);
  for (std::size_t i = 0; i + 1 < tokens.size(); ++i) {
    const Token& token = tokens[i];
    if (i > 0) key += ' ';
    if (token.kind != TokenKind::Literal) {
      context.pass(token);
      key += token.source;
      continue;
    }
    int ordinal = static_cast<int>(literals.size());
    const Literal& literal = literals.emplace_back(Literal{token.literal, token.value(), ordinal});
    const Token& before = i > 0 ? tokens[i - 1] : nothing;
    const Token& after = tokens[i + 1];
    appendMark(key, literal, context, before, after);
  }
  return key;
}

}  // namespace engine
