// Whose each page of a data file is, as the inner pages of its trees tell it before the others have been
// read.
#pragma once

#include <functional>
#include <optional>
#include <vector>

#include "engine/store/page_format.h"

namespace engine::store {

// Reads a page; Malformed when it cannot be read or does not fit its checksum.
using ReadPage = std::function<void(std::uint32_t page, unsigned char* to)>;

struct FileShape {
  std::uint32_t pages = 0, pageSize = 0, usable = 0;
};

class PageMap {
 public:
  enum class Kind : std::uint8_t { Nobodys, Leaf, Inner, Overflow, Free };
  struct Place {
    std::uint32_t tree = 0, parent = 0;
    std::uint16_t step = 0;  // which of the parent's children it is
    Kind kind = Kind::Nobodys;
  };

  PageMap(const FileShape& shape, ReadPage read);

  // Reads the inner pages; of the others it knows that they must be leaves. Malformed when a page would
  // have two owners, here and below.
  void addTree(std::uint32_t tree, std::uint32_t root, bool index);
  void addFreeList(std::uint32_t first, std::uint32_t count);
  void addOverflow(std::uint32_t page) { claim(page, {0, 0, 0, Kind::Overflow}); }

  const Place& at(std::uint32_t page) const { return places_[page]; }
  // The keys of the tree that stand on both sides of what the page holds; good until the next call.
  std::optional<Cell> before(std::uint32_t page);
  std::optional<Cell> behind(std::uint32_t page);
  // A page that belongs to nobody.
  std::optional<std::uint32_t> orphan() const;

 private:
  void claim(std::uint32_t page, const Place& place);
  void addChildren(std::uint32_t parent, Kind kind, std::vector<std::uint32_t>* inner);
  TreePage inner(std::uint32_t page);

  struct Kept {
    std::uint32_t page = 0;
    std::vector<unsigned char> bytes;
  };
  FileShape shape_;
  ReadPage read_;
  std::vector<Place> places_;
  std::vector<Kept> kept_;  // inner pages that were looked at last
};

}  // namespace engine::store
