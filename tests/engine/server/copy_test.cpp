// Copies of a database: read where they lie, and made while others write.
#include <functional>
#include <map>
#include <random>

#include "engine/store.h"
#include "engine/store/file_handle.h"
#include "engine/store/log_format.h"
#include "engine/store/page_checksum.h"
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

// One reading of the bytes against what statements and DBCC say of the same file.
class Reading : public Copies {
 protected:
  Reading() {
    must(
        "CREATE TABLE K(ID INT IDENTITY PRIMARY KEY, Ad VARCHAR(30) NULL, Tutar MONEY NULL, Oran FLOAT NULL, "
        "Gun DATETIME NULL, Buyuk DECIMAL(30,2) NULL, Yazi TEXT NULL, B BIT NOT NULL)");
    must(
        "CREATE UNIQUE INDEX KU ON K(Ad,Oran) CREATE INDEX KT ON K(Tutar DESC,Ad) CREATE INDEX KB ON K(B) "
        "CREATE UNIQUE INDEX KS ON K(Buyuk)");
    must(
        "BEGIN TRAN DECLARE @i INT SET @i=1 WHILE @i<1500 BEGIN INSERT INTO K VALUES(CASE WHEN @i%11=0 THEN "
        "NULL ELSE 'İsim ı '+CONVERT(VARCHAR(10),@i*7919%1500) END,CASE WHEN @i%5=0 THEN NULL ELSE @i%13 "
        "END,@i/4.0,DATEADD(day,@i,'20120314'),CAST(@i AS DECIMAL(30,2))*1000000000,CASE WHEN @i%50=0 THEN "
        "REPLICATE('uzun ',3000) "
        "ELSE NULL END,@i%2) SET @i=@i+1 END COMMIT");
    must("DELETE FROM K WHERE ID%3=0 AND ID<700");
    must("ALTER TABLE K ADD Sonra INT NOT NULL DEFAULT 5 ALTER TABLE K ADD Bos VARCHAR(10) NULL");
    must("INSERT INTO K(Ad,Oran,B,Sonra) VALUES('yeni',NULL,1,6)");
    live = sums(server->digest("FIRMA"));
    server->stop();
  }
  engine::DatabaseFiles pair() const { return {aside / "FIRMA.mdf", aside / "FIRMA_log.ldf", "FIRMA"}; }
  // SQLite's own pen, past every rule of the server. A definition that is written takes effect in the next.
  void write(const std::string& sql) {
    engine::lite::exec(engine::FileHandle(pair(), false), "PRAGMA writable_schema=ON;" + sql);
    ASSERT_TRUE(engine::settleDataFile(pair()));
  }
  // While the index whose definition holds the words is not there.
  void writeWithout(const std::string& words, const std::string& sql) {
    std::string row;
    {
      const engine::FileHandle db(pair(), false);
      engine::lite::Stmt index(
          db,
          "SELECT quote(type)||','||quote(name)||','||quote(tbl_name)||','||rootpage||','"
          "||quote(sql) FROM sqlite_master WHERE type='index' AND sql LIKE ?");
      index.bind("%" + words + "%");
      ASSERT_TRUE(index.step()) << words;
      row = index.text(0);
    }
    write("DELETE FROM sqlite_master WHERE type='index' AND sql LIKE '%" + words + "%'");
    if (!sql.empty()) write(sql);
    if (!sql.empty()) write("INSERT INTO sqlite_master VALUES(" + row + ")");
  }
  std::string root(const std::string& which) const {
    const engine::FileHandle db(pair(), false);
    engine::lite::Stmt row(db, "SELECT rootpage FROM sqlite_master WHERE " + which);
    return row.step() ? row.text(0) : "";
  }
  engine::DataFindings read(const Server::Copy& copy, std::size_t piece) {
    engine::CopyReading reading(copy.server, "FIRMA");
    const std::string bytes = readAll(copy.data);
    for (std::size_t at = 0; at < bytes.size(); at += piece)
      reading.take(bytes.data() + at, std::min(piece, bytes.size() - at));
    return reading.finish();
  }

  std::map<std::string, std::pair<std::int64_t, std::uint64_t>> live;
};

TEST_F(Reading, OfAWholeFileSeesWhatStatementsSee) {
  copyFiles();
  for (const std::size_t piece : {std::size_t{1} << 18, std::size_t{4096}, std::size_t{1000}}) {
    const auto found = read(openAside(), piece);
    EXPECT_TRUE(found.told);
    EXPECT_EQ(found.doubt, "");
    EXPECT_EQ(sums(found.tables), live);
  }
  EXPECT_EQ(read(openAside(), 100000000).doubt, "");
}

