#pragma once
// What the frames of procedures and of module definitions share.

#include "frame/environment.h"
#include "store/dag.h"

namespace korel {

/// Fresh instances of the declared names, with `attribute` on each.
DAG freshLocals(DAG declarations, DAG attribute);
/// Gives back the instances that nothing can refer to, and their sequence.
void releaseLocals(DAG locals);
/// The print level that a frame of `procedure` starts with.
std::int32_t framePrintLevel(DAG procedure);

}  // namespace korel
