// What the store asks of the operating system's files beyond the storage library: names that appear whole,
// flushes, locks on ranges, a shared page. One meaning on every system; all of them answer by errno's
// numbers.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#ifdef _WIN32
#include <vector>
#endif

namespace engine::system {

// An open file that may be renamed and removed meanwhile. Closed with the object; not valid where opening
// failed, errno then tells why. Not inherited by other programs.
class File {
 public:
  static File createNew(const std::filesystem::path& name);       // private; EEXIST for what stands there
  static File openOrCreate(const std::filesystem::path& name);    // private
  static File openExisting(const std::filesystem::path& name);    // for reading and writing, no link followed
  static File openForReading(const std::filesystem::path& name);  // no link followed
  // In that folder, without a name; ENOTSUP where the system or its file system has no such files.
  static File createNameless(const std::filesystem::path& folder);

  File() = default;
  ~File();
  File(File&& other) noexcept;
  File& operator=(File&& other) noexcept;

  bool valid() const { return handle_ != none; }
  bool writeAll(std::string_view bytes) const;
  bool flush() const;
  // Blocks for so many bytes; what the file holds stays.
  bool give(std::int64_t bytes) const;

  // One byte's lock, whether the file has that byte or not. It belongs to this object.
  enum class Lock { Shared, Exclusive };
  bool lock(std::int64_t offset, Lock kind, bool wait);
  void unlock(std::int64_t offset);
  bool lockedByOthers(std::int64_t offset) const;

  // The file's first bytes as memory shared by all processes; null when the system refuses.
  void* mapShared(std::size_t bytes) const;
  static void unmap(void* address, std::size_t bytes);

 private:
  using Handle = std::intptr_t;
  static constexpr Handle none = -1;
  explicit File(Handle handle) : handle_(handle) {}
  void close();
  Handle handle_ = none;
#ifdef _WIN32
  std::vector<std::int64_t> shared_;  // offsets: the system does not tell one's own locks from others'
#endif
};

// A folder that this process holds as long as the object lives, whatever ends the process.
class HeldFolder {
 public:
  // False when it is another user's, no folder, or held by somebody else.
  bool hold(const std::filesystem::path& folder);
  HeldFolder() = default;
  ~HeldFolder();
  HeldFolder(const HeldFolder&) = delete;
  HeldFolder& operator=(const HeldFolder&) = delete;

 private:
  std::intptr_t handle_ = -1;
};
// A new private folder, its name the given one and six letters more; empty when there can be none.
std::filesystem::path makeFolder(const std::filesystem::path& beginning);

bool replace(const std::filesystem::path& from, const std::filesystem::path& to);    // `to` may stand
bool renameNew(const std::filesystem::path& from, const std::filesystem::path& to);  // EEXIST when it stands
bool remove(const std::filesystem::path& name);                                      // ENOENT when missing
// A name that has appeared or gone in it stays so after a power cut, where the system tells them apart.
void flushFolder(const std::filesystem::path& folder);

// A pipe, a folder, a device: anything but a file. What is missing is none.
bool isOtherThanAFile(const std::filesystem::path& name);
// Tells a file from another that later bears its name; 0: nothing lies there.
std::uint64_t numberOf(const std::filesystem::path& name);
// Equal as long as nobody has written the file or put another in its place.
using Stamp = std::array<std::int64_t, 5>;
std::optional<Stamp> stampOf(const std::filesystem::path& name);
// 0, or the reason why this process may not read and write it.
int accessError(const std::filesystem::path& name);

// Whether others may touch it by its own rights. Where rights come from the folder above, as on Windows,
// never.
bool isOpenToOthers(const std::filesystem::path& name);

std::string hostName();  // empty when the system does not tell it
// A file that may grow no further is an error of whoever writes it, not the end of the process.
void ignoreSizeSignal();

}  // namespace engine::system
