// Integer powers and square roots of floats.

#include <cstdlib>

#include "numbers/arithmetic.h"
#include "frame/precision.h"
#include "numbers/complex/complex.h"
#include "numbers/float/float.h"
#include "numbers/float/float_groups.h"
#include "numbers/float/float_rounding.h"
#include "numbers/integer/integer_space.h"
#include "store/objects.h"

namespace korel {

namespace {

// x^n for n >= 0. Rounding errors double with each squaring: every third level works with a digit
// more, the outermost with two.
DAG raised(DAG x, std::int64_t n, int depth) {
  if (n == 0) return consf1;
  if (n == 1) return x;
  const bool guarded = depth % 3 == 0;
  EnvironmentChange change;
  if (guarded) raiseDigits(change, depth == 0 ? 2 : 1);
  DAG half = raised(x, n / 2, depth + 1);
  DAG y = evalfmul(half, half);
  if (n % 2 != 0) y = evalfmul(x, y);
  if (guarded) restoreDigits(change);
  return y;
}

}  // namespace

DAG evalfpwr(DAG a, std::int32_t n) {
  DAG x = evalf(a);
  if (!isFLOAT(x)) return new3(PROD, x, Newint(n));
  if (n == 0) return consf1;
  DAG m = mantissaOf(x);
  if (!isSingular(x) && isZeroMantissa(m)) {
    if (n < 0)
      return TriggerNumericEvent(invalidOperation, ini("evalf"), m, Newint(n), consfNaN, true);
    return m == consm0 && n % 2 != 0 ? consfm0 : consf0;
  }
  if (isSingular(x)) return TrapFPOWER(x, Newint(n));
  DAG y = raised(x, std::llabs(n), 0);
  if (n > 0) return evalf(y);
  if (!isFiniteFloat(y) || isFloatZero(y)) return TrapFDIV(consf1, y);
  // The reciprocal of the mantissa alone, so that no exponent is negated near its bound.
  DAG reciprocal = evalf(power(mantissaOf(y), -1));
  return evalf(newFLOAT(mantissaOf(reciprocal),
                        addint(exponentOf(reciprocal), complint(exponentOf(y)))));
}

DAG evalfsqrt(DAG a) {
  DAG x = evalf(a);
  if (isComplex(x) || !isFLOAT(x) || isSingular(x)) return x;
  DAG m = mantissaOf(x);
  if (isZeroMantissa(m)) return consf0;
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
  bool exact;
  DAG root = truncatedRoot(scaled, &exact);
  discard(scaled, m);
  return BuildFloat(exact ? root : markTruncated(root), NewInteger((e - t) / 2));
}

}  // namespace korel
