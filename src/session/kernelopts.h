#pragma once
// The built-ins `kernelopts`, which reads and sets the state of the running kernel, and `gc`.

#include "frame/builtin_call.h"
#include "store/dag.h"

namespace korel {

namespace builtin {
/// Each argument is an option's name or the equation name = value; the values found, in order.
DAG kernelopts(const BuiltinCall& call);
/// `gc()` collects; gives the empty sequence.
DAG gc(const BuiltinCall& call);
}  // namespace builtin

/// Keeps what a restart goes back to, and goes back to it (nothing before the first call of the
/// former).
void RememberKernelOpts();
void ResetKernelOpts();

}  // namespace korel
