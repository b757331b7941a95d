#include "rtable/block_copy.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <type_traits>

#include "eval/simplify/simplify.h"
#include "frame/errors.h"
#include "frame/interrupts.h"
#include "rtable/create.h"
#include "rtable/element_access.h"
#include "rtable/stored_positions.h"
#include "store/generations.h"
#include "store/hash.h"
#include "store/objects.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

[[noreturn]] void refuseConversion(DAG value, Word datatype, DAG elementType) {
  KernelException("unable to store %1 when datatype=%2", value, datatypeValue(datatype, elementType));
}

// ---- machine numbers

struct ComplexNumber {
  double real, imaginary;
};

template <class T>
bool convertReal(double x, T& to) {
  if constexpr (std::is_same_v<T, double>) {
    to = x;
    return true;
  } else {
    // Powers of two, which doubles hold: the upper one is the first that doesn't fit. NaN fails both tests.
    constexpr double limit = -static_cast<double>(std::numeric_limits<T>::min());
    if (!(x >= -limit && x < limit)) return false;
    to = static_cast<T>(x);
    return static_cast<double>(to) == x;
  }
}

template <class S, class T>
bool convert(S from, T& to) {
  if constexpr (std::is_same_v<T, ComplexNumber>) {
    if constexpr (std::is_same_v<S, ComplexNumber>) to = from;
    else to = {static_cast<double>(from), 0};
    return true;
  } else if constexpr (std::is_same_v<S, ComplexNumber>) {
    return from.imaginary == 0 && convertReal(from.real, to);
  } else if constexpr (std::is_same_v<S, double>) {
    return convertReal(from, to);
  } else if constexpr (std::is_same_v<T, double>) {
    to = static_cast<double>(from);
    return true;
  } else {
    to = static_cast<T>(from);
    return to == from;
  }
}

// Converts a run; the position of the first element that doesn't fit, or `count`.
template <class S, class T>
std::int64_t copyRun(const unsigned char* source, unsigned char* target, std::int64_t count) {
  if constexpr (std::is_same_v<S, T>) {
    std::memcpy(target, source, static_cast<std::size_t>(count) * sizeof(T));
    return count;
  }
  // Behind the index vectors of sparse storage elements stand at multiples of 4 only.
  for (std::int64_t i = 0; i < count; ++i) {
    S from;
    T to;
    std::memcpy(&from, source + i * static_cast<std::int64_t>(sizeof from), sizeof from);
    if (!convert(from, to)) return i;
    std::memcpy(target + i * static_cast<std::int64_t>(sizeof to), &to, sizeof to);
  }
  return count;
}

using Run = std::int64_t (*)(const unsigned char* source, unsigned char* target, std::int64_t count);
template <class S>
constexpr Run runsFrom[] = {
    copyRun<S, std::int8_t>,  copyRun<S, std::int16_t>, copyRun<S, std::int32_t>,
    copyRun<S, std::int64_t>, copyRun<S, double>,       copyRun<S, ComplexNumber>,
};
// By the formats from `dataInteger8` on.
constexpr const Run* runs[] = {
    runsFrom<std::int8_t>,  runsFrom<std::int16_t>, runsFrom<std::int32_t>,
    runsFrom<std::int64_t>, runsFrom<double>,       runsFrom<ComplexNumber>,
};
static_assert(std::size(runs) == datatypeCount - dataInteger8);

// ---- by objects

void copyByObjects(const unsigned char* source, Word sourceFormat, unsigned char* target, Word targetFormat,
                   DAG elementType, std::int64_t count) {
  const ElementFormat &from = elementFormats[sourceFormat], &to = elementFormats[targetFormat];
  for (std::int64_t i = 0; i < count; ++i) {
    passWork(objectSteps);
    DAG value = from.read(source + i * rtableElementBytes[sourceFormat]);
    if (!value) value = cons0;
    RawElement element;
    if (!convertElement(targetFormat, elementType, value, element)) refuseConversion(value, targetFormat, elementType);
    if (targetFormat <= dataComplexFloat) updategen(element.parts[0]);
    if (targetFormat == dataComplexFloat) updategen(element.parts[1]);
    to.write(target + i * rtableElementBytes[targetFormat], element);
  }
}

}  // namespace

void copyBlock(const unsigned char* source, Word sourceFormat, unsigned char* target, Word targetFormat,
               DAG elementType, std::int64_t count) {
  if (count == 0) return;
  if (sourceFormat < dataInteger8 || targetFormat < dataInteger8)
    return copyByObjects(source, sourceFormat, target, targetFormat, elementType, count);
  const std::int64_t done = runs[sourceFormat - dataInteger8][targetFormat - dataInteger8](source, target, count);
  if (done < count)
    refuseConversion(elementFormats[sourceFormat].read(source + done * rtableElementBytes[sourceFormat]), targetFormat,
                     elementType);
}

