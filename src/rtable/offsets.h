#pragma once
// Where an element stands: the offset of an index in the block, by storage and order.
//
// A storage in the order of C is the mirrored one in that of Fortran, with rows and columns exchanged: one formula
// serves both. Indices are machine numbers within the bounds.

#include <cstdint>

#include "rtable/rtable_object.h"
#include "store/dag.h"

namespace korel {

constexpr std::int64_t notStored = -1;

using OffsetFunction = std::int64_t (*)(DAG r, const std::int32_t* index);
/// The routine for the storage, order and rank of `r`, whose storage is neither sparse nor empty.
OffsetFunction offsetFunction(DAG r);
/// Offset of the element, or `notStored`.
inline std::int64_t offsetOf(DAG r, const std::int32_t* index) { return offsetFunction(r)(r, index); }
/// Offset of the mirrored element of two dimensions, where there is one.
std::int64_t mirroredOffset(DAG r, const std::int32_t* index);
inline bool isWithinBounds(DAG r, Word k, std::int64_t i) { return i >= lowerBound(r, k) && i <= upperBound(r, k); }

}  // namespace korel
