// Logins of the server and users of its databases: what the sp_ procedures for them do. Every function
// is one transaction (or a part of the open one) and stands or falls as a whole. Names compare without
// case by ASCII folding; a password by its bytes.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "engine/store.h"

namespace engine {

// Throws 18456 "Login failed for user 'X'.", the same after the same work whether the name or the
// password is wrong. Repeated failures for one name in any process take longer, up to a few seconds.
// Returns the name as it was added.
std::string verifyLogin(Store& store, const std::string& login, const std::string& password);

// 15025 exists, 15004 / 15007 bad name.
void addLogin(Store& store, const std::string& login, const std::string& password,
              const std::string& defaultDatabase = "master");
// 15007 no such login, 15175 it is aliased or mapped to a user in a database, 15405 for sa.
void dropLogin(Store& store, const std::string& login);
// `old` absent: not checked (an administrator changes another's). 15007, 15211 (old password wrong).
void changePassword(Store& store, const std::string& login, const std::optional<std::string>& old,
                    const std::string& password);
// sysadmin, securityadmin, serveradmin, setupadmin, processadmin, diskadmin, dbcreator, bulkadmin;
// 15402 otherwise; 15007.
void setServerRole(Store& store, const std::string& login, const std::string& role, bool member);
bool isServerRoleMember(Store& store, const std::string& login, const std::string& role);
std::vector<std::string> serverRolesOf(Store& store, const std::string& login);
// The roles of the login's user in the database; `user`: it is one there, `dbo`: the owner.
std::vector<std::string> databaseRolesOf(Store& store, const std::string& database, const std::string& login,
                                         bool& user, bool& dbo);
std::string sidOf(Store& store, const std::string& login);
std::string defaultDatabaseOf(Store& store, const std::string& login);
// 15007, 15010 no such database.
void setDefaultDatabase(Store& store, const std::string& login, const std::string& database);

// sp_grantdbaccess, sp_adduser: 15007 / 15401 no such login, 15023 user exists, 15063 the login has a
// user under another name. `group` (sp_adduser's third argument) may be empty.
void addUser(Store& store, const std::string& database, const std::string& login, const std::string& user,
             const std::string& group = {});
// sp_revokedbaccess, sp_dropuser: 15008; 15181 for dbo and guest.
void dropUser(Store& store, const std::string& database, const std::string& user);
// sp_addrolemember, sp_droprolemember: 15014 no such role, 15410 / 15008 no such user.
void setRole(Store& store, const std::string& database, const std::string& role, const std::string& user,
             bool member);
// May the login work in the database: sysadmin, a user of it, or the public databases (master).
bool hasAccess(Store& store, const std::string& database, const std::string& login);
// The user that the login is there: dbo for sysadmin.
std::string userOf(Store& store, const std::string& database, const std::string& login);

// One row of sp_helpdb.
struct DatabaseSummary {
  std::string name, size, owner;  // size: "     12.50 MB"
  std::int64_t id = 0;
  std::string created;  // "Mar  5 2012"
  std::string status;
  int compatibility = 80;
};
// `name` empty: all. 15010 when there is no such database.
std::vector<DatabaseSummary> summarizeDatabases(Store& store, const std::string& name = {});

}  // namespace engine
