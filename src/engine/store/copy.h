// Copies of a database: made while others write, and read where they lie.
#pragma once

#include <string>
#include <vector>

#include "engine/store/database_file.h"
#include "engine/store/table_digest.h"

namespace engine {

// All tables of an open file, in order of their names.
std::vector<TableDigest> digestTables(sqlite3* db, const std::string& alias, const CopyStep& step = {});

// Makes the pair `to`, whose names must be free, as the pair `from` is at this moment, and brings it to the
// disk. Others go on writing. What comes back was read from the original at the moment of the copy. A copy
// that fails is removed.
std::vector<TableDigest> copyLive(const DatabaseFiles& from, const DatabaseFiles& to, const CopyStep& step);

// True when the data file holds everything by itself and its log nothing: both were closed properly and
// belong together. Nothing is changed.
bool isSettled(const DatabaseFiles& files);

}  // namespace engine
