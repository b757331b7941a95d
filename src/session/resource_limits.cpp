#include "session/resource_limits.h"

#include <csignal>
#include <cstdlib>
#include <sys/resource.h>
#include <unistd.h>

#include "eval/simplify/simplify.h"
#include "external/faults.h"
#include "frame/interrupts.h"
#include "numbers/float/float.h"
#include "numbers/integer/integer.h"
#include "session/driver.h"
#include "store/constants.h"

namespace korel {

std::int64_t korelLimitCPU = 0, korelLimitData = 0, korelLimitStack = 0;

namespace {

struct LimitRow {
  __rlimit_resource resource;
  int signal;  // that the system sends, or 0
  std::int64_t* kept;
};
constexpr LimitRow limitRows[] = {
    // resource      signal   kept
    {RLIMIT_CPU, SIGXCPU, &korelLimitCPU},
    {RLIMIT_DATA, 0, &korelLimitData},
    {RLIMIT_STACK, SIGSEGV, &korelLimitStack},
    {RLIMIT_CORE, 0, nullptr},
};

/// The handler runs on a stack of its own: when it is called for, the ordinary one may be full.
void installHandler(int signal) {
  static char handlerStack[65536];
  stack_t stack{};
  stack.ss_sp = handlerStack;
  stack.ss_size = sizeof handlerStack;
  sigaltstack(&stack, nullptr);
  struct sigaction action {};
  action.sa_handler = LimitSignalHandler;
  action.sa_flags = SA_ONSTACK;
  sigaction(signal, &action, nullptr);
  forgetFaultHandlers();
}

/// Writes a literal text from signal context.
template <std::size_t n>
void writeText(const char (&text)[n]) {
  if (write(STDOUT_FILENO, text, n - 1) < 0) return;
}

}  // namespace

DAG cpuSeconds() {
  double seconds = cptime();
  if (seconds == 0.0) return cons0;
  return simpl(newFLOAT(NewInteger(static_cast<std::int64_t>(1000 * seconds)), Newint(-3)));
}

bool setProcessLimit(ProcessLimit limit, std::int64_t value) {
  const LimitRow& row = limitRows[static_cast<int>(limit)];
  auto soft = static_cast<rlim_t>(value);
  rlimit both{soft, soft};
  // The system kills at the hard limit of processor time: the signal comes a little before, at the soft one.
  rlimit present;
  if (limit == ProcessLimit::cpu && getrlimit(row.resource, &present) == 0)
    both.rlim_max = present.rlim_max == RLIM_INFINITY || present.rlim_max > soft ? soft + 1 : present.rlim_max;
  bool accepted = setrlimit(row.resource, &both) == 0;
  if (row.kept != nullptr) *row.kept = value;
  if (row.signal != 0) installHandler(row.signal);
  return accepted;
}

void LimitSignalHandler(int signal) {
  if (signal == SIGXCPU) writeText("Execution stopped by CPU time exceeded.\n");
  if (signal == SIGSEGV) writeText("Execution stopped by Stack limit reached.\n");
  std::abort();
}

}  // namespace korel
