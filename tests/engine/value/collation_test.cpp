#include "engine/value/collation.h"

#include <gtest/gtest.h>
#include <unicode/ucol.h>

#include <random>
#include <vector>

#include "engine/value/convert.h"

namespace engine {
namespace {

int sign(int value) {
  return (value > 0) - (value < 0);
}

TEST(Collation, EqualsByTurkishRules) {
  const std::vector<std::tuple<const char*, const char*, bool>> cases = {
      {"ısı", "ISI", true},     {"isi", "İSİ", true},    {"isi", "ISI", false},      {"ş", "s", false},
      {"ÇAĞRI", "çağrı", true}, {"abc", "abc   ", true}, {"", "   ", true},          {" a", "a", false},
      {"kâr", "kar", false},    {"KÂR", "kâr", true},    {"Straße", "STRAßE", true}, {"a-b", "ab", false},
      {"€5", "€5 ", true},
  };
  for (const auto& [left, right, equal] : cases) {
    EXPECT_EQ(equalText(left, right), equal) << left << " and " << right;
    EXPECT_EQ(foldKey(left) == foldKey(right), equal) << left << " and " << right;
  }
}

TEST(Collation, OrdersTheTurkishAlphabet) {
  const std::vector<const char*> order = {"",  " a", "0", "9", "a", "A b", "ab", "b", "c",
                                          "ç", "d",  "g", "ğ", "h", "ı",   "i",  "j", "o",
                                          "ö", "p",  "s", "ş", "t", "u",   "ü",  "v", "z"};
  for (std::size_t i = 1; i < order.size(); ++i) {
    EXPECT_LT(compareText(order[i - 1], order[i]), 0) << order[i - 1] << " < " << order[i];
    EXPECT_GT(compareText(order[i], order[i - 1]), 0);
  }
  EXPECT_LT(compareText("kar", "kâr"), 0);
  EXPECT_LT(compareText("kâr", "kara"), 0) << "an accent weighs less than a letter";
}

// The reference is ICU itself, on texts of every character of the code page.
TEST(Collation, FastPathAgreesWithIcu) {
  UErrorCode status = U_ZERO_ERROR;
  UCollator* icu = ucol_open("tr", &status);
  ucol_setStrength(icu, UCOL_SECONDARY);
  std::mt19937 random(7);
  const char* close = "aAâàeEéiİıIîoöÖuüÜsSşŞcCçgGğ -_'1²ªß";
  for (int i = 0; i < 40000; ++i) {
    std::string texts[2];
    for (std::string& text : texts) {
      for (int n = static_cast<int>(random() % 5); n >= 0; --n) {
        if (i % 2) {
          appendCharacter(text, fromCp1254(static_cast<unsigned char>(random() % 255 + 1)));
        } else {
          const std::size_t at = characterOffset(close, static_cast<int>(random() % characterCount(close)));
          std::size_t end = at;
          text += std::string_view(close).substr(at, (nextCharacter(close, end), end - at));
        }
      }
      while (!text.empty() && text.back() == ' ') text.pop_back();
    }
    const int expected = ucol_strcollUTF8(icu, texts[0].data(), static_cast<int>(texts[0].size()),
                                          texts[1].data(), static_cast<int>(texts[1].size()), &status);
    ASSERT_EQ(sign(compareText(texts[0], texts[1])), expected) << '[' << texts[0] << "] [" << texts[1] << ']';
  }
  ucol_close(icu);
}

TEST(Collation, ChangesCaseTheTurkishWay) {
  EXPECT_EQ(upperText("iıçşğüö âéß µÿ x"), "İIÇŞĞÜÖ ÂÉß µŸ X");
  EXPECT_EQ(lowerText("İIÇŞĞÜÖ ÂÉ X"), "iıçşğüö âé x");
}

struct LikeCase {
  const char* text;
  const char* pattern;
  bool matches;
  char escape = 0;
};

TEST(Collation, Like) {
  const std::vector<LikeCase> cases = {
      {"abc", "abc", true},
      {"abc   ", "abc", true},
      {"abc", "abc ", false},
      {"abc", "a%", true},
      {"abc", "%c", true},
      {"abc  ", "%c", true},
      {"abc", "a_c", true},
      {"aşc", "a_c", true},
      {"abc", "a__c", false},
      {"ISI", "ısı", true},
      {"ISI", "isi", false},
      {"İSİM", "isim%", true},
      {"abc", "[a-c]bc", true},
      {"ABC", "[a-c]bc", true},
      {"dbc", "[a-c]bc", false},
      {"dbc", "[^a-c]bc", true},
      {"şap", "[s-t]ap", true},
      {"a-b", "a[-x]b", true},
      {"a]b", "a]b", true},
      {"50%", "50!%", true, '!'},
      {"505", "50!%", false, '!'},
      {"50%", "50[%]", true},
      {"a", "[]", false},
      {"a", "[a", false},
      {"", "", true},
      {"", "%", true},
      {"a", "", false},
      {"IP_KN1", "IP_KN%", true},
      {"aXbXc", "a%X%c", true},
      {"mississippi", "m%iss%ip%i", true},
      {"a^", "a[x^]", true},
      {"abc", "%%%c", true},
      {"a b", "a[ ]b", true},
      {"a!", "a!", false, '!'},
  };
  for (const auto& c : cases)
    EXPECT_EQ(likeMatch(c.text, c.pattern, c.escape ? std::optional<char32_t>(c.escape) : std::nullopt),
              c.matches)
        << c.text << " LIKE " << c.pattern;
}

TEST(Collation, LikeDoesNotExplode) {
  const std::string text(8000, 'a');
  std::string pattern;
  for (int i = 0; i < 100; ++i) pattern += "%a";
  EXPECT_TRUE(likeMatch(text, pattern));
  EXPECT_FALSE(likeMatch(text, pattern + "%b"));
}

TEST(Collation, FindsAndReplaces) {
  EXPECT_EQ(findText("I", "kırıi"), 2);
  EXPECT_EQ(findText("ı", "kırı", 3), 4);
  EXPECT_EQ(findText("İ", "kırı"), 0);
  EXPECT_EQ(findText("", "abc"), 0);
  EXPECT_EQ(findText("bc", "şbc"), 2);
  EXPECT_EQ(findText("a", "abc", 9), 0);
  EXPECT_EQ(findPattern("%[0-9]%", "şube12"), 5);
  EXPECT_EQ(findPattern("ş%", "şube"), 1);
  EXPECT_EQ(findPattern("ube", "şube"), 0);
  EXPECT_EQ(findPattern("%be", "şube"), 3);
  EXPECT_EQ(replaceText("Kırmızı", "I", "-"), "K-rm-z-");
  EXPECT_EQ(replaceText("aaa", "aa", "b"), "ba");
}

}  // namespace
}  // namespace engine
