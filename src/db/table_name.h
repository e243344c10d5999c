// Finds the one table behind a simple SELECT and writes names as SQL.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace db {

struct TableName {
  std::string database;  // empty: the connection's current one
  std::string table;
};

// The table of `SELECT ... FROM t [alias] [WHERE ...|ORDER BY ...]`, with t as t, dbo.t or db.owner.t,
// each part plain or in brackets. Nothing when the text is anything else: no SELECT, several tables,
// a subquery, grouping or a UNION.
std::optional<TableName> tableOfSelect(std::string_view sql);

std::string bracketed(std::string_view name);           // [name], closing brackets doubled
std::string qualifiedName(const TableName& table);      // [db].dbo.[t] or [t]
bool sameName(std::string_view a, std::string_view b);  // ASCII case ignored
bool reservedWord(std::string_view name);               // no name unless in brackets

}  // namespace db
