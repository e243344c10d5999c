// Plans of one session by the literal-free text of their batches; least recently used ones go first.
#pragma once

#include <list>
#include <memory>
#include <string>
#include <unordered_map>

#include "engine/plan/plan.h"
#include "engine/plan/plan_statistics.h"

namespace engine {

class PlanCache {
 public:
  // The plan for the key that fits these literals, or null.
  std::shared_ptr<Plan> find(const std::string& key, const std::vector<Literal>& literals);
  void add(const std::string& key, std::shared_ptr<Plan> plan);
  void clear();
  const PlanStatistics& statistics() const { return statistics_; }

 private:
  struct Entry {
    std::string key;
    std::shared_ptr<Plan> plan;
  };
  static constexpr std::size_t capacity = 400;

  std::list<Entry> entries_;  // most recently used first
  std::unordered_multimap<std::string, std::list<Entry>::iterator> byKey_;
  PlanStatistics statistics_;
};

}  // namespace engine
