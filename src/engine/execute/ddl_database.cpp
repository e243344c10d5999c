// CREATE DATABASE and DROP DATABASE.
//
// A database is entered in master as unfinished before its first file appears, and as finished when all
// stand; a drop goes the other way. What a killed process leaves is told from living work by the lock on
// the database's number, and removed by the next start or the next CREATE DATABASE.
#include <algorithm>

#include "engine/execute/ddl.h"
#include "engine/execute/logins.h"
#include "engine/function.h"
#include "engine/store.h"

namespace engine::ddl {

namespace fs = std::filesystem;

namespace {

enum State : int { finished = 0, making = 1, dropping = 2 };

struct Files {
  fs::path data, log;
  std::string fileName;
};

bool isSystem(const std::string& name) {
  static constexpr const char* names[] = {"master", "tempdb", "model", "msdb"};
  const std::string folded = foldName(name);
  return std::any_of(std::begin(names), std::end(names), [&](const char* each) { return folded == each; });
}

bool isControl(char c) {
  return static_cast<unsigned char>(c) < 0x20 || c == 0x7F;
}

void checkDatabaseName(const std::string& name) {
  constexpr std::int64_t longest = 123;  // characters; the companion's logical name needs some more
  if (characterCount(name) > longest)
    throw Error(103, "The name '" + name + "' is too long. Maximum length is 123.", 15);
  const bool bad = name.empty() || name.front() == '.' || std::any_of(name.begin(), name.end(), isControl) ||
                   name.find_first_of("/\\") != std::string::npos;
  if (bad) throw Error(15004, "The database name '" + name + "' is not a valid name.");
}

// Both separators are understood; what is not absolute lies in the server's folder.
fs::path resolve(const fs::path& folder, std::string text) {
  std::replace(text.begin(), text.end(), '\\', '/');
  return (folder / text).lexically_normal();
}

// A path into the folder that the server was made in is one into its folder, wherever that is now.
fs::path moved(const fs::path& file, const fs::path& recorded, const fs::path& folder) {
  return file.parent_path() == recorded ? folder / file.filename() : file;
}

Files filesOf(const CreateDatabaseStatement& statement, const fs::path& folder) {
  Files files;
  const bool named = !statement.data.empty() && !statement.data.front().path.empty();
  if (named) {
    files.fileName = statement.data.front().path;
    files.data = resolve(folder, files.fileName);
  } else {
    files.fileName = folder.string() + "\\" + statement.name + ".mdf";
    files.data = folder / (statement.name + ".mdf");
  }
  if (!statement.log.empty() && !statement.log.front().path.empty()) {
    files.log = resolve(folder, statement.log.front().path);
  } else {
    files.log = files.data.parent_path() / (files.data.stem().string() + "_log.ldf");
  }
  return files;
}

void checkPlace(const fs::path& file) {
  std::error_code error;
  if (!fs::is_directory(file.parent_path(), error))
    throw Error(
        5133, "Directory lookup for the file \"" + file.string() +
                  "\" failed with the operating system error 3(The system cannot find the path specified.).");
  // On the machines that this server's files come from and go to, case does not tell files apart.
  if (!companionCandidates(file).empty())
    throw Error(5170, "Cannot create file '" + file.string() +
                          "' because it already exists. Change the file path or the file name, and retry the "
                          "operation.");
}

// Bytes of a size as CREATE DATABASE names it, in MB without a unit; 0 where there is none.
std::uintmax_t bytesOf(std::string_view size) {
  static constexpr std::string_view units = "KMGT";
  std::uintmax_t bytes = 0;
  while (!size.empty() && size.front() >= '0' && size.front() <= '9') {
    bytes = bytes * 10 + static_cast<std::uintmax_t>(size.front() - '0');
    size.remove_prefix(1);
  }
  const char unit = size.empty() ? 'M' : static_cast<char>(size.front() & ~0x20);
  const auto power = units.find(unit);
  return power == std::string_view::npos ? 0 : bytes << (10 * (power + 1));
}

// The files grow only as they are filled. Without the room that is asked for, a disk would become full in
// the middle of what follows and lock everybody out of the databases that are there already.
void checkRoom(const CreateDatabaseStatement& statement, const Files& files) {
  std::uintmax_t wanted = 0;
  for (const auto* list : {&statement.data, &statement.log})
    for (const DatabaseFile& file : *list) wanted += bytesOf(file.size);
  std::error_code error;
  const fs::space_info room = fs::space(files.data.parent_path(), error);
  if (!error && room.available < wanted)
    throw Error(5123,
                "CREATE FILE encountered operating system error 112(There is not enough space on the disk.) "
                "while attempting to open or create the physical file '" +
                    files.data.string() + "'.");
}

std::string relativeTo(const fs::path& folder, const fs::path& file) {
  return file.parent_path() == folder ? file.filename().string() : file.string();
}

// A transaction on master that others see as a change of the list of databases.
class MasterChange {
 public:
  explicit MasterChange(Store& store) : store_(store), alias_(store.attach("master")) {
    store_.begin();
    try {
      store_.lockDefinitions("master");
    } catch (...) {
      store_.rollback();
      throw;
    }
  }
  ~MasterChange() {
    if (done_) return;
    try {
      store_.rollback();
    } catch (const Error&) {
      // The first error is on its way.
    }
  }
  MasterChange(const MasterChange&) = delete;
  MasterChange& operator=(const MasterChange&) = delete;

