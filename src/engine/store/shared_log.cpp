// One flush for all who wait for it.
#include <chrono>
#include <filesystem>
#include <map>

#include "engine/store/layer_files.h"

namespace engine::store {

namespace {

// So long after somebody found the write lock taken, others are taken to be waiting.
constexpr std::int64_t waitingMilliseconds = 100;

std::int64_t now() {
  return std::chrono::duration_cast<std::chrono::milliseconds>(
             std::chrono::steady_clock::now().time_since_epoch())
      .count();
}

}  // namespace

std::shared_ptr<SharedLog> sharedLog(const std::string& dataPath, std::uint64_t inode) {
  // Never destroyed: sessions that live as long as the process close their files after the statics have gone.
  static auto& mutex = *new std::mutex;
  static auto& logs = *new std::map<std::string, std::weak_ptr<SharedLog>>;
  std::error_code error;
  const std::lock_guard lock(mutex);
  std::erase_if(logs, [](const auto& each) { return each.second.expired(); });
  std::weak_ptr<SharedLog>& kept = logs[dataPath];
  auto log = kept.lock();
  const bool former = log && inode != 0 && log->inode != 0 && log->inode != inode;
  if (former && std::filesystem::exists(dataPath + "-shm", error)) return nullptr;
  if (!log || former) kept = log = std::make_shared<SharedLog>();
  if (inode != 0) log->inode = inode;
  return log;
}

void SharedLog::noteWaiting() {
  waitingAt_.store(now(), std::memory_order_relaxed);
}

bool SharedLog::somebodyWaits() const {
  const std::int64_t at = waitingAt_.load(std::memory_order_relaxed);
  return at != 0 && now() - at < waitingMilliseconds;
}

std::uint64_t SharedLog::ask(const Durable& last) {
  const std::lock_guard lock(mutex_);
  last_ = last;
  return ++asked_;
}

// Writes down how far the log is on the disk, for whoever recovers it. It need not be there itself.
static void noteDurable(const Durable& durable, const RealFile& log) {
  if (durable.count == 0) return;
  const Seal seal = sealDurable(durable);
  static_cast<void>(log.write(seal.data(), seal.size(), durableOffset));
}

int SharedLog::flushAsked(std::unique_lock<std::mutex>& lock, const RealFile& log) {
  const std::uint64_t target = asked_;
  const Durable last = last_;
  flushing_ = true;
  lock.unlock();
  const int code = log.sync();
  if (code == SQLITE_OK) noteDurable(last, log);
  lock.lock();
  flushing_ = false;
  if (code == SQLITE_OK)
    done_ = std::max(done_, target);
  else if (target > done_)
    broken_ = true;  // the system has forgotten what it could not write: a second try would lie
  flushed_.notify_all();
  return code;
}

int SharedLog::flushUpTo(std::uint64_t number, const RealFile& log) {
  std::unique_lock lock(mutex_);
  while (done_ < number) {
    if (broken_) return SQLITE_IOERR_FSYNC;
    if (flushing_)
      flushed_.wait(lock);
    else
      flushAsked(lock, log);
  }
  return SQLITE_OK;
}

int SharedLog::flushNow(const Durable& last, const RealFile& log) {
  std::unique_lock lock(mutex_);
  while (flushing_) flushed_.wait(lock);
  if (broken_) return SQLITE_IOERR_FSYNC;
  last_ = last;
  return flushAsked(lock, log);
}

}  // namespace engine::store
