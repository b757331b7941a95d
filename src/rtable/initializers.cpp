// The first values of an rtable, by the kind of initializer.
//
// Procedures and tables are asked for the positions that the rtable keeps; lists and sets go through the shapes, which
// refuse what doesn't belong to them; what an rtable hands on are the elements that it keeps. Everything else keeps the
// fill.

#include <algorithm>
#include <cstring>

#include "eval/evaluate/evaluate.h"
#include "eval/procedures/remember.h"
#include "eval/simplify/simplify.h"
#include "eval/statements/statements.h"
#include "eval/tables/tables.h"
#include "frame/errors.h"
#include "frame/interrupts.h"
#include "numbers/integer/integer.h"
#include "rtable/block_copy.h"
#include "rtable/create.h"
#include "rtable/element_access.h"
#include "rtable/element_formats.h"
#include "rtable/random_fill.h"
#include "rtable/rtable_object.h"
#include "rtable/selection.h"
#include "rtable/stored_positions.h"
#include "store/generations.h"
#include "store/hash.h"
#include "store/names.h"
#include "store/objects.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

bool isOfType(DAG r, DAG x) { return RTableType(datatypeOf(r), r[rtableElementType], x); }

[[noreturn]] void unableToStore(DAG r, DAG value) {
  KernelException("unable to store %1 when datatype=%2", value, datatypeValue(r));
}

struct InitialStore {
  DAG r;
  const std::int32_t* index;
};
// The trap hands on one word.
const InitialStore* trapped;

}  // namespace

void storeInitial(DAG r, const std::int32_t* index, DAG value) {
  passWork(objectSteps);
  if (isOfType(r, value)) return assignElement(r, index, value);
  // Shapes may take a value that is none of the type without storing it, as they do with zeros.
  InitialStore store{r, index};
  const InitialStore* outer = trapped;
  trapped = &store;
  bool failed = false;
  KernelTrapError(
      [](DAG v) {
        const InitialStore s = *trapped;
        assignElement(s.r, s.index, v);
        return null;
      },
      value, failed);
  trapped = outer;
  if (failed && SpecialError != noSpecialError) KernelException(nullptr);
  if (failed) unableToStore(r, value);
}

