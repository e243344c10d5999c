// The little-endian fields that messages are made of.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

namespace tds {

// What a client sent is no message of the protocol: the connection ends.
class ProtocolError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// Reads a message; every read that would leave it throws ProtocolError.
class ByteReader {
 public:
  explicit ByteReader(std::string_view data) : data_(data) {}

  std::size_t left() const { return data_.size() - at_; }
  bool atEnd() const { return left() == 0; }
  std::size_t position() const { return at_; }
  void seek(std::size_t position);
  std::string_view bytes(std::size_t count);
  std::uint64_t number(std::size_t size);
  std::uint8_t u8() { return static_cast<std::uint8_t>(number(1)); }
  std::uint16_t u16() { return static_cast<std::uint16_t>(number(2)); }
  std::uint32_t u32() { return static_cast<std::uint32_t>(number(4)); }
  std::uint64_t u64() { return number(8); }
  // Characters in UTF-16, behind their count in `lengthSize` bytes; as UTF-8.
  std::string text(std::size_t lengthSize);

 private:
  std::string_view data_;
  std::size_t at_ = 0;
};

void putNumber(std::string& to, std::uint64_t value, std::size_t size);
// Characters in UTF-16 behind their count; cut at what the count can tell.
void putText(std::string& to, std::string_view utf8, std::size_t lengthSize);

void appendUtf16(std::string& to, std::string_view utf8);
std::string fromUtf16(std::string_view utf16);  // an odd last byte is left out
// Code page 1254, what it lacks as '?'.
void appendCp1254(std::string& to, std::string_view utf8);
std::string fromCp1254(std::string_view bytes);

}  // namespace tds
