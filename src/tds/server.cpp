#include "tds/server.h"

#include <arpa/inet.h>
#include <malloc.h>
#include <netdb.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <condition_variable>
#include <list>
#include <mutex>
#include <optional>
#include <system_error>
#include <thread>

#include "tds/connection.h"

namespace tds {

namespace {

constexpr std::chrono::milliseconds lookInterval{50};
constexpr std::chrono::seconds trimInterval{5};
constexpr int waitingClients = 512;  // that the system keeps until they are accepted
// Clients beyond the limit who are told so at the same time; others are hung up on.
constexpr std::size_t mostTurnedAway = 64;
constexpr std::chrono::seconds threadPatience{10};  // of a thread without a client

[[noreturn]] void fail(const std::string& what) {
  throw std::system_error(errno, std::generic_category(), what);
}

void setOption(int descriptor, int level, int name, int value) {
  setsockopt(descriptor, level, name, &value, sizeof value);
}

int listenOn(const std::string& address, std::uint16_t port) {
  const std::string place = address + "," + std::to_string(port);
  addrinfo hints{}, *found = nullptr;
  hints.ai_socktype = SOCK_STREAM;
  hints.ai_flags = AI_NUMERICHOST | AI_NUMERICSERV | AI_PASSIVE;
  if (getaddrinfo(address.c_str(), std::to_string(port).c_str(), &hints, &found) != 0) {
    errno = EINVAL;
    fail(place);
  }
  const std::unique_ptr<addrinfo, decltype(&freeaddrinfo)> release(found, freeaddrinfo);
  const int listener = socket(found->ai_family, SOCK_STREAM | SOCK_CLOEXEC, 0);
  if (listener < 0) fail(place);
  setOption(listener, SOL_SOCKET, SO_REUSEADDR, 1);
  if (bind(listener, found->ai_addr, found->ai_addrlen) != 0 || listen(listener, waitingClients) != 0) {
    const int reason = errno;
    close(listener);
    errno = reason;
    fail(place);
  }
  return listener;
}

std::string describe(const sockaddr_storage& address, socklen_t size) {
  char host[NI_MAXHOST], port[NI_MAXSERV];
  if (getnameinfo(reinterpret_cast<const sockaddr*>(&address), size, host, sizeof host, port, sizeof port,
                  NI_NUMERICHOST | NI_NUMERICSERV) != 0)
    return "?";
  return std::string(host) + "," + port;
}

bool isThisMachine(const sockaddr_storage& address) {
  if (address.ss_family == AF_INET)
    return ntohl(reinterpret_cast<const sockaddr_in*>(&address)->sin_addr.s_addr) >> 24 == IN_LOOPBACKNET;
  const auto& ip = reinterpret_cast<const sockaddr_in6*>(&address)->sin6_addr;
  return IN6_IS_ADDR_LOOPBACK(&ip) || (IN6_IS_ADDR_V4MAPPED(&ip) && ip.s6_addr[12] == IN_LOOPBACKNET);
}

TlsContext makeTls(const Options& options, const std::filesystem::path& folder) {
  const auto certificate =
      options.certificate.empty() ? TlsContext::ownCertificate(folder) : options.certificate;
  return {certificate, options.key.empty() ? certificate : options.key};
}

// A client whose machine has gone without a word is noticed after about two minutes.
void tune(int descriptor) {
  setOption(descriptor, IPPROTO_TCP, TCP_NODELAY, 1);
  setOption(descriptor, SOL_SOCKET, SO_KEEPALIVE, 1);
  setOption(descriptor, IPPROTO_TCP, TCP_KEEPIDLE, 60);
  setOption(descriptor, IPPROTO_TCP, TCP_KEEPINTVL, 15);
  setOption(descriptor, IPPROTO_TCP, TCP_KEEPCNT, 4);
}

}  // namespace

class Server::Impl {
 public:
  Impl(std::shared_ptr<engine::Server> server, Options options)
      : server_(std::move(server)),
        options_(std::move(options)),
        tls_(makeTls(options_, server_->folder())),
        listener_(listenOn(options_.address, options_.port)),
        wake_(eventfd(0, EFD_CLOEXEC)) {
    listening_ = std::thread([this] { acceptClients(); });
    watching_ = std::thread([this] { watch(); });
  }

  ~Impl() {
    stop();
    close(listener_);
    close(wake_);
  }

  std::uint16_t port() const {
    sockaddr_storage address{};
    socklen_t size = sizeof address;
    getsockname(listener_, reinterpret_cast<sockaddr*>(&address), &size);
    return ntohs(address.ss_family == AF_INET6 ? reinterpret_cast<sockaddr_in6*>(&address)->sin6_port
                                               : reinterpret_cast<sockaddr_in*>(&address)->sin_port);
  }

  std::size_t connections() const {
    const std::lock_guard lock(mutex_);
    return clients_.size() - turnedAway_;
  }

