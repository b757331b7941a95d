#include "frame/traceback.h"

#include "eval/simplify/simplify.h"
#include "frame/errors.h"
#include "frame/output.h"
#include "frame/trace_messages.h"
#include "store/collect/collector.h"
#include "store/constants.h"
#include "store/generations.h"
#include "store/names.h"
#include "store/objects.h"

namespace korel {

std::int32_t ErrorLevel = 0;
DAG TraceBackArgs[maxTraceLevels], TraceBackFunctname[maxTraceLevels], TraceBackProc[maxTraceLevels],
    TraceBackStat[maxTraceLevels];
DAG TraceBackCurrstat, TraceBackCurrproc, TraceBackLocals;
const DAG* reportedPlace = nullptr;

namespace {

// The store refers to objects that a collection may take: it is good until the mark moves.
std::int64_t recordedMark = -1;
DAG recordedException;

const DAG* tracePlace[maxTraceLevels];  // where each of the statements stands

bool collectedSince() { return nextgc != recordedMark; }

// On its way to the top an error passes `finally` parts, whose statements end and collect: until it has
// arrived, what it noted stays alive.
bool onItsWay = false;

void walkNotedLevels(Visitor visit) {
  if (!onItsWay) return;
  for (DAG noted : {TraceBackCurrstat, TraceBackCurrproc, TraceBackLocals}) visit(noted);
  for (std::int32_t i = 0; i < ErrorLevel; ++i)
    for (DAG noted : {TraceBackArgs[i], TraceBackFunctname[i], TraceBackProc[i], TraceBackStat[i]}) visit(noted);
}

/// The locals of the innermost level as equations, name = value; a name without a value stands for
/// itself.
DAG localEquations(DAG locals) {
  Word count = 0;
  for (Word i = 1; i < lengthOf(locals); ++i) count += hasTag(locals[i], NAME);
  DAG equations = newl2(count + 1, EXPSEQ);
  for (Word i = 1, k = 1; i < lengthOf(locals); ++i) {
    DAG local = locals[i];
    if (!hasTag(local, NAME)) continue;
    equations[k++] = new3(EQUATION, local, local[1] ? local[1] : local);
  }
  return equations;
}

}  // namespace

void initializeTraceback() { registerRootWalker(walkNotedLevels); }

bool recordTraceLevel(const Frame& frame) {
  if (ErrorLevel >= maxTraceLevels) return false;
  if (ErrorLevel == 0) {
    TraceBackCurrstat = frame.currentStatement;
    TraceBackCurrproc = frame.proc;
    TraceBackLocals = frame.locals;
  }
  onItsWay = true;
  int level = ErrorLevel++;
  TraceBackArgs[level] = simpl(frame.args);
  TraceBackFunctname[level] = simpl(frame.procName);
  TraceBackProc[level] = frame.proc;
  TraceBackStat[level] = frame.currentStatement;
  tracePlace[level] = frame.currentPlace;
  return level == 0;
}

void forgetTraceLevels() { onItsWay = false; }

void RecordTraceBackState() {
  onItsWay = false;
  recordedMark = nextgc;
  recordedException = ini("lastexception")[1];
  if (!recordedException) recordedException = naminstall("unknown error");
}

void TraceBack(std::int32_t level) {
  if (collectedSince()) KernelException("traceback information for last error is no longer available");
  // The reader of a message may run statements of its own: a collection there ends the report.
  for (int i = ErrorLevel - 1; level > 1 && i >= 0 && !collectedSince(); --i) {
    reportedPlace = tracePlace[i];
    sendDebug(debugTraceLevel, TraceBackFunctname[i], TraceBackArgs[i], TraceBackProc[i], TraceBackStat[i]);
    if (level == 2) break;
  }
  if (collectedSince()) return;
  sendDebug(debugException, recordedException);
  if (level > 1 && ErrorLevel > 0 && isObject(TraceBackLocals) && !collectedSince()) {
    DAG equations = localEquations(TraceBackLocals);
    if (lengthOf(equations) > 1) sendDebug(debugLocals, equations);
  }
}

}  // namespace korel
