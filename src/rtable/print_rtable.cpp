// Rtables as text: constructor, extents, the elements as nested lists, and the options that make it again.

#include <algorithm>
#include <cstdio>

#include "eval/simplify/simplify.h"
#include "frame/errors.h"
#include "frame/interrupts.h"
#include "numbers/integer/integer.h"
#include "rtable/element_access.h"
#include "rtable/element_formats.h"
#include "rtable/indexing_functions.h"
#include "rtable/offsets.h"
#include "rtable/printed_elements.h"
#include "rtable/queries.h"
#include "rtable/rtable_object.h"
#include "store/names.h"
#include "store/objects.h"
#include "store/vocabulary.h"
#include "text/print/print_object.h"

namespace korel {

// ---- elements

namespace {

// Read straight from the block: nothing is rounded on the way to the text.
DAG hardwareFloat(DAG r, const std::int32_t* index) {
  const unsigned char* place = elementPlace(r, offsetOf(r, index));
  const auto* doubles = reinterpret_cast<const double*>(place);
  if (datatypeOf(r) == dataFloat64) return NewHFloat(doubles[0], false);
  return new3(COMPLEX, NewHFloat(doubles[0], false), NewHFloat(doubles[1], false));
}

struct ElementRead {
  DAG r;
  const std::int32_t* index;
};
const ElementRead* trapped;

// Under a trap, since a shape or procedure may refuse it; limits and interrupts pass on.
DAG readTrapped(DAG r, const std::int32_t* index) {
  ElementRead read{r, index};
  const ElementRead* outer = trapped;
  trapped = &read;
  bool failed = false;
  DAG element = KernelTrapError(
      [](DAG) {
        const ElementRead e = *trapped;
        return selectElement(e.r, e.index);
      },
      null, failed);
  trapped = outer;
  if (failed && SpecialError != noSpecialError) KernelException(nullptr);
  return failed ? new3(TABLEREF, naminstall("?"), IndexToEXPSEQ(dimensionsOf(r), index)) : element;
}

}  // namespace

DAG EvalSelectOneFromRTable(DAG r, const std::int32_t* index) {
  const bool isPlain = functionCount(r) == 0 && storageOf(r) == storageRectangular && rawField(r, rtableData) != 0;
  const bool isFloat = datatypeOf(r) == dataFloat64 || datatypeOf(r) == dataComplexFloat64;
  if (isPlain && isFloat) return hardwareFloat(r, index);
  DAG element = isPlain ? selectElement(r, index) : readTrapped(r, index);
  if (!element) element = null;
  return isEmptySequence(element) ? new2(UNEVAL, element) : element;
}

// ---- the text

namespace {

void printElement(DAG r, const std::int32_t* index) {
  passWork(objectSteps);
  printObject(EvalSelectOneFromRTable(r, index), bindsNothing);
}

// The elements whose first `k` indices are fixed, as lists within lists.
void printLists(DAG r, std::int32_t* index, Word k) {
  if (k == dimensionsOf(r)) return printElement(r, index);
  EmitChar('[');
  for (std::int64_t i = lowerBound(r, k); i <= upperBound(r, k); ++i) {
    if (i > lowerBound(r, k)) EmitChar(',');
    index[k] = static_cast<std::int32_t>(i);
    printLists(r, index, k + 1);
  }
  EmitChar(']');
}

void printExtents(DAG r) {
  for (Word k = 0; k < dimensionsOf(r); ++k) {
    if (subtypeOf(r) == subtypeArray) {
      EmitInteger(lowerBound(r, k));
      EmitToken("..");
      EmitInteger(upperBound(r, k));
    } else {
      EmitInteger(extentOf(r, k));
    }
    EmitChar(',');
  }
}

void printContents(DAG r) {
  std::int32_t index[maxDimensions];
  if (dimensionsOf(r) == 0) {
    EmitToken("fill");
    printBetweenBlanks("=");
    printElement(r, index);
  } else {
    printLists(r, index, 0);
  }
  EmitChar(',');
}

}  // namespace

void printRtable(DAG r, int, int) {
  printObject(subtypeValue(subtypeOf(r)), bindsCall);
  EmitChar('(');
  printExtents(r);
  printContents(r);
  // The shape of an Array is told when it has one.
  DAG options = GetRTableOptionList(r, false, subtypeOf(r) != subtypeArray || functionCount(r) != 0);
  for (Word i = 1; i < lengthOf(options); ++i) {
    if (i > 1) EmitChar(',');
    printObject(options[i], bindsNothing);
  }
  EmitChar(')');
}

// ---- the grid

RTableLayout layoutOf(DAG r, std::int64_t most) {
  const Word n = dimensionsOf(r);
  if (n != 1 && n != 2) return {Appearance::plain, 0, 0};
  const bool isRow = n == 1 && subtypeOf(r) != subtypeColumnVector;
  const std::int64_t first = extentOf(r, 0), second = n == 2 ? extentOf(r, 1) : 1;
  const std::int64_t rows = isRow ? 1 : first, columns = isRow ? first : second;
  if (rows == 0 || columns == 0) return {Appearance::plain, 0, 0};
  const bool isLarge = most > 0 && std::max(rows, columns) > most;
  return {isLarge ? Appearance::placeholder : Appearance::grid, rows, columns};
}

DAG gridElement(DAG r, std::int64_t row, std::int64_t column) {
  const bool isRow = dimensionsOf(r) == 1 && subtypeOf(r) != subtypeColumnVector;
  const std::int64_t first = lowerBound(r, 0) + (isRow ? column : row);
  const std::int64_t second = dimensionsOf(r) == 2 ? lowerBound(r, 1) + column : 0;
  const std::int32_t index[] = {static_cast<std::int32_t>(first), static_cast<std::int32_t>(second)};
  return EvalSelectOneFromRTable(r, index);
}

namespace {

struct Note {
  char* at;
  char* end;
};
void addToNote(void* closure, int c) {
  auto& note = *static_cast<Note*>(closure);
  if (note.at < note.end) *note.at++ = static_cast<char>(c);
}
void addToNote(Note& note, DAG x) { PrintKorel(x, addToNote, nullptr, 0, &note, 0); }
void addToNote(Note& note, const char* text) {
  for (; *text != 0; ++text) addToNote(&note, *text);
}

}  // namespace

void placeholderNote(DAG r, char* text) {
  Note note{text, text + noteLength};
  for (Word k = 0; k < dimensionsOf(r); ++k) {
    if (k > 0) addToNote(note, " x ");
    const bool isPlain = lowerBound(r, k) == 1;
    if (!isPlain) addToNote(note, Newint(lowerBound(r, k))), addToNote(note, "..");
    addToNote(note, Newint(upperBound(r, k)));
  }
  addToNote(note, " ");
  addToNote(note, subtypeValue(subtypeOf(r)));
  addToNote(note, ", ");
  addToNote(note, datatypeValue(r));
  addToNote(note, ", ");
  addToNote(note, storageValue(r));
  for (Word i = 1; i <= functionCount(r); ++i) {
    addToNote(note, ", ");
    addToNote(note, r[rtableFunctions][i]);
  }
  *note.at = 0;
}

}  // namespace korel
