#pragma once
// Walks over the name table: the names with and without values.

#include "store/dag.h"

namespace korel {

/// The names that have got a value, as an EXPSEQ: all, or those whose value is of the type `kind`.
DAG assignedNames();
DAG namesAssigned(DAG kind);
/// The names without one, but for those known from the start.
DAG unassignedNames();

}  // namespace korel
