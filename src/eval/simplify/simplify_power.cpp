// Powers in canonical form, and the powers that special values settle.
//
// A POWER holds a symbolic exponent: one that becomes a number turns into a PROD of one pair.

#include "eval/simplify/simplify.h"

#include "eval/evaluate/evaluate.h"
#include "eval/simplify/bindings.h"
#include "eval/simplify/simplify_cases.h"
#include "eval/simplify/unique_pairs.h"
#include "frame/errors.h"
#include "library/assumptions/known.h"
#include "library/library_calls.h"
#include "numbers/arithmetic.h"
#include "numbers/complex/complex.h"
#include "numbers/complex/complex_forms.h"
#include "numbers/events/numeric_events.h"
#include "numbers/integer/integer.h"
#include "store/constants.h"
#include "store/names.h"
#include "store/objects.h"
#include "store/tag_facts.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

constexpr TagSet exponentTags =
    frameReferenceTags | TagSet{COMPLEX, NAME,     MEMBER, TABLEREF, DCOLON, CATENATE, POWER,  PROD,  SERIES,
                                SUM,     FUNCTION, UNEVAL, PROC,     RTABLE, MODDEF,   MODULE, ZPPOLY};
constexpr TagSet baseTags = (exponentTags - TagSet{ZPPOLY}) | rationalTags | TagSet{FLOAT, LIST, SET, TABLE};

DAG libraryPower(DAG base, DAG exponent) { return simpl(evalsysf("evalf/power", simpl(new3(EXPSEQ, base, exponent)))); }

DAG invalidPower(DAG base, DAG exponent, DAG value) {
  return TriggerNumericEvent(invalidOperation, ini("^"), base, exponent, value, true);
}

// A complex of which both parts are unknown but bounded: what an oscillating power has as value.
DAG boundedUndefined() {
  DAG bounded = naminstall("bdd_undefined");
  return simpl(new3(COMPLEX, bounded, bounded));
}

// Order of |x| against 1: -1, 0 or 1. A COMPLEX compares by its squared modulus.
int magnitudeAgainstOne(DAG x) {
  if (hasTag(x, COMPLEX)) {
    DAG re = cxRealPart(x), im = cxImaginaryPart(x);
    return compcon(simpl(add(simpl(mul(re, re)), simpl(mul(im, im)))), cons1);
  }
  return compcon(simpl(absalg(x)), cons1);
}

// A finite number to an infinite power.
DAG infinitePower(DAG base, DAG exponent) {
  if (isTag(base, COMPLEX) && !hasNumericParts(base)) return conscxNaN;
  bool falling = consneg(exponent);
  int size = magnitudeAgainstOne(base);
  if (isZero(base)) {
    if (!falling) return cons0;
    return TriggerNumericEvent(divisionByZero, ini("^"), base, exponent, ini("infinity"), true);
  }
  if (size == 0) {
    return Equal1(base) ? invalidPower(base, exponent, cons1) : boundedUndefined();
  }
  bool vanishes = falling ? size > 0 : size < 0;
  if (vanishes) return cons0;
  if (hasTag(base, COMPLEX)) return invalidPower(base, exponent, conscxinf);
  if (consneg(base)) return simpl(new3(COMPLEX, ini("infinity"), ini("infinity")));
  return ini("infinity");
}

// A COMPLEX with an infinite part to a finite real number. An infinite multiple of the unit keeps its direction.
DAG powerOfComplexInfinity(DAG base, DAG exponent) {
  const bool floats = isFloatComplex(base) || isFloatNumber(exponent);
  if (exponent == cons1) return base;
  if (consneg(exponent)) return floats ? conscxf0 : cons0;
  if (lengthOf(base) != 2 || !isInteger(exponent)) return floats ? conscxfinf : conscxinf;
  const Word turns = isImmediate(exponent) ? static_cast<Word>(immediateValue(exponent)) : rawField(exponent, 1);
  DAG part = simpl(new3(PROD, base[1], exponent));
  return mul(part, cxpower(sqrtm1, static_cast<std::int32_t>(turns % 4)));
}

// An infinite base to a finite number.
DAG powerOfInfinity(DAG base, DAG exponent) {
  if (isZero(exponent)) return invalidPower(base, exponent, cons1);
  if (hasTag(exponent, COMPLEX)) return invalidPower(base, exponent, conscxNaN);
  if (hasTag(base, COMPLEX)) return powerOfComplexInfinity(base, exponent);
  if (consneg(exponent)) return cons0;
  if (base == ini("infinity")) return base;
  if (isInteger(exponent)) {
    bool odd = isImmediate(exponent) ? (immediateValue(exponent) & 1) != 0 : (rawField(exponent, 1) & 1) != 0;
    return odd ? consminf : ini("infinity");
  }
  return TriggerNumericEvent(realToComplex, ini("^"), base, exponent, conscxinf, true);
}

// An exact zero to a complex power: the real part of the exponent decides.
DAG zeroToComplexPower(DAG base, DAG exponent) {
  DAG real = cxRealPart(exponent);
  if (isZero(real)) return invalidPower(base, exponent, ini("undefined"));
  if (consneg(real)) return TriggerNumericEvent(divisionByZero, ini("^"), base, exponent, ini("infinity"), true);
  return base;
}

}  // namespace

