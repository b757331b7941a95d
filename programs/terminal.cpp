#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

#include "debug/debugger.h"
#include "frame/errors.h"
#include "frame/interrupts.h"
#include "help.h"
#include "interrupt.h"
#include "line_editor.h"
#include "render.h"
#include "session/interface.h"
#include "store/constants.h"
#include "store/names.h"
#include "terminal.h"
#include "text/read/input.h"

namespace korel {

namespace {

int source = STDIN_FILENO;
bool interactive = false;
bool seekable = false;

// What a file has delivered and nobody has used yet. A pipe is read byte by byte and needs none.
char block[16384];
std::size_t blockLength = 0, blockPosition = 0;

// What a program has read past of the line that its own statement stands in, while it asked for the next: the rest
// belongs to the statements. `lineOpen` tells that the kernel has been given a part of a line only.
std::string restOfLine;
std::size_t restPosition = 0;
bool lineOpen = false;

// The line typed last, and how much of it the kernel has.
const char* typed = nullptr;
std::size_t typedLength = 0, typedPosition = 0;
bool atStatementStart = true;

/// A running program waits for a line, which an interrupt is meant for. Otherwise nothing runs
/// while the source is read, and an interrupt comes too late.
bool programWaits = false;

[[noreturn]] void interruptProgram() {
  programWaits = false;
  jumpback();
  std::abort();  // it has raised an error
}

/// `read` that goes on after a signal.
ssize_t readSource(char* buffer, std::size_t size) {
  for (;;) {
    ssize_t got = read(source, buffer, size);
    if (got >= 0 || errno != EINTR) return got;
    if (takeInterrupt() && programWaits && !interruptsWait()) interruptProgram();
  }
}

int nextByte() {
  if (!seekable) {
    char byte;
    return readSource(&byte, 1) == 1 ? static_cast<unsigned char>(byte) : -1;
  }
  if (blockPosition == blockLength) {
    ssize_t got = readSource(block, sizeof block);
    blockPosition = 0;
    blockLength = got > 0 ? static_cast<std::size_t>(got) : 0;
    if (blockLength == 0) return -1;
  }
  return static_cast<unsigned char>(block[blockPosition++]);
}

int nextStatementByte() {
  if (restPosition < restOfLine.size()) return static_cast<unsigned char>(restOfLine[restPosition++]);
  return nextByte();
}

int readStatementLine(char* buffer, int size) {
  int count = 0;
  while (count < size - 1) {
    int c = nextStatementByte();
    if (c == -1) break;
    buffer[count++] = static_cast<char>(c);
    if (c == '\n') break;
  }
  buffer[count] = '\0';
  lineOpen = count > 0 && buffer[count - 1] != '\n';
  return count;
}

/// Puts the bytes up to the next newline, or the end, behind `text`.
void appendLine(std::string& text) {
  for (int c = nextByte(); c != -1; c = nextByte()) {
    text.push_back(static_cast<char>(c));
    if (c == '\n') return;
  }
}

/// The line behind the one that the running statement stands in.
DAG readLineOfPipe() {
  static std::string line;  // an interrupt leaves it as it is
  programWaits = true;
  if (lineOpen && restPosition == restOfLine.size()) {
    restOfLine.clear();
    restPosition = 0;
    appendLine(restOfLine);
  }
  line.clear();
  appendLine(line);
  programWaits = false;
  if (line.empty()) return null;
  std::erase(line, '\0');
  return strinstall(line);
}

/// Serves a help line; true when `line` was one. A statement that shows what is asked for takes its place.
bool servedHelp(const char*& line, std::size_t& length) {
  const char* mark = firstnonblank(line);
  if (*mark != '?') return false;
  const char* statement = showHelp(mark + 1);
  if (statement == nullptr) return true;
  line = statement;
  length = std::strlen(statement);
  return false;
}

/// Whether a typed line begins or continues a statement: blank lines, comments and shell commands
/// don't.
bool holdsStatement(const char* line) {
  const char* mark = firstnonblank(line);
  return *mark != '\0' && *mark != '#' && *mark != '!';
}

/// Asks for lines until there is one for the kernel; false at the end.
bool askForLine() {
  takeInterrupt();  // what ran is over
  for (;;) {
    typedLength = typedPosition = 0;
    finishOutputLine();
    switch (editLine(defaultNerinVariables.prompt, typed, typedLength)) {
      case LineStatus::end: typedLength = 0; return false;
      case LineStatus::interrupted:
        typedLength = 0;
        if (!atStatementStart) jumpback();  // out of the parser: the whole statement is dropped
        continue;
      case LineStatus::line: break;
    }
    if (!atStatementStart) return true;
    if (servedHelp(typed, typedLength)) continue;
    if (holdsStatement(typed)) atStatementStart = false;
    return true;
  }
}

int nextTypedLine(char* buffer, int size) {
  if (typedPosition == typedLength && !askForLine()) return 0;
  std::size_t count = typedLength - typedPosition;
  if (count > static_cast<std::size_t>(size - 1)) count = static_cast<std::size_t>(size - 1);
  std::memcpy(buffer, typed + typedPosition, count);
  buffer[count] = '\0';
  typedPosition += count;
  return static_cast<int>(count);
}

}  // namespace

bool openStatements(const char* path) {
  if (path != nullptr) {
    source = open(path, O_RDONLY | O_CLOEXEC);
    if (source < 0) return false;
    struct stat status;
    if (fstat(source, &status) == 0 && S_ISDIR(status.st_mode)) {
      errno = EISDIR;
      return false;
    }
  }
  interactive = path == nullptr && isatty(source) != 0;
  seekable = !interactive && lseek(source, 0, SEEK_CUR) >= 0;
  return true;
}

bool readsFile() { return source != STDIN_FILENO; }

int nextStatementLine(char* buffer, int size) {
  return interactive ? nextTypedLine(buffer, size) : readStatementLine(buffer, size);
}

void beginStatement() { atStatementStart = true; }

DAG readUserLine(const char* prompt) {
  if (!interactive && !readsFile()) return readLineOfPipe();
  const char* line;
  std::size_t length;
  if (isatty(STDIN_FILENO) == 0) prompt = "";
  for (;;) {
    switch (plainLine(prompt, line, length)) {
      case LineStatus::line: return strinstall(line);
      case LineStatus::interrupted:
        if (!interruptsWait()) interruptProgram();
        continue;  // in the debugger's dialogue the line alone is dropped
      case LineStatus::end: return null;
    }
  }
}

void closeStatements() {
  if (source == STDIN_FILENO && seekable && blockPosition < blockLength)
    lseek(source, static_cast<off_t>(blockPosition) - static_cast<off_t>(blockLength), SEEK_CUR);
}

}  // namespace korel
