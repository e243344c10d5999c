// The SQL Server driver, from connection text to values, with the real FreeTDS against a scripted server.
#include <gtest/gtest.h>

#include "db/odbc/sqlserver.h"
#include "db/recordset.h"
#include "support/tds_server.h"

namespace {

using db::Decimal;
using db::ErrorKind;
using db::SqlError;
using db::Value;
using support::TdsAnswer;
using Kind = TdsAnswer::Kind;

class Collect : public db::BatchSink {
 public:
  void onRows(std::unique_ptr<db::Rows> rows) override {
    order += 'R';
    sets.push_back(std::move(rows));
  }
  void onRowCount(std::int64_t rows) override { order += std::to_string(rows); }
  void onMessage(const std::string& text) override { order += "(" + text + ")"; }

  std::vector<std::unique_ptr<db::Rows>> sets;
  std::string order;
};

class TdsTest : public testing::Test {
 protected:
  void open() { connection->open({server.address(), "sa", "giz;li}'ş", "Defination_DB", false}); }
  int failure(const char* batch) {
    try {
      connection->execute(batch);
    } catch (const SqlError& error) {
      kind = error.kind();
      text = error.what();
      return error.serverNumber();
    }
    return -1;
  }

  std::string answer = TdsAnswer().done().data();
  support::TdsServer server{[this](const std::string& batch) {
    return batch.starts_with("SET ") ? TdsAnswer().info(5703, "Changed language").done().data() : answer;
  }};
  std::unique_ptr<db::Connection> connection = db::makeSqlServerConnection();
  ErrorKind kind = {};
  std::string text;
};

TEST_F(TdsTest, LogsInWithEveryCharacterAndSettlesTheSession) {
  open();
  const auto login = server.logins().at(0);
  EXPECT_EQ(login.user, "sa");
  EXPECT_EQ(login.password, "giz;li}'ş");
  EXPECT_EQ(login.database, "Defination_DB");
  EXPECT_NE(server.batches().at(0).find("SET DATEFORMAT mdy"), std::string::npos);
  connection->execute("INSERT INTO t VALUES ('Açılış İşi')");
  EXPECT_EQ(server.batches().at(1), "INSERT INTO t VALUES ('Açılış İşi')");
}

TEST_F(TdsTest, TellsARefusedLoginFromAMissingDatabase) {
  server.refuseLogin(TdsAnswer().error(18456, "Login failed for user 'sa'.").done(-1, false, true).data());
  try {
    open();
    FAIL() << "no error";
  } catch (const SqlError& error) {
    EXPECT_EQ(error.kind(), ErrorKind::LoginRefused);
    EXPECT_EQ(error.serverNumber(), 18456);
    EXPECT_STREQ(error.what(), "Login failed for user 'sa'.");
  }
  server.refuseLogin(TdsAnswer()
                         .error(4060, "Cannot open database \"Defination_DB\".")
                         .error(18456, "Login failed for user 'sa'.")
                         .done(-1, false, true)
                         .data());
  try {
    open();
    FAIL() << "no error";
  } catch (const SqlError& error) {
    EXPECT_EQ(error.kind(), ErrorKind::LinkBroken);
    EXPECT_EQ(error.serverNumber(), 4060);
  }
}

// Both attempts of a wrong password must end as a refused login, though this machine has no ticket to try
// the second with; a server that is not there is told by its name.
TEST_F(TdsTest, TellsAnUntrustedLoginFromAServerThatIsNotThere) {
  try {
    connection->open({server.address(), "sa", "x", "D", true});
    FAIL() << "no error";
  } catch (const SqlError& error) {
    EXPECT_EQ(error.kind(), ErrorKind::LoginRefused);
    EXPECT_EQ(error.serverNumber(), 18452);
  }
  for (const bool integrated : {false, true}) {
    try {
      connection->open({"127.0.0.1,1", "sa", "x", "D", integrated});
      FAIL() << "no error";
    } catch (const SqlError& error) {
      EXPECT_EQ(error.kind(), ErrorKind::LinkBroken);
      EXPECT_TRUE(std::string(error.what()).starts_with("Sunucuya ulaşılamıyor (127.0.0.1,1): "))
          << error.what();
    }
  }
}

TEST_F(TdsTest, ReadsEveryTypeAndItsNull) {
  const std::string longText(100000, 'x');
  TdsAnswer a;
  a.columns({{"id", Kind::Int, 0, true},
             {"t", Kind::TinyInt},
             {"b", Kind::Bit},
             {"m", Kind::Money},
             {"f", Kind::Float},
             {"d", Kind::DateTime},
             {"c", Kind::Char, 10},
             {"v", Kind::VarChar, 30},
             {"x", Kind::Text},
             {"n", Kind::Decimal},
             {"y", Kind::Binary, 8}});
  a.row().integer(-7, 4).integer(200, 1).integer(1, 1).money(-1234567890123456).real(0.1);
  a.dateTime(40937, 14850002).bytes("\xDEi\xFE\x20\x20\x20\x20\x20\x20\x20").bytes("\xD6\xF0\xFC");
  a.longText(longText).decimal(125000, true).bytes(std::string("\0\xFF", 2));
  a.row().integer(8, 4);
  for (const Kind k : {Kind::TinyInt, Kind::Bit, Kind::Money, Kind::Float, Kind::DateTime, Kind::Char,
                       Kind::VarChar, Kind::Text, Kind::Decimal, Kind::Binary}) {
    a.null(k);
  }
  answer = a.done(2).data();
  open();
  const auto rows = connection->query("SELECT * FROM T");
  ASSERT_TRUE(rows);
  ASSERT_EQ(rows->count(), 2);

  using db::FieldType;
  const FieldType types[] = {FieldType::Int,   FieldType::TinyInt,  FieldType::Bit,      FieldType::Money,
                             FieldType::Float, FieldType::DateTime, FieldType::Char,     FieldType::VarChar,
                             FieldType::Text,  FieldType::Decimal,  FieldType::VarBinary};
  for (std::size_t i = 0; i < std::size(types); ++i) EXPECT_EQ(rows->fields()[i].type, types[i]) << i;
  EXPECT_TRUE(rows->fields()[0].identity);
  EXPECT_FALSE(rows->fields()[1].identity);
  EXPECT_EQ(rows->fields()[6].size, 10);
  EXPECT_EQ(rows->fields()[9].size, 18);

  const Value expected[] = {Value(-7),
                            Value(200),
                            Value(true),
                            Value(Decimal{-1234567890123456, 4}),
                            Value(0.1),
                            Value(db::DateTime{2012, 1, 31, 13, 45, 0, 7}),
                            Value("Şiş       "),
                            Value("Öğü"),
                            Value(longText),
                            Value(Decimal{-125000, 4}),
                            Value(db::Bytes{std::string("\0\xFF", 2)})};
  for (int i = 0; i < 11; ++i) {
    EXPECT_EQ(rows->value(0, i), expected[i])
        << rows->fields()[static_cast<std::size_t>(i)].name << ": " << rows->value(0, i).text().substr(0, 40);
    EXPECT_EQ(rows->value(1, i).isNull(), i > 0) << i;
  }
}

TEST_F(TdsTest, DeliversResultsCountsAndMessagesInOrder) {
  answer = TdsAnswer()
               .columns({{"a", Kind::Int}})
               .row()
               .integer(1, 4)
               .done(1, true)
               .done(3, true)
               .done(0, true)
               .info(0, "merhaba")
               .done(-1, true)
               .columns({{"b", Kind::Int}})
               .done(0)
               .data();
  open();
  Collect sink;
  connection->run("...", sink);
  EXPECT_EQ(sink.order, "R30(merhaba)R");
  ASSERT_EQ(sink.sets.size(), 2u);
  EXPECT_EQ(sink.sets[0]->value(0, 0).integer(), 1);
  EXPECT_EQ(sink.sets[1]->count(), 0);
  EXPECT_EQ(sink.sets[1]->fields()[0].name, "b");
}

TEST_F(TdsTest, StreamsAQueryInPages) {
  TdsAnswer five;
  five.columns({{"a", Kind::Int}});
  for (int i = 1; i <= 5; ++i) five.row().integer(i, 4);
  answer = five.done(5).data();
  open();
  std::string pages;
  const auto take = [&](const db::Rows& rows) {
    EXPECT_EQ(rows.fields()[0].name, "a");
    for (std::int64_t i = 0; i < rows.count(); ++i) pages += (i ? "," : "|") + rows.value(i, 0).text();
  };
  connection->stream("...", 2, take);
  EXPECT_EQ(pages, "|1,2|3,4|5");
  connection->stream("...", 5, take);
  EXPECT_EQ(pages, "|1,2|3,4|5|1,2,3,4,5");
}

TEST_F(TdsTest, ThrowsTheFirstErrorAfterTheWholeBatch) {
  answer = TdsAnswer()
               .done(1, true)
               .error(2627, "Violation of PRIMARY KEY constraint 'PK_T'.")
               .info(3621, "The statement has been terminated.")
               .done(-1, true, true)
               .error(208, "Invalid object name 'yok'.")
               .done(-1, true, true)
               .columns({{"a", Kind::Int}})
               .row()
               .integer(1, 4)
               .done(1)
               .data();
  open();
  Collect sink;
  try {
    connection->run("...", sink);
    FAIL() << "no error";
  } catch (const SqlError& error) {
    EXPECT_EQ(error.kind(), ErrorKind::StatementRefused);
    EXPECT_EQ(error.serverNumber(), 2627);
    EXPECT_STREQ(error.what(), "Violation of PRIMARY KEY constraint 'PK_T'.");
  }
  EXPECT_EQ(sink.order, "1");
  answer = TdsAnswer().done(5).data();
  EXPECT_EQ(connection->execute("UPDATE"), 5) << "the connection is free again";
}

TEST_F(TdsTest, ABrokenLinkIsToldAndTheNextBatchConnectsAnew) {
  open();
  answer = "";  // the server hangs up
  EXPECT_NE(failure("SELECT 1"), -1);
  EXPECT_EQ(kind, ErrorKind::LinkBroken) << text;
  EXPECT_EQ(connection->state(), db::State::Open);
  answer = TdsAnswer().done(4).data();
  EXPECT_EQ(connection->execute("UPDATE"), 4);
  EXPECT_EQ(server.logins().size(), 2u);
}

// A server that breaks off while it sends rows: FreeTDS answers each further call with HY000 for ever.
TEST_F(TdsTest, AServerThatFailsAmongItsRowsIsABrokenLink) {
  const auto rows = [] {
    TdsAnswer begun;
    begun.columns({{"a", Kind::Int}}).row().integer(1, 4).row().integer(2, 4);
    return begun;
  };
  struct Case {
    std::string answer;
    int number;
    const char* text;
  };
  const Case cases[] = {
      {rows().error(8115, "Arithmetic overflow.").garbage().data(), 8115, "Arithmetic overflow."},
      {rows().error(8115, "Arithmetic overflow.").done(-1, true, true).garbage().data(), 8115,
       "Arithmetic overflow."},
      {rows().garbage().data(), 20020, "Bad token from the server: Datastream processing out of sync"},
  };
  for (const Case& c : cases) {
    open();
    answer = c.answer;
    EXPECT_EQ(failure("SELECT"), c.number);
    EXPECT_EQ(kind, ErrorKind::LinkBroken) << text;
    EXPECT_EQ(text, c.text);
    answer = TdsAnswer().done(4).data();
    EXPECT_EQ(connection->execute("UPDATE"), 4) << "connected anew";
  }
}

}  // namespace
