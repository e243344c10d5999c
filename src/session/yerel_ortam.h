// Clock and platform ports on the machine that the program runs on.
#pragma once

#include <filesystem>

#include "session/ports.h"

namespace session {

class YerelSaat : public Clock {
 public:
  db::DateTime now() const override;
};

class YerelPlatform : public Platform {
 public:
  explicit YerelPlatform(std::filesystem::path programFolder) : folder_(std::move(programFolder)) {}
  std::string registryRead(std::string_view root, std::string_view key, std::string_view value) override;
  void registryWrite(std::string_view root, std::string_view key, std::string_view value,
                     std::string_view text) override;
  bool registryKeyIsNew(std::string_view root, std::string_view key) override;
  void restart() override;
  std::filesystem::path programFolder() const override { return folder_; }
  Service service(std::string_view server) override;
  std::string serviceRequest(std::string_view server, bool start) override;

 private:
  std::filesystem::path folder_;
};

}  // namespace session
