#include "platform/machine.h"

#include <chrono>
#include <ctime>

#ifdef _WIN32
#include <windows.h>
#endif

namespace platform {

void restartMachine() {
#ifdef _WIN32
  ExitWindowsEx(EWX_REBOOT, 0);
#endif
}

LocalTime localTime() {
  using namespace std::chrono;
  const auto now = system_clock::now();
  const std::time_t seconds = system_clock::to_time_t(now);
  std::tm parts{};
#ifdef _WIN32
  localtime_s(&parts, &seconds);
#else
  localtime_r(&seconds, &parts);
#endif
  const auto millisecond = duration_cast<milliseconds>(now.time_since_epoch()).count() % 1000;
  return {parts.tm_year + 1900,
          parts.tm_mon + 1,
          parts.tm_mday,
          parts.tm_hour,
          parts.tm_min,
          parts.tm_sec,
          static_cast<int>(millisecond)};
}

}  // namespace platform
