#include "numbers/arithmetic.h"

#include <utility>

#include "eval/evaluate/evalf.h"
#include "eval/simplify/simplify.h"
#include "frame/errors.h"
#include "numbers/complex/complex.h"
#include "numbers/complex/complex_forms.h"
#include "numbers/events/numeric_events.h"
#include "numbers/float/float.h"
#include "numbers/integer/integer.h"
#include "numbers/integer/integer_functions.h"
#include "store/constants.h"
#include "store/names.h"
#include "store/objects.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

bool isNegativeInteger(DAG x) { return hasTag(x, INTNEG) && x != consm0; }

/// p / q in canonical form, for coprime parts with q > 0. A part that an overflow has replaced by
/// another value is the result.
DAG fraction(DAG p, DAG q) {
  if (q == cons1 || !isInteger(p)) return p;
  return isInteger(q) ? new3(RATIONAL, p, q) : q;
}

// Partial results of rational arithmetic: small integers are immediates, long ones fresh objects that
// nobody else holds. `mulint` and `addint` size each from its operands.

DAG crossSum(DAG p1, DAG f1, DAG p2, DAG f2) { return addint(mulint(p1, f1), mulint(p2, f2)); }

DAG quotient(DAG a, DAG b) {
  if (b == cons1) return a;
  DAG rest;
  return IntegerDivide(a, b, &rest);
}

DAG addRationals(DAG a, DAG b) {
  DAG p1 = a[1], q1 = a[2], p2 = b[1], q2 = b[2];
  // Knuth, vol. 2, 4.5.1: gcds of the parts, never of the full products.
  DAG g = igcd(q1, q2);
  if (g == cons1) return new3(RATIONAL, crossSum(p1, q2, p2, q1), mulint(q1, q2));
  DAG part1 = quotient(q1, g), part2 = quotient(q2, g);
  DAG t = crossSum(p1, part2, p2, part1);
  if (t == cons0) return cons0;
  DAG g2 = igcd(t, g);
  if (g2 == cons1) return fraction(t, mulint(part1, q2));
  return fraction(quotient(t, g2), mulint(part1, quotient(q2, g2)));
}

}  // namespace

// ---- kinds of values

bool isZero(DAG x) {
  if (isImmediate(x)) return isZeroImmediate(x);
  if (!x) return false;
  switch (tagOf(x)) {
    case FLOAT: return x[1] == cons0 || x[1] == consm0;
    case HFLOAT: return hfloatValue(x) == 0;
    case COMPLEX:
      for (Word i = 1; i < lengthOf(x); ++i)
        if (!isZero(x[i])) return false;
      return true;
    default: return false;
  }
}

bool isInfinite(DAG x) {
  if (!isObject(x)) return false;
  if (isExactInfinite(x) || isFloatInfinity(x)) return true;
  if (hasTag(x, HFLOAT)) return __builtin_isinf(hfloatValue(x)) != 0;
  if (!hasTag(x, COMPLEX)) return false;
  for (Word i = 1; i < lengthOf(x); ++i)
    if (isInfinite(x[i])) return true;
  return false;
}

bool isUndefined(DAG x) {
  if (!isObject(x)) return false;
  if (isExactUndefined(x) || isFloatUndefined(x)) return true;
  if (hasTag(x, HFLOAT)) return __builtin_isnan(hfloatValue(x)) != 0;
  if (!hasTag(x, COMPLEX)) return false;
  for (Word i = 1; i < lengthOf(x); ++i)
    if (isUndefined(x[i])) return true;
  return false;
}

// ---- sum

DAG addNumbers(DAG a, DAG b) {
  if (isInteger(a) && isInteger(b)) return addint(a, b);
  if (isComplex(a) || isComplex(b)) return cxadd(a, b);
  if (isFloatNumber(a) || isFloatNumber(b)) return evalfadd(a, b);
  if (isExactUndefined(a) || isExactUndefined(b)) return ini("undefined");
  if (isExactInfinite(a)) {
    if (isExactInfinite(b) && isExactInfinity(a) != isExactInfinity(b))
      return TriggerNumericEvent(invalidOperation, ini("+"), a, b, ini("undefined"), true);
    return a;
  }
  if (isExactInfinite(b)) return b;

  if (!isTag(a, RATIONAL)) std::swap(a, b);
  assert(isTag(a, RATIONAL) && isRationalNumber(b));
  if (isTag(b, RATIONAL)) return addRationals(a, b);
  DAG p = addint(mulint(b, a[2]), a[1]);
  return p == cons0 ? cons0 : fraction(p, a[2]);
}

