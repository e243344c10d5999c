// What lies in the place of a database's files: pipes, folders, links in a circle, nothing, other files.
#include <sys/stat.h>

#include "engine/session_fixture.h"
#include "engine/store_fixture.h"

namespace engine::test {
namespace {

namespace fs = std::filesystem;

class PlaceTest : public SessionTest {
 protected:
  PlaceTest() { EXPECT_EQ(run("CREATE TABLE T (A INT) INSERT INTO T VALUES (1)"), ""); }
  fs::path file(const std::string& name) const { return folder_ / name; }
  void close() {
    session.reset();
    server.reset();
  }
  void reopen() {
    server = Server::open(folder_);
    session = open();
  }
};

struct Obstacle {
  const char* what;
  void (*make)(const fs::path&);
};
const Obstacle obstacles[] = {
    {"pipe", [](const fs::path& path) { ::mkfifo(path.c_str(), 0600); }},
    {"folder", [](const fs::path& path) { fs::create_directory(path); }},
    {"circle", [](const fs::path& path) { fs::create_symlink(path, path); }},
    {"link to a pipe",
     [](const fs::path& path) {
       ::mkfifo((path.string() + ".boru").c_str(), 0600);
       fs::create_symlink(path.string() + ".boru", path);
     }},
};

TEST_F(PlaceTest, WhatIsNoFileIsRefusedAtOnce) {
  EXPECT_EQ(run("CREATE DATABASE KOMSU CREATE TABLE KOMSU..T (A INT)"), "");
  for (const char* name : {"FIRMA.mdf", "FIRMA_log.ldf"})
    for (const Obstacle& obstacle : obstacles) {
      SCOPED_TRACE(std::string(obstacle.what) + " for " + name);
      close();
      const fs::path aside = folder_.string() + ".aside";
      fs::rename(file(name), aside);
      obstacle.make(file(name));
      ::alarm(60);  // a read that waits for the pipe's other end would never come back
      reopen();
      EXPECT_EQ(run("SELECT A FROM FIRMA..T"), "!5120\n") << message;
      EXPECT_NE(message.find(file(name).string()), std::string::npos) << message;
      EXPECT_EQ(run("INSERT INTO KOMSU..T VALUES (1)"), "");
      server->stop();
      const auto damaged = server->start();
      ASSERT_EQ(damaged.size(), 1U);
      EXPECT_EQ(damaged[0].name, "FIRMA");
      ::alarm(0);
      close();
      fs::remove(file(name));
      fs::remove(file(name).string() + ".boru");
      fs::rename(aside, file(name));
      reopen();
      EXPECT_EQ(run("SELECT A FROM FIRMA..T"), "1\n") << message;
    }
}

TEST_F(PlaceTest, APipeForAnAttachOrForMasterIsRefused) {
  ::mkfifo(file("BORU.mdf").c_str(), 0600);
  ::alarm(60);
  const std::string attach =
      "CREATE DATABASE BORU ON (FILENAME='" + file("BORU.mdf").string() + "') FOR ATTACH";
  EXPECT_EQ(run(attach), "!5120\n") << message;
  close();
  const fs::path aside = folder_.string() + ".aside";
  fs::rename(file("master.mdf"), aside);
  ::mkfifo(file("master.mdf").c_str(), 0600);
  EXPECT_EQ(errorNumber([&] { Server::open(folder_); }), 5120);
  fs::remove(file("master.mdf"));
  fs::rename(aside, file("master.mdf"));
  fs::remove(file("server.lck"));
  ::mkfifo(file("server.lck").c_str(), 0600);
  EXPECT_EQ(errorNumber([&] { Server::open(folder_); }), 5120);
  ::alarm(0);
}

TEST_F(PlaceTest, RemovedFileTakesNoRowsAnyMore) {
  auto second = open("FIRMA");
  EXPECT_EQ(run(*second, "SELECT A FROM T"), "1\n");
  for (const char* name : {"FIRMA.mdf", "FIRMA_log.ldf"}) {
    SCOPED_TRACE(name);
    const fs::path aside = folder_.string() + ".aside";
    fs::rename(file(name), aside);
    EXPECT_EQ(run("INSERT INTO T VALUES (2)"), "!823\n") << message;
    EXPECT_NE(message.find("removed or replaced"), std::string::npos) << message;
    EXPECT_EQ(run("INSERT INTO T VALUES (2)"), "!5120\n") << message;  // nothing lies there
    EXPECT_EQ(run(*second, "INSERT INTO T VALUES (2)"), "!5120\n") << message;
    EXPECT_EQ(run("CREATE TABLE master..ARA (A INT) DROP TABLE master..ARA"), "") << message;
    fs::rename(aside, file(name));
    EXPECT_EQ(run(*second, "SELECT A FROM T"), "1\n") << message;
    EXPECT_EQ(run("INSERT INTO T VALUES (3) DELETE FROM T WHERE A=3"), "") << message;
  }
}

TEST_F(PlaceTest, RemovedInsideATransactionItIsGone) {
  EXPECT_EQ(run("CREATE DATABASE KOMSU CREATE TABLE KOMSU..T (A INT)"), "");
  EXPECT_EQ(run("BEGIN TRAN INSERT INTO KOMSU..T VALUES (1) INSERT INTO T VALUES (2)"), "");
  fs::rename(file("FIRMA.mdf"), folder_.string() + ".aside");
  EXPECT_EQ(run("COMMIT"), "!823\n") << message;
  EXPECT_EQ(run("SELECT @@TRANCOUNT"), "0\n");
  fs::rename(folder_.string() + ".aside", file("FIRMA.mdf"));
  EXPECT_EQ(run("SELECT A FROM T SELECT A FROM KOMSU..T"), "1\n") << message;
}

// The pair of an earlier moment, put in place under open sessions: none of them writes into the former one,
// and what is there now is what is read.
TEST_F(PlaceTest, ReplacedPairIsTheDatabaseFromThenOn) {
  server->stop();
  const fs::path copy = folder_.string() + ".copy";
  fs::create_directory(copy);
  for (const char* name : {"FIRMA.mdf", "FIRMA_log.ldf"}) fs::copy_file(file(name), copy / name);
  EXPECT_TRUE(server->start().empty());
  auto second = open("FIRMA");
  EXPECT_EQ(run("INSERT INTO FIRMA..T VALUES (2)"), "");
  EXPECT_EQ(run(*second, "SELECT A FROM T ORDER BY A"), "1\n2\n");
  for (const char* name : {"FIRMA.mdf", "FIRMA_log.ldf"}) fs::rename(copy / name, file(name));
  EXPECT_EQ(run(*second, "INSERT INTO T VALUES (3)"), "!823\n") << message;
  for (int i = 0; i < 2; ++i) EXPECT_EQ(run(*second, "SELECT A FROM T ORDER BY A"), "1\n") << message;
  EXPECT_EQ(run(*second, "INSERT INTO T VALUES (4)"), "") << message;
  EXPECT_EQ(run("SELECT A FROM FIRMA..T ORDER BY A"), "1\n4\n") << message;
  close();
  reopen();
  EXPECT_EQ(run("SELECT A FROM FIRMA..T ORDER BY A"), "1\n4\n") << message;
  fs::remove_all(copy);
}

}  // namespace
}  // namespace engine::test
