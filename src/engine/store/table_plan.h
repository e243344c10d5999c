// How the rows of a table and the entries of its indexes are laid out and what holds between them.
#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <string>
#include <vector>

#include "engine/catalog.h"
#include "engine/store/page_format.h"

namespace engine::store {

// What the plan cannot be made for: an object that the engine does not make itself.
struct Unplanned {
  std::string why;
};

struct ColumnPlan {
  Type type;
  bool nullable = true;
  bool real = false;  // a whole number may be written as an integer
  std::string text;   // behind the bytes of `fill`
  Field fill;         // of rows that are older than the column
};

struct KeyPlan {
  int column = 0;  // in the order of the record
  bool turkish = false, descending = false, real = false;
  Field forNull;  // what stands for NULL; NULL itself but in an index of NULLs
};

struct IndexPlan {
  std::string name;
  std::uint32_t root = 0;
  std::vector<KeyPlan> keys;
  bool unique = false;
  bool nullsOnly = false;  // holds the rows with a NULL in the key, see createIndex
};

struct TablePlan {
  std::string name;
  std::uint32_t root = 0;
  std::vector<ColumnPlan> columns;  // in the order of the record
  std::vector<int> order;           // their places in the order of the definition
  std::vector<IndexPlan> indexes;
};

TablePlan planTable(sqlite3* db, const std::string& alias, const TableInfo& table);

// Whether the type can hold the value, which is not NULL. Texts and their lengths are looked at so that
// doubt comes too often rather than never.
bool canHold(const Type& type, const Field& value);

// As SQLite orders them; both texts under the part's collation.
int compareFields(const Field& left, const Field& right, bool turkish);

}  // namespace engine::store
