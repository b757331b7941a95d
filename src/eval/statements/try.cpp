#include "eval/statements/try.h"

#include <cstring>

#include "eval/statements/statements.h"
#include "frame/environment.h"
#include "frame/errors.h"
#include "frame/traceback.h"
#include "store/constants.h"
#include "store/generations.h"

namespace korel {

namespace {


// What a `try` keeps over the jumps that can arrive in it.
struct TryState {
  DAG statement;
  int mode;
  EnvironmentBlock block;
  EnvironmentBlock* previous;
  std::int32_t level;      // depth of the statement's parts
  int procDepth;           // error procedures registered at the start
  DAG saved;               // the exception to put back at the end, or 0
  DAG value;
  int pending = 0;         // a jump to go on with after `finally`,
  DAG pendingValue;        // and what it carries: `finally` may call procedures that return
};

// Runs one part under a jump buffer of its own. False when it ended by an error, which is then in the
// two names.
bool runPart(TryState& t, DAG part) {
  std::jmp_buf buffer;
  t.block.jumpBuffer = &buffer;
  int code = ::_setjmp(buffer);
  if (code == 0) {
    Environment = &t.block;
    evaluationLevel = t.level;
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
    case jumpStop:
      RestoreEnvironment(t.previous);
      jumpOut(jumpStop);
    default:
      notimpl("internal control flow in try-catch");
  }
}

DAG catchSequence(DAG statement, DAG message) {
  Word n = lengthOf(statement);
  for (Word i = 2; i + 1 < n; i += 2)
    if (CatchPrefix(statement[i], message)) return statement[i + 1];
  return DAG();
}

}  // namespace

bool CatchPrefix(DAG a, DAG b) {
  if (isTag(a, EXPSEQ)) {
    if (lengthOf(a) == 1) return true;
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
  evaluationLevel += 3;
  t.level = evaluationLevel;
  t.saved = ini("lastexception")[1];
  if (t.saved) updategen(t.saved);
  ++trapSet;
  std::jmp_buf unused;
  t.previous = enterEnvironment(t.block, unused);
  Word n = lengthOf(statement);
  bool clean = runPart(t, statement[1]);
  --trapSet;
  if (!clean && n > 3) {
    DAG exception = ini("lastexception")[1];
    if (DAG sequence = catchSequence(statement, exception[2])) {
      t.saved = exception;
      updategen(t.saved);
      forgetTraceLevels();
      ++trapSet;
      clean = runPart(t, sequence);
      --trapSet;
    }
  }
  RestoreEnvironment(t.previous);
  evaluationLevel = t.level;
  const DAG error = ini("lasterror")[1], exception = ini("lastexception")[1];
  if (!clean) {
    // The names may hold others when the last part's statements collect.
    updategen(error);
    updategen(exception);
  }
  if ((n & 1) != 0) t.value = evalstat(statement[n - 1], mode);
  if (!clean) {
    // The error goes on, whatever others the last part has met and dealt with.
    ini("lasterror")[1] = error;
    ini("lastexception")[1] = exception;
    jumpOut(jumpError);
  }
  if (t.pending != 0) {
    funret = t.pendingValue;
    jumpOut(static_cast<JumpCode>(t.pending));
  }
  evaluationLevel = t.level - 3;
  if (t.saved) {
    ini("lastexception")[1] = t.saved;
    ini("lasterror")[1] = t.saved[2];
  }
  return t.value ? t.value : null;
}

}  // namespace korel
