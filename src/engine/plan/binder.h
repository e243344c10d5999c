// Gives names their meaning and expressions their static types, and writes SQLite text for them.
//
// Conversions, CHAR padding, the meaning of `+`, the collation and the checks of grouping are decided
// here; what is left for run time are SQL functions (functions.h) and parameters.
#pragma once

#include <deque>
#include <functional>
#include <map>
#include <optional>

#include "engine/plan/access.h"
#include "engine/plan/bound.h"
#include "engine/plan/prepared.h"
#include "engine/store.h"

namespace engine {

// What a statement is bound against.
struct BindContext {
  Store* store;
  std::string database;  // where names without a database are looked up
  const VariableTable* variables = nullptr;
  const TriggerTables* trigger = nullptr;
  bool fixedLiterals = false;  // the statement is part of a stored trigger
  // Receives the ordinals of literals whose values decided a type.
  std::vector<int>* structural = nullptr;
  ViewCache* views = nullptr;
  Access* access = nullptr;   // null: everything is allowed
  std::string tableSuffix{};  // of the table variables' names, so that each running batch has its own
  // The database whose objects are touched by their owner's right: that of the running trigger.
  std::string chain;
};

class Binder {
 public:
  explicit Binder(const BindContext& context);

  // The common table expressions of an INSERT, UPDATE or DELETE, which stand as long as the binder.
  void enterCommon(const std::vector<CommonTable>& with, std::optional<int> maxRecursion = {});
  // A query that is a statement of its own or the source of INSERT.
  BoundSelect bindQuery(const SelectStatement& select);
  // The query of CREATE VIEW: no ORDER BY without TOP, no variables. Its result tells the columns and
  // cannot be run: views in FROM have the columns that they were given at creation. ALTER VIEW binds them
  // too (`throughViews`), for the view may have come to refer to itself.
  BoundSelect bindViewQuery(const SelectStatement& select, bool throughViews);
  // Expressions outside of any query (SET, IF, EXEC arguments).
  BoundExpr bindValue(const Expr& expr, Scope* scope);
  BoundExpr bindCondition(const Expr& expr, Scope* scope);
  // Converts to `type`; `assign` refuses texts that are too long, else they are cut.
  BoundExpr convert(const BoundExpr& expr, const Type& type, bool assign = false,
                    const std::string& column = {});
  // The conversion a column of a table asks for.
  BoundExpr assignTo(const BoundExpr& expr, const ColumnInfo& column);

  // The stored default of a column, whose literals are its own.
  BoundExpr bindDefault(const Expr& expr, const ColumnInfo& column);

  // FROM: entries go into `scope`; returns the text behind FROM.
  std::string bindFrom(const std::vector<std::unique_ptr<TableSource>>& from, Scope& scope);
  // Throws 229 unless the table or view may be touched so.
  void need(const std::string& database, const std::string& object, Action action) const;
  // 229 unless the target may be changed so.
  void needTarget(const Source& source, Action action) const;
  // Adds the table `name`, or the one under a view of that name, to the scope; 208, and 4403 and its kin for
  // views that nobody writes through.
  Source& bindTarget(const ObjectName& name, Scope& scope);
  // Rows of the table's shape that are nobody's to refuse; whoever calls puts them into FROM under the
  // handle.
  Source& bindRows(const TableInfo& table, const std::string& database, Scope& scope);
  // "alias"."table" of a base table for SQLite.
  std::string sqlName(const TableInfo& table, const std::string& database);
  // Database that a name without one belongs to.
  std::string resolveDatabase(const ObjectName& name);
  std::string topLimit(const Expr& top, bool percent, const std::string& countSql);

  BoundExpr systemParameter(SystemValue value, const Type& type);
  // The finished text with its parameters renumbered to those in use.
  BoundStatement finish(const std::string& sql) const;

  const std::set<std::string>& databases() const { return databases_; }
  // True when a variable is read inside the statement (an assigning SELECT must then go step by step).
  bool readsVariable(const std::vector<std::string>& names) const;
  // From now on reads variables through z_var instead of parameters, and assigns those of the outermost
  // select list to `slots` through z_set, row by row.
  void setStepwiseVariables(std::vector<int> slots) {
    stepwise_ = true;
    stepwiseSlots_ = std::move(slots);
  }
  // The query as the source of an INSERT: its columns converted to `targets`.
  // `named`: the INSERT has a column list.
  BoundSelect bindSource(const SelectStatement& select, const std::vector<const ColumnInfo*>& targets,
                         bool named);

