#include "eval/statements.h"

#include "eval/assign.h"
#include "eval/builtins.h"
#include "eval/environment_variables.h"
#include "eval/evaluate.h"
#include "eval/operand.h"
#include "eval/procedures.h"
#include "eval/save.h"
#include "eval/simplify.h"
#include "structure/has.h"
#include "eval/time_limit.h"
#include "eval/try.h"
#include "frame/driver.h"
#include "frame/environment.h"
#include "frame/errors.h"
#include "frame/output.h"
#include "frame/reset_hooks.h"
#include "numbers/system_functions.h"
#include "store/collector.h"
#include "store/constants.h"
#include "store/objects.h"
#include "text/source.h"

namespace korel {

namespace {

// The value of the statement that has just ended, which a collection at its end must not take.
DAG valueInFlight;

bool isTag(DAG x, Tag tag) { return isObject(x) && hasTag(x, tag); }

int innerMode(int mode) { return mode < 0 ? modeSilent : modeInner; }

// Whether a value of the present depth is shown.
bool isShown(int mode) {
  return mode >= 0 && mode != modeParse && evaluationLevel < 4 * Environment->frame->printLevel + 6;
}

void show(DAG value) { sendStream("INTERFACE_RESULT", {value}); }

DAG unwrap(DAG value) {
  return isTag(value, EXPSEQ) && lengthOf(value) == 2 ? value[1] : value;
}

// The ditto values move on with a value of the frame that is running.
void shiftDitto(DAG value) {
  Frame& frame = *Environment->frame;
  frame.ditto3 = frame.ditto2;
  frame.ditto2 = frame.ditto1;
  frame.ditto1 = value;
  updategen(value);
}

DAG expressionStatement(DAG s, int mode) {
  DAG value = unwrap(simpl(eval(s)));
  if (mode == modeParse || value == null) return value;
  shiftDitto(value);
  if (isShown(mode)) show(value);
  return value;
}

DAG statementSequence(DAG s, int mode) {
  DAG value = null;
  int inner = innerMode(mode);
  for (Word i = 1, n = lengthOf(s); i < n; ++i) value = evalstat(s[i], inner);
  return value;
}

// ---- if

void restoreInCondition(const char*) {
  Environment->frame->inCondition = DAG(static_cast<Word>(errorProcParam));
}

DAG truthOfCondition(DAG condition) {
  if (DAG truth = plainTruthOf(condition)) return truth;
  Frame& frame = *Environment->frame;
  DAG before = frame.inCondition;
  PushParamErrorProc(restoreInCondition, before);
  frame.inCondition = ini("true");
  DAG truth = truthOf(condition);
  PopErrorProc();
  frame.inCondition = before;
  return truth;
}

DAG ifStatement(DAG s, int mode) {
  evaluationLevel += 3;
  Word n = lengthOf(s);
  DAG value = null;
  bool taken = false;
  for (Word i = 1; i + 1 < n && !taken; i += 2) {
    DAG truth = truthOfCondition(s[i]);
    if (truth == ini("true")) {
      taken = true;
      value = evalstat(s[i + 1], innerMode(mode));
    } else if (truth != ini("false") && truth != ini("FAIL")) {
      KernelException("cannot evaluate boolean: %1", truth);
    }
  }
  if (!taken && (n & 1) == 0) value = evalstat(s[n - 1], innerMode(mode));
  evaluationLevel -= 3;
  return value;
}

// ---- assignment

DAG assignmentTarget(DAG left) {
  if (optASSERT == 2) {
    if (isTag(left, DCOLON))
      return new3(DCOLON, assignmentTarget(left[1]), simpl(eval(left[2])));
    if (isTag(left, LOCAL) || isTag(left, PARAM) || isTag(left, LEXICAL)) {
      DAG target = TypedLocal(left);
      return isTag(target, DCOLON) ? target : evalname(target);
    }
    return TypedName(left);
  }
  return evalname(left);
}

// A call readlib('t') as the value may hold the target.
bool isReadlibOf(DAG value, DAG target) {
  if (!isTag(value, FUNCTION) || value[1] != ini("readlib") || lengthOf(value[2]) < 2) return false;
  DAG first = value[2][1];
  return first == target || (isTag(first, UNEVAL) && first[1] == target);
}

// Stores one value; gives the target as it is shown.
DAG assignOne(DAG left, DAG& value, int mode) {
  DAG target = assignmentTarget(left);
  value = unwrap(value);
  DAG word = target;
  while (isTag(word, DCOLON)) word = word[1];
  if (mode <= 0 && word != value && hasExceptInPROCorUNEVAL(value, word) && !isReadlibOf(value, word))
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
  shiftDitto(value);
  showAssignment(targets, value, mode);
  return value;
}

// Stores into a local of the running procedure, the most frequent target; false for any other.
bool assignLocal(DAG left, DAG value) {
  if (!isTag(left, LOCAL)) return false;
  DAG locals = Environment->frame->locals;
  Word n = rawField(left, 1);
  if (n - 1 >= lengthOf(locals) - 1) return false;
  DAG name = locals[n];
  // An instance of a frame is neither an environment variable nor in the library.
  if (!isTag(name, NAME) || name[2] != null || value == name || isTag(value, EXPSEQ)) return false;
  updategen(value);
  name[1] = value;
  return true;
}

DAG assignment(DAG s, int mode) {
  DAG value = simpl(evalOperand(s[2]));
  DAG left = s[1];
  if (mode > 0 && optASSERT != 2 && !isShown(mode) &&
      (assignLocal(left, value) || assignPlainEntry(left, value))) {
    shiftDitto(value);
    return value;
  }
  if (isTag(left, EXPSEQ)) return multipleAssignment(left, value, mode);
  DAG target = assignOne(left, value, mode);
  shiftDitto(value);
  showAssignment(target, value, mode);
  return value;
}

// ---- the rest

DAG returnStatement(DAG s) {
  DAG operand = isTag(s[1], EXPSEQ) ? s[1] : new2(EXPSEQ, s[1]);
  return eval(new3(FUNCTION, ini("RETURN"), operand));
}

DAG readStatement(DAG s, int mode) {
  if (secureMode) KernelException("read is disabled");
  DAG file = unwrap(simpl(eval(s[1])));
  if (!isTag(file, NAME) && !isTag(file, STRING)) KernelException("read must have a file name");
  return ReadSourceOrDotMFile(textOf(file), 0, mode == modeShow);
}

[[noreturn]] void stopStatement(DAG s) {
  runHooks(HookMoment::stop);
  sendstatus();
  switch2(s);
  notimpl("stop");
}

}  // namespace

std::int32_t stepLevel = 0;
DAG debugArgs = null;

namespace {

// The debugger has its turn before the statement that a step has led to.
void stopForDebugger(DAG s) {
  if (evaluationLevel > stepLevel || isTag(s, STATSEQ) || s == null) return;
  stepLevel = 0;
  if (evaluationLevel < 3) return;
  evalsysf("debugger", "", debugArgs);
  debugArgs = null;
}

}  // namespace

DAG evalst2(DAG s, int mode) {
  Environment->frame->currentStatement = s;
  if (stepLevel != 0) stopForDebugger(s);
  if (TestInterrupt()) jumpback();
  checkTimeLimit();
  if (isImmediate(s)) return expressionStatement(s, mode);
  switch (tagOf(s)) {
    case STATSEQ: return statementSequence(s, mode);
    case ASSIGN: return assignment(s, mode);
    case FOR: return lengthOf(s) == 7 ? forfrom(s, innerMode(mode)) : forin(s, innerMode(mode));
    case IF: return ifStatement(s, mode);
    case READ: return readStatement(s, mode);
    case SAVE: return saveStatement(s);
    case STOP: stopStatement(s);
    case ERROR: KorelException(simpl(eval(s[1])));
    case TRY: return tryStatement(s, innerMode(mode));
    case RETURN: return returnStatement(s);
    case BREAK: case NEXT:
      funret = s;
      jumpOut(jumpBreak);
    case USE: KernelException("use statement cannot be executed");
    default: return expressionStatement(s, mode);
  }
}

DAG evalstat(DAG s, int mode) {
  std::int32_t level = ++evaluationLevel;
  DAG value = evalst2(s, mode);
  evaluationLevel = level;
  valueInFlight = value;
  endOfStatement(level);
  evaluationLevel = level - 1;
  return value;
}

void initializeStatements() {
  stepLevel = 0;
  debugArgs = null;
  registerRoot(&valueInFlight);
  registerRoot(&debugArgs);
}

void collectInLoop() {
  if (cused > nextgcgen || evaluationLevel + 1 < gene[gcgen] || collectAlways)
    evalstat(null, modeInner);
}

}  // namespace korel
