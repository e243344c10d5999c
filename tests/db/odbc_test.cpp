// The ODBC driver against SQLite's ODBC driver: what does not depend on the server.
#include <gtest/gtest.h>
#include <unistd.h>

#include <clocale>
#include <filesystem>

#include "db/odbc/odbc_connection.h"
#include "db/odbc/odbc_rows.h"
#include "db/recordset.h"

namespace {

using db::Decimal;
using db::SqlError;
using db::Value;

class SqliteDialect : public db::OdbcDialect {
 public:
  std::string driverText(const db::ConnectionParts& parts) const override {
    return "DRIVER={SQLite3};DATABASE=" + parts.database + ";FKSupport=0;NoWCHAR=1";
  }
  // The driver calls binary columns text.
  db::FieldType fieldType(const std::string& typeName, int odbcType) const override {
    return typeName == "BLOB" ? db::FieldType::VarBinary : OdbcDialect::fieldType(typeName, odbcType);
  }
};

class OdbcTest : public testing::Test {
 protected:
  void SetUp() override {
    // SQLite's driver has narrow calls alone, and the driver manager goes by the locale for those.
    std::setlocale(LC_CTYPE, "C.UTF-8");
    file = std::filesystem::temp_directory_path() / ("odbc_" + std::to_string(::getpid()) + ".db");
    std::filesystem::remove(file);
    db::ConnectionParts parts;
    parts.database = file.string();
    parts.login = "sa";
    parts.password = "çokgizli";
    connection.open(parts);
  }
  void TearDown() override {
    connection.close();
    std::filesystem::remove(file);
  }

