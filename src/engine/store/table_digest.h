// What a table holds, in short.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace engine {

// A table's rows, and a sum over all their values that does not depend on their order. Two tables with equal
// digests hold the same rows, all but surely.
struct TableDigest {
  std::string name;
  std::int64_t rows = 0;
  std::uint64_t sum = 0;
};

// What one reading of a whole data file has found.
struct DataFindings {
  bool told = false;                // false: an object is not the engine's own, and this way says nothing
  std::string doubt;                // empty: all is well
  std::vector<TableDigest> tables;  // in order of their names, when all is well
};

// Of a copy under way: gets what is done and what is to do in all; false breaks off with Error 3617.
using CopyStep = std::function<bool(std::int64_t done, std::int64_t all)>;

}  // namespace engine
