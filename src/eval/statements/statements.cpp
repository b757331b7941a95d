#include "eval/statements/statements.h"

#include "builtins/builtins.h"
#include "debug/debugger.h"
#include "debug/statement_trace.h"
#include "debug/statement_walk.h"
#include "debug/watches.h"
#include "eval/evaluate/evaluate.h"
#include "eval/evaluate/known_values.h"
#include "eval/evaluate/operand.h"
#include "eval/simplify/simplify.h"
#include "eval/statements/assign.h"
#include "eval/statements/boolean.h"
#include "eval/statements/depth.h"
#include "eval/statements/loops.h"
#include "eval/statements/try.h"
#include "eval/walk/has.h"
#include "frame/errors.h"
#include "frame/interrupts.h"
#include "frame/output.h"
#include "library/save.h"
#include "session/driver.h"
#include "session/reset_hooks.h"
#include "store/collect/collector.h"
#include "store/constants.h"
#include "store/object_fields.h"
#include "store/vocabulary.h"
#include "text/read/source.h"

namespace korel {

namespace {

// The value of the statement that has just ended, which a collection at its end must not take.
DAG valueInFlight;

int innerMode(int mode) { return mode < 0 ? modeSilent : modeInner; }

// Whether a value of the present depth is shown.
bool isShown(int mode) { return mode >= 0 && mode != modeParse && showsValues(*Environment->frame); }

void show(DAG value) { sendStream(Stream::RESULT, {value}); }

// The ditto values move on with a value of the frame that is running.
// Whatever else a statement changes with its value, evaluation begins anew behind it.
void shiftDitto(DAG value) {
  Frame& frame = *Environment->frame;
  frame.ditto3 = frame.ditto2;
  frame.ditto2 = frame.ditto1;
  frame.ditto1 = value;
  updategen(value);
  stepEvaluationClock();
}

[[gnu::noinline]] DAG expressionStatement(DAG s, int mode) {
  DAG value = singleMember(simpl(evalOperand(s)));
  if (mode == modeParse || value == null) return value;
  shiftDitto(value);
  if (isShown(mode)) show(value);
  return value;
}

[[gnu::noinline]] DAG statementSequence(DAG s, int mode) {
  DAG value = null;
  int inner = innerMode(mode);
  const Word n = lengthOf(s);
  if (n == 3 && isBreakPointPair(s)) [[unlikely]]
    return runBreakPoint(s, inner);
  for (Word i = 1; i < n; ++i) {
    standAt(s[i]);
    value = evalstat(s[i], inner);
  }
  return value;
}

// ---- if

// The frame is kept as well: an error passes while that of a procedure which the condition calls is running.
struct SavedCondition {
  Frame* frame;
  DAG value;
};

void restoreInCondition(const char*) {
  auto* saved = reinterpret_cast<SavedCondition*>(errorProcParam);
  saved->frame->inCondition = saved->value;
}

[[gnu::noinline]] DAG truthOfOtherCondition(DAG condition) {
  Frame& frame = *Environment->frame;
  SavedCondition before{&frame, frame.inCondition};
  PushParamErrorProc(restoreInCondition, &before);
  frame.inCondition = ini("true");
  DAG truth = truthOf(condition);
  PopErrorProc();
  frame.inCondition = before.value;
  return truth;
}

// Position of the branch to take, or 0.
inline Word branchOf(DAG s) {
  const Word n = lengthOf(s);
  Word i = 1;
  for (; i + 1 < n; i += 2) {
    DAG truth = plainTruthOf(s[i]);
    if (!truth) truth = truthOfOtherCondition(s[i]);
    if (truth == ini("true")) return i + 1;
    if (truth != ini("false") && truth != ini("FAIL")) KernelException("cannot evaluate boolean: %1", truth);
  }
  return i < n ? i : 0;  // `else`, behind the pairs
}

[[gnu::noinline]] DAG ifStatement(DAG s, int mode) {
  evaluationLevel += branchLevels;
  const Word branch = branchOf(s);
  DAG value = null;
  if (branch != 0) {
    standAt(s[branch]);
    value = evalstat(s[branch], innerMode(mode));
  }
  evaluationLevel -= branchLevels;
  return value;
}

// ---- assignment

DAG assignmentTarget(DAG left) {
  if (optASSERT == 2) {
    if (isTag(left, DCOLON)) return new3(DCOLON, assignmentTarget(left[1]), simpl(eval(left[2])));
    if (isTag(left, LOCAL) || isTag(left, LEXICAL)) {
      DAG target = TypedLocal(left);
      if (isTag(target, DCOLON)) return target;
    }
    return TypedName(left);
  }
  return evalname(left);
}

// A call readlib('t') as the value may hold the target.
bool isReadlibOf(DAG value, DAG target) {
  if (!isCallOf(value, ini("readlib")) || lengthOf(value[2]) < 2) return false;
  DAG first = value[2][1];
  return first == target || (isTag(first, UNEVAL) && first[1] == target);
}

// Stores one value; gives the target as it is shown.
DAG assignOne(DAG left, DAG& value, int mode) {
  DAG target = assignmentTarget(left);
  value = singleMember(value);
  DAG word = target;
  while (isTag(word, DCOLON)) word = word[1];
  const bool hasParts = isObject(value) && !hasTag(value, STRING);
  if (mode <= 0 && hasParts && word != value && hasExceptInPROCorUNEVAL(value, word) && !isReadlibOf(value, word))
    KernelException("recursive assignment");
  assign(target, value);
  return word;
}

void showAssignment(DAG target, DAG value, int mode) {
  if (isShown(mode)) show(new3(ASSIGN, simpl(target), value));
}

DAG multipleAssignment(DAG left, DAG value, int mode) {
  if (!isTag(value, EXPSEQ)) KernelException("cannot split rhs for multiple assignment");
  Word n = lengthOf(left);
  if (n != lengthOf(value)) KernelException("ambiguous multiple assignment");
  DAG targets = newl2(n, EXPSEQ);
  for (Word i = 1; i < n; ++i) {
    DAG part = value[i];
    targets[i] = simpl(assignOne(left[i], part, mode));
  }
  if (mode != modeParse) shiftDitto(value);
  showAssignment(targets, value, mode);
  return value;
}

// The instance that a local or a captured local of the running procedure stands for, the most frequent
// targets, when it takes any value; or 0. Such an instance is neither an environment variable nor in the
// library.
DAG plainInstance(DAG left) {
  if (isImmediate(left)) return DAG();
  DAG name = frameInstance(left);
  return isName(name) && name[2] == null ? name : DAG();
}

// Whether `value` may be stored in an instance as it is. An integer may be without its place in the table
// of simplified objects: `simpl` finds it one when it gets into something that is compared by its word.
// Running sums would fill the table otherwise (bench/programs/loops.krl).
bool isStorable(DAG value) { return isInteger(value) || isSimplified(value); }

[[gnu::noinline]] DAG otherAssignment(DAG left, DAG value, int mode) {
  value = simpl(value);
  if (isTag(left, EXPSEQ)) return multipleAssignment(left, value, mode);
  DAG target = assignOne(left, value, mode);
  if (mode != modeParse) shiftDitto(value);
  showAssignment(target, value, mode);
  return value;
}

[[gnu::noinline]] DAG assignment(DAG s, int mode) {
  DAG value = evalOperand(s[2]);
  DAG left = s[1];
  if (optASSERT == 2) [[unlikely]]
    return otherAssignment(left, value, mode);
  if (mode == modeInner) [[likely]] {
    if (showsValues(*Environment->frame)) [[unlikely]]
      return otherAssignment(left, value, mode);
    // Outside procedures a value may not hold its target; a plain entry cannot.
    if (DAG name = plainInstance(left); name && isUnwatched(name)) {
      if (!isStorable(value)) value = simpl(value);
      if (value != name && !isTag(value, EXPSEQ)) {
        shiftDitto(value);
        name[1] = value;
        return value;
      }
    }
  } else if (mode != modeSilent) {
    return otherAssignment(left, value, mode);
  }
  value = simpl(value);
  const bool stored = isTag(left, NAME) ? assignPlainName(left, value) : assignPlainEntry(left, value);
  if (!stored) return otherAssignment(left, value, mode);
  shiftDitto(value);
  return value;
}

// ---- the rest

[[gnu::noinline]] DAG returnStatement(DAG s) { return eval(new3(FUNCTION, ini("RETURN"), asSequence(s[1]))); }

[[gnu::noinline]] DAG readStatement(DAG s, int mode) {
  if (secureMode) KernelException("read is disabled");
  DAG file = singleMember(simpl(eval(s[1])));
  if (!isText(file)) KernelException("read must have a file name");
  return ReadSourceOrDotMFile(textOf(file), false, mode == modeShow);
}

[[noreturn, gnu::noinline]] void raiseStatement(DAG s) { KorelException(simpl(eval(s[1]))); }

[[noreturn, gnu::noinline]] void jumpStatement(DAG s) { jumpOutWith(jumpBreak, s); }

[[noreturn]] void stopStatement(DAG s) {
  runHooks(HookMoment::stop);
  sendstatus();
  switch2(s);
  notimpl("stop");
}

// ---- before and behind each statement

// What may come between two statements, rarely: the debugger, an interrupt, a time limit.
[[gnu::noinline]] void attend(DAG s) {
  if (stepLevel != 0) stopAt(s);
  if (debuggerWanted != 0) DropEverythingAndEnterDebugger();
  if (interruptIsDue()) jumpback();
  checkTimeLimit();
}

// Each statement that works is a function of its own, as in `eval`.
[[gnu::always_inline]] inline DAG runStatement(DAG s, int mode) {
  Environment->frame->currentStatement = s;
  if (++interruptCounter == 0 || (stepLevel | evalTimeLimit | pollWanted) != 0) [[unlikely]]
    attend(s);
  if (isImmediate(s)) return expressionStatement(s, mode);
  switch (tagOf(s)) {
    case STATSEQ: return statementSequence(s, mode);
    case ASSIGN: return assignment(s, mode);
    case FOR: return isCountedLoop(s) ? forfrom(s, innerMode(mode)) : forin(s, innerMode(mode));
    case IF: return ifStatement(s, mode);
    case READ: return readStatement(s, mode);
    case SAVE: return saveStatement(s);
    case STOP: stopStatement(s);
    case ERROR: raiseStatement(s);
    case TRY: return tryStatement(s, innerMode(mode));
    case RETURN: return returnStatement(s);
    case BREAK: case NEXT: jumpStatement(s);
    case USE: KernelException("use statement cannot be executed");
    case FUNCTION:
      if (isTraced(s)) [[unlikely]]
        return runTraced(s, mode);
      return expressionStatement(s, mode);
    default: return expressionStatement(s, mode);
  }
}

}  // namespace

DAG evalstat(DAG s, int mode) {
  std::int32_t level = ++evaluationLevel;
  DAG value = runStatement(s, mode);
  evaluationLevel = level;
  if (endIsDue(level)) [[unlikely]] {
    valueInFlight = value;
    settleGenerations(level);
    valueInFlight = DAG();
  }
  evaluationLevel = level - 1;
  return value;
}

void initializeStatements() { registerRoot(&valueInFlight); }

void collectInStatement() {
  // What messages tell of the running statement stays.
  Frame& frame = *Environment->frame;
  DAG running = frame.currentStatement;
  evalstat(null, modeInner);
  frame.currentStatement = running;
}

}  // namespace korel