  void stop() {
    {
      const std::lock_guard lock(mutex_);
      if (std::exchange(stopping_, true)) return;
    }
    const std::uint64_t one = 1;
    static_cast<void>(!write(wake_, &one, sizeof one));
    listening_.join();
    std::unique_lock lock(mutex_);
    for (auto& client : clients_) client->stop(false);
    work_.notify_all();
    const auto empty = [this] { return clients_.empty() && threads_ == 0; };
    if (!left_.wait_for(lock, options_.stopPatience, empty)) {
      for (auto& client : clients_) client->stop(true);
      left_.wait(lock, empty);
    }
    ended_ = true;
    lock.unlock();
    watchEnd_.notify_all();
    watching_.join();
  }

 private:
  using Client = std::list<std::unique_ptr<Connection>>::iterator;

  void acceptClients() {
    for (;;) {
      pollfd waiting[2] = {{listener_, POLLIN, 0}, {wake_, POLLIN, 0}};
      if (poll(waiting, 2, -1) < 0 && errno != EINTR) return;
      if (waiting[1].revents != 0) return;
      sockaddr_storage address{};
      socklen_t size = sizeof address;
      const int descriptor = accept4(listener_, reinterpret_cast<sockaddr*>(&address), &size, SOCK_CLOEXEC);
      if (descriptor >= 0) {
        admit(descriptor, describe(address, size), isThisMachine(address));
      } else if (errno == EMFILE || errno == ENFILE || errno == ENOBUFS || errno == ENOMEM) {
        // Nothing can be taken in just now; the client waits in the system's queue.
        std::this_thread::sleep_for(lookInterval);
      }
    }
  }

  void admit(int descriptor, const std::string& peer, bool local) {
    const std::lock_guard lock(mutex_);
    const bool full = clients_.size() - turnedAway_ >= options_.mostConnections;
    if (full && options_.log && !stopping_) options_.log(peer + ": bağlantı sınırı dolu, kabul edilmedi");
    if (stopping_ || (full && turnedAway_ >= mostTurnedAway)) {
      close(descriptor);
      return;
    }
    tune(descriptor);
    const auto client = clients_.insert(
        clients_.end(), std::make_unique<Connection>(server_, options_, tls_, descriptor, peer, local, full));
    turnedAway_ += full ? 1 : 0;
    if (waiting_.size() < freeThreads_) {
      waiting_.push_back(client);
      work_.notify_one();
      return;
    }
    try {
      std::thread([this, client] { serveClients(client); }).detach();
      ++threads_;
    } catch (const std::system_error&) {
      remove(client);
    }
  }

  // A thread takes the next client when it is done with one, so that a login does not wait for a new thread.
  void serveClients(Client client) {
    for (std::optional<Client> next = client; next;) {
      (**next)->serve();
      std::unique_lock lock(mutex_);
      remove(*next);
      left_.notify_all();
      ++freeThreads_;
      work_.wait_for(lock, threadPatience, [this] { return stopping_ || !waiting_.empty(); });
      --freeThreads_;
      next.reset();
      if (!waiting_.empty()) {
        next = waiting_.front();
        waiting_.pop_front();
      } else {
        --threads_;
        left_.notify_all();
      }
    }
  }

  void remove(Client client) {
    turnedAway_ -= (*client)->isTurnedAway() ? 1 : 0;
    clients_.erase(client);
  }

  void watch() {
    std::unique_lock lock(mutex_);
    bool rested = false;
    auto trimmed = std::chrono::steady_clock::now();
    while (!watchEnd_.wait_for(lock, lookInterval, [this] { return ended_; })) {
      for (auto& client : clients_) {
        client->look();
        rested = client->takeRested() || rested;
      }
      const auto now = std::chrono::steady_clock::now();
      if (!rested || now - trimmed < trimInterval) continue;
      // What sessions have freed lies between what others still hold.
      lock.unlock();
      malloc_trim(0);
      lock.lock();
      rested = false;
      trimmed = now;
    }
  }

  std::shared_ptr<engine::Server> server_;
  Options options_;
  TlsContext tls_;
  int listener_, wake_;
  mutable std::mutex mutex_;  // guards what follows
  std::list<std::unique_ptr<Connection>> clients_;
  std::size_t turnedAway_ = 0;  // of the clients
  std::list<Client> waiting_;   // for a thread that is free
  std::size_t threads_ = 0, freeThreads_ = 0;
  std::condition_variable work_;
  bool stopping_ = false, ended_ = false;
  std::condition_variable left_, watchEnd_;
  std::thread listening_, watching_;
};

Server::Server(std::shared_ptr<engine::Server> server, Options options)
    : impl_(std::make_unique<Impl>(std::move(server), std::move(options))) {}
Server::~Server() = default;
std::uint16_t Server::port() const {
  return impl_->port();
}
std::size_t Server::connections() const {
  return impl_->connections();
}
void Server::stop() {
  impl_->stop();
}

}  // namespace tds
