#pragma once
// What the driver and the output funnel share about the evaluation that is under way.

#include <csetjmp>
#include <cstdint>

#include "session/driver.h"

namespace korel {

struct DriverState {
  int depth = 0;              // active `EvaluateDAG` calls
  void** contexts = nullptr;  // client context of each depth, from 1 on
  int contextCapacity = 0;
  ResultHandler resultCB = nullptr;
  InterruptHandler interruptCB = nullptr;
  bool resultsWanted = true;  // from the outermost call
  bool copyReplies = false;   // from the innermost call
  std::int32_t exitCode = 0;  // of the call that stops the kernel
  bool stopped = false;
  std::jmp_buf topLevel;  // depth 1
  std::jmp_buf restart;
};
extern DriverState driver;
/// What the client gave for the evaluation under way, or for the one that is about to begin or end.
inline void* currentContext() { return driver.contexts[driver.depth > 0 ? driver.depth - 1 : 0]; }

/// Hands `x` to the result handler at the present depth; gives the reply.
DAG callResultHandler(DAG x);

}  // namespace korel
