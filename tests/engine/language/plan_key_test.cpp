#include <gtest/gtest.h>

#include "engine/language/parser.h"

namespace engine::test {
namespace {

std::string keyOf(const std::string& text) {
  std::vector<Literal> literals;
  return planKey(tokenize(text), literals);
}

TEST(PlanKey, IsSharedByStatementsOfEqualTypes) {
  const std::pair<const char*, const char*> pairs[] = {
      {"INSERT INTO t (a,b) VALUES ('x',1)", "INSERT INTO t(a,b) VALUES('longer''',  22)"},
      {"UPDATE t SET a='x' WHERE b='y'", "UPDATE t SET a='xyz' WHERE b='' -- comment"},
      {"DELETE FROM t WHERE a='x' AND b>1", "DELETE FROM t WHERE a='xyz' AND b>2147483647"},
      {"SELECT a FROM t WHERE a='x'", "SELECT a FROM t WHERE a='xyz'"},
      {"SELECT 1.25", "SELECT 3.50"},
      {"SELECT 'abc'", "SELECT 'şçğ'"},
      {"SELECT a FROM t WHERE b IN (1,22) AND c=(SELECT 5)",
       "SELECT a FROM t WHERE b IN (10,2) AND c=(SELECT 55)"},
      {"SELECT 5/a", "SELECT 7/a"},
  };
  for (const auto& [left, right] : pairs) EXPECT_EQ(keyOf(left), keyOf(right)) << left;
}

TEST(PlanKey, DiffersWhereTypesOrNamesDo) {
  const std::pair<const char*, const char*> pairs[] = {
      {"SELECT 'a'", "SELECT 'ab'"},
      {"SELECT 'a'", "SELECT N'a'"},
      {"SELECT Tip='a' FROM t", "SELECT Tip='ab' FROM t"},
      {"SELECT 1 WHERE a='x' UNION SELECT Tip='a'", "SELECT 1 WHERE a='x' UNION SELECT Tip='ab'"},
      {"UPDATE t SET a='x'+b", "UPDATE t SET a='xy'+b"},
      {"INSERT t VALUES (ISNULL('a','bc'))", "INSERT t VALUES (ISNULL('ab','bc'))"},
      {"SELECT 1", "SELECT 3000000000"},
      {"SELECT 1.5", "SELECT 1.50"},
      {"SELECT a/3", "SELECT a/10"},
      {"SELECT (3)*a", "SELECT (10)*a"},
      {"SELECT 1.5", "SELECT 0.5"},
      {"SELECT 1.5", "SELECT 1e5"},
      {"SELECT a Ad FROM t", "SELECT a AD FROM t"},
      {"SELECT [a b]", "SELECT a b"},
      {"SELECT ab", "SELECT a b"},
  };
  for (const auto& [left, right] : pairs) EXPECT_NE(keyOf(left), keyOf(right)) << left;
}

TEST(PlanKey, HandsOutTheLiteralsInTextOrder) {
  std::vector<Literal> literals;
  planKey(tokenize("SELECT 'a''b', 0x4142 WHERE 1=-2.5 AND x IS NULL"), literals);
  ASSERT_EQ(literals.size(), 4u);
  const char* const values[] = {"a'b", "AB", "1", "2.5"};
  for (int i = 0; i < 4; ++i) {
    EXPECT_EQ(literals[i].text, values[i]);
    EXPECT_EQ(literals[i].ordinal, i);
  }
}

// Same key, same tree: everything a literal shaped must be told.
TEST(PlanKey, StructuralLiteralsAreNamed) {
  const struct {
    const char* text;
    std::vector<int> ordinals;
  } cases[] = {
      {"INSERT INTO t VALUES (1,'a')", {}},
      {"SELECT a+1 FROM t WHERE b=2", {}},
      {"SELECT a+1 FROM t WHERE b=2 GROUP BY a+1 ORDER BY 1", {0, 2, 3}},
      {"SELECT DISTINCT a+1 FROM t WHERE b=2 ORDER BY a+1", {0, 2}},
      {"SELECT a AS 'x',CONVERT(CHAR(10),b,104) FROM t WHERE b=2", {0, 1, 2}},
      {"SELECT 1 'x'", {1}},
      {"DECLARE @a CHAR(5) SET @a='x'", {0}},
      {"SELECT 5 CREATE TABLE t (a CHAR(10) DEFAULT 'x')", {1, 2}},
      {"CREATE VIEW v AS SELECT 1 a WHERE 2=2", {0, 1, 2}},
      {"SET ROWCOUNT 10", {0}},
  };
  for (const auto& c : cases) EXPECT_EQ(parseBatch(c.text).structural, c.ordinals) << c.text;
  EXPECT_EQ(parseBatch("SELECT 1,'a',NULL").literalCount, 2);
}

}  // namespace
}  // namespace engine::test
