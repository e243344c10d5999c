// The system's own manager of services: systemd on Linux, the service control manager on Windows.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>

namespace platform {

enum class ServiceState : std::uint8_t { Unknown, Stopped, Changing, Running };

// Unknown: there is no such service, or no manager to ask.
ServiceState serviceState(const std::string& service);
// Asks the manager to start or to stop; returns at once. Empty on success, else what the manager said.
std::string requestService(const std::string& service, bool start);
// Asks the manager of this user's own services. Empty on success, else what it said.
std::string userManager(std::initializer_list<std::string> words);
// The service of a SQL Server on this machine; `instance` empty for the default one.
std::string sqlServerService(std::string_view instance);
// Whether the name or address of a server means this machine: ".", "(local)", "localhost", its own name.
bool isThisMachine(std::string_view host);

}  // namespace platform
