#include "files/shell_commands.h"

#include <cerrno>
#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include "files/file_access.h"
#include "files/file_table.h"
#include "files/system_errors.h"
#include "frame/errors.h"
#include "frame/interrupts.h"
#include "frame/output.h"
#include "library/repository/directory_contents.h"
#include "session/driver.h"
#include "store/vocabulary.h"

namespace korel {

void refuseSystemCalls() {
  if (secureMode) userror("system calls are disabled");
}

int exitCodeOf(int status) { return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status); }

namespace {

using Clock = std::chrono::steady_clock;

struct Command {
  pid_t process;
  int output;
};

Command start(const char* command, bool alone) {
  int ends[2];
  if (::pipe2(ends, O_CLOEXEC) != 0) raiseSystemError();
  const pid_t process = ::fork();
  if (process < 0) {
    const int error = errno;
    ::close(ends[0]);
    ::close(ends[1]);
    raiseSystemError(error);
  }
  if (process == 0) {
    // In a group of its own, so that what it starts can be ended with it.
    if (alone) ::setpgid(0, 0);
    ::dup2(ends[1], STDOUT_FILENO);
    ::close(ends[0]);
    ::close(ends[1]);
    ::execl("/bin/sh", "sh", "-c", command, static_cast<char*>(nullptr));
    ::_exit(127);
  }
  if (alone) ::setpgid(process, process);
  ::close(ends[1]);
  return {process, ends[0]};
}

// Milliseconds until the deadline, for `poll`.
int millisecondsLeft(Clock::time_point deadline) {
  const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now()).count();
  constexpr std::int64_t longest = 1000000;
  return static_cast<int>(left < 0 ? 0 : left > longest ? longest : left + 1);
}

// Shows what the command prints, down to its end. False when the time has passed before.
bool copyOutput(const Command& command, bool limited, Clock::time_point deadline) {
  char text[4096];
  for (;;) {
    pollfd ready{command.output, POLLIN, 0};
    const int found = ::poll(&ready, 1, limited ? millisecondsLeft(deadline) : -1);
    if (found == 0 && Clock::now() >= deadline) return false;
    if (found <= 0) {
      if (found < 0 && errno != EINTR) return true;
      if (TestInterrupt()) {
        ::kill(command.process, SIGKILL);
        return true;
      }
      continue;
    }
    const ssize_t n = ::read(command.output, text, sizeof text - 1);
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) return true;
    text[n] = 0;
    Msendprint(text);
  }
}

}  // namespace

int ssystem(const char* command, std::int64_t timeout) {
  refuseSystemCalls();
  flushAllFiles();
  sendCollectedText();
  const bool limited = timeout > 0;
  const Command running = start(command, limited);
  const auto deadline = Clock::now() + std::chrono::seconds(timeout);
  if (!copyOutput(running, limited, deadline)) {
    ::kill(-running.process, SIGKILL);
    Msendprint("(Timeout)");
  }
  ::close(running.output);
  int status = 0;
  while (::waitpid(running.process, &status, 0) < 0 && errno == EINTR) continue;
  doubtDirectoryContents();  // what the command has done is seen
  if (TestInterrupt()) jumpback();
  return exitCodeOf(status);
}

DAG builtin::ssystem(const BuiltinCall& call) {
  const Word n = argumentCount(call);
  if (n < 1 || n > 2 || !isText(call.arguments[1])) wrongParameters(call);
  if (n == 2 && (!isImmediate(call.arguments[2]) || immediateValue(call.arguments[2]) < 0)) wrongParameters(call);
  return immediate(korel::ssystem(textOf(call.arguments[1]), n == 2 ? immediateValue(call.arguments[2]) : 0));
}

}  // namespace korel
