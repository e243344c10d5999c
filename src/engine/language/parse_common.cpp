// Common table expressions: WITH name (columns) AS (query), .. before SELECT, INSERT, UPDATE and DELETE.
#include <algorithm>

#include "engine/language/keywords.h"
#include "engine/language/sql_parser.h"

namespace engine {
namespace {

// Where a query names the table that it is to define.
class References {
 public:
  explicit References(std::string upperName) : name_(std::move(upperName)) {}

  // In FROM itself, joins included.
  int direct(const SelectCore& core) const {
    int count = 0;
    for (const auto& source : core.from) count += direct(*source);
    return count;
  }
  // In the queries of FROM and in those of expressions.
  bool nested(const SelectCore& core) const {
    const auto in = [this](const ExprPtr& expr) { return expr && inside(*expr); };
    return std::ranges::any_of(core.from, [this](const auto& source) { return nested(*source); }) ||
           std::ranges::any_of(core.items, [&](const SelectItem& item) { return in(item.expr); }) ||
           in(core.where) || std::ranges::any_of(core.groupBy, in) || in(core.having) || in(core.top);
  }

 private:
  bool anywhere(const SelectStatement& select) const {
    return std::ranges::any_of(select.cores,
                               [this](const SelectCore& core) { return direct(core) > 0 || nested(core); }) ||
           std::ranges::any_of(select.orderBy, [this](const OrderItem& item) { return inside(*item.expr); });
  }
  int direct(const TableSource& source) const {
    if (source.kind == TableSource::Kind::Join) return direct(*source.left) + direct(*source.right);
    return source.kind == TableSource::Kind::Table && source.name.owner.empty() &&
           source.name.database.empty() && equalsKeyword(source.name.object, name_);
  }
  bool nested(const TableSource& source) const {
    if (source.kind == TableSource::Kind::Derived) return anywhere(*source.select);
    if (source.kind != TableSource::Kind::Join) return false;
    return (source.on && inside(*source.on)) || nested(*source.left) || nested(*source.right);
  }
  bool inside(const Expr& expr) const {
    const auto in = [this](const ExprPtr& each) { return each && inside(*each); };
    if (expr.select && anywhere(*expr.select)) return true;
    return in(expr.left) || in(expr.right) || std::ranges::any_of(expr.args, in) ||
           std::ranges::any_of(expr.whens,
                               [&](const WhenClause& when) { return in(when.when) || in(when.then); });
  }

