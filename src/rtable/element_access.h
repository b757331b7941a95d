#pragma once
// Reading and writing one element: plain access by storage, and the step to the shapes before it.
//
// Indices are machine numbers within the bounds, which nobody checks here (selection.h does). The sequence of an
// index is made when it is asked for: for the key of a hash table, for a procedure of the user, for a message.

#include <cstdint>

#include "rtable/rtable_object.h"
#include "store/dag.h"

namespace korel {

/// An element of one member of a ring.
struct Access {
  DAG r;
  const std::int32_t* index;
  DAG sequence;  // EXPSEQ of the index, simplified; 0 until it is made
};
DAG sequenceOf(Access& a);

/// The element; 0 for an object that was never set.
DAG selectElement(Access a);
void assignElement(Access a, DAG value);
inline DAG selectElement(DAG r, const std::int32_t* index) { return selectElement({r, index, DAG()}); }
inline void assignElement(DAG r, const std::int32_t* index, DAG value) { assignElement({r, index, DAG()}, value); }

/// The same past the indexing functions. Errors: "unable to lookup index (%0) -- not in storage", "unable to store
/// value at index (%0) -- no storage", those of the conversion.
DAG selectPlain(Access& a);
void assignPlain(Access& a, DAG value);
/// Sparse storage keeps only the other half of where the index stands.
bool isInMissingHalf(const Access& a);

/// An EXPSEQ of integers, simplified.
DAG IndexToEXPSEQ(Word n, const std::int32_t* index);

/// The name of the routine that an access to `r` takes, put together from the axes: `selectTWODRectFortran`.
/// At most `routineNameLength` characters and a zero.
constexpr int routineNameLength = 80;
void accessRoutineName(DAG r, bool assigns, char* name);

}  // namespace korel
