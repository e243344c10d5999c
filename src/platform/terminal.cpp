#include "platform/terminal.h"

#ifdef _WIN32
#include <io.h>
#include <windows.h>
#else
#include <termios.h>
#include <unistd.h>
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

bool inputIsTerminal() {
  return _isatty(0) != 0;
}
bool errorIsTerminal() {
  return _isatty(2) != 0;
}

#else

namespace {

bool setEcho(bool on) {
  termios mode{};
  if (tcgetattr(STDIN_FILENO, &mode) != 0) return false;
  if (on)
    mode.c_lflag |= ECHO;
  else
    mode.c_lflag &= ~static_cast<tcflag_t>(ECHO);
  return tcsetattr(STDIN_FILENO, TCSAFLUSH, &mode) == 0;
}

}  // namespace

bool inputIsTerminal() {
  return isatty(STDIN_FILENO) != 0;
}
bool errorIsTerminal() {
  return isatty(STDERR_FILENO) != 0;
}

#endif

HiddenInput::HiddenInput() : changed_(inputIsTerminal() && setEcho(false)) {}
HiddenInput::~HiddenInput() {
  if (changed_) setEcho(true);
}

}  // namespace platform
