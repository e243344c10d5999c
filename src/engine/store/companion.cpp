#include "engine/store/companion.h"

#include <sodium.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <optional>

#include "engine/catalog.h"
#include "engine/store/database_file.h"
#include "engine/store/file_layer.h"
#include "engine/store/file_names.h"
#include "engine/store/log_format.h"
#include "engine/store/system_file.h"
#include "engine/value.h"

namespace engine {

namespace fs = std::filesystem;

namespace {

// The first page of a companion; less when it is shorter.
std::string startOf(const fs::path& file) {
  std::error_code error;
  if (!fs::is_regular_file(file, error)) return {};  // to open a pipe would wait
  std::ifstream in(file, std::ios::binary);
  std::string start(store::framesBegin, '\0');
  in.read(start.data(), static_cast<std::streamsize>(start.size()));
  start.resize(static_cast<std::size_t>(in.gcount()));
  return start;
}

std::optional<store::LogHead> headOf(const fs::path& file) {
  return store::readLogHead(startOf(file));
}

[[noreturn]] void failDamaged(const fs::path& file, const std::string& database) {
  throw Error(9004,
              "An error occurred while processing the log for database '" + database + "'. The log file '" +
                  file.string() + "' is damaged.",
              21);
}

void writePage(const fs::path& file, const store::LogPage& page) {
  const std::string_view bytes(reinterpret_cast<const char*>(page.data()), page.size());
  bool good = true;
  int reason = 0;
  {
    const auto made = system::File::createNew(file);
    const bool begun = made.valid();
    good = begun && made.writeAll(bytes) && made.flush();
    reason = errno;
    if (begun && !good) system::remove(file);
  }
  if (!good)
    throw Error(5123, "CREATE FILE encountered operating system error " + std::to_string(reason) + "(" +
                          std::strerror(reason) + ") while attempting to open or create the physical file '" +
                          file.string() + "'.");
}

// Held while a companion of the first format is converted, so that two processes do not both do it.
class FileTurn {
 public:
  explicit FileTurn(const fs::path& file) : file_(system::File::openExisting(file)) {
    if (file_.valid()) file_.lock(beyondEverything, system::File::Lock::Exclusive, true);
  }

 private:
  static constexpr std::int64_t beyondEverything = std::int64_t{1} << 60;
  system::File file_;
};

void convertCompanion(const fs::path& data, const fs::path& log, const std::string& database) {
  const FileTurn turn(log);
  const auto head = headOf(log);
  if (!head || head->version != 1) return;
  if (takeOldLogIn(data, head->family) != head->family)
    throw Error(5173, "One or more files do not match the primary file of the database: '" + log.string() +
                          "' does not belong to database '" + database + "'.");
  fs::path made = log;
  made += ".unfinished";
  std::error_code error;
  fs::remove(made, error);
  writeCompanion(made, head->database, head->family);
  fs::rename(made, log, error);
  if (error)
    throw Error(5123, "The log file '" + log.string() + "' could not be converted: " + error.message());
}

// The data file's mark; nothing for a file of the first format or none at all.
std::optional<store::Mark> markOf(const fs::path& data) {
  const auto start = store::readStart(data, store::markOffset + store::markSize);
  if (!store::isDataFile(start)) return std::nullopt;
  const unsigned char* bytes = start.data() + store::markOffset;
  if (store::isUnmarked(bytes)) return std::nullopt;
  return store::decodeMark(bytes);
}

void makeMissing(const fs::path& data, const fs::path& log, const std::string& database) {
  const auto mark = markOf(data);
  if (mark && mark->inUse)
    throw Error(5120,
                "Unable to open the physical file \"" + log.string() +
                    "\". Operating system error 2: \"2(The system cannot find the file specified.)\". The "
                    "data file '" +
                    data.string() + "' of database '" + database + "' was not closed without it.");
  const std::string family = mark ? familyInPages(data) : takeOldLogIn(data);
  if (!family.empty())
    writePage(log, store::makeLogPage({2, database, family}, mark.value_or(store::Mark())));
}

}  // namespace

std::string newFamily() {
  std::array<unsigned char, 16> bytes{};
  randombytes_buf(bytes.data(), bytes.size());
  std::array<char, 2 * bytes.size() + 1> text{};
  sodium_bin2hex(text.data(), text.size(), bytes.data(), bytes.size());
  return text.data();
}

void writeCompanion(const fs::path& file, const std::string& database, const std::string& family) {
  writePage(file, store::makeLogPage({2, database, family}, store::Mark()));
}

void failNewerFormat(const std::string& database, std::int64_t format, int supported) {
  throw Error(948, "The database '" + database + "' cannot be opened because it is version " +
                       std::to_string(format) + ". This server supports version " +
                       std::to_string(supported) + " and earlier. A downgrade path is not supported.");
}

std::string readCompanion(const fs::path& file, const std::string& database) {
  std::error_code error;
  if (!fs::is_regular_file(file, error))
    throw Error(5120, "Unable to open the physical file \"" + file.string() + "\". " + reasonNotOpened(file));
  const auto head = headOf(file);
  if (!head) {
    if (const auto format = store::newerLogFormat(startOf(file)))
      failNewerFormat(database, *format, store::logFormat);
    failDamaged(file, database);
  }
  return head->family;
}

std::vector<fs::path> companionCandidates(const fs::path& log) {
  std::vector<fs::path> found;
  const std::string wanted = foldName(log.filename().string());
  std::error_code error;
  for (fs::directory_iterator it(log.parent_path(), error), end; !error && it != end; it.increment(error))
    if (foldName(it->path().filename().string()) == wanted) found.push_back(it->path());
  std::stable_partition(found.begin(), found.end(),
                        [&](const fs::path& p) { return p.filename() == log.filename(); });
  return found;
}

fs::path readyCompanion(const fs::path& data, const fs::path& log, const std::string& database) {
  std::error_code error;
  if (!fs::is_regular_file(data, error) || !store::isDataFile(store::readStart(data, store::markOffset)))
    return log;  // opening tells
  const auto mark = markOf(data);
  const auto fits = [&](const fs::path& file) {
    const auto head = headOf(file);
    return head && (!mark || store::identityOf(head->family) == mark->identity);
  };
  // The usual case costs no look through the folder.
  fs::path chosen = log;
  if (!fs::exists(log, error) || !fits(log)) {
    const auto candidates = companionCandidates(log);
    if (candidates.empty()) {
      makeMissing(data, log, database);
    } else {
      const auto fitting = std::find_if(candidates.begin(), candidates.end(), fits);
      chosen = fitting == candidates.end() ? candidates.front() : *fitting;
    }
  }
  if (const auto format = store::newerLogFormat(startOf(chosen)))
    failNewerFormat(database, *format, store::logFormat);
  if (const auto head = headOf(chosen); head && head->version == 1) convertCompanion(data, chosen, database);
  return chosen;
}

}  // namespace engine
