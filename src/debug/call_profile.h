#pragma once
// The log of calls of `kernelopts(profile = true)`: a line when a procedure is entered, and one when it is left.

#include <cstdint>

#include "store/dag.h"

namespace korel {

/// `->name, depth,words,ticks` or `<-...`, while the option is set; a tick is 1/300 second of processor time.
void prtprof(bool entering, DAG name, std::int32_t depth);
void prtprof(bool entering, const char* name, std::int32_t depth);

}  // namespace korel
