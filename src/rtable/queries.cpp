#include "rtable/queries.h"

#include <algorithm>

#include "eval/simplify/simplify.h"
#include "eval/structure/operands.h"
#include "frame/errors.h"
#include "frame/interrupts.h"
#include "numbers/integer/integer.h"
#include "rtable/element_access.h"
#include "rtable/element_formats.h"
#include "rtable/indexing_functions.h"
#include "rtable/rtable_object.h"
#include "rtable/rtable_settings.h"
#include "rtable/selection.h"
#include "rtable/stored_positions.h"
#include "store/append.h"
#include "store/generations.h"
#include "store/hash.h"
#include "store/names.h"
#include "store/objects.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

DAG asList(DAG sequence) { return simpl(new2(LIST, sequence)); }
DAG equation(const char* name, DAG value) { return simpl(new3(EQUATION, naminstall(name), value)); }
DAG integerOf(std::int64_t value) { return simpl(NewInteger(value)); }

// ---- counts

bool isNonZero(DAG r, const std::int32_t* index) {
  passWork(objectSteps);
  DAG value = selectElement(r, index);
  return value && !isZeroValue(value);
}

std::int64_t shortestExtent(DAG r) {
  std::int64_t shortest = dimensionsOf(r) == 0 ? 1 : INT64_MAX;
  for (Word k = 0; k < dimensionsOf(r); ++k) shortest = std::min(shortest, extentOf(r, k));
  return shortest;
}
// Positions whose indices are all equal.
std::int64_t diagonalLength(DAG r) { return storedElements(boundsOf(r), dimensionsOf(r), storageDiagonal, 0, 0); }

std::int64_t nonZeroEntries(DAG r) {
  std::int64_t count = 0;
  forEachEntry(r, [&](const std::int32_t* index) { count += isNonZero(r, index); });
  return count;
}
std::int64_t nonZeroPositions(DAG r) {
  std::int64_t count = 0;
  forEachIndex(boundsOf(r), dimensionsOf(r), [&](const std::int32_t* index) { count += isNonZero(r, index); });
  return count;
}

}  // namespace

std::int64_t wholeCountOf(DAG r) {
  std::int64_t product = 1;
  for (Word k = 0; k < dimensionsOf(r); ++k) product *= std::min<std::int64_t>(extentOf(r, k), 1) == 0 ? 0 : 1;
  for (Word k = 0; k < dimensionsOf(r) && product != 0; ++k)
    if (__builtin_mul_overflow(product, extentOf(r, k), &product)) KernelException("dimensions too large");
  return product;
}

std::int64_t nonZeroCount(DAG r) {
  if (functionCount(r) == 0 && storageOf(r) == storageScalar) return nonZeroStoredCount(r) * wholeCountOf(r);
  if (functionCount(r) == 0) return nonZeroEntries(r);
  if (functionCount(r) > 1) return nonZeroPositions(r);
  DAG function = r[rtableFunctions][1], arguments = IndexingFunctionArg(function);
  auto ifNonZero = [](DAG value, std::int64_t count) { return isZeroValue(value) ? 0 : count; };
  switch (WhatIndFun(function)) {
    case zeroShape: return 0;
    case constantShape: return ifNonZero(singleMember(arguments), wholeCountOf(r));
    case identityShape: return diagonalLength(r);
    case unitVectorShape: return 1;
    case scalarShape:
      return dimensionsOf(r) == 1 ? ifNonZero(arguments[2], 1) : ifNonZero(arguments[1], diagonalLength(r));
    case diagonalShape: case bandShape: case upperHessenbergShape: case lowerHessenbergShape: return nonZeroEntries(r);
    case unitUpperTriangularShape: case unitLowerTriangularShape: return nonZeroEntries(r) + diagonalLength(r);
    default: return nonZeroPositions(r);
  }
}

std::int64_t nonZeroStoredCount(DAG r) {
  if (isKorelSparse(r)) return nonZeroEntries(r);
  if (rawField(r, rtableData) == 0) return 0;
  std::int64_t count = 0;
  const std::int64_t cells = storageOf(r) == storageSparse ? tailOf(r, 2) : rawField(r, rtableCount);
  for (std::int64_t at = 0; at < cells; ++at) {
    DAG value = RTableDataOffsetToDag(r, at);
    count += value && !isZeroValue(value);
  }
  return count;
}

namespace {

std::int64_t tableLength(DAG r) { return r[rtableData] ? lengthOf(r[rtableData]) : 0; }

std::int64_t storedCount(DAG r) {
  if (isKorelSparse(r)) return r[rtableData] ? hashcount(r[rtableData]) : 0;
  if (storageOf(r) == storageSparse) return tailOf(r, 2);
  return storageOf(r) == storageDiagonal ? shortestExtent(r) : rawField(r, rtableCount);
}
std::int64_t byteCount(DAG r) {
  if (isKorelSparse(r)) return 4 * tableLength(r);
  return std::int64_t{rawField(r, rtableCount)} * rtableElementBytes[datatypeOf(r)];
}
std::int64_t allocatedCount(DAG r) { return isKorelSparse(r) ? tableLength(r) : rawField(r, rtableCount); }

struct CountSelector {
  const char* name;
  std::int64_t (*count)(DAG r);
};
constexpr CountSelector countSelectors[] = {
    {"All", wholeCountOf},   {"NonZero", nonZeroCount},
    {"Stored", storedCount}, {"NonZeroStored", nonZeroStoredCount},
    {"Bytes", byteCount},    {"Allocated", allocatedCount},
};

DAG rtableArgument(DAG arguments) {
  if (lengthOf(arguments) < 2 || !isTag(arguments[1], RTABLE)) KernelException("rtable expected");
  return arguments[1];
}

}  // namespace

