// FROM: tables, derived tables and joins.
#include <algorithm>

#include "engine/language/keywords.h"
#include "engine/language/sql_parser.h"

namespace engine {
namespace {

constexpr int maxTables = 256;  // joined in one query

constexpr std::string_view hintWords[] = {
    "NOLOCK",   "READUNCOMMITTED", "READCOMMITTED", "REPEATABLEREAD", "SERIALIZABLE", "HOLDLOCK",
    "ROWLOCK",  "PAGLOCK",         "TABLOCK",       "TABLOCKX",       "UPDLOCK",      "XLOCK",
    "READPAST", "NOWAIT",          "INDEX",         "FASTFIRSTROW",   "NOEXPAND",     "FORCESEEK"};

constexpr std::string_view keepingHints[] = {"UPDLOCK",      "XLOCK",          "HOLDLOCK",
                                             "SERIALIZABLE", "REPEATABLEREAD", "TABLOCKX"};

}  // namespace

SqlParser::Sources SqlParser::sources() {
  Sources list;
  do list.push_back(joined());
  while (acceptSymbol(','));
  return list;
}

std::unique_ptr<TableSource> SqlParser::joined() {
  return joinTail(source(), false);
}

bool SqlParser::startsJoin() const {
  return isAnyWord({"JOIN", "INNER", "CROSS"}) ||
         (isAnyWord({"LEFT", "RIGHT", "FULL"}) && isAnyWord({"JOIN", "OUTER", "HASH", "LOOP", "MERGE"}, 1)) ||
         (isWord("OUTER") && isWord("APPLY", 1));
}

bool SqlParser::joinKind(JoinKind& kind) {
  if (!startsJoin()) return false;
  if (isAnyWord({"CROSS", "OUTER"}) && isWord("APPLY", 1)) unsupported("APPLY");
  static constexpr std::pair<std::string_view, JoinKind> kinds[] = {{"INNER", JoinKind::Inner},
                                                                    {"LEFT", JoinKind::Left},
                                                                    {"RIGHT", JoinKind::Right},
                                                                    {"FULL", JoinKind::Full},
                                                                    {"CROSS", JoinKind::Cross}};
  kind = JoinKind::Inner;
  for (const auto& [word, found] : kinds) {
    if (!accept(word)) continue;
    kind = found;
    break;
  }
  if (kind == JoinKind::Left || kind == JoinKind::Right || kind == JoinKind::Full) accept("OUTER");
  if (isAnyWord({"HASH", "LOOP", "MERGE", "REMOTE"})) ++pos_;
  expect("JOIN");
  return true;
}

// Joins from left to right; `a JOIN b JOIN c ON .. ON ..` takes the joins before an ON into the right side.
std::unique_ptr<TableSource> SqlParser::joinTail(std::unique_ptr<TableSource> left, bool untilOn) {
  Nesting nesting(*this, Light);
  int count = 1;
  while (!(untilOn && isWord("ON"))) {
    JoinKind kind;
    int joinLine = line();
    if (!joinKind(kind)) break;
    if (++count > maxTables) fail(106, "Too many table names in the query. The maximum allowable is 256.");
    auto join = std::make_unique<TableSource>();
    join->kind = TableSource::Kind::Join;
    join->line = joinLine;
    join->join = kind;
    join->left = std::move(left);
    join->right = source();
    if (kind != JoinKind::Cross) {
      if (!isWord("ON")) join->right = joinTail(std::move(join->right), true);
      expect("ON");
      join->on = condition();
    }
    left = std::move(join);
  }
  return left;
}

std::unique_ptr<TableSource> SqlParser::source() {
  std::unique_ptr<TableSource> result = isSymbol('(') ? bracketedSource() : tableSource();
  if (isAnyWord({"PIVOT", "UNPIVOT", "TABLESAMPLE"})) unsupported(upperAscii(token().source));
  return result;
}

// A derived table, or a join in brackets. With several brackets before SELECT it is a query when the inner
// one ends at a bracket or a UNION, a join when an alias follows.
std::unique_ptr<TableSource> SqlParser::bracketedSource() {
  if (isWord("VALUES", 1)) unsupported("VALUES as a table");
  bool query = isWord("SELECT", 1);
  if (!query && opensQuery()) {
    std::size_t inner = static_cast<std::size_t>(closing_[pos_ + 1]);
    query = closing_[pos_ + 1] > 0 && isAnyWord({"UNION", "EXCEPT", "INTERSECT", "ORDER"}, inner + 1 - pos_);
    query = query || (closing_[pos_ + 1] > 0 && isSymbol(')', inner + 1 - pos_));
  }
  if (!query) {
    Nesting nesting(*this, Heavy);
    expectSymbol('(');
    std::unique_ptr<TableSource> join = joined();
    expectSymbol(')');
    return join;
  }
  auto result = std::make_unique<TableSource>();
  result->kind = TableSource::Kind::Derived;
  result->line = line();
  result->select = subquery();
  accept("AS");
  result->alias = name();
  if (isSymbol('(')) result->columnAliases = bracketedNames();
  return result;
}

std::unique_ptr<TableSource> SqlParser::tableSource() {
  if (isAnyWord({"OPENQUERY", "OPENROWSET", "OPENXML", "OPENDATASOURCE", "CONTAINSTABLE", "FREETEXTTABLE"}))
    unsupported(upperAscii(token().source));
  auto result = std::make_unique<TableSource>();
  result->line = line();
  result->name = tableName();
  result->keepsLock = tableHints();
  if (isSymbol('(')) unsupported("table-valued function " + result->name.object);
  if (accept("AS") || isName()) result->alias = name();
  result->keepsLock = tableHints() || result->keepsLock;
  return result;
}

// WITH (NOLOCK), (NOLOCK): locking is the storage's own affair. True: what is read is to stay as it is until
// the transaction ends.
bool SqlParser::tableHints() {
  std::size_t open = isWord("WITH") ? 1 : 0;
  if (!isSymbol('(', open)) return false;
  for (std::string_view hint : hintWords) {
    if (!isWord(hint, open + 1)) continue;
    const std::size_t first = pos_ += open;
    skipBrackets();
    return std::any_of(tokens_.begin() + static_cast<std::ptrdiff_t>(first),
                       tokens_.begin() + static_cast<std::ptrdiff_t>(pos_), [](const Token& word) {
                         const std::string upper = upperAscii(word.source);
                         return std::find(std::begin(keepingHints), std::end(keepingHints), upper) !=
                                std::end(keepingHints);
                       });
  }
  if (open == 1) syntaxError(2);
  return false;
}

}  // namespace engine
