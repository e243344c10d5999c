#include "tds/packet.h"

#include <algorithm>

#include "tds/bytes.h"

namespace tds {

void PacketReader::fill(char* to, std::size_t size) {
  while (size > 0) {
    const std::size_t got = transport_->read(to, size);
    to += got;
    size -= got;
  }
}

Message PacketReader::next(std::size_t largest) {
  return read(largest, false);
}

Message PacketReader::nextOrTooLong(std::size_t largest) {
  return read(largest, true);
}

Message PacketReader::read(std::size_t largest, bool toItsEnd) {
  Message message;
  for (bool first = true;; first = false) {
    unsigned char header[headerSize];
    fill(reinterpret_cast<char*>(header), headerSize);
    const auto type = static_cast<MessageType>(header[0]);
    const std::size_t length = static_cast<std::size_t>(header[2]) << 8 | header[3];
    if (length < headerSize || length > largestPacket) throw ProtocolError("a packet of no possible length");
    if (first) {
      message.type = type;
      message.status = header[1];
    } else if (type != message.type) {
      throw ProtocolError("a packet of another type within a message");
    }
    const std::size_t size = length - headerSize, before = message.data.size();
    if (message.tooLong || before + size > largest) {
      if (!toItsEnd) throw ProtocolError("a message that is too long");
      message.tooLong = true;
      message.data = std::string(size, '\0');
      fill(message.data.data(), size);
      message.data = {};
      if ((header[1] & lastPacket) != 0) return message;
      continue;
    }
    message.data.resize(before + size);
    fill(message.data.data() + before, size);
    if ((header[1] & lastPacket) == 0) continue;
    message.status |= header[1] & ignoreMessage;
    return message;
  }
}

void PacketWriter::packet(std::string& to, MessageType type, std::string_view payload, bool last) {
  const std::size_t length = payload.size() + headerSize;
  to += static_cast<char>(type);
  to += static_cast<char>(last ? lastPacket : 0);
  to += static_cast<char>(length >> 8);
  to += static_cast<char>(length & 0xFF);
  to += static_cast<char>(spid_ >> 8 & 0xFF);
  to += static_cast<char>(spid_ & 0xFF);
  to += static_cast<char>(number_++);
  to += '\0';
  to += payload;
}

void PacketWriter::sendFull() {
  const std::size_t payload = packetSize_ - headerSize;
  std::string out;
  out.reserve(pending_.size() + headerSize * (pending_.size() / payload + 1));
  std::string_view rest = pending_;
  for (; rest.size() > payload; rest.remove_prefix(payload))
    packet(out, MessageType::Answer, rest.substr(0, payload), false);
  transport_->write(out);
  pending_.erase(0, pending_.size() - rest.size());
}

void PacketWriter::end(MessageType type) {
  const std::size_t payload = packetSize_ - headerSize;
  std::string out;
  std::string_view rest = pending_;
  for (; rest.size() > payload; rest.remove_prefix(payload))
    packet(out, type, rest.substr(0, payload), false);
  packet(out, type, rest, true);
  transport_->write(out);
  number_ = 1;
  // What one large answer needed is not kept for an idle connection.
  pending_ = std::string();
}

}  // namespace tds
