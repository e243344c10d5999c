// DATEADD, DATEDIFF and DATEPART on ticks. Pure.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace engine {

enum class DatePart : std::uint8_t {
  Year,
  Quarter,
  Month,
  DayOfYear,
  Day,
  Week,
  Weekday,
  Hour,
  Minute,
  Second,
  Millisecond
};

// day, dd, d ...; by ASCII folding.
std::optional<DatePart> findDatePart(std::string_view word);

// The last day of a shorter month stands for days it has not. Throws Error 517 out of range.
std::int64_t addDatePart(DatePart part, std::int64_t number, std::int64_t ticks);
// How often the part's boundary is crossed from one to the other; throws Error 535 beyond an INT.
std::int64_t dateDifference(DatePart part, std::int64_t from, std::int64_t to);
// `dateFirst`: the first day of the week, 1 Monday .. 7 Sunday.
std::int64_t datePart(DatePart part, std::int64_t ticks, int dateFirst);
std::string datePartName(DatePart part, std::int64_t ticks, int dateFirst);

}  // namespace engine
