#include "engine/store/system_file.h"

#include <utility>

namespace engine::system {

File::File(File&& other) noexcept : handle_(std::exchange(other.handle_, none)) {
#ifdef _WIN32
  shared_ = std::move(other.shared_);
#endif
}

File& File::operator=(File&& other) noexcept {
  if (this == &other) return *this;
  close();
  handle_ = std::exchange(other.handle_, none);
#ifdef _WIN32
  shared_ = std::move(other.shared_);
#endif
  return *this;
}

File::~File() {
  close();
}

}  // namespace engine::system
