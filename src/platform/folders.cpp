#include "platform/folders.h"

#include <algorithm>
#include <cstdlib>
#include <string>

#include "platform/files.h"

#ifdef _WIN32
#include <windows.h>
#endif

namespace platform {

namespace fs = std::filesystem;

namespace {

fs::path fromEnvironment(const char* name) {
  const char* value = std::getenv(name);
  return value != nullptr ? fs::path(value) : fs::path();
}

#ifdef _WIN32
fs::path userFolder(const char*, const char*) {
  return fromEnvironment("APPDATA") / "Zembera";
}
#else
// The base directory rules take absolute paths only.
fs::path userFolder(const char* variable, const char* fallback) {
  fs::path base = fromEnvironment(variable);
  if (!base.is_absolute()) base = fromEnvironment("HOME") / fallback;
  return base / "zembera";
}
#endif

}  // namespace

fs::path executableFolder() {
#ifdef _WIN32
  std::wstring name(32768, L'\0');
  name.resize(GetModuleFileNameW(nullptr, name.data(), static_cast<DWORD>(name.size())));
  return fs::path(name).parent_path();
#else
  std::error_code error;
  const fs::path self = fs::read_symlink("/proc/self/exe", error);
  return error ? fs::current_path() : self.parent_path();
#endif
}

fs::path userConfigFolder() {
  return userFolder("XDG_CONFIG_HOME", ".config");
}
fs::path userDataFolder() {
  return userFolder("XDG_DATA_HOME", ".local/share");
}

fs::path installedDataFolder() {
  const fs::path bin = executableFolder();
  fs::path data = bin.parent_path() / "share" / "zembera";
  std::error_code error;
  return bin.filename() == "bin" && fs::is_directory(data, error) ? data : fs::path();
}

fs::path systemFolder() {
#ifdef _WIN32
  return {};
#else
  return "/etc/zembera";
#endif
}

fs::path programFolder() {
  const fs::path own = executableFolder();
  return chooseProgramFolder({own, userDataFolder(), systemFolder(), !installedDataFolder().empty()});
}

fs::path chooseProgramFolder(const ProgramPlaces& places) {
  std::error_code error;
  const auto& [own, users, systems, installed] = places;
  if (!installed && (canWriteFolder(own) || fs::exists(own / "sys.inf", error))) return own;
  if (installed && !systems.empty() && !fs::exists(users / "sys.inf", error) &&
      (readFile(systems / "sys.inf", 1) || canWriteFolder(systems)))
    return systems;
  fs::create_directories(users, error);
  return users;
}

fs::path hostPath(std::string_view text) {
  std::string path(text);
#ifndef _WIN32
  std::replace(path.begin(), path.end(), '\\', '/');
#endif
  return {path};
}

}  // namespace platform
