#include "platform/interrupt.h"

#include <csignal>

namespace platform {

namespace {

constexpr int wishes[] = {SIGINT, SIGTERM};
volatile std::sig_atomic_t noted = 0;
using Handler = void (*)(int);
Handler before[2];

void note(int signal) {
  noted = 1;
  std::signal(signal, SIG_DFL);
}

}  // namespace

Interrupt::Interrupt() {
  noted = 0;
  for (int i = 0; i < 2; ++i) {
    before[i] = std::signal(wishes[i], note);
    if (before[i] == SIG_IGN) std::signal(wishes[i], SIG_IGN);  // whoever started us wants it so
  }
}

Interrupt::~Interrupt() {
  for (int i = 0; i < 2; ++i)
    if (before[i] != SIG_ERR) std::signal(wishes[i], before[i]);
}

bool Interrupt::wished() {
  return noted != 0;
}

}  // namespace platform
