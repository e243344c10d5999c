#include "engine/execute/ddl.h"

namespace engine {

namespace ddl {

std::string databaseOf(const ObjectName& name, const SessionContext& context) {
  return name.database.empty() ? context.database : name.database;
}

void requireOwner(const ObjectName& name) {
  if (isKnownOwner(name.owner)) return;
  throw Error(2760, "The specified schema name \"" + name.owner +
                        "\" either does not exist or you do not have permission to use it.");
}

Change::Change(Store& changed, const SessionContext& session, const std::string& name)
    : store(changed),
      context(session),
      database(name),
      db(changed.handle()),
      alias(changed.attach(name)),
      rows(db, alias) {
  // The record of a transaction over several databases tells rows, not definitions.
  if (store.leadsAnother(name))
    throw Error(226, "Definitions of database '" + name +
                         "' cannot be changed in a transaction that has changed another database before.");
  store.begin();
  try {
    store.lockDefinitions(database);
    catalog_ = store.catalog(database);
  } catch (...) {
    store.rollback();
    throw;
  }
}

Change::~Change() {
  if (finished_) return;
  try {
    store.rollback();
  } catch (const Error&) {
    // The statement's own error is on its way; SQLite ends the transaction with the handle.
  }
}

std::shared_ptr<const TableInfo> Change::table(const ObjectName& name) const {
  if (auto found = catalog_->tables.find(foldName(name.object)); found && isKnownOwner(name.owner))
    return found;
  throw Error(4902, "Cannot find the object \"" + name.object +
                        "\" because it does not exist or you do not have permissions.");
}

std::string Change::at(std::string_view name) const {
  return alias + "." + lite::quoted(name);
}

DatabaseCatalog& Change::next() {
  if (!next_) {
    next_ = std::make_shared<DatabaseCatalog>(*catalog_);
    catalog_ = next_;
  }
  return *next_;
}

void Change::put(TableInfo table) {
  const std::string folded = foldName(table.name);
  next().tables.put(folded, std::make_shared<TableInfo>(std::move(table)));
}

void Change::put(ViewInfo view) {
  const std::string folded = foldName(view.name);
  next().views.put(folded, std::make_shared<ViewInfo>(std::move(view)));
}

void Change::put(ProcedureInfo procedure) {
  const std::string folded = foldName(procedure.name);
  next().procedures.put(folded, std::make_shared<ProcedureInfo>(std::move(procedure)));
}

void Change::reload(std::int64_t id, const std::string& oldName) {
  DatabaseCatalog& now = next();
  now.tables.erase(foldName(oldName));
  now.views.erase(foldName(oldName));
  now.procedures.erase(foldName(oldName));
  if (const auto table = loadTable(db, alias, id))
    now.tables.put(foldName(table->name), table);
  else if (const auto view = loadView(db, alias, id))
    now.views.put(foldName(view->name), view);
  else if (const auto procedure = loadProcedure(db, alias, id))
    now.procedures.put(foldName(procedure->name), procedure);
}

void Change::finish() {
  store.markChanged(database, std::move(next_));
  store.commit();
  finished_ = true;
}

void checkObjectName(const std::string& name, const std::string& database) {
  if (name.empty()) throw Error(1038, "An object or column name is missing or empty.");
  const bool temporary = name.front() == '#' || name.front() == '@';
  if (database == temporaryDatabase && !temporary) refuseConstruct("table in tempdb that is not temporary");
  if (database != temporaryDatabase && name.front() == '#') refuseConstruct("temporary name " + name);
  const std::string folded = foldName(name);
  if (findSystemTable(name))
    throw Error(2714, "There is already an object named '" + name + "' in the database.", 16, 6);
  if (folded.starts_with("zb_") || folded.starts_with("zi_") || folded.starts_with("sqlite_"))
    throw Error(15004, "The name '" + name + "' is reserved for the server.");
  if (name.find('\0') != std::string::npos) throw Error(15004, "Name contains an invalid character.");
}

void refuseConstruct(const std::string& construct) {
  throw Error(40517, "Keyword or statement option '" + construct + "' is not supported in this server.");
}

}  // namespace ddl

void runDefinition(Store& store, SessionContext& context, const Statement& statement,
                   const std::vector<ViewColumn>& viewColumns) {
  const auto& node = statement.node;
  if (const auto* table = std::get_if<CreateTableStatement>(&node))
    ddl::run(store, context, *table);
  else if (const auto* alter = std::get_if<AlterTableStatement>(&node))
    ddl::run(store, context, *alter);
  else if (const auto* index = std::get_if<CreateIndexStatement>(&node))
    ddl::run(store, context, *index);
  else if (const auto* drop = std::get_if<DropStatement>(&node))
    ddl::run(store, context, *drop);
  else if (const auto* base = std::get_if<CreateDatabaseStatement>(&node))
    ddl::run(store, context, *base);
  else if (const auto* trigger = std::get_if<CreateTriggerStatement>(&node))
    ddl::run(store, context, *trigger);
  else if (const auto* procedure = std::get_if<CreateProcedureStatement>(&node))
    ddl::run(store, context, *procedure);
  else if (const auto* view = std::get_if<CreateViewStatement>(&node))
    ddl::run(store, context, *view, viewColumns);
  else
    throw Error(102, "The statement is no definition statement.");
}

}  // namespace engine
