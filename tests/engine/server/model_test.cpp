// Short walks of the campaigns, always the same ones; the programs *_campaign go on from any seed.
#include <gtest/gtest.h>

#include "campaigns/dialect/exact_cases.h"
#include "campaigns/dialect/query_cases.h"

namespace {

std::string told(const campaign::Report& report) {
  std::string out;
  for (const auto& difference : report.differences) out += difference + "\n";
  return out;
}

TEST(Model, OperatorsGiveWhatPlainArithmeticGives) {
  EXPECT_EQ(told(campaign::runArithmetic(2012, 4000)), "");
}

TEST(Model, ConversionsGiveWhatPlainArithmeticGives) {
  EXPECT_EQ(told(campaign::runConversions(2012, 4000)), "");
}

TEST(Model, AggregatesGiveWhatPlainArithmeticGives) {
  EXPECT_EQ(told(campaign::runAggregates(2012, 4000)), "");
}

TEST(Model, JoinsAndGroupingsGiveTheRowsOfNestedLoops) {
  EXPECT_EQ(told(campaign::runQueries(2012, 1500)), "");
}

}  // namespace
