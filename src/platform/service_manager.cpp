#include "platform/service_manager.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <initializer_list>
#include <vector>

#ifdef _WIN32
#include <windows.h>
#else
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
extern char** environ;
#endif

namespace platform {

namespace {

std::string lower(std::string_view text) {
  std::string result(text);
  std::transform(result.begin(), result.end(), result.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return result;
}

std::string ownName() {
  std::array<char, 256> name{};
#ifdef _WIN32
  DWORD size = name.size();
  if (!GetComputerNameA(name.data(), &size)) return {};
#else
  if (::gethostname(name.data(), name.size() - 1) != 0) return {};
#endif
  return name.data();
}

#ifndef _WIN32

struct Outcome {
  int code = -1;  // -1: the program could not be run
  std::string text;
};

// Runs systemctl without a shell and takes what it writes to either stream.
Outcome systemctl(const std::vector<std::string>& words) {
  Outcome outcome;
  int ends[2];
  if (::pipe2(ends, O_CLOEXEC) != 0) {
    outcome.text = std::strerror(errno);
    return outcome;
  }
  posix_spawn_file_actions_t files;
  posix_spawn_file_actions_init(&files);
  posix_spawn_file_actions_adddup2(&files, ends[1], STDOUT_FILENO);
  posix_spawn_file_actions_adddup2(&files, ends[1], STDERR_FILENO);
  std::vector<std::string> texts{"systemctl"};
  texts.insert(texts.end(), words.begin(), words.end());
  std::vector<char*> arguments;
  for (std::string& text : texts) arguments.push_back(text.data());
  arguments.push_back(nullptr);
  pid_t child = 0;
  const int failed = ::posix_spawnp(&child, "systemctl", &files, nullptr, arguments.data(), environ);
  posix_spawn_file_actions_destroy(&files);
  ::close(ends[1]);
  if (failed == 0) {
    std::array<char, 512> buffer{};
    for (ssize_t got; (got = ::read(ends[0], buffer.data(), buffer.size())) > 0;)
      outcome.text.append(buffer.data(), static_cast<std::size_t>(got));
    int status = 0;
    while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    outcome.code = WIFEXITED(status) ? WEXITSTATUS(status) : 1;
  } else {
    outcome.text = std::string("systemctl: ") + std::strerror(failed);
  }
  ::close(ends[0]);
  while (!outcome.text.empty() && outcome.text.back() == '\n') outcome.text.pop_back();
  return outcome;
}

#endif

}  // namespace

bool isThisMachine(std::string_view host) {
  const std::string name = lower(host);
  static constexpr std::array<std::string_view, 6> own = {".",         "(local)", "localhost",
                                                          "127.0.0.1", "::1",     ""};
  return std::find(own.begin(), own.end(), name) != own.end() || name == lower(ownName());
}

#ifdef _WIN32

std::string sqlServerService(std::string_view instance) {
  return instance.empty() ? "MSSQLSERVER" : "MSSQL$" + std::string(instance);
}

namespace {

class Handle {
 public:
  explicit Handle(SC_HANDLE handle) : handle_(handle) {}
  ~Handle() {
    if (handle_) CloseServiceHandle(handle_);
  }
  Handle(const Handle&) = delete;
  Handle& operator=(const Handle&) = delete;
  operator SC_HANDLE() const { return handle_; }

 private:
  SC_HANDLE handle_;
};

std::string lastError() {
  return "Windows " + std::to_string(GetLastError());
}

}  // namespace

ServiceState serviceState(const std::string& service) {
  const Handle manager(OpenSCManagerA(nullptr, nullptr, SC_MANAGER_CONNECT));
  const Handle handle(manager ? OpenServiceA(manager, service.c_str(), SERVICE_QUERY_STATUS) : nullptr);
  SERVICE_STATUS status{};
  if (!handle || !QueryServiceStatus(handle, &status)) return ServiceState::Unknown;
  if (status.dwCurrentState == SERVICE_RUNNING) return ServiceState::Running;
  return status.dwCurrentState == SERVICE_STOPPED ? ServiceState::Stopped : ServiceState::Changing;
}

std::string requestService(const std::string& service, bool start) {
  const Handle manager(OpenSCManagerA(nullptr, nullptr, SC_MANAGER_CONNECT));
  const Handle handle(manager ? OpenServiceA(manager, service.c_str(), SERVICE_START | SERVICE_STOP)
                              : nullptr);
  if (!handle) return lastError();
  SERVICE_STATUS status{};
  const BOOL done =
      start ? StartServiceA(handle, 0, nullptr) : ControlService(handle, SERVICE_CONTROL_STOP, &status);
  return done ? std::string() : lastError();
}

#else

std::string sqlServerService(std::string_view) {
  return "mssql-server";
}

ServiceState serviceState(const std::string& service) {
  const std::string text =
      systemctl({"show", "--property=LoadState", "--property=ActiveState", service}).text;
  if (text.find("LoadState=loaded") == std::string::npos) return ServiceState::Unknown;
  if (text.find("ActiveState=active") != std::string::npos) return ServiceState::Running;
  const bool down = text.find("ActiveState=inactive") != std::string::npos ||
                    text.find("ActiveState=failed") != std::string::npos;
  return down ? ServiceState::Stopped : ServiceState::Changing;
}

std::string requestService(const std::string& service, bool start) {
  const Outcome outcome = systemctl({start ? "start" : "stop", "--no-block", service});
  if (outcome.code == 0) return {};
  return outcome.text.empty() ? "systemctl " + std::to_string(outcome.code) : outcome.text;
}

#endif

#ifdef _WIN32
std::string userManager(std::initializer_list<std::string>) {
  return "Bu sistemde kullanıcının zamanlayıcıları yok.";
}
#else
std::string userManager(std::initializer_list<std::string> words) {
  std::vector<std::string> all{"--user"};
  all.insert(all.end(), words);
  const Outcome outcome = systemctl(all);
  if (outcome.code == 0) return {};
  return outcome.text.empty() ? "systemctl: " + std::to_string(outcome.code) : outcome.text;
}
#endif

}  // namespace platform
