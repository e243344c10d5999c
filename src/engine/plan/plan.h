// A parsed batch with what has been compiled of it so far. Names are resolved when a statement runs, so
// every statement is compiled at its first run and again when the catalog has changed since.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "engine/language.h"
#include "engine/plan/prepared.h"

namespace engine {

struct Compiled {
  virtual ~Compiled() = default;
  std::uint64_t stamp = 0;             // Store::catalogStamp() it was made under
  std::string database;                // current database it was made in
  std::vector<std::string> databases;  // all that it touches; attached again before each run
};

// SET, IF, WHILE, PRINT ...: one value. Without a statement it is the parameter itself.
struct CompiledValue : Compiled {
  Type type;
  std::optional<ParameterSource> direct;
  Prepared query;
};

struct CompiledQuery : Compiled {
  std::vector<ResultColumn> columns;
  std::vector<int> slots;  // assigned variables, by column
  bool stepwise = false;   // z_set assigns row by row, because the query reads what it assigns
  Prepared query;
};

struct CompiledInsert : Compiled {
  std::shared_ptr<const DatabaseCatalog> catalog;
  std::shared_ptr<const TableInfo> table;
  std::string tableDatabase;
  bool makesIdentity = false;
  int identityInput = -1;      // place of an explicit identity value among the columns
  bool firesTriggers = false;  // so that the new rows are wanted
  bool constrained = false;    // and so they are for conditions and foreign keys
  bool singleRow = false;
  Prepared viewCheck;  // WITH CHECK OPTION: a row is a new one that the view would not show
  Prepared insert;
};

struct CompiledChange : Compiled {  // UPDATE and DELETE
  std::shared_ptr<const DatabaseCatalog> catalog;
  std::shared_ptr<const TableInfo> table;
  std::string tableDatabase;
  std::vector<int> updated;  // ordinals of the columns that are set
  Prepared change;
  bool constrained = false;  // conditions or foreign keys ask for the old and new rows
  // For triggers and rules: copies the rows to be changed into the table of old rows.
  Prepared capture;
  Prepared viewCheck;  // WITH CHECK OPTION: a row is a changed one that the view would not show
  // For an UPDATE that collides with itself on its way: new rows by way of a temporary table.
  BoundStatement detour;
};

class Plan {
 public:
  Batch batch;
  VariableTable variables;
  std::vector<int> structural;    // ordinals of the literals the plan depends on
  std::vector<Literal> literals;  // as they stood when it was made
  std::unordered_map<const void*, std::unique_ptr<Compiled>> compiled;

  bool fits(const std::vector<Literal>& now) const;
};

// Collects the DECLAREs of a batch; throws 134 for a name declared twice.
VariableTable collectVariables(const std::vector<StatementPtr>& statements);
// Those of a procedure: its parameters, in their order, then what its body declares.
VariableTable procedureVariables(const CreateProcedureStatement& procedure);

}  // namespace engine
