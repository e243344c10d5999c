#include "db/recordset.h"

#include <gtest/gtest.h>

#include "support/fakes.h"

namespace {

using db::FieldInfo;
using db::FieldType;
using db::Lock;
using db::Recordset;
using db::SqlError;
using db::Value;

FieldInfo field(const char* name, FieldType type, const char* table) {
  FieldInfo info;
  info.name = name;
  info.type = type;
  info.baseTable = table;
  info.baseDatabase = table[0] ? "DB" : "";
  if (table[0]) info.baseColumn = name;
  return info;
}

class RecordsetTest : public testing::Test {
 protected:
  // Columns ID, Ad, Not_, Tarih of table T; what finds a row again is set by the test.
  void openTable(const char* base, bool identity, std::vector<std::vector<Value>> rows) {
    std::vector<FieldInfo> fields = {field("ID", FieldType::Int, base), field("Ad", FieldType::Char, base),
                                     field("Not_", FieldType::Text, base),
                                     field("Tarih", FieldType::DateTime, base)};
    fields[0].identity = identity;
    fields[0].keyPart = key;
    server.table("SELECT * FROM T", {fields, std::move(rows)});
    server.rows("SCOPE_IDENTITY", {""}, {{Value(db::Decimal{77, 0})}});
    server.count("UPDATE", 1);
    connection.open({});
    recordset.open(connection, "SELECT * FROM T", db::Cursor::Keyset, Lock::BatchOptimistic);
    server.statements.clear();
  }

