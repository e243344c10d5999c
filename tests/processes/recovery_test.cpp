// What recovery makes of a commit over two databases that broke off, when the recovery itself is killed and
// when one of the databases is no longer what it was.
#include <signal.h>

#include "engine/store/intent.h"
#include "scenarios/folder_fixture.h"
#include "scenarios/other_process.h"

namespace scenarios {
namespace {

namespace fs = std::filesystem;

std::string killAt;
int passing = 0;

void killAtStep(const char* step) {
  if (killAt == step && passing-- == 0) ::raise(SIGKILL);
}

// FIRMA leads, KOMSU follows; the commit is killed at its second flush of a file, so that one of them has it.
class Toparlanma : public DataFolder {
 protected:
  void SetUp() override {
    must("CREATE TABLE T (A INT) INSERT INTO T VALUES (1)");
    must("CREATE DATABASE KOMSU");
    must("CREATE TABLE KOMSU..K (A INT, M VARCHAR(20)) INSERT INTO KOMSU..K VALUES (1,'bir')");
    must("CREATE DATABASE BASKA");
    must("CREATE TABLE BASKA..B (A INT)");
    close();
  }
  void TearDown() override { engine::intentStep = nullptr; }

  // A child that does the transaction and dies after its record of intent stands, in a database chosen by
  // `committed`: the side that has it by then.
  enum class Has { None, Leader, Follower };
  void breakOff(Has has) {
    const pid_t child = inChild([&] {
      open();
      must(
          "BEGIN TRAN INSERT INTO T VALUES (2) INSERT INTO KOMSU..K VALUES (2,'iki') UPDATE KOMSU..K SET "
          "M='x' "
          "WHERE A=1");
      killAt = "named";
      passing = 0;
      engine::intentStep = killAtStep;
      run("COMMIT TRAN");
      ::_exit(0);
    });
    EXPECT_NE(waitChild(child), 0);
    if (has == Has::None) return;
    // The commit of one file, as the dead process would have done it.
    engine::Intent intent = recordOf();
    const std::string name = has == Has::Leader ? "FIRMA" : "KOMSU";
    commitSide(name, has == Has::Leader ? nullptr : &intent.others.front(), intent.number);
  }
  engine::Intent recordOf() {
    const auto files = engine::intentFiles(folder);
    EXPECT_EQ(files.size(), 1U);
    return engine::LeftIntent::take(files.front())->intent;
  }
  void commitSide(const std::string& name, const engine::IntentPart* part, std::int64_t number) {
    const std::string uri = engine::store::fileUri(file(name + ".mdf"), file(name + "_log.ldf"), name);
    sqlite3* db = nullptr;
    engine::FunctionContext functions;
    ASSERT_EQ(sqlite3_open_v2(uri.c_str(), &db, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_URI,
                              nullptr),
              SQLITE_OK);
    engine::registerFunctions(db, &functions);
    sqlite3_exec(db, "BEGIN", nullptr, nullptr, nullptr);
    if (part)
      for (const engine::RowChange& change : part->changes) engine::applyChange(db, "main", change, true);
    else
      ASSERT_EQ(sqlite3_exec(db, "INSERT INTO T VALUES (2)", nullptr, nullptr, nullptr), SQLITE_OK);
    engine::setMark(db, "main", number, true);
    ASSERT_EQ(sqlite3_exec(db, "COMMIT", nullptr, nullptr, nullptr), SQLITE_OK);
    sqlite3_close(db);
  }
  void expectBoth(bool whole) {
    EXPECT_EQ(run("SELECT A FROM T ORDER BY A"), whole ? "1\n2\n" : "1\n");
    EXPECT_EQ(run("SELECT A,M FROM KOMSU..K ORDER BY A"), whole ? "1\tx\n2\tiki\n" : "1\tbir\n");
    EXPECT_TRUE(engine::intentFiles(folder).empty());
  }
  std::map<std::string, std::string> pairOf(const std::string& name) {
    std::map<std::string, std::string> pair;
    for (const std::string& each : {name + ".mdf", name + "_log.ldf"}) pair[each] = readAll(file(each));
    return pair;
  }
  void putBack(const std::map<std::string, std::string>& pair) {
    for (const auto& [name, content] : pair) writeAll(file(name), content);
  }
};

TEST_F(Toparlanma, FollowsTheLeader) {
  struct {
    Has has;
    bool whole;
  } const cases[] = {{Has::None, false}, {Has::Follower, false}, {Has::Leader, true}};
  for (const auto& c : cases) {
    breakOff(c.has);
    open();
    expectBoth(c.whole);
    EXPECT_TRUE(server->leftOvers().empty());
    close();
  }
}

TEST_F(Toparlanma, KilledItselfItBeginsAnew) {
  for (const Has has : {Has::Follower, Has::Leader}) {
    breakOff(has);
    for (const char* step : {"judged", "bringing", "brought", "settled"}) {
      const pid_t child = inChild([&] {
        killAt = step;
        passing = 0;
        engine::intentStep = killAtStep;
        open();
        ::_exit(0);
      });
      waitChild(child);
    }
    open();
    expectBoth(has == Has::Leader);
    must("DELETE FROM T WHERE A=2 DELETE FROM KOMSU..K WHERE A=2 UPDATE KOMSU..K SET M='bir'");
    close();
  }
}

// A file that is away keeps nobody else from working, and is made whole when it is back.
TEST_F(Toparlanma, DatabaseThatIsAwayWaits) {
  breakOff(Has::Leader);
  fs::rename(file("KOMSU.mdf"), file("KOMSU.mdf.uzakta"));
  open("BASKA");
  EXPECT_EQ(run("INSERT INTO B VALUES (1) SELECT A FROM FIRMA..T ORDER BY A"), "1\n2\n");
  EXPECT_EQ(run("INSERT INTO FIRMA..T VALUES (3)"), "");
  EXPECT_EQ(run("SELECT A FROM KOMSU..K"), "!5120\n") << message;
  EXPECT_EQ(engine::intentFiles(folder).size(), 1U);
  fs::rename(file("KOMSU.mdf.uzakta"), file("KOMSU.mdf"));
  EXPECT_EQ(run("SELECT A,M FROM KOMSU..K ORDER BY A"), "1\tx\n2\tiki\n") << message;
  EXPECT_TRUE(engine::intentFiles(folder).empty());
  EXPECT_EQ(run("SELECT A FROM FIRMA..T ORDER BY A"), "1\n2\n3\n");
}

// Nobody can ask the leader: those that have the transaction keep it, and it is told when the leader differs.
TEST_F(Toparlanma, LeaderThatIsAwayIsTold) {
  for (const Has has : {Has::Follower, Has::Leader}) {
    breakOff(has);
    fs::rename(file("FIRMA.mdf"), file("FIRMA.mdf.uzakta"));
    open("BASKA");
    EXPECT_EQ(run("SELECT A,M FROM KOMSU..K ORDER BY A"),
              has == Has::Follower ? "1\tx\n2\tiki\n" : "1\tbir\n");
    EXPECT_EQ(run("UPDATE KOMSU..K SET M='sonra' WHERE A=1"), "");
    EXPECT_EQ(run("SELECT A FROM FIRMA..T"), "!5120\n");
    fs::rename(file("FIRMA.mdf.uzakta"), file("FIRMA.mdf"));
    EXPECT_EQ(run("SELECT A FROM FIRMA..T ORDER BY A"), has == Has::Leader ? "1\n2\n" : "1\n");
    const auto told = server->leftOvers();
    ASSERT_EQ(told.size(), 1U);
    EXPECT_EQ(told.front().name, "FIRMA");
    EXPECT_EQ(told.front().error.number(), 3437);
    EXPECT_EQ(run("SELECT M FROM KOMSU..K WHERE A=1"), "sonra\n");
    must("DELETE FROM FIRMA..T WHERE A=2 DELETE FROM KOMSU..K WHERE A=2 UPDATE KOMSU..K SET M='bir'");
    close();
  }
}

// A pair of another time is a restore: it is left as it is.
TEST_F(Toparlanma, OlderPairIsNotTouched) {
  for (const std::string name : {"KOMSU", "FIRMA"}) {
    SCOPED_TRACE(name);
    const auto older = pairOf(name);
    open();
    must("INSERT INTO T VALUES (7) UPDATE KOMSU..K SET M='yeni' WHERE A=1");
    close();
    breakOff(name == "KOMSU" ? Has::Leader : Has::Follower);
    putBack(older);
    open();
    EXPECT_EQ(run("SELECT COUNT(*) FROM T WHERE A IN (2,7)"), name == "KOMSU" ? "2\n" : "0\n");
    EXPECT_EQ(run("SELECT A,M FROM KOMSU..K ORDER BY A"), name == "KOMSU" ? "1\tbir\n" : "1\tx\n2\tiki\n");
    EXPECT_TRUE(engine::intentFiles(folder).empty());
    EXPECT_EQ(server->leftOvers().size(), 1U);
    must("DELETE FROM T WHERE A>1 DELETE FROM KOMSU..K WHERE A>1 UPDATE KOMSU..K SET M='bir'");
    close();
  }
}

// A multi-row statement that failed within the transaction is no part of the record.
TEST_F(Toparlanma, FailedStatementIsNotCompleted) {
  open();
  must(
      "CREATE TABLE KOMSU..U (A INT UNIQUE) INSERT INTO KOMSU..U VALUES (1) INSERT INTO KOMSU..U VALUES (2) "
      "INSERT INTO KOMSU..U VALUES (5)");
  close();
  const pid_t child = inChild([&] {
    open();
    must("BEGIN TRAN INSERT INTO T VALUES (2)");
    EXPECT_EQ(run("INSERT INTO KOMSU..U SELECT A+8 FROM KOMSU..U WHERE A<3 UNION ALL SELECT 5"), "!2627\n");
    must("INSERT INTO KOMSU..K VALUES (2,'iki')");
    killAt = "named";
    passing = 0;
    engine::intentStep = killAtStep;
    run("COMMIT TRAN");
    ::_exit(0);
  });
  waitChild(child);
  const engine::Intent intent = recordOf();
  ASSERT_EQ(intent.others.size(), 1U);
  ASSERT_EQ(intent.others.front().changes.size(), 1U);
  EXPECT_EQ(intent.others.front().changes.front().table, "K");
}

// A record that is not whole, or none at all, harms nobody.
TEST_F(Toparlanma, BrokenRecordGoes) {
  breakOff(Has::None);
  const auto record = engine::intentFiles(folder).front();
  const std::string whole = readAll(record);
  for (const std::string& content : {std::string(), std::string("çöp"), whole.substr(0, whole.size() / 2),
                                     std::string(whole).replace(whole.size() / 2, 1, "\xFF")}) {
    writeAll(record, content);
    open();
    EXPECT_TRUE(engine::intentFiles(folder).empty());
    EXPECT_EQ(run("SELECT A FROM T"), "1\n");
    close();
  }
}

}  // namespace
}  // namespace scenarios
