// TRY .. CATCH. An error that a TRY around it catches ends its statement, and maybe the batches and triggers
// on the way out, and the CATCH goes on. Where it would have undone the transaction, the transaction is
// doomed instead: it can only be rolled back.
#include <algorithm>
#include <array>
#include <optional>

#include "engine/execute/executor.h"
#include "engine/language.h"

namespace engine {
namespace {

// What nobody catches: the end of the connection, of the service, or of the batch by its client.
bool isBeyond(const Error& error) {
  constexpr int fatal = 20;
  constexpr std::array numbers = {596, 3617, 3971, 17142};
  return error.severity() >= fatal ||
         std::find(numbers.begin(), numbers.end(), error.number()) != numbers.end();
}

template <typename... Nodes>
bool holdsAny(const Statement& statement) {
  return (std::holds_alternative<Nodes>(statement.node) || ...);
}

bool writes(const Statement& statement) {
  return holdsAny<InsertStatement, UpdateStatement, DeleteStatement, TruncateStatement, CreateTableStatement,
                  AlterTableStatement, CreateIndexStatement, DropStatement, CreateDatabaseStatement,
                  CreateViewStatement, CreateTriggerStatement, CreateProcedureStatement>(statement);
}

}  // namespace

// Names and types are wrong whatever the rows are; a lock or a damaged page may come up while they are looked
// up.
void Executor::noteCompileError(const Error& error) {
  constexpr std::array running = {823, 824, 945, 1205, 1222};
  if (endsBatch(error.number()) && std::find(running.begin(), running.end(), error.number()) == running.end())
    uncaughtIn_ = frame_;
}

// What is wrong with a statement itself (names, types) is caught by those around its batch or trigger only.
bool Executor::isCaught(const Error& error) const {
  if (isBeyond(error)) return false;
  return uncaughtIn_ == frame_ ? frame_->triesAround > 0 : tries_ > 0;
}

bool Executor::leavesTrigger() const {
  return nesting_ > 0 &&
         (tries_ == triggerTries_ || (uncaughtIn_ == frame_ && frame_->triesAround <= triggerTries_));
}

void Executor::doom() {
  doomed_ = userTransactions_ > 0 || nesting_ > 0;
}

// `located`: told where it came up. Throws it on its way to the CATCH.
void Executor::throwToCatch(const Error& error, const Error& located) {
  constexpr int deadlock = 1205;
  const int open = userTransactions_;
  const bool lost = noteLoss();
  if (lost) {
    // The client's transaction is gone; as long as the CATCH has not said so, it counts as one to roll back.
    userTransactions_ = open;
    afterLoss_ = false;
  }
  const bool raised = dynamic_cast<const RaisedError*>(&error) != nullptr;
  const bool ends = lost || dynamic_cast<const BatchError*>(&error) || leavesTrigger();
  if (ends || (!raised && (nesting_ > 0 || abortOnError_ || endsTransaction(error.number())))) doom();
  if (nesting_ == 0 && error.number() == deadlock) releaseLevels();
  if (ends) throw BatchError(located);
  if (raised) throw RaisedError(located);
  if (dynamic_cast<const ThrownError*>(&error)) throw ThrownError(located);
  throw located;
}

// Undoes everything in the store; the transaction still counts as open.
void Executor::releaseLevels() {
  const int open = userTransactions_;
  rollbackAll();
  userTransactions_ = open;
  doom();
}

Executor::Flow Executor::runStatements(const std::vector<StatementPtr>& statements) {
  for (const StatementPtr& inner : statements)
    if (const Flow flow = runStatement(*inner); flow != Flow::Next) return flow;
  return Flow::Next;
}

Executor::Flow Executor::runTry(const TryStatement& statement) {
  struct Count {
    int& tries;
    explicit Count(int& counted) : tries(counted) { ++tries; }
    ~Count() { --tries; }
  };
  std::optional<Error> caught;
  try {
    const Count count(tries_);
    return runStatements(statement.body);
  } catch (const Error& error) {
    if (isBeyond(error) || uncaughtIn_ == frame_) throw;
    caught.emplace(error);
  }
  uncaughtIn_ = nullptr;
  if (userTransactions_ == 0 && nesting_ == 0) doomed_ = false;
  struct Caught {
    std::vector<Error>& list;
    ~Caught() { list.pop_back(); }
  } scope{caught_};
  lastError_ = caught->number();
  caught_.push_back(std::move(*caught));
  return runStatements(statement.handler);
}

// THROW without arguments, which the parser lets stand in a CATCH only.
void Executor::rethrow() const {
  throw ThrownError(caught_.back());
}

Datum Executor::caughtValue(SystemValue value) const {
  if (value == SystemValue::TransactionState)
    return doomed_ ? -1 : userTransactions_ > 0 || nesting_ > 0 ? 1 : 0;
  if (caught_.empty()) return {};
  const Error& error = caught_.back();
  switch (value) {
    case SystemValue::ErrorNumber:
      return error.number();
    case SystemValue::ErrorSeverity:
      return error.severity();
    case SystemValue::ErrorState:
      return error.state();
    case SystemValue::ErrorLine:
      return error.line();
    case SystemValue::ErrorProcedure:
      return error.procedure().empty() ? Datum() : Datum(error.procedure());
    default:
      return std::string(error.what());
  }
}

// Nothing can be written in a doomed transaction.
void Executor::refuseDoomed(const Statement& statement) const {
  const auto& node = statement.node;
  const auto* select = std::get_if<SelectPtr>(&node);
  if (const auto* transaction = std::get_if<TransactionStatement>(&node)) {
    const bool back = transaction->action == TransactionAction::Rollback;
    const std::string name = foldName(transaction->name);
    if (back && !name.empty() && name != transactionName_)
      throw Error(
          3931,
          "The current transaction cannot be committed and cannot be rolled back to a savepoint. Roll back "
          "the entire transaction.");
    if (back || transaction->action == TransactionAction::Begin) return;
  } else if (select ? !(*select)->cores.front().into : !writes(statement)) {
    return;
  }
  throw Error(
      3930,
      "The current transaction cannot be committed and cannot support operations that write to the log "
      "file. Roll back the transaction.");
}

// A batch that leaves a doomed transaction behind.
void Executor::endDoomed() {
  if (!doomed_) return;
  rollbackAll();
  if (firstError_) return;
  throw Error(
      3998, "Uncommittable transaction is detected at the end of the batch. The transaction is rolled back.");
}

}  // namespace engine
