// Text to tree. Pure: no catalog, no state; survives any input (depth is bounded, see maxDepth).
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "engine/language/ast.h"

namespace engine {

enum class TokenKind : std::uint8_t { Word, QuotedWord, Variable, GlobalVariable, Literal, Symbol, End };

// One byte range of the batch; holds no text of its own, so it lives only as long as the batch.
struct Token {
  TokenKind kind = TokenKind::End;
  LiteralKind literal = LiteralKind::Null;
  int line = 1;
  std::size_t offset = 0;
  std::string_view source;  // the token as it stands in the batch

  // Word without its quotes, literal's value (see Literal::text), else the source.
  std::string value() const;
};

// All tokens of a batch, ended by End. Throws Error 102, 103 (identifier too long), 105 (unclosed
// quotation mark), 113 (comment). A quoted word "a b" is an identifier (QUOTED_IDENTIFIER ON).
std::vector<Token> tokenize(std::string_view batch);

// The literal-free text of a batch: tokens joined by single blanks, words as written (their letter case
// is visible in column names and bare arguments), each literal replaced by a mark of its kind (integers
// with whether they fit an INT, decimals with their digits), so that equal keys mean equal static types.
// A text literal's mark carries its length in characters, except where its type cannot matter: a whole
// value of an INSERT's VALUES list, a whole value of SET, a whole side of a comparison after WHERE.
// `literals` receives the values in text order.
std::string planKey(const std::vector<Token>& tokens, std::vector<Literal>& literals);

// Throws Error 102 ("Incorrect syntax near 'x'."), 156 ("Incorrect syntax near the keyword 'X'."),
// 191 (nested too deeply), 4145 (a value where a condition is due) and others of the kind, 50000 for
// T-SQL that the embedded server does not speak; nothing has run then.
// Beyond syntax the tree promises: conditions (WHERE, HAVING, ON, IF, WHILE, searched WHEN, CHECK,
// operands of AND, OR and NOT) are predicates, every other expression is a value.
Batch parseBatch(std::string_view text);
Batch parseTokens(std::string_view text, const std::vector<Token>& tokens);

// A stored column default or a single expression on its own.
ExprPtr parseExpression(std::string_view text);
// The stored condition of a CHECK.
ExprPtr parseCondition(std::string_view text);

// Nesting of brackets, CASE and functions; a subquery, a block, an IF or a WHILE counts for ten.
inline constexpr int maxDepth = 1000;
// Height of an expression tree, chains such as 1+1+1 included.
inline constexpr int maxHeight = 5000;

}  // namespace engine
