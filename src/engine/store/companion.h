// The companion NAME_log.ldf of a data file. SQLite keeps its own write-ahead log; the companion's work
// is to tell whether two files belong together.
//
//   companion = magic database family end
//   magic     = "ZEMBERA-LOG 1" LF
//   database  = "database " name LF          name when the file was made; a rename leaves it
//   family    = "family " 32 hexdigit LF     the same number lies in the data file's zb_meta
//   end       = "end" LF
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace engine {

std::string newFamily();  // 32 random hexadecimal digits

// Writes a companion that must not exist yet, to the disk. Error 5123 when it cannot be written.
void writeCompanion(const std::filesystem::path& file, const std::string& database,
                    const std::string& family);

// The companion's family. Error 9004 when the content is not one.
std::string readCompanion(const std::filesystem::path& file, const std::string& database);

// Files in the data file's folder that differ from `log` only in letter case, `log` itself first.
std::vector<std::filesystem::path> companionCandidates(const std::filesystem::path& log);

// Passes when one candidate holds `family` or there is none (then `log` is made anew, as an attach
// without a log file does). Error 5173 when all belong to another family, 9004 when damaged.
void checkCompanion(const std::filesystem::path& log, const std::string& database, const std::string& family);

// Throws 5120 (missing, unreadable), 5172 (not a data file) or 823 (shorter than its header tells).
void checkDataFile(const std::filesystem::path& data);

}  // namespace engine
