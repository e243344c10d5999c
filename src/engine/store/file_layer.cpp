#include "engine/store/file_layer.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <vector>

#include "engine/catalog/failure.h"
#include "engine/store/file_names.h"
#include "engine/store/layer_files.h"
#include "engine/store/page_checksum.h"

namespace engine::store {

using lite::failWith;

namespace {

constexpr const char* layerName = "zembera";
constexpr const char* logParameter = "log";
constexpr const char* nameParameter = "ad";
// Room for a file of whatever layer lies below.
constexpr int fileSize = 512;
constexpr std::string_view walEnding = "-wal";

// SQLite's default layer at this moment: tests put one below that fails.
sqlite3_vfs* below() {
  return sqlite3_vfs_find(nullptr);
}

[[nodiscard]] int failOpen(const std::string& path) {
  return failWith(SQLITE_CANTOPEN,
                  Error(5120, "Unable to open the physical file \"" + path + "\". " + reasonNotOpened(path)));
}

bool isDataHeader(const unsigned char* header) {
  static constexpr char magic[] = "SQLite format 3";
  return std::memcmp(header, magic, sizeof magic) == 0;
}

// The identity that the companion tells, 0 when it cannot be read; what it is worth is seen when the log is
// taken in.
std::uint32_t identityInLog(sqlite3_vfs* vfs, const std::string& path) {
  RealFile log;
  LogPage page{};
  if (log.open(vfs, path.c_str(), SQLITE_OPEN_READONLY | SQLITE_OPEN_WAL, nullptr) != SQLITE_OK) return 0;
  if (log.read(page.data(), page.size(), 0) != SQLITE_OK) return 0;
  const auto head = readLogHead({reinterpret_cast<const char*>(page.data()), page.size()});
  return head ? identityOf(head->family) : 0;
}

int openData(sqlite3_vfs* vfs, const char* name, sqlite3_file* file, int flags, int* outFlags) {
  auto data = std::make_unique<DataState>();
  data->path = name;
  data->logPath = sqlite3_uri_parameter(name, logParameter);
  const char* database = sqlite3_uri_parameter(name, nameParameter);
  data->database = database ? database : "";
  if (const int code = data->real.open(vfs, name, flags, outFlags); code != SQLITE_OK) {
    if ((code & 0xFF) != SQLITE_CANTOPEN) return code;
    return failOpen(data->path);
  }
  data->identity = identityInLog(vfs, data->logPath);
  const std::int64_t size = data->real.size();
  if (size == 0 && (flags & SQLITE_OPEN_CREATE) != 0) {
    // A mark without an identity would tie the new file to no log at all.
    if (data->identity == 0) return failOpen(data->logPath);
    data->pageSize = pageSize;
    data->checksummed = true;
    data->mark.identity = data->identity;
    data->mark.checksummed = true;
  } else {
    unsigned char header[100] = {};
    const bool good = size >= static_cast<std::int64_t>(sizeof header) &&
                      data->real.read(header, sizeof header, 0) == SQLITE_OK && isDataHeader(header);
    if (!good)
      return failWith(SQLITE_CANTOPEN, Error(5172, "The header for file '" + data->path +
                                                       "' is not a valid database file header."));
    if (const int code = data->learn(); code != SQLITE_OK) return code;
    // Nor may this handle take away what the file knows when others have taken the log in already.
    if (data->identity == 0) data->identity = data->mark.identity;
  }
  data->inode = RealFile::inodeAt(data->path);
  data->shared = sharedLog(data->path, data->inode);
  if (!data->shared)
    return failWith(SQLITE_CANTOPEN, Error(5120, "Unable to open the physical file \"" + data->path +
                                                     "\". It was replaced while sessions of this server "
                                                     "have the former one open."));
  auto* layer = reinterpret_cast<LayerFile*>(file);
  layer->data = data.release();
  file->pMethods = &dataMethods;
  return SQLITE_OK;
}

int openLog(sqlite3_vfs* vfs, const char* name, sqlite3_file* file, int* outFlags) {
  DataState& data = dataOf(sqlite3_database_file_object(name));
  auto log = std::make_unique<LogState>();
  // The companion is made with the data file; one that is missing is not made up here.
  const int code =
      log->real.open(vfs, data.logPath.c_str(), SQLITE_OPEN_READWRITE | SQLITE_OPEN_WAL, outFlags);
  if ((code & 0xFF) == SQLITE_CANTOPEN) return failOpen(data.logPath);
  if (code != SQLITE_OK) return code;
  log->data = &data;
  data.logInode = RealFile::inodeAt(data.logPath);
  data.log = log.get();
  auto* layer = reinterpret_cast<LayerFile*>(file);
  layer->log = log.release();
  file->pMethods = &logMethods;
  return SQLITE_OK;
}

int openFile(sqlite3_vfs*, const char* name, sqlite3_file* file, int flags, int* outFlags) {
  file->pMethods = nullptr;
  sqlite3_vfs* vfs = below();
  try {
    if ((flags & SQLITE_OPEN_MAIN_DB) != 0 && sqlite3_uri_parameter(name, logParameter))
      return openData(vfs, name, file, flags, outFlags);
    if ((flags & SQLITE_OPEN_WAL) != 0) return openLog(vfs, name, file, outFlags);
  } catch (const std::bad_alloc&) {
    return SQLITE_NOMEM;
  }
  if (vfs->szOsFile > fileSize) return SQLITE_CANTOPEN;
  return vfs->xOpen(vfs, name, file, flags, outFlags);
}

bool isLogName(const char* name) {
  return std::string_view(name).ends_with(walEnding);
}

int deleteFile(sqlite3_vfs*, const char* name, int syncFolder) {
  if (isLogName(name)) return SQLITE_OK;
  sqlite3_vfs* vfs = below();
  return vfs->xDelete(vfs, name, syncFolder);
}

int accessFile(sqlite3_vfs*, const char* name, int flags, int* result) {
  if (isLogName(name)) {
    // Asked before page 1 is read: a file with a log is not to be read without it.
    *result = dataOf(sqlite3_database_file_object(name)).logged ? 1 : 0;
    return SQLITE_OK;
  }
  sqlite3_vfs* vfs = below();
  return vfs->xAccess(vfs, name, flags, result);
}

int fullPath(sqlite3_vfs*, const char* name, int size, char* to) {
  sqlite3_vfs* vfs = below();
  return vfs->xFullPathname(vfs, name, size, to);
}

const char* registeredLayer() {
  static sqlite3_vfs layer = [] {
    sqlite3_vfs* vfs = below();
    sqlite3_vfs made = *vfs;
    made.zName = layerName;
    made.pNext = nullptr;
    made.szOsFile = fileSize;
    made.xOpen = openFile;
    made.xDelete = deleteFile;
    made.xAccess = accessFile;
    made.xFullPathname = fullPath;
    made.iVersion = 2;
    return made;
  }();
  static const int code = sqlite3_vfs_register(&layer, 0);
  static_cast<void>(code);
  return layerName;
}

// For a part of an URI.
std::string escaped(std::string_view text) {
  static constexpr char digits[] = "0123456789ABCDEF";
  std::string out;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    const bool plain = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
                       c == '/' || c == '.' || c == '_' || c == '-';
    if (plain) {
      out += c;
    } else {
      out += '%';
      out += digits[byte >> 4];
      out += digits[byte & 15];
    }
  }
  return out;
}

sqlite3_file* fileOf(sqlite3* db, const std::string& alias) {
  sqlite3_file* file = nullptr;
  sqlite3_file_control(db, alias.c_str(), SQLITE_FCNTL_FILE_POINTER, &file);
  return file && file->pMethods == &dataMethods ? file : nullptr;
}

}  // namespace

