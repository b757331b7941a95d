// Making floats; sums, products and quotients, each rounded once; the exact value of a float.

#include "numbers/float/float.h"

#include <algorithm>
#include <cstdlib>
#include <limits>

#include "eval/evaluate/evalf.h"
#include "frame/environment_block.h"
#include "numbers/arithmetic.h"
#include "numbers/float/float_groups.h"
#include "numbers/float/float_rounding.h"
#include "store/objects.h"

namespace korel {

// ---- range and rounding

namespace {

DAG overflowed(StandardName operation, DAG m, DAG e) {
  return TriggerNumericEvent(overflowEvent, ini(operation), m, e, DefaultOverflow(signOf(m)), true);
}

DAG underflowed(StandardName operation, DAG m, DAG e) {
  return TriggerNumericEvent(underflowEvent, ini(operation), m, e, DefaultUnderflow(signOf(m)), true);
}

bool isAboveRange(DAG e) { return !isImmediate(e) && tagOf(e) == INTPOS && compint(e, cons_maxfloatexp) > 0; }
bool isBelowRange(DAG e) { return !isImmediate(e) && tagOf(e) == INTNEG && compint(e, cons_minfloatexp) > 0; }

}  // namespace

DAG newFLOAT(DAG m, DAG e) {
  // An immediate exponent and the longest mantissa stay inside a word together: no check.
  if (isImmediate(e)) return new3(FLOAT, m, e);
  if (!isInteger(e)) return new3(FLOAT, m, e);
  if (isAboveRange(e)) return overflowed("Float", m, e);
  if (isBelowRange(e)) return underflowed("Float", m, e);
  if (isInteger(m) && exponentValue(e) + ilength(m) > std::numeric_limits<std::int32_t>::max())
    return overflowed("Float", m, e);
  return new3(FLOAT, m, e);
}

DAG BuildFloat(DAG m, DAG e) {
  std::int64_t digits = requireDigits();
  if (!isInteger(e)) return newFLOAT(m, e);
  DAG mantissa = m, exponent = e;
  const bool flagged = GetNumericStatusFlag(inexactEvent) != 0;
  bool inexact = false;
  for (;;) {
    std::int64_t length = ilength(mantissa);
    if (length <= digits) {
      DAG result = newFLOAT(mantissa, exponent);
      return inexact ? inexactResult(new3(FLOAT, m, e), DAG(), result) : result;
    }
    // The digits are looked at only while the flag is clear.
    if (!flagged && !inexact) inexact = hasNonzeroTail(mantissa, length - digits);
    if (isAboveRange(exponent)) return overflowed("evalf", mantissa, exponent);
    if (isBelowRange(exponent)) return underflowed("evalf", mantissa, exponent);
    // Comes round a second time when a carry has made the mantissa a digit longer.
    mantissa = times10p(mantissa, digits - length);
    exponent = addint(exponent, NewInteger(length - digits));
  }
}

// ---- arithmetic

namespace {

DAG asFloat(DAG x) { return isSoftFloat(x) && ilength(x[1]) <= precisionDigits() ? x : evalf(x); }

bool fitsWord(std::int64_t x) { return x == static_cast<std::int32_t>(x); }

// The operand beside which the other one is too small to count.
DAG negligibleBeside(DAG kept, DAG a, DAG b) {
  return GetNumericStatusFlag(inexactEvent) != 0 ? kept : inexactResult(a, b, kept);
}

// Product with a zero: a zero with the product's sign.
DAG zeroProduct(DAG ma, DAG mb) { return isNegativeMantissa(ma) == isNegativeMantissa(mb) ? consf0 : consfm0; }

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
    if (difference < 0) return TriggerNumericEvent(underflowEvent, ini("evalf"), a, b, DefaultUnderflow(sign), true);
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
  if (!isSoftFloat(x) || !isSoftFloat(y)) return new5(SUM, x, cons1, y, cons1);
  return FloatAdd(x, y);
}

DAG FloatMultiply(DAG a, DAG b) {
  if (isSingular(a) || isSingular(b)) return TrapFPROD(a, b);
  DAG ma = mantissaOf(a), mb = mantissaOf(b);
  if (isZeroImmediate(ma) || isZeroImmediate(mb)) return zeroProduct(ma, mb);
  return floatProduct(ma, mb, exponentOf(a), exponentOf(b));
}

DAG evalfmul(DAG a, DAG b) {
  DAG x = asFloat(a);
  if (!isSoftFloat(x)) return new5(PROD, x, cons1, b, cons1);
  if (isSingular(x) || (isSoftFloat(b) && isSingular(b)))
    if (DAG result = TrapFPROD(x, b)) return result;
  DAG m = mantissaOf(x);
  if (isInteger(b)) {
    if (isZeroImmediate(m) || isZeroImmediate(b)) return zeroProduct(m, b);
    // An integer that fits is taken as it is: only the product is rounded.
    if (ilength(b) <= precisionDigits()) {
      if (isModest(exponentOf(x))) return floatProduct(m, b, exponentOf(x), cons0);
      DAG product = newFLOAT(mulint(m, b), exponentOf(x));
      return isSingular(product) ? product : BuildFloat(mantissaOf(product), exponentOf(product));
    }
  } else if (hasTag(b, RATIONAL)) {
    if (isZeroImmediate(m)) return zeroProduct(m, b[1]);
    if (isSoftFloat(a)) x = a;
    return roundedFraction(mulint(mantissaOf(x), b[1]), b[2], exponentValue(exponentOf(x)), x, b);
  }
  DAG y = asFloat(b);
  if (!isSoftFloat(y)) return new5(PROD, x, cons1, y, cons1);
  return FloatMultiply(x, y);
}

DAG evalfdiv(DAG a, DAG b) {
  // Two ordinary floats come first (bench/float_bench.cpp).
  if (isFiniteFloat(a) && isFiniteFloat(b) && !isZeroImmediate(mantissaOf(a)) && !isZeroImmediate(mantissaOf(b)))
    return roundedFraction(mantissaOf(a), mantissaOf(b), exponentValue(exponentOf(a)) - exponentValue(exponentOf(b)), a,
                           b);
  requireDigits();
  a = SuppressHFloats(a);
  b = SuppressHFloats(b);
  auto isSingularFloat = [](DAG x) { return isSoftFloat(x) && isSingular(x); };
  if (isSingularFloat(a) || isSingularFloat(b) || isZero(b))
    return TrapFDIV(isSoftFloat(a) ? a : evalf(a), isSoftFloat(b) ? b : evalf(b));
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

// ---- exact values

DAG floatrat(DAG x) {
  DAG m = mantissaOf(x), e = exponentOf(x);
  if (isZeroImmediate(m)) return cons0;
  std::int64_t exponent = exponentValue(e);
  if (exponent >= 0) return exponent == 0 ? m : times10p(m, exponent);
  DAG power = times10p(cons1, -exponent), parts[2];
  if (!isInteger(power)) return power;
  gcdsimpl(m, power, parts);
  return parts[1] == cons1 ? parts[0] : new3(RATIONAL, parts[0], parts[1]);
}

}  // namespace korel
