// A connection to a server inside this process.
#pragma once

#include <memory>
#include <string>

#include "db/connection.h"
#include "db/embedded/embedded_servers.h"

namespace db {

class EmbeddedConnection : public Connection {
 public:
  explicit EmbeddedConnection(std::shared_ptr<EmbeddedServers> servers) : servers_(std::move(servers)) {}

  void open(const ConnectionParts& parts) override;
  // On a server that no name leads to.
  void openAt(std::shared_ptr<engine::Server> server, const ConnectionParts& parts);
  void close() override { session_.reset(); }
  State state() const override { return session_ ? State::Open : State::Closed; }
  std::string connectionText() const override;
  const ConnectionParts& parts() const override { return parts_; }
  void run(std::string_view batch, BatchSink& sink) override;
  std::vector<TableColumn> tableColumns(const std::string& database, const std::string& table) override;
  std::optional<PlanCounters> planCounters() const override;

 private:
  std::shared_ptr<EmbeddedServers> servers_;
  std::unique_ptr<engine::Session> session_;
  ConnectionParts parts_;
};

}  // namespace db
