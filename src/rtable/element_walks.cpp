#include "rtable/element_walks.h"

#include "frame/interrupts.h"
#include "numbers/arithmetic.h"
#include "rtable/element_access.h"
#include "rtable/element_formats.h"
#include "rtable/indexing_functions.h"
#include "rtable/selection.h"
#include "rtable/stored_positions.h"
#include "store/hash.h"
#include "store/tag_facts.h"
#include "store/vocabulary.h"

namespace korel {

// ---- stored elements

bool isSlotOfBand(DAG r, std::int64_t offset) {
  const bool c = isCOrder(r);
  const std::int64_t along = c ? upperBound(r, 1) : upperBound(r, 0), across = c ? upperBound(r, 0) : upperBound(r, 1);
  if (along == 0) return false;
  const std::int64_t before = c ? tailOf(r, 1) : tailOf(r, 2);
  // Diagonal after diagonal, each in as many slots as `along`: i of the rows (or columns) and j beside it.
  const std::int64_t i = offset % along + 1, j = i + offset / along - before;
  return j >= 1 && j <= across;
}

namespace {

struct EntryVisit {
  ElementVisitor visit;
  void* state;
};

bool visitTable(DAG table, ElementVisitor visit, void* state) {
  if (!table) return true;
  EntryVisit entries{visit, state};
  return hashforeach(
      copyhashtab(table),
      [](void* arg, PairAddress pair) {
        const auto& e = *static_cast<EntryVisit*>(arg);
        collectInLoop();
        return e.visit(pairValue(pair), e.state);
      },
      &entries);
}

std::int64_t cellCount(DAG r) {
  if (rawField(r, rtableData) == 0) return 0;
  return storageOf(r) == storageSparse ? tailOf(r, 2) : static_cast<std::int64_t>(rawField(r, rtableCount));
}

}  // namespace

bool RTableVisitDataDAG(DAG r, ElementVisitor visit, void* state) {
  if (isKorelSparse(r)) return visitTable(r[rtableData], visit, state);
  const bool isBand = storageOf(r) == storageBand;
  for (std::int64_t at = cellCount(r); at-- > 0;) {
    if (at >= cellCount(r) || (isBand && !isSlotOfBand(r, at))) continue;
    passWork(objectSteps);
    DAG element = RTableDataOffsetToDag(r, at);
    if (element && !visit(element, state)) return false;
    collectInLoop();
  }
  return true;
}

// ---- elements by the shape

namespace {

// The positions that the shape leaves to the storage, or all of them; ends early by the answer of the visitor.
struct PositionWalk {
  DAG r;
  ElementVisitor visit;
  void* state;
  bool goesOn = true;

  void operator()(const std::int32_t* index) {
    if (!goesOn) return;
    passWork(objectSteps);
    DAG element = selectElement(r, index);
    if (element) goesOn = visit(element, state);
    collectInLoop();
  }
};

bool visitOpenPositions(DAG r, ElementVisitor visit, void* state) {
  PositionWalk walk{r, visit, state};
  forEachStoredPosition(r, [&](const std::int32_t* index) { walk(index); });
  return walk.goesOn;
}
bool visitIndexSpace(DAG r, ElementVisitor visit, void* state) {
  PositionWalk walk{r, visit, state};
  forEachIndex(boundsOf(r), dimensionsOf(r), [&](const std::int32_t* index) { walk(index); });
  return walk.goesOn;
}

}  // namespace

bool RTableLookup(DAG r, ElementVisitor visit, void* state) {
  if (functionCount(r) == 0) return RTableVisitDataDAG(r, visit, state);
  if (functionCount(r) > 1) return visitIndexSpace(r, visit, state);
  DAG function = r[rtableFunctions][1], arguments = IndexingFunctionArg(function);
  switch (WhatIndFun(function)) {
    case zeroShape: return visit(cons0, state);
    case constantShape: return visit(singleMember(arguments), state);
    case identityShape: case unitVectorShape: return visit(cons0, state) && visit(cons1, state);
    case scalarShape: return visit(cons0, state) && visit(arguments[memberCount(arguments)], state);
    case bandShape: case diagonalShape: case upperHessenbergShape: case lowerHessenbergShape: case upperTriangularShape:
    case lowerTriangularShape:
      return visit(cons0, state) && visitOpenPositions(r, visit, state);
    case unitUpperTriangularShape: case unitLowerTriangularShape:
      return visit(cons0, state) && visit(cons1, state) && visitOpenPositions(r, visit, state);
    default: return visitIndexSpace(r, visit, state);
  }
}

// ---- tests

namespace {

bool isByHardware(DAG r) { return datatypeOf(r) != dataDag && !HasNonKernelIndFun(r); }

}  // namespace

bool IsNumericRTable(DAG r) {
  return isByHardware(r) || everyElement(r, [](DAG x) { return isNumeric(x); });
}
bool IsNameOrStringRTable(DAG r) {
  return !isByHardware(r) && everyElement(r, [](DAG x) { return isText(x); });
}
bool RtableIsReal(DAG r) {
  if (isByHardware(r) && datatypeOf(r) != dataComplexFloat && datatypeOf(r) != dataComplexFloat64) return true;
  return everyElement(r, [](DAG x) { return isNumeric(x) || isUndefined(x) || (isInfinite(x) && !isTag(x, COMPLEX)); });
}

namespace {

bool isZeroElement(DAG x) { return isZeroValue(x); }

bool hasOnlyZerosStored(DAG r) {
  return RTableVisitDataDAG(
      r, [](DAG x, void*) { return isZeroElement(x); }, nullptr);
}

}  // namespace

bool RTableIsZero(DAG r) {
  if (HasNonKernelIndFun(r)) return everyElement(r, isZeroElement);
  if (hasNoPositions(r)) return true;
  if (functionCount(r) != 1) return functionCount(r) == 0 ? hasOnlyZerosStored(r) : everyElement(r, isZeroElement);
  DAG function = r[rtableFunctions][1];
  switch (WhatIndFun(function)) {
    case zeroShape: return true;
    case identityShape: case unitVectorShape: case unitUpperTriangularShape: case unitLowerTriangularShape:
      return false;
    case constantShape: return isZeroValue(singleMember(IndexingFunctionArg(function)));
    case scalarShape: {
      DAG arguments = IndexingFunctionArg(function);
      return isZeroValue(arguments[memberCount(arguments)]);
    }
    default: return hasOnlyZerosStored(r);
  }
}

}  // namespace korel
