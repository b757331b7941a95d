#pragma once
// Shapes: what an indexing function reads at each position, and which values it lets through.
//
// A shape stands before a base: the storage, or, in a ring of several functions, the next member. A value that
// passes is stored where the base has a cell for it, and nowhere else. One row for each function and group of ranks.

#include "rtable/element_access.h"
#include "store/dag.h"

namespace korel {

/// Access to the element through the first indexing function of `a.r`. Errors: those of the shape, as "attempt to
/// assign to lower triangle of upper triangular rtable", and of plain access.
DAG selectShaped(Access& a);
void assignShaped(Access& a, DAG value);

/// Whether the first function leaves the element at the position to the base: false off a triangle, diagonal or band.
bool isOpenPosition(const Access& a);

/// The part that the function gives the names of routines, and whether these tell the rank.
struct ShapeName {
  const char* part;
  bool hasRank;
};
ShapeName shapeName(DAG r);

}  // namespace korel
