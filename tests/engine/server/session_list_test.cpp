// Who is logged in, and how one of them is ended.
#include <thread>

#include "engine/session_fixture.h"

namespace engine::test {

TEST_F(SessionTest, SessionsHaveNumbersAndAreListed) {
  Session second(server, "sa", "gizli", "FIRMA", {"KASA-1", "satış", 4711});
  const std::string list =
      "SELECT spid, DB_NAME(dbid), RTRIM(status), open_tran, RTRIM(hostname), RTRIM(program_name), "
      "RTRIM(hostprocess), RTRIM(loginame), RTRIM(cmd) FROM master..sysprocesses ORDER BY spid";
  EXPECT_EQ(run("SELECT @@SPID, @@MAX_PRECISION"), "51\t38\n");
  EXPECT_EQ(run(second, "BEGIN TRAN SELECT @@SPID"), "52\n");
  EXPECT_EQ(run(list),
            "51\tFIRMA\trunnable\t0\t\t\t0\tsa\tSELECT\n"
            "52\tFIRMA\tsleeping\t1\tKASA-1\tsatış\t4711\tsa\tAWAITING COMMAND\n");
  run(second, "ROLLBACK USE master");
  {
    auto third = open();
    EXPECT_EQ(run(*third, "SELECT @@SPID"), "53\n");
    EXPECT_EQ(run("SELECT spid, DB_NAME(dbid) FROM master..sysprocesses WHERE spid<>@@SPID"),
              "52\tmaster\n53\tmaster\n");
  }
  auto again = open();
  EXPECT_EQ(run(*again, "SELECT @@SPID"), "53\n");
  EXPECT_EQ(run("EXEC sp_who '52'"), "52\t0\tsleeping\tsa\tKASA-1\t0\tmaster\tAWAITING COMMAND\n");
}

TEST_F(SessionTest, AKilledSessionIsRolledBackAtOnce) {
  run("CREATE TABLE T(A INT)");
  auto idle = open("FIRMA"), busy = open("FIRMA");
  run(*idle, "BEGIN TRAN INSERT INTO T VALUES(1)");
  EXPECT_EQ(run("KILL 52"), "");
  EXPECT_EQ(run("SET LOCK_TIMEOUT 0 INSERT INTO T VALUES(9)"), "");
  EXPECT_EQ(run(*idle, "SELECT 1"), "!596\n");
  EXPECT_TRUE(idle->killed());

  std::string ended;
  std::thread endless([&] {
    PrintingSink sink;
    try {
      busy->execute("BEGIN TRAN INSERT INTO T VALUES(2) WHILE 1=1 SET NOCOUNT ON", sink);
    } catch (const Error& error) {
      ended = std::to_string(error.number());
    }
  });
  while (run("SELECT 1 FROM master..sysprocesses WHERE spid=53 AND cmd='SELECT'").empty()) {
  }
  EXPECT_EQ(run("KILL 53"), "");
  endless.join();
  EXPECT_EQ(ended, "3617");
  EXPECT_EQ(run(*busy, "SELECT 1"), "!596\n");
  EXPECT_EQ(run("SELECT A FROM T"), "9\n");
  EXPECT_EQ(run("KILL 51"), "!6104\n");
  EXPECT_EQ(run("KILL 99"), "!6106\n");
  EXPECT_EQ(run("KILL 'x'"), "!102\n");
  run("EXEC sp_addlogin 'kasiyer', 'k'");
  Session plain(server, "kasiyer", "k", "");
  EXPECT_EQ(run(plain, "KILL 51"), "!15247\n");
}

// A login without a database enters its own.
TEST_F(SessionTest, LoginsHaveADefaultDatabase) {
  run("EXEC sp_addlogin 'kasa','k','FIRMA' EXEC sp_grantdbaccess 'kasa' CREATE DATABASE IKI");
  const auto enters = [&] {
    try {
      return Session(server, "kasa", "k", "").database();
    } catch (const Error& error) {
      return std::to_string(error.number()) + " " + error.what();
    }
  };
  const std::string refused = "4064 Cannot open user default database. Login failed.";
  EXPECT_EQ(enters(), "FIRMA");
  Session own(server, "kasa", "k", "FIRMA");
  follow({{"EXEC sp_defaultdb 'kasa','YOK'", "!15010\n"}, {"EXEC sp_defaultdb 'yok','FIRMA'", "!15007\n"}});
  EXPECT_EQ(run(own, "EXEC sp_defaultdb 'sa','FIRMA'"), "!15247\n");
  EXPECT_EQ(run(own, "EXEC sp_defaultdb 'kasa','iki'"), "");
  EXPECT_EQ(enters(), refused);
  run("EXEC sp_defaultdb 'kasa','FIRMA' DROP DATABASE IKI EXEC sp_grantdbaccess 'kasa'");
  EXPECT_EQ(enters(), "FIRMA");
  EXPECT_EQ(Session(server, "sa", "gizli", "").database(), "master");
}

}  // namespace engine::test