  support::FakeServer server;
  support::FakeConnection connection{server};
  Recordset recordset;
  bool key = false;
};

TEST_F(RecordsetTest, WalksRowsAndFindsFieldsByName) {
  server.rows("SELECT", {"Kod", "Ad"}, {{1, "bir"}, {2, Value()}});
  recordset.open(connection, "SELECT");
  EXPECT_EQ(recordset.recordCount(), 2);
  EXPECT_EQ(recordset.field("KOD").integer(), 1);
  EXPECT_EQ(recordset.field(1).text(), "bir");
  recordset.moveNext();
  EXPECT_TRUE(recordset.field("ad").isNull());
  recordset.moveNext();
  EXPECT_TRUE(recordset.eof());
  EXPECT_THROW(recordset.field("ad"), SqlError);
  EXPECT_THROW(recordset.moveNext(), SqlError);
  recordset.moveFirst();
  EXPECT_THROW(recordset.field("yok"), SqlError);
  EXPECT_THROW(recordset.field(2), SqlError);
  EXPECT_THROW(recordset.set("Ad", 1), SqlError) << "opened read-only";
}

TEST_F(RecordsetTest, StaysClosedWithoutRowsAndAfterFailure) {
  server.rows("SELECT", {"a"}, {{1}});
  server.fail("KÖTÜ", SqlError(db::ErrorKind::StatementRefused, 208, "Invalid object name"));
  recordset.open(connection, "SELECT");
  recordset.open(connection, "CREATE TABLE t (a INT)");
  EXPECT_EQ(recordset.state(), db::State::Closed);
  recordset.open(connection, "SELECT");
  EXPECT_THROW(recordset.open(connection, "KÖTÜ"), SqlError);
  EXPECT_EQ(recordset.state(), db::State::Closed);
  EXPECT_THROW(recordset.eof(), SqlError);
}

TEST_F(RecordsetTest, InsertsOnlyWhatWasSetAndTakesTheNewNumber) {
  openTable("T", true, {});
  recordset.addNew();
  recordset.set("ad", "Ali'nin");
  recordset.set("Tarih", db::DateTime{2012, 1, 31});
  recordset.update();
  EXPECT_EQ(server.statements,
            (std::vector<std::string>{"INSERT INTO [DB].dbo.[T] ([Ad],[Tarih]) VALUES "
                                      "('Ali''nin','20120131 00:00:00.000'); SELECT SCOPE_IDENTITY()"}));
  EXPECT_EQ(recordset.recordCount(), 1);
  EXPECT_EQ(recordset.field("ID").integer(), 77);
  // A change of the new row is keyed by the number that the server gave.
  recordset.set("Ad", Value());
  recordset.update();
  EXPECT_EQ(server.statements.back(), "UPDATE [DB].dbo.[T] SET [Ad]=NULL WHERE [ID]=77");
  recordset.update();
  EXPECT_EQ(server.statements.size(), 2u) << "nothing pending, nothing sent";
}

TEST_F(RecordsetTest, KeysAnUpdateByAllOriginalValuesWithoutAKey) {
  openTable("T", false, {{5, "Ayşe      ", "uzun", Value()}});
  recordset.set("Ad", "Fatma");
  recordset.update();
  recordset.set("Not_", "yeni");
  recordset.update();
  EXPECT_EQ(server.statements,
            (std::vector<std::string>{
                "UPDATE [DB].dbo.[T] SET [Ad]='Fatma' WHERE [ID]=5 AND [Ad]='Ayşe' AND [Tarih] IS NULL",
                "UPDATE [DB].dbo.[T] SET [Not_]='yeni' WHERE [ID]=5 AND [Ad]='Fatma' AND [Tarih] IS NULL"}));
}

TEST_F(RecordsetTest, KeysByThePrimaryKeyOnlyWhenItIsWhole) {
  key = true;
  server.columns = {{"ID", FieldType::Int, false, true}, {"Baska", FieldType::Int, false, true}};
  openTable("T", false, {{5, "a", Value(), Value()}});
  recordset.set("Ad", "b");
  recordset.update();
  server.columns.pop_back();
  recordset.open(connection, "SELECT * FROM T", db::Cursor::Keyset, Lock::BatchOptimistic);
  recordset.set("Ad", "b");
  recordset.update();
  EXPECT_EQ(server.statements[0],
            "UPDATE [DB].dbo.[T] SET [Ad]='b' WHERE [ID]=5 AND [Ad]='a' AND [Tarih] IS NULL");
  EXPECT_EQ(server.statements[2], "UPDATE [DB].dbo.[T] SET [Ad]='b' WHERE [ID]=5");
}

TEST_F(RecordsetTest, AsksTheCatalogWhenRowsDoNotNameTheirTable) {
  server.columns = {{"ID", FieldType::Int, true, true}, {"Ad", FieldType::Char, false, false}};
  openTable("", false, {{5, "a", Value(), Value()}});
  recordset.set("Ad", "b");
  recordset.update();
  EXPECT_EQ(server.statements.back(), "UPDATE [T] SET [Ad]='b' WHERE [ID]=5");
  recordset.set("Tarih", "01/31/2012");
  EXPECT_THROW(recordset.update(), SqlError) << "no column of the table";
}

TEST_F(RecordsetTest, ARowThatIsGoneIsAnErrorAndStaysPendingUntilCancelled) {
  openTable("T", true, {{5, "a", Value(), Value()}});
  server.count("UPDATE", 0);
  recordset.set("Ad", "b");
  try {
    recordset.update();
    FAIL() << "no error";
  } catch (const SqlError& error) {
    EXPECT_EQ(error.kind(), db::ErrorKind::StatementRefused);
  }
  EXPECT_EQ(recordset.field("Ad").text(), "b");
  recordset.cancelUpdate();
  EXPECT_EQ(recordset.field("Ad").text(), "a");
}

TEST_F(RecordsetTest, UpdateBatchSendsAllRowsInOrderAndCancelDropsANewOne) {
  openTable("T", true, {{1, "a", Value(), Value()}, {2, "b", Value(), Value()}});
  recordset.set("Ad", "x");
  recordset.moveNext();
  recordset.set("Ad", "y");
  recordset.addNew();
  recordset.set("Ad", "gitti");
  recordset.cancelUpdate();
  EXPECT_EQ(recordset.recordCount(), 2);
  EXPECT_EQ(recordset.field("ID").integer(), 2) << "back on the row before the new one";
  recordset.addNew();
  recordset.set("Ad", "z");
  recordset.updateBatch();
  EXPECT_EQ(server.statements, (std::vector<std::string>{
                                   "UPDATE [DB].dbo.[T] SET [Ad]='x' WHERE [ID]=1",
                                   "UPDATE [DB].dbo.[T] SET [Ad]='y' WHERE [ID]=2",
                                   "INSERT INTO [DB].dbo.[T] ([Ad]) VALUES ('z'); SELECT SCOPE_IDENTITY()"}));
}

TEST_F(RecordsetTest, RefusesToWriteRowsOfTwoTables) {
  server.table("SELECT", {{field("a", FieldType::Int, "T"), field("b", FieldType::Int, "U")}, {{1, 2}}});
  recordset.open(connection, "SELECT", db::Cursor::Keyset, Lock::BatchOptimistic);
  recordset.set("a", 3);
  EXPECT_THROW(recordset.update(), SqlError);
  EXPECT_EQ(server.statements.size(), 1u);
}

}  // namespace
