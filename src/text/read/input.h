#pragma once
// Input units: the stack of source files being read, character by character.
//
// Unit 0 belongs to the terminal (or to standard input), `read` opens the next one. A unit has a
// buffer that holds the present line, or the present chunk of a long line: what is in it when an error
// comes is what the report shows, so the last 20 characters of a chunk stay when the next is read.
//
// Comment lines (`#` in column 0) and shell lines (`!` as first mark) end here; the lexer never sees
// them. A file of two-byte characters is recognised by its first bytes and must hold ASCII.

#include <cstdint>
#include <cstdio>

#include "store/dag.h"

namespace korel {

constexpr int inputUnitCount = 47;
constexpr int inputBufferSize = 82;

struct InputUnit {
  std::FILE* file = nullptr;
  char text[inputBufferSize] = {};  // the present line or chunk
  std::int32_t length = 0;          // characters in it
  std::int32_t position = -1;       // of the character last delivered; -1: none yet
  std::int32_t linesRead = 0;       // newlines
  std::int16_t unicodeMark = 0;     // 0, or the first byte of a two-byte file
  bool lineOpen = false;            // the end of the present line is still in the file
  bool chunkCut = false;            // a zero byte in the chunk hides what lies behind it
};

extern int r_unit0;  // number of the current unit: the depth of `read`
const InputUnit& currentUnit();
/// Number of the line that the buffer shows.
std::int32_t lineNumber(const InputUnit& unit);

/// Resets unit 0.
void initio();
/// Opens a source file as a new unit; 0 when that can't be done. Errors: "too many files simultaneously
/// open for reading", `"%s" is an empty file`, `"%s" is not a text file`.
int Ropen(const char* name);
/// Closes the top unit, if any but unit 0 is open.
void Rclose();
/// The same, and goes on with the outer unit's next character.
void closeinput();

/// One character of the top unit, or -1. Error: "non-ASCII character in Unicode file".
int Readch();
/// First character of `text` that isn't blank (a signed value of 33 or more, or the terminator).
const char* firstnonblank(const char* text);
/// Whether input is copied to the output: by the `quiet` and `echo` settings. The kernel has no terminal of
/// its own, for which some of them make an exception.
bool shouldecho();

/// The next character, or -1 at the end of the input. Error: "invalid characters in input".
int nextInputChar();
/// Delivers the last character once more, if it isn't the last of its line.
void pushBackInputChar();
/// Gives up what is left of the current unit's line, down to its end: an empty statement takes its place.
/// `atEnd`: nothing is left to be read.
void dropRestOfLine(bool atEnd);
/// Gives up what is left of the line of unit 0, as after a syntax error in it.
void dropTypedLine();

/// Where unit 0's lines come from, in place of `r_unit[0]`: fills at most `size` - 1 characters, a
/// newline included, and gives 0 at the end of the input. What it delivers is never echoed.
using LineSource = int (*)(char* buffer, int size);
void setTerminalSource(LineSource source);

}  // namespace korel
