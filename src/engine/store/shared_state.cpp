#include "engine/store/shared_state.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "engine/value.h"

namespace engine {

namespace {
constexpr off_t pageSize = 4096;

[[noreturn]] void failOpen(const std::filesystem::path& file) {
  throw Error(5120, "Unable to open the physical file \"" + file.string() + "\". Operating system error " +
                        std::to_string(errno) + ": \"" + std::strerror(errno) + "\".");
}
}  // namespace

LockFile::LockFile(const std::filesystem::path& file)
    : fd_(::open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600)) {
  if (fd_ < 0) failOpen(file);
}

LockFile::~LockFile() {
  ::close(fd_);
}

bool LockFile::apply(int type, std::int64_t offset, bool wait) {
  struct flock lock {};
  lock.l_type = static_cast<short>(type);
  lock.l_whence = SEEK_SET;
  lock.l_start = offset;
  lock.l_len = 1;
  int rc;
  do {
    rc = ::fcntl(fd_, wait ? F_OFD_SETLKW : F_OFD_SETLK, &lock);
  } while (rc != 0 && errno == EINTR);
  return rc == 0;
}

bool LockFile::tryShared(std::int64_t offset) {
  return apply(F_RDLCK, offset, false);
}
bool LockFile::tryExclusive(std::int64_t offset) {
  return apply(F_WRLCK, offset, false);
}
void LockFile::waitShared(std::int64_t offset) {
  apply(F_RDLCK, offset, true);
}
void LockFile::waitExclusive(std::int64_t offset) {
  apply(F_WRLCK, offset, true);
}
void LockFile::release(std::int64_t offset) {
  apply(F_UNLCK, offset, false);
}

bool LockFile::heldByOthers(std::int64_t offset) const {
  struct flock lock {};
  lock.l_type = F_WRLCK;
  lock.l_whence = SEEK_SET;
  lock.l_start = offset;
  lock.l_len = 1;
  return ::fcntl(fd_, F_OFD_GETLK, &lock) == 0 && lock.l_type != F_UNLCK;
}

SharedState::SharedState(const std::filesystem::path& file) {
  static_assert(std::atomic<std::uint64_t>::is_always_lock_free);
  LockFile opened(file);
  struct stat status {};
  // Growing an empty file twice is harmless; its zero bytes are the state of a running service.
  const bool sized = ::fstat(opened.descriptor(), &status) == 0 &&
                     (status.st_size >= pageSize || ::ftruncate(opened.descriptor(), pageSize) == 0);
  if (!sized) failOpen(file);
  void* address = ::mmap(nullptr, pageSize, PROT_READ | PROT_WRITE, MAP_SHARED, opened.descriptor(), 0);
  if (address == MAP_FAILED) failOpen(file);
  page_ = static_cast<SharedPage*>(address);
}

SharedState::~SharedState() {
  ::munmap(page_, pageSize);
}

}  // namespace engine
