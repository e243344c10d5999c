// Packets, and the messages that they carry:
//
//   message = packet*                the last one with lastPacket in its status
//   packet  = type status length spid number window payload
//     type 1, status 1, length 2 (big-endian, with these 8 bytes), spid 2, number 1, window 1
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "tds/transport.h"

namespace tds {

enum class MessageType : std::uint8_t {
  SqlBatch = 1,
  Rpc = 3,
  Answer = 4,
  Attention = 6,
  BulkLoad = 7,
  Transaction = 14,
  Login = 16,
  Sspi = 17,
  PreLogin = 18,
};

inline constexpr std::size_t headerSize = 8;
inline constexpr std::size_t smallestPacket = 512, firstPacket = 4096, largestPacket = 32767;
inline constexpr std::uint8_t lastPacket = 0x01, ignoreMessage = 0x02, resetConnection = 0x08,
                              resetKeepingTransaction = 0x10;

struct Message {
  MessageType type = MessageType::SqlBatch;
  std::uint8_t status = 0;  // of the first packet, with ignoreMessage from the last
  std::string data;
  bool tooLong = false;  // the data is not kept
};

class PacketReader {
 public:
  explicit PacketReader(Transport& transport) : transport_(&transport) {}
  void setTransport(Transport& transport) { transport_ = &transport; }
  // The next whole message of at most `largest` bytes. Throws ProtocolError, LinkLost.
  Message next(std::size_t largest);
  // The same, but a message that is too long is read to its end and comes without its data.
  Message nextOrTooLong(std::size_t largest);

 private:
  void fill(char* to, std::size_t size);
  Message read(std::size_t largest, bool toItsEnd);

  Transport* transport_;
};

// Collects the tokens of an answer and sends them in packets as they fill up.
class PacketWriter {
 public:
  explicit PacketWriter(Transport& transport) : transport_(&transport) {}
  void setTransport(Transport& transport) { transport_ = &transport; }
  void setPacketSize(std::size_t size) { packetSize_ = size; }
  std::size_t packetSize() const { return packetSize_; }
  void setSpid(int spid) { spid_ = spid; }

  std::string& tokens() { return pending_; }  // append here
  void sendWhenFull() {
    if (pending_.size() >= flushSize) sendFull();
  }
  // The rest with the mark of the last packet. The next answer begins anew.
  void end(MessageType type = MessageType::Answer);
  void drop() { pending_.clear(); }

 private:
  static constexpr std::size_t flushSize = std::size_t{32} * 1024;
  void sendFull();
  void packet(std::string& to, MessageType type, std::string_view payload, bool last);

  Transport* transport_;
  std::size_t packetSize_ = firstPacket;
  int spid_ = 0;
  std::uint8_t number_ = 1;
  std::string pending_;
};

}  // namespace tds
