// Ctrl-C as a wish: while it is heard, the first one (or a request to end) is noted and the work ends where
// nothing is half done; the second ends the program.
#pragma once

namespace platform {

class Interrupt {
 public:
  Interrupt();
  ~Interrupt();
  Interrupt(const Interrupt&) = delete;
  Interrupt& operator=(const Interrupt&) = delete;

  static bool wished();
};

}  // namespace platform
