// A transaction over two databases is one, wherever it is broken off.
#include <signal.h>

#include "engine/store/intent.h"
#include "scenarios/fault_vfs.h"
#include "scenarios/folder_fixture.h"
#include "scenarios/other_process.h"

namespace scenarios {
namespace {

int killAt = -1, stepsSeen = 0;

void killAtStep(const char*) {
  if (stepsSeen++ == killAt) ::raise(SIGKILL);
}

class IkiVeritabani : public DataFolder {
 protected:
  void SetUp() override {
    must("CREATE TABLE T (ID INT IDENTITY PRIMARY KEY, A INT, M VARCHAR(20) NULL)");
    must("INSERT INTO T (A) VALUES (1) INSERT INTO T (A) VALUES (2)");
    must("CREATE DATABASE KOMSU");
    must("CREATE TABLE KOMSU..K (ID INT IDENTITY, A INT UNIQUE, F FLOAT NULL, M VARCHAR(20) NULL)");
    must("INSERT INTO KOMSU..K (A,M) VALUES (1,'bir') INSERT INTO KOMSU..K (A) VALUES (2)");
    must("CREATE DATABASE UCUNCU");
    must("CREATE TABLE UCUNCU..U (A INT)");
    // A trigger carries a statement on its own into the neighbour.
    must("CREATE TRIGGER TR ON T FOR UPDATE AS UPDATE KOMSU..K SET F=F+0.5,M='iz' WHERE A=2");
    close();
  }
  void TearDown() override { engine::intentStep = nullptr; }

  static std::string work(int n) {
    const std::string k = std::to_string(100 + n);
    return "BEGIN TRAN INSERT INTO T (A) VALUES (" + k + ") INSERT INTO KOMSU..K (A,F) VALUES (" + k +
           ",1.5) DELETE FROM KOMSU..K WHERE A=" + std::to_string(99 + n) + " UPDATE T SET M='" + k +
           "' WHERE ID=1 UPDATE KOMSU..K SET M='" + k +
           "' WHERE A=1 SAVE TRAN s INSERT INTO KOMSU..K (A) "
           "VALUES (-1) ROLLBACK TRAN s INSERT INTO UCUNCU..U VALUES (" +
           k + ")";
  }
  // All three as they must be after the first n transactions.
  void expectAfter(int n) {
    const std::string k = std::to_string(100 + n);
    EXPECT_EQ(run("SELECT MAX(A) FROM T"), n < 0 ? "2\n" : k + "\n");
    EXPECT_EQ(run("SELECT ISNULL(M,'') FROM T WHERE ID=1"), n < 0 ? "\n" : k + "\n");
    EXPECT_EQ(run("SELECT A,F FROM KOMSU..K WHERE A>2 OR A<0"), n < 0 ? "" : k + "\t1.5\n");
    EXPECT_EQ(run("SELECT M FROM KOMSU..K WHERE A=1"), n < 0 ? "bir\n" : k + "\n");
    EXPECT_EQ(number("SELECT COUNT(*) FROM UCUNCU..U"), n + 1);
    EXPECT_EQ(number("SELECT COUNT(*) FROM T"), 2 + n + 1);
    EXPECT_TRUE(engine::intentFiles(folder).empty());
  }
  // Which of both: counts what the leader has.
  int done() { return static_cast<int>(number("SELECT COUNT(*) FROM T")) - 3; }

