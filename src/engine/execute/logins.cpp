#include "engine/execute/logins.h"

#include <sodium.h>

#include <algorithm>
#include <array>
#include <cstdio>

#include "engine/catalog.h"
#include "engine/function.h"
#include "engine/store.h"
#include "engine/value.h"

namespace engine {

namespace {

constexpr const char* serverRoles[] = {"sysadmin",     "securityadmin", "serveradmin", "setupadmin",
                                       "processadmin", "diskadmin",     "dbcreator",   "bulkadmin"};
constexpr int firstRole = 16384;
constexpr int firstUser = 5;
constexpr const char* master = "master";

// One transaction on the tables of one database. Sessions keep what a login may do, and what they have
// compiled by that: a change of it is a change of definitions.
class Work {
 public:
  Work(Store& store, const std::string& database) : store_(store), database_(database) {
    store_.begin();
    try {
      store_.lockDefinitions(database);
    } catch (...) {
      store_.rollback();
      throw;
    }
  }
  ~Work() {
    if (done_) return;
    try {
      store_.rollback();
    } catch (const Error&) {
      // The first error is on its way.
    }
  }
  Work(const Work&) = delete;
  Work& operator=(const Work&) = delete;
  void finish() {
    store_.markChanged(database_, std::make_shared<DatabaseCatalog>(*store_.catalog(database_)));
    store_.commit();
    done_ = true;
  }

