// The call of one of the server's own procedures, private to the files with their bodies.
#pragma once

#include <array>
#include <optional>
#include <string>

#include "engine/execute/catalog_procedures.h"
#include "engine/execute/executor.h"
#include "engine/execute/logins.h"

namespace engine {

// One call of an sp_ procedure with its arguments as texts.
class ProcedureCall {
 public:
  ProcedureCall(Executor& executor, const ExecStatement& statement, std::string database)
      : executor_(executor), statement_(statement), database_(std::move(database)) {}

  using Body = void (ProcedureCall::*)();
  struct Parameter {
    const char* name;
    bool required;
  };
  static constexpr std::size_t mostParameters = 7;
  struct Procedure {
    const char* name;
    std::array<Parameter, mostParameters> parameters;
    Body body;
  };

  static const Procedure* find(const std::string& name);
  void run(const Procedure& procedure) {
    gather(procedure);
    (this->*procedure.body)();
  }

  void addLogin() {
    onlyAdministrators();
    engine::addLogin(store(), text(0), text(1), values_[2] ? text(2) : "master");
  }
  void dropLogin() {
    onlyAdministratorsOf(text(0));
    engine::dropLogin(store(), text(0));
  }
  void defaultDatabase() {
    if (foldName(text(0)) != foldName(executor_.context_.login)) onlyAdministratorsOf(text(0));
    engine::setDefaultDatabase(store(), text(0), text(1));
  }
  // sp_password old, new, login: without a login one's own, where the old one is asked for.
  void password() {
    const bool own = !values_[2] || foldName(text(2)) == foldName(executor_.context_.login);
    if (!own) onlyAdministratorsOf(text(2));
    const bool check = values_[0] || !isAdministrator();
    engine::changePassword(store(), values_[2] ? text(2) : executor_.context_.login,
                           check ? std::optional<std::string>(text(0)) : std::nullopt, text(1));
  }
  void addServerRole() {
    onlyMembers(text(1));
    setServerRole(store(), text(0), text(1), true);
  }
  void dropServerRole() {
    onlyMembers(text(1));
    setServerRole(store(), text(0), text(1), false);
  }
  void grantAccess() {
    rights().needProcedure(here().users && (text(2).empty() || here().owner));
    addUser(store(), database_, text(0), values_[1] ? text(1) : text(0), text(2));
  }
  void dropUser() {
    rights().needProcedure(here().users);
    engine::dropUser(store(), database_, text(0));
  }
  void addRole() {
    rights().needProcedure(here().owner);
    setRole(store(), database_, text(0), text(1), true);
  }
  void dropRole() {
    rights().needProcedure(here().owner);
    setRole(store(), database_, text(0), text(1), false);
  }
  void rename() {
    rights().needProcedure(here().define);
    renameItem(store(), database_, text(0), text(1), text(2));
  }
  void helpDatabases();
  // help_procedures.cpp
  void help();
  void helpText();
  void helpIndexes();
  void helpConstraints();
  void detach();
  void databases();
  void kill();  // KILL spid
  void catalogQuery(const CatalogProcedure& procedure);
  // DBCC CHECKDB (database | 0, NOINDEX), DBCC CHECKTABLE (table).
  void checkDatabase();
  void checkTable();
  // ALTER DATABASE .. SET PAGE_VERIFY CHECKSUM
  void verifyPages();
  // ALTER DATABASE .. SET DELAYED_DURABILITY
  void delayDurability();

 private:
  void tellChecked(const std::string& database, const std::string& table);
  Error refusedCheck(int number, const std::string& what, const std::string& name);
  const std::string& altered();
  Store& store() { return executor_.store_; }
  std::string text(int index) const { return values_[static_cast<std::size_t>(index)].value_or(""); }
  Rights& rights() { return executor_.rights_; }
  // In the procedure's database: 916 for who is nobody there.
  const DatabaseRights& here() {
    rights().enter(database_);
    return rights().in(database_);
  }
  bool isAdministrator() { return rights().serverRole("securityadmin"); }
  void onlyAdministrators() { rights().needProcedure(isAdministrator()); }
  // Nobody but sysadmin may take over one of its members.
  void onlyAdministratorsOf(const std::string& login) {
    rights().needProcedure(isAdministrator() && (rights().serverRole("sysadmin") ||
                                                 !isServerRoleMember(store(), login, "sysadmin")));
  }
  // A role of the server is given by those who have it.
  void onlyMembers(const std::string& role) { rights().needProcedure(rights().serverRole(foldName(role))); }
  void gather(const Procedure& procedure);
  void query(const std::string& batch, std::vector<engine::Parameter>& variables);
  ObjectRow named(int index);
  std::shared_ptr<const TableInfo> namedTable(int index);
  void tell(ResultSet&& set) {
    if (executor_.resultsWanted()) executor_.sink_->onResultSet(std::move(set));
  }

  Executor& executor_;
  const ExecStatement& statement_;
  std::string database_;
  std::array<std::optional<std::string>, mostParameters> values_;  // absent: not given or NULL
};

inline ResultColumn column(const char* name, Type type) {
  ResultColumn made;
  made.name = name;
  made.type = type;
  return made;
}

}  // namespace engine
