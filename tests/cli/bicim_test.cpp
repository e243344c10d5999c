#include <gtest/gtest.h>

#include <sstream>

#include "cli/sonuc_yaz.h"
#include "cli/yiginlar.h"
#include "support/fakes.h"

namespace {

using namespace cli;
using db::FieldType;

db::FieldInfo field(std::string name, FieldType type, int scale = 0) {
  db::FieldInfo info;
  info.name = std::move(name);
  info.type = type;
  info.scale = scale;
  return info;
}

TEST(Yiginlar, SplitsAtGoLines) {
  struct Case {
    const char* script;
    std::vector<std::pair<std::string, int>> batches;
  };
  const Case cases[] = {
      {"SELECT 1", {{"SELECT 1", 1}}},
      {"SELECT 1\nGO\nSELECT 2\ngo\n", {{"SELECT 1", 1}, {"SELECT 2", 1}}},
      {"A\r\n  Go \r\nB", {{"A", 1}, {"B", 1}}},
      {"A\n\n\nGO", {{"A\n\n", 1}}},
      {"A\nGO 3\nB\nGO\t2", {{"A", 3}, {"B", 2}}},
      {"A\nGO 0\nB", {{"A", 0}, {"B", 1}}},
      {"GOTO x\nGO5\nGO x\nGO;\n-- GO\nSELECT 'GO'", {{"GOTO x\nGO5\nGO x\nGO;\n-- GO\nSELECT 'GO'", 1}}},
      {"GO\n \nGO\n\t\n", {}},
      {"", {}},
  };
  for (const Case& c : cases) {
    std::vector<std::pair<std::string, int>> got;
    for (const auto& batch : yiginlaraBol(c.script)) got.emplace_back(batch.metin, batch.tekrar);
    EXPECT_EQ(got, c.batches) << c.script;
  }
}

TEST(Yiginlar, FirstLineWithText) {
  EXPECT_EQ(ilkSatir("\n \r\n  SELECT 1\r\nFROM x"), "  SELECT 1");
  EXPECT_EQ(ilkSatir("SELECT 1"), "SELECT 1");
}

TEST(Bicim, ValuesByType) {
  struct Case {
    FieldType type;
    int scale;
    db::Value value;
    const char* text;
  };
  const Case cases[] = {
      {FieldType::Int, 0, {}, "NULL"},
      {FieldType::Bit, 0, true, "1"},
      {FieldType::Bit, 0, false, "0"},
      {FieldType::BigInt, 0, std::int64_t{-9223372036854775807LL - 1}, "-9223372036854775808"},
      {FieldType::Float, 0, 0.1, "0.1"},
      {FieldType::Float, 0, 1.0 / 3, "0.3333333333333333"},
      {FieldType::Float, 0, 100000.0, "100000"},
      {FieldType::Float, 0, -1e20, "-1e+20"},
      {FieldType::Float, 0, 1e-7, "1e-07"},
      {FieldType::Float, 0, 0.0, "0"},
      {FieldType::Real, 0, static_cast<double>(0.1F), "0.1"},
      {FieldType::Real, 0, 16777215.0, "16777215"},
      {FieldType::Money, 4, db::Decimal{12345, 4}, "1.2345"},
      {FieldType::Money, 4, db::Decimal{-5, 4}, "-0.0005"},
      {FieldType::SmallMoney, 4, db::Decimal{10, 0}, "10.0000"},
      {FieldType::Decimal, 2, db::Decimal{5, 0}, "5.00"},
      {FieldType::Decimal, 0, db::Decimal{5, 0}, "5"},
      {FieldType::Decimal, 1, db::Decimal{std::int64_t{-9223372036854775807LL - 1}, 1},
       "-922337203685477580.8"},
      {FieldType::DateTime, 0, db::DateTime{2012, 1, 2, 3, 4, 5, 7}, "2012-01-02 03:04:05.007"},
      {FieldType::SmallDateTime, 0, db::DateTime{2012, 1, 2, 3, 4, 0, 0}, "2012-01-02 03:04:00.000"},
      {FieldType::Char, 0, "  ad   ", "  ad"},
      {FieldType::Char, 0, "    ", ""},
      {FieldType::VarChar, 0, "ad  ", "ad  "},
      {FieldType::VarBinary, 0, db::Bytes{std::string("\x00\xAF", 2)}, "0x00AF"},
  };
  for (const Case& c : cases) EXPECT_EQ(degerMetni(c.value, field("a", c.type, c.scale)), c.text) << c.text;
}

support::FakeRows sample() {
  return {{field("Ad", FieldType::Char), field("", FieldType::Int), field("Ad", FieldType::VarChar)},
          {{"şeker  ", 5, "a\tb\nc\rd\\e\"f"}, {db::Value(), 12345, db::Value()}}};
}

std::string written(Bicim bicim) {
  std::ostringstream out;
  sonucYaz(out, sample(), bicim);
  return out.str();
}

TEST(Bicim, Tsv) {
  EXPECT_EQ(written(Bicim::Tsv), "Ad\t\tAd\nşeker\t5\ta\\tb\\nc\\rd\\\\e\"f\nNULL\t12345\tNULL\n");
}

TEST(Bicim, TabloAlignsByCharactersNotBytes) {
  EXPECT_EQ(written(Bicim::Tablo),
            "Ad            Ad\n"
            "-----  -----  ---------------\n"
            "şeker      5  a\\tb\\nc\\rd\\\\e\"f\n"
            "NULL   12345  NULL\n");
}

TEST(Bicim, Json) {
  EXPECT_EQ(written(Bicim::Json),
            "[\n  {\"Ad\": \"şeker\", \"kolon2\": 5, \"Ad_3\": \"a\\u0009b\\u000ac\\u000dd\\\\e\\\"f\"},\n"
            "  {\"Ad\": null, \"kolon2\": 12345, \"Ad_3\": null}\n]\n");
  std::ostringstream out;
  sonucYaz(out, support::FakeRows({field("a", FieldType::Int)}, {}), Bicim::Json);
  EXPECT_EQ(out.str(), "[]\n");
}

}  // namespace
