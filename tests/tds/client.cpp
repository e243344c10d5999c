#include "tds/client.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <bit>
#include <cstring>
#include <stdexcept>

namespace tds::test {

namespace {

constexpr std::uint32_t version72 = 0x72090002;

// Reads an answer from the front.
class Cursor {
 public:
  explicit Cursor(std::string_view data) : data_(data) {}
  bool atEnd() const { return data_.empty(); }
  std::string_view bytes(std::size_t count) {
    if (count > data_.size()) throw std::runtime_error("the answer ends within a token");
    const auto found = data_.substr(0, count);
    data_.remove_prefix(count);
    return found;
  }
  std::uint64_t number(std::size_t size) {
    const auto raw = bytes(size);
    std::uint64_t value = 0;
    for (std::size_t i = size; i-- > 0;) value = value << 8 | static_cast<unsigned char>(raw[i]);
    return value;
  }
  std::string units(std::size_t count) {
    std::string out;
    for (std::size_t i = 0; i < count; ++i) {
      const auto unit = number(2);
      if (unit < 0x80)
        out += static_cast<char>(unit);
      else
        out += {'<', "0123456789ABCDEF"[unit >> 8 & 15], "0123456789ABCDEF"[unit >> 4 & 15],
                "0123456789ABCDEF"[unit & 15], '>'};
    }
    return out;
  }
  std::string text(std::size_t lengthSize) { return units(number(lengthSize)); }

 private:
  std::string_view data_;
};

struct Kind {
  std::uint8_t type = 0;
  std::size_t size = 0;
  int precision = 0, scale = 0;
};

bool isLong(const Kind& kind) {
  return kind.type == 0x23 || kind.type == 0x63;
}
bool isSized(const Kind& kind) {
  return kind.type >= 0xA5;
}

Kind readKind(Cursor& from) {
  Kind kind;
  kind.type = static_cast<std::uint8_t>(from.number(1));
  kind.size = from.number(isLong(kind) ? 4 : isSized(kind) ? 2 : 1);
  const bool binary = kind.type == 0xA5 || kind.type == 0xAD;
  if (isLong(kind) || (isSized(kind) && !binary)) from.bytes(5);
  if (kind.type == 0x6A || kind.type == 0x6C) {
    kind.precision = static_cast<int>(from.number(1));
    kind.scale = static_cast<int>(from.number(1));
  }
  return kind;
}

std::string kindName(const Kind& kind) {
  const std::string size = std::to_string(kind.size), bracketed = "(" + size + ")";
  switch (kind.type) {
    case 0x26:
      return "int" + size;
    case 0x68:
      return "bit";
    case 0x6D:
      return "float" + size;
    case 0x6E:
      return "money" + size;
    case 0x6F:
      return "datetime" + size;
    case 0x6A:
    case 0x6C:
      return std::string(kind.type == 0x6A ? "decimal" : "numeric") + "(" + std::to_string(kind.precision) +
             "," + std::to_string(kind.scale) + ")";
    case 0xA5:
      return "varbinary" + bracketed;
    case 0xAD:
      return "binary" + bracketed;
    case 0xA7:
      return "varchar" + bracketed;
    case 0xAF:
      return "char" + bracketed;
    case 0xE7:
      return "nvarchar" + bracketed;
    case 0xEF:
      return "nchar" + bracketed;
    case 0x23:
      return "text";
    case 0x63:
      return "ntext";
    default:
      throw std::runtime_error("an unknown type");
  }
}

std::string hexadecimal(std::string_view bytes) {
  std::string out = "0x";
  for (const char c : bytes) {
    out += "0123456789ABCDEF"[static_cast<unsigned char>(c) >> 4];
    out += "0123456789ABCDEF"[static_cast<unsigned char>(c) & 15];
  }
  return out;
}

std::string plain(std::string_view bytes) {
  std::string out = "'";
  for (const char c : bytes)
    out +=
        static_cast<unsigned char>(c) < 0x80 ? std::string(1, c) : "<" + hexadecimal({&c, 1}).substr(2) + ">";
  return out + "'";
}

std::string readCell(Cursor& from, const Kind& kind) {
  if (isLong(kind)) {
    if (from.number(1) == 0) return "NULL";
    from.bytes(24);
    const std::size_t size = from.number(4);
    return kind.type == 0x63 ? "'" + from.units(size / 2) + "'" : plain(from.bytes(size));
  }
  if (isSized(kind)) {
    const std::size_t size = from.number(2);
    if (size == 0xFFFF) return "NULL";
    if (kind.type == 0xA5 || kind.type == 0xAD) return hexadecimal(from.bytes(size));
    return kind.type >= 0xE7 ? "'" + from.units(size / 2) + "'" : plain(from.bytes(size));
  }
  const std::size_t size = from.number(1);
  if (size == 0) return "NULL";
  if (kind.type == 0x6A || kind.type == 0x6C) {
    const bool positive = from.number(1) != 0;
    return (positive ? "+" : "-") + hexadecimal(from.bytes(size - 1));
  }
  if (kind.type == 0x6D) {
    const double value = size == 4 ? std::bit_cast<float>(static_cast<std::uint32_t>(from.number(4)))
                                   : std::bit_cast<double>(from.number(8));
    return std::to_string(value);
  }
  if (kind.type == 0x6E && size == 8) {
    const std::uint64_t high = from.number(4);
    return std::to_string(static_cast<std::int64_t>(high << 32 | from.number(4)));
  }
  if (kind.type == 0x6F) {
    const auto days =
        size == 8 ? static_cast<std::int32_t>(from.number(4)) : static_cast<std::int32_t>(from.number(2));
    return std::to_string(days) + "d" + std::to_string(from.number(size / 2));
  }
  const std::uint64_t raw = from.number(size);
  if (size == 1) return std::to_string(raw);
  const int shift = static_cast<int>(64 - 8 * size);
  return std::to_string(static_cast<std::int64_t>(raw << shift) >> shift);
}

class Printer {
 public:
  Printer(std::string_view tokens, std::uint32_t version) : from_(tokens), new_(version >= version72) {}
  std::string all() {
    while (!from_.atEnd()) one();
    return out_;
  }

