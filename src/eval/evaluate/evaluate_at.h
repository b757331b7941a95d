#pragma once
// `eval(x, a = b)`: evaluation at a point.

#include "store/dag.h"

namespace korel {

/// `x` at the point that `equations`, an EXPSEQ of equations, tells.
DAG evalat(DAG equations, DAG x);

}  // namespace korel
