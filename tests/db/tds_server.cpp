#include "support/tds_server.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <stdexcept>

namespace support {
namespace {

constexpr std::uint8_t batchPacket = 0x01, answerPacket = 0x04, loginPacket = 0x10, preLoginPacket = 0x12;
constexpr std::uint8_t lastPacket = 0x01;
constexpr std::size_t headerSize = 8, packetSize = 4096;
const std::string turkishCollation("\x1F\x04\xD0\x00\x00", 5);

std::uint64_t readNumber(const std::string& data, std::size_t at, std::size_t size) {
  std::uint64_t value = 0;
  for (std::size_t i = size; i-- > 0;) value = value << 8 | static_cast<unsigned char>(data.at(at + i));
  return value;
}

std::string fromUtf16(std::string_view data) {
  std::string out;
  for (std::size_t i = 0; i + 1 < data.size(); i += 2) {
    const unsigned c = static_cast<unsigned char>(data[i]) | static_cast<unsigned char>(data[i + 1]) << 8;
    if (c < 0x80) {
      out += static_cast<char>(c);
    } else if (c < 0x800) {
      out += {static_cast<char>(0xC0 | c >> 6), static_cast<char>(0x80 | (c & 63))};
    } else {
      out += {static_cast<char>(0xE0 | c >> 12), static_cast<char>(0x80 | (c >> 6 & 63)),
              static_cast<char>(0x80 | (c & 63))};
    }
  }
  return out;
}

bool readAll(int connection, char* to, std::size_t size) {
  while (size > 0) {
    const auto got = recv(connection, to, size, 0);
    if (got <= 0) return false;
    to += got;
    size -= static_cast<std::size_t>(got);
  }
  return true;
}

bool readMessage(int connection, std::uint8_t& type, std::string& data) {
  data.clear();
  for (;;) {
    unsigned char header[headerSize];
    if (!readAll(connection, reinterpret_cast<char*>(header), headerSize)) return false;
    type = header[0];
    const std::size_t size = (header[2] << 8 | header[3]) - headerSize;
    const std::size_t start = data.size();
    data.resize(start + size);
    if (!readAll(connection, data.data() + start, size)) return false;
    if (header[1] & lastPacket) return true;
  }
}

void writeMessage(int connection, const std::string& data) {
  std::size_t sent = 0;
  std::uint8_t packet = 1;
  do {
    const std::size_t size = std::min(data.size() - sent, packetSize - headerSize);
    const std::size_t whole = size + headerSize;
    std::string out(headerSize, '\0');
    out[0] = static_cast<char>(answerPacket);
    out[1] = static_cast<char>(sent + size == data.size() ? lastPacket : 0);
    out[2] = static_cast<char>(whole >> 8);
    out[3] = static_cast<char>(whole);
    out[6] = static_cast<char>(packet++);
    out += data.substr(sent, size);
    if (send(connection, out.data(), out.size(), MSG_NOSIGNAL) < 0) return;
    sent += size;
  } while (sent < data.size());
}

// Version and "no encryption", each with its place and length in front.
std::string preLoginAnswer() {
  return std::string("\x00\x00\x0B\x00\x06\x01\x00\x11\x00\x01\xFF\x08\x00\x00\x00\x00\x00\x02", 18);
}

}  // namespace

std::string utf16(std::string_view utf8) {
  std::string out;
  for (std::size_t i = 0; i < utf8.size();) {
    const auto byte = [&](std::size_t at) { return static_cast<unsigned char>(utf8[at]); };
    unsigned c = byte(i);
    const std::size_t length = c < 0x80 ? 1 : c < 0xE0 ? 2 : 3;
    if (length == 2) c = (c & 31) << 6 | (byte(i + 1) & 63);
    if (length == 3) c = (c & 15) << 12 | (byte(i + 1) & 63) << 6 | (byte(i + 2) & 63);
    out += {static_cast<char>(c), static_cast<char>(c >> 8)};
    i += length;
  }
  return out;
}

TdsAnswer& TdsAnswer::number(std::uint64_t value, int size) {
  for (int i = 0; i < size; ++i) data_ += static_cast<char>(value >> (8 * i));
  return *this;
}

TdsAnswer& TdsAnswer::text(std::string_view utf8, int lengthSize) {
  const std::string encoded = utf16(utf8);
  number(encoded.size() / 2, lengthSize);
  data_ += encoded;
  return *this;
}

TdsAnswer& TdsAnswer::loginAccepted() {
  TdsAnswer inside;
  inside.number(1, 1).number(0x04000074, 4).text("Sunucu", 1).number(0x00000008, 4);
  number(0xAD, 1).number(inside.data_.size(), 2);
  data_ += inside.data_;
  return *this;
}

TdsAnswer& TdsAnswer::message(std::uint8_t token, std::int32_t code, std::uint8_t severity,
                              std::string_view words) {
  TdsAnswer inside;
  inside.number(static_cast<std::uint32_t>(code), 4).number(1, 1).number(severity, 1);
  inside.text(words, 2).text("SUNUCU", 1).text("", 1).number(1, 4);
  number(token, 1).number(inside.data_.size(), 2);
  data_ += inside.data_;
  return *this;
}

TdsAnswer& TdsAnswer::columns(const std::vector<Column>& columns) {
  number(0x81, 1).number(columns.size(), 2);
  for (const auto& column : columns) {
    constexpr int nullable = 1, identity = 0x10;
    number(0, 4).number(column.identity ? identity : nullable, 2);
    switch (column.kind) {
      case Kind::Int:
        number(0x26, 1).number(4, 1);
        break;
      case Kind::TinyInt:
        number(0x26, 1).number(1, 1);
        break;
      case Kind::Bit:
        number(0x68, 1).number(1, 1);
        break;
      case Kind::Money:
        number(0x6E, 1).number(8, 1);
        break;
      case Kind::Float:
        number(0x6D, 1).number(8, 1);
        break;
      case Kind::DateTime:
        number(0x6F, 1).number(8, 1);
        break;
      case Kind::Decimal:
        number(0x6A, 1).number(9, 1).number(18, 1).number(4, 1);
        break;
      case Kind::Binary:
        number(0xA5, 1).number(column.size, 2);
        break;
      case Kind::Char:
        number(0xAF, 1).number(column.size, 2);
        break;
      case Kind::VarChar:
        number(0xA7, 1).number(column.size, 2);
        break;
      case Kind::Text:
        number(0x23, 1).number(0x7FFFFFFF, 4);
        break;
    }
    const bool character =
        column.kind == Kind::Char || column.kind == Kind::VarChar || column.kind == Kind::Text;
    if (character) data_ += turkishCollation;
    if (column.kind == Kind::Text) number(1, 1).text("T", 2);
    text(column.name, 1);
  }
  return *this;
}

TdsAnswer& TdsAnswer::row() {
  return number(0xD1, 1);
}

TdsAnswer& TdsAnswer::null(Kind kind) {
  const bool twoBytes = kind == Kind::Char || kind == Kind::VarChar || kind == Kind::Binary;
  return twoBytes ? number(0xFFFF, 2) : number(0, 1);
}

TdsAnswer& TdsAnswer::integer(std::int64_t value, int size) {
  return number(static_cast<std::uint64_t>(size), 1).number(static_cast<std::uint64_t>(value), size);
}

TdsAnswer& TdsAnswer::money(std::int64_t value) {
  // The high half comes first.
  const auto raw = static_cast<std::uint64_t>(value);
  return number(8, 1).number(raw >> 32, 4).number(raw & 0xFFFFFFFF, 4);
}

TdsAnswer& TdsAnswer::real(double value) {
  std::uint64_t raw = 0;
  std::memcpy(&raw, &value, sizeof raw);
  return number(8, 1).number(raw, 8);
}

TdsAnswer& TdsAnswer::dateTime(std::int32_t days, std::uint32_t ticks) {
  return number(8, 1).number(static_cast<std::uint32_t>(days), 4).number(ticks, 4);
}

TdsAnswer& TdsAnswer::bytes(std::string_view value) {
  number(value.size(), 2);
  data_ += value;
  return *this;
}

TdsAnswer& TdsAnswer::longText(std::string_view value) {
  number(16, 1);
  data_ += std::string(16, 'p') + std::string(8, 't');  // text pointer and its time stamp
  number(value.size(), 4);
  data_ += value;
  return *this;
}

TdsAnswer& TdsAnswer::decimal(std::uint64_t magnitude, bool negative) {
  return number(9, 1).number(negative ? 0 : 1, 1).number(magnitude, 8);
}

TdsAnswer& TdsAnswer::done(std::int64_t count, bool more, bool failed) {
  const unsigned status = (more ? 1u : 0u) | (failed ? 2u : 0u) | (count >= 0 ? 0x10u : 0u);
  return number(0xFD, 1).number(status, 2).number(0xC1, 2).number(
      static_cast<std::uint64_t>(std::max<std::int64_t>(count, 0)), 8);
}

TdsServer::TdsServer(std::function<std::string(const std::string&)> respond) : respond_(std::move(respond)) {
  listener_ = socket(AF_INET, SOCK_STREAM, 0);
  sockaddr_in address = {};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t size = sizeof address;
  if (bind(listener_, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0 ||
      listen(listener_, 4) != 0)
    throw std::runtime_error("no port to listen on");
  getsockname(listener_, reinterpret_cast<sockaddr*>(&address), &size);
  port_ = ntohs(address.sin_port);
  thread_ = std::thread([this] { serve(); });
}

TdsServer::~TdsServer() {
  shutdown(listener_, SHUT_RDWR);
  thread_.join();
  close(listener_);
}

void TdsServer::refuseLogin(std::string answer) {
  const std::lock_guard lock(mutex_);
  refusal_ = std::move(answer);
}

std::vector<TdsServer::Login> TdsServer::logins() {
  const std::lock_guard lock(mutex_);
  return logins_;
}

std::vector<std::string> TdsServer::batches() {
  const std::lock_guard lock(mutex_);
  return batches_;
}

void TdsServer::serve() {
  for (;;) {
    const int connection = accept(listener_, nullptr, nullptr);
    if (connection < 0) return;
    serveOne(connection);
    close(connection);
  }
}

void TdsServer::serveOne(int connection) {
  std::uint8_t type = 0;
  std::string data;
  while (readMessage(connection, type, data)) {
    const std::string answer = answerTo(type, data);
    if (answer.empty()) return;  // hangs up
    writeMessage(connection, answer);
  }
}

std::string TdsServer::answerTo(std::uint8_t type, const std::string& data) {
  if (type == preLoginPacket) return preLoginAnswer();
  if (type == loginPacket) {
    // Places and lengths of the texts stand at fixed offsets of the login record.
    const auto field = [&](std::size_t at) {
      return data.substr(readNumber(data, at, 2), 2 * readNumber(data, at + 2, 2));
    };
    std::string password = field(44);
    for (char& c : password) {
      const auto plain = static_cast<unsigned char>(c ^ 0xA5);
      c = static_cast<char>(plain << 4 | plain >> 4);
    }
    const std::lock_guard lock(mutex_);
    logins_.push_back({fromUtf16(field(40)), fromUtf16(password), fromUtf16(field(68))});
    return refusal_.empty() ? TdsAnswer().loginAccepted().done().data() : refusal_;
  }
  if (type != batchPacket) return TdsAnswer().done().data();
  const std::string batch = fromUtf16(std::string_view(data).substr(readNumber(data, 0, 4)));
  {
    const std::lock_guard lock(mutex_);
    batches_.push_back(batch);
  }
  return respond_(batch);
}

}  // namespace support
