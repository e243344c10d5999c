#include <gtest/gtest.h>

#include "engine/value/convert.h"

namespace engine {
namespace {

// Scrambled passwords hold bytes that the page leaves open; losing one would lock its user out.
TEST(Cp1254, EveryByteSurvivesAColumn) {
  for (int byte = 1; byte < 256; ++byte) {
    std::string text;
    appendCharacter(text, fromCp1254(static_cast<unsigned char>(byte)));
    EXPECT_EQ(fitCp1254(text), text) << byte;
    EXPECT_EQ(toCp1254(fromCp1254(static_cast<unsigned char>(byte))), byte);
  }
}

}  // namespace
}  // namespace engine
