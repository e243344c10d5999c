#include "engine/catalog/catalog.h"

namespace engine {

std::string foldName(std::string_view name) {
  std::string folded(name);
  for (char& c : folded)
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  return folded;
}

namespace {
bool sameName(std::string_view left, std::string_view right) {
  if (left.size() != right.size()) return false;
  const auto fold = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c; };
  for (std::size_t i = 0; i < left.size(); ++i)
    if (fold(left[i]) != fold(right[i])) return false;
  return true;
}
}  // namespace

int TableInfo::columnIndex(std::string_view wanted) const {
  for (std::size_t i = 0; i < columns.size(); ++i)
    if (sameName(columns[i].name, wanted)) return static_cast<int>(i);
  return -1;
}

int TableInfo::identityColumn() const {
  for (std::size_t i = 0; i < columns.size(); ++i)
    if (columns[i].identity) return static_cast<int>(i);
  return -1;
}

bool isKnownOwner(std::string_view owner) {
  return owner.empty() || foldName(owner) == "dbo";
}

const TableInfo* DatabaseCatalog::table(std::string_view wanted) const {
  return tables.find(foldName(wanted)).get();
}

const ViewInfo* DatabaseCatalog::view(std::string_view wanted) const {
  return views.find(foldName(wanted)).get();
}

}  // namespace engine
