// Copies of a database: read where they lie, and made while others write.
#include <map>

#include "engine/store/log_format.h"
#include "scenarios/folder_fixture.h"

namespace {

namespace fs = std::filesystem;
using engine::Server;
using engine::TableDigest;

class Copies : public scenarios::DataFolder {
 protected:
  Copies() {
    open();
    must("CREATE TABLE T(A INT, M MONEY NULL, S VARCHAR(20) NULL, F FLOAT NULL, G TEXT NULL)");
    must("CREATE TABLE U(A INT)");
    must("INSERT INTO T VALUES(1, 1.25, 'bir', 0.5, 'g')");
    must("INSERT INTO T VALUES(2, NULL, 'İki', NULL, NULL)");
    aside = folder.parent_path() / "kopya";
    fs::create_directory(aside);
  }
  // Both files as they are now.
  void copyFiles() {
    for (const char* name : {"FIRMA.mdf", "FIRMA_log.ldf"})
      fs::copy_file(file(name), aside / name, fs::copy_options::overwrite_existing);
  }
  Server::Copy openAside() {
    return Server::openCopy(aside / "FIRMA.mdf", aside / "FIRMA_log.ldf", "FIRMA", folder.parent_path());
  }
  std::string runOn(const Server::Copy& copy, const std::string& batch) {
    auto kept = std::move(session);
    session = std::make_unique<engine::Session>(copy.server, copy.login, copy.password, "FIRMA");
    const std::string printed = run(batch);
    session = std::move(kept);
    return printed;
  }
  std::map<std::string, std::string> bytesAside() {
    std::map<std::string, std::string> out;
    for (const auto& entry : fs::directory_iterator(aside))
      out[entry.path().filename().string()] = readAll(entry.path());
    return out;
  }
  static std::map<std::string, std::pair<std::int64_t, std::uint64_t>> sums(
      const std::vector<TableDigest>& tables) {
    std::map<std::string, std::pair<std::int64_t, std::uint64_t>> out;
    for (const TableDigest& each : tables) out[each.name] = {each.rows, each.sum};
    return out;
  }
  std::size_t scratchFolders() {
    std::size_t count = 0;
    for (const auto& entry : fs::directory_iterator(folder.parent_path()))
      count += entry.path().filename().string().starts_with("zembera-kopya-") ? 1 : 0;
    return count;
  }

