#pragma once
// The traceback store: what each procedure frame noted as the last error passed it.

#include "frame/environment.h"
#include "store/dag.h"

namespace korel {

constexpr int maxTraceLevels = 50;
extern std::int32_t ErrorLevel;  // recorded levels
extern DAG TraceBackArgs[maxTraceLevels], TraceBackFunctname[maxTraceLevels], TraceBackProc[maxTraceLevels],
    TraceBackStat[maxTraceLevels];
extern DAG TraceBackCurrstat, TraceBackCurrproc, TraceBackLocals;
/// The field in which the statement of the level stands that is being reported; only its address is good.
extern const DAG* reportedPlace;

/// Tells the collector what to keep of the store; part of the start.
void initializeTraceback();
/// Records one procedure frame that the error is leaving; true when it was the innermost.
bool recordTraceLevel(const Frame& frame);
/// The error that was on its way has been caught: what it noted need not stay alive.
void forgetTraceLevels();
/// Keeps the collection mark and the exception that the store belongs to.
void RecordTraceBackState();
/// Reports the last error: the exception, and above level 1 the calls and locals as well.
void TraceBack(std::int32_t level);

}  // namespace korel
