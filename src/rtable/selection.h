#pragma once
// x[i, j, ...] and x[i, j, ...] := v: checked indices, negative ones, and blocks by ranges and lists.

#include <cstdint>

#include "rtable/rtable_object.h"
#include "store/dag.h"

namespace korel {

/// Writes the integers of `index`, an EXPSEQ, to `numbers`. Errors: "integer indices required for %1", "%1 index out
/// of range", "number of indices does not match rank".
void CheckBounds(DAG r, DAG index, std::int32_t* numbers);
/// The same; false in place of the range error.
bool IsInBounds(DAG r, DAG index, std::int32_t* numbers);

/// The indices of one dimension that a block takes.
struct Span {
  bool isSingle;  // the dimension is none of the block's
  std::int32_t lower, upper;
  DAG list;  // EXPSEQ of integers in place of the bounds, or 0
  std::int64_t count() const { return list ? std::int64_t{lengthOf(list)} - 1 : std::int64_t{upper} - lower + 1; }
};
struct IndexedBlock {
  Word dimensions;
  Word rank;  // dimensions of the block; 0: one element
  Span spans[maxDimensions];
};
/// Errors: "number of indices exceeds rank", "bad index into %1", "%1 index out of range", "inverted range in %1
/// index", "non-integer ranges in %1 index", "Matrix requires two indices", "Vector requires one index".
void expandIndex(DAG r, DAG index, IndexedBlock& selection);

/// Value of r[index]: an element (0 for one that was never set), or a block as a new rtable.
DAG SelectFromRTable(DAG r, DAG index);
/// Stores `value`, or its elements. Errors: "recursive assignment", "cannot assign to a read-only %1", "rank of left
/// hand side does not match rank of right hand side", "number of indices does not match rank".
void AssignToRTable(DAG r, DAG index, DAG value);
/// The expanded members of `index`, as an EXPSEQ.
DAG RTableNormalizeIndex(DAG r, DAG index);

/// Calls `visit(index)` on every position within the bounds, the first dimension slowest.
template <class Visit>
void forEachIndex(const std::int32_t* bounds, Word n, Visit visit) {
  std::int32_t index[maxDimensions];
  for (Word k = 0; k < n; ++k) {
    if (bounds[2 * k + 1] < bounds[2 * k]) return;
    index[k] = bounds[2 * k];
  }
  for (;;) {
    visit(static_cast<const std::int32_t*>(index));
    Word k = n;
    while (k > 0 && index[k - 1] == bounds[2 * k - 1]) {
      index[k - 1] = bounds[2 * k - 2];
      --k;
    }
    if (k == 0) return;
    ++index[k - 1];
  }
}

}  // namespace korel