// ---- product

namespace {

/// Product with an exact infinity on at least one side.
DAG multiplyInfinities(DAG a, DAG b) {
  bool aFloat = isFloatNumber(a), bFloat = isFloatNumber(b);
  if (isZero(a) || isZero(b))
    return TriggerNumericEvent(invalidOperation, ini("*"), a, b, aFloat || bFloat ? consfNaN : ini("undefined"), true);
  if (isFloatUndefined(a)) return a;
  if (isFloatUndefined(b)) return b;
  DAG result = exactInfinity(consneg(a) != consneg(b));
  return aFloat || bFloat ? evalf(result) : result;
}

DAG multiplyRationals(DAG a, DAG b) {
  // Each numerator against the other denominator: nothing is left in common then.
  DAG left[2], right[2];
  gcdsimpl(a[1], b[2], left);
  gcdsimpl(b[1], a[2], right);
  return fraction(mulint(left[0], right[0]), mulint(left[1], right[1]));
}

}  // namespace

DAG mulNumbers(DAG a, DAG b) {
  if (b == cons1) return a;
  if (a == cons1) return b;
  if (b == consm1) return negate(a);
  if (a == consm1) return negate(b);
  if (isInteger(a) && isInteger(b)) return mulint(a, b);
  if (isComplex(a)) return simpl(cxmul(a, b));
  if (isComplex(b)) return simpl(cxmul(b, a));
  if (isExactUndefined(a)) return isFloatNumber(b) ? consfNaN : a;
  if (isExactUndefined(b)) return isFloatNumber(a) ? consfNaN : b;
  if (isExactInfinite(a) || isExactInfinite(b)) return multiplyInfinities(a, b);
  if (isFloatNumber(a)) return evalfmul(a, b);
  if (isFloatNumber(b)) return evalfmul(b, a);

  if (!isTag(a, RATIONAL)) std::swap(a, b);
  assert(isTag(a, RATIONAL) && isRationalNumber(b));
  if (isTag(b, RATIONAL)) return multiplyRationals(a, b);
  if (isZeroImmediate(b)) return cons0;
  DAG parts[2];
  gcdsimpl(b, a[2], parts);
  return fraction(mulint(parts[0], a[1]), parts[1]);
}

// ---- power

DAG power(DAG b, std::int32_t n) {
  if (n == 0 || b == cons1) return cons1;
  if (isFloatNumber(b)) return evalfpwr(b, Newint(n));
  if (isComplex(b)) return cxpower(b, n);
  assert(isRationalNumber(b));
  if (n > 0) {
    if (isZeroImmediate(b)) return cons0;
    if (isInteger(b)) return powint(b, n);
    return fraction(powint(b[1], n), powint(b[2], n));
  }
  if (n == INT32_MIN) KernelException("integer too large in context");
  if (b == consm1) return n % 2 == 0 ? cons1 : consm1;
  n = -n;
  if (isTag(b, RATIONAL)) {
    DAG p = b[1], q = b[2];
    // The sign goes to the numerator of the inverse.
    if (isNegativeInteger(p)) {
      p = complint(p);
      q = complint(q);
    }
    if (p == cons1) return powint(q, n);
    return fraction(powint(q, n), powint(p, n));
  }
  if (isZeroImmediate(b)) return TriggerNumericEvent(divisionByZero, ini("^"), b, Newint(-n), ini("infinity"), true);
  DAG one = cons1;
  if (isNegativeInteger(b)) {
    b = complint(b);
    if (n % 2 != 0) one = consm1;
  }
  return fraction(one, powint(b, n));
}

// ---- small steps

DAG increment(DAG x) {
  if (isImmediate(x)) return Newint(immediateValue(x) + 1);
  if (x) switch (tagOf(x)) {
      case INTPOS:
        if (rawField(x, 1) < static_cast<Word>(BASE) - 1) {
          DAG next = CopyAlg(x);
          ++rawField(next, 1);
          return next;
        }
        return addint(cons1, x);
      case INTNEG: return addint(cons1, x);
      case RATIONAL: return simpl(new3(RATIONAL, add(x[1], x[2]), x[2]));
      case FLOAT: case HFLOAT: return evalfadd(x, consf1);
      case COMPLEX: return cxadd(x, cons1);
      default:
        if (isExactInfinite(x) || isExactUndefined(x)) return x;
    }
  KernelException("invalid type in increment");
}

