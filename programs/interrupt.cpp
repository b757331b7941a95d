#include "interrupt.h"

#include <csignal>

namespace korel {

namespace {
volatile std::sig_atomic_t pending = 0;
void mark(int) { pending = 1; }
}  // namespace

void catchInterrupts() {
  struct sigaction action = {};
  action.sa_handler = mark;
  sigemptyset(&action.sa_mask);
  action.sa_flags = 0;  // no restart: whoever waits for input has to learn of it
  sigaction(SIGINT, &action, nullptr);
}

bool takeInterrupt() {
  bool came = pending != 0;
  pending = 0;
  return came;
}

}  // namespace korel
