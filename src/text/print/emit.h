#pragma once
// The character layer under the printer: one character after the other to the caller's sink, with a
// column count and the rules by which a line ends.
//
// A line has room for `width` characters, those of several bytes (UTF-8) counted once; a break
// inside a word calls the line-break hook first, which may send the continuation mark (a backslash,
// in the place behind the width). The state is global and set anew for every printing.

#include <cstddef>
#include <cstdint>

#include "text/print/sinks.h"

namespace korel {

/// Called with -1 just before a forced break inside a word.
using LineBreakHook = void (*)(void* closure, int c);

/// Non-zero while the characters of one token are being sent.
extern int printAtomic;

/// Starts an output at column 0. Null hooks stand for the defaults: standard output, a line on
/// standard error, and `EmitContinuation`. A `width` of 0 or less sets no limit.
void InitializeOutput(Sink sink, ErrorSink onError, LineBreakHook onLineBreak, int width, void* closure);

/// One byte. No line ends inside a character.
void EmitChar(int c);
/// Characters one by one; the line breaks wherever it is full.
void EmitString(const char* text);
/// `n` in decimal, as `EmitWord` sends it.
void EmitInteger(std::int64_t n);
/// A blank, or a line end in its place where the line is full.
void EmitSpace();
/// The mark of a broken word: a backslash.
void EmitContinuation();
void EmitError(const char* text);
/// Characters on the present line.
int CurrentEmitWidth();
/// The line length; 999999 when there is no limit.
int MaximumEmitWidth();

/// True for the first byte of a character.
inline bool beginsCharacter(char c) { return (static_cast<unsigned char>(c) & 0xc0) != 0x80; }
/// Characters of a text of `bytes` bytes.
std::int64_t characterCount(const char* text, std::size_t bytes);
/// Ends the line, unless a word of `length` characters still fits on it or would fit on no line.
void BreakBeforeWord(std::int64_t length);
/// A word that stays on one line when a line can hold it; a longer one breaks with continuation
/// marks.
void EmitToken(const char* text);
/// A word that stays on one line when a line can hold it; a longer one breaks without marks.
void EmitWord(const char* text, std::int64_t length);
/// An escape: a backslash and `c`, between which no line ends.
void EmitEscape(int c);

}  // namespace korel
