// Conversion between types, on values in their physical form (type.h). Pure.
//
// Errors: 206 and 529 (the types do not convert), 220, 8115, 232, 244, 248 (range), 245, 235, 8114
// (text is no number), 241, 242, 296, 298 (text is no date), 8152 (assignment of too long a text),
// 234 (no room for a money text), 281 (unknown style).
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "engine/value/datum.h"
#include "engine/value/operator.h"
#include "engine/value/type.h"

namespace engine {

enum class DateFormat : std::uint8_t { Mdy, Dmy, Ymd, Ydm, Myd, Dym };

// What SET DATEFORMAT says; throws Error 2741 for an unknown name.
DateFormat parseDateFormat(std::string_view name);

struct ConvertContext {
  DateFormat dateFormat = DateFormat::Mdy;
};

// `assignment`: the value is stored into a column, so that a too long text is error 8152; otherwise
// (variable, CAST, CONVERT) it is cut. A Char value is padded when it becomes a VarChar.
Datum convert(const Datum& value, const Type& from, const Type& to, int style = 0, bool assignment = false,
              const ConvertContext& context = {});

// A value may go into a column or variable without CONVERT; throws Error 257 where it must be written,
// 206 where no conversion exists.
void requireImplicit(const Type& from, const Type& to);

// The SQLite expression that converts `sql` as convert() does: `sql` itself when nothing changes, a
// native expression where SQLite has an exact one, else a call of z_cv.
std::string convertSql(const std::string& sql, const Type& from, const Type& to, int style = 0,
                       bool assignment = false);
// `sql` blank-padded to the width of its Char or NChar type; other types as they are.
std::string padSql(const std::string& sql, const Type& type);

// 'abc' is VARCHAR(3), '' VARCHAR(1), 12 INT, 3000000000 DECIMAL(10,0), 12.50 DECIMAL(4,2), 1e3 FLOAT,
// $1.5 MONEY, 0x.. VARBINARY, NULL the Null type. Text is limited to 8000 (N'..' 4000), then TEXT.
Type literalType(const Literal& literal);
Datum literalDatum(const Literal& literal);

// True when the value can be read as the type; what ISDATE and ISNUMERIC ask.
bool isDateText(std::string_view text, const ConvertContext& context = {});
bool isNumericText(std::string_view text);

// ---- forms that others need too ----

inline constexpr std::int64_t ticksPerSecond = 300;
inline constexpr std::int64_t ticksPerMinute = 60 * ticksPerSecond;
inline constexpr std::int64_t ticksPerHour = 60 * ticksPerMinute;
inline constexpr std::int64_t ticksPerDay = 24 * ticksPerHour;
inline constexpr std::int64_t minDateTime = -53690 * ticksPerDay;       // 1753-01-01
inline constexpr std::int64_t maxDateTime = 2958464 * ticksPerDay - 1;  // 9999-12-31 23:59:59.997
inline constexpr std::int64_t maxSmallDateTime = 65536 * ticksPerDay - ticksPerMinute;  // 2079-06-06 23:59

struct Civil {
  int year = 1900, month = 1, day = 1;
  int hour = 0, minute = 0, second = 0;
  int millisecond = 0;  // as written by the server: ..0, ..3 or ..7
};

Civil civilFromTicks(std::int64_t ticks);
// Milliseconds round to the nearest 1/300 s (23:59:59.999 is the next day's midnight).
std::int64_t ticksFromCivil(const Civil& civil);
int daysInMonth(int year, int month);
bool isValidDate(int year, int month, int day);
// Days since 1900-01-01; 0 is a Monday.
std::int64_t daysFromCivil(int year, int month, int day);
extern const char* const monthNames[12];  // January ...
extern const char* const dayNames[7];     // Sunday ...

// The text of a DATETIME or SMALLDATETIME in a CONVERT style; throws Error 281 for an unknown one.
std::string formatDateTime(std::int64_t ticks, const Type& type, int style);
// The text of a value as a person reads it: numbers and dates in style 0, text as it is, NULL empty.
std::string displayText(const Datum& value, const Type& type);
// A number to the nearest 1/10 000, halves away from zero, as the physical form of MONEY;
// throws Error 232 when out of range.
std::int64_t roundToMoney(double value);

// ---- code page 1254 and UTF-8 ----

std::int64_t characterCount(std::string_view utf8);
// Byte offset of the character with the given number; the length of the text when there is none.
std::size_t characterOffset(std::string_view utf8, std::int64_t index);
// Reads the character at `position` and steps over it; a broken byte counts as U+FFFD.
char32_t nextCharacter(std::string_view utf8, std::size_t& position);
void appendCharacter(std::string& utf8, char32_t character);
// The code point of a byte of code page 1254 and back; -1 when the character is not in it.
char32_t fromCp1254(unsigned char byte);
int toCp1254(char32_t character);
// The text as code page 1254 can hold it: other characters become their best fit or '?'.
std::string fitCp1254(std::string_view utf8);
bool isAscii(std::string_view text);

}  // namespace engine
