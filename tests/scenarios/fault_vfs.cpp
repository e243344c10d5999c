#include "fault_vfs.h"

#include <atomic>
#include <csignal>
#include <cstring>
#include <mutex>

namespace scenarios {

namespace {

// SQLite hands its files to plain functions, so that the state of the one disk is the process's.
struct Disk {
  std::mutex mutex;
  bool armed = false, struck = false;
  Fault fault;
  int passed = 0;

  int check(bool opens = false) {
    const std::lock_guard lock(mutex);
    if (!armed || opens != fault.opens || (struck && !fault.lasting)) return SQLITE_OK;
    if (!struck && passed++ < fault.after) return SQLITE_OK;
    struck = true;
    if (fault.kill) ::raise(SIGKILL);
    return fault.code;
  }
} disk;

struct File {
  sqlite3_file base;
  sqlite3_file* real;
};

sqlite3_file* real(sqlite3_file* file) {
  return reinterpret_cast<File*>(file)->real;
}

template <auto member, typename... Args>
auto pass(sqlite3_file* file, Args... args) {
  sqlite3_file* inner = real(file);
  return (inner->pMethods->*member)(inner, args...);
}

template <auto member, typename... Args>
int fallible(sqlite3_file* file, Args... args) {
  if (const int code = disk.check(); code != SQLITE_OK) return code;
  return pass<member>(file, args...);
}

using M = sqlite3_io_methods;

const sqlite3_io_methods methods = {
    3,
    pass<&M::xClose>,
    pass<&M::xRead, void*, int, sqlite3_int64>,
    fallible<&M::xWrite, const void*, int, sqlite3_int64>,
    fallible<&M::xTruncate, sqlite3_int64>,
    fallible<&M::xSync, int>,
    pass<&M::xFileSize, sqlite3_int64*>,
    pass<&M::xLock, int>,
    pass<&M::xUnlock, int>,
    pass<&M::xCheckReservedLock, int*>,
    pass<&M::xFileControl, int, void*>,
    pass<&M::xSectorSize>,
    pass<&M::xDeviceCharacteristics>,
    pass<&M::xShmMap, int, int, int, void volatile**>,
    pass<&M::xShmLock, int, int, int>,
    pass<&M::xShmBarrier>,
    pass<&M::xShmUnmap, int>,
    pass<&M::xFetch, sqlite3_int64, int, void**>,
    pass<&M::xUnfetch, sqlite3_int64, void*>,
};

int openFile(sqlite3_vfs* vfs, const char* name, sqlite3_file* file, int flags, int* outFlags) {
  auto* under = static_cast<sqlite3_vfs*>(vfs->pAppData);
  auto* wrapped = reinterpret_cast<File*>(file);
  file->pMethods = nullptr;
  if (const int code = disk.check(true); code != SQLITE_OK) return code;
  wrapped->real = reinterpret_cast<sqlite3_file*>(wrapped + 1);
  const int code = under->xOpen(under, name, wrapped->real, flags, outFlags);
  file->pMethods = wrapped->real->pMethods ? &methods : nullptr;
  return code;
}

}  // namespace

FaultyDisk::FaultyDisk() : vfs_{}, real_(sqlite3_vfs_find(nullptr)) {
  vfs_ = *real_;
  vfs_.zName = "faulty";
  vfs_.pNext = nullptr;
  vfs_.szOsFile = static_cast<int>(sizeof(File)) + real_->szOsFile;
  vfs_.pAppData = real_;
  vfs_.xOpen = openFile;
  sqlite3_vfs_register(&vfs_, 1);
}

FaultyDisk::~FaultyDisk() {
  disarm();
  sqlite3_vfs_register(real_, 1);
  sqlite3_vfs_unregister(&vfs_);
}

void FaultyDisk::arm(const Fault& fault) {
  const std::lock_guard lock(disk.mutex);
  disk.fault = fault;
  disk.armed = true;
  disk.struck = false;
  disk.passed = 0;
}

bool FaultyDisk::disarm() {
  const std::lock_guard lock(disk.mutex);
  disk.armed = false;
  return disk.struck;
}

int FaultyDisk::passed() const {
  const std::lock_guard lock(disk.mutex);
  return disk.passed;
}

}  // namespace scenarios
