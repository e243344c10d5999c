// What of a name or a path can become a file of a database, looked at before anything is written.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace engine {

// In its longest form, which it has while it is being made, with the ending of a file beside it.
bool fitsFileSystem(const std::filesystem::path& file);
// 5105 for what no file system takes.
void checkFileName(const std::filesystem::path& file);
// Makes an empty file in its folder and lets go of it, without a name where the file system can; 5123 with
// the system's reason.
void tryFile(const std::filesystem::path& file);
// A missing one is no error; 5123 otherwise.
void removeFile(const std::filesystem::path& file);

// Why the system does not open it, in the server's words: "Operating system error 2: ...".
std::string reasonNotOpened(const std::filesystem::path& file);

// Rights 0700 or 0600, whatever the umask has made of it.
void makePrivate(const std::filesystem::path& path);
// Of a data folder: it, its database files, logs and records that anybody but their owner may touch.
std::vector<std::filesystem::path> openToOthers(const std::filesystem::path& folder);

}  // namespace engine
