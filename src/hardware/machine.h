#pragma once
// Procedures as compiled code.

#include "store/dag.h"

namespace korel {

/// Runs `procedure`, which `calleeOf` has checked, on `count` arguments, which belong to the call from now on.
double runProcedure(DAG procedure, double* arguments, int count);

}  // namespace korel
