#include "db/drivers.h"

#include "db/embedded/embedded_connection.h"
#include "db/odbc/sqlserver.h"

namespace db {
namespace {

class ServerNameFactory : public ConnectionFactory {
 public:
  explicit ServerNameFactory(const std::filesystem::path& programFolder)
      : servers_(std::make_shared<EmbeddedServers>(programFolder)) {}

  std::unique_ptr<Connection> make(const std::string& server) override {
    if (EmbeddedServers::isEmbedded(server)) return std::make_unique<EmbeddedConnection>(servers_);
    return makeSqlServerConnection();
  }

  std::unique_ptr<LocalServer> local(const std::string& server) override {
    if (!EmbeddedServers::isEmbedded(server)) return nullptr;
    return makeLocalServer(servers_, servers_->folderOf(server));
  }

 private:
  std::shared_ptr<EmbeddedServers> servers_;
};

}  // namespace

std::unique_ptr<ConnectionFactory> makeConnectionFactory(const std::filesystem::path& programFolder) {
  return std::make_unique<ServerNameFactory>(programFolder);
}

}  // namespace db
