// The memory that one client may keep here between its requests: prepared statements, rows of cursors.
#pragma once

#include <cstddef>
#include <utility>

#include "engine/server.h"

namespace tds {

class Allowance {
 public:
  explicit Allowance(std::size_t most) : left_(most) {}
  void take(std::size_t bytes) {
    if (bytes > left_) throw engine::Error(701, "There is insufficient system memory to run this query.", 17);
    left_ -= bytes;
  }
  void give(std::size_t bytes) { left_ += bytes; }

 private:
  std::size_t left_;
};

// A part of it, which goes back with its owner.
class Share {
 public:
  Share() = default;
  explicit Share(Allowance& from) : from_(&from) {}
  Share(Share&& other) noexcept
      : from_(std::exchange(other.from_, nullptr)), taken_(std::exchange(other.taken_, 0)) {}
  Share& operator=(Share&& other) noexcept {
    std::swap(from_, other.from_);
    std::swap(taken_, other.taken_);
    return *this;
  }
  ~Share() {
    if (from_) from_->give(taken_);
  }
  void take(std::size_t bytes) {
    from_->take(bytes);
    taken_ += bytes;
  }

 private:
  Allowance* from_ = nullptr;
  std::size_t taken_ = 0;
};

}  // namespace tds
