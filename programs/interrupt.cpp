#include <cerrno>
#include <csignal>
#include <poll.h>
#include <unistd.h>

#include "debug/debugger.h"
#include "frame/interrupts.h"
#include "interrupt.h"
#include "line_editor.h"
#include "session/driver.h"
#include "terminal.h"

namespace korel {

namespace {
volatile std::sig_atomic_t pending = 0;
volatile std::sig_atomic_t ended = 0;  // asked to end, by SIGTERM

void mark(int signal) {
  // Asked twice, since the program waits for something else than a line.
  if (signal == SIGTERM && ended != 0) _exit(0);
  (signal == SIGTERM ? ended : pending) = 1;
  // A slow statement is followed by few others: the next one asks.
  pollInterruptSoon();
}
void stopProgram(int) { enterDebuggerSoon(); }
}  // namespace

void catchInterrupts() {
  struct sigaction action = {};
  action.sa_handler = mark;
  sigemptyset(&action.sa_mask);
  action.sa_flags = 0;  // no restart: whoever waits for input has to learn of it
  sigaction(SIGINT, &action, nullptr);
  sigaction(SIGTERM, &action, nullptr);
  action.sa_handler = stopProgram;
  action.sa_flags = SA_RESTART;
  sigaction(SIGUSR1, &action, nullptr);
}

bool waitForInput(int descriptor) {
  sigset_t interrupts, outside;
  sigemptyset(&interrupts);
  sigaddset(&interrupts, SIGINT);
  sigaddset(&interrupts, SIGTERM);
  sigprocmask(SIG_BLOCK, &interrupts, &outside);
  bool interrupted = false;
  pollfd input = {descriptor, POLLIN, 0};
  while (!(interrupted = takeInterrupt()))
    // The signals are let in for the time of the wait alone.
    if (ppoll(&input, 1, nullptr, &outside) >= 0 || errno != EINTR) break;
  sigprocmask(SIG_SETMASK, &outside, nullptr);
  return !interrupted;
}

bool takeInterrupt() {
  if (ended != 0) {
    endEditing();
    closeStatements();
    Exit(0);
  }
  bool came = pending != 0;
  pending = 0;
  return came;
}

}  // namespace korel
