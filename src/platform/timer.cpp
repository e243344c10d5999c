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

}  // namespace

fs::path userUnitFolder() {
  return userConfigFolder().parent_path() / "systemd" / "user";
}

std::string serviceUnit(const DailyTimer& timer) {
  std::string text = "[Unit]\nDescription=" + timer.description + "\n\n[Service]\nType=oneshot\nExecStart=";
  for (std::size_t i = 0; i < timer.arguments.size(); ++i) text += (i ? " " : "") + word(timer.arguments[i]);
  return text + "\n";
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
  const fs::path folder = userUnitFolder();
  std::error_code error;
  if (!fs::exists(folder / (name + ".timer"), error)) return false;
  userManager({"disable", "--now", name + ".timer"});
  for (const char* ending : {".timer", ".service"}) fs::remove(folder / (name + ending), error);
  userManager({"daemon-reload"});
  return true;
}

}  // namespace platform
