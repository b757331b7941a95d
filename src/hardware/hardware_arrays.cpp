#include "hardware/hardware_arrays.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "eval/evaluate/environment_variables.h"
#include "eval/simplify/simplify.h"
#include "eval/tables/tables.h"
#include "frame/errors.h"
#include "hardware/hardware_value.h"
#include "hardware/interpreter.h"
#include "numbers/float/float.h"
#include "numbers/integer/integer_functions.h"
#include "rtable/create.h"
#include "rtable/element_access.h"
#include "rtable/rtable_kind.h"
#include "rtable/selection.h"
#include "rtable/stored_positions.h"
#include "store/hash.h"
#include "store/object_fields.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

// References stand in rtables of fewer words than this.
constexpr Word longestLoadedRTable = 130;
constexpr int hfarrayDimensions = 64;

DAG newHardwareArray(std::int32_t* bounds, Word n, Word order) {
  RTableSettings settings;
  settings.datatype = dataFloat64;
  settings.order = order;
  settings.dimensions = static_cast<int>(n);
  return RTableCreate(settings, DAG(), bounds, DataMode::cleared);
}

double* dataOfArray(DAG array) { return reinterpret_cast<double*>(dataOf(array)); }

// ---- elements

// Offset of the element in the array's order; the numbers are within the bounds.
std::int64_t offsetIn(DAG array, const std::int32_t* index) {
  const Word n = dimensionsOf(array);
  std::int64_t offset = 0;
  for (Word i = 0; i < n; ++i) {
    const Word k = isCOrder(array) ? i : n - 1 - i;
    offset = offset * extentOf(array, k) + (index[k] - lowerBound(array, k));
  }
  return offset;
}

double* placeAt(DAG array, const std::int32_t* index) { return dataOfArray(array) + offsetIn(array, index); }

}  // namespace

void refuseIndex() { KernelException("array reference out of bounds in evalhf"); }

void checkIndexCount(DAG array, Word count) {
  if (count < dimensionsOf(array)) KernelException("sub-arrays cannot be selected in evalhf");
  if (count > dimensionsOf(array)) KernelException("array used with too many indices in evalhf");
}

double* arrayElement(DAG array, const double* index) {
  std::int32_t numbers[maxDimensions];
  for (Word k = 0, n = dimensionsOf(array); k < n; ++k) {
    const double i = std::trunc(index[k]);
    if (!(i >= lowerBound(array, k) && i <= upperBound(array, k))) refuseIndex();
    numbers[k] = static_cast<std::int32_t>(i);
  }
  return placeAt(array, numbers);
}

double* hfarrayref(DAG array, DAG index) {
  const Word n = isSequence(index) ? memberCount(index) : 1;
  checkIndexCount(array, n);
  double numbers[maxDimensions];
  for (Word k = 0; k < n; ++k) numbers[k] = hfevalToNumeric(isSequence(index) ? index[k + 1] : index);
  return arrayElement(array, numbers);
}

void requireWritable(DAG array) {
  if (rtableFlag(array, rtableReadOnly) != 0) KernelException("cannot assign to a readonly %1", subtypeWord(array));
}

// ---- new arrays

namespace {

[[noreturn]] void invalidDefinition() { KernelException("evalhf: invalid array definition"); }

std::int32_t dimensionBound(double bound) {
  if (!std::isfinite(bound)) KernelException("evalhf: hfarray dimensions must be defined and finite");
  if (bound != std::trunc(bound) || std::fabs(bound) >= 2147483647.0)
    KernelException("evalhf: hfarray dimensions too large or non-integer");
  return static_cast<std::int32_t>(bound);
}

struct ArrayShape {
  int n = 0;
  DAG values;  // LIST, or 0
  std::int32_t bounds[2 * hfarrayDimensions];
};

void addDimension(ArrayShape& shape, std::int32_t lower, std::int32_t upper) {
  if (std::int64_t{upper} - lower + 1 < 0)
    KernelException("evalhf: hfarray must have a non-negative size in each dimension");
  if (shape.n + 1 == hfarrayDimensions) KernelException("hfarrays are limited to 64 dimensions");
  shape.bounds[2 * shape.n] = lower;
  shape.bounds[2 * shape.n + 1] = upper;
  ++shape.n;
}

// A range or list, or what a name holds.
DAG shapePart(DAG x) {
  if (isName(x)) x = valuenv(x, true);
  if (!isTag(x, RANGE) && !isTag(x, LIST)) invalidDefinition();
  return x;
}

void readShape(ArrayShape& shape, DAG arguments) {
  for (Word i = 1; i <= memberCount(arguments); ++i) {
    DAG part = shapePart(arguments[i]);
    if (isTag(part, LIST)) {
      if (shape.values || i != memberCount(arguments)) invalidDefinition();
      shape.values = part;
      continue;
    }
    const double lower = hfevalToNumeric(part[1]), upper = hfevalToNumeric(part[2]);
    const std::int32_t lowest = dimensionBound(lower);
    addDimension(shape, lowest, dimensionBound(upper));
  }
  if (shape.n != 0) return;
  if (!shape.values) invalidDefinition();
  for (DAG at = shape.values; isTag(at, LIST); at = isEmptySequence(at[1]) ? DAG() : at[1][1])
    addDimension(shape, 1, static_cast<std::int32_t>(memberCount(at[1])));
}

void checkSize(const ArrayShape& shape) {
  constexpr double mostElements = 268435455;
  double count = 1;
  for (int k = 0; k < shape.n; ++k) count *= static_cast<double>(extentOf(shape.bounds, static_cast<Word>(k)));
  if (count > mostElements) KernelException("evalhf: hfarray dimensions too large");
}

// Values of the list at depth `k`, one for each index from the lower bound on.
void fillFromList(DAG array, DAG list, Word k, std::int32_t* index) {
  const Word n = dimensionsOf(array);
  index[k] = lowerBound(array, k);
  for (Word i = 1; i <= memberCount(list[1]); ++i, ++index[k]) {
    DAG value = list[1][i];
    if (isTag(value, EQUATION)) {
      *hfarrayref(array, isTag(value[1], LIST) ? value[1][1] : value[1]) = hfevalToNumeric(value[2]);
      continue;
    }
    if (index[k] > upperBound(array, k)) invalidDefinition();
    if (k + 1 < n) {
      if (!isTag(value, LIST)) invalidDefinition();
      fillFromList(array, value, k + 1, index);
    } else {
      *placeAt(array, index) = hfevalToNumeric(value);
    }
  }
}

}  // namespace

