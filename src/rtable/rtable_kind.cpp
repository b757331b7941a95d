// Rtables in the operations that all objects share. Some of them are yet to come, and say so.

#include "rtable/rtable_kind.h"

#include <algorithm>

#include "eval/simplify/simplify.h"
#include "eval/statements/boolean.h"
#include "eval/statements/statements.h"
#include "eval/structure/equality.h"
#include "eval/structure/kinds.h"
#include "frame/errors.h"
#include "frame/interrupts.h"
#include "rtable/element_access.h"
#include "rtable/element_formats.h"
#include "rtable/queries.h"
#include "rtable/rtable_object.h"
#include "rtable/selection.h"
#include "rtable/stored_positions.h"
#include "store/append.h"
#include "store/generations.h"
#include "store/names.h"
#include "store/object_fields.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

[[noreturn]] void notAvailable(const char* operation) {
  KernelException("the operation `%1` is not available", naminstall(operation));
}

DAG head(DAG r) { return RTableOp(0, r); }
DAG operand(DAG r, std::int64_t i) { return RTableOp(i, r); }

std::int64_t refuseSize(DAG) { notAvailable("length"); }

DAG refuseSubstitutionByPosition(DAG) { KernelException("subsop cannot be used for rtables; use indexing instead"); }
// Elements are no part of the object as `subs` sees it.
DAG unchanged(Substitution&, DAG x) { return x; }

// ---- map and select

// What stands where a selection takes an element away.
DAG emptyCell(DAG r) {
  return datatypeOf(r) == dataDag && r[rtableElementType] == ini("anything") ? null : RTableZero(r);
}

DAG mapElements(const OperandWalk& walk, DAG r) {
  DAG copy = CopyRTable(r);
  updateFlag(copy, rtableReadOnly, 0);
  updategen(copy);
  forEachEntry(r, [&](const std::int32_t* index) {
    DAG element = selectElement(r, index);
    if (!element) return;
    ++evaluationLevel;
    DAG value = simpl(walk(element));
    --evaluationLevel;
    updategen(value);
    if (walk.purpose == OperandWalk::selection && value == null) value = emptyCell(r);
    assignElement(copy, index, value);
    collectInLoop();
  });
  return copy;
}

// ---- equality

bool hasSameOptions(DAG a, DAG b) {
  constexpr Word compared = ~(Word{1} << rtableReadOnly.shift | Word{1} << rtableForeign.shift);
  return ((rawField(a, rtableFlags) ^ rawField(b, rtableFlags)) & compared) == 0 &&
         a[rtableElementType] == b[rtableElementType] && HasSameIndexingFunctionChain(a, b);
}
bool hasSameDimensions(DAG a, DAG b) {
  const Word n = dimensionsOf(a);
  return n == dimensionsOf(b) && std::equal(boundsOf(a), boundsOf(a) + 2 * n, boundsOf(b));
}

bool areEqualElements(DAG a, DAG b) {
  if (a == b) return true;
  if (!a || !b) return false;
  if (isNumber(a) && isNumber(b)) return evalbool(simpl(new3(EQUATION, a, b))) == ini("true");
  return Equal(a, b);
}

bool hasEqualEntries(DAG a, DAG b) {
  if (a == b) return true;
  if (!hasSameDimensions(a, b)) return false;
  bool equal = true;
  forEachIndex(boundsOf(a), dimensionsOf(a), [&](const std::int32_t* index) {
    equal = equal && areEqualElements(selectElement(a, index), selectElement(b, index));
  });
  return equal;
}
bool hasEqualStructure(DAG a, DAG b) { return hasSameOptions(a, b) && hasSameDimensions(a, b); }
bool isEqual(DAG a, DAG b) { return hasSameOptions(a, b) && hasEqualEntries(a, b); }

// ---- entries

void store(DAG index, DAG, DAG r, DAG value) { AssignToRTable(r, index, value); }

