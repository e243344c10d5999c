// The inside of Store.
#pragma once

#include <mutex>
#include <unordered_map>

#include "engine/catalog.h"
#include "engine/function.h"
#include "engine/store/instance.h"
#include "engine/store/shared_state.h"
#include "engine/store/storage.h"

namespace engine {

// One attached database of a handle.
struct Attached {
  DatabaseEntry entry;
  std::string alias;
  std::string family;
  std::string cacheKey;  // family and file: a copy of a database is another one
  std::uint64_t lastUse = 0;
  std::shared_ptr<const DatabaseCatalog> catalog;  // null: to be read
  bool changed = false;                            // by the open transaction
  std::int64_t raised = 0;                         // the version that a change under way has taken
  bool delayed = false;                            // durability, as the file says
  bool tuned = false;                              // its pragmas are set
  std::unique_ptr<lite::Stmt> version, lock, raise, takeIdentity, readIdentity, beginIdentity, noteIdentity;
};

struct Store::Impl {
  explicit Impl(std::shared_ptr<Instance> shared);
  ~Impl();

  Attached& find(std::string_view name);
  Attached& open(const DatabaseEntry& entry);
  const DatabaseEntry* entryOf(std::string_view name);
  void refuseWhenStopped();
  void loadDatabases();
  void refresh();
  void refreshDatabases();
  void tune(Attached& attached);
  void checkAttached(Attached& attached, const std::string& family);
  void makeRoom();
  bool close(Attached& attached);
  void closeFiles();
  void detachOrphans();
  std::int64_t versionOf(Attached& attached);
  // BEGIN, COMMIT, SAVEPOINT ...: prepared once, for they run around every change. SQLite's result code.
  int control(const std::string& sql);
  void settleChanges(bool committed);
  bool masterChanged() const;

  std::shared_ptr<Instance> instance;
  FunctionContext functions;
  sqlite3* db = nullptr;
  std::unordered_map<std::string, sqlite3_stmt*> controls;
  LockFile locks;
  std::mutex busy;  // held while a statement runs
  bool inStatement = false;
  std::map<std::string, std::unique_ptr<Attached>, std::less<>> attached;  // by foldName
  std::vector<std::string> orphans;  // aliases attached in vain, not yet detached
  int orphanCount = 0;
  std::vector<DatabaseEntry> databases;
  std::int64_t listVersion = -1;  // master's catalog version that `databases` was read at
  std::string current;            // folded name of the current database
  std::int64_t currentId = 0;
  int depth = 0;
  bool anyChanged = false;
  std::uint64_t generation = 0, seenChanges = 0, stamp = 1, clock = 0;
  bool fresh = false;  // seenChanges is meaningful
};

}  // namespace engine
