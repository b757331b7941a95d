#include "eval/statements/try.h"

#include <cstring>

#include "eval/statements/depth.h"
#include "eval/statements/statements.h"
#include "frame/errors.h"
#include "frame/traceback.h"
#include "store/constants.h"
#include "store/generations.h"
#include "store/object_fields.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

// What a `try` keeps over the jumps that can arrive in it.
struct TryState {
  DAG statement;
  int mode;
  EnvironmentBlock block;
  EnvironmentBlock* previous;
  std::int32_t level;  // depth of the statement's parts
  int procDepth;       // error procedures registered at the start
  DAG saved;           // the exception to put back at the end, or 0
  DAG value;
  int pending = 0;   // a jump to go on with after `finally`,
  DAG pendingValue;  // and what it carries: `finally` may call procedures that return
};

// Runs one part under a jump buffer of its own. False when it ended by an error, which is then in the
// two names.
bool runPart(TryState& t, const DAG& part) {
  std::jmp_buf buffer;
  t.block.jumpBuffer = &buffer;
  int code = ::_setjmp(buffer);
  if (code == 0) {
    Environment = &t.block;
    evaluationLevel = t.level;
    standAt(part);
    t.value = evalstat(part, t.mode);
    clearLastError();
    return true;
  }
  Environment = &t.block;
  evaluationLevel = t.level;
  switch (code) {
    case jumpReturn: case jumpBreak:
      clearLastError();
      t.pending = code;
      t.pendingValue = funret;
      updategen(funret);
      return true;
    case jumpError:
      if (SpecialError != noSpecialError) {
        --trapSet;
        RestoreEnvironment(t.previous);
        jumpOut(jumpError);
      }
      return false;
    case jumpStop: RestoreEnvironment(t.previous); jumpOut(jumpStop);
    default: notimpl("internal control flow in try-catch");
  }
}

// The field with the statements of the first catch clause for the exception, or null.
const DAG* catchSequence(DAG statement, DAG exception) {
  for (Word i = tryFirstCatch, end = catchEnd(statement); i < end; i += 2)
    if (CatchPrefix(statement[i], exception[2])) return &statement[i + 1];
  return nullptr;
}

// Runs a part in which errors are trapped. False when it ended by one.
bool runTrapped(TryState& t, const DAG& part) {
  ++trapSet;
  const bool clean = runPart(t, part);
  --trapSet;
  return clean;
}

// Runs the catch clause for the exception there is. True when there was one, and it ended without another error.
bool runCatch(TryState& t) {
  DAG exception = ini("lastexception")[1];
  const DAG* sequence = catchSequence(t.statement, exception);
  if (sequence == nullptr) return false;
  t.saved = exception;
  updategen(t.saved);
  forgetTraceLevels();
  return runTrapped(t, *sequence);
}

void setErrorNames(DAG error, DAG exception) {
  ini("lasterror")[1] = error;
  ini("lastexception")[1] = exception;
}

// The `finally` part, whatever way the others have ended. An error then goes on, whatever errors this part has met
// and dealt with.
void runFinally(TryState& t, bool clean) {
  const DAG error = ini("lasterror")[1], exception = ini("lastexception")[1];
  if (!clean) {
    // The names may hold others when the part's statements collect.
    updategen(error);
    updategen(exception);
  }
  if (hasFinally(t.statement)) {
    const DAG& part = t.statement[lengthOf(t.statement) - 1];
    standAt(part);
    t.value = evalstat(part, t.mode);
  }
  if (clean) return;
  setErrorNames(error, exception);
  jumpOut(jumpError);
}

}  // namespace

bool CatchPrefix(DAG a, DAG b) {
  if (isSequence(a)) {
    if (isEmptySequence(a)) return true;
    for (Word i = 1; i < lengthOf(a); ++i)
      if (CatchPrefix(a[i], b)) return true;
    return false;
  }
  if (isTag(b, EXPSEQ)) {
    for (Word i = 1; i < lengthOf(b); ++i)
      if (CatchPrefix(a, b[i])) return true;
    return false;
  }
  const char* prefix = textOf(a);
  return std::strncmp(prefix, textOf(b), std::strlen(prefix)) == 0;
}

DAG tryStatement(DAG statement, int mode) {
  TryState t;
  t.statement = statement;
  t.mode = mode;
  t.value = DAG();
  evaluationLevel += branchLevels;
  t.level = evaluationLevel;
  t.saved = ini("lastexception")[1];
  if (t.saved) updategen(t.saved);
  std::jmp_buf unused;
  t.previous = enterEnvironment(t.block, unused);
  bool clean = runTrapped(t, statement[tryBody]);
  if (!clean) clean = runCatch(t);
  RestoreEnvironment(t.previous);
  evaluationLevel = t.level;
  runFinally(t, clean);
  if (t.pending != 0) jumpOutWith(static_cast<JumpCode>(t.pending), t.pendingValue);
  evaluationLevel = t.level - branchLevels;
  if (t.saved) setErrorNames(t.saved[2], t.saved);
  return t.value ? t.value : null;
}

}  // namespace korel
