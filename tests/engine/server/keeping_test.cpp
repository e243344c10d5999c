// What the server keeps to itself, and a data folder that goes elsewhere.
#include <gtest/gtest.h>

#include <filesystem>

#include "../session_fixture.h"

namespace engine::test {

namespace {

namespace fs = std::filesystem;

using KeepingTest = SessionTest;

TEST_F(KeepingTest, NobodyElseMayReadTheFolderOrItsFiles) {
  EXPECT_EQ(run("CREATE TABLE T(A INT) INSERT INTO T VALUES(1)"), "");
  const auto rights = [](const fs::path& path) { return fs::status(path).permissions() & fs::perms::all; };
  EXPECT_EQ(rights(folder_), fs::perms::owner_all);
  for (const auto& entry : fs::directory_iterator(folder_))
    EXPECT_EQ(rights(entry.path()), fs::perms::owner_read | fs::perms::owner_write) << entry.path();
}

// The copy works on its own files even where a program names the folder that it comes from.
TEST_F(KeepingTest, CopiedFolderWorksOnItsOwnFiles) {
  EXPECT_EQ(run("CREATE TABLE T(A INT) INSERT INTO T VALUES(1)"), "");
  session.reset();
  server.reset();
  const fs::path copy = folder_.string() + "-kopya";
  fs::copy(folder_, copy, fs::copy_options::recursive);
  {
    const auto copied = Server::open(copy);
    Session there(copied, "sa", "gizli", "FIRMA");
    EXPECT_EQ(run(there, "INSERT INTO T VALUES(2) SELECT A FROM T"), "1\n2\n");
    EXPECT_EQ(run(there, "SELECT filename FROM master..sysdatabases WHERE name='FIRMA'"),
              copy.string() + "\\FIRMA.mdf\n");
    const std::string named = folder_.string() + "\\IKINCI.mdf";
    EXPECT_EQ(run(there, "CREATE DATABASE IKINCI ON (NAME=IKINCI, FILENAME='" + named + "')"), "");
    EXPECT_TRUE(fs::exists(copy / "IKINCI.mdf"));
    EXPECT_FALSE(fs::exists(folder_ / "IKINCI.mdf"));
  }
  server = Server::open(folder_);
  session = open("FIRMA");
  EXPECT_EQ(run("SELECT A FROM T"), "1\n");
  fs::remove_all(copy);
}

TEST_F(KeepingTest, NamesOfSystemTablesAreTaken) {
  EXPECT_EQ(run("CREATE TABLE sysobjects(A INT)"), "!2714\n");
  EXPECT_EQ(run("CREATE VIEW SysColumns AS SELECT 1 AS A"), "!2714\n");
}

TEST_F(KeepingTest, CoalesceOfMoreThan32Arguments) {
  std::string call = "SELECT COALESCE(";
  for (int i = 0; i < 40; ++i) call += "NULL,";
  EXPECT_EQ(run(call + "7)"), "7\n");
}

TEST_F(KeepingTest, VersionSaysWhatItIs) {
  EXPECT_EQ(run("SELECT @@VERSION"),
            "Zembera SQL 8.00.2012 is the T-SQL server inside this program, which keeps its databases in "
            "SQLite files and is no Microsoft SQL Server.\n");
}

}  // namespace

}  // namespace engine::test
