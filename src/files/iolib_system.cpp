// Processes, directories and the rest of the system: operations 8, 15 to 19, 22 and 25 to 31 of `iolib`.

#include "files/iolib.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "eval/simplify/simplify.h"
#include "files/file_access.h"
#include "files/paths.h"
#include "files/shell_commands.h"
#include "files/system_errors.h"
#include "frame/errors.h"
#include "frame/interrupts.h"
#include "frame/output.h"
#include "library/archive/march.h"
#include "library/repository/directory_contents.h"
#include "numbers/float/float.h"
#include "numbers/integer/integer.h"
#include "numbers/integer/integer_functions.h"
#include "session/driver.h"
#include "store/append.h"
#include "store/names.h"
#include "store/objects.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

void requireNoOperands(const IolibCall& call) {
  if (call.count() > 0) userror("unexpected arguments");
}
DAG listOf(std::initializer_list<DAG> members) { return simpl(new2(LIST, newSequence(members))); }

}  // namespace

// ---- removing

DAG iolib::removeFiles(const IolibCall& call) {
  if (call.count() == 0) userror("file name or descriptor required");
  for (Word k = 1; k <= call.count(); ++k) {
    DAG x = call.operand(k);
    if (!isInteger(x) && !isText(x)) userror("file name or descriptor required");
    if (secureMode) userror("file I/O is disabled");
    DAG name = x;
    if (isInteger(x) || fileNamed(textOf(x)) != nullptr) {
      FileRecord& file = lookUpFile(call.arguments, call.place(k), FileUse::open);
      name = file.name;
      CloseFile(file);
    }
    if (::unlink(textOf(name)) != 0) raiseSystemError();
    doubtDirectoryContents();
  }
  return null;
}

// ---- pipes and processes

DAG iolib::makePipe(const IolibCall& call) {
  requireNoOperands(call);
  if (openFileCount + 2 > fileTableSize) userror("too many files already open");
  int ends[2];
  if (::pipe2(ends, O_CLOEXEC) != 0) raiseSystemError();
  DAG slots[2];
  for (int i = 0; i < 2; ++i) {
    char name[32];
    std::snprintf(name, sizeof name, "pipe:%d", ends[i]);
    slots[i] = immediate(slotOf(enterDescriptor(strinstall(name), ends[i], i == 0, FileKind::pipe)));
  }
  return listOf({slots[0], slots[1]});
}

DAG iolib::forkKernel(const IolibCall& call) {
  requireNoOperands(call);
  refuseSystemCalls();
  sendCollectedText();
  Msendflush();
  std::fflush(nullptr);
  const pid_t process = ::fork();
  if (process < 0) {
    if (errno == EAGAIN) userror("too many concurrent processes");
    raiseSystemError();
  }
  return NewInteger(process);
}

DAG iolib::execute(const IolibCall& call) {
  constexpr Word mostArguments = 1000;
  if (call.count() == 0 || call.count() > mostArguments || !isText(call.operand(1)))
    userror("command string and optional arguments expected");
  char* arguments[mostArguments + 1];
  for (Word k = 1; k <= call.count(); ++k) {
    DAG x = call.operand(k);
    if (!isText(x) && !isImmediate(x)) userror("arguments must be strings or small integers");
    DAG text = isText(x) ? x : KorelIntToStr(x);
    arguments[k - 1] = textOf(text);
  }
  arguments[call.count()] = nullptr;
  refuseSystemCalls();
  sendCollectedText();
  std::fflush(nullptr);
  ::execvp(arguments[0], arguments);
  notimpl("iolib:exec");
}

DAG iolib::waitForChild(const IolibCall& call) {
  requireNoOperands(call);
  for (;;) {
    int status = 0;
    const pid_t process = ::waitpid(-1, &status, 0);
    if (process >= 0) return listOf({NewInteger(process), immediate(exitCodeOf(status))});
    if (errno != EINTR) raiseSystemError();
    if (TestInterrupt()) jumpback();
  }
}

