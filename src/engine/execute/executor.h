// Runs the statements of one session.
#pragma once

#include <atomic>
#include <map>

#include "engine/execute/definition.h"
#include "engine/execute/rights.h"
#include "engine/function.h"
#include "engine/plan.h"
#include "engine/store.h"
#include "engine/value.h"

namespace engine {

// An error that ends the batch whatever its number says (raised inside a trigger, or after a ROLLBACK
// there).
class BatchError : public Error {
 public:
  explicit BatchError(const Error& error) : Error(error) {}
};

// What THROW raises: it ends the batch whatever its number says, but not the transaction.
class ThrownError : public Error {
 public:
  explicit ThrownError(const Error& error) : Error(error) {}
};

// What RAISERROR raises inside of TRY: it dooms no transaction.
class RaisedError : public Error {
 public:
  explicit RaisedError(const Error& error) : Error(error) {}
};

enum class TriggerEvent : std::uint8_t { Insert, Update, Delete };

// One running batch or trigger body.
struct Frame {
  std::shared_ptr<Plan> plan;
  const std::vector<Literal>* literals = nullptr;
  std::vector<Datum> values;  // by variable slot
  const TriggerTables* trigger = nullptr;
  const std::string* triggerName = nullptr;
  std::int64_t triggerId = 0;
  std::string triggerDatabase;
  TriggerEvent event = TriggerEvent::Insert;
  const std::vector<int>* updated = nullptr;  // columns that the UPDATE has set
  Datum scopeIdentity;
  int triesAround = 0;      // TRYs that it runs in
  bool stored = false;      // a trigger's or procedure's text: its literals are its own
  bool procedure = false;   // triggerName is a procedure's
  std::string chain;        // database whose objects are touched by their owner's right
  std::int64_t status = 0;  // what a procedure returns
};

// What a text such as db.dbo.t names; all null when there is no such table or view.
struct NamedObject {
  std::shared_ptr<const DatabaseCatalog> catalog;
  const TableInfo* table = nullptr;
  const ViewInfo* view = nullptr;
  std::string database, name;
};

struct CompiledRules;
struct RuleTest;

// Whether conditions or foreign keys ask for the rows that such a statement changes; `updated`: the ordinals
// of the columns that an UPDATE sets.
bool isConstrained(const TableInfo& table, const DatabaseCatalog& catalog, TriggerEvent event,
                   const std::vector<int>* updated = nullptr);

class Executor {
 public:
  Executor(Store& store, SessionContext& context, std::atomic<bool>& cancelled);
  ~Executor();

  void run(std::string_view text, ResultSink& sink);
  // The parameters hold afterwards what the batch has left in them; an error leaves them as they were.
  void run(std::string_view text, std::vector<Parameter>& parameters, ResultSink& sink);
  // Columns of the query that the text begins with; nothing runs. Empty when it begins with something else.
  std::vector<ResultColumn> describe(std::string_view text, const std::vector<Parameter>& parameters);
  // @@TRANCOUNT
  int openTransactions() const { return userTransactions_; }
  bool committed() const { return committed_; }  // how the last transaction of the user's own has ended
  // Settings as after a login; an open transaction is rolled back unless it is to be kept.
  void reset(const std::string& database, bool keepTransaction);
  const PlanStatistics& statistics() const { return plans_.statistics(); }
  void rollbackAll() noexcept;
  const std::string& database() const { return context_.database; }

 private:
  enum class Flow : std::uint8_t { Next, Break, Continue, Return };
  class StatementScope;
  class Transaction;

  // executor.cpp
  void runBatch(std::string_view text, std::vector<Parameter>* parameters, ResultSink& sink);
  std::shared_ptr<Plan> planFor(std::string_view text, std::vector<Literal>& literals);
  std::shared_ptr<Plan> makePlan(Batch batch) const;
  Flow runStatement(const Statement& statement);
  Flow dispatch(const Statement& statement);
  Flow runIf(const IfStatement& statement);
  Flow runWhile(const WhileStatement& statement);
  void failed(const Error& error, const Statement& statement);
  void keepError(const Error& error);
  bool hasLostTransaction() const;
  void refuseLostTransaction() const;
  void refuseCancelled() const;  // 3617
  void forgetLostTransaction();
  bool noteLoss();
  void refuseAfterLoss(const Statement& statement);
  bool resultsWanted() const { return !firstError_; }
  // What a statement has done goes to the client; statements of triggers stay among themselves.
  void told(Command command, bool counts) {
    if (resultsWanted() && nesting_ == 0) sink_->onCommand(command, rowCount_, counts && !noCount_);
  }

