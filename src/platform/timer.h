// What the user's own service manager runs: a command every day (a systemd user service with its timer), or a
// server for as long as it is wanted.
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

// A program that the manager keeps running: started with the session and again when it falls.
struct RunningService {
  std::string name;  // of the unit: "zembera-ag"
  std::string description;
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
// The same for a running service. One that runs already is started anew with what is written now.
std::string serviceUnit(const RunningService& service);
std::string installService(const RunningService& service);
// Stops it and takes its unit away; false when there was none.
bool removeService(const std::string& name);
// "active", "inactive", "failed" ...; what the manager says else; empty without a unit.
std::string serviceStatus(const std::string& name);
// Takes both away; false when there were none.
bool removeTimer(const std::string& name);

}  // namespace platform
