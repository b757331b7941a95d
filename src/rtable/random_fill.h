#pragma once
// Random elements: the initializers random(range, density) and frandom(range, density).
//
// The generator is the linear congruential one of 48 bits that rand48 uses (Knuth, vol. 2, 3.3.4). It begins anew with
// each start of the kernel.

#include "store/dag.h"

namespace korel {

/// Draws elements of `r`, which has its fill. `arguments` are those of the call: a range, a density, both in any order,
/// or none. Errors: "too many parameters to random()", "invalid argument to random(), %1", "random density must be
/// between 0 and 1", "integer range expected", "inverted range in random()", "inverted or empty range in random()".
void RandomizeRTable(DAG r, DAG arguments, bool isFloat);
void ResetRTableRand();

}  // namespace korel
