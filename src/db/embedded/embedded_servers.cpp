#include "db/embedded/embedded_servers.h"

#include "db/embedded/embedded_connection.h"
#include "db/table_name.h"

namespace db {
namespace {

constexpr std::string_view localName = "(yerel)";
constexpr int noServer = 17;  // "SQL Server does not exist or access denied."
constexpr int loginFailed = 18456;
constexpr int notTrusted = 18452;
constexpr int serviceStopped = 17142;

template <class Work>
auto guarded(Work&& work) {
  try {
    return work();
  } catch (const engine::Error& error) {
    throw fromEngine(error, true);
  }
}

std::vector<TableDigest> digests(const std::vector<engine::TableDigest>& tables) {
  std::vector<TableDigest> out;
  for (const auto& table : tables) out.push_back({table.name, table.rows, table.sum});
  return out;
}

class EmbeddedReading : public CopyReading {
 public:
  EmbeddedReading(const std::shared_ptr<engine::Server>& server, const std::string& name)
      : reading_(server, name) {}
  void take(const char* bytes, std::size_t count) override { reading_.take(bytes, count); }
  CopyFindings finish() override {
    const engine::DataFindings found = guarded([&] { return reading_.finish(); });
    return {found.told, found.doubt, digests(found.tables)};
  }

 private:
  engine::CopyReading reading_;
};

class EmbeddedCopy : public DatabaseCopy {
 public:
  EmbeddedCopy(const std::filesystem::path& data, const std::filesystem::path& log, const std::string& name,
               const std::filesystem::path& scratch)
      : copy_(engine::Server::openCopy(data, log, name, scratch)), name_(name), connection_(nullptr) {
    connection_.openAt(copy_.server, {"(kopya)", copy_.login, copy_.password, name, false});
  }
  Connection& connection() override { return connection_; }
  std::filesystem::path file() const override { return copy_.data; }
  std::unique_ptr<CopyReading> read() override {
    return guarded([&] { return std::make_unique<EmbeddedReading>(copy_.server, name_); });
  }
  std::vector<TableDigest> tables() override {
    return guarded([&] { return digests(copy_.server->digest(name_)); });
  }

 private:
  engine::Server::Copy copy_;
  std::string name_;
  EmbeddedConnection connection_;
};

class EmbeddedService : public LocalServer {
 public:
  EmbeddedService(std::shared_ptr<EmbeddedServers> servers, std::filesystem::path folder)
      : servers_(std::move(servers)), folder_(std::move(folder)) {}

  std::filesystem::path folder() const override { return folder_; }
  bool exists() const override { return engine::Server::exists(folder_); }
  void create(const std::string& login, const std::string& password) override {
    servers_->create(folder_, login, password);
  }
  bool running() const override {
    return exists() && servers_->at(folder_)->serviceState() == engine::ServiceState::Running;
  }
  void stop() override {
    try {
      const auto server = servers_->at(folder_);
      if (server->serviceState() == engine::ServiceState::Running) server->stop();
    } catch (const engine::Error& error) {
      throw fromEngine(error, true);
    }
  }
  std::vector<std::string> remarks(bool close) override {
    std::vector<std::string> found;
    const auto server = servers_->at(folder_);
    if (close) server->closeExposed();
    if (const auto open = server->exposed(); !open.empty())
      found.push_back(open.front().string() +
                      (open.size() > 1 ? " ve " + std::to_string(open.size() - 1) + " dosya daha" : "") +
                      " başkalarına açık; içlerinde şifreler var. Kapatmak için: zembera-cli denetle --onar");
    for (const auto& left : server->leftOvers())
      found.push_back("\"" + left.name + "\" veritabanının bir kısmı onarılamadı: " + left.error.what());
    for (const auto& bad : damaged_)
      found.push_back("\"" + bad.name + "\" veritabanı açılamadı: " + bad.error.what());
    return found;
  }
  std::filesystem::path recordedFolder() const override { return servers_->at(folder_)->recordedFolder(); }
  void start() override {
    try {
      const auto server = servers_->at(folder_);
      if (server->serviceState() == engine::ServiceState::Stopped) damaged_ = server->start();
    } catch (const engine::Error& error) {
      throw fromEngine(error, true);
    }
  }
  void check(const std::filesystem::path& data, const std::filesystem::path& log, const std::string& name,
             const Step& step) override {
    guarded([&] { engine::Server::checkFiles(data, log, name, step); });
  }

  std::unique_ptr<DatabaseCopy> openCopy(const std::filesystem::path& data, const std::filesystem::path& log,
                                         const std::string& name,
                                         const std::filesystem::path& scratch) override {
    return guarded([&] { return std::make_unique<EmbeddedCopy>(data, log, name, scratch); });
  }
  std::vector<TableDigest> copyLive(const std::string& database, const std::filesystem::path& data,
                                    const std::filesystem::path& log, const Step& step) override {
    return guarded([&] { return digests(servers_->at(folder_)->copyLive(database, data, log, step)); });
  }

 private:
  std::shared_ptr<EmbeddedServers> servers_;
  std::filesystem::path folder_;
  std::vector<engine::DamagedDatabase> damaged_;  // at the last start
};

}  // namespace

SqlError fromEngine(const engine::Error& error, bool opening) {
  const int number = error.number();
  if (number == loginFailed || number == notTrusted) {
    return {ErrorKind::LoginRefused, number, error.what()};
  }
  const bool link = opening || number == serviceStopped;
  return {link ? ErrorKind::LinkBroken : ErrorKind::StatementRefused, number, error.what()};
}

bool EmbeddedServers::isEmbedded(std::string_view server) {
  if (!sameName(server.substr(0, localName.size()), localName)) return false;
  return server.size() == localName.size() || server[localName.size()] == ':';
}

std::filesystem::path EmbeddedServers::folderOf(std::string_view server) const {
  std::string_view name = server.substr(std::min(server.size(), localName.size() + 1));
  if (name.empty()) name = "veri";
  return std::filesystem::absolute(programFolder_ / std::filesystem::path(name)).lexically_normal();
}

std::shared_ptr<engine::Server> EmbeddedServers::at(const std::filesystem::path& folder) {
  const std::lock_guard guard(busy_);
  if (!engine::Server::exists(folder)) {
    open_.erase(folder);
    throw SqlError(ErrorKind::LinkBroken, noServer,
                   "Yerel sunucu bulunamadı veya erişilemiyor: " + folder.string());
  }
  auto& server = open_[folder];
  try {
    if (!server) server = engine::Server::open(folder);
  } catch (const engine::Error& error) {
    const SqlError failure = fromEngine(error, true);
    throw SqlError(failure.kind(), failure.serverNumber(),
                   "Yerel sunucu açılamadı (" + folder.string() + "): " + failure.what());
  }
  return server;
}

std::shared_ptr<engine::Server> EmbeddedServers::create(const std::filesystem::path& folder,
                                                        const std::string& login,
                                                        const std::string& password) {
  const std::lock_guard guard(busy_);
  try {
    return open_[folder] = engine::Server::create(folder, login, password);
  } catch (const engine::Error& error) {
    throw fromEngine(error, true);
  }
}

std::unique_ptr<LocalServer> makeLocalServer(std::shared_ptr<EmbeddedServers> servers,
                                             std::filesystem::path folder) {
  return std::make_unique<EmbeddedService>(std::move(servers), std::move(folder));
}

}  // namespace db
