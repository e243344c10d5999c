// Data files as files: made, put in place, looked through, removed. No session, no registration.
#pragma once

#include <sqlite3.h>

#include <filesystem>
#include <functional>
#include <string>

namespace engine {

// The name under which a file is built before it is put in place.
std::filesystem::path unfinishedName(const std::filesystem::path& file);

// A complete data file with its zb_ tables under a name that must be free (what a broken-off attempt
// left there is removed first); `more` adds to it in the same transaction.
void buildDataFile(const std::filesystem::path& file, const std::string& family,
                   const std::function<void(sqlite3* db)>& more = {});

// Renames without replacing: Error 5170 when `to` exists, 5123 for other failures.
void putInPlace(const std::filesystem::path& from, const std::filesystem::path& to);

// The family of a data file that no store has attached. 5120, 5171, 5172, 823, 824.
std::string readFamily(const std::filesystem::path& file);

// Reads every page. 824 with the first damage found.
void checkPages(const std::filesystem::path& file);

// Writes the write-ahead log back and leaves neither -wal nor -shm. False while somebody else has the
// file open; its content is complete even then.
bool settleDataFile(const std::filesystem::path& file);

// The file with its -wal and -shm; missing ones are no error. Error 5123-like when the system refuses.
void removeDataFile(const std::filesystem::path& file);

}  // namespace engine
