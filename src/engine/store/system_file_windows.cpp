#ifdef _WIN32
#define WIN32_LEAN_AND_MEAN
#define NOMINMAX
#include <windows.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cwctype>
#include <system_error>
#include <thread>

#include "engine/store/system_file.h"

namespace engine::system {

namespace fs = std::filesystem;

namespace {

HANDLE native(std::intptr_t handle) {
  return reinterpret_cast<HANDLE>(handle);
}

// The system's number as errno tells it.
int errnoOf(DWORD error) {
  switch (error) {
    case ERROR_FILE_EXISTS:
    case ERROR_ALREADY_EXISTS:
      return EEXIST;
    case ERROR_DISK_FULL:
    case ERROR_HANDLE_DISK_FULL:
      return ENOSPC;
    case ERROR_SHARING_VIOLATION:
    case ERROR_LOCK_VIOLATION:
      return EACCES;
    default:
      return std::system_category().default_error_condition(static_cast<int>(error)).value();
  }
}

bool told(bool good) {
  if (!good) errno = errnoOf(::GetLastError());
  return good;
}

// Others may read, write, rename and remove it meanwhile. A link in that place is opened itself, and refused.
std::intptr_t openFile(const fs::path& name, DWORD access, DWORD disposition) {
  const HANDLE handle =
      ::CreateFileW(name.c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                    disposition, FILE_ATTRIBUTE_NORMAL | FILE_FLAG_OPEN_REPARSE_POINT, nullptr);
  if (!told(handle != INVALID_HANDLE_VALUE)) return -1;
  BY_HANDLE_FILE_INFORMATION info{};
  if (::GetFileType(handle) == FILE_TYPE_DISK && ::GetFileInformationByHandle(handle, &info) &&
      !(info.dwFileAttributes & (FILE_ATTRIBUTE_REPARSE_POINT | FILE_ATTRIBUTE_DIRECTORY)))
    return reinterpret_cast<std::intptr_t>(handle);
  ::CloseHandle(handle);
  errno = EACCES;
  return -1;
}

OVERLAPPED at(std::int64_t offset) {
  OVERLAPPED place{};
  place.Offset = static_cast<DWORD>(offset);
  place.OffsetHigh = static_cast<DWORD>(offset >> 32);
  return place;
}

// Locks bind reading and writing here: they lie where no file has bytes.
std::int64_t beyondTheFile(std::int64_t offset) {
  return offset + (std::int64_t{1} << 61);
}

std::optional<BY_HANDLE_FILE_INFORMATION> lookAt(const fs::path& name) {
  const HANDLE handle = ::CreateFileW(name.c_str(), FILE_READ_ATTRIBUTES,
                                      FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                      OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
  if (!told(handle != INVALID_HANDLE_VALUE)) return std::nullopt;
  BY_HANDLE_FILE_INFORMATION info{};
  const bool good = told(::GetFileInformationByHandle(handle, &info));
  ::CloseHandle(handle);
  return good ? std::optional(info) : std::nullopt;
}

std::int64_t together(DWORD high, DWORD low) {
  return static_cast<std::int64_t>(static_cast<std::uint64_t>(high) << 32 | low);
}

}  // namespace

File File::createNew(const fs::path& name) {
  return File(openFile(name, GENERIC_READ | GENERIC_WRITE, CREATE_NEW));
}
File File::openOrCreate(const fs::path& name) {
  return File(openFile(name, GENERIC_READ | GENERIC_WRITE, OPEN_ALWAYS));
}
File File::openExisting(const fs::path& name) {
  return File(openFile(name, GENERIC_READ | GENERIC_WRITE, OPEN_EXISTING));
}
File File::openForReading(const fs::path& name) {
  return File(openFile(name, GENERIC_READ, OPEN_EXISTING));
}

File File::createNameless(const fs::path&) {
  errno = ENOTSUP;
  return {};
}

void File::close() {
  if (valid()) ::CloseHandle(native(handle_));
  handle_ = none;
}

bool File::writeAll(std::string_view bytes) const {
  constexpr std::size_t most = 1U << 30;
  while (!bytes.empty()) {
    DWORD written = 0;
    const auto count = static_cast<DWORD>(std::min(bytes.size(), most));
    if (!told(::WriteFile(native(handle_), bytes.data(), count, &written, nullptr))) return false;
    bytes.remove_prefix(written);
  }
  return true;
}

bool File::flush() const {
  return told(::FlushFileBuffers(native(handle_)));
}

bool File::give(std::int64_t bytes) const {
  LARGE_INTEGER size{};
  if (!told(::GetFileSizeEx(native(handle_), &size))) return false;
  if (size.QuadPart >= bytes) return true;
  FILE_END_OF_FILE_INFO end{};
  end.EndOfFile.QuadPart = bytes;
  return told(::SetFileInformationByHandle(native(handle_), FileEndOfFileInfo, &end, sizeof end));
}

namespace {

// Whoever takes a lock exclusively, or looks whether others have it, stands at its gate for that moment: who
// looks lets his own lock go, and nobody may slip in.
class Gate {
 public:
  Gate(std::intptr_t handle, std::int64_t offset)
      : handle_(native(handle)), place_(at(beyondTheFile(offset) + distance)) {
    ::LockFileEx(handle_, LOCKFILE_EXCLUSIVE_LOCK, 0, 1, 0, &place_);
  }
  ~Gate() { ::UnlockFileEx(handle_, 0, 1, 0, &place_); }
  Gate(const Gate&) = delete;
  Gate& operator=(const Gate&) = delete;

