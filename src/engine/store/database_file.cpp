#include "engine/store/database_file.h"

#include <array>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <memory>
#include <thread>

#include "engine/catalog.h"
#include "engine/function.h"
#include "engine/store/companion.h"
#include "engine/store/data_reading.h"
#include "engine/store/file_handle.h"
#include "engine/store/file_layer.h"
#include "engine/store/file_names.h"
#include "engine/store/page_checksum.h"
#include "engine/store/system_file.h"
#include "engine/value.h"

namespace engine {

namespace fs = std::filesystem;

namespace {

[[noreturn]] void failCreate(const fs::path& file, int reason) {
  throw Error(5123, "CREATE FILE encountered operating system error " + std::to_string(reason) + "(" +
                        std::strerror(reason) + ") while attempting to open or create the physical file '" +
                        file.string() + "'.");
}

[[noreturn]] void failDamaged(const fs::path& file, const Error& error) {
  const std::string text = error.what();
  if (text.find(file.string()) != std::string::npos) throw Error(error);
  throw Error(error.number(), "The database file '" + file.string() + "' is damaged: " + text, 24);
}

// The companion, where it is ready; opening makes what is needed of it.
DatabaseFiles ready(const DatabaseFiles& files) {
  return {files.data, readyCompanion(files.data, files.log, files.name), files.name};
}

std::string familyIn(const fs::path& data, const FileHandle& db) {
  try {
    lite::Stmt family(db, "SELECT value FROM zb_meta WHERE key='family'");
    if (family.step()) return family.text(0);
  } catch (const Error& error) {
    if (error.number() != 8630) failDamaged(data, error);  // else: the table is missing
  }
  throw Error(5171, data.string() + " is not a primary database file.");
}

// Without the layer: pages as they are.
std::string plainUri(const fs::path& data, const char* options) {
  std::string uri = "file:";
  for (const char c : data.string()) {
    static constexpr char digits[] = "0123456789ABCDEF";
    if (c == '?' || c == '#' || c == '%') {
      uri += '%';
      uri += digits[static_cast<unsigned char>(c) >> 4];
      uri += digits[c & 15];
    } else {
      uri += c;
    }
  }
  return uri + options;
}

bool isLeft(const fs::path& data) {
  fs::path index = data;
  index += "-shm";
  std::error_code error;
  return fs::exists(index, error);
}

}  // namespace

void makeEmpty(const fs::path& file) {
  if (!system::File::createNew(file).valid()) failCreate(file, errno);
}

void reserveChecksums(sqlite3* db) {
  int bytes = static_cast<int>(store::checksumSize);
  sqlite3_file_control(db, "main", SQLITE_FCNTL_RESERVE_BYTES, &bytes);
}

fs::path unfinishedName(const fs::path& file) {
  fs::path name = file;
  name += ".unfinished";
  return name;
}

void buildDataFile(const DatabaseFiles& files, const std::string& family,
                   const std::function<void(sqlite3*)>& more) {
  const auto clear = [&] {
    removeDataFile(files.data);
    std::error_code error;
    fs::remove(files.log, error);
  };
  clear();
  try {
    writeCompanion(files.log, files.name, family);
    makeEmpty(files.data);
    FileHandle db(files, true);
    reserveChecksums(db);
    lite::exec(db, "PRAGMA journal_mode=MEMORY; BEGIN");
    makeSystemTables(db, "main", family);
    if (more) more(db);
    lite::exec(db, "COMMIT; PRAGMA journal_mode=WAL");
  } catch (const Error&) {
    clear();
    throw;
  }
}

void putInPlace(const fs::path& from, const fs::path& to) {
  makePrivate(from);
  if (system::renameNew(from, to)) {
    system::flushFolder(to.parent_path());
    return;
  }
  if (errno == EEXIST)
    throw Error(5170, "Cannot create file '" + to.string() +
                          "' because it already exists. Change the file path or the file name, and retry the "
                          "operation.");
  failCreate(to, errno);
}

std::string readFamily(const DatabaseFiles& files) {
  const FileHandle db(ready(files), false);
  return familyIn(files.data, db);
}

std::string familyInPages(const fs::path& data) {
  try {
    const FileHandle db(plainUri(data, "?mode=ro&immutable=1"));
    return familyIn(data, db);
  } catch (const Error&) {
    return {};
  }
}

std::string takeOldLogIn(const fs::path& data, const std::string& wanted) {
  const FileHandle db(plainUri(data, "?mode=rw"));
  sqlite3_db_config(db, SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr);
  std::string family = familyIn(data, db);
  if (!wanted.empty() && family != wanted) return family;
  // Harmless where there is none. With it SQLite removes the file when this handle closes.
  lite::exec(db, "PRAGMA wal_checkpoint(TRUNCATE)");
  sqlite3_db_config(db, SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 0, nullptr);
  return family;
}

namespace {

// Nothing where the file is of another make.
std::unique_ptr<store::DataReading> readingOf(const FileHandle& db) {
  try {
    return std::make_unique<store::DataReading>(db, "main", *loadCatalog(db, "main", ""));
  } catch (const Error&) {
    return nullptr;  // SQLite's own look tells what is wrong
  }
}

void readPages(sqlite3* db, store::DataReading* reading, const CopyStep& step) {
  constexpr std::uint32_t often = 1024;
  std::array<unsigned char, 65536> bytes;
  lite::Stmt size(db, "PRAGMA page_size");
  size.step();
  const auto pageSize = static_cast<std::size_t>(size.integer(0));
  for (std::uint32_t page = 1, pages = store::pageCount(db, "main"); page <= pages; ++page) {
    if (const auto damage = store::readPage(db, "main", page, bytes.data())) throw Error(*damage);
    if (reading) reading->take(reinterpret_cast<const char*>(bytes.data()), pageSize);
    if (page % often == 0 && step && !step(page, pages)) throw lite::cancelled();
  }
}

}  // namespace

void checkPages(const DatabaseFiles& given, const CopyStep& step) {
  const DatabaseFiles files = ready(given);
  const FileHandle db(files, false);
  const auto fail = [&](const std::string& found) {
    throw Error(
        824,
        "A logical consistency-based I/O error was detected in file '" + files.data.string() + "': " + found,
        24);
  };
  try {
    lite::exec(db, "SELECT count(*) FROM sqlite_master; PRAGMA wal_checkpoint");
    const auto reading = readingOf(db);
    readPages(db, reading.get(), step);
    if (const auto found = reading ? reading->finish() : DataFindings(); found.told && found.doubt.empty())
      return;
    lite::Stmt check(db, "PRAGMA integrity_check(1)");
    if (!check.step() || check.text(0) != "ok") fail(check.text(0));
  } catch (const Error& error) {
    if (error.number() == lite::cancelled().number()) throw;
    const bool told =
        std::string_view(error.what()).find(files.data.parent_path().string()) != std::string::npos;
    if (told || error.number() == 1222) throw;
    fail(error.what());
  }
}

bool settleDataFile(const DatabaseFiles& given) {
  const DatabaseFiles files = ready(given);
  // Idle sessions of other processes close their files within a moment.
  constexpr int attempts = 20;
  for (int attempt = 0; attempt < attempts; ++attempt) {
    {
      const FileHandle db(files, false);
      sqlite3_busy_timeout(db, 0);
      try {
        lite::exec(db, "PRAGMA synchronous=FULL; PRAGMA wal_checkpoint(TRUNCATE)");
      } catch (const Error& error) {
        if (error.number() != 1222) throw;
      }
    }
    if (!isLeft(files.data)) return true;
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
  }
  return false;
}

void renewDataFile(const DatabaseFiles& given) {
  const DatabaseFiles files = ready(given);
  if (!settleDataFile(files))
    throw Error(
        5030, "The database '" + files.name + "' could not be exclusively locked to perform the operation.");
  const fs::path made = unfinishedName(files.data);
  removeDataFile(made);
  try {
    makeEmpty(made);
    {
      const FileHandle db(files, false);
      reserveChecksums(db);
      lite::Stmt copy(db, "VACUUM INTO ?");
      copy.bind(store::fileUri(made, files.log, files.name, true)).run();
    }
    {
      const FileHandle copy({made, files.log, files.name}, false);
      lite::exec(copy, "PRAGMA journal_mode=MEMORY; UPDATE zb_meta SET value=max(value, " +
                           std::to_string(plainFormat) + ") WHERE key='format'");
    }
    store::finishCopy(files.data, made);
  } catch (...) {
    removeDataFile(made);
    throw;
  }
  if (!system::replace(made, files.data)) failCreate(files.data, errno);
  system::flushFolder(files.data.parent_path());
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
