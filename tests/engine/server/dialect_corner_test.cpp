// Corners where the server once told something else: error numbers, identity, NULL of new tables, triggers,
// LIKE.
#include "engine/server/dialect.h"

namespace engine::test {
namespace {

TEST_F(DialectTest, ErrorNumberBehindRaiserror) {
  follow({
      {"RAISERROR('a',16,1) SELECT @@ERROR SELECT @@ERROR", "!50000\n"},
      {"CREATE TABLE E (N INT, M INT)", ""},
      {"RAISERROR('a',11,1) INSERT INTO E VALUES (@@ERROR, 11)", "!50000\n"},
      {"RAISERROR('a',10,1) INSERT INTO E VALUES (@@ERROR, 10)", "# a\n"},
      {"RAISERROR('a',9,1) WITH SETERROR INSERT INTO E VALUES (@@ERROR, 9)", "# a\n"},
      {"EXEC('RAISERROR(''a'',12,1)') INSERT INTO E VALUES (@@ERROR, 12)", "!50000\n"},
      {"EXEC('RAISERROR(''a'',12,1) SELECT 1') INSERT INTO E VALUES (@@ERROR, 13)", "!50000\n"},
      {"RAISERROR('a',14,1) DECLARE @e INT SET @e=@@ERROR INSERT INTO E VALUES (@e, 14)", "!50000\n"},
      {"IF 1=1 BEGIN RAISERROR('a',15,1) IF @@ERROR=50000 INSERT INTO E VALUES (@@ERROR, 15) END",
       "!50000\n"},
      {"SELECT N, M FROM E ORDER BY M", "50000\t9\n0\t10\n50000\t11\n50000\t12\n0\t13\n50000\t14\n0\t15\n"},
  });
}

TEST_F(DialectTest, ThrowEndsTheBatchButNotTheTransaction) {
  follow({
      {"CREATE TABLE E (N INT) CREATE TABLE T (A INT)", ""},
      {"THROW 50001,'a %d',1", "!50001\n"},
      {"SELECT @@ERROR", "50001\n"},
      {"BEGIN TRAN INSERT INTO E VALUES (1); THROW 60000,'a',255; INSERT INTO E VALUES (2)", "!60000\n"},
      {"SELECT @@TRANCOUNT, COUNT(*) FROM E COMMIT", "1\t1\n"},
      {"IF 1=1 THROW 50000,N'x',0 ELSE PRINT 'y' PRINT 'z'", "!50000\n"},
      {"EXEC('BEGIN THROW 50002,''x'',0 END SELECT 1') SELECT 2", "!50002\n"},
      {"DECLARE @n INT, @m NVARCHAR(50), @s TINYINT SELECT @n=70000, @m=N'şöyle', @s=7; THROW @n,@m,@s",
       "!70000\n"},
      {"SET XACT_ABORT ON BEGIN TRAN INSERT INTO E VALUES (3); THROW 50003,'x',1", "!50003\n"},
      {"SET XACT_ABORT OFF SELECT @@TRANCOUNT, COUNT(*) FROM E", "0\t1\n"},
      {"CREATE TRIGGER TR ON T FOR INSERT AS IF EXISTS(SELECT 1 FROM inserted WHERE A<0) THROW "
       "51000,'eksi',1",
       ""},
      {"INSERT INTO T VALUES (1) INSERT INTO T VALUES (-1) INSERT INTO T VALUES (2)", "!51000\n"},
      {"SELECT A FROM T", "1\n"},
      {"THROW 49999,'a',1", "!35100\n"},
      {"DECLARE @n BIGINT SET @n=2147483648; THROW @n,'a',1", "!35100\n"},
      {"SELECT 1 SELECT 2; THROW", "!10704\n"},
      {"BEGIN THROW END", "!10704\n"},
      // Without a semicolon before it, it is no statement.
      {"PRINT 'a' THROW 50001,'a',1", "!102\n"},
      {"SELECT 1 THROW 50001,'a',1", "!102\n"},
      {"SELECT throw.A FROM T throw", "1\n"},
      {"THROW 50001,50,1", "!102\n"},
      {"THROW 50001,'a'", "!102\n"},
  });
  run("DECLARE @s INT SET @s=3 PRINT 'a'; THROW 50001,'yüzde %s %d %%',@s");
  EXPECT_EQ(message, "yüzde %s %d %%");
}

TEST_F(DialectTest, ColumnsOfSelectIntoThatMayBeNull) {
  follow({
      {"CREATE TABLE T (A INT NOT NULL, V VARCHAR(5) NOT NULL)", ""},
      {"SELECT STUFF(V,9,1,'x') a, ASCII(V) b, SPACE(A) c, REPLICATE(V,A) d, CHAR(A) e, UNICODE(V) f, "
       "NCHAR(A) g,STR(A,A) h, QUOTENAME(V) i, NULLIF(A,1) j, UPPER(V) k, LEN(V) l, A m, V+'x' n, "
       "ISNULL(STUFF(V,9,1,'x'),'') o "
       "INTO U FROM T",
       ""},
      {"SELECT name, isnullable FROM syscolumns WHERE id=OBJECT_ID('U') ORDER BY colid",
       "a\t1\nb\t1\nc\t1\nd\t1\ne\t1\nf\t1\ng\t1\nh\t1\ni\t1\nj\t1\nk\t0\nl\t0\nm\t0\nn\t0\no\t0\n"},
      {"INSERT INTO T VALUES (-1,'') SELECT STUFF(V,9,1,'x') a, ASCII(V) b, SPACE(A) c, REPLICATE(V,A) d, "
       "CHAR(A) e INTO W FROM T SELECT * FROM W",
       "NULL\tNULL\tNULL\tNULL\tNULL\n"},
  });
}

TEST_F(DialectTest, UpdatedColumnsInTriggers) {
  follow({
      {"CREATE TABLE T (A INT, B INT) CREATE TABLE L (E VARCHAR(9), A INT, B INT)", ""},
      {"CREATE TRIGGER TR ON T FOR INSERT, UPDATE, DELETE AS DECLARE @e VARCHAR(9), @a INT, @b INT "
       "SET @e=CASE WHEN NOT EXISTS(SELECT 1 FROM deleted) THEN 'insert' "
       "WHEN NOT EXISTS(SELECT 1 FROM inserted) THEN 'delete' ELSE 'update' END "
       "IF UPDATE(A) SET @a=1 ELSE SET @a=0 IF UPDATE(B) SET @b=1 ELSE SET @b=0 "
       "INSERT INTO L VALUES (@e,@a,@b)",
       ""},
      {"INSERT INTO T (A) VALUES (1) UPDATE T SET B=2 DELETE FROM T SELECT * FROM L",
       "insert\t1\t1\nupdate\t0\t1\ndelete\t0\t0\n"},
  });
}

TEST_F(DialectTest, LastIdentityIsThatOfTheLastInsert) {
  follow({
      {"CREATE TABLE N (A INT) CREATE TABLE I (K INT IDENTITY(7,1), A INT)", ""},
      {"INSERT INTO I VALUES (1) SELECT @@IDENTITY, SCOPE_IDENTITY()", "7\t7\n"},
      {"INSERT INTO N VALUES (1) SELECT @@IDENTITY, SCOPE_IDENTITY()", "NULL\t7\n"},
      {"INSERT INTO I VALUES (1) INSERT INTO N SELECT A FROM I SELECT @@IDENTITY", "NULL\n"},
      {"INSERT INTO I VALUES (1) UPDATE N SET A=2 SELECT @@IDENTITY", "9\n"},
      {"CREATE TRIGGER TR ON N FOR INSERT AS INSERT INTO I VALUES (5)", ""},
      {"INSERT INTO N VALUES (1) SELECT @@IDENTITY, SCOPE_IDENTITY()", "10\t9\n"},
      {"SELECT A INTO P FROM N SELECT @@IDENTITY", "NULL\n"},
      {"SELECT K INTO Q FROM I SELECT @@IDENTITY", "10\n"},
  });
}

TEST_F(DialectTest, IdentityOfSelectInto) {
  const std::string identities =
      " SELECT c.name, c.status & 128 FROM syscolumns c WHERE id=OBJECT_ID('U') ORDER BY colid DROP TABLE U";
  follow({
      {"CREATE TABLE I (K INT IDENTITY(7,1), A INT) INSERT INTO I VALUES (1)", ""},
      {"SELECT K, A INTO U FROM I" + identities, "K\t128\nA\t0\n"},
      {"SELECT K, A, K AS L INTO U FROM I" + identities, "K\t0\nA\t0\nL\t0\n"},
      {"SELECT K+0 AS K INTO U FROM I" + identities, "K\t0\n"},
      {"SELECT K INTO U FROM I GROUP BY K" + identities, "K\t0\n"},
      {"SELECT i.K INTO U FROM I i JOIN I j ON i.K=j.K" + identities, "K\t0\n"},
      {"SELECT K INTO U FROM I UNION ALL SELECT K FROM I" + identities, "K\t0\n"},
  });
}

TEST_F(DialectTest, BlanksAtTheEndBesideLike) {
  follow({
      {"CREATE TABLE T (C CHAR(5), V VARCHAR(5), N NCHAR(5), W NVARCHAR(5))"
       "INSERT INTO T VALUES ('abc','abc  ','abc','abc  ')",
       ""},
      {"SELECT 'C' FROM T WHERE C LIKE 'abc' SELECT 'V' FROM T WHERE V LIKE 'abc' SELECT 'N' FROM T WHERE N "
       "LIKE 'abc' SELECT 'W' FROM T WHERE W LIKE 'abc'",
       "C\nV\n"},
      {"SELECT 'C' FROM T WHERE C LIKE N'abc' SELECT 'V' FROM T WHERE V LIKE N'%c' SELECT 'N' FROM T WHERE N "
       "LIKE 'abc  'SELECT 'W' FROM T WHERE W LIKE N'abc  ' SELECT 'X' FROM T WHERE W LIKE '%c%' SELECT 'Y' "
       "FROM T WHERE W NOT LIKE 'abc'",
       "N\nW\nX\nY\n"},
      {"SELECT PATINDEX('%c',V), PATINDEX('%c',W), PATINDEX('%c%',W), PATINDEX('%c  ',W) FROM T",
       "3\t0\t3\t3\n"},
  });
}

TEST_F(DialectTest, UnionsOfManyArms) {
  const auto arms = [](int count, const std::string& word) {
    std::string sql = "SELECT 0 AS A, 'a' AS C";
    for (int i = 1; i < count; ++i) sql += word + "SELECT " + std::to_string(i % 900) + ", 'A'";
    return sql;
  };
  follow({
      {"SELECT COUNT(*), SUM(A), MIN(C) FROM (" + arms(1700, " UNION ALL ") + ") d", "1700\t724150\ta\n"},
      {"SELECT COUNT(*), SUM(A), COUNT(DISTINCT C) FROM (" + arms(1700, " UNION ") + ") d",
       "900\t404550\t1\n"},
      {"CREATE TABLE T (A INT, C VARCHAR(3)) INSERT INTO T " + arms(501, " UNION ALL ") +
           " SELECT COUNT(*), MAX(A) FROM T",
       "501\t500\n"},
      {"SELECT TOP 2 A FROM (" + arms(801, " UNION ALL ") + ") d ORDER BY A DESC", "800\n799\n"},
  });
}

TEST_F(DialectTest, ChoiceAndBigCount) {
  follow({
      {"CREATE TABLE T (A INT) INSERT INTO T VALUES (1) INSERT INTO T VALUES (NULL)", ""},
      {"SELECT IIF(A=1 AND 1=1,'bir',NULL), IIF(A>1,A,2.5), COUNT_BIG(*) FROM T GROUP BY A ORDER BY A",
       "NULL\t2.5\t1\nbir\t2.5\t1\n"},
      {"SELECT COUNT_BIG(*), COUNT_BIG(A) FROM T", "2\t1\n"},
  });
}

TEST_F(DialectTest, WhatIsNotThereIsNamed) {
  run("CREATE TABLE T (A INT, B INT, C VARCHAR(10))");
  const std::pair<const char*, const char*> constructs[] = {
      {"SELECT TRY_CAST('a' AS INT)", "'TRY_CAST'"},
      {"SELECT PARSE('1' AS INT)", "'PARSE'"},
      {"SELECT CONCAT('a','b')", "'CONCAT'"},
      {"SELECT STRING_AGG(C,',') WITHIN GROUP (ORDER BY C) FROM T", "'WITHIN GROUP'"},
      {"SELECT A FROM T GROUP BY GROUPING SETS((A),())", "'GROUPING SETS'"},
      {"SELECT A FROM T WHERE A IS DISTINCT FROM B", "'IS DISTINCT FROM'"},
      {"SELECT A FROM T WHERE A IS NOT DISTINCT FROM B", "'IS NOT DISTINCT FROM'"},
      {"SELECT GETDATE() AT TIME ZONE 'UTC'", "'AT TIME ZONE'"},
      {"SELECT {fn NOW()}", "'ODBC escape {'"},
      {"CREATE TABLE X (A INT SPARSE)", "'SPARSE'"},
      {"DISABLE TRIGGER TR ON T", "'DISABLE TRIGGER'"},
      {"EXECUTE AS USER='x'", "'EXECUTE AS'"},
      {"DROP TABLE IF EXISTS T", "'DROP IF EXISTS'"},
      {"LINENO 5", "'LINENO'"},
      {"SELECT 1 DUMP DATABASE x", "'DUMP'"},
  };
  for (const auto& [batch, name] : constructs) {
    run(batch);
    EXPECT_NE(message.find(name), std::string::npos) << batch << ": " << message;
  }
  EXPECT_EQ(run("SELECT A FRM T WHERE IS"), "!102\n") << message;
}

}  // namespace
}  // namespace engine::test
