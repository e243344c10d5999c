// Tables of batches with what they print, for the tests of the dialect.
#pragma once

#include <vector>

#include "engine/session_fixture.h"

namespace engine::test {

class DialectTest : public SessionTest {
 protected:
  void follow(const std::vector<Step>& steps) {
    for (const Step& step : steps) EXPECT_EQ(run(step.batch), step.printed) << step.batch << "\n" << message;
  }
  // Single expressions with the text of their value.
  void values(const std::vector<Step>& expressions) {
    for (const Step& step : expressions)
      EXPECT_EQ(run("SELECT " + step.batch), step.printed + "\n") << step.batch << "\n" << message;
  }
};

}  // namespace engine::test
