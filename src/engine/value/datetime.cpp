#include "engine/value/datetime.h"

#include <array>
#include <cstdio>

#include "engine/value/error.h"

namespace engine {

const char* const monthNames[12] = {"January", "February", "March",     "April",   "May",      "June",
                                    "July",    "August",   "September", "October", "November", "December"};
const char* const dayNames[7] = {"Sunday",   "Monday", "Tuesday", "Wednesday",
                                 "Thursday", "Friday", "Saturday"};

namespace {

// Parts of a style: d day, e day padded with a blank, m month, N month's name, y Y year, H h hour
// (24, 12), i minute, s second, f milliseconds, F milliseconds unless 0, a AM or PM.
struct Style {
  int number;
  const char* form;
};
constexpr std::array styles = {
    Style{0, "N e Y h:ia"},
    Style{1, "m/d/y"},
    Style{2, "y.m.d"},
    Style{3, "d/m/y"},
    Style{4, "d.m.y"},
    Style{5, "d-m-y"},
    Style{6, "d N y"},
    Style{7, "N d, y"},
    Style{8, "H:i:s"},
    Style{9, "N e Y h:i:s:fa"},
    Style{10, "m-d-y"},
    Style{11, "y/m/d"},
    Style{12, "ymd"},
    Style{13, "d N Y H:i:s:f"},
    Style{14, "H:i:s:f"},
    Style{20, "Y-m-d H:i:s"},
    Style{21, "Y-m-d H:i:s.f"},
    Style{22, "m/d/y h:i:s a"},
    Style{23, "Y-m-d"},
    Style{24, "H:i:s"},
    Style{25, "Y-m-d H:i:s.f"},
    Style{100, "N e Y h:ia"},
    Style{101, "m/d/Y"},
    Style{102, "Y.m.d"},
    Style{103, "d/m/Y"},
    Style{104, "d.m.Y"},
    Style{105, "d-m-Y"},
    Style{106, "d N Y"},
    Style{107, "N d, Y"},
    Style{108, "H:i:s"},
    Style{109, "N e Y h:i:s:fa"},
    Style{110, "m-d-Y"},
    Style{111, "Y/m/d"},
    Style{112, "Ymd"},
    Style{113, "d N Y H:i:s:f"},
    Style{114, "H:i:s:f"},
    Style{120, "Y-m-d H:i:s"},
    Style{121, "Y-m-d H:i:s.f"},
    Style{126, "Y-m-dTH:i:sF"},
    Style{127, "Y-m-dTH:i:sF"},
};

void appendNumber(std::string& text, int value, const char* form) {
  std::array<char, 16> buffer;
  text.append(buffer.data(), std::snprintf(buffer.data(), buffer.size(), form, value));
}

void appendPart(std::string& text, char part, const Civil& c) {
  switch (part) {
    case 'd':
      return appendNumber(text, c.day, "%02d");
    case 'e':
      return appendNumber(text, c.day, "%2d");
    case 'm':
      return appendNumber(text, c.month, "%02d");
    case 'N':
      text.append(monthNames[c.month - 1], 3);
      return;
    case 'y':
      return appendNumber(text, c.year % 100, "%02d");
    case 'Y':
      return appendNumber(text, c.year, "%04d");
    case 'H':
      return appendNumber(text, c.hour, "%02d");
    case 'h':
      return appendNumber(text, c.hour % 12 == 0 ? 12 : c.hour % 12, "%2d");
    case 'i':
      return appendNumber(text, c.minute, "%02d");
    case 's':
      return appendNumber(text, c.second, "%02d");
    case 'f':
      return appendNumber(text, c.millisecond, "%03d");
    case 'F':
      if (c.millisecond) appendNumber(text, c.millisecond, ".%03d");
      return;
    case 'a':
      text += c.hour < 12 ? "AM" : "PM";
      return;
    default:
      text += part;
  }
}

std::int64_t floorDivide(std::int64_t value, std::int64_t by) {
  return value >= 0 ? value / by : -((-value + by - 1) / by);
}

}  // namespace

std::int64_t daysFromCivil(int year, int month, int day) {
  // Years that begin in March put the leap day last; 693901 days lie before 1900-01-01 in that count.
  const std::int64_t y = month <= 2 ? year - 1 : year;
  const std::int64_t era = floorDivide(y, 400);
  const std::int64_t yearOfEra = y - era * 400;
  const std::int64_t dayOfYear = (153 * (month + (month > 2 ? -3 : 9)) + 2) / 5 + day - 1;
  return era * 146097 + yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear - 693901;
}

Civil civilFromTicks(std::int64_t ticks) {
  const std::int64_t days = floorDivide(ticks, ticksPerDay);
  std::int64_t rest = ticks - days * ticksPerDay;
  const std::int64_t z = days + 693901;
  const std::int64_t era = floorDivide(z, 146097);
  const std::int64_t dayOfEra = z - era * 146097;
  const std::int64_t yearOfEra = (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
  const std::int64_t dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
  const std::int64_t shifted = (5 * dayOfYear + 2) / 153;
  Civil c;
  c.day = static_cast<int>(dayOfYear - (153 * shifted + 2) / 5 + 1);
  c.month = static_cast<int>(shifted < 10 ? shifted + 3 : shifted - 9);
  c.year = static_cast<int>(yearOfEra + era * 400 + (c.month <= 2));
  c.hour = static_cast<int>(rest / ticksPerHour);
  rest %= ticksPerHour;
  c.minute = static_cast<int>(rest / ticksPerMinute);
  rest %= ticksPerMinute;
  c.second = static_cast<int>(rest / ticksPerSecond);
  c.millisecond = static_cast<int>(((rest % ticksPerSecond) * 20 + 3) / 6);
  return c;
}

std::int64_t ticksFromCivil(const Civil& c) {
  return daysFromCivil(c.year, c.month, c.day) * ticksPerDay + c.hour * ticksPerHour +
         c.minute * ticksPerMinute + c.second * ticksPerSecond + (c.millisecond * 3 + 5) / 10;
}

int daysInMonth(int year, int month) {
  constexpr std::array<int, 12> days = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  const bool leap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
  return month == 2 && leap ? 29 : days[month - 1];
}

bool isValidDate(int year, int month, int day) {
  return year >= 1753 && year <= 9999 && month >= 1 && month <= 12 && day >= 1 &&
         day <= daysInMonth(year, month);
}

std::string formatDateTime(std::int64_t ticks, const Type& type, int style) {
  for (const Style& known : styles) {
    if (known.number != style) continue;
    const Civil civil = civilFromTicks(ticks);
    std::string text;
    for (const char* part = known.form; *part; ++part) appendPart(text, *part, civil);
    return text;
  }
  throw Error(281, std::to_string(style) + " is not a valid style number when converting from " +
                       typeName(type.id) + " to a character string.");
}

}  // namespace engine