DAG simpl01(DAG x) {
  DAG base = x[1], exponent = x[2];
  if (base == cons1) {
    if (isInfinite(exponent)) return invalidPower(base, exponent, cons1);
    return isUndefined(exponent) ? ini("undefined") : cons1;
  }
  if (exponent == cons1) return base;
  if (isUndefined(base) || isUndefined(exponent)) {
    if (isNumeric(exponent) && isZero(exponent)) return invalidPower(base, exponent, cons1);
    bool complexPart = isTag(base, COMPLEX) || isTag(exponent, COMPLEX);
    if (complexPart) return isFloatComplex(base) || isFloatComplex(exponent) ? conscxfNaN : conscxNaN;
    if (isTag(exponent, RATIONAL)) return TriggerNumericEvent(realToComplex, ini("^"), base, exponent, conscxNaN, true);
    if (isNumber(base) || isNumber(exponent) || isUndefined(exponent) || isInfinite(exponent)) return ini("undefined");
    return x;
  }
  if (isNumber(exponent) && isZero(exponent)) {
    if (isInfinite(base)) return invalidPower(base, exponent, cons1);
    if (isNumber(base) && isZero(base)) return invalidPower(base, exponent, cons1);
    return cons1;
  }
  if (isInfinite(base) && isInfinite(exponent)) {
    if (consneg(exponent)) return cons0;
    return base == ini("infinity") ? base : conscxinf;
  }
  if (isInfinite(exponent) && isNumber(base)) return infinitePower(base, exponent);
  if (isInfinite(base) && isNumber(exponent)) return powerOfInfinity(base, exponent);
  if (isNumber(base) && isZero(base) && isNumeric(exponent)) {
    if (!consneg(exponent)) return cons0;
    return TriggerNumericEvent(divisionByZero, ini("^"), base, exponent, ini("infinity"), true);
  }
  return x;
}

DAG simplPower(DAG s) {
  simplifyFields(s);
  DAG base = s[1], exponent = s[2];
  if (hasUserBindings())
    if (DAG bound = operatorBinding(ini("^"))) return callBinding(bound, base, exponent);
  if (isImmediate(exponent) && isTag(base, NAME) && isPlainName(base)) {
    setHeader(s, PROD, 3);
    return simplProduct(s);
  }
  if (isTag(exponent, EXPSEQ)) {
    if (exponent == null) KernelException("power with NULL exponent");
    KernelException("non-algebraic exponent");
  }
  if (base == ini("FAIL") || exponent == ini("FAIL")) return ini("FAIL");
  if (base == sqrtm1 && isNumeric(exponent) && !isImmediate(exponent)) {
    base = s[1] = consm1;
    exponent = s[2] = simpl(mul(exponent, consh));
  }
  bool special = isInfinite(base) || isUndefined(base) || isInfinite(exponent) || isUndefined(exponent);
  bool floats = isFloatNumber(base) || isFloatNumber(exponent);
  if (special && !floats) {
    DAG settled = simpl01(s);
    if (isImmediate(settled) || settled != s) return simpl(settled);
  }
  // Beside a float, an exact infinity or undefined takes its float form.
  if (special && floats && TransformSEQ2F(s)) {
    base = s[1];
    exponent = s[2];
  }
  if (isTag(exponent, COMPLEX) && isNumber(base) && !special) {
    auto holdsFloat = [](DAG z) {
      return isTag(z, COMPLEX) && (isFloatNumber(z[1]) || (lengthOf(z) == 3 && isFloatNumber(z[2])));
    };
    if (floats || holdsFloat(base) || holdsFloat(exponent)) return libraryPower(base, exponent);
    if (base == cons1) return cons1;
    if (isZero(base)) return zeroToComplexPower(base, exponent);
    return makeUnique(s);
  }
  if (base == cons1 && !isFloatNumber(exponent)) return cons1;
  if (!isAmong(base, baseTags)) KernelException("non-algebraic base in a power");
  if (isNumeric(exponent)) {
    setHeader(s, PROD, 3);
    return simplProduct(s);
  }
  if (!isAmong(exponent, exponentTags)) KernelException("non-algebraic exponent");
  // The power of a fraction is a quotient of powers.
  if (isTag(base, RATIONAL)) {
    DAG lower = simpl(new3(POWER, base[2], simpl(new3(SUM, exponent, consm1))));
    if (base[1] == cons1) return lower;
    return simpl(new5(PROD, simpl(new3(POWER, base[1], exponent)), cons1, lower, cons1));
  }
  // So is the power of a multiple, unless its sign would be lost.
  if (isTag(base, SUM) && lengthOf(base) == 3 && !isInfinite(base) && !consneg(base[2])) {
    DAG number = simpl(new3(POWER, base[2], exponent));
    DAG term = simpl(new3(POWER, base[1], exponent));
    return simpl(new5(PROD, number, cons1, term, cons1));
  }
  // What is assumed about names may tell the sign.
  if (base == consm1 && isKnown(exponent, Property::integer)) {
    if (isKnown(exponent, Property::even)) return cons1;
    if (isKnown(exponent, Property::odd)) return consm1;
  }
  return makeUnique(s);
}

}  // namespace korel
