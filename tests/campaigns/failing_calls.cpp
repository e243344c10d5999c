#include "failing_calls.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <stdarg.h>
#include <stdio.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <mutex>
#include <string>
#include <string_view>

namespace {

struct System {
  std::mutex mutex;
  std::string folder;
  campaign::FailingCall call;
  bool armed = false, struck = false;
  int passed = 0;
  std::array<std::atomic<bool>, 4096> watched{};  // by descriptor

  // The error of this call; 0: it passes.
  int check(bool room) {
    const std::lock_guard lock(mutex);
    if (!armed || (struck && !call.lasting) || (call.room && !room)) return 0;
    if (!struck && passed < call.after) return ++passed, 0;
    struck = true;
    return call.error;
  }
  bool isWatched(int fd) const {
    return fd >= 0 && static_cast<std::size_t>(fd) < watched.size() && watched[static_cast<std::size_t>(fd)];
  }
  void watch(int fd, bool on) {
    if (fd >= 0 && static_cast<std::size_t>(fd) < watched.size()) watched[static_cast<std::size_t>(fd)] = on;
  }
  bool holds(const char* path) {
    return path && !folder.empty() && std::string_view(path).starts_with(folder);
  }
};

System& state() {
  static auto& made = *new System;
  return made;
}

template <typename Function>
Function next(const char* name) {
  return reinterpret_cast<Function>(::dlsym(RTLD_NEXT, name));
}

int opened(const char* path, int flags, mode_t mode) {
  System& s = state();
  const bool ours = s.holds(path);
  if (ours)
    if (const int error = s.check((flags & O_CREAT) != 0 && ::access(path, F_OK) != 0))
      return errno = error, -1;
  static const auto real = next<int (*)(int, const char*, int, ...)>("openat64");
  const int fd = real(AT_FDCWD, path, flags, mode);
  s.watch(fd, ours);
  return fd;
}

bool fails(bool ours, bool room = false) {
  if (!ours) return false;
  const int error = state().check(room);
  if (error != 0) errno = error;
  return error != 0;
}

}  // namespace

#define MODE_OF(flags)                          \
  mode_t mode = 0;                              \
  if (((flags) & (O_CREAT | O_TMPFILE)) != 0) { \
    va_list rest;                               \
    va_start(rest, flags);                      \
    mode = va_arg(rest, mode_t);                \
    va_end(rest);                               \
  }

extern "C" {

int open(const char* path, int flags, ...) {
  MODE_OF(flags)
  return opened(path, flags, mode);
}
int open64(const char* path, int flags, ...) {
  MODE_OF(flags)
  return opened(path, flags, mode);
}
int close(int fd) {
  static const auto real = next<int (*)(int)>("close");
  state().watch(fd, false);
  return real(fd);
}
ssize_t write(int fd, const void* from, size_t size) {
  static const auto real = next<ssize_t (*)(int, const void*, size_t)>("write");
  return fails(state().isWatched(fd), true) ? -1 : real(fd, from, size);
}
ssize_t pwrite64(int fd, const void* from, size_t size, off64_t at) {
  static const auto real = next<ssize_t (*)(int, const void*, size_t, off64_t)>("pwrite64");
  return fails(state().isWatched(fd), true) ? -1 : real(fd, from, size, at);
}
ssize_t pwrite(int fd, const void* from, size_t size, off_t at) {
  return pwrite64(fd, from, size, at);
}
int fsync(int fd) {
  static const auto real = next<int (*)(int)>("fsync");
  return fails(state().isWatched(fd), true) ? -1 : real(fd);
}
int fdatasync(int fd) {
  static const auto real = next<int (*)(int)>("fdatasync");
  return fails(state().isWatched(fd), true) ? -1 : real(fd);
}
int ftruncate64(int fd, off64_t size) noexcept {
  static const auto real = next<int (*)(int, off64_t)>("ftruncate64");
  struct stat now = {};
  const bool longer = ::fstat(fd, &now) == 0 && size > now.st_size;
  return fails(state().isWatched(fd), longer) ? -1 : real(fd, size);
}
int ftruncate(int fd, off_t size) noexcept {
  return ftruncate64(fd, size);
}
int posix_fallocate(int fd, off_t from, off_t size) {
  static const auto real = next<int (*)(int, off_t, off_t)>("posix_fallocate");
  return fails(state().isWatched(fd), true) ? errno : real(fd, from, size);
}
int rename(const char* from, const char* to) noexcept {
  static const auto real = next<int (*)(const char*, const char*)>("rename");
  return fails(state().holds(from)) ? -1 : real(from, to);
}
int renameat2(int fromAt, const char* from, int toAt, const char* to, unsigned flags) noexcept {
  static const auto real = next<int (*)(int, const char*, int, const char*, unsigned)>("renameat2");
  return fails(state().holds(from)) ? -1 : real(fromAt, from, toAt, to, flags);
}
int unlink(const char* path) noexcept {
  static const auto real = next<int (*)(const char*)>("unlink");
  return fails(state().holds(path)) ? -1 : real(path);
}
int remove(const char* path) noexcept {
  static const auto real = next<int (*)(const char*)>("remove");
  return fails(state().holds(path)) ? -1 : real(path);
}
}

namespace campaign {

FailingCalls::FailingCalls(const std::filesystem::path& folder) {
  state().folder = folder.string();
}
FailingCalls::~FailingCalls() {
  disarm();
  state().folder.clear();
}

void FailingCalls::arm(const FailingCall& call) {
  const std::lock_guard lock(state().mutex);
  state().call = call;
  state().armed = true;
  state().struck = false;
  state().passed = 0;
}

bool FailingCalls::disarm() {
  const std::lock_guard lock(state().mutex);
  state().armed = false;
  return state().struck;
}

int FailingCalls::passed() const {
  const std::lock_guard lock(state().mutex);
  return state().passed;
}

}  // namespace campaign
