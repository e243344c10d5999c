#include "engine/value/convert.h"

#include <gtest/gtest.h>

#include <functional>
#include <vector>

#include "engine/value/error.h"
#include "engine/value/result.h"

namespace engine {
namespace {

Type charType(int n) {
  return {TypeId::Char, static_cast<std::uint16_t>(n)};
}
Type varChar(int n) {
  return {TypeId::VarChar, static_cast<std::uint16_t>(n)};
}
Type nVarChar(int n) {
  return {TypeId::NVarChar, static_cast<std::uint16_t>(n)};
}
Type decimal(int p, int s) {
  return {TypeId::Decimal, 0, static_cast<std::uint8_t>(p), static_cast<std::uint8_t>(s)};
}
constexpr Type bit{TypeId::Bit}, tinyInt{TypeId::TinyInt}, smallInt{TypeId::SmallInt}, integer{TypeId::Int},
    bigInt{TypeId::BigInt}, money{TypeId::Money}, smallMoney{TypeId::SmallMoney}, real{TypeId::Real},
    floating{TypeId::Float}, dateTime{TypeId::DateTime}, smallDateTime{TypeId::SmallDateTime};

Datum literalAs(LiteralKind kind, const char* text, const Type& to, int style = 0) {
  const Literal literal{kind, text, 0};
  return convert(literalDatum(literal), literalType(literal), to, style);
}

std::string textOf(const Datum& value, const Type& from, const Type& to = varChar(30), int style = 0) {
  return convert(value, from, to, style).text();
}

int errorOf(const std::function<void()>& action) {
  try {
    action();
  } catch (const Error& error) {
    return error.number();
  }
  return 0;
}

struct ToTextCase {
  LiteralKind kind;
  const char* literal;
  Type through;
  Type to;
  int style;
  const char* expected;
};

TEST(Convert, NumbersBecomeText) {
  using enum LiteralKind;
  const std::vector<ToTextCase> cases = {
      {Float, "1234567.0e0", floating, varChar(30), 0, "1.23457e+006"},
      {Float, "123456.0e0", floating, varChar(30), 0, "123456"},
      {Float, "0.0001", floating, varChar(30), 0, "0.0001"},
      {Float, "0.00001", floating, varChar(30), 0, "1e-005"},
      {Float, "-0e0", floating, varChar(30), 0, "0"},
      {Float, "1234.5678", floating, varChar(30), 1, "1.2345678e+003"},
      {Float, "1234.5678", floating, varChar(30), 2, "1.234567800000000e+003"},
      {Decimal, "1234.5", money, varChar(30), 0, "1234.50"},
      {Decimal, "1234.5", money, varChar(30), 1, "1,234.50"},
      {Decimal, "-1234567.895", money, varChar(30), 1, "-1,234,567.90"},
      {Decimal, "-123.4", money, varChar(30), 1, "-123.40"},
      {Decimal, "1234.5678", money, varChar(30), 2, "1234.5678"},
      {Decimal, "1234.565", money, varChar(30), 0, "1234.57"},
      {Decimal, "-0.05", decimal(5, 2), varChar(30), 0, "-0.05"},
      {Decimal, "12.50", decimal(30, 10), varChar(30), 0, "12.5000000000"},
      {Integer, "42", integer, varChar(30), 0, "42"},
      {Integer, "12345", integer, charType(3), 0, "*"},
      {Integer, "12345", integer, varChar(4), 0, "*"},
      {Integer, "7", bit, varChar(1), 0, "1"},
  };
  for (const auto& c : cases)
    EXPECT_EQ(textOf(literalAs(c.kind, c.literal, c.through), c.through, c.to, c.style), c.expected)
        << c.literal << " style " << c.style;
}

struct NumberCase {
  const char* text;
  Type to;
  Datum expected;
};

TEST(Convert, TextBecomesNumbers) {
  const std::vector<NumberCase> cases = {
      {"", integer, 0},
      {"  42 ", integer, 42},
      {"-7", smallInt, -7},
      {"+", integer, 0},
      {"", floating, 0.0},
      {"1.5e3", floating, 1500.0},
      {" -.5 ", floating, -0.5},
      {"1234.5", money, 12345000},
      {"$1,234.56789", money, 12345679},
      {"-$5", money, -50000},
      {"", money, 0},
      {"TRUE", bit, 1},
      {"false", bit, 0},
      {"2", bit, 1},
      {"12.345", decimal(10, 2), 1235},
      {"-12.345", decimal(10, 2), -1235},
  };
  for (const auto& c : cases)
    EXPECT_EQ(convert(Datum(c.text), varChar(30), c.to), c.expected) << c.text << " to " << describe(c.to);
}

struct ErrorCase {
  LiteralKind kind;
  const char* literal;
  Type to;
  int number;
  const char* text;
};

TEST(Convert, RefusesWithTheServersNumbersAndTexts) {
  using enum LiteralKind;
  const std::vector<ErrorCase> cases = {
      {Text, "x", integer, 245, "Conversion failed when converting the varchar value 'x' to data type int."},
      {Text, "1.5", integer, 245,
       "Conversion failed when converting the varchar value '1.5' to data type int."},
      {Text, "yes", bit, 245, "Conversion failed when converting the varchar value 'yes' to data type bit."},
      {Text, "x", money, 235, "Cannot convert a char value to money. The char value has incorrect syntax."},
      {Text, "x", floating, 8114, "Error converting data type varchar to float."},
      {Text, "nan", floating, 8114, "Error converting data type varchar to float."},
      {Text, "1e3", decimal(10, 2), 8114, "Error converting data type varchar to numeric."},
      {Text, "300", tinyInt, 244,
       "The conversion of the varchar value '300' overflowed an INT1 column. Use a larger integer column."},
      {Text, "3000000000", integer, 248,
       "The conversion of the varchar value '3000000000' overflowed an int column."},
      {Integer, "300", tinyInt, 220, "Arithmetic overflow error for data type tinyint, value = 300."},
      {Integer, "3000000000", integer, 8115,
       "Arithmetic overflow error converting numeric to data type int."},
      {Integer, "100", decimal(4, 2), 8115, "Arithmetic overflow error converting int to data type numeric."},
      {Float, "3e9", integer, 232, "Arithmetic overflow error for type int, value = 3000000000.000000."},
      {Integer, "300000", smallMoney, 8115,
       "Arithmetic overflow error converting expression to data type smallmoney."},
      {Decimal, "1234.5", varChar(3), 8115,
       "Arithmetic overflow error converting numeric to data type varchar."},
      {Text, "02/30/2012", dateTime, 242,
       "The conversion of a varchar data type to a datetime data type resulted in an out-of-range value."},
      {Text, "13/02/2012", dateTime, 242, nullptr},
      {Text, "01/01/1700", dateTime, 242, nullptr},
      {Text, "01/01/2099", smallDateTime, 242, nullptr},
      {Text, "tomorrow", dateTime, 241,
       "Conversion failed when converting date and/or time from character string."},
      {Text, "1/1/212", dateTime, 241, nullptr},
      {Text, "2012-01-01 10:00:00.1234", dateTime, 241, nullptr},
      {Integer, "9000000", dateTime, 8115, nullptr},
  };
  for (const auto& c : cases) {
    try {
      literalAs(c.kind, c.literal, c.to);
      ADD_FAILURE() << c.literal << " was taken as " << describe(c.to);
    } catch (const Error& error) {
      EXPECT_EQ(error.number(), c.number) << c.literal << ": " << error.what();
      if (c.text) {
        EXPECT_STREQ(error.what(), c.text);
      }
    }
  }
}

TEST(Convert, RoundsOrCutsByThePairOfTypes) {
  EXPECT_EQ(literalAs(LiteralKind::Decimal, "1.9", integer), Datum(1));
  EXPECT_EQ(literalAs(LiteralKind::Decimal, "-1.9", integer), Datum(-1));
  EXPECT_EQ(literalAs(LiteralKind::Money, "1.5", integer), Datum(2));
  EXPECT_EQ(literalAs(LiteralKind::Money, "-1.5", integer), Datum(-2));
  EXPECT_EQ(literalAs(LiteralKind::Float, "-1.9e0", integer), Datum(-1));
  EXPECT_EQ(literalAs(LiteralKind::Float, "1.00005", money), Datum(10001));
  EXPECT_EQ(literalAs(LiteralKind::Float, "1.005e0", decimal(10, 2)), Datum(100));
  EXPECT_EQ(literalAs(LiteralKind::Float, "0.1e0", real).real(), static_cast<double>(0.1f));
  EXPECT_EQ(convert(Datum(ticksPerDay / 2), dateTime, integer), Datum(1));
  EXPECT_EQ(convert(Datum(ticksPerDay / 2), dateTime, floating), Datum(0.5));
}

TEST(Convert, TextIsCutPaddedOrRefused) {
  EXPECT_EQ(textOf("abcdef", varChar(6), varChar(3)), "abc");
  EXPECT_EQ(textOf("şığüöç", varChar(6), varChar(2)), "şı");
  EXPECT_EQ(textOf("ab", charType(5), varChar(10)), "ab   ");
  EXPECT_EQ(textOf("ab  ", varChar(4), charType(10)), "ab");
  EXPECT_EQ(textOf("a€жż→", nVarChar(5), varChar(5)), "a€?z?");
  EXPECT_EQ(errorOf([] { convert("abcd", varChar(4), charType(3), 0, true); }), 8152);
  EXPECT_EQ(convert("abc  ", varChar(5), varChar(3), 0, true), Datum("abc"));
  EXPECT_EQ(literalDatum({LiteralKind::Text, "ж-ğ", 0}), Datum("?-ğ"));
}

struct DateCase {
  const char* text;
  const char* expected;  // style 121
  DateFormat format = DateFormat::Mdy;
  int style = 0;
};

TEST(Convert, ReadsDates) {
  const std::vector<DateCase> cases = {
      {"02/28/2012", "2012-02-28 00:00:00.000"},
      {"2-28-49", "2049-02-28 00:00:00.000"},
      {"1/1/50", "1950-01-01 00:00:00.000"},
      {"02.28.2012 5:06", "2012-02-28 05:06:00.000"},
      {"20120228", "2012-02-28 00:00:00.000"},
      {"120228", "2012-02-28 00:00:00.000"},
      {"2012-02-28", "2012-02-28 00:00:00.000"},
      {"2012/02/28 17:06:07.009", "2012-02-28 17:06:07.010"},
      {"2012-02-28T17:06:07.123", "2012-02-28 17:06:07.123", DateFormat::Dmy},
      {"2012-12-31 23:59:59.999", "2013-01-01 00:00:00.000"},
      {"2012-12-31 23:59:59.998", "2012-12-31 23:59:59.997"},
      {"2012-12-31 23:59:59.5", "2012-12-31 23:59:59.500"},
      {"2012-12-31 23:59:59:5", "2012-12-31 23:59:59.007"},
      {"12:30 AM", "1900-01-01 00:30:00.000"},
      {"12:30pm", "1900-01-01 12:30:00.000"},
      {"3 PM", "1900-01-01 15:00:00.000"},
      {"", "1900-01-01 00:00:00.000"},
      {"Feb 28 2012 11:15PM", "2012-02-28 23:15:00.000"},
      {"28 February, 2012", "2012-02-28 00:00:00.000"},
      {"28/02/2012", "2012-02-28 00:00:00.000", DateFormat::Dmy},
      {"28.02.2012", "2012-02-28 00:00:00.000", DateFormat::Mdy, 104},
      {"28/02/12", "2012-02-28 00:00:00.000", DateFormat::Mdy, 3},
      {"2012-28-02", "2012-02-28 00:00:00.000", DateFormat::Dmy},
  };
  for (const auto& c : cases) {
    const Datum ticks = convert(c.text, varChar(40), dateTime, c.style, false, {c.format});
    EXPECT_EQ(textOf(ticks, dateTime, varChar(30), 121), c.expected) << c.text;
  }
}

TEST(Convert, SmallDateTimeRoundsToMinutes) {
  EXPECT_EQ(
      textOf(convert("2012-02-28 10:20:29.998", varChar(30), smallDateTime), smallDateTime, varChar(30), 120),
      "2012-02-28 10:20:00");
  EXPECT_EQ(
      textOf(convert("2012-02-28 10:20:29.999", varChar(30), smallDateTime), smallDateTime, varChar(30), 120),
      "2012-02-28 10:21:00");
}

TEST(Convert, WritesDatesInEveryStyle) {
  const std::vector<std::pair<int, const char*>> cases = {
      {0, "Mar  5 2012  4:07PM"},
      {1, "03/05/12"},
      {2, "12.03.05"},
      {3, "05/03/12"},
      {4, "05.03.12"},
      {5, "05-03-12"},
      {6, "05 Mar 12"},
      {7, "Mar 05, 12"},
      {8, "16:07:08"},
      {9, "Mar  5 2012  4:07:08:090PM"},
      {10, "03-05-12"},
      {11, "12/03/05"},
      {12, "120305"},
      {13, "05 Mar 2012 16:07:08:090"},
      {14, "16:07:08:090"},
      {20, "2012-03-05 16:07:08"},
      {21, "2012-03-05 16:07:08.090"},
      {100, "Mar  5 2012  4:07PM"},
      {101, "03/05/2012"},
      {102, "2012.03.05"},
      {103, "05/03/2012"},
      {104, "05.03.2012"},
      {105, "05-03-2012"},
      {106, "05 Mar 2012"},
      {107, "Mar 05, 2012"},
      {108, "16:07:08"},
      {109, "Mar  5 2012  4:07:08:090PM"},
      {110, "03-05-2012"},
      {111, "2012/03/05"},
      {112, "20120305"},
      {113, "05 Mar 2012 16:07:08:090"},
      {114, "16:07:08:090"},
      {120, "2012-03-05 16:07:08"},
      {121, "2012-03-05 16:07:08.090"},
      {126, "2012-03-05T16:07:08.090"},
  };
  const Datum value = convert("2012-03-05 16:07:08.09", varChar(30), dateTime);
  for (const auto& [style, expected] : cases)
    EXPECT_EQ(textOf(value, dateTime, varChar(40), style), expected);
  EXPECT_EQ(textOf(value, dateTime, charType(10), 121), "2012-03-05");
  EXPECT_EQ(errorOf([&] { convert(value, dateTime, varChar(30), 99); }), 281);
}

TEST(Convert, CalendarIsItsOwnInverse) {
  for (const std::int64_t day : {-53690, -1, 0, 58, 59, 60, 36583, 40967, 2958463}) {
    const Civil c = civilFromTicks(day * ticksPerDay + 5 * ticksPerHour + 7);
    EXPECT_EQ(ticksFromCivil(c), day * ticksPerDay + 5 * ticksPerHour + 7);
  }
  EXPECT_EQ(daysFromCivil(1753, 1, 1) * ticksPerDay, minDateTime);
  EXPECT_EQ(civilFromTicks(maxDateTime).year, 9999);
}

TEST(Convert, Binary) {
  const Type binary4{TypeId::Binary, 4}, varBinary8{TypeId::VarBinary, 8};
  EXPECT_EQ(convert(258, integer, binary4).bytes(), std::string("\0\0\1\2", 4));
  EXPECT_EQ(convert(Blob{std::string("\1\2", 2)}, varBinary8, integer), Datum(258));
  EXPECT_EQ(convert(Blob{"\xFF\xFF\xFF\xFE"}, varBinary8, integer), Datum(-2));
  EXPECT_EQ(convert("ş", varChar(1), varBinary8).bytes(), "\xFE");
  EXPECT_EQ(convert(Blob{"\xDD"}, varBinary8, varChar(5)), Datum("İ"));
  EXPECT_EQ(convert(convert(12345, dateTime, varBinary8), varBinary8, dateTime), Datum(12345));
}

struct LiteralCase {
  LiteralKind kind;
  const char* text;
  Type type;
};

TEST(Convert, LiteralsHaveTypes) {
  using enum LiteralKind;
  const std::vector<LiteralCase> cases = {
      {Text, "abc", varChar(3)},
      {Text, "", varChar(1)},
      {NText, "ığ", nVarChar(2)},
      {Integer, "12", integer},
      {Integer, "2147483647", integer},
      {Integer, "2147483648", decimal(10, 0)},
      {Decimal, "12.50", decimal(4, 2)},
      {Decimal, "0.5", decimal(1, 1)},
      {Decimal, ".05", decimal(2, 2)},
      {Float, "1e3", floating},
      {Money, "$1.5", money},
      {Binary, "\x01\x02", {TypeId::VarBinary, 2}},
  };
  for (const auto& c : cases) EXPECT_EQ(literalType({c.kind, c.text, 0}), c.type) << c.text;
  EXPECT_EQ(errorOf([] { literalType({Integer, "123456789012345678901234567890123456789", 0}); }), 1007);
}

TEST(Convert, WideDecimalsKeepEveryDigitAndSortAsBytes) {
  const char* low = "-12345678901234567890123456789012345.678";
  const char* high = "12345678901234567890123456789012345.678";
  const Datum a = convert(low, varChar(60), decimal(38, 3)), b = convert(high, varChar(60), decimal(38, 3));
  EXPECT_EQ(textOf(a, decimal(38, 3), varChar(60)), low);
  EXPECT_EQ(textOf(b, decimal(38, 3), varChar(60)), high);
  EXPECT_LT(a.bytes(), b.bytes());
}

TEST(Types, CommonTypeFollowsPrecedence) {
  struct Case {
    Type left, right, expected;
  };
  const std::vector<Case> cases = {
      {integer, varChar(5), integer},
      {charType(5), varChar(3), varChar(5)},
      {charType(5), charType(3), charType(5)},
      {varChar(9), {TypeId::NChar, 3}, nVarChar(9)},
      {integer, decimal(5, 2), decimal(12, 2)},
      {money, decimal(5, 2), decimal(19, 4)},
      {money, integer, money},
      {floating, decimal(38, 10), floating},
      {decimal(38, 0), decimal(10, 10), decimal(38, 0)},
      {dateTime, floating, dateTime},
      {{}, charType(4), charType(4)},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(commonType(c.left, c.right), c.expected) << describe(c.left) << ' ' << describe(c.right);
    EXPECT_EQ(commonType(c.right, c.left), c.expected);
  }
  EXPECT_EQ(errorOf([] { commonType({TypeId::Text}, integer); }), 206);
  for (const Type& type : {decimal(38, 20), varChar(8000), bigInt})
    EXPECT_EQ(unpackType(packType(type)), type);
}

TEST(Errors, TravelAsText) {
  const Error sent(8134, "Divide by zero: error \x01 '5:6'.", 15, 3);
  try {
    rethrowEncoded(encodeError(sent).c_str());
    FAIL();
  } catch (const Error& error) {
    EXPECT_EQ(error.number(), 8134);
    EXPECT_EQ(error.severity(), 15);
    EXPECT_EQ(error.state(), 3);
    EXPECT_STREQ(error.what(), sent.what());
  }
  rethrowEncoded("UNIQUE constraint failed: 1:2:3");
  rethrowEncoded("\x01zerr:1:2");
}

TEST(ResultSets, KeepValuesWhenTheyGrowAndMove) {
  std::vector<ResultColumn> columns(3);
  columns[0].type = integer;
  columns[1].type = varChar(20);
  columns[2].type = floating;
  ResultSet rows(columns);
  for (int i = 0; i < 3000; ++i) {
    rows.beginRow();
    rows.addInteger(i);
    i % 3 ? rows.addText("metin " + std::to_string(i)) : rows.addNull();
    rows.addReal(i / 2.0);
  }
  const ResultSet moved = std::move(rows);
  ASSERT_EQ(moved.rowCount(), 3000);
  for (int i = 0; i < 3000; ++i) {
    ASSERT_EQ(moved.integer(i, 0), i);
    ASSERT_EQ(moved.isNull(i, 1), i % 3 == 0);
    ASSERT_EQ(moved.text(i, 1), i % 3 ? "metin " + std::to_string(i) : "");
    ASSERT_EQ(moved.real(i, 2), i / 2.0);
  }
}

}  // namespace
}  // namespace engine