  const std::string name_;
};

bool hasOuterJoin(const TableSource& source) {
  if (source.kind != TableSource::Kind::Join) return false;
  return source.join == JoinKind::Left || source.join == JoinKind::Right || source.join == JoinKind::Full ||
         hasOuterJoin(*source.left) || hasOuterJoin(*source.right);
}

bool hasWindow(const Expr& expr) {
  const auto in = [](const ExprPtr& each) { return each && hasWindow(*each); };
  if (expr.kind == Expr::Kind::Window) return true;
  return in(expr.left) || in(expr.right) || std::ranges::any_of(expr.args, in) ||
         std::ranges::any_of(expr.whens,
                             [&](const WhenClause& when) { return in(when.when) || in(when.then); });
}

// What may not stand in the recursive part, by SQL Server's numbers.
struct Refusal {
  int number;
  const char* text;
};

std::optional<Refusal> refusal(const SelectCore& core) {
  if (core.distinct) return Refusal{460, "DISTINCT operator is not allowed in"};
  if (core.top) return Refusal{461, "The TOP or OFFSET operator is not allowed in"};
  if (std::ranges::any_of(core.from, [](const auto& source) { return hasOuterJoin(*source); }))
    return Refusal{462, "Outer join is not allowed in"};
  if (!core.groupBy.empty() || core.having)
    return Refusal{467, "GROUP BY, HAVING, or aggregate functions are not allowed in"};
  return std::nullopt;
}

}  // namespace

StatementPtr SqlParser::commonTableStatement() {
  std::vector<CommonTable> with = commonTables();
  const int atLine = line();
  StatementPtr result;
  if (isWord("SELECT") || (isSymbol('(') && opensQuery())) {
    result = selectNode();
    std::get<SelectPtr>(result->node)->with = std::move(with);
  } else if (isWord("INSERT")) {
    result = insertStatement();
    std::get<InsertStatement>(result->node).with = std::move(with);
  } else if (isWord("UPDATE")) {
    result = updateStatement();
    std::get<UpdateStatement>(result->node).with = std::move(with);
  } else if (isWord("DELETE")) {
    result = deleteStatement();
    std::get<DeleteStatement>(result->node).with = std::move(with);
  } else if (isWord("MERGE")) {
    unsupported("MERGE");
  } else {
    syntaxError();
  }
  result->line = atLine;
  return result;
}

std::vector<CommonTable> SqlParser::commonTables() {
  expect("WITH");
  for (const std::string_view word : {"XMLNAMESPACES", "CHANGE_TRACKING_CONTEXT"})
    if (isWord(word) && isSymbol('(', 1)) unsupported("WITH " + std::string(word));
  std::vector<CommonTable> with;
  do {
    with.push_back(commonTable());
    const std::string name = upperAscii(with.back().name);
    for (std::size_t i = 0; i + 1 < with.size(); ++i)
      if (upperAscii(with[i].name) == name)
        fail(239, "Duplicate common table expression name '" + with.back().name + "' was specified.");
  } while (acceptSymbol(','));
  return with;
}

CommonTable SqlParser::commonTable() {
  CommonTable table;
  table.name = name();
  if (isSymbol('(')) table.columns = bracketedNames();
  expect("AS");
  if (isSymbol('(') && isWord("WITH", 1)) syntaxError(1);
  table.select = subquery();
  splitRecursion(table);
  return table;
}

// The members that name the table itself come last, each behind UNION ALL.
void SqlParser::splitRecursion(CommonTable& table) {
  const References references(upperAscii(table.name));
  std::vector<SelectCore>& cores = table.select->cores;
  std::vector<SetOp>& ops = table.select->setOps;
  const auto isRecursive = [&](const SelectCore& core) {
    return references.direct(core) > 0 || references.nested(core);
  };
  const auto first = std::ranges::find_if(cores, isRecursive);
  if (first == cores.end()) return;
  const auto anchors = static_cast<std::size_t>(first - cores.begin());
  const std::string quoted = " '" + table.name + "'";
  if (cores.size() == 1)
    fail(252,
         "Recursive common table expression" + quoted + " does not contain a top-level UNION ALL operator.");
  if (anchors == 0) fail(246, "No anchor member was specified for recursive query \"" + table.name + "\".");
  for (std::size_t i = anchors; i < cores.size(); ++i) {
    if (ops[i - 1] != SetOp::UnionAll)
      fail(252, "Recursive common table expression" + quoted +
                    " does not contain a top-level UNION ALL operator.");
    if (!isRecursive(cores[i]))
      fail(247,
           "An anchor member was found in the recursive part of recursive query \"" + table.name + "\".");
    if (references.nested(cores[i])) fail(465, "Recursive references are not allowed in subqueries.");
    if (references.direct(cores[i]) > 1)
      fail(253,
           "Recursive member of a common table expression" + quoted + " has multiple recursive references.");
    if (const auto refused = refusal(cores[i]))
      fail(refused->number, refused->text +
                                std::string(" the recursive part of a recursive common table expression") +
                                quoted + ".");
    for (const SelectItem& item : cores[i].items)
      if (hasWindow(*item.expr)) unsupported("OVER in the recursive part of a common table expression");
  }
  if (!table.select->orderBy.empty())
    fail(1033,
         "The ORDER BY clause is invalid in views, inline functions, derived tables, subqueries, and common "
         "table expressions, unless TOP or FOR XML is also specified.");
  table.recursive = std::make_unique<SelectStatement>();
  table.recursive->height = table.select->height;
  std::move(first, cores.end(), std::back_inserter(table.recursive->cores));
  table.recursive->setOps.assign(table.recursive->cores.size() - 1, SetOp::UnionAll);
  cores.erase(first, cores.end());
  ops.resize(anchors - 1);
}

}  // namespace engine
