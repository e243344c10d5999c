// The one exception of data access.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <stdexcept>
#include <string>

namespace db {

// OLE DB style numbers: what kind of failure it was.
enum class ErrorKind : std::uint32_t {
  LoginRefused = 0x80040E4D,      // wrong login or password
  LinkBroken = 0x80004005,        // server not reachable, service stopped, link lost, unspecified
  StatementRefused = 0x80040E14,  // the server refused a statement
};

class SqlError : public std::runtime_error {
 public:
  SqlError(ErrorKind kind, int serverNumber, const std::string& text)
      : std::runtime_error(text), kind_(kind), serverNumber_(serverNumber) {}

  ErrorKind kind() const { return kind_; }
  // As a program of the time sees it: the kind as a signed 32-bit number (-2147217900 ...).
  std::int32_t number() const { return static_cast<std::int32_t>(kind_); }
  int serverNumber() const { return serverNumber_; }  // 208, 2627 ...; 0 when the server gave none
  // Every statement after it would meet it, too: the link is broken, or the files can be neither written nor
  // read.
  bool lasting() const;

 private:
  ErrorKind kind_;
  int serverNumber_;
};

inline bool SqlError::lasting() const {
  constexpr std::array numbers{823, 824, 1101, 1105, 3906, 9002};
  return kind_ == ErrorKind::LinkBroken ||
         std::find(numbers.begin(), numbers.end(), serverNumber_) != numbers.end();
}

}  // namespace db
