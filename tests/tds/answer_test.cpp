// What clients send and get, token by token.
#include <thread>

#include "tds/served.h"

namespace {

using namespace tds::test;

constexpr std::uint32_t v71 = 0x71000001, v72 = 0x72090002, v73 = 0x730B0003, v74 = 0x74000004;

TEST_F(Served, LogsInWithEveryVersion) {
  for (const auto& [version, acknowledged] :
       {std::pair(v71, "0x71000001"), {v72, "0x72090002"}, {v73, "0x730B0003"}, {v74, "0x74000004"}}) {
    Client client(server->port());
    EXPECT_EQ(client.open(version, "FIRMA"),
              "environment 1: 'FIRMA' <- 'master'\n"
              "info 5701/0/2 line 0: Changed database context to 'FIRMA'.\n"
              "environment 7: 0x1F04D00000 <- 0x\n"
              "environment 2: 'us_english' <- ''\n"
              "info 5703/0/1 line 0: Changed language setting to us_english.\n"
              "login " +
                  std::string(acknowledged) +
                  "\n"
                  "environment 4: '4096' <- '4096'\n"
                  "done\n");
    EXPECT_EQ(client.batch("SELECT 1 AS a, NULL AS b"), "columns a:int4 b:int4\nrow 1 NULL\ndone select 1\n");
  }
}

TEST_F(Served, RefusesLoginsAndTellsTheLogWithoutThePassword) {
  struct Case {
    std::string user, password, database, answer, told;
  };
  const std::string failed = "error 18456/14/1 line 0: Login failed for user '";
  const Case cases[] = {
      {"sa", "yanlis", "", failed + "sa'.\ndone error\n", "'sa', 18456"},
      {"kimse", "gizli", "", failed + "kimse'.\ndone error\n", "'kimse', 18456"},
      {"sa", "gizli", "YOK",
       "error 4060/11/1 line 0: Cannot open database \"YOK\" requested by the login. The login failed.\n" +
           failed + "sa'.\ndone error\n",
       "'sa', 4060"},
      {"sa", "gizli", "../master",
       "error 4060/11/1 line 0: Cannot open database \"../master\" requested by the login. The login "
       "failed.\n" +
           failed + "sa'.\ndone error\n",
       "'sa', 4060"},
  };
  for (const Case& each : cases) {
    Client client(server->port());
    EXPECT_EQ(client.open(v74, each.user, each.password, each.database), each.answer);
    EXPECT_TRUE(client.closed());
    EXPECT_NE(log().back().find(each.told), std::string::npos) << log().back();
    EXPECT_EQ(log().back().find("yanlis"), std::string::npos);
  }
}

TEST_F(Served, SendsEveryType) {
  const std::string create =
      "CREATE TABLE T(ID INT IDENTITY PRIMARY KEY, B BIT, T TINYINT, S SMALLINT, L BIGINT, SM SMALLMONEY, M "
      "MONEY, "
      "D DECIMAL(9,2), W NUMERIC(28,6), R REAL, F FLOAT, SD SMALLDATETIME, DT DATETIME, C CHAR(4), V "
      "VARCHAR(9), "
      "X TEXT, NC NCHAR(3), NV NVARCHAR(9), NX NTEXT, BI BINARY(3), VB VARBINARY(5))";
  const std::string columns =
      "columns ID:int4+identity B:bit T:int1 S:int2 L:int8 SM:money4 M:money8 D:decimal(9,2) W:numeric(28,6) "
      "R:float4 F:float8 SD:datetime4 DT:datetime8 C:char(4) V:varchar(9) X:text NC:nchar(6) NV:nvarchar(18) "
      "NX:ntext BI:binary(3) VB:varbinary(5)\n";
  const std::string first =
      "row 1 1 255 -2 -9000000000 -12345 1234567890123456 -0x0E030000 +0xA08601000000000000000000 "
      "0.250000 -1.500000 0d0 45350d300 'ab  ' 'c' '<F0>' 'd  ' '<131>' '<11F>' 0x010200 0x03\n";
  const std::string nulls = std::string("row 2") + [] {
    std::string text;
    for (int i = 0; i < 20; ++i) text += " NULL";
    return text;
  }() + "\n";
  for (const std::uint32_t version : {v71, v74}) {
    Client client(server->port());
    client.open(version, "FIRMA");
    EXPECT_EQ(client.batch(create), "done\n");
    // Both letters stand for themselves, written by their numbers.
    EXPECT_EQ(client.batch("INSERT INTO T(B,T,S,L,SM,M,D,W,R,F,SD,DT,C,V,X,NC,NV,NX,BI,VB) VALUES(1,255,-2,"
                           "-9000000000,-1.2345,123456789012.3456,-7.82,0.1,0.25,-1.5,'19000101 00:00',"
                           "'20240301 00:00:01','ab','c',CHAR(240),'d',NCHAR(305),NCHAR(287),0x0102,0x03) "
                           "INSERT INTO T(B) VALUES(NULL)"),
              "done 1 more\ndone 1\n");
    EXPECT_EQ(client.batch("SELECT * FROM T ORDER BY ID"),
              columns + first + (version == v74 ? "packed " : "") + nulls + "done select 2\n");
    EXPECT_EQ(client.batch("SELECT CONVERT(DATETIME,'18991231 23:59:59') AS a DROP TABLE T"),
              "columns a:datetime8\nrow -1d25919700\ndone select 1 more\ndone\n");
  }
}

TEST_F(Served, TellsStatementsErrorsAndMessagesInTheirOrder) {
  Client client(server->port());
  client.open(v74, "FIRMA");
  client.batch("CREATE TABLE T(A INT NOT NULL PRIMARY KEY)");
  client.batch(
      "CREATE TRIGGER TR ON T FOR DELETE AS\nIF EXISTS(SELECT 1 FROM deleted WHERE A=3)\n"
      "RAISERROR('Silinemez %d', 15, 7, 3)");
  struct Case {
    std::string batch, printed;
  };
  const Case cases[] = {
      {"INSERT INTO T VALUES(1) INSERT INTO T VALUES(1)\nINSERT INTO T VALUES(3) SELECT A FROM T",
       "done 1 more\n"
       "error 2627/14/1 line 1: Violation of PRIMARY KEY constraint"},
      {"PRINT 'bir'\nRAISERROR('iki', 10, 4) RAISERROR('%s!', 16, 3, 'uc')",
       "info 0/0/1 line 1: bir\ninfo 50000/10/4 line 2: iki\nerror 50000/16/3 line 2: uc!\ndone error\n"},
      {"SET NOCOUNT ON SELECT A FROM T WHERE A=1 DELETE FROM T WHERE A=1 SET NOCOUNT OFF",
       "columns A:int4\nrow 1\ndone select more\ndone\n"},
      {"DELETE FROM T WHERE A=3", "error 50000/15/7 line 3 in TR: Silinemez 3\ndone more error\ndone 1\n"},
      {"SELECT 1 AS a SELECT * FROM YOK SELECT 2",
       "columns a:int4\nrow 1\ndone select 1 more\nerror 208/16/1 line 1: Invalid object name 'YOK'.\ndone "
       "error\n"},
      {"SELECT 8/A FROM (SELECT 4 AS A UNION ALL SELECT 0) x SELECT 5 AS a",
       "error 8134/16/1 line 1: Divide by zero error encountered.\ndone more error\n"
       "columns a:int4\nrow 5\ndone select 1\n"},
      {"USE master SELECT DB_NAME() AS a",
       "environment 1: 'master' <- 'FIRMA'\ninfo 5701/0/2 line 0: Changed database context to 'master'.\n"
       "columns a:nvarchar(256)\nrow 'master'\ndone select 1\n"},
      {"BEGIN TRAN UPDATE FIRMA..T SET A=A", "environment 8: 0x0100000000000000 <- 0x\ndone 0 transaction\n"},
      {"COMMIT", "environment 9: 0x <- 0x0100000000000000\ndone\n"},
  };
  for (const Case& each : cases) {
    const std::string printed = client.batch(each.batch);
    if (each.printed.ends_with('\n'))
      EXPECT_EQ(printed, each.printed) << each.batch;
    else
      EXPECT_TRUE(printed.starts_with(each.printed)) << printed;
  }
}

// A large answer and a large batch go through several packets of the agreed size.
TEST_F(Served, CutsAndJoinsMessages) {
  Client client(server->port());
  client.open(v74, "FIRMA");
  const std::string words(300000, 'x');
  EXPECT_EQ(client.batch("SELECT '" + words + "' AS a"),
            "columns a:text\nrow '" + words + "'\ndone select 1\n");
}

TEST_F(Served, RunsCallsOfStatementsWithParameters) {
  Client client(server->port());
  client.open(v74, "FIRMA");
  constexpr std::uint16_t executeSql = 10, prepare = 11, execute = 12, prepExec = 13, unprepare = 15;
  const auto text = [](const char* value) { return textParameter("", value); };
  const struct {
    const char* what;
    std::string call, printed;
  } cases[] = {
      {"values by place",
       call(executeSql,
            {text("SELECT @a+@b AS c"), text("@a int, @b int"), intParameter("", 2), intParameter("", 3)}),
       "columns c:int4\nrow 5\ndoneinproc select 1 more\nstatus 0\ndoneproc\n"},
      {"output by name",
       call(executeSql, {text("SET @b=@a*2"), text("@a int,@b decimal(9,2) OUTPUT"), intParameter("@a", 4),
                         nullIntParameter("@b", true)}),
       "status 0\nreturn @b decimal(9,2) +0x20030000\ndoneproc\n"},
      {"a value that is missing", call(executeSql, {text("SELECT @a"), text("@a int")}),
       "error 8178/16/1 line 0: The parameterized query expects the parameter '@a', which was not supplied.\n"
       "doneinproc more error\ndoneproc error\n"},
      {"one too many", call(executeSql, {text("SELECT 1"), text(""), intParameter("", 1)}),
       "error 8144/16/1 line 0: Procedure or function has too many arguments specified.\n"
       "doneinproc more error\ndoneproc error\n"},
      {"no text", call(executeSql, {text("SELECT 1 AS a")}),
       "columns a:int4\nrow 1\ndoneinproc select 1 more\nstatus 0\ndoneproc\n"},
      {"prepare and execute",
       call(prepExec,
            {nullIntParameter("", true), text("@p int"), text("SELECT @p AS a"), intParameter("", 7)}),
       "columns a:int4\nrow 7\ndoneinproc select 1 more\nstatus 0\nreturn  int4 1\ndoneproc\n"},
      {"prepare alone tells the columns",
       call(prepare, {nullIntParameter("", true), text("@p int"),
                      text("SELECT name FROM sysobjects WHERE id=@p"), intParameter("", 1)}),
       "columns name:nvarchar(256)\ndoneinproc select more\nstatus 0\nreturn  int4 2\ndoneproc\n"},
      {"execute", call(execute, {intParameter("", 1), intParameter("", 9)}),
       "columns a:int4\nrow 9\ndoneinproc select 1 more\nstatus 0\ndoneproc\n"},
      {"give up", call(unprepare, {intParameter("", 1)}), "status 0\ndoneproc\n"},
      {"a handle that is gone", call(execute, {intParameter("", 1), intParameter("", 9)}),
       "error 8179/16/1 line 0: Could not find prepared statement with handle 1.\n"
       "doneinproc more error\ndoneproc error\n"},
      {"two calls at once",
       call(executeSql, {text("SELECT 1 AS a")}) + "\xFF" + call(executeSql, {text("SELECT 2 AS b")}),
       "columns a:int4\nrow 1\ndoneinproc select 1 more\nstatus 0\ndoneproc more\n"
       "columns b:int4\nrow 2\ndoneinproc select 1 more\nstatus 0\ndoneproc\n"},
      {"an unknown procedure", namedCall("yok", {}),
       "error 2812/16/1 line 1: Could not find stored procedure 'yok'.\ndoneinproc more error\n"
       "status 1\ndoneproc error\n"},
  };
  for (const auto& each : cases) EXPECT_EQ(client.rpc(each.call), each.printed) << each.what;
  EXPECT_EQ(client.rpc(namedCall("sp_executesql", {text("SELECT @x AS x"), text("@x nvarchar(max)"),
                                                   textParameter("@x", std::string(3000, 'u'))})),
            "columns x:ntext\nrow '" + std::string(3000, 'u') +
                "'\ndoneinproc select 1 more\nstatus 0\ndoneproc\n");
}

TEST_F(Served, CallsProceduresOfTheUsersOwn) {
  Client client(server->port());
  client.open(v74, "FIRMA");
  client.batch(
      "CREATE PROCEDURE Topla @a INT, @b INT = 5, @s INT = 0 OUTPUT AS SET @s = @a + @b SELECT @s AS toplam "
      "RETURN @s + 1");
  EXPECT_EQ(client.rpc(namedCall("Topla", {intParameter("@a", 4), nullIntParameter("@s", true)})),
            "columns toplam:int4\nrow 9\ndoneinproc select 1 more\nstatus 10\nreturn @s int4 9\ndoneproc\n");
  EXPECT_EQ(client.rpc(namedCall("dbo.Topla", {intParameter("", 4), intParameter("", 6)})),
            "columns toplam:int4\nrow 10\ndoneinproc select 1 more\nstatus 11\ndoneproc\n");
  EXPECT_EQ(
      client.rpc(namedCall("Topla", {})),
      "error 201/16/1 line 1: Procedure or function 'Topla' expects parameter '@a', which was not supplied.\n"
      "doneinproc more error\nstatus 1\ndoneproc error\n");
}

TEST_F(Served, ServesTheTransactionManager) {
  Client client(server->port());
  client.open(v74, "FIRMA");
  client.batch("CREATE TABLE T(A INT)");
  constexpr std::uint16_t begin = 5, commit = 7, rollback = 8, save = 9;
  const std::string begun = "environment 8: 0x0100000000000000 <- 0x\ndone transaction\n";
  EXPECT_EQ(client.transaction(begin, number(0, 1) + text("", 1)), begun);
  client.batch("INSERT INTO T VALUES(1)");
  EXPECT_EQ(client.transaction(save, text("p]1", 1)), "done transaction\n");
  client.batch("INSERT INTO T VALUES(2)");
  EXPECT_EQ(client.transaction(rollback, text("p]1", 1) + number(0, 1)), "done transaction\n");
  EXPECT_EQ(client.transaction(commit, text("", 1) + number(0, 1)),
            "environment 9: 0x <- 0x0100000000000000\ndone\n");
  EXPECT_EQ(client.transaction(begin, number(4, 1) + text("", 1)), begun);
  client.batch("INSERT INTO T VALUES(3)");
  EXPECT_EQ(client.transaction(rollback, text("", 1) + number(0, 1)),
            "environment 10: 0x <- 0x0100000000000000\ndone\n");
  EXPECT_EQ(client.batch("SELECT A FROM T"), "columns A:int4\nrow 1\ndone select 1\n");
  EXPECT_EQ(client.transaction(commit, text("", 1) + number(0, 1)),
            "error 3902/16/1 line 1: The COMMIT TRANSACTION request has no corresponding BEGIN TRANSACTION.\n"
            "done error\n");
}

TEST_F(Served, ResetsASession) {
  Client client(server->port());
  client.open(v74, "FIRMA");
  client.batch(
      "CREATE TABLE T(A INT) SET DATEFORMAT dmy SET NOCOUNT ON USE master BEGIN TRAN INSERT INTO FIRMA..T "
      "VALUES(1)");
  constexpr std::uint8_t reset = 8;
  EXPECT_EQ(client.batch("SELECT MONTH('01/02/2024') AS m, @@TRANCOUNT AS t, DB_NAME() AS d FROM T", reset),
            "environment 1: 'FIRMA' <- 'master'\n"
            "info 5701/0/2 line 0: Changed database context to 'FIRMA'.\n"
            "environment 10: 0x <- 0x0100000000000000\n"
            "environment 18: 0x <- 0x\n"
            "columns m:int4 t:int4 d:nvarchar(256)\ndone select 0\n");
  constexpr std::uint8_t resetKeeping = 16;
  client.batch("BEGIN TRAN INSERT INTO T VALUES(2)");
  EXPECT_EQ(client.batch("SELECT MONTH('01/02/2024') AS m, @@TRANCOUNT AS t FROM T", resetKeeping),
            "environment 18: 0x <- 0x\ncolumns m:int4 t:int4\nrow 1 1\ndone select 1 transaction\n");
}

// The number of its command that a DONE tells.
TEST_F(Served, NamesTheCommandInItsDone) {
  Client client(server->port());
  client.open(v74, "FIRMA");
  const struct {
    const char* batch;
    int command;
  } cases[] = {{"CREATE TABLE T(A INT)", 0xC6},
               {"ALTER TABLE T ADD B INT", 0xD8},
               {"CREATE INDEX I ON T(A)", 0xC8},
               {"DROP INDEX T.I", 0xC9},
               {"INSERT INTO T(A) VALUES(1)", 0xC3},
               {"SET NOCOUNT ON INSERT INTO T(A) VALUES(1)", 0xC3},
               {"SET NOCOUNT OFF UPDATE T SET B=1", 0xC5},
               {"SELECT * FROM T", 0xC1},
               {"SELECT * INTO U FROM T", 0xC2},
               {"DELETE FROM T", 0xC4},
               {"CREATE VIEW V AS SELECT A FROM T", 0xCF},
               {"DROP VIEW V", 0xD0},
               {"CREATE TRIGGER R ON T FOR INSERT AS PRINT 'x'", 0xDD},
               {"DROP TRIGGER R", 0xE1},
               {"CREATE PROCEDURE P AS SELECT 1", 0xDE},
               {"DROP PROCEDURE P", 0xDF},
               {"DROP TABLE T", 0xC7},
               {"CREATE DATABASE IKI", 0xCB},
               {"DROP DATABASE IKI", 0xCC},
               {"SET DATEFORMAT dmy", 0xFD},
               {"DROP TABLE YOK", 0xFD}};
  const auto commandOf = [](const std::string& answer) {
    constexpr std::size_t doneSize = 13, commandAt = 3;
    const std::size_t at = answer.size() - doneSize + commandAt;
    return static_cast<unsigned char>(answer.at(at)) | static_cast<unsigned char>(answer.at(at + 1)) << 8;
  };
  for (const auto& each : cases) {
    client.send(1, headers() + utf16(each.batch));
    EXPECT_EQ(commandOf(client.receive()), each.command) << each.batch;
  }
  client.send(3, headers() + namedCall("sp_databases", {}));
  EXPECT_EQ(commandOf(client.receive()), 0xE0);
  // Each by itself; changes under NOCOUNT only where nothing follows.
  EXPECT_EQ(client.batch("CREATE TABLE T(A INT) INSERT INTO T VALUES(1) DROP TABLE T"),
            "done more\ndone 1 more\ndone\n");
  EXPECT_EQ(client.batch("SET NOCOUNT ON CREATE TABLE T(A INT) INSERT INTO T VALUES(1) SELECT A FROM T"),
            "done more\ncolumns A:int4\nrow 1\ndone select\n");
}

}  // namespace
