#include "other_process.h"

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdint>
#include <stdexcept>

#include "engine/session_fixture.h"
#include "istemci.h"

namespace scenarios {

namespace {

void put(int fd, const std::string& text) {
  const auto size = static_cast<std::uint32_t>(text.size());
  std::string message(reinterpret_cast<const char*>(&size), sizeof size);
  message += text;
  for (std::size_t done = 0; done < message.size();) {
    const ssize_t n = ::write(fd, message.data() + done, message.size() - done);
    if (n <= 0) throw std::runtime_error("the other process is gone");
    done += static_cast<std::size_t>(n);
  }
}

bool readWhole(int fd, char* data, std::size_t size) {
  for (std::size_t done = 0; done < size;) {
    const ssize_t n = ::read(fd, data + done, size - done);
    if (n <= 0) return false;
    done += static_cast<std::size_t>(n);
  }
  return true;
}

bool get(int fd, std::string& text) {
  std::uint32_t size = 0;
  if (!readWhole(fd, reinterpret_cast<char*>(&size), sizeof size)) return false;
  text.assign(size, '\0');
  return readWhole(fd, text.data(), size);
}

std::string runOne(engine::Server& server, Istemci& session, const std::string& batch) {
  engine::test::PrintingSink sink;
  try {
    if (batch == "stop")
      server.stop();
    else if (batch == "start")
      server.start();
    else
      session.execute(batch, sink);
  } catch (const engine::Error& error) {
    sink.text += "!" + std::to_string(error.number()) + '\n';
  }
  return sink.text;
}

}  // namespace

pid_t inChild(const std::function<void()>& work) {
  const pid_t child = ::fork();
  if (child != 0) return child;
  int code = 0;
  try {
    work();
  } catch (const std::exception& error) {
    code = 1;
    const std::string text = std::string("child: ") + error.what() + "\n";
    if (::write(STDERR_FILENO, text.data(), text.size()) < 0) code = 2;
  }
  ::_exit(code);
}

int waitChild(pid_t child) {
  int status = 0;
  ::waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

void killChild(pid_t child) {
  ::kill(child, SIGKILL);
  waitChild(child);
}

OtherProcess::OtherProcess(const std::filesystem::path& folder, const std::string& password,
                           const std::string& database) {
  int to[2], from[2];
  if (::pipe(to) != 0 || ::pipe(from) != 0) throw std::runtime_error("no pipe");
  child_ = inChild([&] {
    ::close(to[1]);
    ::close(from[0]);
    auto server = engine::Server::open(folder);
    Istemci session(server, "sa", password, database);
    put(from[1], "ready");
    for (std::string batch; get(to[0], batch);) put(from[1], runOne(*server, session, batch));
  });
  ::close(to[0]);
  ::close(from[1]);
  toChild_ = to[1];
  fromChild_ = from[0];
  receive();
}

OtherProcess::~OtherProcess() {
  ::close(toChild_);
  ::close(fromChild_);
  if (child_ > 0) waitChild(child_);
}

void OtherProcess::send(const std::string& batch) {
  put(toChild_, batch);
}

std::string OtherProcess::receive() {
  std::string text;
  if (!get(fromChild_, text)) throw std::runtime_error("the other process is gone");
  return text;
}

std::string OtherProcess::run(const std::string& batch) {
  send(batch);
  return receive();
}

void OtherProcess::kill() {
  killChild(child_);
  child_ = 0;
}

}  // namespace scenarios
