#include "db/value.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

using db::Bytes;
using db::DateTime;
using db::Decimal;
using db::Value;

TEST(Literal, WritesEveryKindOfValue) {
  struct Case {
    Value value;
    std::string expected;
  };
  const Case cases[] = {
      {Value(), "NULL"},
      {Value(true), "1"},
      {Value(false), "0"},
      {Value(-7), "-7"},
      {Value(std::numeric_limits<std::int64_t>::min()), "-9223372036854775808"},
      {Value(0.1), "1e-01"},
      {Value(1234.5), "1.2345e+03"},
      {Value(std::numeric_limits<double>::infinity()), "NULL"},
      {Value(Decimal{125000, 4}), "12.5000"},
      {Value(Decimal{-5, 2}), "-0.05"},
      {Value(Decimal{7, 0}), "7"},
      {Value(Decimal{std::numeric_limits<std::int64_t>::min(), 4}), "-922337203685477.5808"},
      {Value(DateTime{2012, 1, 31, 13, 45, 0, 7}), "'20120131 13:45:00.007'"},
      {Value("Açılış Fişi"), "'Açılış Fişi'"},
      {Value("O'Neil's"), "'O''Neil''s'"},
      {Value("'; DROP TABLE STOKKART --"), "'''; DROP TABLE STOKKART --'"},
      {Value(""), "''"},
      {Value(std::string("a\0b", 3)), std::string("'a\0b'", 5)},
      {Value(Bytes{std::string("\x00\xAB", 2)}), "0x00AB"},
      {Value(Bytes{}), "0x"},
  };
  for (const auto& c : cases) EXPECT_EQ(db::literal(c.value), c.expected);
}

TEST(Literal, EscapeAddsNoQuotes) {
  EXPECT_EQ(db::escape("a'b''c"), "a''b''''c");
}

TEST(Value, ConvertsWithoutFailing) {
  struct Case {
    Value value;
    std::string text;
    std::int64_t integer;
    double real;
    bool boolean;
  };
  const Case cases[] = {
      {Value(), "", 0, 0, false},
      {Value(true), "1", 1, 1, true},
      {Value(" 42 "), " 42 ", 42, 42, true},
      {Value("12.5"), "12.5", 12, 12.5, true},
      {Value("13.5"), "13.5", 14, 13.5, true},
      {Value("12,5"), "12,5", 0, 0, false},
      {Value("+3"), "+3", 3, 3, true},
      {Value("True"), "True", 0, 0, true},
      {Value("9223372036854775807"), "9223372036854775807", INT64_MAX, 9223372036854775807.0, true},
      {Value(2.5), "2.5", 2, 2.5, true},
      {Value(1e300), "1e+300", INT64_MAX, 1e300, true},
      {Value(Decimal{25, 1}), "2.5", 2, 2.5, true},
      {Value(Decimal{-35, 1}), "-3.5", -4, -3.5, true},
      {Value(Decimal{-26, 1}), "-2.6", -3, -2.6, true},
      {Value(Decimal{3, 4}), "0.0003", 0, 0.0003, true},
      {Value(DateTime{2012, 1, 31, 5, 6, 7, 3}), "2012-01-31 05:06:07.003", 0, 0, false},
      {Value(Bytes{"\x1F"}), "0x1F", 0, 0, false},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(c.value.text(), c.text);
    EXPECT_EQ(c.value.integer(), c.integer) << c.text;
    EXPECT_DOUBLE_EQ(c.value.real(), c.real) << c.text;
    EXPECT_EQ(c.value.boolean(), c.boolean) << c.text;
  }
}

TEST(Value, TrimsBlanksAlone) {
  EXPECT_EQ(Value("  a b\t ").trimmed(), "a b\t");
  EXPECT_EQ(Value("    ").trimmed(), "");
}

}  // namespace
