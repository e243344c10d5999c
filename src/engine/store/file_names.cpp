#include "engine/store/file_names.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "engine/store/database_file.h"
#include "engine/store/system_file.h"
#include "engine/value.h"

namespace engine {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view longestEnding = "-journal";
constexpr std::size_t longestName = 255;
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
  return unfinishedName(file).filename().string().size() + longestEnding.size() <= longestName &&
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
  // Without a name, for nobody would remove what a kill leaves here: it stands in no record yet.
  if (system::File::createNameless(file.parent_path()).valid()) return;
  if (errno != ENOTSUP) failFile(file, errno);
  const fs::path trial = unfinishedName(file);
  if (system::File::createNew(trial).valid())
    system::remove(trial);
  else if (errno != EEXIST)  // what a broken-off attempt has left is replaced
    failFile(file, errno);
}

void removeFile(const fs::path& file) {
  std::error_code error;
  fs::remove(file, error);
  if (error) failFile(file, error.value());
}

std::string reasonNotOpened(const fs::path& file) {
  if (system::isOtherThanAFile(file)) return "It is no file, but a folder, a pipe or a device.";
  // Not by opening it: to close it again would take the locks away that this process has on it.
  const int error = system::accessError(file);
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
  std::error_code error;
  std::vector<fs::path> found;
  if (system::isOpenToOthers(folder)) found.push_back(folder);
  for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
    std::error_code ignored;
    if (entry->is_regular_file(ignored) && system::isOpenToOthers(entry->path()))
      found.push_back(entry->path());
  }
  return found;
}

}  // namespace engine
