// Pages and records of a data file, as SQLite's file format has them, read in place. Whatever the bytes are,
// nothing beyond them is touched: what does not fit is Malformed.
//
//   page     = [ 100 bytes of file header on page 1 ] header { cell pointer } free space { cell } reserved
//   header   = kind, first free block, cells, content begins, fragments [ , right child ]
//   cell     = [ left child ] [ payload's size ] [ rowid ] [ payload [ first overflow page ] ]
//   record   = header's size { kind of a field } { field }
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace engine::store {

struct Malformed {
  const char* why;
};

struct Cell {
  std::uint32_t child = 0;
  std::int64_t rowid = 0;
  std::uint64_t payload = 0;  // bytes in all; 0 on an interior page of a table
  const unsigned char* local = nullptr;
  std::uint32_t localSize = 0;
  std::uint32_t overflow = 0;  // the page where the payload goes on; 0: it is all here
  std::uint32_t size = 0;      // of the cell
};

class TreePage {
 public:
  // `usable`: bytes of a page without the reserved ones.
  TreePage(const unsigned char* page, std::uint32_t number, std::uint32_t usable);

  bool isLeaf() const { return leaf_; }
  bool isIndex() const { return index_; }
  int cells() const { return cells_; }
  Cell cell(int which) const;
  std::uint32_t rightChild() const;
  // Whether cells of that many bytes in all, the free blocks and the fragments fill the page exactly.
  bool isFilledBy(std::size_t cellBytes) const;

 private:
  const unsigned char* page_;
  std::uint32_t usable_, start_, pointers_, content_;
  int cells_;
  bool leaf_, index_;
};

struct Field {
  enum class Kind : std::uint8_t { Null, Integer, Real, Text, Blob };
  Kind kind = Kind::Null;
  std::int64_t integer = 0;
  double real = 0;
  std::string_view bytes;  // of a text or blob; in the payload
};

// The fields of a record whose payload is all there. The vector is used again and grows only.
std::size_t readRecord(const unsigned char* payload, std::size_t size, std::vector<Field>& fields);

std::uint32_t bigEnd32(const unsigned char* at);

}  // namespace engine::store
