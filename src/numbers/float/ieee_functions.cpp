// The functions that IEEE 754 recommends, on exact and float numbers.

#include "numbers/float/ieee_functions.h"

#include "eval/evaluate/evalf.h"
#include "eval/simplify/simplify.h"
#include "frame/environment_block.h"
#include "library/library_calls.h"
#include "numbers/arithmetic.h"
#include "numbers/complex/complex.h"
#include "numbers/complex/complex_forms.h"
#include "numbers/events/numeric_events.h"
#include "numbers/float/float.h"
#include "numbers/float/float_rounding.h"
#include "numbers/integer/integer.h"
#include "numbers/integer/integer_functions.h"
#include "store/constants.h"
#include "store/names.h"
#include "store/objects.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

DAG unevaluated(StandardName name, DAG a, DAG b) { return simpl(newCall(ini(name), {a, b})); }

DAG invalid(StandardName operation, DAG x, DAG y, DAG standard) {
  return TriggerNumericEvent(invalidOperation, ini(operation), x, y, standard, true);
}

/// A real number, finite or not; `undefined` isn't one.
bool isExtendedReal(DAG x) { return isNumeric(x) || isExactInfinite(x); }

/// The sign as `CopySign` reads it: a float's negative zero is negative.
bool isNegativeSigned(DAG x) { return consneg(x) || (isSoftFloat(x) && x[1] == consm0); }

}  // namespace

// ---- order and sign

DAG Unordered(DAG a, DAG b) {
  if (isUndefined(a) || isUndefined(b)) return ini("true");
  if (isComplex(a) || isComplex(b)) return ini("true");
  if (isExtendedReal(a) && isExtendedReal(b)) return ini("false");
  return unevaluated("Unordered", a, b);
}

DAG OrderedNE(DAG a, DAG b) {
  DAG unordered = Unordered(a, b);
  if (unordered == ini("false")) return truth(a != b && compcon(a, b) != 0);
  if (unordered != ini("true")) return unevaluated("OrderedNE", a, b);
  auto isOrdinaryComplex = [](DAG x) { return isComplex(x) && !isUndefined(x); };
  if (isOrdinaryComplex(a) || isOrdinaryComplex(b))
    return TriggerNumericEvent(invalidOperation, ini("OrderedNE"), a, b, ini("FAIL"), false);
  return ini("false");
}

DAG CopySign(DAG a, DAG b) {
  if (!isExtendedReal(b) && !isUndefined(b) && !isComplex(b)) return unevaluated("CopySign", a, b);
  if (isUndefined(a)) return a;
  if (isUndefined(b)) return NewPROD(a, b);
  if (isComplex(a) || isComplex(b)) return invalid("CopySign", a, b, consfNaN);
  if (!isExtendedReal(a)) return unevaluated("CopySign", a, b);
  return isNegativeSigned(a) == isNegativeSigned(b) ? a : negate(a);
}

DAG NextAfter(DAG x, DAG y) {
  DAG unordered = Unordered(x, y);
  if (unordered == ini("true"))
    return invalid("NextAfter", x, y, isFloatNumber(x) || isFloatNumber(y) ? consfNaN : ini("undefined"));
  if (unordered != ini("false")) return unevaluated("NextAfter", x, y);
  if (isInfinite(x)) return x;

  const int direction = -compcon(x, y);  // 1 when y lies above x
  const bool isNegative = isNegativeSigned(x);
  const int outward = isNegative ? -1 : 1;
  if (direction == outward && compcon(absalg(x), consfmaxrep) == 0)
    return TriggerNumericEvent(overflowEvent, ini("NextAfter"), x, y, DefaultOverflow(isNegative ? consm1 : cons1),
                               true);
  if (direction == -outward && compcon(absalg(x), consfminrep) == 0)
    return TriggerNumericEvent(underflowEvent, ini("NextAfter"), x, y, DefaultUnderflow(isNegative ? consm1 : cons1),
                               true);

  DAG t = evalf(isImmediate(x) ? x : CopyAlg(x));
  DAG m = mantissaOf(t), e = exponentOf(t);
  std::int64_t more = precisionDigits() - ilength(m) + 1;
  if (more > 0) {
    m = times10p(m, more);
    e = addint(e, NewInteger(-more));
    t = newFLOAT(m, e);
  }
  DAG target = NonEventCall1(evalf, y);
  int order = compcon(t, target);
  if (order == 0) return evalf(t);
  // One more than the digit behind the last that is kept, rounded away from x.
  const bool up = order < 0;
  EnvironmentChange change;
  changeEnvironmentWord(change, envRounding, up ? ini("infinity") : consminf);
  DAG next = evalf(newFLOAT(addint(m, up ? cons1 : consm1), e));
  restoreEnvironmentWord(change);
  return next;
}

