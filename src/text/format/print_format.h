#pragma once
// Printing by a format: the language of `printf` and its kin, over a sink that takes one character at a time.
//
// A format is text with conversions, which look like those of C: `%`, flags, width, precision, modifiers, code. The
// arguments are objects. Integers have any size, a software float is printed from its own decimal digits, which are
// rounded half up, and every code but `m`, `M` and `q` applies to an rtable element by element.
//
//   flags      -  left justified      0  filled with zeros behind the sign      + or blank  in front of what is not
//              negative               {...}  how an rtable is laid out (files/formatted_rtables.h)
//   width .precision   digits, or * for an argument; a negative width justifies to the left
//   modifiers  l L  ignored      zc  complex numbers as two parts with c between them      Z  as a sum with the unit
//   code       d i u o x X  integer    e E f g G  number    y Y  bits of a double    s text    c character
//              a A  expression    m  record    M  XML, whose flags are the width    q Q  all other arguments    %

#include <cstdint>

#include "store/dag.h"
#include "text/format/format_reading.h"
#include "text/print/sinks.h"

namespace korel {

/// Prints the members of the EXPSEQ `arguments` from position `first` on, as the format asks for. Gives the count of
/// characters sent. What is sent before an error stays sent. Errors: see the messages in print_format.cpp.
std::int64_t DoPrintF(Sink sink, void* closure, const char* format, DAG arguments, Word first);

// ---- shared by the files of the printer

constexpr int longestOptions = 255;
struct PrintConversion {
  bool left = false, zero = false;
  char sign = 0;  // in front of what isn't negative: `+`, a blank, or nothing
  int width = 0, precision = -1;
  ComplexMark complex;
  char code = 0;
  char options[longestOptions + 1] = "";
};

struct PrintTarget {
  Sink sink;
  void* closure;
  std::int64_t count = 0;

  void put(int c) {
    ++count;
    sink(closure, static_cast<unsigned char>(c));
  }
  void put(const char* text, std::size_t n) {
    for (std::size_t i = 0; i < n; ++i) put(text[i]);
  }
  /// The same character `n` times; nothing for n below 1.
  void fill(char c, std::int64_t n);
};

/// Prints one argument, which is no rtable. Errors: those of its code.
void printValue(PrintTarget& out, const PrintConversion& c, DAG x);
/// A text without a sign, padded to the width.
void printPadded(PrintTarget& out, const PrintConversion& c, const char* text, std::size_t n);
/// An integer, an integer COMPLEX with a complex form. Error: "integer expected for integer format".
void printIntegerBy(PrintTarget& out, const PrintConversion& c, DAG x);
/// Whatever has a real value, or a complex one with a complex form. Error: "number expected for floating point format".
void printFloatBy(PrintTarget& out, const PrintConversion& c, DAG x);

}  // namespace korel