TEST_F(Reading, NoDamageIsPassedOver) {
  const std::string kt = "Tutar\" DESC", sql = "UPDATE sqlite_master SET sql=replace(sql,";
  struct Damage {
    const char* what;
    std::function<void()> spoil;
    const char* doubt;  // a part of it
    bool dbcc;          // sees it, too
  };
  const Damage damages[] = {
      {"a row without its entry",
       [&] {
         writeWithout(kt,
                      "INSERT INTO K(ID,Ad,Oran,Buyuk,B,Sonra) "
                      "VALUES(9000,'x',-1,x'00112233445566778899AABBCCDDEEFF',1,5)");
       },
       "do not fit", true},
      {"an entry without its row", [&] { writeWithout(kt, "DELETE FROM K WHERE ID=7"); }, "do not fit", true},
      {"an entry of another row", [&] { writeWithout(kt, "UPDATE K SET Tutar=123456 WHERE ID=7"); },
       "do not fit", true},
      {"two entries changed for each other",
       [&] { writeWithout("(\"B\")", "UPDATE K SET B=1-B WHERE ID IN (7,8)"); }, "do not fit", true},
      {"an entry of NULLs", [&] { writeWithout("ifnull(\"Ad\"", "UPDATE K SET Ad='dolu' WHERE ID=11"); },
       "do not fit", true},
      {"wrong order", [&] { write(sql + "' DESC','') WHERE sql LIKE '%Tutar%DESC%' AND type='index'"); },
       "out of order", true},
      {"a key twice in a unique index",
       [&] { write(sql + "'CREATE INDEX','CREATE UNIQUE INDEX') WHERE sql LIKE '%(\"B\")'"); },
       "stands twice", true},
      {"a value beyond its type", [&] { write("UPDATE K SET B=7 WHERE ID=2"); }, "cannot have", true},
      {"a text that is too long", [&] { write("UPDATE K SET Bos='on bir harf' WHERE ID=2"); }, "cannot have",
       true},
      {"two trees in one place",
       [&] { write("UPDATE sqlite_master SET rootpage=" + root("name='U'") + " WHERE sql LIKE '%(\"B\")'"); },
       "referred to twice", true},
      {"two trees changed for each other",
       [&] {
         const std::string b = root("sql LIKE '%(\"B\")'"), u = root("name='U'");
         write("UPDATE sqlite_master SET rootpage=CASE rootpage WHEN " + b + " THEN " + u + " ELSE " + b +
               " END WHERE rootpage IN (" + b + "," + u + ")");
       },
       "another kind", true},
      {"pages of nobody", [&] { writeWithout("(\"B\")", ""); }, "belongs to nobody", false},
      {"a flipped bit",
       [&] {
         std::string bytes = readAll(aside / "FIRMA.mdf");
         bytes[bytes.size() / 2] ^= 1;
         writeAll(aside / "FIRMA.mdf", bytes);
       },
       "does not fit its checksum", true},
  };
  for (const Damage& damage : damages) {
    SCOPED_TRACE(damage.what);
    copyFiles();
    damage.spoil();
    const auto copy = openAside();
    const auto found = read(copy, std::size_t{1} << 18);
    EXPECT_TRUE(found.told);
    EXPECT_NE(found.doubt, "");
    EXPECT_NE(found.doubt.find(damage.doubt), std::string::npos) << found.doubt;
    EXPECT_TRUE(found.tables.empty());
    EXPECT_EQ(runOn(copy, "DBCC CHECKDB (FIRMA) WITH NO_INFOMSGS") != "", damage.dbcc) << message;
  }
}

// Whatever the bytes are: no reading ends in anything but a doubt.
TEST_F(Reading, SurvivesAnyBytes) {
  copyFiles();
  const auto copy = openAside();
  const std::string bytes = readAll(copy.data);
  std::minstd_rand random(11);
  for (int round = 0; round < 300; ++round) {
    std::string spoilt = bytes;
    // The sum of each page is made to fit, so that the page itself is looked at.
    for (int hit = 0; hit < 3; ++hit) {
      const std::size_t page = 1 + random() % (bytes.size() / 4096 - 1), at = random() % 4088;
      auto* const start = reinterpret_cast<unsigned char*>(spoilt.data()) + page * 4096;
      start[random() % 3 == 0 ? at % 16 : at] = static_cast<unsigned char>(random());
      engine::store::storeChecksum(
          start, 4096, engine::store::pageChecksum(start, 4096, static_cast<std::uint32_t>(page + 1)));
    }
    engine::CopyReading reading(copy.server, "FIRMA");
    reading.take(spoilt.data(), spoilt.size());
    const auto found = reading.finish();
    EXPECT_TRUE(found.told);
    EXPECT_EQ(found.tables.empty(), !found.doubt.empty());
  }
}

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
