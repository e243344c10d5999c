// A client that speaks the protocol byte by byte and prints what comes back, a line per token:
//
//   columns a:int4 b:varchar(20)
//   row 1 'x'                     (packed row: the same with its own name)
//   done select 1 more            flags: more error transaction attention
//   error 208/16/1 line 1 in tr: Invalid object name 'x'.
//   info 5701/0/2 line 0: ...
//   environment 1: 'master' <- 'x'
//   status 0
//   return @p int4 5
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tds::test {

std::string number(std::uint64_t value, std::size_t size);
std::string utf16(std::string_view ascii);  // Latin letters only
std::string text(std::string_view ascii, std::size_t lengthSize);
// One packet, the last of its message; the second form lies about its length.
std::string packet(std::uint8_t type, const std::string& data);
std::string packet(std::uint8_t type, std::size_t length, const std::string& data);

// A parameter of a call: name, status, type and value as they are sent.
std::string intParameter(const std::string& name, int value, bool output = false);
std::string nullIntParameter(const std::string& name, bool output = false);
std::string textParameter(const std::string& name, const std::string& value);
// A call by the procedure's number.
std::string call(std::uint16_t procedure, const std::vector<std::string>& parameters);
std::string namedCall(const std::string& name, const std::vector<std::string>& parameters);

std::string preLogin(std::uint8_t encryption);
std::string login(std::uint32_t version, const std::string& user, const std::string& password,
                  const std::string& database);
std::string headers();  // what stands before batches and calls from 7.2 on

class Client {
 public:
  explicit Client(std::uint16_t port);
  ~Client();
  Client(const Client&) = delete;
  Client& operator=(const Client&) = delete;

  // PRELOGIN and LOGIN7 as "sa"; what the server says to the second.
  std::string open(std::uint32_t version = 0x74000004, const std::string& database = "");
  std::string open(std::uint32_t version, const std::string& user, const std::string& password,
                   const std::string& database);
  // One batch and its whole answer.
  std::string batch(const std::string& sql, std::uint8_t status = 0);
  std::string rpc(const std::string& calls);
  std::string transaction(std::uint16_t request, const std::string& rest);

  // ---- bare ----
  void send(std::uint8_t type, const std::string& data, std::uint8_t status = 0);
  void sendRaw(const std::string& bytes);
  // The next whole message; empty when the server has hung up. `most`: reads no further than so many bytes.
  std::string receive();
  std::string printed() { return print(receive()); }
  std::string print(const std::string& tokens) const;
  bool closed();  // waits for it
  void hangUp();
  int descriptor() const { return socket_; }
  std::string withHeaders(const std::string& data) const;

 private:
  int socket_;
  std::uint32_t version_ = 0x74000004;
};

}  // namespace tds::test
