// Signs and steps: signum, csgn, the argument of a complex number, Heaviside and Dirac.

#include "eval/evaluate/environment_variables.h"
#include "eval/evaluate/evalf.h"
#include "eval/simplify/simplify.h"
#include "frame/environment_block.h"
#include "frame/errors.h"
#include "library/assumptions/known.h"
#include "library/native/elementary_rows.h"
#include "library/native/exact_expressions.h"
#include "library/native/expected_arguments.h"
#include "library/native/native.h"
#include "numbers/arithmetic.h"
#include "numbers/complex/complex.h"
#include "numbers/complex/complex_forms.h"
#include "numbers/float/float.h"
#include "store/constants.h"
#include "store/names.h"
#include "store/objects.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

constexpr int unknownSign = 2;

// The sign of a real constant by two values of different precision that agree.
int signByFloats(DAG x) {
  DAG values[2];
  for (int i = 0; i < 2; ++i) {
    EnvironmentChange change;
    setDigits(change, 20 * (i + 1));
    values[i] = simpl(evalf(x));
    restoreDigits(change);
    if (!isSoftFloat(values[i]) || isSingular(values[i])) return unknownSign;
  }
  const double coarse = FloatValue(values[0]), fine = FloatValue(values[1]);
  const bool agree = coarse * fine > 0 && coarse / fine < 1.001 && coarse / fine > 0.999;
  if (isFloatZero(values[1]) || !agree) return unknownSign;
  return fine < 0 ? -1 : 1;
}

// -1, 0 or 1 of a real expression, or `unknownSign`.
int signOf(DAG x) {
  if (isTag(x, HFLOAT)) x = HFloatToFloat(x);
  if (isNumeric(x)) {
    if (isSoftFloat(x) && isFloatUndefined(x)) return unknownSign;
    if (isZero(x)) return 0;
    return consneg(isSoftFloat(x) ? mantissaOf(x) : x) ? -1 : 1;
  }
  if (isExactInfinity(x)) return 1;
  if (isExactMinusInfinity(x)) return -1;
  if (isName(x) && x != ini("Pi")) {
    if (isKnown(x, Property::positive)) return 1;
    return isKnown(x, Property::negative) ? -1 : unknownSign;
  }
  const Facts facts = factsAbout(x);
  if (!facts.has(isRealFact)) return unknownSign;
  if (isKnown(x, Property::positive)) return 1;
  if (isKnown(x, Property::negative)) return -1;
  return signByFloats(x);
}

// A numeric factor in front: its sign, and what is left. False without one.
bool takeFactor(DAG x, DAG& factor, DAG& rest) {
  if (isTag(x, SUM) && lengthOf(x) == 3 && isNumeric(x[2])) {
    factor = x[2];
    rest = x[1];
    return factor != cons1;
  }
  if (isTag(x, PROD) && isNumber(x[1]) && x[2] == cons1) {
    factor = x[1];
    rest = simpl(productOf(x, powerOf(x[1], consm1)));
    return true;
  }
  return false;
}

}  // namespace

// x/|x|, and 0 at 0.
DAG native::signum(const BuiltinCall& call) {
  DAG x = onlyArgument(call);
  const int sign = signOf(x);
  if (sign != unknownSign) return isFloatValue(x) && sign == 0 ? cons0 : immediate(sign);
  if (isComplex(x) && isFiniteNumber(x)) {
    if (lengthOf(x) == 2 || isZero(x[1])) return productOf(immediate(signOf(imaginaryPartOf(x))), sqrtm1);
    if (isFloatValue(x)) return simpl(cxfdiv(x, cxfabs(x)));
    DAG square = simpl(add(mul(x[1], x[1]), mul(imaginaryPartOf(x), imaginaryPartOf(x))));
    return productOf(x, powerOf(exactRoot(square, 2), consm1));
  }
  DAG factor, rest;
  if (takeFactor(x, factor, rest) && !isComplex(factor) && signOf(factor) == -1)
    return negativeOf(simpl(new3(FUNCTION, call.self, simpl(new2(EXPSEQ, negativeOf(x))))));
  return DAG();
}

// Which half of the plane: the right one with the positive imaginary axis 1, the other one -1, and 0 at 0.
DAG native::csgn(const BuiltinCall& call) {
  DAG x = onlyArgument(call);
  if (isComplex(x) && isFiniteNumber(x)) {
    DAG re = lengthOf(x) == 3 ? x[1] : cons0;
    const int sign = signOf(isZero(re) ? imaginaryPartOf(x) : re);
    return immediate(sign);
  }
  const int sign = signOf(x);
  if (sign != unknownSign) return immediate(sign);
  if (isTag(x, PROD) && isComplex(x[1]) && lengthOf(x[1]) == 2 && x[2] == cons1) {
    DAG rest = productOf(x, productOf(consm1, sqrtm1));
    const int inner = signOf(rest);
    if (inner != unknownSign) return immediate(inner);
  }
  return DAG();
}

// The angle of a complex number, in -Pi < angle <= Pi.
DAG native::argument(const BuiltinCall& call) {
  DAG x = onlyArgument(call);
  if (isComplex(x) && isFiniteNumber(x)) {
    DAG re = lengthOf(x) == 3 ? x[1] : cons0, im = imaginaryPartOf(x);
    if (isFloatValue(x)) return isZero(re) && isZero(im) ? consf0 : floatAngle(im, re);
    DAG both = newl2(3, EXPSEQ);
    both[1] = im;
    both[2] = re;
    both = simpl(both);
    DAG value = native::arctan({both, naminstall("arctan"), call.form});
    return value ? value : new3(FUNCTION, naminstall("arctan"), both);
  }
  const int sign = signOf(x);
  if (sign == unknownSign) return DAG();
  if (sign >= 0) return isFloatValue(x) ? consf0 : cons0;
  return isFloatValue(x) ? evalf(ini("Pi")) : ini("Pi");
}

// The step at 0, where it is undefined.
DAG native::Heaviside(const BuiltinCall& call) {
  DAG x = onlyArgument(call);
  const int sign = signOf(x);
  if (sign == unknownSign) return DAG();
  if (sign == 0) return isFloatValue(x) ? consfNaN : ini("undefined");
  DAG value = sign > 0 ? cons1 : cons0;
  return isFloatValue(x) ? evalf(value) : value;
}

// 0 away from 0; Dirac(n, x) is the n-th derivative.
DAG native::Dirac(const BuiltinCall& call) {
  const Word n = argumentCount(call);
  if (n != 1 && n != 2) wrongCount(call, "%1 expects one or two arguments, but received %2");
  for (Word i = 1; i <= n; ++i) requireAlgebraic(call, call.arguments[i]);
  DAG x = call.arguments[n];
  if (n == 2 && call.arguments[1] == cons0) return simpl(new3(FUNCTION, call.self, simpl(new2(EXPSEQ, x))));
  const int sign = signOf(x);
  if (sign == -1 || sign == 1) return isFloatValue(x) ? consf0 : cons0;
  return DAG();
}

}  // namespace korel
