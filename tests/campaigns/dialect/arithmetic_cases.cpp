#include "campaigns/dialect/exact_cases.h"
#include "campaigns/dialect/expression.h"

namespace campaign {
namespace {

constexpr int rowsOfTable = 12, expressionsOfTable = 8;

struct Table {
  Names names;
  std::vector<std::vector<Value>> rows;  // each with its ID in front
  std::string declarations;              // DECLARE and SET of the variables

  std::string create() const {
    std::string sql = "CREATE TABLE T (ID INT";
    for (std::size_t i = 0; i < names.columns.size(); ++i)
      sql += ", C" + std::to_string(i) + " " + names.columns[i].sql() + " NULL";
    sql += ") ";
    for (const auto& row : rows) {
      sql += "INSERT INTO T VALUES (" + row[0].exact.text();
      for (std::size_t i = 1; i < row.size(); ++i) sql += ", " + literalOf(row[i]);
      sql += ") ";
    }
    return sql;
  }
};

Table tableOf(Chance& chance) {
  Table out;
  const int columns = chance.between(2, 3);
  Shape number = numberShape(chance);
  for (int i = 0; i < columns; ++i) {
    out.names.columns.push_back(number);
    // The same type twice, related ones, and now and then a text.
    if (!chance.oneIn(4)) number = numberShape(chance);
  }
  if (chance.oneIn(3)) out.names.columns.back() = textShape(chance);
  const Shape like = out.names.columns.front();
  for (int i = 0; i < 2; ++i) {
    const Shape shape = chance.oneIn(5) ? textShape(chance) : numberShape(chance);
    out.names.variables.push_back(valueOf(chance, shape, like));
    const std::string name = "@V" + std::to_string(i);
    out.declarations += "DECLARE " + name + " " + shape.sql() + " SET " + name + "=" +
                        literalOf(out.names.variables.back()) + " ";
  }
  for (int id = 1; id <= rowsOfTable; ++id) {
    Value number;
    number.shape = {Kind::Int};
    number.exact = id;
    auto& row = out.rows.emplace_back(1, number);
    for (const Shape& shape : out.names.columns) row.push_back(valueOf(chance, shape, like));
  }
  return out;
}

class Judge {
 public:
  Judge(Chance& chance, Runner& runner, const Table& table, Report& report)
      : chance_(chance), runner_(runner), table_(table), report_(report) {}

  void compare(const Expression& expression) {
    const std::string sql = expression.sql();
    std::string ids, expected;
    std::vector<Value> good;
    int failing = 0;
    for (const auto& row : table_.rows) {
      const Value value = expression.value(row);
      if (value.open) continue;
      ++report_.cases;
      if (!value.errors.empty()) {
        if (failing++ < 2) expectError(sql, row[0].exact.text(), value);
        continue;
      }
      ids += (ids.empty() ? "" : ",") + row[0].exact.text();
      expected += row[0].exact.text() + " " + value.shown() + "\n";
      good.push_back(value);
    }
    if (good.empty()) return;
    expectRows(sql, "ID IN (" + ids + ")", expected, expression.shape());
    if (chance_.oneIn(4)) expectSum(sql, "ID IN (" + ids + ")", good, expression.shape());
  }

  void order(const Expression& a, const Expression& b) {
    if (a.shape().text() && b.shape().text()) return;
    // -1, 0, 1 for less, equal, more; or 0, 1 for equal and not.
    struct Form {
      const char* sql;
      bool sign;
    };
    static constexpr Form forms[] = {
        {"CASE WHEN $a<$b THEN -1 WHEN $a=$b THEN 0 WHEN $a>$b THEN 1 END", true},
        {"CASE WHEN NOT $a>=$b THEN -1 WHEN $a<>$b THEN 1 WHEN $a<=$b THEN 0 END", true},
        {"CASE WHEN $a BETWEEN $b AND $b THEN 0 WHEN $a NOT BETWEEN $b AND $b THEN 1 END", false},
        {"CASE WHEN $a IN ($b,$b) THEN 0 WHEN $a NOT IN ($b) THEN 1 END", false},
        {"CASE WHEN $a IN (SELECT $b) THEN 0 WHEN $a<>ALL(SELECT $b) THEN 1 END", false},
        {"CASE WHEN $a>ANY(SELECT $b) THEN 1 WHEN $a=ANY(SELECT $b) THEN 0 ELSE -1 END", true},
        {"CASE $a WHEN $b THEN 0 ELSE 1 END", false},
        {"CASE WHEN NULLIF($a,$b) IS NULL THEN 0 ELSE 1 END", false},
    };
    const Form& form = chance_.of(forms);
    std::string ids, expected;
    for (const auto& row : table_.rows) {
      const Value x = a.value(row), y = b.value(row);
      if (x.open || y.open || x.null || y.null || !x.errors.empty() || !y.errors.empty()) continue;
      const Value found = campaign::order(x, y);
      if (!found.errors.empty()) continue;
      ids += (ids.empty() ? "" : ",") + row[0].exact.text();
      const std::string equal = found.exact.zero() ? "0" : "1";
      expected += row[0].exact.text() + " " + (form.sign ? found.exact.text() : equal) + "\n";
      ++report_.cases;
    }
    if (ids.empty()) return;
    std::string sql = form.sql;
    for (const auto& [name, side] : {std::pair("$a", &a), std::pair("$b", &b)})
      for (auto at = sql.find(name); at != sql.npos; at = sql.find(name)) sql.replace(at, 2, side->sql());
    const Result result = run("SELECT ID, " + sql + " FROM T WHERE ID IN (" + ids + ") ORDER BY ID");
    if (result.text() != expected) differ(sql, expected, result);
  }

