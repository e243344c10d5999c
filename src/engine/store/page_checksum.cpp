#include "engine/store/page_checksum.h"

#include <array>
#include <cstring>

#include "engine/store/log_format.h"

namespace engine::store {

namespace {

constexpr std::size_t lanes = 4;
// Odd, so that a multiplication loses nothing.
constexpr std::uint64_t spread = 0x9E3779B97F4A7C15U, fold = 0xC2B2AE3D27D4EB4FU;

std::uint64_t turned(std::uint64_t value, int bits) {
  return (value << bits) | (value >> (64 - bits));
}

std::uint64_t wordAt(const unsigned char* bytes) {
  std::uint64_t word;
  std::memcpy(&word, bytes, sizeof word);
  return word;
}

using Sums = std::array<std::uint64_t, lanes>;

void add(Sums& sums, const unsigned char* bytes, std::size_t size) {
  const std::size_t step = lanes * sizeof(std::uint64_t);
  std::size_t at = 0;
  for (; at + step <= size; at += step)
    for (std::size_t lane = 0; lane < lanes; ++lane)
      sums[lane] = turned(sums[lane] ^ (wordAt(bytes + at + lane * 8) * spread), 29) * fold;
  for (std::size_t lane = 0; at + 8 <= size; at += 8, ++lane)
    sums[lane] = turned(sums[lane] ^ (wordAt(bytes + at) * spread), 29) * fold;
}

}  // namespace

std::uint64_t pageChecksum(const unsigned char* page, std::size_t size, std::uint32_t number) {
  Sums sums{number, spread, fold, size};
  // A multiple of the step, beyond the mark.
  constexpr std::size_t head = 128;
  std::size_t from = 0;
  if (number == 1) {
    std::array<unsigned char, head> start;
    std::memcpy(start.data(), page, head);
    std::memset(start.data() + markOffset, 0, markSize);
    add(sums, start.data(), head);
    from = head;
  }
  add(sums, page + from, size - checksumSize - from);
  std::uint64_t sum = 0;
  for (std::size_t lane = 0; lane < lanes; ++lane) sum += turned(sums[lane], static_cast<int>(1 + 13 * lane));
  sum = (sum ^ (sum >> 31)) * spread;
  sum ^= sum >> 29;
  return sum == 0 ? 1 : sum;
}

std::uint64_t storedChecksum(const unsigned char* page, std::size_t size) {
  std::uint64_t sum = 0;
  for (std::size_t i = 0; i < checksumSize; ++i)
    sum |= static_cast<std::uint64_t>(page[size - checksumSize + i]) << (8 * i);
  return sum;
}

void storeChecksum(unsigned char* page, std::size_t size, std::uint64_t sum) {
  for (std::size_t i = 0; i < checksumSize; ++i)
    page[size - checksumSize + i] = static_cast<unsigned char>(sum >> (8 * i));
}

bool isBlank(const unsigned char* page, std::size_t size) {
  return page[0] == 0 && std::memcmp(page, page + 1, size - 1) == 0;
}

}  // namespace engine::store
