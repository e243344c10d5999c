// Waiting for a database's write lock: without limit unless the session has set one, in the order of coming,
// and not in a circle.
//
// SQLite knows nothing of order: whoever tries first after a commit gets the lock. So that nobody starves,
// those who wait stand before a gate, one behind it. The longer somebody has waited, the more often he looks.
#include <algorithm>
#include <array>
#include <chrono>
#include <thread>
#include <utility>

#include "engine/store/storage_impl.h"

namespace engine {

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::microseconds;
using std::chrono::milliseconds;

// Of those who stand behind the gate the longest there looks most often.
constexpr microseconds longestPause{5000}, shortestPause{200};
constexpr milliseconds circleInterval{50};

milliseconds since(Clock::time_point start) {
  return std::chrono::duration_cast<milliseconds>(Clock::now() - start);
}

Error errorOf(WaitEnd end) {
  switch (end) {
    case WaitEnd::Deadlock:
      return lite::deadlockVictim();
    case WaitEnd::Stopped:
      return Error(17142, "SQL Server service has been paused or stopped.", 14);
    case WaitEnd::Cancelled:
      return lite::cancelled();
    default:
      return lite::lockTimeOut();
  }
}

}  // namespace

bool isLockError(const Error& error) {
  constexpr std::array numbers = {1205, 1222, 3617, 17142};
  return std::find(numbers.begin(), numbers.end(), error.number()) != numbers.end();
}

Error Store::Impl::waitError() {
  return errorOf(std::exchange(waitEnd, WaitEnd::None));
}

// The databases that this session has written to in the open transaction.
std::vector<std::uint64_t> Store::Impl::heldDatabases() const {
  std::vector<std::uint64_t> held;
  for (const auto& [name, one] : attached)
    if (sqlite3_txn_state(db, one->alias.c_str()) == SQLITE_TXN_WRITE)
      held.push_back(static_cast<std::uint64_t>(one->entry.id));
  return held;
}

void Store::Impl::enterWaiting(const std::vector<std::uint64_t>& held) {
  auto& page = instance->shared();
  for (std::size_t i = 0; i < SharedPage::waitingSlots && waitingSlot < 0; ++i)
    if (locks.tryExclusive(LockFile::waitingLock(i))) waitingSlot = static_cast<int>(i);
  if (waitingSlot < 0) return;
  auto& slot = page->waiting[waitingSlot];
  for (std::size_t i = 0; i < std::size(slot.held); ++i) slot.held[i] = i < held.size() ? held[i] : 0;
  slot.wanted = static_cast<std::uint64_t>(wanted);
}

void Store::Impl::leaveWaiting() {
  if (waitingSlot < 0) return;
  instance->shared()->waiting[waitingSlot].wanted = 0;
  locks.release(LockFile::waitingLock(static_cast<std::size_t>(waitingSlot)));
  waitingSlot = -1;
}

// Who holds what I want waits for what another one holds ... and that is me. Of the sessions in the circle
// the one with the highest place gives way.
bool Store::Impl::isVictim() {
  auto& page = instance->shared();
  const auto holder = [&](std::uint64_t id, int except) {
    for (std::size_t i = 0; i < SharedPage::waitingSlots; ++i) {
      if (static_cast<int>(i) == except || page->waiting[i].wanted == 0) continue;
      if (static_cast<int>(i) != waitingSlot && !locks.heldByOthers(LockFile::waitingLock(i))) continue;
      for (const auto& held : page->waiting[i].held)
        if (held == id) return static_cast<int>(i);
    }
    return -1;
  };
  int at = waitingSlot, highest = waitingSlot;
  for (std::size_t step = 0; step < SharedPage::waitingSlots; ++step) {
    at = holder(page->waiting[at].wanted, at);
    if (at < 0) return false;
    if (at == waitingSlot) return highest == waitingSlot;
    highest = std::max(highest, at);
  }
  return false;
}

