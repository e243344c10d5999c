// What a user gets who passes on results while the batch still runs, and batches with parameters.
#include "engine/session_fixture.h"

namespace engine::test {

namespace {

class Passing : public PrintingSink {
 public:
  std::int64_t rowsAtATime() const override { return 2; }
  void onRows(const ResultSet& rows, bool first) override {
    text += first ? "first" : "next";
    for (std::int64_t row = 0; row < rows.rowCount(); ++row)
      text += " " + displayText(rows.datum(row, 0), rows.columns()[0].type);
    text += '\n';
  }
  void onRowsEnd(std::int64_t rows, bool counted) override {
    text += "end " + std::to_string(rows) + (counted ? "" : " uncounted") + '\n';
  }
  void onInfo(const Error& message) override { text += "info " + told(message); }
  bool onError(const Error& error) override {
    text += "error " + told(error);
    return true;
  }

 private:
  static std::string told(const Error& error) {
    return std::to_string(error.number()) + "/" + std::to_string(error.severity()) + "/" +
           std::to_string(error.state()) + " line " + std::to_string(error.line()) +
           (error.procedure().empty() ? "" : " in " + error.procedure()) + '\n';
  }
};

class PassingTest : public SessionTest {
 protected:
  std::string pass(const std::string& batch) {
    Passing sink;
    try {
      session->execute(batch, sink);
    } catch (const Error& error) {
      sink.text += "!" + std::to_string(error.number()) + '\n';
    }
    return sink.text;
  }
};

}  // namespace

TEST_F(PassingTest, RowsComeInPortionsAndErrorsWhereTheyAre) {
  run("CREATE TABLE T(A INT PRIMARY KEY) INSERT INTO T SELECT 1 UNION SELECT 2 UNION SELECT 3 UNION SELECT 4 "
      "UNION SELECT 5");
  run("CREATE TRIGGER TR ON T FOR DELETE AS\n\nRAISERROR('x', 15, 2)");
  const Step steps[] = {
      {"SELECT A FROM T ORDER BY A", "first 1 2\nnext 3 4\nnext 5\nend 5\n"},
      {"SELECT A FROM T WHERE A<3 ORDER BY A SELECT A FROM T WHERE A>9", "first 1 2\nend 2\nfirst\nend 0\n"},
      {"SET NOCOUNT ON SELECT TOP 1 A FROM T ORDER BY A SET NOCOUNT OFF", "first 1\nend 1 uncounted\n"},
      {"INSERT INTO T VALUES(1)\nINSERT INTO T VALUES(2) SELECT 7",
       "error 2627/14/1 line 1\nerror 2627/14/1 line 2\nfirst 7\nend 1\n"},
      {"PRINT 'a'\nRAISERROR('b', 9, 3) DELETE FROM T WHERE A=5 SELECT 8",
       "info 0/0/1 line 1\ninfo 50000/9/3 line 2\nerror 50000/15/2 line 3 in TR\nfirst 8\nend 1\n"},
      {"SELECT 8/(A-4) FROM T ORDER BY A SELECT 9", "first -2 -4\nerror 8134/16/1 line 1\nfirst 9\nend 1\n"},
      {"SELECT 1 SELECT * FROM YOK SELECT 2", "first 1\nend 1\n!208\n"},
  };
  for (const Step& step : steps) EXPECT_EQ(pass(step.batch), step.printed) << step.batch;
}

TEST_F(PassingTest, ParametersAreVariablesThatKeepWhatTheBatchLeaves) {
  std::vector<Parameter> values = {{"@a", {TypeId::Int}, 4},
                                   {"@b", {TypeId::VarChar, 5}, "x'y"},
                                   {"@c", {TypeId::NText}, {}},
                                   {"@d", {TypeId::Decimal, 0, 9, 2}, 150}};
  PrintingSink sink;
  session->execute("SELECT @a, @b, @c, @d SET @a=@a+1 SET @c=@b+'!' SET @d=NULL", values, sink);
  EXPECT_EQ(sink.text, "4\tx'y\tNULL\t1.50\n");
  EXPECT_EQ(values[0].value, Datum(5));
  EXPECT_EQ(values[2].value, Datum("x'y!"));
  EXPECT_TRUE(values[3].value.isNull());
  EXPECT_THROW(session->execute("SET @a=9 SELECT * FROM YOK", values, sink), Error);
  EXPECT_EQ(values[0].value, Datum(5));
  try {
    session->execute("SELECT 1\nSELECT * FROM YOK", values, sink);
    FAIL() << "no error";
  } catch (const Error& error) {
    EXPECT_EQ(error.line(), 2);
  }
}

TEST_F(PassingTest, AQueryIsDescribedWithoutRunning) {
  run("CREATE TABLE T(A INT, B VARCHAR(7))");
  const auto names = [&](const std::string& batch) {
    std::string text;
    for (const ResultColumn& column : session->describe(batch, {{"@p", {TypeId::Int}, {}}}))
      text += column.name + ":" + describe(column.type) + " ";
    return text;
  };
  EXPECT_EQ(names("SELECT A, B AS x FROM T WHERE A=@p"), "A:INT x:VARCHAR(7) ");
  EXPECT_EQ(names("DELETE FROM T SELECT A FROM T"), "");
  EXPECT_EQ(names("SELECT @p=A FROM T"), "");
  EXPECT_EQ(names("SELECT A INTO U FROM T"), "");
  EXPECT_THROW(names("SELECT YOK FROM T"), Error);
}

TEST_F(PassingTest, AResetSessionIsAsAfterItsLogin) {
  auto other = open("FIRMA");
  const std::string settings = "SELECT MONTH('01/02/2024'), DATEPART(dw, '20240101'), @@TRANCOUNT, DB_NAME()";
  run(*other,
      "CREATE TABLE T(A INT IDENTITY, B INT) SET DATEFORMAT dmy SET DATEFIRST 1 SET XACT_ABORT ON "
      "SET IDENTITY_INSERT T ON USE master BEGIN TRAN DELETE FROM FIRMA..T");
  EXPECT_EQ(run(*other, settings), "2\t1\t1\tmaster\n");
  other->reset(true);
  EXPECT_EQ(run(*other, settings), "1\t2\t1\tFIRMA\n");
  EXPECT_EQ(run(*other, "INSERT INTO T(A) VALUES(1) SELECT 3"), "!544\n");
  EXPECT_FALSE(other->committed());
  EXPECT_EQ(run(*other, "INSERT INTO T(B) VALUES(1) COMMIT"), "");
  EXPECT_TRUE(other->committed());
  run(*other, "BEGIN TRAN DELETE FROM T");
  other->reset(false);
  EXPECT_FALSE(other->committed());
  EXPECT_EQ(run(*other, "SELECT B, @@TRANCOUNT FROM T"), "1\t0\n");
}

}  // namespace engine::test
