// 64 bits of everything that was added, in its order.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace engine::store {

class Mix {
 public:
  void add(std::uint64_t value) {
    sum_ = (sum_ ^ value) * 0x9E3779B97F4A7C15;
    sum_ ^= sum_ >> 29;
  }
  void add(const void* bytes, std::size_t size) {
    const auto* at = static_cast<const unsigned char*>(bytes);
    add(static_cast<std::uint64_t>(size));
    std::uint64_t word = 0;
    for (; size >= sizeof word; at += sizeof word, size -= sizeof word) {
      std::memcpy(&word, at, sizeof word);
      add(word);
    }
    if (size == 0) return;
    word = 0;
    std::memcpy(&word, at, size);
    add(word);
  }
  void add(double value) {
    std::uint64_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    add(bits);
  }
  std::uint64_t sum() const { return sum_; }

 private:
  std::uint64_t sum_ = 0x2545F4914F6CDD1D;
};

}  // namespace engine::store
