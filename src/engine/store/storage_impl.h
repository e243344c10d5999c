// The inside of Store.
#pragma once

#include <atomic>
#include <chrono>
#include <mutex>
#include <set>
#include <unordered_map>

#include "engine/catalog.h"
#include "engine/function.h"
#include "engine/store/instance.h"
#include "engine/store/intent.h"
#include "engine/store/shared_state.h"
#include "engine/store/storage.h"

namespace engine {

inline constexpr const char* masterName = "master";
inline constexpr const char* temporaryName = "tempdb";

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
  bool temporary = false;                          // tempdb
  std::unique_ptr<lite::Stmt> version, lock, raise, takeIdentity, readIdentity, beginIdentity, noteIdentity;
};

// How a wait for a write lock came to its end without the lock.
enum class WaitEnd : std::uint8_t { None, TimedOut, Deadlock, Cancelled, Stopped };

bool isLockError(const Error& error);

struct Store::Impl {
  Impl(std::shared_ptr<Instance> shared, Store& self);
  ~Impl();

  Attached& find(std::string_view name);
  Attached& findTemporary();
  void settleTemporary(bool committed);
  void undoTemporary();
  void dropTemporary();
  Attached& open(const DatabaseEntry& entry);
  const DatabaseEntry* entryOf(std::string_view name);
  void refuseWhenStopped();
  void loadDatabases();
  void refresh();
  void refreshDatabases();
  void tune(Attached& attached);
  void checkAttached(Attached& attached, const std::string& family);
  bool isCurrent(const Attached& attached);  // of this format, with checksums
  void makeRoom();
  bool close(Attached& attached);
  void closeFiles();
  void refuseMoved();
  void closeMoved();
  void detachOrphans();
  std::int64_t versionOf(Attached& attached);
  // BEGIN, COMMIT, SAVEPOINT ...: prepared once, for they run around every change. SQLite's result code.
  int control(const std::string& sql);
  void settleChanges(bool committed);

  // waiting.cpp
  static int onBusy(void* self, int count);
  bool goOnWaiting(bool first);
  void queueFor(const Attached& one);
  void lockForWriting(Attached& one);
  void openGate();
  std::vector<std::uint64_t> heldDatabases() const;
  void enterWaiting(const std::vector<std::uint64_t>& held);
  void leaveWaiting();
  bool isVictim();
  Error waitError();

  // twin_commit.cpp
  static void onChange(void* self, sqlite3* db, int operation, const char* database, const char* table,
                       sqlite3_int64 oldRow, sqlite3_int64 newRow);
  const Attached* byAlias(std::string_view alias) const;
  Intent makeIntent();
  std::unique_ptr<IntentFile> declareIntent();
  bool leaderHas(std::int64_t number);
  void leaveToRecovery();
  void flushAtOnce(bool set);
  static int onCommit(void* self);  // not zero: refused
  bool overLeftIntents() const;
  void refuseOverLeftIntents() const;

  // intent_recovery.cpp
  void endLeftIntents(Store& store);
  void awaitIntents(Store& store, const std::string& name);

  void healChanges();
  bool masterChanged() const;

  std::shared_ptr<Instance> instance;
  Store& store;
  FunctionContext functions;
  sqlite3* db = nullptr;
  const SessionEntry* session = nullptr;
  std::unordered_map<std::string, sqlite3_stmt*> controls;
  LockFile locks;
  std::mutex busy;  // held while a statement runs
  bool inStatement = false;
  std::map<std::string, std::unique_ptr<Attached>, std::less<>> attached;  // by foldName
  std::unique_ptr<Attached> temporary;
  bool temporaryIsNew = false;       // made by the open transaction
  std::vector<std::string> orphans;  // aliases attached in vain, not yet detached
  int orphanCount = 0;
  std::vector<DatabaseEntry> databases;
  std::int64_t listVersion = -1;  // master's catalog version that `databases` was read at
  std::string current;            // folded name of the current database
  std::int64_t currentId = 0;
  int depth = 0;
  bool anyChanged = false;
  std::uint64_t generation = 0, seenChanges = 0, stamp = 1, clock = 0;
  std::uint64_t seenMoved = 0;  // of store::movedFiles()
  bool fresh = false;           // seenChanges is meaningful

  std::int64_t lockTimeout = -1;                 // milliseconds; negative: without limit
  const std::atomic<bool>* cancelled = nullptr;  // set from another thread
  std::int64_t wanted = 0, gate = 0;             // numbers of databases
  int waitingSlot = -1;
  WaitEnd waitEnd = WaitEnd::None;
  std::chrono::steady_clock::time_point waitStart, lastCircle;

  // The database that the open transaction changed first, by its alias, and every row that it has changed
  // in others; where these stood at each savepoint.
  std::string leader;
  std::vector<std::pair<std::string, RowChange>> followers;
  std::vector<std::size_t> followersAt;
  bool recovering = false, declaring = false;
  bool lockFirst = false;  // the database about to be opened: before anything is read there
};

}  // namespace engine
