#include "engine/store/page_map.h"

#include <utility>

namespace engine::store {

namespace {

constexpr std::size_t keptPages = 1024;
constexpr std::uint32_t lockByte = 0x40000000;  // the page that holds it stays unused

std::uint32_t childOf(const TreePage& page, int step) {
  return step == page.cells() ? page.rightChild() : page.cell(step).child;
}

}  // namespace

PageMap::PageMap(const FileShape& shape, ReadPage read)
    : shape_(shape), read_(std::move(read)), places_(shape.pages + std::size_t{1}), kept_(keptPages) {}

void PageMap::claim(std::uint32_t page, const Place& place) {
  if (page == 0 || page > shape_.pages) throw Malformed{"a reference leads out of the file"};
  if (places_[page].kind != Kind::Nobodys) throw Malformed{"a page is referred to twice"};
  places_[page] = place;
}

TreePage PageMap::inner(std::uint32_t page) {
  Kept& kept = kept_[page % keptPages];
  if (kept.page != page) {
    kept.page = 0;
    kept.bytes.resize(shape_.pageSize);
    read_(page, kept.bytes.data());
    kept.page = page;
  }
  return {kept.bytes.data(), page, shape_.usable};
}

void PageMap::addChildren(std::uint32_t parent, Kind kind, std::vector<std::uint32_t>* below) {
  const TreePage page = inner(parent);
  const std::uint32_t tree = places_[parent].tree;
  for (int step = 0; step <= page.cells(); ++step) {
    const std::uint32_t child = childOf(page, step);
    claim(child, {tree, parent, static_cast<std::uint16_t>(step), kind});
    if (below) below->push_back(child);
  }
}

void PageMap::addTree(std::uint32_t tree, std::uint32_t root, bool index) {
  claim(root, {tree, 0, 0, Kind::Inner});
  std::vector<std::uint32_t> level = {root};
  if (inner(root).isLeaf()) {
    places_[root].kind = Kind::Leaf;
    level.clear();
  }
  while (!level.empty()) {
    for (const std::uint32_t page : level)
      if (const TreePage view = inner(page); view.isLeaf() || view.isIndex() != index)
        throw Malformed{"an inner page is of another kind"};
    // All leaves lie equally deep: the first child tells it of all.
    const std::uint32_t first = childOf(inner(level.front()), 0);
    if (first == 0 || first > shape_.pages) throw Malformed{"a reference leads out of the file"};
    const bool leaves = inner(first).isLeaf();
    std::vector<std::uint32_t> below;
    for (const std::uint32_t page : level)
      addChildren(page, leaves ? Kind::Leaf : Kind::Inner, leaves ? nullptr : &below);
    level = std::move(below);
  }
}

void PageMap::addFreeList(std::uint32_t first, std::uint32_t count) {
  std::vector<unsigned char> trunk(shape_.pageSize);
  std::uint32_t found = 0;
  for (std::uint32_t page = first; page != 0; page = bigEnd32(trunk.data())) {
    claim(page, {0, 0, 0, Kind::Free});
    read_(page, trunk.data());
    const std::uint32_t leaves = bigEnd32(trunk.data() + 4);
    if (leaves > shape_.usable / 4 - 2) throw Malformed{"the list of free pages is damaged"};
    for (std::uint32_t i = 0; i < leaves; ++i)
      claim(bigEnd32(trunk.data() + 8 + std::size_t{4} * i), {0, 0, 0, Kind::Free});
    found += 1 + leaves;
  }
  if (found != count) throw Malformed{"the list of free pages is of another length"};
}

std::optional<Cell> PageMap::before(std::uint32_t page) {
  while (places_[page].parent != 0 && places_[page].step == 0) page = places_[page].parent;
  const Place& place = places_[page];
  if (place.parent == 0) return std::nullopt;
  return inner(place.parent).cell(place.step - 1);
}

std::optional<Cell> PageMap::behind(std::uint32_t page) {
  for (; places_[page].parent != 0; page = places_[page].parent) {
    const Place& place = places_[page];
    if (const TreePage above = inner(place.parent); place.step < above.cells()) return above.cell(place.step);
  }
  return std::nullopt;
}

std::optional<std::uint32_t> PageMap::orphan() const {
  for (std::uint32_t page = 1; page <= shape_.pages; ++page)
    if (places_[page].kind == Kind::Nobodys && page != lockByte / shape_.pageSize + 1) return page;
  return std::nullopt;
}

}  // namespace engine::store
