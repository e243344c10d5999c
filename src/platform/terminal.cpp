#include "platform/terminal.h"

#include <cstdlib>
#include <string_view>

#ifdef _WIN32
#include <io.h>
#include <windows.h>
// After it.
#include <shellapi.h>
#else
#include <termios.h>
#include <unistd.h>

#include <csignal>
#include <iterator>
#endif

namespace platform {

#ifdef _WIN32

namespace {

bool setEcho(bool on) {
  const HANDLE input = GetStdHandle(STD_INPUT_HANDLE);
  DWORD mode = 0;
  if (!GetConsoleMode(input, &mode)) return false;
  return SetConsoleMode(input, on ? mode | ENABLE_ECHO_INPUT : mode & ~DWORD{ENABLE_ECHO_INPUT}) != 0;
}

}  // namespace

std::vector<std::string> arguments(int, char**) {
  SetConsoleOutputCP(CP_UTF8);
  SetConsoleCP(CP_UTF8);
  int count = 0;
  wchar_t** const given = CommandLineToArgvW(GetCommandLineW(), &count);
  std::vector<std::string> texts;
  for (int i = 1; given && i < count; ++i) {
    const int bytes = WideCharToMultiByte(CP_UTF8, 0, given[i], -1, nullptr, 0, nullptr, nullptr);
    std::string text(static_cast<std::size_t>(bytes > 0 ? bytes : 1), '\0');
    WideCharToMultiByte(CP_UTF8, 0, given[i], -1, text.data(), bytes, nullptr, nullptr);
    text.pop_back();  // the end that it counts as well
    texts.push_back(std::move(text));
  }
  LocalFree(given);
  return texts;
}

bool inputIsTerminal() {
  return _isatty(0) != 0;
}
bool outputIsTerminal() {
  return _isatty(1) != 0;
}
bool errorIsTerminal() {
  return _isatty(2) != 0;
}

#else

namespace {

// The terminal as it was before it was made silent. A handler may only read it.
termios loud{};
constexpr int endings[] = {SIGINT, SIGTERM, SIGHUP, SIGQUIT};
struct sigaction before[std::size(endings)];

// Gives the terminal its echo back and lets the signal do what it would have done.
void restoreAndEnd(int signal) {
  tcsetattr(STDIN_FILENO, TCSANOW, &loud);
  ::signal(signal, SIG_DFL);
  ::raise(signal);
}

void watchEndings(bool on) {
  struct sigaction restore {};
  restore.sa_handler = restoreAndEnd;
  for (std::size_t i = 0; i < std::size(endings); ++i) {
    if (on)
      sigaction(endings[i], &restore, &before[i]);
    else
      sigaction(endings[i], &before[i], nullptr);
  }
}

bool setEcho(bool on) {
  termios mode{};
  if (tcgetattr(STDIN_FILENO, &mode) != 0) return false;
  if (on)
    mode.c_lflag |= ECHO;
  else
    mode.c_lflag &= ~static_cast<tcflag_t>(ECHO);
  if (!on) {
    tcgetattr(STDIN_FILENO, &loud);
    watchEndings(true);
  }
  const bool changed = tcsetattr(STDIN_FILENO, TCSAFLUSH, &mode) == 0;
  if (on || !changed) watchEndings(false);
  return changed;
}

}  // namespace

std::vector<std::string> arguments(int argc, char** argv) {
  return {argv + 1, argv + argc};
}

bool inputIsTerminal() {
  return isatty(STDIN_FILENO) != 0;
}
bool outputIsTerminal() {
  return isatty(STDOUT_FILENO) != 0;
}
bool errorIsTerminal() {
  return isatty(STDERR_FILENO) != 0;
}

#endif

bool terminalDraws() {
  const char* name = std::getenv("TERM");
  return name == nullptr || std::string_view(name) != "dumb";
}

bool coloursWanted() {
  const char* no = std::getenv("NO_COLOR");
  return terminalDraws() && (no == nullptr || *no == '\0');
}

HiddenInput::HiddenInput() : changed_(inputIsTerminal() && setEcho(false)) {}
HiddenInput::~HiddenInput() {
  if (changed_) setEcho(true);
}

}  // namespace platform
