// Reading dates from text.
#pragma once

#include <cstdint>
#include <string_view>

#include "engine/value/convert.h"

namespace engine {

enum class DateReading : std::uint8_t { Date, NotADate, OutOfRange };

// `ticks` is set for Date only. Empty text is 1900-01-01.
DateReading readDateTime(std::string_view text, DateFormat format, std::int64_t& ticks);
// The order of day, month and year that a CONVERT style stands for; the session's for style 0 and others.
DateFormat styleDateFormat(int style, DateFormat session);

}  // namespace engine
