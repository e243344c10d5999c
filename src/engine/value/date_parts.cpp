#include "engine/value/date_parts.h"

#include <algorithm>
#include <array>
#include <limits>

#include "engine/value/convert.h"
#include "engine/value/convert_detail.h"
#include "engine/value/error.h"

namespace engine {
namespace {

struct PartName {
  const char* name;
  DatePart part;
};
constexpr std::array names = {
    PartName{"year", DatePart::Year},       PartName{"yyyy", DatePart::Year},
    PartName{"yy", DatePart::Year},         PartName{"quarter", DatePart::Quarter},
    PartName{"qq", DatePart::Quarter},      PartName{"q", DatePart::Quarter},
    PartName{"month", DatePart::Month},     PartName{"mm", DatePart::Month},
    PartName{"m", DatePart::Month},         PartName{"dayofyear", DatePart::DayOfYear},
    PartName{"dy", DatePart::DayOfYear},    PartName{"y", DatePart::DayOfYear},
    PartName{"day", DatePart::Day},         PartName{"dd", DatePart::Day},
    PartName{"d", DatePart::Day},           PartName{"week", DatePart::Week},
    PartName{"wk", DatePart::Week},         PartName{"ww", DatePart::Week},
    PartName{"weekday", DatePart::Weekday}, PartName{"dw", DatePart::Weekday},
    PartName{"w", DatePart::Weekday},       PartName{"hour", DatePart::Hour},
    PartName{"hh", DatePart::Hour},         PartName{"minute", DatePart::Minute},
    PartName{"mi", DatePart::Minute},       PartName{"n", DatePart::Minute},
    PartName{"second", DatePart::Second},   PartName{"ss", DatePart::Second},
    PartName{"s", DatePart::Second},        PartName{"millisecond", DatePart::Millisecond},
    PartName{"ms", DatePart::Millisecond}};

std::int64_t floorDivide(std::int64_t value, std::int64_t by) {
  return value / by - (value % by < 0 ? 1 : 0);
}

[[noreturn]] void throwOverflow() {
  throw Error(517, "Adding a value to a 'datetime' column caused an overflow.");
}

std::int64_t addMonths(std::int64_t ticks, std::int64_t months) {
  Civil c = civilFromTicks(ticks);
  const std::int64_t timeOfDay = ticks - floorDivide(ticks, ticksPerDay) * ticksPerDay;
  const std::int64_t total = c.year * std::int64_t{12} + c.month - 1 + months;
  const std::int64_t year = floorDivide(total, 12);
  if (year < 1753 || year > 9999) throwOverflow();
  const int month = static_cast<int>(total - year * 12) + 1;
  const int day = std::min(c.day, daysInMonth(static_cast<int>(year), month));
  return daysFromCivil(static_cast<int>(year), month, day) * ticksPerDay + timeOfDay;
}

// Ticks of parts of even length; 0 for months and their multiples.
std::int64_t partLength(DatePart part) {
  switch (part) {
    case DatePart::Day:
    case DatePart::DayOfYear:
    case DatePart::Weekday:
      return ticksPerDay;
    case DatePart::Week:
      return 7 * ticksPerDay;
    case DatePart::Hour:
      return ticksPerHour;
    case DatePart::Minute:
      return ticksPerMinute;
    case DatePart::Second:
      return ticksPerSecond;
    default:
      return 0;
  }
}

// 1 .. 7 from the first day of the week on; day 0 of the calendar is a Monday.
int weekdayNumber(std::int64_t day, int dateFirst) {
  const std::int64_t shifted = day + 1 - dateFirst;
  return static_cast<int>(shifted - floorDivide(shifted, 7) * 7) + 1;
}

std::int64_t monthNumber(const Civil& c) {
  return c.year * std::int64_t{12} + c.month - 1;
}

std::int64_t milliseconds(std::int64_t ticks) {
  return floorDivide(ticks * 20 + 3, 6);
}

}  // namespace

std::optional<DatePart> findDatePart(std::string_view word) {
  for (const PartName& known : names)
    if (equalIgnoringAsciiCase(word, known.name)) return known.part;
  return {};
}

std::int64_t addDatePart(DatePart part, std::int64_t number, std::int64_t ticks) {
  std::int64_t result = 0;
  switch (part) {
    case DatePart::Year:
      result = addMonths(ticks, number * 12);
      break;
    case DatePart::Quarter:
      result = addMonths(ticks, number * 3);
      break;
    case DatePart::Month:
      result = addMonths(ticks, number);
      break;
    case DatePart::Millisecond:
      result = ticks + floorDivide(number * 3 + 5, 10);
      break;
    default:
      result = ticks + number * partLength(part);
  }
  if (result < minDateTime || result > maxDateTime) throwOverflow();
  return result;
}

std::int64_t dateDifference(DatePart part, std::int64_t from, std::int64_t to) {
  std::int64_t difference = 0;
  switch (part) {
    case DatePart::Year:
      difference = civilFromTicks(to).year - civilFromTicks(from).year;
      break;
    case DatePart::Quarter:
      difference = monthNumber(civilFromTicks(to)) / 3 - monthNumber(civilFromTicks(from)) / 3;
      break;
    case DatePart::Month:
      difference = monthNumber(civilFromTicks(to)) - monthNumber(civilFromTicks(from));
      break;
    case DatePart::Week:  // weeks begin on Sunday here, whatever DATEFIRST says
      difference =
          floorDivide(to + ticksPerDay, 7 * ticksPerDay) - floorDivide(from + ticksPerDay, 7 * ticksPerDay);
      break;
    case DatePart::Millisecond:
      difference = milliseconds(to) - milliseconds(from);
      break;
    default:
      difference = floorDivide(to, partLength(part)) - floorDivide(from, partLength(part));
  }
  using Limits = std::numeric_limits<std::int32_t>;
  if (difference < Limits::min() || difference > Limits::max())
    throw Error(535, "Difference of two datetime columns caused overflow at runtime.");
  return difference;
}

std::int64_t datePart(DatePart part, std::int64_t ticks, int dateFirst) {
  const Civil c = civilFromTicks(ticks);
  const std::int64_t day = floorDivide(ticks, ticksPerDay);
  const std::int64_t dayOfYear = day - daysFromCivil(c.year, 1, 1) + 1;
  switch (part) {
    case DatePart::Year:
      return c.year;
    case DatePart::Quarter:
      return (c.month + 2) / 3;
    case DatePart::Month:
      return c.month;
    case DatePart::DayOfYear:
      return dayOfYear;
    case DatePart::Day:
      return c.day;
    case DatePart::Week:  // January 1st lies in week 1
      return (dayOfYear - 1 + weekdayNumber(daysFromCivil(c.year, 1, 1), dateFirst) - 1) / 7 + 1;
    case DatePart::Weekday:
      return weekdayNumber(day, dateFirst);
    case DatePart::Hour:
      return c.hour;
    case DatePart::Minute:
      return c.minute;
    case DatePart::Second:
      return c.second;
    case DatePart::Millisecond:
      return c.millisecond;
  }
  return 0;
}

std::string datePartName(DatePart part, std::int64_t ticks, int dateFirst) {
  if (part == DatePart::Month) return monthNames[civilFromTicks(ticks).month - 1];
  if (part == DatePart::Weekday) return dayNames[weekdayNumber(floorDivide(ticks, ticksPerDay), 7) - 1];
  return std::to_string(datePart(part, ticks, dateFirst));
}

}  // namespace engine
