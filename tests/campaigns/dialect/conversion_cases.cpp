#include "campaigns/dialect/exact_cases.h"

namespace campaign {
namespace {

Shape anyShape(Chance& chance) {
  if (chance.oneIn(12)) return {Kind::Bit};
  if (!chance.oneIn(4)) return numberShape(chance);
  Shape text = textShape(chance);
  static constexpr int widths[] = {1, 3, 5, 10, 20, 60};
  text.width = chance.of(widths);
  return text;
}

// FLOAT becomes text by another rule than digits; the tests of conversions have it.
bool judged(const Shape& from, const Shape& to) {
  if (to.text()) return from.kind != Kind::Float && !from.text();
  return true;
}

void judge(Runner& runner, Report& report, const std::string& sql, const Value& expected) {
  const Result found = runner.run(sql);
  ++report.cases;
  const bool right = expected.errors.empty() ? found.text() == expected.shown() + "\n"
                                             : expected.errors.contains(found.error);
  if (!right) report.differ(sql, expected.shown(), found.text() + found.message);
}

}  // namespace

// Each value by CAST of a variable, of a column, and on its way into a column.
Report runConversions(std::uint64_t seed, std::int64_t cases) {
  Chance chance(seed);
  Runner runner;
  Report report;
  while (report.cases < cases && !report.full()) {
    const Shape to = anyShape(chance);
    Shape from = chance.oneIn(3) ? textShape(chance) : anyShape(chance);
    if (from.text()) from.width = 80;
    if (!judged(from, to)) continue;
    const std::string table = "CREATE TABLE T (A " + from.sql() + ", B " + to.sql() + ") ";
    runner.run(table);
    for (int i = 0; i < 12; ++i) {
      const Value value = valueOf(chance, from, to.text() ? decimalShape(9, 2) : to);
      const Value expected = converted(value, to);
      const std::string variable = "DECLARE @a " + from.sql() + " SET @a=" + literalOf(value) + " ";
      judge(runner, report, variable + "SELECT CAST(@a AS " + to.sql() + ")", expected);
      runner.run("DELETE FROM T INSERT INTO T (A) VALUES (" + literalOf(value) + ")");
      judge(runner, report, "SELECT CONVERT(" + to.sql() + ", A) FROM T", expected);
      judge(runner, report, "UPDATE T SET B=A SELECT B FROM T", expected);
    }
    runner.run("DROP TABLE T");
  }
  return report;
}

}  // namespace campaign
