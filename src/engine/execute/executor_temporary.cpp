// Table variables, and the end of temporary tables. A table variable is a table of tempdb, but no ROLLBACK
// touches it: its rows are kept in memory meanwhile.
#include "engine/execute/executor_temporary.h"

#include "engine/catalog.h"
#include "engine/language.h"

namespace engine {
namespace {

DropStatement dropOf(const std::string& name) {
  DropStatement drop;
  ObjectName& object = drop.names.emplace_back();
  object.database = temporaryDatabase;
  object.object = name;
  return drop;
}

}  // namespace

// The outermost batch calls its tables as they are written.
std::string Executor::tableSuffix() const {
  if (execDepth_ <= 1 && nesting_ == 0 && procedureDepth_ == 0) return {};
  return " " + std::to_string(execDepth_) + "." + std::to_string(nesting_) + "." +
         std::to_string(procedureDepth_);
}

Executor::TemporaryScope::TemporaryScope(Executor& executor, const Frame& frame, bool nested)
    : executor_(executor), nested_(nested), tables_(executor.liveTables_.size()) {
  if (nested_ && executor.store_.hasTemporary()) {
    const StatementScope scope(executor);
    before_ = executor.store_.temporaryCatalog();
  }
  const auto& tables = frame.plan->variables.tables;
  if (tables.empty()) return;
  try {
    const StatementScope scope(executor);
    for (const CreateTableStatement* table : tables) {
      const LiveTable live{table, table->name.object + executor.tableSuffix()};
      executor.makeTableVariable(live);
      executor.liveTables_.push_back(live);
    }
  } catch (...) {
    end();
    throw;
  }
}

Executor::TemporaryScope::~TemporaryScope() {
  end();
}

void Executor::TemporaryScope::end() noexcept {
  std::vector<std::string> names;
  for (auto& live = executor_.liveTables_; live.size() > tables_; live.pop_back())
    names.push_back(live.back().name);
  if ((names.empty() && !nested_) || !executor_.store_.hasTemporary()) return;
  const int open = executor_.userTransactions_;
  try {
    const StatementScope scope(executor_);
    const auto now = executor_.store_.temporaryCatalog();
    if (nested_ && now && now != before_)
      for (const auto& [folded, table] : now->tables) {
        const TableInfo* known = before_ ? before_->table(table->name) : nullptr;
        if ((!known || known->id != table->id) && !table->name.starts_with('@')) names.push_back(table->name);
      }
    executor_.dropTemporaries(names);
  } catch (const Error&) {
    // They go with the session. Should the stop of the service have ended the transaction, the client is
    // still to be told.
    if (open > 0 && executor_.userTransactions_ == 0) executor_.afterLoss_ = true;
  }
}

void Executor::makeTableVariable(const LiveTable& table) {
  dropTemporaries({table.name});
  createTableVariable(store_, context_, *table.table, table.name);
}

std::vector<Executor::KeptRows> Executor::keepTableVariables() {
  std::vector<KeptRows> kept;
  if (liveTables_.empty()) return kept;
  const auto catalog = store_.temporaryCatalog();
  for (const LiveTable& live : liveTables_) {
    const TableInfo* table = catalog ? catalog->table(live.name) : nullptr;
    if (!table) continue;
    KeptRows& keep = kept.emplace_back();
    keep.table = live.table;
    keep.name = live.name;
    if (table->identityColumn() >= 0)
      keep.identity = lastIdentity(store_, temporaryDatabase, *table).value_or(0);
    Prepared rows(store_.handle(), {"SELECT rowid,* FROM temp." + quoteName(live.name), {}});
    while (rows.step()) {
      std::vector<Datum>& row = keep.rows.emplace_back();
      for (std::size_t i = 0; i <= table->columns.size(); ++i)
        row.push_back(columnDatum(rows.get(), static_cast<int>(i)));
    }
  }
  return kept;
}

void Executor::restoreTableVariables(const std::vector<KeptRows>& kept) {
  for (const KeptRows& keep : kept) {
    makeTableVariable({keep.table, keep.name});
    const auto catalog = store_.temporaryCatalog();
    const TableInfo& table = *catalog->table(keep.name);
    std::string columns = "rowid", values = "?1";
    for (std::size_t i = 0; i < table.columns.size(); ++i) {
      columns += "," + quoteName(table.columns[i].name);
      values += ",?" + std::to_string(i + 2);
    }
    Prepared insert(
        store_.handle(),
        {"INSERT INTO temp." + quoteName(keep.name) + "(" + columns + ") VALUES(" + values + ")", {}});
    for (const std::vector<Datum>& row : keep.rows) {
      for (std::size_t i = 0; i < row.size(); ++i) insert.bindDatum(static_cast<int>(i) + 1, row[i]);
      PreparedUse use(insert);
      insert.step();
    }
    if (table.identityColumn() >= 0 && keep.identity != 0)
      noteIdentity(store_, temporaryDatabase, table, keep.identity);
  }
}

void Executor::dropTemporaries(const std::vector<std::string>& names) {
  const auto catalog = store_.temporaryCatalog();
  for (const std::string& name : names) {
    if (!catalog || !catalog->table(name)) continue;
    Statement drop;
    drop.node = dropOf(name);
    engine::runDefinition(store_, context_, drop);
  }
}

}  // namespace engine
