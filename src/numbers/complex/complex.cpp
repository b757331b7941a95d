// Sums, products, powers and parts of COMPLEX numbers, exact and float.

#include "numbers/complex/complex.h"

#include <cstdlib>
#include <utility>

#include "eval/evaluate/evalf.h"
#include "eval/simplify/simplify.h"
#include "frame/environment_block.h"
#include "library/library_calls.h"
#include "numbers/arithmetic.h"
#include "numbers/complex/complex_forms.h"
#include "numbers/events/numeric_events.h"
#include "numbers/integer/integer.h"
#include "store/constants.h"
#include "store/objects.h"
#include "store/vocabulary.h"

namespace korel {

bool isFloatComplex(DAG x) { return isComplex(x) && isFloatNumber(x[1]); }

// ---- sums

DAG cxadd(DAG a, DAG b) {
  if (isFloating(a) || isFloating(b)) {
    a = evalf(a);
    b = evalf(b);
  }
  if (isZeroImmediate(a)) return b;
  if (isZeroImmediate(b)) return a;
  if (!isComplex(a)) std::swap(a, b);
  if (!isComplex(a)) return simpl(add(a, b));
  const bool longA = lengthOf(a) == 3, longB = isComplex(b) && lengthOf(b) == 3;
  if (!isComplex(b)) {
    DAG re = longA ? sumOfParts(a[1], b) : b;
    return complexNormalForm(new3(COMPLEX, re, imaginaryPartOf(a)));
  }
  DAG im = sumOfParts(imaginaryPartOf(a), imaginaryPartOf(b));
  if (!longA && !longB) return complexNormalForm(new2(COMPLEX, im));
  DAG re = longA && longB ? sumOfParts(a[1], b[1]) : longA ? a[1] : b[1];
  return complexNormalForm(new3(COMPLEX, re, im));
}

// ---- products

DAG CX_MUL_COMP(DAG a, DAG b) {
  if (isZero(a) && hasNoFiniteValue(b)) return cons0;
  if (isZero(b) && hasNoFiniteValue(a)) return cons0;
  return productOfParts(a, b);
}

DAG CX_MUL_COMP2(DAG a, DAG b) {
  if (isZero(a)) return consneg(b) ? negate(a) : a;
  if (isZero(b)) return consneg(a) ? negate(b) : b;
  return productOfParts(a, b);
}

DAG cx2opmul(DAG a, DAG b) {
  const bool floats = isFloatComplex(a);
  DAG noNumber = floats ? conscxfNaN : conscxNaN;
  if (hasInfinitePart(a) || hasInfinitePart(b)) {
    // Infinity wins over an undefined part in the other operand.
    if (isZero(hasInfinitePart(a) ? b : a)) return noNumber;
    return floats ? conscxfinf : conscxinf;
  }
  if (hasUndefinedPart(a) && isZero(b)) return noNumber;
  if (hasUndefinedPart(b) && isZero(a)) return noNumber;
  DAG x = a[1], y = a[2], u = b[1], v = b[2];
  // Beside an undefined part a zero part still gives zeros.
  const bool numbers = isNumeric(x) && isNumeric(y) && isNumeric(u) && isNumeric(v);
  if (numbers && !hasUndefinedPart(a) && !hasUndefinedPart(b))
    return new3(COMPLEX, add(mul(x, u), negate(mul(y, v))), add(mul(x, v), mul(y, u)));
  return new3(COMPLEX, sumOfParts(CX_MUL_COMP2(x, u), negativeOfPart(CX_MUL_COMP2(y, v))),
              sumOfParts(CX_MUL_COMP2(x, v), CX_MUL_COMP2(y, u)));
}

DAG cxdomul(DAG a, DAG b) {
  DAG y = imaginaryPartOf(a);
  const bool longA = lengthOf(a) == 3;
  if (!isComplex(b)) {
    if (!longA) return new2(COMPLEX, CX_MUL_COMP(y, b));
    return new3(COMPLEX, CX_MUL_COMP(a[1], b), CX_MUL_COMP(y, b));
  }
  DAG v = imaginaryPartOf(b);
  if (longA && lengthOf(b) == 3) return cx2opmul(a, b);
  DAG re = negativeOfPart(CX_MUL_COMP(y, v));
  if (longA) return new3(COMPLEX, re, CX_MUL_COMP(a[1], v));
  if (lengthOf(b) == 3) return new3(COMPLEX, re, CX_MUL_COMP(y, b[1]));
  return re;
}

DAG cxmul(DAG a, DAG b) {
  if (!isComplex(a)) std::swap(a, b);
  assert(isComplex(a));
  if (!isFloating(a) && !isFloating(b)) return complexNormalForm(cxdomul(a, b));
  a = evalf(a);
  // A part times a fraction is rounded once.
  if (!isTag(b, RATIONAL)) b = evalf(b);
  DAG product;
  if (isComplex(b) && lengthOf(a) == 3 && lengthOf(b) == 3) {
    // The terms of a part may cancel: twice the digits keep what is left.
    EnvironmentChange change;
    setDigits(change, 2 * precisionDigits());
    product = cxdomul(a, b);
    restoreDigits(change);
  } else {
    product = cxdomul(a, b);
  }
  return evalfParts(product);
}

// ---- powers

namespace {

// x times y, which may each have become real.
DAG product(DAG x, DAG y) {
  if (isComplex(x)) return cxmul(x, y);
  if (isComplex(y)) return cxmul(y, x);
  return productOfParts(x, y);
}

}  // namespace

DAG cxpower1(std::int64_t n, DAG a) {
  if (n == 1) return a;
  DAG half = cxpower1(n / 2, a);
  DAG square = half == ini("infinity") || half == consminf ? half : product(half, half);
  return n % 2 != 0 ? product(a, square) : square;
}

DAG cxfpower1(DAG a, std::int64_t n, int depth) {
  if (n == 1) return a;
  const bool guarded = depth % 3 == 0;
  EnvironmentChange change;
  if (guarded) raiseDigits(change, depth == 0 ? 3 : 1);
  DAG half = cxfpower1(a, n / 2, depth + 1);
  DAG power = product(half, half);
  if (n % 2 != 0) power = product(a, power);
  if (guarded) restoreDigits(change);
  return depth == 0 ? evalf(power) : power;
}

DAG cxpower(DAG a, std::int32_t n) {
  if (n == 0) return cons1;
  const bool floats = isFloatComplex(a);
  if (hasInfinitePart(a)) return n > 0 ? a : floats ? conscxf0 : cons0;
  const std::int64_t size = std::abs(std::int64_t{n});
  DAG power = floats ? simpl(cxfpower1(evalf(a), size, 0)) : cxpower1(size, a);
  if (n > 0) return power;
  if (!isComplex(power)) return simpl(new3(PROD, power, consm1));
  return floats ? cxfinv1(power) : cxinv1(power);
}

DAG cxpower(DAG a, DAG n) { return cxpower(a, isImmediate(n) ? immediateValue(n) : SoftIntValue(n)); }

// ---- parts

DAG cxRealPart(DAG x) {
  if (isComplex(x)) {
    if (lengthOf(x) == 3) return x[1];
    return isFloatNumber(x[1]) ? roundedZero() : cons0;
  }
  if (isNumeric(x) || hasNoFiniteValue(x)) return x;
  return evalsysf("simpl/Re", x);
}

DAG cxImaginaryPart(DAG x) {
  if (isComplex(x)) return imaginaryPartOf(x);
  if (isNumeric(x) || hasNoFiniteValue(x)) return isFloatNumber(x) ? roundedZero() : cons0;
  return evalsysf("simpl/Im", x);
}

bool cxIsReal(DAG x) { return isNumeric(x) || isZero(cxImaginaryPart(x)); }

}  // namespace korel
