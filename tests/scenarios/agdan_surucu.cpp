#include <cstdlib>
#include <map>

#include "db/drivers.h"
#include "db/embedded/embedded_servers.h"
#include "db/odbc/sqlserver.h"
#include "support/surucu.h"
#include "tds/server.h"

namespace support {

namespace {

// The embedded servers of one program folder, each with a listener of its own from the first connection on.
class Sunucular {
 public:
  explicit Sunucular(const std::filesystem::path& dizin)
      : servers_(std::make_shared<db::EmbeddedServers>(dizin)) {}

  std::uint16_t kapi(const std::string& server) {
    const auto folder = servers_->folderOf(server);
    const auto engine = servers_->at(folder);
    auto& listening = listening_[folder];
    if (listening.engine != engine) {
      tds::Options options;
      options.port = 0;
      options.plainOnThisMachine = true;
      listening.server = std::make_unique<tds::Server>(engine, options);
      listening.engine = engine;
    }
    return listening.server->port();
  }
  const std::shared_ptr<db::EmbeddedServers>& servers() const { return servers_; }

 private:
  struct Listening {
    std::shared_ptr<engine::Server> engine;
    std::unique_ptr<tds::Server> server;
  };
  std::shared_ptr<db::EmbeddedServers> servers_;
  std::map<std::filesystem::path, Listening> listening_;
};

class AgdanBaglanti : public db::Connection {
 public:
  explicit AgdanBaglanti(std::shared_ptr<Sunucular> sunucular) : sunucular_(std::move(sunucular)) {}

  void open(const db::ConnectionParts& parts) override {
    parts_ = parts;
    db::ConnectionParts reached = parts;
    reached.server = "127.0.0.1," + std::to_string(sunucular_->kapi(parts.server));
    // FreeTDS gives up on an integrated login before it asks; the server here knows none either.
    reached.integrated = false;
    asil_->open(reached);
  }
  void close() override { asil_->close(); }
  db::State state() const override { return asil_->state(); }
  std::string connectionText() const override { return asil_->connectionText(); }
  const db::ConnectionParts& parts() const override { return parts_; }
  void run(std::string_view batch, db::BatchSink& sink) override { asil_->run(batch, sink); }
  std::vector<db::TableColumn> tableColumns(const std::string& database, const std::string& table) override {
    return asil_->tableColumns(database, table);
  }

 private:
  std::shared_ptr<Sunucular> sunucular_;
  std::unique_ptr<db::Connection> asil_ = db::makeSqlServerConnection();
  db::ConnectionParts parts_;
};

class AgdanSurucu : public db::ConnectionFactory {
 public:
  explicit AgdanSurucu(const std::filesystem::path& dizin) : sunucular_(std::make_shared<Sunucular>(dizin)) {}
  std::unique_ptr<db::Connection> make(const std::string&) override {
    return std::make_unique<AgdanBaglanti>(sunucular_);
  }
  std::unique_ptr<db::LocalServer> local(const std::string& server) override {
    return db::makeLocalServer(sunucular_->servers(), sunucular_->servers()->folderOf(server));
  }

 private:
  std::shared_ptr<Sunucular> sunucular_;
};

}  // namespace

std::unique_ptr<db::ConnectionFactory> surucuYap(const std::filesystem::path& dizin) {
  if (std::getenv("ZEMBERA_AGDAN") == nullptr) return db::makeConnectionFactory(dizin);
  return std::make_unique<AgdanSurucu>(dizin);
}

}  // namespace support