DAG negate(DAG x) {
  if (isImmediate(x)) return isZeroImmediate(x) ? x : immediate(-immediateValue(x));
  switch (tagOf(x)) {
    case INTPOS: case INTNEG: return complint(x);
    case RATIONAL: return new3(RATIONAL, complint(x[1]), x[2]);
    case FLOAT:
      if (x == consf0) return consfm0;
      if (x == consfm0) return consf0;
      if (isFloatUndefined(x)) return x;
      if (x == consfinf) return consfminf;
      if (x == consfminf) return consfinf;
      if (x[1] == cons0) return newFLOAT(consm0, x[2]);
      return newFLOAT(complint(x[1]), x[2]);
    case HFLOAT: return NewHFloat(-hfloatValue(x), false);
    case COMPLEX:
      return simpl(lengthOf(x) == 2 ? new2(COMPLEX, negativeOfPart(x[1]))
                                    : new3(COMPLEX, negativeOfPart(x[1]), negativeOfPart(x[2])));
    default: break;
  }
  if (isExactInfinity(x)) return consminf;
  if (isExactMinusInfinity(x)) return ini("infinity");
  if (isExactUndefined(x)) return x;
  return newCall(ini("negate"), {x});
}

DAG absalg(DAG x) {
  if (isSoftFloat(x) && x[1] == consm0) return consf0;
  if (!consneg(x)) return x;
  if (isInteger(x)) return complint(x);
  switch (tagOf(x)) {
    case RATIONAL: return new3(RATIONAL, complint(x[1]), x[2]);
    case FLOAT: return newFLOAT(complint(x[1]), x[2]);
    default: return ini("infinity");
  }
}

bool consneg(DAG x) {
  if (isImmediate(x)) return static_cast<std::int32_t>(x.word) < 0;
  switch (tagOf(x)) {
    case INTNEG: return true;
    case INTPOS: return false;
    case RATIONAL: return hasTag(x[1], INTNEG);
    case FLOAT: return isNegativeInteger(x[1]) && !isFloatUndefined(x);
    default: return isExactMinusInfinity(x);
  }
}

// ---- comparisons

namespace {

/// 1 or -1 for an infinity, exact or float, by its sign; 0 for any other value.
int infiniteSign(DAG x) {
  if (isExactInfinity(x)) return 1;
  if (isExactMinusInfinity(x)) return -1;
  if (isFloatInfinity(x)) return isNegativeInteger(x[1]) ? -1 : 1;
  return 0;
}

}  // namespace

int compcon(DAG a, DAG b) {
  if (a == b) return 0;
  if (isInteger(a) && isInteger(b)) {
    bool negative = isNegativeInteger(a);
    if (negative != isNegativeInteger(b)) return negative ? -1 : 1;
    return negative ? compint(b, a) : compint(a, b);
  }
  int signA = infiniteSign(a), signB = infiniteSign(b);
  if (signA != 0 || signB != 0) return signA < signB ? -1 : signA > signB;
  DAG difference = NonEventCall2(add, a, negate(b));
  if (isZero(difference)) return 0;
  if (isTag(difference, HFLOAT)) return hfloatValue(difference) < 0 ? -1 : 1;
  return consneg(difference) ? -1 : 1;
}

bool Equal1(DAG x) {
  if (isImmediate(x)) return x == cons1;
  if (!x) return false;
  switch (tagOf(x)) {
    case FLOAT: {
      if (x == consf1) return true;
      DAG difference = evalfadd(consfm1, x);
      return isSoftFloat(difference) && !isSingular(difference) && isZero(difference);
    }
    case HFLOAT: return hfloatValue(x) == 1.0;
    case COMPLEX: return lengthOf(x) == 3 && Equal1(x[1]) && isZero(x[2]);
    default: return false;
  }
}

bool eq(DAG x, std::int32_t n) { return isImmediate(x) ? immediateValue(x) == n : SoftIntEqual(x, n); }

// ---- truncation and remainder

