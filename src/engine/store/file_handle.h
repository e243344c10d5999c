// A handle of its own on one data file, beside those of the sessions.
#pragma once

#include <sqlite3.h>

#include <filesystem>
#include <string>

#include "engine/function.h"
#include "engine/store/database_file.h"
#include "engine/store/file_layer.h"

namespace engine {

class FileHandle {
 public:
  explicit FileHandle(const std::string& uri) {
    // The name itself says what may be made.
    const int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_URI;
    const int rc = sqlite3_open_v2(uri.c_str(), &db_, flags, nullptr);
    if (rc != SQLITE_OK) {
      try {
        lite::fail(db_, rc);
      } catch (...) {
        sqlite3_close(db_);
        throw;
      }
    }
    sqlite3_extended_result_codes(db_, 1);
    constexpr int busyMilliseconds = 10000;
    sqlite3_busy_timeout(db_, busyMilliseconds);
    registerFunctions(db_, &functions_);
  }
  FileHandle(const DatabaseFiles& files, bool create)
      : FileHandle(store::fileUri(files.data, files.log, files.name, create)) {}
  ~FileHandle() { sqlite3_close_v2(db_); }
  FileHandle(const FileHandle&) = delete;
  FileHandle& operator=(const FileHandle&) = delete;
  operator sqlite3*() const { return db_; }

 private:
  FunctionContext functions_;
  sqlite3* db_ = nullptr;
};

// An empty file under a name that must be free. Error 5123.
void makeEmpty(const std::filesystem::path& file);
// Keeps room for the checksum in each page of a file that is still empty.
void reserveChecksums(sqlite3* db);

}  // namespace engine