 private:
  struct CoreShape {  // what the surroundings ask of a SELECT core
    bool subquery = false;
    const std::vector<std::string>* starNames = nullptr;      // fixed column names of a view
    int columnCount = -1;                                     // fixed column count of a view
    const std::vector<const ColumnInfo*>* targets = nullptr;  // columns that an INSERT fills
    bool named = false;                                       // and whether it names them
  };

  // binder_expression.cpp
  BoundExpr bind(const Expr& expr, Scope* scope);
  static const BoundExpr* boundGroup(const Expr& expr, const Scope* scope);
  BoundExpr bindLiteral(const Literal& literal, bool negate);
  BoundExpr bindColumn(const Expr& expr, Scope* scope);
  BoundExpr bindVariable(const Expr& expr);
  BoundExpr bindGlobal(const Expr& expr);
  BoundExpr bindUnary(const Expr& expr, Scope* scope);
  BoundExpr bindBinary(const Expr& expr, Scope* scope);
  BoundExpr bindCase(const Expr& expr, Scope* scope);
  std::string caseTests(const Expr& expr, Scope* scope, std::vector<std::string>& tests);
  BoundExpr bindConversion(const Expr& expr, Scope* scope);
  BoundExpr bindCollate(const Expr& expr, Scope* scope);
  ParameterSource& parameter(int index) { return parameters_[static_cast<std::size_t>(index)]; }
  BoundExpr addParameter(ParameterSource source);
  BoundExpr exactOperand(const BoundExpr& operand, const Type& other);
  BoundExpr finite(const BoundExpr& expr);
  Type unify(const std::vector<BoundExpr>& exprs);

  // binder_chain.cpp
  BoundExpr bindLogic(const Expr& expr, Scope* scope);
  BoundExpr bindArithmetic(const Expr& expr, Scope* scope);
  BoundExpr operate(BinaryOp op, BoundExpr left, BoundExpr right);
  BoundExpr foldChain(BoundExpr value, const std::vector<const Expr*>& steps, Scope* scope);

  // binder_condition.cpp
  BoundExpr compare(BinaryOp op, const BoundExpr& left, const BoundExpr& right);
  BoundExpr bindBetween(const Expr& expr, Scope* scope);
  BoundExpr bindInList(const Expr& expr, Scope* scope);
  BoundExpr bindInSelect(const Expr& expr, Scope* scope);
  BoundExpr bindQuantified(const Expr& expr, Scope* scope);
  BoundExpr bindExists(const Expr& expr, Scope* scope);
  BoundExpr bindLike(const Expr& expr, Scope* scope);
  BoundExpr bindScalar(const Expr& expr, Scope* scope);
  BoundSelect bindOneColumn(const Expr& expr, Scope* scope);

  // binder_extreme.cpp: empty where the subquery is left as it is.
  std::string extremeByKey(const SelectStatement& select, Scope* around);

  // binder_function.cpp
  BoundExpr bindFunction(const Expr& expr, Scope* scope);
  BoundExpr bindAggregate(const Expr& expr, Scope* from);
  static Scope* scopeOf(const Expr& column, Scope* scope);
  static Scope* aggregateScope(const Expr& expr, Scope* scope);
  static bool aggregatesItself(const Expr& expr, Scope& scope);
  std::optional<BoundExpr> bindSystemFunction(const Expr& expr, const std::string& name, Scope* scope);

  // binder_window.cpp
  BoundExpr bindWindow(const Expr& expr, Scope* scope);
  BoundExpr windowFunction(const Expr& expr, Scope* scope);
  std::string windowTerms(const Expr& expr, std::size_t from, std::size_t to, Scope* scope);

  // binder_select.cpp
  BoundSelect bindSelect(const SelectStatement& select, Scope* parent, const CoreShape& shape);
  struct BoundCore;
  static bool namesOuterColumn(const BoundCore& core);
  void bindCore(const SelectStatement& select, std::size_t index, Scope* parent, const CoreShape& shape,
                BoundCore& out);
  void gather(BoundCore& out);
  static std::string gatheredSql(const BoundCore& core);
  void sortBeforeAssigning(const SelectStatement& select, BoundCore& out);
  void bindItems(const SelectCore& core, const CoreShape& shape, BoundCore& out);
  void expandStar(const Expr& star, const CoreShape& shape, int surplus, BoundCore& out);
  std::string orderBy(const SelectStatement& select, BoundCore& core, bool outputOnly);
  std::string orderTerm(const OrderItem& item, BoundCore& core, bool outputOnly);
  std::vector<BoundCore> bindCores(const SelectStatement& select, Scope* parent, const CoreShape& shape);
  std::vector<Type> outputColumns(const std::vector<BoundCore>& cores, const std::vector<SetOp>& ops,
                                  BoundSelect& bound);
  std::string coreSql(const BoundCore& core, const std::vector<Type>& types, const CoreShape& shape);

