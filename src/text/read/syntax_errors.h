#pragma once
// The last syntax error, and how one in a file or at the terminal is shown.

namespace korel {

/// Level of the warnings about what is read.
constexpr int readerWarning = 3;

/// Shows a syntax error in the current input unit (message, source line, caret), then drops the rest of
/// the line.
void reportSyntaxError(int position, const char* message);
/// The same for a text that the end of the input has cut.
void reportEndOfInput(int position);

/// Text and position of the last error reported; a null text when there was none.
struct RecordedSyntaxError {
  const char* text;
  int position;
};
RecordedSyntaxError recordedSyntaxError();
void clearSyntaxError();
/// Keeps a copy of `text`.
void recordSyntaxError(int position, const char* text);

}  // namespace korel
