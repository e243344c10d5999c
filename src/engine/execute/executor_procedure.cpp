// Stored procedures of the user's own.
//
// A procedure runs in its own database, with variables of its own and by its owner's right there. Its
// statements fail one by one as those of a batch do; what it has SET is as before when it returns.
#include <algorithm>

#include "engine/execute/executor_temporary.h"
#include "engine/language.h"
#include "engine/value.h"

namespace engine {

namespace {

constexpr int nestingLimit = 32;

struct Argument {
  Datum value;
  Type type;
  bool given = false, byDefault = false;
  int output = -1;  // slot of the caller's variable
};

std::string lower(std::string word) {
  return foldName(word);
}

// A value that does not become one of the parameter's type.
Error unfit(const Type& from, const Type& to) {
  return Error(
      8114, "Error converting data type " + lower(typeName(from.id)) + " to " + lower(typeName(to.id)) + ".");
}

Datum converted(const Datum& value, const Type& from, const Type& to, const ConvertContext& context) {
  if (value.isNull() || from == to) return value;
  try {
    return convert(value, from, to, 0, false, context);
  } catch (const Error& error) {
    static constexpr int conversions[] = {235, 241, 242, 244, 245, 248, 8114};
    const bool known =
        std::find(std::begin(conversions), std::end(conversions), error.number()) != std::end(conversions);
    if (!known) throw;
    throw unfit(from, to);
  }
}

std::size_t placeOf(const ExecArgument& argument, std::size_t position,
                    const CreateProcedureStatement& procedure) {
  const auto& parameters = procedure.parameters;
  if (argument.name.empty()) {
    if (position >= parameters.size())
      throw Error(8144,
                  "Procedure or function " + procedure.name.object + " has too many arguments specified.");
    return position;
  }
  for (std::size_t i = 0; i < parameters.size(); ++i)
    if (foldName(parameters[i].name) == foldName(argument.name)) return i;
  throw Error(8145, argument.name + " is not a parameter for procedure " + procedure.name.object + ".");
}

}  // namespace

std::shared_ptr<const ProcedureInfo> Executor::findProcedure(const ObjectName& name, std::string& database) {
  database = name.database.empty() ? context_.database : name.database;
  if (!isKnownOwner(name.owner) || !store_.databaseExists(database)) return nullptr;
  rights_.enter(database);
  return store_.catalog(database)->procedures.find(foldName(name.object));
}

// Its parsed text; one for each level that it may run on, for what is compiled names the level's own tables.
std::shared_ptr<Plan> Executor::procedurePlan(const ProcedureInfo& procedure, const std::string& database) {
  CachedTrigger& cached =
      procedures_[foldName(database) + "/" + std::to_string(procedure.id) + "/" + std::to_string(nesting_)];
  if (cached.plan && cached.text == procedure.text) return cached.plan;
  auto plan = makePlan(parseBatch(procedure.text));
  const auto& made = std::get<CreateProcedureStatement>(plan->batch.statements.at(0)->node);
  plan->variables = procedureVariables(made);
  cached = {procedure.text, plan};
  return plan;
}

bool Executor::runUserProcedure(const ExecStatement& statement) {
  std::string database;
  std::shared_ptr<const ProcedureInfo> procedure;
  std::shared_ptr<Plan> plan;
  std::vector<Argument> arguments;
  {
    StatementScope scope(*this);
    procedure = findProcedure(statement.procedure, database);
    if (!procedure) return false;
    const BindContext context = bindContext();
    if (foldName(context.chain) != foldName(database)) rights_.needExecute(database, procedure->name);
    plan = procedurePlan(*procedure, database);
    const auto& definition = std::get<CreateProcedureStatement>(plan->batch.statements.at(0)->node);
    arguments.resize(definition.parameters.size());
    std::size_t position = 0;
    bool named = false;
    for (const ExecArgument& each : statement.args) {
      if (each.name.empty() && named)
        throw Error(
            119,
            "Must pass parameter number " + std::to_string(position + 1) +
                " and subsequent parameters as '@name = value'. After the form '@name = value' has been "
                "used, all subsequent parameters must be passed in the form '@name = value'.",
            15);
      named = named || !each.name.empty();
      const std::size_t place = placeOf(each, position++, definition);
      Argument& argument = arguments[place];
      const ProcedureParameter& parameter = definition.parameters[place];
      if (argument.given)
        throw Error(8143, "Parameter '" + parameter.name + "' was supplied multiple times.");
      if (each.output && !parameter.output)
        throw Error(8162,
                    "The formal parameter \"" + parameter.name +
                        "\" was not declared as an OUTPUT parameter, but the actual parameter passed in "
                        "requested output.");
      argument.given = true;
      argument.byDefault = !each.value;
      if (each.value) argument.value = evaluate(*each.value, argument.type);
      if (each.output) argument.output = variableSlot(each.value->name);
    }
    for (std::size_t i = 0; i < arguments.size(); ++i) {
      const ProcedureParameter& parameter = definition.parameters[i];
      if (arguments[i].given && !arguments[i].byDefault) continue;
      if (!parameter.value)
        throw Error(201, "Procedure or function '" + procedure->name + "' expects parameter '" +
                             parameter.name + "', which was not supplied.");
      arguments[i].value = storedConstant(*parameter.value, arguments[i].type);
    }
    for (std::size_t i = 0; i < arguments.size(); ++i)
      arguments[i].value =
          converted(arguments[i].value, arguments[i].type, definition.parameters[i].type, store_.functions());
  }
  if (nesting_ + procedureDepth_ >= nestingLimit)
    throw ThrownError(Error(
        217, "Maximum stored procedure, function, trigger, or view nesting level exceeded (limit 32)."));

  Frame frame;
  frame.plan = plan;
  static const std::vector<Literal> none;
  frame.literals = &none;
  frame.values.resize(plan->variables.variables.size());
  for (std::size_t i = 0; i < arguments.size(); ++i) frame.values[i] = arguments[i].value;
  frame.stored = true;
  frame.procedure = true;
  frame.triesAround = tries_;
  frame.triggerName = &procedure->name;
  frame.chain = database;
  frame.triggerId = frame_->triggerId;
  frame.triggerDatabase = frame_->triggerDatabase;
  frame.triesAround = tries_;
  const int transactions = userTransactions_;
  runProcedureBody(std::get<CreateProcedureStatement>(plan->batch.statements.at(0)->node).body, frame,
                   database);
  const auto& parameters = plan->variables.variables;
  for (std::size_t i = 0; i < arguments.size(); ++i)
    if (arguments[i].output >= 0) assign(arguments[i].output, frame.values[i], parameters[i].type);
  if (!statement.returnVariable.empty())
    assign(variableSlot(statement.returnVariable), frame.status, {TypeId::Int});
  // What it has begun without a BEGIN TRANSACTION is the client's to end.
  const bool implicitly = implicit_ && transactions == 0;
  if (nesting_ == 0 && userTransactions_ != transactions && !implicitly)
    keepError(Error(266,
                    "Transaction count after EXECUTE indicates a mismatching number of BEGIN and COMMIT "
                    "statements. Previous count = " +
                        std::to_string(transactions) +
                        ", current count = " + std::to_string(userTransactions_) + "."));
  return true;
}

void Executor::runProcedureBody(const std::vector<StatementPtr>& body, Frame& frame,
                                const std::string& database) {
  struct Restore {
    Executor& executor;
    Frame* frame;
    std::string database, identityInsert;
    bool noCount, abortOnError;
    int dateFirst;
    decltype(FunctionContext::dateFormat) dateFormat;
    ~Restore() {
      --executor.procedureDepth_;
      executor.frame_ = frame;
      executor.context_.database = database;
      executor.identityInsert_ = identityInsert;
      executor.noCount_ = noCount;
      executor.abortOnError_ = abortOnError;
      FunctionContext& now = executor.store_.functions();
      now.dateFirst = dateFirst;
      if (now.dateFormat == dateFormat) return;
      now.dateFormat = dateFormat;
      executor.forgetConstants();
    }
  } restore{*this,
            frame_,
            context_.database,
            identityInsert_,
            noCount_,
            abortOnError_,
            store_.functions().dateFirst,
            store_.functions().dateFormat};
  ++procedureDepth_;
  frame_ = &frame;
  context_.database = store_.database(database).name;
  const TemporaryScope temporaries(*this, frame, true);
  try {
    for (const StatementPtr& statement : body)
      if (runStatement(*statement) == Flow::Return) break;
  } catch (const BatchError&) {
    throw;
  } catch (const RaisedError&) {
    throw;
  } catch (const Error& error) {
    throw ThrownError(error);  // what has ended the procedure ends its callers, whose settings may be others
  }
}

// Constants of stored texts were read under another order of dates.
void Executor::forgetConstants() {
  plans_.clear();
  if (nesting_ > 0) return;
  triggers_.clear();
  procedures_.clear();
}

// RETURN value, in a procedure.
void Executor::runReturn(const ReturnStatement& statement) {
  if (!statement.value) return;
  StatementScope scope(*this);
  Type type;
  const Datum value = evaluate(*statement.value, type);
  if (value.isNull()) {
    if (resultsWanted())
      sink_->onInfo(
          Error(282,
                "The '" + *frame_->triggerName +
                    "' procedure attempted to return a status of NULL, which is not allowed. A status of 0 "
                    "will be returned instead.",
                10));
    return;
  }
  frame_->status = convert(value, type, {TypeId::Int}).integer();
}

// The value of a parameter's default, which is a constant.
Datum Executor::storedConstant(const Expr& expr, Type& type) {
  BindContext context = bindContext();
  context.fixedLiterals = true;
  Binder binder(context);
  const BoundExpr bound = binder.bindValue(expr, nullptr);
  type = bound.type;
  Prepared value(store_.handle(), binder.finish("SELECT " + bound.sql));
  bindParameters(value);
  return value.step() ? columnDatum(value.get(), 0) : Datum();
}

}  // namespace engine
