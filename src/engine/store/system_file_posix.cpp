#ifndef _WIN32
#include <fcntl.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "engine/store/system_file.h"

namespace engine::system {

namespace fs = std::filesystem;

namespace {

constexpr mode_t privateMode = 0600;

int descriptor(std::intptr_t handle) {
  return static_cast<int>(handle);
}

struct flock range(short type, std::int64_t offset) {
  struct flock lock {};
  lock.l_type = type;
  lock.l_whence = SEEK_SET;
  lock.l_start = offset;
  lock.l_len = 1;
  return lock;
}

}  // namespace

File File::createNew(const fs::path& name) {
  return File(::open(name.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, privateMode));
}
File File::openOrCreate(const fs::path& name) {
  return File(::open(name.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, privateMode));
}
// Without O_NONBLOCK a pipe in that place would wait for somebody at its other end.
File File::openExisting(const fs::path& name) {
  return File(::open(name.c_str(), O_RDWR | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
}
File File::openForReading(const fs::path& name) {
  return File(::open(name.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
}

File File::createNameless(const fs::path& folder) {
#ifdef O_TMPFILE
  File file(::open(folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, privateMode));
  // What a file system or a system says that has no such files.
  if (!file.valid() && (errno == EOPNOTSUPP || errno == EISDIR || errno == EINVAL)) errno = ENOTSUP;
  return file;
#else
  static_cast<void>(folder);
  errno = ENOTSUP;
  return {};
#endif
}

void File::close() {
  if (valid()) ::close(descriptor(handle_));
  handle_ = none;
}

bool File::writeAll(std::string_view bytes) const {
  while (!bytes.empty()) {
    const ssize_t written = ::write(descriptor(handle_), bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

bool File::flush() const {
  return ::fsync(descriptor(handle_)) == 0;
}

bool File::give(std::int64_t bytes) const {
  int reason;
  do {
    reason = ::posix_fallocate(descriptor(handle_), 0, bytes);
  } while (reason == EINTR);
  errno = reason;
  return reason == 0;
}

// Open-file-description locks: they belong to this file alone and vanish with the process.
bool File::lock(std::int64_t offset, Lock kind, bool wait) {
  struct flock lock = range(kind == Lock::Shared ? F_RDLCK : F_WRLCK, offset);
  int rc;
  do {
    rc = ::fcntl(descriptor(handle_), wait ? F_OFD_SETLKW : F_OFD_SETLK, &lock);
  } while (rc != 0 && errno == EINTR);
  return rc == 0;
}

void File::unlock(std::int64_t offset) {
  struct flock lock = range(F_UNLCK, offset);
  ::fcntl(descriptor(handle_), F_OFD_SETLK, &lock);
}

bool File::lockedByOthers(std::int64_t offset) const {
  struct flock lock = range(F_WRLCK, offset);
  return ::fcntl(descriptor(handle_), F_OFD_GETLK, &lock) == 0 && lock.l_type != F_UNLCK;
}

void* File::mapShared(std::size_t bytes) const {
  void* address = ::mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_SHARED, descriptor(handle_), 0);
  return address == MAP_FAILED ? nullptr : address;
}

void File::unmap(void* address, std::size_t bytes) {
  ::munmap(address, bytes);
}

bool HeldFolder::hold(const fs::path& folder) {
  handle_ = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
  const int fd = descriptor(handle_);
  struct stat held {
  }, there{};
  return fd >= 0 && ::fstat(fd, &held) == 0 && held.st_uid == ::geteuid() &&
         ::flock(fd, LOCK_EX | LOCK_NB) == 0 && ::lstat(folder.c_str(), &there) == 0 &&
         there.st_ino == held.st_ino && there.st_dev == held.st_dev;
}

HeldFolder::~HeldFolder() {
  if (handle_ >= 0) ::close(descriptor(handle_));
}

fs::path makeFolder(const fs::path& beginning) {
  std::string name = beginning.string() + "XXXXXX";
  return ::mkdtemp(name.data()) ? fs::path(name) : fs::path();
}

bool replace(const fs::path& from, const fs::path& to) {
  return ::rename(from.c_str(), to.c_str()) == 0;
}

bool renameNew(const fs::path& from, const fs::path& to) {
  if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) return true;
  if (errno != EINVAL) return false;
  // A file system without that flag: the name was looked for before.
  std::error_code error;
  if (!fs::exists(to, error)) return replace(from, to);
  errno = EEXIST;
  return false;
}

bool remove(const fs::path& name) {
  return ::unlink(name.c_str()) == 0;
}

void flushFolder(const fs::path& folder) {
  const int handle = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (handle < 0) return;
  ::fsync(handle);
  ::close(handle);
}

bool isOtherThanAFile(const fs::path& name) {
  struct stat status {};
  return ::stat(name.c_str(), &status) == 0 && !S_ISREG(status.st_mode);
}

std::uint64_t numberOf(const fs::path& name) {
  struct stat status {};
  return ::stat(name.c_str(), &status) == 0 ? status.st_ino : 0;
}

std::optional<Stamp> stampOf(const fs::path& name) {
  struct stat info {};
  if (::stat(name.c_str(), &info) != 0) return std::nullopt;
  return Stamp{static_cast<std::int64_t>(info.st_dev), static_cast<std::int64_t>(info.st_ino), info.st_size,
               info.st_ctim.tv_sec, info.st_ctim.tv_nsec};
}

int accessError(const fs::path& name) {
  return ::access(name.c_str(), R_OK | W_OK) == 0 ? 0 : errno;
}

bool isOpenToOthers(const fs::path& name) {
  struct stat status {};
  return ::lstat(name.c_str(), &status) == 0 && (status.st_mode & (S_IRWXG | S_IRWXO)) != 0;
}

std::string hostName() {
  char name[256] = {};
  return ::gethostname(name, sizeof name - 1) == 0 ? name : std::string();
}

// Who has taken the signal himself keeps it.
void ignoreSizeSignal() {
  struct sigaction now {};
  if (::sigaction(SIGXFSZ, nullptr, &now) == 0 && now.sa_handler == SIG_DFL) ::signal(SIGXFSZ, SIG_IGN);
}

}  // namespace engine::system

#endif
