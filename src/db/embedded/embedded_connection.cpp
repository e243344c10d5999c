#include "db/embedded/embedded_connection.h"

#include <algorithm>
#include <array>

#include "db/embedded/embedded_rows.h"
#include "db/table_name.h"

namespace db {
namespace {

class SinkAdapter : public engine::ResultSink {
 public:
  explicit SinkAdapter(BatchSink& sink) : sink_(sink) {}
  void onResultSet(engine::ResultSet&& set) override {
    sink_.onRows(std::make_unique<EmbeddedRows>(std::move(set)));
  }
  void onRowCount(std::int64_t rows) override { sink_.onRowCount(rows); }
  void onMessage(int, const std::string& text) override { sink_.onMessage(text); }

 private:
  BatchSink& sink_;
};

// There is no integrated login here. It comes behind a failed SQL login, though, and its failure is the one
// that people are told: where name and password were right, that is what stood in the first one's way.
[[noreturn]] void refuseIntegrated(const std::shared_ptr<engine::Server>& server,
                                   const ConnectionParts& parts) {
  constexpr int loginFailed = 18456;
  // A stopped service answers nobody, whatever the form of the login.
  if (server->serviceState() == engine::ServiceState::Stopped) {
    throw engine::Error(17142,
                        "SQL Server service has been stopped or paused. No new connections will be allowed.");
  }
  try {
    const engine::Session probe(server, parts.login, parts.password, parts.database);
  } catch (const engine::Error& error) {
    if (error.number() != loginFailed) throw;
  }
  throw engine::Error(18452, "Login failed for user '" + parts.login +
                                 "'. Reason: Not associated with a trusted SQL Server connection.");
}

// What SQL Server says at a login stays as it is; a file that cannot be read is this server's own affair.
SqlError openingError(const engine::Error& error, const std::string& database) {
  static constexpr std::array serversWords = {4060, 17142, 18452, 18456};
  SqlError failure = fromEngine(error, true);
  if (std::find(serversWords.begin(), serversWords.end(), error.number()) != serversWords.end()) {
    return failure;
  }
  return {failure.kind(), failure.serverNumber(),
          "Veritabanı açılamadı (" + database + "): " + failure.what()};
}

}  // namespace

void EmbeddedConnection::open(const ConnectionParts& parts) {
  close();
  parts_ = parts;
  const auto server = servers_->at(servers_->folderOf(parts.server));
  try {
    if (parts.integrated) refuseIntegrated(server, parts);
    session_ = std::make_unique<engine::Session>(server, parts.login, parts.password, parts.database);
  } catch (const engine::Error& error) {
    throw openingError(error, parts.database);
  }
}

std::string EmbeddedConnection::connectionText() const {
  return "Provider=ZEMBERA;User ID=" + parts_.login + ";Initial Catalog=" + parts_.database +
         ";Data Source=" + parts_.server;
}

void EmbeddedConnection::run(std::string_view batch, BatchSink& sink) {
  if (!session_) {
    throw SqlError(ErrorKind::StatementRefused, 0, "Operation is not allowed when the object is closed.");
  }
  SinkAdapter adapter(sink);
  try {
    session_->execute(batch, adapter);
  } catch (const engine::Error& error) {
    throw fromEngine(error, false);
  }
}

std::vector<TableColumn> EmbeddedConnection::tableColumns(const std::string& database,
                                                          const std::string& table) {
  std::vector<TableColumn> out;
  try {
    const auto rows = query("SELECT * FROM " + qualifiedName({database, table}) + " WHERE 1=0");
    if (!rows) return out;
    for (const auto& field : rows->fields()) {
      out.push_back({field.name, field.type, field.identity, field.keyPart});
    }
  } catch (const SqlError& error) {
    if (error.kind() != ErrorKind::StatementRefused) throw;
  }
  return out;
}

std::optional<Connection::PlanCounters> EmbeddedConnection::planCounters() const {
  if (!session_) return std::nullopt;
  const auto statistics = session_->planStatistics();
  return PlanCounters{statistics.hits, statistics.misses};
}

}  // namespace db
