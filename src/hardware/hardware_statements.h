#pragma once
// What the plain walk and the compiler share about statements: forms and refusals.

#include "store/dag.h"

namespace korel {

/// The statement in a STATSEQ of one, which may be nested; any other as it is.
DAG onlyStatement(DAG statement);

[[noreturn]] void refuseAssignmentTo(DAG name);
[[noreturn]] void refuseAssignment();
[[noreturn]] void refuseMultipleAssignment();
[[noreturn]] void refuseLoopVariable();
[[noreturn]] void refuseContainerLoop();
/// Raises the error of a statement `error` with these arguments, their values as expressions; without any the last
/// error again.
[[noreturn]] void raiseHardwareError(DAG arguments);

}  // namespace korel
