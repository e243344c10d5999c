// tempdb: the tables of one session, in the temp schema of its handle. They are written and rolled back with
// its transactions and seen by nobody else, so that neither versions nor locks nor shared catalogs concern
// it.
#include <atomic>

#include "engine/store/storage.h"
#include "engine/store/storage_impl.h"

namespace engine {

Attached& Store::Impl::findTemporary() {
  if (temporary) return *temporary;
  static std::atomic<std::uint64_t> count{0};
  const bool alone = sqlite3_get_autocommit(db) != 0;
  if (alone) lite::exec(db, "BEGIN");
  try {
    makeSystemTables(db, "temp", temporaryName);
  } catch (const Error&) {
    if (alone) sqlite3_exec(db, "ROLLBACK", nullptr, nullptr, nullptr);
    throw;
  }
  if (alone) lite::exec(db, "COMMIT");
  temporaryIsNew = !alone;
  temporary = std::make_unique<Attached>();
  temporary->entry.id = 2;
  temporary->entry.name = temporaryName;
  temporary->alias = "temp";
  temporary->cacheKey = std::string(temporaryName) + '/' + std::to_string(++count);
  temporary->tuned = temporary->temporary = true;
  return *temporary;
}

void Store::Impl::dropTemporary() {
  if (!temporary) return;
  instance->identityMarks().forget(temporary->cacheKey);
  temporary.reset();
}

// Behind a rollback, to a savepoint or of the whole: tempdb itself may have gone with it.
void Store::Impl::undoTemporary() {
  if (!temporary) return;
  if (temporaryIsNew) {
    lite::Stmt made(db, "SELECT 1 FROM sqlite_temp_master WHERE name='zb_meta'");
    if (!made.step()) {
      dropTemporary();
      ++stamp;
      return;
    }
  }
  if (!temporary->changed) return;
  temporary->catalog.reset();
  ++stamp;
}

void Store::Impl::settleTemporary(bool committed) {
  if (!committed) undoTemporary();
  temporaryIsNew = false;
  if (temporary) temporary->changed = false;
}

bool Store::hasTemporary() const {
  return impl_->temporary != nullptr;
}

std::shared_ptr<const DatabaseCatalog> Store::temporaryCatalog() {
  return impl_->temporary ? catalog(temporaryName) : nullptr;
}

}  // namespace engine
