// The folder: made, opened, stopped and started.
#include "engine/server/server.h"

#include <array>
#include <chrono>
#include <map>
#include <mutex>
#include <optional>
#include <thread>

#include "engine/catalog.h"
#include "engine/execute.h"
#include "engine/execute/server_identity.h"
#include "engine/function.h"
#include "engine/store.h"

namespace engine {

namespace fs = std::filesystem;

namespace {

constexpr const char* masterTablesSql = R"(
CREATE TABLE zb_databases(
  id INTEGER PRIMARY KEY AUTOINCREMENT, name TEXT NOT NULL COLLATE TRCI, data TEXT NOT NULL, log TEXT NOT NULL,
  file_name TEXT NOT NULL COLLATE TRCI, crdate INTEGER NOT NULL, state INTEGER NOT NULL, family TEXT NOT NULL);
CREATE UNIQUE INDEX zb_databases_name ON zb_databases(name COLLATE NOCASE);
INSERT INTO sqlite_sequence(name, seq) VALUES('zb_databases', 4);
CREATE TABLE zb_logins(
  id INTEGER PRIMARY KEY AUTOINCREMENT, name TEXT NOT NULL COLLATE TRCI, sid BLOB NOT NULL,
  password_hash TEXT NOT NULL, default_database TEXT NOT NULL COLLATE TRCI, crdate INTEGER NOT NULL);
CREATE UNIQUE INDEX zb_logins_name ON zb_logins(name COLLATE NOCASE);
CREATE TABLE zb_server_roles(login_id INTEGER, role TEXT, PRIMARY KEY(login_id, role)) WITHOUT ROWID;
)";

fs::path masterOf(const fs::path& folder) {
  return folder / "master.mdf";
}
fs::path masterLogOf(const fs::path& folder) {
  return folder / "master_log.ldf";
}

void fillMaster(sqlite3* db, const fs::path& folder, const std::string& family, const std::string& login,
                const std::string& passwordHash) {
  lite::exec(db, masterTablesSql);
  lite::Stmt self(db,
                  "INSERT INTO zb_databases(id, name, data, log, file_name, crdate, state, family) VALUES(1, "
                  "'master', 'master.mdf', 'master_log.ldf', ?, ?, 0, ?)");
  self.bind(folder.string() + "\\master.mdf").bind(currentTicks()).bind(family).run();
  lite::Stmt user(
      db,
      "INSERT INTO zb_logins(name, sid, password_hash, default_database, crdate) VALUES(?, x'01', "
      "?, 'master', ?)");
  user.bind(login).bind(passwordHash).bind(currentTicks()).run();
  lite::exec(db, "INSERT INTO zb_server_roles VALUES(last_insert_rowid(), 'sysadmin')");
}

fs::path absoluteFolder(const fs::path& folder) {
  std::error_code error;
  fs::path absolute = fs::weakly_canonical(fs::absolute(folder, error), error);
  if (absolute.filename().empty()) absolute = absolute.parent_path();
  return absolute;
}

[[noreturn]] void failFolder(const fs::path& folder, const std::string& why) {
  throw Error(5120, "Unable to open the data folder \"" + folder.string() + "\": " + why + ".");
}

}  // namespace

Server::Server(std::shared_ptr<Instance> instance) : instance_(std::move(instance)) {}

const fs::path& Server::folder() const {
  return instance_->folder();
}

std::string Server::machineName() {
  return serverName();
}

bool Server::exists(const fs::path& folder) {
  std::error_code error;
  return fs::exists(masterOf(folder), error);
}

std::shared_ptr<Server> Server::open(const fs::path& given) {
  const fs::path folder = absoluteFolder(given);
  std::error_code error;
  if (!fs::is_directory(folder, error)) failFolder(folder, "it is no folder");
  if (!exists(folder)) failFolder(folder, "it holds no master database");
  std::shared_ptr<Server> server(new Server(std::make_shared<Instance>(folder)));
  if (server->serviceState() == ServiceState::Running) {
    Store store(server->instance_);
    store.beginStatement();
    store.recoverIntents();
    for (const auto& left : ddl::cleanUnfinished(store))
      server->leftOvers_.push_back({left.name, left.error});
    store.endStatement();
  }
  return server;
}

std::shared_ptr<Server> Server::create(const fs::path& given, const std::string& login,
                                       const std::string& password) {
  if (exists(absoluteFolder(given)))
    throw Error(1802, "The folder '" + absoluteFolder(given).string() + "' holds a master database already.");
  if (login.empty()) throw Error(15004, "Name cannot be NULL.");
  return make(given, login, hashPassword(password));
}

