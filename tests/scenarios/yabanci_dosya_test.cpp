// Data files and companions that are cut, empty or somebody else's: named in a clear error by every
// statement that needs them, never written to, and no harm to the other databases.
#include <set>

#include "folder_fixture.h"
#include "istemci.h"

namespace scenarios {
namespace {

class ForeignFiles : public FolderOf<Istemci> {
 protected:
  void SetUp() override {
    must("CREATE TABLE T (A INT, B CHAR(100))");
    for (int i = 0; i < 6; ++i)
      must(i ? "INSERT INTO T SELECT A,B FROM T"
             : "INSERT INTO T VALUES (1,'b') INSERT INTO T VALUES (2,'c')");
    must("CREATE DATABASE KOMSU");
    must("USE KOMSU CREATE TABLE K (A INT) INSERT INTO K VALUES (7)");
    must("USE master");
    server->stop();
    close();
  }
  // All that the folder holds of FIRMA.
  std::map<std::string, std::string> filesOfFirma() const {
    std::map<std::string, std::string> files;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
      if (const std::string name = entry.path().filename().string();
          name.starts_with("FIRMA") || name.starts_with("Firma"))
        files[name] = readAll(entry.path());
    return files;
  }
};

struct Case {
  const char* what;
  const char* file;
  std::function<std::string(const std::string&)> spoil;
  std::set<int> numbers;
};

TEST_F(ForeignFiles, AreNamedAndLeftAlone) {
  const std::string neighbour = readAll(file("KOMSU_log.ldf")), neighbourData = readAll(file("KOMSU.mdf"));
  const Case cases[] = {
      {"half the data", "FIRMA.mdf", [](const auto& s) { return s.substr(0, s.size() / 2); }, {823}},
      {"50 bytes of data", "FIRMA.mdf", [](const auto& s) { return s.substr(0, 50); }, {5172}},
      {"no data", "FIRMA.mdf", [](const auto&) { return std::string(); }, {5172}},
      {"zeroed data", "FIRMA.mdf", [](const auto& s) { return std::string(s.size(), '\0'); }, {5172}},
      {"a text", "FIRMA.mdf", [](const auto&) { return std::string(20000, 'x'); }, {5172}},
      {"zeroes behind the header",
       "FIRMA.mdf",
       [](const auto& s) { return s.substr(0, 100) + std::string(s.size() - 100, '\0'); },
       {824, 823, 5171}},
      {"the neighbour's data", "FIRMA.mdf", [&](const auto&) { return neighbourData; }, {5173}},
      {"the neighbour's log", "FIRMA_log.ldf", [&](const auto&) { return neighbour; }, {5173}},
      {"a zeroed log", "FIRMA_log.ldf", [](const auto& s) { return std::string(s.size(), '\0'); }, {9004}},
      {"an empty log", "FIRMA_log.ldf", [](const auto&) { return std::string(); }, {9004}},
      {"half a log", "FIRMA_log.ldf", [](const auto& s) { return s.substr(0, s.size() / 2); }, {9004}},
      {"a large log", "FIRMA_log.ldf", [](const auto& s) { return s + std::string(1 << 20, 'x'); }, {9004}},
      {"data as log", "FIRMA_log.ldf", [&](const auto&) { return neighbourData; }, {9004}},
  };
  static const char* const statements[] = {"USE FIRMA",
                                           "SELECT A FROM FIRMA..T",
                                           "INSERT INTO FIRMA..T VALUES (1,'x')",
                                           "DELETE FROM FIRMA..T",
                                           "CREATE TABLE FIRMA..Y (A INT)",
                                           "SELECT * INTO FIRMA..Y FROM KOMSU..K",
                                           "SELECT A FROM FIRMA..sysobjects"};
  for (const Case& each : cases) {
    SCOPED_TRACE(each.what);
    const std::string good = readAll(file(each.file)), bad = each.spoil(good);
    writeAll(file(each.file), bad);
    const auto before = filesOfFirma();
    server = engine::Server::open(folder);
    const auto damaged = server->start();
    ASSERT_EQ(damaged.size(), 1U);
    EXPECT_EQ(damaged[0].name, "FIRMA");
    session = std::make_unique<Istemci>(server, "sa", password, "KOMSU");
    for (const char* statement : statements) {
      const std::string printed = run(statement);
      ASSERT_TRUE(printed.starts_with("!")) << statement;
      EXPECT_TRUE(each.numbers.contains(std::atoi(printed.c_str() + 1)))
          << statement << " " << printed << message;
      // Of two files that do not fit each other, either may be the wrong one.
      const std::string named = each.numbers.contains(5173) ? "FIRMA_log.ldf" : each.file;
      EXPECT_NE(message.find(named), std::string::npos) << message;
      EXPECT_EQ(run("SELECT A FROM K"), "7\n");
    }
    EXPECT_EQ(run("CREATE DATABASE FIRMA"), "!1801\n");
    EXPECT_EQ(run("CREATE DATABASE F2 ON (FILENAME='" + file("FIRMA.mdf").string() + "')"), "!5170\n")
        << message;
    must("INSERT INTO K VALUES (8)");
    must("DELETE FROM K WHERE A=8");
    server->stop();
    close();
    EXPECT_EQ(filesOfFirma(), before);
    writeAll(file(each.file), good);
  }
  server = engine::Server::open(folder);
  EXPECT_TRUE(server->start().empty());
  open();
  EXPECT_EQ(number("SELECT COUNT(*) FROM T"), 64);
}

TEST_F(ForeignFiles, TheCompanionInAnyLetterCase) {
  std::filesystem::rename(file("FIRMA_log.ldf"), file("Firma_LOG.LDF"));
  const auto good = filesOfFirma();
  open();
  EXPECT_EQ(number("SELECT COUNT(*) FROM T"), 64);
  must("INSERT INTO T VALUES (3,'d')");
  must("DELETE FROM T WHERE A=3");
  EXPECT_FALSE(std::filesystem::exists(file("FIRMA_log.ldf")));
  session.reset();
  server->stop();
  writeAll(file("Firma_LOG.LDF"), "ZEMBERA");
  ASSERT_EQ(server->start().size(), 1U);
  open("master");
  EXPECT_EQ(run("USE FIRMA"), "!9004\n");
  EXPECT_NE(message.find("Firma_LOG.LDF"), std::string::npos) << message;
  EXPECT_EQ(readAll(file("Firma_LOG.LDF")), "ZEMBERA");
  session.reset();
  server->stop();
  writeAll(file("Firma_LOG.LDF"), good.at("Firma_LOG.LDF"));
  EXPECT_TRUE(server->start().empty());
  open("master");
  must("DROP DATABASE FIRMA");
  EXPECT_FALSE(std::filesystem::exists(file("Firma_LOG.LDF")));
}

// The master database itself.
TEST_F(ForeignFiles, ADamagedMasterIsRefusedAndLeftAlone) {
  const std::string good = readAll(file("master.mdf"));
  for (const std::string& bad : {good.substr(0, good.size() / 2), std::string(good.size(), '\0'),
                                 std::string(), readAll(file("KOMSU.mdf"))}) {
    writeAll(file("master.mdf"), bad);
    EXPECT_THROW(
        {
          server = engine::Server::open(folder);
          server->start();
          session = std::make_unique<Istemci>(server, "sa", password, "master");
        },
        engine::Error);
    close();
    EXPECT_EQ(readAll(file("master.mdf")), bad);
  }
  writeAll(file("master.mdf"), good);
  open();
  EXPECT_EQ(number("SELECT COUNT(*) FROM T"), 64);
}

}  // namespace
}  // namespace scenarios
