#include <gtest/gtest.h>

#include "engine/language/parser.h"
#include "engine/value/error.h"

namespace engine::test {
namespace {

std::string kinds(const std::vector<Token>& tokens) {
  static const char names[] = "wqvgLs.";
  std::string text;
  for (const Token& token : tokens) text += names[static_cast<int>(token.kind)];
  return text;
}

TEST(Lexer, SplitsWithoutSeparators) {
  const struct {
    const char* text;
    const char* kinds;
    std::vector<std::string> values;
  } cases[] = {
      {"='Mal'UPDATE t", "sLww.", {"=", "Mal", "UPDATE", "t", ""}},
      {"CHAR(30)DECLARE", "wsLsw.", {"CHAR", "(", "30", ")", "DECLARE", ""}},
      {"1else", "Lw.", {"1", "else", ""}},
      {"1e5else 2e", "LwL.", {"1e5", "else", "2e", ""}},
      {"a.b SK. c 1.5.x", "wswwswLsw.", {"a", ".", "b", "SK", ".", "c", "1.5", ".", "x", ""}},
      {"@a@@b", "v.", {"@a@@b", ""}},
      {"@@b+@a", "gsv.", {"@@b", "+", "@a", ""}},
      {"[a]]b]\"c\"\"d\"", "qq.", {"a]b", "c\"d", ""}},
      {"n'x'nx''N''", "LwLL.", {"x", "nx", "", "", ""}},
      {"'a''b'", "L.", {"a'b", ""}},
      {"0xf1g", "Lw.", {"\xF1", "g", ""}},
      {"#t$1 $1.25", "wL.", {"#t$1", "1.25", ""}},
      {"ŞUBE_1İ", "w.", {"ŞUBE_1İ", ""}},
      {"a/*x/*y*/'*/b--'\nc", "www.", {"a", "b", "c", ""}},
      {"\xEF\xBB\xBF a\x01\xA0z", "ww.", {"a", "\xA0z", ""}},
      {"", ".", {""}},
  };
  for (const auto& c : cases) {
    std::vector<Token> tokens = tokenize(c.text);
    EXPECT_EQ(kinds(tokens), c.kinds) << c.text;
    std::vector<std::string> values;
    for (const Token& token : tokens) values.push_back(token.value());
    EXPECT_EQ(values, c.values) << c.text;
  }
}

TEST(Lexer, TellsLiteralsApart) {
  const std::pair<const char*, LiteralKind> cases[] = {{"2147483647", LiteralKind::Integer},
                                                       {"2147483648", LiteralKind::Decimal},
                                                       {"0000000000012", LiteralKind::Integer},
                                                       {"99999999999999999999", LiteralKind::Decimal},
                                                       {"1.", LiteralKind::Decimal},
                                                       {".5", LiteralKind::Decimal},
                                                       {"1.5E-3", LiteralKind::Float},
                                                       {"$12.50", LiteralKind::Money},
                                                       {"0x", LiteralKind::Binary},
                                                       {"'x'", LiteralKind::Text},
                                                       {"N'x'", LiteralKind::NText}};
  for (const auto& [text, kind] : cases) {
    std::vector<Token> tokens = tokenize(text);
    ASSERT_EQ(tokens.size(), 2u) << text;
    EXPECT_EQ(tokens[0].literal, kind) << text;
  }
}

TEST(Lexer, CountsLinesThroughLiteralsAndComments) {
  std::vector<Token> tokens = tokenize("'a\nb' /* \n */ [c\n] -- x\nd");
  ASSERT_EQ(tokens.size(), 4u);
  EXPECT_EQ(tokens[0].line, 1);
  EXPECT_EQ(tokens[1].line, 3);
  EXPECT_EQ(tokens[2].line, 5);
}

TEST(Lexer, RefusesWhatNeverEnds) {
  const struct {
    std::string text;
    int number, line;
  } cases[] = {
      {"SELECT\n'abc", 105, 2},
      {"SELECT [abc", 105, 1},
      {"SELECT \"abc", 105, 1},
      {"a\n/* /* */", 113, 2},
      {"SELECT []", 1038, 1},
      {"SELECT ?", 102, 1},
      {std::string("SELECT \0 1", 10), 102, 1},
      {"a " + std::string(129, 'x'), 103, 1},
      {"[" + std::string(10000, 'x') + "]", 103, 1},
  };
  for (const auto& c : cases) {
    try {
      tokenize(c.text);
      ADD_FAILURE() << c.text.substr(0, 40);
    } catch (const Error& error) {
      EXPECT_EQ(error.number(), c.number) << c.text.substr(0, 40);
      EXPECT_EQ(error.line(), c.line) << c.text.substr(0, 40);
    }
  }
}

TEST(Lexer, MeasuresIdentifiersInCharacters) {
  std::string name;
  for (int i = 0; i < 128; ++i) name += "ş";
  EXPECT_EQ(tokenize(name).size(), 2u);
  EXPECT_THROW(tokenize(name + "ş"), Error);
}

TEST(Lexer, KeepsAMillionCharactersOfText) {
  std::string text = "'" + std::string(1000000, 'x') + "'";
  EXPECT_EQ(tokenize(text)[0].value().size(), 1000000u);
}

}  // namespace
}  // namespace engine::test
