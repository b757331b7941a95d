#include "text/read/input.h"

#include <algorithm>
#include <cstring>
#include <sys/stat.h>

#include "frame/errors.h"
#include "frame/output.h"
#include "session/interface.h"
#include "text/read/source.h"

namespace korel {

int r_unit0 = 0;

namespace {

constexpr int firstChunkRoom = 81;
constexpr int keptCharacters = 20;  // left context for the caret when a long line moves on
constexpr int laterChunkRoom = firstChunkRoom - keptCharacters;
constexpr int commentCharacters = 78;

LineSource terminalSource = nullptr;

/// Where a comment goes on: nowhere, on this line, or on the next one if the line ends at once.
enum class Comment { none, goesOn, afterBackslash } comment = Comment::none;

InputUnit units[inputUnitCount];
InputUnit& top() { return units[r_unit0]; }

// Look-ahead. -2 stands for none.
int nextch = -2;           // pushed back, delivered before anything else
int nextch2 = -2;          // follows the one just delivered; none: the buffer holds no more
int lastInputChar = '\n';  // last delivered

bool readsTerminal() { return r_unit0 == 0 && terminalSource != nullptr; }

/// Room that the prompt takes from a line. Bounded, so that a chunk always holds a character.
int promptLength() { return static_cast<int>(std::min<std::size_t>(std::strlen(defaultNerinVariables.prompt), 40)); }

int fileByte(const InputUnit& unit) { return unit.file == nullptr ? -1 : ::getc_unlocked(unit.file); }

/// Reads up to `size` - 1 characters of a line and terminates them; their number, 0 at the end.
int readCharacters(char* buffer, int size) {
  const InputUnit& unit = top();
  if (readsTerminal()) {
    int count = size < 2 ? 0 : terminalSource(buffer, size);
    buffer[count] = 0;
    return count;
  }
  int count = 0;
  while (count < size - 1) {
    int c = unit.unicodeMark == 0 ? fileByte(unit) : Readch();
    if (c == -1) break;
    buffer[count++] = static_cast<char>(c);
    if (c == '\n') break;
  }
  buffer[count] = 0;
  return count;
}

/// The end of the present line has been read.
void endLine(InputUnit& unit) {
  unit.lineOpen = false;
  ++unit.linesRead;
}

/// Reads a chunk into the unit's buffer from `position` on and counts its line. False at the end of
/// the file.
bool readChunk(InputUnit& unit, int position, int size) {
  char* chunk = unit.text + position;
  char first = *chunk;
  int count = readCharacters(chunk, size);
  if (count == 0) {
    *chunk = first;  // the last line stays to be shown
    return false;
  }
  int length = static_cast<int>(std::strlen(chunk));
  unit.chunkCut = length < count;
  unit.length = position + length;
  unit.lineOpen = true;
  if (chunk[count - 1] == '\n') endLine(unit);
  return true;
}

/// An unterminated last line gets its newline.
void storeNewline(InputUnit& unit, int position) {
  std::strcpy(unit.text + position, "\n");
  unit.length = position + 1;
  unit.chunkCut = false;
  endLine(unit);
}

/// A character of the present line that the buffer has no place for, or -1 at the end of the input.
int readBehindChunk(InputUnit& unit) {
  int c = Readch();
  if (c == '\n') endLine(unit);
  return c;
}

bool echoes() { return !readsTerminal() && shouldecho(); }

/// Runs the line behind the `!` at `mark`, with whatever of it is still to be read.
void runShellLine(InputUnit& unit, const char* mark) {
  char command[1024];
  int length = 0;
  for (const char* c = mark + 1; *c != 0 && *c != '\n'; ++c) command[length++] = *c;
  while (unit.lineOpen) {
    int c = readBehindChunk(unit);
    if (c == -1) break;
    const bool fits = length < static_cast<int>(sizeof command) - 1;
    if (unit.lineOpen && fits) command[length++] = static_cast<char>(c);
  }
  command[length] = 0;
  callsys(command);
  Msendprint("!\n");
}

/// The chunk in the buffer is a comment, or goes on with one: decides how it ends, and echoes it.
void passComment(InputUnit& unit) {
  char* line = unit.text;
  std::int32_t& length = unit.length;
  while (unit.lineOpen && length < commentCharacters) {
    int c = readBehindChunk(unit);
    if (c == -1) break;
    line[length++] = static_cast<char>(c);
  }
  line[length] = 0;
  bool ended = length > 0 && line[length - 1] == '\n';
  if (unit.lineOpen || !ended) {
    bool backslash = length > 0 && line[length - 1] == '\\';
    comment = !unit.lineOpen ? Comment::none : backslash ? Comment::afterBackslash : Comment::goesOn;
    line[length++] = '\n';
    line[length] = 0;
  } else if (length > 1 && line[length - 2] == '\\') {
    comment = Comment::goesOn;
  } else if (length == 1 && comment == Comment::afterBackslash) {
    comment = Comment::goesOn;
  } else {
    comment = Comment::none;
  }
  nextch2 = -2;
  if (length > 1 && echoes()) Printf2(line[0] == '#' ? "%s" : "#%s", line);
}

/// Reads on until the buffer holds a line for the lexer. False at the end of the input.
bool readLine(InputUnit& unit) {
  for (;;) {
    if (!readChunk(unit, 0, firstChunkRoom - promptLength())) {
      if (comment == Comment::none && (lastInputChar == '\n' || lastInputChar == -1)) return false;
      comment = Comment::none;
      storeNewline(unit, 0);
    }
    if (comment != Comment::none || unit.text[0] == '#') {
      passComment(unit);
      continue;
    }
    const char* mark = firstnonblank(unit.text);
    if (*mark == '!') {
      runShellLine(unit, mark);
      continue;
    }
    if (echoes()) Printf2("%s%s", defaultNerinVariables.prompt, unit.text);
    unit.position = -1;
    return true;
  }
}

/// The line is longer than its chunk: the next one follows the last characters of this one.
void readOn(InputUnit& unit) {
  int start = unit.position + 1;
  if (start >= keptCharacters) {
    std::memmove(unit.text, unit.text + start - keptCharacters, keptCharacters);
    unit.position = keptCharacters - 1;
    start = keptCharacters;
  }
  if (!readChunk(unit, start, laterChunkRoom - promptLength())) storeNewline(unit, start);
  else if (echoes()) Printf2("%s", unit.text + start);
}

int characterAt(const InputUnit& unit, int position) {
  return position < unit.length ? static_cast<unsigned char>(unit.text[position]) : -2;
}

int fetchInputChar() {
  InputUnit& unit = top();
  if (nextch2 == -2 && !readLine(unit)) return -1;
  ++unit.position;
  nextch2 = characterAt(unit, unit.position + 1);
  bool valid = unit.position >= 0 && unit.position < unit.length;
  if (nextch2 == -2 && valid && unit.text[unit.position] != '\n') {
    valid = !unit.chunkCut;
    if (valid) {
      readOn(unit);
      nextch2 = characterAt(unit, unit.position + 1);
    }
  }
  if (!valid) {
    closeinput();
    userror("invalid characters in input");
  }
  return static_cast<unsigned char>(unit.text[unit.position]);
}

bool isDirectory(std::FILE* file) {
  struct stat status;
  return ::fstat(::fileno(file), &status) == 0 && S_ISDIR(status.st_mode);
}

/// How the first bytes say that the file is to be read.
enum class FirstBytes { text, empty, notText };

FirstBytes examineFirstBytes(std::FILE* file, std::int16_t& mark) {
  int first = std::getc(file);
  if (first == EOF) return FirstBytes::empty;
  if (first == 0xff || first == 0xfe) {
    mark = static_cast<std::int16_t>(first);
    return std::getc(file) == (first ^ 1) ? FirstBytes::text : FirstBytes::notText;
  }
  if (!((first >= 8 && first <= 13) || (first >= 32 && first <= 126))) return FirstBytes::notText;
  std::ungetc(first, file);
  return FirstBytes::text;
}

}  // namespace

const InputUnit& currentUnit() { return top(); }

std::int32_t lineNumber(const InputUnit& unit) { return unit.linesRead + (unit.lineOpen ? 1 : 0); }

void initio() {
  r_unit0 = 0;
  top().unicodeMark = 0;
  top().file = nullptr;
}

int Ropen(const char* name) {
  if (r_unit0 >= inputUnitCount - 1) userror("too many files simultaneously open for reading");
  std::FILE* file = std::fopen(name, "rt");
  if (file == nullptr) return 0;
  if (isDirectory(file)) {
    std::fclose(file);
    return 0;
  }
  std::int16_t mark = 0;
  FirstBytes kind = examineFirstBytes(file, mark);
  if (kind != FirstBytes::text) {
    std::fclose(file);
    _userror2(kind == FirstBytes::empty ? "\"%s\" is an empty file" : "\"%s\" is not a text file", name);
  }
  ++r_unit0;
  top() = InputUnit();
  top().file = file;
  top().unicodeMark = mark;
  nextch = nextch2 = -2;
  lastInputChar = '\n';
  comment = Comment::none;
  return 1;
}

void Rclose() {
  if (r_unit0 <= 0) return;
  std::fclose(top().file);
  top().file = nullptr;
  --r_unit0;
}

void closeinput() {
  Rclose();
  comment = Comment::none;
  nextch = -2;
  nextch2 = characterAt(top(), top().position + 1);
}

int Readch() {
  const InputUnit& unit = top();
  if (readsTerminal()) {
    char one[2];
    return terminalSource(one, 2) == 0 || one[0] == 0 ? -1 : static_cast<unsigned char>(one[0]);
  }
  if (unit.unicodeMark == 0) return fileByte(unit);
  int first = fileByte(unit);
  int second = first == -1 ? -1 : fileByte(unit);
  if (second == -1) return -1;
  bool lowFirst = unit.unicodeMark == 0xff;
  if ((lowFirst ? second : first) != 0) userror("non-ASCII character in Unicode file");
  return lowFirst ? first : second;
}

const char* firstnonblank(const char* text) {
  while (*text != 0 && static_cast<signed char>(*text) < 33) ++text;
  return text;
}

bool shouldecho() {
  if (defaultNerinVariables.quiet) return false;
  switch (defaultNerinVariables.echo) {
    case 0: return false;
    case 1: return r_unit0 == 0;
    case 3: return r_unit0 > 0;
    default: return true;
  }
}

int nextInputChar() {
  int fetched = fetchInputChar();
  lastInputChar = nextch == -2 ? fetched : nextch;
  nextch = nextch2;
  return lastInputChar;
}

void pushBackInputChar() {
  if (nextch2 == -2) return;
  nextch = lastInputChar;
  --top().position;
}

void dropRestOfLine(bool atEnd) {
  InputUnit& unit = top();
  while (!atEnd && unit.lineOpen && readChunk(unit, 0, inputBufferSize - 1)) continue;
  std::strcpy(unit.text, ";\n");
  unit.length = 2;
  unit.position = -1;
  unit.lineOpen = unit.chunkCut = false;
  nextch2 = ';';
  if (!atEnd) nextch = ';';
}

void dropTypedLine() {
  if (r_unit0 == 0 && top().length > 0 && top().position >= 0) dropRestOfLine(false);
}

void setTerminalSource(LineSource source) { terminalSource = source; }

}  // namespace korel
