#include "tds/login.h"

#include "tds/bytes.h"

namespace tds {

namespace {

constexpr std::size_t mostCharacters = 128, mostPassword = 128;

Version agreed(std::uint32_t wanted) {
  // 7.1 comes in two forms. The rest of the number tells a revision within its line.
  const std::uint32_t line = wanted >> 24;
  switch (line) {
    case 0x71:
      return Version::V71;
    case 0x72:
      return Version::V72;
    case 0x73:
      return wanted >= static_cast<std::uint32_t>(Version::V73B) ? Version::V73B : Version::V73A;
    default:
      if (line > 0x73) return Version::V74;
      throw ProtocolError("a version of the protocol before 7.1");
  }
}

struct Field {
  std::size_t offset, length;
};

std::string_view raw(std::string_view data, const Field& field, std::size_t most) {
  if (field.length > most) throw ProtocolError("a text of the login that is too long");
  if (field.length == 0) return {};
  ByteReader reader(data);
  reader.seek(field.offset);
  return reader.bytes(2 * field.length);
}

// Each byte has its halves swapped and is then turned over with 0xA5.
std::string plainPassword(std::string_view scrambled) {
  std::string units(scrambled);
  for (char& c : units) {
    const auto turned = static_cast<unsigned char>(static_cast<unsigned char>(c) ^ 0xA5);
    c = static_cast<char>(turned << 4 | turned >> 4);
  }
  return fromUtf16(units);
}

}  // namespace

Login readLogin(std::string_view data, bool strict) {
  ByteReader reader(data);
  if (reader.u32() > data.size()) throw ProtocolError("a login that tells more than it holds");
  Login login;
  const std::uint32_t wanted = reader.u32();
  const bool eight = strict && wanted == strictVersion;
  login.version = eight ? Version::V74 : agreed(wanted);
  login.acknowledged = eight ? strictVersion : static_cast<std::uint32_t>(login.version);
  login.packetSize = reader.u32();
  reader.u32();  // version of the client's program
  login.process = reader.u32();
  reader.u32();  // number of a connection that this one belongs to
  reader.u8();
  const std::uint8_t flags2 = reader.u8(), typeFlags = reader.u8();
  reader.u8();
  constexpr std::uint8_t integratedFlag = 0x80, readOnlyFlag = 0x20;
  login.integrated = (flags2 & integratedFlag) != 0;
  login.readOnly = (typeFlags & readOnlyFlag) != 0;
  reader.u32();  // time zone
  reader.u32();  // locale

  const auto field = [&] {
    const std::size_t offset = reader.u16();
    return Field{offset, reader.u16()};
  };
  const auto text = [&] { return fromUtf16(raw(data, field(), mostCharacters)); };
  login.host = text();
  login.user = text();
  login.password = plainPassword(raw(data, field(), mostPassword));
  login.program = text();
  login.server = text();
  field();  // extensions: none is known
  login.library = text();
  login.language = text();
  login.database = text();
  return login;
}

}  // namespace tds