DAG mtrunc(DAG x) {
  if (isImmediate(x)) return x;
  switch (tagOf(x)) {
    case INTPOS: case INTNEG: return x;
    case RATIONAL: {
      DAG rest;
      return IntegerDivide(x[1], x[2], &rest);
    }
    case FLOAT: {
      if (isSingular(x)) return x;
      if (isZeroImmediate(x[1])) return cons0;
      std::int64_t exponent = exponentValue(x[2]);
      if (exponent == 0) return x[1];
      if (exponent < 0 && ilength(x[1]) < -exponent) return cons0;
      return shift10p(x[1], exponent);
    }
    case HFLOAT: return mtrunc(HFloatToFloat(x));
    default: return DAG();
  }
}

namespace {

DAG invalidRemainder(DAG a, DAG b) {
  return TriggerNumericEvent(invalidOperation, naminstall("remainder"), a, b, ini("undefined"), true);
}

/// COMPLEX of two parts, or what is left of it when a part is an exact zero.
DAG complexOf(DAG real, DAG imaginary) {
  if (imaginary == cons0) return real;
  return simpl(real == cons0 ? new2(COMPLEX, imaginary) : new3(COMPLEX, real, imaginary));
}

}  // namespace

DAG rem(DAG a, DAG b, DAG* quotient) {
  DAG unused;
  DAG& q = quotient != nullptr ? *quotient : unused;
  if (isExactUndefined(a) || isExactUndefined(b)) return q = ini("undefined");
  if (isExactInfinite(a)) {
    if (isExactInfinite(b)) q = ini("undefined");
    else q = consneg(b) || isZero(b) ? negate(a) : a;
    return invalidRemainder(a, b);
  }
  if (isExactInfinite(b)) {
    q = cons0;
    return a;
  }
  if (isComplex(a)) {
    DAG realQuotient = cons0, imaginaryQuotient;
    DAG real = lengthOf(a) == 3 ? rem(a[1], b, &realQuotient) : cons0;
    DAG imaginary = rem(imaginaryPartOf(a), b, &imaginaryQuotient);
    q = complexOf(realQuotient, imaginaryQuotient);
    return complexOf(real, imaginary);
  }
  if (isZero(b)) {
    q = exactInfinity(consneg(a));
    return invalidRemainder(a, b);
  }
  if (isInteger(a) && isInteger(b)) {
    if (!isImmediate(b) && compint(b, a) > 0) {
      q = cons0;
      return a;
    }
    DAG rest;
    q = IntegerDivide(a, b, &rest);
    return rest;
  }
  // Other real numbers: what is left of a after the truncated quotient.
  q = mtrunc(mul(a, power(b, -1)));
  return add(a, negate(mul(q, b)));
}

// ---- products of expressions

namespace {

DAG scaled(DAG number, DAG x) {
  if (isTag(x, SUM) && lengthOf(x) == 3) return new3(SUM, x[1], mul(number, x[2]));
  return new3(SUM, x, number);
}

/// Index of the base `x` in a PROD, or 0.
Word baseIndex(DAG prod, DAG x) {
  for (Word i = 1; i + 1 < lengthOf(prod); i += 2)
    if (prod[i] == x) return i;
  return 0;
}

DAG joinProducts(DAG a, DAG b) {
  Word length = lengthOf(a);
  for (Word i = 1; i + 1 < lengthOf(b); i += 2)
    if (baseIndex(a, b[i]) == 0) length += 2;
  DAG result = newl2(length, PROD);
  for (Word i = 1; i < lengthOf(a); ++i) result[i] = a[i];
  Word next = lengthOf(a);
  for (Word i = 1; i + 1 < lengthOf(b); i += 2) {
    if (Word at = baseIndex(a, b[i])) {
      result[at + 1] = add(result[at + 1], b[i + 1]);
    } else {
      result[next++] = b[i];
      result[next++] = b[i + 1];
    }
  }
  return result;
}

}  // namespace

DAG NewPROD(DAG a, DAG b) {
  bool numericA = isNumeric(a), numericB = isNumeric(b);
  if (numericA && numericB) return mul(a, b);
  if (numericA) return scaled(a, b);
  if (numericB) return scaled(b, a);
  bool prodA = hasTag(a, PROD), prodB = hasTag(b, PROD);
  if (prodA && prodB) return joinProducts(a, b);
  if (prodA != prodB) {
    DAG prod = prodA ? a : b, x = prodA ? b : a;
    if (Word at = baseIndex(prod, x)) {
      DAG result = CopyAlg(prod);
      result[at + 1] = add(result[at + 1], cons1);
      return result;
    }
  }
  return new5(PROD, a, cons1, b, cons1);
}

}  // namespace korel
