// Another process on a data folder: it runs batches that come through a pipe, and can be killed.
#pragma once

#include <sys/types.h>

#include <filesystem>
#include <functional>
#include <string>

namespace scenarios {

// Forks and runs `work` in the child, which ends with it. Fork only while no server is open here: its
// threads would be missing in the child.
pid_t inChild(const std::function<void()>& work);

// SIGKILL, and waits for the end.
void killChild(pid_t child);
// The exit code; 128 + signal when it was killed.
int waitChild(pid_t child);

class OtherProcess {
 public:
  // Opens the folder as sa in the child, in `database`.
  OtherProcess(const std::filesystem::path& folder, const std::string& password, const std::string& database);
  ~OtherProcess();
  OtherProcess(const OtherProcess&) = delete;
  OtherProcess& operator=(const OtherProcess&) = delete;

  // What the batch prints (see PrintingSink); "stop" and "start" alone mean the service.
  std::string run(const std::string& batch);
  // In two halves, so that both processes work at the same time.
  void send(const std::string& batch);
  std::string receive();
  void kill();

 private:
  pid_t child_ = 0;
  int toChild_ = -1, fromChild_ = -1;
};

}  // namespace scenarios
