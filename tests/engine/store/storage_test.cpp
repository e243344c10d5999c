#include "engine/store/storage.h"

#include <sys/wait.h>
#include <unistd.h>

#include <fstream>

#include "engine/store_fixture.h"

namespace engine::test {

namespace fs = std::filesystem;

TEST_F(StoreTest, CreateTwiceIsRefusedAndOpenNeedsAMaster) {
  EXPECT_EQ(errorNumber([&] { Server::create(server->folder(), "sa", "x"); }), 1802);
  EXPECT_EQ(errorNumber([&] { Server::open(folder.path / "yok"); }), 5120);
  EXPECT_EQ(errorNumber([&] { Server::open(folder.path); }), 5120);
  EXPECT_TRUE(Server::exists(server->folder()));
}

TEST_F(StoreTest, DatabasesAreFilesWithACompanion) {
  Storing session(*server);
  session.define("CREATE DATABASE [Şirket '1']");
  EXPECT_TRUE(fs::exists(file("Şirket '1'.mdf")));
  EXPECT_TRUE(fs::exists(file("Şirket '1'_log.ldf")));
  session.use("Şirket '1'");
  session.define("CREATE TABLE T (a INT)");
  EXPECT_EQ(session.errorOf("CREATE DATABASE [Şirket '1']"), 1801);
  EXPECT_EQ(session.errorOf("CREATE DATABASE master"), 1801);
  writeAll(file("B.mdf"), "x");
  EXPECT_EQ(session.errorOf("CREATE DATABASE B"), 5170);
  EXPECT_EQ(readAll(file("B.mdf")), "x");
  EXPECT_EQ(session.errorOf("CREATE DATABASE C ON (NAME=C, FILENAME='/yok/dir\\C.mdf')"), 5133);
  const std::string place =
      "CREATE DATABASE D ON (NAME=D, FILENAME='" + file("D.mdf").string() + "', SIZE=1MB)";
  EXPECT_EQ(
      session.errorOf(place + " LOG ON (NAME=L, FILENAME='" + file("D.ldf").string() + "', SIZE=900000TB)"),
      5123);
  EXPECT_FALSE(fs::exists(file("D.mdf")));
  EXPECT_FALSE(session.store.databaseExists("D"));
  EXPECT_EQ(session.errorOf("CREATE DATABASE [a/b]"), 15004);
  EXPECT_EQ(session.errorOf("DROP DATABASE master"), 3708);
  EXPECT_EQ(session.errorOf("DROP DATABASE yok"), 3701);
}

TEST_F(StoreTest, FileNamesMayUseBackslashesAndStayAsWritten) {
  Storing session(*server);
  const fs::path other = folder.path / "baska";
  fs::create_directory(other);
  const std::string written = other.string() + "\\X.mdf";
  session.define("CREATE DATABASE X ON (NAME=X, FILENAME='" + written +
                 "', SIZE=10, MAXSIZE=UNLIMITED, "
                 "FILEGROWTH=10) LOG ON (NAME='X_log', FILENAME='" +
                 other.string() + "\\X_log.ldf', SIZE=5MB)");
  EXPECT_TRUE(fs::exists(other / "X.mdf"));
  EXPECT_TRUE(fs::exists(other / "X_log.ldf"));
  EXPECT_EQ(session.store.database("x").fileName, written);
}

TEST_F(StoreTest, DropIsRefusedWhileAnotherSessionUsesIt) {
  Storing first(*server);
  first.define("CREATE DATABASE A");
  {
    Storing second(*server, "A");
    EXPECT_EQ(first.errorOf("DROP DATABASE A"), 3702);
    EXPECT_EQ(second.errorOf("DROP DATABASE A"), 3702);
  }
  first.define("DROP DATABASE A");
  EXPECT_FALSE(fs::exists(file("A.mdf")));
  EXPECT_FALSE(fs::exists(file("A_log.ldf")));
  EXPECT_EQ(errorNumber([&] { first.use("A"); }), 911);
  first.define("CREATE DATABASE A");
}

TEST_F(StoreTest, AnotherProcessHoldsADatabaseToo) {
  Storing first(*server);
  first.define("CREATE DATABASE A");
  OtherProcess other(*server, "A",
                     [](Storing& session) { session.define("CREATE TABLE FromChild (a INT)"); });
  ASSERT_TRUE(other.ready());
  EXPECT_EQ(first.errorOf("DROP DATABASE A"), 3702);
  Storing reader(*server, "A");
  EXPECT_EQ(reader.table("fromchild").columns.size(), 1U);
  EXPECT_EQ(other.end(), 0);
}

// The version of a change that failed is given again, to another catalog.
TEST_F(StoreTest, AFailedDefinitionLeavesNoCatalogBehind) {
  Storing(*server).define("CREATE DATABASE A");
  const auto inAnotherProcess = [&](const std::string& statement) {
    OtherProcess other(*server, "A", [&](Storing& session) { session.define(statement); });
    EXPECT_EQ(other.end(), 0) << statement;
  };
  inAnotherProcess("CREATE TABLE T (a INT)");
  Storing one(*server, "A");
  EXPECT_EQ(one.errorOf("CREATE TABLE T (a INT)"), 2714);
  inAnotherProcess("CREATE TABLE U (a INT)");
  Storing two(*server, "A");
  EXPECT_EQ(two.table("U").columns.size(), 1U);
  EXPECT_EQ(one.table("U").columns.size(), 1U);
}

TEST_F(StoreTest, CatalogChangesReachOtherSessionsAtTheirNextStatement) {
  Storing one(*server), two(*server);
  one.define("CREATE DATABASE A");
  one.use("A");
  two.use("A");
  one.define("CREATE TABLE T (a INT)");
  EXPECT_EQ(two.table("T").columns.size(), 1U);
  const auto stamp = two.store.catalogStamp();
  one.define("ALTER TABLE T ADD b VARCHAR(5)");
  EXPECT_EQ(two.table("T").columns.size(), 2U);
  EXPECT_NE(two.store.catalogStamp(), stamp);
  const auto quiet = two.store.catalogStamp();
  two.table("T");
  EXPECT_EQ(two.store.catalogStamp(), quiet);
}

TEST_F(StoreTest, DefinitionsFollowTheTransaction) {
  Storing one(*server), two(*server);
  one.define("CREATE DATABASE A");
  one.use("A");
  two.use("A");
  one.store.begin();
  one.define("CREATE TABLE T (a INT)");
  EXPECT_EQ(one.table("T").name, "T");
  EXPECT_THROW(two.table("T"), std::runtime_error);
  one.store.rollback();
  EXPECT_THROW(one.table("T"), std::runtime_error);
  EXPECT_THROW(one.run("SELECT * FROM @.T"), Error);
  one.store.begin();
  one.define("CREATE TABLE T (a INT)");
  EXPECT_EQ(one.errorOf("ALTER TABLE T ADD a INT"), 2705);
  EXPECT_EQ(one.errorOf("CREATE DATABASE B"), 226);
  one.store.commit();
  EXPECT_EQ(two.table("T").name, "T");
}

TEST_F(StoreTest, NestedTransactionsUndoTheirOwnWork) {
  Storing one(*server);
  one.define("CREATE DATABASE A");
  one.use("A");
  one.define("CREATE TABLE T (a INT)");
  one.store.begin();
  one.run("INSERT INTO @.T VALUES(1)");
  one.store.begin();
  one.run("INSERT INTO @.T VALUES(2)");
  one.store.rollback();
  one.store.begin();
  one.run("INSERT INTO @.T VALUES(3)");
  one.store.commit();
  one.store.commit();
  EXPECT_EQ(one.values("SELECT a FROM @.T"), "1|3");
  EXPECT_FALSE(one.store.inTransaction());
  EXPECT_EQ(errorNumber([&] { one.store.commit(); }), 3902);
}

TEST_F(StoreTest, MoreDatabasesThanSQLiteAttachesAtOnce) {
  Storing one(*server);
  for (int i = 0; i < 14; ++i) {
    const std::string name = "D" + std::to_string(i);
    one.define("CREATE DATABASE " + name);
    one.context.database = name;
    one.define("CREATE TABLE T (a INT)");
    one.run("INSERT INTO @.T VALUES(" + std::to_string(i) + ")");
  }
  for (int i = 0; i < 14; ++i) {
    one.context.database = "D" + std::to_string(i);
    EXPECT_EQ(one.values("SELECT a FROM @.T"), std::to_string(i));
  }
}

// ---- files that do not fit ----

class DamageTest : public StoreTest {
 protected:
  void SetUp() override {
    Storing one(*server);
    one.define("CREATE DATABASE A");
    one.define("CREATE DATABASE B");
    one.use("A");
    one.define("CREATE TABLE T (a INT)");
    for (int i = 0; i < 500; ++i) one.run("INSERT INTO @.T VALUES(randomblob(200))");
    one.use("master");
    server->stop();
  }
  int startAndUse(std::string* text = nullptr) {
    const auto damaged = server->start();
    reported.clear();
    for (const auto& one : damaged) reported += one.name;
    Storing other(*server, "B");
    return errorNumber([&] { Storing session(*server, "A"); }, text);
  }
  std::string reported;
};

TEST_F(DamageTest, ForeignDamagedAndMissingFilesAreReportedAndLeftAlone) {
  struct Case {
    const char* what;
    const char* file;
    std::function<std::string(std::string)> spoil;
    int error;
  };
  const std::string foreign = readAll(file("B_log.ldf"));
  const Case cases[] = {
      {"truncated data", "A.mdf", [](std::string s) { return s.substr(0, s.size() / 2); }, 823},
      {"zeroed data", "A.mdf", [](std::string s) { return std::string(s.size(), '\0'); }, 5172},
      {"empty data", "A.mdf", [](const std::string&) { return std::string(); }, 5172},
      {"text as data", "A.mdf", [](const std::string&) { return std::string(9000, 'x'); }, 5172},
      {"zeroed page 1", "A.mdf", [](std::string s) { return s.replace(100, 3000, 3000, '\0'); }, 824},
      {"foreign log", "A_log.ldf", [&](const std::string&) { return foreign; }, 5173},
      {"zeroed log", "A_log.ldf", [](std::string s) { return std::string(s.size(), '\0'); }, 9004},
      {"truncated log", "A_log.ldf", [](std::string s) { return s.substr(0, s.size() - 3); }, 9004},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.what);
    const std::string good = readAll(file(each.file));
    const std::string bad = each.spoil(good);
    writeAll(file(each.file), bad);
    std::string text;
    EXPECT_EQ(startAndUse(&text), each.error) << text;
    EXPECT_EQ(reported, "A");
    EXPECT_NE(text.find(each.file), std::string::npos) << text;
    server->stop();
    EXPECT_EQ(readAll(file(each.file)), bad);
    writeAll(file(each.file), good);
  }
  EXPECT_EQ(startAndUse(), 0);
  EXPECT_EQ(reported, "");
}

