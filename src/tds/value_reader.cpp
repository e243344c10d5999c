#include "tds/value_reader.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>

#include "tds/types.h"

namespace tds {

namespace {

using engine::Datum;
using engine::Type;
using engine::TypeId;

constexpr std::uint16_t mostBytes = 8000, mostCharacters = 4000;

[[noreturn]] void refuseType(std::uint8_t type) {
  throw engine::Error(
      8009, "The incoming tabular data stream (TDS) protocol stream is incorrect. The data type 0x" +
                std::string(1, "0123456789ABCDEF"[type >> 4]) + "0123456789ABCDEF"[type & 15] +
                " is unknown.");
}

[[noreturn]] void refuseSize() {
  throw ProtocolError("a value of no possible length");
}

std::uint16_t room(std::size_t length, std::uint16_t most) {
  return static_cast<std::uint16_t>(std::clamp<std::size_t>(length, 1, most));
}

TypedValue integer(TypeId id, std::uint64_t raw, std::size_t size) {
  // Signed but for the smallest.
  std::int64_t value = static_cast<std::int64_t>(raw);
  if (size == 2) value = static_cast<std::int16_t>(raw);
  if (size == 4) value = static_cast<std::int32_t>(raw);
  return {{id}, value};
}

TypeId integerType(std::size_t size) {
  switch (size) {
    case 1:
      return TypeId::TinyInt;
    case 2:
      return TypeId::SmallInt;
    case 4:
      return TypeId::Int;
    case 8:
      return TypeId::BigInt;
    default:
      refuseSize();
  }
}

TypedValue money(ByteReader& from, std::size_t size) {
  if (size == 4) return {{TypeId::SmallMoney}, std::int64_t{static_cast<std::int32_t>(from.u32())}};
  if (size != 8) refuseSize();
  const std::uint64_t high = from.u32();
  return {{TypeId::Money}, static_cast<std::int64_t>(high << 32 | from.u32())};
}

TypedValue real(ByteReader& from, std::size_t size) {
  if (size == 4) return {{TypeId::Real}, double{std::bit_cast<float>(from.u32())}};
  if (size != 8) refuseSize();
  return {{TypeId::Float}, std::bit_cast<double>(from.u64())};
}

Datum checkedTicks(std::int64_t ticks) {
  if (ticks < engine::minDateTime || ticks > engine::maxDateTime)
    throw engine::Error(242,
                        "The conversion of a datetime2 data type to a datetime data type resulted in an "
                        "out-of-range value.");
  return ticks;
}

TypedValue dateTime(ByteReader& from, std::size_t size) {
  if (size == 4) {
    const std::int64_t days = from.u16(), minutes = from.u16();
    return {{TypeId::SmallDateTime}, days * engine::ticksPerDay + minutes * engine::ticksPerMinute};
  }
  if (size != 8) refuseSize();
  const std::int64_t days = static_cast<std::int32_t>(from.u32());
  return {{TypeId::DateTime}, checkedTicks(days * engine::ticksPerDay + from.u32())};
}

// Days since 0001-01-01.
std::int64_t newDate(ByteReader& from) {
  static const std::int64_t origin = engine::daysFromCivil(1, 1, 1);
  return origin + static_cast<std::int64_t>(from.number(3));
}

// Units of 10^-scale s as ticks, to the nearest.
std::int64_t newTime(ByteReader& from, std::size_t size, std::uint8_t scale) {
  std::int64_t unit = 1;
  for (int i = 0; i < scale; ++i) unit *= 10;
  const auto value = static_cast<std::int64_t>(from.number(size));
  if (value / unit >= 24 * 3600) refuseSize();
  return (value * engine::ticksPerSecond + unit / 2) / unit;
}

// DATE, TIME, DATETIME2 and DATETIMEOFFSET, which become DATETIME.
TypedValue newDateTime(ByteReader& from, std::uint8_t type) {
  const std::uint8_t scale = type == wire::dateN ? 0 : from.u8();
  if (scale > 7) refuseSize();
  const std::size_t size = from.u8();
  if (size == 0) return {{TypeId::DateTime}, {}};
  const std::size_t timeSize = scale <= 2 ? 3 : scale <= 4 ? 4 : 5;
  const std::size_t rest = type == wire::dateN     ? 3
                           : type == wire::timeN   ? timeSize
                           : type == wire::offsetN ? timeSize + 5
                                                   : timeSize + 3;
  if (size != rest) refuseSize();
  std::int64_t ticks = 0;
  if (type != wire::dateN) ticks = newTime(from, timeSize, scale);
  if (type != wire::timeN) ticks += newDate(from) * engine::ticksPerDay;
  // The time comes as that of the prime meridian.
  if (type == wire::offsetN) ticks += static_cast<std::int16_t>(from.u16()) * engine::ticksPerMinute;
  return {{TypeId::DateTime}, checkedTicks(ticks)};
}

TypedValue decimal(ByteReader& from, std::uint8_t type) {
  from.u8();
  Type found{TypeId::Decimal, 0, 0, 0};
  if (type == wire::numericN || type == wire::oldNumeric) found.length = engine::numericMark;
  found.precision = from.u8();
  found.scale = from.u8();
  if (found.precision < 1 || found.precision > engine::maxPrecision || found.scale > found.precision)
    refuseSize();
  const std::size_t size = from.u8();
  if (size == 0) return {found, {}};
  if (size > 17) refuseSize();
  const bool positive = from.u8() != 0;
  const std::string_view raw = from.bytes(size - 1);
  engine::Int128 value = 0;
  for (std::size_t i = raw.size(); i-- > 0;) {
    if (value > engine::powerOfTen(engine::maxPrecision) / 256) refuseSize();
    value = value * 256 + static_cast<unsigned char>(raw[i]);
  }
  if (!engine::fitsPrecision(value, found.precision)) refuseSize();
  return {found, engine::decimalDatum(positive ? value : -value, found)};
}

// A byte of length, twice: the type's and the value's.
TypedValue nullable(ByteReader& from, std::uint8_t type) {
  const std::size_t most = from.u8(), size = from.u8();
  const bool null = size == 0;
  const std::size_t used = null ? most : size;
  switch (type) {
    case wire::intN:
      return null ? TypedValue{{integerType(used)}, {}} : integer(integerType(used), from.number(size), size);
    case wire::bitN:
      if (used != 1) refuseSize();
      return {{TypeId::Bit}, null ? Datum() : Datum(from.u8() != 0 ? 1 : 0)};
    case wire::floatN:
      return null ? TypedValue{{used == 4 ? TypeId::Real : TypeId::Float}, {}} : real(from, size);
    case wire::moneyN:
      return null ? TypedValue{{used == 4 ? TypeId::SmallMoney : TypeId::Money}, {}} : money(from, size);
    default:
      return null ? TypedValue{{used == 4 ? TypeId::SmallDateTime : TypeId::DateTime}, {}}
                  : dateTime(from, size);
  }
}

TypedValue guid(ByteReader& from) {
  from.u8();
  const std::size_t size = from.u8();
  const Type type{TypeId::Char, 36};
  if (size == 0) return {type, {}};
  if (size != 16) refuseSize();
  const std::string_view raw = from.bytes(size);
  static constexpr std::array<int, 16> order = {3, 2, 1, 0, 5, 4, 7, 6, 8, 9, 10, 11, 12, 13, 14, 15};
  std::string text;
  for (std::size_t i = 0; i < order.size(); ++i) {
    if (i == 4 || i == 6 || i == 8 || i == 10) text += '-';
    const auto byte = static_cast<unsigned char>(raw[static_cast<std::size_t>(order[i])]);
    text += "0123456789ABCDEF"[byte >> 4];
    text += "0123456789ABCDEF"[byte & 15];
  }
  return {type, text};
}

// A value of unknown length in chunks; false: NULL.
bool readChunks(ByteReader& from, std::string& to) {
  constexpr std::uint64_t null = ~std::uint64_t{0};
  if (from.u64() == null) return false;
  while (const std::uint32_t size = from.u32()) to += from.bytes(size);
  return true;
}

// Type and value of a text or bytes whose length the type tells in `most`.
TypedValue makeText(std::uint8_t type, std::size_t most, bool null, std::string_view raw) {
  const bool unicode = type == wire::nVarChar || type == wire::nChar || type == wire::nText;
  const bool fixed = type == wire::nChar || type == wire::bigChar || type == wire::oldChar;
  const bool binary = type == wire::bigVarBinary || type == wire::bigBinary || type == wire::oldVarBinary ||
                      type == wire::oldBinary || type == wire::image;
  TypedValue made;
  if (binary) {
    if (raw.size() > mostBytes) throw engine::Error(8152, "String or binary data would be truncated.");
    made.type = {TypeId::VarBinary,
                 room(std::max(std::min<std::size_t>(most, mostBytes), raw.size()), mostBytes)};
    if (type == wire::bigBinary || type == wire::oldBinary) made.type.id = TypeId::Binary;
    if (!null) made.value = engine::Blob{std::string(raw)};
    return made;
  }
  std::string text = unicode ? fromUtf16(raw) : fromCp1254(raw);
  const bool sized = most > 0 && most <= mostBytes && raw.size() <= mostBytes;
  if (!sized) {
    made.type = {unicode ? TypeId::NText : TypeId::Text};
  } else {
    made.type = {
        unicode ? (fixed ? TypeId::NChar : TypeId::NVarChar) : (fixed ? TypeId::Char : TypeId::VarChar),
        room(unicode ? std::max(most, raw.size()) / 2 : std::max(most, raw.size()),
             unicode ? mostCharacters : mostBytes)};
    if (fixed) text.erase(text.find_last_not_of(' ') + 1);
  }
  if (!null) made.value = std::move(text);
  return made;
}

TypedValue shortText(ByteReader& from, std::uint8_t type) {
  const std::size_t most = from.u8(), size = from.u8();
  return makeText(type, std::max<std::size_t>(most, 1), size == 0, from.bytes(size));
}

constexpr std::size_t collationSize = 5;

TypedValue bigText(ByteReader& from, std::uint8_t type) {
  constexpr std::size_t endless = 0xFFFF;
  const std::size_t most = from.u16();
  if (type != wire::bigVarBinary && type != wire::bigBinary) from.bytes(collationSize);
  if (most == endless) {
    std::string raw;
    const bool given = readChunks(from, raw);
    return makeText(type, 0, !given, raw);
  }
  const std::size_t size = from.u16();
  if (size == endless) return makeText(type, std::max<std::size_t>(most, 1), true, {});
  return makeText(type, std::max<std::size_t>(most, 1), false, from.bytes(size));
}

TypedValue longText(ByteReader& from, std::uint8_t type) {
  constexpr std::uint32_t null = 0xFFFFFFFF;
  from.u32();
  if (type != wire::image) from.bytes(collationSize);
  const std::uint32_t size = from.u32();
  if (size == null) return makeText(type, 0, true, {});
  return makeText(type, 0, false, from.bytes(size));
}

struct Word {
  std::string_view name;
  TypeId id;
};
constexpr Word words[] = {
    {"bit", TypeId::Bit},
    {"tinyint", TypeId::TinyInt},
    {"smallint", TypeId::SmallInt},
    {"int", TypeId::Int},
    {"integer", TypeId::Int},
    {"bigint", TypeId::BigInt},
    {"smallmoney", TypeId::SmallMoney},
    {"money", TypeId::Money},
    {"decimal", TypeId::Decimal},
    {"dec", TypeId::Decimal},
    {"numeric", TypeId::Decimal},
    {"real", TypeId::Real},
    {"float", TypeId::Float},
    {"smalldatetime", TypeId::SmallDateTime},
    {"datetime", TypeId::DateTime},
    {"datetime2", TypeId::DateTime},
    {"date", TypeId::DateTime},
    {"time", TypeId::DateTime},
    {"datetimeoffset", TypeId::DateTime},
    {"char", TypeId::Char},
    {"varchar", TypeId::VarChar},
    {"text", TypeId::Text},
    {"nchar", TypeId::NChar},
    {"nvarchar", TypeId::NVarChar},
    {"ntext", TypeId::NText},
    {"sysname", TypeId::NVarChar},
    {"binary", TypeId::Binary},
    {"varbinary", TypeId::VarBinary},
    {"image", TypeId::VarBinary},
    {"timestamp", TypeId::Binary},
    {"uniqueidentifier", TypeId::Char},
};

int numberIn(std::string_view text) {
  const auto first = text.find_first_not_of(' ');
  int value = -1;
  if (first != std::string_view::npos) std::from_chars(text.data() + first, text.data() + text.size(), value);
  return value;
}

}  // namespace

TypedValue readValue(ByteReader& from) {
  const std::uint8_t type = from.u8();
  switch (type) {
    case wire::null:
      return {};
    case wire::int1:
      return integer(TypeId::TinyInt, from.u8(), 1);
    case wire::bit:
      return {{TypeId::Bit}, from.u8() != 0 ? 1 : 0};
    case wire::int2:
      return integer(TypeId::SmallInt, from.u16(), 2);
    case wire::int4:
      return integer(TypeId::Int, from.u32(), 4);
    case wire::int8:
      return integer(TypeId::BigInt, from.u64(), 8);
    case wire::float4:
      return real(from, 4);
    case wire::float8:
      return real(from, 8);
    case wire::money4:
      return money(from, 4);
    case wire::money8:
      return money(from, 8);
    case wire::dateTime4:
      return dateTime(from, 4);
    case wire::dateTime8:
      return dateTime(from, 8);
    case wire::intN:
    case wire::bitN:
    case wire::floatN:
    case wire::moneyN:
    case wire::dateTimeN:
      return nullable(from, type);
    case wire::dateN:
    case wire::timeN:
    case wire::dateTime2N:
    case wire::offsetN:
      return newDateTime(from, type);
    case wire::decimalN:
    case wire::numericN:
    case wire::oldDecimal:
    case wire::oldNumeric:
      return decimal(from, type);
    case wire::guid:
      return guid(from);
    case wire::oldChar:
    case wire::oldVarChar:
    case wire::oldBinary:
    case wire::oldVarBinary:
      return shortText(from, type);
    case wire::bigChar:
    case wire::bigVarChar:
    case wire::bigBinary:
    case wire::bigVarBinary:
    case wire::nChar:
    case wire::nVarChar:
      return bigText(from, type);
    case wire::text:
    case wire::nText:
    case wire::image:
      return longText(from, type);
    default:
      refuseType(type);
  }
}

engine::Type parseType(std::string_view text) {
  const auto trim = [](std::string_view part) {
    const auto first = part.find_first_not_of(" \t\r\n[]");
    if (first == std::string_view::npos) return std::string_view{};
    return part.substr(first, part.find_last_not_of(" \t\r\n[]") - first + 1);
  };
  const auto open = text.find('(');
  std::string name(trim(text.substr(0, open)));
  for (char& c : name) c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  const auto* word =
      std::find_if(std::begin(words), std::end(words), [&](const Word& w) { return w.name == name; });
  const auto unknown = [&] {
    return engine::Error(2715, "Cannot find data type " + std::string(trim(text)) + ".");
  };
  if (word == std::end(words)) throw unknown();
  Type type{word->id};
  std::string_view inside;
  if (open != std::string_view::npos) inside = text.substr(open + 1, text.find(')', open) - open - 1);
  const bool endless = trim(inside).size() == 3 && (inside.find_first_of("mM") != std::string_view::npos);
  const int first = numberIn(inside);
  const auto comma = inside.find(',');
  const int second = comma == std::string_view::npos ? 0 : numberIn(inside.substr(comma + 1));
  if (type.id == TypeId::Decimal) {
    if (name == "numeric") type.length = engine::numericMark;
    type.precision =
        static_cast<std::uint8_t>(open == std::string_view::npos ? 18 : std::clamp(first, 1, 38));
    type.scale = static_cast<std::uint8_t>(std::clamp<int>(second, 0, type.precision));
  } else if (type.id == TypeId::Float && first > 0 && first <= 24) {
    type.id = TypeId::Real;
  } else if ((engine::isCharacter(type.id) && !engine::isLongText(type.id)) || engine::isBinary(type.id)) {
    const std::uint16_t most = engine::isUnicode(type.id) ? mostCharacters : mostBytes;
    type.length = room(first > 0 ? static_cast<std::size_t>(first) : 1, most);
    if (name == "sysname") type.length = 128;
    if (name == "uniqueidentifier") type.length = 36;
    if (name == "timestamp") type.length = 8;
    if (name == "image" || (endless && engine::isBinary(type.id))) type.length = mostBytes;
    if (endless && engine::isCharacter(type.id))
      type = {engine::isUnicode(type.id) ? TypeId::NText : TypeId::Text};
  }
  return type;
}

}  // namespace tds
