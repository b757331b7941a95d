#pragma once
// The positions that an rtable keeps: a walk that leaves out what has no cell, and what its shape knows without one.

#include <algorithm>

#include "numbers/integer/integer.h"
#include "rtable/rtable_object.h"
#include "rtable/selection.h"

namespace korel {

/// Whether the storage of `r` has a cell for the position, in the part of the index space that the shape leaves open.
bool isStoredPosition(DAG r, const std::int32_t* index);

/// The entries of a sparse rtable as an EXPSEQ of index sequences, simplified.
DAG sparseIndices(DAG r);

/// The columns of row `i` among which a storage of two dimensions has its cells.
struct Columns {
  std::int32_t first, last;
};
Columns columnsOfRow(DAG r, std::int32_t i);

/// Calls `visit(index)` on each position that `r` keeps, or in sparse storage could keep, the first dimension slowest.
template <class Visit>
void forEachStoredPosition(DAG r, Visit visit) {
  const Word n = dimensionsOf(r), storage = storageOf(r);
  std::int32_t index[maxDimensions];
  auto visitStored = [&](const std::int32_t* at) {
    if (isStoredPosition(r, at)) visit(at);
  };
  if (storage == storageEmpty || hasNoPositions(r)) return;
  if (storage == storageDiagonal && n != 0) {
    for (Word at = 1; at <= rawField(r, rtableCount); ++at) {
      std::fill(index, index + n, static_cast<std::int32_t>(at));
      visitStored(index);
    }
  } else if (n == 2 && storage != storageSparse && storage != storageScalar && storage != storageRectangular) {
    for (std::int64_t i = 1; i <= upperBound(r, 0); ++i) {
      index[0] = static_cast<std::int32_t>(i);
      const Columns columns = columnsOfRow(r, index[0]);
      for (std::int64_t j = columns.first; j <= columns.last; ++j) {
        index[1] = static_cast<std::int32_t>(j);
        visitStored(index);
      }
    }
  } else {
    forEachIndex(boundsOf(r), n, visitStored);
  }
}
/// The same for an rtable whose elements are read: of sparse storage without functions only the entries.
template <class Visit>
void forEachEntry(DAG r, Visit visit) {
  if (storageOf(r) != storageSparse || functionCount(r) != 0) return forEachStoredPosition(r, visit);
  DAG indices = sparseIndices(r);
  for (Word i = 1; i < lengthOf(indices); ++i) {
    std::int32_t index[maxDimensions];
    for (Word k = 0; k < dimensionsOf(r); ++k) index[k] = static_cast<std::int32_t>(LongLongValue(indices[i][k + 1]));
    visit(static_cast<const std::int32_t*>(index));
  }
}

}  // namespace korel
