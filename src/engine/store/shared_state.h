// What all processes on one data folder share without opening a database: the file server.lck.
//
//   bytes 0..     64-bit numbers, native byte order, see SharedPage; none is trusted further than that what
//                 it says is looked up where it can be
//   byte  64      lock: shared while a statement runs, exclusive while the service stops
//   byte  65      lock: held by whoever starts or stops the service
//   byte  66      lock: shared while a record of intent is made, exclusive while somebody ends the commits
//                 that others left
//   byte  67      lock: shared while a commit of definitions runs; who gets it alone knows that none does
//   byte  70..101 locks: one for each session that waits for a database while it holds another
//   byte  128+n   lock: shared by sessions whose current database has id n; exclusive while database n
//                 is being made or dropped
//
// Locks are open-file-description locks: they belong to one LockFile and vanish with the process.
#pragma once

#include <atomic>
#include <cstdint>
#include <filesystem>

#include "engine/store/system_file.h"

namespace engine {

struct SharedPage {
  std::atomic<std::uint64_t> generation;  // counts starts of the service
  std::atomic<std::uint64_t> stopped;     // stoppedMark: sessions are refused
  // Definition changes whose commit has begun and has ended. Unequal: a commit is under way, or the
  // process that ran it died; then every session looks into the files itself.
  std::atomic<std::uint64_t> changesBegun, changesEnded;
  // The same for commits over several databases, between their record of intent and its removal.
  std::atomic<std::uint64_t> intentsBegun, intentsEnded;
  // Records that wait for a database which could not be opened: looked at when one is.
  std::atomic<std::uint64_t> intentsPending;
  // Names that logged in in vain: a hash, how often, and when last (seconds).
  struct Failure {
    std::atomic<std::uint64_t> name, count, time;
  };
  static constexpr std::size_t failureSlots = 64;
  Failure failures[failureSlots];
  // Sessions that hold databases and wait for one more: at most so many numbers, 0 for none.
  struct Waiting {
    std::atomic<std::uint64_t> wanted;
    std::atomic<std::uint64_t> held[7];
  };
  static constexpr std::size_t waitingSlots = 32;
  Waiting waiting[waitingSlots];
};
inline constexpr std::uint64_t stoppedMark = 0x5a42444f54505053;  // no stray byte makes it

class LockFile {
 public:
  explicit LockFile(const std::filesystem::path& file);  // creates it; Error 5120

  static constexpr std::int64_t statementLock = 64;
  static constexpr std::int64_t serviceLock = 65;
  static constexpr std::int64_t intentLock = 66;
  static constexpr std::int64_t definitionLock = 67;
  static std::int64_t waitingLock(std::size_t slot) { return 70 + static_cast<std::int64_t>(slot); }
  // Who waits for a database's write lock stands here, the next one behind him.
  static std::int64_t gateLock(std::int64_t id) { return (std::int64_t{1} << 40) + id; }
  static std::int64_t databaseLock(std::int64_t id) { return 128 + id; }

  bool tryShared(std::int64_t offset);
  bool tryExclusive(std::int64_t offset);
  void waitShared(std::int64_t offset);
  void waitExclusive(std::int64_t offset);
  void release(std::int64_t offset);
  // True when somebody else, in this process or another, holds the lock.
  bool heldByOthers(std::int64_t offset) const;
  const system::File& file() const { return file_; }

 private:
  system::File file_;
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
