// The checksum of a page. It lies in the last eight bytes of the page, which SQLite leaves to us.
//
//   page     = content sum
//   sum      = 8 bytes, little end first; over the content and the page's number; never 0
//
// On page 1 the mark (log_format.h) counts as zeroes: it changes without the page.
#pragma once

#include <cstddef>
#include <cstdint>

namespace engine::store {

constexpr std::size_t checksumSize = 8;

// Any change within one aligned group of eight bytes changes the sum; any other one all but surely.
std::uint64_t pageChecksum(const unsigned char* page, std::size_t size, std::uint32_t number);

// What the page itself says.
std::uint64_t storedChecksum(const unsigned char* page, std::size_t size);
void storeChecksum(unsigned char* page, std::size_t size, std::uint64_t sum);

// A page of the file that was never written.
bool isBlank(const unsigned char* page, std::size_t size);

}  // namespace engine::store
