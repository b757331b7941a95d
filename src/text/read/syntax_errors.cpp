#include "text/read/syntax_errors.h"

#include <cstdio>

#include "frame/errors.h"
#include "frame/output.h"
#include "numbers/integer/integer.h"
#include "store/constants.h"
#include "store/names.h"
#include "text/read/input.h"
#include "text/read/source.h"

namespace korel {

namespace {

// ---- the last error

char recordedText[256];
int recordedPosition = 0;
bool recorded = false;
bool inputEnded = false;

// ---- showing an error in a file

// A line of a buffer, a newline and the end.
using LineText = char[inputBufferSize + 2];

/// The unit's line up to its newline as it can be shown; true when a character had to be replaced.
bool copyShownLine(const InputUnit& unit, LineText& line) {
  bool replaced = false;
  int length = 0;
  for (; length < unit.length && unit.text[length] != '\n'; ++length) {
    unsigned char c = static_cast<unsigned char>(unit.text[length]);
    bool shown = c == '\t' || (c >= 32 && c < 127);
    line[length] = shown ? static_cast<char>(c) : ' ';
    replaced = replaced || !shown;
  }
  line[length] = '\n';
  line[length + 1] = 0;
  return replaced;
}

/// Blanks up to the last character of the unexpected token, with the tabs of the line above, then the
/// caret. The lexer looks one character ahead, so that the token ends before the one last delivered.
void makeCaretLine(const InputUnit& unit, LineText& line) {
  int position = unit.position < 1 ? 0 : unit.position - 1;
  if (position > unit.length) position = unit.length;
  for (int i = 0; i < position; ++i) line[i] = unit.text[i] == '\t' ? '\t' : ' ';
  line[position] = '^';
  line[position + 1] = '\n';
  line[position + 2] = 0;
}

void reportInInput(int position, const char* message) {
  recordSyntaxError(position, message);
  const InputUnit& unit = currentUnit();
  char text[512];
  DAG shown;
  if (inputEnded) {
    std::snprintf(text, sizeof text, "on line %%1, %s", message);
    shown = strinstall(text);
  } else {
    std::snprintf(text, sizeof text, "on line %%1, syntax error, %s:", message);
    shown = naminstall(text);
  }
  sendStream(Stream::EXCEPT, {cons0, shown, Newint(lineNumber(unit))});
  LineText line;
  bool replaced = copyShownLine(unit, line);
  Msendprint(line);
  makeCaretLine(unit, line);
  Msendprint(line);
  if (replaced) KernelWarning(readerWarning, "unprintable characters in input");
  CloseReadOnError(stoppedBySyntaxError);
  dropRestOfLine(inputEnded);
}

}  // namespace

void reportSyntaxError(int position, const char* message) { reportInInput(position, message); }

void reportEndOfInput(int position) {
  inputEnded = true;
  reportInInput(position, "unexpected end of input");
}

RecordedSyntaxError recordedSyntaxError() { return {recorded ? recordedText : nullptr, recordedPosition}; }

void clearSyntaxError() {
  recorded = false;
  inputEnded = false;
}

void recordSyntaxError(int position, const char* text) {
  std::snprintf(recordedText, sizeof recordedText, "%s", text);
  recordedPosition = position;
  recorded = true;
}

}  // namespace korel
