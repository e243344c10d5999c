#include "tds/transport.h"

#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>

namespace tds {

SocketTransport::~SocketTransport() {
  close(descriptor_);
}

std::size_t SocketTransport::read(char* to, std::size_t most) {
  for (;;) {
    const ssize_t got = recv(descriptor_, to, most, 0);
    if (got > 0) return static_cast<std::size_t>(got);
    if (got < 0 && errno == EINTR) continue;
    throw LinkLost(got == 0 ? "the client has closed the connection" : "the connection broke");
  }
}

void SocketTransport::write(std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t sent = send(descriptor_, bytes.data(), bytes.size(), MSG_NOSIGNAL);
    if (sent < 0 && errno == EINTR) continue;
    if (sent < 0) throw LinkLost("the connection broke");
    bytes.remove_prefix(static_cast<std::size_t>(sent));
  }
}

bool SocketTransport::waits(std::chrono::milliseconds most) const {
  pollfd state{descriptor_, POLLIN, 0};
  return poll(&state, 1, static_cast<int>(most.count())) != 0;
}

std::uint8_t SocketTransport::peek() const {
  for (;;) {
    std::uint8_t byte = 0;
    const ssize_t got = recv(descriptor_, &byte, 1, MSG_PEEK);
    if (got == 1) return byte;
    if (got < 0 && errno == EINTR) continue;
    throw LinkLost("the client has closed the connection");
  }
}

void SocketTransport::shut() {
  shutdown(descriptor_, SHUT_RDWR);
}

}  // namespace tds