 private:
  void one() {
    const auto token = from_.number(1);
    switch (token) {
      case 0x81:
        return columns();
      case 0xD1:
      case 0xD2:
        return row(token == 0xD2);
      case 0xFD:
      case 0xFE:
      case 0xFF:
        return done(token);
      case 0xAA:
      case 0xAB:
        return message(token == 0xAA);
      case 0xE3:
        return environment();
      case 0x79:
        out_ += "status " + std::to_string(static_cast<std::int32_t>(from_.number(4))) + "\n";
        return;
      case 0xAC:
        return returned();
      case 0xAD:
        out_ += "login " + hexadecimal(from_.bytes(from_.number(2)).substr(1, 4)) + "\n";
        return;
      default:
        throw std::runtime_error("an unknown token " + std::to_string(token));
    }
  }
  void columns() {
    kinds_.resize(from_.number(2));
    out_ += "columns";
    for (Kind& kind : kinds_) {
      from_.bytes(new_ ? 4 : 2);
      const auto flags = from_.number(2);
      kind = readKind(from_);
      if (isLong(kind)) {
        if (new_) from_.bytes(1);
        from_.text(2);
      }
      out_ += " " + from_.text(1) + ":" + kindName(kind) + (flags & 0x10 ? "+identity" : "");
    }
    out_ += "\n";
  }
  void row(bool packed) {
    const auto bitmap = packed ? from_.bytes((kinds_.size() + 7) / 8) : std::string_view();
    out_ += packed ? "packed row" : "row";
    for (std::size_t i = 0; i < kinds_.size(); ++i) {
      const bool null = packed && (static_cast<unsigned char>(bitmap[i / 8]) >> (i % 8) & 1) != 0;
      out_ += " " + (null ? std::string("NULL") : readCell(from_, kinds_[i]));
    }
    out_ += "\n";
  }
  void done(std::uint64_t token) {
    const auto status = from_.number(2), command = from_.number(2), rows = from_.number(new_ ? 8 : 4);
    out_ += token == 0xFD ? "done" : token == 0xFE ? "doneproc" : "doneinproc";
    if (command == 0xC1) out_ += " select";
    if (status & 0x10) out_ += " " + std::to_string(rows);
    if (status & 0x01) out_ += " more";
    if (status & 0x02) out_ += " error";
    if (status & 0x04) out_ += " transaction";
    if (status & 0x20) out_ += " attention";
    out_ += "\n";
  }
  void message(bool error) {
    from_.bytes(2);
    const auto number = static_cast<std::int32_t>(from_.number(4));
    const auto state = from_.number(1), severity = from_.number(1);
    const std::string words = from_.text(2);
    from_.text(1);
    const std::string procedure = from_.text(1);
    const auto line = from_.number(new_ ? 4 : 2);
    out_ += std::string(error ? "error " : "info ") + std::to_string(number) + "/" +
            std::to_string(severity) + "/" + std::to_string(state) + " line " + std::to_string(line) +
            (procedure.empty() ? "" : " in " + procedure) + ": " + words + "\n";
  }
  void environment() {
    from_.bytes(2);
    const auto type = from_.number(1);
    out_ += "environment " + std::to_string(type) + ": ";
    if (type == 7 || type >= 8) {
      const auto now = from_.bytes(from_.number(1));
      const auto before = from_.bytes(from_.number(1));
      out_ += hexadecimal(now) + " <- " + hexadecimal(before) + "\n";
    } else {
      const std::string now = from_.text(1);
      out_ += "'" + now + "' <- '" + from_.text(1) + "'\n";
    }
  }
  void returned() {
    from_.bytes(2);
    const std::string name = from_.text(1);
    from_.bytes(new_ ? 7 : 5);
    const Kind kind = readKind(from_);
    out_ += "return " + name + " " + kindName(kind) + " " + readCell(from_, kind) + "\n";
  }

