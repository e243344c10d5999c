#include "tds/bytes.h"

#include <algorithm>

#include "engine/server.h"

namespace tds {

namespace {

constexpr char32_t firstHigh = 0xD800, firstLow = 0xDC00, lastLow = 0xDFFF, plane = 0x10000, broken = 0xFFFD;

void putUnit(std::string& to, char32_t unit) {
  to += static_cast<char>(unit & 0xFF);
  to += static_cast<char>(unit >> 8);
}

}  // namespace

void ByteReader::seek(std::size_t position) {
  if (position > data_.size()) throw ProtocolError("a field lies behind the end of its message");
  at_ = position;
}

std::string_view ByteReader::bytes(std::size_t count) {
  if (count > left()) throw ProtocolError("a message ends within a field");
  const std::string_view found = data_.substr(at_, count);
  at_ += count;
  return found;
}

std::uint64_t ByteReader::number(std::size_t size) {
  const std::string_view raw = bytes(size);
  std::uint64_t value = 0;
  for (std::size_t i = size; i-- > 0;) value = value << 8 | static_cast<unsigned char>(raw[i]);
  return value;
}

std::string ByteReader::text(std::size_t lengthSize) {
  return fromUtf16(bytes(2 * number(lengthSize)));
}

void putNumber(std::string& to, std::uint64_t value, std::size_t size) {
  for (std::size_t i = 0; i < size; ++i) to += static_cast<char>(value >> (8 * i));
}

void putText(std::string& to, std::string_view utf8, std::size_t lengthSize) {
  std::string units;
  appendUtf16(units, utf8);
  const std::size_t most = lengthSize == 1 ? 255 : 4000;
  if (units.size() > 2 * most) units.resize(2 * most);
  putNumber(to, units.size() / 2, lengthSize);
  to += units;
}

void appendUtf16(std::string& to, std::string_view utf8) {
  for (std::size_t i = 0; i < utf8.size();) {
    if (static_cast<unsigned char>(utf8[i]) < 0x80) {
      to += utf8[i++];
      to += '\0';
      continue;
    }
    const char32_t c = engine::nextCharacter(utf8, i);
    if (c < plane) {
      putUnit(to, c);
    } else {
      putUnit(to, firstHigh + ((c - plane) >> 10));
      putUnit(to, firstLow + ((c - plane) & 0x3FF));
    }
  }
}

std::string fromUtf16(std::string_view utf16) {
  std::string out;
  out.reserve(utf16.size() / 2);
  const auto unit = [&](std::size_t at) {
    return static_cast<char32_t>(static_cast<unsigned char>(utf16[at]) |
                                 static_cast<unsigned char>(utf16[at + 1]) << 8);
  };
  for (std::size_t i = 0; i + 1 < utf16.size(); i += 2) {
    char32_t c = unit(i);
    if (c < 0x80) {
      out += static_cast<char>(c);
      continue;
    }
    if (c >= firstHigh && c <= lastLow) {
      const bool pair =
          c < firstLow && i + 3 < utf16.size() && unit(i + 2) >= firstLow && unit(i + 2) <= lastLow;
      c = pair ? plane + ((c - firstHigh) << 10) + (unit(i + 2) - firstLow) : broken;
      if (pair) i += 2;
    }
    engine::appendCharacter(out, c);
  }
  return out;
}

void appendCp1254(std::string& to, std::string_view utf8) {
  for (std::size_t i = 0; i < utf8.size();) {
    if (static_cast<unsigned char>(utf8[i]) < 0x80) {
      to += utf8[i++];
      continue;
    }
    const int byte = engine::toCp1254(engine::nextCharacter(utf8, i));
    to += byte < 0 ? '?' : static_cast<char>(byte);
  }
}

std::string fromCp1254(std::string_view bytes) {
  std::string out;
  out.reserve(bytes.size());
  for (const char c : bytes) {
    if (static_cast<unsigned char>(c) < 0x80)
      out += c;
    else
      engine::appendCharacter(out, engine::fromCp1254(static_cast<unsigned char>(c)));
  }
  return out;
}

}  // namespace tds
