// DBCC, the renewal of a file, and a transaction whose disk has become full.
#include <fstream>
#include <functional>
#include <iterator>

#include "engine/catalog.h"
#include "engine/session_fixture.h"
#include "engine/store.h"
#include "scenarios/fault_vfs.h"

namespace engine::test {

namespace fs = std::filesystem;

class IntegrityTest : public SessionTest {
 protected:
  void fill() {
    EXPECT_EQ(run("CREATE TABLE T (ID INT PRIMARY KEY, A SMALLINT NOT NULL, B VARCHAR(20) NULL)"), "");
    EXPECT_EQ(run("CREATE INDEX TA ON T (A)"), "");
    EXPECT_EQ(run("CREATE TABLE U (A INT)"), "");
    for (int i = 0; i < 300; ++i)
      run("INSERT INTO T VALUES (" + std::to_string(i) + "," + std::to_string(i % 7) + ",'satir')");
    EXPECT_EQ(run("INSERT INTO U VALUES (5)"), "");
  }
  fs::path data() const { return folder_ / "FIRMA.mdf"; }
  std::string bytes() const {
    std::ifstream in(data(), std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
  }
  void change(const std::function<void(std::string&)>& spoil) {
    session.reset();
    server->stop();
    std::string all = bytes();
    spoil(all);
    std::ofstream(data(), std::ios::binary | std::ios::trunc) << all;
    reported.clear();
    for (const auto& damaged : server->start())
      reported += damaged.name + "!" + std::to_string(damaged.error.number());
    session = open("master");
  }
  // SQLite's own pen, past every rule of the server.
  void write(const std::string& sql) {
    EXPECT_EQ(run("USE master"), "");
    Store store(server->sharedInstance());
    store.beginStatement();
    const std::string alias = store.attach("FIRMA");
    store.begin();
    std::string text = sql;
    for (auto at = text.find("@."); at != std::string::npos; at = text.find("@.")) text.replace(at, 1, alias);
    lite::exec(store.handle(), text);
    store.commit();
    store.endStatement();
    EXPECT_EQ(run("USE FIRMA"), "");
  }
  std::string reported;
};

TEST_F(IntegrityTest, AWholeDatabaseIsToldTableByTable) {
  fill();
  const std::string end =
      "# DBCC execution completed. If DBCC printed error messages, contact your system administrator.\n";
  const std::string none = " found 0 allocation errors and 0 consistency errors in database 'FIRMA'.\n";
  const std::string t = "# There are 300 rows in 3 pages for object \"T\".\n";
  EXPECT_EQ(run("DBCC CHECKDB"), "# DBCC results for 'FIRMA'.\n" + t +
                                     "# There are 1 rows in 1 pages for object \"U\".\n# CHECKDB" + none +
                                     end);
  EXPECT_EQ(run("DBCC CHECKTABLE ('dbo.T')"), "# DBCC results for 'T'.\n" + t + "# CHECKTABLE" + none + end);
  for (const char* quiet :
       {"DBCC CHECKDB WITH NO_INFOMSGS", "DBCC CHECKDB (0) WITH NO_INFOMSGS",
        "DBCC CHECKDB ('firma', NOINDEX) WITH ALL_ERRORMSGS, NO_INFOMSGS",
        "DBCC CHECKDB ([master]) WITH NO_INFOMSGS", "DBCC CHECKTABLE (U) WITH NO_INFOMSGS"})
    EXPECT_EQ(run(quiet), "") << quiet << message;
  EXPECT_EQ(run("DBCC CHECKDB ('yok')"), "!911\n");
  EXPECT_EQ(run("DBCC CHECKTABLE ('yok')"), "!2501\n");
  // The database that the name tells, not the one where the session stands.
  EXPECT_EQ(run("CREATE DATABASE [A B] USE [A B] CREATE TABLE [T] (X INT) CREATE TABLE [a.b] (X INT)"), "");
  EXPECT_EQ(
      run("USE master DBCC CHECKTABLE ('FIRMA..U') WITH NO_INFOMSGS DBCC CHECKTABLE ('[A B].dbo.[a.b]')"),
      "# DBCC results for 'a.b'.\n# There are 0 rows in 1 pages for object \"a.b\".\n# CHECKTABLE found 0 "
      "allocation errors and 0 consistency errors in database 'A B'.\n" +
          end);
  EXPECT_EQ(run("DBCC CHECKTABLE ('[A B]..U')"), "!2501\n");
  EXPECT_EQ(run("DROP DATABASE [A B] USE FIRMA"), "");
  EXPECT_EQ(run("DBCC SHRINKDATABASE (FIRMA)"), "!50000\n");
}

TEST_F(IntegrityTest, ValuesAndIndexesAreComparedWithTheirDefinitions) {
  fill();
  write("UPDATE @.T SET A=70000 WHERE ID IN (3,4)");
  write("UPDATE @.T SET B='longer than twenty characters' WHERE ID=7");
  const std::string printed = run("DBCC CHECKTABLE (T) WITH NO_INFOMSGS");
  EXPECT_NE(printed.find("Column \"A\" value is out of range for data type \"smallint\" in 2 rows"),
            std::string::npos)
      << printed;
  EXPECT_NE(printed.find("Column \"B\" value is out of range for data type \"varchar\" in 1 rows"),
            std::string::npos);
  EXPECT_TRUE(printed.ends_with("!2570\n")) << printed;
  EXPECT_NE(printed.find("found 0 allocation errors and 2 consistency errors"), std::string::npos) << printed;
  EXPECT_EQ(run("DBCC CHECKTABLE (U) WITH NO_INFOMSGS"), "");
}

TEST_F(IntegrityTest, ADamagedPageIsToldAndTheOthersServe) {
  fill();
  change([&](std::string& all) {
    std::size_t at = all.find("satir");
    ASSERT_NE(at, std::string::npos);
    all[at] = 'S';
  });
  EXPECT_EQ(reported, "FIRMA!824");
  EXPECT_EQ(run("USE FIRMA"), "");
  EXPECT_EQ(run("SELECT A FROM U"), "5\n");
  EXPECT_EQ(run("SELECT COUNT(B) FROM T"), "!824\n");
  EXPECT_NE(message.find("incorrect checksum (expected: 0x"), std::string::npos) << message;
  EXPECT_NE(message.find("FIRMA.mdf"), std::string::npos) << message;
  EXPECT_NE(message.find(" at offset 0x"), std::string::npos) << message;
  const std::string printed = run("DBCC CHECKDB WITH NO_INFOMSGS");
  EXPECT_TRUE(printed.ends_with("!824\n")) << printed;
  // It takes an open transaction with it, as the broken connection does there.
  EXPECT_EQ(run("BEGIN TRAN INSERT INTO U VALUES (6) SELECT COUNT(B) FROM T"), "!824\n");
  EXPECT_EQ(run("SELECT @@TRANCOUNT,A FROM U"), "0\t5\n");
  EXPECT_EQ(run("INSERT INTO U VALUES (6)"), "!3998\n");
  EXPECT_EQ(run("BEGIN TRAN INSERT INTO U VALUES (6) COMMIT SELECT A FROM U"), "5\n6\n") << message;
}

TEST_F(IntegrityTest, AFileIsRenewed) {
  fill();
  const std::string before = run("SELECT * FROM T ORDER BY ID");
  auto other = open("FIRMA");
  EXPECT_EQ(run("ALTER DATABASE FIRMA SET PAGE_VERIFY CHECKSUM"), "") << message;
  EXPECT_EQ(run("SELECT * FROM T ORDER BY ID"), before);
  EXPECT_EQ(run(*other, "INSERT INTO U VALUES (6) SELECT A FROM U"), "5\n6\n") << message;
  EXPECT_EQ(run("DBCC CHECKDB WITH NO_INFOMSGS"), "");
  EXPECT_FALSE(fs::exists(data().string() + ".unfinished"));
  EXPECT_EQ(run("BEGIN TRAN ALTER DATABASE FIRMA SET PAGE_VERIFY CHECKSUM"), "!226\n");
}

struct DiskFirst {
  scenarios::FaultyDisk disk;
};

class FullDiskTest : public DiskFirst, public SessionTest {};

// Never does a part of a lost transaction stay, whatever the client sends next.
TEST_F(FullDiskTest, ATransactionIsWholeOrGone) {
  EXPECT_EQ(run("CREATE TABLE T (A INT, B CHAR(200))"), "");
  EXPECT_EQ(run("INSERT INTO T VALUES (0,'')"), "");
  int gone = 0, whole = 0;
  bool struck = true;
  for (int n = 0; struck; ++n) {
    SCOPED_TRACE(n);
    EXPECT_EQ(run("BEGIN TRAN INSERT INTO T VALUES (1,'')"), "");
    disk.arm({SQLITE_FULL, n, true});
    // More than SQLite keeps in memory.
    const std::string large =
        run("DECLARE @i INT SET @i=0 WHILE @i<60 BEGIN INSERT INTO T SELECT 2,REPLICATE('x',200) FROM T "
            "WHERE A=0 SET @i=@i+1 END INSERT INTO T SELECT TOP 50000 3,x.B FROM T x,T y,T z");
    struck = disk.disarm();
    const std::string open = run("SELECT @@TRANCOUNT");
    if (large == "!1105\n" && open == "0\n") {
      ++gone;
      EXPECT_EQ(run("INSERT INTO T VALUES (4,'')"), "!3998\n");
      EXPECT_EQ(run("EXEC('DELETE FROM T')"), "!3998\n");
      EXPECT_EQ(run("SELECT COUNT(*) FROM T WHERE A<>0"), "0\n");
      EXPECT_EQ(run(n % 2 == 0 ? "COMMIT TRAN" : "ROLLBACK TRAN"), n % 2 == 0 ? "!3902\n" : "!3903\n");
      EXPECT_EQ(run("INSERT INTO T VALUES (9,'') DELETE FROM T WHERE A=9"), "");
    } else {
      ++whole;
      EXPECT_EQ(open, "1\n") << large;
      EXPECT_EQ(run("SELECT COUNT(*) FROM T WHERE A=1"), "1\n");
      EXPECT_EQ(run("ROLLBACK TRAN"), "");
    }
    ASSERT_EQ(run("SELECT A FROM T"), "0\n");
    if (n > 12) n += 997;
  }
  EXPECT_GT(gone, 0);
  EXPECT_GT(whole, 0);
}

// A client that commits by hand ends what is gone by asking for it, and nothing of the rest is stored before.
TEST_F(FullDiskTest, AnImplicitTransactionIsAskedForWhenItIsGone) {
  EXPECT_EQ(run("CREATE TABLE T (A INT, B CHAR(200)) INSERT INTO T VALUES (0,'')"), "");
  EXPECT_EQ(run("SET IMPLICIT_TRANSACTIONS ON"), "");
  bool struck = true, gone = false;
  for (int n = 0; struck && !gone; n += n > 12 ? 997 : 1) {
    EXPECT_EQ(run("INSERT INTO T VALUES (1,'')"), "");
    disk.arm({SQLITE_FULL, n, true});
    run("DECLARE @i INT SET @i=0 WHILE @i<60 BEGIN INSERT INTO T SELECT 2,REPLICATE('x',200) FROM T WHERE "
        "A=0 SET "
        "@i=@i+1 END INSERT INTO T SELECT TOP 50000 3,x.B FROM T x,T y,T z");
    struck = disk.disarm();
    gone = run("INSERT INTO T VALUES (4,'')") == "!3998\n";
    if (!gone) {
      EXPECT_EQ(run("ROLLBACK"), "");
    }
  }
  ASSERT_TRUE(gone);
  follow({{"SELECT COUNT(*) FROM T", "1\n"},
          {"INSERT INTO T VALUES (5,'')", "!3998\n"},
          {"IF @@TRANCOUNT>0 COMMIT TRAN", ""},
          {"INSERT INTO T VALUES (6,'') SELECT @@TRANCOUNT", "1\n"},
          {"IF @@TRANCOUNT>0 ROLLBACK TRAN SELECT A FROM T", "0\n"}});
}

}  // namespace engine::test
