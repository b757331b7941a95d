#pragma once
// The kernel in a process of its own, for `korelTTY --kernel`: this side parses and prints, that side evaluates.
//
// When the process dies the session says so and goes on: the next statement is for a fresh one.

#include "session/link/arguments.h"
#include "store/dag.h"

namespace korel {

/// Divides a command line: the kernel process gets all switches, this process those that don't make it do or suffer
/// what is the other's, and the operands.
void divideArguments(int argc, char** argv, Args& own, Args& kernel);
/// Starts the process and has it read its start files. Null, or a message. `interrupted` is asked when a signal comes.
const char* openRemoteKernel(const Args& args, int (*interrupted)(void*));
/// As `EvaluateDAG`, in the process.
void evaluateRemotely(DAG statement, int showResults);
/// As `kernelStopped`.
bool remoteKernelStopped(int& exitCode);
void closeRemoteKernel();

}  // namespace korel
