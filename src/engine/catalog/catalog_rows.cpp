#include "engine/catalog/catalog_rows.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <optional>

#include "engine/function.h"

namespace engine {

namespace {

constexpr const char* systemTablesSql = R"(
CREATE TABLE @.zb_meta(key TEXT PRIMARY KEY, value) WITHOUT ROWID;
CREATE TABLE @.zb_objects(
  id INTEGER PRIMARY KEY AUTOINCREMENT, name TEXT NOT NULL COLLATE TRCI, xtype TEXT NOT NULL,
  parent INTEGER NOT NULL, crdate INTEGER NOT NULL, flags INTEGER NOT NULL, next_column INTEGER NOT NULL,
  text TEXT NOT NULL);
CREATE UNIQUE INDEX @.zb_objects_name ON zb_objects(name COLLATE NOCASE);
CREATE INDEX @.zb_objects_parent ON zb_objects(parent);
INSERT INTO @.sqlite_sequence(name, seq) VALUES('zb_objects', 1000);
CREATE TABLE @.zb_columns(
  table_id INTEGER, colid INTEGER, name TEXT NOT NULL COLLATE TRCI, type INTEGER NOT NULL,
  nullable INTEGER NOT NULL, identity INTEGER NOT NULL, seed INTEGER NOT NULL, step INTEGER NOT NULL,
  default_id INTEGER NOT NULL, collation TEXT NOT NULL, xtype INTEGER, length INTEGER, xprec INTEGER,
  xscale INTEGER, PRIMARY KEY(table_id, colid)) WITHOUT ROWID;
CREATE TABLE @.zb_indexes(
  table_id INTEGER, indid INTEGER, name TEXT NOT NULL COLLATE TRCI, is_unique INTEGER NOT NULL,
  is_clustered INTEGER NOT NULL, object_id INTEGER NOT NULL, PRIMARY KEY(table_id, indid)) WITHOUT ROWID;
CREATE TABLE @.zb_index_columns(
  table_id INTEGER, indid INTEGER, keyno INTEGER, colid INTEGER NOT NULL, descending INTEGER NOT NULL,
  PRIMARY KEY(table_id, indid, keyno)) WITHOUT ROWID;
CREATE TABLE @.zb_identity(table_id INTEGER PRIMARY KEY, last INTEGER NOT NULL);
CREATE TABLE @.zb_users(
  uid INTEGER PRIMARY KEY, name TEXT NOT NULL COLLATE TRCI, sid BLOB, is_role INTEGER NOT NULL,
  crdate INTEGER NOT NULL);
CREATE UNIQUE INDEX @.zb_users_name ON zb_users(name COLLATE NOCASE);
CREATE TABLE @.zb_members(uid INTEGER, group_uid INTEGER, PRIMARY KEY(uid, group_uid)) WITHOUT ROWID;
)";

struct FixedUser {
  int uid;
  const char* name;
  bool role;
};

constexpr FixedUser fixedUsers[] = {
    {0, "public", true},
    {1, "dbo", false},
    {2, "guest", false},
    {3, "INFORMATION_SCHEMA", false},
    {4, "system_function_schema", false},
    {16384, "db_owner", true},
    {16385, "db_accessadmin", true},
    {16386, "db_securityadmin", true},
    {16387, "db_ddladmin", true},
    {16389, "db_backupoperator", true},
    {16390, "db_datareader", true},
    {16391, "db_datawriter", true},
    {16392, "db_denydatareader", true},
    {16393, "db_denydatawriter", true},
};

}  // namespace

std::string atAlias(std::string_view sql, std::string_view alias) {
  std::string out;
  out.reserve(sql.size() + 32);
  for (std::size_t i = 0; i < sql.size(); ++i) {
    const bool mark = sql[i] == '@' && i + 1 < sql.size() && sql[i + 1] == '.';
    if (mark)
      out += alias;
    else
      out += sql[i];
  }
  return out;
}

void makeSystemTables(sqlite3* db, std::string_view alias, const std::string& family) {
  lite::exec(db, atAlias(systemTablesSql, alias));
  lite::Stmt meta(db, atAlias("INSERT INTO @.zb_meta(key, value) VALUES(?, ?)", alias));
  meta.bind("family").bind(family).run();
  meta.bind("format").bind(plainFormat).run();
  meta.bind("version").bind(1).run();
  lite::Stmt user(
      db, atAlias("INSERT INTO @.zb_users(uid, name, sid, is_role, crdate) VALUES(?, ?, ?, ?, ?)", alias));
  for (const auto& fixed : fixedUsers) {
    user.bind(fixed.uid).bind(fixed.name).bindNull().bind(fixed.role ? 1 : 0).bind(currentTicks()).run();
  }
  lite::exec(db, atAlias("INSERT INTO @.zb_members VALUES(1, 16384)", alias));
}

