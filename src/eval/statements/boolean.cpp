#include "eval/statements/boolean.h"

#include <cstring>

#include "eval/evaluate/evaluate.h"
#include "eval/evaluate/operand.h"
#include "eval/simplify/bindings.h"
#include "eval/simplify/simplify.h"
#include "eval/structure/equality.h"
#include "eval/types/types.h"
#include "frame/errors.h"
#include "frame/interrupts.h"
#include "numbers/arithmetic.h"
#include "numbers/complex/complex.h"
#include "numbers/events/numeric_events.h"
#include "numbers/float/float.h"
#include "rtable/rtable_kind.h"
#include "store/constants.h"
#include "store/copy_on_change.h"
#include "store/names.h"
#include "store/object_fields.h"
#include "store/tag_facts.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

// Truth of an operand. The value of an operation is its truth already: finding that once more, at each level,
// would double the work at each level of what stays undecided.
DAG operandTruth(DAG x) { return isAmong(x, booleanTags) ? evalbool(x) : truthOf(x); }

// `a or b` with `decisive` = true, `a and b` with `decisive` = false: either operand decides alone when it has that
// truth, and leaves the matter to the other when it has the opposite one.
DAG junctionTruth(DAG x, DAG decisive, DAG neutral) {
  DAG a = operandTruth(x[1]);
  if (a == decisive) return a;
  DAG b = operandTruth(x[2]);
  if (b == decisive) return b;
  if (a == neutral) return b;
  if (b == neutral || a == b) return a;
  return a == x[1] && b == x[2] ? x : simpl(new3(tagOf(x), a, b));
}

DAG notTruth(DAG x) {
  DAG a = operandTruth(x[1]);
  if (a == ini("true")) return ini("false");
  if (a == ini("false")) return ini("true");
  if (a == ini("FAIL")) return a;
  return a == x[1] ? x : simpl(new2(NOT, a));
}

DAG truthOfOperation(DAG x) {
  checkStack();
  passWork(objectSteps);
  if (hasTag(x, NOT)) return notTruth(x);
  const bool isOr = hasTag(x, OR);
  return junctionTruth(x, truth(isOr), truth(!isOr));
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
  if (!isAmong(a, statementTags)) return false;
  for (Word i = 1; i < lengthOf(a); ++i)
    if (!bodiesEqual(a[i], b[i])) return false;
  return true;
}

bool proceduresEqual(DAG a, DAG b) {
  if (a == b) return true;
  if (lexicalsOf(a) != lexicalsOf(b) || rememberOf(a) != rememberOf(b)) return false;
  DAG pa = paramsOf(a), pb = paramsOf(b);
  if (lengthOf(pa) != lengthOf(pb)) return false;
  for (Word i = 1; i < lengthOf(pa); ++i) {
    if (tagOf(pa[i]) != tagOf(pb[i])) return false;
    if (hasTag(pa[i], DCOLON) && pa[i][2] != pb[i][2]) return false;
  }
  return bodiesEqual(bodyOf(a), bodyOf(b));
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
    if (isTag(a, RTABLE) && isTag(b, RTABLE)) return Equal(a, b);
    DAG memberA = singleMember(a), memberB = singleMember(b);
    if (memberA == a && memberB == b) return false;
    a = memberA;
    b = memberB;
  }
}

// ---- order

// A sum of a number and a real constant, as a difference that a sign test can read.
DAG signedDifference(DAG a, DAG b) { return simpl(new5(SUM, a, cons1, b, consm1)); }

// Whether a sum can hold `x`.
bool isAlgebraic(DAG x) { return isAmong(x, algebraicTags); }

bool isRealValue(DAG x) { return isNumeric(x) || x == ini("infinity") || x == consminf; }

DAG order(DAG x, bool strict) {
  DAG a = x[1], b = x[2];
  if (isTag(a, RTABLE)) KernelException("a %1 is not valid lhs to < or <=", rtableWord(a));
  if (isTag(b, RTABLE)) KernelException("a %1 is not valid rhs to < or <=", rtableWord(b));
  if (strict && a == b && !isUndefined(a)) return ini("false");
  auto isNumberLike = [](DAG side) { return isNumber(side) || isInfinite(side); };
  if (isUndefined(a) || isUndefined(b) || (isTag(a, COMPLEX) && isNumberLike(b)) ||
      (isTag(b, COMPLEX) && isNumberLike(a))) {
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

bool isRelation(Tag tag) { return tag == EQUATION || tag == INEQUAT || tag == LESSEQ || tag == LESSTHAN; }

DAG truthOfRelation(DAG x) {
  checkStack();
  Tag tag = tagOf(x);
  DAG a = evalOperand(x[1]), b = evalOperand(x[2]);
  if (!bindingsEnabled) {
    // Integers compare as they are; an equality needs no object of its own, as it never stays undecided.
    if (isInteger(a) && isInteger(b) && a != consm0 && b != consm0) return truth(relationHolds(tag, a, b));
    if (tag == EQUATION || tag == INEQUAT) {
      // Strings are unique: one word, one text, and no text is a number (bench/files.sh, lines of a file).
      if (isTag(a, STRING) && (isImmediate(b) || hasTag(b, STRING))) return truth((a == b) == (tag == EQUATION));
      a = simpl(a);
      b = simpl(b);
      return truth(areEqual(a, b) == (tag == EQUATION));
    }
  }
  return evalbool(simpl(withParts(x, a, b)));
}

}  // namespace

DAG truthOf(DAG condition) {
  if (!isImmediate(condition) && isRelation(tagOf(condition))) return truthOfRelation(condition);
  return evalbool(simpl(eval(condition)));
}

namespace {

// An operand of a plain relation: an immediate, a text that a name outside procedures stands for, or 0.
[[gnu::always_inline]] inline DAG smallOperand(DAG x) {
  if (!isImmediate(x)) {
    if (isFrameReference(tagOf(x))) {
      x = plainValue(x);
      if (!isImmediate(x)) return DAG();
    } else if (hasTag(x, NAME) && !bindingsEnabled) {
      x = constantOfName(x);
    } else {
      return DAG();
    }
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
  if ((left.word & right.word & 1) == 0) {
    // Strings are unique: one word, one text, and no text is a number.
    return tag == EQUATION || tag == INEQUAT ? truth((left == right) == (tag == EQUATION)) : DAG();
  }
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
    case NAME: case MEMBER: case TABLEREF: case CATENATE: case POWER: case PROD: case SUM: case FUNCTION: case UNEVAL:
      return x;
    case DCOLON: return truth(type(simpl(eval(x[1])), simpl(eval(x[2]))));
    case AND: case OR: case NOT: return truthOfOperation(x);
    case EQUATION: return truth(areEqual(x[1], x[2]));
    case INEQUAT: return truth(!areEqual(x[1], x[2]));
    case LESSEQ: return order(x, false);
    case LESSTHAN: return order(x, true);
    default: KernelException("invalid boolean expression");
  }
}

}  // namespace korel
