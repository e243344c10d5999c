// The process dies by SIGKILL at any moment of its work. Whatever it had acknowledged is there afterwards,
// and nothing else in halves.
#include <signal.h>
#include <unistd.h>

#include <chrono>
#include <random>
#include <thread>

#include "folder_fixture.h"
#include "istemci.h"
#include "other_process.h"

namespace scenarios {
namespace {

using engine::Server;

class Killed : public FolderOf<Istemci> {
 protected:
  static constexpr int rounds = 6;

  // Work of the child: acknowledge() after each step until it is killed.
  using Work = std::function<void(Server&, Istemci&, const std::function<void()>& acknowledge)>;

  // Runs the work in a child, kills it after some acknowledgements and a moment more, opens the folder
  // again, and returns how many steps were acknowledged.
  int killDuring(const Work& work, int mostSteps, int mostMicroseconds) {
    close();
    int acknowledged[2];
    EXPECT_EQ(::pipe(acknowledged), 0);
    const pid_t child = inChild([&] {
      ::close(acknowledged[0]);
      auto own = Server::open(folder);
      if (own->serviceState() == engine::ServiceState::Stopped) own->start();
      Istemci session(own, "sa", password, "FIRMA");
      work(*own, session, [&] {
        if (::write(acknowledged[1], "x", 1) != 1) ::_exit(3);
      });
    });
    ::close(acknowledged[1]);
    const int wanted = std::uniform_int_distribution(0, mostSteps)(random_);
    int steps = 0;
    char byte;
    // The first step tells that the child has begun.
    while (steps <= wanted && ::read(acknowledged[0], &byte, 1) == 1) ++steps;
    std::this_thread::sleep_for(
        std::chrono::microseconds(std::uniform_int_distribution(0, mostMicroseconds)(random_)));
    killChild(child);
    while (::read(acknowledged[0], &byte, 1) == 1) ++steps;
    ::close(acknowledged[0]);
    EXPECT_GT(steps, 0) << "the child never worked";
    open();
    expectWhole();
    return steps;
  }

  static void execute(Istemci& session, const std::string& batch) {
    engine::test::PrintingSink sink;
    session.execute(batch, sink);
  }

