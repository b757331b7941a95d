#pragma once
// The terminal's side of the kernel's output: each stream as text.
//
// Everything goes to standard output, in order, or to a file while output is redirected. What the
// kernel asks for (settings, a line of input) is answered here.

#include "store/dag.h"

namespace korel {

/// The result handler that the program gives the kernel; `context` is not used. Gives the reply.
DAG handleMessage(void* context, DAG message);
/// Sends what has been written on its way.
void flushOutput();

}  // namespace korel
