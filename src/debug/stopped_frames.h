#pragma once
// The calls under way where the debugger has stopped, as the dialogue sees them: the calls of the dialogue itself are
// passed over. Call 0 is that of the procedure that has stopped.

#include "frame/environment.h"
#include "store/dag.h"

namespace korel {

/// Frame `k` outward from the one that has stopped; null when there are no more.
Frame* stoppedFrame(std::int64_t k);
/// The value of the statement or expression `text` among the variables of `frame`. A parameter may be assigned to: a
/// name as argument takes the value, as it does in the procedure, any other argument is replaced.
DAG evaluateIn(Frame& frame, const char* text);

}  // namespace korel
