// What changes definitions: CREATE, ALTER and DROP, and what SELECT INTO and sp_rename share with them.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "engine/language.h"
#include "engine/store.h"

namespace engine {

// Runs one definition statement (CREATE / ALTER / DROP TABLE, INDEX, VIEW, TRIGGER, DATABASE) in the
// session's current database. View columns come bound from the caller, because only the binder knows
// their types. All of a statement stands or none of it.
struct SessionContext {
  std::string database;  // current database
  std::string login;     // as logged in
  int spid = 51;         // @@SPID
  // Value of a column default that is no plain literal, in the physical form of `type`; used by ADD
  // with NOT NULL on a table with rows. Without it such a default is refused.
  std::function<Datum(const Expr& expression, const Type& type)> evaluate;
  // Throws where the condition or the key names what there is not, or (`rows`) where a row of the table
  // breaks it; one of the two is given.
  std::function<void(const std::string& database, const TableInfo& table, const CheckInfo* check,
                     const ForeignKeyInfo* key, bool rows)>
      verify;
};
void runDefinition(Store& store, SessionContext& context, const Statement& statement,
                   const std::vector<ViewColumn>& viewColumns = {});

// The table of a DECLARE @t TABLE, in tempdb under `name`.
void createTableVariable(Store& store, SessionContext& context, const CreateTableStatement& statement,
                         const std::string& name);

// An empty table for SELECT INTO: types, NULL and identity as given, no keys. 2714, 2705, 1038 (a column
// without a name).
void createTableFrom(Store& store, const std::string& database, const std::string& name,
                     const std::vector<ColumnInfo>& columns);

// The parts of a name that came as a text: db.owner.object, each plain, in brackets or in quotes.
std::vector<std::string> nameParts(const std::string& name);

// The data behind sp_rename: `type` is OBJECT, COLUMN (t.c) or INDEX (t.i); empty: object, then column.
// 15225 (no such item), 15335 (the new name is taken), 15249 (unknown type).
void renameItem(Store& store, const std::string& database, const std::string& item,
                const std::string& newName, const std::string& type);

// The SQLite message of a violated unique index ("UNIQUE constraint failed: ...") or NOT NULL as the
// server's error: 2627, 2601 or 515 (`verb` is INSERT or UPDATE). `database` is where the table lies.
Error constraintError(const DatabaseCatalog& catalog, const std::string& sqliteMessage,
                      const std::string& verb);

}  // namespace engine