  // executor_try.cpp
  Flow runStatements(const std::vector<StatementPtr>& statements);
  Flow runTry(const TryStatement& statement);
  bool isCaught(const Error& error) const;
  bool leavesTrigger() const;
  void doom();
  void releaseLevels();
  [[noreturn]] void throwToCatch(const Error& error, const Error& located);
  [[noreturn]] void rethrow() const;
  Datum caughtValue(SystemValue value) const;
  void refuseDoomed(const Statement& statement) const;
  void endDoomed();
  void noteCompileError(const Error& error);

  // executor_temporary.cpp
  class TemporaryScope;
  struct KeptRows {
    const CreateTableStatement* table;
    std::string name;
    std::int64_t identity = 0;
    std::vector<std::vector<Datum>> rows;
  };
  struct LiveTable {
    const CreateTableStatement* table;
    std::string name;  // as it lies in tempdb
  };
  std::string tableSuffix() const;
  void makeTableVariable(const LiveTable& table);
  std::vector<KeptRows> keepTableVariables();
  void restoreTableVariables(const std::vector<KeptRows>& kept);
  void dropTemporaries(const std::vector<std::string>& names);

  // executor_control.cpp
  void runDeclare(const DeclareStatement& statement);
  void setVariable(const std::string& name, const Expr& value);
  void runSetOption(const SetOptionStatement& statement);
  void runPrint(const PrintStatement& statement, int line);
  void runRaiserror(const RaiserrorStatement& statement, int line);
  [[noreturn]] void runThrow(const ThrowStatement& statement);
  void beginTransaction();
  void commitTransaction();
  void saveTransaction(const std::string& name);
  void rollbackTo(const std::string& name);
  void forgetSavepoints();
  void runTransaction(const TransactionStatement& statement);
  void beginImplicitly(const Statement& statement);  // executor_implicit.cpp
  void runUse(const UseStatement& statement);
  bool runExec(const ExecStatement& statement);  // true: a procedure of the user's own
  void runDefinitionStatement(const Statement& statement);
  std::vector<ViewColumn> viewColumns(const CreateViewStatement& statement);
  void runTruncate(const TruncateStatement& statement);

  // executor_value.cpp
  Datum parameterValue(const ParameterSource& source);
  Datum systemValue(SystemValue value);
  const std::string* plainText(const ParameterSource& source) const;
  void bindParameters(Prepared& prepared);
  Datum evaluate(const Expr& expr, Type& type);
  bool evaluateCondition(const Expr& expr);
  CompiledValue& compiledValue(const Expr& expr, bool condition);
  void assign(int slot, const Datum& value, const Type& type);
  int variableSlot(const std::string& name) const;
  BindContext bindContext();
  void finishCompile(Compiled& compiled, const Binder& binder);
  template <typename T, typename Make>
  T& compiled(const void* node, Make make);

  // executor_query.cpp
  void runSelect(const SelectStatement& select);
  std::unique_ptr<CompiledQuery> compileQuery(const SelectStatement& select);
  void runAssignment(CompiledQuery& query);
  void deliver(CompiledQuery& query);
  void selectInto(const SelectStatement& select, const BoundSelect& bound, Binder& binder);
  std::vector<ColumnInfo> columnsFor(const SelectStatement& select, const BoundSelect& bound);

  // executor_insert.cpp
  void runInsert(const InsertStatement& insert);
  std::unique_ptr<CompiledInsert> compileInsert(const InsertStatement& insert);
  void runPrepared(Prepared& prepared, const DatabaseCatalog& catalog, const char* verb);
  void insertRows(CompiledInsert& plan, std::vector<std::int64_t>* rows);
  struct InsertShape;
  void insertColumns(const InsertStatement& insert, const Source& target, InsertShape& shape);
  std::string insertSource(const InsertStatement& insert, InsertShape& shape, Binder& binder);
  std::string insertValues(const InsertStatement& insert, InsertShape& shape, Binder& binder);
  std::string insertSelect(const InsertStatement& insert, InsertShape& shape, Binder& binder);
  std::string fillColumn(const InsertShape& shape, int column, Binder& binder);
  bool identityInsertOn(const std::string& database, const TableInfo& table) const;

