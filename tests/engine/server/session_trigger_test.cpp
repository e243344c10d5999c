// Triggers: once per statement, with the rows of the statement, nested, and together with it.

#include "engine/session_fixture.h"

namespace engine::test {
namespace {

class TriggerTest : public SessionTest {
 protected:
  TriggerTest() {
    EXPECT_EQ(run("CREATE TABLE T (ID INT IDENTITY PRIMARY KEY, Ad CHAR(5), N INT)"
                  " CREATE TABLE G (Sira INT IDENTITY, Olay VARCHAR(60))"),
              "");
  }
};

TEST_F(TriggerTest, RunsOncePerStatementWithAllItsRows) {
  follow({
      {"CREATE TRIGGER T_EKLE ON T FOR INSERT AS INSERT INTO G SELECT 'i'+CONVERT(VARCHAR(5),COUNT(*)) FROM "
       "inserted",
       ""},
      {"CREATE TRIGGER T_DEG ON T FOR UPDATE AS INSERT INTO G SELECT 'u'+RTRIM(D.Ad)+'>'+RTRIM(I.Ad) FROM "
       "DELETED D,INSERTED I WHERE D.ID=I.ID ORDER BY D.ID",
       ""},
      {"CREATE TRIGGER T_SIL ON T FOR DELETE AS DECLARE @n INT SELECT @n=COUNT(*) FROM deleted "
       "INSERT INTO G VALUES ('d'+CONVERT(VARCHAR(5),@n))",
       ""},
      {"INSERT INTO T (Ad) VALUES ('a') INSERT INTO T (Ad) VALUES ('b'),('c') INSERT INTO T (Ad) SELECT Ad "
       "FROM T WHERE ID=99",
       ""},
      {"SELECT Olay FROM G ORDER BY Sira DELETE FROM G", "i1\ni2\ni0\n"},
      {"UPDATE T SET Ad='x' WHERE ID>1 UPDATE T SET Ad='y' WHERE ID=99 SELECT Olay FROM G ORDER BY Sira "
       "DELETE FROM G",
       "ub>x\nuc>x\n"},
      {"DELETE FROM T WHERE ID<3 DELETE FROM T WHERE ID=99 SELECT Olay FROM G ORDER BY Sira", "d2\nd0\n"},
      {"INSERT INTO T (Ad) VALUES ('z') SELECT @@ROWCOUNT,SCOPE_IDENTITY(),@@IDENTITY", "1\t4\t8\n"},
      {"UPDATE T SET Ad=T.Ad FROM G WHERE G.Olay='d2' AND T.ID=4 SELECT Olay FROM G WHERE Olay LIKE 'u%'",
       "uz>z\n"},
  });
}

TEST_F(TriggerTest, NestsButDoesNotFireItself) {
  follow({
      {"CREATE TRIGGER T_EKLE ON T FOR INSERT AS UPDATE T SET N=1 WHERE ID=(SELECT ID FROM inserted)", ""},
      {"CREATE TRIGGER T_DEG ON T FOR UPDATE AS BEGIN INSERT INTO G VALUES ('u') UPDATE T SET "
       "N=ISNULL(N,0)+10 END",
       ""},
      {"INSERT INTO T (Ad) VALUES ('a') SELECT N FROM T SELECT COUNT(*) FROM G", "11\n1\n"},
      {"UPDATE T SET N=5 SELECT N FROM T", "15\n"},
  });
}

TEST_F(TriggerTest, StopsAtTheNestingLimit) {
  follow({
      {"CREATE TABLE A (N INT) CREATE TABLE B (N INT)", ""},
      {"CREATE TRIGGER TA ON A FOR INSERT AS INSERT INTO B SELECT N+1 FROM inserted", ""},
      {"CREATE TRIGGER TB ON B FOR INSERT AS INSERT INTO A SELECT N+1 FROM inserted", ""},
      {"INSERT INTO A VALUES (1)", "!217\n"},
      {"SELECT COUNT(*) FROM A", "0\n"},
      {"DROP TRIGGER TB INSERT INTO A VALUES (1) SELECT N FROM B", "2\n"},
  });
}

TEST_F(TriggerTest, ErrorInsideUndoesTheStatementAndEndsTheBatch) {
  follow({
      {"CREATE TABLE E (N INT NOT NULL PRIMARY KEY)", ""},
      {"CREATE TRIGGER T_EKLE ON T FOR INSERT AS INSERT INTO E SELECT N FROM inserted", ""},
      {"INSERT INTO T (N) VALUES (1) SELECT COUNT(*) FROM T", "1\n"},
      {"INSERT INTO T (N) VALUES (1) PRINT 'olmaz'", "!2627\n"},
      {"SELECT COUNT(*),MAX(ID) FROM T", "1\t1\n"},
      {"ALTER TRIGGER T_EKLE ON T FOR INSERT AS IF (SELECT MAX(N) FROM inserted)>5 BEGIN "
       "RAISERROR('cok buyuk',16,1) ROLLBACK TRAN END",
       ""},
      {"INSERT INTO T (N) VALUES (9) PRINT 'olmaz'", "!50000\n"},
      {"INSERT INTO T (N) VALUES (2) SELECT COUNT(*),@@TRANCOUNT FROM T", "2\t0\n"},
  });
}

TEST_F(TriggerTest, WorksInItsOwnDatabase) {
  follow({
      {"CREATE TRIGGER T_YANLIS ON T FOR UPDATE AS SET @yok=1", "!137\n"},
      {"CREATE TRIGGER T_DEG ON T FOR UPDATE AS IF UPDATE(Ad) INSERT INTO G SELECT DB_NAME()", ""},
      {"INSERT INTO T (Ad) VALUES ('a')", ""},
      {"USE master UPDATE FIRMA.dbo.T SET N=1 UPDATE FIRMA..T SET Ad='b' USE FIRMA", ""},
      {"SELECT Olay FROM G", "FIRMA\n"},
  });
}

TEST_F(TriggerTest, FollowsChangesOfItsTable) {
  follow({
      {"CREATE TRIGGER T_EKLE ON T FOR INSERT AS INSERT INTO G SELECT Ad FROM inserted", ""},
      {"INSERT INTO T (Ad) VALUES ('a')", ""},
      {"ALTER TABLE T ADD Ek VARCHAR(10) NULL", ""},
      {"ALTER TRIGGER T_EKLE ON T FOR INSERT AS INSERT INTO G SELECT Ek FROM inserted", ""},
      {"INSERT INTO T (Ad,Ek) VALUES ('b','ek') SELECT Olay FROM G ORDER BY Sira", "a    \nek\n"},
      {"BEGIN TRAN INSERT INTO T (Ek) VALUES ('geri') ROLLBACK INSERT INTO T (Ek) VALUES ('kalir') "
       "SELECT Olay FROM G WHERE Sira>2",
       "kalir\n"},
  });
}

}  // namespace
}  // namespace engine::test
