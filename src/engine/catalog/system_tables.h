// The system tables as statements see them: typed columns over the zb_ tables of a database file.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "engine/catalog/catalog.h"
#include "engine/value.h"

namespace engine {

// The type of names: its columns, and nothing else, compare by the rule of names.
inline constexpr Type nameType{TypeId::NVarChar, 128, 0, 0};

struct SystemTable {
  std::string name;         // "sysobjects"
  bool masterOnly = false;  // 208 in any other database
  std::vector<ViewColumn> columns;
  std::string query;  // SELECT over "@." in the place of the alias, one expression per column
};

// By ASCII folding; null when there is none. They are read-only (error 259 on writing).
const SystemTable* findSystemTable(std::string_view name);
const std::vector<SystemTable>& systemTables();

// sys and INFORMATION_SCHEMA, whose views stand in every database.
bool isSystemSchema(std::string_view owner);
const std::vector<SystemTable>& schemaViews(std::string_view schema);
// The old system tables stand in sys, too. Null when there is none.
const SystemTable* findSchemaView(std::string_view schema, std::string_view name);

// The table's rows as an SQLite subquery, without brackets or alias: columns are named as in
// `columns`. `databaseAlias` is what Store::attach returned for the table's database.
std::string systemTableSql(const SystemTable& table, std::string_view databaseAlias);

}  // namespace engine
