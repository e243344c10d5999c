// The companion NAME_log.ldf of a data file: it holds the write-ahead log and tells whether two files belong
// together (log_format.h).
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace engine {

std::string newFamily();  // 32 random hexadecimal digits

// Writes a companion without log, which must not exist yet, to the disk. Error 5123 when it cannot be
// written.
void writeCompanion(const std::filesystem::path& file, const std::string& database,
                    const std::string& family);

// The files were written by a later program: 948 with both numbers, and nothing is touched.
[[noreturn]] void failNewerFormat(const std::string& database, std::int64_t format, int supported);

// The companion's family. Error 948 when its format is newer, 9004 when the content is not one, 5120 when it
// is no file.
std::string readCompanion(const std::filesystem::path& file, const std::string& database);

// Files in the data file's folder that differ from `log` only in letter case, `log` itself first.
std::vector<std::filesystem::path> companionCandidates(const std::filesystem::path& log);

// The companion to open the data file with: the candidate that names the data file's identity, else `log`,
// which opening then refuses by name. A data file that was closed properly and has none gets a new one, as
// an attach without a log file does; one whose log was in use does not (5120). A companion of the first
// format is converted, after the log that stood beside it has been taken in. 5173, 9004, 948.
std::filesystem::path readyCompanion(const std::filesystem::path& data, const std::filesystem::path& log,
                                     const std::string& database);

}  // namespace engine
