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
  std::int64_t rowsAtATime() const override { return sink_.pageRows(); }
  void onRows(const engine::ResultSet& page, bool) override {
    sink_.onRows(std::make_unique<EmbeddedRows>(page));
  }
  void onRowCount(std::int64_t rows) override { sink_.onRowCount(rows); }
  void onMessage(int, const std::string& text) override { sink_.onMessage(text); }

 private:
  BatchSink& sink_;
};

constexpr int loginFailed = 18456, notTrusted = 18452;

// What SQL Server says at a login stays as it is; a file that cannot be read is this server's own affair.
SqlError openingError(const engine::Error& error, const std::string& database) {
  static constexpr std::array serversWords = {4060, 4064, 17142, notTrusted, loginFailed};
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
  openAt(servers_->at(servers_->folderOf(parts.server)), parts);
}

void EmbeddedConnection::openAt(std::shared_ptr<engine::Server> server, const ConnectionParts& parts) {
  parts_ = parts;
  try {
    session_ =
        std::make_unique<engine::Session>(std::move(server), parts.login, parts.password, parts.database);
  } catch (const engine::Error& error) {
    // There is no integrated login here. It comes behind a failed SQL login, and its failure is the one that
    // people are told: it is judged by the same name and password, so that what else was in the way (a
    // missing, damaged or locked database) is not told as a wrong password.
    if (parts.integrated && error.number() == loginFailed)
      throw SqlError(ErrorKind::LoginRefused, notTrusted,
                     "Login failed for user '" + parts.login +
                         "'. Reason: Not associated with a trusted SQL Server connection.");
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
