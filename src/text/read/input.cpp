#include "text/read/input.h"

#include <sys/stat.h>

#include <algorithm>
#include <cstring>

#include "frame/errors.h"
#include "session/interface.h"
#include "frame/output.h"
#include "text/read/source.h"

namespace korel {

int r_unit0 = 0;
std::FILE* r_unit[inputUnitCount] = {};
char ibuff[inputUnitCount][inputBufferSize] = {};
std::int32_t ibuffl[inputUnitCount] = {};
std::int32_t icharno[inputUnitCount] = {-1};
std::int32_t yyline[inputUnitCount] = {};
std::int16_t unicodeMark[inputUnitCount] = {};

int nextch = -2, nextch2 = -2;
int lastInputChar = '\n';
bool stopReading = false;

namespace {

constexpr int firstChunkRoom = 81;
constexpr int keptCharacters = 20;  // left context for the caret when a long line moves on
constexpr int laterChunkRoom = firstChunkRoom - keptCharacters;
constexpr int commentCharacters = 78;

LineSource terminalSource = nullptr;

/// Where a comment goes on: nowhere, on this line, or on the next one if the line ends at once.
enum class Comment { none, goesOn, afterBackslash } comment = Comment::none;

/// A zero byte cut the chunk of the unit: what lies behind it is lost.
bool chunkCut[inputUnitCount] = {};

bool readsTerminal(int unit) { return unit == 0 && terminalSource != nullptr; }

/// Room that the prompt takes from a line. Bounded, so that a chunk always holds a character.
int promptLength() {
  return static_cast<int>(std::min<std::size_t>(std::strlen(defaultNerinVariables.prompt), 40));
}

int fileByte(int unit) { return r_unit[unit] == nullptr ? -1 : ::getc_unlocked(r_unit[unit]); }

/// Reads up to `size` - 1 characters of a line and terminates them; their number, 0 at the end.
int readCharacters(int unit, char* buffer, int size) {
  if (readsTerminal(unit)) {
    int count = size < 2 ? 0 : terminalSource(buffer, size);
    buffer[count] = 0;
    return count;
  }
  int count = 0;
  while (count < size - 1) {
    int c = unicodeMark[unit] == 0 ? fileByte(unit) : Readch();
    if (c == -1) break;
    buffer[count++] = static_cast<char>(c);
    if (c == '\n') break;
  }
  buffer[count] = 0;
  return count;
}

/// Reads a chunk into the unit's buffer from `position` on and counts its line. False at the end of
/// the file.
bool readChunk(int unit, int position, int size) {
  char* chunk = ibuff[unit] + position;
  char first = *chunk;
  int count = readCharacters(unit, chunk, size);
  if (count == 0) {
    *chunk = first;  // the last line stays to be shown
    return false;
  }
  int length = static_cast<int>(std::strlen(chunk));
  chunkCut[unit] = length < count;
  ibuffl[unit] = position + length;
  if (chunk[count - 1] == '\n') ++yyline[unit];
  return true;
}

/// An unterminated last line gets its newline.
void storeNewline(int unit, int position) {
  std::strcpy(ibuff[unit] + position, "\n");
  ibuffl[unit] = position + 1;
  chunkCut[unit] = false;
  ++yyline[unit];
}

bool endsInNewline(int unit) { return ibuffl[unit] > 0 && ibuff[unit][ibuffl[unit] - 1] == '\n'; }

bool echoes(int unit) { return !readsTerminal(unit) && shouldecho() != 0; }

/// Runs the line behind the `!` at `mark`, with whatever of it is still to be read.
void runShellLine(int unit, const char* mark) {
  char command[1024];
  int length = 0;
  for (const char* c = mark + 1; *c != 0 && *c != '\n'; ++c) command[length++] = *c;
  if (!endsInNewline(unit)) {
    int c;
    while ((c = Readch()) != -1 && c != '\n')
      if (length < static_cast<int>(sizeof command) - 1) command[length++] = static_cast<char>(c);
    ++yyline[unit];
  }
  command[length] = 0;
  callsys(command);
  Msendprint("!\n");
}

/// The chunk in the buffer is a comment, or goes on with one: decides how it ends, and echoes it.
void passComment(int unit) {
  char* line = ibuff[unit];
  std::int32_t& length = ibuffl[unit];
  if (!endsInNewline(unit)) {
    while (length < commentCharacters) {
      int c = Readch();
      if (c == -1) break;
      line[length++] = static_cast<char>(c);
      if (c == '\n') {
        ++yyline[unit];
        break;
      }
    }
    line[length] = 0;
  }
  if (!endsInNewline(unit)) {
    comment = length > 0 && line[length - 1] == '\\' ? Comment::afterBackslash : Comment::goesOn;
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
  if (length > 1 && echoes(unit)) Printf2(line[0] == '#' ? "%s" : "#%s", line);
}

/// Reads on until the buffer holds a line for the lexer. False at the end of the input.
bool readLine(int unit) {
  for (;;) {
    if (!readChunk(unit, 0, firstChunkRoom - promptLength())) {
      if (comment == Comment::none && (lastInputChar == '\n' || lastInputChar == -1)) return false;
      comment = Comment::none;
      storeNewline(unit, 0);
    }
    if (comment != Comment::none || ibuff[unit][0] == '#') {
      passComment(unit);
      continue;
    }
    const char* mark = firstnonblank(ibuff[unit]);
    if (*mark == '!') {
      runShellLine(unit, mark);
      continue;
    }
    if (echoes(unit)) Printf2("%s%s", defaultNerinVariables.prompt, ibuff[unit]);
    icharno[unit] = -1;
    return true;
  }
}

/// The line is longer than its chunk: the next one follows the last characters of this one.
void readOn(int unit) {
  int start = icharno[unit] + 1;
  if (start >= keptCharacters) {
    std::memmove(ibuff[unit], ibuff[unit] + start - keptCharacters, keptCharacters);
    icharno[unit] = keptCharacters - 1;
    start = keptCharacters;
  }
  if (!readChunk(unit, start, laterChunkRoom - promptLength()))
    storeNewline(unit, start);
  else if (echoes(unit))
    Printf2("%s", ibuff[unit] + start);
}

int characterAt(int unit, int position) {
  return position < ibuffl[unit] ? static_cast<unsigned char>(ibuff[unit][position]) : -2;
}

int fetchInputChar() {
  int unit = r_unit0;
  if (nextch2 == -2 && !readLine(unit)) return -1;
  std::int32_t& position = icharno[unit];
  ++position;
  nextch2 = characterAt(unit, position + 1);
  bool valid = position >= 0 && position < ibuffl[unit];
  if (nextch2 == -2 && valid && ibuff[unit][position] != '\n') {
    valid = !chunkCut[unit];
    if (valid) {
      readOn(unit);
      nextch2 = characterAt(unit, position + 1);
    }
  }
  if (!valid) {
    closeinput();
    userror("invalid characters in input");
  }
  return static_cast<unsigned char>(ibuff[unit][position]);
}

/// A unit with nothing read yet.
void startUnit(int unit) {
  ibuff[unit][0] = 0;
  ibuffl[unit] = 0;
  icharno[unit] = -1;
  yyline[unit] = 0;
  unicodeMark[unit] = 0;
  chunkCut[unit] = false;
  nextch = nextch2 = -2;
  lastInputChar = '\n';
  comment = Comment::none;
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

void initio() {
  unicodeMark[0] = 0;
  r_unit[0] = nullptr;
  r_unit0 = 0;
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
    _userror2(kind == FirstBytes::empty ? "\"%s\" is an empty file" : "\"%s\" is not a text file",
              name);
  }
  ++r_unit0;
  startUnit(r_unit0);
  r_unit[r_unit0] = file;
  unicodeMark[r_unit0] = mark;
  return 1;
}

void Rclose() {
  if (r_unit0 <= 0) return;
  std::fclose(r_unit[r_unit0]);
  r_unit[r_unit0] = nullptr;
  --r_unit0;
}

void closeinput() {
  Rclose();
  comment = Comment::none;
  nextch = -2;
  nextch2 = characterAt(r_unit0, icharno[r_unit0] + 1);
}

int Readch() {
  int unit = r_unit0;
  if (readsTerminal(unit)) {
    char one[2];
    return terminalSource(one, 2) == 0 || one[0] == 0 ? -1 : static_cast<unsigned char>(one[0]);
  }
  if (unicodeMark[unit] == 0) return fileByte(unit);
  int first = fileByte(unit);
  int second = first == -1 ? -1 : fileByte(unit);
  if (second == -1) return -1;
  bool lowFirst = unicodeMark[unit] == 0xff;
  if ((lowFirst ? second : first) != 0) userror("non-ASCII character in Unicode file");
  return lowFirst ? first : second;
}

char* igets(char* buffer, int size) {
  return readCharacters(r_unit0, buffer, size) == 0 ? nullptr : buffer;
}

const char* firstnonblank(const char* text) {
  while (*text != 0 && static_cast<signed char>(*text) < 33) ++text;
  return text;
}

int Reading_tty() { return 0; }
int Writing_tty() { return 0; }
void iprintprompt() {}
void iflush() {}

int shouldecho() {
  if (defaultNerinVariables.quiet) return 0;
  bool atTerminal = Reading_tty() && Writing_tty();
  switch (defaultNerinVariables.echo) {
    case 0:
      return 0;
    case 1:
      return r_unit0 == 0 && !atTerminal;
    case 2:
      return !atTerminal;
    case 3:
      return r_unit0 > 0;
    default:
      return 1;
  }
}

int nextInputChar() {
  int fetched = fetchInputChar();
  lastInputChar = nextch == -2 ? fetched : nextch;
  nextch = nextch2;
  return lastInputChar;
}

void setTerminalSource(LineSource source) { terminalSource = source; }

void CloseReadOnError(int level) {
  if (r_unit0 <= 0) return;
  if (defaultNerinVariables.errorbreak < level || SpecialError == stackOverflow) stopReading = true;
  if (level == 1) FillInLastErrorAndException("syntax error while reading file");
}

}  // namespace korel
