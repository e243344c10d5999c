#include "engine/store/file_names.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstring>

#include "engine/store/database_file.h"
#include "engine/value.h"

namespace engine {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view longestEnding = "-journal";
constexpr std::size_t longestPath = 4000;

[[noreturn]] void failFile(const fs::path& file, int error) {
  throw Error(5123, "CREATE FILE encountered operating system error " + std::to_string(error) + "(" +
                        std::strerror(error) + ") while attempting to open or create the physical file '" +
                        file.string() + "'.");
}

// At most so many bytes, whole characters.
std::string beginning(const std::string& text, std::size_t bytes) {
  if (text.size() <= bytes) return text;
  while (bytes > 0 && (static_cast<unsigned char>(text[bytes]) & 0xC0U) == 0x80U) --bytes;
  return text.substr(0, bytes) + "...";
}

}  // namespace

bool fitsFileSystem(const fs::path& file) {
  return unfinishedName(file).filename().string().size() + longestEnding.size() <= NAME_MAX &&
         file.string().size() <= longestPath;
}

void checkFileName(const fs::path& file) {
  const std::string text = file.string();
  const bool control = std::any_of(text.begin(), text.end(),
                                   [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; });
  if (control || !fitsFileSystem(file))
    throw Error(5105, "A file activation error occurred. The physical file name '" + beginning(text, 260) +
                          "' may be incorrect. Diagnose and correct additional errors, and retry the "
                          "operation.");
}

void tryFile(const fs::path& file) {
#ifdef O_TMPFILE
  // Without a name, for nobody would remove what a kill leaves here: it stands in no record yet.
  const int nameless = ::open(file.parent_path().c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0600);
  if (nameless >= 0) {
    ::close(nameless);
    return;
  }
  // What a file system or a system says that has no such files.
  if (errno != EOPNOTSUPP && errno != EISDIR && errno != EINVAL) failFile(file, errno);
#endif
  const fs::path trial = unfinishedName(file);
  const int handle = ::open(trial.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, 0600);
  if (handle < 0) {
    if (errno != EEXIST) failFile(file, errno);
    return;  // what a broken-off attempt has left is replaced
  }
  ::close(handle);
  ::unlink(trial.c_str());
}

void removeFile(const fs::path& file) {
  std::error_code error;
  fs::remove(file, error);
  if (error) failFile(file, error.value());
}

std::string reasonNotOpened(const fs::path& file) {
  struct stat status {};
  if (::stat(file.c_str(), &status) == 0 && !S_ISREG(status.st_mode))
    return "It is no file, but a folder, a pipe or a device.";
  // Not by opening it: to close it again would take the locks away that this process has on it.
  const int error = ::access(file.c_str(), R_OK | W_OK) == 0 ? 0 : errno;
  if (error == 0 || error == ENOENT)
    return "Operating system error 2: \"2(The system cannot find the file specified.)\".";
  return "Operating system error " + std::to_string(error) + ": \"" + std::to_string(error) + "(" +
         std::strerror(error) + ")\".";
}

void makePrivate(const fs::path& path) {
  std::error_code error;
  const bool folder = fs::is_directory(path, error);
  fs::permissions(path, folder ? fs::perms::owner_all : fs::perms::owner_read | fs::perms::owner_write,
                  error);
}

std::vector<fs::path> openToOthers(const fs::path& folder) {
  constexpr fs::perms others = fs::perms::group_all | fs::perms::others_all;
  std::error_code error;
  const auto open = [&](const fs::path& path) {
    return (fs::symlink_status(path, error).permissions() & others) != fs::perms::none;
  };
  std::vector<fs::path> found;
  if (open(folder)) found.push_back(folder);
  for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
    std::error_code ignored;
    if (entry->is_regular_file(ignored) && open(entry->path())) found.push_back(entry->path());
  }
  return found;
}

}  // namespace engine