 private:
  Store& store_;
  std::string database_;
  bool done_ = false;
};

lite::Stmt query(Store& store, const std::string& database, const char* sql) {
  return {store.handle(), atAlias(sql, store.attach(database))};
}

struct LoginRow {
  std::int64_t id = 0;
  std::string name, sid, hash, database;
};

LoginRow findLogin(Store& store, const std::string& login) {
  auto find =
      query(store, master,
            "SELECT id, name, sid, password_hash, default_database FROM @.zb_logins WHERE name=? COLLATE "
            "NOCASE");
  LoginRow row;
  if (find.bind(login).step())
    row = {find.integer(0), find.text(1), find.text(2), find.text(3), find.text(4)};
  return row;
}

LoginRow needLogin(Store& store, const std::string& login) {
  LoginRow row = findLogin(store, login);
  if (row.id == 0) throw Error(15007, "'" + login + "' is not a valid login or you do not have permission.");
  return row;
}

void needDatabase(Store& store, const std::string& database) {
  if (!store.databaseExists(database))
    throw Error(15010,
                "The database '" + database + "' does not exist. Use sp_helpdb to show available databases.");
}

void checkName(const std::string& name) {
  if (name.empty()) throw Error(15004, "Name cannot be NULL.");
  if (characterCount(name) > 128 || name.find('\\') != std::string::npos ||
      name.find('\0') != std::string::npos)
    throw Error(15006,
                "'" + name.substr(0, 128) + "' is not a valid name because it contains invalid characters.");
}

struct UserRow {
  std::int64_t uid = -1;
  std::string name;
  bool role = false;
};

UserRow findUser(Store& store, const std::string& database, const std::string& user) {
  auto find = query(store, database, "SELECT uid, name, is_role FROM @.zb_users WHERE name=? COLLATE NOCASE");
  UserRow row;
  if (find.bind(user).step()) row = {find.integer(0), find.text(1), find.integer(2) != 0};
  return row;
}

std::string mappedUser(Store& store, const std::string& database, const std::string& sid) {
  auto find = query(store, database, "SELECT name FROM @.zb_users WHERE sid=CAST(? AS BLOB)");
  return find.bind(sid).step() ? find.text(0) : std::string();
}

bool isMappedAnywhere(Store& store, const std::string& sid) {
  for (const auto& database : store.databases()) {
    try {
      if (!mappedUser(store, database.name, sid).empty()) return true;
    } catch (const Error&) {
      // A damaged database cannot hold the login back.
    }
  }
  return false;
}

const char* needServerRole(const std::string& role) {
  const std::string folded = foldName(role);
  for (const char* each : serverRoles)
    if (folded == each) return each;
  throw Error(15402, "'" + role + "' is not a fixed server role.");
}

}  // namespace

// ---- server ----

std::string verifyLogin(Store& store, const std::string& login, const std::string& password) {
  const LoginRow row = findLogin(store, login);
  if (!store.instance().logins().verify(foldName(login), password, row.hash))
    throw Error(18456, "Login failed for user '" + login + "'.", 14);
  return row.name;
}

void addLogin(Store& store, const std::string& login, const std::string& password,
              const std::string& defaultDatabase) {
  checkName(login);
  needDatabase(store, defaultDatabase);
  const std::string hash = hashPassword(password);
  std::array<char, 16> sid{};
  randombytes_buf(sid.data(), sid.size());
  Work work(store, master);
  if (findLogin(store, login).id != 0)
    throw Error(15025, "The server principal '" + login + "' already exists.");
  auto insert = query(store, master,
                      "INSERT INTO @.zb_logins(name, sid, password_hash, default_database, crdate) VALUES(?, "
                      "CAST(? AS BLOB), ?, ?, ?)");
  insert.bind(login).bind(std::string_view(sid.data(), sid.size())).bind(hash).bind(defaultDatabase);
  insert.bind(currentTicks()).run();
  work.finish();
}

void dropLogin(Store& store, const std::string& login) {
  Work work(store, master);
  const LoginRow row = needLogin(store, login);
  if (row.sid == "\x01") throw Error(15405, "Cannot use the special principal '" + row.name + "'.");
  if (isMappedAnywhere(store, row.sid))
    throw Error(15175, "Login '" + row.name +
                           "' is aliased or mapped to a user in one or more database(s). Drop "
                           "the user or alias before dropping the login.");
  for (const char* sql :
       {"DELETE FROM @.zb_server_roles WHERE login_id=?", "DELETE FROM @.zb_logins WHERE id=?"}) {
    auto remove = query(store, master, sql);
    remove.bind(row.id).run();
  }
  work.finish();
}

void changePassword(Store& store, const std::string& login, const std::optional<std::string>& old,
                    const std::string& password) {
  const LoginRow checked = needLogin(store, login);
  if (old && !store.instance().logins().verify(foldName(login), *old, checked.hash))
    throw Error(15211, "Old (current) password incorrect for user. The password was not changed.");
  const std::string hash = hashPassword(password);
  Work work(store, master);
  // Somebody else may have changed it since.
  auto update = query(store, master, "UPDATE @.zb_logins SET password_hash=? WHERE id=? AND password_hash=?");
  update.bind(hash).bind(checked.id).bind(checked.hash).run();
  if (sqlite3_changes(store.handle()) == 0)
    throw Error(15211, "Old (current) password incorrect for user. The password was not changed.");
  work.finish();
}

void setServerRole(Store& store, const std::string& login, const std::string& role, bool member) {
  const char* name = needServerRole(role);
  Work work(store, master);
  const LoginRow row = needLogin(store, login);
  if (row.sid == "\x01" && !member)
    throw Error(15405, "Cannot use the special principal '" + row.name + "'.");
  auto change = query(store, master,
                      member ? "INSERT OR IGNORE INTO @.zb_server_roles VALUES(?, ?)"
                             : "DELETE FROM @.zb_server_roles WHERE login_id=? AND role=?");
  change.bind(row.id).bind(name).run();
  work.finish();
}

bool isServerRoleMember(Store& store, const std::string& login, const std::string& role) {
  auto find =
      query(store, master,
            "SELECT 1 FROM @.zb_server_roles r JOIN @.zb_logins l ON l.id=r.login_id WHERE l.name=? COLLATE "
            "NOCASE AND r.role=?");
  return find.bind(login).bind(foldName(role)).step();
}

std::vector<std::string> serverRolesOf(Store& store, const std::string& login) {
  auto find =
      query(store, master,
            "SELECT r.role FROM @.zb_server_roles r JOIN @.zb_logins l ON l.id=r.login_id WHERE l.name=? "
            "COLLATE NOCASE");
  std::vector<std::string> roles;
  for (find.bind(login); find.step();) roles.push_back(find.text(0));
  return roles;
}

std::vector<std::string> databaseRolesOf(Store& store, const std::string& database, const std::string& login,
                                         bool& user, bool& dbo) {
  const LoginRow row = findLogin(store, login);
  auto find = query(store, database, "SELECT uid FROM @.zb_users WHERE sid=CAST(? AS BLOB)");
  user = row.id != 0 && find.bind(row.sid).step();
  dbo = user && find.integer(0) == 1;
  std::vector<std::string> roles;
  if (!user) return roles;
  auto members =
      query(store, database,
            "SELECT g.name FROM @.zb_members m JOIN @.zb_users g ON g.uid=m.group_uid WHERE m.uid=?");
  for (members.bind(find.integer(0)); members.step();) roles.push_back(members.text(0));
  return roles;
}

std::string sidOf(Store& store, const std::string& login) {
  return findLogin(store, login).sid;
}

std::string defaultDatabaseOf(Store& store, const std::string& login) {
  return needLogin(store, login).database;
}

void setDefaultDatabase(Store& store, const std::string& login, const std::string& database) {
  needDatabase(store, database);
  Work work(store, master);
  auto update = query(store, master, "UPDATE @.zb_logins SET default_database=? WHERE id=?");
  update.bind(store.database(database).name).bind(needLogin(store, login).id).run();
  work.finish();
}

// ---- users ----

void addUser(Store& store, const std::string& database, const std::string& login, const std::string& given,
             const std::string& group) {
  const std::string user = given.empty() ? login : given;
  checkName(user);
  Work work(store, database);
  const LoginRow row = needLogin(store, login);
  if (findUser(store, database, user).uid >= 0)
    throw Error(15023, "User, group, or role '" + user + "' already exists in the current database.");
  if (const std::string other = mappedUser(store, database, row.sid); !other.empty())
    throw Error(15063, "The login already has an account under a different user name.");
  auto number = query(store, database, "SELECT coalesce(max(uid), 0) FROM @.zb_users WHERE uid<?");
  number.bind(firstRole).step();
  auto insert =
      query(store, database,
            "INSERT INTO @.zb_users(uid, name, sid, is_role, crdate) VALUES(?, ?, CAST(? AS BLOB), 0, ?)");
  insert.bind(std::max<std::int64_t>(number.integer(0) + 1, firstUser)).bind(user).bind(row.sid);
  insert.bind(currentTicks()).run();
  if (!group.empty() && foldName(group) != "public") setRole(store, database, group, user, true);
  work.finish();
}

void dropUser(Store& store, const std::string& database, const std::string& user) {
  Work work(store, database);
  const UserRow row = findUser(store, database, user);
  if (row.uid < 0 || row.role)
    throw Error(15008, "User '" + user + "' does not exist in the current database.");
  if (row.uid < firstUser) throw Error(15181, "Cannot drop the user '" + row.name + "' from the database.");
  for (const char* sql : {"DELETE FROM @.zb_members WHERE uid=?", "DELETE FROM @.zb_users WHERE uid=?"}) {
    auto remove = query(store, database, sql);
    remove.bind(row.uid).run();
  }
  work.finish();
}

void setRole(Store& store, const std::string& database, const std::string& role, const std::string& user,
             bool member) {
  Work work(store, database);
  const UserRow group = findUser(store, database, role);
  if (group.uid < 0 || !group.role)
    throw Error(15014, "The role '" + role + "' does not exist in the current database.");
  const UserRow row = findUser(store, database, user);
  if (row.uid < 0) {
    if (member) throw Error(15410, "User or role '" + user + "' does not exist in this database.");
    throw Error(15008, "User '" + user + "' does not exist in the current database.");
  }
  if (group.uid == 0 || row.uid == 1)
    throw Error(15081,
                "Membership of the role '" + group.name + "' cannot be changed for '" + row.name + "'.");
  auto change = query(store, database,
                      member ? "INSERT OR IGNORE INTO @.zb_members VALUES(?, ?)"
                             : "DELETE FROM @.zb_members WHERE uid=? AND group_uid=?");
  change.bind(row.uid).bind(group.uid).run();
  work.finish();
}

std::string userOf(Store& store, const std::string& database, const std::string& login) {
  if (isServerRoleMember(store, login, "sysadmin")) return "dbo";
  const LoginRow row = findLogin(store, login);
  const std::string user = row.id == 0 ? std::string() : mappedUser(store, database, row.sid);
  return user.empty() ? "guest" : user;
}

bool hasAccess(Store& store, const std::string& database, const std::string& login) {
  return foldName(database) == master || userOf(store, database, login) != "guest";
}

// ---- sp_helpdb ----

namespace {

DatabaseSummary summaryOf(const DatabaseEntry& entry) {
  static constexpr const char* months[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                           "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
  DatabaseSummary summary;
  summary.name = entry.name;
  summary.id = entry.id;
  summary.owner = "sa";
  std::error_code error;
  const auto bytes = std::filesystem::file_size(entry.data, error);
  std::array<char, 40> text{};
  std::snprintf(text.data(), text.size(), "%10.2f MB",
                error ? 0.0 : static_cast<double>(bytes) / (1024.0 * 1024.0));
  summary.size = text.data();
  const Civil made = civilFromTicks(entry.created);
  std::snprintf(text.data(), text.size(), "%s %2d %d", months[made.month - 1], made.day, made.year);
  summary.created = text.data();
  summary.status =
      "Status=ONLINE, Updateability=READ_WRITE, UserAccess=MULTI_USER, Recovery=SIMPLE, "
      "Collation=Turkish_CI_AS";
  return summary;
}

}  // namespace

std::vector<DatabaseSummary> summarizeDatabases(Store& store, const std::string& name) {
  std::vector<DatabaseSummary> all;
  for (const auto& entry : store.databases())
    if (name.empty() || foldName(name) == foldName(entry.name)) all.push_back(summaryOf(entry));
  if (all.empty())
    throw Error(15010, "The database '" + name +
                           "' does not exist. Supply a valid database name. To see available "
                           "databases, use sys.databases.");
  return all;
}

}  // namespace engine
