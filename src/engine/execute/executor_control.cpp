#include <algorithm>
#include <array>
#include <set>

#include "engine/execute/ddl.h"
#include "engine/execute/executor.h"
#include "engine/execute/procedures.h"
#include "engine/language.h"

namespace engine {
namespace {

// Options whose setting changes nothing here, because the server's way is the only one.
constexpr std::array acceptedOptions = {
    "ANSI_NULLS",         "ANSI_PADDING",       "ANSI_WARNINGS",
    "ANSI_NULL_DFLT_ON",  "ANSI_NULL_DFLT_OFF", "ANSI_DEFAULTS",
    "ARITHABORT",         "ARITHIGNORE",        "CURSOR_CLOSE_ON_COMMIT",
    "NUMERIC_ROUNDABORT", "QUOTED_IDENTIFIER",  "TEXTSIZE",
    "LANGUAGE",           "STATISTICS",         "DEADLOCK_PRIORITY",
    "TRANSACTION",
};

struct FixedOption {
  const char* name;
  const char* value;  // the only one that is understood
};
constexpr FixedOption fixedOptions[] = {
    {"CONCAT_NULL_YIELDS_NULL", "ON"},
    {"ROWCOUNT", "0"},
    {"FMTONLY", "OFF"},
    {"NOEXEC", "OFF"},
    {"PARSEONLY", "OFF"},
};

bool isOn(const SetOptionStatement& statement) {
  return statement.value == "ON";
}

// %d %i %u %o %x %X %s %% with flags and width, as RAISERROR knows them.
std::string formatMessage(const std::string& pattern, const std::vector<std::pair<Datum, Type>>& arguments) {
  std::string text;
  std::size_t next = 0;
  for (std::size_t i = 0; i < pattern.size(); ++i) {
    if (pattern[i] != '%' || i + 1 >= pattern.size()) {
      text += pattern[i];
      continue;
    }
    std::size_t at = i + 1;
    while (at < pattern.size() && (std::isdigit(static_cast<unsigned char>(pattern[at])) ||
                                   std::string_view("-+ #.").find(pattern[at]) != std::string_view::npos))
      ++at;
    const std::string flags = pattern.substr(i + 1, at - i - 1).substr(0, 8);
    if (at < pattern.size() && (pattern[at] == 'l' || pattern[at] == 'h')) ++at;
    const char kind = at < pattern.size() ? pattern[at] : '%';
    i = at;
    if (kind == '%') {
      text += '%';
      continue;
    }
    const bool known = next < arguments.size();
    const Datum value = known ? arguments[next].first : Datum();
    const Type type = known ? arguments[next].second : Type{};
    ++next;
    if (value.isNull()) {
      text += "(null)";
    } else if (kind == 's') {
      const std::string shown = displayText(value, type);
      const int width = std::clamp(std::abs(std::atoi(flags.c_str())), 0, 400);
      const std::string blanks(std::max(0, width - static_cast<int>(characterCount(shown))), ' ');
      text += flags.starts_with('-') ? shown + blanks : blanks + shown;
    } else if (value.isInteger() && std::string_view("diuoxX").find(kind) != std::string_view::npos) {
      char buffer[512];
      const std::string format = "%" + flags + "ll" + kind;
      std::snprintf(buffer, sizeof buffer, format.c_str(), static_cast<long long>(value.integer()));
      text += buffer;
    } else {
      throw Error(2786, "The data type of substitution parameter " + std::to_string(next) +
                            " does not match the expected type of the format specification.");
    }
  }
  return text;
}

// There are no messages of the user's own.
[[noreturn]] void failUnknownMessage(int id, int severity, int state) {
  constexpr int first = 13000, adHoc = 50000;
  if (id < first || id == adHoc)
    throw Error(2732,
                "Error number " + std::to_string(id) +
                    " is invalid. The number must be from 13000 through 2147483647 and it cannot be 50000.");
  throw Error(18054,
              "Error " + std::to_string(id) + ", severity " + std::to_string(severity) + ", state " +
                  std::to_string(state) +
                  " was raised, but no message with that error number was found in sys.messages. If error "
                  "is larger than 50000, make sure the user-defined message is added using "
                  "sp_addmessage.");
}

}  // namespace

void Executor::runDeclare(const DeclareStatement& statement) {
  for (const VariableDeclaration& variable : statement.variables)
    if (variable.value) setVariable(variable.name, *variable.value);
}

void Executor::setVariable(const std::string& name, const Expr& value) {
  const int slot = variableSlot(name);
  Type type;
  const Datum result = evaluate(value, type);
  assign(slot, result, type);
}

void Executor::runSetOption(const SetOptionStatement& statement) {
  const std::string& option = statement.option;
  if (option == "NOCOUNT") {
    noCount_ = isOn(statement);
  } else if (option == "XACT_ABORT") {
    abortOnError_ = isOn(statement);
  } else if (option == "IMPLICIT_TRANSACTIONS") {
    implicit_ = isOn(statement);
  } else if (option == "TRANSACTION ISOLATION LEVEL") {
    repeatable_ = !statement.value.starts_with("READ ");
  } else if (option == "DATEFORMAT") {
    store_.functions().dateFormat = parseDateFormat(statement.value);
    forgetConstants();
    if (nesting_ == 0) frame_->plan->compiled.clear();
  } else if (option == "LOCK_TIMEOUT") {
    store_.setLockTimeout(std::atoll(statement.value.c_str()));
  } else if (option == "DATEFIRST") {
    const int day = std::atoi(statement.value.c_str());
    if (day < 1 || day > 7) throw Error(2744, "The SET DATEFIRST value is out of range (1 to 7).");
    store_.functions().dateFirst = day;
  } else if (option == "IDENTITY_INSERT") {
    Binder binder(bindContext());
    Scope scope;
    const Source& source = binder.bindTarget(statement.table, scope);
    if (!source.view.empty())
      throw Error(8105,
                  "'" + statement.table.object + "' is not a user table. Cannot perform SET operation.");
    rights_.needAlter(source.tableDatabase, source.table->name);
    if (source.table->identityColumn() < 0)
      throw Error(8106, "Table '" + source.table->name +
                            "' does not have the identity property. Cannot perform SET operation.");
    const std::string name = foldName(source.tableDatabase) + "." + foldName(source.table->name);
    if (isOn(statement) && !identityInsert_.empty() && identityInsert_ != name)
      throw Error(8107, "IDENTITY_INSERT is already ON for table '" + identityInsert_ +
                            "'. Cannot perform SET operation for table '" + source.table->name + "'.");
    if (isOn(statement))
      identityInsert_ = name;
    else if (identityInsert_ == name)
      identityInsert_.clear();
  } else if (const auto* fixed = std::find_if(std::begin(fixedOptions), std::end(fixedOptions),
                                              [&](const FixedOption& f) { return option == f.name; });
             fixed != std::end(fixedOptions)) {
    if (statement.value != fixed->value)
      throw Error(50000,
                  "SET " + option + " " + statement.value + " is not supported by the embedded server.");
  } else if (std::find(acceptedOptions.begin(), acceptedOptions.end(), option) == acceptedOptions.end()) {
    throw Error(195, "'" + option + "' is not a recognized SET option.", 15);
  }
}

void Executor::runPrint(const PrintStatement& statement, int line) {
  Type type;
  const Datum value = evaluate(*statement.value, type);
  Error message(0, value.isNull() ? " " : displayText(value, type), 0);
  message.setLine(line);
  if (resultsWanted()) sink_->onInfo(message);
}

void Executor::keepError(const Error& error) {
  lastError_ = error.number();
  if (!firstError_ && !sink_->onError(error)) firstError_ = std::make_unique<Error>(error);
}

// Does not end anything by itself, also not inside a trigger.
void Executor::runRaiserror(const RaiserrorStatement& statement, int line) {
  std::vector<std::pair<Datum, Type>> values;
  for (const ExprPtr& arg : statement.args) {
    Type type;
    Datum value = evaluate(*arg, type);
    values.emplace_back(std::move(value), type);
  }
  const auto number = [&](std::size_t i, int otherwise) {
    return values.size() > i && values[i].first.isInteger() ? static_cast<int>(values[i].first.integer())
                                                            : otherwise;
  };
  const int severity = number(1, 16), state = number(2, 1);
  constexpr int id = 50000;
  if (values[0].first.isInteger()) failUnknownMessage(number(0, id), severity, state);
  constexpr int highest = 18;
  if (severity > highest)
    throw Error(
        2754,
        "Error severity levels greater than 18 can only be specified by members of the sysadmin role, "
        "using the WITH LOG option.");
  const std::string pattern = displayText(values[0].first, values[0].second);
  const std::vector<std::pair<Datum, Type>> arguments(
      values.begin() + static_cast<std::ptrdiff_t>(std::min<std::size_t>(3, values.size())), values.end());
  Error raised(id, formatMessage(pattern, arguments), severity, state);
  raised.setLine(line);
  if (frame_->triggerName) raised.setProcedure(*frame_->triggerName);
  if (severity <= 10) {
    lastError_ = statement.setError ? id : 0;
    if (resultsWanted()) sink_->onInfo(raised);
    return;
  }
  if (isCaught(raised)) throw RaisedError(raised);
  keepError(raised);
}

void Executor::runThrow(const ThrowStatement& statement) {
  if (!statement.number) rethrow();
  const auto value = [this](const Expr& expr, const Type& to) {
    Type type;
    const Datum found = evaluate(expr, type);
    return convert(found, type, to);
  };
  const auto number = [&](const Expr& expr, TypeId to) {
    const Datum found = value(expr, {to});
    return found.isNull() ? std::int64_t{0} : found.integer();
  };
  constexpr std::int64_t lowest = 50000, highest = 2147483647;
  const std::int64_t id = number(*statement.number, TypeId::BigInt);
  if (id < lowest || id > highest)
    throw ThrownError(Error(35100, "Error number " + std::to_string(id) +
                                       " in the THROW statement is outside the valid range. Specify an error "
                                       "number in the valid range of 50000 to 2147483647."));
  constexpr std::uint16_t longest = 2048;
  const Datum text = value(*statement.message, {TypeId::NVarChar, longest});
  const auto state = static_cast<int>(number(*statement.state, TypeId::TinyInt));
  throw ThrownError(Error(static_cast<int>(id), text.isNull() ? std::string() : text.text(), 16, state));
}

// Takes the write lock with the first breath: a transaction that read before it wrote would find what it
// read overtaken by another's commit, and would have to be given up (1205) instead of waiting its turn.
void Executor::beginTransaction() {
  store_.begin();
  ++levels_;
  try {
    store_.writeLock(context_.database);
  } catch (const Error& error) {
    constexpr int readOnly = 3906;  // reading in a transaction stays possible there
    if (error.number() == readOnly) return;
    rollbackAll();
    throw;
  }
}

void Executor::commitTransaction() {
  try {
    for (; levels_ > 0; --levels_) store_.commit();
    committed_ = true;
  } catch (const Error&) {
    rollbackAll();
    throw;
  }
  savepoints_.clear();
}

void Executor::forgetSavepoints() {
  std::erase_if(savepoints_, [this](const Savepoint& point) { return point.level >= levels_; });
}

void Executor::saveTransaction(const std::string& name) {
  if (levels_ == 0) throw Error(628, "Cannot issue SAVE TRANSACTION when there is no active transaction.");
  constexpr std::size_t most = 1000;
  if (savepoints_.size() >= most) throw Error(50000, "A transaction cannot hold more than 1000 savepoints.");
  store_.begin();
  savepoints_.push_back({name, levels_++, nesting_});
}

// The savepoint stands on and may be gone back to again. @@TRANCOUNT stays as it is.
void Executor::rollbackTo(const std::string& name) {
  const auto point = std::find_if(savepoints_.rbegin(), savepoints_.rend(),
                                  [&](const Savepoint& each) { return !name.empty() && each.name == name; });
  if (point == savepoints_.rend()) {
    if (!name.empty() && name != transactionName_)
      throw Error(6401, "Cannot roll back " + name + ". No transaction or savepoint of that name was found.");
    return rollbackAll();
  }
  if (point->nesting != nesting_)
    throw Error(
        50000,
        "ROLLBACK to a savepoint from outside of the trigger is not supported by the embedded server.");
  const int level = point->level;
  const std::vector<KeptRows> kept = keepTableVariables();
  for (; levels_ > level; --levels_) store_.rollback();
  restoreTableVariables(kept);
  savepoints_.erase(point.base(), savepoints_.end());
  temporaryTables_.clear();
  store_.begin();
  ++levels_;
}

void Executor::runTransaction(const TransactionStatement& statement) {
  switch (statement.action) {
    case TransactionAction::Begin:
      if (userTransactions_++ > 0 || levels_ > 0) return;
      transactionName_ = foldName(statement.name);
      beginTransaction();
      return;
    case TransactionAction::Commit:
      if (userTransactions_ == 0)
        throw Error(3902, "The COMMIT TRANSACTION request has no corresponding BEGIN TRANSACTION.");
      if (--userTransactions_ > 0 || nesting_ > 0) return;
      return commitTransaction();
    case TransactionAction::Rollback:
      if (userTransactions_ == 0 && nesting_ == 0)
        throw Error(3903, "The ROLLBACK TRANSACTION request has no corresponding BEGIN TRANSACTION.");
      return rollbackTo(foldName(statement.name));
    case TransactionAction::Save:
      return saveTransaction(foldName(statement.name));
  }
}

void Executor::runUse(const UseStatement& statement) {
  if (foldName(statement.database) == temporaryDatabase)
    throw Error(50000, "'USE tempdb' is not supported by the embedded server.");
  if (!store_.databaseExists(statement.database)) {
    // What is left of it may go now; or it tells what is the matter.
    if (levels_ == 0)
      if (const auto left = ddl::cleanUnfinished(store_, statement.database); !left.empty())
        throw left.front().error;
    throw Error(911, "Database '" + statement.database +
                         "' does not exist. Make sure that the name is entered correctly.");
  }
  rights_.enter(statement.database);
  const std::string name = store_.database(statement.database).name;
  store_.useDatabase(name);
  context_.database = name;
}

bool Executor::runExec(const ExecStatement& statement) {
  if (!statement.text) {
    if (!isServerProcedure(statement.procedure.object) && runUserProcedure(statement)) return true;
    StatementScope scope(*this);
    const int status = runProcedure(*this, statement);
    if (!statement.returnVariable.empty())
      assign(variableSlot(statement.returnVariable), status, {TypeId::Int});
    return false;
  }
  std::string text;
  {
    StatementScope scope(*this);
    Type type;
    const Datum value = evaluate(*statement.text, type);
    text = displayText(value, type);
  }
  const std::string database = context_.database;
  const auto back = [&] {
    if (context_.database == database) return;
    context_.database = database;
    StatementScope scope(*this);
    store_.useDatabase(database);
  };
  try {
    run(text, *sink_);
  } catch (const Error&) {
    back();
    throw;
  }
  back();
  return false;
}

std::vector<ViewColumn> Executor::viewColumns(const CreateViewStatement& statement) {
  BindContext context = bindContext();
  if (!statement.name.database.empty()) context.database = statement.name.database;
  Binder binder(context);
  const BoundSelect bound = binder.bindViewQuery(*statement.select, statement.alter);
  if (!statement.columns.empty() && statement.columns.size() != bound.columns.size())
    throw columnListError(statement.name.object, bound.columns.size() > statement.columns.size());
  std::vector<ViewColumn> columns;
  std::set<std::string> seen;
  for (std::size_t i = 0; i < bound.columns.size(); ++i) {
    const std::string& name = statement.columns.empty() ? bound.columns[i].name : statement.columns[i];
    if (name.empty())
      throw Error(4511, "Create View or Function failed because no column name was specified for column " +
                            std::to_string(i + 1) + ".");
    if (!seen.insert(foldName(name)).second)
      throw Error(4506, "Column names in each view or function must be unique. Column name '" + name +
                            "' in view or function '" + statement.name.object +
                            "' is specified more than once.");
    columns.push_back({name, bound.columns[i].type, bound.columns[i].nullable});
  }
  return columns;
}

namespace {

std::optional<Command> commandOf(const Statement& statement) {
  const auto& node = statement.node;
  if (std::holds_alternative<CreateTableStatement>(node)) return Command::CreateTable;
  if (std::holds_alternative<AlterTableStatement>(node)) return Command::AlterTable;
  if (std::holds_alternative<CreateIndexStatement>(node)) return Command::CreateIndex;
  if (std::holds_alternative<CreateDatabaseStatement>(node)) return Command::CreateDatabase;
  if (std::holds_alternative<CreateViewStatement>(node)) return Command::CreateView;
  if (std::holds_alternative<CreateTriggerStatement>(node)) return Command::CreateTrigger;
  if (std::holds_alternative<CreateProcedureStatement>(node)) return Command::CreateProcedure;
  const auto* drop = std::get_if<DropStatement>(&node);
  if (!drop) return std::nullopt;
  switch (drop->kind) {
    case ObjectKind::Table:
      return Command::DropTable;
    case ObjectKind::View:
      return Command::DropView;
    case ObjectKind::Trigger:
      return Command::DropTrigger;
    case ObjectKind::Procedure:
      return Command::DropProcedure;
    case ObjectKind::Index:
      return Command::DropIndex;
    case ObjectKind::Database:
      return Command::DropDatabase;
  }
  return std::nullopt;
}

}  // namespace

void Executor::runDefinitionStatement(const Statement& statement) {
  context_.evaluate = [this](const Expr& expression, const Type& type) {
    Binder binder(bindContext());
    ColumnInfo column;
    column.type = type;
    Prepared value(store_.handle(), binder.finish("SELECT " + binder.bindDefault(expression, column).sql));
    bindParameters(value);
    return value.step() ? columnDatum(value.get(), 0) : Datum();
  };
  context_.verify = [this](const std::string& database, const TableInfo& table, const CheckInfo* check,
                           const ForeignKeyInfo* key,
                           bool rows) { verifyRule(database, table, check, key, rows); };
  rights_.needDefinition(statement);
  std::vector<ViewColumn> columns;
  if (const auto* view = std::get_if<CreateViewStatement>(&statement.node)) columns = viewColumns(*view);
  const bool inTransaction = levels_ > 0;
  if (!inTransaction) {
    engine::runDefinition(store_, context_, statement, columns);
  } else {
    Transaction transaction(*this);
    engine::runDefinition(store_, context_, statement, columns);
    transaction.commit();
  }
  rowCount_ = 0;
  if (const auto command = commandOf(statement)) told(*command, false);
}

}  // namespace engine
