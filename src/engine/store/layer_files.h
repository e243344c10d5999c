// The inside of the file layer: one open data file and its log, and what the sessions of this process share.
#pragma once

#include <sqlite3.h>

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "engine/store/log_format.h"
#include "engine/value.h"

namespace engine::store {

// A file of the layer below.
class RealFile {
 public:
  RealFile() = default;
  ~RealFile();
  RealFile(const RealFile&) = delete;
  RealFile& operator=(const RealFile&) = delete;

  int open(sqlite3_vfs* vfs, const char* name, int flags, int* outFlags);
  int close();
  sqlite3_file* get() const { return file_; }
  const sqlite3_io_methods& methods() const { return *file_->pMethods; }

  int read(void* to, std::size_t size, std::int64_t at) const;
  int write(const void* from, std::size_t size, std::int64_t at) const;
  int sync() const;
  int truncate(std::int64_t size) const;
  std::int64_t size() const;                              // -1: cannot be told
  static std::uint64_t inodeAt(const std::string& path);  // 0: nothing lies there

 private:
  sqlite3_file* file_ = nullptr;
};

// The log of one database, as the sessions of this process share it.
class SharedLog {
 public:
  // A commit that may be flushed later; the number to wait for.
  std::uint64_t ask(const Durable& last);
  // Flushes now, or waits for somebody who does. The file is one handle on the log.
  int flushUpTo(std::uint64_t number, const RealFile& log);
  // A commit that is flushed before it is seen.
  int flushNow(const Durable& last, const RealFile& log);
  bool broken() const { return broken_.load(std::memory_order_relaxed); }

  void noteWaiting();
  bool somebodyWaits() const;

  std::uint64_t inode = 0;  // of the data file; set before anybody else sees it

 private:
  int flushAsked(std::unique_lock<std::mutex>& lock, const RealFile& log);

  std::mutex mutex_;
  std::condition_variable flushed_;
  std::uint64_t asked_ = 0, done_ = 0;
  bool flushing_ = false;
  Durable last_;
  std::atomic<bool> broken_ = false;
  std::atomic<std::int64_t> waitingAt_ = 0;  // steady clock, milliseconds
};
// Null while sessions of this process still have a former file of that name open with the index that lies
// beside it: two files must not share one. Without a number the one that is open, if any.
std::shared_ptr<SharedLog> sharedLog(const std::string& dataPath, std::uint64_t inode = 0);

struct LogState;

struct DataState {
  std::string path, logPath, database;
  RealFile real;
  LogState* log = nullptr;
  std::shared_ptr<SharedLog> shared;

  std::uint64_t inode = 0, logInode = 0;  // of what was opened
  std::uint32_t pageSize = 0;
  bool checksummed = false, logged = false;  // as the file's header says
  std::uint32_t identity = 0;
  Mark mark;

  std::vector<unsigned char> scratch;  // a page on its way out; a thread's own would go before the last close
  const volatile unsigned char* index = nullptr;  // SQLite's shared index of the log
  bool holdsWrite = false, holdsCheckpoint = false;
  bool checkpointing = false, marked = false;  // a checkpoint runs; its mark is written
  bool paired = false;                         // checkPair() has passed; the log may be taken in once
  bool atOnce = false;                         // commits wait for their own flush
  int lock = SQLITE_LOCK_NONE;

  int learn();  // from the file's header
  void learnHeader(const unsigned char* header);
  int readMark();
  int writeMark(const Mark& next, bool toDisk);
};

struct LogState {
  DataState* data = nullptr;
  RealFile real;
  Durable last;   // commit frame that was written last
  Durable begun;  // one whose page is still to come
  std::uint64_t owed = 0;
  bool headerNew = false;  // and not on the disk yet
};

// What SQLite's index of the log says; 48 bytes in the machine's own order.
struct IndexHead {
  bool bigEnd = false;
  std::uint32_t pageSize = 0, frames = 0;
  Seed seed{};
};
bool readIndex(const volatile unsigned char* index, IndexHead& head);
std::uint32_t attemptedFrames(const volatile unsigned char* index);

DataState& dataOf(sqlite3_file* file);
LogState& logOf(sqlite3_file* file);

extern const sqlite3_io_methods dataMethods;
extern const sqlite3_io_methods logMethods;

struct LayerFile {
  sqlite3_file base;
  union {
    DataState* data;
    LogState* log;
  };
};

extern std::atomic<std::uint64_t> movedCount;
Error movedError(const std::string& path);

// Codes that only this layer understands, for sqlite3_file_control.
constexpr int controlFlush = 0x5A420001;
constexpr int controlAtOnce = 0x5A420002;  // bool*

// pair_check.cpp: whether log and data file belong together; called before SQLite looks at the log.
int checkPair(DataState& data);
// log_file.cpp
int beginGeneration(LogState& log, const unsigned char* header);
int emptyLog(LogState& log);
// Called by who has just taken the write lock.
int forgetUnseenCommit(DataState& data);
// Breaks the chain of frames behind the last one that is seen.
int clearNextFrame(DataState& data);
// data_file.cpp
int beginCheckpoint(DataState& data);
int endCheckpoint(DataState& data);
int verifyPage(DataState& data, const unsigned char* page, std::uint32_t number);

}  // namespace engine::store
