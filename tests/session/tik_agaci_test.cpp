#include "session/tik_agaci.h"

#include <gtest/gtest.h>

namespace {

using session::TikAgaci;

// a( b( c( d e ) f( d e ) ) g ) h, rows 0 to 9: a b c d e f d e g h
TikAgaci agac(const std::string& ticks = "0000000000") {
  TikAgaci tree(
      {{1, "a"}, {2, "b"}, {3, "c"}, {4, "d"}, {4, "e"}, {3, "f"}, {4, "d"}, {4, "e"}, {2, "g"}, {1, "h"}});
  for (int i = 0; i < tree.boy(); ++i) tree.koy(i, ticks[static_cast<std::size_t>(i)] == '1');
  return tree;
}
std::string ticks(const TikAgaci& tree) {
  std::string out;
  for (const auto tick : tree.isaretler()) out += tick ? '1' : '0';
  return out;
}

TEST(TikAgaci, AChangeSpreadsDownAndUp) {
  const struct {
    const char* before;
    int row;
    bool state;
    const char* after;
  } cases[] = {
      {"0000000000", 3, true, "1111000000"},   // an action turns on document, family and branch
      {"0000000000", 2, true, "1111100000"},   // a document its actions, and upwards
      {"0000000000", 1, true, "1111111100"},   // a family
      {"0000000000", 0, true, "1111111110"},   // a branch; its neighbour stays
      {"0000000000", 9, true, "0000000001"},   // a row alone
      {"1111000000", 3, false, "0000000000"},  // the last tick takes all above with it
      {"1111100000", 3, false, "1110100000"},  // a neighbour keeps the document
      {"1111011000", 3, false, "1100011000"},  // another document keeps the family
      {"1111000010", 3, false, "1000000010"},  // another family keeps the branch
      {"1111111110", 0, false, "0000000000"}, {"1111111111", 1, false, "1000000011"},
      {"0001000000", 4, true, "1111100000"},  // a branch that was off with a tick below comes on
  };
  for (const auto& c : cases) {
    TikAgaci tree = agac(c.before);
    tree.degistir(c.row, c.state);
    EXPECT_EQ(ticks(tree), c.after) << c.before << " " << c.row << " " << c.state;
  }
}

TEST(TikAgaci, ACaptionIsAppliedToItsRowsAndTheirParentsAlone) {
  TikAgaci tree = agac();
  tree.yaziyaUygula("d", true);
  EXPECT_EQ(ticks(tree), "0011011000");
  tree.koy(4, true);
  tree.yaziyaUygula("d", false);
  EXPECT_EQ(ticks(tree), "0010100000");
}

TEST(TikAgaci, ParentsFollowFromWhatLiesBelow) {
  TikAgaci tree = agac("1000001000");
  tree.babalariTuret(false);
  EXPECT_EQ(ticks(tree), "1100011000");
  tree = agac("0110000001");
  tree.babalariTuret(true);
  EXPECT_EQ(ticks(tree), "0000000001");
}

TEST(TikAgaci, RowsKnowTheirPlace) {
  const TikAgaci tree = agac();
  EXPECT_EQ(tree.cocuklar(-1), (std::vector<int>{0, 9}));
  EXPECT_EQ(tree.cocuklar(0), (std::vector<int>{1, 8}));
  EXPECT_EQ(tree.cocuklar(1), (std::vector<int>{2, 5}));
  EXPECT_EQ(tree.baba(7), 5);
  EXPECT_EQ(tree.altSon(1), 8);
  EXPECT_THROW(TikAgaci({{1, "a"}, {3, "b"}}), std::invalid_argument);
  EXPECT_THROW(TikAgaci({{0, "a"}}), std::invalid_argument);
}

}  // namespace
