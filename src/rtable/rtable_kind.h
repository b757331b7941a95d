#pragma once
// What an rtable is, by its flags.

#include "store/dag.h"

namespace korel {

/// An RTABLE of the subtype Array.
bool isArrayRTable(DAG x);
/// An array of hardware floats as `hfarray` makes it: rectangular, and without indexing functions.
bool IsHFArrayRTable(DAG x);

/// r[index...] for integers within the bounds of an rtable without indexing functions: the way of loops, on which no
/// sequence is made. Anything else gives 0.
DAG elementAtIntegers(DAG r, const DAG* index, Word n);
/// r[index] := value for one integer within the bounds; false when it is anything else.
bool storeAtInteger(DAG r, DAG index, DAG value);

/// What loops over `rtable` run over, as a LIST that nobody else holds, not simplified: the elements that it has now,
/// the first index fastest; of sparse storage the entries; without data nothing.
DAG elementsOf(DAG rtable);

/// A writable copy whose elements are what `change` makes of those of `r`; `r` itself when none changes.
DAG RTableModifyIntoCopy(DAG r, DAG (*change)(DAG element, void* state), void* state);
/// A copy with the float value of each element: in the format of the hardware where `rtable` has it and
/// `UseHardwareFloats` is true, else with the element type `sfloat` when all values are such.
DAG RTableEvalf(DAG rtable);
/// The subtype of `rtable` as messages call it: Array, Matrix, Vector.
DAG rtableWord(DAG rtable);

/// x[i] := 'x[i]' for an rtable. Error: "%1 elements cannot be unassigned".
[[noreturn]] void refuseUnassignment(DAG rtable);

}  // namespace korel
