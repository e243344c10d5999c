#include "engine/language/parser.h"

#include <algorithm>
#include <array>
#include <limits>

#include "engine/language/keywords.h"
#include "engine/language/sql_parser.h"
#include "engine/value.h"

namespace engine {
namespace {

constexpr int syntaxSeverity = 15;

[[noreturn]] void failAt(int line, int number, const std::string& text) {
  Error error(number, text, syntaxSeverity);
  error.setLine(line);
  throw error;
}

// Error texts repeat at most this many bytes of the batch, cut at a character.
std::string shortened(std::string text) {
  constexpr std::size_t most = 120;
  if (text.size() <= most) return text;
  std::size_t size = most;
  while (size > 0 && (static_cast<unsigned char>(text[size]) & 0xC0) == 0x80) --size;
  text.resize(size);
  return text;
}

}  // namespace

SqlParser::SqlParser(std::string_view text, const std::vector<Token>& tokens)
    : text_(text),
      tokens_(tokens),
      reserved_(tokens.size()),
      ordinals_(tokens.size()),
      closing_(tokens.size(), -1) {
  int literals = 0;
  std::vector<std::size_t> open;
  for (std::size_t i = 0; i < tokens.size(); ++i) {
    const Token& t = tokens[i];
    ordinals_[i] = literals;
    if (t.kind == TokenKind::Literal) ++literals;
    if (t.kind == TokenKind::Word) reserved_[i] = isReserved(t.source) ? 1 : 0;
    if (t.kind != TokenKind::Symbol) continue;
    if (t.source[0] == '(') open.push_back(i);
    if (t.source[0] == ')' && !open.empty()) {
      closing_[open.back()] = static_cast<int>(i);
      open.pop_back();
    }
  }
}

SqlParser::Nesting::Nesting(SqlParser& parser, int cost) : parser_(parser), cost_(cost) {
  if (parser.depth_ + cost > maxDepth)
    parser.fail(191,
                "Some part of your SQL statement is nested too deeply. Rewrite the query or break it up "
                "into smaller queries.");
  parser.depth_ += cost;
}

SqlParser::Nesting::~Nesting() {
  parser_.depth_ -= cost_;
}

// ---- tokens ----

const Token& SqlParser::token(std::size_t ahead) const {
  return tokens_[std::min(pos_ + ahead, tokens_.size() - 1)];
}

bool SqlParser::isWord(std::string_view upper, std::size_t ahead) const {
  const Token& t = token(ahead);
  return t.kind == TokenKind::Word && equalsKeyword(t.source, upper);
}

bool SqlParser::isAnyWord(std::initializer_list<std::string_view> uppers, std::size_t ahead) const {
  return std::ranges::any_of(uppers, [&](std::string_view upper) { return isWord(upper, ahead); });
}

bool SqlParser::isSymbol(char symbol, std::size_t ahead) const {
  const Token& t = token(ahead);
  return t.kind == TokenKind::Symbol && t.source[0] == symbol;
}

bool SqlParser::isName(std::size_t ahead) const {
  const Token& t = token(ahead);
  if (t.kind == TokenKind::QuotedWord) return true;
  return t.kind == TokenKind::Word && !reserved_[pos_ + ahead];
}

bool SqlParser::isText(std::size_t ahead) const {
  const Token& t = token(ahead);
  return t.kind == TokenKind::Literal && (t.literal == LiteralKind::Text || t.literal == LiteralKind::NText);
}

bool SqlParser::isIntegerLiteral() const {
  return isKind(TokenKind::Literal) && token().literal == LiteralKind::Integer;
}

bool SqlParser::opensQuery() const {
  std::size_t ahead = 0;
  while (isSymbol('(', ahead)) ++ahead;
  return isWord("SELECT", ahead);
}

bool SqlParser::accept(std::string_view upper) {
  if (!isWord(upper)) return false;
  ++pos_;
  return true;
}

bool SqlParser::acceptSymbol(char symbol) {
  if (!isSymbol(symbol)) return false;
  ++pos_;
  return true;
}

void SqlParser::expect(std::string_view upper) {
  if (!accept(upper)) syntaxError();
}

void SqlParser::expectSymbol(char symbol) {
  if (!acceptSymbol(symbol)) syntaxError();
}

std::string SqlParser::name() {
  if (!isName()) syntaxError();
  return tokens_[pos_++].value();
}

std::string SqlParser::variable() {
  if (!isKind(TokenKind::Variable)) syntaxError();
  return tokens_[pos_++].value();
}

// `a`, `b.a`, `d..a` ...: an absent part between two points is empty.
std::vector<std::string> SqlParser::nameParts(std::size_t most) {
  std::vector<std::string> parts{name()};
  while (acceptSymbol('.')) {
    if (parts.size() == most)
      fail(117, "The object name '" + shortened(parts[0] + "." + parts[1]) +
                    "...' contains more than the maximum number of prefixes. The maximum is " +
                    std::to_string(most - 1) + ".");
    parts.push_back(isSymbol('.') ? std::string() : name());
  }
  return parts;
}

ObjectName SqlParser::objectName() {
  ObjectName result;
  result.line = line();
  std::vector<std::string> parts = nameParts(3);
  result.object = std::move(parts.back());
  if (parts.size() > 1) result.owner = std::move(parts[parts.size() - 2]);
  if (parts.size() > 2) result.database = std::move(parts[0]);
  if (result.object.starts_with("##")) unsupported("global temporary table " + shortened(result.object));
  if (result.object.starts_with('#')) result.database = temporaryDatabase;
  return result;
}

ObjectName SqlParser::tableName() {
  if (!isKind(TokenKind::Variable)) return objectName();
  ObjectName result;
  result.line = line();
  result.database = temporaryDatabase;
  result.object = variable();
  return result;
}

std::vector<std::string> SqlParser::bracketedNames() {
  std::vector<std::string> names;
  expectSymbol('(');
  do names.push_back(name());
  while (acceptSymbol(','));
  expectSymbol(')');
  return names;
}

std::int64_t SqlParser::integer() {
  bool negative = acceptSymbol('-');
  if (!negative) acceptSymbol('+');
  if (!isIntegerLiteral()) syntaxError();
  markStructural(pos_, pos_ + 1);
  std::int64_t value = std::stoll(tokens_[pos_++].value());
  return negative ? -value : value;
}

void SqlParser::skipBrackets() {
  if (!isSymbol('(')) syntaxError();
  if (closing_[pos_] < 0) {
    pos_ = tokens_.size() - 1;
    syntaxError();
  }
  markStructural(pos_, static_cast<std::size_t>(closing_[pos_]));
  pos_ = static_cast<std::size_t>(closing_[pos_]) + 1;
}

std::string SqlParser::sourceSince(std::size_t first) const {
  if (first >= pos_) return {};
  const Token& last = tokens_[pos_ - 1];
  std::size_t begin = tokens_[first].offset;
  return std::string(text_.substr(begin, last.offset + last.source.size() - begin));
}

void SqlParser::markStructural(std::size_t first, std::size_t last) {
  for (int i = ordinals_[first]; i < ordinals_[last]; ++i) structural_.push_back(i);
}

// What SQL Server knows and the parser does not trips it somewhere in its words: it is told by its name.
void SqlParser::nameMissing(std::size_t at) const {
  struct Construct {
    std::array<std::string_view, 3> words;
    std::string_view name;
  };
  static constexpr Construct constructs[] = {
      {{"WITHIN", "GROUP"}, "WITHIN GROUP"},
      {{"GROUPING", "SETS"}, "GROUPING SETS"},
      {{"IS", "DISTINCT", "FROM"}, "IS DISTINCT FROM"},
      {{"NOT", "DISTINCT", "FROM"}, "IS NOT DISTINCT FROM"},
      {{"AT", "TIME", "ZONE"}, "AT TIME ZONE"},
      {{"DISABLE", "TRIGGER"}, "DISABLE TRIGGER"},
      {{"ENABLE", "TRIGGER"}, "ENABLE TRIGGER"},
      {{"EXECUTE", "AS"}, "EXECUTE AS"},
      {{"EXEC", "AS"}, "EXECUTE AS"},
      {{"IF", "EXISTS"}, "DROP IF EXISTS"},
      {{"ADD", "SIGNATURE"}, "ADD SIGNATURE"},
      {{"SPARSE"}, "SPARSE"},
      {{"LINENO"}, "LINENO"},
      {{"DUMP"}, "DUMP"},
      {{"LOAD"}, "LOAD"},
  };
  constexpr std::size_t wordsBehind = 2;
  for (const Construct& construct : constructs)
    for (std::size_t first = at - std::min(at, wordsBehind); first <= at; ++first) {
      const auto here = [&](std::size_t i) {
        return construct.words[i].empty() ||
               (first + i < tokens_.size() && equalsKeyword(tokens_[first + i].source, construct.words[i]));
      };
      if (here(0) && here(1) && here(2)) unsupported(construct.name);
    }
}

// At the end of the batch SQL Server names the last token that it read.
void SqlParser::syntaxError(std::size_t ahead) const {
  std::size_t at = std::min(pos_ + ahead, tokens_.size() - 1);
  nameMissing(at);
  bool end = tokens_[at].kind == TokenKind::End;
  if (end && at > 0) --at;
  const Token& t = tokens_[at];
  std::string near = shortened(t.value());
  if (!end && t.kind == TokenKind::Word && reserved_[at])
    failAt(t.line, 156, "Incorrect syntax near the keyword '" + near + "'.");
  failAt(t.line, 102, "Incorrect syntax near '" + near + "'.");
}

void SqlParser::fail(int number, const std::string& text) const {
  failAt(line(), number, text);
}

void SqlParser::unsupported(std::string_view construct) const {
  fail(50000, "'" + std::string(construct) + "' is not supported by the embedded server.");
}

// ---- statements ----

StatementPtr SqlParser::statement() {
  using Parse = StatementPtr (SqlParser::*)();
  static constexpr std::pair<std::string_view, Parse> kinds[] = {
      {"SELECT", &SqlParser::selectNode},
      {"INSERT", &SqlParser::insertStatement},
      {"UPDATE", &SqlParser::updateStatement},
      {"DELETE", &SqlParser::deleteStatement},
      {"TRUNCATE", &SqlParser::truncateStatement},
      {"CREATE", &SqlParser::createStatement},
      {"ALTER", &SqlParser::alterStatement},
      {"DROP", &SqlParser::dropStatement},
      {"DECLARE", &SqlParser::declareStatement},
      {"SET", &SqlParser::setStatement},
      {"IF", &SqlParser::ifStatement},
      {"WHILE", &SqlParser::whileStatement},
      {"BEGIN", &SqlParser::beginStatement},
      {"BREAK", &SqlParser::breakStatement},
      {"CONTINUE", &SqlParser::continueStatement},
      {"RETURN", &SqlParser::returnStatement},
      {"PRINT", &SqlParser::printStatement},
      {"RAISERROR", &SqlParser::raiserrorStatement},
      {"THROW", &SqlParser::throwStatement},
      {"COMMIT", &SqlParser::commitStatement},
      {"ROLLBACK", &SqlParser::rollbackStatement},
      {"SAVE", &SqlParser::saveStatement},
      {"USE", &SqlParser::useStatement},
      {"DBCC", &SqlParser::dbccStatement},
      {"KILL", &SqlParser::killStatement},
      {"EXEC", &SqlParser::execStatement},
      {"EXECUTE", &SqlParser::execStatement},
      {"WITH", &SqlParser::commonTableStatement},
  };
  for (const auto& [word, parse] : kinds)
    if (isWord(word)) return (this->*parse)();
  if (isSymbol('(') && opensQuery()) return selectNode();
  return unsupportedStatement();
}

StatementPtr SqlParser::unsupportedStatement() {
  static constexpr std::string_view words[] = {
      "BACKUP", "BULK",   "CHECKPOINT", "CLOSE",    "DEALLOCATE", "DENY",        "FETCH",
      "GOTO",   "GRANT",  "MERGE",      "OPEN",     "READTEXT",   "RECONFIGURE", "RESTORE",
      "REVERT", "REVOKE", "SETUSER",    "SHUTDOWN", "UPDATETEXT", "WAITFOR",     "WRITETEXT"};
  for (std::string_view word : words)
    if (isWord(word)) unsupported(word);
  if (isName() && isSymbol(':', 1)) unsupported("GOTO");
  syntaxError();
}

void SqlParser::statements(std::vector<StatementPtr>& list, bool untilEnd) {
  for (;;) {
    bool separated = list.empty();
    while (acceptSymbol(';')) separated = true;
    if (atEnd() || (untilEnd && isWord("END"))) return;
    if (!separated && isWord("THROW")) syntaxError();  // the one statement that needs a semicolon before it
    if (!separated && isWord("WITH"))
      fail(319,
           "Incorrect syntax near the keyword 'with'. If this statement is a common table expression, an "
           "xmlnamespaces clause or a change tracking context clause, the previous statement must be "
           "terminated with a semicolon.");
    list.push_back(statement());
  }
}

StatementPtr SqlParser::nestedStatement() {
  Nesting nesting(*this, Heavy);
  return statement();
}

Batch SqlParser::batch() {
  Batch result;
  while (acceptSymbol(';')) {
  }
  if (isName() && !isSymbol(':', 1) && !isWord("THROW")) result.statements.push_back(procedureCall());
  statements(result.statements, false);
  std::ranges::sort(structural_);
  structural_.erase(std::unique(structural_.begin(), structural_.end()), structural_.end());
  result.structural = std::move(structural_);
  result.literalCount = ordinals_.back();
  return result;
}

ExprPtr SqlParser::singleExpression() {
  ExprPtr result = expression();
  if (!atEnd()) syntaxError();
  return result;
}

ExprPtr SqlParser::singleCondition() {
  ExprPtr result = condition();
  if (!atEnd()) syntaxError();
  return result;
}

Batch parseTokens(std::string_view text, const std::vector<Token>& tokens) {
  return SqlParser(text, tokens).batch();
}

Batch parseBatch(std::string_view text) {
  return parseTokens(text, tokenize(text));
}

ExprPtr parseExpression(std::string_view text) {
  std::vector<Token> tokens = tokenize(text);
  return SqlParser(text, tokens).singleExpression();
}

ExprPtr parseCondition(std::string_view text) {
  std::vector<Token> tokens = tokenize(text);
  return SqlParser(text, tokens).singleCondition();
}

}  // namespace engine
