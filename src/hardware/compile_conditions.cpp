// Conditions as jumps, with the short cuts of `and` and `or`.

#include "hardware/compiler.h"
#include "hardware/hardware_functions.h"
#include "hardware/interpreter.h"
#include "store/constants.h"
#include "store/tag_facts.h"
#include "store/vocabulary.h"

namespace korel {

void Compiler::constantCondition(bool value, bool sense, Label label) {
  if (value == sense) emitJump(Op::jump, label);
}

// `a and b` is false at the first false operand, `a or b` true at the first true one.
void Compiler::junction(DAG x, bool sense, Label label) {
  const bool decisive = hasTag(x, OR);
  if (sense == decisive) {
    condition(x[1], decisive, label);
    condition(x[2], decisive, label);
    return;
  }
  const Label decided = newLabel();
  condition(x[1], decisive, decided);
  condition(x[2], sense, label);
  place(decided);
}

void Compiler::relation(DAG x, bool sense, Label label) {
  const int a = value(x[1]), b = value(x[2]);
  switch (tagOf(x)) {
    case EQUATION: emitJump(sense ? Op::jumpIfEqual : Op::jumpUnlessEqual, label, a, b); break;
    case INEQUAT: emitJump(sense ? Op::jumpUnlessEqual : Op::jumpIfEqual, label, a, b); break;
    case LESSEQ: emitJump(sense ? Op::jumpIfLessEqual : Op::jumpUnlessLessEqual, label, a, b); break;
    default: emitJump(sense ? Op::jumpIfLess : Op::jumpUnlessLess, label, a, b); break;
  }
}

void Compiler::typeTest(DAG x, DAG operand, DAG type, bool sense, Label label) {
  const HardwareType* row = hardwareType(type);
  const int result = temporary();
  if (row == nullptr) {
    emit(Op::evaluateTruth, result).object = x;
  } else if (row->test == nullptr) {
    return constantCondition(true, sense, label);
  } else {
    const int operandRegister = value(operand);
    emit(Op::test, result, operandRegister).test = row->test;
  }
  emitJump(sense ? Op::jumpUnlessZero : Op::jumpIfZero, label, result);
}

void Compiler::condition(DAG x, bool sense, Label label) {
  if (++depth_ > deepest) refuse();
  if (!refused_) {
    if (x == cons1 || x == cons0) {
      constantCondition(x == cons1, sense, label);
    } else if (isImmediate(x)) {
      typeTest(x, x, x, sense, label);
    } else if (hasTag(x, NOT)) {
      condition(x[1], !sense, label);
    } else if (hasTag(x, AND) || hasTag(x, OR)) {
      junction(x, sense, label);
    } else if (isAmong(x, relationTags)) {
      relation(x, sense, label);
    } else if (hasTag(x, DCOLON)) {
      typeTest(x, x[1], x[2], sense, label);
    } else if (isTag(x, FUNCTION) && isName(x[1]) && hasText(x[1], "type") && isSequence(x[2]) &&
               memberCount(x[2]) == 2) {
      typeTest(x, x[2][1], x[2][2], sense, label);
    } else {
      emitJump(sense ? Op::jumpIfTrue : Op::jumpUnlessTrue, label, number(x));
    }
  }
  --depth_;
}

}  // namespace korel
