#ifdef _WIN32

#include <windows.h>

#include <algorithm>

#include "platform/code_page.h"
#include "platform/registry.h"

namespace platform {

namespace {

HKEY rootKey(std::string_view root) {
  return root == "HKEY_LOCAL_MACHINE" ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER;
}

}  // namespace

std::string registryRead(std::string_view root, std::string_view key, std::string_view value) {
  HKEY handle = nullptr;
  if (RegOpenKeyA(rootKey(root), encode1254(key).c_str(), &handle) != ERROR_SUCCESS) return {};
  const std::string name = encode1254(value);
  DWORD type = 0;
  DWORD size = 0;
  std::string bytes;
  if (RegQueryValueExA(handle, name.c_str(), nullptr, &type, nullptr, &size) == ERROR_SUCCESS) {
    bytes.resize(size);
    const auto data = reinterpret_cast<LPBYTE>(bytes.data());
    if (RegQueryValueExA(handle, name.c_str(), nullptr, &type, data, &size) != ERROR_SUCCESS) size = 0;
    bytes.resize(size);
  }
  RegCloseKey(handle);
  if (type != REG_BINARY) bytes.resize(std::min(bytes.find('\0'), bytes.size()));
  return decode1254(bytes);
}

std::error_code registryWrite(std::string_view root, std::string_view key, std::string_view value,
                              std::string_view text) {
  HKEY handle = nullptr;
  LSTATUS status = RegCreateKeyA(rootKey(root), encode1254(key).c_str(), &handle);
  if (status == ERROR_SUCCESS) {
    const std::string bytes = encode1254(text);
    status =
        RegSetValueExA(handle, encode1254(value).c_str(), 0, REG_SZ,
                       reinterpret_cast<const BYTE*>(bytes.c_str()), static_cast<DWORD>(bytes.size() + 1));
    RegCloseKey(handle);
  }
  return {static_cast<int>(status), std::system_category()};
}

bool registryHasKey(std::string_view root, std::string_view key) {
  HKEY handle = nullptr;
  if (RegOpenKeyA(rootKey(root), encode1254(key).c_str(), &handle) != ERROR_SUCCESS) return false;
  RegCloseKey(handle);
  return true;
}

}  // namespace platform

#endif
