// Files, SQLite handles, attach and service state of one data folder.
//
// One database is NAME.mdf (an SQLite file in WAL mode) with its companion NAME_log.ldf. The suite's
// tables are SQLite tables of the same name; what the dialect knows beyond SQLite lies in tables whose
// names begin with zb_. `master.mdf` knows databases and logins.
#pragma once

#include <sqlite3.h>

#include <atomic>
#include <exception>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "engine/catalog.h"
#include "engine/value.h"

namespace engine {

struct FunctionContext;  // functions.h
struct SessionEntry;     // session_list.h

struct DatabaseEntry {
  std::int64_t id = 0;  // DB_ID(); never reused
  std::string name;
  std::filesystem::path data, log;
  std::string fileName;      // the data file as CREATE DATABASE wrote it: sysdatabases.filename
  std::int64_t created = 0;  // ticks
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
  // Date settings of the session's SQL functions.
  FunctionContext& functions() const;

  // Called at the start of every statement: throws 17142 when the service is stopped (after closing
  // this handle's files, an open transaction is rolled back), picks up catalog changes of other sessions
  // and processes. Between the two calls the service does not stop; everything that touches the handle
  // (also the rollback of a session that ends) lies between them. Not nested; a second beginStatement()
  // without endStatement() is taken as one statement.
  void beginStatement();
  void endStatement() noexcept;

  // Makes sure the database is attached; returns the alias to write in front of its tables, already
  // quoted ("d3"). Throws 911 (no such database) or the damage found in its file.
  std::string attach(std::string_view database);
  bool databaseExists(std::string_view database);
  // tempdb, the session's own: SQLite's temp schema with the zb_ tables of a database, made when it is first
  // named. No file is locked or written for it, and it goes with the handle. It is not among databases().
  bool hasTemporary() const;
  // What is in it; null before it is made.
  std::shared_ptr<const DatabaseCatalog> temporaryCatalog();
  // The entry as registered; 911 when there is none. databases() is in order of id, master first.
  DatabaseEntry database(std::string_view name);
  std::vector<DatabaseEntry> databases();
  // Makes it the session's current database: as long as it is, nobody drops it (3702). Throws 911, the
  // damage found, or 4060 while somebody drops it.
  void useDatabase(std::string_view name);
  std::int64_t currentDatabase() const;  // its id
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
  // After a failure: a full disk or a write error may have made SQLite undo the whole transaction. Then
  // nothing is open any more, and the answer is true.
  bool noteLoss();
  void writeLock(std::string_view database);
  // A statement is about to write there: takes its place behind those who wait.
  void expectWrite(std::string_view database);
  // The open transaction has written to another database before this one.
  bool leadsAnother(std::string_view database) const;
  // SET LOCK_TIMEOUT: how long a write lock is waited for; negative: without limit.
  void setLockTimeout(std::int64_t milliseconds);
  // While the flag is set, waits end (3617).
  void setCancelled(const std::atomic<bool>* flag);
  // What 1222 really was: 1205 in a circle of waiting sessions, 3617, 17142.
  std::optional<Error> whyNotWaited();
  // Completes or undoes the commits over several databases that others have left. Returns the databases
  // (folded names) of those that somebody's lock keeps from it for now.
  std::vector<std::string> recoverIntents();
  // The open transaction notes the rows that it changes in all databases but the first. Of a statement that
  // failed and left the transaction open, nothing may stay noted.
  std::size_t changesNoted() const;
  void forgetChanges(std::size_t count);

  // For the definition statements, inside begin() .. commit(): takes the write lock by giving the database
  // its next version, and makes sure of a catalog that nobody has changed since. Then markChanged() says
  // that the definitions (or, in master, the list of databases) are written. The new catalog gets that
  // version, replaces the cached one for this session at once and for others after the commit; nobody
  // changes it any more.
  void lockDefinitions(std::string_view database);
  void markChanged(std::string_view database, std::shared_ptr<DatabaseCatalog> now = nullptr);
  // Builds the database's file anew, of the current format with checksums in every page, unless it is so
  // already. For that moment
  // the service stands still: running statements are waited for, others are refused. 5030 while somebody
  // keeps the file open all the same.
  void renew(std::string_view database);
  // Whether commits are told before they are on the disk: a power cut may then take the last moments, while
  // a kill still takes nothing. For `master` it holds for all databases. Handles that are open already keep
  // what they have until they open the database anew.
  void setDelayedDurability(std::string_view database, bool delayed);
  // Closes the database's file in this handle; 3702 when a statement still reads it.
  void detach(std::string_view database);
  // The list of databases is read anew (after a change in master by this handle).
  void reloadDatabases();
  // The session that works through this handle, for the system tables.
  void setSession(const SessionEntry* session);
  // Called from other threads when the service stops: closes this handle's files if no statement runs.
  void closeIfIdle();
  // Gives back what pages of files are kept for reading; not while a statement runs.
  void rest();
  // The same for files that lie where they were opened no more; an open transaction keeps its own.
  void closeMovedIfIdle();

  struct Impl;
  Impl& impl() const { return *impl_; }

 private:
  std::unique_ptr<Impl> impl_;
};

// Around one statement of SQLite's: when it fails, what it has changed is not noted.
class ChangeNote {
 public:
  explicit ChangeNote(Store& store)
      : store_(store), count_(store.changesNoted()), exceptions_(std::uncaught_exceptions()) {}
  ~ChangeNote() {
    if (std::uncaught_exceptions() > exceptions_) forget();
  }
  ChangeNote(const ChangeNote&) = delete;
  ChangeNote& operator=(const ChangeNote&) = delete;
  void forget() const { store_.forgetChanges(count_); }

 private:
  Store& store_;
  std::size_t count_;
  int exceptions_;
};

// Reserves `count` identity values of the table inside the open transaction and returns the first. Values
// of transactions that were rolled back in this process are left out.
// 8115 when they leave the column's type.
std::int64_t nextIdentity(Store& store, std::string_view database, const TableInfo& table,
                          std::int64_t count = 1);
// The values up to `last` are given out for good, even if the transaction takes their rows back.
void spendIdentity(Store& store, std::string_view database, const TableInfo& table,
                   std::int64_t last) noexcept;
// A new table under this id has given out nothing.
void forgetIdentity(Store& store, std::string_view database, std::int64_t table);
// After an explicit value (IDENTITY_INSERT): the next one goes on behind it when it lies further on.
void noteIdentity(Store& store, std::string_view database, const TableInfo& table, std::int64_t value);
// TRUNCATE TABLE: the next value is the seed again.
void resetIdentity(Store& store, std::string_view database, const TableInfo& table);
// IDENT_CURRENT: the last value used; nothing before the first.
std::optional<std::int64_t> lastIdentity(Store& store, std::string_view database, const TableInfo& table);

}  // namespace engine