  fs::path aside;
};

TEST_F(Copies, ASettledPairIsReadWhereItLiesAndStaysAsItIs) {
  const auto live = sums(server->digest("FIRMA"));
  server->stop();
  copyFiles();
  const auto before = bytesAside();
  {
    const auto copy = openAside();
    EXPECT_EQ(runOn(copy, "SELECT A, M, S FROM T ORDER BY A"), "1\t1.25\tbir\n2\tNULL\tİki\n");
    EXPECT_EQ(runOn(copy, "INSERT INTO U VALUES(1)"), "!3906\n");
    EXPECT_EQ(runOn(copy, "CREATE TABLE Y(A INT)"), "!3906\n");
    EXPECT_EQ(runOn(copy, "DBCC CHECKDB (FIRMA) WITH NO_INFOMSGS"), "");
    EXPECT_EQ(sums(copy.server->digest("FIRMA")), live);
    EXPECT_EQ(scratchFolders(), 1U);
  }
  EXPECT_EQ(bytesAside(), before);
  EXPECT_EQ(scratchFolders(), 0U);
}

TEST_F(Copies, APairWithALogIsTakenInElsewhere) {
  must("INSERT INTO U VALUES(7)");
  copyFiles();  // the files are in use: the row stands in the log alone
  const auto before = bytesAside();
  {
    const auto copy = openAside();
    EXPECT_EQ(runOn(copy, "SELECT A FROM U"), "7\n");
  }
  EXPECT_EQ(bytesAside(), before);
  EXPECT_EQ(scratchFolders(), 0U);
}

TEST_F(Copies, WhatAKilledReaderLeftGoesWithTheNextOneAndThatOfALivingStays) {
  server->stop();
  copyFiles();
  const fs::path left = folder.parent_path() / "zembera-kopya-abcdef",
                 link = left.parent_path() / "zembera-kopya-";
  fs::create_directories(left / "sunucu");
  writeAll(left / "sunucu" / "master.mdf", "yarım");
  fs::create_directory_symlink(aside, link);
  const auto living = openAside();
  EXPECT_FALSE(fs::exists(left));
  EXPECT_TRUE(fs::is_symlink(link));
  {
    const auto next = openAside();
    EXPECT_EQ(scratchFolders(), 3U);
    EXPECT_EQ(runOn(living, "SELECT COUNT(*) FROM T"), "2\n");
  }
  EXPECT_EQ(scratchFolders(), 2U);
  EXPECT_EQ(bytesAside().size(), 2U);
}

// What a process leaves that was killed between the flush of its commit and its being seen.
TEST_F(Copies, ACommitThatNobodySawGivesItsPlaceToTheNext) {
  must("INSERT INTO U VALUES(7)");
  namespace store = engine::store;
  const std::string log = readAll(file("FIRMA_log.ldf"));
  const auto shape =
      store::readLogShape(reinterpret_cast<const unsigned char*>(log.data()) + store::logOrigin);
  ASSERT_TRUE(shape);
  const auto seal = store::sealDurable({shape->seed, 100000, 12345});
  std::fstream out(file("FIRMA_log.ldf"), std::ios::in | std::ios::out | std::ios::binary);
  out.seekp(store::durableOffset);
  out.write(reinterpret_cast<const char*>(seal.data()), seal.size());
  out.close();
  must("BEGIN TRAN INSERT INTO U VALUES(8)");
  copyFiles();
  EXPECT_EQ(runOn(openAside(), "SELECT A FROM U"), "7\n");
  must("COMMIT");
}

TEST_F(Copies, DamageAndForeignLogsAreTold) {
  server->stop();
  copyFiles();
  std::string data = readAll(aside / "FIRMA.mdf");
  data[data.size() - 2000] ^= 1;
  writeAll(aside / "FIRMA.mdf", data);
  EXPECT_NE(runOn(openAside(), "DBCC CHECKDB (FIRMA) WITH NO_INFOMSGS").find("!824"), std::string::npos);
  copyFiles();
  fs::copy_file(file("master_log.ldf"), aside / "FIRMA_log.ldf", fs::copy_options::overwrite_existing);
  try {
    openAside();
    ADD_FAILURE() << "a foreign log was taken";
  } catch (const engine::Error& error) {
    EXPECT_EQ(error.number(), 5173);
  }
  fs::remove(aside / "FIRMA_log.ldf");
  EXPECT_THROW(openAside(), engine::Error);
  EXPECT_EQ(scratchFolders(), 0U);
}

TEST_F(Copies, ALiveCopyIsOfOneMoment) {
  engine::Session other(server, "sa", password, "FIRMA");
  engine::test::PrintingSink sink;
  other.execute("BEGIN TRAN INSERT INTO U VALUES(100)", sink);  // not committed when the copy is made
  const auto live = sums(server->digest("FIRMA"));
  int steps = 0;
  const auto told = server->copyLive("FIRMA", aside / "FIRMA.mdf", aside / "FIRMA_log.ldf",
                                     [&](std::int64_t done, std::int64_t all) {
                                       if (steps++ == 0)
                                         other.execute("COMMIT INSERT INTO U VALUES(101)", sink);
                                       return done <= all;
                                     });
  EXPECT_EQ(sink.text, "");
  EXPECT_GT(steps, 0);
  EXPECT_EQ(sums(told), live);
  EXPECT_EQ(run("SELECT A FROM U ORDER BY A"), "100\n101\n");
  const auto before = bytesAside();
  const auto copy = openAside();
  EXPECT_EQ(sums(copy.server->digest("FIRMA")), live);
  EXPECT_EQ(runOn(copy, "SELECT COUNT(*) FROM U"), "0\n");
  EXPECT_EQ(runOn(copy, "DBCC CHECKDB (FIRMA) WITH NO_INFOMSGS"), "");
  EXPECT_EQ(bytesAside(), before);

  // In the place of the live pair it is a restore.
  server->stop();
  for (const char* name : {"FIRMA.mdf", "FIRMA_log.ldf"})
    fs::copy_file(aside / name, file(name), fs::copy_options::overwrite_existing);
  session.reset();
  open();
  EXPECT_EQ(run("SELECT COUNT(*) FROM U"), "0\n");
  must("INSERT INTO U VALUES(1)");
}

TEST_F(Copies, ABrokenOffLiveCopyLeavesNothing) {
  EXPECT_THROW(server->copyLive("FIRMA", aside / "FIRMA.mdf", aside / "FIRMA_log.ldf",
                                [](std::int64_t, std::int64_t) { return false; }),
               engine::Error);
  EXPECT_TRUE(fs::is_empty(aside));
  writeAll(aside / "FIRMA.mdf", "benim");
  EXPECT_THROW(server->copyLive("FIRMA", aside / "FIRMA.mdf", aside / "FIRMA_log.ldf", {}), engine::Error);
  EXPECT_EQ(readAll(aside / "FIRMA.mdf"), "benim");
}

TEST_F(Copies, ADigestSeesEveryValueAndNoOrder) {
  must("CREATE TABLE V(A INT, S VARCHAR(20) NULL)");
  const auto digestOf = [&](const std::string& rows) {
    must("DELETE FROM V " + rows);
    return sums(server->digest("FIRMA"))["V"];
  };
  const auto base = digestOf("INSERT INTO V VALUES(1,'a') INSERT INTO V VALUES(2,'b')");
  EXPECT_EQ(digestOf("INSERT INTO V VALUES(2,'b') INSERT INTO V VALUES(1,'a')"), base);
  for (const char* other :
       {"INSERT INTO V VALUES(1,'b') INSERT INTO V VALUES(2,'a')", "INSERT INTO V VALUES(1,'a')",
        "INSERT INTO V VALUES(1,NULL) INSERT INTO V VALUES(2,'b')",
        "INSERT INTO V VALUES(1,'a') INSERT INTO V VALUES(2,'B')",
        "INSERT INTO V VALUES(1,'a ') INSERT INTO V VALUES(2,'b')"})
    EXPECT_NE(digestOf(other), base) << other;
}

}  // namespace
