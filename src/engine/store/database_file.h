// Data files as files: made, put in place, looked through, removed. No session, no registration.
#pragma once

#include <sqlite3.h>

#include <filesystem>
#include <functional>
#include <string>

#include "engine/store/table_digest.h"

namespace engine {

// One database on the disk. `name` is told in errors.
struct DatabaseFiles {
  std::filesystem::path data, log;
  std::string name;
};

// The name under which a file is built before it is put in place.
std::filesystem::path unfinishedName(const std::filesystem::path& file);

// A complete pair, the data file with its zb_ tables, under names that must be free (what a broken-off
// attempt left there is removed first); `more` adds to it in the same transaction.
void buildDataFile(const DatabaseFiles& files, const std::string& family,
                   const std::function<void(sqlite3* db)>& more = {});

// Renames without replacing: Error 5170 when `to` exists, 5123 for other failures.
void putInPlace(const std::filesystem::path& from, const std::filesystem::path& to);

// The family of a database that no store has attached. 5120, 5171, 5172, 5173, 823, 824, 9004.
std::string readFamily(const DatabaseFiles& files);
// The same from the data file alone, which must have been closed properly; empty when it tells none.
std::string familyInPages(const std::filesystem::path& data);
// The family of a data file of the program's first format. The log that stood beside it is taken in when
// that is the wanted one, or none is given.
std::string takeOldLogIn(const std::filesystem::path& data, const std::string& wanted = {});

// Reads every page. 824 with the first damage found. `step` may break off (3617).
void checkPages(const DatabaseFiles& files, const CopyStep& step = {});

// Writes the log into the data file and leaves the companion empty. False while somebody else has the file
// open; the pair is whole even then.
bool settleDataFile(const DatabaseFiles& files);

// Builds the data file anew with checksums in all pages, of the current format, in the place of the old
// one. Nobody else may have it open (5030).
void renewDataFile(const DatabaseFiles& files);

// The file with what belongs to it besides the companion; missing ones are no error. Error 5123-like when
// the system refuses.
void removeDataFile(const std::filesystem::path& file);

}  // namespace engine
