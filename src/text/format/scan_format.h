#pragma once
// Scanning by a format: the language of `scanf` and its kin, over a source that gives one character at a time and takes
// one back.
//
// White space in a format passes over white space of the input; other characters must be there. A conversion is `%`,
// `*` for a value that is dropped, the greatest width, modifiers as in printing, and a code. All but `c`, `[` and `n`
// pass over white space first. What does not fit ends the scan: the values so far are its result.
//
//   code   d i u o x  integer    e f g  float    y  the double of 16 hexadecimal digits    hc  an array of floats
//          c  so many characters    s  text without blanks    [set]  characters of a set    a  expression
//          m  record    M  XML    n  the count of characters so far    {...}c  an rtable (files/formatted_rtables.h)

#include <cstdint>

#include "store/dag.h"
#include "text/format/format_reading.h"
#include "text/format/text_buffer.h"

namespace korel {

struct ScanSource {
  int (*get)(void* closure) = nullptr;  // -1 at the end
  void (*unget)(void* closure, int c) = nullptr;
  void* closure = nullptr;
  const char* text = nullptr;  // in place of them: what is left of a text, up to its zero
  std::int64_t count = 0;      // characters taken

  int next() {
    const int c = text == nullptr ? get(closure) : *text == 0 ? -1 : static_cast<unsigned char>(*text++);
    if (c != -1) ++count;
    return c;
  }
  void back(int c) {
    if (c == -1) return;
    --count;
    if (text == nullptr) unget(closure, c);
    else --text;
  }
  int peek() {
    const int c = next();
    back(c);
    return c;
  }
  /// Passes over white space; gives the character behind it, which stays.
  int skipSpace();
};

struct ScanResult {
  DAG values;        // EXPSEQ, simplified
  bool endedAtOnce;  // the input ended before anything was read
};
/// Scans; `arguments` from position `first` on are those that `*` in an rtable's format asks for.
ScanResult DoScanF(ScanSource& source, const char* format, DAG arguments, Word first);

// ---- shared by the files of the scanner

struct ScanConversion {
  bool dropped = false;
  int width = 0;  // the most characters; 0: no limit
  ComplexMark complex;
  char code = 0;
  bool wanted[256];  // of `[`, which alone writes them: the characters of the set
};

enum class ScanState : unsigned char { done, mismatch, ended };
struct ScanOutcome {
  ScanState state;
  DAG value;  // of `done`: simplified; 0 when there is none
};
inline ScanOutcome scanned(DAG value) { return {ScanState::done, value}; }
inline ScanOutcome notScanned(int nextCharacter) {
  return {nextCharacter == -1 ? ScanState::ended : ScanState::mismatch, DAG()};
}

/// Reads the modifiers, the code and the set of a conversion. False when the format ends within it.
bool readScanCode(const char*& at, ScanConversion& c);
/// Reads one value by any code but `{` and `h`; a complex number where the conversion says so. Errors: those of its
/// code; "unknown format code `%1`".
ScanOutcome scanValue(ScanSource& source, const ScanConversion& c);
/// Reads a number. Floats are rounded to `Digits`. Errors: "`aN` expected after `N` in input for floating point
/// format", "`nf` expected after `I` in input for floating point format".
ScanOutcome scanNumber(ScanSource& source, const ScanConversion& c);
/// The integer of `n` decimal digits. Error: "object too large".
DAG integerOfDigits(const char* digits, std::size_t n);
/// Reads the text of a float as C would spell it, "Inf" and "NaN" included, and leaves it in `text`.
ScanState scanFloatText(ScanSource& source, int width, TextBuffer& text);

}  // namespace korel