std::shared_ptr<Server> Server::make(const fs::path& given, const std::string& login,
                                     const std::string& passwordHash) {
  const fs::path folder = absoluteFolder(given);
  std::error_code error;
  const bool made = fs::create_directories(folder, error);
  if (error) failFolder(folder, error.message());
  if (made) makePrivate(folder);
  // One maker at a time; the files appear whole, the data file, which makes it a server, last.
  LockFile lock(folder / "server.lck");
  lock.waitExclusive(LockFile::serviceLock);
  if (exists(folder))
    throw Error(1802, "The folder '" + folder.string() + "' holds a master database already.");
  const std::string family = newFamily();
  const fs::path data = unfinishedName(masterOf(folder)), log = unfinishedName(masterLogOf(folder));
  buildDataFile({data, log, "master"}, family,
                [&](sqlite3* db) { fillMaster(db, folder, family, login, passwordHash); });
  makePrivate(log);
  fs::rename(log, masterLogOf(folder), error);
  if (error) failFolder(folder, error.message());
  putInPlace(data, masterOf(folder));
  lock.release(LockFile::serviceLock);
  return open(folder);
}

std::vector<DamagedDatabase> Server::leftOvers() const {
  std::vector<DamagedDatabase> all = leftOvers_;
  for (const LeftOver& remark : instance_->remarks()) all.push_back({remark.name, remark.error});
  return all;
}

std::vector<fs::path> Server::exposed() const {
  return openToOthers(folder());
}

void Server::closeExposed() {
  for (const fs::path& path : exposed()) makePrivate(path);
}

fs::path Server::recordedFolder() const {
  Store store(instance_);
  return fs::path(store.database("master").fileName.substr(0, store.database("master").fileName.rfind('\\')));
}

ServiceState Server::serviceState() const {
  return instance_->stopped() ? ServiceState::Stopped : ServiceState::Running;
}

namespace {

std::vector<DatabaseEntry> registered(const std::shared_ptr<Instance>& instance) {
  Store store(instance);
  return store.databases();
}

// Which files this process left when it stopped the service. One that nobody has touched since needs no
// second look at its pages: a backup of a big database would otherwise keep its users waiting for it.
class Untouched {
 public:
  void left(const fs::path& file) {
    const std::lock_guard guard(busy_);
    stamps_[file] = system::stampOf(file);
  }
  // Once: what happens to it while the service runs is not watched.
  bool still(const fs::path& file) {
    const std::lock_guard guard(busy_);
    const auto stamp = system::stampOf(file);
    const auto at = stamps_.find(file);
    const bool same = at != stamps_.end() && stamp && at->second == stamp;
    stamps_.erase(file);
    return same;
  }

 private:
  std::mutex busy_;
  std::map<fs::path, std::optional<system::Stamp>> stamps_;
};
Untouched untouched;

// Longer than the file system's clock stands still: whoever writes after it leaves another time.
constexpr std::chrono::milliseconds clockTick{20};

}  // namespace

void Server::stop() {
  LockFile lock(instance_->lockFile());
  lock.waitExclusive(LockFile::serviceLock);
  const auto databases = registered(instance_);
  instance_->shared()->stopped.store(stoppedMark);
  // Whoever came before the mark holds the statement lock; whoever comes after it is refused.
  lock.waitExclusive(LockFile::statementLock);
  lock.release(LockFile::statementLock);
  instance_->closeIdle();
  for (const auto& database : databases) {
    try {
      settleDataFile({database.data, database.log, database.name});
    } catch (const Error&) {
      // A damaged or missing file is reported at the next start; the others are written back.
    }
  }
  std::this_thread::sleep_for(clockTick);
  for (const auto& database : databases)
    for (const fs::path& file : {database.data, database.log}) untouched.left(file);
}

std::vector<DamagedDatabase> Server::start() {
  LockFile lock(instance_->lockFile());
  lock.waitExclusive(LockFile::serviceLock);
  instance_->forgetCatalogs();
  instance_->identityMarks().clear();  // the files may be others now
  instance_->shared()->generation.fetch_add(1);
  instance_->shared()->stopped.store(0);
  Store store(instance_);
  store.beginStatement();
  store.recoverIntents();
  std::vector<DamagedDatabase> damaged;
  for (const auto& left : ddl::cleanUnfinished(store)) damaged.push_back({left.name, left.error});
  for (const auto& database : store.databases()) {
    try {
      const bool data = untouched.still(database.data), log = untouched.still(database.log);
      if (!data || !log) checkPages({database.data, database.log, database.name});
      store.attach(database.name);
    } catch (const Error& error) {
      damaged.push_back({database.name, error});
    }
  }
  store.endStatement();
  return damaged;
}

}  // namespace engine
