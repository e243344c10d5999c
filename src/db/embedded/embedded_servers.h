// The embedded servers of this process, one per folder, shared by all connections to it.
#pragma once

#include <filesystem>
#include <map>
#include <memory>
#include <mutex>
#include <string>

#include "db/connection.h"
#include "engine/server.h"

namespace db {

// What an engine error is for data access; `opening`: it came up while a connection was opened.
SqlError fromEngine(const engine::Error& error, bool opening);

// Used from several threads.
class EmbeddedServers {
 public:
  explicit EmbeddedServers(std::filesystem::path programFolder) : programFolder_(std::move(programFolder)) {}

  // True for "(yerel)" and "(yerel):FOLDER", ASCII case ignored.
  static bool isEmbedded(std::string_view server);
  // The folder that such a name means.
  std::filesystem::path folderOf(std::string_view server) const;
  // Throws SqlError LinkBroken when the folder holds no server or its master database is damaged.
  std::shared_ptr<engine::Server> at(const std::filesystem::path& folder);
  std::shared_ptr<engine::Server> create(const std::filesystem::path& folder, const std::string& login,
                                         const std::string& password);

 private:
  std::filesystem::path programFolder_;
  std::recursive_mutex busy_;  // guards open_
  std::map<std::filesystem::path, std::shared_ptr<engine::Server>> open_;
};

std::unique_ptr<LocalServer> makeLocalServer(std::shared_ptr<EmbeddedServers> servers,
                                             std::filesystem::path folder);

}  // namespace db
