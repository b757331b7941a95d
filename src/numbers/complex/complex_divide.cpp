// Reciprocals, quotients and absolute values of COMPLEX numbers.
//
// A float quotient is worked out from the exact values of its operands: products of mantissas and sums of two
// products, kept to so many digits that they are exact unless a term lies far below the other, and one
// rounded division for each part. Exponents are machine integers meanwhile, so that nothing overflows unless
// the quotient does.

#include "numbers/complex/complex.h"

#include <utility>

#include "eval/evaluate/evalf.h"
#include "eval/simplify/simplify.h"
#include "frame/environment_block.h"
#include "numbers/arithmetic.h"
#include "numbers/complex/complex_forms.h"
#include "numbers/events/numeric_events.h"
#include "numbers/float/float_groups.h"
#include "numbers/float/float_rounding.h"
#include "numbers/integer/integer.h"
#include "store/constants.h"
#include "store/names.h"
#include "store/objects.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

// mantissa * 10^exponent. The mantissa may be a zero of either sign; without one there is no such part or term.
struct Decimal {
  DAG mantissa;
  std::int64_t exponent = 0;

  bool isZero() const { return isZeroImmediate(mantissa); }
  std::int64_t places() const { return ilength(mantissa) + exponent; }
};

Decimal operator*(Decimal a, Decimal b) {
  if (!a.mantissa || !b.mantissa) return {};
  if (!a.isZero() && !b.isZero()) return {mulint(a.mantissa, b.mantissa), a.exponent + b.exponent};
  return {isNegativeMantissa(a.mantissa) == isNegativeMantissa(b.mantissa) ? cons0 : consm0};
}

Decimal operator-(Decimal a) {
  if (!a.mantissa) return a;
  return {a.isZero() ? (a.mantissa == cons0 ? consm0 : cons0) : complint(a.mantissa), a.exponent};
}

// a + b to `digits` digits.
Decimal sum(Decimal a, Decimal b, std::int64_t digits) {
  if (!a.mantissa) return b;
  if (!b.mantissa) return a;
  if (a.isZero() && b.isZero()) return {a.mantissa == b.mantissa ? a.mantissa : roundedZero()[1]};
  if (a.isZero()) return b;
  if (b.isZero()) return a;
  if (a.places() < b.places() - digits - 2) return b;
  if (b.places() < a.places() - digits - 2) return a;
  RoundedMantissa r = roundedSum(a.mantissa, a.exponent, b.mantissa, b.exponent, digits);
  return {r.mantissa == cons0 ? roundedZero()[1] : r.mantissa, r.exponent};
}

// (re + im I) / denominator, exactly.
struct Gaussian {
  Decimal re, im;
  DAG denominator;
};

// A number with finite parts. A part that is the exact zero is none.
Gaussian gaussianOf(DAG z) {
  auto partOf = [](DAG x) { return decimalFraction(isZeroImmediate(x) ? cons0 : SuppressHFloats(x)); };
  auto decimal = [](DAG x, const DecimalFraction& f, DAG otherDenominator) {
    return isZeroImmediate(x) ? Decimal{} : Decimal{f.numerator, f.exponent} * Decimal{otherDenominator};
  };
  DAG x = !isComplex(z) ? z : lengthOf(z) == 3 ? z[1] : cons0, y = isComplex(z) ? imaginaryPartOf(z) : cons0;
  DecimalFraction re = partOf(x), im = partOf(y);
  return {decimal(x, re, im.denominator), decimal(y, im, re.denominator), mulint(re.denominator, im.denominator)};
}

// Digits to which sums are kept for a result of `digits` digits.
std::int64_t sumDigits(std::int64_t digits) { return 6 * digits + 50; }

DAG inexactUnlessFlagged(bool inexact, DAG a, DAG b, DAG result) {
  return inexact && GetNumericStatusFlag(inexactEvent) == 0 ? inexactResult(a, b, result) : result;
}

// a / b, where neither has an infinite or undefined part and b is not zero.
DAG finiteQuotient(DAG a, DAG b) {
  const std::int64_t digits = requireDigits(), exact = sumDigits(digits);
  Gaussian p = gaussianOf(a), q = gaussianOf(b);
  Decimal squares = sum(q.re * q.re, q.im * q.im, exact);
  DAG divisor = mulint(squares.mantissa, p.denominator);
  bool inexact = false;
  auto quotient = [&](Decimal numerator) {
    if (!numerator.mantissa) return DAG();
    if (numerator.isZero()) return numerator.mantissa == cons0 ? consf0 : consfm0;
    RoundedMantissa r = roundedQuotient(mulint(numerator.mantissa, q.denominator), divisor, digits);
    inexact |= r.inexact;
    return newFLOAT(r.mantissa, NewInteger(numerator.exponent - squares.exponent + r.exponent));
  };
  DAG re = quotient(sum(p.re * q.re, p.im * q.im, exact)), im = quotient(sum(p.im * q.re, -(p.re * q.im), exact));
  DAG result = simpl(!im ? re : !re ? new2(COMPLEX, simpl(im)) : new3(COMPLEX, simpl(re), simpl(im)));
  return inexactUnlessFlagged(inexact, a, b, result);
}

