#pragma once
// The built-in `kernelopts`: reading and setting the state of the running kernel.

#include "frame/builtin_call.h"
#include "store/dag.h"

namespace korel {

namespace builtin {
/// Each argument is an option's name or the equation name = value; the values found, in order.
DAG kernelopts(const BuiltinCall& call);
}  // namespace builtin

/// Keeps what a restart goes back to, and goes back to it (nothing before the first call of the
/// former).
void RememberKernelOpts();
void ResetKernelOpts();

}  // namespace korel
