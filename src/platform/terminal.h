// The terminal behind standard input and error.
#pragma once

#include <string>
#include <vector>

namespace platform {

// What the program was called with, without its own name, in UTF-8; makes the terminal take UTF-8 where it
// would not by itself.
std::vector<std::string> arguments(int argc, char** argv);

bool inputIsTerminal();
bool outputIsTerminal();
bool errorIsTerminal();
// Whether the terminal can move its cursor, and whether colours are wanted: NO_COLOR (not empty) says no, and
// a terminal that calls itself dumb can do neither.
bool terminalDraws();
bool coloursWanted();

// While it lives, what is typed is not shown. No effect without a terminal.
class HiddenInput {
 public:
  HiddenInput();
  ~HiddenInput();
  HiddenInput(const HiddenInput&) = delete;
  HiddenInput& operator=(const HiddenInput&) = delete;

 private:
  bool changed_ = false;
};

}  // namespace platform
