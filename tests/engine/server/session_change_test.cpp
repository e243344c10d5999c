// INSERT, UPDATE, DELETE, identity values, variables, control flow and transactions.

#include <sqlite3.h>

#include <atomic>
#include <thread>

#include "engine/session_fixture.h"

namespace engine::test {
namespace {

class ChangeTest : public SessionTest {};

TEST_F(ChangeTest, InsertChecksAndConverts) {
  follow({
      {"CREATE TABLE T (ID INT IDENTITY(10,5), Kod CHAR(4) NOT NULL, N INT NULL DEFAULT 7, D DATETIME NULL, "
       "B BIT, P MONEY DEFAULT (1.5), Y SMALLINT, CONSTRAINT PK_T PRIMARY KEY (Kod))",
       ""},
      {"INSERT INTO T (Kod) VALUES ('a') INSERT T (Kod,N,B) VALUES (12,'5',3)", ""},
      {"SELECT ID,Kod,N,P,B FROM T ORDER BY ID", "10\ta\t7\t1.50\tNULL\n15\t12\t5\t1.50\t1\n"},
      {"SELECT @@IDENTITY,SCOPE_IDENTITY(),IDENT_CURRENT('T')", "15\t15\t15\n"},
      {"INSERT INTO T (Kod) VALUES ('abcde')", "!8152\n"},
      {"INSERT INTO T (Kod) VALUES ('ab'+'cde')", "!8152\n"},
      {"INSERT INTO T (Kod) SELECT Kod+'xxxxx' FROM T", "!8152\n"},
      {"INSERT INTO T (Kod) VALUES (NULL)", "!515\n"},
      {"INSERT INTO T (N) VALUES (1)", "!515\n"},
      {"INSERT INTO T (Kod) VALUES ('A')", "!2627\n"},
      {"INSERT INTO T (ID,Kod) VALUES (1,'x')", "!544\n"},
      {"INSERT INTO T (Kod,Yok) VALUES ('x',1)", "!207\n"},
      {"INSERT INTO T (Kod,N) VALUES ('x')", "!109\n"},
      {"INSERT INTO T (Kod) VALUES ('x',1)", "!110\n"},
      {"INSERT INTO T VALUES ('x')", "!213\n"},
      {"INSERT INTO T (Kod,N) SELECT 'x'", "!120\n"},
      {"INSERT INTO T (Kod,N) VALUES ('x','on')", "!245\n"},
      {"INSERT INTO T (Kod,Y) VALUES ('x',40000)", "!220\n"},
      {"INSERT INTO T (Kod,D) VALUES ('x','13/40/2012')", "!242\n"},
      {"INSERT INTO YOK VALUES (1)", "!208\n"},
      {"SELECT COUNT(*) FROM T", "2\n"},
      {"SET IDENTITY_INSERT T ON INSERT INTO T (ID,Kod) VALUES (100,'y') SET IDENTITY_INSERT T OFF "
       "INSERT INTO T (Kod,N) VALUES ('z',DEFAULT) SELECT ID,N FROM T WHERE ID>=100",
       "100\t7\n105\t7\n"},
      {"INSERT INTO T (Kod,N) VALUES ('m1',1),('m2',2) SELECT @@ROWCOUNT,@@IDENTITY", "2\t115\n"},
      {"INSERT INTO T (Kod,N) SELECT 's'+CONVERT(VARCHAR(3),N),N FROM T WHERE N<3 ORDER BY N DESC "
       "SELECT ID,Kod FROM T WHERE Kod LIKE 's%' ORDER BY ID",
       "120\ts2\n125\ts1\n"},
      {"INSERT INTO T (Kod) SELECT 'hic' FROM T WHERE N=99 INSERT INTO T (Kod) VALUES ('son') SELECT "
       "@@IDENTITY",
       "130\n"},
      {"TRUNCATE TABLE T INSERT INTO T (Kod) VALUES ('q') SELECT ID FROM T", "10\n"},
      {"CREATE TABLE U (A INT DEFAULT 3, B DATETIME DEFAULT GETDATE()) INSERT INTO U DEFAULT VALUES "
       "SELECT A,CASE WHEN DATEDIFF(hour,B,GETDATE())=0 THEN 'simdi' END FROM U",
       "3\tsimdi\n"},
  });
  run("INSERT INTO T (Kod) VALUES ('Q')");
  EXPECT_NE(message.find("Violation of PRIMARY KEY constraint 'PK_T'."), std::string::npos) << message;
}

TEST_F(ChangeTest, UpdateAndDelete) {
  follow({
      {"CREATE TABLE T (ID INT PRIMARY KEY, G INT, Ad CHAR(5)) CREATE TABLE S (ID INT, V INT, Ad VARCHAR(10))"
       "INSERT INTO T VALUES (1,0,'a'),(2,0,'b'),(3,0,'c') INSERT INTO S VALUES (1,10,'x'),(3,30,'uzunca')",
       ""},
      {"UPDATE T SET G=ID*2,Ad=RTRIM(Ad)+'!' SELECT * FROM T", "1\t2\ta!\n2\t4\tb!\n3\t6\tc!\n"},
      {"UPDATE T SET G=S.V FROM S WHERE S.ID=T.ID SELECT @@ROWCOUNT SELECT G FROM T ORDER BY ID",
       "2\n10\n4\n30\n"},
      {"UPDATE A SET G=A.G+S.V FROM T A INNER JOIN S ON A.ID=S.ID WHERE S.V>10 SELECT G FROM T ORDER BY ID",
       "10\n4\n60\n"},
      {"UPDATE T SET G=(SELECT MAX(G) FROM T X WHERE X.ID<>T.ID) SELECT G FROM T ORDER BY ID",
       "60\n60\n10\n"},
      {"UPDATE T SET ID=ID+1 SELECT ID FROM T ORDER BY ID", "2\n3\n4\n"},
      {"UPDATE T SET ID=9 WHERE ID>2", "!2627\n"},
      {"SELECT ID,G FROM T ORDER BY ID", "2\t60\n3\t60\n4\t10\n"},
      {"UPDATE T SET Ad=S.Ad FROM S WHERE S.V=30", "!8152\n"},
      {"UPDATE T SET ID=NULL", "!515\n"},
      {"UPDATE T SET Yok=1", "!207\n"},
      {"UPDATE TOP (1) T SET G=0 SELECT COUNT(*) FROM T WHERE G=0", "1\n"},
      {"UPDATE FIRMA.dbo.T SET G=5 FROM FIRMA.dbo.S WHERE FIRMA.dbo.S.ID=FIRMA.dbo.T.ID SELECT ID FROM T "
       "WHERE G=5",
       "3\n"},
      {"DECLARE @n INT UPDATE T SET @n=G=G+1 WHERE ID=3 SELECT @n", "6\n"},
      {"DELETE FROM T FROM S WHERE S.ID=T.ID SELECT ID FROM T", "2\n4\n"},
      {"DELETE T WHERE ID=4 SELECT @@ROWCOUNT,COUNT(*) FROM T", "1\t1\n"},
      {"DELETE FROM T SELECT COUNT(*) FROM T", "0\n"},
  });
}

TEST_F(ChangeTest, VariablesAndControl) {
  follow({
      {"DECLARE @c CHAR(5),@v VARCHAR(3),@i INT SET @c='ab' SET @v='uzun' SELECT '['+@c+']','['+@v+']',@i",
       "[ab   ]\t[uzu]\tNULL\n"},
      {"DECLARE @i INT SELECT @i=1 WHILE @i<10 BEGIN SET @i=@i+1 IF @i=3 CONTINUE IF @i>4 BREAK PRINT @i END",
       "# 2\n# 4\n"},
      {"DECLARE @a INT,@b INT SELECT @a=1,@b=@a+1 SELECT @a,@b", "1\t2\n"},
      {"CREATE TABLE T (N INT) INSERT INTO T VALUES (1),(2),(3) DECLARE @s INT SET @s=0 "
       "SELECT @s=@s+N FROM T SELECT @s",
       "6\n"},
      {"DECLARE @s VARCHAR(20) SET @s='' SELECT @s=@s+CONVERT(CHAR(1),N) FROM T ORDER BY N DESC SELECT @s "
       "SELECT TOP 2 @s=@s+CONVERT(CHAR(1),N) FROM T ORDER BY N SELECT @s",
       "321\n32112\n"},
      {"DECLARE @x INT SET @x=7 SELECT @x=N FROM T WHERE N=99 SELECT @x SELECT @x=N FROM T ORDER BY N SELECT "
       "@x",
       "7\n3\n"},
      {"IF EXISTS(SELECT * FROM T WHERE N=2) PRINT 'var' ELSE PRINT 'yok'", "# var\n"},
      {"IF NULL=NULL PRINT 'bir' ELSE PRINT 'iki' RETURN PRINT 'uc'", "# iki\n"},
      {"SELECT 1 SET @yok=1", "!137\n"},
      {"DECLARE @a INT DECLARE @a INT", "!134\n"},
      {"PRINT 'a' RAISERROR('hata %d %s',16,1,5,'bes') PRINT @@ERROR", "# a\n!50000\n"},
      {"RAISERROR('bilgi',10,1)", "# bilgi\n"},
      {"EXEC('SELECT N FROM T WHERE N='+'2')", "2\n"},
      {"EXEC sp_yok", "!2812\n"},
      {"SELECT DB_NAME(),USER_NAME(),SUSER_SNAME()", "FIRMA\tdbo\tsa\n"},
      {"SELECT OBJECT_NAME(OBJECT_ID('t')),OBJECT_ID('yok')", "T\tNULL\n"},
      {"USE YOK", "!911\n"},
  });
}

// A statement level error undoes its statement and lets the batch go on; others end the batch.
TEST_F(ChangeTest, ErrorsEndStatementsOrBatches) {
  follow({
      {"CREATE TABLE T (N INT NOT NULL PRIMARY KEY)", ""},
      {"INSERT INTO T VALUES (1) INSERT INTO T VALUES (1) INSERT INTO T VALUES (2)", "!2627\n"},
      {"SELECT COUNT(*) FROM T", "2\n"},
      {"INSERT INTO T VALUES (3) INSERT INTO T VALUES ('x') INSERT INTO T VALUES (4)", "!245\n"},
      {"SELECT MAX(N) FROM T", "3\n"},
      {"INSERT INTO T SELECT 10 UNION ALL SELECT 11 UNION ALL SELECT 1", "!2627\n"},
      {"SELECT MAX(N) FROM T", "3\n"},
      {"SELECT * FORM T", "!102\n"},
      {"SET XACT_ABORT ON BEGIN TRAN INSERT INTO T VALUES (20) INSERT INTO T VALUES (20) PRINT 'yok'",
       "!2627\n"},
      {"SET XACT_ABORT OFF SELECT @@TRANCOUNT,MAX(N) FROM T", "0\t3\n"},
  });
}

TEST_F(ChangeTest, Transactions) {
  follow({
      {"CREATE TABLE T (N INT)", ""},
      {"BEGIN TRAN INSERT INTO T VALUES (1) BEGIN TRAN SELECT @@TRANCOUNT COMMIT SELECT @@TRANCOUNT ROLLBACK "
       "SELECT @@TRANCOUNT,COUNT(*) FROM T",
       "2\n1\n0\t0\n"},
      {"BEGIN TRAN INSERT INTO T VALUES (1)", ""},
      {"COMMIT SELECT N FROM T", "1\n"},
      {"COMMIT", "!3902\n"},
      {"ROLLBACK", "!3903\n"},
      {"BEGIN TRAN CREATE TABLE U (A INT) INSERT INTO U VALUES (1) ROLLBACK", ""},
      {"SELECT * FROM U", "!208\n"},
  });
  auto other = open("FIRMA");
  EXPECT_EQ(run("BEGIN TRAN UPDATE T SET N=5"), "");
  EXPECT_EQ(run(*other, "SELECT N FROM T"), "1\n") << "uncommitted work is not seen";
  EXPECT_EQ(run("COMMIT"), "");
  EXPECT_EQ(run(*other, "SELECT N FROM T"), "5\n");
}

TEST_F(ChangeTest, CancelEndsTheBatch) {
  follow({{"CREATE TABLE T (N INT) INSERT INTO T VALUES (1),(2),(3),(4),(5),(6),(7),(8),(9),(10)", ""}});
  for (const char* endless : {"DECLARE @i INT SET @i=0 WHILE 1=1 SET @i=@i+1",
                              "SELECT COUNT(*) FROM T A,T B,T C,T D,T E,T F,T G,T H,T I,T J,T K,T L"}) {
    std::atomic<bool> ended = false;
    std::thread canceller([&] {
      while (!ended) {
        session->cancel();
        std::this_thread::yield();
      }
    });
    EXPECT_EQ(run(endless), "!3617\n");
    ended = true;
    canceller.join();
    EXPECT_EQ(run("SELECT COUNT(*) FROM T"), "10\n");
  }
}

// Held in memory, the sort of an index or the undo journal of a change would take more than this.
TEST_F(ChangeTest, ChangingABigTableTakesLittleMemory) {
  constexpr sqlite3_int64 little = 14'000'000;
  follow({{"CREATE TABLE T (ID INT IDENTITY, A INT, B CHAR(50)) INSERT INTO T (A,B) VALUES (1,'Elma')", ""},
          {"DECLARE @N INT SELECT @N=0 WHILE @N<19 BEGIN INSERT INTO T (A,B) SELECT A,B FROM T SELECT "
           "@N=@N+1 END",
           ""}});
  for (const char* change :
       {"ALTER TABLE T ALTER COLUMN A CHAR(20)", "ALTER TABLE T ALTER COLUMN B CHAR(50) NOT NULL",
        "ALTER TABLE T ADD C INT", "ALTER TABLE T DROP COLUMN C", "CREATE INDEX I ON T (B)"}) {
    sqlite3_memory_highwater(1);
    const sqlite3_int64 before = sqlite3_memory_used();
    EXPECT_EQ(run(change), "") << message;
    EXPECT_LT(sqlite3_memory_highwater(0) - before, little) << change;
  }
}

TEST_F(ChangeTest, SystemTablesAnswer) {
  follow({
      {"CREATE TABLE KASA (Kasa_ID INT IDENTITY, Ad CHAR(50) NULL)", ""},
      {"SELECT name FROM sysobjects WHERE name='kasa' AND type='U'", "KASA\n"},
      {"SELECT syscolumns.Name, systypes.name as type, syscolumns.length, syscolumns.isnullable, "
       "syscolumns.colstat From syscolumns, systypes, sysobjects where syscolumns.xtype=systypes.xtype and "
       "syscolumns.id=sysobjects.id AND sysobjects.name='KASA' AND syscolumns.Name ='Ad'",
       "Ad\tchar\t50\t1\t0\n"},
      {"SELECT name FROM master.dbo.sysdatabases WHERE name='firma'", "FIRMA\n"},
      {"SELECT name FROM master.dbo.sysdatabases WHERE name='fırma'", ""},
      {"EXEC sp_addlogin 'ali','s1' EXEC sp_grantdbaccess 'ali' SELECT name FROM sysusers WHERE name='ali'",
       "ali\n"},
      {"EXEC sp_addlogin 'ali','s1'", "!15025\n"},
      {"UPDATE sysobjects SET name='x'", "!259\n"},
      {"EXEC sp_rename 'KASA','KASALAR' SELECT COUNT(*) FROM KASALAR", "0\n"},
  });
}

}  // namespace
}  // namespace engine::test
