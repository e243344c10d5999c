// Copies of databases, as a server makes and reads them.
#include "engine/catalog.h"
#include "engine/function.h"
#include "engine/server/server.h"
#include "engine/store.h"
#include "engine/store/companion.h"
#include "engine/store/copy.h"
#include "engine/store/data_reading.h"
#include "engine/store/system_file.h"

namespace engine {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view scratchName = "zembera-kopya-";

// Those of processes that were killed.
void removeLeftScratch(const fs::path& parent) {
  std::error_code error;
  std::vector<fs::path> found;
  for (fs::directory_iterator it(parent, error), end; !error && it != end; it.increment(error))
    if (it->path().filename().string().starts_with(scratchName)) found.push_back(it->path());
  for (const fs::path& each : found) {
    system::HeldFolder left;
    if (left.hold(each)) fs::remove_all(each, error);
  }
}

class ScratchFolder {
 public:
  explicit ScratchFolder(const fs::path& parent) {
    removeLeftScratch(parent);
    do {  // another process that looks for left ones may take it before it is held
      path = system::makeFolder(parent / scratchName);
      if (path.empty())
        throw Error(5123,
                    "CREATE FILE encountered operating system error while attempting to create the "
                    "scratch folder '" +
                        (parent / scratchName).string() + "XXXXXX'.");
      held_ = std::make_unique<system::HeldFolder>();
    } while (!held_->hold(path));
  }
  ~ScratchFolder() {
    std::error_code ignored;
    fs::remove_all(path, ignored);
  }
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;

  fs::path path;

 private:
  std::unique_ptr<system::HeldFolder> held_;
};

void copyFile(const fs::path& from, const fs::path& to) {
  std::error_code error;
  fs::copy_file(from, to, error);
  if (error)
    throw Error(5120, "Unable to open the physical file \"" + from.string() + "\". Operating system error " +
                          std::to_string(error.value()) + ": \"" + error.message() + "\".");
  fs::permissions(to, fs::perms::owner_read | fs::perms::owner_write, error);
}

void registerDatabase(Store& store, const DatabaseFiles& files, const std::string& family) {
  store.begin();
  const std::string master = store.attach("master");
  store.lockDefinitions("master");
  lite::Stmt put(store.handle(), "INSERT INTO " + master +
                                     ".zb_databases(name, data, log, file_name, crdate, state, family) "
                                     "VALUES(?, ?, ?, ?, ?, 0, ?)");
  put.bind(files.name)
      .bind(files.data.string())
      .bind(files.log.string())
      .bind(files.data.string())
      .bind(currentTicks())
      .bind(family)
      .run();
  store.markChanged("master");
  store.commit();
  store.reloadDatabases();
}

}  // namespace

Server::Copy Server::openCopy(const fs::path& data, const fs::path& log, const std::string& name,
                              const fs::path& parent) {
  const auto scratch = std::make_shared<ScratchFolder>(parent);
  DatabaseFiles files{fs::absolute(data), fs::absolute(log), name};
  const bool settled = isSettled(files);
  if (!settled) {
    const fs::path copiedData = scratch->path / files.data.filename(),
                   copiedLog = scratch->path / files.log.filename();
    copyFile(files.data, copiedData);
    copyFile(files.log, copiedLog);
    files.data = copiedData;
    files.log = readyCompanion(copiedData, copiedLog, name);
  }
  Copy copy;
  copy.login = "sa";
  copy.password = newFamily();
  const std::string hash = hashSecret(copy.password);
  copy.server = make(scratch->path / "sunucu", copy.login, hash);
  copy.server->instance_->logins().trust(foldName(copy.login), copy.password, hash);
  copy.server->scratch_ = scratch;
  if (settled) copy.server->instance_->setCopy(files.data);
  {
    Store store(copy.server->instance_);
    store.beginStatement();
    registerDatabase(store, files, readCompanion(files.log, name));
    store.attach(name);
    store.endStatement();
  }
  // What the log held lies in the data file from now on.
  if (!settled && settleDataFile(files) && isSettled(files)) copy.server->instance_->setCopy(files.data);
  copy.data = files.data;
  return copy;
}

struct CopyReading::Impl {
  explicit Impl(const std::shared_ptr<Server>& server) : store(server->sharedInstance()) {}

  Store store;
  std::optional<store::DataReading> reading;
};

CopyReading::CopyReading(const std::shared_ptr<Server>& server, const std::string& database)
    : impl_(std::make_unique<Impl>(server)) {
  impl_->store.beginStatement();
  const std::string alias = impl_->store.attach(database);
  if (impl_->store.instance().isCopy(impl_->store.database(database).data))
    impl_->reading.emplace(impl_->store.handle(), alias, *impl_->store.catalog(database));
}

CopyReading::~CopyReading() {
  impl_->reading.reset();
  impl_->store.endStatement();
}

void CopyReading::take(const char* bytes, std::size_t count) {
  if (impl_->reading) impl_->reading->take(bytes, count);
}

DataFindings CopyReading::finish() {
  return impl_->reading ? impl_->reading->finish() : DataFindings();
}

std::vector<TableDigest> Server::digest(const std::string& database) {
  Store store(instance_);
  store.beginStatement();
  const std::string alias = store.attach(database);
  store.begin();  // all tables at one moment
  auto tables = digestTables(store.handle(), alias);
  store.rollback();
  return tables;
}

std::vector<TableDigest> Server::copyLive(const std::string& database, const fs::path& data,
                                          const fs::path& log, const CopyStep& step) {
  DatabaseFiles from;
  {
    Store store(instance_);
    store.beginStatement();
    const DatabaseEntry entry = store.database(database);
    from = {entry.data, entry.log, entry.name};
  }
  return engine::copyLive(from, {data, log, from.name}, step);
}

}  // namespace engine
