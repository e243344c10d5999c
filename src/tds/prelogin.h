// PRELOGIN, the first message of both sides:
//
//   message = option* 0xFF value*
//   option  = token 1, offset 2, length 2 (both big-endian; from the message's beginning)
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tds {

enum class Encryption : std::uint8_t { Off = 0, On = 1, NotSupported = 2, Required = 3, Strict = 4 };

struct PreLogin {
  Encryption encryption = Encryption::NotSupported;
};

// Throws ProtocolError.
PreLogin readPreLogin(std::string_view data);
std::string writePreLogin(Encryption encryption);

}  // namespace tds