namespace {

// ---- the fill

void fillBlock(DAG r, const RawElement& element) {
  if (rawField(r, rtableData) == 0) return;
  const std::int64_t size = rtableElementBytes[datatypeOf(r)], total = size * rawField(r, rtableCount);
  unsigned char* data = dataOf(r);
  if (datatypeOf(r) <= dataComplexFloat) storeRaw(r, 0, element);
  formatOf(r).write(data, element);
  // Twice as much with each step.
  for (std::int64_t done = size; done < total; done *= 2)
    std::memcpy(data + done, data, static_cast<std::size_t>(std::min(done, total - done)));
}

// Sparse storage keeps no fill.
void fillAll(DAG r, DAG value) {
  if (storageOf(r) == storageSparse || rawField(r, rtableCount) == 0) return;
  RawElement element;
  if (!convertElement(datatypeOf(r), r[rtableElementType], value, element)) unableToStore(r, value);
  fillBlock(r, element);
}

bool needsAnotherFill(DAG r, DAG fill) { return fill == cons0 && !isOfType(r, cons0); }

// Each element through the functions, which put their values into the storage.
void rewrite(DAG r) {
  if (functionCount(r) == 0 || storageOf(r) == storageEmpty) return;
  forEachStoredPosition(r, [&](const std::int32_t* index) {
    if (DAG value = selectElement(r, index)) storeInitial(r, index, value);
    collectInLoop();
  });
}

void firstIndex(DAG r, std::int32_t* index) {
  for (Word k = 0; k < dimensionsOf(r); ++k) index[k] = lowerBound(r, k);
}

// The two indices of a transposed position.
struct Exchanged {
  std::int32_t index[maxDimensions];
  Exchanged(DAG r, const std::int32_t* from, bool transpose) {
    std::copy(from, from + dimensionsOf(r), index);
    if (transpose) std::swap(index[0], index[1]);
  }
};

// ---- procedures and tables

DAG callInitializer(DAG procedure, DAG r, const std::int32_t* index) {
  updategen(r);
  ++evaluationLevel;
  DAG value = simpl(eval(new3(FUNCTION, procedure, IndexToEXPSEQ(dimensionsOf(r), index))));
  --evaluationLevel;
  updategen(value);
  return value;
}

void fillByProcedure(DAG r, const RTableSettings& s, DAG procedure) {
  if (hasNoPositions(r)) return;
  DAG fill = s.fill;
  if (needsAnotherFill(r, fill)) {
    std::int32_t first[maxDimensions];
    firstIndex(r, first);
    fill = callInitializer(procedure, r, first);
  }
  fillAll(r, fill);
  forEachStoredPosition(r, [&](const std::int32_t* index) {
    Exchanged from(r, index, s.transpose);
    storeInitial(r, index, callInitializer(procedure, r, from.index));
    collectInLoop();
  });
}

void fillByTable(DAG r, const RTableSettings& s, DAG table) {
  forEachStoredPosition(r, [&](const std::int32_t* index) {
    Exchanged from(r, index, s.transpose);
    FoundEntry found = lookUpEntry(IndexToEXPSEQ(dimensionsOf(r), from.index), table, table);
    const bool isSparse = storageOf(r) == storageSparse;
    if (found.value != absent) storeInitial(r, index, found.value);
    else if (!isSparse) storeInitial(r, index, s.fill);
    collectInLoop();
  });
}

// ---- lists

DAG firstInList(DAG list, Word levels) {
  DAG at = list;
  for (; levels > 0 && isTag(at, LIST) && !isEmptySequence(at[1]); --levels) at = at[1][1];
  return at;
}

struct ListFill {
  DAG r;
  bool transpose;
  std::int32_t index[maxDimensions];  // in the order of the lists
};

void fillDimension(ListFill& fill, DAG list, Word k) {
  const Word n = dimensionsOf(fill.r), dimension = fill.transpose ? 1 - k : k;
  if (!isTag(list, LIST)) return;
  const std::int64_t present = std::min<std::int64_t>(memberCount(list[1]), extentOf(fill.r, dimension));
  for (std::int64_t i = 0; i < present; ++i) {
    fill.index[k] = static_cast<std::int32_t>(lowerBound(fill.r, dimension) + i);
    if (k + 1 < n) fillDimension(fill, list[1][i + 1], k + 1);
    else storeInitial(fill.r, Exchanged(fill.r, fill.index, fill.transpose).index, list[1][i + 1]);
  }
}

void fillByList(DAG r, const RTableSettings& s, DAG list) {
  if (hasNoPositions(r)) return;
  DAG fill = s.fill;
  if (needsAnotherFill(r, fill)) fill = firstInList(list, dimensionsOf(r));
  fillAll(r, fill);
  if (dimensionsOf(r) == 0) return;
  ListFill walk{r, s.transpose, {}};
  fillDimension(walk, list, 0);
}

// ---- rtables

// Rows become columns, in squares that fit the nearer caches.
template <class T>
void transposeBlock(const T* from, T* to, std::int64_t rows, std::int64_t columns) {
  constexpr std::int64_t side = 32;
  for (std::int64_t i0 = 0; i0 < rows; i0 += side) {
    passWork(side * columns);
    for (std::int64_t j0 = 0; j0 < columns; j0 += side)
      for (std::int64_t i = i0; i < std::min(i0 + side, rows); ++i)
        for (std::int64_t j = j0; j < std::min(j0 + side, columns); ++j) to[j + columns * i] = from[i + rows * j];
  }
}

// Whether the block of `source`, transposed, is that of `r`; done by the size of its elements.
bool takesTransposedBlock(DAG r, DAG source) {
  const bool isPlain = functionCount(r) == 0 && functionCount(source) == 0 && storageOf(r) == storageRectangular &&
                       storageOf(source) == storageRectangular;
  if (!isPlain || datatypeOf(r) != datatypeOf(source) || r[rtableElementType] != source[rtableElementType])
    return false;
  if (rawField(source, rtableData) == 0 || rawField(r, rtableData) == 0 || isCOrder(r) != isCOrder(source))
    return false;
  for (Word k = 0; k < 2; ++k)
    if (lowerBound(r, k) != lowerBound(source, 1 - k) || upperBound(r, k) != upperBound(source, 1 - k)) return false;
  struct Pair {
    double parts[2];
  };
  const std::int64_t rows = extentOf(source, isCOrder(source)), columns = extentOf(source, !isCOrder(source));
  auto move = [&]<class T>(T) {
    transposeBlock(reinterpret_cast<const T*>(dataOf(source)), reinterpret_cast<T*>(dataOf(r)), rows, columns);
  };
  switch (rtableElementBytes[datatypeOf(r)]) {
    case 1: move(std::int8_t{}); break;
    case 2: move(std::int16_t{}); break;
    case 4: move(std::int32_t{}); break;
    case 8: move(std::int64_t{}); break;
    default: move(Pair{}); break;
  }
  if (datatypeOf(r) <= dataComplexFloat) updategens(r);
  return true;
}

void fillByRTable(DAG r, const RTableSettings& s, DAG source) {
  if (dimensionsOf(source) != dimensionsOf(r))
    KernelException("specified dimensions do not match initializer dimensions");
  if (!s.transpose && rawField(source, rtableData) != 0 && hasSamePositions(r, source)) return copyPositions(r, source);
  if (s.transpose && takesTransposedBlock(r, source)) return;
  if (hasNoPositions(r)) return;
  DAG fill = s.fill;
  if (needsAnotherFill(r, fill) && !hasNoPositions(source)) {
    std::int32_t lowest[maxDimensions];
    firstIndex(source, lowest);
    DAG first = selectElement(source, lowest);
    if (first) fill = first;
  }
  fillAll(r, fill);
  forEachEntry(source, [&](const std::int32_t* index) {
    Exchanged to(r, index, s.transpose);
    for (Word k = 0; k < dimensionsOf(r); ++k)
      if (to.index[k] < lowerBound(r, k) || to.index[k] > upperBound(r, k)) return;
    if (DAG value = selectElement(source, index)) storeInitial(r, to.index, value);
  });
}

// ---- sets of equations

void fillBySet(DAG r, const RTableSettings& s, DAG set) {
  if (s.transpose) KernelException("%1 option is not valid for set initializers", naminstall("transpose"));
  fillAll(r, s.fill);
  DAG equations = set[1];
  for (Word i = 1; i < lengthOf(equations); ++i) {
    DAG equation = equations[i];
    if (!isTag(equation, EQUATION)) KernelException("set of equations expected for %1 initializer", subtypeWord(r));
    DAG index = equation[1];
    const bool single = dimensionsOf(r) == 1 && isInteger(index);
    if (!single && !isTag(index, EXPSEQ))
      KernelException("left hand side of equations in set initializer must be valid indices");
    std::int32_t numbers[maxDimensions];
    CheckBounds(r, asSequence(index), numbers);
    storeInitial(r, numbers, equation[2]);
  }
}

}  // namespace

void initializeRTableData(DAG r, const RTableSettings& s, DAG initializer) {
  if (!initializer) {
    if (s.transpose) KernelException("%1 option is only valid with an initializer", naminstall("transpose"));
    fillAll(r, s.fill);
    return rewrite(r);
  }
  if (storageOf(r) == storageEmpty) return;
  if (isTag(initializer, FUNCTION)) {
    if (!isName(initializer[1])) KernelException("Unrecognized initializer, %1", initializer);
    const bool isFloat = hasText(initializer[1], "frandom");
    if (!isFloat && !hasText(initializer[1], "random"))
      KernelException("cannot handle %1 as an initializer", initializer);
    fillAll(r, s.fill);
    return RandomizeRTable(r, initializer[2], isFloat);
  }
  switch (tagOf(initializer)) {
    case PROC: return fillByProcedure(r, s, initializer);
    case LIST: return fillByList(r, s, initializer);
    case RTABLE: return fillByRTable(r, s, initializer);
    case SET: return fillBySet(r, s, initializer);
    case TABLE: return fillByTable(r, s, initializer);
    default: KernelException("cannot handle %1 as an initializer", initializer);
  }
}

}  // namespace korel