  // executor_change.cpp
  void lockAhead(const ObjectName& target);
  void runUpdate(const UpdateStatement& update);
  void runDelete(const DeleteStatement& remove);
  std::unique_ptr<CompiledChange> compileUpdate(const UpdateStatement& update);
  std::unique_ptr<CompiledChange> compileDelete(const DeleteStatement& remove);
  struct ChangeShape;
  void bindChangeTarget(const ObjectName& target, const std::vector<std::unique_ptr<TableSource>>& from,
                        const Expr* where, const Expr* top, Action action, ChangeShape& shape,
                        Binder& binder);
  void bindAssignments(const UpdateStatement& update, ChangeShape& shape, Binder& binder);
  void finishChange(CompiledChange& plan, const ChangeShape& shape, Binder& binder, TriggerEvent event);
  void runChange(CompiledChange& plan, TriggerEvent event);
  void changeRows(CompiledChange& plan, TriggerEvent event);
  std::int64_t captureRows(CompiledChange& plan, const TriggerTables& tables, TriggerEvent event);
  void copyUpdated(const TriggerTables& tables);
  void detour(CompiledChange& plan);

  // executor_constraint.cpp
  void prepareViewCheck(Prepared& check, const Source& target, const TriggerTables& tables, Binder& binder);
  void testView(Prepared& check);
  struct Fired {  // tables of old and new rows that wait for their triggers
    TriggerTables tables;
    TriggerEvent event;
    const std::vector<int>* updated;
  };
  BoundStatement checkStatement(const TableInfo& table, const std::string& database, const std::string& rows,
                                const std::string& condition);
  void compileOwnRules(CompiledRules& rules, const TriggerTables& tables, const DatabaseCatalog& catalog);
  void compileStep(CompiledRules& rules, const TriggerTables& tables, TriggerEvent event,
                   const std::shared_ptr<const TableInfo>& child, const ForeignKeyInfo& key,
                   const std::shared_ptr<const DatabaseCatalog>& catalog);
  void compileReferences(CompiledRules& rules, const TriggerTables& tables, TriggerEvent event,
                         const std::shared_ptr<const DatabaseCatalog>& catalog);
  CompiledRules& rulesOf(const TriggerTables& tables, TriggerEvent event);
  void testRules(std::vector<RuleTest>& tests, const std::vector<int>* updated, const char* statement);
  void keepRules(const TriggerTables& tables, TriggerEvent event, const std::vector<int>* updated,
                 const char* statement, std::vector<Fired>& fired);
  void verifyRule(const std::string& database, const TableInfo& table, const CheckInfo* check,
                  const ForeignKeyInfo* key, bool rows);

  // executor_trigger.cpp
  std::vector<std::shared_ptr<const TriggerInfo>> triggersFor(const TableInfo& table,
                                                              const std::string& database,
                                                              TriggerEvent event);
  void makeTemporary(const std::string& name, const std::string& definition);
  TriggerTables triggerTables(std::shared_ptr<const TableInfo> table, const std::string& database);
  void clearTriggerTables(const TriggerTables& tables, TriggerEvent event);
  void copyInserted(const TriggerTables& tables, const std::vector<std::int64_t>& rows);
  void fire(const TriggerTables& tables, TriggerEvent event, const std::vector<int>* updated);
  void runTrigger(const TriggerInfo& trigger, const TriggerTables& tables, TriggerEvent event,
                  const std::vector<int>* updated);
  Prepared& internal(const std::string& sql);

  // session_functions.cpp
  void registerSessionFunctions();
  friend struct SessionFunctions;

  // property_functions.cpp
  NamedObject namedObject(const std::string& name);
  friend struct PropertyFunctions;

  // executor_procedure.cpp
  std::shared_ptr<const ProcedureInfo> findProcedure(const ObjectName& name, std::string& database);
  std::shared_ptr<Plan> procedurePlan(const ProcedureInfo& procedure, const std::string& database);
  bool runUserProcedure(const ExecStatement& statement);  // false: there is none of that name
  void runProcedureBody(const std::vector<StatementPtr>& body, Frame& frame, const std::string& database);
  void runReturn(const ReturnStatement& statement);
  void forgetConstants();
  Datum storedConstant(const Expr& expr, Type& type);

