// #temporary tables and table variables: how long they live, what they leave alone.
#include "engine/server/dialect.h"

namespace engine::test {
namespace {

class TemporaryTest : public DialectTest {
 protected:
  TemporaryTest() {
    follow({
        {"CREATE TABLE T (N INT IDENTITY NOT NULL PRIMARY KEY, V VARCHAR(5))", ""},
        {"INSERT INTO T (V) VALUES ('bir'),('iki'),('üç')", ""},
    });
  }
};

TEST_F(TemporaryTest, ATableOfTheSession) {
  follow({
      {"CREATE TABLE #t (ID INT IDENTITY(10,5) NOT NULL PRIMARY KEY, AD VARCHAR(5) NOT NULL DEFAULT 'yok', P "
       "DECIMAL(20,2) UNIQUE)",
       ""},
      {"CREATE INDEX IX ON #t (AD DESC)", ""},
      {"INSERT INTO #t (AD,P) VALUES ('bir',1.5) INSERT #t (P) VALUES (2) SELECT @@IDENTITY, "
       "SCOPE_IDENTITY()",
       "15\t15\n"},
      {"SELECT * FROM #t ORDER BY ID", "10\tbir\t1.50\n15\tyok\t2.00\n"},
      {"INSERT INTO #t (P) VALUES (1.5)", "!2627\n"},
      {"INSERT INTO #t (AD,P) VALUES (NULL,3)", "!515\n"},
      {"INSERT INTO #t (AD,P) VALUES ('uzunca',3)", "!8152\n"},
      {"SELECT x.AD, T.N FROM #t x JOIN T ON T.V=x.AD", "bir\t1\n"},
      {"SELECT #t.ID FROM tempdb..#t WHERE #t.AD='BİR'", "10\n"},
      {"UPDATE #t SET P=N FROM #t JOIN T ON V=AD DELETE #t WHERE P=2 SELECT ID, P FROM #t", "10\t1.00\n"},
      {"UPDATE x SET P=P+1 FROM #t x SELECT P FROM #T", "2.00\n"},
      {"INSERT INTO T (V) SELECT AD FROM #t SELECT COUNT(*) FROM T", "4\n"},
      {"SET IDENTITY_INSERT #t ON INSERT INTO #t (ID,AD) VALUES (50,'elli') SET IDENTITY_INSERT #t OFF "
       "INSERT INTO #t (P) VALUES (9) "
       "SELECT ID FROM #t ORDER BY ID",
       "10\n50\n55\n"},
      {"ALTER TABLE #t ADD K INT NOT NULL DEFAULT 7 SELECT MAX(K) FROM #t", "7\n"},
      {"SELECT * INTO #k FROM T WHERE N<3 INSERT INTO #k (V) VALUES ('y') SELECT N, V FROM #k",
       "1\tbir\n2\tiki\n3\ty\n"},
      {"SELECT CASE WHEN OBJECT_ID('tempdb..#k') IS NULL THEN 0 ELSE 1 END, OBJECT_ID('tempdb..#y'), "
       "OBJECT_ID('#k')",
       "1\tNULL\tNULL\n"},
      {"SELECT COUNT(*) FROM tempdb..sysobjects WHERE name='#k' AND xtype='U'", "1\n"},
      {"TRUNCATE TABLE #k SELECT COUNT(*) FROM #k DROP TABLE #k SELECT * FROM #k", "0\n!208\n"},
      {"EXEC('INSERT INTO #t (AD,P) VALUES (''exec'',60)') SELECT AD FROM #t WHERE ID=60", "exec\n"},
      {"DROP INDEX #t.IX DROP TABLE #t, tempdb..#t", "!3701\n"},
      {"CREATE TABLE #t (A INT) CREATE TABLE #t (A INT)", "!2714\n"},
  });
  EXPECT_EQ(run("DROP TABLE #yok"), "!3701\n");
  EXPECT_EQ(message,
            "Cannot drop the table '#yok', because it does not exist or you do not have permission.");
  EXPECT_EQ(run("SELECT * FROM #yok"), "!208\n");
  EXPECT_EQ(message, "Invalid object name '#yok'.");
}

TEST_F(TemporaryTest, IsSeenByItsSessionAlone) {
  auto other = open("FIRMA");
  follow({{"SELECT V INTO #t FROM T", ""}});
  EXPECT_EQ(run(*other, "SELECT * FROM #t"), "!208\n");
  EXPECT_EQ(run(*other, "CREATE TABLE #t (X INT) INSERT INTO #t VALUES (5) SELECT X FROM #t"), "5\n");
  follow({{"SELECT V FROM #t WHERE V='iki'", "iki\n"},
          {"SELECT name FROM sysobjects WHERE name LIKE '#%'", ""}});
  session = open("FIRMA");
  follow({{"SELECT * FROM #t", "!208\n"}});
}

TEST_F(TemporaryTest, NobodyWaitsForOne) {
  auto writer = open("FIRMA");
  follow({{"CREATE TABLE #t (A INT) SET LOCK_TIMEOUT 0", ""}});
  EXPECT_EQ(run(*writer, "SET LOCK_TIMEOUT 0 BEGIN TRAN UPDATE T SET V='x' WHERE N=1"), "");
  // The database is locked by another session: what is temporary is made, filled and dropped all the same.
  follow({
      {"INSERT INTO #t SELECT N FROM T SELECT COUNT(*) FROM #t", "3\n"},
      {"SELECT N, V INTO #u FROM T CREATE TABLE #v (A INT PRIMARY KEY) CREATE INDEX I ON #t (A) DROP TABLE "
       "#v SELECT COUNT(*) FROM #u",
       "3\n"},
      {"DECLARE @t TABLE (A INT) INSERT INTO @t SELECT N FROM T SELECT SUM(A) FROM @t", "6\n"},
      {"UPDATE T SET V='y'", "!1222\n"},
  });
  EXPECT_EQ(run(*writer, "COMMIT"), "");
  // And no statement on one keeps a writer waiting.
  run("SELECT A FROM #t");
  EXPECT_EQ(run(*writer, "UPDATE T SET V='z' WHERE N=1 SELECT V FROM T WHERE N=1"), "z\n");
}

TEST_F(TemporaryTest, GoesBackWithTheTransaction) {
  follow({
      {"BEGIN TRAN CREATE TABLE #t (A INT IDENTITY, B INT) INSERT INTO #t (B) VALUES (1) ROLLBACK SELECT * "
       "FROM #t",
       "!208\n"},
      {"CREATE TABLE #t (A INT IDENTITY, B INT) INSERT INTO #t (B) VALUES (1)", ""},
      {"BEGIN TRAN INSERT INTO #t (B) VALUES (2) INSERT INTO T (V) VALUES ('x') ALTER TABLE #t ADD C INT "
       "ROLLBACK SELECT * FROM #t",
       "1\t1\n"},
      {"BEGIN TRAN DROP TABLE #t ROLLBACK INSERT INTO #t (B) VALUES (3) SELECT * FROM #t", "1\t1\n3\t3\n"},
      {"BEGIN TRAN SAVE TRAN s CREATE TABLE #u (A INT) ROLLBACK TRAN s SELECT COUNT(*) FROM #t COMMIT SELECT "
       "* FROM #u",
       "2\n!208\n"},
      {"BEGIN TRAN CREATE TABLE #u (A INT) INSERT INTO #u VALUES (1) COMMIT SELECT A FROM #u", "1\n"},
      {"INSERT INTO #u SELECT CASE N WHEN 3 THEN 1/0 ELSE N END FROM T", "!8134\n"},
      {"SELECT A FROM #u SELECT COUNT(*) FROM T", "1\n3\n"},
  });
}

TEST_F(TemporaryTest, EndsWithTheBatchThatMadeIt) {
  follow({
      {"CREATE TABLE #d (A INT)", ""},
      {"EXEC('CREATE TABLE #i (A INT) INSERT INTO #i VALUES (1) INSERT INTO #d SELECT A FROM #i') SELECT A "
       "FROM #d SELECT * FROM #i",
       "1\n!208\n"},
      {"EXEC('CREATE TABLE #i (A INT) SELECT 1/0 x SELECT A FROM #yok') SELECT * FROM #i", "!8134\n"},
      {"CREATE PROCEDURE YAP @n INT AS CREATE TABLE #y (A INT) INSERT INTO #y VALUES (@n) DECLARE @t TABLE "
       "(A INT) "
       "INSERT INTO @t SELECT A FROM #y INSERT INTO #d SELECT A FROM @t",
       ""},
      {"EXEC YAP 7 SELECT A FROM #d SELECT * FROM #y", "1\n7\n!208\n"},
      {"EXEC('DROP TABLE #d') SELECT * FROM #d", "!208\n"},
      {"CREATE TRIGGER TR ON T FOR INSERT AS SELECT N INTO #s FROM inserted UPDATE T SET V='tr' WHERE N IN "
       "(SELECT N FROM #s)",
       ""},
      {"INSERT INTO T (V) VALUES ('a') INSERT INTO T (V) VALUES ('b') SELECT V FROM T WHERE N>3 SELECT * "
       "FROM #s",
       "tr\ntr\n!208\n"},
  });
  std::vector<Parameter> parameters = {{"@p", {TypeId::Int}, Datum(4)}};
  session->execute("SELECT @p x INTO #p SELECT x FROM #p", parameters, last = PrintingSink());
  EXPECT_EQ(last.text, "4\n");
  EXPECT_EQ(run("SELECT * FROM #p"), "!208\n");
}

TEST_F(TemporaryTest, TableVariables) {
  follow({
      {"DECLARE @t TABLE (ID INT IDENTITY PRIMARY KEY, V VARCHAR(5) DEFAULT 'd', UNIQUE (V)), @n INT INSERT "
       "INTO @t (V) SELECT V FROM T "
       "INSERT INTO @t DEFAULT VALUES UPDATE @t SET V='IKI2' WHERE ID=2 DELETE FROM @t WHERE ID=1 SELECT "
       "@n=COUNT(*) FROM @t "
       "SELECT @n, x.ID, x.V, T.N FROM @t x LEFT JOIN T ON T.V=x.V ORDER BY 2",
       "3\t2\tIKI2\tNULL\n3\t3\tüç\t3\n3\t4\td\tNULL\n"},
      {"DECLARE @t TABLE (A INT NOT NULL PRIMARY KEY) INSERT INTO @t VALUES (1) INSERT INTO @t VALUES (1)",
       "!2627\n"},
      // No ROLLBACK takes its rows back; a statement that fails does.
      {"DECLARE @t TABLE (A INT IDENTITY, B INT) INSERT INTO @t (B) VALUES (1) BEGIN TRAN INSERT INTO @t (B) "
       "VALUES (2) "
       "INSERT INTO T (V) VALUES ('x') SAVE TRAN s INSERT INTO @t (B) VALUES (3) ROLLBACK TRAN s DELETE @t "
       "WHERE B=1 ROLLBACK "
       "INSERT INTO @t (B) VALUES (4) SELECT A, B FROM @t SELECT COUNT(*) FROM T",
       "2\t2\n3\t3\n4\t4\n3\n"},
      {"DECLARE @t TABLE (A INT) INSERT INTO @t SELECT 1/(N-2) FROM T SELECT COUNT(*) FROM @t", "!8134\n"},
      {"DECLARE @t TABLE (A INT) BEGIN TRY BEGIN TRAN INSERT INTO @t VALUES (7) SELECT CAST('x' AS INT) END "
       "TRY "
       "BEGIN CATCH ROLLBACK SELECT A FROM @t END CATCH",
       "7\n"},
      // It is the batch's own, declared once wherever it stands.
      {"DECLARE @t TABLE (A INT) INSERT INTO @t VALUES (1) EXEC('DECLARE @t TABLE (B INT) INSERT INTO @t "
       "VALUES (2) SELECT B FROM @t') "
       "SELECT A FROM @t",
       "2\n1\n"},
      {"DECLARE @i INT SET @i=0 WHILE @i<3 BEGIN SET @i=@i+1 DECLARE @t TABLE (A INT) INSERT INTO @t VALUES "
       "(@i) END SELECT COUNT(*) FROM @t",
       "3\n"},
      {"IF 1=0 BEGIN DECLARE @t TABLE (A INT) END SELECT COUNT(*) FROM @t", "0\n"},
      {"SELECT * FROM @t", "!1087\n"},
      {"EXEC('SELECT * FROM @t')", "!1087\n"},
      {"DECLARE @t TABLE (A INT) SELECT @t", "!137\n"},
      {"DECLARE @t TABLE (A INT) DECLARE @t INT", "!134\n"},
      {"DECLARE @t TABLE (A INT, CONSTRAINT c PRIMARY KEY (A))", "!156\n"},
      {"CREATE TRIGGER TR ON T FOR INSERT AS DECLARE @t TABLE (N INT) INSERT INTO @t SELECT N FROM inserted "
       "UPDATE T SET V='tr' WHERE N IN (SELECT N FROM @t)",
       ""},
      {"INSERT INTO T (V) VALUES ('a') EXEC('INSERT INTO T (V) VALUES (''b'')') SELECT V FROM T WHERE N>4",
       "tr\ntr\n"},
  });
}

TEST_F(TemporaryTest, WhatIsRefused) {
  follow({
      {"CREATE VIEW V AS SELECT * FROM #t", "!4508\n"},
      {"CREATE VIEW #v AS SELECT 1 a", "!4103\n"},
      {"CREATE TABLE ##t (A INT)", "!50000\n"},
      {"CREATE TABLE tempdb..t (A INT)", "!40517\n"},
      {"USE tempdb", "!50000\n"},
      {"CREATE DATABASE tempdb", "!1801\n"},
      {"DROP DATABASE tempdb", "!3708\n"},
      {"sp_rename 'T', '#t'", "!40517\n"},
      {"SELECT COUNT(*) FROM T", "3\n"},
  });
  // Who may do nothing in the database still has temporary tables of his own.
  run("EXEC sp_addlogin 'okur','parola' EXEC sp_grantdbaccess 'okur' EXEC sp_addrolemember "
      "'db_datareader','okur'");
  Session reader(server, "okur", "parola", "FIRMA");
  EXPECT_EQ(run(reader,
                "SELECT N INTO #t FROM T CREATE TABLE #u (A INT) INSERT INTO #u SELECT N FROM #t DROP TABLE "
                "#t SELECT COUNT(*) FROM #u"),
            "3\n");
  EXPECT_EQ(run(reader, "CREATE TABLE U (A INT)"), "!262\n");
}

}  // namespace
}  // namespace engine::test
