// Statements in the plain walk of the hardware-float evaluator.

#include "hardware/hardware_statements.h"

#include <cmath>

#include "eval/evaluate/environment_variables.h"
#include "eval/simplify/simplify.h"
#include "eval/statements/assign.h"
#include "eval/statements/loops.h"
#include "frame/errors.h"
#include "hardware/hardware_arrays.h"
#include "hardware/hardware_value.h"
#include "hardware/interpreter.h"
#include "numbers/float/float.h"
#include "store/constants.h"
#include "store/object_fields.h"
#include "store/objects.h"
#include "store/vocabulary.h"

namespace korel {

double hfstat(DAG body) {
  if (!isTag(body, STATSEQ)) return shiftDitto(hfeval(body));
  double value = 0.0;
  for (Word i = 1, n = lengthOf(body); i < n; ++i) value = shiftDitto(hfeval(onlyStatement(body[i])));
  return value;
}

DAG onlyStatement(DAG statement) {
  while (isTag(statement, STATSEQ) && lengthOf(statement) == 2) statement = statement[1];
  return statement;
}

// ---- assignments

namespace {

double assignElementOf(DAG target, double value) {
  DAG array = hfevalToArray(target[1]);
  double* place = hfarrayref(array, target[2]);
  requireWritable(array);
  *place = value;
  return value;
}

double assignGlobal(DAG name, double value) {
  if (isFixedEnvironmentName(name) || isProtected(name[2])) refuseAssignmentTo(name);
  if (HFStack != nullptr) refuseAssignment();
  assign(name, expressionOf(value));
  ++hardwareEpoch;
  return value;
}

}  // namespace

void refuseAssignmentTo(DAG name) { KernelException("evalhf cannot assign to `%1`", name); }
void refuseAssignment() { KernelException("evalhf cannot evaluate assignment"); }
void refuseMultipleAssignment() { KernelException("multiple assignment is not supported in evalhf"); }

namespace {

double assignment(DAG statement) {
  countHardwareStep();
  DAG target = statement[1];
  if (isTag(target, DCOLON)) target = target[1];
  if (isTag(target, EXPSEQ)) {
    if (lengthOf(target) != 2) refuseMultipleAssignment();
    target = target[1];
  }
  const double value = hfeval(statement[2]);
  switch (tagOf(target)) {
    case LOCAL:
      if (HFStack == nullptr) refuseAssignment();
      return *localPlace(target) = value;
    case PARAM:
      if (HFStack == nullptr) refuseAssignment();
      return *argumentPlace(target) = value;
    case TABLEREF: return assignElementOf(target, value);
    case NAME: return assignGlobal(target, value);
    case LEXICAL: KernelException("lexical scoping is not supported in evalhf");
    default: refuseAssignment();
  }
}

// ---- branches and loops

double branch(DAG statement) {
  checkStack();
  countHardwareStep();
  const Word n = lengthOf(statement);
  for (Word i = 1; i + 1 < n; i += 2)
    if (hfboolean(statement[i])) return hfstat(statement[i + 1]);
  return n % 2 == 0 ? hfstat(statement[n - 1]) : 0.0;
}

struct HardwareLoop {
  double* variable;
  double unnamed;
  double by, to;
  bool isBounded;
  DAG condition, body;
  double value;
};

bool jumpsOf(DAG loop) {
  Word flags = controlWord(loop);
  if ((flags & brnextKnown) == 0) {
    flags |= brnextKnown | (hasbrnext(bodyOfLoop(loop)) ? hasBrnext : 0);
    controlWord(loop) = flags;
  }
  return (flags & hasBrnext) != 0;
}

bool hasRound(const HardwareLoop& loop) {
  const double at = *loop.variable;
  if (loop.isBounded && !(loop.by < 0 ? at >= loop.to : at <= loop.to)) return false;
  return loop.condition == ini("true") || hfboolean(loop.condition);
}

void runLoop(HardwareLoop& loop) {
  while (hasRound(loop)) {
    countHardwareStep();
    loop.value = hfstat(loop.body);
    *loop.variable += loop.by;
  }
}

// The same under a jump buffer of its own.
void runGuardedLoop(HardwareLoop& loop) {
  std::jmp_buf buffer;
  std::jmp_buf* outer = HFjumpbuffer;
  HFjumpbuffer = &buffer;
  HardwareFrame* frame = HFStack;
  BoundVariable* bound = frame->bound;
  switch (::_setjmp(buffer)) {
    case 0: runLoop(loop); break;
    case hardwareNext:
      frame->bound = bound;
      *loop.variable += loop.by;
      runLoop(loop);
      break;
    case hardwareBreak: frame->bound = bound; break;
    default: HFjumpbuffer = outer; jumpInHardware(hardwareReturn);
  }
  HFjumpbuffer = outer;
}

double* loopVariablePlace(HardwareLoop& loop, DAG variable) {
  if (variable == null) return &loop.unnamed;
  if (isTag(variable, LOCAL) && HFStack != nullptr) return localPlace(variable);
  if (isTag(variable, LEXICAL)) KernelException("lexical scoping is not supported in evalhf");
  refuseLoopVariable();
}

double loopStatement(DAG statement) {
  checkStack();
  countHardwareStep();
  if (!isCountedLoop(statement)) refuseContainerLoop();
  HardwareLoop loop;
  loop.variable = loopVariablePlace(loop, statement[loopVariable]);
  const double from = hfevalToNumeric(statement[loopFrom]);
  loop.by = hfevalToNumeric(statement[loopBy]);
  loop.isBounded = statement[loopTo] != null;
  loop.to = loop.isBounded ? hfevalToNumeric(statement[loopTo]) : 0.0;
  loop.condition = statement[loopWhile];
  loop.body = statement[loopBody];
  loop.value = 0.0;
  *loop.variable = from;
  if (HFStack != nullptr && jumpsOf(statement)) runGuardedLoop(loop);
  else runLoop(loop);
  return loop.value;
}

// ---- jumps

[[noreturn]] double jump(HardwareJump code) {
  if (HFStack == nullptr || !HFStack->isWalked) KernelException("break or next not in loop");
  jumpInHardware(code);
}

double returnStatement(DAG statement) {
  if (HFStack == nullptr || !HFStack->isWalked) KernelException("return out of context");
  HFReturn = hfeval(statement[1]);
  jumpInHardware(hardwareReturn);
}

[[noreturn]] double errorStatement(DAG statement) { raiseHardwareError(statement[1]); }

}  // namespace

void refuseLoopVariable() { KernelException("evalhf cannot use global variable in for loop"); }
void refuseContainerLoop() { KernelException("for-in not acceptable in evalhf"); }

double hfevalStatement(DAG statement) {
  switch (tagOf(statement)) {
    case ASSIGN: return assignment(statement);
    case IF: return branch(statement);
    case FOR: return loopStatement(statement);
    case RETURN: return returnStatement(statement);
    case BREAK: jump(hardwareBreak);
    case NEXT: jump(hardwareNext);
    default: errorStatement(statement);
  }
}

}  // namespace korel
