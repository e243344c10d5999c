#include "tds/prelogin.h"

#include <array>

#include "tds/bytes.h"
#include "tds/tokens.h"

namespace tds {

namespace {

constexpr std::uint8_t version = 0, encryption = 1, instance = 2, thread = 3, mars = 4, end = 0xFF;

std::size_t bigEndian(ByteReader& from) {
  const std::size_t high = from.u8();
  return high << 8 | from.u8();
}

}  // namespace

PreLogin readPreLogin(std::string_view data) {
  PreLogin found;
  ByteReader options(data);
  for (std::uint8_t token = options.u8(); token != end; token = options.u8()) {
    const std::size_t offset = bigEndian(options), length = bigEndian(options);
    ByteReader value(data);
    value.seek(offset);
    const std::string_view bytes = value.bytes(length);
    if (token != encryption) continue;
    if (length != 1 || static_cast<unsigned char>(bytes[0]) > 4) throw ProtocolError("an unknown encryption");
    found.encryption = static_cast<Encryption>(bytes[0]);
  }
  return found;
}

std::string writePreLogin(Encryption wanted) {
  const std::string productVersion{static_cast<char>(productMajor),
                                   static_cast<char>(productMinor),
                                   static_cast<char>(productBuild >> 8),
                                   static_cast<char>(productBuild & 0xFF),
                                   '\0',
                                   '\0'};
  const std::array<std::pair<std::uint8_t, std::string>, 5> options = {
      {{version, productVersion},
       {encryption, std::string(1, static_cast<char>(wanted))},
       {instance, std::string(1, '\0')},
       {thread, {}},
       {mars, std::string(1, '\0')}}};
  constexpr std::size_t optionSize = 5;
  std::size_t offset = options.size() * optionSize + 1;
  std::string head, values;
  for (const auto& [token, value] : options) {
    head += static_cast<char>(token);
    for (const std::size_t number : {offset, value.size()}) {
      head += static_cast<char>(number >> 8);
      head += static_cast<char>(number & 0xFF);
    }
    values += value;
    offset += value.size();
  }
  return head + static_cast<char>(end) + values;
}

}  // namespace tds
