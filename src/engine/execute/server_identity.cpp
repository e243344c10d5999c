#include "engine/execute/server_identity.h"

#include "engine/store/system_file.h"

namespace engine {

std::string serverName() {
  std::string text = system::hostName();
  if (text.empty()) return "YEREL";
  for (char& c : text)
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  return text;
}

}  // namespace engine
