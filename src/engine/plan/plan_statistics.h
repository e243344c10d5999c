// How often a session found a plan for a batch's literal-free text.
#pragma once

#include <cstdint>

namespace engine {

struct PlanStatistics {
  std::int64_t hits = 0, misses = 0;
};

}  // namespace engine
