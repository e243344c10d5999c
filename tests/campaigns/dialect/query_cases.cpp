#include "campaigns/dialect/query_cases.h"

#include <algorithm>

#include "campaigns/dialect/chance.h"
#include "campaigns/dialect/query.h"

namespace campaign {
namespace {

using TermPtr = std::unique_ptr<Term>;
using OriginPtr = std::unique_ptr<Origin>;
using QueryPtr = std::unique_ptr<Query>;

struct Name {
  int source, column;
  std::string word;
};
using Names = std::vector<Name>;

constexpr long variableValues[] = {1, 0};

class Maker {
 public:
  Maker(Chance& chance, const std::vector<SmallTable>& tables) : chance_(chance), tables_(tables) {}

  QueryPtr top() { return query({}, 3, chance_.between(1, 3), true); }

 private:
  // What an expression may name and hold.
  struct Context {
    Names names;
    const Names* aggregated =
        nullptr;             // columns that aggregates are over, in a grouped query's list or HAVING
    Query* outer = nullptr;  // the grouped query around, whose aggregates may be named
    const Names* outerNames = nullptr;
    int depth = 0;  // of subqueries that may still come
  };

  QueryPtr query(const Names& outside, int depth, int width, bool mayUnite, const Context* around = nullptr) {
    auto out = std::make_unique<Query>();
    Names own;
    const int origins = depth >= 2 && chance_.oneIn(4) ? 2 : 1;
    for (int i = 0; i < origins; ++i)
      out->from.push_back(origin(outside, own, depth, depth >= 2 ? (origins > 1 ? 2 : 4) : 2));
    Context context;
    context.names = outside;
    context.names.insert(context.names.end(), own.begin(), own.end());
    context.depth = depth - 1;
    if (around) {
      context.outer = around->outer;
      context.outerNames = around->outerNames;
    }
    if (!chance_.oneIn(3)) out->where = condition(context, 2);
    out->grouped = chance_.oneIn(3);
    if (out->grouped) {
      makeGroups(*out, own, outside, width, depth);
    } else {
      for (int i = 0; i < width; ++i) out->items.push_back(number(context, 1));
    }
    out->distinct = chance_.oneIn(7);
    if (mayUnite && chance_.oneIn(8)) {
      out->setWord = chance_.oneIn(2) ? "UNION" : "UNION ALL";
      out->second = query(outside, std::min(depth, 2), width, false);
    }
    return out;
  }

  void makeGroups(Query& out, const Names& own, const Names& outside, int width, int depth) {
    Context context;
    context.names = outside;
    context.aggregated = &own;
    context.depth = depth - 1;
    for (int i = chance_.below(3); i > 0; --i) {
      const Name& name = chance_.of(own);
      if (std::any_of(out.groups.begin(), out.groups.end(), [&](const TermPtr& group) {
            return group->source == name.source && group->column == name.column;
          }))
        continue;
      out.groups.push_back(column(name));
      context.names.push_back(name);
    }
    context.outer = &out;
    context.outerNames = &own;
    for (int i = 0; i < width; ++i)
      out.items.push_back(i == 0 && out.groups.empty() ? aggregate(own) : number(context, 1));
    if (chance_.oneIn(2)) out.having = condition(context, 1);
  }

  OriginPtr origin(const Names& outside, Names& own, int depth, int most) {
    if (most >= 2 && !chance_.oneIn(3)) {
      auto out = std::make_unique<Origin>();
      out->kind = Origin::Kind::Join;
      static constexpr const char* words[] = {"JOIN",       "JOIN",      "LEFT JOIN",
                                              "RIGHT JOIN", "FULL JOIN", "CROSS JOIN"};
      out->join = chance_.of(words);
      Names mine;
      const bool leans = !chance_.oneIn(4);
      out->left = origin(outside, mine, depth, leans ? most - 1 : 1);
      out->right = origin(outside, mine, depth, leans ? 1 : most - 1);
      if (out->join != "CROSS JOIN") {
        Context context;
        context.names = mine;
        // Columns of a query around are as constant as a variable is.
        if (!outside.empty() && chance_.oneIn(2)) context.names.push_back(chance_.of(outside));
        context.depth = chance_.oneIn(8) ? depth - 2 : 0;
        const int what = chance_.below(3);
        out->on = what == 0   ? joinTest(mine)
                  : what == 1 ? both(joinTest(mine), constantTest(outside))
                              : condition(context, 2);
      }
      own.insert(own.end(), mine.begin(), mine.end());
      return out;
    }
    auto out = std::make_unique<Origin>();
    out->source = ++sources_;
    if (depth >= 2 && chance_.oneIn(6)) {
      const int width = chance_.between(1, 2);
      out->kind = Origin::Kind::Derived;
      out->query = query(outside, depth - 1, width, true);
      for (int i = 0; i < width; ++i) own.push_back({out->source, i, "c" + std::to_string(i)});
      return out;
    }
    out->table = &chance_.of(tables_);
    for (int i = 0; i < out->table->columns; ++i)
      own.push_back({out->source, i, std::string(1, static_cast<char>('A' + i))});
    return out;
  }

