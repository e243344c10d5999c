// One client, from its first packet to its last.
#pragma once

#include <atomic>
#include <chrono>
#include <memory>
#include <mutex>
#include <string>

#include "tds/answer.h"
#include "tds/login.h"
#include "tds/packet.h"
#include "tds/prelogin.h"
#include "tds/procedures.h"
#include "tds/server.h"
#include "tds/tls.h"
#include "tds/transport.h"

namespace tds {

class Connection {
 public:
  // `descriptor`: a connected socket, which the connection owns from now on. `local`: the client is on this
  // machine. `turnedAway`: it is told that there are too many and let go.
  Connection(std::shared_ptr<engine::Server> server, const Options& options, const TlsContext& tls,
             int descriptor, std::string peer, bool local, bool turnedAway = false);
  ~Connection();

  bool isTurnedAway() const { return turnedAway_; }
  // Serves the client until it goes or stop() comes. Throws nothing.
  void serve() noexcept;

  // ---- from other threads ----

  // Ends the running statement if the client has gone or asks for it, and a client whose login does not come.
  void look();
  // Whether it has given memory back since the last time it was asked.
  bool takeRested() { return rested_.exchange(false); }
  // No further request; `atOnce`: the running one ends, too.
  void stop(bool atOnce);

 private:
  Message greet();
  Message greetFirst(const Message& first);
  Message greetStrict();
  Encryption agree(Encryption wanted);
  void use(Transport& transport);
  bool login(const Message& message);
  void enter(const Login& login);
  void welcome(const Login& login);
  void serveRequests();
  void serveRequest(const Message& message);
  void acknowledgeAttention();
  // The transaction that a request names is not looked at: there is but one.
  std::string_view withoutHeaders(std::string_view data) const;
  void runMessage(const Message& message, Answer& answer);
  void runCalls(std::string_view data, Answer& answer);
  bool tellFailure(const engine::Error& error, Answer& answer) const;
  bool setRunning(bool running);
  void log(const std::string& line) const;

  std::shared_ptr<engine::Server> server_;
  const Options& options_;
  SocketTransport socket_;
  const TlsContext& tlsContext_;
  std::optional<TlsTransport> tls_;
  Transport* transport_;
  PacketReader reader_;
  PacketWriter writer_;
  std::string peer_, serverName_;
  const bool local_, turnedAway_;
  const std::chrono::steady_clock::time_point begun_ = std::chrono::steady_clock::now();
  bool strict_ = false;  // TDS 8
  Version version_ = Version::V74;

  std::atomic<bool> rested_ = false;
  std::mutex mutex_;  // guards the following
  bool greeting_ = true, running_ = false, serving_ = false, stopping_ = false;
  std::unique_ptr<engine::Session> session_;
  std::optional<Procedures> procedures_;
};

}  // namespace tds
