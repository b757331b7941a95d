#pragma once
// Reading a statement under a frame of its own, for programs that give the kernel text.

#include "session/driver.h"
#include "store/dag.h"

namespace korel {

/// Runs `reader`, a call of the parser, as `EvaluateDAG` runs a statement: an error that leaves it
/// is reported through `resultCB` and the result is `null`. Otherwise what `reader` gave.
DAG ReadStatement(DAG (*reader)(), ResultHandler resultCB, InterruptHandler interruptCB, void* context);

}  // namespace korel