// The infinite imaginary part of the reciprocal of a zero.
DAG imaginaryInfinity(DAG zero) { return isSoftFloat(zero) && mantissaOf(zero) == consm0 ? consfinf : consfminf; }

DAG reciprocalOfZero(DAG z) {
  DAG im = imaginaryInfinity(imaginaryPartOf(z));
  DAG standard = lengthOf(z) == 2 ? new2(COMPLEX, im) : new3(COMPLEX, consfinf, im);
  return simpl(TriggerNumericEvent(divisionByZero, naminstall("complex-inverse"), z, DAG(), simpl(standard), true));
}

// Operands that have no quotient in the ordinary way: infinite and undefined parts, a divisor of zero.
DAG specialQuotient(DAG a, DAG b) {
  a = evalf(a);
  b = evalf(b);
  if (!isComplex(b)) return isComplex(a) ? cxmul(a, simpl(new3(PROD, b, consm1))) : evalfdiv(a, b);
  const bool special = hasInfinitePart(b) || hasUndefinedPart(b);
  if (isComplex(a) && lengthOf(a) == 3) {
    if (hasInfinitePart(a)) return special ? conscxfNaN : conscxfinf;
    if (!special && hasUndefinedPart(a) && !isZero(b)) return simpl(new3(COMPLEX, consfNaN, consfNaN));
    return simpl(cxmul(a, cxfinv1(b)));
  }
  DAG inverse = cxfinv1(b), product;
  if (isComplex(a) && isComplex(inverse)) {
    product = cxdomul(a, inverse);
  } else if (isComplex(inverse) && lengthOf(inverse) == 3) {
    product = new3(COMPLEX, mul(inverse[1], a), mul(inverse[2], a));
  } else if (isComplex(inverse)) {
    product = new2(COMPLEX, mul(inverse[1], a));
  } else {
    product = mul(a, inverse);  // what a handler has put in its place
  }
  return evalfParts(product);
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
  if (isZero(z)) return reciprocalOfZero(z);
  DAG minusOne = newFLOAT(consm1, cons0);
  if (lengthOf(z) == 2) return simpl(new2(COMPLEX, simpl(evalfdiv(minusOne, z[1]))));
  if (hasInfinitePart(z)) return conscxf0;
  if (hasUndefinedPart(z)) return simpl(new3(COMPLEX, consfNaN, consfNaN));
  // A float zero keeps its place, with its sign turned.
  if (isFloatZero(z[1])) return simpl(new3(COMPLEX, simpl(negate(z[1])), simpl(evalfdiv(minusOne, z[2]))));
  return finiteQuotient(cons1, z);
}

DAG cxfdiv(DAG a, DAG b) {
  auto isFinite = [](DAG x) { return isNumber(x) && !hasNoFiniteValue(x) && (!isComplex(x) || hasNumericParts(x)); };
  if (!isFinite(a) || !isFinite(b) || isZero(b)) return specialQuotient(a, b);
  if (isZeroImmediate(a)) return consf0;
  return isComplex(a) || isComplex(b) ? finiteQuotient(a, b) : evalfdiv(a, b);
}

DAG cxfabs(DAG z) {
  if (!isComplex(z)) return absalg(evalf(z));
  if (hasInfinitePart(z)) return consfinf;
  if (hasUndefinedPart(z) || !hasNumericParts(z)) return consfNaN;
  const std::int64_t digits = requireDigits();
  if (gaussianOf(z).denominator != cons1) z = evalf(z);
  Gaussian g = gaussianOf(z);
  auto isNone = [](Decimal part) { return !part.mantissa || part.isZero(); };
  Decimal large = g.re, small = g.im;
  if (isNone(large) || (!isNone(small) && small.exponent > large.exponent)) std::swap(large, small);
  // Beside a part of r times its size the other adds a fraction 1/(2r^2), less than half a unit here.
  const bool outweighs =
      !isNone(small) && ilength(large.mantissa) <= digits && 2 * (large.places() - small.places() - 1) > digits;
  if (isNone(small) || outweighs)
    return evalf(newFLOAT(isNegativeMantissa(large.mantissa) ? complint(large.mantissa) : large.mantissa,
                          NewInteger(large.exponent)));
  Decimal squares = sum(large * large, small * small, sumDigits(digits));
  RoundedMantissa root = roundedRoot(squares.mantissa, squares.exponent, digits);
  DAG result = newFLOAT(root.mantissa, NewInteger(root.exponent));
  return inexactUnlessFlagged(root.inexact, z, DAG(), result);
}

}  // namespace korel
