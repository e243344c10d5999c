#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <thread>

#include "engine/store_fixture.h"

namespace engine::test {

namespace fs = std::filesystem;

class ServiceTest : public StoreTest {
 protected:
  void SetUp() override {
    Storing s(*server);
    s.define("CREATE DATABASE A");
    s.use("A");
    s.define("CREATE TABLE T (a INT)");
    s.run("INSERT INTO @.T VALUES(1)");
  }
  bool leftovers() const {
    for (const auto& entry : fs::directory_iterator(server->folder())) {
      const std::string name = entry.path().filename().string();
      if (name.ends_with("-wal") || name.ends_with("-shm")) return true;
    }
    return false;
  }
  std::string rows(const std::string& sql = "SELECT a FROM @.T") {
    Storing s(*server, "A");
    return s.values(sql);
  }
};

TEST_F(ServiceTest, StopWritesEverythingIntoTheFilesAndRefuses) {
  Storing idle(*server, "A");
  idle.run("INSERT INTO @.T VALUES(2)");
  EXPECT_TRUE(leftovers());
  server->stop();
  EXPECT_EQ(server->serviceState(), ServiceState::Stopped);
  EXPECT_FALSE(leftovers());
  EXPECT_EQ(errorNumber([&] { idle.store.beginStatement(); }), 17142);
  EXPECT_EQ(errorNumber([&] { Storing late(*server, "A"); }), 17142);
  EXPECT_EQ(Server::open(server->folder())->serviceState(), ServiceState::Stopped);
  fs::copy_file(file("A.mdf"), folder.path / "kopya.mdf");
  sqlite3* db = nullptr;
  ASSERT_EQ(sqlite3_open((folder.path / "kopya.mdf").c_str(), &db), SQLITE_OK);
  {
    lite::Stmt count(db, "SELECT count(*) FROM T");
    count.step();
    EXPECT_EQ(count.integer(0), 2);
  }
  sqlite3_close(db);
  EXPECT_TRUE(server->start().empty());
  EXPECT_EQ(idle.table("T").name, "T");
  EXPECT_EQ(idle.values("SELECT a FROM @.T"), "1|2");
}

TEST_F(ServiceTest, AnOpenTransactionBetweenStatementsIsRolledBack) {
  Storing open(*server, "A");
  open.store.beginStatement();
  open.store.begin();
  open.run("INSERT INTO @.T VALUES(2)");
  open.store.endStatement();
  server->stop();
  server->start();
  EXPECT_EQ(rows(), "1");
  open.table("T");
  EXPECT_FALSE(open.store.inTransaction());
}

TEST_F(ServiceTest, ARunningStatementIsFinishedFirst) {
  Storing busy(*server, "A");
  busy.store.beginStatement();
  busy.store.begin();
  std::atomic<bool> stopped = false;
  std::thread stopper([&] {
    server->stop();
    stopped = true;
  });
  while (server->serviceState() == ServiceState::Running) std::this_thread::yield();
  for (int i = 0; i < 100; ++i) busy.run("INSERT INTO @.T VALUES(" + std::to_string(i) + ")");
  EXPECT_FALSE(stopped);
  busy.store.commit();
  busy.store.endStatement();
  stopper.join();
  EXPECT_FALSE(leftovers());
  server->start();
  EXPECT_EQ(rows("SELECT count(*) FROM @.T"), "101");
}

TEST_F(ServiceTest, FilesCopiedOverWhileStoppedAreThere) {
  Storing idle(*server, "A");
  idle.table("T");
  server->stop();
  const std::string saved = readAll(file("A.mdf"));
  server->start();
  idle.define("ALTER TABLE T ADD b INT");
  idle.run("INSERT INTO @.T VALUES(2, 2)");
  EXPECT_EQ(idle.table("T").columns.size(), 2U);
  server->stop();
  writeAll(file("A.mdf"), saved);
  server->start();
  EXPECT_EQ(idle.table("T").columns.size(), 1U);
  EXPECT_EQ(idle.values("SELECT a FROM @.T"), "1");
}

TEST_F(ServiceTest, SessionsOfAnotherProcessCloseTheirFilesToo) {
  OtherProcess other(
      *server, "A", [](Storing& session) { session.run("INSERT INTO @.T VALUES(7)"); },
      [](Storing& session) { return errorNumber([&] { session.table("T"); }) == 17142; });
  ASSERT_TRUE(other.ready());
  server->stop();
  EXPECT_FALSE(leftovers());
  EXPECT_EQ(other.end(), 0);
  server->start();
  EXPECT_EQ(rows(), "1|7");
}

// Killed while definitions, rows and stops run: every acknowledged row stands, every file opens.
TEST_F(ServiceTest, AKillAtAnyMomentLeavesEveryDatabaseWhole) {
  std::int64_t total = 0;
  for (int round = 0; round < 25; ++round) {
    int acknowledged[2];
    ASSERT_EQ(pipe(acknowledged), 0);
    const auto before = std::stoll(rows("SELECT count(*) FROM @.T"));
    const pid_t child = fork();
    if (child == 0) {
      auto own = Server::open(server->folder());
      if (own->serviceState() == ServiceState::Stopped) own->start();
      Storing session(*own, "A");
      for (int i = 0;; ++i) {
        session.store.beginStatement();
        session.run("INSERT INTO @.T(a) VALUES(1)");
        session.store.endStatement();
        if (write(acknowledged[1], "x", 1) != 1) _exit(1);
        session.errorOf(i % 2 == 0 ? "ALTER TABLE T ADD ek VARCHAR(5) NOT NULL DEFAULT 'q'"
                                   : "ALTER TABLE T ALTER COLUMN ek INT NULL");
        session.define("CREATE TABLE K (x INT PRIMARY KEY)");
        session.define("DROP TABLE K");
        session.errorOf("ALTER TABLE T DROP COLUMN ek");
        if (i % 5 == 4) {
          own->stop();
          own->start();
        }
      }
    }
    close(acknowledged[1]);
    // Every other one has come past its start, however slow the machine is.
    pollfd first{acknowledged[0], POLLIN, 0};
    if (round % 2 == 1) poll(&first, 1, 20000);
    usleep(static_cast<useconds_t>(4000 + round * 1700));
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    std::int64_t heard = 0;
    for (char byte = 0; read(acknowledged[0], &byte, 1) == 1;) ++heard;
    close(acknowledged[0]);
    total += heard;
    EXPECT_TRUE(server->start().empty());
    Storing session(*server, "A");
    EXPECT_EQ(session.values("PRAGMA @.integrity_check"), "ok");
    const TableInfo& table = session.table("T");
    EXPECT_EQ(session.values("SELECT count(*) FROM pragma_table_info('T', 'd5')"),
              std::to_string(table.columns.size()));
    const auto now = std::stoll(session.values("SELECT count(*) FROM @.T"));
    EXPECT_GE(now, before + heard);
    EXPECT_LE(now, before + heard + 1);
    if (session.catalog->table("K")) session.define("DROP TABLE K");
    if (table.columns.size() > 1) {
      for (const auto& column : std::vector<ColumnInfo>(session.table("T").columns))
        if (!column.defaultName.empty())
          session.define("ALTER TABLE T DROP CONSTRAINT " + column.defaultName);
      session.define("ALTER TABLE T DROP COLUMN ek");
    }
  }
  EXPECT_GT(total, 0);
}

}  // namespace engine::test
