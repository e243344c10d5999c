#include "session/yerel_ortam.h"

#include "platform/machine.h"
#include "platform/registry.h"

namespace session {

db::DateTime YerelSaat::now() const {
  const platform::LocalTime t = platform::localTime();
  return {t.year, t.month, t.day, t.hour, t.minute, t.second, t.millisecond};
}

std::string YerelPlatform::registryRead(std::string_view root, std::string_view key, std::string_view value) {
  return platform::registryRead(root, key, value);
}

void YerelPlatform::registryWrite(std::string_view root, std::string_view key, std::string_view value,
                                  std::string_view text) {
  // A value that could not be kept reads as missing and is asked for again at the next start.
  static_cast<void>(platform::registryWrite(root, key, value, text));
}

bool YerelPlatform::registryKeyIsNew(std::string_view root, std::string_view key) {
  return !platform::registryHasKey(root, key);
}

void YerelPlatform::restart() {
  platform::restartMachine();
}

}  // namespace session