TEST_F(DamageTest, AZeroedPageInTheMiddleIsFoundAtStart) {
  std::string content = readAll(file("A.mdf"));
  writeAll(file("A.mdf"), content.replace(content.size() - 8192, 4096, 4096, '\0'));
  startAndUse();
  EXPECT_EQ(reported, "A");
}

TEST_F(DamageTest, MissingFiles) {
  fs::remove(file("A_log.ldf"));
  EXPECT_EQ(startAndUse(), 0);
  EXPECT_TRUE(fs::exists(file("A_log.ldf")));
  server->stop();
  fs::rename(file("A.mdf"), file("A.sakla"));
  std::string text;
  EXPECT_EQ(startAndUse(&text), 5120);
  EXPECT_NE(text.find("A.mdf"), std::string::npos);
  EXPECT_FALSE(fs::exists(file("A.mdf")));
}

TEST_F(DamageTest, TheCompanionIsFoundInAnyLetterCase) {
  fs::rename(file("A_log.ldf"), file("a_LOG.LDF"));
  EXPECT_EQ(startAndUse(), 0);
  EXPECT_FALSE(fs::exists(file("A_log.ldf")));
  // A restore writes _LOG.ldf beside the log of a database that was made anew.
  server->stop();
  fs::copy_file(file("B_log.ldf"), file("A_log.ldf"));
  EXPECT_EQ(startAndUse(), 0);
}