double hfarray(DAG arguments) {
  ArrayShape shape;
  readShape(shape, asSequence(arguments));
  checkSize(shape);
  DAG array = newHardwareArray(shape.bounds, static_cast<Word>(shape.n), cOrder);
  std::int32_t index[maxDimensions];
  if (shape.values) fillFromList(array, shape.values, 0, index);
  return hfarraytohf(array);
}

// ---- loaded arrays

namespace {

struct LoadedArray {
  DAG container;
  double value;
};
LoadedArray* loaded = nullptr;
int loadedCapacity = 0;
LoadedArrays present{0, 0};

const LoadedArray* loadedFrom(DAG container) {
  for (int i = present.base; i < present.count; ++i)
    if (loaded[i].container == container) return &loaded[i];
  return nullptr;
}

double noteLoaded(DAG container, DAG array) {
  if (present.count == loadedCapacity) {
    loadedCapacity = std::max(64, 2 * loadedCapacity);
    auto* more = static_cast<LoadedArray*>(std::realloc(loaded, sizeof(LoadedArray) * loadedCapacity));
    if (more == nullptr) std::abort();
    loaded = more;
  }
  loaded[present.count++] = {container, hfarraytohf(array)};
  return hfarraytohf(array);
}

void readTableBounds(DAG table, ArrayShape& shape) {
  DAG ranges = asSequence(table[tableBounds]);
  for (Word k = 1; k <= memberCount(ranges); ++k) {
    const std::int32_t lower = dimensionBound(IntegerToDouble(ranges[k][1]));
    addDimension(shape, lower, dimensionBound(IntegerToDouble(ranges[k][2])));
  }
  checkSize(shape);
}

}  // namespace

LoadedArrays openLoadedArrays() {
  LoadedArrays before = present;
  present.base = present.count;
  return before;
}
void closeLoadedArrays(LoadedArrays before) { present = before; }

double hfloadarray(DAG table) {
  if (!isArrayTable(table)) KernelException("unable to manipulate tables in evalhf");
  if (table[tableFunction] != null) KernelException("evalhf cannot handle arrays with indexing functions");
  if (const LoadedArray* known = loadedFrom(table)) return known->value;
  ArrayShape shape;
  readTableBounds(table, shape);
  DAG array = newHardwareArray(shape.bounds, static_cast<Word>(shape.n), cOrder);
  DAG entries = table[tableEntries];
  for (Word bucket = 1; bucket < lengthOf(entries); ++bucket) {
    if (!entries[bucket]) continue;
    visitChain(entries[bucket], [array](PairAddress pair) {
      const double value = hfevalToNumeric(pairValue(pair));
      *hfarrayref(array, pairKey(pair)) = value;
      return true;
    });
  }
  return noteLoaded(table, array);
}

double hfloadrtable(DAG rtable) {
  if (lengthOf(rtable) >= longestLoadedRTable) KernelException("cannot evaluate %1 in evalhf", rtable);
  if (IsHFArrayRTable(rtable)) return hfarraytohf(rtable);
  if (const LoadedArray* known = loadedFrom(rtable)) return known->value;
  DAG array = newHardwareArray(boundsOf(rtable), dimensionsOf(rtable), isCOrder(rtable) ? cOrder : fortranOrder);
  auto copyElement = [=](const std::int32_t* index) {
    DAG element = selectElement(rtable, index);
    *placeAt(array, index) = element ? hfevalToNumeric(element) : 0.0;
  };
  if (functionCount(rtable) != 0) forEachIndex(boundsOf(rtable), dimensionsOf(rtable), copyElement);
  else forEachEntry(rtable, copyElement);
  return noteLoaded(rtable, array);
}

void writeBackArray(DAG array, DAG container) {
  if (isTag(container, TABLE)) {
    forEachIndex(boundsOf(array), dimensionsOf(array), [=](const std::int32_t* index) {
      DAG key = tableKey(IndexToEXPSEQ(dimensionsOf(array), index));
      storeEntry(key, container, expressionOf(*placeAt(array, index)));
    });
    return;
  }
  requireWritable(container);
  forEachStoredPosition(container, [=](const std::int32_t* index) {
    assignElement(container, index, expressionOf(*placeAt(array, index)));
  });
}

}  // namespace korel