std::atomic<std::uint64_t> movedCount = 0;

namespace {

std::string uri(const std::filesystem::path& data, const std::filesystem::path& log,
                const std::string& database, const std::string& mode) {
  return "file:" + escaped(data.string()) + "?vfs=" + registeredLayer() + "&mode=" + mode + "&" +
         logParameter + "=" + escaped(log.string()) + "&" + nameParameter + "=" + escaped(database);
}

}  // namespace

std::string fileUri(const std::filesystem::path& data, const std::filesystem::path& log,
                    const std::string& database, bool create) {
  return uri(data, log, database, create ? "rwc" : "rw");
}

std::string copyUri(const std::filesystem::path& data, const std::filesystem::path& log,
                    const std::string& database) {
  return uri(data, log, database, "ro&immutable=1");
}

void flush(sqlite3* db, const std::string& alias) {
  const int code = sqlite3_file_control(db, alias.c_str(), controlFlush, nullptr);
  if (code == SQLITE_OK || code == SQLITE_NOTFOUND) return;
  throw Error(9001,
              "The log for database '" + dataOf(fileOf(db, alias)).database +
                  "' is not available. Check the operating system error log for related error messages. "
                  "Resolve any errors and restart the database.",
              21);
}

void flushAtOnce(sqlite3* db, const std::string& alias, bool set) {
  sqlite3_file_control(db, alias.c_str(), controlAtOnce, &set);
}

std::optional<Position> position(sqlite3* db, const std::string& alias) {
  sqlite3_file* file = fileOf(db, alias);
  if (!file) return std::nullopt;
  DataState& data = dataOf(file);
  IndexHead head;
  if (data.index && readIndex(data.index, head) && head.frames != 0) return Position{head.seed, head.frames};
  // The log has been taken in whole: the data file names its end.
  if (data.readMark() != SQLITE_OK) return std::nullopt;
  return Position{data.mark.seed, data.mark.count};
}

void dropUnseenCommit(sqlite3* db, const std::string& alias) {
  sqlite3_file* file = fileOf(db, alias);
  if (!file || clearNextFrame(dataOf(file)) == SQLITE_OK) return;
  throw Error(823, "I/O error detected in file '" + dataOf(file).logPath + "'.", 24);
}

