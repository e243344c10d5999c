// Numbers of chance that are the same on every machine (splitmix64).
#pragma once

#include <cstdint>
#include <iterator>

namespace campaign {

class Chance {
 public:
  explicit Chance(std::uint64_t seed) : state_(seed) {}

  std::uint64_t next() {
    std::uint64_t mixed = state_ += 0x9E3779B97F4A7C15ULL;
    mixed = (mixed ^ (mixed >> 30)) * 0xBF58476D1CE4E5B9ULL;
    mixed = (mixed ^ (mixed >> 27)) * 0x94D049BB133111EBULL;
    return mixed ^ (mixed >> 31);
  }
  int below(int end) { return static_cast<int>(next() % static_cast<std::uint64_t>(end)); }
  int between(int first, int last) { return first + below(last - first + 1); }
  bool oneIn(int n) { return below(n) == 0; }
  template <class List>
  const auto& of(const List& list) {
    return *std::next(std::begin(list), below(static_cast<int>(std::size(list))));
  }

 private:
  std::uint64_t state_;
};

}  // namespace campaign
