// Rtables in the operations that all objects share.

#include "rtable/rtable_kind.h"

#include <algorithm>
#include <cstring>

#include "eval/evaluate/evalf.h"
#include "eval/simplify/simplify.h"
#include "eval/statements/boolean.h"
#include "eval/statements/statements.h"
#include "eval/structure/equality.h"
#include "eval/structure/kinds.h"
#include "eval/walk/measure.h"
#include "eval/walk/part_walk.h"
#include "frame/environment_block.h"
#include "frame/errors.h"
#include "frame/interrupts.h"
#include "numbers/integer/integer.h"
#include "rtable/block_copy.h"
#include "rtable/create.h"
#include "rtable/element_access.h"
#include "rtable/element_formats.h"
#include "rtable/element_walks.h"
#include "rtable/indexing_functions.h"
#include "rtable/queries.h"
#include "rtable/rtable_object.h"
#include "rtable/selection.h"
#include "rtable/sorting.h"
#include "rtable/stored_positions.h"
#include "store/append.h"
#include "store/generations.h"
#include "store/names.h"
#include "store/object_fields.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

DAG writableCopy(DAG r) {
  DAG copy = CopyRTable(r);
  updateFlag(copy, rtableReadOnly, 0);
  updategen(copy);
  return copy;
}

DAG head(DAG r) { return RTableOp(0, r); }
DAG operand(DAG r, std::int64_t i) { return RTableOp(i, r); }

// The words of the object, and the lengths of what its walk meets: elements and their block, type, attributes and
// functions.
std::int64_t sizeOf(DAG r) {
  std::int64_t size = lengthOf(r);
  auto add = [&size](DAG x) { size += LongLongValue(length(x)); };
  if (isKorelSparse(r)) {
    if (r[rtableData]) add(r[rtableData]);
  } else if (rawField(r, rtableData) != 0) {
    size += 1 + (RTableNumBytes(r) + 3) / 4;
    if (holdsObjects(r))
      RTableVisitDataDAG(
          r,
          [](DAG element, void* state) {
            *static_cast<std::int64_t*>(state) += LongLongValue(length(element));
            return true;
          },
          &size);
  }
  add(r[rtableElementType]);
  add(r[rtableAttributes]);
  size += 1 + functionCount(r);
  for (Word i = 1; i <= functionCount(r); ++i) add(r[rtableFunctions][i]);
  return size;
}

DAG refuseSubstitutionByPosition(DAG) { KernelException("subsop cannot be used for rtables; use indexing instead"); }
DAG substituteInElements(Substitution& substitution, DAG r) {
  return RTableModifyIntoCopy(
      r, [](DAG element, void* state) { return simpl(substitutePart(*static_cast<Substitution*>(state), element)); },
      &substitution);
}

// ---- map and select

// What stands where a selection takes an element away.
DAG emptyCell(DAG r) {
  return datatypeOf(r) == dataDag && r[rtableElementType] == ini("anything") ? null : RTableZero(r);
}

// Whether the store went through; limits and interrupts pass on.
struct Store {
  DAG r;
  const std::int32_t* index;
};
const Store* trappedStore;
bool canStore(DAG r, const std::int32_t* index, DAG value) {
  if (functionCount(r) == 0) {
    RawElement element;
    if (!convertElement(datatypeOf(r), r[rtableElementType], value, element)) return false;
    assignElement(r, index, value);
    return true;
  }
  Store store{r, index};
  const Store* outer = trappedStore;
  trappedStore = &store;
  bool failed = false;
  KernelTrapError(
      [](DAG v) {
        const Store s = *trappedStore;
        assignElement(s.r, s.index, v);
        return null;
      },
      value, failed);
  trappedStore = outer;
  if (failed && SpecialError != noSpecialError) KernelException(nullptr);
  return !failed;
}