  std::filesystem::path file;
  db::OdbcConnection connection{std::make_unique<SqliteDialect>()};
};

TEST_F(OdbcTest, ReadsEveryKindOfValueAndNull) {
  connection.execute(
      "CREATE TABLE t (b BIT, i INTEGER, g BIGINT, n DECIMAL(18,4), f DOUBLE, d TIMESTAMP, "
      "c VARCHAR(50), x LONGVARCHAR, y BLOB)");
  connection.execute(
      "INSERT INTO t VALUES (1, -5, 9007199254740993, '-12.5', 0.1, '2012-01-31 13:45:00.007', "
      "'Açılış Fişi', 'uzun', x'00ff'), (NULL,NULL,NULL,NULL,NULL,NULL,NULL,NULL,NULL), "
      "(0,0,0,0,0,'2012-02-29','','','')");
  const auto rows = connection.query("SELECT * FROM t");
  ASSERT_TRUE(rows);
  ASSERT_EQ(rows->count(), 3);
  ASSERT_EQ(rows->fields().size(), 9u);
  EXPECT_EQ(rows->fields()[6].name, "c");
  EXPECT_TRUE(rows->value(0, 0).boolean());
  EXPECT_EQ(rows->value(0, 1).integer(), -5);
  EXPECT_EQ(rows->value(0, 2).integer(), 9007199254740993);
  EXPECT_DOUBLE_EQ(rows->value(0, 3).real(), -12.5);
  EXPECT_EQ(rows->value(0, 4), Value(0.1));
  EXPECT_EQ(rows->value(0, 5), Value(db::DateTime{2012, 1, 31, 13, 45, 0, 7}));
  EXPECT_EQ(rows->value(0, 6), Value("Açılış Fişi"));
  EXPECT_EQ(rows->value(0, 8), Value(db::Bytes{std::string("\0\xff", 2)}));
  for (int column = 0; column < 9; ++column) EXPECT_TRUE(rows->value(1, column).isNull()) << column;
  EXPECT_EQ(rows->value(2, 5), Value(db::DateTime{2012, 2, 29}));
  EXPECT_EQ(rows->value(2, 6), Value(""));
}

TEST_F(OdbcTest, ReadsLongTextOfAnyLengthWhole) {
  connection.execute("CREATE TABLE t (i INTEGER, x LONGVARCHAR, y BLOB)");
  // Around the size of a piece, with letters of two bytes across the cut.
  const std::size_t lengths[] = {1, 16382, 16383, 16384, 16385, 100001};
  for (const auto length : lengths) {
    std::string text(length, 'a');
    while (text.size() < length + 200) text += "ş";
    connection.execute("DELETE FROM t");
    connection.execute("INSERT INTO t VALUES (1, " + db::literal(text) + ", CAST(" + db::literal(text) +
                       " AS BLOB))");
    const auto rows = connection.query("SELECT x, y FROM t");
    ASSERT_EQ(rows->count(), 1);
    EXPECT_EQ(rows->value(0, 0).text(), text) << length;
    EXPECT_EQ(rows->value(0, 1), Value(db::Bytes{text})) << length;
  }
}

TEST_F(OdbcTest, CountsRowsAndGoesOnAfterAnError) {
  connection.execute("CREATE TABLE t (i INTEGER PRIMARY KEY)");
  EXPECT_EQ(connection.execute("INSERT INTO t VALUES (1)"), 1);
  EXPECT_EQ(connection.execute("UPDATE t SET i=3 WHERE i=99"), 0);
  try {
    connection.execute("INSERT INTO t VALUES (1)");
    FAIL() << "no error";
  } catch (const SqlError& error) {
    EXPECT_EQ(error.kind(), db::ErrorKind::StatementRefused);
    EXPECT_EQ(std::string(error.what()).find("[SQLite]"), std::string::npos) << error.what();
    EXPECT_NE(std::string(error.what()).find("UNIQUE"), std::string::npos) << error.what();
  }
  EXPECT_EQ(connection.query("SELECT COUNT(*) FROM t")->value(0, 0).integer(), 1) << "still usable";
}

TEST_F(OdbcTest, WritesThroughARecordsetByItsKey) {
  connection.execute("CREATE TABLE t (kod VARCHAR(10) PRIMARY KEY, ad VARCHAR(50))");
  connection.execute("CREATE TABLE tx (kod VARCHAR(10), ad VARCHAR(50) PRIMARY KEY)");
  connection.execute("INSERT INTO t VALUES ('a', 'bir'), ('b', 'iki')");
  const auto columns = connection.tableColumns("", "T");
  ASSERT_EQ(columns.size(), 2u);
  EXPECT_TRUE(columns[0].keyPart);
  EXPECT_FALSE(columns[1].keyPart);

  db::Recordset recordset;
  recordset.open(connection, "SELECT * FROM t ORDER BY kod", db::Cursor::Keyset, db::Lock::BatchOptimistic);
  recordset.moveNext();
  recordset.set("ad", "Ali'nin şapkası");
  recordset.update();
  recordset.open(connection, "SELECT ad FROM t WHERE kod='b'");
  EXPECT_EQ(recordset.field("ad").text(), "Ali'nin şapkası");
}

TEST_F(OdbcTest, TellsNoPasswordAndRunsNothingWhenClosed) {
  EXPECT_EQ(connection.connectionText().find("çokgizli"), std::string::npos);
  EXPECT_EQ(connection.state(), db::State::Open);
  connection.close();
  EXPECT_EQ(connection.state(), db::State::Closed);
  EXPECT_THROW(connection.execute("SELECT 1"), SqlError);
}

TEST_F(OdbcTest, AFailedOpeningLeavesTheConnectionClosed) {
  db::ConnectionParts parts;
  parts.database = "/nonexistent-folder/a.db";
  EXPECT_THROW(
      {
        connection.open(parts);
        connection.execute("CREATE TABLE t (a INTEGER)");
      },
      SqlError);
}

TEST(ParseDecimal, KeepsEveryDigit) {
  struct Case {
    const char* text;
    int scale;
    std::int64_t expected;
    bool good;
  };
  const Case cases[] = {
      {"-12.5", 4, -125000, true},
      {"12", 4, 120000, true},
      {".0300", 4, 300, true},
      {"922337203685477.5807", 4, INT64_MAX, true},
      {"-922337203685477.5808", 4, INT64_MIN, true},
      {"922337203685477.5808", 4, 0, false},
      {"12345678901234567890", 0, 0, false},
      {"1e5", 0, 0, false},
      {"", 0, 0, false},
      {"7.00", 0, 7, true},
  };
  for (const auto& c : cases) {
    Decimal out;
    EXPECT_EQ(db::parseDecimal(c.text, c.scale, out), c.good) << c.text;
    if (c.good) {
      EXPECT_EQ(out, (Decimal{c.expected, c.scale})) << c.text;
    }
  }
}

// ---- a driver that goes on failing ----

class StuckDialect : public db::OdbcDialect {
 public:
  std::string driverText(const db::ConnectionParts&) const override { return "DRIVER=" STUCK_DRIVER; }
};

TEST(StuckOdbcTest, AFailureThatBringsNothingNewEndsTheBatchAsABrokenLink) {
  struct Case {
    std::string calls;  // what the driver answers, call by call; the last one for ever (stuck_driver.cpp)
    db::ErrorKind kind;
    int number;
  };
  const Case cases[] = {
      {"od", db::ErrorKind::LinkBroken, 0},
      {"osd", db::ErrorKind::LinkBroken, 2627},
      {"os", db::ErrorKind::LinkBroken, 2627},
      {"od.", db::ErrorKind::StatementRefused, 0},
      {"ododo.", db::ErrorKind::StatementRefused, 0},
      {"osss.", db::ErrorKind::StatementRefused, 2627},
      {"o" + std::string(900, 's') + "o.", db::ErrorKind::StatementRefused, 2627},
      {"osdo.", db::ErrorKind::StatementRefused, 2627},
  };
  for (const Case& c : cases) {
    db::OdbcConnection connection{std::make_unique<StuckDialect>()};
    connection.open({});
    try {
      connection.execute(c.calls);
      FAIL() << "no error: " << c.calls;
    } catch (const SqlError& error) {
      EXPECT_EQ(error.kind(), c.kind) << c.calls.substr(0, 9);
      EXPECT_EQ(error.serverNumber(), c.number) << c.calls.substr(0, 9);
    }
    EXPECT_EQ(connection.execute("o."), 1) << "the connection serves on";
  }
}

}  // namespace
