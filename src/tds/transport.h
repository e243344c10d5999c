// The bytes of one connection, plain or inside TLS.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string_view>

namespace tds {

// The other side is gone, or the server is stopping: nothing more can be said.
class LinkLost : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// Used by one thread; shut() and descriptor() by any.
class Transport {
 public:
  virtual ~Transport() = default;
  // At least one byte; waits for it. Throws LinkLost.
  virtual std::size_t read(char* to, std::size_t most) = 0;
  virtual void write(std::string_view bytes) = 0;  // all of them; throws LinkLost
};

// Owns a connected socket.
class SocketTransport : public Transport {
 public:
  explicit SocketTransport(int descriptor) : descriptor_(descriptor) {}
  ~SocketTransport() override;
  SocketTransport(const SocketTransport&) = delete;
  SocketTransport& operator=(const SocketTransport&) = delete;

  std::size_t read(char* to, std::size_t most) override;
  void write(std::string_view bytes) override;
  // Waits for at most so long; true when something can be read (the end, too).
  bool waits(std::chrono::milliseconds most) const;
  // The next byte, which stays; waits for it. Throws LinkLost.
  std::uint8_t peek() const;
  // Both directions end; whoever waits in read() or write() gets LinkLost.
  void shut();
  int descriptor() const { return descriptor_; }

 private:
  int descriptor_;
};

}  // namespace tds
