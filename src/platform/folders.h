// Where the program and its files lie.
#pragma once

#include <filesystem>
#include <string_view>

namespace platform {

std::filesystem::path executableFolder();
// Per-user folders of this program; not made here.
std::filesystem::path userConfigFolder();  // $XDG_CONFIG_HOME/zembera or ~/.config/zembera
std::filesystem::path userDataFolder();    // $XDG_DATA_HOME/zembera or ~/.local/share/zembera

// The folder that holds sys.inf: the executable's own, or the user's data folder (made when missing) when
// the former cannot be written and holds no sys.inf.
std::filesystem::path programFolder();

// A path of the system's texts as this machine knows it: "\" separates folders ("DIR\NAME.mdf").
std::filesystem::path hostPath(std::string_view text);

}  // namespace platform