DAG mapElements(const OperandWalk& walk, DAG r) {
  const bool selects = walk.purpose == OperandWalk::selection;
  DAG copy = writableCopy(r);
  forEachEntry(r, [&](const std::int32_t* index) {
    DAG element = selectElement(r, index);
    if (!element) return;
    ++evaluationLevel;
    DAG value = singleMember(simpl(walk(element)));
    --evaluationLevel;
    updategen(value);
    if (selects && value == null) value = emptyCell(r);
    if (!canStore(copy, index, value))
      KernelException(selects ? "invalid select from %1" : "invalid map onto %1", subtypeWord(r));
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

bool isIntegerFormat(DAG r) { return datatypeOf(r) >= dataInteger8 && datatypeOf(r) <= dataInteger64; }

// Where nothing is stored and no shape tells more, zero.
DAG elementOrZero(DAG r, const std::int32_t* index) {
  return functionCount(r) != 0 || isStoredPosition(r, index) ? selectElement(r, index) : RTableZero(r);
}

bool hasEqualEntries(DAG a, DAG b) {
  if (a == b) return true;
  if (!hasSameDimensions(a, b)) return false;
  if (hasSamePositions(a, b) && storageOf(a) == storageRectangular && datatypeOf(a) == datatypeOf(b) &&
      isIntegerFormat(a))
    return rawField(a, rtableCount) == 0 ||
           std::memcmp(dataOf(a), dataOf(b), static_cast<std::size_t>(RTableNumBytes(a))) == 0;
  bool equal = true;
  forEachIndex(boundsOf(a), dimensionsOf(a), [&](const std::int32_t* index) {
    if (!equal) return;
    passWork(objectSteps);
    equal = areEqualElements(elementOrZero(a, index), elementOrZero(b, index));
  });
  return equal;
}
bool hasEqualStructure(DAG a, DAG b) { return hasSameOptions(a, b) && hasSameDimensions(a, b); }
bool isEqual(DAG a, DAG b) { return hasSameOptions(a, b) && hasEqualEntries(a, b); }

// ---- entries

void store(DAG index, DAG, DAG r, DAG value) { AssignToRTable(r, index, value); }

// The entries of sparse storage, and of others the positions that are kept.
DAG listEntries(DAG r, Listing what) {
  DAG result = new1(EXPSEQ);
  forEachEntry(r, [&](const std::int32_t* index) {
    passWork(objectSteps);
    DAG key = IndexToEXPSEQ(dimensionsOf(r), index);
    DAG value = selectElement(r, index);
    if (!value) value = null;
    switch (what) {
      case Listing::indices: value = new2(LIST, key); break;
      case Listing::pairs: value = new3(EQUATION, singleMember(key), value); break;
      case Listing::entries: value = new2(LIST, asSequence(value)); break;
    }
    result = Append2(result, simpl(value));
  });
  return result;
}

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
    .substitute = substituteInElements,
    .size = sizeOf,
    .equal = isEqual,
    .sameStructure = hasEqualStructure,
    .sameEntries = hasEqualEntries,
    .index = SelectFromRTable,
    .store = store,
    .listing = listEntries,
    .sort = SortRTable,
    .attribute = attributeOf,
    .withAttribute = withAttribute,
};

DAG RTableModifyIntoCopy(DAG r, DAG (*change)(DAG element, void* state), void* state) {
  DAG copy;
  forEachEntry(r, [&](const std::int32_t* index) {
    passWork(objectSteps);
    DAG element = selectElement(r, index);
    if (!element) return;
    DAG value = change(element, state);
    if (value == element) return;
    if (!copy) copy = writableCopy(r);
    assignElement(copy, index, value);
  });
  return copy ? copy : r;
}

// ---- float values

namespace {

// Those of the positions that are kept, in their order.
DAG floatValues(DAG r) {
  DAG values = new1(EXPSEQ);
  forEachEntry(r, [&](const std::int32_t* index) {
    DAG element = selectElement(r, index);
    DAG value = element ? simpl(evalf(element)) : cons0;
    updategen(value);
    values = Append2(values, value);
    collectInLoop();
  });
  return values;
}

}  // namespace

DAG RTableEvalf(DAG r) {
  RTableSettings settings = CopyRTableSettings(r, true);
  settings.readOnly = settings.foreign = false;
  updategen(r);
  DAG values = floatValues(r);
  const bool isHardware = datatypeOf(r) == dataFloat64 || datatypeOf(r) == dataComplexFloat64;
  if (!isHardware || !usesHardwareFloats()) {
    auto isFloat = [](DAG x) { return RTableType(dataDag, ini("sfloat"), x); };
    settings.datatype = datatypeOf(r) == dataComplexFloat ? Word{dataComplexFloat} : Word{dataDag};
    settings.elementType =
        settings.datatype == dataComplexFloat || everyMember(values, isFloat) ? ini("sfloat") : ini("anything");
  }
  std::int32_t bounds[2 * maxDimensions];
  std::copy(boundsOf(r), boundsOf(r) + 2 * dimensionsOf(r), bounds);
  DAG copy = RTableCreate(settings, DAG(), bounds, DataMode::cleared);
  updategen(copy);
  Word at = 1;
  forEachEntry(r, [&](const std::int32_t* index) {
    if (at < lengthOf(values)) assignElement(copy, index, values[at++]);
  });
  // Symbols stay among the floats. Sparse storage keeps objects and floats in two ways.
  if (datatypeOf(copy) == dataDag && storageOf(copy) != storageSparse)
    UpdateRTABLE(copy, rtableElementType, ini("sfloat").word);
  return copy;
}

// ---- parts, for searches

namespace {

Parts membersOf(DAG sequence) { return fieldsOf(sequence, 1, lengthOf(sequence)); }

struct Gathered {
  DAG r, elements;
  bool negates;
};

// What the shape itself knows of its elements, without asking a procedure.
DAG shapeValues(DAG r) {
  DAG values = new1(EXPSEQ);
  for (Word i = 1; i <= functionCount(r); ++i) {
    DAG function = r[rtableFunctions][i], arguments = IndexingFunctionArg(function);
    switch (WhatIndFun(function)) {
      case userFunction: case symmetricShape: case hermitianShape: case antihermitianShape: break;
      case constantShape: values = Append2(values, singleMember(arguments)); break;
      case scalarShape: values = Append3(values, cons0, arguments[memberCount(arguments)]); break;
      case identityShape: case unitVectorShape: case unitUpperTriangularShape: case unitLowerTriangularShape:
        values = Append3(values, cons0, cons1); break;
      default: values = Append2(values, cons0); break;
    }
  }
  return values;
}

bool hasMirroredSign(DAG r) {
  for (Word i = 1; i <= functionCount(r); ++i)
    if (WhatIndFun(r[rtableFunctions][i]) == antisymmetricShape) return true;
  return false;
}

}  // namespace

Parts partsOfRTable(DAG r, bool withNumbers) {
  const bool hidden = datatypeOf(r) != dataDag && !withNumbers;
  if (functionCount(r) == 0 && hidden) return {};
  if (functionCount(r) == 0 && datatypeOf(r) == dataDag && !isKorelSparse(r) && rtableFlag(r, rtableForeign) == 0) {
    if (rawField(r, rtableData) == 0) return {};
    const auto* cells = elementPlace(r, 0);
    const auto at = static_cast<Word>(reinterpret_cast<std::uintptr_t>(cells));
    const Word count = storageOf(r) == storageSparse ? rawField(r, lengthOf(r) - 2) : rawField(r, rtableCount);
    return {at, at + 4 * count};
  }
  Gathered gathered{r, shapeValues(r), hasMirroredSign(r)};
  if (!hidden)
    RTableVisitDataDAG(
        r,
        [](DAG element, void* state) {
          auto& g = *static_cast<Gathered*>(state);
          g.elements = Append2(g.elements, element);
          if (g.negates) g.elements = Append2(g.elements, simpl(new3(SUM, element, consm1)));
          return true;
        },
        &gathered);
  return membersOf(gathered.elements);
}

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
  if (functionCount(r) != 0 || !readIntegers(r, index, n, numbers)) return DAG();
  // Most arrays keep objects in one row (bench/rtables.sh, "element reads").
  if (n == 1 && datatypeOf(r) == dataDag && storageOf(r) == storageRectangular)
    return reinterpret_cast<const DAG*>(dataOf(r))[std::int64_t{numbers[0]} - lowerBound(r, 0)];
  return selectElement(r, numbers);
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
  // A shape without data tells all its elements, and a loop runs over none.
  if (rawField(rtable, rtableData) == 0) return new2(LIST, new1(EXPSEQ));
  DAG elements = new1(EXPSEQ);
  forEachLoopIndex(rtable, [&](const std::int32_t* index) {
    passWork(objectSteps);
    if (DAG element = selectElement(rtable, index)) elements = Append2(elements, element);
  });
  return new2(LIST, elements);
}

DAG rtableWord(DAG rtable) { return subtypeWord(rtable); }

void refuseUnassignment(DAG rtable) { KernelException("%1 elements cannot be unassigned", subtypeWord(rtable)); }

}  // namespace korel
