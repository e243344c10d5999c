// Joins whose conditions have no column of their own, and subqueries that look at the groups around them.
#include "engine/server/dialect.h"

namespace engine::test {
namespace {

TEST_F(DialectTest, ConstantTermsInFrontOfOuterJoins) {
  follow({
      {"CREATE TABLE x (A INT) CREATE TABLE y (A INT) CREATE TABLE z (A INT) INSERT INTO x VALUES (1) "
       "INSERT INTO y VALUES (1) INSERT INTO z VALUES (1) INSERT INTO z VALUES (2)",
       ""},
      {"DECLARE @tip INT SET @tip=2 SELECT x.A, y.A, z.A FROM x JOIN y ON x.A=y.A AND @tip=1 RIGHT JOIN z ON "
       "z.A=x.A "
       "ORDER BY z.A",
       "NULL\tNULL\t1\nNULL\tNULL\t2\n"},
      {"DECLARE @tip INT SET @tip=1 SELECT x.A, y.A, z.A FROM x JOIN y ON x.A=y.A AND @tip=1 RIGHT JOIN z ON "
       "z.A=x.A "
       "ORDER BY z.A",
       "1\t1\t1\nNULL\tNULL\t2\n"},
      {"SELECT x.A, y.A, z.A FROM x JOIN y ON 1=0 FULL JOIN z ON z.A=x.A ORDER BY z.A",
       "NULL\tNULL\t1\nNULL\tNULL\t2\n"},
      {"SELECT x.A, z.A FROM x RIGHT JOIN z ON 1=0 ORDER BY z.A", "NULL\t1\nNULL\t2\n"},
      {"SELECT x.A, y.A, z.A FROM x LEFT JOIN y ON 1=0 RIGHT JOIN z ON z.A=x.A ORDER BY z.A",
       "1\tNULL\t1\nNULL\tNULL\t2\n"},
      {"SELECT x.A, y.A, z.A FROM x JOIN y ON (1=0 OR NULL IS NOT NULL) AND NOT 1=1 RIGHT JOIN z ON z.A=x.A "
       "ORDER BY z.A",
       "NULL\tNULL\t1\nNULL\tNULL\t2\n"},
      // A column of the query around is as constant.
      {"SELECT w.A, (SELECT COUNT(*) FROM x JOIN y ON x.A=y.A AND w.A=1 RIGHT JOIN z ON z.A=x.A) FROM z w "
       "ORDER BY w.A",
       "1\t2\n2\t2\n"},
      {"SELECT d.K, z.A FROM (SELECT 7 AS K, A FROM x) d RIGHT JOIN z ON d.A=z.A AND 1=0 ORDER BY z.A",
       "NULL\t1\nNULL\t2\n"},
      {"SELECT w.A, (SELECT MAX(d.K) FROM (SELECT w.A AS K FROM x) d RIGHT JOIN z ON 1=0) FROM z w ORDER BY "
       "w.A",
       "1\tNULL\n2\tNULL\n"},
      {"CREATE VIEW v AS SELECT z.A, y.A AS B FROM x JOIN y ON x.A=y.A AND 1=0 RIGHT JOIN z ON z.A=x.A", ""},
      {"SELECT A, B FROM v ORDER BY A", "1\tNULL\n2\tNULL\n"},
  });
}

TEST_F(DialectTest, AggregatesThatSubqueriesLookAt) {
  follow({
      {"CREATE TABLE x (A INT, B INT) CREATE TABLE y (A INT, B INT) INSERT INTO x VALUES (1,10) "
       "INSERT INTO x VALUES (1,20) INSERT INTO x VALUES (2,5) INSERT INTO y VALUES (1,15) INSERT INTO y "
       "VALUES (2,5)",
       ""},
      {"SELECT A, COUNT(*) FROM x GROUP BY A HAVING COUNT(*)>=ALL(SELECT COUNT(*) FROM x GROUP BY A)",
       "1\t2\n"},
      {"SELECT A FROM x GROUP BY A HAVING SUM(B)>ANY(SELECT B FROM y WHERE y.A=x.A) ORDER BY A", "1\n"},
      {"SELECT A, CASE WHEN MAX(B)<=ALL(SELECT B FROM y) THEN 'e' ELSE 'h' END FROM x GROUP BY A ORDER BY A",
       "1\th\n2\te\n"},
      {"SELECT A, MAX(B) FROM x GROUP BY A HAVING EXISTS(SELECT 1 FROM y WHERE y.B<MAX(x.B)) ORDER BY A",
       "1\t20\n"},
      {"SELECT A FROM x GROUP BY A HAVING NOT EXISTS(SELECT 1 FROM y WHERE y.A=x.A AND y.B<>SUM(x.B)) ORDER "
       "BY A",
       "2\n"},
      {"SELECT A, (SELECT COUNT(*) FROM y WHERE y.B<=MIN(x.B)) AS n FROM x GROUP BY A ORDER BY SUM(B) DESC",
       "1\t1\n2\t1\n"},
      {"SELECT COUNT(*), SUM(B) FROM x HAVING COUNT(*)>ALL(SELECT A FROM y)", "3\t35\n"},
      {"SELECT COUNT(*) FROM x WHERE 1=0 HAVING COUNT(*)=ALL(SELECT A FROM y WHERE 1=0)", "0\n"},
      {"SELECT 1 FROM x HAVING 5<>ALL(SELECT COUNT(*) FROM y HAVING COUNT(*)<>MAX(x.B))", "1\n"},
      {"SELECT TOP 1 A, A+COUNT(*) FROM x GROUP BY A HAVING COUNT(*)<>ALL(SELECT 7) ORDER BY A DESC",
       "2\t3\n"},
      {"SELECT A FROM x WHERE COUNT(*)>1", "!147\n"},
      {"SELECT A FROM x WHERE EXISTS(SELECT 1 FROM y WHERE y.B<MAX(x.B))", "!147\n"},
  });
}

}  // namespace
}  // namespace engine::test
