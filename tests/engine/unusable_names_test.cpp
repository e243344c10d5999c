// Names and paths that no file system takes, and places that take no file: refused before anything is
// written, and nobody else is held up by what is left of earlier attempts.
#include <sqlite3.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fstream>

#include "engine/session_fixture.h"
#include "engine/store/file_layer.h"

namespace engine::test {
namespace {

namespace fs = std::filesystem;

std::string repeated(const std::string& text, int times) {
  std::string out;
  while (times-- > 0) out += text;
  return out;
}

class UnusableNames : public SessionTest {
 protected:
  // Everything that the next program on the folder finds.
  void reopen() {
    session.reset();
    server.reset();
    server = Server::open(folder_);
    session = open();
  }
};

TEST_F(UnusableNames, NothingIsWrittenAndTheOthersWork) {
  struct Case {
    std::string name, more;
    int number;
  };
  const Case cases[] = {
      {repeated("ş", 117), "", 5105},
      {repeated("ş", 123), "", 5105},
      {repeated("a", 124), "", 103},
      {repeated("a", 2000), "", 103},
      {"A", " ON (NAME=A, FILENAME='" + repeated("u", 244) + "')", 5105},
      {"A", " ON (NAME=A, FILENAME='" + repeated("k/", 3000) + "a.mdf')", 5105},
      {"A", " ON (NAME=A, FILENAME='a\nb.mdf')", 5105},
      {"a\tb", "", 15004},
      {"A", " ON (NAME=A, FILENAME='yok/a.mdf')", 5133},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(run("CREATE DATABASE [" + c.name + "]" + c.more), "!" + std::to_string(c.number) + "\n")
        << c.name << message;
    std::string files;
    for (const auto& entry : fs::directory_iterator(folder_)) {
      const std::string name = entry.path().filename().string();
      if (!name.starts_with("master") && !name.starts_with("FIRMA") && name != "server.lck") files += name;
    }
    EXPECT_EQ(files, "");
  }
  reopen();
  EXPECT_TRUE(server->leftOvers().empty());
  EXPECT_EQ(run("SELECT name FROM sysdatabases ORDER BY dbid"), "master\nFIRMA\n");
  EXPECT_EQ(run("CREATE DATABASE [" + repeated("ş", 100) + "]"), "");
}

// The place is tried before the database stands in any record: a file with a name, were it there for a
// moment only, would stay for good when the process is killed in that moment.
TEST_F(UnusableNames, TrialOfAPlaceLeavesNoNameForAMoment) {
  ASSERT_EQ(run("CREATE DATABASE GITTI"), "");
  session.reset();
  server.reset();
  for (const char* file : {"GITTI.mdf", "GITTI_log.ldf"}) EXPECT_TRUE(fs::remove(folder_ / file)) << file;
  reopen();
  const int watch = ::inotify_init1(IN_NONBLOCK);
  ASSERT_GE(::inotify_add_watch(watch, folder_.c_str(), IN_CREATE | IN_MOVED_TO), 0);
  EXPECT_EQ(run("CREATE DATABASE YENI ON (NAME=YENI, FILENAME='" + (folder_ / "GITTI.mdf").string() + "')"),
            "!5170\n");
  std::string seen;
  alignas(inotify_event) char events[4096];
  for (ssize_t size; (size = ::read(watch, events, sizeof events)) > 0;)
    for (ssize_t at = 0; at < size;) {
      const auto* event = reinterpret_cast<const inotify_event*>(events + at);
      if (std::string(event->name).ends_with(".unfinished")) seen += std::string(event->name) + "\n";
      at += static_cast<ssize_t>(sizeof(inotify_event) + event->len);
    }
  ::close(watch);
  EXPECT_EQ(seen, "");
}

// What an earlier program entered and could never clean up.
TEST_F(UnusableNames, RemainsThatCannotGoKeepNobodyFromWorking) {
  session.reset();
  server.reset();
  fs::create_directories(folder_ / "kapali");
  // A folder stands where the file was to be: no removal takes it away.
  fs::create_directories(folder_ / "kapali" / "B.mdf.unfinished" / "x");
  {
    sqlite3* db = nullptr;
    const std::string uri = store::fileUri(folder_ / "master.mdf", folder_ / "master_log.ldf", "master");
    ASSERT_EQ(sqlite3_open_v2(uri.c_str(), &db, SQLITE_OPEN_READWRITE | SQLITE_OPEN_URI, nullptr), SQLITE_OK);
    sqlite3_create_collation(db, "TRCI", SQLITE_UTF8, nullptr,
                             [](void*, int, const void*, int, const void*) { return 1; });
    const std::string longName = repeated("ş", 120);
    for (const auto& [name, file, state] :
         {std::tuple{longName, longName, 1}, {std::string("B"), std::string("kapali/B"), 1}}) {
      const std::string sql =
          "INSERT INTO zb_databases(name,data,log,file_name,crdate,state,family) VALUES('" + name + "','" +
          file + ".mdf','" + file + "_log.ldf','x',0," + std::to_string(state) + ",'f')";
      ASSERT_EQ(sqlite3_exec(db, sql.c_str(), nullptr, nullptr, nullptr), SQLITE_OK) << sqlite3_errmsg(db);
    }
    sqlite3_close(db);
  }
  reopen();
  ASSERT_EQ(server->leftOvers().size(), 1U);
  EXPECT_EQ(server->leftOvers()[0].name, "B");
  EXPECT_EQ(run("SELECT name FROM sysdatabases ORDER BY dbid"), "master\nFIRMA\n");
  EXPECT_EQ(run("CREATE TABLE FIRMA..Y (A INT) CREATE DATABASE C"), "");
  // The one concerned tells what is the matter with it, the others nothing.
  const std::string trouble = "!" + std::to_string(server->leftOvers()[0].error.number()) + "\n";
  EXPECT_NE(trouble, "!911\n");
  for (const char* use : {"USE B", "SELECT * FROM B..T", "SELECT * FROM b..T"})
    EXPECT_EQ(run(use), trouble) << use;
  EXPECT_NE(message.find("B.mdf.unfinished"), std::string::npos) << message;
  EXPECT_EQ(run("USE YOK"), "!911\n");
  EXPECT_EQ(run("CREATE DATABASE B"), "!" + std::to_string(server->leftOvers()[0].error.number()) + "\n");
  server->stop();
  EXPECT_EQ(server->start().size(), 1U);
  fs::remove_all(folder_ / "kapali" / "B.mdf.unfinished");
  session = open();
  EXPECT_EQ(run("USE B"), "!911\n");
  EXPECT_EQ(run("CREATE DATABASE B"), "");
}

}  // namespace
}  // namespace engine::test
