// The data file and its companion are the whole database at every moment; what does not belong together is
// told by name and left as it is.
#include <sys/wait.h>
#include <unistd.h>

#include "engine/function.h"
#include "engine/store/log_format.h"
#include "engine/store_fixture.h"

namespace engine::test {

namespace fs = std::filesystem;

class PairTest : public StoreTest {
 protected:
  struct Pair {
    std::string data, log;
    bool operator==(const Pair&) const = default;
  };

  void SetUp() override {
    Storing one(*server);
    one.define("CREATE DATABASE A");
    one.use("A");
    one.define("CREATE TABLE T (a INT)");
  }
  // Also while no server is open.
  fs::path file(const std::string& name) const { return folder.path / "veri" / name; }
  Pair pair(const std::string& name = "A") const {
    return {readAll(file(name + ".mdf")), readAll(file(name + "_log.ldf"))};
  }
  void put(const Pair& copy) const {
    fs::remove(file("A.mdf-shm"));
    writeAll(file("A.mdf"), copy.data);
    writeAll(file("A_log.ldf"), copy.log);
  }
  // Another process inserts the values up to `last` and dies with its files open.
  void insertAndDie(int first, int last, int checkpointAt = -1) {
    server.reset();
    const pid_t child = fork();
    if (child == 0) {
      try {
        auto own = Server::open(folder.path / "veri");
        Storing session(*own, "A");
        for (int i = first; i <= last; ++i) {
          session.run("INSERT INTO @.T VALUES(" + std::to_string(i) + ")");
          if (i == checkpointAt) session.run("PRAGMA @.wal_checkpoint");
        }
        ::kill(::getpid(), SIGKILL);
      } catch (const std::exception&) {
      }
      ::_exit(1);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    ASSERT_TRUE(WIFSIGNALED(status));
    reopen();
  }
  void reopen() {
    server.reset();
    server = Server::open(folder.path / "veri");
  }
  // The rows, or "!number" of the error.
  std::string rows() {
    reopen();
    std::string out;
    const int number = errorNumber(
        [&] {
          Storing session(*server, "A");
          out = session.values("SELECT a FROM @.T ORDER BY a");
        },
        &text);
    return number == 0 ? out : "!" + std::to_string(number);
  }
  std::string text;
};

TEST_F(PairTest, ACopyOfAKilledPairIsTheWholeDatabase) {
  insertAndDie(1, 3);
  EXPECT_FALSE(fs::exists(file("A.mdf-wal")));
  const Pair first = pair();
  EXPECT_EQ(rows(), "1|2|3");
  insertAndDie(4, 6, 5);
  const Pair second = pair();
  EXPECT_EQ(rows(), "1|2|3|4|5|6");
  for (const auto& [copy, wanted] : {std::pair(first, "1|2|3"), std::pair(second, "1|2|3|4|5|6")}) {
    server.reset();
    put(copy);
    EXPECT_EQ(rows(), wanted) << text;
    // A restored pair takes rows again.
    insertAndDie(9, 9);
    EXPECT_EQ(rows(), std::string(wanted) + "|9");
  }
}

TEST_F(PairTest, ACompanionOfAnotherTimeIsRefusedAndNothingTouched) {
  insertAndDie(1, 2);
  const Pair early = pair();  // two rows in the log
  insertAndDie(3, 4, 4);      // all four written into the data file
  const Pair late = pair();
  ASSERT_EQ(rows(), "1|2|3|4");
  const Pair closed = pair();  // the last session has emptied the log
  insertAndDie(5, 5);
  const Pair next = pair();
  const struct {
    const char* what;
    Pair mixed;
    std::string rows;
  } cases[] = {
      {"log before the checkpoint", {late.data, early.log}, "!5173"},
      {"log of an earlier round", {next.data, early.log}, "!5173"},
      {"log emptied before the last row", {next.data, closed.log}, "!5173"},
      {"a later round's log", {early.data, next.log}, "!5173"},
      {"log emptied after the rows", {early.data, closed.log}, "!5173"},
      // The later log holds all that the earlier data file lacks.
      {"data before the checkpoint", {early.data, late.log}, "1|2|3|4"},
      {"data as it was closed", {closed.data, next.log}, "1|2|3|4|5"},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.what);
    server.reset();
    put(each.mixed);
    EXPECT_EQ(rows(), each.rows) << text;
    if (!each.rows.starts_with("!")) continue;
    EXPECT_NE(text.find("A_log.ldf"), std::string::npos) << text;
    server.reset();
    EXPECT_TRUE(pair() == each.mixed);
  }
}

TEST_F(PairTest, AForeignCompanionIsNamed) {
  {
    Storing one(*server);
    one.define("CREATE DATABASE B");
    one.use("B");
    one.define("CREATE TABLE T (a INT)");
  }
  server->stop();
  server->start();
  server.reset();
  const Pair mixed{pair("A").data, pair("B").log};
  put(mixed);
  EXPECT_EQ(rows(), "!5173");
  EXPECT_NE(text.find("A_log.ldf"), std::string::npos) << text;
  server.reset();
  EXPECT_TRUE(pair() == mixed);
}

TEST_F(PairTest, AMissingCompanionIsMadeOnlyForAFileThatWasClosed) {
  insertAndDie(1, 2);
  const std::string log = readAll(file("A_log.ldf"));
  server.reset();
  fs::remove(file("A_log.ldf"));
  const std::string data = readAll(file("A.mdf"));
  EXPECT_EQ(rows(), "!5120");
  EXPECT_NE(text.find("A_log.ldf"), std::string::npos) << text;
  EXPECT_FALSE(fs::exists(file("A_log.ldf")));
  EXPECT_EQ(readAll(file("A.mdf")), data);
  writeAll(file("A_log.ldf"), log);
  EXPECT_EQ(rows(), "1|2");
  server.reset();
  fs::remove(file("A_log.ldf"));
  EXPECT_EQ(rows(), "1|2") << text;
  insertAndDie(3, 3);
  EXPECT_EQ(rows(), "1|2|3");
}

// Every byte of the log that was told to be on the disk counts.
TEST_F(PairTest, AFlippedByteInTheLogIsNeverServed) {
  insertAndDie(1, 5);
  const Pair good = pair();
  const std::size_t frame = store::frameHeaderSize + 4096;
  ASSERT_EQ((good.log.size() - store::framesBegin) % frame, 0U);
  for (std::size_t at = 0; at < good.log.size(); at += at < store::framesBegin ? 61 : 509) {
    SCOPED_TRACE(at);
    server.reset();
    Pair bad = good;
    bad.log[at] = static_cast<char>(bad.log[at] ^ 0x20);
    put(bad);
    const std::string found = rows();
    // The name in the head is only told in errors.
    const bool name = at >= 23 && at < 24;
    if (!name) {
      EXPECT_TRUE(found == "!9004" || found == "!5173") << found << text;
    }
    server.reset();
    EXPECT_TRUE(pair() == bad);
  }
  put(good);
  EXPECT_EQ(rows(), "1|2|3|4|5");
}

// A later program has written one of the files: its number is told, not damage, and not a byte changes.
TEST_F(PairTest, AFileOfALaterFormatIsToldAsSuchAndLeftAsItIs) {
  insertAndDie(1, 2);
  server.reset();
  const Pair ours = pair();
  Pair laterLog = ours, laterData;
  laterLog.log.replace(laterLog.log.find("ZEMBERA-LOG 2"), 13, "ZEMBERA-LOG 3");
  {
    server = Server::open(folder.path / "veri");
    Storing session(*server, "A");
    session.run("UPDATE @.zb_meta SET value=7 WHERE key='format'");
  }
  server.reset();
  laterData = pair();
  const struct {
    Pair files;
    const char *version, *supported;
  } cases[] = {{laterLog, "3", "2"}, {laterData, "7", "3"}};
  for (const auto& c : cases) {
    put(c.files);
    EXPECT_EQ(rows(), "!948");
    EXPECT_EQ(text, "The database 'A' cannot be opened because it is version " + std::string(c.version) +
                        ". This server supports version " + c.supported +
                        " and earlier. A downgrade path is not supported.");
    server.reset();
    EXPECT_EQ(pair(), c.files) << c.version;
  }
  put(ours);
  EXPECT_EQ(rows(), "1|2");
}

TEST_F(PairTest, AFileOfTheFirstFormatIsConverted) {
  // As it was: a data file without checksums, SQLite's own log beside it, a companion of one page of text.
  server.reset();
  const auto head = store::readLogHead(readAll(file("A_log.ldf")));
  ASSERT_TRUE(head);
  for (const char* ending : {".mdf", "_log.ldf"}) fs::remove(file("A" + std::string(ending)));
  const pid_t child = fork();
  if (child == 0) {
    sqlite3* db = nullptr;
    if (sqlite3_open(file("A.mdf").c_str(), &db) != SQLITE_OK) ::_exit(1);
    FunctionContext functions;
    registerFunctions(db, &functions);
    lite::exec(db, "PRAGMA journal_mode=WAL; PRAGMA wal_autocheckpoint=0");
    makeSystemTables(db, "main", head->family);
    lite::exec(db, "UPDATE zb_meta SET value=1 WHERE key='format'; CREATE TABLE T (a INT)");
    lite::exec(db, "INSERT INTO T VALUES(7)");
    ::kill(::getpid(), SIGKILL);
  }
  int status = 0;
  ::waitpid(child, &status, 0);
  ASSERT_TRUE(WIFSIGNALED(status));
  ASSERT_GT(readAll(file("A.mdf-wal")).size(), 0U);
  const std::string log = "ZEMBERA-LOG 1\ndatabase A\nfamily " + head->family + "\nend\n";
  writeAll(file("A_log.ldf"), "ZEMBERA-LOG 1\ndatabase A\nfamily " + newFamily() + "\nend\n");
  EXPECT_EQ(rows(), "!5173");
  EXPECT_TRUE(fs::exists(file("A.mdf-wal")));
  writeAll(file("A_log.ldf"), log);
  EXPECT_EQ(rows(), "7") << text;
  EXPECT_FALSE(fs::exists(file("A.mdf-wal")));
  insertAndDie(8, 8);
  const Pair copy = pair();
  EXPECT_EQ(rows(), "7|8");
  server.reset();
  put(copy);
  EXPECT_EQ(rows(), "7|8");
}

}  // namespace engine::test
