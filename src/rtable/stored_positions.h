#pragma once
// The positions that an rtable keeps: a walk that leaves out what has no cell, and what its shape knows without one.

#include "numbers/integer/integer.h"
#include "rtable/rtable_object.h"
#include "rtable/selection.h"

namespace korel {

/// Whether the storage of `r` has a cell for the position, in the part of the index space that the shape leaves open.
bool isStoredPosition(DAG r, const std::int32_t* index);

/// The entries of a sparse rtable as an EXPSEQ of index sequences, simplified.
DAG sparseIndices(DAG r);

/// Calls `visit(index)` on each position that `r` keeps, or in sparse storage could keep, the first dimension slowest.
template <class Visit>
void forEachStoredPosition(DAG r, Visit visit) {
  forEachIndex(boundsOf(r), dimensionsOf(r), [&](const std::int32_t* index) {
    if (isStoredPosition(r, index)) visit(index);
  });
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