// ---- class

namespace {

DAG andOf(DAG a, DAG b) { return newCall(naminstall("And"), {a, b}); }
DAG andOf(DAG a, DAG b, DAG c) { return newCall(naminstall("And"), {a, b, c}); }
DAG orOf(DAG a, DAG b) { return newCall(naminstall("Or"), {a, b}); }
DAG signName(bool isNegative) { return isNegative ? ini("negative") : ini("positive"); }
DAG zeroName(bool isNegative) { return isNegative ? ini("negzero") : ini("poszero"); }

DAG classOfDouble(double x) {
  DAG kind = new3(TABLEREF, ini("float"), newSequence({immediate(8)}));
  switch (fp_class_d(x)) {
    case signallingNaN: case quietNaN: return andOf(kind, ini("undefined"));
    case positiveInfinity: case negativeInfinity: return andOf(kind, signName(x < 0), ini("infinity"));
    default: break;
  }
  if (x == 0.0) return andOf(kind, zeroName(__builtin_signbit(x) != 0));
  return andOf(kind, signName(x < 0), ini("numeric"));
}

DAG classOfFloat(DAG x) {
  DAG kind = ini("sfloat");
  const bool isNegative = isNegativeMantissa(mantissaOf(x));
  if (isFloatUndefined(x)) return andOf(kind, ini("undefined"));
  if (isFloatInfinity(x)) return andOf(kind, signName(isNegative), ini("infinity"));
  if (isFloatZero(x)) return andOf(kind, zeroName(isNegative));
  return andOf(kind, signName(isNegative), ini("numeric"));
}

DAG classTree(DAG x);

DAG classOfComplex(DAG x) {
  DAG nonreal = ini("nonreal");
  if (lengthOf(x) == 2) return newCall(ini("imaginary"), {classTree(x[1])});
  DAG re = x[1], im = x[2];
  if (isZero(re) && isZero(im)) return newCall(nonreal, {andOf(ini("sfloat"), orOf(ini("poszero"), ini("negzero")))});
  if (isFloatInfinity(re) && isFloatInfinity(im)) return newCall(nonreal, {andOf(ini("sfloat"), ini("infinity"))});
  if (re == ini("infinity") && im == ini("infinity"))
    return newCall(nonreal, {andOf(ini("extended_rational"), ini("infinity"))});
  if (isZero(re)) return newCall(ini("embedded_imaginary"), {classTree(im)});
  if (isZero(im)) return newCall(ini("embedded_real"), {classTree(re)});
  return newCall(nonreal, {orOf(classTree(re), classTree(im))});
}

DAG classTree(DAG x) {
  if (isExactInfinite(x)) return andOf(ini("extended_rational"), signName(x == consminf), ini("infinity"));
  if (x == ini("undefined")) return andOf(ini("extended_rational"), x);
  if (isImmediate(x) && isZero(x)) return andOf(ini("rational"), ini("poszero"));
  if (isInteger(x)) return consneg(x) ? ini("negint") : ini("posint");
  switch (tagOf(x)) {
    case RATIONAL: return andOf(ini("fraction"), signName(consneg(x)));
    case FLOAT: return classOfFloat(x);
    case HFLOAT: return classOfDouble(hfloatValue(x));
    case COMPLEX: return classOfComplex(x);
    default: break;
  }
  return newCall(naminstall("Non"), {newCall(ini("complex"), {ini("extended_numeric")})});
}

}  // namespace

DAG NumericClass(DAG x) { return simpl(classTree(x)); }

// ---- scaling

