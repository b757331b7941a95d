#pragma once
// The text of a format, as the print and the scan side read it.

#include "store/dag.h"

namespace korel {

/// How the parts of complex numbers stand: not at all, with a character between them (`z`), or as a sum with the
/// imaginary unit (`Z`).
enum class ComplexForm : unsigned char { none, separated, withUnit };

/// The decimal digits at `at`, which moves behind them; 0 without any.
/// Error: "integer overflow in format specification".
int readFormatInteger(const char*& at);
inline bool isDigit(int c) { return c >= '0' && c <= '9'; }
/// Value of a hexadecimal digit, or -1.
inline int hexDigitValue(int c) {
  if (isDigit(c)) return c - '0';
  const int letter = c | 0x20;
  return letter >= 'a' && letter <= 'f' ? letter - 'a' + 10 : -1;
}
/// A character of the platform's space class.
inline bool isSpace(int c) { return c == ' ' || (c >= 9 && c <= 13); }
/// The STRING of one character, as messages quote it.
DAG characterText(int c);
/// The text of the imaginary unit, from the interface variables.
const char* imaginaryUnitText();

struct ComplexMark {
  ComplexForm form = ComplexForm::none;
  char separator = 0;
};
/// Reads the modifiers `l`, `L`, `z` with its character, and `Z`, in any order. False when the format ends behind a
/// `z`. Error: "z and Z printf modifiers are mutually exclusive".
bool readModifiers(const char*& at, ComplexMark& mark);
[[noreturn]] void unknownFormatCode(int c);

/// The arguments of a format, one after the other.
struct FormatArguments {
  DAG sequence;  // EXPSEQ
  Word used;     // position of the last one taken

  bool atEnd() const { return used + 1 >= lengthOf(sequence); }
  /// The next one; `missing` is the error when there is none.
  DAG next(const char* missing);
};

}  // namespace korel
