// Integer powers and square roots of floats.

#include "numbers/float/float.h"

#include "eval/evaluate/evalf.h"
#include "frame/environment.h"
#include "frame/environment_block.h"
#include "numbers/arithmetic.h"
#include "numbers/complex/complex.h"
#include "numbers/float/float_groups.h"
#include "numbers/float/float_rounding.h"
#include "numbers/integer/integer_space.h"
#include "store/objects.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

// x^n for n >= 0. Rounding errors double with each squaring: every third level works with a digit
// more, the outermost with two.
DAG raised(DAG x, DAG n, int depth) {
  if (n == cons0) return consf1;
  if (n == cons1) return x;
  checkStack();
  const bool guarded = depth % 3 == 0;
  EnvironmentChange change;
  if (guarded) raiseDigits(change, depth == 0 ? 2 : 1);
  DAG rest;
  DAG half = raised(x, IntegerDivide(n, immediate(2), &rest), depth + 1);
  DAG y = evalfmul(half, half);
  if (rest != cons0) y = evalfmul(x, y);
  if (guarded) restoreDigits(change);
  return y;
}

bool isPowerOfTen(DAG m) { return compint(m, shift10p(cons1, ilength(m) - 1)) == 0; }

// x^n for an integer beyond a word, where that needs no multiplications; 0 otherwise. A power of 1 is 1 to
// `Digits` digits, as any product of as many factors. Another x of L digits has a logarithm of at least
// 0.4 * 10^-L, so that an n of more than L + 11 digits is sure to leave the range of exponents.
DAG powerAtOnce(DAG x, DAG n) {
  DAG m = mantissaOf(x);
  const std::int64_t length = ilength(m), places = length + exponentValue(exponentOf(x));
  const bool isNegative = isNegativeMantissa(m) && isodd(n);
  DAG sign = isNegative ? consm1 : cons1;
  if (places == 1 && isPowerOfTen(m)) {
    if (length == 1) return newFLOAT(sign, cons0);
    const std::int64_t zeros = requireDigits() - 1;
    return newFLOAT(shift10p(sign, zeros), NewInteger(-zeros));
  }
  if (ilength(n) <= length + 11) return DAG();
  if ((places >= 1) != consneg(n))
    return TriggerNumericEvent(overflowEvent, ini("evalf"), x, n, DefaultOverflow(sign), true);
  return TriggerNumericEvent(underflowEvent, ini("evalf"), x, n, DefaultUnderflow(sign), true);
}

}  // namespace

DAG evalfpwr(DAG a, DAG n) {
  DAG x = evalf(a);
  if (!isSoftFloat(x)) return new3(PROD, x, n);
  if (isZero(n)) return consf1;
  DAG m = mantissaOf(x);
  const bool isNegative = consneg(n);
  if (!isSingular(x) && isZeroImmediate(m)) {
    if (isNegative) return TriggerNumericEvent(invalidOperation, ini("evalf"), m, n, consfNaN, true);
    return m == consm0 && isodd(n) ? consfm0 : consf0;
  }
  if (isSingular(x)) return TrapFPOWER(x, n);
  if (n == consm1 && x != a) return evalfdiv(cons1, a);  // more digits than `Digits`: rounded once
  if (!FitIntoWord(n))
    if (DAG power = powerAtOnce(x, n)) return power;
  DAG y = raised(x, isNegative ? complint(n) : n, 0);
  if (!isNegative) return evalf(y);
  if (!isFiniteFloat(y) || isFloatZero(y)) return TrapFDIV(consf1, y);
  // The reciprocal of the mantissa alone, so that no exponent is negated near its bound.
  DAG reciprocal = evalf(power(mantissaOf(y), -1));
  return evalf(newFLOAT(mantissaOf(reciprocal), addint(exponentOf(reciprocal), complint(exponentOf(y)))));
}

DAG evalfsqrt(DAG a) {
  DAG x = evalf(a);
  if (isComplex(x) || !isSoftFloat(x) || isSingular(x)) return x;
  DAG m = mantissaOf(x);
  if (isZeroImmediate(m)) return consf0;
  assert(!isNegativeMantissa(m));
  std::int64_t digits = precisionDigits();
  if (isImmediate(exponentOf(x))) {
    RoundedMantissa root = roundedRoot(m, exponentValue(exponentOf(x)), digits);
    if (!root.inexact || GetNumericStatusFlag(inexactEvent) != 0)
      return newFLOAT(root.mantissa, NewInteger(root.exponent));
  }
  // An event shows the whole root to a handler.
  std::int64_t length = ilength(m), e = exponentValue(exponentOf(x));
  // An even exponent, and twice the digits of the result and one more.
  std::int64_t t = 2 * digits - length + ((e - length) % 2 != 0 ? 1 : 2);
  DAG scaled = times10p(m, t);
  if (!isInteger(scaled)) return scaled;
  bool exact;
  DAG root = truncatedRoot(scaled, &exact);
  discard(scaled, m);
  return BuildFloat(exact ? root : markTruncated(root), NewInteger((e - t) / 2));
}

}  // namespace korel
