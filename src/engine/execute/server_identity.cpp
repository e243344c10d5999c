#include "engine/execute/server_identity.h"

#include <unistd.h>

namespace engine {

std::string serverName() {
  char name[256] = {};
  if (gethostname(name, sizeof name - 1) != 0) return "YEREL";
  std::string text(name);
  for (char& c : text)
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  return text;
}

}  // namespace engine