namespace {

DAG scale(StandardName operation, DAG base, DAG a, DAG b) {
  const bool floats = isFloatNumber(a) || isFloatComplex(a);
  DAG noValue = floats ? consfNaN : ini("undefined");
  const bool up = b == ini("infinity") || (isFloatInfinity(b) && !consneg(b));
  const bool down = b == consminf || (isFloatInfinity(b) && consneg(b));
  if (isUndefined(a)) return a;
  if (isUndefined(b)) return noValue;
  if (isInfinite(a)) return down ? invalid(operation, a, b, noValue) : a;
  if (isZero(a) && up) return invalid(operation, a, b, noValue);
  if (isZero(a) && down) return CopySign(floats ? consf0 : cons0, a);
  if ((up || down) && isNumeric(a)) {
    DAG sign = isNegativeSigned(a) ? consm1 : cons1;
    if (up) return floats ? DefaultOverflow(sign) : sign == cons1 ? ini("infinity") : consminf;
    return floats ? DefaultUnderflow(sign) : cons0;
  }
  if (isComplex(b) || !isNumeric(b)) return unevaluated(operation, a, b);
  if (base == cons10 && isSoftFloat(a) && isInteger(b)) return newFLOAT(mantissaOf(a), add(exponentOf(a), b));
  return new5(PROD, a, cons1, base, b);
}

}  // namespace

DAG Scale10(DAG a, DAG b) { return scale("Scale10", cons10, a, b); }
DAG Scale2(DAG a, DAG b) { return scale("Scale2", immediate(2), a, b); }

// ---- remainder

DAG frem(DAG x, DAG y) {
  x = NonEventCall1(evalf, x);
  y = NonEventCall1(evalf, y);
  if (isUndefined(x)) return x;
  if (isUndefined(y)) return y;
  auto isNumber = [](DAG part) { return isNumeric(part) || isComplex(part); };
  if (!isNumber(x) || !isNumber(y)) return unevaluated("frem", x, y);
  if (isInfinite(x) || isZero(y) || isComplex(y)) return invalid("frem", x, y, consfNaN);
  if (isInfinite(y)) return x;
  if (isComplex(x)) {
    if (lengthOf(x) == 2) return simpl(new2(COMPLEX, frem(x[1], y)));
    return simpl(new3(COMPLEX, frem(x[1], y), frem(x[2], y)));
  }
  int order = compcon(absalg(x), absalg(y));
  if (order == 0) return CopySign(consf0, x);
  DAG q = NonEventCall2(evalfdiv, x, y);
  const bool isNegative = consneg(q);
  if (order < 0) {
    if (compcon(absalg(q), consh) <= 0) return x;
    return simpl(isNegative ? add(x, y) : add(x, negate(y)));
  }
  if (isInfinite(q) || isUndefined(q)) return CopySign(consf0, x);
  DAG t = isNegative ? add(q, negate(consh)) : add(q, consh);
  DAG n = mtrunc(t);
  if (isZero(add(t, negate(n))) && isodd(n)) n = addint(n, isNegative ? cons1 : consm1);
  DAG result = simpl(new5(SUM, x, cons1, y, negate(n)));
  return isZero(result) ? CopySign(result, x) : result;
}

// ---- conjugate and logarithms

DAG conjugate(DAG x) {
  if (isComplex(x)) {
    DAG mirrored = CopyAlg(x);
    Word last = lengthOf(x) - 1;
    mirrored[last] = negativeOfPart(x[last]);
    return simpl(mirrored);
  }
  if (isExtendedReal(x) || isUndefined(x)) return x;
  return evalsysf("simpl/conjugate", x);
}

namespace {

// What both logarithms have in common; 0 where they part.
DAG logarithmOfSpecial(DAG x, DAG (*logarithm)(DAG)) {
  if (isUndefined(x)) return ini("undefined");
  if (isInfinite(x)) return ini("infinity");
  if (isZero(x)) return consminf;
  if (!isComplex(x)) return DAG();
  if (lengthOf(x) == 2) return logarithm(x[1]);
  DAG re = logarithm(x[1]), im = logarithm(x[2]);
  return compcon(re, im) < 0 ? im : re;
}

}  // namespace

DAG ilog10(DAG x) {
  if (DAG result = logarithmOfSpecial(x, ilog10)) return result;
  if (isInteger(x)) return NewInteger(ilength(x) - 1);
  if (isSoftFloat(x)) return add(NewInteger(ilength(mantissaOf(x)) - 1), exponentOf(x));
  return evalsysf("simpl/ilog10", x);
}

DAG ilog2(DAG x) {
  if (DAG result = logarithmOfSpecial(x, ilog2)) return result;
  DAG name = naminstall("ilog");
  DAG form = simpl(new3(TABLEREF, name, newSequence({immediate(2)})));
  return EvalSystemFunction("", name, form, x);
}

}  // namespace korel
