// The log, in the companion behind its first page.
#include <algorithm>
#include <cstring>
#include <vector>

#include "engine/catalog/failure.h"
#include "engine/store/layer_files.h"

namespace engine::store {

using lite::failWith;

namespace {

constexpr std::int64_t origin = logOrigin;

int closeLog(sqlite3_file* file) {
  auto* layer = reinterpret_cast<LayerFile*>(file);
  LogState* log = layer->log;
  if (log->data) log->data->log = nullptr;
  const int code = log->real.close();
  delete log;
  layer->log = nullptr;
  return code;
}

// The frame whose page is read must be the one that was committed under its number.
int verifyFrame(const LogState& log, const unsigned char* page, int size, sqlite3_int64 at) {
  const DataState& data = *log.data;
  IndexHead head;
  const sqlite3_int64 step = size + static_cast<sqlite3_int64>(frameHeaderSize);
  const sqlite3_int64 begin = at - static_cast<sqlite3_int64>(frameHeaderSize + logHeaderSize);
  if (begin < 0 || begin % step != 0 || !data.index || !readIndex(data.index, head)) return SQLITE_OK;
  const auto number = static_cast<std::uint32_t>(begin / step + 1);
  // What a transaction under way has written is not summed up yet.
  if (static_cast<std::uint32_t>(size) != head.pageSize || number > head.frames) return SQLITE_OK;
  unsigned char frame[frameHeaderSize], before[8];
  const std::int64_t frameAt = origin + at - static_cast<std::int64_t>(frameHeaderSize);
  const std::int64_t beforeAt = number == 1 ? origin + 24 : frameAt - step + 16;
  int code = log.real.read(frame, sizeof frame, frameAt);
  if (code == SQLITE_OK) code = log.real.read(before, sizeof before, beforeAt);
  if (code != SQLITE_OK) return code;
  FrameSum sum = addToSum({number32(before), number32(before + 4)}, head.bigEnd, frame, 8);
  sum = addToSum(sum, head.bigEnd, page, static_cast<std::size_t>(size));
  if (sum == storedFrameSum(frame)) return SQLITE_OK;
  return failWith(SQLITE_IOERR_DATA,
                  Error(824,
                        "SQL Server detected a logical consistency-based I/O error: incorrect checksum. It "
                        "occurred during a read of page (1:" +
                            std::to_string(number32(frame)) + ") in database '" + data.database +
                            "' at offset " + std::to_string(frameAt) + " in file '" + data.logPath + "'.",
                        24, 2));
}

int readLog(sqlite3_file* file, void* to, int size, sqlite3_int64 at) {
  const LogState& log = logOf(file);
  // SQLite reads the header to take the log in. The last one to close a file does so without any lock.
  if (at == 0 && size == static_cast<int>(logHeaderSize)) {
    if (!log.data->paired)
      if (const int refused = checkPair(*log.data); refused != SQLITE_OK) return refused;
    log.data->paired = false;
  }
  const int code = log.real.read(to, static_cast<std::size_t>(size), at + origin);
  if (code != SQLITE_OK || static_cast<std::uint32_t>(size) != log.data->pageSize) return code;
  return verifyFrame(log, static_cast<const unsigned char*>(to), size, at);
}

int refuseBroken(const LogState& log) {
  return failWith(SQLITE_IOERR_WRITE,
                  Error(9001,
                        "The log for database '" + log.data->database +
                            "' is not available. Check the operating system error log for related error "
                            "messages. Resolve any errors and restart the database.",
                        21));
}

// A commit counts when its last frame stands whole: header and page are written one after the other.
void noteCommit(LogState& log, const unsigned char* bytes, int size, sqlite3_int64 at) {
  if (size != static_cast<int>(frameHeaderSize)) {
    if (log.begun.count != 0) log.last = log.begun;
    log.begun = {};
    return;
  }
  log.begun = {};
  if (number32(bytes + 4) == 0) return;
  const sqlite3_int64 step = log.data->pageSize + static_cast<sqlite3_int64>(frameHeaderSize);
  log.begun.count = static_cast<std::uint32_t>((at - static_cast<sqlite3_int64>(logHeaderSize)) / step + 1);
  std::copy(bytes + 8, bytes + 16, log.begun.seed.begin());
  log.begun.sum = storedFrameSum(bytes)[1];
}

int writeLog(sqlite3_file* file, const void* from, int size, sqlite3_int64 at) {
  LogState& log = logOf(file);
  if (log.data->shared->broken()) return refuseBroken(log);
  const auto* bytes = static_cast<const unsigned char*>(from);
  if (at == 0 && size == static_cast<int>(logHeaderSize)) return beginGeneration(log, bytes);
  const int code = log.real.write(from, static_cast<std::size_t>(size), at + origin);
  if (code != SQLITE_OK) {
    log.begun = {};
    return code;
  }
  noteCommit(log, bytes, size, at);
  return SQLITE_OK;
}

int truncateLog(sqlite3_file* file, sqlite3_int64 size) {
  LogState& log = logOf(file);
  return size == 0 ? emptyLog(log) : log.real.truncate(size + origin);
}

int syncLog(sqlite3_file* file, int flags) {
  LogState& log = logOf(file);
  DataState& data = *log.data;
  if (data.shared->broken()) return refuseBroken(log);
  if (log.headerNew) {
    const int code = log.real.methods().xSync(log.real.get(), flags);
    log.headerNew = code != SQLITE_OK;
    return code;
  }
  const bool commit = data.holdsWrite && !data.holdsCheckpoint;
  if (commit && !data.atOnce && data.shared->somebodyWaits()) {
    log.owed = data.shared->ask(log.last);
    return SQLITE_OK;
  }
  return data.shared->flushNow(log.last, log.real);
}

int logSize(sqlite3_file* file, sqlite3_int64* size) {
  const std::int64_t real = logOf(file).real.size();
  if (real < 0) return SQLITE_IOERR_FSTAT;
  *size = real <= static_cast<std::int64_t>(framesBegin) ? 0 : real - origin;
  return SQLITE_OK;
}

int lockLog(sqlite3_file*, int) {
  return SQLITE_OK;
}
int checkLogReserved(sqlite3_file*, int* result) {
  *result = 0;
  return SQLITE_OK;
}
int controlLog(sqlite3_file* file, int what, void* argument) {
  const RealFile& real = logOf(file).real;
  return real.methods().xFileControl(real.get(), what, argument);
}
int logSector(sqlite3_file* file) {
  const RealFile& real = logOf(file).real;
  return real.methods().xSectorSize(real.get());
}
int logCharacteristics(sqlite3_file* file) {
  const RealFile& real = logOf(file).real;
  return real.methods().xDeviceCharacteristics(real.get());
}

// The mark of a data file that holds the whole log, on the disk; what the next frames begin with.
int settleMark(DataState& data, bool inUse) {
  if (const int code = data.readMark(); code != SQLITE_OK) return code;
  Mark next = data.mark;
  next.identity = data.identity;
  next.complete = true;
  next.inUse = inUse;
  if (next.isSameState(data.mark) && next.inUse == data.mark.inUse && next.identity == data.mark.identity)
    return SQLITE_OK;
  return data.writeMark(next, true);
}

}  // namespace

const sqlite3_io_methods logMethods = {
    1,       closeLog,         readLog,    writeLog,  truncateLog,        syncLog, logSize, lockLog,
    lockLog, checkLogReserved, controlLog, logSector, logCharacteristics, nullptr, nullptr, nullptr,
    nullptr, nullptr,          nullptr};

LogState& logOf(sqlite3_file* file) {
  return *reinterpret_cast<LayerFile*>(file)->log;
}

// The data file holds all that the log held: frames are written from the front again. Base and header lie
// in one sector, so that one write changes both.
int beginGeneration(LogState& log, const unsigned char* header) {
  DataState& data = *log.data;
  if (const int code = data.readMark(); code != SQLITE_OK) return code;
  if (!data.mark.complete)
    if (const int code = settleMark(data, data.mark.inUse); code != SQLITE_OK) return code;
  std::array<unsigned char, sealSize + logHeaderSize> bytes;
  const Seal base = sealBase(data.mark);
  std::copy(base.begin(), base.end(), bytes.begin());
  std::copy(header, header + logHeaderSize, bytes.begin() + sealSize);
  if (const int code = log.real.write(bytes.data(), bytes.size(), baseOffset); code != SQLITE_OK) return code;
  log.last = {};
  log.headerNew = true;
  if (data.mark.inUse) return SQLITE_OK;
  // A data file that says it has a log in use never goes without one.
  if (const int code = log.real.sync(); code != SQLITE_OK) return code;
  log.headerNew = false;
  return settleMark(data, true);
}

// A process may be killed when its commit is on the disk and noted as such, but before others see it. As long
// as one of them lives, it stays unseen, and the next writer puts its frames in that place: the note must not
// name them any more, or the log would be told to be damaged.
int forgetUnseenCommit(DataState& data) {
  IndexHead head;
  if (!data.log || !data.index || !readIndex(data.index, head)) return SQLITE_OK;
  const RealFile& log = data.log->real;
  Seal seal{};
  if (log.read(seal.data(), seal.size(), durableOffset) != SQLITE_OK) return SQLITE_OK;  // as short as it is
  const auto noted = openDurable(seal.data());
  if (!noted || noted->seed != head.seed || noted->count <= head.frames) return SQLITE_OK;
  Durable seen;
  if (head.frames != 0) {
    unsigned char frame[frameHeaderSize];
    const std::int64_t step = frameHeaderSize + static_cast<std::int64_t>(head.pageSize);
    const std::int64_t at = static_cast<std::int64_t>(framesBegin) + (head.frames - 1) * step;
    if (const int code = log.read(frame, sizeof frame, at); code != SQLITE_OK) return code;
    seen = {head.seed, head.frames, storedFrameSum(frame)[1]};
  }
  seal = sealDurable(seen);
  const int code = log.write(seal.data(), seal.size(), durableOffset);
  return code == SQLITE_OK ? log.sync() : code;
}

int clearNextFrame(DataState& data) {
  IndexHead head;
  if (!data.log || !data.index || !readIndex(data.index, head)) return SQLITE_OK;
  const RealFile& log = data.log->real;
  const std::int64_t step = frameHeaderSize + static_cast<std::int64_t>(head.pageSize);
  const std::int64_t at = static_cast<std::int64_t>(framesBegin) + head.frames * step;
  if (log.size() <= at) return SQLITE_OK;
  const unsigned char none[frameHeaderSize] = {};
  const int code = log.write(none, sizeof none, at);
  return code == SQLITE_OK ? log.sync() : code;
}

// Everything is in the data file, and the companion shall hold nothing.
int emptyLog(LogState& log) {
  DataState& data = *log.data;
  if (const int code = settleMark(data, false); code != SQLITE_OK) return code;
  std::array<unsigned char, sealSize + sealSize + logHeaderSize> bytes{};
  const Seal durable = sealDurable({}), base = sealBase(data.mark);
  std::copy(durable.begin(), durable.end(), bytes.begin());
  std::copy(base.begin(), base.end(), bytes.begin() + sealSize);
  if (const int code = log.real.write(bytes.data(), bytes.size(), durableOffset); code != SQLITE_OK)
    return code;
  log.last = {};
  if (const int code = log.real.truncate(framesBegin); code != SQLITE_OK) return code;
  return log.real.sync();
}

}  // namespace engine::store
