// Restart and local time.
#pragma once

namespace platform {

// Windows: restarts the machine. Elsewhere there is no system setting that would need it: returns, and the
// caller ends the program so that it can be started anew.
void restartMachine();

struct LocalTime {
  int year, month, day, hour, minute, second, millisecond;
};
LocalTime localTime();

}  // namespace platform
