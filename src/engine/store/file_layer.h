// The file-system layer under SQLite: the log of a data file lies in its companion, both are tied to each
// other (log_format.h), every page has a checksum (page_checksum.h), and sessions of this process that
// commit at the same time share one flush.
//
// It works on whatever is SQLite's default layer when a file is opened.
#pragma once

#include <sqlite3.h>

#include <array>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "engine/value.h"

namespace engine::store {

constexpr int pageSize = 4096;  // of the files made here

// The name for ATTACH and sqlite3_open_v2 (with SQLITE_OPEN_URI). The log must exist. `database` is
// told in errors. With `create` the data file may be missing.
std::string fileUri(const std::filesystem::path& data, const std::filesystem::path& log,
                    const std::string& database, bool create = false);
// For a data file that is settled and that nobody changes: read only, without locks and without its log.
std::string copyUri(const std::filesystem::path& data, const std::filesystem::path& log,
                    const std::string& database);

// Returns when all that this handle has committed in the database is on the disk. Error 9001 when the disk
// refuses: then nobody knows whether it will be there, and the log is closed to writers until every
// session of this process has closed the file.
void flush(sqlite3* db, const std::string& alias);

// While set, a commit of this handle in the database is on the disk before anybody sees it.
void flushAtOnce(sqlite3* db, const std::string& alias, bool set);

// Which state of the database a handle that holds its write lock stands on: the last commit in its log, by
// the log's salts and the number of frames. Nothing when it cannot be told.
struct Position {
  std::array<unsigned char, 8> seed{};
  std::uint32_t frames = 0;
  bool operator==(const Position&) const = default;
};
std::optional<Position> position(sqlite3* db, const std::string& alias);

// Under the write lock: a commit of a killed process that nobody has seen is taken out of the log for good.
// It would come back when the last of the living ends and the log is taken in anew. Error 823.
void dropUnseenCommit(sqlite3* db, const std::string& alias);

// Whether both files still lie where they were opened.
bool isInPlace(sqlite3* db, const std::string& alias);

// How often a session of this process has found, at the begin of a write, that a file lies there no more
// (823): then all close what they have open of it.
std::uint64_t movedFiles();
void refuseMoved(sqlite3* db, const std::string& alias);  // 823

// Sessions of this process that wait for the database's write lock, so that a commit lets them in before
// its flush. Seen by itself where SQLite finds the lock taken.
void noteWaiting(const std::filesystem::path& data);

// The first bytes of a data file; fewer when it is shorter or cannot be read. Through the layer below, for
// whoever opens and closes a file beside SQLite takes its locks away.
std::vector<unsigned char> readStart(const std::filesystem::path& data, std::size_t size);

bool isDataFile(const std::vector<unsigned char>& start);

// Gives the copy of a data file the mark of the original, whose log it goes with from now on, and brings
// it to the disk.
void finishCopy(const std::filesystem::path& original, const std::filesystem::path& copy);

// One page of the file: nothing, or what is wrong with it.
std::optional<Error> checkPage(sqlite3* db, const std::string& alias, std::uint32_t page);
// The same, which leaves the page in `to`, a page's size.
std::optional<Error> readPage(sqlite3* db, const std::string& alias, std::uint32_t page, unsigned char* to);
std::uint32_t pageCount(sqlite3* db, const std::string& alias);
bool isChecksummed(sqlite3* db, const std::string& alias);

}  // namespace engine::store