  TermPtr joinTest(const Names& names) {
    return compare("=", column(names.front()), column(chance_.of(names)));
  }

  // A test without a column of the join.
  TermPtr constantTest(const Names& outside) {
    static constexpr const char* words[] = {"=", "<>", "<", ">="};
    TermPtr left = chance_.oneIn(2) ? variable() : constant();
    if (!outside.empty() && chance_.oneIn(2)) left = column(chance_.of(outside));
    return compare(chance_.of(words), std::move(left), chance_.oneIn(2) ? constant() : variable());
  }

  TermPtr both(TermPtr a, TermPtr b) {
    TermPtr out = make(chance_.oneIn(4) ? Term::Kind::Or : Term::Kind::And);
    if (chance_.oneIn(2)) std::swap(a, b);
    out->parts.push_back(std::move(a));
    out->parts.push_back(std::move(b));
    return out;
  }

  TermPtr make(Term::Kind kind) {
    auto out = std::make_unique<Term>();
    out->kind = kind;
    return out;
  }
  TermPtr column(const Name& name) {
    TermPtr out = make(Term::Kind::Column);
    out->source = name.source;
    out->column = name.column;
    out->word = name.word;
    return out;
  }
  TermPtr constant() {
    TermPtr out = make(Term::Kind::Constant);
    out->value = chance_.below(4);
    return out;
  }
  TermPtr variable() {
    TermPtr out = make(Term::Kind::Variable);
    const int which = chance_.below(2);
    out->word = which == 0 ? "@p" : "@q";
    out->value = variableValues[which];
    return out;
  }
  TermPtr compare(const std::string& word, TermPtr a, TermPtr b) {
    TermPtr out = make(Term::Kind::Compare);
    out->word = word;
    out->parts.push_back(std::move(a));
    out->parts.push_back(std::move(b));
    return out;
  }
  TermPtr aggregate(const Names& names) {
    static constexpr const char* words[] = {"COUNT", "COUNT", "SUM", "MIN", "MAX"};
    TermPtr out = make(Term::Kind::Aggregate);
    out->word = chance_.of(words);
    if (out->word == "COUNT" && chance_.oneIn(2)) return out;
    out->distinct = chance_.oneIn(4);
    out->parts.push_back(column(chance_.of(names)));
    return out;
  }
  // One row, so that it is a value.
  QueryPtr single(const Context& context) {
    Names own;
    auto out = std::make_unique<Query>();
    out->from.push_back(origin(context.names, own, context.depth, 2));
    Context inside = context;
    inside.aggregated = nullptr;
    inside.depth = context.depth - 1;
    inside.names.insert(inside.names.end(), own.begin(), own.end());
    if (!chance_.oneIn(3)) out->where = condition(inside, 1);
    out->grouped = true;
    out->items.push_back(aggregate(own));
    return out;
  }

  TermPtr number(const Context& context, int depth) {
    const int what = chance_.below(12);
    if (context.aggregated && what < 5) return aggregate(*context.aggregated);
    if (!context.aggregated && context.outer && what == 0) {
      TermPtr out = aggregate(*context.outerNames);
      if (!out->parts.empty()) {
        out->kind = Term::Kind::OuterAggregate;
        context.outer->outerAggregates.push_back(out.get());
        return out;
      }
    }
    if (what == 5) return constant();
    if (what == 6) return variable();
    if (what == 7 && depth > 0) {
      TermPtr out = make(Term::Kind::Add);
      out->parts.push_back(number(context, depth - 1));
      out->parts.push_back(number(context, depth - 1));
      return out;
    }
    if (what == 8 && depth > 0) {
      TermPtr out = make(Term::Kind::Choose);
      out->parts.push_back(condition(context, 0));
      out->parts.push_back(number(context, 0));
      out->parts.push_back(number(context, 0));
      return out;
    }
    if (what == 9 && context.depth > 0) {
      TermPtr out = make(Term::Kind::Scalar);
      out->query = single(context);
      return out;
    }
    return context.names.empty() ? constant() : column(chance_.of(context.names));
  }

  TermPtr subqueryTest(const Context& context) {
    static constexpr Term::Kind kinds[] = {Term::Kind::Exists, Term::Kind::InQuery, Term::Kind::Any,
                                           Term::Kind::All};
    static constexpr const char* words[] = {"=", "<>", "<", ">="};
    TermPtr out = make(chance_.of(kinds));
    out->word = chance_.of(words);
    out->negated = out->kind <= Term::Kind::InQuery && chance_.oneIn(3);
    if (out->kind != Term::Kind::Exists) out->parts.push_back(number(context, 0));
    out->query = query(context.names, context.depth, 1, false, &context);
    return out;
  }

