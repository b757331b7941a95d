#pragma once
// Calls: from a FUNCTION to the procedure it names, its frame, and its end.

#include "store/dag.h"

namespace korel {

/// Value of the FUNCTION `x`: the result of the procedure that its head names, or the call with its parts evaluated.
DAG evalFunction(DAG x);
/// Runs procedure `proc` on evaluated arguments, called as `name`.
DAG evalfunc(DAG proc, DAG arguments, DAG name);

}  // namespace korel
