// FOREIGN KEY and CHECK: what is refused, what goes along, and in which words.
#include "engine/session_fixture.h"

namespace engine::test {

namespace {

class ConstraintTest : public SessionTest {
 protected:
  // A batch that fails, and all that is told of it.
  void refuses(const std::string& batch, int number, const std::string& text) {
    EXPECT_EQ(run(batch), "!" + std::to_string(number) + "\n") << batch;
    EXPECT_EQ(message, text) << batch;
  }
};

}  // namespace

TEST_F(ConstraintTest, RefusesWhatBreaksACondition) {
  run("CREATE TABLE Fis(No INT, Borc MONEY CHECK (Borc >= 0), Alacak MONEY, Tur CHAR(1) CONSTRAINT CK_Tur "
      "CHECK (Tur IN ('A', 'B')), CONSTRAINT CK_Denk CHECK (Borc = Alacak OR No < 0 AND DATEPART(day, "
      "'20260105') = 5))");
  const std::string in = "The conflict occurred in database \"FIRMA\", table \"dbo.Fis\"";
  follow(
      {{"INSERT INTO Fis VALUES(1, 5, 5, 'a') INSERT INTO Fis VALUES(-2, 5, 6, NULL) INSERT INTO Fis(No) "
        "VALUES(3) "
        "SELECT COUNT(*) FROM Fis",
        "3\n"}});
  refuses("INSERT INTO Fis VALUES(4, 1, 2, 'A')", 547,
          "The INSERT statement conflicted with the CHECK constraint \"CK_Denk\". " + in + ".");
  refuses("INSERT INTO Fis VALUES(4, 1, 1, 'C')", 547,
          "The INSERT statement conflicted with the CHECK constraint \"CK_Tur\". " + in + ", column 'Tur'.");
  refuses("UPDATE Fis SET Tur='Z' WHERE No=1", 547,
          "The UPDATE statement conflicted with the CHECK constraint \"CK_Tur\". " + in + ", column 'Tur'.");
  // Of several rows one is enough, and none of them stays.
  EXPECT_EQ(run("INSERT INTO Fis SELECT No + 10, 1, CASE No WHEN 3 THEN 2 ELSE 1 END, 'A' FROM Fis"),
            "!547\n");
  EXPECT_EQ(run("UPDATE Fis SET No = 5 WHERE No < 0"), "!547\n");
  follow({{"SELECT No FROM Fis ORDER BY No UPDATE Fis SET Alacak = Alacak + 1, Borc = Borc + 1 SELECT "
           "SUM(Borc) FROM Fis",
           "-2\n1\n3\n12.00\n"},
          {"SELECT name, parent_column_id, definition FROM sys.check_constraints WHERE is_system_named=0 "
           "ORDER BY name",
           "CK_Denk\t0\t(Borc = Alacak OR No < 0 AND DATEPART(day, '20260105') = 5)\nCK_Tur\t4\t(Tur IN "
           "('A', 'B'))\n"},
          {"SELECT COLUMN_NAME FROM INFORMATION_SCHEMA.CONSTRAINT_COLUMN_USAGE WHERE "
           "CONSTRAINT_NAME='CK_Denk' SELECT "
           "CHECK_CLAUSE FROM INFORMATION_SCHEMA.CHECK_CONSTRAINTS WHERE CONSTRAINT_NAME='CK_Tur'",
           "No\nBorc\nAlacak\n(Tur IN ('A', 'B'))\n"},
          {"EXEC sp_helptext CK_Tur", "Tur IN ('A', 'B')\n"}});
  refuses("CREATE TABLE X(a INT CHECK (b > 1))", 207, "Invalid column name 'b'.");
  refuses("CREATE TABLE X(a INT CHECK (a > (SELECT 1)))", 1046,
          "Subqueries are not allowed in this context. Only scalar expressions are allowed.");
  EXPECT_EQ(run("SELECT COUNT(*) FROM sys.tables"), "1\n");
}

TEST_F(ConstraintTest, KeepsRowsThatReferToEachOther) {
  run("CREATE TABLE Grup(Kod VARCHAR(5) NOT NULL PRIMARY KEY, Ad VARCHAR(20)) "
      "CREATE TABLE Stok(ID INT NOT NULL PRIMARY KEY, Kod VARCHAR(5) NULL CONSTRAINT FK_Grup REFERENCES "
      "Grup, "
      "Ust INT NULL CONSTRAINT FK_Ust FOREIGN KEY REFERENCES Stok(ID))");
  const std::string here = "The conflict occurred in database \"FIRMA\", table \"dbo.";
  follow(
      {{"INSERT INTO Grup VALUES('A', NULL) INSERT INTO Grup VALUES('b', NULL) INSERT INTO Stok VALUES(1, "
        "'a', 1) "
        "INSERT INTO Stok SELECT 2, 'B', 3 UNION ALL SELECT 3, NULL, 2 SELECT COUNT(*) FROM Stok",
        "3\n"}});
  refuses("INSERT INTO Stok VALUES(4, 'C', NULL)", 547,
          "The INSERT statement conflicted with the FOREIGN KEY constraint \"FK_Grup\". " + here +
              "Grup\", column 'Kod'.");
  refuses("INSERT INTO Stok VALUES(4, NULL, 5)", 547,
          "The INSERT statement conflicted with the FOREIGN KEY SAME TABLE constraint \"FK_Ust\". " + here +
              "Stok\", column 'ID'.");
  refuses("UPDATE Stok SET Kod = 'C' WHERE ID = 1", 547,
          "The UPDATE statement conflicted with the FOREIGN KEY constraint \"FK_Grup\". " + here +
              "Grup\", column 'Kod'.");
  refuses("DELETE FROM Grup WHERE Kod = 'a'", 547,
          "The DELETE statement conflicted with the REFERENCE constraint \"FK_Grup\". " + here +
              "Stok\", column 'Kod'.");
  refuses("UPDATE Grup SET Kod = 'X' WHERE Kod = 'A'", 547,
          "The UPDATE statement conflicted with the REFERENCE constraint \"FK_Grup\". " + here +
              "Stok\", column 'Kod'.");
  refuses("DELETE FROM Stok WHERE ID = 3", 547,
          "The DELETE statement conflicted with the SAME TABLE REFERENCE constraint \"FK_Ust\". " + here +
              "Stok\", column 'Ust'.");
  // As one: keys that change places, and rows that go together.
  follow({{"UPDATE Grup SET Kod = CASE Kod WHEN 'A' THEN 'B' ELSE 'A' END SELECT Kod FROM Grup ORDER BY Kod",
           "A\nB\n"},
          {"DELETE FROM Stok WHERE ID IN (2, 3) SELECT ID FROM Stok", "1\n"},
          {"DELETE FROM Stok DELETE FROM Grup SELECT COUNT(*) FROM Grup", "0\n"}});
  refuses("TRUNCATE TABLE Grup", 4712,
          "Cannot truncate table 'Grup' because it is being referenced by a FOREIGN KEY constraint.");
  refuses("DROP TABLE Grup", 3726,
          "Could not drop object 'Grup' because it is referenced by a FOREIGN KEY constraint.");
  follow({{"DROP TABLE Stok DROP TABLE Grup SELECT COUNT(*) FROM sys.objects", "0\n"}});
}

TEST_F(ConstraintTest, GoesAlongWithTheKey) {
  run("CREATE TABLE A(K INT NOT NULL, L INT NOT NULL, CONSTRAINT PK_A PRIMARY KEY(K, L)) "
      "CREATE TABLE B(ID INT NOT NULL PRIMARY KEY, K INT, L INT, CONSTRAINT FK_B FOREIGN KEY(K, L) "
      "REFERENCES A(K, L) "
      "ON DELETE CASCADE ON UPDATE CASCADE) "
      "CREATE TABLE C(B INT DEFAULT 2 CONSTRAINT FK_C REFERENCES B ON DELETE SET DEFAULT ON UPDATE SET NULL, "
      "N INT) "
      "CREATE TABLE Iz(Ne VARCHAR(60))");
  run("CREATE TRIGGER A_d ON A FOR DELETE AS INSERT INTO Iz SELECT 'A-' + CONVERT(VARCHAR, COUNT(*)) FROM "
      "deleted");
  run("CREATE TRIGGER B_d ON B FOR DELETE, UPDATE AS INSERT INTO Iz SELECT 'B-' + CONVERT(VARCHAR, COUNT(*)) "
      "+ '+' + "
      "CONVERT(VARCHAR, (SELECT COUNT(*) FROM inserted WHERE UPDATE(K))) FROM deleted");
  run("CREATE TRIGGER C_u ON C FOR UPDATE AS INSERT INTO Iz SELECT 'C' + ISNULL(CONVERT(VARCHAR, d.B), '-') "
      "+ '>' + "
      "ISNULL(CONVERT(VARCHAR, i.B), '-') FROM inserted i, deleted d WHERE i.N=d.N");
  run("INSERT INTO A SELECT 1, 1 UNION ALL SELECT 1, 2 UNION ALL SELECT 2, 1 "
      "INSERT INTO B SELECT 1, 1, 1 UNION ALL SELECT 2, 1, 2 UNION ALL SELECT 3, 2, 1 UNION ALL SELECT 4, 2, "
      "NULL "
      "INSERT INTO C SELECT 1, 10 UNION ALL SELECT 3, 30");
  follow({
      // What a step changes fires before the statement's own table, also the row that only moves.
      {"DELETE FROM A WHERE K = 2 SELECT * FROM B ORDER BY ID SELECT * FROM C ORDER BY N SELECT Ne FROM Iz "
       "DELETE FROM "
       "Iz",
       "1\t1\t1\n2\t1\t2\n4\t2\tNULL\n1\t10\n2\t30\nC3>2\nB-1+0\nA-1\n"},
      {"UPDATE A SET K = 7, L = 3 - L SELECT * FROM B ORDER BY ID SELECT Ne FROM Iz DELETE FROM Iz",
       "1\t7\t2\n2\t7\t1\n4\t2\tNULL\nB-2+2\n"},
      {"UPDATE B SET ID = 5 - ID SELECT * FROM C ORDER BY N SELECT Ne FROM Iz DELETE FROM Iz",
       "NULL\t10\nNULL\t30\nC1>-\nC2>-\nB-3+0\n"},
  });
  // A default that is not there breaks it all off.
  follow({{"UPDATE C SET B = 4 WHERE N = 10 DELETE FROM B WHERE ID = 1 SELECT ID FROM B ORDER BY ID",
           "3\n4\n"}});
  refuses("DELETE FROM A", 547,
          "The DELETE statement conflicted with the FOREIGN KEY constraint \"FK_C\". The conflict occurred "
          "in database "
          "\"FIRMA\", table \"dbo.B\", column 'ID'.");
  EXPECT_EQ(run("SELECT COUNT(*) FROM A SELECT ID FROM B ORDER BY ID SELECT B FROM C ORDER BY N"),
            "2\n3\n4\n4\nNULL\n");
  EXPECT_EQ(
      run("SELECT name, OBJECT_NAME(referenced_object_id), delete_referential_action_desc, "
          "update_referential_action_desc FROM sys.foreign_keys ORDER BY name EXEC sp_fkeys A SELECT * FROM "
          "INFORMATION_SCHEMA.REFERENTIAL_CONSTRAINTS WHERE CONSTRAINT_NAME='FK_B'"),
      "FK_B\tA\tCASCADE\tCASCADE\nFK_C\tB\tSET_DEFAULT\tSET_NULL\n"
      "FIRMA\tdbo\tA\tK\tFIRMA\tdbo\tB\tK\t1\t0\t0\tFK_B\tPK_A\t7\n"
      "FIRMA\tdbo\tA\tL\tFIRMA\tdbo\tB\tL\t2\t0\t0\tFK_B\tPK_A\t7\n"
      "FIRMA\tdbo\tFK_B\tFIRMA\tdbo\tPK_A\tSIMPLE\tCASCADE\tCASCADE\n");
}

TEST_F(ConstraintTest, RefusesKeysThatCannotBe) {
  run("CREATE TABLE P(ID INT NOT NULL CONSTRAINT PK_P PRIMARY KEY, Ad VARCHAR(10), Kod INT) "
      "CREATE TABLE Bos(a INT) CREATE UNIQUE INDEX P_k ON P(Kod)");
  struct Refused {
    const char* batch;
    int number;
    const char* text;
  };
  const Refused cases[] = {
      {"CREATE TABLE X(a INT CONSTRAINT F REFERENCES Yok)", 1767,
       "Foreign key 'F' references invalid table 'Yok'."},
      {"CREATE TABLE X(a INT CONSTRAINT F REFERENCES Bos)", 1773,
       "Foreign key 'F' has implicit reference to object 'Bos' which does not have a primary key defined on "
       "it."},
      {"CREATE TABLE X(a VARCHAR(10) CONSTRAINT F REFERENCES P(Ad))", 1776,
       "There are no primary or candidate keys in the referenced table 'P' that match the referencing column "
       "list in "
       "the foreign key 'F'."},
      {"CREATE TABLE X(a INT, CONSTRAINT F FOREIGN KEY(b) REFERENCES P)", 1769,
       "Foreign key 'F' references invalid column 'b' in referencing table 'X'."},
      {"CREATE TABLE X(a INT CONSTRAINT F REFERENCES P(yok))", 1770,
       "Foreign key 'F' references invalid column 'yok' in referenced table 'P'."},
      {"CREATE TABLE X(a SMALLINT CONSTRAINT F REFERENCES P)", 1778,
       "Column 'P.ID' is not the same data type as referencing column 'X.a' in foreign key 'F'."},
      {"CREATE TABLE X(a INT, b INT, CONSTRAINT F FOREIGN KEY(a, b) REFERENCES P(ID))", 8139,
       "Number of referencing columns in foreign key differs from number of referenced columns, table 'X'."},
      {"CREATE TABLE X(a INT NOT NULL CONSTRAINT F REFERENCES P ON DELETE SET NULL)", 1761,
       "Cannot create the foreign key \"F\" with the SET NULL referential action, because one or more "
       "referencing "
       "columns are not nullable."},
      {"CREATE TABLE X(a INT CONSTRAINT F REFERENCES master..P)", 1763,
       "Cross-database foreign key references are not supported. Foreign key 'F'."},
      {"CREATE TABLE X(a INT NOT NULL PRIMARY KEY, b INT CONSTRAINT F REFERENCES X ON DELETE CASCADE)", 1785,
       "Introducing FOREIGN KEY constraint 'F' on table 'X' may cause cycles or multiple cascade paths. "
       "Specify ON "
       "DELETE NO ACTION or ON UPDATE NO ACTION, or modify other FOREIGN KEY constraints."},
  };
  for (const Refused& each : cases) refuses(each.batch, each.number, each.text);
  EXPECT_EQ(run("SELECT name FROM sys.tables ORDER BY name SELECT COUNT(*) FROM sys.foreign_keys"),
            "Bos\nP\n0\n");
  // Two ways to one table.
  follow({{"CREATE TABLE Q(ID INT NOT NULL PRIMARY KEY REFERENCES P ON DELETE CASCADE, K INT NULL)", ""},
          {"CREATE TABLE R(Q INT NULL REFERENCES Q ON DELETE SET NULL, P INT REFERENCES P ON DELETE CASCADE)",
           "!1785\n"},
          {"CREATE TABLE R(Q INT NULL REFERENCES Q ON DELETE SET NULL, P INT REFERENCES P ON UPDATE CASCADE, "
           "K INT "
           "REFERENCES P(Kod))",
           ""},
          {"DROP INDEX P.P_k", "!3723\n"},
          {"ALTER TABLE P DROP CONSTRAINT PK_P", "!3725\n"},
          {"ALTER TABLE R ALTER COLUMN P BIGINT", "!4922\n"},
          {"ALTER TABLE R DROP COLUMN P", "!4922\n"}});
}

TEST_F(ConstraintTest, IsAddedSwitchedAndDropped) {
  run("CREATE TABLE P(ID INT NOT NULL PRIMARY KEY) CREATE TABLE T(a INT, b INT) INSERT INTO P VALUES(1) "
      "INSERT INTO T "
      "VALUES(1, -1) INSERT INTO T VALUES(9, 5)");
  refuses("ALTER TABLE T ADD CONSTRAINT FK_T FOREIGN KEY(a) REFERENCES P", 547,
          "The ALTER TABLE statement conflicted with the FOREIGN KEY constraint \"FK_T\". The conflict "
          "occurred in "
          "database \"FIRMA\", table \"dbo.P\", column 'ID'.");
  refuses("ALTER TABLE T ADD CONSTRAINT CK_T CHECK (b > 0)", 547,
          "The ALTER TABLE statement conflicted with the CHECK constraint \"CK_T\". The conflict occurred in "
          "database "
          "\"FIRMA\", table \"dbo.T\", column 'b'.");
  follow({
      {"SELECT COUNT(*) FROM sys.objects WHERE type IN ('F', 'C')", "0\n"},
      {"ALTER TABLE T WITH NOCHECK ADD CONSTRAINT FK_T FOREIGN KEY(a) REFERENCES P, CONSTRAINT CK_T CHECK (b "
       "> 0)",
       ""},
      {"INSERT INTO T VALUES(8, 1)", "!547\n"},
      {"UPDATE T SET a = 9 WHERE b = 5", "!547\n"},
      {"UPDATE T SET b = 6 WHERE b = 5", ""},
      {"ALTER TABLE T NOCHECK CONSTRAINT ALL INSERT INTO T VALUES(8, -8)", ""},
      {"SELECT name, is_disabled, is_not_trusted FROM sys.foreign_keys UNION ALL SELECT name, is_disabled, "
       "is_not_trusted FROM sys.check_constraints",
       "FK_T\t1\t1\nCK_T\t1\t1\n"},
      {"ALTER TABLE T WITH CHECK CHECK CONSTRAINT FK_T", "!547\n"},
      {"ALTER TABLE T CHECK CONSTRAINT FK_T, CK_T INSERT INTO T VALUES(8, 8)", "!547\n"},
      {"DELETE FROM T WHERE a > 1 OR b < 0 ALTER TABLE T WITH CHECK CHECK CONSTRAINT ALL SELECT "
       "is_not_trusted FROM "
       "sys.foreign_keys",
       "0\n"},
      {"ALTER TABLE T CHECK CONSTRAINT yok", "!4917\n"},
      {"EXEC sp_rename 'T.b', 'c', 'COLUMN'", "!15336\n"},
      {"EXEC sp_rename 'T.a', 'A1', 'COLUMN' EXEC sp_rename 'P', 'P1' INSERT INTO T(A1) VALUES(8)", "!547\n"},
      {"EXEC sp_helpconstraint T",
       "CHECK on column b\tCK_T\t(n/a)\t(n/a)\tEnabled\tIs_For_Replication\t(b > 0)\n"
       "FOREIGN KEY\tFK_T\tNo Action\tNo Action\tEnabled\tIs_For_Replication\tA1\n"},
      {"ALTER TABLE T ADD d INT NULL CONSTRAINT CK_D CHECK (d <> 3) INSERT INTO T(d) VALUES(3)", "!547\n"},
      {"ALTER TABLE T DROP CONSTRAINT FK_T, CK_T, CK_D INSERT INTO T VALUES(8, -1, 3) DROP TABLE P1", ""},
  });
}

TEST_F(ConstraintTest, StandsInItsTransactionAndInOtherSessions) {
  run("CREATE TABLE P(ID INT IDENTITY NOT NULL PRIMARY KEY) CREATE TABLE T(a INT REFERENCES P ON DELETE "
      "CASCADE)");
  auto other = open("FIRMA");
  follow({{"BEGIN TRAN INSERT INTO P DEFAULT VALUES INSERT INTO T VALUES(1) INSERT INTO T VALUES(2) SELECT "
           "COUNT(*) FROM "
           "T COMMIT",
           "!547\n"},
          {"SELECT a FROM T", "1\n"}});
  EXPECT_EQ(run(*other, "INSERT INTO FIRMA..T VALUES(7)"), "!547\n");
  EXPECT_EQ(run(*other, "DELETE FROM P SELECT COUNT(*) FROM T"), "0\n");
  follow(
      {{"BEGIN TRAN ALTER TABLE T ADD CONSTRAINT CK CHECK (a < 5) ROLLBACK INSERT INTO P DEFAULT VALUES "
        "INSERT INTO T "
        "VALUES(2) SELECT a FROM T",
        "2\n"}});
}

}  // namespace engine::test
