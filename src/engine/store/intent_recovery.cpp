// Ends the commits over several databases that others have left (intent.h).
//
// For each record: the leader is asked to which side the transaction fell, the verdict is carried out in each
// of the others, one transaction with the number in each, and the record goes. Broken off at any point, the
// next one who comes does the rest: what has been done is seen by the numbers.
//
// A database that stands in neither state, before or after, has been replaced by files of another time: its
// files hold, and it is left as it is. One that cannot be opened waits in the record, with the verdict, until
// it can; nobody else waits for it. When it is the leader itself, those that have the transaction judge.
#include <algorithm>
#include <array>
#include <map>

#include "engine/catalog.h"
#include "engine/store/intent.h"
#include "engine/store/storage_impl.h"

namespace engine {

namespace {

enum class Standing : std::uint8_t { Before, After, Elsewhere, Unreachable, Busy };

// Errors that do not pass by themselves.
bool isTrouble(int number) {
  constexpr std::array lasting = {823, 824, 948, 5120, 5171, 5172, 5173, 9003, 9004};
  return std::find(lasting.begin(), lasting.end(), number) != lasting.end();
}

class Settlement {
 public:
  Settlement(Store& store, Intent& intent) : store_(store), intent_(intent) {}

  // Carries the verdict out as far as it goes; what is left in the record waits.
  void run() {
    if (intent_.verdict == Verdict::Open && !judge()) {
      addBusy();
      return;
    }
    atIntentStep("judged");
    if (!intent_.leader.database.empty() && standing(intent_.leader) != Standing::Unreachable) {
      if (standing(intent_.leader) !=
          (intent_.verdict == Verdict::Completed ? Standing::After : Standing::Before))
        remark(intent_.leader);
      else if (intent_.verdict == Verdict::Undone && !dropUnseen(intent_.leader))
        return addBusy();
      intent_.leader = {};
    }
    std::erase_if(intent_.others, [this](const IntentPart& part) { return carriedOut(part); });
    if (busy_) addBusy();
  }

  bool done() const { return intent_.leader.database.empty() && intent_.others.empty(); }
  bool judgedAnew() const { return judgedAnew_; }
  std::vector<std::string> busy;
  std::vector<LeftOver> remarks;
  std::map<std::string, std::string> reasons;  // by folded name

 private:
  Standing standing(const IntentPart& part) {
    try {
      if (!store_.databaseExists(part.database)) return Standing::Elsewhere;
      const std::string alias = store_.attach(part.database);
      if (isMarked(store_.handle(), alias, intent_.number)) return Standing::After;
      return store::position(store_.handle(), alias) == part.before ? Standing::Before : Standing::Elsewhere;
    } catch (const Error& error) {
      if (!isTrouble(error.number())) return Standing::Busy;
      reasons[foldName(part.database)] = error.what();
      return Standing::Unreachable;
    }
  }

  // False when the leader cannot be asked for the moment.
  bool judge() {
    const Standing leader = standing(intent_.leader);
    if (leader == Standing::Busy) return false;
    bool completed = leader == Standing::After;
    if (leader == Standing::Elsewhere || leader == Standing::Unreachable)
      for (const IntentPart& part : intent_.others)
        completed = completed || standing(part) == Standing::After;
    intent_.verdict = completed ? Verdict::Completed : Verdict::Undone;
    judgedAnew_ = true;
    return true;
  }

  // True when nothing is left to do for this database.
  bool carriedOut(const IntentPart& part) {
    const bool forward = intent_.verdict == Verdict::Completed;
    switch (standing(part)) {
      case Standing::Unreachable:
        return false;
      case Standing::Busy:
        busy_ = true;
        return false;
      case Standing::Elsewhere:
        if (forward) remark(part);
        return true;
      case Standing::Before:
        return forward ? bring(part, forward) : dropUnseen(part);
      case Standing::After:
        return forward || bring(part, forward);
    }
    return false;
  }

  bool bring(const IntentPart& part, bool forward) {
    return locked(part, [&](const std::string& alias) {
      sqlite3* db = store_.handle();
      const std::size_t count = part.changes.size();
      for (std::size_t i = 0; i < count; ++i)
        applyChange(db, alias, part.changes[forward ? i : count - 1 - i], forward);
      setMark(db, alias, intent_.number, forward);
      atIntentStep("bringing");
      store_.commit();
      atIntentStep("brought");
    });
  }

  // The transaction may be in the log, but unseen: its owner was killed between the two.
  bool dropUnseen(const IntentPart& part) {
    return locked(part, [&](const std::string& alias) {
      store::dropUnseenCommit(store_.handle(), alias);
      store_.rollback();
    });
  }