  sqlite3* db() const { return store_.handle(); }
  std::string at(std::string_view sql) const { return atAlias(sql, alias_); }
  void finish() {
    store_.markChanged("master");
    store_.commit();
    done_ = true;
    store_.reloadDatabases();
  }

 private:
  Store& store_;
  std::string alias_;
  bool done_ = false;
};

void refuseInTransaction(const Store& store, const char* statement) {
  if (store.inTransaction())
    throw Error(226, std::string(statement) + " statement not allowed within multi-statement transaction.");
}

void refuseTaken(const MasterChange& change, const std::string& name, const std::string& data) {
  lite::Stmt taken(change.db(), change.at("SELECT 1 FROM @.zb_databases WHERE name=? COLLATE NOCASE"));
  if (isSystem(name) || taken.bind(name).step())
    throw Error(1801, "Database '" + name + "' already exists. Choose a different database name.");
  lite::Stmt used(change.db(), change.at("SELECT name FROM @.zb_databases WHERE data=? COLLATE NOCASE"));
  if (used.bind(data).step())
    throw Error(5170, "Cannot create file '" + data +
                          "' because it already exists and belongs to database '" + used.text(0) + "'.");
}

std::int64_t enter(MasterChange& change, const std::string& name, const Files& files, const fs::path& folder,
                   const std::string& family, State state) {
  const std::string data = relativeTo(folder, files.data);
  refuseTaken(change, name, data);
  lite::Stmt insert(change.db(),
                    change.at("INSERT INTO @.zb_databases(name, data, log, file_name, crdate, state, "
                              "family) VALUES(?, ?, ?, ?, ?, ?, ?)"));
  insert.bind(name).bind(data).bind(relativeTo(folder, files.log)).bind(files.fileName).bind(currentTicks());
  insert.bind(static_cast<int>(state)).bind(family).run();
  return sqlite3_last_insert_rowid(change.db());
}

void setState(Store& store, std::int64_t id, State state) {
  MasterChange change(store);
  lite::Stmt update(change.db(), change.at("UPDATE @.zb_databases SET state=? WHERE id=?"));
  update.bind(static_cast<int>(state)).bind(id).run();
  change.finish();
}

void strike(Store& store, std::int64_t id) {
  MasterChange change(store);
  lite::Stmt remove(change.db(), change.at("DELETE FROM @.zb_databases WHERE id=?"));
  remove.bind(id).run();
  change.finish();
}

struct UnfinishedRow {
  std::int64_t id;
  State state;
  fs::path data, log;
  std::string family, name;
};

// Throws when something of it stays.
void removeFiles(const UnfinishedRow& row) {
  // A name that fits nowhere has never become a file.
  if (fitsFileSystem(row.data)) removeDataFile(unfinishedName(row.data));
  if (fitsFileSystem(row.log)) removeFile(unfinishedName(row.log));
  std::error_code error;
  // While it was being made, a file in that place may still be somebody else's.
  const auto ours = [&](auto&& readIt, const fs::path& file) {
    try {
      return fs::exists(file, error) && (row.state == dropping || readIt(file) == row.family);
    } catch (const Error&) {
      return false;
    }
  };
  if (ours([](const fs::path& file) { return familyInPages(file); }, row.data)) removeDataFile(row.data);
  for (const auto& log : companionCandidates(row.log))
    if (ours([](const fs::path& file) { return readCompanion(file, ""); }, log)) removeFile(log);
}

std::vector<UnfinishedRow> unfinishedRows(Store& store, const std::string& only) {
  const fs::path folder = store.instance().folder();
  lite::Stmt rows(store.handle(),
                  atAlias("SELECT id, state, data, log, family, name FROM @.zb_databases WHERE state<>0 "
                          "AND (?='' OR name=? COLLATE NOCASE)",
                          store.attach("master")));
  rows.bind(only).bind(only);
  std::vector<UnfinishedRow> found;
  while (rows.step())
    found.push_back({rows.integer(0), static_cast<State>(rows.integer(1)), folder / rows.text(2),
                     folder / rows.text(3), rows.text(4), rows.text(5)});
  return found;
}

void attachFiles(Store& store, const std::string& name, const Files& files) {
  const std::string family = readFamily({files.data, files.log, name});
  MasterChange change(store);
  enter(change, name, files, store.instance().folder(), family, finished);
  change.finish();
}

// `owner`: the sid of a maker who is no sysadmin, for the database is his.
void makeFiles(const std::string& name, const Files& files, const std::string& family,
               const std::string& owner) {
  const DatabaseFiles made{unfinishedName(files.data), unfinishedName(files.log), name};
  buildDataFile(made, family, [&](sqlite3* db) {
    if (owner.empty()) return;
    lite::Stmt dbo(db, "UPDATE zb_users SET sid=CAST(? AS BLOB) WHERE uid=1");
    dbo.bind(owner).run();
  });
  putInPlace(unfinishedName(files.log), files.log);
  putInPlace(unfinishedName(files.data), files.data);
}

void makeDatabase(Store& store, const std::string& name, const Files& files, const std::string& owner) {
  checkPlace(files.data);
  checkPlace(files.log);
  tryFile(files.data);
  tryFile(files.log);
  LockFile lock(store.instance().lockFile());
  const std::string family = newFamily();
  std::int64_t id = 0;
  {
    MasterChange change(store);
    id = enter(change, name, files, store.instance().folder(), family, making);
    lock.tryExclusive(LockFile::databaseLock(id));
    change.finish();
  }
  try {
    makeFiles(name, files, family, owner);
    setState(store, id, finished);
  } catch (const Error&) {
    try {
      removeFiles({id, making, files.data, files.log, family, name});
      strike(store, id);
    } catch (const Error&) {
      // The first error tells why; the next start removes what is left.
    }
    throw;
  }
}

}  // namespace

void run(Store& store, SessionContext& context, const CreateDatabaseStatement& statement) {
  refuseInTransaction(store, "CREATE DATABASE");
  checkDatabaseName(statement.name);
  if (const auto left = cleanUnfinished(store, statement.name); !left.empty()) throw left.front().error;
  if (store.databaseExists(statement.name) || isSystem(statement.name))
    throw Error(1801, "Database '" + statement.name + "' already exists. Choose a different database name.");
  if (foldName(statement.name) == temporaryDatabase)
    throw Error(1801, "Database '" + statement.name + "' already exists. Choose a different database name.");
  Files files = filesOf(statement, store.instance().folder());
  const std::string master = store.database("master").fileName;
  const fs::path recorded = resolve({}, master).parent_path();
  files.data = moved(files.data, recorded, store.instance().folder());
  files.log = moved(files.log, recorded, store.instance().folder());
  checkFileName(files.data);
  checkFileName(files.log);
  if (statement.forAttach)
    attachFiles(store, statement.name, files);
  else {
    checkRoom(statement, files);
    const bool own = !context.login.empty() && !isServerRoleMember(store, context.login, "sysadmin");
    makeDatabase(store, statement.name, files, own ? sidOf(store, context.login) : std::string());
  }
}

void dropDatabase(Store& store, const SessionContext& context, const std::string& name) {
  refuseInTransaction(store, "DROP DATABASE");
  if (isSystem(name))
    throw Error(3708, "Cannot drop the database '" + name + "' because it is a system database.");
  if (!store.databaseExists(name))
    throw Error(
        3701,
        "Cannot drop the database '" + name + "', because it does not exist or you do not have permission.",
        11);
  const DatabaseEntry entry = store.database(name);
  LockFile lock(store.instance().lockFile());
  if (foldName(context.database) == foldName(name) || !lock.tryExclusive(LockFile::databaseLock(entry.id)))
    throw Error(3702, "Cannot drop database \"" + name + "\" because it is currently in use.");
  store.detach(name);
  setState(store, entry.id, dropping);
  try {
    removeFiles({entry.id, dropping, entry.data, entry.log, {}, name});
    strike(store, entry.id);
  } catch (const Error&) {
    // It is dropped; the next start removes what is left of it.
  }
}

// The files stay whole where they lie, and may be attached again under any name.
void detachDatabase(Store& store, const SessionContext& context, const std::string& name) {
  if (isSystem(name))
    throw Error(7940, "System databases master, model, msdb, and tempdb cannot be detached.");
  const DatabaseEntry entry = store.database(name);
  LockFile lock(store.instance().lockFile());
  if (foldName(context.database) == foldName(name) || !lock.tryExclusive(LockFile::databaseLock(entry.id)))
    throw Error(3703, "Cannot detach the database '" + entry.name + "' because it is currently in use.");
  store.detach(name);
  strike(store, entry.id);
}

std::vector<LeftOver> cleanUnfinished(Store& store, const std::string& only) {
  std::vector<LeftOver> left;
  for (const auto& row : unfinishedRows(store, only)) {
    LockFile lock(store.instance().lockFile());
    if (!lock.tryExclusive(LockFile::databaseLock(row.id))) continue;  // at work in another session
    try {
      removeFiles(row);
      strike(store, row.id);
      store.instance().setTrouble(foldName(row.name), std::nullopt);
    } catch (const Error& error) {
      left.push_back({row.name, error});
      store.instance().setTrouble(foldName(row.name), error);
    }
  }
  return left;
}

}  // namespace engine::ddl
