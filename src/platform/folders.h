// Where the program and its files lie.
#pragma once

#include <filesystem>
#include <string_view>

namespace platform {

std::filesystem::path executableFolder();
// Per-user folders of this program; not made here.
std::filesystem::path userConfigFolder();  // $XDG_CONFIG_HOME/zembera or ~/.config/zembera
std::filesystem::path userDataFolder();    // $XDG_DATA_HOME/zembera or ~/.local/share/zembera

// The data that an installation keeps for its programs: PREFIX/share/zembera, seen from PREFIX/bin. Empty
// when the program was not installed so: built, or carried in a folder with all that belongs to it.
std::filesystem::path installedDataFolder();
// The folder of a server that belongs to the machine and not to one of its users: /etc/zembera. Empty where
// there is no such place.
std::filesystem::path systemFolder();

// The folder that holds sys.inf. A program that was not installed: the executable's own, or the user's data
// folder when the former cannot be written and holds no sys.inf. An installed one: the user's data folder;
// where that holds no sys.inf, the system's folder if this user may read the sys.inf there or make one. The
// user's folder is made when missing.
std::filesystem::path programFolder();
struct ProgramPlaces {
  std::filesystem::path own, users, systems;  // the executable's folder, the user's, the machine's
  bool installed = false;
};
std::filesystem::path chooseProgramFolder(const ProgramPlaces& places);  // the rule by itself

// A path of the system's texts as this machine knows it: "\" separates folders ("DIR\NAME.mdf").
std::filesystem::path hostPath(std::string_view text);

}  // namespace platform
