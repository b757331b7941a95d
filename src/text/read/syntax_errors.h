#pragma once
// What a syntax error says, and how one in a file or at the terminal is shown.

namespace korel {

/// The text for a token that no rule has a place for. It stays valid until the next call.
const char* unexpectedTokenText(int token);

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

/// Gives up what is left of the line of unit 0, as after a syntax error in it.
void dropTypedLine();

}  // namespace korel
