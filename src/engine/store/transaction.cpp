// Transactions over everything attached, and what they leave behind them.
#include "engine/store/file_layer.h"
#include "engine/store/storage.h"
#include "engine/store/storage_impl.h"

namespace engine {

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
  settleTemporary(committed);
}

// The file may have gone since the lock was taken; then nothing of the transaction stands anywhere.
void Store::Impl::refuseMoved() {
  for (const auto& [name, one] : attached)
    if (sqlite3_txn_state(db, one->alias.c_str()) == SQLITE_TXN_WRITE) store::refuseMoved(db, one->alias);
}

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
    if (intent && self.leaderHas(intent->number())) return self.leaveToRecovery();
    lite::fail(self.db, rc);
  }
  self.depth = 0;
  // What this handle has changed itself it need not look for, unless others changed something meanwhile.
  if (endedBefore == self.seenChanges && definitions && !self.masterChanged()) ++self.seenChanges;
  self.settleChanges(true);
  self.openGate();  // those who wait write while this one is flushed, and share the next flush
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
  self.undoTemporary();
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
  impl_->anyChanged = impl_->anyChanged || !one.temporary;
  ++impl_->stamp;
  if (now) now->version = one.raised;
  one.raised = 0;
  one.catalog = std::move(now);
}

}  // namespace engine
