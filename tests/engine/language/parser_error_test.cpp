#include <gtest/gtest.h>

#include "engine/language/parser.h"
#include "engine/value/error.h"

namespace engine::test {
namespace {

struct Failure {
  int number = 0;
  std::string text;
  int line = 0;
};

Failure failureOf(const std::string& text) {
  try {
    parseBatch(text);
  } catch (const Error& error) {
    return {error.number(), error.what(), error.line()};
  }
  return {};
}

std::string repeat(const std::string& text, int times) {
  std::string result;
  for (int i = 0; i < times; ++i) result += text;
  return result;
}

TEST(ParserError, SpeaksAsSqlServerDoes) {
  const struct {
    const char* text;
    int number;
    const char* message;
  } cases[] = {
      {"SELECT * FROM", 102, "Incorrect syntax near 'FROM'."},
      {"SELECT * FROM WHERE", 156, "Incorrect syntax near the keyword 'WHERE'."},
      {"SELECT a b c", 102, "Incorrect syntax near 'c'."},
      {"SELECT (1", 102, "Incorrect syntax near '1'."},
      {"SELECT 1)", 102, "Incorrect syntax near ')'."},
      {"SELECT a>b", 102, "Incorrect syntax near '>'."},
      {"SELECT 1 WHERE a=b=c", 102, "Incorrect syntax near '='."},
      {"SELECT 1 WHERE (a=b)+1=2", 102, "Incorrect syntax near '+'."},
      {"SELECT * FROM (SELECT 1 a) WHERE 1=1", 156, "Incorrect syntax near the keyword 'WHERE'."},
      {"SELECT 1 FROM a JOIN b WHERE 1=1", 156, "Incorrect syntax near the keyword 'WHERE'."},
      {"INSERT INTO t (a) VALUES (1,)", 102, "Incorrect syntax near ')'."},
      {"UPDATE t a=1", 102, "Incorrect syntax near 'a'."},
      {"CREATE TABLE t (a)", 102, "Incorrect syntax near ')'."},
      {"CREATE TABLE Percent (a INT)", 156, "Incorrect syntax near the keyword 'Percent'."},
      {"BEGIN END", 156, "Incorrect syntax near the keyword 'END'."},
      {"BEGIN SELECT 1", 102, "Incorrect syntax near '1'."},
      {"IF 1 SELECT 2", 4145,
       "An expression of non-boolean type specified in a context where a condition is expected, near "
       "'SELECT'."},
      {"SELECT 1 WHERE a AND b=1", 4145,
       "An expression of non-boolean type specified in a context where a condition is expected, near 'AND'."},
      {"SELECT 1 foo bar", 102, "Incorrect syntax near 'bar'."},
      {"SELECT 1 'x' 'y'", 102, "Incorrect syntax near 'y'."},
      {"BREAK", 135, "Cannot use a BREAK statement outside the scope of a WHILE statement."},
      {"CREATE TABLE t (a FOO)", 2715, "Column, parameter, or variable #1: Cannot find data type FOO."},
      {"SELECT CAST(1 AS FOO)", 243, "Type FOO is not a defined system type."},
      {"CREATE TABLE t (a CHAR(9000))", 131,
       "The size (9000) given to the column 'a' exceeds the maximum allowed for any data type (8000)."},
      {"DECLARE @a DECIMAL(5,6)", 192, "The scale must be less than or equal to the precision."},
      {"SELECT 1 CREATE VIEW v AS SELECT 1 a", 111,
       "'CREATE VIEW' must be the first statement in a query batch."},
      {"SELECT a.b.c.d.e", 117, ""},
  };
  for (const auto& c : cases) {
    Failure failure = failureOf(c.text);
    EXPECT_EQ(failure.number, c.number) << c.text;
    if (c.message[0]) {
      EXPECT_EQ(failure.text, c.message) << c.text;
    }
  }
  EXPECT_EQ(failureOf("SELECT 1\nSELECT 2 FROM\n\nWHERE").line, 4);
}

TEST(ParserError, NamesWhatTheServerDoesNotSpeak) {
  const std::pair<const char*, const char*> cases[] = {
      {"CREATE PROC p WITH ENCRYPTION AS SELECT 1", "WITH ENCRYPTION"},
      {"create function f() returns int", "CREATE FUNCTION"},
      {"CREATE PROC p;2 AS SELECT 1", "numbered procedure"},
      {"ALTER DATABASE d SET RECOVERY SIMPLE", "ALTER DATABASE"},
      {"DECLARE c CURSOR FOR SELECT 1", "DECLARE CURSOR"},
      {"SELECT * FROM ##t", "global temporary table ##t"},
      {"CREATE TRIGGER x ON #t FOR INSERT AS SELECT 1", "CREATE TRIGGER on a temporary table"},
      {"GOTO x", "GOTO"},
      {"MERGE t USING s ON 1=1", "MERGE"},
      {"WITH c AS (SELECT 1) MERGE t USING c ON 1=1", "MERGE"},
      {"WITH XMLNAMESPACES ('u' AS n) SELECT 1", "WITH XMLNAMESPACES"},
      {"SELECT SUM(a) OVER w FROM t", "OVER with a window name"},
      {"SELECT * FROM t PIVOT (SUM(a) FOR b IN (c)) p", "PIVOT"},
      {"SELECT * FROM a CROSS APPLY b", "APPLY"},
      {"SELECT a FROM t FOR XML AUTO", "FOR XML"},
      {"BEGIN DISTRIBUTED TRAN", "BEGIN DISTRIBUTED"},
      {"GRANT SELECT ON t TO u", "GRANT"},
      {"BACKUP DATABASE d TO DISK='x'", "BACKUP"},
      {"INSERT INTO t EXEC p", "INSERT ... EXEC"},
      {"SELECT dbo.f(1)", "user-defined function f"},
      {"CREATE TABLE t (a UNIQUEIDENTIFIER)", "UNIQUEIDENTIFIER"},
      {"CREATE TABLE t (a INT, b AS a+1)", "computed column"},
      {"CREATE TRIGGER x ON t INSTEAD OF INSERT AS SELECT 1", "INSTEAD OF"},
  };
  for (const auto& [text, construct] : cases) {
    Failure failure = failureOf(text);
    EXPECT_EQ(failure.number, 50000) << text;
    EXPECT_EQ(failure.text, "'" + std::string(construct) + "' is not supported by the embedded server.")
        << text;
  }
}

TEST(ParserError, DepthIsBounded) {
  const std::pair<const char*, std::string> cases[] = {
      {"brackets", "SELECT " + repeat("(", 10000) + "1" + repeat(")", 10000)},
      {"open brackets", "SELECT " + repeat("(", 10000)},
      {"signs", "SELECT " + repeat("- ", 10000) + "1"},
      {"complements", "SELECT " + repeat("~", 10000) + "1"},
      {"NOT", "IF " + repeat("NOT ", 10000) + "1=1 SELECT 1"},
      {"functions", "SELECT " + repeat("ABS(", 10000) + "1"},
      {"IN", "SELECT 1 WHERE 1 " + repeat("IN (SELECT 1 WHERE 1 ", 10000)},
      {"subqueries", "SELECT " + repeat("(SELECT ", 10000) + "1"},
      {"EXISTS", "SELECT 1 WHERE " + repeat("EXISTS (SELECT 1 WHERE ", 10000)},
      {"derived", repeat("SELECT * FROM (", 10000)},
      {"joins", "SELECT 1 FROM " + repeat("a JOIN ", 10000) + "b"},
      {"join brackets", "SELECT 1 FROM " + repeat("(a JOIN ", 10000) + "b"},
      {"query brackets", repeat("(", 10000) + "SELECT 1"},
      {"union brackets", repeat("SELECT 1 UNION (", 10000)},
      {"blocks", repeat("BEGIN ", 10000) + "SELECT 1"},
      {"IF", repeat("IF 1=1 ", 10000) + "SELECT 1"},
      {"ELSE IF", repeat("IF 1=1 SELECT 1 ELSE ", 10000) + "SELECT 1"},
      {"WHILE", repeat("WHILE 1=1 ", 10000) + "SELECT 1"},
      {"long sum", "SELECT 1" + repeat("+1", 100000)},
      {"long AND", "SELECT 1 WHERE 1=1" + repeat(" AND 1=1", 100000)},
      {"COLLATE", "SELECT a" + repeat(" COLLATE x", 100000)},
      {"sums in brackets", "SELECT " + repeat("(", 500) + "1" + repeat(repeat("+1", 50) + ")", 500)},
      {"sums through subqueries",
       "SELECT " + repeat("(SELECT ", 80) + "1" + repeat(repeat("+1", 100) + ")", 80)},
  };
  for (const auto& [name, text] : cases) EXPECT_EQ(failureOf(text).number, 191) << name;
  EXPECT_EQ(failureOf("SELECT 1 FROM a" + repeat(" CROSS JOIN b", 100000)).number, 106);
}

TEST(ParserError, WideIsNotDeep) {
  const std::string cases[] = {
      "SELECT 1 WHERE a IN (1" + repeat(",1", 100000) + ")",
      "SELECT 1" + repeat(" UNION ALL SELECT 1", 20000),
      "INSERT t VALUES (1)" + repeat(",(1)", 100000),
      repeat("SELECT 1 ", 50000),
      "SELECT 1" + repeat("+1", 4000),
      "SELECT " + repeat("(", 900) + "1" + repeat(")", 900),
      "SELECT " + repeat("(SELECT ", 30) + "1" + repeat(")", 30),
  };
  for (const std::string& text : cases) EXPECT_EQ(failureOf(text).text, "") << text.substr(0, 40);
}

// Every beginning of a valid batch, and every batch with one token gone, ends in a tree or in an Error.
TEST(ParserError, SurvivesEveryTruncation) {
  const std::string whole =
      "CREATE TRIGGER t ON k FOR INSERT, UPDATE AS DECLARE @a CHAR(30)DECLARE @b INT SELECT "
      "@a=LEFT(x,@b),@b=0x1F FROM inserted i LEFT JOIN (SELECT TOP 1 * FROM [a b] UNION SELECT 1) d ON "
      "(i.x=d.y) WHERE a LIKE N'ş%' IF @a<>0 BEGIN UPDATE t SET a=CASE WHEN b IS NULL THEN -1 ELSE .5 END "
      "FROM u WHERE c=ANY (SELECT 1) END ELSE DELETE FROM t WHERE a NOT BETWEEN 1 AND 2 EXEC p @x='y', z "
      "RAISERROR('m',16,1) ALTER TABLE t ADD c INT IDENTITY(1,1) NOT NULL CONSTRAINT d DEFAULT (0)";
  ASSERT_EQ(failureOf(whole).text, "");
  for (std::size_t i = 0; i < whole.size(); ++i) {
    failureOf(whole.substr(0, i));
    failureOf(whole.substr(i));
    failureOf(std::string(whole).erase(i, 1));
    failureOf(std::string(whole).replace(i, 1, "\xFF"));
    failureOf(std::string(whole).replace(i, 1, "("));
  }
}

}  // namespace
}  // namespace engine::test
