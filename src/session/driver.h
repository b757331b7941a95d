#pragma once
// The top-level driver: start, the evaluation of one statement after the other, restart, stop.

#include "store/dag.h"

namespace korel {

using ResultHandler = DAG (*)(void* context, DAG message);
using InterruptHandler = int (*)(void* context);

/// Reads the switches of the command line and starts the store. Null on success, else a message.
const char* InitializeKorel(int argc, char** argv);
/// Evaluates one statement in a fresh frame. Every outgoing message goes to `resultCB`, whose reply
/// is used; `interruptCB` is asked whether to stop. `showResults` 0 drops results; `copy` copies what
/// comes in and what is replied. Gives the statement's value, or 0.
DAG EvaluateDAG(DAG dag, ResultHandler resultCB, InterruptHandler interruptCB, int showResults, int copy,
                void* context);
/// Throws everything away and starts again, from inside an evaluation or at rest.
const char* RestartKorel();
/// Closes what is open, then ends the process.
[[noreturn]] void Exit(int code);
void CleanUpBeforeExit();
/// True after `quit` and its kin ended an `EvaluateDAG`; the exit code they gave.
bool kernelStopped(int& exitCode);

extern int optnoinit;  // -s: the start files are skipped
extern int optASSERT;  // -a, -A: assertion level, 0 to 2
extern int optfree;
extern int optprofile;
extern bool optionInline;
extern int secureMode;  // -z
extern int printgcstatus;
extern int logfiles;  // -L: descriptor of the log of library reads, or -1
extern char firstlibname[256];
extern std::int64_t korelLimitCPU, korelLimitData, korelLimitStack;

}  // namespace korel
