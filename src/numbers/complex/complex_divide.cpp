// Reciprocals, quotients and absolute values of COMPLEX numbers.
//
// A float quotient squares the parts of the divisor. Both are scaled by the larger of the two exponents
// first, so that a square neither overflows nor underflows unless the quotient does; a part that is too
// small to reach the sum of squares is left out of it.

#include <cstdlib>

#include "numbers/arithmetic.h"
#include "eval/evaluate/evalf.h"
#include "frame/precision.h"
#include "eval/simplify/simplify.h"
#include "numbers/complex/complex.h"
#include "numbers/complex/complex_forms.h"
#include "numbers/float/float_rounding.h"
#include "numbers/integer/integer.h"
#include "numbers/events/numeric_events.h"
#include "store/constants.h"
#include "store/names.h"
#include "store/objects.h"

namespace korel {

namespace {

struct Part {
  DAG mantissa;
  std::int64_t exponent;
};
Part partOf(DAG x) { return {mantissaOf(x), exponentValue(exponentOf(x))}; }

DAG scaledFloat(DAG mantissa, std::int64_t exponent) {
  return newFLOAT(mantissa, NewInteger(exponent));
}

// The parts of a number in the order of their exponents. A zero never stands first: it would scale the
// other one away.
struct Ordered {
  Part large, small;
};
Ordered inOrder(Part x, Part y) {
  const bool yFirst = isZeroMantissa(x.mantissa) ||
                      (!isZeroMantissa(y.mantissa) && y.exponent > x.exponent);
  return yFirst ? Ordered{y, x} : Ordered{x, y};
}

// True when the smaller part lies more than `digits` decimal places below the larger.
bool isOutOfReach(const Ordered& parts, std::int64_t digits) {
  return digits < (ilength(parts.large.mantissa) + parts.large.exponent) -
                      (ilength(parts.small.mantissa) + parts.small.exponent);
}

// x^2 + y^2 times 10^(-2E), E the exponent of the larger part.
DAG scaledSquares(const Ordered& parts, std::int64_t digits) {
  DAG large = scaledFloat(mulint(parts.large.mantissa, parts.large.mantissa), 0);
  if (isZeroMantissa(parts.small.mantissa) || isOutOfReach(parts, digits)) return large;
  DAG small = scaledFloat(mulint(parts.small.mantissa, parts.small.mantissa),
                          2 * (parts.small.exponent - parts.large.exponent));
  return FloatAdd(small, large);
}

DAG shiftExponent(DAG x, std::int64_t by) {
  if (!isFiniteFloat(x) || isZeroMantissa(mantissaOf(x))) return x;
  return scaledFloat(mantissaOf(x), exponentValue(exponentOf(x)) + by);
}

// p*q + sign*r*s with q and s scaled by 10^(-E).
DAG scaledNumerator(Part p, Part q, Part r, Part s, bool subtract, std::int64_t scale) {
  DAG first = mulint(p.mantissa, q.mantissa), second = mulint(r.mantissa, s.mantissa);
  return FloatAdd(scaledFloat(first, p.exponent + (q.exponent - scale)),
                  scaledFloat(subtract ? complint(second) : second,
                              r.exponent + (s.exponent - scale)));
}

// The infinite imaginary part of the reciprocal of a zero.
DAG imaginaryInfinity(DAG zero) { return isFLOAT(zero) && mantissaOf(zero) == consm0 ? consfinf : consfminf; }

DAG reciprocalOfZero(DAG z) {
  DAG im = imaginaryInfinity(imaginaryPartOf(z));
  DAG standard = lengthOf(z) == 2 ? new2(COMPLEX, im) : new3(COMPLEX, consfinf, im);
  return simpl(TriggerNumericEvent(divisionByZero, naminstall("complex-inverse"), z, DAG(),
                                   simpl(standard), true));
}

// The cases of `cxfinv1`, at its guard digits; `digits` is the precision that was asked for.
DAG floatReciprocal(DAG z, std::int64_t digits) {
  if (isZero(z)) return reciprocalOfZero(z);
  DAG minusOne = newFLOAT(consm1, cons0);
  if (lengthOf(z) == 2) return new2(COMPLEX, evalfdiv(minusOne, z[1]));
  if (hasInfinitePart(z)) return conscxf0;
  if (hasUndefinedPart(z)) return new3(COMPLEX, consfNaN, consfNaN);
  DAG x = z[1], y = z[2];
  if (isFloatZero(y)) return new3(COMPLEX, evalfdiv(newFLOAT(cons1, cons0), x), negate(y));
  if (isFloatZero(x)) return new3(COMPLEX, negate(x), evalfdiv(minusOne, y));
  Ordered parts = inOrder(partOf(x), partOf(y));
  DAG squares = scaledSquares(parts, digits / 2);
  std::int64_t twice = 2 * parts.large.exponent;
  return new3(COMPLEX, evalfdiv(shiftExponent(x, -twice), squares),
              negate(evalfdiv(shiftExponent(y, -twice), squares)));
}

}  // namespace

DAG cxinv1(DAG z) {
  if (isImmediate(z)) return DAG();
  DAG y = imaginaryPartOf(z);
  auto reciprocal = [](DAG x) { return simpl(new3(PROD, x, consm1)); };
  if (lengthOf(z) == 2) {
    if (isInfinite(y)) return cons0;
    if (isUndefined(y)) return z;
    if (!hasNumericParts(z)) return conscxNaN;
    return simpl(new2(COMPLEX, reciprocal(negate(y))));
  }
  if (hasInfinitePart(z)) return cons0;
  if (hasUndefinedPart(z) || !hasNumericParts(z)) return conscxNaN;
  DAG x = z[1];
  DAG d = reciprocal(add(mul(x, x), mul(y, y)));
  return complexNormalForm(new3(COMPLEX, simpl(mul(x, d)), simpl(mul(negate(y), d))));
}

DAG cxfinv1(DAG z) {
  if (!hasNumericParts(z)) return evalfParts(cxinv1(z));
  std::int64_t digits = precisionDigits();
  EnvironmentChange change;
  setDigits(change, digits + 2);
  DAG inverse = floatReciprocal(z, digits);
  restoreDigits(change);
  return evalfParts(inverse);
}

DAG cxfdiv(DAG a, DAG b) {
  a = evalf(a);
  b = evalf(b);
  if (!isComplex(b)) {
    if (!isComplex(a)) return evalfdiv(a, b);
    if (hasNumericParts(a) && !hasInfinitePart(a) && !hasUndefinedPart(a) && isFiniteFloat(b) && !isFloatZero(b)) {
      // Part by part, each rounded once.
      DAG im = evalfdiv(imaginaryPartOf(a), b);
      return simpl(lengthOf(a) == 2 ? new2(COMPLEX, im) : new3(COMPLEX, evalfdiv(a[1], b), im));
    }
    return cxmul(a, simpl(new3(PROD, b, consm1)));
  }
  if (!hasNumericParts(b) || (isComplex(a) && !hasNumericParts(a))) return cxmul(cxfinv1(b), a);
  std::int64_t digits = precisionDigits();
  EnvironmentChange change;
  if (!isComplex(a) || lengthOf(a) == 2) {
    setDigits(change, 2 * digits);
    DAG inverse = cxfinv1(b);
    restoreDigits(change);
    setDigits(change, digits + 4);
    DAG product;
    if (isComplex(a) && isComplex(inverse)) {
      product = cxdomul(a, inverse);
    } else if (isComplex(inverse) && lengthOf(inverse) == 3) {
      product = new3(COMPLEX, mul(inverse[1], a), mul(inverse[2], a));
    } else if (isComplex(inverse)) {
      product = new2(COMPLEX, mul(inverse[1], a));
    } else {
      product = mul(a, inverse);  // what a handler has put in its place
    }
    restoreDigits(change);
    return evalfParts(product);
  }
  const bool special = hasInfinitePart(b) || hasUndefinedPart(b);
  if (hasInfinitePart(a)) return special ? conscxfNaN : conscxfinf;
  if (special || isZero(b)) {
    DAG inverse = cxfinv1(b);
    return simpl(cxmul(a, inverse));
  }
  DAG x = a[1], y = a[2];
  if (hasUndefinedPart(a)) return simpl(new3(COMPLEX, consfNaN, consfNaN));
  if (lengthOf(b) == 2) {
    setDigits(change, 2 * digits);
    DAG re = evalfdiv(y, b[1]), im = negate(evalfdiv(x, b[1]));
    restoreDigits(change);
    return evalfParts(new3(COMPLEX, re, im));
  }
  setDigits(change, 2 * digits);
  Part u = partOf(b[1]), v = partOf(b[2]);
  Ordered parts = inOrder(u, v);
  std::int64_t scale = parts.large.exponent;
  DAG squares = scaledSquares(parts, digits);
  DAG re = evalfdiv(scaledNumerator(partOf(x), u, partOf(y), v, false, scale), squares);
  DAG im = evalfdiv(scaledNumerator(partOf(y), u, partOf(x), v, true, scale), squares);
  re = shiftExponent(re, -scale);
  im = shiftExponent(im, -scale);
  restoreDigits(change);
  return evalfParts(new3(COMPLEX, re, im));
}

DAG cxfabs(DAG z) {
  z = evalf(z);
  if (!isComplex(z)) return absalg(z);
  if (hasInfinitePart(z)) return consfinf;
  if (hasUndefinedPart(z) || !hasNumericParts(z)) return consfNaN;
  std::int64_t digits = precisionDigits();
  Part real = lengthOf(z) == 3 ? partOf(z[1]) : Part{cons0, 0};
  Ordered parts = inOrder(real, partOf(imaginaryPartOf(z)));
  DAG m = parts.large.mantissa;
  if (isZeroMantissa(parts.small.mantissa) || isOutOfReach(parts, digits / 2))
    return scaledFloat(isNegativeMantissa(m) ? complint(m) : m, parts.large.exponent);
  EnvironmentChange change;
  setDigits(change, digits + 2);
  DAG root = evalfsqrt(scaledSquares(parts, 2 * digits));
  DAG value = shiftExponent(root, parts.large.exponent);
  restoreDigits(change);
  return evalf(value);
}

}  // namespace korel
