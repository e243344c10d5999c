// Files whose content is a secret or must never be half there.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

namespace platform {

// Replaces `path` by `text`: written beside it with rights 0600, flushed, then renamed over it, so that a
// reader sees the old or the new file, never half of one. On failure nothing is changed.
std::error_code writeFileSafely(const std::filesystem::path& path, std::string_view text);
// Removes what writers that were killed left beside their files in the folder; one that still writes is let
// be.
void removeUnfinishedWrites(const std::filesystem::path& folder);

// The whole file; empty when it is missing or cannot be read.
std::optional<std::string> readFile(const std::filesystem::path& path);
// Its first bytes, at most `size`.
std::optional<std::string> readFile(const std::filesystem::path& path, std::size_t size);

// Whether anybody but the owner may read or write it.
bool isOpenToOthers(const std::filesystem::path& path);
// Rights 0700 for a folder, 0600 for a file.
std::error_code closeToOthers(const std::filesystem::path& path);

// The file or folder that stands where `path` points, the case of ASCII letters in its last part ignored:
// that is how servers know the files of their databases.
std::optional<std::filesystem::path> fileOfName(const std::filesystem::path& path);

// Whether new files can be made in the folder, which must exist.
bool canWriteFolder(const std::filesystem::path& folder);

}  // namespace platform
