// The data file: checksums of its pages, and the mark that says which log it goes with.
#include <cstdio>
#include <cstring>
#include <vector>

#include "engine/catalog/failure.h"
#include "engine/store/file_layer.h"
#include "engine/store/layer_files.h"
#include "engine/store/page_checksum.h"

namespace engine::store {

using lite::failWith;

namespace {

constexpr std::size_t headerSize = 100;
constexpr int writeLock = 0, checkpointLock = 1, recoverLock = 2;  // SQLite's, in its shared index

bool isWholePage(const DataState& data, int size, sqlite3_int64 at) {
  return data.pageSize != 0 && static_cast<std::uint32_t>(size) == data.pageSize && at % size == 0;
}

std::string hexadecimal(std::uint64_t value) {
  char text[24];
  std::snprintf(text, sizeof text, "0x%llx", static_cast<unsigned long long>(value));
  return text;
}

// ---- the methods ----

int closeFile(sqlite3_file* file) {
  auto* layer = reinterpret_cast<LayerFile*>(file);
  const int code = layer->data->real.close();
  delete layer->data;
  layer->data = nullptr;
  return code;
}

int readFile(sqlite3_file* file, void* to, int size, sqlite3_int64 at) {
  DataState& data = dataOf(file);
  const int code = data.real.read(to, static_cast<std::size_t>(size), at);
  if (code != SQLITE_OK || !data.checksummed || !isWholePage(data, size, at)) return code;
  return verifyPage(data, static_cast<unsigned char*>(to), static_cast<std::uint32_t>(at / size + 1));
}

int writeFile(sqlite3_file* file, const void* from, int size, sqlite3_int64 at) {
  DataState& data = dataOf(file);
  if (data.checkpointing && !data.marked)
    if (const int code = beginCheckpoint(data); code != SQLITE_OK) return code;
  if (at == 0 && static_cast<std::size_t>(size) >= headerSize)
    data.learnHeader(static_cast<const unsigned char*>(from));
  const auto bytes = static_cast<std::size_t>(size);
  if (!isWholePage(data, size, at)) return data.real.write(from, bytes, at);
  if (data.scratch.size() < bytes) data.scratch.resize(bytes);
  unsigned char* page = data.scratch.data();
  std::memcpy(page, from, bytes);
  const auto number = static_cast<std::uint32_t>(at / size + 1);
  if (number == 1) {
    const auto mark = encodeMark(data.mark);
    std::memcpy(page + markOffset, mark.data(), mark.size());
  }
  if (data.checksummed) storeChecksum(page, bytes, pageChecksum(page, bytes, number));
  return data.real.write(page, bytes, at);
}

int truncateFile(sqlite3_file* file, sqlite3_int64 size) {
  return dataOf(file).real.truncate(size);
}

int syncFile(sqlite3_file* file, int flags) {
  DataState& data = dataOf(file);
  const int code = data.real.methods().xSync(data.real.get(), flags);
  return code == SQLITE_OK && data.checkpointing ? endCheckpoint(data) : code;
}

int fileSize(sqlite3_file* file, sqlite3_int64* size) {
  const RealFile& real = dataOf(file).real;
  return real.methods().xFileSize(real.get(), size);
}

int lockFile(sqlite3_file* file, int level) {
  DataState& data = dataOf(file);
  const int code = data.real.methods().xLock(data.real.get(), level);
  if (code == SQLITE_OK) data.lock = level;
  return code;
}

int unlockFile(sqlite3_file* file, int level) {
  DataState& data = dataOf(file);
  const int code = data.real.methods().xUnlock(data.real.get(), level);
  if (code == SQLITE_OK) data.lock = level;
  return code;
}

int checkReserved(sqlite3_file* file, int* result) {
  const RealFile& real = dataOf(file).real;
  return real.methods().xCheckReservedLock(real.get(), result);
}

int flushOwed(DataState& data) {
  if (!data.log || data.log->owed == 0) return SQLITE_OK;
  const int code = data.shared->flushUpTo(data.log->owed, data.log->real);
  data.log->owed = 0;
  return code;
}

int controlFile(sqlite3_file* file, int what, void* argument) {
  DataState& data = dataOf(file);
  const RealFile& real = data.real;
  switch (what) {
    case SQLITE_FCNTL_PERSIST_WAL:  // the companion is no file that comes and goes
      *static_cast<int*>(argument) = 1;
      return SQLITE_OK;
    case SQLITE_FCNTL_CKPT_START:
      data.checkpointing = true;
      data.marked = false;
      return SQLITE_OK;
    case SQLITE_FCNTL_HAS_MOVED: {  // SQLite's own answer knows nothing of the log
      const bool log = data.log && RealFile::inodeAt(data.logPath) != data.logInode;
      *static_cast<int*>(argument) = log || RealFile::inodeAt(data.path) != data.inode ? 1 : 0;
      return SQLITE_OK;
    }
    case controlFlush:
      return flushOwed(data);
    case controlAtOnce:
      data.atOnce = *static_cast<bool*>(argument);
      return SQLITE_OK;
    default:
      return real.methods().xFileControl(real.get(), what, argument);
  }
}

int sectorSize(sqlite3_file* file) {
  const RealFile& real = dataOf(file).real;
  return real.methods().xSectorSize(real.get());
}

int characteristics(sqlite3_file* file) {
  const RealFile& real = dataOf(file).real;
  return real.methods().xDeviceCharacteristics(real.get());
}

int mapIndex(sqlite3_file* file, int region, int size, int extend, void volatile** to) {
  DataState& data = dataOf(file);
  const int code = data.real.methods().xShmMap(data.real.get(), region, size, extend, to);
  if (region == 0 && code == SQLITE_OK) data.index = static_cast<const volatile unsigned char*>(*to);
  return code;
}

// Rows written into a file that was removed or replaced would be gone with its last session.
int refuseMoved(sqlite3_file* file) {
  int moved = 0;
  const int code = controlFile(file, SQLITE_FCNTL_HAS_MOVED, &moved);
  if (code != SQLITE_OK || moved == 0) return SQLITE_OK;
  movedCount.fetch_add(1, std::memory_order_relaxed);
  return failWith(SQLITE_IOERR_WRITE, movedError(dataOf(file).path));
}

int lockIndex(sqlite3_file* file, int first, int count, int flags) {
  DataState& data = dataOf(file);
  const sqlite3_io_methods& below = data.real.methods();
  const auto covers = [&](int lock) { return first <= lock && lock < first + count; };
  const bool exclusive = (flags & SQLITE_SHM_EXCLUSIVE) != 0, taken = (flags & SQLITE_SHM_LOCK) != 0;
  const int code = below.xShmLock(data.real.get(), first, count, flags);
  if (!exclusive) return code;
  if (code != SQLITE_OK) {
    if (taken && covers(writeLock)) data.shared->noteWaiting();
    return code;
  }
  if (covers(writeLock)) data.holdsWrite = taken;
  if (covers(checkpointLock)) {
    data.holdsCheckpoint = taken;
    if (!taken) data.checkpointing = false;
  }
  if (taken && first == writeLock && count == 1) {
    int refused = refuseMoved(file);
    if (refused == SQLITE_OK) refused = forgetUnseenCommit(data);
    if (refused != SQLITE_OK) {
      below.xShmLock(data.real.get(), first, count, SQLITE_SHM_UNLOCK | SQLITE_SHM_EXCLUSIVE);
      data.holdsWrite = false;
      return refused;
    }
  }
  // Nobody but who is about to take the log in locks this one: the last moment to look whether it belongs.
  if (!taken || !covers(recoverLock)) return SQLITE_OK;
  const int fits = checkPair(data);
  if (fits == SQLITE_OK) return SQLITE_OK;
  below.xShmLock(data.real.get(), first, count, SQLITE_SHM_UNLOCK | SQLITE_SHM_EXCLUSIVE);
  if (covers(writeLock)) data.holdsWrite = false;
  if (covers(checkpointLock)) data.holdsCheckpoint = false;
  return fits;
}

void indexBarrier(sqlite3_file* file) {
  const RealFile& real = dataOf(file).real;
  real.methods().xShmBarrier(real.get());
}

// The last one to close a file holds it alone: nobody needs the index any more.
int unmapIndex(sqlite3_file* file, int remove) {
  DataState& data = dataOf(file);
  data.index = nullptr;
  const bool last = data.lock == SQLITE_LOCK_EXCLUSIVE;
  return data.real.methods().xShmUnmap(data.real.get(), remove != 0 || last ? 1 : 0);
}

}  // namespace

const sqlite3_io_methods dataMethods = {
    2,         closeFile,    readFile,      writeFile,   truncateFile, syncFile,        fileSize,
    lockFile,  unlockFile,   checkReserved, controlFile, sectorSize,   characteristics, mapIndex,
    lockIndex, indexBarrier, unmapIndex,    nullptr,     nullptr};

Error movedError(const std::string& path) {
  return Error(823,
               "I/O error detected in file '" + path +
                   "': it or its log was removed or replaced while the database was open.",
               24);
}

DataState& dataOf(sqlite3_file* file) {
  return *reinterpret_cast<LayerFile*>(file)->data;
}

void DataState::learnHeader(const unsigned char* header) {
  std::uint32_t size = (std::uint32_t{header[16]} << 8) | header[17];
  if (size == 1) size = 65536;
  pageSize = size;
  logged = header[18] == 2;
  checksummed = header[20] == checksumSize;
  mark.checksummed = checksummed;
}

int DataState::learn() {
  unsigned char header[headerSize];
  if (const int code = real.read(header, sizeof header, 0); code != SQLITE_OK) return code;
  learnHeader(header);
  if (isUnmarked(header + markOffset)) {
    mark = {};
    mark.identity = identity;
    mark.checksummed = checksummed;
    return SQLITE_OK;
  }
  mark = decodeMark(header + markOffset);
  // Either place may be damaged; then the pages do not fit the other.
  checksummed = checksummed || mark.checksummed;
  return SQLITE_OK;
}

int DataState::readMark() {
  unsigned char bytes[markSize];
  if (const int code = real.read(bytes, sizeof bytes, markOffset); code != SQLITE_OK) return code;
  if (isUnmarked(bytes)) {
    mark = {};
    mark.identity = identity;
  } else {
    mark = decodeMark(bytes);
  }
  mark.checksummed = checksummed;
  return SQLITE_OK;
}

int DataState::writeMark(const Mark& next, bool toDisk) {
  const auto bytes = encodeMark(next);
  if (const int code = real.write(bytes.data(), bytes.size(), markOffset); code != SQLITE_OK) return code;
  mark = next;
  return toDisk ? real.sync() : SQLITE_OK;
}

// From here on the file needs the log at least so far as it is now.
int beginCheckpoint(DataState& data) {
  IndexHead head;
  if (!data.log || !data.index || !readIndex(data.index, head)) return SQLITE_OK;
  const std::uint32_t frames = attemptedFrames(data.index);
  if (frames == 0) return SQLITE_OK;
  if (const int code = data.readMark(); code != SQLITE_OK) return code;
  unsigned char frame[frameHeaderSize];
  const std::int64_t at =
      static_cast<std::int64_t>(framesBegin) +
      static_cast<std::int64_t>(frames - 1) * static_cast<std::int64_t>(frameHeaderSize + head.pageSize);
  if (const int code = data.log->real.read(frame, sizeof frame, at); code != SQLITE_OK) return code;
  Mark next = data.mark;
  next.identity = data.identity;
  next.seed = head.seed;
  next.count = frames;
  next.sum = storedFrameSum(frame)[1];
  next.complete = false;
  next.inUse = true;
  data.marked = true;
  if (next.isSameState(data.mark) && data.mark.inUse) return SQLITE_OK;
  const int code = data.writeMark(next, true);
  data.marked = code == SQLITE_OK;
  return code;
}

// All of the log is in the file and on the disk.
int endCheckpoint(DataState& data) {
  if (!data.marked)
    if (const int code = beginCheckpoint(data); code != SQLITE_OK) return code;
  data.checkpointing = false;
  if (data.mark.complete) return SQLITE_OK;
  Mark next = data.mark;
  next.complete = true;
  return data.writeMark(next, true);
}

int verifyPage(DataState& data, const unsigned char* page, std::uint32_t number) {
  const std::size_t size = data.pageSize;
  std::uint64_t found = storedChecksum(page, size), actual = pageChecksum(page, size, number);
  if (found == actual || isBlank(page, size)) return SQLITE_OK;
  return failWith(
      SQLITE_IOERR_DATA,
      Error(824,
            "SQL Server detected a logical consistency-based I/O error: incorrect checksum (expected: " +
                hexadecimal(found) + "; actual: " + hexadecimal(actual) +
                "). It occurred during a read of page (1:" + std::to_string(number) + ") in database '" +
                data.database + "' at offset " +
                hexadecimal(static_cast<std::uint64_t>(number - 1) * data.pageSize) + " in file '" +
                data.path + "'.",
            24, 2));
}

}  // namespace engine::store