  // binder_from.cpp
  struct FromPiece {
    std::string sql;
    bool compound = false;  // has joins
    bool outer = false;     // has RIGHT or FULL joins, so that it cannot be flattened into a list
  };
  std::string storedName(const ObjectName& name) const;
  FromPiece bindTableSource(const TableSource& source, Scope& scope);
  FromPiece bindJoin(const TableSource& source, Scope& scope);
  std::string bindOn(const Expr& on, Scope& scope, std::size_t first, std::size_t middle);
  FromPiece bindNamed(const TableSource& source, Scope& scope);
  FromPiece bindDerived(const TableSource& source, Scope& scope);
  // A query in FROM under the name `title`, which messages use, and `alias`, which may be empty.
  FromPiece addDerived(BoundSelect select, const std::string& title, const std::string& alias,
                       const std::vector<std::string>& columns, Scope& scope);

  // binder_common.cpp
  struct CommonEntry {
    const CommonTable* table;
    std::size_t first;                  // of those that it may name
    std::string handle;                 // while its recursive part is bound: its name in the SQLite text
    std::vector<ResultColumn> columns;  // and what it has
    std::string level;                  // where the part has its level from
  };
  int findCommon(const ObjectName& name) const;  // -1 when there is none
  FromPiece bindCommon(const TableSource& at, std::size_t index, Scope& scope);
  FromPiece bindRecursiveReference(const TableSource& at, CommonEntry& entry, Scope& scope);
  BoundSelect bindRecursive(std::size_t index);
  std::string recursiveMember(std::size_t index, std::size_t member);
  static void addTableColumns(const TableInfo& table, const std::string& database, Source& source);
  std::shared_ptr<const Batch> viewBatch(const ViewInfo& view) const;
  // binder_view_target.cpp
  void bindUpdatable(const ObjectName& name, const std::string& database, Source& source);
  void bindViewTarget(const ViewInfo& view, const std::string& database, Source& source);
  std::string bindView(const ViewInfo& view, const std::string& database, Source& source, const Scope& scope);
  bool bindSystemTable(const std::string& database, const ObjectName& name, Source& source, std::string& sql);
  const TableInfo* pseudoTable(const ObjectName& name, std::string& sql) const;
  std::string newHandle() { return "t" + std::to_string(++handles_); }

  BindContext context_;
  std::vector<ParameterSource> parameters_;
  std::set<std::string> databases_;
  std::vector<std::shared_ptr<const DatabaseCatalog>> catalogs_;  // keeps TableInfo pointers alive
  std::vector<std::unique_ptr<Expr>> owned_;
  int handles_ = 0;
  int viewDepth_ = 0;
  bool outerJoins_ = false;  // the statement has RIGHT or FULL joins
  bool throughViews_ = true;
  bool viewQuery_ = false;
  std::deque<CommonEntry> common_;
  std::size_t commonFrom_ = 0, commonTo_ = 0;  // those that may be named now
  int commonUses_ = 0, commonDepth_ = 0;
  int maxRecursion_ = 100;
  int lazy_ = 0;  // > 0 inside a branch that may never run: conversions must not fail beforehand
  bool stepwise_ = false;
  std::vector<int> stepwiseSlots_;
};

// The value with the collation that its comparisons have.
std::string withCollation(const BoundExpr& expr);
Error notSortable();  // 306
// "database.owner.object" as far as the parts were written.
std::string written(const ObjectName& name);
// SQLite text of a name: "a""b".
std::string quoteName(std::string_view name);
// True when the trees mean the same in `scope` (columns by what they resolve to is left to the caller).
bool sameExpr(const Expr& left, const Expr& right);
bool containsAggregate(const Expr& expr);
// Every column that the expression names, those of subqueries aside.
void forEachColumn(const Expr& expr, const std::function<void(const Expr&)>& action);
// A grouped query with a subquery that looks at its aggregates: on the left of ANY and ALL, or inside.
bool subqueriesAskAggregates(const SelectStatement& select, const SelectCore& core);
bool containsSubquery(const Expr& expr);
// Ends a statement whose SQLite text has multiplied beyond reason.
void requireReasonable(const std::string& sql);
[[noreturn]] void throwTooLarge();  // 8623
bool isAggregateName(std::string_view foldedName);
bool isRankingName(std::string_view foldedName);  // ROW_NUMBER and its kin, which stand before OVER only
// 8120 and its kin: a column that is neither grouped by nor aggregated.
Error ungroupedColumn(const Scope& scope, const Source& source, const SourceColumn& column);
// 8158, 8159: a list of column names has more or fewer names than the query `name` has columns.
Error columnListError(const std::string& name, bool more);

}  // namespace engine
