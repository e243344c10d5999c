// What binding yields: SQL text of SQLite with its static types, and the parameters it wants.
//
// Text is built of fragments whose order is not known when they are made, so every parameter is
// written as ?N, N being 1 + its index in the statement's list.
#pragma once

#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "engine/catalog.h"
#include "engine/language.h"
#include "engine/value.h"

namespace engine {

enum class SystemValue : std::uint8_t {
  RowCount,
  Error,
  Identity,
  ScopeIdentity,
  TranCount,
  Spid,
  MaxPrecision,
  Version,
  ServerName,
  DatabaseName,
  DatabaseId,
  Login,
  UserName,
  Now,
  NextIdentity,  // the value that the running INSERT gives to its identity column
  NestLevel,
  ErrorNumber,  // of what the CATCH has caught, with the next ones
  ErrorSeverity,
  ErrorState,
  ErrorLine,
  ErrorProcedure,
  ErrorMessage,
  TransactionState,  // XACT_STATE()
};

// Longer ones are kept in the list of the batch that they stand in, and nowhere else.
inline constexpr std::size_t longLiteral = 8000;

// Where a parameter's value comes from each time the statement runs.
struct ParameterSource {
  enum class Kind : std::uint8_t { Literal, Variable, System };
  Kind kind = Kind::Literal;
  int index = 0;       // literal ordinal, variable slot or SystemValue
  bool fixed = false;  // Literal: the value is `value`, not one of the batch's literals (texts of views)
  Literal value;       // Literal: the literal as it stood when the statement was bound
  bool negate = false;
  Type from;            // type before conversion
  Type to;              // what is handed to SQLite
  bool assign = false;  // conversion on the way into a column: too long is an error, not a cut
  std::string column;   // with assign: for messages
};

// One expression. `condition` ones are predicates (1, 0, NULL), which are no values in the dialect.
struct BoundExpr {
  std::string sql;
  Type type;
  bool nullable = true;
  bool condition = false;
  int parameter = -1;  // index of the parameter when the expression is nothing else
  bool aggregate = false;
  bool column = false;  // plain column: `origin` is filled
  bool outer = false;   // of a query around, where it is a constant
  ResultColumn origin;
};

struct SourceColumn {
  std::string key;  // foldName(name)
  std::string sql;
  ResultColumn info;
  int ordinal = -1;  // of a change's target: the table's column; -1 for an expression
};

// One entry of FROM.
struct Source {
  std::string alias;     // folded exposed name; for a table without alias its own
  std::string shown;     // exposed name as written
  std::string title;     // what messages call it: the table's name as written, else the alias
  std::string database;  // folded, of an unaliased table
  bool aliased = false;
  std::string handle;                // t1, t2 ...: its name in the SQLite text
  const TableInfo* table = nullptr;  // base table
  std::string tableDatabase;         // its database as attached
  bool target = false;               // of a change: reading its columns asks for a right of its own
  std::vector<SourceColumn> columns;
  // A target that is a view of `table`: its name and database, which rows it shows, and which rows may be
  // written where it or a view below was made WITH CHECK OPTION.
  std::string view, viewDatabase, rowFilter, checked;

  // Of a target's column in the table; -1 when there is none. 4406 for an expression.
  int ordinalOf(const std::string& column) const;
};

struct Scope {
  Scope* parent = nullptr;
  std::vector<Source> sources;
  std::size_t visibleFrom = 0;  // an ON sees only the sources of its own join
  // Set while the select list, HAVING or ORDER BY of a grouped query is bound.
  bool grouped = false;
  bool hasGroupBy = false;
  enum class Clause : std::uint8_t { SelectList, Having, OrderBy } clause = Clause::SelectList;
  int inAggregate = 0;
  bool inWindow = false;
  bool aggregatesAllowed = false;
  std::vector<std::pair<const Expr*, BoundExpr>> groups;
  std::vector<std::string> groupSqls;  // what each is over the tables; `groups` has what the list may name
  // Where subqueries look at the groups, these stand with the aggregates in a query of their own: its handle
  // and its aggregates.
  std::string gathered;
  std::vector<std::string> aggregates;
  bool outerJoins = false;           // FROM has RIGHT or FULL joins
  const SelectCore* core = nullptr;  // whose rows these are; null outside of SELECT
};

struct BoundSelect {
  std::string sql;  // whole SELECT; columns are named c0, c1 ...
  std::vector<ResultColumn> columns;
  std::vector<std::string> variables;   // assigned variable per column; all empty or all filled
  bool singleRow = false;               // never more than one row
  bool limited = false, apart = false;  // `sql` ends in LIMIT, in OFFSET
  bool outerColumn = false;             // a column of a query around stands in the list
  const SelectCore* into = nullptr;
};

// OFFSET keeps SQLite from merging a query in FROM into the one around it.
void keepApart(BoundSelect& select);
// Ends the text of a union: Binder::finish() knows whether it is to be kept apart.
inline constexpr char unionEnd = '\x01';

struct VariableInfo {
  std::string name;  // folded, with @
  Type type;
};

// The variables of one batch or trigger body.
struct VariableTable {
  std::vector<VariableInfo> variables;
  std::vector<const CreateTableStatement*> tables;
  int find(std::string_view name) const;
  bool hasTable(std::string_view name) const;
};

// Parsed texts of views, kept by their text.
using ViewCache = std::map<std::string, std::shared_ptr<const Batch>>;

// The pseudo tables of the running trigger: the shape of `table`, rows in two temporary tables.
struct TriggerTables {
  std::shared_ptr<const TableInfo> table;
  std::string database;
  std::string inserted, deleted;  // quoted names in SQLite
  std::string columns;            // the table's, quoted, a comma before each
};

}  // namespace engine
