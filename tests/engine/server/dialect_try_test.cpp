// TRY .. CATCH, what it catches and what becomes of the transaction.
#include "engine/server/dialect.h"

namespace engine::test {
namespace {

class TryTest : public DialectTest {
 protected:
  TryTest() {
    follow({
        {"CREATE TABLE T (N INT NOT NULL PRIMARY KEY, V VARCHAR(3))", ""},
        {"INSERT INTO T VALUES (1,'bir')", ""},
    });
  }
};

const std::string told =
    "ERROR_NUMBER(), ERROR_SEVERITY(), ERROR_STATE(), ERROR_LINE(), ERROR_PROCEDURE(), ERROR_MESSAGE()";

TEST_F(TryTest, CatchesWhatAStatementFailsOf) {
  follow({
      {"BEGIN TRY SELECT 1\n SELECT 1/0\n SELECT 2 END TRY BEGIN CATCH SELECT " + told +
           " END CATCH SELECT 3",
       "1\n8134\t16\t1\t2\tNULL\tDivide by zero error encountered.\n3\n"},
      {"BEGIN TRY INSERT INTO T VALUES (1,'iki') PRINT 'x' END TRY BEGIN CATCH SELECT ERROR_NUMBER(), "
       "@@ERROR SELECT @@ERROR END CATCH",
       "2627\t2627\n0\n"},
      {"BEGIN TRY INSERT INTO T VALUES (2,'dört') END TRY BEGIN CATCH PRINT ERROR_NUMBER() END CATCH; SELECT "
       "N FROM T",
       "# 8152\n1\n"},
      {"BEGIN TRY SELECT CAST('a' AS INT) END TRY BEGIN CATCH SELECT ERROR_NUMBER(), XACT_STATE() END CATCH",
       "245\t0\n"},
      {"BEGIN TRY CREATE TABLE T (A INT) END TRY BEGIN CATCH SELECT ERROR_NUMBER() END CATCH", "2714\n"},
      {"BEGIN TRY EXEC yok END TRY BEGIN CATCH SELECT ERROR_NUMBER() END CATCH", "2812\n"},
      {"BEGIN TRY RAISERROR('%s',14,7,'dur') PRINT 'x' END TRY BEGIN CATCH SELECT " + told + " END CATCH",
       "50000\t14\t7\t1\tNULL\tdur\n"},
      {"BEGIN TRY RAISERROR('geç',10,1) PRINT 'x' END TRY BEGIN CATCH PRINT 'y' END CATCH", "# geç\n# x\n"},
      {"BEGIN TRY SELECT 1; THROW 51000,'at',9; END TRY BEGIN CATCH SELECT " + told + " END CATCH",
       "1\n51000\t16\t9\t1\tNULL\tat\n"},
      {"BEGIN TRY SELECT 1 END TRY BEGIN CATCH END CATCH SELECT ERROR_NUMBER(), ERROR_MESSAGE(), "
       "XACT_STATE()",
       "1\nNULL\tNULL\t0\n"},
      {"BEGIN TRY SELECT 1/0 END TRY BEGIN CATCH END CATCH", ""},
      {"DECLARE @i INT SET @i=0 WHILE @i<5 BEGIN SET @i=@i+1 BEGIN TRY IF @i=2 CONTINUE IF @i=4 BREAK "
       "IF @i=3 SET @i=@i/0 PRINT @i END TRY BEGIN CATCH PRINT 'c' END CATCH END",
       "# 1\n# c\n"},
      {"BEGIN TRY DECLARE @a INT SET @a=1/0 END TRY BEGIN CATCH SET @a=7 END CATCH SELECT @a", "7\n"},
      {"BEGIN TRY BEGIN TRY SELECT 1/0 END TRY BEGIN CATCH PRINT ERROR_NUMBER() SELECT CAST('x' AS INT) END "
       "CATCH PRINT 'x' "
       "END TRY BEGIN CATCH PRINT ERROR_NUMBER() BEGIN TRY SELECT 1/0 END TRY BEGIN CATCH PRINT "
       "ERROR_NUMBER() END CATCH "
       "PRINT ERROR_NUMBER() END CATCH",
       "# 8134\n# 245\n# 8134\n# 245\n"},
      // What follows the CATCH goes on as ever, errors of the CATCH itself too.
      {"BEGIN TRY SELECT 1/0 END TRY BEGIN CATCH INSERT INTO T VALUES (1,'b') PRINT 'c' END CATCH PRINT 'd'",
       "!2627\n"},
      {"SELECT N FROM T", "1\n"},
  });
}

TEST_F(TryTest, ThrowsAgain) {
  follow({
      {"BEGIN TRY\nRAISERROR('dur',15,3)\nEND TRY BEGIN CATCH PRINT 'c'; THROW; PRINT 'x' END CATCH PRINT "
       "'y'",
       "# c\n!50000\n"},
      {"BEGIN TRY BEGIN TRY SELECT 1/0 END TRY BEGIN CATCH THROW END CATCH END TRY BEGIN CATCH SELECT "
       "ERROR_NUMBER() END CATCH",
       "8134\n"},
      {"BEGIN TRY SELECT 1 END TRY BEGIN CATCH PRINT 'a' THROW END CATCH", "!102\n"},
      {"BEGIN TRY SELECT 1; THROW END TRY BEGIN CATCH END CATCH", "!10704\n"},
      {"BEGIN TRY SELECT 1 END TRY SELECT 2", "!156\n"},
      {"BEGIN TRY SELECT 1 END TRY; BEGIN CATCH END CATCH", "!102\n"},
      {"BEGIN CATCH SELECT 1 END CATCH", "!102\n"},
      {"BEGIN TRY END TRY BEGIN CATCH END CATCH", "!156\n"},
  });
  try {
    session->execute("BEGIN TRY\nRAISERROR('dur',15,3)\nEND TRY BEGIN CATCH; THROW END CATCH", last);
    ADD_FAILURE() << "not thrown";
  } catch (const Error& error) {
    EXPECT_EQ(std::to_string(error.number()) + " " + std::to_string(error.severity()) + " " +
                  std::to_string(error.state()) + " " + std::to_string(error.line()) + " " + error.what(),
              "50000 15 3 2 dur");
  }
}

// Names that are not there are found while the statement is compiled: the TRY around the batch has them.
TEST_F(TryTest, CompileErrorsOfTheSameLevelAreNotCaught) {
  follow({
      {"BEGIN TRY PRINT 'a' SELECT * FROM YOK END TRY BEGIN CATCH PRINT 'c' END CATCH PRINT 'd'",
       "# a\n!208\n"},
      {"BEGIN TRY SELECT X FROM T END TRY BEGIN CATCH PRINT 'c' END CATCH", "!207\n"},
      {"BEGIN TRY SELECT X INTO U FROM T END TRY BEGIN CATCH PRINT 'c' END CATCH", "!207\n"},
      {"BEGIN TRY EXEC('BEGIN TRY SELECT X FROM T END TRY BEGIN CATCH PRINT ''i'' END CATCH') END TRY "
       "BEGIN CATCH PRINT ERROR_NUMBER() END CATCH PRINT 'd'",
       "# 207\n# d\n"},
      {"BEGIN TRY EXEC('SELEC 1') END TRY BEGIN CATCH SELECT ERROR_NUMBER(), ERROR_LINE() END CATCH",
       "2812\t1\n"},
      {"BEGIN TRY EXEC('SELECT 1 FROM') END TRY BEGIN CATCH SELECT ERROR_NUMBER() END CATCH", "102\n"},
      {"BEGIN TRY SELECT 1 FROM END TRY BEGIN CATCH PRINT 'c' END CATCH", "!156\n"},
      {"BEGIN TRY EXEC('BEGIN TRAN INSERT INTO T VALUES (9,''d'') SELECT X FROM T') END TRY BEGIN CATCH "
       "SELECT @@TRANCOUNT, XACT_STATE() ROLLBACK END CATCH SELECT N FROM T",
       "1\t1\n1\n"},
  });
}

TEST_F(TryTest, Transactions) {
  const std::string open = "BEGIN TRY BEGIN TRAN INSERT INTO T VALUES (2,'iki') ";
  const std::string state = " END TRY BEGIN CATCH SELECT ERROR_NUMBER(), @@TRANCOUNT, XACT_STATE() ";
  follow({
      // The statement is undone, the transaction stands.
      {open + "INSERT INTO T VALUES (1,'x')" + state + "COMMIT END CATCH SELECT N FROM T",
       "2627\t1\t1\n1\n2\n"},
      {"DELETE FROM T WHERE N=2", ""},
      // What would have undone it dooms it: reading goes on, writing does not.
      {open + "SELECT CAST('x' AS INT)" + state +
           "SELECT N FROM T IF XACT_STATE()=-1 ROLLBACK END CATCH SELECT @@TRANCOUNT, N FROM T",
       "245\t1\t-1\n1\n2\n0\t1\n"},
      {open + "SELECT CAST('x' AS INT)" + state + "INSERT INTO T VALUES (3,'x') END CATCH",
       "245\t1\t-1\n!3930\n"},
      {"SELECT @@TRANCOUNT, N FROM T", "0\t1\n"},
      {open + "SELECT CAST('x' AS INT)" + state + "COMMIT END CATCH", "245\t1\t-1\n!3930\n"},
      {open + "SAVE TRAN s SELECT CAST('x' AS INT)" + state + "ROLLBACK TRAN s END CATCH",
       "245\t1\t-1\n!3931\n"},
      {open + "SELECT CAST('x' AS INT)" + state + "END CATCH PRINT 'son'", "245\t1\t-1\n# son\n!3998\n"},
      {"SELECT @@TRANCOUNT, N FROM T", "0\t1\n"},
      {open + "SELECT CAST('x' AS INT)" + state + "; THROW END CATCH", "245\t1\t-1\n!245\n"},
      {"SELECT @@TRANCOUNT, XACT_STATE(), N FROM T", "0\t0\t1\n"},
      {"SET XACT_ABORT ON " + open + "INSERT INTO T VALUES (1,'x')" + state + "ROLLBACK END CATCH",
       "2627\t1\t-1\n"},
      {"SET XACT_ABORT ON " + open + "RAISERROR('a',16,1)" + state + "ROLLBACK END CATCH", "50000\t1\t1\n"},
      {"SET XACT_ABORT ON " + open + "; THROW 50001,'a',1" + state + "ROLLBACK END CATCH", "50001\t1\t-1\n"},
      {"SET XACT_ABORT OFF SELECT @@TRANCOUNT, N FROM T", "0\t1\n"},
  });
}

TEST_F(TryTest, ProceduresAndTriggers) {
  follow({
      {"CREATE PROCEDURE BOL @n INT AS SELECT 1\nSELECT 10/@n", ""},
      {"BEGIN TRY EXEC BOL 5 EXEC BOL 0 PRINT 'x' END TRY BEGIN CATCH SELECT ERROR_NUMBER(), "
       "ERROR_PROCEDURE(), ERROR_LINE() END CATCH",
       "1\n2\n1\n8134\tBOL\t2\n"},
      {"CREATE TABLE L (A INT)", ""},
      {"CREATE TRIGGER TR ON T FOR INSERT AS\nIF EXISTS(SELECT 1 FROM inserted WHERE "
       "N<0)\nRAISERROR('eksi',16,1) INSERT INTO L SELECT N FROM inserted",
       ""},
      {"BEGIN TRY INSERT INTO T VALUES (-1,'x') PRINT 'x' END TRY BEGIN CATCH SELECT " + told +
           ", XACT_STATE() END CATCH",
       "50000\t16\t1\t3\tTR\teksi\t0\n"},
      {"SELECT N, A FROM T LEFT JOIN L ON A=N", "1\tNULL\n"},
      {"BEGIN TRY BEGIN TRAN INSERT INTO T VALUES (-1,'x') END TRY BEGIN CATCH SELECT XACT_STATE(), "
       "@@TRANCOUNT ROLLBACK END CATCH",
       "-1\t1\n"},
      {"ALTER TRIGGER TR ON T FOR INSERT AS BEGIN TRY INSERT INTO L SELECT 1/N FROM inserted END TRY "
       "BEGIN CATCH PRINT ERROR_NUMBER() PRINT XACT_STATE() END CATCH",
       ""},
      {"INSERT INTO T VALUES (5,'beş') INSERT INTO T VALUES (0,'sıf') PRINT 'x'", "# 8134\n# -1\n!3616\n"},
      {"BEGIN TRY INSERT INTO T VALUES (0,'sıf') END TRY BEGIN CATCH PRINT ERROR_NUMBER() END CATCH",
       "# 8134\n# -1\n# 3616\n"},
      {"ALTER TRIGGER TR ON T FOR INSERT AS BEGIN TRY RAISERROR('a',16,1) END TRY BEGIN CATCH INSERT INTO L "
       "VALUES (42) END CATCH",
       ""},
      {"INSERT INTO T VALUES (6,'alt') SELECT N FROM T SELECT A FROM L", "1\n5\n6\n0\n42\n"},
  });
}

TEST_F(TryTest, ALockThatIsNotGrantedIsCaught) {
  auto other = open("FIRMA");
  run("SET LOCK_TIMEOUT 0");
  run(*other, "BEGIN TRAN INSERT INTO T VALUES (7,'x')");
  EXPECT_EQ(run("BEGIN TRY INSERT INTO T VALUES (8,'y') END TRY BEGIN CATCH SELECT ERROR_NUMBER(), "
                "XACT_STATE() END CATCH"),
            "1222\t0\n");
  EXPECT_EQ(run(*other, "COMMIT SELECT N FROM T"), "1\n7\n");
}

}  // namespace
}  // namespace engine::test
