#include "engine/store/companion.h"

#include <fcntl.h>
#include <sodium.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <iterator>
#include <optional>

#include "engine/catalog.h"
#include "engine/value.h"

namespace engine {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view magic = "ZEMBERA-LOG 1\n";
constexpr std::size_t familyLength = 32;
constexpr std::uintmax_t largestCompanion = 4096;

bool isFamily(std::string_view text) {
  return text.size() == familyLength && text.find_first_not_of("0123456789abcdef") == std::string_view::npos;
}

// Takes "word value LF" off the front of `rest`.
std::optional<std::string> takeField(std::string_view& rest, std::string_view word) {
  const auto end = rest.find('\n');
  if (end == std::string_view::npos || !rest.starts_with(word)) return std::nullopt;
  std::string value(rest.substr(word.size(), end - word.size()));
  rest.remove_prefix(end + 1);
  return value;
}

std::optional<std::string> parseCompanion(std::string_view content) {
  if (!content.starts_with(magic)) return std::nullopt;
  content.remove_prefix(magic.size());
  if (!takeField(content, "database ")) return std::nullopt;
  auto family = takeField(content, "family ");
  if (!family || !isFamily(*family) || content != "end\n") return std::nullopt;
  return family;
}

std::uint32_t bigEndian(const unsigned char* bytes) {
  return (std::uint32_t{bytes[0]} << 24) | (std::uint32_t{bytes[1]} << 16) | (std::uint32_t{bytes[2]} << 8) |
         bytes[3];
}

}  // namespace

std::string newFamily() {
  std::array<unsigned char, familyLength / 2> bytes{};
  randombytes_buf(bytes.data(), bytes.size());
  std::array<char, familyLength + 1> text{};
  sodium_bin2hex(text.data(), text.size(), bytes.data(), bytes.size());
  return {text.data(), familyLength};
}

void writeCompanion(const fs::path& file, const std::string& database, const std::string& family) {
  const std::string content = std::string(magic) + "database " + database + "\nfamily " + family + "\nend\n";
  const int fd = ::open(file.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
  bool good = fd >= 0;
  int reason = errno;
  if (good) {
    good = ::write(fd, content.data(), content.size()) == static_cast<ssize_t>(content.size()) &&
           ::fsync(fd) == 0;
    reason = errno;
    ::close(fd);
    if (!good) ::unlink(file.c_str());
  }
  if (!good)
    throw Error(5123, "CREATE FILE encountered operating system error " + std::to_string(reason) + "(" +
                          std::strerror(reason) + ") while attempting to open or create the physical file '" +
                          file.string() + "'.");
}

std::string readCompanion(const fs::path& file, const std::string& database) {
  std::error_code ignored;
  std::optional<std::string> family;
  if (fs::file_size(file, ignored) <= largestCompanion) {
    std::ifstream in(file, std::ios::binary);
    const std::string content{std::istreambuf_iterator<char>(in), {}};
    family = parseCompanion(content);
  }
  if (!family)
    throw Error(9004,
                "An error occurred while processing the log for database '" + database + "'. The log file '" +
                    file.string() + "' is damaged.",
                21);
  return *family;
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

void checkCompanion(const fs::path& log, const std::string& database, const std::string& family) {
  const auto matches = [&](const fs::path& file) { return readCompanion(file, database) == family; };
  std::error_code error;
  if (fs::exists(log, error)) {
    // The usual case costs no look through the folder.
    try {
      if (matches(log)) return;
    } catch (const Error&) {
      if (companionCandidates(log).size() < 2) throw;
    }
  }
  const auto candidates = companionCandidates(log);
  if (candidates.empty()) {
    writeCompanion(log, database, family);
    return;
  }
  std::optional<Error> damage;
  for (const auto& file : candidates) {
    try {
      if (matches(file)) return;
    } catch (const Error& found) {
      damage = found;
    }
  }
  if (damage) throw *damage;
  throw Error(5173, "One or more files do not match the primary file of the database: '" +
                        candidates.front().string() + "' does not belong to database '" + database + "'.");
}

void checkDataFile(const fs::path& data) {
  std::error_code error;
  const auto size = fs::file_size(data, error);
  std::ifstream in(data, std::ios::binary);
  if (error || !in)
    throw Error(5120, "Unable to open the physical file \"" + data.string() + "\". Operating system error " +
                          (error ? "2: \"2(The system cannot find the file specified.)\"."
                                 : "5: \"5(Access is denied.)\"."));
  std::array<char, 100> header{};
  in.read(header.data(), header.size());
  static constexpr char expected[] = "SQLite format 3";
  if (in.gcount() != static_cast<std::streamsize>(header.size()) ||
      std::memcmp(header.data(), expected, sizeof expected) != 0)
    throw Error(5172, "The header for file '" + data.string() + "' is not a valid database file header.");
  const auto* bytes = reinterpret_cast<const unsigned char*>(header.data());
  std::uintmax_t pageSize = (std::uintmax_t{bytes[16]} << 8) | bytes[17];
  if (pageSize == 1) pageSize = 65536;
  fs::path log = data;
  log += "-wal";
  const bool logged = fs::exists(log, error) && fs::file_size(log, error) > 0;
  // With frames still in the write-ahead log the file may be shorter than its header says.
  if (!logged && size < pageSize * bigEndian(bytes + 28))
    throw Error(823,
                "I/O error (file is shorter than its header tells) detected in file '" + data.string() + "'.",
                24);
}

}  // namespace engine