 private:
  void expectError(const std::string& sql, const std::string& id, const Value& value) {
    const Result result = run("SELECT " + sql + " FROM T WHERE ID=" + id);
    if (!value.errors.contains(result.error)) differ("ID " + id + ": " + sql, value.shown(), result);
  }

  void expectRows(const std::string& sql, const std::string& where, const std::string& expected,
                  const Shape& shape) {
    const Result result = run(statement(sql, where, shape));
    if (result.error) runner_.run("DROP TABLE U");
    if (result.text() != expected)
      differ(sql, expected, result);
    else if (result.columns.at(1).shape != shape)
      differ(sql, shape.sql(), result);
  }

  // The value by itself, out of a derived table, through a column of its type, chosen by itself.
  std::string statement(const std::string& sql, const std::string& where, const Shape& shape) {
    switch (chance_.below(6)) {
      case 0:
        return "SELECT ID, X FROM (SELECT ID, " + sql + " AS X FROM T WHERE " + where + ") d ORDER BY ID";
      case 1:
        return "CREATE TABLE U (K INT, X " + shape.sql() + ") INSERT INTO U SELECT ID, " + sql +
               " FROM T WHERE " + where + " SELECT K, X FROM U ORDER BY K DROP TABLE U";
      case 2:
        return "CREATE TABLE U (K INT, X " + shape.sql() + ") INSERT INTO U (K) SELECT ID FROM T WHERE " +
               where + " UPDATE U SET X=" + sql +
               " FROM U u JOIN T t ON t.ID=u.K"
               " SELECT K, X FROM U ORDER BY K DROP TABLE U";
      default:
        return "SELECT ID, " + sql + " FROM T WHERE " + where + " ORDER BY ID";
    }
  }

  void expectSum(const std::string& sql, const std::string& where, const std::vector<Value>& values,
                 const Shape& shape) {
    if (shape.kind == Kind::Float || shape.text()) return;
    static constexpr const char* names[] = {"SUM", "AVG", "MIN", "MAX", "COUNT"};
    const std::string name = chance_.of(names);
    const bool distinct = chance_.oneIn(4);
    const Value expected = aggregate(name, shape, values, distinct);
    const std::string call = name + "(" + (distinct ? "DISTINCT " : "") + sql + ")";
    const Result result = run("SELECT " + call + " FROM T WHERE " + where);
    const bool right = expected.errors.empty() ? result.text() == expected.shown() + "\n"
                                               : expected.errors.contains(result.error);
    ++report_.cases;
    if (!right) return differ(call, expected.shown(), result);
    if (!result.error && result.columns.at(0).shape != expected.shape)
      differ(call, expected.shape.sql(), result);
  }

  Result run(const std::string& sql) { return runner_.run(table_.declarations + sql); }

  void differ(const std::string& what, const std::string& expected, const Result& found) {
    std::string shapes;
    for (const Column& column : found.columns) shapes += column.type + " ";
    report_.differ(table_.declarations + "\n  " + table_.create() + "\n  " + what, expected,
                   found.text() + " " + found.message + " " + shapes);
  }

  Chance& chance_;
  Runner& runner_;
  const Table& table_;
  Report& report_;
};

}  // namespace

Report runArithmetic(std::uint64_t seed, std::int64_t cases) {
  Chance chance(seed);
  Runner runner;
  Report report;
  static constexpr int depths[] = {1, 1, 1, 2, 3};
  while (report.cases < cases && !report.full()) {
    const Table table = tableOf(chance);
    const Result made = runner.run(table.create());
    if (made.error) report.differ(table.create(), "a table", made.message);
    Judge judge(chance, runner, table, report);
    for (int i = 0; i < expressionsOfTable; ++i) {
      const bool chain = chance.oneIn(8);
      judge.compare(*(chain ? Expression::chain(chance, table.names, chance.between(2, 22))
                            : Expression::make(chance, table.names, chance.of(depths))));
      const auto left = Expression::make(chance, table.names, chance.below(2));
      judge.order(*left, *Expression::make(chance, table.names, chance.below(2)));
    }
    runner.run("DROP TABLE T");
  }
  return report;
}

}  // namespace campaign
