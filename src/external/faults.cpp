#include "external/faults.h"

#include <csignal>
#include <cstddef>
#include <pthread.h>
#include <sys/mman.h>

namespace korel {

FaultLanding* faultLanding = nullptr;
bool faultsArePrepared = false;

namespace {

struct FaultRow {
  int signal;
  const char* message;
};
constexpr FaultRow faultRows[] = {
    // signal  message
    {SIGBUS, "Bus Error occurred in external routine"},
    {SIGSEGV, "Segmentation Violation occurred in external routine"},
    {SIGFPE, "Fatal Error occurred in external routine"},
    {SIGILL, "Fatal Error occurred in external routine"},
};
constexpr int faultCount = sizeof faultRows / sizeof faultRows[0];

struct sigaction handlersBefore[faultCount];
sigset_t maskBefore;

/// A fault of the kernel itself: as if this handler did not exist.
void passOn(int row, int signal, siginfo_t* info, void* context) {
  const struct sigaction& before = handlersBefore[row];
  if ((before.sa_flags & SA_SIGINFO) != 0) return before.sa_sigaction(signal, info, context);
  if (before.sa_handler != SIG_DFL && before.sa_handler != SIG_IGN) return before.sa_handler(signal);
  // The instruction runs again and meets the system's own treatment.
  sigaction(signal, &before, nullptr);
}

void sig_handler(int signal, siginfo_t* info, void* context) {
  int row = 0;
  while (faultRows[row].signal != signal) ++row;
  if (faultLanding == nullptr) return passOn(row, signal, info, context);
  // The jump leaves the handler, and its stack, for good. The signal is not blocked meanwhile (SA_NODEFER), so that the
  // next one is caught as well.
  faultLanding->message = faultRows[row].message;
  ::_longjmp(faultLanding->place, 1);
}

}  // namespace

namespace {

constexpr std::size_t handlerStackBytes = std::size_t{1} << 16;

void giveHandlersAStack() {
  static void* memory = mmap(nullptr, handlerStackBytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (memory == MAP_FAILED) return;
  stack_t stack{};
  stack.ss_sp = memory;
  stack.ss_size = handlerStackBytes;
  sigaltstack(&stack, nullptr);
}

}  // namespace

void installFaultHandlers() {
  faultsArePrepared = true;
  pthread_sigmask(SIG_BLOCK, nullptr, &maskBefore);
  giveHandlersAStack();
  for (int row = 0; row < faultCount; ++row) {
    struct sigaction action {};
    action.sa_sigaction = sig_handler;
    action.sa_flags = SA_SIGINFO | SA_NODEFER | SA_ONSTACK;
    sigemptyset(&action.sa_mask);
    struct sigaction before;
    sigaction(faultRows[row].signal, &action, &before);
    if (before.sa_sigaction != sig_handler) handlersBefore[row] = before;
  }
}

void forgetFaultHandlers() { faultsArePrepared = false; }

void restoreSignalMask() { pthread_sigmask(SIG_SETMASK, &maskBefore, nullptr); }

}  // namespace korel