// ---- whole rtables

bool hasSamePositions(DAG a, DAG b) {
  if (functionCount(a) != 0 || functionCount(b) != 0 || lengthOf(a) != lengthOf(b)) return false;
  const Word n = dimensionsOf(a);
  if (n != dimensionsOf(b) || storageOf(a) != storageOf(b) || isCOrder(a) != isCOrder(b)) return false;
  if (a[rtableElementType] != b[rtableElementType] || !std::equal(boundsOf(a), boundsOf(a) + 2 * n, boundsOf(b)))
    return false;
  switch (storageOf(a)) {
    case storageBand: return tailOf(a, 1) == tailOf(b, 1) && tailOf(a, 2) == tailOf(b, 2);
    case storageSparse: return tailOf(a, 1) == tailOf(b, 1) && isKorelSparse(a) == isKorelSparse(b);
    default: return true;
  }
}

void copyPositions(DAG target, DAG source) {
  if (isKorelSparse(target)) {
    if (source[rtableData]) {
      DAG table = copyhashtab(source[rtableData]);
      updategen(table);
      UpdateRTABLE(target, rtableData, table.word);
    }
    return;
  }
  std::int64_t count = rawField(source, rtableData) == 0 ? 0 : rawField(source, rtableCount);
  if (storageOf(target) == storageSparse) {
    const Word inUse = static_cast<Word>(tailOf(source, 2));
    ReallocNagSparseData(target, count);
    if (count == 0) return;
    std::memcpy(dataOf(target), dataOf(source), static_cast<std::size_t>(4 * count * dimensionsOf(source)));
    UpdateRTABLE(target, lengthOf(target) - 2, inUse);
    count = inUse;
  }
  if (count == 0 || rawField(target, rtableData) == 0) return;
  const Word from = datatypeOf(source), to = datatypeOf(target);
  if (from == to && from <= dataComplexFloat) {
    // The objects are held by their owner, and now by another as well.
    std::memcpy(elementPlace(target, 0), elementPlace(source, 0),
                static_cast<std::size_t>(count * rtableElementBytes[to]));
    updategens(target);
    return;
  }
  if (from == to) {
    std::memcpy(elementPlace(target, 0), elementPlace(source, 0),
                static_cast<std::size_t>(count * rtableElementBytes[to]));
    return;
  }
  copyBlock(elementPlace(source, 0), from, elementPlace(target, 0), to, target[rtableElementType], count);
}

namespace {

DAG copyByElements(DAG r, RTableSettings& settings) {
  std::int32_t bounds[2 * maxDimensions];
  std::copy(boundsOf(r), boundsOf(r) + 2 * dimensionsOf(r), bounds);
  settings.dimensions = static_cast<int>(dimensionsOf(r));
  settings.readOnly = false;
  DAG copy = RTableCreate(settings, DAG(), bounds, DataMode::cleared);
  updategen(copy);
  auto store = [&](const std::int32_t* index) {
    passWork(objectSteps);
    if (DAG value = selectElement(r, index)) storeInitial(copy, index, value);
  };
  if (settings.storage == storageRectangular) forEachIndex(bounds, dimensionsOf(r), store);
  else forEachEntry(r, store);
  return copy;
}

}  // namespace

DAG CopyRTableWithNewType(DAG r, Word datatype) {
  if (datatype == datatypeOf(r)) return CopyRTable(r);
  RTableSettings settings = CopyRTableSettings(r, true);
  settings.datatype = datatype;
  settings.elementType = datatype == dataComplexFloat ? ini("sfloat") : ini("anything");
  settings.readOnly = settings.foreign = false;
  if (functionCount(r) != 0) return copyByElements(r, settings);
  std::int32_t bounds[2 * maxDimensions];
  std::copy(boundsOf(r), boundsOf(r) + 2 * dimensionsOf(r), bounds);
  DAG copy = RTableCreate(settings, DAG(), bounds, DataMode::cleared);
  updategen(copy);
  if (isKorelSparse(copy) != isKorelSparse(r)) {
    forEachEntry(r, [&](const std::int32_t* index) { storeInitial(copy, index, selectElement(r, index)); });
    return copy;
  }
  copyPositions(copy, r);
  return copy;
}

DAG CopyIntoRectangularRTable(DAG r) {
  RTableSettings settings = CopyRTableSettings(r, false);
  if (functionCount(r) != 0 || storageOf(r) != storageRectangular) return copyByElements(r, settings);
  DAG copy = CopyRTable(r);
  updateFlag(copy, rtableReadOnly, 0);
  return copy;
}

}  // namespace korel
