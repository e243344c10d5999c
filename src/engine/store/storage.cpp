#include "engine/store/storage.h"

#include "engine/store/companion.h"
#include "engine/store/database_file.h"
#include "engine/store/file_layer.h"
#include "engine/store/storage_impl.h"

namespace engine {

namespace {

constexpr std::size_t attachLimit = 10;  // SQLite's own, as built
// 8 MB of log before it goes into the data file, which costs three syncs: the tables of a whole company.
constexpr int checkpointPages = 2000;
constexpr const char* masterName = "master";

[[noreturn]] void failStopped() {
  throw Error(
      17142,
      "SQL Server service has been paused or stopped. No new connections will be allowed. To resume the "
      "service, use SQL Computer Manager or the Services application in Control Panel.",
      14);
}

[[noreturn]] void failMissing(std::string_view name) {
  throw Error(911, "Database '" + std::string(name) +
                       "' does not exist. Make sure that the name is entered correctly.");
}

[[noreturn]] void failDamaged(const DatabaseEntry& entry, const Error& error) {
  const std::string file = entry.data.string(), text = error.what();
  const bool damage = error.number() == 824 || error.number() == 823;
  if (!damage || text.find(entry.data.parent_path().string()) != std::string::npos) throw Error(error);
  throw Error(error.number(), "The database file '" + file + "' is damaged: " + text, 24);
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
    sqlite3_result_text(context, self->instance->folder().c_str(), -1, SQLITE_TRANSIENT);
  };
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
    if (folded == masterName) {
      DatabaseEntry entry;
      entry.id = 1;
      entry.name = masterName;
      entry.data = instance->masterFile();
      entry.log = instance->folder() / "master_log.ldf";
      return open(entry);
    }
    const DatabaseEntry* entry = entryOf(name);
    if (!entry) failMissing(name);
    return open(*entry);
  }
  found->second->lastUse = ++clock;
  return *found->second;
}

void Store::Impl::makeRoom() {
  if (attached.size() < attachLimit) return;
  while (attached.size() >= attachLimit) {
    Attached* oldest = nullptr;
    for (auto& [name, one] : attached)
      if (name != masterName && name != current && !one->changed &&
          (!oldest || one->lastUse < oldest->lastUse))
        oldest = one.get();
    if (!oldest || !close(*oldest))
      throw Error(8621, "A statement or transaction uses more than 10 databases.", 17);
  }
}

