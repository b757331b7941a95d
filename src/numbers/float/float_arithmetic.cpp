// Sums, products and quotients of floats, each rounded once.

#include <algorithm>
#include <cstdlib>

#include "numbers/arithmetic.h"
#include "frame/precision.h"
#include "frame/errors.h"
#include "numbers/float/float.h"
#include "numbers/float/float_groups.h"
#include "numbers/float/float_rounding.h"
#include "store/objects.h"

namespace korel {

namespace {

DAG asFloat(DAG x) { return isFLOAT(x) && ilength(x[1]) <= precisionDigits() ? x : evalf(x); }

bool fitsWord(std::int64_t x) {
  return x == static_cast<std::int32_t>(x);
}

// The operand beside which the other one is too small to count.
DAG negligibleBeside(DAG kept, DAG a, DAG b) {
  return GetNumericStatusFlag(inexactEvent) != 0 ? kept : inexactResult(a, b, kept);
}

// Product with a zero: a zero with the product's sign.
DAG zeroProduct(DAG ma, DAG mb) {
  return isNegativeMantissa(ma) == isNegativeMantissa(mb) ? consf0 : consfm0;
}

// Exponents up to here stay immediate whatever a rounding adds: no event of range can come.
bool isModest(DAG exponent) {
  constexpr std::int32_t bound = 1 << 28;
  return isImmediate(exponent) && std::abs(immediateValue(exponent)) < bound;
}

// The float of ma * mb * 10^(ea + eb), rounded to `Digits`. No mantissa is zero.
DAG floatProduct(DAG ma, DAG mb, DAG ea, DAG eb) {
  if (isModest(ea) && isModest(eb)) {
    RoundedMantissa product = roundedProduct(ma, mb, requireDigits());
    if (!product.inexact || GetNumericStatusFlag(inexactEvent) != 0)
      return new3(FLOAT, product.mantissa,
                  NewInteger(std::int64_t{immediateValue(ea)} + immediateValue(eb) + product.exponent));
  }
  // An event shows the whole product to a handler.
  return BuildFloat(mulint(ma, mb), addint(ea, eb));
}

// n / d * 10^difference, rounded once: what the operation on `a` and `b` comes to. Neither integer is zero.
DAG roundedFraction(DAG n, DAG d, std::int64_t difference, DAG a, DAG b) {
  RoundedMantissa r = roundedQuotient(n, d, requireDigits());
  const std::int64_t exponent = difference + r.exponent;
  if (!fitsWord(difference) || !fitsWord(exponent)) {
    DAG sign = signOf(r.mantissa);
    if (difference < 0)
      return TriggerNumericEvent(underflowEvent, ini("evalf"), a, b, DefaultUnderflow(sign), true);
    return TriggerNumericEvent(overflowEvent, ini("evalf"), a, b, DefaultOverflow(sign), true);
  }
  DAG result = newFLOAT(r.mantissa, NewInteger(exponent));
  return r.inexact && GetNumericStatusFlag(inexactEvent) == 0 ? inexactResult(a, b, result) : result;
}

}  // namespace

DAG FloatAdd(DAG a, DAG b) {
  if (isSingular(a) || isSingular(b)) return TrapFSUM(a, b);
  DAG ma = mantissaOf(a), mb = mantissaOf(b);
  if (ma == consm0 && mb == consm0) return consfm0;
  if (ma == consm0) return b;
  if (mb == consm0) return ma == cons0 && roundsDown() ? consfm0 : a;
  if (ma == cons0) return b;
  if (mb == cons0) return a;

  std::int64_t digits = precisionDigits();
  std::int64_t ea = exponentValue(exponentOf(a)), eb = exponentValue(exponentOf(b));
  std::int64_t la = ilength(ma), lb = ilength(mb);
  // More than a digit below the last digit that the larger operand can keep.
  if (eb + lb < std::min(ea, ea + la - digits) - 1) return negligibleBeside(a, a, b);
  if (ea + la < std::min(eb, eb + lb - digits) - 1) return negligibleBeside(b, a, b);

  if (isModest(exponentOf(a)) && isModest(exponentOf(b))) {
    RoundedMantissa sum = roundedSum(ma, ea, mb, eb, requireDigits());
    if (sum.mantissa == cons0) return roundedZero();
    if (!sum.inexact || GetNumericStatusFlag(inexactEvent) != 0)
      return new3(FLOAT, sum.mantissa, NewInteger(sum.exponent));
  }
  // An event shows the whole sum to a handler.
  DAG exponent = exponentOf(a);
  if (ea > eb) {
    ma = shift10p(ma, ea - eb);
    exponent = exponentOf(b);
  } else if (eb > ea) {
    mb = shift10p(mb, eb - ea);
  }
  DAG sum = addint(ma, mb);
  if (sum == cons0) return roundedZero();
  return ilength(sum) > digits ? BuildFloat(sum, exponent) : newFLOAT(sum, exponent);
}

DAG evalfadd(DAG a, DAG b) {
  DAG x = asFloat(a), y = asFloat(b);
  if (!isFLOAT(x) || !isFLOAT(y)) return new5(SUM, x, cons1, y, cons1);
  return FloatAdd(x, y);
}

DAG FloatMultiply(DAG a, DAG b) {
  if (isSingular(a) || isSingular(b)) return TrapFPROD(a, b);
  DAG ma = mantissaOf(a), mb = mantissaOf(b);
  if (isZeroMantissa(ma) || isZeroMantissa(mb)) return zeroProduct(ma, mb);
  return floatProduct(ma, mb, exponentOf(a), exponentOf(b));
}

DAG evalfmul(DAG a, DAG b) {
  DAG x = asFloat(a);
  if (!isFLOAT(x)) return new5(PROD, x, cons1, b, cons1);
  if (isSingular(x) || (isFLOAT(b) && isSingular(b)))
    if (DAG result = TrapFPROD(x, b)) return result;
  DAG m = mantissaOf(x);
  if (isInteger(b)) {
    if (isZeroMantissa(m) || isZeroMantissa(b)) return zeroProduct(m, b);
    // An integer that fits is taken as it is: only the product is rounded.
    if (ilength(b) <= precisionDigits()) {
      if (isModest(exponentOf(x))) return floatProduct(m, b, exponentOf(x), cons0);
      DAG product = newFLOAT(mulint(m, b), exponentOf(x));
      return isSingular(product) ? product : BuildFloat(mantissaOf(product), exponentOf(product));
    }
  } else if (hasTag(b, RATIONAL)) {
    if (isZeroMantissa(m)) return zeroProduct(m, b[1]);
    if (isFLOAT(a)) x = a;
    return roundedFraction(mulint(mantissaOf(x), b[1]), b[2], exponentValue(exponentOf(x)), x, b);
  }
  DAG y = asFloat(b);
  if (!isFLOAT(y)) return new5(PROD, x, cons1, y, cons1);
  return FloatMultiply(x, y);
}

DAG evalfdiv(DAG a, DAG b) {
  requireDigits();
  a = SuppressHFloats(a);
  b = SuppressHFloats(b);
  auto isSingularFloat = [](DAG x) { return isFLOAT(x) && isSingular(x); };
  if (isSingularFloat(a) || isSingularFloat(b) || isZero(b))
    return TrapFDIV(isFLOAT(a) ? a : evalf(a), isFLOAT(b) ? b : evalf(b));
  if (isZero(a)) return evalf(a);
  const DecimalFraction p = decimalFraction(a), q = decimalFraction(b);
  return roundedFraction(mulint(p.numerator, q.denominator), mulint(p.denominator, q.numerator),
                         p.exponent - q.exponent, a, b);
}

DAG rationalToFloat(DAG x) {
  std::int64_t digits = requireDigits();
  DAG n = x[1], d = x[2];
  const bool flagged = GetNumericStatusFlag(inexactEvent) != 0;
  // A part that isn't held by `Digits` digits counts as inexact, whatever the quotient.
  auto isLong = [digits](DAG part) { return hasNonzeroTail(part, ilength(part) - digits); };
  RoundedMantissa q = roundedQuotient(n, d, digits);
  const bool inexact = !flagged && (q.inexact || isLong(n) || isLong(d));
  DAG result = newFLOAT(q.mantissa, NewInteger(q.exponent));
  return inexact ? inexactResult(x, DAG(), result) : result;
}

}  // namespace korel
