#include "engine/catalog.h"
#include "engine/execute/executor_temporary.h"
#include "engine/language.h"
#include "engine/value.h"

namespace engine {
namespace {

constexpr int nestingLimit = 32;

bool firesOn(const TriggerInfo& trigger, TriggerEvent event) {
  switch (event) {
    case TriggerEvent::Insert:
      return trigger.onInsert;
    case TriggerEvent::Update:
      return trigger.onUpdate;
    case TriggerEvent::Delete:
      return trigger.onDelete;
  }
  return false;
}

std::string columnDefinitions(const TableInfo& table) {
  std::string text = "(zb_rid INTEGER PRIMARY KEY";
  for (const ColumnInfo& column : table.columns) {
    text += "," + quoteName(column.name);
    if (isCharacter(column.type.id)) text += std::string(" COLLATE ") + sqliteCollation;
  }
  return text + ")";
}

}  // namespace

// A trigger does not fire itself directly; others of the same table do.
std::vector<std::shared_ptr<const TriggerInfo>> Executor::triggersFor(const TableInfo& table,
                                                                      const std::string& database,
                                                                      TriggerEvent event) {
  std::vector<std::shared_ptr<const TriggerInfo>> found;
  for (const auto& trigger : table.triggers) {
    if (!firesOn(*trigger, event)) continue;
    const bool itself = nesting_ > 0 && frame_->triggerId == trigger->id &&
                        foldName(frame_->triggerDatabase) == foldName(database);
    if (!itself) found.push_back(trigger);
  }
  return found;
}

// `name` as an empty temporary table of that shape; one left behind by a rollback may have it already.
void Executor::makeTemporary(const std::string& name, const std::string& definition) {
  sqlite3* connection = store_.handle();
  Prepared known(connection, {"SELECT sql FROM sqlite_temp_master WHERE name=?1", {}});
  known.bindDatum(1, name);
  if (known.step()) {
    if (columnDatum(known.get(), 0).text().ends_with(definition)) return;
    sqlite3_reset(known.get());
    lite::exec(connection, "DROP TABLE temp." + quoteName(name));
  }
  lite::exec(connection, "CREATE TABLE temp." + quoteName(name) + definition);
}

// The temporary tables of the next level, made at their first use and when the table's shape changed.
TriggerTables Executor::triggerTables(std::shared_ptr<const TableInfo> table, const std::string& database) {
  const std::string suffix =
      "_" + store_.attach(database) + "_" + std::to_string(table->id) + "_" + std::to_string(nesting_ + 1);
  TemporaryTable& made = temporaryTables_[suffix];
  if (made.table != table) {
    const std::string definition = columnDefinitions(*table);
    if (made.definition != definition) {
      for (const char* kind : {"zb_ins", "zb_del"}) makeTemporary(kind + suffix, definition);
      made.definition = definition;
    }
    made.columns.clear();
    for (const ColumnInfo& column : table->columns) made.columns += "," + quoteName(column.name);
    made.table = table;
  }
  TriggerTables tables;
  tables.database = database;
  tables.inserted = "temp." + quoteName("zb_ins" + suffix);
  tables.deleted = "temp." + quoteName("zb_del" + suffix);
  tables.columns = made.columns;
  tables.table = std::move(table);
  return tables;
}

Prepared& Executor::internal(const std::string& sql) {
  auto [at, added] = internals_.try_emplace(sql);
  if (added || !at->second) at->second = Prepared(store_.handle(), {sql, {}});
  return at->second;
}

// An INSERT leaves `deleted` empty, a DELETE `inserted`.
void Executor::clearTriggerTables(const TriggerTables& tables, TriggerEvent event) {
  for (const std::string* name : {&tables.inserted, &tables.deleted}) {
    if (event != TriggerEvent::Update && (name == &tables.deleted) == (event == TriggerEvent::Insert))
      continue;
    Prepared& clear = internal("DELETE FROM " + *name);
    PreparedUse use(clear);
    clear.step();
  }
}

void Executor::copyInserted(const TriggerTables& tables, const std::vector<std::int64_t>& rows) {
  clearTriggerTables(tables, TriggerEvent::Insert);
  Prepared& copy =
      internal("INSERT INTO " + tables.inserted + " SELECT rowid" + tables.columns + " FROM " +
               store_.attach(tables.database) + "." + quoteName(tables.table->name) + " WHERE rowid=?1");
  for (const std::int64_t row : rows) {
    PreparedUse use(copy);
    copy.bindDatum(1, row);
    copy.step();
  }
}

void Executor::fire(const TriggerTables& tables, TriggerEvent event, const std::vector<int>* updated) {
  for (const auto& trigger : triggersFor(*tables.table, tables.database, event))
    runTrigger(*trigger, tables, event, updated);
  clearTriggerTables(tables, event);
}

void Executor::runTrigger(const TriggerInfo& trigger, const TriggerTables& tables, TriggerEvent event,
                          const std::vector<int>* updated) {
  if (nesting_ + procedureDepth_ >= nestingLimit)
    throw Error(217,
                "Maximum stored procedure, function, trigger, or view nesting level exceeded (limit 32).");
  const std::string key =
      tables.deleted + "/" + std::to_string(trigger.id) + "/" + std::to_string(execDepth_);
  CachedTrigger& cached = triggers_[key];
  if (!cached.plan || cached.text != trigger.text) {
    cached.plan = makePlan(parseBatch(trigger.text));
    const auto& body = std::get<CreateTriggerStatement>(cached.plan->batch.statements.at(0)->node).body;
    cached.plan->variables = collectVariables(body);
    cached.text = trigger.text;
  }
  Frame frame;
  frame.plan = cached.plan;
  static const std::vector<Literal> none;
  frame.literals = &none;
  frame.values.resize(frame.plan->variables.variables.size());
  frame.stored = true;
  frame.chain = tables.database;
  frame.trigger = &tables;
  frame.triggerName = &trigger.name;
  frame.triggerId = trigger.id;
  frame.triggerDatabase = tables.database;
  frame.event = event;
  frame.updated = updated;
  frame.triesAround = tries_;

  // A trigger works in its table's database, whatever the statement's current one is.
  struct Restore {
    Executor& executor;
    Frame* frame;
    std::string database;
    bool noCount;
    int triggerTries;
    ~Restore() {
      --executor.nesting_;
      executor.frame_ = frame;
      executor.context_.database = database;
      executor.noCount_ = noCount;
      executor.triggerTries_ = triggerTries;
    }
  } restore{*this, frame_, context_.database, noCount_, triggerTries_};
  triggerTries_ = tries_;
  ++nesting_;
  frame_ = &frame;
  context_.database = tables.database;
  const TemporaryScope temporaries(*this, frame, true);
  const auto& body = std::get<CreateTriggerStatement>(frame.plan->batch.statements.at(0)->node).body;
  for (const StatementPtr& statement : body)
    if (runStatement(*statement) == Flow::Return) break;
  if (doomed_)
    throw BatchError(
        Error(3616,
              "An error was raised during trigger execution. The batch has been aborted and the user "
              "transaction, if any, has been rolled back."));
  if (levels_ == 0)
    throw BatchError(Error(3609, "The transaction ended in the trigger. The batch has been aborted."));
}

}  // namespace engine
