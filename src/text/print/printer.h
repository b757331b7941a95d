#pragma once
// The printer: any object as one-dimensional text of the language, character by character to a
// sink.
//
// What it prints reads back as the same object, as far as the language can write that object. It
// serves `lprint`, `%a`, messages, saved source text, and the conversion of objects to names and
// strings. The whole state is set on entry and nothing survives a call; no object is changed.

#include <cstddef>

#include "store/dag.h"
#include "text/print/emit.h"

namespace korel {

/// Bits of the printer's `flags`.
enum PrintFlag : int {
  printBare = 1,            // style 9999: nothing is quoted outside a procedure
  printWithAttributes = 2,  // attributes are shown by `setattribute`
  printBareOutermost = 4,   // style 1: the outermost object is not quoted
  printWithTildes = 8,      // names with their trailing tildes
  printWithAddresses = 16,  // every object behind its address
  printRtableNumbers = 32,  // RTABLE(n) as _rtable[n]
};

/// Prints `object` with lines of `width` characters, the last of which is kept for the continuation
/// mark; a width of 0 sets no limit. An error on the way, such as "unprintable data structure",
/// ends the printing and goes to `onError`; only special errors pass.
void PrintKorel(DAG object, Sink sink, ErrorSink onError, int width, void* closure, int flags);
/// The same for the operands of an EXPSEQ, each printed as an outermost object, with `separator`
/// between them.
void PrintKorelList(DAG sequence, Sink sink, ErrorSink onError, int width, void* closure, int flags,
                    const char* separator);

/// True when `text` is no identifier and has to be written in quotes.
bool NeedsQuotes(const char* text);
/// Cuts the run of tildes at the end of `text` by a terminator and gives its place, where the
/// caller puts the tilde back; null when nothing was cut.
char* StripTilde(char* text);
/// Binding strength of `x` as it prints, 0 to 12: an operand below what its place needs is
/// parenthesised.
int ParenLevel(DAG x);

/// A sink that appends to a growable text: the closure is the address of the text's pointer.
void LongStringSink(void* longString, int c);

}  // namespace korel
