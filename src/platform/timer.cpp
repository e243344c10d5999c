#include "platform/timer.h"

#include <cstdlib>

#include "platform/files.h"
#include "platform/folders.h"
#include "platform/service_manager.h"

namespace platform {

namespace fs = std::filesystem;

namespace {

// One word of a command line, as systemd reads it.
std::string word(const std::string& text) {
  std::string out = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\') out += '\\';
    if (c == '%' || c == '$') out += c;
    out += c;
  }
  return out + "\"";
}

std::string commandLine(const std::vector<std::string>& arguments) {
  std::string text;
  for (const std::string& argument : arguments) text += (text.empty() ? "" : " ") + word(argument);
  return text;
}

}  // namespace

fs::path userUnitFolder() {
  return userConfigFolder().parent_path() / "systemd" / "user";
}

std::string serviceUnit(const DailyTimer& timer) {
  return "[Unit]\nDescription=" + timer.description +
         "\n\n[Service]\nType=oneshot\nExecStart=" + commandLine(timer.arguments) + "\n";
}

std::string serviceUnit(const RunningService& service) {
  return "[Unit]\nDescription=" + service.description +
         "\n\n[Service]\nExecStart=" + commandLine(service.arguments) +
         "\nRestart=on-failure\nTimeoutStopSec=60\n\n[Install]\nWantedBy=default.target\n";
}

std::string installService(const RunningService& service) {
  const fs::path folder = userUnitFolder(), unit = folder / (service.name + ".service");
  std::error_code error;
  fs::create_directories(folder, error);
  if (!error) error = writeFileSafely(unit, serviceUnit(service));
  if (error) return folder.string() + ": " + error.message();
  if (std::string said = userManager({"daemon-reload"}); !said.empty()) return said;
  if (std::string said = userManager({"enable", unit.filename().string()}); !said.empty()) return said;
  return userManager({"restart", unit.filename().string()});
}

bool removeService(const std::string& name) {
  const fs::path unit = userUnitFolder() / (name + ".service");
  std::error_code error;
  if (!fs::exists(unit, error)) return false;
  userManager({"disable", "--now", unit.filename().string()});
  fs::remove(unit, error);
  userManager({"daemon-reload"});
  return true;
}

std::string serviceStatus(const std::string& name) {
  const fs::path unit = userUnitFolder() / (name + ".service");
  std::error_code error;
  if (!fs::exists(unit, error)) return {};
  const std::string said = userManager({"is-active", unit.filename().string()});
  return said.empty() ? "active" : said;
}

std::string timerUnit(const DailyTimer& timer) {
  return "[Unit]\nDescription=" + timer.description + "\n\n[Timer]\nOnCalendar=*-*-* " + timer.time +
         ":00\nPersistent=true\n\n[Install]\nWantedBy=timers.target\n";
}

std::string installTimer(const DailyTimer& timer) {
  const fs::path folder = userUnitFolder(), service = folder / (timer.name + ".service"),
                 unit = folder / (timer.name + ".timer");
  std::error_code error;
  fs::create_directories(folder, error);
  if (!error) error = writeFileSafely(service, serviceUnit(timer));
  if (!error) {
    error = writeFileSafely(unit, timerUnit(timer));
    std::error_code ignored;
    if (error) fs::remove(service, ignored);
  }
  if (error) return folder.string() + ": " + error.message();
  if (std::string said = userManager({"daemon-reload"}); !said.empty()) return said;
  return userManager({"enable", "--now", timer.name + ".timer"});
}

bool removeTimer(const std::string& name) {
  const fs::path folder = userUnitFolder(), service = folder / (name + ".service");
  std::error_code error;
  removeUnfinishedWrites(folder);
  if (!fs::exists(folder / (name + ".timer"), error)) {
    fs::remove(service, error);  // what is left where writing or taking away broke off
    return false;
  }
  userManager({"disable", "--now", name + ".timer"});
  fs::remove(folder / (name + ".timer"), error);
  fs::remove(service, error);
  userManager({"daemon-reload"});
  return true;
}

}  // namespace platform
