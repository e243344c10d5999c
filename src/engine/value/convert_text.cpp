// Everything that becomes text or bytes.
#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdio>

#include "engine/value/convert_detail.h"
#include "engine/value/decimal.h"
#include "engine/value/error.h"

namespace engine {
namespace {

void trimRight(std::string& text) {
  while (!text.empty() && text.back() == ' ') text.pop_back();
}

void padTo(std::string& text, std::int64_t width) {
  if (const std::int64_t missing = width - characterCount(text); missing > 0)
    text.append(static_cast<std::size_t>(missing), ' ');
}

// A text of the server in the width and code page of another text type.
Datum fitText(std::string text, const Type& to, bool assignment) {
  if (!isLongText(to.id) && text.size() > to.length) {
    const std::size_t end = characterOffset(text, to.length);
    if (assignment && text.find_first_not_of(' ', end) != text.npos) throwTruncated();
    text.resize(end);
  }
  if (isFixedText(to.id)) trimRight(text);
  return text;
}

Datum textToText(const Datum& value, const Type& from, const Type& to, bool assignment) {
  std::string text = isUnicode(from.id) && !isUnicode(to.id) ? fitCp1254(value.text()) : value.text();
  if (isFixedText(from.id) && !isFixedText(to.id)) padTo(text, from.length);
  return fitText(std::move(text), to, assignment);
}

// An exponent of three digits, as the server writes it.
std::string scientific(const char* form, double value) {
  std::array<char, 64> buffer;
  std::snprintf(buffer.data(), buffer.size(), form, value);
  std::string text = buffer.data();
  const auto mark = text.find('e');
  if (mark != text.npos && text.size() - mark == 4) text.insert(mark + 2, "0");
  return text;
}

std::string floatText(double value, int style) {
  if (value == 0) value = 0;  // no "-0"
  if (style == 1) return scientific("%.7e", value);
  return scientific(style == 2 ? "%.15e" : "%.6g", value);
}

std::string moneyText(std::int64_t value, int style) {
  if (style == 2 || style == 126) return decimalText(value, 4);
  Int128 rounded = value;
  rescale(rounded, 4, 2);
  std::string text = decimalText(rounded, 2);
  if (style != 1) return text;
  const std::size_t first = text[0] == '-' ? 1 : 0;
  for (std::size_t at = text.size() - 3; at > first + 3; at -= 3) text.insert(at - 3, ",");
  return text;
}

std::string naturalText(const Datum& value, const Type& from, int style) {
  if (isDateTime(from.id)) return formatDateTime(value.integer(), from, style);
  if (isMoney(from.id)) return moneyText(value.integer(), style);
  if (isApproximate(from.id)) return floatText(value.real(), style);
  if (from.id == TypeId::Decimal) return decimalText(decimalValue(value), from.scale);
  return std::to_string(value.integer());
}

Datum numberToText(const Datum& value, const Type& from, const Type& to, int style) {
  std::string text = naturalText(value, from, style);
  if (isLongText(to.id) || text.size() <= to.length) return text;
  if (isInteger(from.id) && from.id != TypeId::BigInt && !isUnicode(to.id)) return "*";
  if (isApproximate(from.id)) throwFloatOverflow(value.real(), to.id);
  if (isMoney(from.id))
    throw Error(234, std::string("There is insufficient result space to convert a money value to ") +
                         typeName(to.id) + '.');
  throwOverflow(from.id == TypeId::Decimal ? "numeric" : "expression", to.id);
}

std::string bytesToText(std::string_view bytes, bool unicode) {
  std::string text;
  if (!unicode) {
    for (const char byte : bytes) appendCharacter(text, fromCp1254(static_cast<unsigned char>(byte)));
    return text;
  }
  for (std::size_t i = 0; i + 1 < bytes.size(); i += 2)
    appendCharacter(text, static_cast<unsigned char>(bytes[i]) | static_cast<unsigned char>(bytes[i + 1])
                                                                     << 8);
  return text;
}

std::string textToBytes(std::string_view text, bool unicode) {
  std::string bytes;
  for (std::size_t i = 0; i < text.size();) {
    const char32_t character = nextCharacter(text, i);
    if (!unicode) {
      bytes += static_cast<char>(std::max(toCp1254(character), 0));
      continue;
    }
    const auto unit = [&](char32_t u) {
      bytes += static_cast<char>(u & 0xff);
      bytes += static_cast<char>(u >> 8);
    };
    if (character < 0x10000) {
      unit(character);
    } else {
      unit(0xD7C0 + (character >> 10));
      unit(0xDC00 + (character & 0x3ff));
    }
  }
  return bytes;
}

std::string integerToBytes(std::uint64_t value, int width) {
  std::string bytes(static_cast<std::size_t>(width), '\0');
  for (int i = width - 1; i >= 0; --i, value >>= 8) bytes[i] = static_cast<char>(value & 0xff);
  return bytes;
}

std::string dateToBytes(std::int64_t ticks, TypeId id) {
  std::int64_t days = ticks / ticksPerDay;
  if (ticks % ticksPerDay < 0) --days;
  const std::int64_t rest = ticks - days * ticksPerDay;
  if (id == TypeId::SmallDateTime)
    return integerToBytes(static_cast<std::uint64_t>(days << 16 | rest / ticksPerMinute), 4);
  return integerToBytes(static_cast<std::uint64_t>(days) << 32 | static_cast<std::uint64_t>(rest), 8);
}

// Numbers lose their high bytes when cut and gain zeros before them; everything else the other way.
Datum fitBytes(std::string bytes, const Type& to, bool number, bool assignment) {
  const std::size_t width = to.length;
  if (bytes.size() > width) {
    if (assignment) throwTruncated();
    bytes = number ? bytes.substr(bytes.size() - width) : bytes.substr(0, width);
  } else if (to.id == TypeId::Binary) {
    bytes.insert(number ? 0 : bytes.size(), width - bytes.size(), '\0');
  }
  return Blob{std::move(bytes)};
}

}  // namespace

const char* messageName(TypeId id) {
  return id == TypeId::Decimal ? "numeric" : typeName(id);
}

void throwOverflow(const char* from, TypeId to) {
  throw Error(8115, std::string("Arithmetic overflow error converting ") + from + " to data type " +
                        messageName(to) + '.');
}

void throwFloatOverflow(double value, TypeId to) {
  std::array<char, 400> text;
  std::snprintf(text.data(), text.size(), "%f", value);
  throw Error(232, std::string("Arithmetic overflow error for type ") + typeName(to) +
                       ", value = " + text.data() + '.');
}

void throwNotAllowed(TypeId from, TypeId to) {
  throw Error(529, std::string("Explicit conversion from data type ") + messageName(from) + " to " +
                       messageName(to) + " is not allowed.");
}

void requireImplicit(const Type& from, const Type& to) {
  if (from.id == to.id || from.id == TypeId::Null || to.id == TypeId::Null) return;
  const bool clash = isLongText(from.id) ? !isCharacter(to.id)
                     : isLongText(to.id) ? !isCharacter(from.id)
                                         : isBinary(from.id) && isApproximate(to.id);
  if (clash)
    throw Error(206, std::string("Operand type clash: ") + messageName(from.id) + " is incompatible with " +
                         messageName(to.id));
  const bool written = (isDateTime(from.id) && (isNumeric(to.id) || isBinary(to.id))) ||
                       (isCharacter(from.id) && isBinary(to.id));
  if (written)
    throw Error(257, std::string("Implicit conversion from data type ") + messageName(from.id) + " to " +
                         messageName(to.id) + " is not allowed. Use the CONVERT function to run this query.");
}

void throwTruncated() {
  throw Error(8152, "String or binary data would be truncated.");
}

std::string_view trimBlanks(std::string_view text) {
  constexpr std::string_view blanks = " \t\r\n";
  const auto first = text.find_first_not_of(blanks);
  return first == text.npos ? std::string_view{}
                            : text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

bool equalIgnoringAsciiCase(std::string_view left, std::string_view right) {
  const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; };
  return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                    [&](char a, char b) { return lower(a) == lower(b); });
}