TEST_F(DamageTest, AttachTakesExistingFiles) {
  fs::copy_file(file("A.mdf"), folder.path / "Eski.mdf");
  const std::string path = (folder.path / "Eski.mdf").string();
  server->start();
  Storing one(*server);
  const std::string attach = "CREATE DATABASE Eski ON PRIMARY (FILENAME = '" + path + "') FOR ATTACH";
  one.define(attach);
  one.use("Eski");
  EXPECT_EQ(one.values("SELECT count(*) FROM @.T"), "500");
  EXPECT_EQ(one.errorOf(attach), 1801);
  writeAll(folder.path / "Bozuk.mdf", std::string(5000, 'z'));
  EXPECT_EQ(one.errorOf("CREATE DATABASE Bozuk ON (FILENAME='" + (folder.path / "Bozuk.mdf").string() +
                        "') FOR ATTACH"),
            5172);
  EXPECT_EQ(one.errorOf("CREATE DATABASE Yok ON (FILENAME='" + (folder.path / "Yok.mdf").string() +
                        "') FOR ATTACH"),
            5120);
}

// ---- broken-off work ----

TEST_F(StoreTest, AKilledCreationOrDropIsFinishedByTheNextStart) {
  for (int delay = 0; delay < 40; ++delay) {
    const pid_t child = fork();
    if (child == 0) {
      auto own = Server::open(server->folder());
      for (;;) {
        Storing session(*own);
        session.define("CREATE DATABASE K");
        session.define("DROP DATABASE K");
      }
    }
    usleep(static_cast<useconds_t>(5000 + delay * 700));
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    auto again = Server::open(server->folder());
    Storing session(*again);
    if (session.store.databaseExists("K")) {
      session.use("K");
      session.define("CREATE TABLE T (a INT)");
      session.use("master");
      session.define("DROP DATABASE K");
    }
    session.define("CREATE DATABASE K");
    session.define("DROP DATABASE K");
    for (const auto& entry : fs::directory_iterator(server->folder()))
      EXPECT_NE(entry.path().filename().string().front(), 'K') << entry.path();
  }
}

}  // namespace engine::test
