#include "engine/store/storage.h"

#include "engine/store/companion.h"
#include "engine/store/database_file.h"
#include "engine/store/file_layer.h"
#include "engine/store/storage_impl.h"

namespace engine {

namespace {

// 8 MB of log before it goes into the data file, which costs three syncs: the tables of a whole company.
constexpr int checkpointPages = 2000;

[[noreturn]] void failStopped() {
  throw Error(
      17142,
      "SQL Server service has been paused or stopped. No new connections will be allowed. To resume the "
      "service, use SQL Computer Manager or the Services application in Control Panel.",
      14);
}

// A database that a broken-off CREATE or DROP has left tells why it could not be cleaned up.
[[noreturn]] void failMissing(const Instance& instance, std::string_view name) {
  if (const auto trouble = instance.trouble(foldName(name))) throw Error(*trouble);
  throw Error(911, "Database '" + std::string(name) +
                       "' does not exist. Make sure that the name is entered correctly.");
}

sqlite3* openHandle(FunctionContext* functions) {
  // Counting what SQLite allocates takes a lock each time, and each attached file would take room for 20
  // pages at once, most of which the catalogs never read. Refused, harmlessly, where SQLite runs already.
  static const int configured =
      sqlite3_config(SQLITE_CONFIG_MEMSTATUS, 0) | sqlite3_config(SQLITE_CONFIG_PAGECACHE, nullptr, 0, 0);
  static_cast<void>(configured);
  sqlite3* db = nullptr;
  const int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_URI | SQLITE_OPEN_FULLMUTEX;
  if (const int rc = sqlite3_open_v2(":memory:", &db, flags, nullptr); rc != SQLITE_OK) {
    sqlite3_close(db);
    throw Error(701, "There is insufficient system memory to run this query.", 17);
  }
  // A quarter of the usual: it is memory that every idle session would hold, and prepared plans are kept.
  constexpr int lookasideSize = 256, lookasideCount = 48;
  sqlite3_db_config(db, SQLITE_DBCONFIG_LOOKASIDE, nullptr, lookasideSize, lookasideCount);
  sqlite3_extended_result_codes(db, 1);
  sqlite3_wal_autocheckpoint(db, checkpointPages);
  sqlite3_db_config(db, SQLITE_DBCONFIG_DQS_DML, 0, nullptr);
  sqlite3_db_config(db, SQLITE_DBCONFIG_DQS_DDL, 0, nullptr);
  sqlite3_db_config(db, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
  sqlite3_db_config(db, SQLITE_DBCONFIG_ENABLE_FKEY, 0, nullptr);
  // The filter that joins put before an index they make for themselves counts the bytes of a text: rows that
  // are equal by the collation alone ("iki", "İKİ") would be lost.
  constexpr int bloomFilter = 0x00080000, bloomPulldown = 0x00100000;
  sqlite3_test_control(SQLITE_TESTCTRL_OPTIMIZATIONS, db, bloomFilter | bloomPulldown);
  registerFunctions(db, functions);
  // Sorts and undo journals may spill into temporary files, so that memory stays flat on any table.
  lite::exec(db, "PRAGMA temp_store=FILE; PRAGMA legacy_alter_table=ON");
  return db;
}

}  // namespace

// ---- Impl ----

Store::Impl::Impl(std::shared_ptr<Instance> shared, Store& self)
    : instance(std::move(shared)), store(self), db(openHandle(&functions)), locks(instance->lockFile()) {
  generation = instance->shared()->generation.load();
  sqlite3_busy_handler(db, onBusy, this);
  sqlite3_preupdate_hook(db, onChange, this);
  sqlite3_commit_hook(db, onCommit, this);
  // For sysprocesses: 1 when this session stands on the database with that id, plus 2 when others do.
  const auto databaseUsers = [](sqlite3_context* context, int, sqlite3_value** values) {
    const auto* self = static_cast<const Impl*>(sqlite3_user_data(context));
    const std::int64_t id = sqlite3_value_int64(values[0]);
    const int own = id == self->currentId ? 1 : 0;
    sqlite3_result_int(context, own + (self->locks.heldByOthers(LockFile::databaseLock(id)) ? 2 : 0));
  };
  const auto folder = [](sqlite3_context* context, int, sqlite3_value**) {
    const auto* self = static_cast<const Impl*>(sqlite3_user_data(context));
    const std::string text = self->instance->folder().string();
    sqlite3_result_text(context, text.c_str(), static_cast<int>(text.size()), SQLITE_TRANSIENT);
  };
  const auto sessions = [](sqlite3_context* context, int, sqlite3_value**) {
    const auto* self = static_cast<const Impl*>(sqlite3_user_data(context));
    const std::string text = self->instance->sessions().json(self->session ? self->session->spid : 0);
    sqlite3_result_text(context, text.c_str(), static_cast<int>(text.size()), SQLITE_TRANSIENT);
  };
  sqlite3_create_function_v2(db, "z_sessions", 0, SQLITE_UTF8 | SQLITE_INNOCUOUS, this, sessions, nullptr,
                             nullptr, nullptr);
  sqlite3_create_function_v2(db, "z_folder", 0, SQLITE_UTF8 | SQLITE_INNOCUOUS, this, folder, nullptr,
                             nullptr, nullptr);
  sqlite3_create_function_v2(db, "z_db_users", 1, SQLITE_UTF8 | SQLITE_INNOCUOUS, this, databaseUsers,
                             nullptr, nullptr, nullptr);
}

Store::Impl::~Impl() {
  try {
    closeFiles();
  } catch (const Error&) {
    // The handle goes anyway; an open transaction ends with it.
  }
  attached.clear();
  dropTemporary();
  for (const auto& [sql, statement] : controls) sqlite3_finalize(statement);
  sqlite3_close_v2(db);
}

int Store::Impl::control(const std::string& sql) {
  sqlite3_stmt*& statement = controls[sql];
  if (!statement) {
    const int rc = sqlite3_prepare_v3(db, sql.c_str(), -1, SQLITE_PREPARE_PERSISTENT, &statement, nullptr);
    if (rc != SQLITE_OK) return rc;
  }
  sqlite3_step(statement);
  return sqlite3_reset(statement);
}

void Store::Impl::refuseWhenStopped() {
  if (!instance->stopped()) return;
  closeFiles();
  failStopped();
}

std::int64_t Store::Impl::versionOf(Attached& one) {
  if (!one.version)
    one.version = std::make_unique<lite::Stmt>(
        db, atAlias("SELECT value FROM @.zb_meta WHERE key='version'", one.alias), true);
  one.version->reset();
  const std::int64_t version = one.version->step() ? one.version->integer(0) : 0;
  one.version->reset();
  return version;
}

void Store::Impl::loadDatabases() {
  Attached& master = find(masterName);
  listVersion = versionOf(master);
  databases.clear();
  lite::Stmt rows(db,
                  atAlias("SELECT id, name, data, log, file_name, crdate FROM @.zb_databases WHERE state=0 "
                          "ORDER BY id",
                          master.alias));
  while (rows.step())
    databases.push_back({rows.integer(0), rows.text(1), instance->folder() / rows.text(2),
                         instance->folder() / rows.text(3), rows.text(4), rows.integer(5)});
}

const DatabaseEntry* Store::Impl::entryOf(std::string_view name) {
  if (listVersion < 0) loadDatabases();
  const std::string folded = foldName(name);
  for (const auto& entry : databases)
    if (foldName(entry.name) == folded) return &entry;
  return nullptr;
}

Attached& Store::Impl::find(std::string_view name) {
  const std::string folded = foldName(name);
  auto found = attached.find(folded);
  if (found == attached.end()) {
    if (folded == temporaryName) return findTemporary();
    if (folded == masterName) {
      DatabaseEntry entry;
      entry.id = 1;
      entry.name = masterName;
      entry.data = instance->masterFile();
      entry.log = instance->folder() / "master_log.ldf";
      return open(entry);
    }
    const DatabaseEntry* entry = entryOf(name);
    if (!entry) failMissing(*instance, name);
    return open(*entry);
  }
  found->second->lastUse = ++clock;
  return *found->second;
}

// Looks at the catalog versions of everything attached, unless no definition has changed anywhere.
void Store::Impl::refresh() {
  auto& page = instance->shared();
  const auto ended = page->changesEnded.load(std::memory_order_acquire);
  const auto begun = page->changesBegun.load(std::memory_order_acquire);
  if (begun != ended && sqlite3_get_autocommit(db)) healChanges();
  const bool quiet = begun == ended;
  if (quiet && fresh && ended == seenChanges) return;
  if (const auto master = attached.find(masterName);
      master != attached.end() && listVersion >= 0 && versionOf(*master->second) != listVersion)
    refreshDatabases();
  for (auto& [name, one] : attached) {
    if (one->changed || !one->catalog || versionOf(*one) == one->catalog->version) continue;
    one->catalog.reset();
    ++stamp;
  }
  // Inside a transaction the versions are those of its snapshot.
  if (!sqlite3_get_autocommit(db)) return;
  seenChanges = ended;
  fresh = quiet;
}

// Counters that a killed process left apart would make everybody look into the files for ever.
void Store::Impl::healChanges() {
  auto& page = instance->shared();
  LockFile lock(instance->lockFile());
  if (!lock.tryExclusive(LockFile::definitionLock)) return;
  page->changesEnded.store(page->changesBegun.load());
}

void Store::Impl::refreshDatabases() {
  loadDatabases();
  std::vector<Attached*> gone;
  for (auto& [name, one] : attached) {
    if (name == masterName) continue;
    const DatabaseEntry* entry = entryOf(name);
    if (!entry || entry->id != one->entry.id || entry->data != one->entry.data) gone.push_back(one.get());
  }
  for (Attached* one : gone) close(*one);
  ++stamp;
}

// ---- Store ----

Store::Store(std::shared_ptr<Instance> instance) : impl_(std::make_unique<Impl>(std::move(instance), *this)) {
  impl_->instance->enroll(*this);
}

Store::~Store() {
  impl_->instance->withdraw(*this);
  endStatement();
}

sqlite3* Store::handle() const {
  return impl_->db;
}
Instance& Store::instance() const {
  return *impl_->instance;
}
FunctionContext& Store::functions() const {
  return impl_->functions;
}
std::uint64_t Store::catalogStamp() const {
  return impl_->stamp;
}
bool Store::inTransaction() const {
  return impl_->depth > 0;
}

void Store::beginStatement() {
  Impl& self = *impl_;
  const bool fresh = !self.inStatement;
  if (fresh) {
    self.busy.lock();
    self.inStatement = true;
  }
  try {
    self.refuseWhenStopped();
    if (fresh) self.locks.waitShared(LockFile::statementLock);
    self.refuseWhenStopped();
    const auto generation = self.instance->shared()->generation.load(std::memory_order_acquire);
    if (generation != self.generation) {
      self.closeFiles();
      self.generation = generation;
    }
    if (fresh && self.seenMoved != store::movedFiles()) {
      self.closeMoved();
      self.instance->closeMoved();
    }
    if (!self.orphans.empty() && sqlite3_get_autocommit(self.db)) self.detachOrphans();
    for (auto& [name, one] : self.attached) self.tune(*one);
    self.endLeftIntents(*this);
    self.refresh();
  } catch (...) {
    endStatement();
    throw;
  }
}

void Store::endStatement() noexcept {
  Impl& self = *impl_;
  if (!self.inStatement) return;
  self.locks.release(LockFile::statementLock);
  if (self.depth == 0) self.openGate();
  self.inStatement = false;
  self.busy.unlock();
}

std::int64_t Store::currentDatabase() const {
  return impl_->currentId;
}

void Store::setSession(const SessionEntry* session) {
  impl_->session = session;
}

void Store::closeIfIdle() {
  Impl& self = *impl_;
  const std::unique_lock lock(self.busy, std::try_to_lock);
  if (!lock.owns_lock() || self.attached.empty()) return;
  try {
    self.closeFiles();
  } catch (const Error&) {
    // It closes them itself at its next statement.
  }
}

void Store::rest() {
  const std::unique_lock lock(impl_->busy, std::try_to_lock);
  if (lock.owns_lock()) sqlite3_db_release_memory(impl_->db);
}

void Store::closeMovedIfIdle() {
  const std::unique_lock lock(impl_->busy, std::try_to_lock);
  if (lock.owns_lock()) impl_->closeMoved();
}

std::string Store::attach(std::string_view database) {
  return impl_->find(database).alias;
}

bool Store::databaseExists(std::string_view database) {
  return impl_->entryOf(database) != nullptr;
}

DatabaseEntry Store::database(std::string_view name) {
  const DatabaseEntry* entry = impl_->entryOf(name);
  if (!entry) failMissing(*impl_->instance, name);
  return *entry;
}

std::vector<DatabaseEntry> Store::databases() {
  if (impl_->listVersion < 0) impl_->loadDatabases();
  return impl_->databases;
}

void Store::reloadDatabases() {
  impl_->refreshDatabases();
}

void Store::detach(std::string_view database) {
  const auto found = impl_->attached.find(foldName(database));
  if (found != impl_->attached.end() && !impl_->close(*found->second))
    throw Error(3702,
                "Cannot drop the database '" + std::string(database) + "' because it is currently in use.");
}

void Store::setDelayedDurability(std::string_view database, bool delayed) {
  Attached& one = impl_->find(database);
  begin();
  try {
    lite::Stmt put(impl_->db,
                   atAlias("INSERT OR REPLACE INTO @.zb_meta(key, value) VALUES('delayed', ?)", one.alias));
    put.bind(delayed ? 1 : 0).run();
  } catch (const Error&) {
    rollback();
    throw;
  }
  commit();
  one.delayed = delayed;
  for (auto& [name, each] : impl_->attached) each->tuned = false;
}

void Store::renew(std::string_view name) {
  Impl& self = *impl_;
  if (self.isCurrent(self.find(name))) return;
  const DatabaseEntry entry =
      *(self.entryOf(name) ? self.entryOf(name) : (failMissing(*self.instance, name), nullptr));
  LockFile service(self.instance->lockFile());
  service.waitExclusive(LockFile::serviceLock);
  self.locks.release(LockFile::statementLock);  // or nobody could wait for all statements
  struct Halt {
    Impl& self;
    explicit Halt(Impl& impl) : self(impl) { self.instance->shared()->stopped.store(stoppedMark); }
    ~Halt() {
      self.instance->shared()->generation.fetch_add(1);
      self.instance->shared()->stopped.store(0);
      self.locks.waitShared(LockFile::statementLock);
    }
  } halt(self);
  service.waitExclusive(LockFile::statementLock);
  service.release(LockFile::statementLock);
  self.closeFiles();
  self.instance->closeIdle();
  renewDataFile({entry.data, entry.log, entry.name});
}

void Store::useDatabase(std::string_view name) {
  Impl& self = *impl_;
  const std::int64_t id = self.find(name).entry.id;
  if (id == self.currentId) return;
  if (!self.locks.tryShared(LockFile::databaseLock(id)))
    throw Error(
        4060, "Cannot open database \"" + std::string(name) + "\" requested by the login. The login failed.",
        11);
  lite::Stmt stands(self.db,
                    atAlias("SELECT 1 FROM @.zb_databases WHERE id=? AND state=0", attach(masterName)));
  if (!stands.bind(id).step()) {
    self.locks.release(LockFile::databaseLock(id));
    failMissing(*self.instance, name);
  }
  if (self.currentId != 0) self.locks.release(LockFile::databaseLock(self.currentId));
  self.currentId = id;
  self.current = foldName(name);
}

std::shared_ptr<const DatabaseCatalog> Store::catalog(std::string_view database) {
  Attached& one = impl_->find(database);
  if (one.catalog) return one.catalog;
  // A change under way has raised the version, but has not written anything yet.
  const std::int64_t version = one.raised != 0 ? one.raised - 1 : impl_->versionOf(one);
  const bool shared = !one.changed && !one.temporary;
  if (shared) one.catalog = impl_->instance->sharedCatalog(one.cacheKey, version);
  if (one.catalog) return one.catalog;
  // One read transaction, so that version and rows belong together.
  const bool alone = sqlite3_get_autocommit(impl_->db) != 0;
  if (alone) lite::exec(impl_->db, "BEGIN");
  try {
    auto loaded = loadCatalog(impl_->db, one.alias, one.entry.name);
    if (one.raised != 0) loaded->version = version;
    one.catalog = std::move(loaded);
  } catch (...) {
    if (alone) sqlite3_exec(impl_->db, "ROLLBACK", nullptr, nullptr, nullptr);
    throw;
  }
  if (alone) lite::exec(impl_->db, "COMMIT");
  if (shared) impl_->instance->shareCatalog(one.cacheKey, one.catalog);
  return one.catalog;
}

}  // namespace engine
