#include <map>

#include "campaigns/dialect/exact_cases.h"

namespace campaign {
namespace {

constexpr int groups = 3, rowsOfTable = 18;

}  // namespace

// Every aggregate of a column, of all rows and by groups, one of them empty but for NULLs.
Report runAggregates(std::uint64_t seed, std::int64_t cases) {
  Chance chance(seed);
  Runner runner;
  Report report;
  while (report.cases < cases && !report.full()) {
    const Shape shape = numberShape(chance);
    std::map<int, std::vector<Value>> byGroup;
    std::vector<Value> all;
    std::string sql = "CREATE TABLE T (G INT, A " + shape.sql() + " NULL) ";
    // Small numbers let sums fit, a few of them make DISTINCT matter.
    const Shape small = shape.kind == Kind::Decimal
                            ? decimalShape(chance.between(shape.scale > 0 ? 1 : 1, shape.precision), 0)
                            : shape;
    std::vector<Value> pool;
    for (int i = 0; i < chance.between(1, 20); ++i) {
      pool.push_back(valueOf(chance, small, small));
      pool.back().shape = shape;
    }
    for (int i = 0; i < rowsOfTable; ++i) {
      Value value = chance.of(pool);
      const int group = chance.below(groups);
      if (group == 0) value.null = true;
      byGroup[group].push_back(value);
      all.push_back(value);
      sql += "INSERT INTO T VALUES (" + std::to_string(group) + ", " + literalOf(value) + ") ";
    }
    runner.run(sql);
    for (const char* name : {"COUNT", "SUM", "AVG", "MIN", "MAX"}) {
      const bool distinct = chance.oneIn(3);
      const std::string call = std::string(name) + (distinct ? "(DISTINCT A)" : "(A)");
      const Value whole = aggregate(name, shape, all, distinct);
      std::string expected;
      int error = 0;
      for (const auto& [group, values] : byGroup) {
        const Value value = aggregate(name, shape, values, distinct);
        if (!value.errors.empty()) error = *value.errors.begin();
        expected += std::to_string(group) + " " + value.shown() + "\n";
      }
      if (error) expected = "!" + std::to_string(error) + "\n";
      const std::pair<std::string, std::string> questions[] = {
          {"SELECT " + call + " FROM T", whole.shown() + "\n"},
          {"SELECT G, " + call + " FROM T GROUP BY G ORDER BY G", expected}};
      for (const auto& [question, answer] : questions) {
        const Result found = runner.run(question);
        ++report.cases;
        if (found.text() != answer)
          report.differ(sql + "\n  " + question, answer, found.text() + found.message);
        else if (!found.error && found.columns.back().shape != whole.shape)
          report.differ(sql + "\n  " + question, whole.shape.sql(), found.columns.back().type);
      }
    }
    runner.run("DROP TABLE T");
  }
  return report;
}

}  // namespace campaign
