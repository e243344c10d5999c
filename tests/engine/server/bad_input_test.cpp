// What a person or a broken program could send: each gets its error, changes nothing and leaves the
// session usable.
#include <atomic>
#include <chrono>
#include <thread>

#include "engine/session_fixture.h"

namespace engine::test {
namespace {

std::string repeat(const std::string& text, int times) {
  std::string result;
  result.reserve(text.size() * static_cast<std::size_t>(times));
  for (int i = 0; i < times; ++i) result += text;
  return result;
}

std::string list(const std::string& head, int count, const std::string& separator,
                 const std::function<std::string(int)>& item, const std::string& tail) {
  std::string text = head;
  for (int i = 0; i < count; ++i) text += (i ? separator : "") + item(i);
  return text + tail;
}

struct Case {
  const char* what;
  std::string batch;
  int number;        // 0: succeeds
  const char* text;  // a part of the error's text
};

class BadInput : public SessionTest {
 protected:
  void SetUp() override {
    for (const char* batch :
         {"CREATE TABLE T (ID INT IDENTITY NOT NULL PRIMARY KEY, A INT NULL, B CHAR(10) NULL, C MONEY NULL, "
          "D DATETIME NULL, E FLOAT NULL, F VARCHAR(20) NOT NULL DEFAULT 'x', G BIT NULL, "
          "H DECIMAL(6,2) NULL, S SMALLINT NULL, Y TINYINT NULL, L BIGINT NULL, M SMALLMONEY NULL, "
          "R REAL NULL, Z SMALLDATETIME NULL)",
          "CREATE TABLE U (ID INT NULL, B CHAR(10) NULL)",
          "CREATE TRIGGER TR ON T FOR INSERT, UPDATE AS INSERT INTO U SELECT ID,B FROM INSERTED",
          "CREATE VIEW V AS SELECT A,SUM(C) AS S FROM T GROUP BY A",
          "INSERT INTO T (A,B,C,D,E) VALUES (1,'ısı',1.5,'20120131',2.25)",
          "INSERT INTO T (A,B,C,D,E) VALUES (2,'İSİ',-3,'20121231',1e10)"})
      ASSERT_EQ(run(batch), "") << message;
    before_ = content();
  }
  std::string content() {
    return run(
        "SELECT * FROM T ORDER BY ID SELECT * FROM U SELECT * FROM V ORDER BY A "
        "SELECT COUNT(*) FROM sysobjects SELECT @@TRANCOUNT");
  }
  void check(const std::vector<Case>& cases) {
    for (const Case& each : cases) {
      SCOPED_TRACE(each.what);
      message.clear();
      const std::string printed = run(each.batch);
      const std::string expected = each.number ? "!" + std::to_string(each.number) + "\n" : "";
      EXPECT_TRUE(each.number ? printed.ends_with(expected) : printed.find('!') == std::string::npos)
          << printed.substr(0, 200) << " " << message.substr(0, 300);
      if (each.text) {
        EXPECT_NE(message.find(each.text), std::string::npos) << message.substr(0, 300);
      }
      EXPECT_EQ(content(), before_);
    }
  }
  // Runs the batch while another thread goes on cancelling until it has ended.
  std::string runCancelled(const std::string& batch) {
    std::atomic<bool> ended = false;
    std::thread other([&] {
      while (!ended) {
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        session->cancel();
      }
    });
    const std::string printed = run(batch);
    ended = true;
    other.join();
    return printed;
  }
  std::string before_;
};

TEST_F(BadInput, UnfinishedAndForeignText) {
  check({
      {"literal", "UPDATE T SET A=9 SELECT 'abc", 105, "Unclosed quotation mark"},
      {"national literal", "UPDATE T SET A=9 SELECT N'abc", 105, "Unclosed quotation mark"},
      {"only a quote", "'", 105, "Unclosed quotation mark"},
      {"bracket", "UPDATE T SET A=9 SELECT [abc", 105, "abc"},
      {"quoted name", "UPDATE T SET A=9 SELECT \"abc", 105, "abc"},
      {"comment", "UPDATE T SET A=9 /* abc", 113, "Missing end comment mark '*/'"},
      {"inner comment", "UPDATE T SET A=9 /* /* */", 113, "Missing end comment mark '*/'"},
      {"NUL outside", std::string("UPDATE T SET A=9 \0 SELECT 1", 27), 102, "Incorrect syntax"},
      {"NUL inside a literal", std::string("SELECT 'a\0b'", 12), 0, nullptr},
      {"NUL in a table's name", std::string("CREATE TABLE [x\0y] (A INT)", 26), 15004, "invalid"},
      {"NUL in a column's name", std::string("CREATE TABLE X ([x\0y] INT)", 26), 15004, "invalid"},
      {"NUL in a database's name", std::string("CREATE DATABASE [x\0y]", 21), 15004, "invalid"},
      {"invalid UTF-8 outside", "UPDATE T SET A=9 WHERE \xFF\xC0=1", 207, "Invalid column name"},
      {"cut UTF-8 in a literal", "SELECT 'a\xC5'", 0, nullptr},
      {"invalid UTF-8 in LIKE", "SELECT COUNT(*) FROM T WHERE B LIKE '\xFF%\xC5'", 0, nullptr},
      {"invalid UTF-8 in functions",
       "SELECT "
       "UPPER('\xFF'),LEFT('\xC5\xC5',1),LEN('\xE2\x82'),REVERSE('\xC5\x9E\x80'),CHARINDEX('\xFF','a\xFF')",
       0, nullptr},
      {"a surrogate in UTF-8", "SELECT N'\xED\xA0\x80'", 0, nullptr},
      {"empty", "", 0, nullptr},
      {"blanks", " \t\r\n;;; ", 0, nullptr},
  });
}

TEST_F(BadInput, LongNamesAndTexts) {
  const std::string name(10000, 'x'), letters = repeat("ş", 10000);
  const std::string million(1000000, 'a');
  check({
      {"table", "CREATE TABLE " + name + " (A INT)", 103, "too long"},
      {"table in brackets", "CREATE TABLE [" + letters + "] (A INT)", 103, "too long"},
      {"column", "CREATE TABLE X (" + name + " INT)", 103, "too long"},
      {"variable", "DECLARE @" + name + " INT", 103, "too long"},
      {"alias", "SELECT 1 AS " + name, 103, "too long"},
      {"database", "CREATE DATABASE " + name, 103, "too long"},
      {"USE", "USE [" + name + "]", 103, "too long"},
      {"constraint", "ALTER TABLE T ADD CONSTRAINT [" + name + "] UNIQUE (A)", 103, "too long"},
      {"login", "EXEC sp_addlogin '" + name + "','p'", 15006, "not a valid name"},
      {"a million letters compared", "SELECT A FROM T WHERE B='" + million + "'", 402, nullptr},
      {"a million letters measured", "SELECT DATALENGTH('" + million + "')", 0, nullptr},
      {"a million letters too many", "UPDATE T SET F='" + million + "'", 8152, "would be truncated"},
      {"a million quotes", "UPDATE T SET F='" + repeat("''", 500000) + "'", 8152, "would be truncated"},
      {"a million digits", "SELECT " + repeat("9", 1000000), 1007, "out of the range"},
      {"a million hexadecimal digits", "SELECT DATALENGTH(0x" + repeat("AB", 500000) + ")", 0, nullptr},
      {"LIKE with a million letters", "SELECT A FROM T WHERE B LIKE '" + repeat("%a", 500000) + "'", 0,
       nullptr},
      {"a million blanks", "SELECT" + repeat(" ", 1000000) + "1", 0, nullptr},
      {"a comment in comments", repeat("/*", 10000) + repeat("*/", 10000), 0, nullptr},
  });
  const std::string longest(128, 'x'), letters128 = repeat("ş", 128);
  EXPECT_EQ(run("CREATE TABLE [" + longest + "] ([" + letters128 + "] INT) INSERT INTO " + longest +
                " VALUES (1) SELECT " + letters128 + " FROM " + longest),
            "1\n")
      << message;
}

TEST_F(BadInput, DeepAndWide) {
  const std::string deep = "nested too deeply";
  const auto number = [](int i) { return std::to_string(i); };
  check({
      {"10,000 brackets", "SELECT " + repeat("(", 10000) + "1" + repeat(")", 10000), 191, deep.c_str()},
      {"900 brackets", "SELECT " + repeat("(", 900) + "1" + repeat(")", 900), 0, nullptr},
      {"900 signs", "SELECT " + repeat("- ", 900) + "A FROM T", 191, deep.c_str()},
      {"900 functions", "SELECT " + repeat("ABS(", 900) + "A" + repeat(")", 900) + " FROM T", 0, nullptr},
      {"900 NOTs", "SELECT A FROM T WHERE " + repeat("NOT ", 900) + "A=1", 0, nullptr},
      {"90 subqueries", "SELECT " + repeat("(SELECT ", 90) + "A" + repeat(")", 90) + " FROM T", 0, nullptr},
      {"90 derived tables", repeat("SELECT * FROM (", 90) + "SELECT A FROM T" + repeat(") X", 90), 0,
       nullptr},
      {"11 CASEs", "SELECT " + repeat("CASE WHEN A=1 THEN ", 11) + "A" + repeat(" END", 11) + " FROM T", 125,
       "level 10"},
      {"60 NULLIFs", "SELECT " + repeat("NULLIF(", 60) + "A" + repeat(",2)", 60) + " FROM T", 0, nullptr},
      {"60 NULLIFs of two types", "SELECT " + repeat("NULLIF(", 60) + "A" + repeat(",2.5)", 60) + " FROM T",
       8623, nullptr},
      {"CASE of CASE",
       "SELECT " + repeat("CASE ", 9) + "A" + repeat(repeat(" WHEN 1 THEN 1", 20) + " END", 9) + " FROM T", 0,
       nullptr},
      {"15 signs", "SELECT " + repeat("- ", 15) + "A FROM T", 0, nullptr},
      {"25 functions", "SELECT " + repeat("ABS(", 25) + "A" + repeat(")", 25) + " FROM T", 0, nullptr},
      {"40 NOTs", "SELECT A FROM T WHERE " + repeat("NOT ", 40) + "A=1", 0, nullptr},
      {"12 subqueries", "SELECT " + repeat("(SELECT ", 12) + "A" + repeat(")", 12) + " FROM T", 0, nullptr},
      {"12 derived tables", repeat("SELECT * FROM (", 12) + "SELECT A FROM T" + repeat(") X", 12), 0,
       nullptr},
      {"10 CASEs", "SELECT " + repeat("CASE WHEN A=1 THEN ", 10) + "A" + repeat(" END", 10) + " FROM T", 0,
       nullptr},
      {"90 blocks", repeat("BEGIN ", 90) + "SELECT 1" + repeat(" END", 90), 0, nullptr},
      {"3,000 ORs",
       list(
           "SELECT COUNT(*) FROM T WHERE ", 3000, " OR ", [](int i) { return "A=" + std::to_string(i); }, ""),
       0, nullptr},
      {"3,000 ANDs",
       list(
           "SELECT COUNT(*) FROM T WHERE ", 3000, " AND ",
           [](int i) { return "A<>" + std::to_string(i + 9); }, ""),
       0, nullptr},
      {"2,000 concatenations", "SELECT A FROM T WHERE B='a'" + repeat("+'bc'", 2000), 0, nullptr},
      {"2,000 concatenated columns", "SELECT B" + repeat("+B", 2000) + " FROM T", 0, nullptr},
      {"2,000 sums of literals", "SELECT 1" + repeat("+1", 2000), 0, nullptr},
      {"2,000 sums of columns", "SELECT A" + repeat("+A", 2000) + " FROM T", 0, nullptr},
      {"2,000 differences", "SELECT A" + repeat("-A", 2000) + " FROM T", 0, nullptr},
      {"10,000 in IN", list("SELECT COUNT(*) FROM T WHERE A IN (", 10000, ",", number, ")"), 0, nullptr},
      {"300,000 in IN", list("SELECT COUNT(*) FROM T WHERE A IN (", 300000, ",", number, ")"), 8623, nullptr},
      {"400 UNION ALLs", "SELECT A FROM T" + repeat(" UNION ALL SELECT A FROM T", 400), 0, nullptr},
      {"20,000 UNION ALLs", "SELECT A FROM T" + repeat(" UNION ALL SELECT A FROM T", 20000), 8623, nullptr},
      {"3,000 columns",
       list(
           "SELECT ", 3000, ",", [](int i) { return "A AS c" + std::to_string(i); }, " FROM T"),
       8623, nullptr},
      {"1,025 columns in a table",
       list(
           "CREATE TABLE X (", 1025, ",", [](int i) { return "c" + std::to_string(i) + " INT"; }, ")"),
       1702, "1024"},
      {"100 tables joined",
       "SELECT COUNT(*) FROM T t0" + list(
                                         "", 100, "",
                                         [](int i) {
                                           return " JOIN T x" + std::to_string(i) + " ON x" +
                                                  std::to_string(i) + ".ID=t0.ID";
                                         },
                                         ""),
       106, nullptr},
      {"10,000 statements", repeat("SET NOCOUNT OFF ", 10000), 0, nullptr},
      {"1,000 WHENs", "SELECT CASE A" + repeat(" WHEN 5 THEN 1", 1000) + " END FROM T", 0, nullptr},
      {"200 arguments", "SELECT COALESCE(A" + repeat(",A", 4000) + ") FROM T", 0, nullptr},
  });
}

TEST_F(BadInput, NumbersThatDoNotFit) {
  const char* overflow = "rithmetic overflow error";
  check({
      {"division", "UPDATE T SET A=1/0", 8134, "Divide by zero error encountered."},
      {"division by a column", "UPDATE T SET C=C/(A-1)", 8134, "Divide by zero"},
      {"remainder", "SELECT 1%0", 8134, "Divide by zero"},
      {"money", "SELECT CAST(1 AS MONEY)/0", 8134, "Divide by zero"},
      {"decimal", "SELECT 1.5/0.0", 8134, "Divide by zero"},
      {"float", "SELECT 1e0/0", 8134, "Divide by zero"},
      {"the smallest by -1", "SELECT CAST(-9223372036854775807-1 AS BIGINT)/-1", 8115, overflow},
      {"the smallest's remainder", "SELECT CAST(-2147483648 AS INT)%-1", 0, nullptr},
      {"tinyint", "UPDATE T SET Y=256", 220, overflow},
      {"negative tinyint", "UPDATE T SET Y=-1", 220, overflow},
      {"smallint", "UPDATE T SET S=32768", 220, overflow},
      {"int", "UPDATE T SET A=2147483648", 8115, overflow},
      {"int sum", "UPDATE T SET A=2147483647+A", 8115, overflow},
      {"int product", "SELECT 65536*65536", 8115, overflow},
      {"bigint", "UPDATE T SET L=9223372036854775808", 8115, overflow},
      {"bigint sum", "SELECT CAST(9223372036854775807 AS BIGINT)+1", 8115, overflow},
      {"bigint product", "SELECT CAST(9223372036854775807 AS BIGINT)*2", 8115, overflow},
      {"bigint negation", "SELECT -CAST('-9223372036854775808' AS BIGINT)", 8115, overflow},
      {"ABS", "SELECT ABS(CAST(-2147483648 AS INT))", 8115, overflow},
      {"SUM", "SELECT SUM(A) FROM (SELECT 2147483647 AS A UNION ALL SELECT 1) X", 8115, overflow},
      {"money", "UPDATE T SET C=922337203685478", 8115, overflow},
      {"money sum", "SELECT CAST(922337203685477.58 AS MONEY)+CAST(1 AS MONEY)", 8115, overflow},
      {"money product", "SELECT CAST(922337203685477 AS MONEY)*CAST(2 AS MONEY)", 8115, overflow},
      {"smallmoney", "UPDATE T SET M=214749", 8115, overflow},
      {"decimal", "UPDATE T SET H=12345", 8115, overflow},
      {"decimal of 39 digits", "SELECT " + repeat("9", 39), 1007, "out of the range"},
      {"decimal product", "SELECT " + repeat("9", 38) + "*10", 8115, overflow},
      {"float", "SELECT 1e308*10", 8115, overflow},
      {"float literal", "SELECT 1e400", 168, "out of the range"},
      {"real", "UPDATE T SET R=1e39", 232, overflow},
      {"float to int", "SELECT CAST(1e20 AS INT)", 232, overflow},
      {"POWER", "SELECT POWER(10,10)", 232, overflow},
      {"SQRT", "SELECT SQRT(-1)", 3623, nullptr},
      {"text to int", "SELECT CAST('99999999999' AS INT)", 248, "overflowed"},
      {"text to tinyint", "SELECT CAST('256' AS TINYINT)", 244, "overflowed"},
      {"text no number", "UPDATE T SET A='abc'", 245, "abc"},
      {"text no money", "UPDATE T SET C='abc'", 235, nullptr},
      {"text no decimal", "UPDATE T SET H='abc'", 8114, nullptr},
      {"text no date", "UPDATE T SET D='abc'", 241, nullptr},
      {"date out of range", "UPDATE T SET D='20121332'", 242, nullptr},
      {"a year before 1753", "UPDATE T SET D='17521231'", 242, nullptr},
      {"smalldatetime", "UPDATE T SET Z='20800101'", 242, nullptr},
      {"DATEADD", "SELECT DATEADD(year,9999,'20120101')", 517, nullptr},
      {"DATEADD by the largest", "SELECT DATEADD(month,2147483647,'20120101')", 517, nullptr},
      {"DATEDIFF", "SELECT DATEDIFF(second,'17530101','99991231')", 535, nullptr},
      {"date sum", "SELECT CAST('99991231' AS DATETIME)+1", 517, "overflow"},
      {"SPACE", "SELECT LEN('x'+SPACE(2147483647)+'x')", 0, nullptr},
      {"REPLICATE", "SELECT LEN(REPLICATE('abc',2147483647))", 0, nullptr},
      {"negative LEFT", "SELECT LEFT('abc',-1)", 537, nullptr},
      {"negative SUBSTRING", "SELECT SUBSTRING('abc',1,-1)", 537, nullptr},
      {"largest SUBSTRING", "SELECT SUBSTRING('abc',2147483647,2147483647)", 0, nullptr},
      {"STUFF out of range", "SELECT STUFF('abc',9,2147483647,'x')", 0, nullptr},
      {"CHAR", "SELECT CHAR(-1),CHAR(256)", 0, nullptr},
      {"STR", "SELECT STR(1e300,8000,16)", 0, nullptr},
      {"ROUND", "SELECT ROUND(1.5,2147483647),ROUND(CAST(2 AS MONEY),-2147483648)", 0, nullptr},
      {"TOP", "SELECT TOP -1 A FROM T", 102, nullptr},
      {"NULL into NOT NULL", "UPDATE T SET F=NULL", 515, "Cannot insert the value NULL"},
  });
}

TEST_F(BadInput, TheIdentityAtItsEnd) {
  EXPECT_EQ(run("CREATE TABLE I (ID TINYINT IDENTITY(254,1), A INT)"), "") << message;
  EXPECT_EQ(run("INSERT INTO I VALUES (1) INSERT INTO I VALUES (2)"), "") << message;
  EXPECT_EQ(run("INSERT INTO I VALUES (3)"), "!8115\n") << message;
  EXPECT_EQ(run("SELECT ID,A FROM I"), "254\t1\n255\t2\n");
}

TEST_F(BadInput, ViewsAndTriggersThatRunInCircles) {
  const auto good = [&](const std::string& batch) { ASSERT_EQ(run(batch), "") << batch << " " << message; };
  good("CREATE VIEW V1 AS SELECT 1 AS A");
  good("CREATE VIEW V2 AS SELECT A FROM V1");
  good("CREATE TABLE X (A INT)");
  good("CREATE TABLE Y (A INT)");
  good("CREATE TRIGGER XT ON X FOR INSERT AS INSERT INTO Y SELECT A+1 FROM INSERTED");
  good("CREATE TRIGGER YT ON Y FOR INSERT AS INSERT INTO X SELECT A+1 FROM INSERTED");
  good("CREATE TABLE Z (A INT)");
  good("CREATE TRIGGER ZT ON Z FOR INSERT AS INSERT INTO Z SELECT A+1 FROM INSERTED");
  before_ = content();
  const std::string altered = run("ALTER VIEW V1 AS SELECT A FROM V2");
  if (altered.empty()) {
    EXPECT_EQ(run("SELECT A FROM V1"), "!4429\n");
    EXPECT_EQ(run("SELECT A FROM V2"), "!4429\n");
  }
  EXPECT_EQ(content(), before_);
  check({
      {"two triggers", "INSERT INTO X VALUES (1)", 217, "(limit 32)"},
      {"the same inside a transaction", "BEGIN TRAN INSERT INTO T (A) VALUES (5) INSERT INTO Y VALUES (1)",
       217, "(limit 32)"},
      {"EXEC of itself", "DECLARE @s VARCHAR(100) SET @s='SELECT 1' EXEC (@s)", 0, nullptr},
  });
  EXPECT_EQ(run("SELECT COUNT(*) FROM X SELECT COUNT(*) FROM Y"), "0\n0\n");
  EXPECT_EQ(run("INSERT INTO Z VALUES (1) SELECT A FROM Z"), "1\n2\n") << message;
  // One view over the other: the server refuses to look too deep.
  for (int i = 3; i < 45; ++i)
    good("CREATE VIEW W" + std::to_string(i) + " AS SELECT A FROM " +
         (i == 3 ? "T" : "W" + std::to_string(i - 1)));
  EXPECT_EQ(run("SELECT COUNT(*) FROM W12 SELECT COUNT(*) FROM W40"), "2\n!4429\n");
}

TEST_F(BadInput, CancelEndsWhatHasNoEnd) {
  ASSERT_EQ(run("CREATE TRIGGER SLOW ON U FOR DELETE AS WHILE 1=1 SET NOCOUNT ON"), "") << message;
  before_ = content();
  const char* const batches[] = {
      "WHILE 1=1 SET NOCOUNT OFF",
      "WHILE 1=1 BEGIN BEGIN TRAN UPDATE T SET A=A+1 ROLLBACK TRAN END",
      "BEGIN TRAN UPDATE T SET A=99 WHILE 1=1 SET NOCOUNT OFF",
      "DELETE FROM U",
      "DECLARE @i INT SELECT @i=COUNT(*) FROM sysobjects a,sysobjects b,sysobjects c,sysobjects d,sysobjects "
      "e,sysobjects f,sysobjects g,sysobjects h,sysobjects i,sysobjects j,sysobjects k,sysobjects l",
      "UPDATE T SET A=(SELECT COUNT(*) FROM sysobjects a,sysobjects b,sysobjects c,sysobjects d,sysobjects "
      "e,sysobjects f,sysobjects g,sysobjects h,sysobjects i,sysobjects j,sysobjects k,sysobjects l)",
  };
  for (const char* batch : batches) {
    SCOPED_TRACE(batch);
    EXPECT_EQ(runCancelled(batch), "!3617\n") << message;
    run("IF @@TRANCOUNT>0 ROLLBACK TRAN");
    EXPECT_EQ(content(), before_);
  }
  session->cancel();  // with nothing to cancel
  EXPECT_EQ(content(), before_);
}

}  // namespace
}  // namespace engine::test