// One look further; false when the wait is over without the lock.
bool Store::Impl::goOnWaiting(bool first) {
  if (first) {
    waitStart = lastCircle = Clock::now();
    waitEnd = WaitEnd::None;
  }
  const milliseconds waited = since(waitStart);
  if (cancelled && cancelled->load(std::memory_order_relaxed)) waitEnd = WaitEnd::Cancelled;
  if (instance->stopped()) waitEnd = WaitEnd::Stopped;
  if (lockTimeout >= 0 && waited.count() >= lockTimeout) waitEnd = WaitEnd::TimedOut;
  if (waitEnd == WaitEnd::None && since(lastCircle) >= circleInterval) {
    lastCircle = Clock::now();
    if (const auto held = heldDatabases(); !held.empty()) {
      enterWaiting(held);
      if (waitingSlot >= 0 && isVictim()) waitEnd = WaitEnd::Deadlock;
    }
  }
  if (waitEnd != WaitEnd::None) {
    leaveWaiting();
    return false;
  }
  const bool next = gate != 0 && gate == wanted;
  const microseconds pause = next ? shortestPause : longestPause / (1 + waited.count() / 20);
  std::this_thread::sleep_for(std::max(pause, shortestPause));
  return true;
}

int Store::Impl::onBusy(void* self, int count) {
  auto& impl = *static_cast<Impl*>(self);
  // Those who come later stand behind.
  if (count == 0 && impl.gate == 0 && impl.wanted != 0 &&
      impl.locks.tryExclusive(LockFile::gateLock(impl.wanted)))
    impl.gate = impl.wanted;
  return impl.goOnWaiting(count == 0) ? 1 : 0;
}

void Store::Impl::openGate() {
  if (gate != 0) locks.release(LockFile::gateLock(gate));
  gate = 0;
  leaveWaiting();
}

// Before a write: behind those who wait already.
void Store::Impl::queueFor(const Attached& one) {
  if (one.temporary) return;
  wanted = one.entry.id;
  if (sqlite3_txn_state(db, one.alias.c_str()) == SQLITE_TXN_WRITE || gate == wanted) return;
  if (gate != 0) openGate();
  if (!locks.heldByOthers(LockFile::gateLock(wanted))) return;
  for (bool first = true; !locks.tryExclusive(LockFile::gateLock(wanted)); first = false)
    if (!goOnWaiting(first)) throw waitError();
  leaveWaiting();
  gate = wanted;
}

void Store::Impl::lockForWriting(Attached& one) {
  if (one.temporary) return;
  if (sqlite3_txn_state(db, one.alias.c_str()) == SQLITE_TXN_WRITE) return;
  queueFor(one);
  if (!one.lock)
    one.lock = std::make_unique<lite::Stmt>(
        db, atAlias("UPDATE @.zb_meta SET value=value WHERE key=''", one.alias), true);
  // SQLite waits itself, but not for a database that the transaction has read already: should another one
  // commit meanwhile, what was read is overtaken for good.
  const bool read = sqlite3_txn_state(db, one.alias.c_str()) == SQLITE_TXN_READ;
  for (bool first = true;; first = false) {
    try {
      one.lock->run();
      break;
    } catch (const Error& error) {
      constexpr int lockNotGranted = 1222;
      if (error.number() != lockNotGranted) throw;
      if (!read) throw waitError();
      if (sqlite3_extended_errcode(db) == SQLITE_BUSY_SNAPSHOT) throw lite::deadlockVictim();
      if (!goOnWaiting(first)) throw waitError();
    }
  }
  leaveWaiting();
}

std::optional<Error> Store::whyNotWaited() {
  const WaitEnd end = std::exchange(impl_->waitEnd, WaitEnd::None);
  if (end == WaitEnd::None || end == WaitEnd::TimedOut) return std::nullopt;
  return errorOf(end);
}

void Store::setLockTimeout(std::int64_t milliseconds) {
  impl_->lockTimeout = milliseconds;
}

void Store::setCancelled(const std::atomic<bool>* flag) {
  impl_->cancelled = flag;
}

void Store::expectWrite(std::string_view database) {
  impl_->queueFor(impl_->find(database));
}

}  // namespace engine
