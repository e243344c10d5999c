// LOGIN7: a fixed part of numbers, then the places and lengths of the texts, then these.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tds {

// Versions of the protocol as LOGIN7 and LOGINACK name them, the highest last.
enum class Version : std::uint32_t {
  V71 = 0x71000001,
  V72 = 0x72090002,
  V73A = 0x730A0003,
  V73B = 0x730B0003,
  V74 = 0x74000004,
};

// TDS 8 is 7.4 inside of TLS; a client tells it by this number and wants to hear it.
inline constexpr std::uint32_t strictVersion = 0x08000000;

struct Login {
  Version version = Version::V74;
  std::uint32_t acknowledged = 0;  // what LOGINACK says
  std::uint32_t packetSize = 0;
  bool integrated = false;  // a ticket instead of a password
  bool readOnly = false;
  std::uint32_t process = 0;
  std::string host, user, password, program, server, library, language, database;
};

// Throws ProtocolError, also for versions before 7.1 and for TDS 8 unless `strict`.
Login readLogin(std::string_view data, bool strict = false);

}  // namespace tds
