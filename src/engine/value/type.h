// Static types of the dialect and the physical form of their values.
//
// Physical form (what a value looks like in an SQLite column or parameter):
//   Bit .. BigInt                 INTEGER
//   SmallMoney, Money             INTEGER, value * 10 000
//   Decimal(p,s), p <= 18         INTEGER, value * 10^s
//   Decimal(p,s), p >  18         BLOB of 16 bytes: value * 10^s as a big-endian two's complement
//                                 128-bit number with its sign bit flipped, so that memcmp orders it
//   Real, Float                   REAL (Real rounded to single precision)
//   SmallDateTime, DateTime       INTEGER, ticks of 1/300 s since 1900-01-01 00:00
//   Char, NChar                   TEXT, UTF-8, without trailing blanks (padding is the type's affair)
//   VarChar, NVarChar, Text, NText TEXT, UTF-8, as written
//   Binary, VarBinary             BLOB
// NULL is NULL in every type.
#pragma once

#include <cstdint>
#include <string>

namespace engine {

enum class TypeId : std::uint8_t {
  Null,  // the bare literal NULL: takes any type
  Bit,
  TinyInt,
  SmallInt,
  Int,
  BigInt,
  SmallMoney,
  Money,
  Decimal,
  Real,
  Float,
  SmallDateTime,
  DateTime,
  Char,
  VarChar,
  Text,
  NChar,
  NVarChar,
  NText,
  Binary,
  VarBinary,
};

// In the length of a Decimal that was declared as NUMERIC: the same type under its other name.
inline constexpr std::uint16_t numericMark = 1;

struct Type {
  TypeId id = TypeId::Null;
  std::uint16_t length = 0;    // characters of Char .. NVarChar, bytes of Binary, VarBinary; numericMark
  std::uint8_t precision = 0;  // Decimal only
  std::uint8_t scale = 0;      // Decimal only

  friend bool operator==(const Type&, const Type&) = default;
};

bool isCharacter(TypeId id);  // Char, VarChar, Text and their N forms
bool isUnicode(TypeId id);    // NChar, NVarChar, NText
bool isFixedText(TypeId id);  // Char, NChar: padded to their length
bool isLongText(TypeId id);   // Text, NText
bool isInteger(TypeId id);    // Bit, TinyInt, SmallInt, Int, BigInt
bool isMoney(TypeId id);
bool isApproximate(TypeId id);  // Real, Float
bool isNumeric(TypeId id);      // isInteger, isMoney, Decimal, isApproximate
bool isDateTime(TypeId id);
bool isBinary(TypeId id);

// What `syscolumns.length` and `syscolumns.xtype` report.
int storageLength(const Type& type);
int systemType(const Type& type);
// The type's name in lower case without its length, as `systypes.name` holds it ("char", "int").
const char* typeName(TypeId id);
// Name with length as a person writes it: CHAR(26), DECIMAL(18,0), INT.
std::string describe(const Type& type);

// Higher wins when two types meet in an expression; SQL Server's order of precedence.
int precedence(TypeId id);
// Common type of two operands of CASE, UNION, COALESCE and comparisons: the higher precedence, widest
// length; throws Error 206 when the two do not mix.
Type commonType(const Type& left, const Type& right);

// The type that two operands are compared in: the common one. Where no DECIMAL holds every value of two exact
// numbers it is one of 76 digits, 38 of them behind the point, which only comparisons know.
Type comparisonType(const Type& left, const Type& right);

// One 64-bit number that holds a type, for the arguments of SQL functions, and back.
std::int64_t packType(const Type& type);
Type unpackType(std::int64_t packed);

}  // namespace engine