bool isInPlace(sqlite3* db, const std::string& alias) {
  int moved = 0;
  const int code = sqlite3_file_control(db, alias.c_str(), SQLITE_FCNTL_HAS_MOVED, &moved);
  return code != SQLITE_OK || moved == 0;
}

void refuseMoved(sqlite3* db, const std::string& alias) {
  if (isInPlace(db, alias)) return;
  movedCount.fetch_add(1, std::memory_order_relaxed);
  throw movedError(dataOf(fileOf(db, alias)).path);
}

std::uint64_t movedFiles() {
  return movedCount.load(std::memory_order_relaxed);
}

void noteWaiting(const std::filesystem::path& data) {
  sharedLog(data.string())->noteWaiting();
}

std::vector<unsigned char> readStart(const std::filesystem::path& data, std::size_t size) {
  std::vector<unsigned char> bytes(size);
  // SQLite's names end in more than one zero, and its files read theirs until they are closed.
  const std::string name = data.string() + std::string(2, '\0');
  RealFile file;
  int flags = 0;
  const bool read =
      file.open(below(), name.c_str(), SQLITE_OPEN_READONLY | SQLITE_OPEN_MAIN_DB, &flags) == SQLITE_OK &&
      file.read(bytes.data(), size, 0) == SQLITE_OK;
  if (!read) bytes.clear();
  return bytes;
}

bool isDataFile(const std::vector<unsigned char>& start) {
  return start.size() >= markOffset && isDataHeader(start.data());
}

void finishCopy(const std::filesystem::path& original, const std::filesystem::path& copy) {
  const auto start = readStart(original, markOffset + markSize);
  std::vector<unsigned char> page = readStart(copy, pageSize);
  const std::string name = copy.string() + std::string(2, '\0');
  RealFile file;
  int flags = 0;
  bool good =
      !start.empty() && !page.empty() &&
      file.open(below(), name.c_str(), SQLITE_OPEN_READWRITE | SQLITE_OPEN_MAIN_DB, &flags) == SQLITE_OK;
  if (good) {
    const bool unmarked = isUnmarked(start.data() + markOffset);
    Mark mark = decodeMark((unmarked ? page : start).data() + markOffset);
    mark.checksummed = true;
    const auto bytes = encodeMark(mark);
    std::copy(bytes.begin(), bytes.end(), page.begin() + markOffset);
    page[18] = page[19] = 2;  // goes with a log
    storeChecksum(page.data(), page.size(), pageChecksum(page.data(), page.size(), 1));
    good = file.write(page.data(), page.size(), 0) == SQLITE_OK && file.sync() == SQLITE_OK;
  }
  if (!good) throw Error(823, "I/O error detected in file '" + copy.string() + "'.", 24);
}

std::uint32_t pageCount(sqlite3* db, const std::string& alias) {
  sqlite3_file* file = fileOf(db, alias);
  if (!file || dataOf(file).pageSize == 0) return 0;
  return static_cast<std::uint32_t>(dataOf(file).real.size() / dataOf(file).pageSize);
}

bool isChecksummed(sqlite3* db, const std::string& alias) {
  sqlite3_file* file = fileOf(db, alias);
  return file && dataOf(file).checksummed;
}

std::optional<Error> checkPage(sqlite3* db, const std::string& alias, std::uint32_t page) {
  sqlite3_file* file = fileOf(db, alias);
  if (!file) return std::nullopt;
  std::vector<unsigned char> buffer(dataOf(file).pageSize);
  return readPage(db, alias, page, buffer.data());
}

std::optional<Error> readPage(sqlite3* db, const std::string& alias, std::uint32_t page, unsigned char* to) {
  sqlite3_file* file = fileOf(db, alias);
  if (!file) return Error(823, "I/O error detected: the file is not open.", 24);
  DataState& data = dataOf(file);
  const int code = data.real.read(to, data.pageSize, (std::int64_t{page} - 1) * data.pageSize);
  if (code != SQLITE_OK)
    return Error(823, "I/O error detected in file '" + data.path + "' at page " + std::to_string(page) + ".",
                 24);
  if (!data.checksummed || verifyPage(data, to, page) == SQLITE_OK) return std::nullopt;
  return lite::takeFailure(SQLITE_IOERR_DATA);
}

// ---- the index of the log ----

bool readIndex(const volatile unsigned char* index, IndexHead& head) {
  const auto word = [&](std::size_t at) {
    return *reinterpret_cast<const volatile std::uint32_t*>(index + at);
  };
  if (index[12] == 0) return false;  // nobody has taken the log in yet
  head.bigEnd = index[13] != 0;
  const std::uint32_t size = *reinterpret_cast<const volatile std::uint16_t*>(index + 14);
  head.pageSize = size == 1 ? 65536 : size;
  head.frames = word(16);
  for (std::size_t i = 0; i < head.seed.size(); ++i) head.seed[i] = index[32 + i];
  return true;
}

std::uint32_t attemptedFrames(const volatile unsigned char* index) {
  return *reinterpret_cast<const volatile std::uint32_t*>(index + 128);
}

}  // namespace engine::store
