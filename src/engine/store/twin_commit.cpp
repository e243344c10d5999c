// Commits over several databases (intent.h).
#include <sodium.h>

#include <chrono>
#include <thread>

#include "engine/catalog.h"
#include "engine/function/sqlite_values.h"
#include "engine/store/intent.h"
#include "engine/store/storage_impl.h"

namespace engine {

namespace {

StoredRow rowOf(sqlite3* db, int (*read)(sqlite3*, int, sqlite3_value**)) {
  StoredRow row(static_cast<std::size_t>(sqlite3_preupdate_count(db)));
  for (std::size_t i = 0; i < row.size(); ++i) {
    sqlite3_value* value = nullptr;
    if (read(db, static_cast<int>(i), &value) == SQLITE_OK && value) row[i] = datumOf(value);
  }
  return row;
}

std::int64_t newNumber() {
  std::uint64_t number = 0;
  randombytes_buf(&number, sizeof number);
  return static_cast<std::int64_t>(number >> 2) + 1;
}

bool hasRowNumbers(sqlite3* db, const std::string& alias, const std::string& table) {
  lite::Stmt find(db, "SELECT wr FROM pragma_table_list(?) WHERE schema=?");
  return !find.bind(table).bind(alias).step() || find.integer(0) == 0;
}

}  // namespace

void Store::Impl::onChange(void* self, sqlite3* db, int operation, const char* database, const char* table,
                           sqlite3_int64 oldRow, sqlite3_int64 newRow) {
  auto& impl = *static_cast<Impl*>(self);
  // Main and temp hold nothing that lasts; a statement on its own writes to one database alone.
  if (database[0] != 'd' || impl.depth == 0 || impl.declaring) return;
  if (impl.leader.empty()) impl.leader = database;
  if (impl.leader == database) return;
  RowChange change;
  change.table = table;
  change.kind = operation == SQLITE_INSERT ? 'I' : operation == SQLITE_DELETE ? 'D' : 'U';
  change.oldRow = oldRow;
  change.newRow = operation == SQLITE_DELETE ? oldRow : newRow;
  if (operation == SQLITE_INSERT) change.oldRow = newRow;
  if (operation != SQLITE_INSERT) change.before = rowOf(db, sqlite3_preupdate_old);
  if (operation != SQLITE_DELETE) change.after = rowOf(db, sqlite3_preupdate_new);
  impl.followers.emplace_back(database, std::move(change));
}

const Attached* Store::Impl::byAlias(std::string_view alias) const {
  for (const auto& [name, one] : attached)
    if (one->alias == alias) return one.get();
  return nullptr;
}

bool Store::leadsAnother(std::string_view database) const {
  const std::string& leader = impl_->leader;
  if (foldName(database) == temporaryName) return false;
  return impl_->depth > 0 && !leader.empty() && leader != impl_->find(database).alias;
}

// The number and the state of before of each database concerned. What they have changed goes into the record
// and comes back when there is none.
Intent Store::Impl::makeIntent() {
  declaring = true;
  struct Declared {
    bool& declaring;
    ~Declared() { declaring = false; }
  } declared{declaring};
  Intent intent;
  intent.number = newNumber();
  std::map<std::string, std::size_t> places;
  for (const auto& [alias, change] : followers)
    if (places.try_emplace(alias, places.size()).second) intent.others.emplace_back();
  const auto declare = [&](const std::string& alias, IntentPart& part) {
    dropOldMarks(db, alias, instance->folder());
    setMark(db, alias, intent.number, true);
    const Attached* one = byAlias(alias);
    const auto before = store::position(db, alias);
    if (!one || !before) throw Error(8630, "Internal error: the state of a database could not be told.", 17);
    part.database = one->entry.name;
    part.before = *before;
  };
  declare(leader, intent.leader);
  for (const auto& [alias, place] : places) declare(alias, intent.others[place]);
  std::map<std::pair<std::string, std::string>, bool> keyed;
  for (auto& [alias, change] : followers) {
    const auto [at, added] = keyed.try_emplace({alias, change.table}, true);
    if (added) at->second = hasRowNumbers(db, alias, change.table);
    change.keyed = at->second;
  }
  for (auto& [alias, change] : followers) intent.others[places[alias]].changes.push_back(std::move(change));
  followers.clear();
  return intent;
}

// Null for a transaction that has changed one database alone.
std::unique_ptr<IntentFile> Store::Impl::declareIntent() {
  if (followers.empty() || recovering) return nullptr;
  Intent intent = makeIntent();
  // Whoever ends what others left may wait for a lock that this transaction holds, and this one for him.
  while (!locks.tryShared(LockFile::intentLock)) {
    refuseOverLeftIntents();
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  try {
    auto file = std::make_unique<IntentFile>(instance->folder(), intent, *instance->shared().operator->());
    locks.release(LockFile::intentLock);
    return file;
  } catch (...) {
    locks.release(LockFile::intentLock);
    for (IntentPart& part : intent.others)
      for (RowChange& change : part.changes)
        followers.emplace_back(find(part.database).alias, std::move(change));
    throw;
  }
}

// Another file could not be written, but the leader is: with it the transaction has been decided.
bool Store::Impl::leaderHas(std::int64_t number) {
  if (!sqlite3_get_autocommit(db)) return false;
  try {
    return isMarked(db, leader, number);
  } catch (const Error&) {
    return false;
  }
}

// It stands; who opens one of the others brings it to them first. What this handle knew of them is read anew.
void Store::Impl::leaveToRecovery() {
  for (auto& [name, one] : attached) one->raised = 0;
  depth = 0;
  settleChanges(false);
  openGate();
}

void Store::Impl::flushAtOnce(bool set) {
  for (const auto& [name, one] : attached) store::flushAtOnce(db, one->alias, set);
}

void Store::forgetChanges(std::size_t count) {
  if (impl_->followers.size() > count) impl_->followers.resize(count);
}
std::size_t Store::changesNoted() const {
  return impl_->followers.size();
}

int Store::Impl::onCommit(void* self) {
  auto& impl = *static_cast<Impl*>(self);
  return !impl.recovering && impl.overLeftIntents() ? 1 : 0;
}

// What this transaction has read and written is older than what a broken-off commit still owes its
// databases: it cannot stand.
bool Store::Impl::overLeftIntents() const {
  auto& page = instance->shared();
  if (page->intentsBegun.load() == page->intentsEnded.load() && page->intentsPending.load() == 0)
    return false;
  std::vector<std::string> names;
  for (const auto& [name, one] : attached) names.push_back(name);
  for (const auto& file : intentFiles(instance->folder()))
    if (isLeft(file, names)) return true;
  return false;
}

void Store::Impl::refuseOverLeftIntents() const {
  if (!recovering && overLeftIntents()) throw lite::deadlockVictim();
}

}  // namespace engine
