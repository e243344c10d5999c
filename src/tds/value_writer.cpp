#include "tds/value_writer.h"

#include <algorithm>
#include <bit>

#include "tds/bytes.h"
#include "tds/types.h"

namespace tds {

namespace {

using engine::Type;
using engine::TypeId;

constexpr std::uint32_t endlessText = 0x7FFFFFFF, endlessUnicode = 0x7FFFFFFE;
constexpr std::size_t mostBytes = 8000;

std::size_t decimalSize(int precision) {
  if (precision <= 9) return 4;
  if (precision <= 19) return 8;
  return precision <= 28 ? 12 : 16;
}

// Bytes that values of the type take; what the client was told of it.
std::size_t fullSize(const Type& type) {
  switch (type.id) {
    case TypeId::Bit:
    case TypeId::TinyInt:
      return 1;
    case TypeId::SmallInt:
      return 2;
    case TypeId::Null:
    case TypeId::Int:
    case TypeId::SmallMoney:
    case TypeId::Real:
    case TypeId::SmallDateTime:
      return 4;
    case TypeId::BigInt:
    case TypeId::Money:
    case TypeId::Float:
    case TypeId::DateTime:
      return 8;
    case TypeId::Decimal:
      return decimalSize(type.precision) + 1;
    case TypeId::NChar:
    case TypeId::NVarChar:
      return std::clamp<std::size_t>(type.length * std::size_t{2}, 2, mostBytes);
    default:
      return std::clamp<std::size_t>(type.length, 1, mostBytes);
  }
}

std::uint8_t wireType(const Type& type) {
  switch (type.id) {
    case TypeId::Bit:
      return wire::bitN;
    case TypeId::SmallMoney:
    case TypeId::Money:
      return wire::moneyN;
    case TypeId::Decimal:
      return type.length == engine::numericMark ? wire::numericN : wire::decimalN;
    case TypeId::Real:
    case TypeId::Float:
      return wire::floatN;
    case TypeId::SmallDateTime:
    case TypeId::DateTime:
      return wire::dateTimeN;
    case TypeId::Char:
      return wire::bigChar;
    case TypeId::VarChar:
      return wire::bigVarChar;
    case TypeId::Text:
      return wire::text;
    case TypeId::NChar:
      return wire::nChar;
    case TypeId::NVarChar:
      return wire::nVarChar;
    case TypeId::NText:
      return wire::nText;
    case TypeId::Binary:
      return wire::bigBinary;
    case TypeId::VarBinary:
      return wire::bigVarBinary;
    default:
      return wire::intN;
  }
}

void putDateTime(std::string& to, TypeId id, std::int64_t ticks) {
  std::int64_t days = ticks / engine::ticksPerDay, rest = ticks % engine::ticksPerDay;
  if (rest < 0) {
    rest += engine::ticksPerDay;
    --days;
  }
  if (id == TypeId::SmallDateTime) {
    putNumber(to, 4, 1);
    putNumber(to, static_cast<std::uint64_t>(days), 2);
    putNumber(to, static_cast<std::uint64_t>(rest / engine::ticksPerMinute), 2);
  } else {
    putNumber(to, 8, 1);
    putNumber(to, static_cast<std::uint64_t>(days), 4);
    putNumber(to, static_cast<std::uint64_t>(rest), 4);
  }
}

void putDecimal(std::string& to, const Type& type, engine::Int128 value) {
  const std::size_t size = decimalSize(type.precision);
  putNumber(to, size + 1, 1);
  putNumber(to, value < 0 ? 0 : 1, 1);
  if (value < 0) value = -value;
  for (std::size_t i = 0; i < size; ++i, value >>= 8) to += static_cast<char>(value & 0xFF);
}

// The place of a text is told apart from its bytes, though a client cannot use it here.
void putTextPointer(std::string& to) {
  constexpr std::size_t pointerSize = 16, stampSize = 8;
  putNumber(to, pointerSize, 1);
  to.append(pointerSize, '\1').append(stampSize, '\0');
}

void putText(std::string& to, const Type& type, std::string_view value) {
  const bool unicode = engine::isUnicode(type.id), fixed = engine::isFixedText(type.id);
  if (engine::isLongText(type.id)) putTextPointer(to);
  const std::size_t lengthSize = engine::isLongText(type.id) ? 4 : 2, at = to.size();
  to.append(lengthSize, '\0');
  unicode ? appendUtf16(to, value) : appendCp1254(to, value);
  const std::size_t start = at + lengthSize;
  if (!engine::isLongText(type.id)) {
    const std::size_t full = fullSize(type);
    if (to.size() - start > full) to.resize(start + full);
    while (fixed && to.size() - start < full) {
      to += ' ';
      if (unicode) to += '\0';
    }
  }
  const std::size_t size = to.size() - start;
  for (std::size_t i = 0; i < lengthSize; ++i) to[at + i] = static_cast<char>(size >> (8 * i));
}

void putBytes(std::string& to, const Type& type, std::string_view value) {
  const std::size_t full = fullSize(type);
  value = value.substr(0, full);
  const std::size_t size = type.id == TypeId::Binary ? full : value.size();
  putNumber(to, size, 2);
  to.append(value).append(size - value.size(), '\0');
}

void putNull(std::string& to, const Type& type) {
  const bool twoBytes =
      (engine::isCharacter(type.id) && !engine::isLongText(type.id)) || engine::isBinary(type.id);
  twoBytes ? putNumber(to, 0xFFFF, 2) : putNumber(to, 0, 1);
}

void putInteger(std::string& to, const Type& type, std::int64_t value) {
  if (engine::isDateTime(type.id)) return putDateTime(to, type.id, value);
  if (type.id == TypeId::Decimal) return putDecimal(to, type, value);
  const std::size_t size = fullSize(type);
  putNumber(to, size, 1);
  const auto raw = static_cast<std::uint64_t>(value);
  if (type.id != TypeId::Money) return putNumber(to, raw, size);
  putNumber(to, raw >> 32, 4);  // the high half comes first
  putNumber(to, raw & 0xFFFFFFFF, 4);
}

void putReal(std::string& to, const Type& type, double value) {
  putNumber(to, fullSize(type), 1);
  if (type.id == TypeId::Real)
    putNumber(to, std::bit_cast<std::uint32_t>(static_cast<float>(value)), 4);
  else
    putNumber(to, std::bit_cast<std::uint64_t>(value), 8);
}

void putCell(std::string& to, const Type& type, const engine::ResultSet& set, std::int64_t row, int column) {
  if (set.isNull(row, column)) return putNull(to, type);
  if (engine::isCharacter(type.id)) return putText(to, type, set.text(row, column));
  if (engine::isBinary(type.id)) return putBytes(to, type, set.text(row, column));
  if (engine::isApproximate(type.id)) return putReal(to, type, set.real(row, column));
  if (type.id == TypeId::Decimal) return putDecimal(to, type, engine::decimalValue(set.datum(row, column)));
  putInteger(to, type, set.integer(row, column));
}

}  // namespace

void writeType(std::string& to, const Type& type) {
  to += static_cast<char>(wireType(type));
  if (engine::isLongText(type.id)) {
    putNumber(to, type.id == TypeId::Text ? endlessText : endlessUnicode, 4);
  } else if (engine::isCharacter(type.id) || engine::isBinary(type.id)) {
    putNumber(to, fullSize(type), 2);
  } else {
    putNumber(to, fullSize(type), 1);
  }
  if (engine::isCharacter(type.id)) to += turkishCollation;
  if (type.id != TypeId::Decimal) return;
  putNumber(to, type.precision, 1);
  putNumber(to, type.scale, 1);
}

void writeValue(std::string& to, const Type& type, const engine::Datum& value) {
  engine::ResultSet one(std::vector<engine::ResultColumn>(1));
  one.beginRow();
  if (value.isNull()) one.addNull();
  if (value.isInteger()) one.addInteger(value.integer());
  if (value.isReal()) one.addReal(value.real());
  if (value.isText()) one.addText(value.text());
  if (value.isBlob()) one.addBlob(value.bytes());
  putCell(to, type, one, 0, 0);
}

RowWriter::RowWriter(std::vector<engine::ResultColumn> columns, Version version)
    : columns_(std::move(columns)), version_(version) {}

void RowWriter::describe(std::string& to) const {
  describe(to, 0);
}

void RowWriter::describeForCursor(std::string& to) const {
  constexpr std::uint16_t hidden = 0x2000;
  describe(to, 1);
  putNumber(to, 0, version_ >= Version::V72 ? 4 : 2);
  putNumber(to, hidden, 2);
  writeType(to, {TypeId::Int});
  tds::putText(to, "ROWSTAT", 1);
}

void RowWriter::describe(std::string& to, std::size_t more) const {
  constexpr std::uint16_t nullable = 0x01, unknownWhetherWritable = 0x08, identity = 0x10;
  putNumber(to, token::columns, 1);
  putNumber(to, columns_.size() + more, 2);
  for (const auto& column : columns_) {
    putNumber(to, 0, version_ >= Version::V72 ? 4 : 2);
    const bool fromTable = !column.baseTable.empty();
    putNumber(to,
              (column.nullable ? nullable : 0) | (column.identity ? identity : 0) |
                  (fromTable && !column.identity ? unknownWhetherWritable : 0),
              2);
    writeType(to, column.type);
    if (engine::isLongText(column.type.id)) {
      if (version_ >= Version::V72) putNumber(to, 1, 1);
      tds::putText(to, column.baseTable, 2);
    }
    tds::putText(to, column.name, 1);
  }
}

void RowWriter::row(std::string& to, const engine::ResultSet& set, std::int64_t row) const {
  const auto count = static_cast<int>(columns_.size());
  int nulls = 0;
  for (int i = 0; i < count; ++i) nulls += set.isNull(row, i) ? 1 : 0;
  const int bitmap = (count + 7) / 8;
  const bool packed = version_ >= Version::V73B && nulls > bitmap;
  putNumber(to, packed ? token::packedRow : token::row, 1);
  if (packed) {
    const std::size_t at = to.size();
    to.append(static_cast<std::size_t>(bitmap), '\0');
    for (int i = 0; i < count; ++i)
      if (set.isNull(row, i)) to[at + static_cast<std::size_t>(i / 8)] |= static_cast<char>(1 << (i % 8));
  }
  for (int i = 0; i < count; ++i)
    if (!packed || !set.isNull(row, i)) putCell(to, columns_[static_cast<std::size_t>(i)].type, set, row, i);
}

}  // namespace tds