 private:
  std::mt19937 random_{20120131};
};

std::string text(int i) {
  return std::to_string(i);
}

TEST_F(Killed, WhileItMakesACompany) {
  const auto statements = [](int round, int i) {
    const std::string n = text(round) + "_" + text(i);
    return std::vector<std::string>{
        "CREATE TABLE K" + n + " (ID INT IDENTITY PRIMARY KEY, A CHAR(10) NULL, B MONEY DEFAULT 1, C INT)",
        "CREATE UNIQUE INDEX KI" + n + " ON K" + n + " (A,C)",
        "CREATE VIEW KV" + n + " AS SELECT A,SUM(B) AS S FROM K" + n + " GROUP BY A",
        "CREATE TRIGGER KT" + n + " ON K" + n + " FOR INSERT AS UPDATE K" + n +
            " SET C=7 WHERE ID IN (SELECT ID FROM INSERTED)",
    };
  };
  for (int round = 0; round < rounds; ++round) {
    SCOPED_TRACE(round);
    const auto before = number("SELECT COUNT(*) FROM sysobjects WHERE xtype IN ('U','V','TR')");
    const int steps = killDuring(
        [&](Server&, Istemci& own, const auto& acknowledge) {
          for (int i = 0;; ++i)
            for (const std::string& statement : statements(round, i)) {
              execute(own, statement);
              acknowledge();
            }
        },
        12, 8000);
    // Three of four statements make an object.
    const int objects = steps / 4 * 3 + std::min(steps % 4, 1) + std::max(steps % 4 - 2, 0);
    const auto made = number("SELECT COUNT(*) FROM sysobjects WHERE xtype IN ('U','V','TR')") - before;
    EXPECT_GE(made, objects);
    EXPECT_LE(made, objects + 1);
    for (int i = 0; i < steps / 4; ++i) {
      const std::string n = text(round) + "_" + text(i);
      must("INSERT INTO K" + n + " (A) VALUES ('x')");
      EXPECT_EQ(run("SELECT C,B FROM K" + n + " SELECT S FROM KV" + n), "7\t1.00\n1.00\n");
      EXPECT_EQ(run("UPDATE K" + n + " SET A='x' INSERT INTO K" + n + " (A,C) VALUES ('x',7)"), "!2601\n");
    }
    // What was under way can be made anew, or stands.
    for (const std::string& statement : statements(round, steps / 4)) {
      const std::string printed = run(statement);
      EXPECT_TRUE(printed.empty() || printed == "!2714\n" || printed == "!1913\n") << printed << message;
    }
  }
}

TEST_F(Killed, WhileItInsertsUnderTriggers) {
  must("CREATE TABLE KAYNAK (ID INT IDENTITY PRIMARY KEY, TUR INT, TUTAR MONEY)");
  must("CREATE TABLE AYNA (ID INT PRIMARY KEY, TUTAR MONEY)");
  must("CREATE TABLE TOPLAM (TUR INT, ADET INT, TUTAR MONEY)");
  must("INSERT INTO TOPLAM VALUES (1,0,0)");
  must(
      "CREATE TRIGGER KE ON KAYNAK FOR INSERT AS INSERT INTO AYNA SELECT ID,TUTAR FROM INSERTED "
      "UPDATE TOPLAM SET ADET=ADET+(SELECT COUNT(*) FROM INSERTED),TUTAR=TUTAR+(SELECT SUM(TUTAR) FROM "
      "INSERTED)");
  must("CREATE TABLE ON_SATIR (A MONEY)");
  for (int i = 1; i <= 10; ++i) must("INSERT INTO ON_SATIR VALUES (" + text(i) + ".25)");
  std::int64_t rows = 0;
  for (int round = 0; round < rounds; ++round) {
    SCOPED_TRACE(round);
    const int steps = killDuring(
        [](Server&, Istemci& own, const auto& acknowledge) {
          for (;;) {
            execute(own, "INSERT INTO KAYNAK (TUR,TUTAR) SELECT 1,x.A+y.A FROM ON_SATIR x,ON_SATIR y");
            acknowledge();
          }
        },
        20, 4000);
    const auto now = number("SELECT COUNT(*) FROM KAYNAK");
    EXPECT_GE(now, rows + steps * 100);
    EXPECT_LE(now, rows + (steps + 1) * 100);
    EXPECT_EQ(now % 100, 0);
    rows = now;
    EXPECT_EQ(number("SELECT COUNT(*) FROM AYNA"), now);
    EXPECT_EQ(number("SELECT COUNT(*) FROM AYNA a,KAYNAK k WHERE a.ID=k.ID AND a.TUTAR=k.TUTAR"), now);
    EXPECT_EQ(run("SELECT ADET,TUTAR FROM TOPLAM"), run("SELECT COUNT(*),SUM(TUTAR) FROM KAYNAK"));
  }
}

TEST_F(Killed, WhileItsTransactionsRun) {
  must("CREATE TABLE SOL (ID INT)");
  must("CREATE TABLE SAG (ID INT)");
  std::int64_t rows = 0;
  for (int round = 0; round < rounds; ++round) {
    const int steps = killDuring(
        [](Server&, Istemci& own, const auto& acknowledge) {
          for (int i = 0;; ++i) {
            execute(own, "BEGIN TRAN INSERT INTO SOL VALUES (" + text(i) + ")");
            execute(own, "INSERT INTO SAG SELECT " + text(i));
            execute(own, "COMMIT TRAN");
            acknowledge();
          }
        },
        60, 3000);
    const auto now = number("SELECT COUNT(*) FROM SOL");
    EXPECT_EQ(number("SELECT COUNT(*) FROM SAG"), now);
    EXPECT_GE(now, rows + steps);
    EXPECT_LE(now, rows + steps + 1);
    rows = now;
  }
}

TEST_F(Killed, WhileItAltersATableWithRows) {
  must("CREATE TABLE T (ID INT IDENTITY PRIMARY KEY, E INT DEFAULT 5, A INT NULL, B CHAR(10) NULL)");
  must("CREATE INDEX TI ON T (E,ID)");
  for (int i = 0; i < 9; ++i) must("INSERT INTO T (A,B) VALUES (" + text(i) + ",'b')");
  for (int i = 0; i < 7; ++i) must("INSERT INTO T (A,B) SELECT A,B FROM T");
  const auto rows = number("SELECT COUNT(*) FROM T"), sum = number("SELECT SUM(A) FROM T");
  static const char* const steps[] = {"ALTER TABLE T ALTER COLUMN A BIGINT",
                                      "ALTER TABLE T ADD C INT NOT NULL CONSTRAINT DF_C DEFAULT 3",
                                      "ALTER TABLE T ALTER COLUMN B VARCHAR(30)",
                                      "ALTER TABLE T DROP CONSTRAINT DF_C",
                                      "ALTER TABLE T DROP COLUMN C",
                                      "ALTER TABLE T ALTER COLUMN A INT",
                                      "ALTER TABLE T ALTER COLUMN B CHAR(10)"};
  const auto columns = [&] {
    return run("SELECT name,xtype,length FROM syscolumns WHERE id=OBJECT_ID('T') ORDER BY colid");
  };
  // What the columns are after each step of the cycle.
  std::vector<std::string> states{columns()};
  for (const char* step : steps) {
    must(step);
    states.push_back(columns());
  }
  ASSERT_EQ(states.front(), states.back());
  for (int round = 0; round < rounds; ++round) {
    SCOPED_TRACE(round);
    const int done = killDuring(
        [](Server&, Istemci& own, const auto& acknowledge) {
          for (;;)
            for (const char* step : steps) {
              execute(own, step);
              acknowledge();
            }
        },
        8, 20000);
    const std::string now = columns();
    const std::size_t at = static_cast<std::size_t>(done) % std::size(steps);
    EXPECT_TRUE(now == states[at] || now == states[at + 1]) << now << " after " << done;
    EXPECT_EQ(number("SELECT COUNT(*) FROM T"), rows);
    EXPECT_EQ(number("SELECT SUM(A) FROM T WHERE B='b'"), sum);
    EXPECT_EQ(number("SELECT COUNT(*) FROM T WHERE A=4"), rows / 9);
    // On with the cycle until it is back at its beginning.
    for (std::size_t i = at; i < std::size(steps) && columns() != states[0]; ++i) {
      const std::string step = steps[i], printed = run(step);
      EXPECT_TRUE(printed.empty() || i == at) << step << " " << printed << message;
    }
    ASSERT_EQ(columns(), states[0]);
  }
}

TEST_F(Killed, WhileItMakesAndDropsDatabases) {
  for (int round = 0; round < rounds; ++round) {
    SCOPED_TRACE(round);
    const int steps = killDuring(
        [](Server&, Istemci& own, const auto& acknowledge) {
          for (int i = 0;; ++i) {
            const std::string name = "D" + text(i % 3);
            execute(own, "CREATE DATABASE " + name);
            acknowledge();
            execute(own, "CREATE TABLE " + name + "..T (A INT)");
            execute(own, "INSERT INTO " + name + "..T VALUES (" + text(i) + ")");
            acknowledge();
            execute(own, "DROP DATABASE " + name);
            acknowledge();
          }
        },
        9, 8000);
    // Three steps a database: made, filled, dropped.
    const int last = steps / 3, within = steps % 3;
    for (int i = 0; i < 3; ++i) {
      const std::string name = "D" + text(i);
      const bool stands = number("SELECT COUNT(*) FROM master..sysdatabases WHERE name='" + name + "'") != 0;
      if (i != last % 3) {
        EXPECT_FALSE(stands) << name << " was dropped";
      } else if (within == 1) {
        EXPECT_TRUE(stands);
      }
      if (stands && within == 2) {
        EXPECT_EQ(run("SELECT A FROM " + name + "..T"), text(last) + "\n");
      }
      if (stands) must("DROP DATABASE " + name);
      for (const char* ending : {".mdf", "_log.ldf", ".mdf-wal", ".mdf.unfinished", "_log.ldf.unfinished"})
        EXPECT_FALSE(std::filesystem::exists(file(name + ending))) << name << ending;
      must("CREATE DATABASE " + name);
      must("DROP DATABASE " + name);
    }
  }
}

TEST_F(Killed, WhileTheServiceStopsAndStarts) {
  must("CREATE TABLE T (A INT)");
  std::int64_t rows = 0;
  for (int round = 0; round < rounds; ++round) {
    const int steps = killDuring(
        [](Server& server, Istemci& own, const auto& acknowledge) {
          for (;;) {
            execute(own, "INSERT INTO T VALUES (1)");
            acknowledge();
            server.stop();
            server.start();
          }
        },
        4, 20000);
    const auto now = number("SELECT COUNT(*) FROM T");
    EXPECT_GE(now, rows + steps);
    EXPECT_LE(now, rows + steps + 1);
    rows = now;
  }
}

}  // namespace
}  // namespace scenarios
