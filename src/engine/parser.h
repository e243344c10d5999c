// Text to tree. Pure: no catalog, no state; survives any input (depth is bounded, see maxDepth).
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "engine/ast.h"

namespace engine {

enum class TokenKind : std::uint8_t { Word, QuotedWord, Variable, GlobalVariable, Literal, Symbol, End };

struct Token {
  TokenKind kind = TokenKind::End;
  LiteralKind literal = LiteralKind::Null;
  std::string_view source;  // the token as it stands in the batch
  std::string text;         // word without its quotes, literal's value (see Literal::text), symbol
  int line = 1;
  std::size_t offset = 0;
};

// All tokens of a batch, ended by End. Throws Error 102, 105 (unclosed quotation mark), 113 (comment).
// A quoted word "a b" is an identifier (QUOTED_IDENTIFIER ON).
std::vector<Token> tokenize(std::string_view batch);

// The literal-free text of a batch: tokens joined by single blanks, words upper-cased by ASCII rules,
// each literal replaced by a mark of its kind (text literals with their length in characters, integers
// with whether they fit an INT, decimals with their digits), so that equal keys mean equal static types.
// `literals` receives the values in text order.
std::string planKey(const std::vector<Token>& tokens, std::vector<Literal>& literals);

// Throws Error 102 ("Incorrect syntax near 'x'."), 156 ("Incorrect syntax near the keyword 'X'."),
// 170, 191 (nested too deeply), 103 (identifier too long) and others of the kind; nothing has run then.
Batch parseBatch(std::string_view text);
Batch parseTokens(std::string_view text, const std::vector<Token>& tokens);

// A stored column default or a single expression on its own.
ExprPtr parseExpression(std::string_view text);

inline constexpr int maxDepth = 1000;  // nesting of brackets, CASE, blocks and subqueries

}  // namespace engine