DAG builtin::rtable_num_elems(const BuiltinCall& call) {
  if (argumentCount(call) > 2) KernelException("too many arguments");
  const CountSelector* selected = nullptr;
  if (argumentCount(call) == 2) {
    DAG selector = call.arguments[2];
    if (!isText(selector)) KernelException("name or string expected");
    for (const CountSelector& row : countSelectors)
      if (hasText(selector, row.name)) selected = &row;
    if (selected == nullptr) KernelException("invalid argument %1", selector);
  }
  DAG r = rtableArgument(call.arguments);
  return integerOf(selected == nullptr ? storedCount(r) : selected->count(r));
}

DAG builtin::rtable_num_dims(const BuiltinCall& call) {
  return immediate(static_cast<std::int32_t>(dimensionsOf(rtableArgument(call.arguments))));
}

DAG builtin::rtable_indfns(const BuiltinCall& call) {
  if (argumentCount(call) != 1) KernelException("rtable expected");
  return indexingFunctions(rtableArgument(call.arguments));
}

DAG builtin::rtable_normalize_index(const BuiltinCall& call) {
  DAG r = rtableArgument(call.arguments);
  return RTableNormalizeIndex(r, copydel(call.arguments, 0, 1));
}

// ---- options

DAG GetRTableOptionList(DAG r, bool withSubtype, bool withShape) {
  DAG members[7];
  int n = 0;
  members[n++] = equation("datatype", datatypeValue(r));
  if (withSubtype) members[n++] = equation("subtype", subtypeValue(subtypeOf(r)));
  members[n++] = equation("storage", storageValue(r));
  members[n++] = equation("order", orderValue(isCOrder(r) ? cOrder : fortranOrder));
  if (rtableFlag(r, rtableReadOnly) != 0) members[n++] = naminstall("readonly");
  if (r[rtableAttributes] != null) members[n++] = equation("attributes", asList(r[rtableAttributes]));
  if (withShape) members[n++] = equation("shape", asList(indexingFunctions(r)));
  DAG list = newl2(static_cast<Word>(n) + 1, EXPSEQ);
  std::copy(members, members + n, &list[1]);
  return simpl(list);
}

