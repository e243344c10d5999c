#include <algorithm>

#include "engine/execute/constraint_plan.h"
#include "engine/execute/executor_temporary.h"
#include "engine/language.h"

namespace engine {
namespace {

constexpr int nestingLimit = 32;
constexpr std::size_t keptBatch = 1 << 20;  // the plan of a longer one goes with it

}  // namespace

Executor::Executor(Store& store, SessionContext& context, std::atomic<bool>& cancelled)
    : store_(store), context_(context), cancelled_(cancelled), rights_(store, context) {
  store_.setCancelled(&cancelled_);
  registerSessionFunctions();
}

Executor::~Executor() {
  rollbackAll();
}

Executor::StatementScope::StatementScope(Executor& executor)
    : executor_(executor), outermost_(!executor.inStatement_) {
  if (!outermost_) return;
  try {
    executor_.store_.beginStatement();
    executor_.refuseLostTransaction();
  } catch (const Error&) {
    executor_.store_.endStatement();
    executor_.forgetLostTransaction();
    throw;
  }
  executor_.inStatement_ = true;
  executor_.store_.functions().statementTime = 0;
}

bool Executor::hasLostTransaction() const {
  return levels_ > 0 && !store_.inTransaction();
}

// A stop of the service rolls back what is open between two statements. What follows must not run as if
// the transaction still stood.
void Executor::refuseLostTransaction() const {
  if (!hasLostTransaction()) return;
  // KILL does so, too, after it has called off what runs.
  refuseCancelled();
  throw BatchError(Error(3971,
                         "The server failed to resume the transaction. It was rolled back when the service "
                         "stopped."));
}

void Executor::refuseCancelled() const {
  if (cancelled_.load(std::memory_order_relaxed)) throw BatchError(Error(3617, "The query was cancelled."));
}

void Executor::forgetLostTransaction() {
  if (!hasLostTransaction()) return;
  levels_ = userTransactions_ = 0;
  savepoints_.clear();
  temporaryTables_.clear();
}

Executor::StatementScope::~StatementScope() {
  if (!outermost_) return;
  executor_.inStatement_ = false;
  executor_.store_.endStatement();
}

Executor::Transaction::Transaction(Executor& executor) : executor_(executor), level_(executor.levels_) {
  executor_.store_.begin();
  ++executor_.levels_;
}

void Executor::Transaction::commit() {
  while (executor_.levels_ >
         level_) {  // none: a ROLLBACK inside a trigger has ended it; more: savepoints in it
    executor_.store_.commit();
    --executor_.levels_;
  }
  executor_.forgetSavepoints();
  done_ = true;
}

Executor::Transaction::~Transaction() {
  if (done_) return;
  while (executor_.levels_ > level_) {
    --executor_.levels_;
    try {
      executor_.store_.rollback();
    } catch (const Error&) {
      // SQLite has undone the transaction by itself (full disk, broken file).
    }
  }
  executor_.forgetSavepoints();
  executor_.temporaryTables_.clear();
}

void Executor::rollbackAll() noexcept {
  const bool open = levels_ > 0;
  try {
    std::optional<StatementScope> scope;
    if (open) scope.emplace(*this);
    const std::vector<KeptRows> kept = open ? keepTableVariables() : std::vector<KeptRows>();
    while (levels_ > 0) {
      --levels_;
      store_.rollback();
    }
    restoreTableVariables(kept);
  } catch (const Error&) {
    levels_ = 0;
  }
  userTransactions_ = 0;
  committed_ = doomed_ = false;
  savepoints_.clear();
  if (open) temporaryTables_.clear();
}

std::shared_ptr<Plan> Executor::makePlan(Batch batch) const {
  auto plan = std::make_shared<Plan>();
  plan->variables = collectVariables(batch.statements);
  plan->structural = batch.structural;
  plan->batch = std::move(batch);
  return plan;
}

namespace {

void collectArguments(const Statement& statement, std::vector<std::string>& names) {
  if (const auto* exec = std::get_if<ExecStatement>(&statement.node)) {
    for (const ExecArgument& argument : exec->args) names.push_back(foldName(argument.name));
  } else if (const auto* block = std::get_if<BlockStatement>(&statement.node)) {
    for (const StatementPtr& inner : block->body) collectArguments(*inner, names);
  } else if (const auto* branch = std::get_if<IfStatement>(&statement.node)) {
    collectArguments(*branch->then, names);
    if (branch->otherwise) collectArguments(*branch->otherwise, names);
  } else if (const auto* loop = std::get_if<WhileStatement>(&statement.node)) {
    collectArguments(*loop->body, names);
  } else if (const auto* attempt = std::get_if<TryStatement>(&statement.node)) {
    for (const StatementPtr& inner : attempt->body) collectArguments(*inner, names);
    for (const StatementPtr& inner : attempt->handler) collectArguments(*inner, names);
  }
}

// What a plan may depend on; a long text is never among it (Plan::fits).
std::vector<Literal> shortLiterals(const std::vector<Literal>& literals) {
  std::vector<Literal> out;
  out.reserve(literals.size());
  for (const Literal& literal : literals)
    out.push_back(literal.text.size() <= longLiteral ? literal : Literal{literal.kind, {}, literal.ordinal});
  return out;
}

constexpr const char* tableWords[] = {"from", "join", "into", "insert", "update", "delete"};

// Every variable of the batch must be declared in it; names of procedure arguments are none.
void checkVariables(const std::vector<Token>& tokens, const std::vector<StatementPtr>& statements,
                    const VariableTable& variables) {
  std::vector<std::string> arguments;
  for (const StatementPtr& statement : statements) collectArguments(*statement, arguments);
  for (const Token& token : tokens) {
    if (token.kind != TokenKind::Variable || variables.find(token.source) >= 0 ||
        variables.hasTable(token.source))
      continue;
    if (std::find(arguments.begin(), arguments.end(), foldName(token.source)) != arguments.end()) continue;
    const Token* before = &token == tokens.data() ? nullptr : &token - 1;
    const bool table =
        before && std::any_of(std::begin(tableWords), std::end(tableWords),
                              [&](const char* word) { return foldName(before->source) == word; });
    Error error(table ? 1087 : 137,
                std::string("Must declare the ") + (table ? "table" : "scalar") + " variable \"" +
                    std::string(token.source) + "\".",
                15);
    error.setLine(token.line);
    throw error;
  }
}

}  // namespace

std::shared_ptr<Plan> Executor::planFor(std::string_view text, std::vector<Literal>& literals) {
  const std::vector<Token> tokens = tokenize(text);
  std::string key = planKey(tokens, literals) + '\n' + foldName(context_.database);
  if (nesting_ > 0 || execDepth_ > 1)
    key += '\n' + std::to_string(nesting_) + ' ' + std::to_string(execDepth_);
  if (auto plan = plans_.find(key, literals)) return plan;
  auto plan = makePlan(parseTokens(text, tokens));
  plan->literals = shortLiterals(literals);
  const Statement* first = plan->batch.statements.empty() ? nullptr : plan->batch.statements[0].get();
  if (const auto* trigger = first ? std::get_if<CreateTriggerStatement>(&first->node) : nullptr) {
    checkVariables(tokens, trigger->body, collectVariables(trigger->body));
  } else if (const auto* procedure = first ? std::get_if<CreateProcedureStatement>(&first->node) : nullptr) {
    checkVariables(tokens, procedure->body, procedureVariables(*procedure));
  } else {
    checkVariables(tokens, plan->batch.statements, plan->variables);
  }
  if (text.size() <= keptBatch) plans_.add(key, plan);
  return plan;
}

namespace {

// What declares the parameters, on the batch's own first line, so that the lines of errors stay.
std::string declaration(const std::vector<Parameter>& parameters) {
  std::string text;
  for (const Parameter& parameter : parameters) {
    text += text.empty() ? "DECLARE " : ",";
    text += parameter.name + ' ';
    if (isLongText(parameter.type.id))
      text += parameter.type.id == TypeId::Text ? "VARCHAR(MAX)" : "NVARCHAR(MAX)";
    else
      text += describe(parameter.type.id == TypeId::Null ? Type{TypeId::Int} : parameter.type);
  }
  return text.empty() ? text : text + ' ';
}

}  // namespace

void Executor::run(std::string_view text, ResultSink& sink) {
  runBatch(text, nullptr, sink);
}

void Executor::run(std::string_view text, std::vector<Parameter>& parameters, ResultSink& sink) {
  runBatch(declaration(parameters) + std::string(text), &parameters, sink);
}

std::vector<ResultColumn> Executor::describe(std::string_view text,
                                             const std::vector<Parameter>& parameters) {
  std::vector<Literal> literals;
  Frame frame;
  frame.plan = planFor(declaration(parameters) + std::string(text), literals);
  frame.literals = &literals;
  frame.values.resize(frame.plan->variables.variables.size());
  struct Restore {
    Frame*& place;
    Frame* frame;
    ~Restore() { place = frame; }
  } restore{frame_, frame_};
  frame_ = &frame;
  if (!frame.plan->variables.tables.empty()) return {};
  for (const StatementPtr& statement : frame.plan->batch.statements) {
    if (std::holds_alternative<DeclareStatement>(statement->node)) continue;
    const auto* select = std::get_if<SelectPtr>(&statement->node);
    if (!select || (*select)->cores.front().into) break;
    StatementScope scope(*this);
    const CompiledQuery& query =
        compiled<CompiledQuery>(select->get(), [&] { return compileQuery(**select); });
    if (!query.slots.empty()) break;
    return query.columns;
  }
  return {};
}

void Executor::reset(const std::string& database, bool keepTransaction) {
  if (!keepTransaction) rollbackAll();
  afterLoss_ = noCount_ = abortOnError_ = implicit_ = repeatable_ = false;
  identityInsert_.clear();
  rowCount_ = lastError_ = 0;
  identity_ = topIdentity_ = {};
  const FunctionContext fresh;
  FunctionContext& now = store_.functions();
  if (now.dateFormat != fresh.dateFormat) forgetConstants();
  now.dateFormat = fresh.dateFormat;
  now.dateFirst = fresh.dateFirst;
  store_.setLockTimeout(-1);
  if (store_.hasTemporary()) {
    StatementScope scope(*this);
    std::vector<std::string> names;
    for (const auto& [folded, table] : store_.temporaryCatalog()->tables) names.push_back(table->name);
    dropTemporaries(names);
  }
  if (context_.database == database) return;
  StatementScope scope(*this);
  store_.useDatabase(database);
  context_.database = database;
}

void Executor::runBatch(std::string_view text, std::vector<Parameter>* parameters, ResultSink& sink) {
  if (++execDepth_ > nestingLimit) {
    --execDepth_;
    throw Error(217,
                "Maximum stored procedure, function, trigger, or view nesting level exceeded (limit 32).");
  }
  struct Restore {
    Executor& executor;
    ResultSink* sink;
    Frame* frame;
    ~Restore() {
      executor.sink_ = sink;
      executor.frame_ = frame;
      --executor.execDepth_;
    }
  } restore{*this, sink_, frame_};
  const bool outermost = frame_ == nullptr;
  if (outermost) firstError_.reset();

  std::vector<Literal> literals;
  Frame frame;
  frame.plan = planFor(text, literals);
  frame.literals = &literals;
  frame.values.resize(frame.plan->variables.variables.size());
  const auto place = [&](const Parameter& parameter) -> Datum& {
    return frame.values.at(static_cast<std::size_t>(frame.plan->variables.find(parameter.name)));
  };
  frame.triesAround = tries_;
  if (parameters)
    for (const Parameter& parameter : *parameters) place(parameter) = parameter.value;
  if (restore.frame) {
    frame.triggerId = restore.frame->triggerId;
    frame.triggerDatabase = restore.frame->triggerDatabase;
  }
  sink_ = &sink;
  frame_ = &frame;
  // What a batch within another one, or one with parameters, makes of temporary tables goes at its end.
  const TemporaryScope temporaries(*this, frame, !outermost || parameters);
  try {
    for (const StatementPtr& statement : frame.plan->batch.statements)
      if (runStatement(*statement) == Flow::Return) break;
  } catch (const BatchError&) {
    if (!outermost) throw;
    rollbackAll();
    if (!firstError_) throw;
  } catch (const Error&) {
    if (outermost && doomed_) rollbackAll();
    if (!outermost || !firstError_) throw;
  }
  if (outermost) endDoomed();
  if (outermost && firstError_) {
    const Error error = *firstError_;
    firstError_.reset();
    throw error;
  }
  if (parameters)
    for (Parameter& parameter : *parameters) parameter.value = place(parameter);
}

// A full disk or a write error may have taken the whole transaction with it.
bool Executor::noteLoss() {
  if (!store_.noteLoss() && !hasLostTransaction()) return false;
  afterLoss_ = afterLoss_ || userTransactions_ > 0;
  forgetLostTransaction();
  levels_ = userTransactions_ = 0;
  committed_ = false;
  return true;
}

// The client still means what it sends for its transaction. Stored one by one, it would be half of a whole:
// nothing is changed until the client has begun anew or ended what it takes to be open.
void Executor::refuseAfterLoss(const Statement& statement) {
  const auto& node = statement.node;
  if (std::holds_alternative<TransactionStatement>(node)) {
    afterLoss_ = false;
    return;
  }
  const auto* select = std::get_if<SelectPtr>(&node);
  const auto* exec = std::get_if<ExecStatement>(&node);
  const bool harmless =
      (select && !(*select)->cores.front().into) || std::holds_alternative<DeclareStatement>(node) ||
      std::holds_alternative<SetVariableStatement>(node) ||
      std::holds_alternative<SetOptionStatement>(node) || std::holds_alternative<PrintStatement>(node) ||
      std::holds_alternative<RaiserrorStatement>(node) || std::holds_alternative<ThrowStatement>(node) ||
      std::holds_alternative<UseStatement>(node) || std::holds_alternative<IfStatement>(node) ||
      std::holds_alternative<WhileStatement>(node) || std::holds_alternative<BlockStatement>(node) ||
      std::holds_alternative<TryStatement>(node) || std::holds_alternative<BreakStatement>(node) ||
      std::holds_alternative<ContinueStatement>(node) || std::holds_alternative<ReturnStatement>(node) ||
      (exec && exec->text);
  if (harmless) return;
  throw BatchError(Error(3998,
                         "Uncommittable transaction is detected at the end of the batch. The transaction is "
                         "rolled back."));
}

// Errors that end the batch travel on as exceptions; of the others the first is kept for its end.
void Executor::failed(const Error& error, const Statement& statement) {
  constexpr int lockNotGranted = 1222;
  const auto instead = error.number() == lockNotGranted ? store_.whyNotWaited() : std::nullopt;
  if (instead) return failed(*instead, statement);
  lastError_ = error.number();
  rowCount_ = 0;
  Error located(error);
  if (located.line() == 0) located.setLine(statement.line);
  if (frame_->triggerName && located.procedure().empty()) located.setProcedure(*frame_->triggerName);
  if (isCaught(error)) throwToCatch(error, located);
  if (noteLoss() || nesting_ > 0 || dynamic_cast<const BatchError*>(&error)) throw BatchError(located);
  if (endsTransaction(error.number())) rollbackAll();
  if (dynamic_cast<const ThrownError*>(&error)) throw ThrownError(located);
  if (abortOnError_ || endsBatch(error.number())) throw located;
  keepError(located);
}

Executor::Flow Executor::runStatement(const Statement& statement) {
  refuseCancelled();
  uncaughtIn_ = nullptr;
  try {
    if (afterLoss_ && nesting_ == 0) refuseAfterLoss(statement);
    return dispatch(statement);
  } catch (const Error& error) {
    if (abortOnError_ && nesting_ == 0 && !isCaught(error)) rollbackAll();
    failed(error, statement);
  }
  return Flow::Next;
}

Executor::Flow Executor::runIf(const IfStatement& statement) {
  bool holds = false;
  {
    StatementScope scope(*this);
    holds = evaluateCondition(*statement.condition);
  }
  rowCount_ = 0;
  lastError_ = 0;
  if (holds) return runStatement(*statement.then);
  return statement.otherwise ? runStatement(*statement.otherwise) : Flow::Next;
}

Executor::Flow Executor::runWhile(const WhileStatement& statement) {
  while (true) {
    refuseCancelled();
    {
      StatementScope scope(*this);
      if (!evaluateCondition(*statement.condition)) return Flow::Next;
    }
    const Flow flow = runStatement(*statement.body);
    if (flow == Flow::Break) return Flow::Next;
    if (flow == Flow::Return) return flow;
  }
}

Executor::Flow Executor::dispatch(const Statement& statement) {
  const auto& node = statement.node;
  if (const auto* branch = std::get_if<IfStatement>(&node)) return runIf(*branch);
  if (const auto* loop = std::get_if<WhileStatement>(&node)) return runWhile(*loop);
  if (const auto* block = std::get_if<BlockStatement>(&node)) return runStatements(block->body);
  if (const auto* attempt = std::get_if<TryStatement>(&node)) return runTry(*attempt);
  if (std::holds_alternative<BreakStatement>(node)) return Flow::Break;
  if (std::holds_alternative<ContinueStatement>(node)) return Flow::Continue;
  if (const auto* back = std::get_if<ReturnStatement>(&node)) return runReturn(*back), Flow::Return;
  if (const auto* exec = std::get_if<ExecStatement>(&node)) {
    const bool ran = runExec(*exec);
    if (!exec->text && !ran) lastError_ = 0;  // the last statement of a text or procedure has told its number
    return Flow::Next;
  }

  if (doomed_) refuseDoomed(statement);
  StatementScope scope(*this);
  beginImplicitly(statement);
  if (const auto* select = std::get_if<SelectPtr>(&node))
    runSelect(**select);
  else if (const auto* insert = std::get_if<InsertStatement>(&node))
    runInsert(*insert);
  else if (const auto* update = std::get_if<UpdateStatement>(&node))
    runUpdate(*update);
  else if (const auto* remove = std::get_if<DeleteStatement>(&node))
    runDelete(*remove);
  else if (const auto* declare = std::get_if<DeclareStatement>(&node))
    return runDeclare(*declare), Flow::Next;
  else if (const auto* set = std::get_if<SetVariableStatement>(&node))
    setVariable(set->name, *set->value), rowCount_ = 1;
  else if (const auto* option = std::get_if<SetOptionStatement>(&node))
    runSetOption(*option), rowCount_ = 0;
  else if (const auto* print = std::get_if<PrintStatement>(&node))
    runPrint(*print, statement.line), rowCount_ = 0;
  else if (const auto* raise = std::get_if<RaiserrorStatement>(&node))
    return runRaiserror(*raise, statement.line), Flow::Next;
  else if (const auto* thrown = std::get_if<ThrowStatement>(&node))
    runThrow(*thrown);
  else if (const auto* transaction = std::get_if<TransactionStatement>(&node))
    runTransaction(*transaction), rowCount_ = 0;
  else if (const auto* use = std::get_if<UseStatement>(&node))
    runUse(*use), rowCount_ = 0;
  else if (const auto* truncate = std::get_if<TruncateStatement>(&node))
    runTruncate(*truncate);
  else
    runDefinitionStatement(statement);
  lastError_ = 0;
  return Flow::Next;
}

}  // namespace engine
