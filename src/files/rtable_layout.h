#pragma once
// The order in which the places of an rtable are printed and read: by rows, or along the diagonals of a band.

#include <algorithm>
#include <cstdint>

#include "rtable/rtable_object.h"
#include "rtable/stored_positions.h"

namespace korel {

/// Calls `visit(index, level)` on all places, the last index fastest, or the first when `transposed`. `level` tells how
/// many of the fastest indices have reached their end there: 0 within a row.
template <class Visit>
void forEachInRows(DAG r, bool transposed, Visit visit) {
  const Word n = dimensionsOf(r);
  std::int32_t index[maxDimensions];
  for (Word k = 0; k < n; ++k) {
    if (extentOf(r, k) <= 0) return;
    index[k] = lowerBound(r, k);
  }
  auto axis = [&](Word fast) { return transposed ? fast : n - 1 - fast; };  // the fastest one is 0
  for (;;) {
    Word level = 0;
    while (level < n && index[axis(level)] == upperBound(r, axis(level))) ++level;
    visit(static_cast<const std::int32_t*>(index), level);
    if (level == n) return;
    for (Word k = 0; k < level; ++k) index[axis(k)] = lowerBound(r, axis(k));
    ++index[axis(level)];
  }
}

/// Whether the storage has no cell for the place, so that it reads as 0.
inline bool lacksCell(DAG r, const std::int32_t* index) {
  return storageOf(r) != storageRectangular && storageOf(r) != storageSparse && functionCount(r) == 0 &&
         !isStoredPosition(r, index);
}

/// Diagonals below and above the main one that the storage of a matrix keeps.
struct Band {
  std::int64_t below, above;
};
inline Band bandOf(DAG r) {
  const std::int64_t allBelow = std::max<std::int64_t>(extentOf(r, 0) - 1, 0);
  const std::int64_t allAbove = std::max<std::int64_t>(extentOf(r, 1) - 1, 0);
  switch (storageOf(r)) {
    case storageBand: return {tailOf(r, 2), tailOf(r, 1)};
    case storageDiagonal: return {0, 0};
    case storageUpper: return {0, allAbove};
    case storageStrictUpper: return {-1, allAbove};
    case storageUpperHessenberg: return {1, allAbove};
    case storageLower: return {allBelow, 0};
    case storageStrictLower: return {allBelow, -1};
    case storageLowerHessenberg: return {allBelow, 1};
    default: return {allBelow, allAbove};
  }
}

/// Calls `visit(index, isLast)` on the places of those diagonals, one after the other, the uppermost one first unless
/// `upwards`; `isLast` on its diagonal. `r` has two dimensions.
template <class Visit>
void forEachOnDiagonals(DAG r, bool upwards, Visit visit) {
  const Band band = bandOf(r);
  const std::int64_t rows = extentOf(r, 0), columns = extentOf(r, 1);
  for (std::int64_t step = 0; step <= band.above + band.below; ++step) {
    const std::int64_t diagonal = upwards ? step - band.below : band.above - step;  // column less row
    const std::int64_t first = std::max<std::int64_t>(0, -diagonal), end = std::min(rows, columns - diagonal);
    for (std::int64_t row = first; row < end; ++row) {
      const std::int32_t index[2] = {static_cast<std::int32_t>(lowerBound(r, 0) + row),
                                     static_cast<std::int32_t>(lowerBound(r, 1) + row + diagonal)};
      visit(index, row == end - 1);
    }
  }
}

}  // namespace korel
