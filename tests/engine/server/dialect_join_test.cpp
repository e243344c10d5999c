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
       "z.A=x.A ORDER BY z.A",
       "NULL\tNULL\t1\nNULL\tNULL\t2\n"},
      {"DECLARE @tip INT SET @tip=1 SELECT x.A, y.A, z.A FROM x JOIN y ON x.A=y.A AND @tip=1 RIGHT JOIN z ON "
       "z.A=x.A ORDER BY z.A",
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

TEST_F(DialectTest, ConstantTermsInFromOfChanges) {
  const std::string from =
      " FROM x JOIN y ON x.A=y.A AND @tip=1 RIGHT JOIN z ON z.A=x.A AND 2>1 WHERE x.A IS NULL ";
  follow({
      {"CREATE TABLE x (A INT) CREATE TABLE y (A INT) CREATE TABLE z (A INT, N INT) INSERT INTO x VALUES (1) "
       "INSERT INTO y VALUES (1) INSERT INTO z VALUES (1,0) INSERT INTO z VALUES (2,0)",
       ""},
      {"DECLARE @tip INT SET @tip=2 UPDATE z SET N=N+1" + from + "SELECT A, N FROM z ORDER BY A",
       "1\t1\n2\t1\n"},
      {"DECLARE @tip INT SET @tip=1 UPDATE z SET N=N+1" + from + "SELECT A, N FROM z ORDER BY A",
       "1\t1\n2\t2\n"},
      {"DECLARE @tip INT SET @tip=2 SELECT z.A, z.N INTO u" + from + "SELECT A, N FROM u ORDER BY A",
       "1\t1\n2\t2\n"},
      {"DECLARE @tip INT, @n INT SET @tip=2 SELECT @n=COUNT(*)" + from + "IF EXISTS(SELECT *" + from +
           ") SELECT @n, (SELECT MIN(z.N)" + from + ")",
       "2\t1\n"},
      {"DECLARE @tip INT SET @tip=1 DELETE z" + from + "SELECT A, N FROM z ORDER BY A", "1\t1\n"},
      {"DECLARE @tip INT SET @tip=2 DELETE z" + from + "SELECT COUNT(*) FROM z", "0\n"},
  });
}

// Merged into the query around them, the SELECTs of a union lost or invented rows.
TEST_F(DialectTest, UnionsOfOuterJoinsInFrom) {
  follow({
      {"CREATE TABLE x (A INT, B INT) CREATE TABLE y (A INT, B INT) CREATE TABLE z (A INT, B INT) "
       "INSERT INTO x VALUES (1,7) INSERT INTO x VALUES (2,1) INSERT INTO y VALUES (1,8) INSERT INTO y "
       "VALUES (3,9)",
       ""},
      {"SELECT d.K, d.A FROM (SELECT 2 AS K, A FROM y WHERE A<0 UNION ALL SELECT 1, y.A FROM y FULL JOIN x "
       "ON x.A=y.A AND x.B<y.B) d WHERE d.K NOT IN (d.A,d.A) ORDER BY 1, 2",
       "1\t3\n"},
      {"SELECT d.A, x.B FROM (SELECT x.A FROM x RIGHT JOIN y ON x.A=y.A UNION ALL SELECT y.A FROM x FULL "
       "JOIN y ON x.A=y.A) d JOIN x ON x.A=d.A OR d.A IS NULL ORDER BY 1, 2",
       "NULL\t1\nNULL\t1\nNULL\t7\nNULL\t7\n1\t7\n1\t7\n"},
      {"SELECT COUNT(*), COUNT(d.A) FROM x JOIN (SELECT x.A FROM x WHERE B>5 UNION ALL SELECT d.A FROM "
       "(SELECT x.A FROM x RIGHT JOIN y ON x.A=y.A) d LEFT JOIN z ON z.A=d.A) d ON 1=1 WHERE d.A IS NULL OR "
       "x.B=7",
       "4\t2\n"},
      {"CREATE VIEW v AS SELECT x.A FROM x RIGHT JOIN y ON x.A=y.A UNION ALL SELECT y.A FROM x FULL JOIN y "
       "ON x.A=y.A",
       ""},
      {"SELECT v.A, x.B FROM x LEFT JOIN v ON v.A=x.A ORDER BY 2, 1", "NULL\t1\n1\t7\n1\t7\n"},
      {"INSERT INTO z SELECT A, A FROM y WHERE A<0 UNION ALL SELECT y.A, x.B FROM y FULL JOIN x ON x.A=y.A "
       "SELECT A, B FROM z ORDER BY A, B",
       "NULL\t1\n1\t7\n3\tNULL\n"},
      {"SELECT A FROM y WHERE A=ALL(SELECT A FROM y WHERE A<0 UNION ALL SELECT y.A FROM y FULL JOIN x ON "
       "x.A=y.A WHERE y.A=3)",
       "3\n"},
      {"SELECT A, (SELECT A FROM y WHERE A<0 UNION ALL SELECT y.A FROM y FULL JOIN x ON x.A=y.A WHERE y.A=3) "
       "FROM x ORDER BY A",
       "1\t3\n2\t3\n"},
      {"DELETE FROM z INSERT INTO z SELECT TOP 1 A, B FROM y WHERE A=3 UNION ALL SELECT A, B FROM x ORDER BY "
       "B SELECT A, B FROM z ORDER BY B",
       "2\t1\n1\t7\n3\t9\n"},
  });
}

// Of a statement that is repeated for each SELECT of a union, SQLite loses the places of ON in its copies.
TEST_F(DialectTest, UnionsBesideOuterJoins) {
  follow({
      {"CREATE TABLE x (A INT, B INT) CREATE TABLE y (A INT, B INT) INSERT INTO x VALUES (1,7) INSERT INTO x "
       "VALUES (2,1) INSERT INTO y VALUES (1,8) INSERT INTO y VALUES (3,9)",
       ""},
      {"SELECT d.A, y.B FROM (SELECT A FROM x UNION ALL SELECT A FROM y) d JOIN y ON y.A=d.A WHERE d.A IN "
       "(SELECT x.A FROM x JOIN y i ON i.A=x.A RIGHT JOIN y j ON j.A=x.A WHERE i.A=d.A)",
       "1\t8\n1\t8\n"},
      {"SELECT d.A, (SELECT COUNT(*) FROM x JOIN y i ON i.A=x.A RIGHT JOIN y j ON j.A=d.A) FROM (SELECT A "
       "FROM x UNION ALL SELECT A FROM y) d ORDER BY 1",
       "1\t2\n1\t2\n2\t2\n3\t2\n"},
      {"SELECT f.A, d.A FROM (SELECT y.A, x.B FROM x CROSS JOIN x i JOIN y ON y.A=x.A FULL JOIN y j ON "
       "j.A=i.A) f JOIN y ON 1=1, (SELECT A FROM x UNION ALL SELECT A FROM y WHERE A>1) d WHERE f.B<d.A+5 "
       "ORDER BY 1, 2",
       "1\t3\n1\t3\n1\t3\n1\t3\n"},
  });
}

// A column of the query around stands for no row of its own: it is NULL where the row is missing.
TEST_F(DialectTest, ColumnsOfTheQueryAroundInMissingRows) {
  follow({
      {"CREATE TABLE x (A INT, B INT) CREATE TABLE y (A INT, B INT) INSERT INTO x VALUES (1,7) INSERT INTO x "
       "VALUES (2,1) INSERT INTO y VALUES (1,8) INSERT INTO y VALUES (3,9)",
       ""},
      {"SELECT A, (SELECT MIN(d.K) FROM y LEFT JOIN (SELECT x.B AS K FROM x i WHERE i.A<0) d ON 1=1) FROM x "
       "ORDER BY A",
       "1\tNULL\n2\tNULL\n"},
      {"SELECT A FROM x WHERE EXISTS(SELECT 1 FROM y LEFT JOIN (SELECT e.K FROM (SELECT x.B AS K FROM y i "
       "WHERE i.A>x.A) e) d ON d.K=1 WHERE d.K IS NOT NULL)",
       "2\n"},
      {"SELECT A, (SELECT COUNT(d.K) FROM y LEFT JOIN (SELECT x.A AS K, i.A FROM x i) d ON d.A=y.A) FROM x "
       "ORDER BY A",
       "1\t1\n2\t1\n"},
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
