// The z_ functions of dates.
#include <array>
#include <chrono>
#include <ctime>

#include "engine/function/sqlite_values.h"
#include "engine/value.h"

namespace engine {
namespace {

using Values = sqlite3_value**;

std::int64_t clockTicks(bool local) {
  const auto now = std::chrono::system_clock::now();
  const std::time_t seconds = std::chrono::system_clock::to_time_t(now);
  const auto fraction = now - std::chrono::system_clock::from_time_t(seconds);
  std::tm tm{};
#ifdef _WIN32
  local ? localtime_s(&tm, &seconds) : gmtime_s(&tm, &seconds);
#else
  local ? localtime_r(&seconds, &tm) : gmtime_r(&seconds, &tm);
#endif
  Civil civil{tm.tm_year + 1900, tm.tm_mon + 1, tm.tm_mday, tm.tm_hour, tm.tm_min, tm.tm_sec, 0};
  if (civil.second > 59) civil.second = 59;  // a leap second
  civil.millisecond =
      static_cast<int>(std::chrono::duration_cast<std::chrono::milliseconds>(fraction).count());
  return ticksFromCivil(civil);
}

DatePart partOf(sqlite3_value* value) {
  return static_cast<DatePart>(sqlite3_value_int(value));
}

void now(sqlite3_context* context, int, Values) {
  const std::int64_t fixed = sessionOf(context).statementTime;
  sqlite3_result_int64(context, fixed ? fixed : currentTicks());
}

void utcNow(sqlite3_context* context, int, Values) {
  sqlite3_result_int64(context, clockTicks(false));
}

void dateAdd(sqlite3_context* context, int, Values values) {
  sqlite3_result_int64(context, addDatePart(partOf(values[0]), sqlite3_value_int64(values[1]),
                                            sqlite3_value_int64(values[2])));
}

void dateDiff(sqlite3_context* context, int, Values values) {
  sqlite3_result_int64(context, dateDifference(partOf(values[0]), sqlite3_value_int64(values[1]),
                                               sqlite3_value_int64(values[2])));
}

void part(sqlite3_context* context, int, Values values) {
  sqlite3_result_int64(
      context, datePart(partOf(values[0]), sqlite3_value_int64(values[1]), sessionOf(context).dateFirst));
}

void name(sqlite3_context* context, int, Values values) {
  setText(context,
          datePartName(partOf(values[0]), sqlite3_value_int64(values[1]), sessionOf(context).dateFirst));
}

void isDate(sqlite3_context* context, int, Values values) {
  sqlite3_result_int(context, sqlite3_value_type(values[0]) != SQLITE_NULL &&
                                  isDateText(textOf(values[0]), sessionOf(context)));
}

constexpr std::array functions = {
    SqlFunction{"z_now", 0, guarded<now>, false}, SqlFunction{"z_utcnow", 0, guarded<utcNow>, false},
    SqlFunction{"z_dateadd", 3, strict<dateAdd>}, SqlFunction{"z_datediff", 3, strict<dateDiff>},
    SqlFunction{"z_datepart", 2, strict<part>},   SqlFunction{"z_datename", 2, strict<name>},
    SqlFunction{"z_isdate", 1, guarded<isDate>},
};

}  // namespace

std::int64_t currentTicks() {
  return clockTicks(true);
}

std::span<const SqlFunction> dateSqlFunctions() {
  return functions;
}

}  // namespace engine
