// What a login may do, by the roles of the server and of each database. Every statement is held against the
// database that it touches, however that is named.
//
//   sysadmin                   everything
//   dbcreator                  makes, attaches and drops databases
//   securityadmin              logins, except those of sysadmin
//   dbo (maker of a database), db_owner    everything in it
//   db_ddladmin                definitions
//   db_datareader, db_datawriter           rows of all tables and views
//   db_denydatareader, db_denydatawriter   none of them, whatever else is given (dbo excepted)
//   db_accessadmin             users of the database
//   public                     the system tables, no table of the database
//
// master lets everybody in; its tables of logins are for sysadmin alone. Views and triggers work by the
// right of their owner within their own database.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>

#include "engine/execute/definition.h"
#include "engine/plan/access.h"
#include "engine/store.h"

namespace engine {

// In one database.
struct DatabaseRights {
  bool enter = false, dbo = false, owner = false, define = false, users = false;
  bool read = false, write = false, denyRead = false, denyWrite = false;

  bool allows(Action action) const;
};

class Rights : public Access {
 public:
  Rights(Store& store, const SessionContext& context) : store_(store), context_(context) {}

  void enter(const std::string& database) override;
  void need(const std::string& database, const std::string& object, Action action) override;
  void needSystem(const std::string& database, const std::string& table) override;

  bool serverRole(std::string_view role);  // sysadmin has them all
  const DatabaseRights& in(const std::string& database);
  bool mayDrop(const std::string& database);

  // CREATE, ALTER, DROP, TRUNCATE: 262, 1088, 8197, 208, 3701.
  void needDefinition(const Statement& statement);
  void needCreate(const std::string& database, const char* what);               // 262
  void needAlter(const std::string& database, const std::string& object);       // 1088
  void needExecute(const std::string& database, const std::string& procedure);  // 229: EXECUTE is its owner's
  void needProcedure(bool allowed);                                             // 15247

 private:
  void refresh();
  DatabaseRights read(const std::string& database);

  Store& store_;
  const SessionContext& context_;
  std::uint64_t stamp_ = 0;
  std::string login_;
  std::map<std::string, bool, std::less<>> server_;
  std::map<std::string, DatabaseRights> databases_;
};

}  // namespace engine
