#include "engine/execute/procedures.h"

#include <array>
#include <cmath>
#include <optional>

#include "engine/execute/procedure_call.h"
#include "engine/store/integrity.h"

namespace engine {

namespace {

using P = ProcedureCall;
const P::Procedure procedures[] = {
    {"sp_addlogin",
     {{{"@loginame", true},
       {"@passwd", false},
       {"@defdb", false},
       {"@deflanguage", false},
       {"@sid", false},
       {"@encryptopt", false}}},
     &P::addLogin},
    {"sp_droplogin", {{{"@loginame", true}}}, &P::dropLogin},
    {"sp_defaultdb", {{{"@loginame", true}, {"@defdb", true}}}, &P::defaultDatabase},
    {"sp_password", {{{"@old", false}, {"@new", true}, {"@loginame", false}}}, &P::password},
    {"sp_addsrvrolemember", {{{"@loginame", true}, {"@rolename", true}}}, &P::addServerRole},
    {"sp_dropsrvrolemember", {{{"@loginame", true}, {"@rolename", true}}}, &P::dropServerRole},
    {"sp_grantdbaccess", {{{"@loginame", true}, {"@name_in_db", false}}}, &P::grantAccess},
    {"sp_adduser", {{{"@loginame", true}, {"@name_in_db", false}, {"@grpname", false}}}, &P::grantAccess},
    {"sp_revokedbaccess", {{{"@name_in_db", true}}}, &P::dropUser},
    {"sp_dropuser", {{{"@name_in_db", true}}}, &P::dropUser},
    {"sp_addrolemember", {{{"@rolename", true}, {"@membername", true}}}, &P::addRole},
    {"sp_droprolemember", {{{"@rolename", true}, {"@membername", true}}}, &P::dropRole},
    {"sp_helpdb", {{{"@dbname", false}}}, &P::helpDatabases},
    {"sp_databases", {}, &P::databases},
    {"sp_help", {{{"@objname", false}}}, &P::help},
    {"sp_helptext", {{{"@objname", true}}}, &P::helpText},
    {"sp_helpindex", {{{"@objname", true}}}, &P::helpIndexes},
    {"sp_helpconstraint", {{{"@objname", true}, {"@nomsg", false}}}, &P::helpConstraints},
    {"sp_detach_db", {{{"@dbname", true}, {"@skipchecks", false}}}, &P::detach},
    {"kill", {{{"@spid", true}}}, &P::kill},
    {"dbcc checkdb",
     {{{"@database", false}, {"@noindex", false}, {"@no_infomsgs", false}}},
     &P::checkDatabase},
    {"dbcc checktable", {{{"@table", true}, {"@noindex", false}, {"@no_infomsgs", false}}}, &P::checkTable},
    {"alter database page_verify", {{{"@database", true}}}, &P::verifyPages},
    {"alter database delayed_durability", {{{"@database", true}, {"@delayed", true}}}, &P::delayDurability},
    {"sp_rename", {{{"@objname", true}, {"@newname", true}, {"@objtype", false}}}, &P::rename},
};

}  // namespace

const ProcedureCall::Procedure* ProcedureCall::find(const std::string& name) {
  for (const Procedure& procedure : procedures)
    if (foldName(name) == procedure.name) return &procedure;
  return nullptr;
}

void ProcedureCall::gather(const Procedure& procedure) {
  std::array<bool, mostParameters> given{};
  std::size_t position = 0;
  for (const ExecArgument& argument : statement_.args) {
    if (argument.output)
      throw Error(8162, "The formal parameter \"" + argument.name +
                            "\" was not declared as an OUTPUT parameter, but the actual parameter passed in "
                            "requested output.");
    std::size_t index = position++;
    if (!argument.name.empty()) {
      index = 0;
      while (index < given.size() && procedure.parameters[index].name &&
             foldName(argument.name) != foldName(procedure.parameters[index].name))
        ++index;
    }
    if (index >= given.size() || !procedure.parameters[index].name) {
      if (argument.name.empty())
        throw Error(8144, std::string("Procedure or function ") + procedure.name +
                              " has too many arguments specified.");
      throw Error(8145, argument.name + " is not a parameter for procedure " + procedure.name + ".");
    }
    given[index] = true;
    if (!argument.value) continue;
    Type type;
    const Datum value = executor_.evaluate(*argument.value, type);
    if (!value.isNull()) values_[index] = displayText(value, type);
  }
  for (std::size_t i = 0; i < given.size(); ++i)
    if (procedure.parameters[i].name && procedure.parameters[i].required && !given[i])
      throw Error(201, std::string("Procedure or function '") + procedure.name + "' expects parameter '" +
                           procedure.parameters[i].name + "', which was not supplied.");
}

void ProcedureCall::helpDatabases() {
  ResultSet set({column("name", {TypeId::NVarChar, 128}), column("db_size", {TypeId::NVarChar, 13}),
                 column("owner", {TypeId::NVarChar, 128}), column("dbid", {TypeId::SmallInt}),
                 column("created", {TypeId::NVarChar, 11}), column("status", {TypeId::NVarChar, 600}),
                 column("compatibility_level", {TypeId::TinyInt})});
  for (const DatabaseSummary& summary : summarizeDatabases(store(), text(0))) {
    set.beginRow();
    set.addText(summary.name);
    set.addText(summary.size);
    set.addText(summary.owner);
    set.addInteger(summary.id);
    set.addText(summary.created);
    set.addText(summary.status);
    set.addInteger(summary.compatibility);
  }
  if (executor_.resultsWanted()) executor_.sink_->onResultSet(std::move(set));
}

void ProcedureCall::tellChecked(const std::string& database, const std::string& table) {
  const char* command = table.empty() ? "CHECKDB" : "CHECKTABLE";
  const IntegrityReport report = checkIntegrity(store(), database, table);
  const bool quiet = values_[2].has_value();
  const auto tell = [&](int number, const std::string& text) {
    if (executor_.resultsWanted()) executor_.sink_->onInfo(Error(number, text, 10));
  };
  if (!quiet) {
    tell(2536, "DBCC results for '" + (table.empty() ? database : table) + "'.");
    for (const CheckedTable& checked : report.tables)
      tell(2593, "There are " + std::to_string(checked.rows) + " rows in " + std::to_string(checked.pages) +
                     " pages for object \"" + checked.name + "\".");
  }
  for (const Finding& finding : report.findings)
    tell(finding.number, "Msg " + std::to_string(finding.number) + ": " + finding.text);
  const std::string sum = std::string(command) + " found 0 allocation errors and " +
                          std::to_string(report.findings.size()) + " consistency errors in database '" +
                          database + "'.";
  if (!quiet || !report.findings.empty()) tell(8989, sum);
  if (!quiet)
    tell(2528,
         "DBCC execution completed. If DBCC printed error messages, contact your system administrator.");
  if (!report.findings.empty())
    executor_.keepError(Error(report.findings.front().number, report.findings.front().text));
}

// Whoever checks reads names and counts of everything that he checks.
void ProcedureCall::checkDatabase() {
  const bool current = !values_[0] || text(0) == "0";
  const std::string database = store().database(current ? executor_.database() : text(0)).name;
  rights().enter(database);
  if (!rights().in(database).owner) throw refusedCheck(7983, "CHECKDB for database", database);
  tellChecked(database, {});
}

void ProcedureCall::checkTable() {
  const std::vector<std::string> parts = nameParts(text(0));
  const bool named = parts.size() == 3 && !parts[0].empty();
  const std::string database = store().database(named ? parts[0] : executor_.database()).name;
  rights().enter(database);
  if (!rights().in(database).define) throw refusedCheck(2557, "CHECKTABLE for object", parts.back());
  tellChecked(database, parts.back());
}

Error ProcedureCall::refusedCheck(int number, const std::string& what, const std::string& name) {
  return Error(number,
               "User '" + executor_.context_.login + "' does not have permission to run DBCC " + what + " '" +
                   name + "'.",
               14);
}

// The database that is altered: its owner's, and nobody's inside of a transaction.
const std::string& ProcedureCall::altered() {
  const std::string& name = *values_[0];
  if (!rights().serverRole("sysadmin") && !(store().databaseExists(name) && rights().in(name).owner))
    throw Error(5011,
                "User does not have permission to alter database '" + name +
                    "', the database does not exist, or the database is not in a state that allows "
                    "access checks.",
                14);
  if (store().inTransaction())
    throw Error(226, "ALTER DATABASE statement not allowed within multi-statement transaction.");
  return name;
}

void ProcedureCall::verifyPages() {
  store().renew(altered());
}

void ProcedureCall::delayDurability() {
  store().setDelayedDurability(altered(), text(1) == "1");
}

void ProcedureCall::kill() {
  rights().needProcedure(rights().serverRole("processadmin"));
  const int spid = std::atoi(text(0).c_str());
  if (spid == executor_.context_.spid) throw Error(6104, "Cannot use KILL to kill your own process.");
  if (!store().instance().sessions().kill(spid))
    throw Error(6106, "Process ID " + text(0) + " is not an active process ID.");
}

void ProcedureCall::databases() {
  ResultSet set({column("DATABASE_NAME", nameType), column("DATABASE_SIZE", {TypeId::Int}),
                 column("REMARKS", {TypeId::VarChar, 254})});
  constexpr double kilobytes = 1024;
  for (const DatabaseSummary& summary : summarizeDatabases(store())) {
    set.beginRow();
    set.addText(summary.name);
    set.addInteger(std::lround(std::stod(summary.size) * kilobytes));
    set.addNull();
  }
  if (executor_.resultsWanted()) executor_.sink_->onResultSet(std::move(set));
}

// In the procedure's database, as if the caller stood there.
void ProcedureCall::catalogQuery(const CatalogProcedure& procedure) {
  here();
  Procedure shape{procedure.name, {}, nullptr};
  for (std::size_t i = 0; i < shape.parameters.size(); ++i)
    shape.parameters[i].name = procedure.parameters[i];
  shape.parameters[0].required = procedure.firstRequired;
  gather(shape);
  constexpr std::uint16_t longest = 390;
  std::vector<engine::Parameter> variables;
  for (std::size_t i = 0; i < values_.size() && procedure.parameters[i]; ++i)
    variables.push_back(
        {procedure.parameters[i], {TypeId::NVarChar, longest}, values_[i] ? Datum(*values_[i]) : Datum()});
  query(procedure.batch, variables);
}

void ProcedureCall::query(const std::string& batch, std::vector<engine::Parameter>& variables) {
  struct Restore {
    std::string& place;
    std::string before;
    ~Restore() { place = before; }
  } restore{executor_.context_.database, executor_.context_.database};
  executor_.context_.database = store().database(database_).name;
  executor_.run(batch, variables, *executor_.sink_);
}

bool isServerProcedure(const std::string& name) {
  return findCatalogProcedure(name) || ProcedureCall::find(name);
}

int runProcedure(Executor& executor, const ExecStatement& statement) {
  if (const CatalogProcedure* catalog = findCatalogProcedure(statement.procedure.object)) {
    ProcedureCall call(
        executor, statement,
        statement.procedure.database.empty() ? executor.database() : statement.procedure.database);
    call.catalogQuery(*catalog);
    return 0;
  }
  const ProcedureCall::Procedure* procedure = ProcedureCall::find(statement.procedure.object);
  if (!procedure) throw Error(2812, "Could not find stored procedure '" + statement.procedure.object + "'.");
  ProcedureCall call(
      executor, statement,
      statement.procedure.database.empty() ? executor.database() : statement.procedure.database);
  call.run(*procedure);
  return 0;
}

}  // namespace engine
