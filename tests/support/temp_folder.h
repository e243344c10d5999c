// A folder of a test's own, which goes with its object. No two tests share one: they run side by side.
#pragma once

#include <stdlib.h>

#include <filesystem>
#include <stdexcept>
#include <string>

namespace support {

class TempFolder {
 public:
  TempFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "zembera-XXXXXX").string();
    if (!::mkdtemp(name.data())) throw std::runtime_error("no temporary folder");
    path = name;
  }
  ~TempFolder() {
    std::error_code error;
    std::filesystem::remove_all(path, error);
  }
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;

  std::filesystem::path path;
};

}  // namespace support