  // `action` with the write lock of the database, to be ended by itself; true when it was done.
  template <typename Action>
  bool locked(const IntentPart& part, Action action) {
    try {
      const std::string alias = store_.attach(part.database);
      store_.begin();
      try {
        store_.writeLock(part.database);
        action(alias);
      } catch (...) {
        store_.rollback();
        throw;
      }
      return true;
    } catch (const Error& error) {
      constexpr int lockNotGranted = 1222;
      if (error.number() == lockNotGranted)
        busy_ = true;
      else
        reasons[foldName(part.database)] = error.what();
      return false;
    }
  }

  void addBusy() {
    busy.push_back(foldName(intent_.leader.database));
    for (const IntentPart& part : intent_.others) busy.push_back(foldName(part.database));
  }
  void remark(const IntentPart& part) {
    remarks.push_back({part.database, Error(3437,
                                            "An error occurred while recovering database '" + part.database +
                                                "': its files are from another time than a transaction "
                                                "over several databases. They were left as they are.",
                                            21)});
  }

  Store& store_;
  Intent& intent_;
  bool busy_ = false, judgedAnew_ = false;
};

}  // namespace

// The databases (folded names) of transactions that cannot be ended for now because somebody holds a lock.
std::vector<std::string> Store::recoverIntents() {
  if (impl_->recovering) return {};
  Instance& instance = *impl_->instance;
  auto& page = instance.shared();
  LockFile lock(instance.lockFile());
  lock.waitExclusive(LockFile::intentLock);
  const std::uint64_t begun = page->intentsBegun.load();
  std::uint64_t ended = page->intentsEnded.load();
  std::vector<std::string> busy;
  std::map<std::string, std::string> reasons;
  bool none = true;
  std::uint64_t pending = 0;
  for (const auto& file : intentFiles(instance.folder())) {
    const auto left = LeftIntent::take(file);
    std::error_code error;
    if (!left) {
      none = none && !std::filesystem::exists(file, error);
      continue;
    }
    Store store(impl_->instance);
    store.impl_->recovering = true;
    store.setLockTimeout(0);
    store.beginStatement();
    Settlement settlement(store, left->intent);
    settlement.run();
    store.endStatement();
    instance.addRemarks(settlement.remarks);
    if (settlement.done()) {
      left->remove();
    } else {
      if (settlement.judgedAnew()) left->rewrite();
      none = none && settlement.busy.empty();
      ++pending;
    }
    atIntentStep("settled");
    busy.insert(busy.end(), settlement.busy.begin(), settlement.busy.end());
    reasons.merge(settlement.reasons);
    // Rows may have come along that tell of definitions or logins.
    page->changesBegun.fetch_add(1);
    page->changesEnded.fetch_add(1);
  }
  instance.setSuspects(std::move(reasons));
  page->intentsPending.store(pending);
  if (none) page->intentsEnded.compare_exchange_strong(ended, begun);
  return busy;
}

// At the begin of a statement: what others left is ended. Databases for which that is not over are closed;
// whoever uses one waits for it when it is opened again.
void Store::Impl::endLeftIntents(Store& store) {
  auto& page = instance->shared();
  if (depth > 0 || recovering) return;
  if (page->intentsBegun.load(std::memory_order_acquire) ==
      page->intentsEnded.load(std::memory_order_acquire))
    return;
  store.recoverIntents();
  if (page->intentsPending.load() == 0) return;
  std::vector<Attached*> concerned;
  for (const auto& [name, one] : attached)
    for (const auto& file : intentFiles(instance->folder()))
      if (isLeft(file, {name})) {
        concerned.push_back(one.get());
        break;
      }
  for (Attached* one : concerned) close(*one);
}

// Before a database is opened: a commit over several that concerns it must have been ended.
void Store::Impl::awaitIntents(Store& store, const std::string& name) {
  auto& page = instance->shared();
  if (recovering) return;
  const auto concerned = [&] {
    for (const auto& file : intentFiles(instance->folder()))
      if (isLeft(file, {name})) return true;
    return false;
  };
  for (bool first = true;; first = false) {
    const bool quiet = page->intentsBegun.load() == page->intentsEnded.load();
    if (quiet && page->intentsPending.load() == 0) break;
    if (!concerned()) break;
    const auto busy = store.recoverIntents();
    if (std::find(busy.begin(), busy.end(), name) == busy.end()) break;
    // Whoever must give way may be this session itself.
    if (depth > 0) throw lite::deadlockVictim();
    if (!goOnWaiting(first)) throw waitError();
  }
  leaveWaiting();
}

}  // namespace engine