DAG iolib::selectReady(const IolibCall& call) {
  constexpr const char* expected = "timeout and at least one pipe descriptor expected";
  if (call.count() < 2 || !isNumeric(call.operand(1))) userror(expected);
  const double seconds = FloatValue(call.operand(1));
  pollfd wanted[fileTableSize];
  Word count = 0;
  for (Word k = 2; k <= call.count(); ++k) {
    DAG x = call.operand(k);
    const bool isNamed = isText(x) && fileNamed(textOf(x)) != nullptr;
    if (!isInteger(x) && !isNamed) userror("pipe descriptor required");
    FileRecord& file = lookUpFile(call.arguments, call.place(k), FileUse::open);
    const bool isPipe = file.kind == FileKind::pipe || file.kind == FileKind::process;
    if (!isPipe || count == fileTableSize) userror("pipe descriptor required");
    wanted[count++] = {file.descriptor, static_cast<short>(file.reads ? POLLIN : POLLOUT), 0};
  }
  constexpr double longest = 2000000;
  const double milliseconds = seconds < 0 ? -1 : 1000 * (seconds < longest ? seconds : longest);
  while (::poll(wanted, count, static_cast<int>(milliseconds)) < 0) {
    if (errno != EINTR) raiseSystemError();
    if (TestInterrupt()) jumpback();
  }
  DAG ready = new1(EXPSEQ);
  for (Word i = 0; i < count; ++i)
    if (wanted[i].revents != 0) ready = Append2(ready, call.operand(i + 2));
  return simpl(new2(LIST, ready));
}

DAG iolib::killProcesses(const IolibCall& call) {
  refuseSystemCalls();
  if (call.count() == 0) userror("positive integer expected for process ID");
  for (Word k = 1; k <= call.count(); ++k) {
    DAG x = call.operand(k);
    if (!isImmediate(x) || immediateValue(x) <= 0) userror("positive integer expected for process ID");
  }
  for (Word k = 1; k <= call.count(); ++k)
    if (::kill(immediateValue(call.operand(k)), SIGKILL) != 0) raiseSystemError();
  return null;
}

// ---- time, environment, directories

DAG iolib::systemTime(const IolibCall&) { return NewInteger(std::time(nullptr)); }

DAG iolib::environmentVariable(const IolibCall& call) {
  if (call.count() != 1 || !isText(call.operand(1))) userror("system environment variable name expected");
  const char* value = std::getenv(textOf(call.operand(1)));
  return value != nullptr ? strinstall(value) : null;
}

namespace {

// The one operand of an operation on directories.
const char* directoryOf(const IolibCall& call, const char* disabled) {
  if (secureMode) userror(disabled);
  if (call.count() != 1 || !isText(call.operand(1))) userror("string or name expected for directory");
  return textOf(call.operand(1));
}

}  // namespace

DAG iolib::currentDirectory(const IolibCall& call) {
  const char* wanted = call.count() > 0 ? directoryOf(call, "currentdir is disabled") : nullptr;
  if (secureMode) userror("currentdir is disabled");
  char before[longestPath + 1];
  if (::getcwd(before, sizeof before) == nullptr) userror("could not determine current directory");
  if (wanted != nullptr && ::chdir(wanted) != 0) raiseDirectoryError();
  doubtDirectoryContents();
  return strinstall(before);
}

DAG iolib::makeDirectory(const IolibCall& call) {
  if (::mkdir(directoryOf(call, "mkdir is disabled"), 0777) != 0) raiseDirectoryError();
  doubtDirectoryContents();
  return null;
}

DAG iolib::removeDirectory(const IolibCall& call) {
  if (::rmdir(directoryOf(call, "rmdir is disabled")) != 0) raiseDirectoryError();
  doubtDirectoryContents();
  return null;
}

DAG iolib::archiveTool(const IolibCall& call) {
  if (secureMode) userror("march is disabled");
  return March(copysub(call.arguments, 1, call.count()));
}

}  // namespace korel