  // The n-th transaction in a child that dies at some point of its COMMIT; its exit code.
  int commitIn(int n, const std::function<void(FaultyDisk&)>& arm) {
    const pid_t child = inChild([&] {
      FaultyDisk disk;
      open();
      must(work(n));
      arm(disk);
      must("COMMIT TRAN");
      ::_exit(0);
    });
    return waitChild(child);
  }
  static std::function<void(FaultyDisk&)> killAfter(int writes) {
    return [writes](FaultyDisk& disk) {
      Fault fault;
      fault.after = writes;
      fault.kill = true;
      disk.arm(fault);
    };
  }
  // After the n-th transaction, wherever it broke off: it stands, or the one before it. Gives the next
  // number.
  int expectEither(int n, int code) {
    open();
    const int reached = done();
    EXPECT_TRUE(reached == n || (reached == n - 1 && code != 0)) << reached;
    expectAfter(reached);
    return reached + 1;
  }
};

TEST_F(IkiVeritabani, EveryStepOfACommit) {
  for (int at = 0, n = 0;; ++at) {
    SCOPED_TRACE(at);
    const int code = commitIn(n, [&](FaultyDisk&) {
      killAt = at;
      stepsSeen = 0;
      engine::intentStep = killAtStep;
    });
    n = expectEither(n, code);
    expectWhole();
    close();
    if (code == 0) {
      EXPECT_GE(at, 5);
      break;
    }
  }
}

TEST_F(IkiVeritabani, WritesAndFlushesOfACommit) {
  // Every third point here; the campaign of kills meets the others at random moments.
  for (int at = 0, n = 0, code = 1; code != 0; at += 3) {
    SCOPED_TRACE(at);
    code = commitIn(n, killAfter(at));
    n = expectEither(n, code);
    close();
    ASSERT_LT(at, 195);
  }
}

// Somebody lives on, judges what the killed one has left, and is killed before anything else is written.
TEST_F(IkiVeritabani, WritesAndFlushesBesideALivingProcess) {
  for (int at = 0, n = 0, code = 1; code != 0; ++at) {
    SCOPED_TRACE(at);
    OtherProcess other(folder, password, "FIRMA");
    other.run("SELECT COUNT(*) FROM T,KOMSU..K,UCUNCU..U");
    code = commitIn(n, killAfter(at));
    const std::string seen = other.run("SELECT COUNT(*) FROM T");
    other.kill();
    n = expectEither(n, code);
    EXPECT_EQ(seen, std::to_string(n + 2) + "\n");
    close();
    ASSERT_LT(at, 199);
  }
}

// What is told is what stands: with an error nothing, without one all of it, also where one of the databases
// could not be written any more.
TEST_F(IkiVeritabani, EveryFailingWriteOfACommit) {
  FaultyDisk disk;
  open();
  int n = 0;
  for (int at = 0; at < 400; ++at) {
    SCOPED_TRACE(at);
    must(work(n));
    Fault fault;
    fault.after = at / 2;
    fault.lasting = at % 2 == 1;
    disk.arm(fault);
    const std::string printed = run("COMMIT TRAN");
    const bool struck = disk.disarm();
    run("IF @@TRANCOUNT>0 ROLLBACK TRAN");
    session.reset();
    const int next = expectEither(n, struck ? 1 : 0);
    EXPECT_EQ(next, printed.empty() ? n + 1 : n) << printed << message;
    n = next;
    if (!struck) break;
    ASSERT_LT(at, 399);
  }
}

// The others go on in the meantime, and never see half of it at their next statement.
TEST_F(IkiVeritabani, OtherProcessEndsWhatAKilledOneLeft) {
  for (int at = 0; at < 6; ++at) {
    killAt = at;
    engine::intentStep = killAtStep;
    OtherProcess other(folder, password, "FIRMA");
    engine::intentStep = nullptr;
    open();
    const int before = done();
    EXPECT_EQ(other.run("SELECT COUNT(*) FROM KOMSU..K"), run("SELECT COUNT(*) FROM KOMSU..K"));
    other.send(work(before + 1) + " COMMIT TRAN");
    // Waits for the neighbour's lock, and gets it from a dead one or a living one.
    std::string printed = run("UPDATE KOMSU..K SET F=F WHERE A=2");
    if (printed == "!1205\n") printed = run("UPDATE KOMSU..K SET F=F WHERE A=2");
    EXPECT_EQ(printed, "") << message;
    other.kill();
    expectAfter(done());
    close();
  }
}

TEST_F(IkiVeritabani, StatementWithATriggerIntoAnotherDatabase) {
  for (int at = 0;; ++at) {
    const std::string mark = "x" + std::to_string(at);
    const pid_t child = inChild([&] {
      open();
      killAt = at;
      stepsSeen = 0;
      engine::intentStep = killAtStep;
      must("UPDATE T SET M='" + mark + "' WHERE ID=2");
      ::_exit(0);
    });
    const int code = waitChild(child);
    open();
    const bool first = run("SELECT M FROM T WHERE ID=2") == mark + "\n";
    EXPECT_EQ(run("SELECT M FROM KOMSU..K WHERE A=2"), first ? "iz\n" : "NULL\n") << at;
    must("UPDATE KOMSU..K SET M=NULL WHERE A=2");
    close();
    if (code == 0) {
      EXPECT_TRUE(first);
      EXPECT_EQ(at, 5);
      break;
    }
  }
}

TEST_F(IkiVeritabani, DefinitionsOfASecondDatabaseAreRefused) {
  open();
  must("BEGIN TRAN INSERT INTO T (A) VALUES (5)");
  EXPECT_EQ(run("CREATE TABLE KOMSU..YENI (A INT)"), "!226\n");
  run("IF @@TRANCOUNT>0 ROLLBACK TRAN");
  must("BEGIN TRAN CREATE TABLE KOMSU..YENI (A INT) INSERT INTO T (A) VALUES (5) COMMIT TRAN");
  EXPECT_EQ(run("SELECT COUNT(*) FROM KOMSU..YENI"), "0\n");
}

}  // namespace
}  // namespace scenarios
