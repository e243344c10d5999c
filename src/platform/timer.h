// A command that the user's own service manager runs every day: a systemd user service with its timer.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace platform {

struct DailyTimer {
  std::string name;  // of both units: "zembera-yedek"
  std::string description;
  std::string time;                    // "23:30"
  std::vector<std::string> arguments;  // the program first, by its whole path
};

// Where the units of this user lie: $XDG_CONFIG_HOME/systemd/user or ~/.config/systemd/user.
std::filesystem::path userUnitFolder();
// The text of both units, as they are written.
std::string serviceUnit(const DailyTimer& timer);
std::string timerUnit(const DailyTimer& timer);
// Writes both and asks the manager to take them up. Empty on success; what could not be written, and then
// nothing is; or what the manager said, and then the units are written.
std::string installTimer(const DailyTimer& timer);
// Takes both away; false when there were none.
bool removeTimer(const std::string& name);

}  // namespace platform
