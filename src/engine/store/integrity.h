// DBCC: every page by its checksum, every index against its table, every value against its type.
#pragma once

#include <string>
#include <vector>

#include "engine/store/storage.h"

namespace engine {

struct Finding {
  int number = 0;  // of the message as SQL Server has it
  std::string text;
};

struct CheckedTable {
  std::string name;
  std::int64_t id = 0, rows = 0, pages = 0;
};

struct IntegrityReport {
  std::vector<CheckedTable> tables;  // in order of their names; those that could be read
  std::vector<Finding> findings;     // empty: all is well
  bool checksummed = false;          // the pages of the file carry checksums
};

// One table, or all of them and every page of the file when `table` is empty. What is damaged is told and
// gone around. Errors that are no damage are thrown: 911, 2501 (no such table).
IntegrityReport checkIntegrity(Store& store, const std::string& database, const std::string& table = {});

}  // namespace engine