std::int64_t bytesToInteger(std::string_view bytes, int width) {
  if (bytes.size() > static_cast<std::size_t>(width)) bytes.remove_prefix(bytes.size() - width);
  std::uint64_t value = 0;
  for (const char byte : bytes) value = value << 8 | static_cast<unsigned char>(byte);
  switch (width == static_cast<int>(bytes.size()) ? width : 0) {
    case 2:
      return static_cast<std::int16_t>(value);
    case 4:
      return static_cast<std::int32_t>(value);
    default:
      return static_cast<std::int64_t>(value);
  }
}

Datum toText(const Datum& value, const Type& from, const Type& to, int style, bool assignment) {
  if (isCharacter(from.id)) return textToText(value, from, to, assignment);
  if (isLongText(to.id) && !isBinary(from.id)) throwNotAllowed(from.id, to.id);
  if (isDateTime(from.id)) return fitText(naturalText(value, from, style), to, assignment);
  if (isBinary(from.id)) return fitText(bytesToText(value.bytes(), isUnicode(to.id)), to, assignment);
  return numberToText(value, from, to, style);
}

Datum toBinary(const Datum& value, const Type& from, const Type& to, bool assignment) {
  if (isBinary(from.id)) return fitBytes(value.bytes(), to, false, assignment);
  if (isCharacter(from.id)) {
    std::string text = value.text();
    if (isFixedText(from.id)) padTo(text, from.length);
    return fitBytes(textToBytes(text, isUnicode(from.id)), to, false, assignment);
  }
  if (from.id == TypeId::Decimal) throwNotAllowed(from.id, to.id);
  if (isDateTime(from.id)) return fitBytes(dateToBytes(value.integer(), from.id), to, true, assignment);
  if (from.id == TypeId::Float)
    return fitBytes(integerToBytes(std::bit_cast<std::uint64_t>(value.real()), 8), to, true, assignment);
  if (from.id == TypeId::Real)
    return fitBytes(integerToBytes(std::bit_cast<std::uint32_t>(static_cast<float>(value.real())), 4), to,
                    true, assignment);
  return fitBytes(integerToBytes(static_cast<std::uint64_t>(value.integer()), storageLength(from)), to, true,
                  assignment);
}

std::string displayText(const Datum& value, const Type& type) {
  if (value.isNull()) return {};
  if (value.isText()) return value.text();
  if (value.isBlob() && type.id != TypeId::Decimal) return bytesToText(value.bytes(), false);
  return naturalText(value, type, 0);
}

}  // namespace engine
