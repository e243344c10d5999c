// What all processes on one data folder share without opening a database: the file server.lck.
//
//   bytes 0..39   five 64-bit counters, native byte order, see SharedPage
//   byte  64      lock: shared while a statement runs, exclusive while the service stops
//   byte  65      lock: held by whoever starts or stops the service
//   byte  128+n   lock: shared by sessions whose current database has id n; exclusive while database n
//                 is being made or dropped
//
// Locks are open-file-description locks: they belong to one LockFile and vanish with the process.
#pragma once

#include <atomic>
#include <cstdint>
#include <filesystem>

namespace engine {

struct SharedPage {
  std::atomic<std::uint64_t> generation;  // counts starts of the service
  std::atomic<std::uint64_t> stopped;     // 1: sessions are refused
  // Definition changes whose commit has begun and has ended. Unequal: a commit is under way, or the
  // process that ran it died; then every session looks into the files itself.
  std::atomic<std::uint64_t> changesBegun, changesEnded;
  std::atomic<std::uint64_t> reserved;
};

class LockFile {
 public:
  explicit LockFile(const std::filesystem::path& file);  // creates it; Error 5120
  ~LockFile();
  LockFile(const LockFile&) = delete;
  LockFile& operator=(const LockFile&) = delete;

  static constexpr std::int64_t statementLock = 64;
  static constexpr std::int64_t serviceLock = 65;
  static std::int64_t databaseLock(std::int64_t id) { return 128 + id; }

  bool tryShared(std::int64_t offset);
  bool tryExclusive(std::int64_t offset);
  void waitShared(std::int64_t offset);
  void waitExclusive(std::int64_t offset);
  void release(std::int64_t offset);
  // True when somebody else, in this process or another, holds the lock.
  bool heldByOthers(std::int64_t offset) const;
  int descriptor() const { return fd_; }

 private:
  bool apply(int type, std::int64_t offset, bool wait);
  int fd_;
};

// The mapped counters. Error 5120 when the disk has no room for the page.
class SharedState {
 public:
  explicit SharedState(const std::filesystem::path& file);
  ~SharedState();
  SharedState(const SharedState&) = delete;
  SharedState& operator=(const SharedState&) = delete;
  SharedPage* operator->() const { return page_; }

 private:
  SharedPage* page_;
};

}  // namespace engine
