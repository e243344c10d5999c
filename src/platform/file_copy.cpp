#include "platform/file_copy.h"

#include <sodium.h>

#include <array>
#include <cerrno>
#include <semaphore>
#include <thread>
#include <utility>
#include <vector>

#ifdef _WIN32
#include <windows.h>

#include <fstream>
#else
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace platform {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t chunk = std::size_t{1} << 18;

class Digest {
 public:
  Digest() { crypto_generichash_init(&state_, nullptr, 0, size); }
  void add(const char* bytes, std::size_t count) {
    crypto_generichash_update(&state_, reinterpret_cast<const unsigned char*>(bytes), count);
  }
  std::string hex() {
    std::array<unsigned char, size> hash{};
    crypto_generichash_final(&state_, hash.data(), hash.size());
    std::string text(size * 2 + 1, '\0');
    sodium_bin2hex(text.data(), text.size(), hash.data(), hash.size());
    text.pop_back();
    return text;
  }

 private:
  static constexpr std::size_t size = crypto_generichash_BYTES;
  crypto_generichash_state state_{};
};

}  // namespace

#ifndef _WIN32

namespace {

#ifdef __linux__
constexpr std::int64_t writeBehind = std::int64_t{8} << 20;
#endif

// Takes the hash on a thread of its own, while the same bytes are being written and the next ones read.
class HashingBuffers {
 public:
  explicit HashingBuffers(bool hashing) {
    for (Slot& slot : slots_) slot.bytes.resize(chunk);
    if (hashing) worker_ = std::thread([this] { work(); });
  }
  ~HashingBuffers() { end(); }
  HashingBuffers(const HashingBuffers&) = delete;
  HashingBuffers& operator=(const HashingBuffers&) = delete;

  // The next to read into; waits until its last content is in the hash.
  char* next() {
    if (worker_.joinable() && !std::exchange(held_, true)) free_.acquire();
    return slots_[at_].bytes.data();
  }
  // That many bytes of it count; they stay until it is given out again.
  void filled(std::size_t count) {
    slots_[at_].count = count;
    at_ = (at_ + 1) % slots;
    held_ = false;
    if (worker_.joinable()) filled_.release();
  }
  std::string hex() {
    end();
    return hash_.hex();
  }

 private:
  static constexpr std::size_t slots = 4;
  struct Slot {
    std::vector<char> bytes;
    std::size_t count = 0;
  };
  void work() {
    for (std::size_t i = 0;; i = (i + 1) % slots) {
      filled_.acquire();
      if (slots_[i].count == 0) return;
      hash_.add(slots_[i].bytes.data(), slots_[i].count);
      free_.release();
    }
  }
  void end() {
    if (!worker_.joinable()) return;
    next();
    filled(0);
    worker_.join();
  }

