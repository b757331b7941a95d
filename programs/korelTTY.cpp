// korelTTY: the kernel in one process with a terminal.

#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "frame/driver.h"
#include "frame/getopt.h"
#include "frame/interface.h"
#include "frame/statement_reader.h"
#include "interrupt.h"
#include "render.h"
#include "store/constants.h"
#include "terminal.h"
#include "text/input.h"
#include "text/source.h"

namespace korel {
namespace {

constexpr int cannotRead = 2;  // exit status for a file operand that can't be read

int isInterrupted(void*) { return takeInterrupt() ? 1 : 0; }

// Where the program stands decides its library: `lib` beside `bin` in a build tree, `lib/korel/lib` once
// installed. The environment variable goes before.
void chooseLibrary() {
  if (std::getenv("KOREL") != nullptr) return;
  char path[PATH_MAX];
  ssize_t n = readlink("/proc/self/exe", path, sizeof path - 32);
  if (n <= 0) return;
  path[n] = 0;
  for (int levels = 0; levels < 2; ++levels)
    if (char* slash = std::strrchr(path, '/')) *slash = 0;
  std::size_t root = std::strlen(path);
  std::strcpy(path + root, "/lib/korel/lib");
  bool installed = access(path, F_OK) == 0;
  path[root + (installed ? std::strlen("/lib/korel") : 0)] = 0;
  setenv("KOREL", path, 0);
}

void printHelp() {
  std::puts("Usage: korelTTY [switches] [file]\n");
  std::puts("Statements are read from the file, otherwise from standard input.\n");
  std::fputs(switchTable(), stdout);
  std::puts("  --help        print this text\n  --version     print the version");
}

// The long switches, which the kernel does not know; the status to end with, or -1.
int longSwitch(int argc, char** argv) {
  for (int i = 1; i < argc && argv[i][0] == '-'; ++i) {
    if (std::strcmp(argv[i], "--help") == 0) {
      printHelp();
      return 0;
    }
    if (std::strcmp(argv[i], "--version") == 0) {
      std::puts("korelTTY " KOREL_VERSION);
      return 0;
    }
    if (std::strcmp(argv[i], "--") == 0) break;
  }
  return -1;
}

bool isEndOfInput(DAG statement) { return isObject(statement) && hasTag(statement, CONTROL); }

int runStatements() {
  int exitCode = 0;
  EvaluateDAG(null, handleMessage, isInterrupted, 1, 0, nullptr);
  while (!kernelStopped(exitCode)) {
    DAG statement = ReadStatement(doparse, handleMessage, isInterrupted, nullptr);
    if (kernelStopped(exitCode) || isEndOfInput(statement)) break;
    // An interrupt that came while a line was typed does not concern the statement.
    if (isInteractive()) takeInterrupt();
    EvaluateDAG(statement, handleMessage, isInterrupted, defaultNerinVariables.display, 0, nullptr);
  }
  closeStatements();
  flushOutput();
  return exitCode;
}

int run(int argc, char** argv) {
  if (int status = longSwitch(argc, argv); status >= 0) return status;
  chooseLibrary();
  char name[] = "korelTTY";
  argv[0] = name;  // by this name the kernel prints the table of switches with the usage
  if (const char* message = InitializeKorel(argc, argv)) {
    std::fprintf(stderr, "%s\n", message);
    return 1;
  }
  const char* file = moptind < argc ? argv[moptind] : nullptr;
  if (moptind + 1 < argc) {
    std::fprintf(stderr, "korelTTY: one file at most, but got `%s' as well\n", argv[moptind + 1]);
    return cannotRead;
  }
  if (!openStatements(file)) {
    std::fprintf(stderr, "korelTTY: cannot read `%s': %s\n", file, std::strerror(errno));
    return cannotRead;
  }
  if (!isInteractive()) defaultNerinVariables.echo = 0;
  catchInterrupts();
  setTerminalSource(nextStatementLine);
  InstallDoParseHook(beginStatement);
  int status = runStatements();
  CleanUpBeforeExit();
  return status;
}

}  // namespace
}  // namespace korel

int main(int argc, char** argv) { return korel::run(argc, argv); }
