#include "eval/evaluate/evalf.h"

#include "eval/evaluate/environment_variables.h"
#include "eval/evaluate/evaluate.h"
#include "eval/procedures/remember.h"
#include "eval/simplify/simplify.h"
#include "frame/environment_block.h"
#include "frame/errors.h"
#include "frame/interrupts.h"
#include "library/library_calls.h"
#include "numbers/arithmetic.h"
#include "numbers/complex/complex.h"
#include "numbers/float/hypergeometric.h"
#include "numbers/integer/integer.h"
#include "rtable/rtable_kind.h"
#include "store/constants.h"
#include "store/copy_on_change.h"
#include "store/object_fields.h"
#include "store/objects.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

// ---- what is remembered

DAG remembered(DAG key) { return srchpc(ini("evalf"), key, precisionDigits()); }

DAG remember(DAG key, DAG value) {
  value = value == null ? key : simpl(value);
  pcinsert(ini("evalf"), key, value, precisionDigits());
  return value;
}

// A hit that was computed to more digits is rounded; what stayed as it was is no new work.
DAG fromMemory(DAG hit, DAG x) { return hit == x ? x : evalf(hit); }

DAG evalfName(DAG x) {
  if (x == ini("infinity")) return consfinf;
  if (x == ini("undefined")) return consfNaN;
  DAG hit = remembered(x);
  if (hit != absent) return isNumeric(hit) || isComplex(hit) ? fromMemory(hit, x) : hit;
  return remember(x, evalextf("evalf/constant/", textOf(x), null));
}

DAG evalfFunction(DAG x) {
  DAG f = x[1], arguments = x[2];
  // (g@@n)(args): the library repeats the function.
  if (isCallOf(f, ini("@@")) && lengthOf(f[2]) == 3 && isInteger(f[2][2]))
    return evalsysf("evalf/@@", simpl(new4(EXPSEQ, f[2][1], f[2][2], arguments)));
  if (isName(f) && hasText(f, "hypergeom/kernel") && isSequence(arguments) && memberCount(arguments) == 3)
    return hypergeom(arguments[1], arguments[2], arguments[3], cons0);
  DAG hit = remembered(x);
  if (hit != absent) return isTag(hit, FUNCTION) ? hit : fromMemory(hit, x);
  if (!isNameOrIndexed(f)) return x;
  return remember(x, evalextf("evalf/", f, arguments));
}

// ---- structures: a copy at the first operand that changes

// Fields `first`, `first` + `step`, ... through `f`; `x` itself when none changes. Unlike other walks, this one
// changes immediates too.
DAG mapFields(DAG x, Word first, Word step, DAG (*f)(DAG)) { return withFields(x, first, step, f); }

DAG mapFirst(DAG x) { return mapFields(x, 1, lengthOf(x), evalf); }
DAG evalfOperands(DAG x) { return simpl(mapFields(x, 1, 1, evalf)); }

DAG evalfTerm(DAG term) { return term == sqrtm1 ? term : evalf(term); }
DAG evalfCoefficient(DAG coefficient) { return coefficient == cons1 ? coefficient : evalf(coefficient); }

DAG evalfSum(DAG x) {
  DAG terms = mapFields(x, 1, 2, evalfTerm);
  DAG both = mapFields(terms, 2, 2, evalfCoefficient);
  return simpl(both);
}

// Value of base^exponent for numbers, or 0 where the pair stands.
DAG evalfPower(DAG base, DAG exponent) {
  if (isImmediate(exponent) || !isNumeric(exponent)) return DAG();
  if (isImmediate(base) || !isNumeric(base)) return DAG();
  if (isZero(base) || isInfinite(base) || isUndefined(base)) return DAG();
  if (tagOf(exponent) <= INTPOS) return DAG();
  if (isSoftFloat(base) && hasTag(exponent, RATIONAL) && exponent[2] == immediate(2) && !consneg(base))
    return evalfpwr(evalfsqrt(base), exponent[1]);
  return evalsysf("evalf/power", new3(EXPSEQ, base, exponent));
}

DAG evalfProduct(DAG x) {
  CopyOnChange copy(x);
  for (Word i = 1, n = lengthOf(x); i < n; i += 2) {
    DAG base = x[i], exponent = x[i + 1];
    DAG value = base == consm1 ? base : evalf(base);
    copy.set(i, value);
    if (DAG power = evalfPower(value, exponent)) {
      copy.set(i, power);
      copy.set(i + 1, cons1);
    }
  }
  return simpl(copy.result);
}

// Values of a hash chain; the keys stay.
DAG evalfEntry(DAG value) { return simpl(evalf(value)); }

}  // namespace

DAG evalf(DAG x) {
  if (isImmediate(x)) {
    std::int64_t digits = requireDigits();
    return digits >= 10 ? newFLOAT(x, cons0) : BuildFloat(x, cons0);
  }
  checkStack();
  passWork(objectSteps);
  switch (tagOf(x)) {
    case INTNEG: case INTPOS: return BuildFloat(x, cons0);
    case RATIONAL: return rationalToFloat(x);
    case FLOAT:
      if (!isInteger(mantissaOf(x)) || ilength(mantissaOf(x)) <= requireDigits()) return x;
      return BuildFloat(mantissaOf(x), exponentOf(x));
    case HFLOAT: return evalf(HFloatToFloat(x));
    case NAME: return evalfName(x);
    case FUNCTION: return evalfFunction(x);
    case SUM: return evalfSum(x);
    case PROD: return evalfProduct(x);
    case COMPLEX: case POWER: case EQUATION: case INEQUAT: case LESSEQ: case LESSTHAN: case EXPSEQ: case RANGE:
      return evalfOperands(x);
    case LIST: case SET: {
      DAG mapped = mapFirst(x);
      return mapped == x ? x : simpl(mapped);
    }
    case SERIES: return withReferences(x, evalf);
    case TABLE: return mapFields(x, tableEntries, 1, evalf);
    case RTABLE: return RTableEvalf(x);
    case HASHTAB: return mapFields(x, 1, 1, evalf);
    case HASH: return mapFields(x, 2, 2, evalfEntry);
    case DCOLON: return evalf(x[1]);
    default: return x;
  }
}

DAG binevalf(DAG x, std::int64_t n) {
  if (n > largestDigits) {
    KernelWarning(2, "Digits cannot exceed %1", NewInteger(largestDigits));
    n = largestDigits;
  }
  EnvironmentChange digits, hardware;
  setDigits(digits, n);
  changeEnvironmentWord(hardware, envUseHardwareFloats, ini("false"));
  DAG result = evalf(simpl(eval(x)));
  restoreEnvironmentWord(hardware);
  restoreEnvironmentWord(digits);
  return result;
}

}  // namespace korel
