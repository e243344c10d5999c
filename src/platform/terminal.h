// The terminal behind standard input and error.
#pragma once

namespace platform {

bool inputIsTerminal();
bool errorIsTerminal();

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
