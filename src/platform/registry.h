// Registry values: the real registry on Windows, elsewhere a per-user file.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>

namespace platform {

// `root` is "HKEY_CURRENT_USER" or "HKEY_LOCAL_MACHINE". Names compare without case (ASCII).
// A missing key or value reads as an empty text.
std::string registryRead(std::string_view root, std::string_view key, std::string_view value);
std::error_code registryWrite(std::string_view root, std::string_view key, std::string_view value,
                              std::string_view text);
bool registryHasKey(std::string_view root, std::string_view key);

#ifndef _WIN32
std::filesystem::path registryFile();
#endif

}  // namespace platform