  TermPtr condition(const Context& context, int depth) {
    const int what = chance_.below(14);
    if (depth > 0 && what < 4) return both(condition(context, depth - 1), condition(context, depth - 1));
    if (depth > 0 && what == 4) {
      TermPtr out = make(Term::Kind::Not);
      out->parts.push_back(condition(context, depth - 1));
      return out;
    }
    if (context.depth > 0 && what < 8) return subqueryTest(context);
    if (what == 8) {
      TermPtr out = make(Term::Kind::IsNull);
      out->negated = chance_.oneIn(2);
      out->parts.push_back(number(context, 0));
      return out;
    }
    if (what == 9) {
      TermPtr out = make(Term::Kind::InList);
      out->negated = chance_.oneIn(3);
      for (int i = 0; i < 3; ++i) out->parts.push_back(number(context, 0));
      return out;
    }
    static constexpr const char* words[] = {"=", "=", "<>", "<", ">="};
    return compare(chance_.of(words), number(context, 1), number(context, 0));
  }

  Chance& chance_;
  const std::vector<SmallTable>& tables_;
  int sources_ = 0;
};

std::vector<SmallTable> tablesOf(Chance& chance) {
  static constexpr const char* extras[] = {"", "", "CREATE INDEX I ON %(A)", "CREATE INDEX I ON %(B,A)",
                                           "CREATE CLUSTERED INDEX I ON %(A,B)"};
  std::vector<SmallTable> out;
  for (const char* name : {"x", "y", "z"}) {
    SmallTable table;
    table.name = name;
    table.columns = chance.between(2, 3);
    const int rows = chance.below(5);
    for (int i = 0; i < rows; ++i) {
      Row& row = table.rows.emplace_back();
      for (int j = 0; j < table.columns; ++j) row.push_back(chance.oneIn(5) ? Cell{} : Cell{chance.below(4)});
    }
    table.extra = chance.of(extras);
    if (const auto at = table.extra.find('%'); at != std::string::npos) table.extra.replace(at, 1, name);
    out.push_back(std::move(table));
  }
  return out;
}

std::string shown(const Cell& cell) {
  return cell ? std::to_string(*cell) : "NULL";
}

std::string create(const SmallTable& table) {
  std::string sql = "CREATE TABLE " + table.name + " (";
  for (int i = 0; i < table.columns; ++i)
    sql += std::string(i ? ", " : "") + static_cast<char>('A' + i) + " INT";
  sql += ") ";
  for (const Row& row : table.rows) {
    sql += "INSERT INTO " + table.name + " VALUES (";
    for (std::size_t i = 0; i < row.size(); ++i) sql += (i ? "," : "") + shown(row[i]);
    sql += ") ";
  }
  return sql + table.extra + " ";
}

std::string text(const Rows& rows) {
  std::string out;
  for (const Row& row : rows) {
    for (std::size_t i = 0; i < row.size(); ++i) out += (i ? " " : "") + shown(row[i]);
    out += '\n';
  }
  return out;
}

// Every row in the order of its cells, NULL first: by ORDER BY, and without it by sorting here.
void judge(Chance& chance, Runner& runner, Report& report, const Query& query, const std::string& tables) {
  Rows expected = evaluate(query, {});
  std::sort(expected.begin(), expected.end());
  std::string sql = query.sql();
  const bool ordered = chance.oneIn(3);
  if (ordered) {
    for (std::size_t i = 0; i < query.items.size(); ++i)
      sql += (i ? "," : " ORDER BY ") + std::to_string(i + 1);
    if (!query.second && !query.distinct && chance.oneIn(2)) {
      const int most = chance.below(4);
      sql.replace(0, 6, "SELECT TOP " + std::to_string(most));
      if (expected.size() > static_cast<std::size_t>(most)) expected.resize(static_cast<std::size_t>(most));
    }
  }
  Result found = runner.run("DECLARE @p INT, @q INT SELECT @p=1, @q=0 " + sql);
  ++report.cases;
  if (!found.error && !ordered) {
    Rows rows;
    for (const auto& cells : found.rows) {
      Row& row = rows.emplace_back();
      for (const auto& cell : cells) row.push_back(cell == "NULL" ? Cell{} : Cell{std::stol(cell)});
    }
    std::sort(rows.begin(), rows.end());
    if (rows == expected) return;
  }
  if (found.text() == text(expected)) return;
  report.differ(tables + "\n  " + sql, text(expected), found.text() + found.message);
}

}  // namespace

Report runQueries(std::uint64_t seed, std::int64_t statements) {
  constexpr int queriesOfTables = 40;
  Chance chance(seed);
  Runner runner;
  Report report;
  while (report.cases < statements && !report.full()) {
    const auto tables = tablesOf(chance);
    std::string sql;
    for (const SmallTable& table : tables) sql += create(table);
    if (const Result made = runner.run(sql); made.error) report.differ(sql, "tables", made.message);
    for (int i = 0; i < queriesOfTables && !report.full(); ++i)
      judge(chance, runner, report, *Maker(chance, tables).top(), sql);
    runner.run("DROP TABLE x DROP TABLE y DROP TABLE z");
  }
  return report;
}

}  // namespace campaign
