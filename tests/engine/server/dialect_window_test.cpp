// EXCEPT, INTERSECT, common table expressions and OVER.
#include <sqlite3.h>

#include <random>

#include "engine/server/dialect.h"

namespace engine::test {
namespace {

class WindowTest : public DialectTest {
 protected:
  WindowTest() {
    follow({
        {"CREATE TABLE S (ID INT IDENTITY NOT NULL, G VARCHAR(5), N INT, P DECIMAL(9,2), M MONEY)", ""},
        {"INSERT INTO S (G,N,P,M) VALUES "
         "('a',1,1.10,1.5),('A',1,2.20,2.25),('b',3,-3.30,3),('b',NULL,NULL,NULL),"
         "('b ',4,0.01,-1.0001),(NULL,9,9.99,0)",
         ""},
        {"CREATE TABLE E (ID INT NOT NULL PRIMARY KEY, BOSS INT, AD VARCHAR(10))", ""},
        {"INSERT INTO E VALUES (1,NULL,'kök'),(2,1,'dal'),(3,1,'DAL'),(4,2,'yaprak'),(5,4,'uç')", ""},
    });
  }
};

TEST_F(WindowTest, ExceptAndIntersect) {
  follow({
      {"SELECT G FROM S EXCEPT SELECT 'A' ORDER BY G", "NULL\nb\n"},
      {"SELECT G FROM S INTERSECT SELECT NULL", "NULL\n"},
      {"SELECT N,G FROM S INTERSECT SELECT N,'B' FROM S WHERE N>3", "4\tb \n"},
      {"SELECT 1 INTERSECT SELECT 1 UNION ALL SELECT 1", "1\n1\n"},
      // INTERSECT binds stronger, UNION and EXCEPT go from the left.
      {"SELECT 1 UNION ALL SELECT 2 INTERSECT SELECT 2", "1\n2\n"},
      {"(SELECT 1 UNION ALL SELECT 2) INTERSECT SELECT 2", "2\n"},
      {"SELECT 1 EXCEPT SELECT 2 EXCEPT SELECT 1", ""},
      {"SELECT 1 EXCEPT (SELECT 1 EXCEPT SELECT 1)", "1\n"},
      {"SELECT 1 UNION SELECT 2 EXCEPT SELECT 2 INTERSECT SELECT 3 ORDER BY 1 DESC", "2\n1\n"},
      {"SELECT * FROM (SELECT ID FROM E EXCEPT SELECT BOSS FROM E) x ORDER BY ID", "3\n5\n"},
      {"SELECT * FROM ((SELECT 1 a) INTERSECT (SELECT 1)) x", "1\n"},
      {"SELECT ID FROM E WHERE ID IN (SELECT 2 UNION SELECT 3 EXCEPT SELECT 3)", "2\n"},
      {"IF EXISTS(SELECT 1 INTERSECT SELECT 2) PRINT 'x' ELSE PRINT 'y'", "# y\n"},
      {"SELECT (SELECT 1 EXCEPT SELECT 2)", "1\n"},
      {"SELECT CAST(1 AS MONEY) a EXCEPT SELECT 2", "1.00\n"},
      {"SELECT TOP 1 ID FROM E ORDER BY ID DESC", "5\n"},
      {"SELECT ID INTO F FROM E EXCEPT SELECT 2 SELECT COUNT(*) FROM F", "4\n"},
      {"SELECT 1 EXCEPT ALL SELECT 1", "!324\n"},
      {"SELECT 1 INTERSECT ALL SELECT 1", "!324\n"},
      {"SELECT 1,2 EXCEPT SELECT 1", "!205\n"},
      {"SELECT ID FROM E EXCEPT SELECT 1 ORDER BY BOSS", "!104\n"},
      {"SELECT CAST('a' AS TEXT) INTERSECT SELECT 'a'", "!5335\n"},
  });
  run("SELECT ID a, BOSS b, 1 c FROM E EXCEPT SELECT BOSS, ID, NULL FROM E");
  const auto nullable = [&](int i) { return last.columns.at(static_cast<std::size_t>(i)).nullable; };
  EXPECT_EQ((std::vector<bool>{nullable(0), nullable(1), nullable(2)}),
            (std::vector<bool>{false, true, false}));
}

TEST_F(WindowTest, CommonTables) {
  follow({
      {"WITH a AS (SELECT ID, AD FROM E WHERE ID<3), b (x) AS (SELECT COUNT(*) FROM a) SELECT AD, x FROM a, "
       "b ORDER BY ID",
       "kök\t2\ndal\t2\n"},
      {"WITH a AS (SELECT 1 x UNION SELECT 2) SELECT p.x, q.x FROM a p JOIN a q ON p.x<q.x", "1\t2\n"},
      {"SELECT 5; WITH E AS (SELECT ID*10 ID FROM S) SELECT MAX(ID) FROM E", "5\n60\n"},
      {"WITH E AS (SELECT ID*10 ID FROM E) SELECT MAX(ID) FROM E", "!252\n"},
      {"WITH a AS (SELECT 7 x) SELECT a.x, (SELECT MAX(x) FROM a), (SELECT 1 WHERE EXISTS (SELECT 1 FROM a "
       "WHERE x=7)) FROM a",
       "7\t7\t1\n"},
      {"WITH a AS (SELECT ID FROM E WHERE ID>4) INSERT INTO E SELECT ID+1,NULL,'y' FROM a SELECT ID,AD FROM "
       "E WHERE ID>4",
       "5\tuç\n6\ty\n"},
      {"WITH a AS (SELECT 6 i) UPDATE E SET AD='z' FROM E JOIN a ON i=ID SELECT AD FROM E WHERE ID=6", "z\n"},
      {"WITH a AS (SELECT 6 i) DELETE E WHERE ID IN (SELECT i FROM a) SELECT COUNT(*) FROM E", "5\n"},
      {"WITH a AS (SELECT ID FROM E) SELECT * INTO C FROM a SELECT COUNT(*) FROM C", "5\n"},
      {"CREATE VIEW V AS WITH a AS (SELECT ID, BOSS FROM E) SELECT p.ID, q.BOSS FROM a p JOIN a q ON "
       "p.BOSS=q.ID",
       ""},
      {"WITH a AS (SELECT 99 ID) SELECT v.* FROM V v ORDER BY ID", "2\tNULL\n3\tNULL\n4\t1\n5\t2\n"},
      {"IF 1=1 WITH a AS (SELECT 3 x) SELECT * FROM a", "3\n"},
      {"DECLARE @n INT; WITH a AS (SELECT 4 x) SELECT @n=x FROM a SELECT @n", "4\n"},
      {"BEGIN WITH a AS (SELECT 4 x) SELECT x FROM a END", "4\n"},
      {"SELECT 1 WITH a AS (SELECT 1 x) SELECT * FROM a", "!319\n"},
      {"SELECT * FROM E WITH a AS (SELECT 1 x) SELECT * FROM a", "!319\n"},
      {"SELECT COUNT(*) FROM E WITH (NOLOCK)", "5\n"},
      {"WITH a AS (SELECT 1) SELECT * FROM a", "!8155\n"},
      {"WITH a AS (SELECT 1 x, 2 x) SELECT 1 FROM a", "!8156\n"},
      {"WITH a (x,y) AS (SELECT 1) SELECT * FROM a", "!8159\n"},
      {"WITH a (x) AS (SELECT 1,2) SELECT * FROM a", "!8158\n"},
      {"WITH a AS (SELECT 1 x), A AS (SELECT 1 x) SELECT * FROM a", "!239\n"},
      {"WITH a AS (SELECT ID FROM E ORDER BY ID) SELECT * FROM a", "!1033\n"},
      {"WITH a AS (SELECT TOP 2 ID FROM E ORDER BY ID DESC) SELECT * FROM a ORDER BY 1", "4\n5\n"},
      {"WITH a AS (SELECT * FROM b), b AS (SELECT 1 x) SELECT * FROM a", "!208\n"},
      {"WITH a AS (SELECT 1 x) SELECT * FROM dbo.a", "!208\n"},
      {"WITH a AS (SELECT 1 x) PRINT 'a'", "!156\n"},
      {"WITH a AS (SELECT * FROM E) DELETE a WHERE ID=1", "!50000\n"},
      {"SELECT COUNT(*) FROM E", "5\n"},
  });
}

TEST_F(WindowTest, Recursion) {
  const std::string tree =
      "WITH a (i, ad, d) AS (SELECT ID, AD, 0 FROM E WHERE BOSS IS NULL UNION ALL "
      "SELECT e.ID, e.AD, d+1 FROM E e JOIN a ON a.i=e.BOSS) ";
  const auto count = [](const char* to, const char* option) {
    return std::string("WITH n AS (SELECT 1 i UNION ALL SELECT i+1 FROM n WHERE i<") + to +
           ") SELECT COUNT(*) FROM n" + option;
  };
  follow({
      {tree + "SELECT d, i, ad FROM a ORDER BY d, i",
       "0\t1\tkök\n1\t2\tdal\n1\t3\tDAL\n2\t4\tyaprak\n3\t5\tuç\n"},
      {tree + "SELECT ad, COUNT(*) FROM a WHERE d=1 GROUP BY ad", "dal\t2\n"},
      {tree + "SELECT p.i, q.i FROM a p JOIN a q ON p.i+3=q.i", "1\t4\n2\t5\n"},
      {tree + "DELETE FROM E WHERE ID IN (SELECT i FROM a WHERE d=3) SELECT COUNT(*) FROM E", "4\n"},
      {"WITH n AS (SELECT 1 a, 1 b UNION ALL SELECT a+1, b FROM n WHERE a<3 UNION ALL SELECT a, b+1 FROM n "
       "WHERE b<2) "
       "SELECT a, b, COUNT(*) FROM n GROUP BY a, b ORDER BY a, b",
       "1\t1\t1\n1\t2\t1\n2\t1\t1\n2\t2\t2\n3\t1\t1\n3\t2\t3\n"},
      {count("101", ""), "101\n"},
      {count("102", ""), "!530\n"},
      {count("102", " OPTION (MAXRECURSION 101)"), "102\n"},
      {count("5", " OPTION (MAXRECURSION 3)"), "!530\n"},
      {count("40000", " OPTION (MAXRECURSION 0)"), "40000\n"},
      {count("5", " OPTION (FAST 1, MAXRECURSION 40000)"), "!310\n"},
      {"CREATE TABLE R (i INT)", ""},
      {"WITH n AS (SELECT 1 i UNION ALL SELECT i+1 FROM n) INSERT INTO R SELECT i FROM n", "!530\n"},
      {"SELECT COUNT(*) FROM R", "0\n"},
      {"WITH n AS (SELECT 'a' t UNION ALL SELECT t+'b' FROM n) SELECT * FROM n", "!240\n"},
      {"WITH n AS (SELECT CAST('a' AS VARCHAR(9)) t UNION ALL SELECT CAST(t+'b' AS VARCHAR(9)) FROM n WHERE "
       "LEN(t)<3) SELECT * FROM n",
       "a\nab\nabb\n"},
      {"WITH n AS (SELECT 1 i UNION SELECT i FROM n) SELECT * FROM n", "!252\n"},
      {"WITH n AS (SELECT i FROM n) SELECT * FROM n", "!252\n"},
      {"WITH n AS (SELECT i FROM n UNION ALL SELECT 1) SELECT * FROM n", "!246\n"},
      {"WITH n AS (SELECT 1 i UNION ALL SELECT i FROM n UNION ALL SELECT 2) SELECT * FROM n", "!247\n"},
      {"WITH n AS (SELECT 1 i UNION ALL SELECT p.i FROM n p, n q) SELECT * FROM n", "!253\n"},
      {"WITH n AS (SELECT 1 i UNION ALL SELECT 1 WHERE 1 IN (SELECT i FROM n)) SELECT * FROM n", "!465\n"},
      {"WITH n AS (SELECT 1 i UNION ALL SELECT DISTINCT i FROM n) SELECT * FROM n", "!460\n"},
      {"WITH n AS (SELECT 1 i UNION ALL SELECT TOP 1 i FROM n) SELECT * FROM n", "!461\n"},
      {"WITH n AS (SELECT 1 i UNION ALL SELECT i FROM n LEFT JOIN E ON ID=i) SELECT * FROM n", "!462\n"},
      {"WITH n AS (SELECT 1 i UNION ALL SELECT MAX(i) FROM n) SELECT * FROM n", "!467\n"},
      {"WITH n AS (SELECT 1 i UNION ALL SELECT i, 2 FROM n) SELECT * FROM n", "!205\n"},
  });
}

TEST_F(WindowTest, Windows) {
  follow({
      {"SELECT ID, ROW_NUMBER() OVER (PARTITION BY G ORDER BY N DESC, ID), RANK() OVER (ORDER BY N), "
       "DENSE_RANK() OVER (ORDER BY N DESC), NTILE(4) OVER (ORDER BY ID) FROM S ORDER BY ID",
       "1\t1\t2\t4\t1\n2\t2\t2\t4\t1\n3\t2\t4\t3\t2\n4\t3\t1\t5\t2\n5\t1\t5\t2\t3\n6\t1\t6\t1\t4\n"},
      {"SELECT ID, SUM(P) OVER (ORDER BY N), CAST(AVG(M) OVER (PARTITION BY G) AS DECIMAL(9,4)), COUNT(N) "
       "OVER (PARTITION BY G), "
       "COUNT(*) OVER (), MIN(G) OVER (ORDER BY ID DESC), MAX(M) OVER (ORDER BY ID) FROM S ORDER BY ID",
       "1\t3.30\t1.8750\t2\t6\tA\t1.50\n2\t3.30\t1.8750\t2\t6\tA\t2.25\n3\t0.00\t0.9999\t2\t6\tb \t3.00\n"
       "4\tNULL\t0.9999\t2\t6\tb \t3.00\n5\t0.01\t0.9999\t2\t6\tb "
       "\t3.00\n6\t10.00\t0.0000\t1\t6\tNULL\t3.00\n"},
      // A frame of its own, from which rows go again.
      {"SELECT SUM(P) OVER (ORDER BY ID ROWS 1 PRECEDING), SUM(N) OVER (ORDER BY ID ROWS BETWEEN CURRENT ROW "
       "AND 1 FOLLOWING), "
       "CAST(AVG(M) OVER (ORDER BY ID ROWS BETWEEN 2 PRECEDING AND 1 PRECEDING) AS DECIMAL(9,4)) FROM S "
       "ORDER BY ID",
       "1.10\t2\tNULL\n3.30\t4\t1.5000\n-1.10\t3\t1.8750\n-3.30\t4\t2.6250\n0.01\t13\t3.0000\n10.00\t9\t-1."
       "0001\n"},
      {"SELECT G, SUM(N), SUM(SUM(N)) OVER (ORDER BY G) FROM S GROUP BY G ORDER BY G",
       "NULL\t9\t9\na\t2\t11\nb\t7\t18\n"},
      {"SELECT TOP 2 ID FROM S ORDER BY ROW_NUMBER() OVER (ORDER BY P DESC)", "6\n2\n"},
      {"SELECT ID FROM (SELECT ID, ROW_NUMBER() OVER (ORDER BY (SELECT NULL)) r FROM E) x WHERE r BETWEEN 2 "
       "AND 3",
       "2\n3\n"},
      {"SELECT DISTINCT G, COUNT(*) OVER (PARTITION BY G) FROM S ORDER BY 2, 1", "NULL\t1\na\t2\nb\t3\n"},
      {"WITH r AS (SELECT ID, RANK() OVER (PARTITION BY G ORDER BY N) k FROM S) DELETE S WHERE ID IN (SELECT "
       "ID FROM r WHERE k>1) "
       "SELECT ID FROM S",
       "1\n2\n4\n6\n"},
      {"SELECT CASE WHEN SUM(N) OVER () > 5 THEN 'çok' END, 1+ROW_NUMBER() OVER (ORDER BY ID) FROM S WHERE "
       "ID<3",
       "NULL\t2\nNULL\t3\n"},
      {"SELECT ID FROM S WHERE ROW_NUMBER() OVER (ORDER BY ID)=1", "!4108\n"},
      {"SELECT G FROM S GROUP BY G HAVING COUNT(*) OVER ()>1", "!4108\n"},
      {"UPDATE S SET N=ROW_NUMBER() OVER (ORDER BY ID)", "!4108\n"},
      {"SELECT 1 FROM S a JOIN S b ON a.ID=COUNT(*) OVER ()", "!4108\n"},
      {"SELECT COUNT(*) FROM S GROUP BY RANK() OVER (ORDER BY ID)", "!4108\n"},
      {"SELECT SUM(RANK() OVER (ORDER BY ID)) FROM S", "!4109\n"},
      {"SELECT SUM(N) OVER (ORDER BY RANK() OVER (ORDER BY ID)) FROM S", "!4109\n"},
      {"SELECT ROW_NUMBER() OVER (PARTITION BY G) FROM S", "!4112\n"},
      {"SELECT LEN(G) OVER (ORDER BY ID) FROM S", "!4113\n"},
      {"SELECT NTILE(0) OVER (ORDER BY ID) FROM S", "!4116\n"},
      {"SELECT SUM(N) OVER (ORDER BY ID ROWS BETWEEN 1 FOLLOWING AND CURRENT ROW) FROM S", "!4193\n"},
      {"SELECT SUM(N) OVER (ORDER BY ID RANGE 1 PRECEDING) FROM S", "!4194\n"},
      {"SELECT SUM(N) OVER (ORDER BY 1) FROM S", "!5308\n"},
      {"SELECT SUM(N) OVER (ORDER BY 'a') FROM S", "!5309\n"},
      {"SELECT RANK() OVER (ORDER BY ID ROWS 1 PRECEDING) FROM S", "!10752\n"},
      {"SELECT RANK() FROM S", "!10753\n"},
      {"SELECT SUM(N) OVER (ROWS 1 PRECEDING) FROM S", "!10756\n"},
      {"SELECT SUM(DISTINCT N) OVER () FROM S", "!10759\n"},
      {"SELECT N, COUNT(*) OVER (PARTITION BY G) FROM S GROUP BY N", "!8120\n"},
      {"SELECT LAG(N) OVER (ORDER BY ID) FROM S", "!50000\n"},
      {"SELECT SUM(N) OVER (ORDER BY X) FROM S", "!207\n"},
      {"SELECT SUM(2147483647) OVER (ORDER BY ID) FROM E", "!8115\n"},
  });
  run("SELECT ROW_NUMBER() OVER (ORDER BY ID) a, SUM(P) OVER () b, AVG(N) OVER () c FROM S");
  std::string types;
  for (const ResultColumn& column : last.columns) types += describe(column.type) + ' ';
  EXPECT_EQ(types, "BIGINT DECIMAL(38,2) INT ");
}

// The same text, judged by SQLite on plain integers.
TEST_F(WindowTest, AgreesWithSqlite) {
  std::mt19937 random(2012);
  const auto pick = [&](int below) { return static_cast<int>(random() % static_cast<unsigned>(below)); };
  sqlite3* plain = nullptr;
  ASSERT_EQ(sqlite3_open(":memory:", &plain), SQLITE_OK);
  const auto both = [&](const std::string& text) {
    EXPECT_EQ(run(text), "") << text;
    EXPECT_EQ(sqlite3_exec(plain, text.c_str(), nullptr, nullptr, nullptr), SQLITE_OK)
        << sqlite3_errmsg(plain);
  };
  both("CREATE TABLE W (ID INT, A INT, B INT)");
  for (int i = 0; i < 40; ++i) {
    const auto value = [&] { return pick(5) == 0 ? std::string("NULL") : std::to_string(pick(7) - 2); };
    both("INSERT INTO W VALUES (" + std::to_string(i) + "," + value() + "," + value() + ")");
  }
  const auto printed = [&](const std::string& text) {
    std::string rows;
    const auto row = [](void* out, int count, char** cells, char**) {
      for (int i = 0; i < count; ++i)
        *static_cast<std::string*>(out) += std::string(i ? "\t" : "") + (cells[i] ? cells[i] : "NULL");
      *static_cast<std::string*>(out) += '\n';
      return 0;
    };
    EXPECT_EQ(sqlite3_exec(plain, text.c_str(), row, &rows, nullptr), SQLITE_OK)
        << text << sqlite3_errmsg(plain);
    return rows;
  };
  const std::vector<std::string> functions = {"SUM(A)",       "COUNT(B)",     "MIN(A)", "MAX(B)",
                                              "SUM(A-B)",     "ROW_NUMBER()", "RANK()", "COUNT(*)",
                                              "DENSE_RANK()", "NTILE(3)"};
  const std::vector<std::string> partitions = {"", "PARTITION BY A ", "PARTITION BY A, B ",
                                               "PARTITION BY A-B "};
  const std::vector<std::string> orders = {"ORDER BY ID", "ORDER BY A, ID", "ORDER BY B DESC, ID DESC",
                                           "ORDER BY A+B, ID"};
  const std::vector<std::string> frames = {"", " ROWS 2 PRECEDING",
                                           " ROWS BETWEEN 1 PRECEDING AND 3 FOLLOWING",
                                           " ROWS BETWEEN 1 FOLLOWING AND UNBOUNDED FOLLOWING",
                                           " RANGE BETWEEN CURRENT ROW AND UNBOUNDED FOLLOWING"};
  const auto one = [&](const std::vector<std::string>& from) {
    return from[static_cast<std::size_t>(pick(static_cast<int>(from.size())))];
  };
  for (int i = 0; i < 300; ++i) {
    std::string text = "SELECT ID";
    for (int column = 0; column < 3; ++column) {
      const std::string function = one(functions);
      const bool ranks = function.find("()") != function.npos || function[0] == 'N';
      // Peers, where they count, are those of an order without ID.
      const std::string order = ranks || pick(2) ? one(orders) : std::string("ORDER BY A");
      const std::string frame = ranks || order == "ORDER BY A" ? "" : one(frames);
      text += ", " + function + " OVER (" + one(partitions) + order + frame + ")";
    }
    text += " FROM W" + std::string(pick(2) ? " WHERE A>0" : "") + " ORDER BY ID";
    EXPECT_EQ(run(text), printed(text)) << text;
  }
  const std::vector<std::string> words = {" UNION ", " UNION ALL ", " EXCEPT ", " INTERSECT "};
  for (int i = 0; i < 300; ++i) {
    // a OP b OP c: where the second word is the stronger INTERSECT, SQLite needs it as a query of its own.
    const auto term = [&] {
      return "SELECT " + one({"A", "B", "ID", "A-B"}) + " x FROM W WHERE ID%4<" + std::to_string(1 + pick(4));
    };
    const std::string a = term(), b = term(), c = term(), first = one(words), second = one(words);
    const bool binds = second == words[3] && first != words[3];
    const bool bracket = pick(3) == 0;
    const std::string whole = bracket ? a + first + "(" + b + second + c + ")" : a + first + b + second + c;
    const std::string judged =
        bracket || binds ? a + first + "SELECT * FROM (" + b + second + c + ")" : whole;
    EXPECT_EQ(run("SELECT x FROM (" + whole + ") q ORDER BY x"),
              printed("SELECT x FROM (" + judged + ") q ORDER BY x"))
        << whole;
  }
  sqlite3_close(plain);
}

}  // namespace
}  // namespace engine::test
