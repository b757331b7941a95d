#pragma once
// What an rtable is, by its flags.

#include "store/dag.h"

namespace korel {

/// An RTABLE of the subtype Array.
bool isArrayRTable(DAG x);
/// An array of hardware floats as `hfarray` makes it: rectangular, and without indexing functions.
bool IsHFArrayRTable(DAG x);

/// x[i] := 'x[i]' for an rtable. Error: "%1 elements cannot be unassigned".
[[noreturn]] void refuseUnassignment(DAG rtable);

}  // namespace korel
