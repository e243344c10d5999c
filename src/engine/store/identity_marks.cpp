#include "engine/store/identity_marks.h"

#include <algorithm>

namespace engine {

bool IdentityMarks::isUsed(std::string_view database, std::int64_t table, std::int64_t first,
                           std::int64_t step, std::int64_t& mark) const {
  const std::lock_guard lock(mutex_);
  const auto tables = databases_.find(database);
  if (tables == databases_.end()) return false;
  const auto found = tables->second.find(table);
  if (found == tables->second.end()) return false;
  mark = found->second;
  return step > 0 ? first <= mark : first >= mark;
}

void IdentityMarks::raise(std::string_view database, std::int64_t table, std::int64_t last,
                          std::int64_t step) {
  const std::lock_guard lock(mutex_);
  auto tables = databases_.find(database);
  if (tables == databases_.end()) tables = databases_.emplace(database, Tables()).first;
  const auto [found, added] = tables->second.try_emplace(table, last);
  if (!added) found->second = step > 0 ? std::max(found->second, last) : std::min(found->second, last);
}

void IdentityMarks::forget(std::string_view database, std::int64_t table) {
  const std::lock_guard lock(mutex_);
  const auto tables = databases_.find(database);
  if (tables != databases_.end()) tables->second.erase(table);
}

void IdentityMarks::forget(std::string_view database) {
  const std::lock_guard lock(mutex_);
  if (const auto tables = databases_.find(database); tables != databases_.end()) databases_.erase(tables);
}

void IdentityMarks::clear() {
  const std::lock_guard lock(mutex_);
  databases_.clear();
}

}  // namespace engine
