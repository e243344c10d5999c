// One data folder as this process knows it: what its sessions share.
#pragma once

#include <atomic>
#include <condition_variable>
#include <filesystem>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "engine/catalog.h"
#include "engine/store/identity_marks.h"
#include "engine/store/login_guard.h"
#include "engine/store/session_list.h"
#include "engine/store/shared_state.h"

namespace engine {

class Store;

// Something that broke off and could not be ended for now, or not as it should.
struct LeftOver {
  std::string name;
  Error error;
};

class Instance {
 public:
  explicit Instance(std::filesystem::path folder);  // the folder must exist
  ~Instance();
  Instance(const Instance&) = delete;
  Instance& operator=(const Instance&) = delete;

  const std::filesystem::path& folder() const { return folder_; }
  std::filesystem::path masterFile() const { return folder_ / "master.mdf"; }
  std::filesystem::path lockFile() const { return folder_ / "server.lck"; }
  SharedState& shared() { return shared_; }
  LoginGuard& logins() { return logins_; }
  IdentityMarks& identityMarks() { return identityMarks_; }
  SessionList& sessions() { return sessions_; }

  // A database of this instance whose files are a settled copy: opened for reading only and left as they
  // are. Said before the first session.
  void setCopy(const std::filesystem::path& data) { copy_ = data; }
  bool isCopy(const std::filesystem::path& data) const { return !copy_.empty() && data == copy_; }

  bool stopped() const { return shared_->stopped.load(std::memory_order_acquire) == stoppedMark; }

  // Catalogs read by one session serve the others; only committed ones are kept.
  std::shared_ptr<const DatabaseCatalog> sharedCatalog(const std::string& key, std::int64_t version) const;
  void shareCatalog(const std::string& key, std::shared_ptr<const DatabaseCatalog> catalog);
  void forgetCatalogs();

  // Databases (by folded name) whose part of a broken-off commit could not be ended, with the reason.
  void setSuspects(std::map<std::string, std::string> reasons);
  std::string suspect(const std::string& foldedName) const;  // empty: none
  // Why what a broken-off CREATE or DROP DATABASE left could not be cleaned up.
  void setTrouble(const std::string& foldedName, std::optional<Error> trouble);
  std::optional<Error> trouble(const std::string& foldedName) const;
  // What recovery has to tell an administrator.
  void addRemarks(const std::vector<LeftOver>& remarks);
  std::vector<LeftOver> remarks() const;

  // While registered, a store's files are closed when the service stops, even if its session is idle.
  void enroll(Store& store);
  void withdraw(Store& store);
  // Closes the files of all sessions of this process that run no statement.
  void closeIdle();
  void closeMoved();

 private:
  void watch();

  std::filesystem::path folder_, copy_;
  SharedState shared_;
  LoginGuard logins_;
  IdentityMarks identityMarks_;
  SessionList sessions_;
  mutable std::mutex catalogMutex_;
  std::map<std::string, std::string> suspects_;
  std::map<std::string, Error> troubles_;
  std::vector<LeftOver> remarks_;
  std::map<std::string, std::shared_ptr<const DatabaseCatalog>> catalogs_;  // by file
  std::mutex storesMutex_;
  std::set<Store*> stores_;
  std::condition_variable ending_;
  std::mutex endingMutex_;
  bool ended_ = false;
  std::thread watcher_;
};

}  // namespace engine
