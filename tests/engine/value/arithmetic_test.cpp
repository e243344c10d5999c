#include "engine/value/arithmetic.h"

#include "engine/sql_fixture.h"

namespace engine {
namespace {

using namespace testing;
using enum BinaryOp;

constexpr Type tinyInt{TypeId::TinyInt}, smallInt{TypeId::SmallInt}, integer{TypeId::Int},
    bigInt{TypeId::BigInt}, bit{TypeId::Bit}, real{TypeId::Real}, dateTime{TypeId::DateTime},
    smallDateTime{TypeId::SmallDateTime};

class Arithmetic : public SqlFixture {};

struct OperatorCase {
  BinaryOp op;
  Operand left, right;
  const char* type;
  const char* value;  // or the number of the error
};

TEST_F(Arithmetic, EvaluatesLikeTheServerBothWays) {
  const std::vector<OperatorCase> cases = {
      {Divide, number(7), number(2), "INT", "3"},
      {Divide, number(-7), number(2), "INT", "-3"},
      {Modulo, number(-7), number(3), "INT", "-1"},
      {Divide, number(7), number(0), "INT", "8134"},
      {Modulo, number(7), number(0), "INT", "8134"},
      {Add, number(2147483647), number(1), "INT", "8115"},
      {Multiply, number(65536), number(65536), "INT", "8115"},
      {Divide, as(integer, "-2147483648"), number(-1), "INT", "8115"},
      {Add, as(tinyInt, "200"), as(tinyInt, "100"), "TINYINT", "8115"},
      {Subtract, as(tinyInt, "1"), as(tinyInt, "2"), "TINYINT", "8115"},
      {Add, as(smallInt, "30000"), as(tinyInt, "10"), "SMALLINT", "30010"},
      {Multiply, as(bigInt, "9223372036854775807"), number(2), "BIGINT", "8115"},
      {Divide, as(bigInt, "-9223372036854775808"), number(-1), "BIGINT", "8115"},
      {BitXor, number(6), number(3), "INT", "5"},
      {BitOr, number(6), number(3), "INT", "7"},
      {BitAnd, as(bit, "1"), as(bit, "0"), "BIT", "0"},
      {Add, exact("12.50"), exact("0.125"), "DECIMAL(6,3)", "12.625"},
      {Multiply, exact("12.50"), exact("0.125"), "DECIMAL(8,5)", "1.56250"},
      {Divide, exact("1.0"), exact("3.0"), "DECIMAL(8,6)", "0.333333"},
      {Divide, as(decimal(2, 1), "-2.0"), exact("3.0"), "DECIMAL(8,6)", "-0.666666"},
      {Divide, number(10), exact("4.0"), "DECIMAL(17,6)", "2.500000"},
      {Modulo, exact("7.5"), exact("2"), "DECIMAL(2,1)", "1.5"},
      {Divide, exact("1.0"), exact("0.0"), "DECIMAL(8,6)", "8134"},
      {Multiply, as(decimal(38, 10), "12345678901234567890.5"), as(decimal(38, 10), "2"), "DECIMAL(38,6)",
       "24691357802469135781.000000"},
      {Multiply, as(decimal(38, 0), "99999999999999999999999999999999999999"), number(10), "DECIMAL(38,0)",
       "8115"},
      {Add, as(decimal(38, 2), "123456789012345678901234567890.55"), exact("0.45"), "DECIMAL(38,2)",
       "123456789012345678901234567891.00"},
      {Add, money("1.25"), number(2), "MONEY", "3.25"},
      {Multiply, money("1.25"), number(3), "MONEY", "3.75"},
      {Multiply, money("0.5"), money("0.0003"), "MONEY", "0.00"},
      {Multiply, money("1.1111"), money("1.1111"), "MONEY", "1.23"},
      {Divide, money("20"), number(3), "MONEY", "6.67"},
      {Divide, money("20"), money("0"), "MONEY", "8134"},
      {Multiply, money("900000000000000"), number(2), "MONEY", "8115"},
      {Multiply, money("1.5"), floating(2), "FLOAT", "3"},
      {Multiply, money("1.5"), exact("2.25"), "DECIMAL(23,6)", "3.375000"},
      {Add, as({TypeId::SmallMoney}, "200000"), as({TypeId::SmallMoney}, "200000"), "SMALLMONEY", "8115"},
      {Divide, floating(1), floating(0), "FLOAT", "8134"},
      {Divide, floating(1), number(4), "FLOAT", "0.25"},
      {Multiply, as(real, "0.1"), as(real, "3"), "REAL", "0.3"},
      {Add, text("5"), number(3), "INT", "8"},
      {Add, number(5), text("x"), "INT", "245"},
      {Add, text("abc"), text("de"), "VARCHAR(5)", "abcde"},
      {Add, fixed(5, "abc"), text("|"), "VARCHAR(6)", "abc  |"},
      {Add, text("|"), fixed(3, "a"), "VARCHAR(4)", "|a  "},
      {Add, fixed(3, "a"), fixed(3, "b"), "CHAR(6)", "a  b"},
      {Add, lit(LiteralKind::NText, "ş"), fixed(2, "a"), "NVARCHAR(3)", "şa "},
      {Add, text("abc"), null(), "VARCHAR(6)", "NULL"},
      {Add, null(), number(1), "INT", "NULL"},
      {Divide, null(), number(0), "INT", "NULL"},
      {Add, date("2012-02-28"), number(2), "DATETIME", "Mar  1 2012 12:00AM"},
      {Subtract, date("2012-03-01"), floating(0.5), "DATETIME", "Feb 29 2012 12:00PM"},
      {Subtract, date("2012-03-01"), date("2012-02-28"), "DATETIME", "Jan  3 1900 12:00AM"},
      {Add, as(smallDateTime, "2012-03-01"), number(1), "SMALLDATETIME", "Mar  2 2012 12:00AM"},
      {Subtract, as(smallDateTime, "1900-01-01"), number(1), "SMALLDATETIME", "517"},
      {Add, date("9999-12-31"), number(1), "DATETIME", "517"},
  };
  for (const auto& c : cases) {
    const std::string name = describe(c.left.type) + " op " + std::to_string(static_cast<int>(c.op)) + ' ' +
                             describe(c.right.type) + " = " + c.value;
    const Type type = arithmeticType(c.op, c.left.type, c.right.type);
    EXPECT_EQ(describe(type), c.type) << name;
    const auto outcome = [&](const std::function<Datum()>& action) {
      Datum value;
      const int error = errorOf([&] { value = action(); });
      return error ? std::to_string(error) : shown(value, type);
    };
    EXPECT_EQ(
        outcome([&] { return arithmetic(c.op, c.left.value, c.left.type, c.right.value, c.right.type); }),
        c.value)
        << name;
    const std::string sql = arithmeticSql(c.op, "?1", c.left.type, "?2", c.right.type);
    EXPECT_EQ(outcome([&] { return evaluate(sql, {c.left, c.right}); }), c.value) << name << " by " << sql;
  }
}

TEST_F(Arithmetic, RefusesTypesTheOperatorDoesNotTake) {
  struct Case {
    BinaryOp op;
    Type left, right;
    int error;
  };
  const std::vector<Case> cases = {
      {Subtract, varChar(3), varChar(3), 8117},  {Add, bit, bit, 8117},
      {Multiply, dateTime, integer, 402},        {Modulo, {TypeId::Float}, integer, 402},
      {BitAnd, exact("1.5").type, integer, 402}, {Add, {TypeId::Text}, varChar(2), 402},
      {Add, {TypeId::Text}, integer, 206},
  };
  for (const auto& c : cases)
    EXPECT_EQ(errorOf([&] { arithmeticType(c.op, c.left, c.right); }), c.error)
        << describe(c.left) << ' ' << describe(c.right);
}

TEST_F(Arithmetic, Unary) {
  struct Case {
    UnaryOp op;
    Operand operand;
    const char* type;
    const char* value;
  };
  const std::vector<Case> cases = {
      {UnaryOp::Minus, as(tinyInt, "5"), "SMALLINT", "-5"},
      {UnaryOp::Minus, as(integer, "-2147483648"), "INT", "8115"},
      {UnaryOp::Minus, money("1.5"), "MONEY", "-1.50"},
      {UnaryOp::Minus, as(decimal(38, 1), "1.5"), "DECIMAL(38,1)", "-1.5"},
      {UnaryOp::Minus, floating(2.5), "FLOAT", "-2.5"},
      {UnaryOp::BitNot, number(5), "INT", "-6"},
      {UnaryOp::BitNot, as(tinyInt, "5"), "TINYINT", "250"},
      {UnaryOp::BitNot, as(bit, "1"), "BIT", "0"},
  };
  for (const auto& c : cases) {
    const Type type = unaryType(c.op, c.operand.type);
    EXPECT_EQ(describe(type), c.type);
    Datum direct, native;
    const int error = errorOf([&] { direct = unary(c.op, c.operand.value, c.operand.type); });
    EXPECT_EQ(error ? std::to_string(error) : shown(direct, type), c.value);
    const int again = errorOf([&] { native = evaluate(unarySql(c.op, "?1", c.operand.type), {c.operand}); });
    EXPECT_EQ(again ? std::to_string(again) : shown(native, type), c.value);
  }
  EXPECT_EQ(errorOf([] { unaryType(UnaryOp::Minus, varChar(3)); }), 8117);
}

TEST_F(Arithmetic, Compares) {
  struct Case {
    Operand left, right;
    int order;
  };
  const std::vector<Case> cases = {
      {text("ısı"), text("ISI"), 0},
      {fixed(5, "abc"), text("ABC   "), 0},
      {text("ç"), text("d"), -1},
      {number(10), text(" 9 "), 1},
      {money("1.5"), exact("1.50"), 0},
      {money("1.5"), number(2), -1},
      {as(decimal(38, 2), "-1"), as(decimal(5, 1), "1"), -1},
      {floating(0.5), exact("0.25"), 1},
      {date("2012-01-02"), text("20120101"), 1},
      {as(bit, "1"), text("true"), 0},
  };
  for (const auto& c : cases) {
    const int order = compareDatums(c.left.value, c.left.type, c.right.value, c.right.type);
    EXPECT_EQ((order > 0) - (order < 0), c.order) << shown(c.left.value, c.left.type);
    for (const auto& [op, holds] :
         {std::pair{Equal, c.order == 0}, {Less, c.order < 0}, {GreaterEqual, c.order >= 0}})
      EXPECT_EQ(evaluate(comparisonSql(op, "?1", c.left.type, "?2", c.right.type), {c.left, c.right}),
                Datum(static_cast<int>(holds)))
          << shown(c.left.value, c.left.type);
  }
  EXPECT_TRUE(evaluate(comparisonSql(Equal, "?1", varChar(1), "NULL", {}), {text("a")}).isNull());
  EXPECT_EQ(errorOf([] { comparisonSql(Equal, "a", {TypeId::Text}, "b", varChar(1)); }), 402);
}

TEST_F(Arithmetic, ComparisonKeepsIndexesUsable) {
  rows("CREATE TABLE t(a TEXT COLLATE TRCI)", {});
  rows("CREATE INDEX i ON t(a)", {});
  rows("INSERT INTO t VALUES ('İSİM'), ('isim  '), ('ısım')", {});
  const std::string where = comparisonSql(Equal, "a", charType(10), "?1", varChar(4));
  EXPECT_EQ(rows("SELECT a FROM t WHERE " + where, {text("isim")}).size(), 2u);
  const auto plan = rows("EXPLAIN QUERY PLAN SELECT a FROM t WHERE " + where, {text("isim")}, 3);
  EXPECT_NE(plan.at(0).text().find("(a=?)"), std::string::npos) << plan.at(0).text();
}

TEST_F(Arithmetic, Like) {
  const auto like = [&](const Operand& value, const Operand& pattern, bool negated = false) {
    return evaluate(likeSql("?1", value.type, "?2", pattern.type, "", negated), {value, pattern});
  };
  EXPECT_EQ(like(fixed(5, "abc"), text("abc")), Datum(1));
  EXPECT_EQ(like(fixed(5, "abc"), text("abc__")), Datum(1));
  EXPECT_EQ(like(fixed(5, "abc"), text("abc %")), Datum(1));
  EXPECT_EQ(like(text("abc"), text("abc %")), Datum(0));
  EXPECT_EQ(like(text("abc"), fixed(5, "abc")), Datum(0)) << "the blanks of a pattern count";
  EXPECT_EQ(like(number(123), text("1%")), Datum(1));
  EXPECT_EQ(like(text("abc"), text("x%"), true), Datum(1));
  EXPECT_TRUE(like(null(), text("x%"), true).isNull());
  const std::string escaped = likeSql("?1", varChar(3), "?2", varChar(3), "?3", false);
  EXPECT_EQ(evaluate(escaped, {text("a_b"), text("a!_b"), text("!")}), Datum(1));
  EXPECT_EQ(evaluate(escaped, {text("axb"), text("a!_b"), text("!")}), Datum(0));
  EXPECT_EQ(errorOf([&] { evaluate(escaped, {text("a"), text("a"), text("!!")}); }), 506);
}

TEST_F(Arithmetic, ConversionTextsAgreeWithConvert) {
  const std::vector<Operand> values = {number(12),
                                       as(tinyInt, "200"),
                                       as(bigInt, "5"),
                                       money("12.345"),
                                       exact("12.5"),
                                       floating(12.75),
                                       text("12"),
                                       fixed(5, "1"),
                                       date("1900-01-13 18:00"),
                                       as(bit, "1"),
                                       as(real, "0.1"),
                                       lit(LiteralKind::NText, "7"),
                                       as(decimal(30, 2), "3.14")};
  const std::vector<Type> targets = {bit,
                                     tinyInt,
                                     smallInt,
                                     integer,
                                     bigInt,
                                     {TypeId::SmallMoney},
                                     {TypeId::Money},
                                     decimal(9, 3),
                                     decimal(18, 0),
                                     decimal(38, 4),
                                     real,
                                     {TypeId::Float},
                                     dateTime,
                                     smallDateTime,
                                     charType(3),
                                     charType(30),
                                     varChar(4),
                                     varChar(30),
                                     {TypeId::NVarChar, 30},
                                     {TypeId::VarBinary, 8}};
  for (const Operand& value : values) {
    for (const Type& to : targets) {
      Datum direct, native;
      const int error = errorOf([&] { direct = convert(value.value, value.type, to); });
      const int again = errorOf([&] { native = evaluate(convertSql("?1", value.type, to), {value}); });
      EXPECT_EQ(error, again) << describe(value.type) << " to " << describe(to);
      EXPECT_EQ(direct, native) << describe(value.type) << " to " << describe(to);
    }
  }
}

TEST_F(Arithmetic, AssignmentRefusesToCut) {
  const std::string sql = convertSql("?1", varChar(4), charType(3), 0, true);
  EXPECT_EQ(errorOf([&] { evaluate(sql, {text("abcd")}); }), 8152);
  EXPECT_EQ(evaluate(sql, {text("ab  ")}), Datum("ab"));
}

}  // namespace
}  // namespace engine
