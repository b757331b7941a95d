#pragma once
// Replacement of whole subexpressions, found by their word.

#include "store/dag.h"

namespace korel {

/// `x` with every subexpression that is the left side of an equation replaced by its right side, all
/// at once; not simplified. `equations` is an EXPSEQ of EQUATION. `x` itself when nothing matches.
DAG substituteInCopy(DAG equations, DAG x);

}  // namespace korel