DAG refuseListing(DAG, Listing what) { notAvailable(what == Listing::indices ? "indices" : "entries"); }
DAG refuseSort(DAG, DAG) { notAvailable("SortRTable"); }

DAG attributeOf(DAG rtable) { return singleMember(rtable[rtableAttributes]); }
// In place: an rtable is one object for all who hold it.
DAG withAttribute(DAG rtable, DAG attribute) {
  DAG attributes = simpl(asSequence(attribute));
  updategen(attributes);
  UpdateRTABLE(rtable, rtableAttributes, attributes.word);
  return rtable;
}

}  // namespace

constexpr Kind rtableKind = {
    .head = head,
    .count = RTableNOps,
    .operand = operand,
    .takeApart = refuseSubstitutionByPosition,
    .map = mapElements,
    .substitute = unchanged,
    .size = refuseSize,
    .equal = isEqual,
    .sameStructure = hasEqualStructure,
    .sameEntries = hasEqualEntries,
    .index = SelectFromRTable,
    .store = store,
    .listing = refuseListing,
    .sort = refuseSort,
    .attribute = attributeOf,
    .withAttribute = withAttribute,
};

bool isArrayRTable(DAG x) { return isTag(x, RTABLE) && subtypeOf(x) == subtypeArray; }

bool IsHFArrayRTable(DAG x) {
  return isTag(x, RTABLE) && datatypeOf(x) == dataFloat64 && storageOf(x) == storageRectangular &&
         functionCount(x) == 0;
}

namespace {

bool readIntegers(DAG r, const DAG* index, Word n, std::int32_t* numbers) {
  if (n != dimensionsOf(r)) return false;
  for (Word k = 0; k < n; ++k) {
    if (!isImmediate(index[k])) return false;
    numbers[k] = immediateValue(index[k]);
    if (numbers[k] < lowerBound(r, k) || numbers[k] > upperBound(r, k)) return false;
  }
  return true;
}

}  // namespace

DAG elementAtIntegers(DAG r, const DAG* index, Word n) {
  std::int32_t numbers[maxDimensions];
  return functionCount(r) == 0 && readIntegers(r, index, n, numbers) ? selectElement(r, numbers) : DAG();
}

// Numbers, strings and names hold no rtable: nothing is recursive.
bool storeAtInteger(DAG r, DAG index, DAG value) {
  std::int32_t number;
  if (rtableFlag(r, rtableReadOnly) != 0 || !readIntegers(r, &index, 1, &number)) return false;
  assignElement(r, &number, value);
  return true;
}

namespace {

// Calls `visit(index)` on the elements of a loop: as `forEachIndex` with the dimensions turned round.
template <class Visit>
void forEachLoopIndex(DAG r, Visit visit) {
  if (storageOf(r) == storageSparse) return forEachEntry(r, visit);
  const Word n = dimensionsOf(r);
  std::int32_t bounds[2 * maxDimensions], index[maxDimensions];
  for (Word k = 0; k < n; ++k) {
    bounds[2 * k] = lowerBound(r, n - 1 - k);
    bounds[2 * k + 1] = upperBound(r, n - 1 - k);
  }
  forEachIndex(bounds, n, [&](const std::int32_t* turned) {
    std::reverse_copy(turned, turned + n, index);
    if (functionCount(r) != 0 || isStoredPosition(r, index)) visit(static_cast<const std::int32_t*>(index));
  });
}

}  // namespace

DAG elementsOf(DAG rtable) {
  if (functionCount(rtable) == 0 && rawField(rtable, rtableData) == 0) return new2(LIST, new1(EXPSEQ));
  DAG elements = new1(EXPSEQ);
  forEachLoopIndex(rtable, [&](const std::int32_t* index) {
    passWork(objectSteps);
    if (DAG element = selectElement(rtable, index)) elements = Append2(elements, element);
  });
  return new2(LIST, elements);
}

void refuseUnassignment(DAG rtable) { KernelException("%1 elements cannot be unassigned", subtypeWord(rtable)); }

}  // namespace korel
