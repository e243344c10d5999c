#include "engine/store/page_format.h"

#include <cstring>

namespace engine::store {

namespace {

constexpr std::uint32_t fileHeaderSize = 100;
constexpr std::uint32_t leastCell = 4;  // what a freed cell needs to become a free block
enum : unsigned char { indexInterior = 2, tableInterior = 5, indexLeaf = 10, tableLeaf = 13 };

std::uint32_t bigEnd16(const unsigned char* at) {
  return std::uint32_t{at[0]} << 8 | at[1];
}

// A number of one to nine bytes.
std::uint64_t varint(const unsigned char*& at, const unsigned char* end) {
  std::uint64_t value = 0;
  for (int i = 0; i < 8; ++i) {
    if (at >= end) throw Malformed{"a number runs out of its page"};
    const unsigned char byte = *at++;
    value = value << 7 | (byte & 0x7F);
    if (byte < 0x80) return value;
  }
  if (at >= end) throw Malformed{"a number runs out of its page"};
  return value << 8 | *at++;
}

std::int64_t signedBigEnd(const unsigned char* at, int bytes) {
  auto value = static_cast<std::uint64_t>(static_cast<std::int64_t>(static_cast<signed char>(at[0])));
  for (int i = 1; i < bytes; ++i) value = value << 8 | at[i];
  return static_cast<std::int64_t>(value);
}

// How much of a payload that does not fit lies in the cell itself.
std::uint32_t localPart(std::uint64_t payload, std::uint32_t usable, bool tableRow) {
  const std::uint32_t most = tableRow ? usable - 35 : (usable - 12) * 64 / 255 - 23;
  if (payload <= most) return static_cast<std::uint32_t>(payload);
  const std::uint32_t least = (usable - 12) * 32 / 255 - 23;
  const auto fitting = least + static_cast<std::uint32_t>((payload - least) % (usable - 4));
  return fitting <= most ? fitting : least;
}

}  // namespace

std::uint32_t bigEnd32(const unsigned char* at) {
  return bigEnd16(at) << 16 | bigEnd16(at + 2);
}

TreePage::TreePage(const unsigned char* page, std::uint32_t number, std::uint32_t usable)
    : page_(page), usable_(usable), start_(number == 1 ? fileHeaderSize : 0) {
  const unsigned char* header = page + start_;
  const unsigned char kind = header[0];
  leaf_ = kind == indexLeaf || kind == tableLeaf;
  index_ = kind == indexLeaf || kind == indexInterior;
  if (!leaf_ && kind != indexInterior && kind != tableInterior) throw Malformed{"it is no page of a tree"};
  cells_ = static_cast<int>(bigEnd16(header + 3));
  content_ = bigEnd16(header + 5);
  if (content_ == 0) content_ = 65536;
  pointers_ = start_ + (leaf_ ? 8 : 12);
  if (content_ > usable || pointers_ + 2 * static_cast<std::uint32_t>(cells_) > content_)
    throw Malformed{"its cells do not fit"};
}

Cell TreePage::cell(int which) const {
  const std::uint32_t offset = bigEnd16(page_ + pointers_ + 2 * static_cast<std::uint32_t>(which));
  if (offset < content_ || offset + leastCell > usable_) throw Malformed{"a cell lies outside of its page"};
  const unsigned char *at = page_ + offset, *const end = page_ + usable_;
  Cell cell;
  if (!leaf_) {
    cell.child = bigEnd32(at);
    at += 4;
  }
  if (leaf_ || index_) cell.payload = varint(at, end);
  if (!index_) cell.rowid = static_cast<std::int64_t>(varint(at, end));
  if (leaf_ || index_) {
    cell.local = at;
    cell.localSize = localPart(cell.payload, usable_, !index_);
    const std::uint32_t pointer = cell.localSize < cell.payload ? 4 : 0;
    if (static_cast<std::size_t>(end - at) < cell.localSize + pointer)
      throw Malformed{"a cell runs out of its page"};
    at += cell.localSize;
    if (pointer != 0) {
      cell.overflow = bigEnd32(at);
      at += pointer;
    }
  }
  cell.size = static_cast<std::uint32_t>(at - page_) - offset;
  if (cell.size < leastCell) cell.size = leastCell;
  return cell;
}

std::uint32_t TreePage::rightChild() const {
  return leaf_ ? 0 : bigEnd32(page_ + start_ + 8);
}

bool TreePage::isFilledBy(std::size_t cellBytes) const {
  std::size_t taken = cellBytes + page_[start_ + 7];
  for (std::uint32_t block = bigEnd16(page_ + start_ + 1), last = 0; block != 0;) {
    if (block < content_ || block <= last || block + 4 > usable_) return false;
    const std::uint32_t size = bigEnd16(page_ + block + 2);
    if (size < 4 || block + size > usable_) return false;
    taken += size;
    last = block;
    block = bigEnd16(page_ + block);
  }
  return taken == usable_ - content_;
}

namespace {

// One field by its kind; `at` goes behind it.
Field readField(std::uint64_t kind, const unsigned char*& at, const unsigned char* end) {
  constexpr unsigned char widths[] = {0, 1, 2, 3, 4, 6, 8, 8, 0, 0};
  Field field;
  if (kind == 10 || kind == 11) throw Malformed{"a field is of no known kind"};
  const std::uint64_t size = kind < 12 ? widths[kind] : (kind - 12) / 2;
  if (size > static_cast<std::uint64_t>(end - at)) throw Malformed{"a field runs out of its record"};
  if (kind >= 12) {
    field.kind = kind % 2 == 0 ? Field::Kind::Blob : Field::Kind::Text;
    field.bytes = {reinterpret_cast<const char*>(at), static_cast<std::size_t>(size)};
  } else if (kind == 7) {
    const std::uint64_t bits = std::uint64_t{bigEnd32(at)} << 32 | bigEnd32(at + 4);
    field.kind = Field::Kind::Real;
    std::memcpy(&field.real, &bits, sizeof bits);
  } else if (kind != 0) {
    field.kind = Field::Kind::Integer;
    field.integer = kind >= 8 ? static_cast<std::int64_t>(kind - 8) : signedBigEnd(at, widths[kind]);
  }
  at += size;
  return field;
}

}  // namespace

std::size_t readRecord(const unsigned char* payload, std::size_t size, std::vector<Field>& fields) {
  const unsigned char *kinds = payload, *const end = payload + size;
  const std::uint64_t headerSize = varint(kinds, end);
  if (headerSize > size || payload + headerSize < kinds) throw Malformed{"a record's header does not fit"};
  const unsigned char *const kindsEnd = payload + headerSize, *at = kindsEnd;
  std::size_t count = 0;
  while (kinds < kindsEnd) {
    const std::uint64_t kind = varint(kinds, kindsEnd);
    if (count == fields.size()) fields.emplace_back();
    fields[count++] = readField(kind, at, end);
  }
  if (at != end) throw Malformed{"a record is longer than its fields"};
  return count;
}

}  // namespace engine::store
