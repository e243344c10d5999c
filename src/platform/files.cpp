#include "platform/files.h"

#include <algorithm>
#include <fstream>
#include <iterator>

#ifdef _WIN32
#include <io.h>
#else
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#endif

namespace platform {

namespace fs = std::filesystem;

#ifdef _WIN32

std::error_code writeFileSafely(const fs::path& path, std::string_view text) {
  fs::path temporary = path;
  temporary += ".yeni";
  std::error_code error;
  {
    std::ofstream out(temporary, std::ios::binary | std::ios::trunc);
    out.write(text.data(), static_cast<std::streamsize>(text.size()));
    out.flush();
    if (!out) error = std::make_error_code(std::errc::io_error);
  }
  if (!error) fs::rename(temporary, path, error);
  std::error_code ignored;
  if (error) fs::remove(temporary, ignored);
  return error;
}

void removeUnfinishedWrites(const fs::path&) {}  // the next writer takes the same name

bool canWriteFolder(const fs::path& folder) {
  return _waccess(folder.c_str(), 2) == 0;
}

#else

namespace {

constexpr std::string_view unfinished = ".yaziliyor-";

std::error_code lastError() {
  return {errno, std::generic_category()};
}

std::error_code writeAll(int file, std::string_view text) {
  while (!text.empty()) {
    const ssize_t written = ::write(file, text.data(), text.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) return lastError();
    text.remove_prefix(static_cast<std::size_t>(written));
  }
  return ::fsync(file) == 0 ? std::error_code() : lastError();
}

}  // namespace

std::error_code writeFileSafely(const fs::path& path, std::string_view text) {
  std::string temporary;
  int file = -1;
  // One that was taken for a dead writer's before it was locked is made again.
  for (struct stat made{}; made.st_nlink == 0;) {
    if (file >= 0) ::close(file);
    temporary = path.string() + std::string(unfinished) + "XXXXXX";
    file = ::mkostemp(temporary.data(), O_CLOEXEC);  // made with rights 0600
    if (file < 0) return lastError();
    ::flock(file, LOCK_EX);
    if (::fstat(file, &made) != 0) break;
  }
  std::error_code error = writeAll(file, text);
  if (::close(file) != 0 && !error) error = lastError();
  if (!error && ::rename(temporary.c_str(), path.c_str()) != 0) error = lastError();
  if (error) ::unlink(temporary.c_str());
  return error;
}

void removeUnfinishedWrites(const fs::path& folder) {
  constexpr std::size_t letters = 6;
  std::error_code error;
  for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
    const std::string name = entry->path().filename().string();
    const auto at = name.rfind(unfinished);
    if (at == std::string::npos || at + unfinished.size() + letters != name.size()) continue;
    const int file = ::open(entry->path().c_str(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK);
    if (file < 0) continue;
    if (::flock(file, LOCK_EX | LOCK_NB) == 0) ::unlink(entry->path().c_str());
    ::close(file);
  }
}

bool canWriteFolder(const fs::path& folder) {
  return ::access(folder.c_str(), W_OK | X_OK) == 0;
}

#endif

namespace {

char lower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool sameName(const std::string& a, const std::string& b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char x, char y) { return lower(x) == lower(y); });
}

}  // namespace

std::optional<fs::path> fileOfName(const fs::path& path) {
  std::error_code error;
  if (fs::exists(fs::symlink_status(path, error))) return path;
  const std::string wanted = path.filename().string();
  const fs::path folder = path.has_parent_path() ? path.parent_path() : fs::path(".");
  for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error))
    if (sameName(entry->path().filename().string(), wanted)) return entry->path();
  return std::nullopt;
}

std::optional<std::string> readFile(const fs::path& path) {
  std::error_code error;
  if (!fs::is_regular_file(path, error)) return std::nullopt;
  std::ifstream in(path, std::ios::binary);
  if (!in) return std::nullopt;
  return std::string(std::istreambuf_iterator<char>(in), {});
}

std::optional<std::string> readFile(const fs::path& path, std::size_t size) {
  std::error_code error;
  if (!fs::is_regular_file(path, error)) return std::nullopt;
  std::ifstream in(path, std::ios::binary);
  if (!in) return std::nullopt;
  std::string text(size, '\0');
  in.read(text.data(), static_cast<std::streamsize>(size));
  text.resize(static_cast<std::size_t>(in.gcount()));
  return text;
}

bool isOpenToOthers(const fs::path& path) {
#ifdef _WIN32
  return path.empty();  // rights are not told by a mode there
#else
  std::error_code error;
  const fs::perms others = fs::perms::group_all | fs::perms::others_all;
  return (fs::status(path, error).permissions() & others) != fs::perms::none && !error;
#endif
}

std::error_code closeToOthers(const fs::path& path) {
  std::error_code error;
  const bool folder = fs::is_directory(path, error);
  fs::permissions(path, folder ? fs::perms::owner_all : fs::perms::owner_read | fs::perms::owner_write,
                  error);
  return error;
}

}  // namespace platform
