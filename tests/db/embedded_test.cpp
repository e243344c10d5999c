// The embedded driver and the choice of drivers, on servers in temporary folders.
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>

#include "db/drivers.h"
#include "db/recordset.h"

namespace {

using db::ErrorKind;
using db::SqlError;
using db::Value;
namespace fs = std::filesystem;

class EmbeddedTest : public testing::Test {
 protected:
  void SetUp() override {
    fs::remove_all(folder);
    fs::create_directories(folder);
    factory = db::makeConnectionFactory(folder);
    factory->local("(yerel)")->create("sa", "gizli");
    connection = factory->make("(yerel)");
    connection->open({"(yerel)", "sa", "gizli", "master", false});
  }
  void TearDown() override {
    connection.reset();
    factory.reset();
    fs::remove_all(folder);
  }
  // Opens another connection and gives the failure's kind and number.
  std::pair<ErrorKind, int> failure(const db::ConnectionParts& parts) {
    try {
      factory->make(parts.server)->open(parts);
    } catch (const SqlError& error) {
      EXPECT_EQ(std::string(error.what()).find(parts.password), std::string::npos) << error.what();
      return {error.kind(), error.serverNumber()};
    }
    ADD_FAILURE() << "no error";
    return {};
  }

  fs::path folder = fs::temp_directory_path() / ("yerel_" + std::to_string(::getpid()));
  std::unique_ptr<db::ConnectionFactory> factory;
  std::unique_ptr<db::Connection> connection;
};

TEST_F(EmbeddedTest, TheServerNameChoosesDriverAndFolder) {
  EXPECT_EQ(factory->local("(yerel)")->folder(), folder / "veri");
  EXPECT_EQ(factory->local("(YEREL):")->folder(), folder / "veri");
  EXPECT_EQ(factory->local("(yerel):alt/klasör")->folder(), folder / "alt" / "klasör");
  EXPECT_EQ(factory->local("(yerel):/baska")->folder(), fs::path("/baska"));
  EXPECT_EQ(factory->local("SUNUCU\\SQL"), nullptr);
  EXPECT_EQ(factory->local("(yerel)x"), nullptr);
  EXPECT_TRUE(fs::exists(folder / "veri" / "master.mdf"));
  EXPECT_FALSE(factory->local("(yerel):alt")->exists());
}

TEST_F(EmbeddedTest, TellsWhyAConnectionFailed) {
  EXPECT_EQ(failure({"(yerel)", "sa", "yanlış", "master", false}), std::pair(ErrorKind::LoginRefused, 18456));
  EXPECT_EQ(failure({"(yerel)", "yok", "gizli", "master", false}), std::pair(ErrorKind::LoginRefused, 18456));
  EXPECT_EQ(failure({"(yerel)", "sa", "gizli", "Defination_DB", false}),
            std::pair(ErrorKind::LinkBroken, 4060));
  EXPECT_EQ(failure({"(yerel)", "sa", "yanlış", "master", true}), std::pair(ErrorKind::LoginRefused, 18452));
  // What kept the SQL login out is told by the attempt behind it too, but not to a wrong password.
  EXPECT_EQ(failure({"(yerel)", "sa", "gizli", "Defination_DB", true}),
            std::pair(ErrorKind::LinkBroken, 4060));
  EXPECT_EQ(failure({"(yerel)", "sa", "yanlış", "Defination_DB", true}),
            std::pair(ErrorKind::LoginRefused, 18452));
  EXPECT_EQ(failure({"(yerel):yok", "sa", "gizli", "master", false}).first, ErrorKind::LinkBroken);
  EXPECT_FALSE(fs::exists(folder / "yok")) << "asking for a server makes none";
}

TEST_F(EmbeddedTest, AStoppedServiceIsABrokenLinkUntilItIsStarted) {
  const auto local = factory->local("(yerel)");
  EXPECT_TRUE(local->running());
  local->stop();
  EXPECT_FALSE(local->running());
  EXPECT_EQ(failure({"(yerel)", "sa", "gizli", "master", false}).first, ErrorKind::LinkBroken);
  EXPECT_EQ(failure({"(yerel)", "sa", "gizli", "master", true}).first, ErrorKind::LinkBroken);
  EXPECT_THROW(connection->execute("SELECT 1"), SqlError);
  local->start();
  EXPECT_TRUE(local->running());
  connection->open({"(yerel)", "sa", "gizli", "master", false});
  EXPECT_EQ(connection->query("SELECT 1")->value(0, 0).integer(), 1);
}

TEST_F(EmbeddedTest, ReadsEveryTypeAndItsNull) {
  connection->execute(
      "CREATE TABLE T (ID INT IDENTITY(1,1) NOT NULL PRIMARY KEY, b BIT, t TINYINT, g BIGINT, m MONEY, n "
      "DECIMAL(18,4), "
      "w DECIMAL(38,2), f FLOAT, d DATETIME, c CHAR(10), v VARCHAR(30), x TEXT, y VARBINARY(8))");
  connection->execute(
      "INSERT INTO T (b,t,g,m,n,w,f,d,c,v,x,y) VALUES "
      "(1,200,-9007199254740993,-12.5,1.25,123456789012345678901234567890.12,0.1,'20120131 "
      "13:45:00.007','Şiş','Öğü  ','uzun',0x00FF)");
  connection->execute("INSERT INTO T (b) VALUES (NULL)");
  const auto rows = connection->query("SELECT * FROM T ORDER BY ID");
  ASSERT_EQ(rows->count(), 2);
  const Value expected[] = {Value(1),
                            Value(true),
                            Value(200),
                            Value(std::int64_t{-9007199254740993}),
                            Value(db::Decimal{-125000, 4}),
                            Value(db::Decimal{12500, 4}),
                            Value("123456789012345678901234567890.12"),
                            Value(0.1),
                            Value(db::DateTime{2012, 1, 31, 13, 45, 0, 7}),
                            Value("Şiş       "),
                            Value("Öğü  "),
                            Value("uzun"),
                            Value(db::Bytes{std::string("\0\xFF", 2)})};
  for (int i = 0; i < 13; ++i) {
    EXPECT_EQ(rows->value(0, i), expected[i]) << i << ": " << rows->value(0, i).text();
    EXPECT_EQ(rows->value(1, i).isNull(), i > 0) << i;
  }
  const auto& fields = rows->fields();
  EXPECT_TRUE(fields[0].identity);
  EXPECT_TRUE(fields[0].keyPart);
  EXPECT_EQ(fields[4].scale, 4);
  EXPECT_EQ(fields[5].size, 18);
  EXPECT_EQ(fields[9].type, db::FieldType::Char);
  EXPECT_EQ(fields[9].size, 10);
  EXPECT_EQ(fields[9].baseTable, "T");
}

TEST_F(EmbeddedTest, StreamsAQueryInPages) {
  connection->execute(
      "CREATE TABLE T (ID INT, Ad VARCHAR(9)) DECLARE @i INT SET @i=0 WHILE @i<10 BEGIN SET @i=@i+1 INSERT "
      "INTO T VALUES (@i,'ş'+CONVERT(VARCHAR,@i)) END");
  const auto pages = [&](const std::string& sql, std::int64_t page) {
    std::string out;
    connection->stream(sql, page, [&](const db::Rows& rows) {
      for (std::int64_t i = 0; i < rows.count(); ++i) out += (i ? "," : "|") + rows.value(i, 1).text();
    });
    return out;
  };
  EXPECT_EQ(pages("SELECT * FROM T ORDER BY ID DESC", 4), "|ş10,ş9,ş8,ş7|ş6,ş5,ş4,ş3|ş2,ş1");
  EXPECT_EQ(pages("SELECT * FROM T WHERE ID<=4 ORDER BY ID", 2), "|ş1,ş2|ş3,ş4");
  EXPECT_EQ(pages("SELECT * FROM T WHERE ID>99", 4), "");
  // An error comes behind the rows before it, and what the taker throws ends the query.
  std::int64_t taken = 0;
  const auto count = [&](const db::Rows& rows) { taken += rows.count(); };
  EXPECT_THROW(connection->stream("SELECT 6/(7-ID) FROM T", 3, count), SqlError);
  EXPECT_GE(taken, 3);
  EXPECT_LE(taken, 6);
  EXPECT_THROW(connection->stream("SELECT * FROM T", 3, [](const db::Rows&) { throw 1; }), int);
  EXPECT_EQ(connection->query("SELECT COUNT(*) FROM T")->value(0, 0).integer(), 10);
  connection->execute("DROP TABLE T");
}

TEST_F(EmbeddedTest, ARecordsetWritesRowsByIdentityByKeyAndByValues) {
  connection->execute(
      "CREATE TABLE A (ID INT IDENTITY(10,1) NOT NULL, Ad CHAR(20) NULL, Tutar MONEY NULL DEFAULT 5)");
  connection->execute(
      "CREATE TABLE B (K1 CHAR(5) NOT NULL, K2 INT NOT NULL, Ad CHAR(20), PRIMARY KEY (K1, K2))");
  connection->execute("CREATE TABLE C (Ad CHAR(20), Tarih DATETIME, Not_ TEXT, Tutar MONEY, Oran FLOAT)");
  connection->execute("INSERT INTO B VALUES ('a',1,'x') INSERT INTO B VALUES ('a',2,'y')");
  connection->execute(
      "INSERT INTO C VALUES (NULL,'20120131 10:00:00.003','n',1.5,0.1) INSERT INTO C VALUES "
      "('z',NULL,'n',2,0.3)");
  const auto open = [&](const char* sql) {
    db::Recordset out;
    out.open(*connection, sql, db::Cursor::Keyset, db::Lock::BatchOptimistic);
    return out;
  };

  auto a = open("SELECT * FROM A");
  a.addNew();
  a.set("Ad", "Ali'nin şapkası");
  a.update();
  EXPECT_EQ(a.field("ID").integer(), 10);
  a.set("Tutar", db::Decimal{77700, 4});
  a.update();
  a = open("SELECT * FROM A");
  EXPECT_EQ(a.recordCount(), 1);
  EXPECT_EQ(a.field("Ad").trimmed(), "Ali'nin şapkası");
  EXPECT_EQ(a.field("Tutar"), Value(db::Decimal{77700, 4}));

  auto b = open("SELECT * FROM B WHERE K2=2");
  b.set("Ad", "yeni");
  b.update();
  EXPECT_EQ(open("SELECT Ad FROM B WHERE K2=1").field(0).trimmed(), "x");
  EXPECT_EQ(open("SELECT Ad FROM B WHERE K2=2").field(0).trimmed(), "yeni");

  auto c = open("SELECT * FROM C WHERE Ad IS NULL");
  c.set("Ad", "bulundu");
  c.update();
  EXPECT_EQ(open("SELECT * FROM C WHERE Ad='bulundu'").recordCount(), 1);
  EXPECT_EQ(open("SELECT * FROM C WHERE Ad='z'").recordCount(), 1);
  c = open("SELECT * FROM C WHERE Ad='z'");
  connection->execute("DELETE FROM C WHERE Ad='z'");
  c.set("Ad", "yok");
  EXPECT_THROW(c.update(), SqlError);
}

TEST_F(EmbeddedTest, RefusesAStatementInTheServersWords) {
  try {
    connection->execute("SELECT * FROM yok");
    FAIL() << "no error";
  } catch (const SqlError& error) {
    EXPECT_EQ(error.kind(), ErrorKind::StatementRefused);
    EXPECT_EQ(error.serverNumber(), 208);
    EXPECT_EQ(error.number(), -2147217900);
  }
  EXPECT_EQ(connection->query("SELECT 1")->count(), 1);
  EXPECT_EQ(connection->connectionText().find("gizli"), std::string::npos);
}

TEST_F(EmbeddedTest, TwoConnectionsShareOneServer) {
  connection->execute("CREATE TABLE T (a INT)");
  const auto other = factory->make("(yerel):veri");
  other->open({"(yerel):veri", "sa", "gizli", "master", false});
  EXPECT_EQ(other->execute("INSERT INTO T VALUES (1)"), 1);
  EXPECT_EQ(connection->query("SELECT COUNT(*) FROM T")->value(0, 0).integer(), 1);
}

}  // namespace
