#include <cstdlib>
#include <cstring>

#include "engine/store/layer_files.h"
#include "engine/store/system_file.h"

namespace engine::store {

RealFile::~RealFile() {
  close();
}

int RealFile::open(sqlite3_vfs* vfs, const char* name, int flags, int* outFlags) {
  // Opening a pipe waits for somebody at its other end.
  if (system::isOtherThanAFile(name)) return SQLITE_CANTOPEN;
  file_ = static_cast<sqlite3_file*>(std::calloc(1, static_cast<std::size_t>(vfs->szOsFile)));
  if (!file_) return SQLITE_NOMEM;
  const int code = vfs->xOpen(vfs, name, file_, flags, outFlags);
  if (code != SQLITE_OK) close();
  return code;
}

std::uint64_t RealFile::inodeAt(const std::string& path) {
  return system::numberOf(path);
}

int RealFile::close() {
  if (!file_) return SQLITE_OK;
  const int code = file_->pMethods ? file_->pMethods->xClose(file_) : SQLITE_OK;
  std::free(file_);
  file_ = nullptr;
  return code;
}

int RealFile::read(void* to, std::size_t size, std::int64_t at) const {
  return methods().xRead(file_, to, static_cast<int>(size), at);
}
int RealFile::write(const void* from, std::size_t size, std::int64_t at) const {
  return methods().xWrite(file_, from, static_cast<int>(size), at);
}
int RealFile::sync() const {
  return methods().xSync(file_, SQLITE_SYNC_NORMAL);
}
int RealFile::truncate(std::int64_t size) const {
  return methods().xTruncate(file_, size);
}
std::int64_t RealFile::size() const {
  sqlite3_int64 size = 0;
  return methods().xFileSize(file_, &size) == SQLITE_OK ? size : -1;
}

}  // namespace engine::store
