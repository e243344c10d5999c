#include "session/yerel_ortam.h"

#include "platform/machine.h"
#include "platform/registry.h"
#include "platform/service_manager.h"

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

namespace {

// HOST, HOST\INSTANCE or HOST,PORT: the service's name, empty when the server is not on this machine.
std::string serviceOf(std::string_view server) {
  const auto end = server.find_first_of("\\,");
  if (!platform::isThisMachine(server.substr(0, end))) return {};
  const bool named = end != std::string_view::npos && server[end] == '\\';
  return platform::sqlServerService(named ? server.substr(end + 1) : std::string_view());
}

}  // namespace

Platform::Service YerelPlatform::service(std::string_view server) {
  const std::string name = serviceOf(server);
  if (name.empty()) return Service::Elsewhere;
  switch (platform::serviceState(name)) {
    case platform::ServiceState::Running:
      return Service::Running;
    case platform::ServiceState::Stopped:
      return Service::Stopped;
    case platform::ServiceState::Changing:
      return Service::Changing;
    case platform::ServiceState::Unknown:
      break;
  }
  return Service::Elsewhere;
}

std::string YerelPlatform::serviceRequest(std::string_view server, bool start) {
  return platform::requestService(serviceOf(server), start);
}

void YerelPlatform::restart() {
  platform::restartMachine();
}

}  // namespace session