namespace {

// Bounds from 1 on; keys of a hash table move with them.
void renormaliseBounds(DAG r) {
  const Word n = dimensionsOf(r);
  std::int32_t shift[maxDimensions];
  bool moves = false;
  for (Word k = 0; k < n; ++k) {
    shift[k] = lowerBound(r, k) - 1;
    moves |= shift[k] != 0;
  }
  if (!moves) return;
  if (isKorelSparse(r) && r[rtableData]) {
    DAG indices = sparseIndices(r), before = r[rtableData];
    AllocateRTableData(r);
    for (Word i = 1; i < lengthOf(indices); ++i) {
      DAG key = CopyAlg(indices[i]);
      for (Word k = 0; k < n; ++k) key[k + 1] = integerOf(LongLongValue(key[k + 1]) - shift[k]);
      key = simpl(key);
      updategen(key);
      hashunique(key.word, pairValue(search(indices[i].word, before)), r[rtableData]);
    }
  }
  for (Word k = 0; k < n; ++k) {
    const auto extent = static_cast<Word>(extentOf(r, k));
    UpdateRTABLE(r, rtableFirstBound + 2 * k, 1);
    UpdateRTABLE(r, rtableFirstBound + 2 * k + 1, extent);
  }
}

void changeSubtype(DAG r, DAG value) {
  Word subtype = subtypeArray;
  while (subtype <= subtypeRowVector && subtypeValue(subtype) != value) ++subtype;
  if (subtype > subtypeRowVector) KernelException("invalid value %1 for subtype option", value);
  DAG rank = immediate(static_cast<std::int32_t>(dimensionsOf(r)));
  if (subtype == subtypeMatrix && dimensionsOf(r) != 2)
    KernelException("%1-dimensional %2 cannot be changed to a Matrix", rank, subtypeWord(r));
  if (subtype > subtypeMatrix && dimensionsOf(r) != 1)
    KernelException("%1-dimensional %2 cannot be changed to a Vector", rank, subtypeWord(r));
  updateFlag(r, rtableSubtype, subtype);
  if (subtype != subtypeArray) renormaliseBounds(r);
}

void changeOrder(DAG r, DAG value) {
  if (value != orderValue(cOrder) && value != orderValue(fortranOrder))
    KernelException("invalid value %1 for order option", value);
  updateFlag(r, rtableOrder, value == orderValue(cOrder) ? cOrder : fortranOrder);
}
void changeAttributes(DAG r, DAG value) {
  if (!isTag(value, LIST)) KernelException("list expected for right side of attributes option");
  updategen(value[1]);
  UpdateRTABLE(r, rtableAttributes, value[1].word);
}
void changeReadOnly(DAG r, DAG value) {
  if (value != ini("true") && value != ini("false")) KernelException("invalid value for readonly option");
  if (value == ini("true")) return updateFlag(r, rtableReadOnly, 1);
  if (rtableFlag(r, rtableReadOnly) != 0) KernelException("readonly can only be set, not cleared");
}
void refuseDatatype(DAG, DAG) { KernelException("datatype cannot be changed"); }
void refuseStorage(DAG, DAG) { KernelException("storage cannot be changed"); }

struct OptionRow {
  const char* name;
  DAG (*value)(DAG r);
  void (*change)(DAG r, DAG value);
  bool ofArrays;
};
constexpr OptionRow optionRows[] = {
    // name         value, change
    {"datatype",   [](DAG r) { return datatypeValue(r); }, refuseDatatype, true},
    {"storage",    [](DAG r) { return storageValue(r); }, refuseStorage, true},
    {"order",      [](DAG r) { return orderValue(isCOrder(r) ? cOrder : fortranOrder); }, changeOrder, true},
    {"subtype",    [](DAG r) { return subtypeValue(subtypeOf(r)); }, changeSubtype, false},
    {"attributes", [](DAG r) { return asList(r[rtableAttributes]); }, changeAttributes, true},
    {"readonly",   [](DAG r) { return truth(rtableFlag(r, rtableReadOnly) != 0); }, changeReadOnly, true},
};

const OptionRow& optionNamed(DAG name, bool isArray) {
  for (const OptionRow& row : optionRows)
    if (hasText(name, row.name) && (row.ofArrays || !isArray)) return row;
  KernelException("unrecognized option name `%1`", name);
}

DAG RTableOptions(DAG arguments, bool isArray) {
  DAG r = rtableArgument(arguments);
  if (isArray && subtypeOf(r) != subtypeArray) KernelException("Array expected");
  if (lengthOf(arguments) == 2) return GetRTableOptionList(r, !isArray, false);
  DAG values = newl2(lengthOf(arguments), EXPSEQ);
  Word at = 1;
  for (Word i = 2; i < lengthOf(arguments); ++i) {
    DAG argument = arguments[i];
    const bool changes = isTag(argument, EQUATION) && isName(argument[1]);
    if (!changes && !isName(argument)) KernelException("option name or name=value expected");
    const OptionRow& row = optionNamed(changes ? argument[1] : argument, isArray);
    if (changes) row.change(r, argument[2]);
    else values[at++] = row.value(r);
  }
  shorten(values, lengthOf(arguments), at);
  return singleMember(simpl(values));
}

}  // namespace

DAG builtin::rtable_options(const BuiltinCall& call) { return RTableOptions(call.arguments, false); }
DAG builtin::ArrayOptions(const BuiltinCall& call) { return RTableOptions(call.arguments, true); }

// ---- the view of `op`

namespace {

DAG nonZeroEquations(DAG r) {
  DAG equations = new1(EXPSEQ);
  auto add = [&](const std::int32_t* index) {
    if (!isNonZero(r, index)) return;
    DAG key = singleMember(IndexToEXPSEQ(dimensionsOf(r), index));
    equations = Append2(equations, simpl(new3(EQUATION, key, selectElement(r, index))));
  };
  if (functionCount(r) == 0) forEachEntry(r, add);
  else forEachIndex(boundsOf(r), dimensionsOf(r), add);
  return simpl(new2(SET, simpl(equations)));
}

DAG ranges(DAG r) {
  DAG result = newl2(dimensionsOf(r) + 1, EXPSEQ);
  for (Word k = 0; k < dimensionsOf(r); ++k)
    result[k + 1] = simpl(new3(RANGE, integerOf(lowerBound(r, k)), integerOf(upperBound(r, k))));
  return simpl(result);
}
DAG upperBounds(DAG r) {
  DAG result = newl2(dimensionsOf(r) + 1, EXPSEQ);
  for (Word k = 0; k < dimensionsOf(r); ++k) result[k + 1] = integerOf(upperBound(r, k));
  return simpl(result);
}

}  // namespace

std::int64_t RTableNOps(DAG r) { return subtypeOf(r) == subtypeArray ? 4 : 3; }

DAG RTableOp(std::int64_t n, DAG r) {
  if (n == 0) return subtypeValue(subtypeOf(r));
  const bool isArray = subtypeOf(r) == subtypeArray;
  if (isArray && n == 1) return indexingFunctions(r);
  switch (isArray ? n : n + 1) {
    case 2: return singleMember(isArray ? ranges(r) : upperBounds(r));
    case 3: return nonZeroEquations(r);
    case 4: return GetRTableOptionList(r, false, !isArray);
    default: improperSelector();
  }
}

}  // namespace korel
