#include "session/alan_gecis.h"

#include <gtest/gtest.h>

namespace {

using namespace session;

const std::vector<GecisAlani> form = {{"Firma_Adi", {}, true, true}, {"Firma_Kodu", {}, false, true},
                                      {"Adres", {}, true, false},    {"Txt", 0, true, true},
                                      {"Txt", 1, true, true},        {"KaydetBtn", {}, true, true}};

struct Case {
  const char* tag;
  int key;
  int target;  // -1: nothing happens
};

TEST(AlanGecis, TargetsByTagMap) {
  const Case cases[] = {{"a;Firma_Adi;c;KaydetBtn", 40, 5},
                        {"a;Firma_Adi;c;KaydetBtn", 13, 5},  // Enter acts like down
                        {"a;Firma_Adi;c;KaydetBtn", 38, 0},
                        {"firma_adı;;;", 37, -1},  // dotless: another name
                        {"firma_adi;;;", 37, 0},
                        {";;;Firma_Kodu|KaydetBtn", 40, 5},  // disabled: next candidate
                        {";;;Adres|Txt(1)", 40, 4},          // enabled but hidden: next candidate
                        {";;;Adres|Firma_Kodu", 40, -1},
                        {";;Txt(0);", 39, 3},
                        {";;Txt;", 39, 3},
                        {";;Txt(7);", 39, -1},
                        {";;;KaydetBtn", 65, -1},
                        {"KaydetBtn", 40, -1},  // the part is missing
                        {"", 40, -1}};
  for (const Case& c : cases) {
    const auto target = alanGecis(form, {c.tag, 0, 0, false}, c.key);
    EXPECT_EQ(target ? static_cast<int>(*target) : -1, c.target) << c.tag << " " << c.key;
  }
}

TEST(AlanGecis, LeftAndRightStayInTheTextUntilItsEnd) {
  const std::string_view tag = "KaydetBtn;KaydetBtn;KaydetBtn;KaydetBtn";
  const auto moves = [&](int key, int caret, bool flag) {
    return alanGecis(form, {tag, caret, 5, flag}, key).has_value();
  };
  EXPECT_FALSE(moves(37, 1, true));
  EXPECT_TRUE(moves(37, 0, true));
  EXPECT_FALSE(moves(39, 4, true));
  EXPECT_TRUE(moves(39, 5, true));
  EXPECT_TRUE(moves(37, 3, false));
  EXPECT_TRUE(moves(40, 3, true));
}

}  // namespace