  // procedures.cpp
  friend class ProcedureCall;

  Store& store_;
  SessionContext& context_;
  std::atomic<bool>& cancelled_;
  Rights rights_;
  PlanCache plans_;
  ViewCache views_;
  ResultSink* sink_ = nullptr;
  Frame* frame_ = nullptr;
  std::unique_ptr<Error> firstError_;
  bool inStatement_ = false;

  std::int64_t rowCount_ = 0;
  int lastError_ = 0;
  Datum identity_;
  Datum topIdentity_;  // SCOPE_IDENTITY() outside of triggers
  bool noCount_ = false;
  bool abortOnError_ = false;
  bool implicit_ = false;       // SET IMPLICIT_TRANSACTIONS
  bool repeatable_ = false;     // an isolation level above READ COMMITTED
  std::string identityInsert_;  // folded "db.table" under SET IDENTITY_INSERT, or empty

  int userTransactions_ = 0;  // @@TRANCOUNT as BEGIN TRAN counts it
  bool committed_ = false;
  int levels_ = 0;  // open Store::begin()
  struct Savepoint {
    std::string name;  // folded
    int level;         // levels_ before it
    int nesting;       // of triggers
  };
  std::vector<Savepoint> savepoints_;
  bool afterLoss_ = false;             // the client does not know yet that its transaction is gone
  std::string transactionName_;        // of the outermost BEGIN TRAN, folded
  int tries_ = 0, triggerTries_ = 0;   // TRYs whose body runs; those around the running trigger
  std::vector<LiveTable> liveTables_;  // the table variables of all running batches
  std::vector<Error> caught_;          // by the CATCHes that run
  const Frame* uncaughtIn_ = nullptr;  // where the error on its way came up while a statement was compiled
  bool doomed_ = false;                // the transaction can only be rolled back
  int nesting_ = 0;
  int execDepth_ = 0;
  struct CachedTrigger {
    std::string text;
    std::shared_ptr<Plan> plan;
  };
  std::map<std::string, CachedTrigger> triggers_;    // by database, id and level
  std::map<std::string, CachedTrigger> procedures_;  // the same
  int procedureDepth_ = 0;
  struct TemporaryTable {
    std::shared_ptr<const TableInfo> table;  // looked at last; as long as it is the same, so is its shape
    std::string definition;                  // that it was made with
    std::string columns;                     // their names, a comma before each
  };
  std::map<std::string, TemporaryTable> temporaryTables_;
  std::map<std::string, std::unique_ptr<CompiledRules>> rules_;  // by the tables of rows and the event
  std::unordered_map<std::string, Prepared> internals_;          // statements of the executor's own
  struct IdentityRun {                                           // of the running INSERT
    const TableInfo* table = nullptr;
    std::string database;
    std::int64_t first = 0, last = 0, step = 1;
    bool used = false;
  };
  IdentityRun identityRun_;
};

template <typename T, typename Make>
T& Executor::compiled(const void* node, Make make) {
  std::unique_ptr<Compiled>& slot = frame_->plan->compiled[node];
  if (slot && (slot->stamp != store_.catalogStamp() || slot->database != context_.database)) slot.reset();
  if (!slot) {
    try {
      slot = make();
    } catch (const Error& error) {
      noteCompileError(error);
      throw;
    }
  }
  for (const std::string& database : slot->databases) store_.attach(database);
  return static_cast<T&>(*slot);
}

// All levels of Store::begin() between construction and commit(); undone without commit().
class Executor::Transaction {
 public:
  explicit Transaction(Executor& executor);
  ~Transaction();
  void commit();
  Transaction(const Transaction&) = delete;
  Transaction& operator=(const Transaction&) = delete;

 private:
  Executor& executor_;
  int level_;
  bool done_ = false;
};

// beginStatement() .. endStatement() of the outermost statement.
class Executor::StatementScope {
 public:
  explicit StatementScope(Executor& executor);
  ~StatementScope();
  StatementScope(const StatementScope&) = delete;
  StatementScope& operator=(const StatementScope&) = delete;

 private:
  Executor& executor_;
  bool outermost_;
};

}  // namespace engine
