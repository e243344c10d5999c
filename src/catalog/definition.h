// Definitions of tables as data: the form in which the catalog's and the company databases' tables are
// written down (*.tbl), and what is made of it.
//
//   file    = { comment | table }
//   comment = "#" to the end of the line
//   table   = "TABLE" name stage [ "COLLATE" collation ] { "  " ( column | audit | key | statement ) }
//   column  = name type ( "NULL" | "NOT NULL" ) [ "IDENTITY" | "DEFAULT" sql | "FILL" value ] stage [ note ]
//             name may be a run of numbered columns: Bas1..Bas52
//   audit   = "AUDIT" stage           who made and who last changed the row: six columns
//   key     = "PRIMARY KEY" [ "CLUSTERED" | "NONCLUSTERED" ] "(" names ")"
//   statement = an index ("CREATE ... INDEX ..."), a first row ("INSERT ...", "UPDATE ...") or, after the
//   word
//             "UPGRADE", the first row as the upgrade writes it in place of the others
//   stage   = "B" the table's first text has it | "U" added later by the upgrade | "B/U" a block that
//             the upgrade completes
//   note    = "BASE" type             the first text has another type
//           | "DROPPED"               the upgrade removes the column
//           | "REBUILD"               a difference makes the upgrade rebuild the table through a copy
//           | "ASKED" ( "NAME" text | "LENGTH" n "DEFAULT" sql )   what the upgrade asks for, where that
//                                     differs from the column itself
//   sql, value, text = one word, or 'text in apostrophes'; a DEFAULT keeps its apostrophes
//
// DEFAULT is declared on the column; FILL is written into existing rows when the upgrade adds it. First
// rows hold the marks <date> and <time>, fills also <year>.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace catalog {

// A text file that was built into the program; `name` is its path below its folder.
struct EmbeddedText {
  std::string_view name;
  std::string_view text;
};

enum class Stage : std::uint8_t { Base, Upgrade };

struct ColumnDef {
  std::string name;
  std::string type;      // as it is in the end: CHAR(26), FLOAT ...
  std::string baseType;  // as the first text has it; equal to `type` where nothing changes
  bool nullable = true;  // as written; a key column is NOT NULL all the same, see mayBeNull()
  bool identity = false;
  std::string defaultSql;  // "" for none; as it stands in SQL: 0, ' '
  bool hasFill = false;
  std::string fill;  // bare value
  Stage stage = Stage::Base;
  bool completed = false;  // stage B/U
  bool dropped = false;
  bool rebuild = false;
  std::string askedName;     // "" where equal to `name`
  int askedLength = 0;       // 0 where it follows from the type
  std::string askedDefault;  // "" where it follows from `defaultSql`
};

struct TableDef {
  std::string name;
  Stage stage = Stage::Base;
  std::string collation;  // for all text columns of the first text; "" for none
  std::vector<ColumnDef> columns;
  std::vector<std::string> key;
  std::string keyKind;               // "", "CLUSTERED" or "NONCLUSTERED"
  std::vector<std::string> indexes;  // statements
  std::vector<std::string> firstRows, upgradeRows;

  const ColumnDef* column(std::string_view columnName) const;  // ASCII case ignored; null when missing
  bool mayBeNull(const ColumnDef& column) const;
};

// Throws std::invalid_argument that names `file` and line on a text that does not follow the grammar.
std::vector<TableDef> parseTables(const EmbeddedText& file);

// CREATE TABLE. Base: the first text, columns of stage B with their base types; a table of stage U is
// given whole. Upgrade: all columns that stand in the end, with their final types.
std::string createStatement(const TableDef& table, Stage stage);

// One column as CREATE TABLE and ALTER TABLE ADD have it: name, type, collation, default, nullability.
std::string columnText(const TableDef& table, const ColumnDef& column, Stage stage);

}  // namespace catalog
