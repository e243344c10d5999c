// A server that speaks just enough TDS 7.4 for the real FreeTDS driver to log in, send batches and read
// scripted answers. It listens on a free port of this machine and serves one connection after another.
//
//   packet = type:1 status:1 length:2(big endian) spid:2 number:1 window:1 data
//   data   = tokens of the answer, all numbers little endian, texts UTF-16 with their length in front
#pragma once

#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace support {

// Builds the tokens of an answer.
class TdsAnswer {
 public:
  enum class Kind : std::uint8_t {
    Int,
    TinyInt,
    Bit,
    Money,
    Float,
    DateTime,
    Char,
    VarChar,
    Text,
    Decimal,
    Binary
  };
  struct Column {
    std::string name;
    Kind kind;
    std::uint16_t size = 0;
    bool identity = false;
  };

  TdsAnswer& loginAccepted();
  TdsAnswer& error(std::int32_t number, std::string_view text) { return message(0xAA, number, 16, text); }
  TdsAnswer& info(std::int32_t number, std::string_view text) { return message(0xAB, number, 0, text); }
  TdsAnswer& columns(const std::vector<Column>& columns);
  // The value of the next column, already in the form of its kind; null for NULL.
  TdsAnswer& row();
  TdsAnswer& null(Kind kind);
  TdsAnswer& integer(std::int64_t value, int size);  // Int, TinyInt, Bit
  TdsAnswer& money(std::int64_t tenThousandths);
  TdsAnswer& real(double value);
  TdsAnswer& dateTime(std::int32_t daysSince1900, std::uint32_t ticks);  // 1/300 s
  TdsAnswer& bytes(std::string_view value);     // Char, VarChar (code page 1254), Binary
  TdsAnswer& longText(std::string_view value);  // Text
  TdsAnswer& decimal(std::uint64_t magnitude, bool negative);
  // End of one result; `count` below 0: none; `more` results follow.
  TdsAnswer& done(std::int64_t count = -1, bool more = false, bool failed = false);
  TdsAnswer& garbage() { return number(0x33, 1).number(0x12345678, 4); }  // no token that there is

  const std::string& data() const { return data_; }

 private:
  TdsAnswer& message(std::uint8_t token, std::int32_t number, std::uint8_t severity, std::string_view text);
  TdsAnswer& number(std::uint64_t value, int size);
  TdsAnswer& text(std::string_view utf8, int lengthSize);
  std::string data_;
};

std::string utf16(std::string_view utf8);

class TdsServer {
 public:
  struct Login {
    std::string user, password, database;
  };

  // `respond` answers a batch; its thread is the server's own.
  explicit TdsServer(std::function<std::string(const std::string& batch)> respond);
  ~TdsServer();

  std::string address() const { return "127.0.0.1," + std::to_string(port_); }
  // What is sent instead of an accepted login, when not empty.
  void refuseLogin(std::string answer);
  std::vector<Login> logins();
  std::vector<std::string> batches();

 private:
  void serve();
  void serveOne(int connection);
  std::string answerTo(std::uint8_t type, const std::string& data);

  std::function<std::string(const std::string&)> respond_;
  int listener_ = -1;
  int port_ = 0;
  std::mutex mutex_;
  std::string refusal_;
  std::vector<Login> logins_;
  std::vector<std::string> batches_;
  std::thread thread_;
};

}  // namespace support
