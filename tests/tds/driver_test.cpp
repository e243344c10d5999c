// The ODBC driver of this program against this server: it sees what the embedded driver sees.
#include "db/embedded/embedded_connection.h"
#include "db/odbc/sqlserver.h"
#include "db/recordset.h"
#include "tds/served.h"

namespace {

using tds::test::Served;

class BothWays : public Served {
 protected:
  BothWays() {
    inside.openAt(engine, {"(yerel)", "sa", "gizli", "FIRMA", false});
    outside->open({"127.0.0.1," + std::to_string(server->port()), "sa", "gizli", "FIRMA", false});
  }
  std::string rowsOf(db::Connection& connection, const std::string& query) {
    const auto rows = connection.query(query);
    std::string text;
    for (std::int64_t row = 0; row < rows->count(); ++row) {
      for (std::size_t i = 0; i < rows->fields().size(); ++i) {
        const db::Value value = rows->value(row, static_cast<int>(i));
        text += (i > 0 ? "|" : "") + (value.isNull() ? "NULL" : value.text());
      }
      text += "\n";
    }
    return text;
  }

  db::EmbeddedConnection inside{nullptr};
  std::unique_ptr<db::Connection> outside = db::makeSqlServerConnection();
};

TEST_F(BothWays, ColumnsAndRowsAreTheSame) {
  inside.execute(
      "CREATE TABLE [Çok Satan](ID INT IDENTITY NOT NULL, Ad VARCHAR(20) NOT NULL, Tutar DECIMAL(18,2), "
      "Fiyat MONEY, "
      "Tarih DATETIME, Aktif BIT, Not_ TEXT, Kod CHAR(6), Oran FLOAT, Resim VARBINARY(20), Uzun "
      "NVARCHAR(30), Az "
      "SMALLMONEY, Gun SMALLDATETIME, Bir TINYINT, Iki SMALLINT, Sekiz BIGINT, Dort REAL, PRIMARY KEY(Ad))");
  inside.execute(
      "INSERT INTO [Çok "
      "Satan](Ad,Tutar,Fiyat,Tarih,Aktif,Not_,Kod,Oran,Resim,Uzun,Az,Gun,Bir,Iki,Sekiz,Dort) "
      "VALUES('Şık ''x''',-12.34,1.2345,'20240229 23:59:59.997',1,'uzun','ab',0.1,0x00FF,N'ğı',3.5,"
      "'20240101 10:10',255,-3,-9000000000,0.5) INSERT INTO [Çok Satan](Ad) VALUES('boş')");
  const auto expected = inside.tableColumns("FIRMA", "Çok Satan"),
             found = outside->tableColumns("FIRMA", "Çok Satan");
  ASSERT_EQ(found.size(), expected.size());
  for (std::size_t i = 0; i < found.size(); ++i) {
    EXPECT_EQ(found[i].name, expected[i].name);
    EXPECT_EQ(found[i].type, expected[i].type) << found[i].name;
    EXPECT_EQ(found[i].identity, expected[i].identity) << found[i].name;
    EXPECT_EQ(found[i].keyPart, expected[i].keyPart) << found[i].name;
  }
  EXPECT_TRUE(outside->tableColumns("FIRMA", "Yok").empty());
  EXPECT_TRUE(outside->tableColumns("YOKDB", "Yok").empty());
  const std::string query = "SELECT * FROM [Çok Satan] ORDER BY ID";
  EXPECT_EQ(rowsOf(*outside, query), rowsOf(inside, query));
}

// What was read of a table is kept until a batch may have changed it.
TEST_F(BothWays, ColumnsAreReadOnceATable) {
  outside->execute("CREATE TABLE T(A INT)");
  ASSERT_EQ(outside->tableColumns("", "T").size(), 1u);
  inside.execute("ALTER TABLE T ADD B INT");
  EXPECT_EQ(outside->tableColumns("", "T").size(), 1u);
  outside->execute("INSERT INTO T VALUES(1,2)");
  EXPECT_EQ(outside->tableColumns("", "T").size(), 1u);
  outside->execute("alter table T ADD C INT");
  EXPECT_EQ(outside->tableColumns("", "T").size(), 3u);
}

TEST_F(BothWays, ErrorsAndTransactionsAreTheSame) {
  for (db::Connection* connection : {static_cast<db::Connection*>(&inside), outside.get()}) {
    connection->execute("CREATE TABLE T(A INT PRIMARY KEY)");
    const auto failure = [&](const char* batch) {
      try {
        connection->execute(batch);
      } catch (const db::SqlError& error) {
        return std::to_string(error.serverNumber()) + " " + error.what();
      }
      return std::string();
    };
    connection->execute("BEGIN TRAN INSERT INTO T VALUES(1)");
    EXPECT_EQ(failure("INSERT INTO T VALUES(1) INSERT INTO T VALUES(2)").substr(0, 5), "2627 ");
    EXPECT_EQ(failure("SELECT * FROM YOK"), "208 Invalid object name 'YOK'.");
    EXPECT_EQ(failure("RAISERROR('dur', 16, 1)"), "50000 dur");
    connection->execute("COMMIT");
    EXPECT_EQ(rowsOf(*connection, "SELECT A, @@TRANCOUNT FROM T"), "1|0\n2|0\n");
    EXPECT_EQ(connection->execute("UPDATE T SET A=A+10 WHERE A=2"), 1);
    connection->execute("DROP TABLE T");
  }
}

}  // namespace
