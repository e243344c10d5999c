#include "engine/store/instance.h"

#include <chrono>

#include "engine/store/storage.h"

namespace engine {

Instance::Instance(std::filesystem::path folder)
    : folder_(std::move(folder)), shared_(lockFile()), watcher_([this] { watch(); }) {
  logins_.shareFailures(shared_.operator->());
}

Instance::~Instance() {
  {
    const std::lock_guard lock(endingMutex_);
    ended_ = true;
  }
  ending_.notify_all();
  watcher_.join();
}

// Another process may stop the service while the sessions here are idle; their files must be closed
// then, or the data files could not be replaced.
void Instance::watch() {
  std::unique_lock lock(endingMutex_);
  while (!ending_.wait_for(lock, std::chrono::milliseconds(100), [this] { return ended_; }))
    if (stopped()) closeIdle();
}

std::shared_ptr<const DatabaseCatalog> Instance::sharedCatalog(const std::string& key,
                                                               std::int64_t version) const {
  const std::lock_guard lock(catalogMutex_);
  const auto found = catalogs_.find(key);
  return found != catalogs_.end() && found->second->version == version ? found->second : nullptr;
}

void Instance::shareCatalog(const std::string& key, std::shared_ptr<const DatabaseCatalog> catalog) {
  const std::lock_guard lock(catalogMutex_);
  catalogs_[key] = std::move(catalog);
}

void Instance::forgetCatalogs() {
  const std::lock_guard lock(catalogMutex_);
  catalogs_.clear();
}

void Instance::setSuspects(std::map<std::string, std::string> reasons) {
  const std::lock_guard lock(catalogMutex_);
  suspects_ = std::move(reasons);
}

void Instance::setTrouble(const std::string& name, std::optional<Error> trouble) {
  const std::lock_guard lock(catalogMutex_);
  troubles_.erase(name);
  if (trouble) troubles_.emplace(name, std::move(*trouble));
}

std::optional<Error> Instance::trouble(const std::string& name) const {
  const std::lock_guard lock(catalogMutex_);
  const auto found = troubles_.find(name);
  return found == troubles_.end() ? std::nullopt : std::optional<Error>(found->second);
}

void Instance::addRemarks(const std::vector<LeftOver>& remarks) {
  const std::lock_guard lock(catalogMutex_);
  remarks_.insert(remarks_.end(), remarks.begin(), remarks.end());
}

std::vector<LeftOver> Instance::remarks() const {
  const std::lock_guard lock(catalogMutex_);
  return remarks_;
}

std::string Instance::suspect(const std::string& name) const {
  const std::lock_guard lock(catalogMutex_);
  const auto found = suspects_.find(name);
  return found == suspects_.end() ? std::string() : found->second;
}

void Instance::enroll(Store& store) {
  const std::lock_guard lock(storesMutex_);
  stores_.insert(&store);
}

void Instance::withdraw(Store& store) {
  const std::lock_guard lock(storesMutex_);
  stores_.erase(&store);
}

void Instance::closeIdle() {
  const std::lock_guard lock(storesMutex_);
  for (Store* store : stores_) store->closeIfIdle();
}

void Instance::closeMoved() {
  const std::lock_guard lock(storesMutex_);
  for (Store* store : stores_) store->closeMovedIfIdle();
}

}  // namespace engine
