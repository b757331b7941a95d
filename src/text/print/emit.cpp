#include "text/print/emit.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <cstring>

namespace korel {

int printAtomic = 0;

namespace {

constexpr int noWidthLimit = 999999;

void sendToStandardOutput(void*, int c) { std::fputc(c, stdout); }
void reportOnStandardError(void*, const char* text) { std::fprintf(stderr, "Output Error: %s\n", text); }
void markContinuation(void*, int) { EmitContinuation(); }

Sink sink = sendToStandardOutput;
ErrorSink errorSink = reportOnStandardError;
LineBreakHook lineBreakHook = markContinuation;
void* closure = nullptr;
int width = 0;            // 0 or less: no limit
std::int64_t column = 0;  // characters on the present line

void endLine() {
  sink(closure, '\n');
  column = 0;
}

void breakInsideWord() {
  lineBreakHook(closure, -1);
  endLine();
}

}  // namespace

void InitializeOutput(Sink newSink, ErrorSink onError, LineBreakHook onLineBreak, int newWidth, void* newClosure) {
  sink = newSink != nullptr ? newSink : sendToStandardOutput;
  errorSink = onError != nullptr ? onError : reportOnStandardError;
  lineBreakHook = onLineBreak != nullptr ? onLineBreak : markContinuation;
  closure = newClosure;
  width = newWidth;
  column = 0;
}

void EmitChar(int c) {
  if (c == '\n') {
    endLine();
    return;
  }
  const bool begins = beginsCharacter(static_cast<char>(c));
  if (begins && width > 0 && column >= width) breakInsideWord();
  sink(closure, c);
  column += begins;
}

void EmitString(const char* text) {
  for (; *text != '\0'; ++text) EmitChar(static_cast<unsigned char>(*text));
}

void EmitInteger(std::int64_t n) {
  char digits[24];
  auto end = std::to_chars(digits, digits + sizeof digits, n).ptr;
  EmitWord(digits, end - digits);
}

void EmitSpace() {
  if (width > 0 && column >= width - 1) {
    endLine();
  } else {
    EmitChar(' ');
  }
}

void EmitContinuation() {
  sink(closure, '\\');
  ++column;
}

void EmitError(const char* text) { errorSink(closure, text); }

int CurrentEmitWidth() { return static_cast<int>(column); }

int MaximumEmitWidth() { return width > 0 ? width : noWidthLimit; }

std::int64_t characterCount(const char* text, std::size_t bytes) {
  return std::count_if(text, text + bytes, beginsCharacter);
}

void BreakBeforeWord(std::int64_t length) {
  if (width <= 0 || column == 0 || length > width || width - printAtomic >= column + length) return;
  if (printAtomic > 0) EmitContinuation();
  endLine();
}

void EmitToken(const char* text) {
  BreakBeforeWord(characterCount(text, std::strlen(text)));
  ++printAtomic;
  EmitString(text);
  --printAtomic;
}

void EmitWord(const char* text, std::int64_t length) {
  BreakBeforeWord(length);
  for (std::int64_t i = 0; i < length; ++i) EmitChar(static_cast<unsigned char>(text[i]));
}

void EmitEscape(int c) {
  // A line that ended behind the backslash would leave two backslashes in a row, which read back as
  // one character.
  if (width > 1 && column + 2 > width) breakInsideWord();
  EmitChar('\\');
  EmitChar(c);
}

}  // namespace korel