void raiseFormat(sqlite3* db, std::string_view alias) {
  lite::exec(db, atAlias("UPDATE @.zb_meta SET value=", alias) + std::to_string(fileFormat) +
                     " WHERE key='format' AND value<" + std::to_string(fileFormat));
}

std::int64_t catalogVersion(sqlite3* db, std::string_view alias) {
  lite::Stmt version(db, atAlias("SELECT value FROM @.zb_meta WHERE key='version'", alias));
  return version.step() ? version.integer(0) : 0;
}

void removeObject(sqlite3* db, std::string_view alias, std::int64_t id) {
  const std::string number = std::to_string(id);
  for (const char* table : {"zb_columns", "zb_indexes", "zb_index_columns", "zb_identity"})
    lite::exec(db, atAlias("DELETE FROM @.", alias) + table + " WHERE table_id=" + number);
  lite::exec(db, atAlias("DELETE FROM @.zb_objects WHERE id=", alias) + number + " OR parent=" + number);
}

std::string generatedName(const char* prefix, const std::string& table, std::int64_t number) {
  // Object numbers are unique in the database, so their mixed digits are too.
  const auto mixed = static_cast<std::uint32_t>(static_cast<std::uint64_t>(number) * 2654435761U);
  std::array<char, 9> digits{};
  std::snprintf(digits.data(), digits.size(), "%08X", mixed);
  return std::string(prefix) + "__" + table.substr(0, 100) + "__" + digits.data();
}

std::string defaultNameOf(const TableInfo& table, const ColumnInfo& column) {
  return generatedName("DF", table.name, table.id * 1024 + column.id);
}

namespace {

struct Digits {
  int precision, scale;
};

// syscolumns.xprec and xscale: the digits of numbers and dates, nothing for text.
Digits digitsOf(const Type& type) {
  switch (type.id) {
    case TypeId::Bit:
      return {1, 0};
    case TypeId::TinyInt:
      return {3, 0};
    case TypeId::SmallInt:
      return {5, 0};
    case TypeId::Int:
      return {10, 0};
    case TypeId::BigInt:
      return {19, 0};
    case TypeId::SmallMoney:
      return {10, 4};
    case TypeId::Money:
      return {19, 4};
    case TypeId::Decimal:
      return {type.precision, type.scale};
    case TypeId::Real:
      return {24, 0};
    case TypeId::Float:
      return {53, 0};
    case TypeId::SmallDateTime:
      return {16, 0};
    case TypeId::DateTime:
      return {23, 3};
    default:
      return {0, 0};
  }
}

}  // namespace

void setColumnType(sqlite3* db, std::string_view alias, std::int64_t table, const ColumnInfo& column) {
  lite::Stmt update(
      db, atAlias("UPDATE @.zb_columns SET type=?, nullable=?, collation=?, xtype=?, length=?, xprec=?, "
                  "xscale=? WHERE table_id=? AND colid=?",
                  alias));
  const Digits digits = digitsOf(column.type);
  update.bind(packType(column.type)).bind(column.nullable).bind(column.collation);
  update.bind(systemType(column.type))
      .bind(storageLength(column.type))
      .bind(digits.precision)
      .bind(digits.scale);
  update.bind(table).bind(column.id).run();
}

namespace {

constexpr const char* insertColumnSql =
    "INSERT INTO @.zb_columns(table_id, colid, name, type, nullable, identity, seed, step, default_id, "
    "collation, "
    "xtype, length, xprec, xscale) VALUES(?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)";

// A taken name gives no row.
constexpr const char* insertObjectSql =
    "INSERT INTO @.zb_objects(name, xtype, parent, crdate, flags, next_column, text) VALUES(?, ?, ?, ?, ?, "
    "?, ?) ON CONFLICT DO NOTHING RETURNING id";

constexpr const char* insertIndexSql = "INSERT INTO @.zb_indexes VALUES(?, ?, ?, ?, ?, ?)";
constexpr const char* insertPartSql = "INSERT INTO @.zb_index_columns VALUES(?, ?, ?, ?, ?)";

}  // namespace

ObjectRow findObject(sqlite3* db, std::string_view alias, std::string_view name) {
  lite::Stmt find(
      db, atAlias("SELECT id, name, xtype, parent FROM @.zb_objects WHERE name=? COLLATE NOCASE", alias));
  if (!find.bind(name).step()) return {};
  return {find.integer(0), find.text(1), find.text(2), find.integer(3)};
}

