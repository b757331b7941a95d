#include "eval/simplify/product.h"

#include <utility>

#include "eval/evaluate/evaluate.h"
#include "eval/simplify/simplify.h"
#include "eval/simplify/simplify_cases.h"
#include "frame/environment.h"
#include "frame/errors.h"
#include "library/assumptions/known.h"
#include "library/library_calls.h"
#include "numbers/arithmetic.h"
#include "numbers/complex/complex.h"
#include "numbers/events/numeric_events.h"
#include "numbers/float/float.h"
#include "numbers/integer/integer.h"
#include "numbers/integer/integer_functions.h"
#include "store/constants.h"
#include "store/names.h"
#include "store/objects.h"
#include "store/vocabulary.h"

namespace korel {

void append(Product& product, DAG base, DAG exponent) {
  if (product.used + 2 > lengthOf(product.factors)) {
    product.factors = enlarge(product.factors, (lengthOf(product.factors) & ~Word{1}) + 4);
  }
  product.factors[product.used] = base;
  product.factors[product.used + 1] = exponent;
  product.used += 2;
}

void fold(Product& product, DAG number) {
  number = simpl(number);
  if (product.coefficient) number = simpl(mul(product.coefficient, number));
  product.coefficient = number;
  if (isNumeric(number) || hasTag(number, COMPLEX)) return;
  // Complex numbers have come to an exact infinity or `undefined`: that is a factor, and only its sign a number.
  product.coefficient = consneg(number) ? consm1 : DAG();
  product.special = true;
  append(product, number == consminf ? ini("infinity") : number, cons1);
}

namespace {

bool isFloating(DAG number) { return isFloatNumber(number) || isFloatComplex(number); }

// `power` takes a machine exponent; a heap integer that doesn't fit raises its own message.
std::int32_t wordExponent(DAG e) { return isImmediate(e) ? immediateValue(e) : SoftIntValue(e); }

DAG libraryPower(DAG base, DAG exponent) { return simpl(evalsysf("evalf/power", simpl(new3(EXPSEQ, base, exponent)))); }

// Zero to a power.
// A float below 0 that is no integer.
bool isNegativeFraction(DAG x) {
  return isFloatNumber(x) && consneg(x) && !isZero(simpl(add(x, simpl(negate(simpl(mtrunc(x)))))));
}

void multiplyZero(Product& product, DAG base, DAG exponent) {
  if (isZero(exponent)) {
    DAG one = isFloatNumber(base) ? consf1 : cons1;
    fold(product, TriggerNumericEvent(invalidOperation, ini("^"), base, exponent, one, true));
  } else if (isInfinite(exponent) || isUndefined(exponent) || isNegativeFraction(exponent)) {
    product.result = TriggerNumericEvent(invalidOperation, ini("^"), base, exponent, consfNaN, true);
  } else if (consneg(exponent)) {
    DAG dividend = std::exchange(product.coefficient, DAG());
    fold(product, dividend ? TrapFDIV(SuppressHFloats(dividend), cons0)
                           : TriggerNumericEvent(divisionByZero, ini("^"), base, exponent, ini("infinity"), true));
  } else {
    fold(product, base);
  }
}

// The base of the digits is a multiple of 4, so that the lowest digit decides.
Word residueModulo4(DAG heapInteger) {
  Word r = rawField(heapInteger, 1) & 3;
  return hasTag(heapInteger, INTNEG) ? (4 - r) & 3 : r;
}

// The fraction p/q without the whole number that comes out, so that 0 < p/q < 1.
DAG properFraction(DAG fraction, DAG* whole) {
  *whole = cons0;
  DAG p = fraction[1], q = fraction[2];
  if (!consneg(p) && compint(p, q) < 0) return fraction;
  DAG remainder;
  DAG quotient = IntegerDivide(p, q, &remainder);
  remainder = simpl(remainder);
  *whole = simpl(quotient);
  if (consneg(remainder)) {
    remainder = simpl(addint(remainder, q));
    *whole = simpl(addint(*whole, consm1));
  }
  return simpl(new3(RATIONAL, remainder, q));
}

void multiplyInteger(Product& product, DAG base, DAG exponent) {
  if (base == cons1) return;
  if (isInteger(exponent)) {
    if (exponent == cons1) {
      fold(product, base);
    } else if (base == consm1) {
      bool odd = isImmediate(exponent) ? (immediateValue(exponent) & 1) != 0 : (rawField(exponent, 1) & 1) != 0;
      fold(product, odd ? consm1 : cons1);
    } else {
      fold(product, power(base, wordExponent(exponent)));
    }
    return;
  }
  DAG p = exponent[1], q = exponent[2];
  if (base == consm1 && q == immediate(2)) {
    bool flip = p != cons1 && (isImmediate(p) ? (immediateValue(p) & 3) == 3 : residueModulo4(p) == 3);
    if (flip) fold(product, consm1);
    multiply(product, sqrtm1, cons1);
    return;
  }
  DAG whole;
  exponent = properFraction(exponent, &whole);
  if (whole != cons0) multiplyInteger(product, base, whole);
  append(product, base, exponent);
}

void multiplyReal(Product& product, DAG base, DAG exponent) {
  if (isZero(base)) return multiplyZero(product, base, exponent);
  if (isFloatNumber(exponent)) return multiply(product, libraryPower(base, exponent), cons1);
  if (isInteger(base)) return multiplyInteger(product, base, exponent);
  if (isInteger(exponent)) return fold(product, power(base, wordExponent(exponent)));
  // The root of a fraction is a quotient of roots.
  if (base[1] == cons1) return multiply(product, base[2], simpl(negate(exponent)));
  multiply(product, base[1], exponent);
  multiply(product, base[2], simpl(negate(exponent)));
}

// The root of a negative float is imaginary, and an event.
DAG rootOfFloat(DAG base, DAG exponent) {
  if (isInfinite(base) || isUndefined(base) || !consneg(base)) return evalfsqrt(base);
  DAG root = simpl(new2(COMPLEX, simpl(evalfsqrt(simpl(negate(base))))));
  return TriggerNumericEvent(realToComplex, ini("^"), base, exponent, root, true);
}

void multiplyFloat(Product& product, DAG base, DAG exponent) {
  if (exponent == cons1) return fold(product, base);
  if (isZero(base) && isZero(exponent)) return multiplyZero(product, base, exponent);
  // Division by a float is one operation, rounded once.
  if (exponent == consm1 && !isZero(base) && product.coefficient) {
    DAG& numerator = product.coefficient;
    if (isNumeric(numerator)) {
      numerator = simpl(evalfdiv(numerator, base));
      return;
    }
    if (isFiniteNumber(numerator) && isFiniteNumber(base)) {
      numerator = cxfdiv(numerator, base);
      return;
    }
  }
  bool isSpecial = isTag(base, FLOAT) && isTag(base[2], NAME);
  bool isSpecialExponent = isTag(exponent, FLOAT) && isTag(exponent[2], NAME);
  if (isSpecial || isSpecialExponent || (isZero(base) && consneg(exponent)))
    if (DAG settled = TrapFPOWER(base, exponent)) {
      settled = simpl(settled);
      return isTag(settled, COMPLEX) ? multiply(product, settled, cons1) : fold(product, settled);
    }
  if (isInteger(exponent)) return fold(product, evalfpwr(base, exponent));
  if (isTag(exponent, RATIONAL) && exponent == consh) {
    DAG root = rootOfFloat(base, exponent);
    return isTag(root, COMPLEX) ? multiply(product, simpl(root), cons1) : fold(product, root);
  }
  fold(product, libraryPower(base, exponent));
}

void divide(Product& product, DAG divisor) {
  product.divisor = product.divisor ? simpl(mul(product.divisor, divisor)) : divisor;
}

DAG reciprocal(DAG x) { return isTag(x, COMPLEX) ? cxpower(x, -1) : simpl(new3(PROD, x, consm1)); }

void multiplyComplex(Product& product, DAG base, DAG exponent) {
  if (exponent == cons1) return fold(product, base);
  // I^e is (-1)^(e/2), for fractions and for integers too long for repeated squares.
  if (base == sqrtm1 && !isFloatNumber(exponent) && !isImmediate(exponent))
    return multiply(product, consm1, simpl(mul(exponent, consh)));
  if (isInfinite(base) || isUndefined(base)) {
    DAG settled = simpl01(new3(PROD, base, exponent));
    if (isImmediate(settled) || !hasTag(settled, PROD)) return multiply(product, simpl(settled), cons1);
  }
  if (isInteger(exponent)) {
    if (!FitIntoWord(exponent)) return multiply(product, libraryPower(base, exponent), cons1);
    const DAG opposite = simpl(negate(exponent));
    if (consneg(exponent) && FitIntoWord(opposite) && isFiniteNumber(base))
      return divide(product, cxpower(base, opposite));
    return fold(product, cxpower(base, exponent));
  }
  if (isFloatNumber(exponent) || isFloatComplex(base)) return multiply(product, libraryPower(base, exponent), cons1);
  if (isTag(exponent, RATIONAL) && !isInfinite(base) && !isUndefined(base)) {
    DAG whole, rest = properFraction(exponent, &whole);
    if (whole != cons0 && FitIntoWord(whole)) {
      fold(product, cxpower(base, whole));
      exponent = rest;
    }
  }
  append(product, base, exponent);
}

void multiplyName(Product& product, DAG base, DAG exponent) {
  if (base == ini("FAIL")) {
    product.result = base;
    return;
  }
  if (base == ini("infinity") || base == ini("undefined")) {
    if (isFloatNumber(exponent) || (product.coefficient && isFloatNumber(product.coefficient)))
      return multiplyFloat(product, base == ini("infinity") ? consfinf : consfNaN, exponent);
    product.special = true;
  }
  append(product, base, exponent);
}

void multiplySum(Product& product, DAG base, DAG exponent) {
  if (lengthOf(base) == 3) {
    DAG term = base[1], coefficient = base[2];
    if (term == ini("infinity")) {
      if (isZero(exponent)) {
        product.result = TriggerNumericEvent(invalidOperation, ini("^"), base, exponent, cons1, true);
        return;
      }
    }
    if (!consneg(coefficient) || isInteger(exponent)) {
      multiply(product, coefficient, exponent);
      multiply(product, term, exponent);
      return;
    }
  }
  append(product, base, exponent);
}

void multiplyProduct(Product& product, DAG base, DAG exponent) {
  Word n = lengthOf(base);
  if (isFloatNumber(exponent) && n > 1 && isTag(base[1], COMPLEX))
    return multiply(product, libraryPower(base, exponent), cons1);
  bool fractional = n == 3 && isNumeric(base[2]) && compcon(base[2], consm1) > 0 && compcon(base[2], cons1) < 0;
  if (!isInteger(exponent) && !fractional) return append(product, base, exponent);
  for (Word i = 1; i < n; i += 2)
    multiply(product, base[i], exponent == cons1 ? base[i + 1] : simpl(mul(base[i + 1], exponent)));
}

// A square of (-1)^n is 1 where n is known to be an integer.
void multiplyPower(Product& product, DAG base, DAG exponent) {
  if (base[1] != consm1 || !isInteger(exponent) || !isKnown(base[2], Property::integer))
    return append(product, base, exponent);
  const bool isOdd = isImmediate(exponent) ? (immediateValue(exponent) & 1) != 0 : (residueModulo4(exponent) & 1) != 0;
  if (!isOdd) return fold(product, cons1);
  for (Word i = 1; i < product.used; i += 2) {
    if (product.factors[i] != base || product.factors[i + 1] != cons1) continue;
    product.factors[i + 1] = cons0;
    return;
  }
  append(product, base, cons1);
}

}  // namespace

void multiply(Product& product, DAG base, DAG exponent) {
  if (product.result) return;
  if (isObject(base) && !isNumeric(base) && isNumeric(exponent) && isZero(exponent) && !isInfinite(base) &&
      !isUndefined(base)) {
    if (!product.coefficient) product.coefficient = cons1;
    return;
  }
  switch (tagOf(base)) {
    case INTNEG: case INTPOS: case RATIONAL: return multiplyReal(product, base, exponent);
    case FLOAT: case HFLOAT:
      if (hasTag(base, HFLOAT)) break;
      return multiplyFloat(product, base, exponent);
    case COMPLEX: return multiplyComplex(product, base, exponent);
    case NAME: return multiplyName(product, base, exponent);
    case PROD: return multiplyProduct(product, base, exponent);
    case SUM: return multiplySum(product, base, exponent);
    case POWER: return multiplyPower(product, base, exponent);
    case MEMBER: case TABLEREF: case DCOLON: case CATENATE: case SERIES: case FUNCTION: case UNEVAL: case LIST:
    case LOCAL: case PARAM: case LEXICAL: case PROC: case SET: case TABLE: case RTABLE: case MODDEF: case MODULE:
      return append(product, base, exponent);
    default: break;
  }
  KernelException("invalid terms in product");
}

// A float quotient is one operation: the rounded reciprocal would cost the digits that cancel.
void settleDivisor(Product& product) {
  if (!product.divisor) return;
  DAG numerator = product.coefficient, divisor = product.divisor;
  const bool isFloatQuotient = numerator && (isFloating(numerator) || isFloating(divisor)) && numerator != cons0 &&
                               isFiniteNumber(numerator) && isFiniteNumber(divisor) && !isZero(divisor);
  if (!isFloatQuotient) return fold(product, reciprocal(divisor));
  product.coefficient = DAG();
  fold(product, cxfdiv(numerator, divisor));
}

}  // namespace korel
