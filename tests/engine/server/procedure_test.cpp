// Stored procedures of the user's own.
#include "engine/session_fixture.h"

namespace engine::test {

TEST_F(SessionTest, CallsProceduresWithParameters) {
  run("CREATE TABLE Stok(ID INT IDENTITY, Ad VARCHAR(10), Fiyat MONEY)");
  run("CREATE PROCEDURE Ekle @Ad VARCHAR(10), @Fiyat MONEY = 2.5, @ID INT = NULL OUTPUT AS\n"
      "SET NOCOUNT ON\nINSERT INTO Stok VALUES(@Ad, @Fiyat)\nSET @ID = SCOPE_IDENTITY()\nRETURN @ID * 10");
  run("CREATE PROC Liste(@En AS MONEY, @Bicim CHAR(1) = a) WITH RECOMPILE AS SELECT Ad + @Bicim, Fiyat FROM "
      "Stok WHERE "
      "Fiyat >= @En ORDER BY ID IF @@ROWCOUNT = 0 PRINT 'yok'");
  follow({
      {"EXEC Ekle 'bir' Ekle2", "!102\n"},
      {"EXEC Ekle 'bir' DECLARE @r INT, @no INT EXEC @r = dbo.Ekle @Fiyat = 7, @ad = 'iki', @ID = @no OUTPUT "
       "SELECT @r, "
       "@no, @@IDENTITY, SCOPE_IDENTITY()",
       "20\t2\t2\tNULL\n"},
      {"Ekle 'cok uzun bir ad', DEFAULT EXEC Liste 0", "bira\t2.50\nikia\t7.00\ncok uzun ba\t2.50\n"},
      {"EXEC FIRMA..Liste @Bicim = z, @En = 5 EXEC Liste $99", "ikiz\t7.00\n# yok\n"},
      {"DECLARE @n INT SET @n = 50 EXEC Ekle 'x', 1, @n SELECT @n EXEC Ekle 'y', 1, @n OUT SELECT @n",
       "50\n5\n"},
      {"DECLARE @r INT EXEC @r = Liste 999 SELECT @r", "# yok\n0\n"},
      {"EXEC Yok", "!2812\n"},
      {"EXEC Ekle", "!201\n"},
      {"EXEC Ekle @Fiyat = 3", "!201\n"},
      {"EXEC Ekle 'a', 1, NULL, 4", "!8144\n"},
      {"EXEC Ekle 'a', @Yok = 1", "!8145\n"},
      {"EXEC Ekle 'a', @Ad = 'b'", "!8143\n"},
      {"EXEC Ekle @Ad = 'a', 3", "!119\n"},
      {"EXEC Ekle 'a', 'para'", "!8114\n"},
      {"DECLARE @a VARCHAR(9) EXEC Ekle @a OUTPUT", "!8162\n"},
      {"EXEC Ekle 'a' OUTPUT", "!179\n"},
      {"EXEC sp_helpindex @objname = 'Stok', @yok = 1", "!8145\n"},
      {"SELECT COUNT(*) FROM Stok", "5\n"},
  });
  const Step texts[] = {
      {"EXEC Ekle", "Procedure or function 'Ekle' expects parameter '@Ad', which was not supplied."},
      {"EXEC Ekle 'a', 1, NULL, 4", "Procedure or function Ekle has too many arguments specified."},
      {"EXEC Ekle 'a', @Yok = 1", "@Yok is not a parameter for procedure Ekle."},
      {"EXEC Ekle 'a', 'para'", "Error converting data type varchar to money."},
      {"EXEC Yok", "Could not find stored procedure 'Yok'."},
      {"DECLARE @a INT EXEC Ekle 'a', @a OUTPUT",
       "The formal parameter \"@Fiyat\" was not declared as an OUTPUT parameter, but the actual parameter "
       "passed in "
       "requested output."},
  };
  for (const Step& step : texts) {
    run(step.batch);
    EXPECT_EQ(message, step.printed) << step.batch;
  }
}

TEST_F(SessionTest, KeepsProceduresInTheCatalog) {
  follow({
      {"CREATE PROCEDURE Bir @a INT, @b DECIMAL(9,2) OUTPUT AS SELECT Yok FROM YokTablo", ""},
      {"SELECT name, type_desc FROM sys.procedures SELECT name, parameter_id, TYPE_NAME(user_type_id), "
       "max_length, "
       "precision, scale, is_output FROM sys.parameters SELECT ROUTINE_NAME, ROUTINE_TYPE, "
       "ROUTINE_DEFINITION FROM "
       "INFORMATION_SCHEMA.ROUTINES SELECT SPECIFIC_NAME, ORDINAL_POSITION, PARAMETER_MODE, PARAMETER_NAME, "
       "DATA_TYPE, "
       "NUMERIC_PRECISION FROM INFORMATION_SCHEMA.PARAMETERS",
       "Bir\tSQL_STORED_PROCEDURE\n@a\t1\tint\t4\t10\t0\t0\n@b\t2\tdecimal\t5\t9\t2\t1\n"
       "Bir\tPROCEDURE\tCREATE PROCEDURE Bir @a INT, @b DECIMAL(9,2) OUTPUT AS SELECT Yok FROM YokTablo\n"
       "Bir\t1\tIN\t@a\tint\t10\nBir\t2\tINOUT\t@b\tdecimal\t9\n"},
      {"EXEC sp_stored_procedures", "FIRMA\tdbo\tBir\t-1\t-1\t-1\tNULL\t2\n"},
      {"SELECT COUNT(*) FROM sys.columns SELECT OBJECTPROPERTY(OBJECT_ID('Bir', 'P'), 'IsProcedure')",
       "0\n1\n"},
      {"CREATE PROC bir AS RETURN", "!2714\n"},
      {"CREATE TABLE BIR(a INT)", "!2714\n"},
      {"ALTER PROC Iki AS RETURN", "!208\n"},
      {"DECLARE @x DECIMAL(9,2) EXEC Bir 1, @x", "!208\n"},
      {"ALTER PROCEDURE Bir @a INT = 4 AS\nSELECT @a", ""},
      {"EXEC Bir EXEC sp_helptext Bir", "4\nCREATE PROCEDURE Bir @a INT = 4 AS\n\nSELECT @a\n"},
      {"EXEC sp_rename 'Bir', 'Uc' EXEC Uc 5", "5\n"},
      {"EXEC Bir", "!2812\n"},
      {"DROP TABLE Uc", "!3705\n"},
      {"DROP PROCEDURE Uc DROP PROC Uc", "!3701\n"},
      {"SELECT COUNT(*) FROM sys.objects SELECT COUNT(*) FROM syscolumns", "0\n0\n"},
      {"SELECT 1 CREATE PROC p AS RETURN", "!111\n"},
      {"CREATE PROC p @a INT, @A INT AS RETURN", "!134\n"},
      {"CREATE PROC p AS SET @a = 1", "!137\n"},
      {"CREATE PROC p AS USE master", "!154\n"},
      {"RETURN 5", "!178\n"},
      {"CREATE PROC #p AS RETURN", "!50000\n"},
      {"CREATE PROC p WITH ENCRYPTION AS RETURN", "!50000\n"},
      {"CREATE PROC p AS", ""},
      {"EXEC p", ""},
  });
  EXPECT_EQ(run("CREATE PROC p1 WITH EXECUTE AS OWNER AS RETURN"), "!50000\n");
  EXPECT_EQ(message, "'EXECUTE AS' is not supported by the embedded server.");
}

TEST_F(SessionTest, NestsProceduresAndGoesOnBehindTheirErrors) {
  run("CREATE TABLE T(a INT NOT NULL)");
  run("CREATE PROC Say @n INT AS IF @n > 0 BEGIN SET @n = @n - 1 EXEC Say @n END ELSE SELECT @@NESTLEVEL");
  run("CREATE PROC Yanlis AS\nINSERT INTO T VALUES(1)\nINSERT INTO T VALUES(NULL)\nINSERT INTO T "
      "VALUES(2)\nRETURN 3");
  run("CREATE PROC Ayar AS SET NOCOUNT ON SET DATEFORMAT dmy SET XACT_ABORT ON SELECT CONVERT(DATETIME, "
      "'13.01.2026')");
  run("CREATE PROC Bos AS RETURN NULL");
  run("CREATE PROC Ac AS BEGIN TRAN");
  run("CREATE PROC Kir AS SET XACT_ABORT ON INSERT INTO T VALUES(NULL) SELECT 'x'");
  follow({
      {"EXEC Say 30", "31\n"},
      {"EXEC Say 32", "!217\n"},
      {"SELECT @@NESTLEVEL", "0\n"},
      {"EXEC Yanlis", "!515\n"},
      {"SELECT a FROM T", "1\n2\n"},
      {"EXEC Ayar", "Jan 13 2026 12:00AM\n"},
      {"SELECT CONVERT(VARCHAR, CONVERT(DATETIME, '01.13.2026'), 112)", "20260113\n"},
      {"DECLARE @r INT EXEC @r = Bos SELECT @r",
       "# The 'Bos' procedure attempted to return a status of NULL, which is not allowed. A status of 0 will "
       "be "
       "returned instead.\n0\n"},
      {"EXEC Ac", "!266\n"},
      {"SELECT @@TRANCOUNT ROLLBACK", "1\n"},
      {"EXEC Kir SELECT 'y'", "!515\n"},
      {"SELECT COUNT(*) FROM T", "2\n"},
  });
  run("UPDATE T SET a = a");
  EXPECT_EQ(last.rowCounts, std::vector<std::int64_t>{2});
  try {
    PrintingSink sink;
    session->execute("SELECT 1\nEXEC Yanlis", sink);
    FAIL();
  } catch (const Error& error) {
    EXPECT_EQ(error.procedure(), "Yanlis");
    EXPECT_EQ(error.line(), 3);
  }
}

TEST_F(SessionTest, CatchesWhatAProcedureRaises) {
  run("CREATE TABLE T(a INT NOT NULL)");
  run("CREATE PROC Yanlis AS\nINSERT INTO T VALUES(1)\nINSERT INTO T VALUES(NULL)\nINSERT INTO T VALUES(2)");
  run("CREATE PROC Bozuk AS BEGIN TRY SELECT x FROM Yok END TRY BEGIN CATCH SELECT 'icinde' END CATCH");
  run("CREATE PROC Tutan AS BEGIN TRY EXEC Yanlis END TRY BEGIN CATCH SELECT ERROR_PROCEDURE() RETURN 5 END "
      "CATCH");
  follow({
      {"BEGIN TRY EXEC Yanlis SELECT 'x' END TRY BEGIN CATCH SELECT ERROR_NUMBER(), ERROR_PROCEDURE(), "
       "ERROR_LINE() END "
       "CATCH SELECT a FROM T",
       "515\tYanlis\t3\n1\n"},
      {"BEGIN TRY EXEC Bozuk END TRY BEGIN CATCH SELECT ERROR_NUMBER(), ERROR_PROCEDURE() END CATCH",
       "208\tBozuk\n"},
      {"BEGIN TRY EXEC Yok END TRY BEGIN CATCH SELECT ERROR_MESSAGE() END CATCH",
       "Could not find stored procedure 'Yok'.\n"},
      {"DECLARE @r INT EXEC @r = Tutan SELECT @r", "Yanlis\n5\n"},
  });
}

TEST_F(SessionTest, CallsProceduresInTriggersAndTextsInBoth) {
  run("CREATE TABLE T(a INT) CREATE TABLE Iz(a INT)");
  run("CREATE PROC Yaz @a INT AS EXEC('INSERT INTO Iz VALUES(1)') EXEC('INSERT INTO Iz VALUES(2)') INSERT "
      "INTO Iz "
      "VALUES(@a)");
  run("CREATE TRIGGER T_i ON T FOR INSERT AS DECLARE @a INT SELECT @a = a FROM inserted EXEC Yaz @a "
      "EXEC('INSERT INTO Iz "
      "VALUES(7)') EXEC('INSERT INTO Iz VALUES(8)')");
  follow({{"INSERT INTO T VALUES(5) SELECT a FROM Iz", "1\n2\n5\n7\n8\n"}});
}

TEST_F(SessionTest, RunsProceduresByTheRightOfTheirOwner) {
  run("CREATE TABLE T(a INT) INSERT INTO T VALUES(3)");
  run("CREATE PROC Oku AS SELECT a FROM T");
  run("EXEC sp_addlogin ayse, gizli EXEC sp_grantdbaccess ayse EXEC sp_addrolemember db_datareader, ayse "
      "EXEC sp_addlogin "
      "veli, gizli EXEC sp_grantdbaccess veli EXEC sp_addrolemember db_owner, veli EXEC sp_addlogin can, "
      "gizli");
  Session reader(server, "ayse", "gizli", "FIRMA"), owner(server, "veli", "gizli", "FIRMA"),
      stranger(server, "can", "gizli", "");
  EXPECT_EQ(run(owner, "EXEC Oku"), "3\n");
  EXPECT_EQ(run(reader, "EXEC Oku"), "!229\n");
  EXPECT_EQ(message,
            "The EXECUTE permission was denied on the object 'Oku', database 'FIRMA', schema 'dbo'.");
  EXPECT_EQ(run(reader, "CREATE PROC p AS RETURN"), "!262\n");
  EXPECT_EQ(message, "CREATE PROCEDURE permission denied in database 'FIRMA'.");
  EXPECT_EQ(run(reader, "DROP PROC Oku"), "!3701\n");
  EXPECT_EQ(run(stranger, "EXEC FIRMA..Oku"), "!916\n");
}

}  // namespace engine::test
