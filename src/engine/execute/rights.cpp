#include "engine/execute/rights.h"

#include <algorithm>
#include <set>

#include "engine/catalog.h"
#include "engine/execute/logins.h"

namespace engine {

namespace {

constexpr const char* master = "master";

struct RoleRight {
  const char* role;
  bool DatabaseRights::*right;
};
constexpr RoleRight roleRights[] = {{"db_owner", &DatabaseRights::owner},
                                    {"db_ddladmin", &DatabaseRights::define},
                                    {"db_accessadmin", &DatabaseRights::users},
                                    {"db_datareader", &DatabaseRights::read},
                                    {"db_datawriter", &DatabaseRights::write},
                                    {"db_denydatareader", &DatabaseRights::denyRead},
                                    {"db_denydatawriter", &DatabaseRights::denyWrite}};

constexpr const char* actionNames[] = {"SELECT", "INSERT", "UPDATE", "DELETE"};

// Whoever reads these learns who may log in.
constexpr const char* loginTables[] = {"syslogins", "sysxlogins"};

Error denied(const char* action, const std::string& object, const std::string& database) {
  return Error(229,
               std::string("The ") + action + " permission was denied on the object '" + object +
                   "', database '" + database + "', schema 'dbo'.",
               14, 5);
}

Error missing(int number, const std::string& object) {
  switch (number) {
    case 208:
      return Error(208, "Invalid object name '" + object + "'.");
    case 8197:
      return Error(8197, "The object '" + object + "' does not exist or is invalid for this operation.");
    default:
      return Error(number, "Cannot find the object \"" + object +
                               "\" because it does not exist or you do not have permissions.");
  }
}

Error cannotDrop(const char* kind, const std::string& name) {
  return Error(3701,
               std::string("Cannot drop the ") + kind + " '" + name +
                   "', because it does not exist or you do not have permission.",
               11);
}

const char* wordOf(ObjectKind kind) {
  switch (kind) {
    case ObjectKind::Table:
      return "table";
    case ObjectKind::View:
      return "view";
    case ObjectKind::Trigger:
      return "trigger";
    case ObjectKind::Procedure:
      return "procedure";
    case ObjectKind::Index:
      return "index";
    case ObjectKind::Database:
      return "database";
  }
  return "object";
}

}  // namespace

bool DatabaseRights::allows(Action action) const {
  if (dbo) return true;
  const bool reading = action == Action::Select;
  if (reading ? denyRead : denyWrite) return false;
  return owner || (reading ? read : write);
}

// Every change of logins, users and roles is a change of definitions, and raises the stamp.
void Rights::refresh() {
  if (stamp_ == store_.catalogStamp() && login_ == context_.login) return;
  server_.clear();
  databases_.clear();
  stamp_ = store_.catalogStamp();
  login_ = context_.login;
}

bool Rights::serverRole(std::string_view role) {
  refresh();
  if (server_.empty())
    for (const std::string& each : serverRolesOf(store_, context_.login)) server_[each] = true;
  server_.try_emplace("", false);  // read, if only to find none
  return server_.contains("sysadmin") || server_.contains(role);
}

const DatabaseRights& Rights::in(const std::string& database) {
  refresh();
  const std::string key = foldName(database);
  if (const auto known = databases_.find(key); known != databases_.end()) return known->second;
  const DatabaseRights rights = read(database);
  // Reading may have brought in the database itself, which raises the stamp as well.
  refresh();
  return databases_[key] = rights;
}

DatabaseRights Rights::read(const std::string& database) {
  DatabaseRights rights;
  if (database == temporaryDatabase || serverRole("sysadmin")) {
    rights.enter = rights.dbo = rights.owner = rights.define = rights.users = true;
    return rights;
  }
  store_.catalog(database);  // from here on a change of the database raises the stamp
  const std::vector<std::string> roles =
      databaseRolesOf(store_, database, context_.login, rights.enter, rights.dbo);
  for (const RoleRight& each : roleRights)
    if (std::find(roles.begin(), roles.end(), each.role) != roles.end()) rights.*each.right = true;
  if (rights.dbo) rights.owner = true;
  if (rights.owner) rights.define = rights.users = true;
  if (foldName(database) == master) rights.enter = true;
  return rights;
}

void Rights::enter(const std::string& database) {
  if (!in(database).enter)
    throw Error(916,
                "The server principal \"" + context_.login + "\" is not able to access the database \"" +
                    store_.database(database).name + "\" under the current security context.",
                14);
}

void Rights::need(const std::string& database, const std::string& object, Action action) {
  if (!in(database).allows(action))
    throw denied(actionNames[static_cast<std::size_t>(action)], object, store_.database(database).name);
}

void Rights::needSystem(const std::string& database, const std::string& table) {
  const std::string folded = foldName(table);
  const bool secret = std::any_of(std::begin(loginTables), std::end(loginTables),
                                  [&](const char* each) { return folded == each; });
  if (secret && !serverRole("sysadmin")) throw denied("SELECT", folded, store_.database(database).name);
}

bool Rights::mayDrop(const std::string& database) {
  return serverRole("dbcreator") || in(database).owner;
}

void Rights::needCreate(const std::string& database, const char* what) {
  enter(database);
  if (!in(database).define)
    throw Error(
        262, std::string(what) + " permission denied in database '" + store_.database(database).name + "'.",
        14);
}

void Rights::needAlter(const std::string& database, const std::string& object) {
  enter(database);
  if (!in(database).define) throw missing(1088, object);
}

void Rights::needExecute(const std::string& database, const std::string& procedure) {
  if (!in(database).owner) throw denied("EXECUTE", procedure, store_.database(database).name);
}

void Rights::needProcedure(bool allowed) {
  if (!allowed) throw Error(15247, "User does not have permission to perform this action.");
}

void Rights::needDefinition(const Statement& statement) {
  const auto& node = statement.node;
  const auto where = [&](const ObjectName& name) {
    const std::string database = name.database.empty() ? context_.database : name.database;
    if (database != temporaryDatabase && !store_.databaseExists(database)) throw missing(208, name.object);
    enter(database);
    return database;
  };
  const auto define = [&](const ObjectName& name, int number) {
    if (!in(where(name)).define) throw missing(number, name.object);
  };
  if (const auto* table = std::get_if<CreateTableStatement>(&node)) {
    needCreate(where(table->name), "CREATE TABLE");
  } else if (const auto* alter = std::get_if<AlterTableStatement>(&node)) {
    define(alter->name, 1088);
  } else if (const auto* index = std::get_if<CreateIndexStatement>(&node)) {
    define(index->table, 1088);
  } else if (const auto* trigger = std::get_if<CreateTriggerStatement>(&node)) {
    define(trigger->table, 8197);
  } else if (const auto* view = std::get_if<CreateViewStatement>(&node)) {
    view->alter ? define(view->name, 208) : needCreate(where(view->name), "CREATE VIEW");
  } else if (const auto* procedure = std::get_if<CreateProcedureStatement>(&node)) {
    procedure->alter ? define(procedure->name, 208) : needCreate(where(procedure->name), "CREATE PROCEDURE");
  } else if (std::holds_alternative<CreateDatabaseStatement>(node)) {
    if (!serverRole("dbcreator"))
      throw Error(262, "CREATE DATABASE permission denied in database 'master'.", 14);
  } else if (const auto* drop = std::get_if<DropStatement>(&node)) {
    for (const ObjectName& name : drop->names) {
      if (drop->kind == ObjectKind::Database) {
        if (store_.databaseExists(name.object) && !mayDrop(name.object))
          throw cannotDrop("database", name.object);
      } else if (!in(where(name)).define) {
        throw cannotDrop(wordOf(drop->kind), name.object);
      }
    }
  }
}

}  // namespace engine
