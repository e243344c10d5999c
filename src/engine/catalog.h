// What exists in one database, as read from the system tables of its file. Immutable once built; a
// change makes a new one with a higher version.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "engine/type.h"

namespace engine {

// ASCII lower case: the folding of identifiers. Turkish letters stay as they are.
std::string foldName(std::string_view name);

struct ColumnInfo {
  std::string name;
  Type type;
  bool nullable = true;
  bool identity = false;
  std::int64_t seed = 1, step = 1;
  std::string defaultText;  // T-SQL text of the DEFAULT; empty for none
  std::string defaultName;  // its constraint's name
  std::string collation;    // as declared; empty for the server's
  int id = 0;               // syscolumns.colid, never reused within a table
};

struct IndexPart {
  int column = 0;  // ordinal in TableInfo::columns
  bool descending = false;
};

struct IndexInfo {
  std::string name;
  bool unique = false;
  bool clustered = false;
  bool primaryKey = false;
  bool uniqueConstraint = false;
  std::vector<IndexPart> parts;
  int id = 0;  // sysindexes.indid: 1 for the clustered one, others from 2
};

struct TriggerInfo {
  std::int64_t id = 0;
  std::string name;
  std::int64_t table = 0;
  bool onInsert = false, onUpdate = false, onDelete = false;
  std::string text;  // from CREATE TRIGGER on
};

struct TableInfo {
  std::int64_t id = 0;
  std::string name;
  std::vector<ColumnInfo> columns;
  std::vector<IndexInfo> indexes;
  std::vector<std::shared_ptr<const TriggerInfo>> triggers;  // in order of creation

  int columnIndex(std::string_view name) const;  // -1 when there is none
  int identityColumn() const;                    // -1 when there is none
};

struct ViewColumn {
  std::string name;
  Type type;
  bool nullable = true;
};

struct ViewInfo {
  std::int64_t id = 0;
  std::string name;
  std::string text;                 // from CREATE VIEW on
  std::vector<ViewColumn> columns;  // fixed at creation
};

struct DatabaseCatalog {
  std::string name;
  std::int64_t version = 0;
  std::map<std::string, std::shared_ptr<const TableInfo>> tables;  // by foldName
  std::map<std::string, std::shared_ptr<const ViewInfo>> views;

  const TableInfo* table(std::string_view name) const;
  const ViewInfo* view(std::string_view name) const;
};

}  // namespace engine
