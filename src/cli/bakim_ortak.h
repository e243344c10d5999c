// What the commands of maintenance share.
#pragma once

#include <filesystem>
#include <string>

#include "cli/oturum_ac.h"
#include "platform/folders.h"

namespace cli {

// An absolute path; the command may stand in another folder when it is used.
inline std::filesystem::path tamYol(const std::string& yol) {
  return std::filesystem::absolute(platform::hostPath(yol)).lexically_normal();
}

// Empty after the catalog was reached and the company found, which is told as it is listed there.
std::string firmaBul(KomutOturumu& komut, const std::string& ad);

}  // namespace cli
