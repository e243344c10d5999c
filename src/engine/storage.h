// Files, SQLite handles, attach and service state of one data folder.
//
// One database is NAME.mdf (an SQLite file in WAL mode) with its companion NAME_log.ldf. The suite's
// tables are SQLite tables of the same name; what the dialect knows beyond SQLite lies in tables whose
// names begin with zb_. `master.mdf` knows databases and logins.
#pragma once

#include <sqlite3.h>

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "engine/ast.h"
#include "engine/catalog.h"
#include "engine/error.h"

namespace engine {

struct DatabaseEntry {
  std::int64_t id = 0;
  std::string name;
  std::filesystem::path data, log;
};

// The folder, shared by all sessions of this process.
class Instance;

// The SQLite handle of one session. Databases are attached on demand under an alias; least recently
// used ones are detached when SQLite's limit is reached. Not thread-safe: one session, one thread.
class Store {
 public:
  explicit Store(std::shared_ptr<Instance> instance);
  ~Store();
  Store(const Store&) = delete;
  Store& operator=(const Store&) = delete;

  sqlite3* handle() const;
  Instance& instance() const;

  // Called at the start of every statement: throws 17142 when the service is stopped (after closing
  // this handle's files), picks up catalog changes of other sessions and processes.
  void beginStatement();

  // Makes sure the database is attached; returns the alias to write in front of its tables, already
  // quoted ("d3"). Throws 911 (no such database) or the damage found in its file.
  std::string attach(std::string_view database);
  bool databaseExists(std::string_view database);
  // The database's objects as of this statement.
  std::shared_ptr<const DatabaseCatalog> catalog(std::string_view database);
  // Sum of what beginStatement() has seen change; a plan made under another value is stale.
  std::uint64_t catalogStamp() const;

  // Transactions over everything attached; nested calls count (savepoints below the first level).
  // writeLock() takes the database's write lock at once, so that a later write cannot find it taken.
  void begin();
  void commit();
  void rollback();
  bool inTransaction() const;
  void writeLock(std::string_view database);

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

// Runs one definition statement (CREATE / ALTER / DROP TABLE, INDEX, VIEW, TRIGGER, DATABASE) in the
// session's current database. View columns come bound from the caller, because only the binder knows
// their types. All of a statement stands or none of it.
struct SessionContext {
  std::string database;  // current database
  std::string login;     // as logged in
};
void runDefinition(Store& store, SessionContext& context, const Statement& statement,
                   const std::vector<ViewColumn>& viewColumns = {});

}  // namespace engine
