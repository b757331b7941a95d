// The terminal program: the kernel in one process with a person, a pipe or a file; with `--kernel` in a process of
// its own.
//
// It reads the command line, then statement after statement until the input ends or one of them
// stops the kernel. What the kernel has to say comes back through the result handler (render.h);
// what is typed comes from the terminal (terminal.h).

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <sys/ioctl.h>
#include <unistd.h>

#include "interrupt.h"
#include "library_directory.h"
#include "remote_kernel.h"
#include "render.h"
#include "session/driver.h"
#include "session/getopt.h"
#include "session/interface.h"
#include "session/statement_reader.h"
#include "store/objects.h"
#include "terminal.h"
#include "text/read/input.h"
#include "text/read/source.h"

using namespace korel;

namespace {

constexpr int startFailed = 1;
constexpr int operandFailed = 2;
constexpr int interruptedRun = 130;  // as a shell reports a run that was ended by Ctrl-C

bool isRemote = false;          // the kernel has a process of its own
bool stopsAtInterrupt = false;  // a file's statements end with the one that was interrupted
bool wasInterrupted = false;

int interruptPending(void*) {
  bool came = takeInterrupt();
  wasInterrupted = wasInterrupted || came;
  return came ? 1 : 0;
}

/// `--help` and `--version` among the switches.
bool answersAtOnce(int argc, char** argv) {
  for (int i = 1; i < argc && std::strcmp(argv[i], "--") != 0; ++i) {
    if (std::strcmp(argv[i], "--version") == 0) {
      std::printf("korelTTY %s\n", KOREL_VERSION);
      return true;
    }
    if (std::strcmp(argv[i], "--help") == 0) {
      std::printf(
          "Usage: korelTTY [--kernel] [switches] [file]\n"
          "Runs the statements of the file, or those of standard input; with --kernel in a process of their own,\n"
          "whose death the session outlives.\n\n%s",
          switchTable());
      return true;
    }
  }
  return false;
}

/// Takes `--kernel` out of the switches; true when it was there.
bool takeKernelSwitch(int& argc, char** argv) {
  for (int i = 1; i < argc && std::strcmp(argv[i], "--") != 0; ++i) {
    if (std::strcmp(argv[i], "--kernel") != 0) continue;
    std::copy(argv + i + 1, argv + argc + 1, argv + i);
    --argc;
    return true;
  }
  return false;
}

/// Starts the kernel with the program's own library in front of the switches, where a `-b` among
/// them takes its place; the variable KOREL goes before it. Null, or a message.
const char* startKernel(int argc, char** argv, const char*& operand, int& operandCount) {
  // Lives as long as the program: the option reader and the operand refer to it.
  static char** arguments;
  arguments = static_cast<char**>(std::calloc(static_cast<std::size_t>(argc) + 3, sizeof *argv));
  if (arguments == nullptr) return "korel: out of memory";
  static char librarySwitch[] = "-b";
  int count = 0;
  arguments[count++] = argv[0];
  const char* library = std::getenv("KOREL") == nullptr ? programLibrary() : nullptr;
  if (library != nullptr) {
    arguments[count++] = librarySwitch;
    arguments[count++] = const_cast<char*>(library);
  }
  for (int i = 1; i < argc; ++i) arguments[count++] = argv[i];
  const char* message = InitializeKorel(count, arguments);
  operandCount = count - moptind;
  operand = operandCount > 0 ? arguments[moptind] : nullptr;
  return message;
}

/// Lines as wide as the window, less the place of a continuation mark.
void takeScreenSize() {
  winsize size;
  if (ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) != 0) return;
  if (size.ws_col > 10) defaultNerinVariables.screenwidth = size.ws_col - 1;
  if (size.ws_row > 0) defaultNerinVariables.screenheight = size.ws_row;
}

void evaluate(DAG statement, int showResults) {
  if (isRemote) evaluateRemotely(statement, showResults);
  else EvaluateDAG(statement, answerMessage, interruptPending, showResults, 0, nullptr);
}
bool isStopped(int& status) { return isRemote ? remoteKernelStopped(status) : kernelStopped(status); }

/// Runs statement after statement; the exit status.
int runSession() {
  int status = 0;
  while (!isStopped(status)) {
    wasInterrupted = false;
    DAG statement = ReadStatement(doparse, answerMessage, interruptPending, nullptr);
    bool ended = isObject(statement) && hasTag(statement, CONTROL);
    if (ended) statement = new1(STOP);  // the end of the input stops the kernel as `quit` does
    evaluate(statement, defaultNerinVariables.display);
    if (!wasInterrupted) continue;
    if (stopsAtInterrupt) return interruptedRun;
    takeInterrupt();  // asked for more than once
    // Whoever interrupts at a terminal doesn't want the rest of what was typed either.
    if (isatty(STDIN_FILENO)) dropTypedLine();
  }
  return status;
}

}  // namespace

int main(int argc, char** argv) {
  if (answersAtOnce(argc, argv)) return 0;
  isRemote = takeKernelSwitch(argc, argv);
  Args arguments, kernelArguments;
  if (isRemote) divideArguments(argc, argv, arguments, kernelArguments);
  else arguments = Args(argc, argv);
  const char* operand;
  int operandCount;
  if (const char* message = startKernel(arguments.count(), arguments.vector(), operand, operandCount)) {
    std::fprintf(stderr, "%s\n", message);
    return startFailed;
  }
  exportProgramTree();
  if (operandCount > 1) {
    std::fprintf(stderr, "korelTTY: there can be one file only\n");
    return operandFailed;
  }
  if (operand != nullptr && std::strcmp(operand, "-") == 0) operand = nullptr;
  if (!openStatements(operand)) {
    std::fprintf(stderr, "korelTTY: unable to read `%s`: %s\n", operand, std::strerror(errno));
    return operandFailed;
  }
  catchInterrupts();
  stopsAtInterrupt = readsFile();
  if (isatty(STDOUT_FILENO)) takeScreenSize();
  setTerminalSource(nextStatementLine);
  InstallDoParseHook(beginStatement);
  // The banner and the start files come before the first statement is read.
  if (const char* message = isRemote ? openRemoteKernel(kernelArguments, interruptPending) : nullptr) {
    std::fprintf(stderr, "%s\n", message);
    Exit(startFailed);
  }
  if (!isRemote) EvaluateDAG(DAG(), answerMessage, interruptPending, 1, 0, nullptr);
  int status = runSession();
  if (isRemote) closeRemoteKernel();
  closeStatements();
  Exit(status);
}
