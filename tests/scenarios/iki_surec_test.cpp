// Two processes on one data folder.
#include "folder_fixture.h"
#include "istemci.h"
#include "other_process.h"

namespace scenarios {
namespace {

class TwoProcesses : public FolderOf<Istemci> {
 protected:
  void SetUp() override {
    must("CREATE TABLE T (ID INT IDENTITY PRIMARY KEY, A INT)");
    close();
    other = std::make_unique<OtherProcess>(folder, password, "FIRMA");
    open();
  }
  void TearDown() override { other.reset(); }
  std::unique_ptr<OtherProcess> other;
};

TEST_F(TwoProcesses, DefinitionsOfOneAreSeenByTheOtherAtItsNextStatement) {
  struct Case {
    const char* here;
    const char* there;
    const char* printed;
  };
  // Both have T's plans at hand before each change.
  const Case cases[] = {
      {"INSERT INTO T (A) VALUES (5)", "SELECT ID,A FROM T", "1\t5\n"},
      {"ALTER TABLE T ADD B CHAR(3) NULL", "SELECT * FROM T", "1\t5\tNULL\n"},
      {"UPDATE T SET B='x'", "SELECT B+'|' FROM T", "x  |\n"},
      {"ALTER TABLE T ALTER COLUMN B VARCHAR(3)", "SELECT B+'|',DATALENGTH(B) FROM T", "x  |\t3\n"},
      {"CREATE VIEW V AS SELECT * FROM T", "SELECT * FROM V", "1\t5\tx  \n"},
      {"ALTER VIEW V AS SELECT A*2 AS K FROM T", "SELECT * FROM V", "10\n"},
      {"CREATE TRIGGER TR ON T FOR INSERT AS UPDATE T SET A=A+100 WHERE ID IN (SELECT ID FROM INSERTED)",
       "INSERT INTO T (A) VALUES (1) SELECT A FROM T ORDER BY ID", "5\n101\n"},
      {"DROP TRIGGER TR", "INSERT INTO T (A) VALUES (2) SELECT A FROM T ORDER BY ID", "5\n101\n2\n"},
      {"CREATE UNIQUE INDEX TU ON T (A)", "INSERT INTO T (A) VALUES (2)", "!2601\n"},
      {"DROP INDEX T.TU", "INSERT INTO T (A) VALUES (2) SELECT COUNT(*) FROM T", "4\n"},
      {"DROP VIEW V", "SELECT * FROM V", "!208\n"},
      {"EXEC sp_rename 'T','T2'", "SELECT COUNT(*) FROM T", "!208\n"},
      {"EXEC sp_rename 'T2','T'", "SELECT COUNT(*) FROM T", "4\n"},
      {"DROP TABLE T CREATE TABLE T (A CHAR(4))", "INSERT INTO T VALUES ('a') SELECT * FROM T", "a\n"},
      {"DROP TABLE T", "SELECT * FROM T", "!208\n"},
      {"CREATE DATABASE IKI", "SELECT COUNT(*) FROM IKI..sysobjects WHERE xtype='U'", "0\n"},
      {"CREATE TABLE IKI..Z (A INT)", "INSERT INTO IKI..Z VALUES (1) SELECT A FROM IKI.dbo.Z", "1\n"},
      {"DROP DATABASE IKI", "SELECT A FROM IKI..Z", "!208\n"},
      {"EXEC sp_addlogin 'AHMET','x'", "SELECT name FROM master..syslogins WHERE name='ahmet'", "AHMET\n"},
  };
  for (const Case& each : cases) {
    SCOPED_TRACE(each.here);
    const std::string printed = run(each.here);
    EXPECT_EQ(printed.find('!'), std::string::npos) << printed << message;
    EXPECT_EQ(other->run(each.there), each.printed);
  }
}

TEST_F(TwoProcesses, RowsOfBothAreKept) {
  must("CREATE TABLE AYNA (ID INT, A INT)");
  must("CREATE TRIGGER TR ON T FOR INSERT AS INSERT INTO AYNA SELECT ID,A FROM INSERTED");
  const auto batch = [](int who) {
    return "DECLARE @i INT SET @i=0 WHILE @i<300 BEGIN INSERT INTO T (A) VALUES (" + std::to_string(who) +
           ") SET @i=@i+1 END";
  };
  other->send(batch(2));
  must(batch(1));
  EXPECT_EQ(other->receive(), "");
  EXPECT_EQ(run("SELECT A,COUNT(*) FROM T GROUP BY A ORDER BY A"), "1\t300\n2\t300\n");
  EXPECT_EQ(run("SELECT COUNT(*),COUNT(DISTINCT ID),MAX(ID) FROM T"), "600\t600\t600\n");
  EXPECT_EQ(number("SELECT COUNT(*) FROM T,AYNA WHERE T.ID=AYNA.ID AND T.A=AYNA.A"), 600);
}

TEST_F(TwoProcesses, DefinitionsOfBothAreKept) {
  std::string here, there;
  for (int i = 0; i < 15; ++i) {
    here += "CREATE TABLE H" + std::to_string(i) + " (A INT) ";
    there += "CREATE TABLE D" + std::to_string(i) + " (A INT) ";
  }
  other->send(there);
  must(here);
  EXPECT_EQ(other->receive(), "");
  EXPECT_EQ(number("SELECT COUNT(*) FROM sysobjects WHERE xtype='U'"), 31);
  EXPECT_EQ(other->run("SELECT COUNT(*),COUNT(DISTINCT id) FROM sysobjects WHERE xtype='U'"), "31\t31\n");
}

TEST_F(TwoProcesses, TransactionsOfBothAddUp) {
  must("INSERT INTO T (A) VALUES (0)");
  // Each reads first and writes what it read: nobody may be given up, and no step may be lost.
  const std::string batch =
      "DECLARE @i INT,@a INT SET @i=0 WHILE @i<100 BEGIN BEGIN TRAN SELECT @a=A FROM T UPDATE T SET A=@a+1 "
      "UPDATE T SET A=A+1 COMMIT TRAN SET @i=@i+1 END";
  other->send(batch);
  must(batch);
  EXPECT_EQ(other->receive(), "");
  EXPECT_EQ(run("SELECT A FROM T"), "400\n");
}

TEST_F(TwoProcesses, ADatabaseInUseIsNotDropped) {
  must("CREATE DATABASE IKI");
  EXPECT_EQ(other->run("USE IKI"), "");
  EXPECT_EQ(run("DROP DATABASE IKI"), "!3702\n");
  EXPECT_EQ(other->run("CREATE TABLE Q (A INT)"), "");
  EXPECT_EQ(other->run("USE FIRMA"), "");
  EXPECT_EQ(run("SELECT COUNT(*) FROM IKI..Q"), "0\n");
  must("DROP DATABASE IKI");
  // One that died holds nothing.
  must("CREATE DATABASE UC");
  EXPECT_EQ(other->run("USE UC"), "");
  other->kill();
  must("DROP DATABASE UC");
}

TEST_F(TwoProcesses, TheServiceStopsForBoth) {
  must("INSERT INTO T (A) VALUES (1)");
  EXPECT_EQ(other->run("INSERT INTO T (A) VALUES (2)"), "");
  server->stop();
  EXPECT_EQ(other->run("SELECT A FROM T"), "!17142\n");
  EXPECT_EQ(run("SELECT A FROM T"), "!17142\n");
  for (const auto& entry : std::filesystem::directory_iterator(folder))
    EXPECT_FALSE(entry.path().string().ends_with("-wal")) << entry.path();
  EXPECT_EQ(other->run("start"), "");
  EXPECT_EQ(run("SELECT A FROM T"), "1\n2\n");
  EXPECT_EQ(other->run("SELECT A FROM T"), "1\n2\n");
  EXPECT_EQ(other->run("BEGIN TRAN UPDATE T SET A=9"), "");
  EXPECT_EQ(other->run("stop"), "");
  EXPECT_EQ(run("SELECT A FROM T"), "!17142\n");
  EXPECT_TRUE(server->start().empty());
  EXPECT_EQ(run("SELECT A FROM T"), "1\n2\n");
  // The transaction is gone, and nothing of its rest runs by itself.
  EXPECT_EQ(other->run("INSERT INTO T (A) VALUES (3) COMMIT TRAN"), "!3971\n");
  EXPECT_EQ(other->run("SELECT @@TRANCOUNT INSERT INTO T (A) VALUES (4) SELECT A FROM T"), "0\n1\n2\n4\n");
}

TEST_F(TwoProcesses, AKilledOneLeavesItsLocks) {
  EXPECT_EQ(other->run("BEGIN TRAN INSERT INTO T (A) VALUES (1)"), "");
  other->kill();
  must("INSERT INTO T (A) VALUES (2)");
  EXPECT_EQ(run("SELECT A FROM T"), "2\n");
  server->stop();
  EXPECT_TRUE(server->start().empty());
}

}  // namespace
}  // namespace scenarios
