// What a table holds, in short.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

namespace engine {

// A table's rows, and a sum over all their values that does not depend on their order. Two tables with equal
// digests hold the same rows, all but surely.
struct TableDigest {
  std::string name;
  std::int64_t rows = 0;
  std::uint64_t sum = 0;
};

// Of a copy under way: gets pages done and pages in all; false breaks off with Error 3617.
using CopyStep = std::function<bool(std::int64_t done, std::int64_t all)>;

}  // namespace engine