bool Store::Impl::close(Attached& one) {
  one.version.reset();
  one.lock.reset();
  one.raise.reset();
  one.takeIdentity.reset();
  one.readIdentity.reset();
  one.beginIdentity.reset();
  one.noteIdentity.reset();
  // What a removed file has in its log is not to go, nor the log that lies where its own was.
  const int keepLog = store::isInPlace(db, one.alias) ? 0 : 1;
  sqlite3_db_config(db, SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, keepLog, nullptr);
  if (sqlite3_exec(db, ("DETACH " + one.alias).c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) return false;
  ++stamp;
  attached.erase(foldName(one.entry.name));
  return true;
}

void Store::Impl::tune(Attached& one) {
  if (one.tuned || !sqlite3_get_autocommit(db)) return;
  for (const char* pragma :
       {"journal_mode=WAL", "secure_delete=OFF", "cache_size=-8000", "journal_size_limit=67108864"})
    lite::exec(db, "PRAGMA " + one.alias + "." + pragma);
  const auto master = attached.find(masterName);
  const bool delayed = one.delayed || (master != attached.end() && master->second->delayed);
  lite::exec(db, "PRAGMA " + one.alias + ".synchronous=" + (delayed ? "NORMAL" : "FULL"));
  one.tuned = true;
}

Attached& Store::Impl::open(const DatabaseEntry& entry) {
  awaitIntents(store, foldName(entry.name));
  makeRoom();
  auto one = std::make_unique<Attached>();
  one->entry = entry;
  one->alias = "d" + std::to_string(entry.id);
  if (!orphans.empty()) one->alias += "_" + std::to_string(++orphanCount);
  one->lastUse = ++clock;
  const bool copy = instance->isCopy(entry.data);
  const std::filesystem::path log = copy ? entry.log : readyCompanion(entry.data, entry.log, entry.name);
  one->tuned = copy;  // nothing of it is written
  {
    lite::Stmt attach(db, "ATTACH ? AS " + one->alias);
    attach.bind(copy ? store::copyUri(entry.data, log, entry.name)
                     : store::fileUri(entry.data, log, entry.name));
    try {
      attach.run();
    } catch (const Error& error) {
      failDamaged(entry, error);
    }
  }
  try {
    if (std::exchange(lockFirst, false)) {
      try {
        lockForWriting(*one);
      } catch (const Error& error) {
        if (isLockError(error)) throw;  // of all others the look into the file tells better
      }
    }
    checkAttached(*one, readCompanion(log, entry.name));
    if (const std::string reason = recovering ? "" : instance->suspect(foldName(entry.name)); !reason.empty())
      throw Error(
          926,
          "Database '" + entry.name +
              "' cannot be opened. A transaction over several databases could not be recovered: " + reason,
          14);
    tune(*one);
  } catch (...) {
    one->version.reset();
    orphans.push_back(one->alias);
    detachOrphans();
    throw;
  }
  return *(attached[foldName(entry.name)] = std::move(one));
}

// That it is one of ours, of a format that is known, with the companion of its family.
void Store::Impl::checkAttached(Attached& one, const std::string& family) {
  const std::string file = one.entry.data.string();
  std::int64_t format = 0;
  try {
    lite::Stmt meta(
        db,
        atAlias("SELECT key, value FROM @.zb_meta WHERE key IN ('family', 'format', 'delayed')", one.alias));
    while (meta.step()) {
      if (meta.text(0) == "family")
        one.family = meta.text(1);
      else if (meta.text(0) == "delayed")
        one.delayed = meta.integer(1) != 0;
      else
        format = meta.integer(1);
    }
  } catch (const Error& error) {
    if (error.number() == 8630)  // the table is missing
      throw Error(5171, file + " is not a primary database file.");
    failDamaged(one.entry, error);
  }
  one.cacheKey = one.family + file;
  if (format > fileFormat)
    throw Error(948, "The database '" + one.entry.name + "' cannot be opened because it is version " +
                         std::to_string(format) + ". This server supports version " +
                         std::to_string(fileFormat) + " and earlier. A downgrade path is not supported.");
  if (family != one.family)
    throw Error(5173, "One or more files do not match the primary file of the database: '" +
                          one.entry.log.string() + "' does not belong to database '" + one.entry.name + "'.");
}

bool Store::Impl::isCurrent(const Attached& one) {
  lite::Stmt format(db, atAlias("SELECT value FROM @.zb_meta WHERE key='format'", one.alias));
  return store::isChecksummed(db, one.alias) && format.step() && format.integer(0) == fileFormat;
}

// Within a transaction an alias that failed stays until its end.
void Store::Impl::detachOrphans() {
  std::erase_if(orphans, [this](const std::string& alias) {
    return sqlite3_exec(db, ("DETACH " + alias).c_str(), nullptr, nullptr, nullptr) == SQLITE_OK;
  });
}

void Store::Impl::closeFiles() {
  for (sqlite3_stmt* each = nullptr; (each = sqlite3_next_stmt(db, each));) sqlite3_reset(each);
  if (!sqlite3_get_autocommit(db)) sqlite3_exec(db, "ROLLBACK", nullptr, nullptr, nullptr);
  depth = 0;
  anyChanged = false;
  detachOrphans();
  while (!attached.empty()) {
    Attached& one = *attached.begin()->second;
    if (!close(one)) throw Error(5030, "The database '" + one.entry.name + "' could not be closed.");
  }
  databases.clear();
  listVersion = -1;
  fresh = false;
}

// The file may have gone since the lock was taken; then nothing of the transaction stands anywhere.
void Store::Impl::refuseMoved() {
  for (const auto& [name, one] : attached)
    if (sqlite3_txn_state(db, one->alias.c_str()) == SQLITE_TXN_WRITE) store::refuseMoved(db, one->alias);
}

// Somebody of this process has found that a file lies where it was opened no more.
void Store::Impl::closeMoved() {
  const std::uint64_t found = store::movedFiles();
  if (found == seenMoved || !sqlite3_get_autocommit(db)) return;
  seenMoved = found;
  std::vector<Attached*> moved;
  for (auto& [name, one] : attached)
    if (!store::isInPlace(db, one->alias)) moved.push_back(one.get());
  for (Attached* one : moved) close(*one);
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

bool Store::Impl::masterChanged() const {
  const auto master = attached.find(masterName);
  return master != attached.end() && master->second->changed;
}

void Store::Impl::settleChanges(bool committed) {
  for (auto& [name, one] : attached) {
    if (!one->changed) continue;
    one->changed = false;
    if (!committed)
      one->catalog.reset();
    else if (one->catalog)
      instance->shareCatalog(one->cacheKey, one->catalog);
  }
  if (anyChanged && !committed) {
    listVersion = -1;
    ++stamp;
  }
  anyChanged = false;
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
  if (!entry) failMissing(name);
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
  const DatabaseEntry entry = *(self.entryOf(name) ? self.entryOf(name) : (failMissing(name), nullptr));
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
    failMissing(name);
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
  if (!one.changed) one.catalog = impl_->instance->sharedCatalog(one.cacheKey, version);
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
  if (!one.changed) impl_->instance->shareCatalog(one.cacheKey, one.catalog);
  return one.catalog;
}

// ---- transactions ----

void Store::begin() {
  Impl& self = *impl_;
  const int rc = self.control(self.depth == 0 ? "BEGIN" : "SAVEPOINT s" + std::to_string(self.depth));
  if (rc != SQLITE_OK) lite::fail(self.db, rc);
  if (self.depth == 0) {
    self.leader.clear();
    self.followers.clear();
    self.followersAt.clear();
  }
  self.followersAt.push_back(self.followers.size());
  ++self.depth;
}

void Store::commit() {
  Impl& self = *impl_;
  if (self.depth == 0 || sqlite3_get_autocommit(self.db))
    throw Error(3902, "The COMMIT TRANSACTION request has no corresponding BEGIN TRANSACTION.");
  if (self.depth > 1) {
    const int rc = self.control("RELEASE s" + std::to_string(self.depth - 1));
    if (rc != SQLITE_OK) lite::fail(self.db, rc);
    --self.depth;
    self.followersAt.pop_back();
    return;
  }
  try {
    self.refuseMoved();
  } catch (const Error&) {
    rollback();
    throw;
  }
  auto& page = self.instance->shared();
  self.refuseOverLeftIntents();
  const std::unique_ptr<IntentFile> intent = self.declareIntent();
  // No other transaction may build on it before it is on the disk in every one of its databases.
  if (intent) self.flushAtOnce(true);
  const bool definitions = self.anyChanged;
  if (definitions) {
    self.locks.waitShared(LockFile::definitionLock);
    page->changesBegun.fetch_add(1);
  }
  const int rc = self.control("COMMIT");
  if (intent) self.flushAtOnce(false);
  const std::uint64_t endedBefore = definitions ? page->changesEnded.fetch_add(1) : self.seenChanges;
  if (definitions) self.locks.release(LockFile::definitionLock);
  if (rc != SQLITE_OK) {
    // One file may have it and another not: the record stays until that is mended.
    if (intent) intent->keep();
    lite::fail(self.db, rc);
  }
  self.depth = 0;
  // What this handle has changed itself it need not look for, unless others changed something meanwhile.
  if (endedBefore == self.seenChanges && definitions && !self.masterChanged()) ++self.seenChanges;
  self.settleChanges(true);
  for (const auto& [name, one] : self.attached) store::flush(self.db, one->alias);
}

bool Store::noteLoss() {
  Impl& self = *impl_;
  if (self.depth == 0 || !sqlite3_get_autocommit(self.db)) return false;
  for (auto& [name, one] : self.attached) one->raised = 0;
  self.depth = 0;
  self.settleChanges(false);
  return true;
}

void Store::rollback() {
  Impl& self = *impl_;
  if (self.depth == 0 || noteLoss()) return;
  for (auto& [name, one] : self.attached) one->raised = 0;
  --self.depth;
  self.followers.resize(std::min(self.followers.size(), self.followersAt.back()));
  self.followersAt.pop_back();
  const std::string mark = " s" + std::to_string(self.depth);
  const std::string undo =
      self.depth == 0 ? std::string("ROLLBACK") : "ROLLBACK TO" + mark + "; RELEASE" + mark;
  // A cancellation from another thread may strike just here. It must not keep anything from being undone.
  int rc = SQLITE_INTERRUPT;
  for (int attempt = 0; rc == SQLITE_INTERRUPT && attempt < 100; ++attempt)
    rc = sqlite3_exec(self.db, undo.c_str(), nullptr, nullptr, nullptr) & 0xFF;
  if (rc != SQLITE_OK) lite::fail(self.db, rc);
  if (self.depth == 0) {
    self.settleChanges(false);
    return;
  }
  for (auto& [name, one] : self.attached)
    if (one->changed) one->catalog.reset();
  if (self.anyChanged) {
    self.listVersion = -1;
    ++self.stamp;
  }
}

void Store::writeLock(std::string_view database) {
  Impl& self = *impl_;
  const auto known = self.attached.find(foldName(database));
  if (known == self.attached.end() && self.depth > 0) self.lockFirst = true;
  Attached& one = self.find(database);
  self.lockFirst = false;
  self.lockForWriting(one);
}

void Store::lockDefinitions(std::string_view database) {
  Attached& one = impl_->find(database);
  impl_->lockForWriting(one);
  if (!one.raise)
    one.raise = std::make_unique<lite::Stmt>(
        impl_->db,
        atAlias("UPDATE @.zb_meta SET value=value+1 WHERE key='version' RETURNING value", one.alias), true);
  one.raised = one.raise->step() ? one.raise->integer(0) : 0;
  one.raise->run();
  if (one.changed || !one.catalog || one.catalog->version == one.raised - 1) return;
  one.catalog.reset();
  ++impl_->stamp;
}

void Store::markChanged(std::string_view database, std::shared_ptr<DatabaseCatalog> now) {
  Attached& one = impl_->find(database);
  one.changed = true;
  impl_->anyChanged = true;
  ++impl_->stamp;
  if (now) now->version = one.raised;
  one.raised = 0;
  one.catalog = std::move(now);
}

}  // namespace engine
