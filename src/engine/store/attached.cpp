// Files attached to a session's handle: opened, looked at, let go of.
#include "engine/store/companion.h"
#include "engine/store/database_file.h"
#include "engine/store/file_layer.h"
#include "engine/store/storage.h"
#include "engine/store/storage_impl.h"

namespace engine {

namespace {

constexpr std::size_t attachLimit = 10;  // SQLite's own, as built

[[noreturn]] void failDamaged(const DatabaseEntry& entry, const Error& error) {
  const std::string file = entry.data.string(), text = error.what();
  const bool damage = error.number() == 824 || error.number() == 823;
  if (!damage || text.find(entry.data.parent_path().string()) != std::string::npos) throw Error(error);
  throw Error(error.number(), "The database file '" + file + "' is damaged: " + text, 24);
}

}  // namespace

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
  if (format > fileFormat) failNewerFormat(one.entry.name, format, fileFormat);
  if (family != one.family)
    throw Error(5173, "One or more files do not match the primary file of the database: '" +
                          one.entry.log.string() + "' does not belong to database '" + one.entry.name + "'.");
}

bool Store::Impl::isCurrent(const Attached& one) {
  lite::Stmt format(db, atAlias("SELECT value FROM @.zb_meta WHERE key='format'", one.alias));
  return store::isChecksummed(db, one.alias) && format.step() && format.integer(0) >= plainFormat;
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
  settleTemporary(false);
  detachOrphans();
  while (!attached.empty()) {
    Attached& one = *attached.begin()->second;
    if (!close(one)) throw Error(5030, "The database '" + one.entry.name + "' could not be closed.");
  }
  databases.clear();
  listVersion = -1;
  fresh = false;
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

}  // namespace engine
