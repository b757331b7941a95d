// Truth of expressions, three-valued: `true`, `false`, `FAIL`, or the expression when undecided.

#include <cstring>

#include "numbers/arithmetic.h"
#include "eval/simplify/bindings.h"
#include "eval/evaluate/evaluate.h"
#include "eval/evaluate/operand.h"
#include "eval/procedures/procedures.h"
#include "eval/simplify/simplify.h"
#include "eval/statements/statements.h"
#include "eval/types/types.h"
#include "frame/errors.h"
#include "frame/long_operation.h"
#include "numbers/complex/complex.h"
#include "numbers/float/float.h"
#include "numbers/events/numeric_events.h"
#include "store/constants.h"
#include "store/names.h"
#include "store/objects.h"
#include "store/vocabulary.h"

namespace korel {

namespace {


// Truth of an operand. The value of an operation is its truth already: finding that once more, at each level,
// would double the work at each level of what stays undecided.
DAG operandTruth(DAG x) {
  if (!isImmediate(x) && (hasTag(x, AND) || hasTag(x, OR) || hasTag(x, NOT))) return evalbool(x);
  return truthOf(x);
}

DAG orTruth(DAG x) {
  DAG a = operandTruth(x[1]);
  if (a == ini("true")) return a;
  DAG b = operandTruth(x[2]);
  if (a == ini("false")) return b;
  if (b == ini("false")) return a;
  if (b == ini("true")) return b;
  if (a == b) return a;
  return a == x[1] && b == x[2] ? x : simpl(new3(OR, a, b));
}

DAG andTruth(DAG x) {
  DAG a = operandTruth(x[1]);
  if (a == ini("false")) return a;
  DAG b = operandTruth(x[2]);
  if (a == ini("true")) return b;
  if (b == ini("true")) return a;
  if (b == ini("false")) return b;
  if (a == b) return a;
  return a == x[1] && b == x[2] ? x : simpl(new3(AND, a, b));
}

DAG notTruth(DAG x) {
  DAG a = operandTruth(x[1]);
  if (a == ini("true")) return ini("false");
  if (a == ini("false")) return ini("true");
  if (a == ini("FAIL")) return a;
  return a == x[1] ? x : simpl(new2(NOT, a));
}

// ---- equality

DAG withoutSignedZero(DAG x) { return isTag(x, FLOAT) && x[1] == consm0 ? consf0 : x; }

// Real and imaginary part side by side, an infinite part as it is.
bool partsEqual(DAG a, DAG b) {
  auto same = [](DAG x, DAG y) {
    x = withoutSignedZero(x);
    y = withoutSignedZero(y);
    if (x == y) return true;
    bool infiniteX = isInfinite(x), infiniteY = isInfinite(y);
    if (infiniteX && infiniteY) return consneg(x) == consneg(y) && isTag(x, COMPLEX) == isTag(y, COMPLEX);
    if (infiniteX || infiniteY) return false;
    return isNumeric(x) && isNumeric(y) && isZero(simpl(add(x, simpl(negate(y)))));
  };
  return same(cxRealPart(a), cxRealPart(b)) && same(cxImaginaryPart(a), cxImaginaryPart(b));
}

bool proceduresEqual(DAG a, DAG b);

// Statement bodies match operand by operand; everything simplified is one object and compares by word.
bool bodiesEqual(DAG a, DAG b) {
  if (a == b) return true;
  if (isImmediate(a) || isImmediate(b) || tagOf(a) != tagOf(b) || lengthOf(a) != lengthOf(b)) return false;
  if (hasTag(a, PROC)) return proceduresEqual(a, b);
  if (tagOf(a) < ASSIGN || tagOf(a) > USE) return false;
  for (Word i = 1; i < lengthOf(a); ++i)
    if (!bodiesEqual(a[i], b[i])) return false;
  return true;
}

bool proceduresEqual(DAG a, DAG b) {
  if (a == b) return true;
  if (a[8] != b[8] || a[4] != b[4]) return false;
  DAG pa = a[1], pb = b[1];
  if (lengthOf(pa) != lengthOf(pb)) return false;
  for (Word i = 1; i < lengthOf(pa); ++i) {
    if (tagOf(pa[i]) != tagOf(pb[i])) return false;
    if (hasTag(pa[i], DCOLON) && pa[i][2] != pb[i][2]) return false;
  }
  return bodiesEqual(a[5], b[5]);
}

bool areEqual(DAG a, DAG b) {
  for (;;) {
    if (a == b) return !isUndefined(a);
    if (isUndefined(a) || isUndefined(b)) return false;
    if (isInfinite(a) || isInfinite(b)) {
      bool comparable = (isNumber(a) || isInfinite(a)) && (isNumber(b) || isInfinite(b));
      return comparable && partsEqual(a, b);
    }
    if (isNumber(a) && isNumber(b)) {
      // Exact integers are unique objects: different words are different numbers.
      if (isInteger(a) && isInteger(b)) return isZero(a) && isZero(b);
      return isZero(simpl(add(a, simpl(negate(b)))));
    }
    if (isTag(a, PROC) && isTag(b, PROC)) return proceduresEqual(a, b);
    bool unwrapped = false;
    for (DAG* side : {&a, &b})
      if (isTag(*side, EXPSEQ) && lengthOf(*side) == 2) {
        *side = (*side)[1];
        unwrapped = true;
      }
    if (!unwrapped) return false;
  }
}

// ---- order

// A sum of a number and a real constant, as a difference that a sign test can read.
DAG signedDifference(DAG a, DAG b) { return simpl(new5(SUM, a, cons1, b, consm1)); }

// Whether a sum can hold `x`.
bool isAlgebraic(DAG x) { return isImmediate(x) || (tagOf(x) <= UNEVAL && !hasTag(x, STRING)); }

bool isRealValue(DAG x) { return isNumeric(x) || x == ini("infinity") || x == consminf; }

DAG order(DAG x, bool strict) {
  DAG a = x[1], b = x[2];
  if (isTag(a, RTABLE))
    KernelException("a %1 is not valid lhs to < or <=", ini("rtable"));
  if (isTag(b, RTABLE))
    KernelException("a %1 is not valid rhs to < or <=", ini("rtable"));
  if (strict && a == b && !isUndefined(a)) return ini("false");
  if (isUndefined(a) || isUndefined(b)) {
    DAG operation = strict ? ini("<") : ini("<=");
    return TriggerNumericEvent(invalidOperation, operation, a, b, ini("false"), true);
  }
  if ((isTag(a, COMPLEX) && (isNumber(b) || isInfinite(b))) ||
      (isTag(b, COMPLEX) && (isNumber(a) || isInfinite(a)))) {
    DAG operation = strict ? ini("<") : ini("<=");
    return TriggerNumericEvent(invalidOperation, operation, a, b, ini("false"), true);
  }
  if (isRealValue(a) && isRealValue(b)) {
    int c = isInfinite(a) && isInfinite(b) && consneg(a) == consneg(b) ? 0 : compcon(a, b);
    return truth(strict ? c < 0 : c <= 0);
  }
  if (isTag(a, STRING) && isTag(b, STRING)) {
    int c = std::strcmp(textOf(a), textOf(b));
    return truth(strict ? c < 0 : c <= 0);
  }
  if (a == b) return ini("true");
  if (!isAlgebraic(a) || !isAlgebraic(b)) return x;
  DAG difference = signedDifference(a, b);
  if (isNumeric(difference)) return truth(strict ? consneg(difference) : consneg(difference) || isZero(difference));
  return x;
}

// Truth of a relation between integers.
bool relationHolds(Tag relation, DAG a, DAG b) {
  int c = compcon(a, b);
  switch (relation) {
    case EQUATION: return c == 0;
    case INEQUAT: return c != 0;
    case LESSEQ: return c <= 0;
    default: return c < 0;
  }
}

bool isRelation(Tag tag) {
  return tag == EQUATION || tag == INEQUAT || tag == LESSEQ || tag == LESSTHAN;
}

DAG truthOfRelation(DAG x) {
  checkStack();
  Tag tag = tagOf(x);
  DAG a = evalOperand(x[1]), b = evalOperand(x[2]);
  if (!bindingsEnabled) {
    // Integers compare as they are; an equality needs no object of its own, as it never stays undecided.
    if (isInteger(a) && isInteger(b) && a != consm0 && b != consm0) return truth(relationHolds(tag, a, b));
    if (tag == EQUATION || tag == INEQUAT) {
      a = simpl(a);
      b = simpl(b);
      return truth(areEqual(a, b) == (tag == EQUATION));
    }
  }
  if (a == x[1] && b == x[2]) return evalbool(simpl(x));
  DAG evaluated = CopyAlg(x);
  evaluated[1] = a;
  evaluated[2] = b;
  return evalbool(simpl(evaluated));
}

}  // namespace

DAG truthOf(DAG condition) {
  if (!isImmediate(condition) && isRelation(tagOf(condition))) return truthOfRelation(condition);
  return evalbool(simpl(eval(condition)));
}

namespace {

// An operand of a plain relation: an immediate, or 0.
[[gnu::always_inline]] inline DAG smallOperand(DAG x) {
  if (!isImmediate(x)) {
    if (!isFrameReference(tagOf(x))) return DAG();
    x = plainValue(x);
    if (!isImmediate(x)) return DAG();
  }
  return x == consm0 ? DAG() : x;
}

}  // namespace

DAG plainTruthOf(DAG x) {
  if (isImmediate(x)) return DAG();
  Tag tag = tagOf(x);
  if (!isRelation(tag)) return DAG();
  DAG left = smallOperand(x[1]), right = smallOperand(x[2]);
  if (!left || !right) return DAG();
  // Immediates are in the order of their words.
  auto a = static_cast<std::int32_t>(left.word), b = static_cast<std::int32_t>(right.word);
  switch (tag) {
    case EQUATION: return truth(a == b);
    case INEQUAT: return truth(a != b);
    case LESSEQ: return truth(a <= b);
    default: return truth(a < b);
  }
}

DAG evalbool(DAG x) {
  if (isImmediate(x)) KernelException("invalid boolean expression");
  switch (tagOf(x)) {
    case NAME: case MEMBER: case TABLEREF: case CATENATE: case POWER: case PROD: case SUM:
    case FUNCTION: case UNEVAL:
      return x;
    case DCOLON: return truth(type(simpl(eval(x[1])), simpl(eval(x[2]))));
    case OR:
      checkStack();
      passWork(objectSteps);
      return orTruth(x);
    case AND:
      checkStack();
      passWork(objectSteps);
      return andTruth(x);
    case NOT:
      checkStack();
      passWork(objectSteps);
      return notTruth(x);
    case EQUATION: return truth(areEqual(x[1], x[2]));
    case INEQUAT: return truth(!areEqual(x[1], x[2]));
    case LESSEQ: return order(x, false);
    case LESSTHAN: return order(x, true);
    default: KernelException("invalid boolean expression");
  }
}

}  // namespace korel
