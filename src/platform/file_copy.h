// Copies of big files that are whole or not there, and a lock that dies with its process.
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <system_error>

namespace platform {

// Gets the bytes done so far; false breaks off with std::errc::operation_canceled.
using CopyProgress = std::function<bool(std::uintmax_t done)>;

// Copies a regular file to `to`, which must not exist, with rights 0600, and flushes it to the disk. A copy
// that fails is removed. `digest` takes the BLAKE2b hash of what was read, in hexadecimal.
std::error_code copyFile(const std::filesystem::path& from, const std::filesystem::path& to,
                         const CopyProgress& progress, std::string* digest = nullptr);
// The same hash of a file as it stands, read past the system's memory of it where that can be asked for.
// `take` gets the same bytes in their order, in pieces.
using TakeBytes = std::function<void(const char* bytes, std::size_t count)>;
std::error_code digestFile(const std::filesystem::path& file, const CopyProgress& progress,
                           std::string& digest, const TakeBytes& take = {});

// rename() that lasts: source and target folder are flushed after it. An existing target is replaced.
std::error_code renameDurably(const std::filesystem::path& from, const std::filesystem::path& to);
void flushFolder(const std::filesystem::path& folder);

// Held by one process at a time; the system lets it go when the process ends, however it ends.
class FileLock {
 public:
  // Null when another holds it or the file cannot be made.
  static std::unique_ptr<FileLock> tryLock(const std::filesystem::path& file);
  // On a folder that is there; leaves no file in it.
  static std::unique_ptr<FileLock> tryFolder(const std::filesystem::path& folder);
  ~FileLock();
  FileLock(const FileLock&) = delete;
  FileLock& operator=(const FileLock&) = delete;

 private:
  explicit FileLock(std::intptr_t handle) : handle_(handle) {}
  std::intptr_t handle_;
};

}  // namespace platform
