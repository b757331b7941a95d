// Rtables printed by a format.

#include <cstring>

#include "files/formatted_rtables.h"
#include "files/rtable_layout.h"
#include "frame/errors.h"
#include "frame/interrupts.h"
#include "numbers/complex/complex.h"
#include "numbers/float/hardware_float.h"
#include "rtable/element_access.h"
#include "rtable/element_formats.h"
#include "store/constants.h"

namespace korel {

namespace {

struct Layout {
  bool transposed = false, vector = false, element = false;
  bool joinsSlices = false, joinsRows = false, noLineEnds = false;
  char separator = ' ';
  char band = 0;
};

Layout readLayout(const char* at) {
  Layout layout;
  for (; *at != 0; ++at) switch (*at) {
      case 't': layout.transposed = true; break;
      case 's': layout.joinsSlices = true; break;
      case 'n': layout.joinsRows = true; break;
      case 'x': layout.noLineEnds = true; break;
      case 'v':
        if (layout.element) userror("formatting option `v` (Vector) cannot be used with `e` (element)");
        layout.vector = true;
        break;
      case 'e':
        if (layout.vector) userror("formatting option `e` (element) cannot be used with `v` (Vector)");
        layout.element = true;
        break;
      case 'c':
        if (at[1] == 0) userror("separator character expected after `c` (character) formatting option");
        layout.separator = *++at;
        break;
      case 'b':
        if (at[1] != '+' && at[1] != '-') userror("`+` or `-` expected after `b` (band matrix) formatting option");
        layout.band = *++at;
        break;
      default: KernelException("unknown rtable formatting option: `%1`", characterText(*at));
    }
  return layout;
}

// The double that an element of hardware floats is: what it evaluates to would be rounded to `Digits`.
DAG hardwareValue(DAG x) {
  auto part = [](DAG real) { return NewHFloat(FloatValue(real), false); };
  return isComplex(x) ? new3(COMPLEX, part(cxRealPart(x)), part(cxImaginaryPart(x))) : part(x);
}

// One rtable on its way out.
struct Printing {
  PrintTarget& out;
  const PrintConversion& conversion;
  DAG r;
  Layout layout;
  bool asDoubles;
  bool rowIsOpen = false;  // an element stands on the line

  void separate() {
    if (rowIsOpen) out.put(layout.separator);
  }
  void print(const std::int32_t* index) {
    passWork(objectSteps);
    separate();
    DAG element = lacksCell(r, index) ? DAG() : selectElement(r, index);
    if (!element) element = RTableZero(r);
    printValue(out, conversion, asDoubles ? hardwareValue(element) : element);
    rowIsOpen = true;
  }
  void endLine() {
    out.put('\n');
    rowIsOpen = false;
  }
  // `level` indices have come to their end.
  void endRow(Word level) {
    const Word n = dimensionsOf(r);
    if (layout.noLineEnds) return;
    const bool endsSlice = level >= 2 || level == n;
    if (!layout.joinsRows || endsSlice) endLine();
    if (n >= 3 && level >= 2 && !layout.joinsSlices) out.put('\n');
  }
};

// Whether each element of a row stands on its own line.
bool isVertical(DAG r, const Layout& layout) {
  if (layout.element) return true;
  if (dimensionsOf(r) != 1 || layout.vector) return false;
  return (subtypeOf(r) == subtypeColumnVector) != (layout.transposed && subtypeOf(r) != subtypeArray);
}

}  // namespace

void FormatRTable(PrintTarget& out, const PrintConversion& c, DAG r) {
  const bool holdsDoubles = datatypeOf(r) == dataFloat64 || datatypeOf(r) == dataComplexFloat64;
  Printing p{out, c, r, readLayout(c.options), holdsDoubles && std::strchr("efgEGyY", c.code) != nullptr};
  if (p.layout.band != 0 && dimensionsOf(r) == 2) {
    forEachOnDiagonals(r, p.layout.band == '-', [&](const std::int32_t* index, bool isLast) {
      p.print(index);
      if (isLast && !p.layout.noLineEnds && !p.layout.joinsRows) p.endLine();
    });
    if (p.rowIsOpen && !p.layout.noLineEnds) p.endLine();
    return;
  }
  const bool vertical = isVertical(r, p.layout);
  forEachInRows(r, p.layout.transposed, [&](const std::int32_t* index, Word level) {
    p.print(index);
    if (level > 0) p.endRow(level);
    else if (vertical && !p.layout.joinsRows && !p.layout.noLineEnds) p.endLine();
  });
}

}  // namespace korel
