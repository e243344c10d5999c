#include "engine/store/shared_state.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "engine/value.h"

namespace engine {

namespace {
constexpr off_t pageSize = 4096;

[[noreturn]] void failOpen(const std::filesystem::path& file, int reason) {
  throw Error(5120, "Unable to open the physical file \"" + file.string() + "\". Operating system error " +
                        std::to_string(reason) + ": \"" + std::strerror(reason) + "\".");
}

// A file that may grow no further is an error of the statement that writes it, not the end of the process.
// Who has taken the signal himself keeps it.
void ignoreSizeSignal() {
  struct sigaction now {};
  if (::sigaction(SIGXFSZ, nullptr, &now) == 0 && now.sa_handler == SIG_DFL) ::signal(SIGXFSZ, SIG_IGN);
}

// The page in its full length, with its blocks: on a full disk the first touch of a mapped hole would end
// the process. What the file holds stays; the zero bytes of a new one are the state of a running service.
void givePage(const LockFile& opened, const std::filesystem::path& file) {
  int reason;
  do {
    reason = ::posix_fallocate(opened.descriptor(), 0, pageSize);
  } while (reason == EINTR);
  if (reason != 0) failOpen(file, reason);
}
}  // namespace

LockFile::LockFile(const std::filesystem::path& file)
    : fd_(::open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600)) {
  if (fd_ < 0) failOpen(file, errno);
  ignoreSizeSignal();
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
  static_assert(std::atomic<std::uint64_t>::is_always_lock_free && sizeof(SharedPage) <= pageSize);
  LockFile opened(file);
  givePage(opened, file);
  void* address = ::mmap(nullptr, pageSize, PROT_READ | PROT_WRITE, MAP_SHARED, opened.descriptor(), 0);
  if (address == MAP_FAILED) failOpen(file, errno);
  page_ = static_cast<SharedPage*>(address);
}

SharedState::~SharedState() {
  ::munmap(page_, pageSize);
}

}  // namespace engine
