#include "engine/store/shared_state.h"

#include <cerrno>
#include <cstring>

#include "engine/value.h"

namespace engine {

namespace {

using system::File;

constexpr std::int64_t pageSize = 4096;

[[noreturn]] void failOpen(const std::filesystem::path& file, int reason) {
  throw Error(5120, "Unable to open the physical file \"" + file.string() + "\". Operating system error " +
                        std::to_string(reason) + ": \"" + std::strerror(reason) + "\".");
}

}  // namespace

LockFile::LockFile(const std::filesystem::path& file) : file_(File::openOrCreate(file)) {
  if (!file_.valid()) failOpen(file, errno);
  system::ignoreSizeSignal();
}

bool LockFile::tryShared(std::int64_t offset) {
  return file_.lock(offset, File::Lock::Shared, false);
}
bool LockFile::tryExclusive(std::int64_t offset) {
  return file_.lock(offset, File::Lock::Exclusive, false);
}
void LockFile::waitShared(std::int64_t offset) {
  file_.lock(offset, File::Lock::Shared, true);
}
void LockFile::waitExclusive(std::int64_t offset) {
  file_.lock(offset, File::Lock::Exclusive, true);
}
void LockFile::release(std::int64_t offset) {
  file_.unlock(offset);
}
bool LockFile::heldByOthers(std::int64_t offset) const {
  return file_.lockedByOthers(offset);
}

// The page gets its full length with its blocks: on a full disk the first touch of a mapped hole would end
// the process. What the file holds stays; the zero bytes of a new one are the state of a running service.
SharedState::SharedState(const std::filesystem::path& name) {
  static_assert(std::atomic<std::uint64_t>::is_always_lock_free && sizeof(SharedPage) <= pageSize);
  const LockFile opened(name);
  if (!opened.file().give(pageSize)) failOpen(name, errno);
  page_ = static_cast<SharedPage*>(opened.file().mapShared(pageSize));
  if (!page_) failOpen(name, errno);
}

SharedState::~SharedState() {
  File::unmap(page_, pageSize);
}

}  // namespace engine