  Cursor from_;
  bool new_;
  std::vector<Kind> kinds_;
  std::string out_;
};

}  // namespace

std::string number(std::uint64_t value, std::size_t size) {
  std::string out;
  for (std::size_t i = 0; i < size; ++i) out += static_cast<char>(value >> (8 * i));
  return out;
}

std::string utf16(std::string_view ascii) {
  std::string out;
  for (const char c : ascii) out += {c, '\0'};
  return out;
}

std::string text(std::string_view ascii, std::size_t lengthSize) {
  return number(ascii.size(), lengthSize) + utf16(ascii);
}

std::string intParameter(const std::string& name, int value, bool output) {
  return text(name, 1) + number(output ? 1 : 0, 1) + "\x26\x04\x04" +
         number(static_cast<std::uint32_t>(value), 4);
}

std::string nullIntParameter(const std::string& name, bool output) {
  return text(name, 1) + number(output ? 1 : 0, 1) + std::string("\x26\x04\x00", 3);
}

std::string textParameter(const std::string& name, const std::string& value) {
  return text(name, 1) + std::string(1, '\0') + "\xE7" + number(8000, 2) + number(0, 5) +
         number(2 * value.size(), 2) + utf16(value);
}

std::string call(std::uint16_t procedure, const std::vector<std::string>& parameters) {
  std::string out = number(0xFFFF, 2) + number(procedure, 2) + number(0, 2);
  for (const auto& parameter : parameters) out += parameter;
  return out;
}

std::string namedCall(const std::string& name, const std::vector<std::string>& parameters) {
  std::string out = text(name, 2) + number(0, 2);
  for (const auto& parameter : parameters) out += parameter;
  return out;
}

std::string packet(std::uint8_t type, std::size_t length, const std::string& data) {
  return std::string{static_cast<char>(type),
                     '\1',
                     static_cast<char>(length >> 8),
                     static_cast<char>(length),
                     '\0',
                     '\0',
                     '\1',
                     '\0'} +
         data;
}

std::string packet(std::uint8_t type, const std::string& data) {
  return packet(type, data.size() + 8, data);
}

std::string preLogin(std::uint8_t encryption) {
  return std::string("\x00\x00\x0B\x00\x06\x01\x00\x11\x00\x01\xFF\x09\x00\x00\x00\x00\x00", 17) +
         static_cast<char>(encryption);
}

std::string login(std::uint32_t version, const std::string& user, const std::string& password,
                  const std::string& database) {
  constexpr std::size_t fixedPart = 94;
  const std::string texts[] = {"test", user, password, "prog", "server", "", "lib", "", database};
  std::string table, values;
  for (std::size_t i = 0; i < std::size(texts); ++i) {
    table += number(fixedPart + values.size(), 2) + number(texts[i].size(), 2);
    std::string encoded = utf16(texts[i]);
    if (i == 2)
      for (char& c : encoded) {
        const auto byte = static_cast<unsigned char>(c);
        c = static_cast<char>((byte << 4 | byte >> 4) ^ 0xA5);
      }
    values += encoded;
  }
  std::string out = number(version, 4) + number(4096, 4) + number(0, 4) + number(1, 4) + number(0, 4) +
                    std::string("\xE0\x03\x00\x00", 4) + number(0, 8) + table;
  out.resize(fixedPart - 4, '\0');
  return number(fixedPart + values.size(), 4) + out + values;
}

std::string headers() {
  return number(22, 4) + number(18, 4) + number(2, 2) + number(0, 8) + number(1, 4);
}

Client::Client(std::uint16_t port) : socket_(socket(AF_INET, SOCK_STREAM, 0)) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(port);
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  if (connect(socket_, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0)
    throw std::runtime_error("no connection");
  timeval patience{20, 0};
  setsockopt(socket_, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
}

Client::~Client() {
  hangUp();
}

void Client::hangUp() {
  if (socket_ >= 0) close(socket_);
  socket_ = -1;
}

void Client::sendRaw(const std::string& bytes) {
  std::size_t sent = 0;
  while (sent < bytes.size()) {
    const ssize_t now = ::send(socket_, bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL);
    if (now < 0) return;
    sent += static_cast<std::size_t>(now);
  }
}

void Client::send(std::uint8_t type, const std::string& data, std::uint8_t status) {
  constexpr std::size_t payload = 4088;
  std::size_t at = 0;
  do {
    const std::size_t size = std::min(payload, data.size() - at);
    const bool last = at + size == data.size();
    const std::size_t length = size + 8;
    std::string packet{static_cast<char>(type),
                       static_cast<char>((last ? 1 : 0) | (at == 0 ? status : 0)),
                       static_cast<char>(length >> 8),
                       static_cast<char>(length),
                       '\0',
                       '\0',
                       '\1',
                       '\0'};
    sendRaw(packet + data.substr(at, size));
    at += size;
  } while (at < data.size());
}

std::string Client::receive() {
  std::string message;
  const auto fill = [&](char* to, std::size_t size) {
    while (size > 0) {
      const ssize_t got = recv(socket_, to, size, 0);
      if (got <= 0) return false;
      to += got;
      size -= static_cast<std::size_t>(got);
    }
    return true;
  };
  for (;;) {
    unsigned char header[8];
    if (!fill(reinterpret_cast<char*>(header), sizeof header)) return {};
    const std::size_t size = static_cast<std::size_t>(header[2] << 8 | header[3]) - 8,
                      before = message.size();
    message.resize(before + size);
    if (!fill(message.data() + before, size)) return {};
    if (header[1] & 1) return message;
  }
}

bool Client::closed() {
  char byte;
  return recv(socket_, &byte, 1, 0) <= 0;
}

std::string Client::open(std::uint32_t version, const std::string& database) {
  return open(version, "sa", "gizli", database);
}

std::string Client::open(std::uint32_t version, const std::string& user, const std::string& password,
                         const std::string& database) {
  version_ = version;
  send(0x12, preLogin(2));
  receive();
  send(0x10, login(version, user, password, database));
  return printed();
}

std::string Client::withHeaders(const std::string& data) const {
  return version_ >= version72 ? headers() + data : data;
}

std::string Client::batch(const std::string& sql, std::uint8_t status) {
  send(1, withHeaders(utf16(sql)), status);
  return printed();
}

std::string Client::rpc(const std::string& calls) {
  send(3, withHeaders(calls));
  return printed();
}

std::string Client::transaction(std::uint16_t request, const std::string& rest) {
  send(14, withHeaders(number(request, 2) + rest));
  return printed();
}

std::string Client::print(const std::string& tokens) const {
  return Printer(tokens, version_).all();
}

}  // namespace tds::test