  std::array<Slot, slots> slots_;
  std::size_t at_ = 0;
  bool held_ = false;
  Digest hash_;
  std::counting_semaphore<slots> free_{slots};
  std::counting_semaphore<slots + 1> filled_{0};
  std::thread worker_;
};

std::error_code last() {
  return {errno, std::generic_category()};
}

class Descriptor {
 public:
  explicit Descriptor(int fd) : fd_(fd) {}
  ~Descriptor() {
    if (fd_ >= 0) ::close(fd_);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  int get() const { return fd_; }

 private:
  int fd_;
};

std::error_code writeAll(int fd, const char* bytes, std::size_t count) {
  while (count > 0) {
    const ssize_t written = ::write(fd, bytes, count);
    if (written < 0) {
      if (errno == EINTR) continue;
      return last();
    }
    bytes += written;
    count -= static_cast<std::size_t>(written);
  }
  return {};
}

// Reads to the end; `take` gets each piece.
template <typename Take>
std::error_code readAll(int fd, const CopyProgress& progress, std::string* digest, Take&& take) {
  HashingBuffers buffers(digest != nullptr);
  std::uintmax_t done = 0;
  while (true) {
    char* const buffer = buffers.next();
    const ssize_t got = ::read(fd, buffer, chunk);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return last();
    if (got == 0) break;
    buffers.filled(static_cast<std::size_t>(got));
    if (const std::error_code error = take(buffer, static_cast<std::size_t>(got))) return error;
    done += static_cast<std::uintmax_t>(got);
    if (progress && !progress(done)) return std::make_error_code(std::errc::operation_canceled);
  }
  if (digest) *digest = buffers.hex();
  return {};
}

std::error_code openRegular(const fs::path& file, int& fd) {
  fd = ::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  if (fd < 0) return last();
  struct stat info {};
  if (::fstat(fd, &info) != 0) return last();
  return S_ISREG(info.st_mode) ? std::error_code() : std::make_error_code(std::errc::invalid_argument);
}

std::error_code copyInto(int from, int to, const CopyProgress& progress, std::string* digest) {
  ::posix_fadvise(from, 0, 0, POSIX_FADV_SEQUENTIAL);
  off_t written = 0, asked = 0;
  const std::error_code error =
      readAll(from, progress, digest, [&](const char* bytes, std::size_t count) -> std::error_code {
        const std::error_code failed = writeAll(to, bytes, count);
        written += static_cast<off_t>(count);
#ifdef __linux__
        // The disk begins while the rest is being read, rather than at the end.
        if (!failed && written - asked >= writeBehind) {
          ::sync_file_range(to, asked, written - asked, SYNC_FILE_RANGE_WRITE);
          asked = written;
        }
#endif
        return failed;
      });
  if (error) return error;
  return ::fsync(to) == 0 ? std::error_code() : last();
}

}  // namespace

std::error_code copyFile(const fs::path& from, const fs::path& to, const CopyProgress& progress,
                         std::string* digest) {
  int raw = -1;
  std::error_code error = openRegular(from, raw);
  const Descriptor source(raw);
  if (error) return error;
  {
    const Descriptor target(::open(to.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600));
    if (target.get() < 0) return last();
    error = copyInto(source.get(), target.get(), progress, digest);
  }
  if (error)
    ::unlink(to.c_str());
  else
    flushFolder(to.parent_path());
  return error;
}

std::error_code digestFile(const fs::path& file, const CopyProgress& progress, std::string& digest,
                           const TakeBytes& take) {
  int raw = -1;
  if (const std::error_code error = openRegular(file, raw)) {
    const Descriptor closing(raw);
    return error;
  }
  const Descriptor source(raw);
  ::posix_fadvise(raw, 0, 0, POSIX_FADV_DONTNEED);
  ::posix_fadvise(raw, 0, 0, POSIX_FADV_SEQUENTIAL);
  return readAll(raw, progress, &digest, [&](const char* bytes, std::size_t count) {
    if (take) take(bytes, count);
    return std::error_code();
  });
}

void flushFolder(const fs::path& folder) {
  const Descriptor fd(::open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (fd.get() >= 0) ::fsync(fd.get());
}

std::error_code renameDurably(const fs::path& from, const fs::path& to) {
  if (::rename(from.c_str(), to.c_str()) != 0) return last();
  flushFolder(to.parent_path());
  if (from.parent_path() != to.parent_path()) flushFolder(from.parent_path());
  return {};
}

namespace {

// The descriptor with its lock, or -1.
int locked(int fd) {
  if (fd < 0 || ::flock(fd, LOCK_EX | LOCK_NB) == 0) return fd;
  ::close(fd);
  return -1;
}

}  // namespace

std::unique_ptr<FileLock> FileLock::tryLock(const fs::path& file) {
  const int fd = locked(::open(file.c_str(), O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC, 0600));
  return fd < 0 ? nullptr : std::unique_ptr<FileLock>(new FileLock(fd));
}

std::unique_ptr<FileLock> FileLock::tryFolder(const fs::path& folder) {
  const int fd = locked(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  return fd < 0 ? nullptr : std::unique_ptr<FileLock>(new FileLock(fd));
}

FileLock::~FileLock() {
  ::close(static_cast<int>(handle_));
}

#else

namespace {

std::error_code last() {
  return {static_cast<int>(GetLastError()), std::system_category()};
}

std::error_code readAll(const fs::path& file, const CopyProgress& progress, std::ofstream* out, Digest* hash,
                        const TakeBytes& take = {}) {
  std::ifstream in(file, std::ios::binary);
  if (!in) return std::make_error_code(std::errc::no_such_file_or_directory);
  std::vector<char> buffer(chunk);
  std::uintmax_t done = 0;
  while (in.read(buffer.data(), static_cast<std::streamsize>(buffer.size())), in.gcount() > 0) {
    if (hash) hash->add(buffer.data(), static_cast<std::size_t>(in.gcount()));
    if (take) take(buffer.data(), static_cast<std::size_t>(in.gcount()));
    if (out && !out->write(buffer.data(), in.gcount())) return std::make_error_code(std::errc::io_error);
    done += static_cast<std::uintmax_t>(in.gcount());
    if (progress && !progress(done)) return std::make_error_code(std::errc::operation_canceled);
  }
  return in.bad() ? std::make_error_code(std::errc::io_error) : std::error_code();
}

}  // namespace

std::error_code copyFile(const fs::path& from, const fs::path& to, const CopyProgress& progress,
                         std::string* digest) {
  std::error_code error;
  if (fs::exists(to, error)) return std::make_error_code(std::errc::file_exists);
  Digest hash;
  {
    std::ofstream out(to, std::ios::binary);
    error = out ? readAll(from, progress, &out, digest ? &hash : nullptr)
                : std::make_error_code(std::errc::permission_denied);
    if (!error && !out.flush()) error = std::make_error_code(std::errc::no_space_on_device);
  }
  if (!error) {
    HANDLE file = CreateFileW(to.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
    if (file == INVALID_HANDLE_VALUE || !FlushFileBuffers(file)) error = last();
    if (file != INVALID_HANDLE_VALUE) CloseHandle(file);
  }
  std::error_code ignored;
  if (error) fs::remove(to, ignored);
  if (!error && digest) *digest = hash.hex();
  return error;
}

std::error_code digestFile(const fs::path& file, const CopyProgress& progress, std::string& digest,
                           const TakeBytes& take) {
  Digest hash;
  const std::error_code error = readAll(file, progress, nullptr, &hash, take);
  if (!error) digest = hash.hex();
  return error;
}

void flushFolder(const fs::path&) {}

std::error_code renameDurably(const fs::path& from, const fs::path& to) {
  return MoveFileExW(from.c_str(), to.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH)
             ? std::error_code()
             : last();
}

std::unique_ptr<FileLock> FileLock::tryLock(const fs::path& file) {
  HANDLE handle =
      CreateFileW(file.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_ALWAYS, 0, nullptr);
  if (handle == INVALID_HANDLE_VALUE) return nullptr;
  return std::unique_ptr<FileLock>(new FileLock(reinterpret_cast<std::intptr_t>(handle)));
}

std::unique_ptr<FileLock> FileLock::tryFolder(const fs::path& folder) {
  return tryLock(folder / "bakim.kilit");
}

FileLock::~FileLock() {
  CloseHandle(reinterpret_cast<HANDLE>(handle_));
}

#endif

}  // namespace platform