// ---- ObjectWriter ----

lite::Stmt& ObjectWriter::prepared(std::optional<lite::Stmt>& statement, const char* sql) {
  if (!statement) statement.emplace(db_, atAlias(sql, alias_));
  return *statement;
}

std::int64_t ObjectWriter::addObject(const std::string& name, const char* type, std::int64_t parent,
                                     const std::string& text, int flags, int nextColumn) {
  lite::Stmt& insert = prepared(object_, insertObjectSql);
  insert.bind(name).bind(type).bind(parent).bind(currentTicks()).bind(flags);
  if (!insert.bind(nextColumn).bind(text).step())
    throw Error(2714, "There is already an object named '" + name + "' in the database.", 16, 6);
  const std::int64_t id = insert.integer(0);
  insert.run();
  const std::string_view kind = type;
  if (kind == "F" || kind == "C" || kind == "P") raiseFormat(db_, alias_);
  return id;
}

int ObjectWriter::takeColumnNumbers(std::int64_t table, std::size_t count) {
  lite::Stmt take(db_, atAlias("UPDATE @.zb_objects SET next_column=next_column+?2 WHERE id=?1 RETURNING "
                               "next_column-?2",
                               alias_));
  const bool found = take.bind(table).bind(static_cast<std::int64_t>(count)).step();
  const int first = found ? static_cast<int>(take.integer(0)) : 1;
  take.run();
  return first;
}

void ObjectWriter::insertColumn(std::int64_t table, const ColumnInfo& column, std::int64_t defaultId) {
  const Digits digits = digitsOf(column.type);
  lite::Stmt& insert = prepared(column_, insertColumnSql);
  insert.bind(table).bind(column.id).bind(column.name).bind(packType(column.type)).bind(column.nullable);
  insert.bind(column.identity).bind(column.seed).bind(column.step).bind(defaultId).bind(column.collation);
  insert.bind(systemType(column.type)).bind(storageLength(column.type));
  insert.bind(digits.precision).bind(digits.scale).run();
}

void ObjectWriter::addColumns(const TableInfo& table, std::vector<ColumnInfo>& columns, int first) {
  int number = first > 0 ? first : takeColumnNumbers(table.id, columns.size());
  for (auto& column : columns) {
    column.id = number++;
    std::int64_t defaultId = 0;
    if (!column.defaultText.empty()) {
      if (column.defaultName.empty()) column.defaultName = defaultNameOf(table, column);
      defaultId = addObject(column.defaultName, "D", table.id, column.defaultText, column.id);
    }
    insertColumn(table.id, column, defaultId);
  }
}

void ObjectWriter::addViewColumns(std::int64_t view, const std::vector<ViewColumn>& columns) {
  int number = 0;
  for (const auto& column : columns) {
    ColumnInfo row;
    row.id = ++number;
    row.name = column.name;
    row.type = column.type;
    row.nullable = column.nullable;
    insertColumn(view, row, 0);
  }
}

void ObjectWriter::addParameters(std::int64_t procedure, const std::vector<ParameterInfo>& parameters) {
  int number = 0;
  for (const auto& parameter : parameters) {
    ColumnInfo row;
    row.id = ++number;
    row.name = parameter.name;
    row.type = parameter.type;
    row.identity = parameter.output;  // where a column has that mark
    insertColumn(procedure, row, 0);
  }
}

IndexInfo ObjectWriter::addIndex(const TableInfo& table, IndexInfo index) {
  // Number 1 is the clustered index's alone.
  int top = 1;
  for (const auto& other : table.indexes) top = std::max(top, other.id);
  index.id = index.clustered ? 1 : top + 1;
  std::int64_t object = 0;
  if (index.primaryKey || index.uniqueConstraint) {
    const char* type = index.primaryKey ? "PK" : "UQ";
    if (index.name.empty()) index.name = generatedName(type, table.name, table.id * 1024 + index.id);
    object = addObject(index.name, type, table.id);
  }
  lite::Stmt& insert = prepared(index_, insertIndexSql);
  insert.bind(table.id).bind(index.id).bind(index.name).bind(index.unique).bind(index.clustered);
  insert.bind(object).run();
  lite::Stmt& part = prepared(part_, insertPartSql);
  int key = 0;
  for (const auto& each : index.parts) {
    part.bind(table.id).bind(index.id).bind(++key);
    part.bind(table.columns[static_cast<std::size_t>(each.column)].id).bind(each.descending).run();
  }
  return index;
}

}  // namespace engine
