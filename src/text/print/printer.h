#pragma once
// The printer: any object as one-dimensional text of the language, character by character to a
// sink.
//
// What it prints reads back as the same object, as far as the language can write that object. It
// serves `lprint`, `%a`, messages, saved source text, and the conversion of objects to names and
// strings. The whole state is set on entry and nothing survives a call; no object is changed.

#include "store/dag.h"
#include "text/print/sinks.h"

namespace korel {

/// Bits of the printer's `flags`. Without one of them every name is quoted that needs it.
enum PrintFlag : int {
  printBare = 1,            // nothing is quoted outside a procedure
  printProgramText = 2,     // what reads back: attributes by `setattribute`, names whole and quoted
  printBareOutermost = 4,   // the outermost object is not quoted
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

/// The same for a statement or expression of the body of `definition`, a PROC or MODDEF, whose variables print by name;
/// no limit of width.
void PrintKorelWithin(DAG definition, DAG object, Sink sink, ErrorSink onError, void* closure);

/// True when `text` is no identifier and has to be written in quotes.
bool NeedsQuotes(const char* text);
/// Cuts the run of tildes at the end of `text` by a terminator and gives its place, where the
/// caller puts the tilde back; null when nothing was cut.
char* StripTilde(char* text);

/// Binding strengths, loosest first.
enum Strength : int {
  bindsByContent = -1,  // in the table of tags: the object's content decides
  bindsNothing,         // statements, sequences, tables
  bindsOr,
  bindsAnd,
  bindsNot,
  bindsRelation,
  bindsRange,
  bindsSeries,
  bindsMinus,
  bindsSum,
  bindsProduct,
  bindsPower,
  bindsCall,
  bindsAtom,
  bindsMoreThanAnything,  // what no object does: the place of an operand that is always parenthesised
};
/// Binding strength of `x` as it prints: an operand below what its place needs is parenthesised.
int ParenLevel(DAG x);

}  // namespace korel
