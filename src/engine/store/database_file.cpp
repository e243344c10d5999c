#include "engine/store/database_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <thread>

#include "engine/catalog.h"
#include "engine/function.h"
#include "engine/store/companion.h"
#include "engine/value.h"

namespace engine {

namespace fs = std::filesystem;

namespace {

constexpr int busyMilliseconds = 10000;

// A handle of its own on one file.
class FileHandle {
 public:
  FileHandle(const fs::path& file, int flags) : file_(file.string()) {
    const int rc = sqlite3_open_v2(file_.c_str(), &db_, flags, nullptr);
    if (rc != SQLITE_OK) {
      sqlite3_close(db_);
      throw Error(5120, "Unable to open the physical file \"" + file_ + "\": " + sqlite3_errstr(rc) + ".");
    }
    sqlite3_extended_result_codes(db_, 1);
    sqlite3_busy_timeout(db_, busyMilliseconds);
    registerFunctions(db_, &functions_);
  }
  ~FileHandle() { sqlite3_close_v2(db_); }
  FileHandle(const FileHandle&) = delete;
  FileHandle& operator=(const FileHandle&) = delete;
  operator sqlite3*() const { return db_; }

 private:
  std::string file_;
  FunctionContext functions_;
  sqlite3* db_ = nullptr;
};

[[noreturn]] void failCreate(const fs::path& file, int reason) {
  throw Error(5123, "CREATE FILE encountered operating system error " + std::to_string(reason) + "(" +
                        std::strerror(reason) + ") while attempting to open or create the physical file '" +
                        file.string() + "'.");
}

void syncFolder(const fs::path& folder) {
  const int fd = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (fd < 0) return;
  ::fsync(fd);
  ::close(fd);
}

}  // namespace

fs::path unfinishedName(const fs::path& file) {
  fs::path name = file;
  name += ".unfinished";
  return name;
}

void buildDataFile(const fs::path& file, const std::string& family,
                   const std::function<void(sqlite3*)>& more) {
  removeDataFile(file);
  try {
    FileHandle db(file, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
    lite::exec(db, "PRAGMA journal_mode=MEMORY; BEGIN");
    makeSystemTables(db, "main", family);
    if (more) more(db);
    lite::exec(db, "COMMIT; PRAGMA journal_mode=WAL");
  } catch (const Error&) {
    removeDataFile(file);
    throw;
  }
}

void putInPlace(const fs::path& from, const fs::path& to) {
  int rc = ::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE);
  if (rc != 0 && errno == EINVAL) {
    // A file system without that flag: the name was looked for before.
    std::error_code error;
    rc = fs::exists(to, error) ? (errno = EEXIST, -1) : ::rename(from.c_str(), to.c_str());
  }
  if (rc == 0) {
    syncFolder(to.parent_path());
    return;
  }
  if (errno == EEXIST)
    throw Error(5170, "Cannot create file '" + to.string() +
                          "' because it already exists. Change the file path or the file name, and retry the "
                          "operation.");
  failCreate(to, errno);
}

std::string readFamily(const fs::path& file) {
  checkDataFile(file);
  FileHandle db(file, SQLITE_OPEN_READWRITE);
  try {
    lite::Stmt family(db, "SELECT value FROM zb_meta WHERE key='family'");
    if (family.step()) return family.text(0);
  } catch (const Error& error) {
    if (error.number() != 8630)  // else: the table is missing
      throw Error(error.number(), "The database file '" + file.string() + "' is damaged: " + error.what(),
                  24);
  }
  throw Error(5171, file.string() + " is not a primary database file.");
}

void checkPages(const fs::path& file) {
  checkDataFile(file);
  FileHandle db(file, SQLITE_OPEN_READWRITE);
  std::string found;
  try {
    lite::Stmt check(db, "PRAGMA quick_check(1)");
    if (check.step()) found = check.text(0);
  } catch (const Error& error) {
    found = error.what();
  }
  if (found != "ok")
    throw Error(
        824, "A logical consistency-based I/O error was detected in file '" + file.string() + "': " + found,
        24);
}

bool settleDataFile(const fs::path& file) {
  FileHandle db(file, SQLITE_OPEN_READWRITE);
  lite::exec(db, "PRAGMA wal_checkpoint(TRUNCATE)");
  // Idle sessions of other processes close their files within a moment.
  for (int attempt = 0; attempt < 20; ++attempt) {
    sqlite3_busy_timeout(db, 0);
    lite::Stmt mode(db, "PRAGMA journal_mode=DELETE");
    try {
      if (mode.step() && mode.text(0) == "delete") break;
    } catch (const Error& error) {
      if (error.number() != 1222) throw;
    }
    if (attempt == 19) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
  }
  return true;
}

void removeDataFile(const fs::path& file) {
  for (const char* ending : {"-wal", "-shm", "-journal", ""}) {
    fs::path part = file;
    part += ending;
    std::error_code error;
    fs::remove(part, error);
    if (error) failCreate(part, error.value());
  }
}

}  // namespace engine