 private:
  static constexpr std::int64_t distance = std::int64_t{1} << 60;
  HANDLE handle_;
  OVERLAPPED place_;
};

bool tryRange(std::intptr_t handle, std::int64_t offset, DWORD kind) {
  OVERLAPPED place = at(beyondTheFile(offset));
  return told(::LockFileEx(native(handle), kind | LOCKFILE_FAIL_IMMEDIATELY, 0, 1, 0, &place));
}

bool letGo(std::intptr_t handle, std::int64_t offset) {
  OVERLAPPED place = at(beyondTheFile(offset));
  return ::UnlockFileEx(native(handle), 0, 1, 0, &place);
}

}  // namespace

// A second lock on what this object has locked would be a second one to give back, and an exclusive one on
// what it holds shared would wait for itself: the old one goes first, and comes back when the try fails.
bool File::lock(std::int64_t offset, Lock kind, bool wait) {
  constexpr std::chrono::milliseconds pause{2};
  const auto mark = std::find(shared_.begin(), shared_.end(), offset);
  const bool shared = mark != shared_.end();
  while (true) {
    {
      const Gate gate(handle_, offset);
      const bool held = letGo(handle_, offset);
      if (tryRange(handle_, offset, kind == Lock::Exclusive ? LOCKFILE_EXCLUSIVE_LOCK : 0U)) {
        if (kind == Lock::Shared && !shared) shared_.push_back(offset);
        if (kind == Lock::Exclusive && shared) shared_.erase(mark);
        return true;
      }
      if (held) tryRange(handle_, offset, shared ? 0U : LOCKFILE_EXCLUSIVE_LOCK);
    }
    if (!wait) return false;
    std::this_thread::sleep_for(pause);
  }
}

void File::unlock(std::int64_t offset) {
  letGo(handle_, offset);
  std::erase(shared_, offset);
}

bool File::lockedByOthers(std::int64_t offset) const {
  const Gate gate(handle_, offset);
  const bool shared = std::find(shared_.begin(), shared_.end(), offset) != shared_.end();
  const bool own = letGo(handle_, offset);
  const bool free = tryRange(handle_, offset, LOCKFILE_EXCLUSIVE_LOCK);
  if (free && (!own || shared)) letGo(handle_, offset);
  if (own && shared) tryRange(handle_, offset, 0U);
  return !free;
}

void* File::mapShared(std::size_t bytes) const {
  const HANDLE mapping =
      ::CreateFileMappingW(native(handle_), nullptr, PAGE_READWRITE, 0, static_cast<DWORD>(bytes), nullptr);
  if (!told(mapping != nullptr)) return nullptr;
  void* address = ::MapViewOfFile(mapping, FILE_MAP_READ | FILE_MAP_WRITE, 0, 0, bytes);
  told(address != nullptr);
  ::CloseHandle(mapping);
  return address;
}

void File::unmap(void* address, std::size_t) {
  ::UnmapViewOfFile(address);
}

// By a name that the whole session of the user knows, made of the folder's.
bool HeldFolder::hold(const fs::path& folder) {
  std::error_code error;
  if (!fs::is_directory(folder, error)) return false;
  std::wstring name = L"Local\\" + folder.filename().wstring();
  for (wchar_t& c : name) c = static_cast<wchar_t>(std::towlower(c));
  const HANDLE mutex = ::CreateMutexW(nullptr, FALSE, name.c_str());
  if (!mutex) return false;
  if (::GetLastError() == ERROR_ALREADY_EXISTS) {
    ::CloseHandle(mutex);
    return false;
  }
  handle_ = reinterpret_cast<std::intptr_t>(mutex);
  return true;
}

HeldFolder::~HeldFolder() {
  if (handle_ != -1) ::CloseHandle(native(handle_));
}

fs::path makeFolder(const fs::path& beginning) {
  static constexpr wchar_t letters[] = L"abcdefghijklmnopqrstuvwxyz0123456789";
  for (int attempt = 0; attempt < 100; ++attempt) {
    LARGE_INTEGER clock{};
    ::QueryPerformanceCounter(&clock);
    auto number = static_cast<std::uint64_t>(clock.QuadPart) * 2654435761U + ::GetCurrentProcessId();
    fs::path name = beginning;
    for (int i = 0; i < 6; ++i, number /= 36) name += letters[number % 36];
    std::error_code error;
    if (fs::create_directory(name, error)) return name;
    if (error) break;
  }
  return {};
}

bool replace(const fs::path& from, const fs::path& to) {
  return told(::MoveFileExW(from.c_str(), to.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH));
}

bool renameNew(const fs::path& from, const fs::path& to) {
  return told(::MoveFileExW(from.c_str(), to.c_str(), MOVEFILE_WRITE_THROUGH));
}

bool remove(const fs::path& name) {
  return told(::DeleteFileW(name.c_str()));
}

// Names are written through here.
void flushFolder(const fs::path&) {}

bool isOtherThanAFile(const fs::path& name) {
  const DWORD attributes = ::GetFileAttributesW(name.c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

std::uint64_t numberOf(const fs::path& name) {
  const auto info = lookAt(name);
  return info ? static_cast<std::uint64_t>(together(info->nFileIndexHigh, info->nFileIndexLow)) : 0;
}

std::optional<Stamp> stampOf(const fs::path& name) {
  const auto info = lookAt(name);
  if (!info) return std::nullopt;
  return Stamp{static_cast<std::int64_t>(info->dwVolumeSerialNumber),
               together(info->nFileIndexHigh, info->nFileIndexLow),
               together(info->nFileSizeHigh, info->nFileSizeLow),
               together(info->ftLastWriteTime.dwHighDateTime, info->ftLastWriteTime.dwLowDateTime), 0};
}

int accessError(const fs::path& name) {
  const HANDLE handle = ::CreateFileW(name.c_str(), GENERIC_READ | GENERIC_WRITE,
                                      FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                      OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (handle == INVALID_HANDLE_VALUE) return errnoOf(::GetLastError());
  ::CloseHandle(handle);
  return 0;
}

bool isOpenToOthers(const fs::path&) {
  return false;
}

std::string hostName() {
  char name[MAX_COMPUTERNAME_LENGTH + 1] = {};
  DWORD size = sizeof name;
  return ::GetComputerNameA(name, &size) ? name : std::string();
}

void ignoreSizeSignal() {}

}  // namespace engine::system
#endif
