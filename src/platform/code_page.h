// Code page 1254 (Turkish), the single-byte page of the suite's data. Bytes that the page leaves undefined
// stand for the control characters of the same number, so that all 256 bytes survive a round trip.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace platform {

std::optional<std::uint8_t> byteOf(char32_t character);
char32_t characterOf(std::uint8_t byte);

// UTF-8 to bytes; a character outside the page becomes '?'.
std::string encode1254(std::string_view utf8);
// UTF-8 to bytes; empty when a character is outside the page or the text is no UTF-8.
std::optional<std::string> encode1254Exactly(std::string_view utf8);
std::string decode1254(std::string_view bytes);

bool isUtf8(std::string_view text);
// Code points of a UTF-8 text; a broken sequence gives U+FFFD.
std::u32string toUtf32(std::string_view utf8);
std::string toUtf8(std::u32string_view text);

}  // namespace platform
