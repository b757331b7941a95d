#include <algorithm>
#include <cstring>

#include "eval/simplify/simplify.h"
#include "external/addresses.h"
#include "external/vector_functions.h"
#include "external/vector_settings.h"
#include "frame/errors.h"
#include "numbers/complex/complex.h"
#include "numbers/float/float.h"
#include "numbers/integer/integer.h"
#include "rtable/create.h"
#include "rtable/element_access.h"
#include "rtable/element_formats.h"
#include "rtable/indexing_functions.h"
#include "rtable/queries.h"
#include "rtable/rtable_object.h"
#include "rtable/selection.h"
#include "store/hash.h"
#include "store/vocabulary.h"

namespace korel {

namespace vector {

bool objectBlockIsOut = false;

namespace {

DAG rtableBehind(ALGEB x, const char* message = "rtable argument required") {
  DAG r = valueOf(x);
  if (!isTag(r, RTABLE)) userror(message);
  return r;
}

void checkDimension(DAG r, M_INT dimension) {
  if (dimension < 1 || dimension > static_cast<M_INT>(dimensionsOf(r)))
    userror("rtable doesn't have that many dimensions");
}

}  // namespace

M_BOOL isRTable(ALGEB x) { return isTag(valueOf(x), RTABLE); }

// ---- new ones

ALGEB rtableCreate(::RTableSettings* s, void* data, const M_INT* bounds) {
  RTableSettings settings = settingsFromC(s);
  if (settings.dimensions < 0 || (bounds == nullptr && settings.dimensions > 0))
    userror("too many or too few dimensions for rtable");
  if (data != nullptr && settings.datatype <= dataComplexFloat) userror("create only works with hardware arrays");
  std::int32_t limits[2 * maxDimensions];
  boundsFromC(bounds, static_cast<Word>(settings.dimensions), limits);
  const bool isForeign = data != nullptr && settings.foreign;
  settings.foreign = isForeign;
  if (data == nullptr) return toC(RTableCreate(settings, DAG(), limits, DataMode::initialised));
  const bool readOnly = settings.readOnly;
  settings.readOnly = false;
  DAG r = RTableCreate(settings, DAG(), limits, isForeign ? DataMode::none : DataMode::cleared);
  if (isForeign) attachForeignData(r, data);
  else if (const std::int64_t bytes = RTableNumBytes(r); bytes != 0)
    std::memcpy(dataOf(r), data, static_cast<std::size_t>(bytes));
  if (readOnly) updateFlag(r, rtableReadOnly, 1);
  return toC(r);
}

ALGEB rtableCopy(::RTableSettings* s, ALGEB source) {
  RTableSettings settings = settingsFromC(s);
  DAG from = valueOf(source);
  if (!isTag(from, RTABLE) && !isTag(from, LIST)) userror("rtable argument required");
  settings.foreign = false;
  std::int32_t bounds[2 * maxDimensions];
  // A list tells its dimensions by its depth.
  settings.dimensions = -1;
  return toC(RTableCreate(settings, from, bounds, DataMode::initialised));
}

// ---- elements

void* rtableDataBlock(ALGEB x) {
  DAG r = rtableBehind(x, "rtable argument required for DataRTable");
  if (isKorelSparse(r)) userror("hash table format is not externally available");
  if (datatypeOf(r) <= dataComplexFloat) objectBlockIsOut = true;
  return dataOf(r);
}

ALGEB rtableSelect(ALGEB x, const M_INT* index) {
  DAG r = rtableBehind(x);
  DAG value = SelectFromRTable(r, indexSequence(dimensionsOf(r), index));
  return value ? toC(simpl(value)) : nullptr;
}
void rtableAssign(ALGEB x, const M_INT* index, ALGEB value) {
  DAG r = rtableBehind(x);
  AssignToRTable(r, indexSequence(dimensionsOf(r), index), simpl(fromC(value)));
}

// ---- shape

M_INT rtableLowerBound(ALGEB x, M_INT dimension) {
  DAG r = rtableBehind(x);
  checkDimension(r, dimension);
  return lowerBound(r, static_cast<Word>(dimension - 1));
}
M_INT rtableUpperBound(ALGEB x, M_INT dimension) {
  DAG r = rtableBehind(x, "rtable argument required for DataRTable");
  checkDimension(r, dimension);
  return upperBound(r, static_cast<Word>(dimension - 1));
}
M_INT rtableNumDimensions(ALGEB x) { return dimensionsOf(rtableBehind(x)); }

M_INT rtableNumElements(ALGEB x) {
  DAG r = rtableBehind(x);
  if (isNagSparse(r)) return tailOf(r, 2);
  if (isKorelSparse(r)) return rawField(r, rtableData) == 0 ? 0 : hashcount(r[rtableData]);
  return rawField(r, rtableCount);
}

ALGEB rtableIndFn(ALGEB x, M_INT n) {
  DAG r = rtableBehind(x);
  const auto count = static_cast<M_INT>(functionCount(r));
  if (count == 0) userror("this rtable doesn't have any indexing functions");
  if (n > count) KernelException("this rtable only has %1 indexing functions", simpl(NewInteger(count)));
  if (n < 1) userror("this rtable doesn't have that many indexing functions");
  DAG function = r[rtableFunctions][n];
  return toC(isTag(function, TABLEREF) ? function[1] : function);
}
ALGEB rtableIndFnArg(ALGEB x, M_INT n) {
  DAG r = rtableBehind(x);
  if (functionCount(r) == 0) userror("this rtable doesn't have any indexing functions");
  if (n < 1 || n > static_cast<M_INT>(functionCount(r)))
    userror("this rtable doesn't have that many indexing functions");
  return toC(IndexingFunctionArg(r[rtableFunctions][n]));
}

// ---- complex and real

namespace {

template <class Visit>
void forEachPosition(DAG r, Visit visit) {
  forEachIndex(boundsOf(r), dimensionsOf(r), visit);
}

DAG elementAt(DAG r, const std::int32_t* index) {
  DAG x = selectElement(r, index);
  return x ? x : cons0;
}

// A rectangular rtable with the bounds, order and subtype of `r`, and another format.
DAG likeWith(DAG r, Word datatype) {
  RTableSettings settings = CopyRTableSettings(r, false);
  settings.dimensions = static_cast<int>(dimensionsOf(r));
  settings.datatype = datatype;
  settings.elementType = datatype == dataDag ? ini("sfloat") : ini("anything");
  std::int32_t bounds[2 * maxDimensions];
  std::copy(boundsOf(r), boundsOf(r) + 2 * dimensionsOf(r), bounds);
  return RTableCreate(settings, DAG(), bounds, DataMode::initialised);
}

bool goesByObjects(DAG r) { return datatypeOf(r) <= dataComplexFloat; }

ALGEB copyPart(ALGEB x, DAG (*partOf)(DAG)) {
  DAG r = rtableBehind(x);
  DAG part = likeWith(r, goesByObjects(r) ? dataDag : dataFloat64);
  forEachPosition(r,
                  [&](const std::int32_t* index) { assignElement(part, index, simpl(partOf(elementAt(r, index)))); });
  return toC(part);
}

}  // namespace

ALGEB rtableCopyRealPart(ALGEB x) { return copyPart(x, cxRealPart); }
ALGEB rtableCopyImPart(ALGEB x) { return copyPart(x, cxImaginaryPart); }

ALGEB rtableZipReIm(ALGEB real, ALGEB imaginary) {
  DAG re = rtableBehind(real), im = rtableBehind(imaginary);
  const Word n = dimensionsOf(re);
  if (n != dimensionsOf(im) || !std::equal(boundsOf(re), boundsOf(re) + 2 * n, boundsOf(im)))
    userror("specified dimensions do not match initializer dimensions");
  DAG both = likeWith(re, goesByObjects(re) || goesByObjects(im) ? dataComplexFloat : dataComplexFloat64);
  forEachPosition(re, [&](const std::int32_t* index) {
    assignElement(both, index, simpl(new3(COMPLEX, elementAt(re, index), elementAt(im, index))));
  });
  return toC(both);
}

M_BOOL rtableIsReal(ALGEB x) {
  DAG r = rtableBehind(x);
  if (datatypeOf(r) >= dataInteger8 && datatypeOf(r) <= dataFloat64) return TRUE;
  bool allReal = true;
  forEachPosition(r, [&](const std::int32_t* index) {
    if (!allReal) return;
    DAG element = elementAt(r, index);
    allReal = isNumeric(element) || (isTag(element, COMPLEX) && cxIsReal(element));
  });
  return allReal;
}

// ---- sparse storage

namespace {

DAG sparseBehind(ALGEB x) {
  DAG r = rtableBehind(x);
  if (!isNagSparse(r)) userror("rtable must be NAG sparse format");
  return r;
}

INTEGER32* indexVector(DAG r, Word dimension) {
  return reinterpret_cast<INTEGER32*>(dataOf(r)) + std::size_t{rawField(r, rtableCount)} * dimension;
}

// Exchanges two entries, values and indices.
void swapEntries(DAG r, Word a, Word b) {
  for (Word k = 0; k < dimensionsOf(r); ++k) std::swap(indexVector(r, k)[a], indexVector(r, k)[b]);
  unsigned char *first = elementPlace(r, a), *second = elementPlace(r, b);
  std::swap_ranges(first, first + rtableElementBytes[datatypeOf(r)], second);
}

}  // namespace

M_INT rtableSparseSize(ALGEB x) { return rawField(sparseBehind(x), rtableCount); }

INTEGER32* rtableSparseIndexRow(ALGEB x, M_INT dimension) {
  DAG r = sparseBehind(x);
  checkDimension(r, dimension);
  return indexVector(r, static_cast<Word>(dimension - 1));
}

void rtableSparseSetNumElems(ALGEB x, M_INT count) {
  DAG r = sparseBehind(x);
  if (count < 0 || count > static_cast<M_INT>(rawField(r, rtableCount))) userror("num must be in the range 0..size");
  UpdateRTABLE(r, lengthOf(r) - 2, static_cast<Word>(count));
}

// Entries of zero go; the others keep their order.
void rtableSparseCompact(ALGEB x) {
  DAG r = sparseBehind(x);
  const auto used = static_cast<Word>(tailOf(r, 2));
  Word kept = 0;
  for (Word i = 0; i < used; ++i) {
    DAG value = RTableDataOffsetToDag(r, i);
    if (value && isZeroValue(value)) continue;
    if (kept != i) swapEntries(r, kept, i);
    ++kept;
  }
  UpdateRTABLE(r, lengthOf(r) - 2, kept);
}

// By the index of `dimension` first, then by the others in their order; heap sort, for entries are exchanged in place.
ALGEB rtableSparseIndexSort(ALGEB x, M_INT dimension) {
  DAG r = sparseBehind(x);
  checkDimension(r, dimension);
  const auto major = static_cast<Word>(dimension - 1), used = static_cast<Word>(tailOf(r, 2));
  auto isLess = [&](Word a, Word b) {
    if (INTEGER32* row = indexVector(r, major); row[a] != row[b]) return row[a] < row[b];
    for (Word k = 0; k < dimensionsOf(r); ++k)
      if (INTEGER32* row = indexVector(r, k); row[a] != row[b]) return row[a] < row[b];
    return false;
  };
  auto siftDown = [&](Word root, Word end) {
    for (Word child; (child = 2 * root + 1) < end; root = child) {
      if (child + 1 < end && isLess(child, child + 1)) ++child;
      if (!isLess(root, child)) return;
      swapEntries(r, root, child);
    }
  };
  for (Word i = used / 2; i-- > 0;) siftDown(i, used);
  for (Word end = used; end > 1; --end) {
    swapEntries(r, 0, end - 1);
    siftDown(0, end - 1);
  }
  return toC(r);
}

}  // namespace vector

}  // namespace korel
