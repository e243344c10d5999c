// The zb_ tables of a database file: their making, reading and writing. `alias` is the attached name.
//
//   zb_meta           key, value: family, format, version (of the catalog), collation
//   zb_objects        sysobjects: tables U, views V, triggers TR, procedures P, constraints PK UQ D F C;
//   names are
//                     unique
//   zb_columns        columns of tables and views, in order of colid
//   zb_indexes        indexes and keys of tables; the SQLite index is zi_<table>_<indid>
//   zb_index_columns  their columns in order of keyno
//   zb_identity       last identity value used
//   zb_users, zb_members  users and roles
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "engine/catalog/catalog.h"
#include "engine/catalog/sqlite_util.h"

namespace engine {

// 1: no checksums, the log in a file of SQLite's own; 2: both in place; 3: with foreign keys, conditions,
// procedures or views WITH CHECK OPTION, which a program that knows only format 2 would not keep. A file has
// the lowest number that is true of it.
inline constexpr int plainFormat = 2;
inline constexpr int fileFormat = 3;

// `sql` with every "@." replaced by the alias.
std::string atAlias(std::string_view sql, std::string_view alias);

// All zb_ tables of an empty file, with dbo and the fixed roles. Inside the caller's transaction.
void makeSystemTables(sqlite3* db, std::string_view alias, const std::string& family);

// To fileFormat: the file now holds what older programs would not keep.
void raiseFormat(sqlite3* db, std::string_view alias);
std::int64_t catalogVersion(sqlite3* db, std::string_view alias);
std::shared_ptr<DatabaseCatalog> loadCatalog(sqlite3* db, std::string_view alias, const std::string& name);
// Null when the object is gone.
std::shared_ptr<TableInfo> loadTable(sqlite3* db, std::string_view alias, std::int64_t id);
std::shared_ptr<ViewInfo> loadView(sqlite3* db, std::string_view alias, std::int64_t id);
std::shared_ptr<ProcedureInfo> loadProcedure(sqlite3* db, std::string_view alias, std::int64_t id);

struct ObjectRow {
  std::int64_t id = 0;  // 0: none
  std::string name, type;
  std::int64_t parent = 0;
};
ObjectRow findObject(sqlite3* db, std::string_view alias, std::string_view name);

// Writes the rows of new objects. One serves a whole definition statement, best before SQLite's own
// definitions change: after that SQLite plans each of its statements anew.
class ObjectWriter {
 public:
  ObjectWriter(sqlite3* db, std::string_view alias) : db_(db), alias_(alias) {}

  // Throws 2714 when the name is taken. Returns the new id.
  std::int64_t addObject(const std::string& name, const char* type, std::int64_t parent,
                         const std::string& text = {}, int flags = 0, int nextColumn = 1);
  // Gives the columns their colids and writes them, with their defaults' objects (named when they have no
  // name). `first` is the first colid of a new table; 0 takes the next ones of a table that stands.
  void addColumns(const TableInfo& table, std::vector<ColumnInfo>& columns, int first = 0);
  void addViewColumns(std::int64_t view, const std::vector<ViewColumn>& columns);
  void addParameters(std::int64_t procedure, const std::vector<ParameterInfo>& parameters);
  // Writes the rows of a new index of `table` as it stands and returns it with its number, a key with its
  // object and name. `column` of a part is an ordinal.
  IndexInfo addIndex(const TableInfo& table, IndexInfo index);

 private:
  lite::Stmt& prepared(std::optional<lite::Stmt>& statement, const char* sql);
  void insertColumn(std::int64_t table, const ColumnInfo& column, std::int64_t defaultId);
  int takeColumnNumbers(std::int64_t table, std::size_t count);

  sqlite3* db_;
  std::string alias_;
  std::optional<lite::Stmt> object_, column_, index_, part_;
};

// The object, what hangs on it (triggers, constraints) and all its rows elsewhere.
void removeObject(sqlite3* db, std::string_view alias, std::int64_t id);

std::string defaultNameOf(const TableInfo& table, const ColumnInfo& column);
// Writes type, nullability and collation of a column that stands.
void setColumnType(sqlite3* db, std::string_view alias, std::int64_t table, const ColumnInfo& column);

// PK__TABLE__1A2B3C4D: the name of a constraint that got none.
std::string generatedName(const char* prefix, const std::string& table, std::int64_t number);

}  // namespace engine
