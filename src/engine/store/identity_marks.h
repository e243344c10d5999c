// How far the identity values of this process have gone. A rolled back or failed INSERT takes its values
// back in the file, but not here: what was given out once is not given out again.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <string_view>

namespace engine {

class IdentityMarks {
 public:
  // Whether `first` lies where values were given out before; `mark` is then the furthest of them.
  bool isUsed(std::string_view database, std::int64_t table, std::int64_t first, std::int64_t step,
              std::int64_t& mark) const;
  void raise(std::string_view database, std::int64_t table, std::int64_t last, std::int64_t step);
  void forget(std::string_view database, std::int64_t table);
  void forget(std::string_view database);
  void clear();

 private:
  using Tables = std::map<std::int64_t, std::int64_t>;  // id of a table, its furthest value

  mutable std::mutex mutex_;
  std::map<std::string, Tables, std::less<>> databases_;
};

}  // namespace engine
