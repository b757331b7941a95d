#pragma once
// Evaluation environments: where a non-local jump lands, and what a running procedure owns.
//
// A block is a small record on the native stack of whoever set up an error frame: a procedure call, a
// trap, a `try`, a loop that holds a `break`. Blocks form a chain by way of the frames that saved the
// one before them; `Environment` is the innermost. A frame holds one procedure call; several blocks
// can share it.
//
// The depth of the innermost block is kept in `evaluationLevel`, since every allocation reads it; a
// block's own `depth` is what that was when the block stopped being innermost.

#include <csetjmp>
#include <cstdint>

#include "store/dag.h"
#include "store/generations.h"

namespace korel {

/// How a non-local jump names its cause.
enum JumpCode : int {
  jumpToTop = 1,
  jumpReturn = 2,  // `RETURN` or `goto`: the value is in `funret`
  jumpBreak = 3,   // `break` or `next`: the statement is in `funret`
  jumpError = 4,   // an error: `lasterror` and `lastexception` hold it
  jumpStop = 99,   // the kernel stops
};

struct Frame {
  Frame* previousFrame = nullptr;  // dynamic link; none at top level
  std::int32_t printLevel = 1;
  DAG locals;    // EXPSEQ of fresh names; `null` at top level
  DAG args;      // EXPSEQ of evaluated arguments
  DAG procName;  // the name called
  DAG proc;      // the running PROC
  DAG currentStatement;
  const DAG* currentPlace = nullptr;  // the field that holds it: equal statements are one object
  DAG ditto1, ditto2, ditto3;         // values of %, %%, %%%
  DAG inCondition;                    // `true` while the condition of an `if` is evaluated
  DAG envVars;                        // EXPSEQ of environment variables, shared until one is changed
};

/// What the frame's print level is worth in levels of evaluation: statements and calls at a smaller depth
/// are shown. A level may be any 32-bit integer.
inline std::int64_t shownDepth(const Frame& frame) { return std::int64_t{4} * frame.printLevel; }

struct EnvironmentBlock {
  std::jmp_buf* jumpBuffer = nullptr;
  std::int32_t depth = 1;
  Frame* frame = nullptr;
  Word floatContext = 0;
  int errorProcs = 0;  // how many error procedures were registered when the block was entered
};

extern EnvironmentBlock* Environment;
extern EnvironmentBlock IniEnv;
extern Frame TopLevelStack;
/// The value carried by a `RETURN`, `break` or `next` jump.
extern DAG funret;
/// How many error procedures are registered (frame/errors.h).
extern int errorProcCount;

/// Makes `block` innermost, as a copy of the present one with its own jump buffer. The caller keeps
/// the result and gives it to `RestoreEnvironment` on every way out.
inline EnvironmentBlock* enterEnvironment(EnvironmentBlock& block, std::jmp_buf& buffer) {
  EnvironmentBlock* previous = Environment;
  previous->depth = evaluationLevel;
  block = *previous;
  block.jumpBuffer = &buffer;
  block.errorProcs = errorProcCount;
  Environment = &block;
  return previous;
}
/// Values of `evalf` that were remembered under other handlers of numeric events are forgotten.
void forgetFloatsUnderOtherHandlers(DAG before, DAG after);
/// Makes `previous` innermost again, at the depth it had.
inline void RestoreEnvironment(EnvironmentBlock* previous) {
  EnvironmentBlock* left = Environment;
  Environment = previous;
  evaluationLevel = previous->depth;
  if (left->frame != previous->frame && left->frame && previous->frame &&
      left->frame->envVars != previous->frame->envVars) [[unlikely]]
    forgetFloatsUnderOtherHandlers(left->frame->envVars, previous->frame->envVars);
}

/// Calls the error procedures that were registered since the innermost block was entered; a special error
/// calls only those that keep state.
void runErrorProcsOfBlock(JumpCode code);
/// Jumps to the innermost block. Uses the form that leaves the signal mask alone; whoever lands has
/// called `_setjmp`. What the jump leaves is put back first. For a new error that has been done; one that
/// goes on from a trap, a `return`, `break` or `next` does it here.
[[noreturn]] inline void jumpOut(JumpCode code) {
  const bool leaves = code == jumpReturn || code == jumpBreak || code == jumpError;
  if (leaves && errorProcCount > Environment->errorProcs) [[unlikely]]
    runErrorProcsOfBlock(code);
  ::_longjmp(*Environment->jumpBuffer, code);
}

/// The same for a `RETURN`, `break` or `next`, with what it carries to where it lands.
[[noreturn]] inline void jumpOutWith(JumpCode code, DAG carried) {
  funret = carried;
  jumpOut(code);
}

/// Bytes of native stack that evaluation may use, and where it began.
extern std::int64_t maxKorelStackSize;
extern char* stackBaseAddress;
extern char* stackEndAddress;  // `maxKorelStackSize` below the base
/// True when the native stack in use has passed its bound and no special error is on its way.
bool stackExhausted();
void raiseUnlessUnwinding();
/// Raises "too many levels of recursion" (special error 5) when the stack is exhausted.
inline void checkStack() {
  // One comparison for each level of every recursion (bench/programs/fibonacci.krl). The register is
  // read as it is: asking for the frame's address would make every caller keep a frame pointer.
  char* here;
  asm("movq %%rsp, %0" : "=r"(here));
  if (here < stackEndAddress) [[unlikely]]
    raiseUnlessUnwinding();
}
/// Takes the bound anew from the system's limit and the present position of the stack.
void recordStackBounds();

}  // namespace korel
