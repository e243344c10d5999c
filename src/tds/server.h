// The embedded server on the network: a listener, a thread for each client, and a watch over those whose
// statement runs.
//
//   tds::Server server(engine::Server::open(folder), options);   // listens from here on
//   server.stop();                                               // lets running statements finish
//
// A client that goes away in the middle of a statement ends it within a tenth of a second, and its
// transaction with it; so does ATTENTION for the statement alone.
#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>

#include "engine/server.h"

namespace tds {

struct Options {
  std::string address = "127.0.0.1";                           // of IPv4 or IPv6, in figures
  std::uint16_t port = 1433;                                   // 0: any free one
  std::size_t mostConnections = 1000;                          // who comes beyond gets 17809
  std::size_t largestRequest = std::size_t{64} * 1024 * 1024;  // bytes of one message; 701 beyond
  std::size_t largestKept = std::size_t{64} * 1024 * 1024;  // of a client's prepared statements and cursors
  std::chrono::seconds loginPatience{15};                   // from the connection to the whole LOGIN7
  std::chrono::seconds stopPatience{30};                    // for statements that run when stop() comes
  // TLS: a chain and its key in PEM. Empty: a pair of the server's own, made in the data folder when missing.
  std::filesystem::path certificate, key;
  // Clients on this machine may do without TLS; those on others never.
  bool plainOnThisMachine = false;
  // One line for each event worth telling, without its end; called from any thread. Never holds a password.
  std::function<void(const std::string& line)> log;
};

class Server {
 public:
  // Throws std::system_error when the address cannot be listened on, std::runtime_error for a certificate
  // that cannot be used.
  Server(std::shared_ptr<engine::Server> server, Options options);
  ~Server();  // stops
  Server(const Server&) = delete;
  Server& operator=(const Server&) = delete;

  std::uint16_t port() const;
  std::size_t connections() const;  // without those that are only told that there are too many
  // No new clients; idle ones are let go at once, the others when their statement has ended or patience has.
  void stop();

 private:
  class Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace tds
