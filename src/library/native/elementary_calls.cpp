// The elementary functions as procedures of the language: a float at once for a float, the exact value where there is
// one, else the call as it stands. Most calls stand, and are looked at in every evaluation: what can't have a value
// is known after a look at a tag or two.

#include <cmath>
#include <cstdlib>

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
#include "numbers/events/numeric_events.h"
#include "numbers/float/float.h"
#include "store/constants.h"
#include "store/names.h"
#include "store/objects.h"
#include "store/tag_facts.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

bool isFloatEnd(DAG x) { return isFloatInfinity(x) || isFloatUndefined(x); }
// The exact form of an infinite or undefined float.
DAG exactEnd(DAG x) {
  if (isFloatUndefined(x)) return ini("undefined");
  return exactInfinity(consneg(mantissaOf(x)));
}

DAG evaluate(Elementary f, DAG x) {
  if (isTag(x, HFLOAT)) x = HFloatToFloat(x);
  if (isFloatValue(x)) {
    if (isFiniteNumber(x)) return floatAt(f, x);
    DAG value = isFloatEnd(x) ? atEnd(f, exactEnd(x)) : DAG();
    return value ? evalf(value) : DAG();
  }
  return exactAt(f, x);
}

DAG callElementary(Elementary f, const BuiltinCall& call) {
  if (argumentCount(call) == 1) [[likely]] {
    DAG x = call.arguments[1];
    // A name stands for anything.
    const bool plain = isName(x) && x != ini("Pi") && x != ini("infinity") && x != ini("undefined");
    if (plain && f != Elementary::sqrt) return DAG();
  }
  return evaluate(f, onlyArgument(call));
}

// ---- float values, for `evalf`

DAG atDigits(DAG x, std::int64_t digits) {
  EnvironmentChange change;
  setDigits(change, digits);
  DAG value = simpl(evalf(x));
  restoreDigits(change);
  return value;
}
// The decimal digits before the point of a number, 0 where there are none.
std::int64_t wholeDigits(DAG y) {
  double size = 0;
  auto look = [&](DAG part) {
    const double value = std::fabs(FloatValue(part));
    if (std::isfinite(value) && value >= 1) size = std::max(size, std::floor(std::log10(value)) + 1);
  };
  if (isComplex(y)) {
    if (lengthOf(y) == 3) look(y[1]);
    look(imaginaryPartOf(y));
  } else {
    look(y);
  }
  return static_cast<std::int64_t>(size);
}
// A number as it is; anything else in floats, with guard digits where that gives a number.
DAG floatArgument(DAG x) {
  if (isFiniteNumber(x)) return x;
  DAG y = simpl(evalf(x));
  return y != x && isFiniteNumber(y) ? atDigits(x, precisionDigits() + 10 + wholeDigits(y)) : y;
}
DAG standing(const char* name, DAG arguments) { return simpl(new3(FUNCTION, naminstall(name), arguments)); }

DAG evalfElementary(Elementary f, const BuiltinCall& call) {
  if (argumentCount(call) != 1) return standing(rowOf(f).name, call.arguments);
  DAG y = floatArgument(call.arguments[1]);
  if (isFiniteNumber(y)) return floatAt(f, y);
  if (isFloatUndefined(y)) return y;
  DAG end = isFloatEnd(y) ? exactEnd(y) : y;
  if (DAG value = atEnd(f, end)) return evalf(value);
  return standing(rowOf(f).name, simpl(new2(EXPSEQ, y)));
}

}  // namespace

#define KOREL_ELEMENTARY(function, evalfName)                                                          \
  DAG native::function(const BuiltinCall& call) { return callElementary(Elementary::function, call); } \
  DAG native::evalfName(const BuiltinCall& call) { return evalfElementary(Elementary::function, call); }
KOREL_ELEMENTARY(exp, evalfExp)
KOREL_ELEMENTARY(ln, evalfLn)
KOREL_ELEMENTARY(sqrt, evalfSqrt)
KOREL_ELEMENTARY(sin, evalfSin)
KOREL_ELEMENTARY(cos, evalfCos)
KOREL_ELEMENTARY(tan, evalfTan)
KOREL_ELEMENTARY(cot, evalfCot)
KOREL_ELEMENTARY(sec, evalfSec)
KOREL_ELEMENTARY(csc, evalfCsc)
KOREL_ELEMENTARY(sinh, evalfSinh)
KOREL_ELEMENTARY(cosh, evalfCosh)
KOREL_ELEMENTARY(tanh, evalfTanh)
KOREL_ELEMENTARY(coth, evalfCoth)
KOREL_ELEMENTARY(sech, evalfSech)
KOREL_ELEMENTARY(csch, evalfCsch)
KOREL_ELEMENTARY(arcsin, evalfArcsin)
KOREL_ELEMENTARY(arccos, evalfArccos)
KOREL_ELEMENTARY(arccot, evalfArccot)
KOREL_ELEMENTARY(arcsec, evalfArcsec)
KOREL_ELEMENTARY(arccsc, evalfArccsc)
KOREL_ELEMENTARY(arcsinh, evalfArcsinh)
KOREL_ELEMENTARY(arccosh, evalfArccosh)
KOREL_ELEMENTARY(arctanh, evalfArctanh)
KOREL_ELEMENTARY(arccoth, evalfArccoth)
KOREL_ELEMENTARY(arcsech, evalfArcsech)
KOREL_ELEMENTARY(arccsch, evalfArccsch)
#undef KOREL_ELEMENTARY

// ---- arctan of one argument, and the angle of a point

namespace {

bool isRealNumber(DAG x) { return isFiniteNumber(x) && !isComplex(x); }

// The angle of (x, y) for exact arguments of known signs, or 0.
DAG exactAngle(DAG y, DAG x) {
  DAG pi = ini("Pi"), half = productOf(quotientOf(1, 2), pi);
  const bool onAxis = y == cons0;
  if (onAxis) {
    if (isKnown(x, Property::positive)) return cons0;
    if (isKnown(x, Property::negative)) return pi;
    return DAG();
  }
  if (x == cons0) {
    if (isKnown(y, Property::positive)) return half;
    if (isKnown(y, Property::negative)) return negativeOf(half);
    return DAG();
  }
  if (!isKnown(x, Property::positive) && !isKnown(x, Property::negative)) return DAG();
  DAG ratio = productOf(y, powerOf(x, consm1));
  DAG value = exactAt(Elementary::arctan, ratio);
  if (!value) value = callOf(Elementary::arctan, ratio);
  if (isKnown(x, Property::positive)) return value;
  if (isKnown(y, Property::positive)) return sumOf(value, pi);
  if (isKnown(y, Property::negative)) return sumOf(value, negativeOf(pi));
  return DAG();
}

}  // namespace

DAG native::arctan(const BuiltinCall& call) {
  if (argumentCount(call) == 1) return callElementary(Elementary::arctan, call);
  if (argumentCount(call) != 2) wrongCount(call, "%1 expects one or two arguments, but received %2");
  DAG y = call.arguments[1], x = call.arguments[2];
  requireAlgebraic(call, y);
  requireAlgebraic(call, x);
  if (isZero(y) && isZero(x)) {
    if (isFloatValue(y) || isFloatValue(x)) return consf0;
    return TriggerNumericEvent(invalidOperation, call.self, y, x, ini("undefined"), true);
  }
  if (isRealNumber(y) && isRealNumber(x) && (isFloatValue(y) || isFloatValue(x))) return floatAngle(y, x);
  if (isFloatValue(y) || isFloatValue(x)) return DAG();
  return exactAngle(y, x);
}

DAG native::evalfArctan(const BuiltinCall& call) {
  if (argumentCount(call) != 2) return evalfElementary(Elementary::arctan, call);
  DAG y = floatArgument(call.arguments[1]), x = floatArgument(call.arguments[2]);
  if (!isRealNumber(y) || !isRealNumber(x)) {
    DAG both = newl2(3, EXPSEQ);
    both[1] = y;
    both[2] = x;
    return standing("arctan", simpl(both));
  }
  return isZero(y) && isZero(x) ? consf0 : floatAngle(y, x);
}

// ---- logarithms to other bases, powers and roots

namespace {

DAG logarithm(DAG x, DAG base) {
  if (isFloatValue(x) || isFloatValue(base)) {
    if (isFiniteNumber(x) && isFiniteNumber(base)) return floatLogarithm(x, base);
    return DAG();
  }
  auto lnOf = [](DAG y) {
    DAG value = exactAt(Elementary::ln, y);
    return value ? value : callOf(Elementary::ln, y);
  };
  return productOf(lnOf(x), powerOf(lnOf(base), consm1));
}

// The index of an indexed call f[b](...), `otherwise` without one.
DAG indexOf(const BuiltinCall& call, DAG otherwise) {
  if (!isTag(call.self, TABLEREF)) return otherwise;
  DAG index = singleMember(call.self[2]);
  if (isSequence(index)) KernelException("%1 expects one index", call.self[1]);
  return index;
}

}  // namespace

DAG native::log(const BuiltinCall& call) {
  DAG x = onlyArgument(call), base = indexOf(call, DAG());
  if (base != DAG()) requireAlgebraic(call, base);
  if (!base) {
    DAG value = evaluate(Elementary::ln, x);
    return value ? value : callOf(Elementary::ln, x);
  }
  if (base == cons0 || base == cons1) KernelException("the base of a logarithm must not be %1", base);
  return logarithm(x, base);
}
DAG native::log10(const BuiltinCall& call) { return logarithm(onlyArgument(call), immediate(10)); }

// evalf/log(x), evalf/log[b](x)
DAG native::evalfLog(const BuiltinCall& call) {
  if (argumentCount(call) != 1) return standing("log", call.arguments);
  DAG x = floatArgument(call.arguments[1]), base = indexOf(call, DAG());
  if (!base) return evalfElementary(Elementary::ln, call);
  return logarithm(simpl(evalf(x)), floatArgument(base));
}
DAG native::evalfLog10(const BuiltinCall& call) {
  if (argumentCount(call) != 1) return standing("log10", call.arguments);
  DAG x = floatArgument(call.arguments[1]);
  return isFiniteNumber(x) ? floatLogarithm(x, immediate(10)) : standing("log10", simpl(new2(EXPSEQ, x)));
}

// evalf/power(x, y), both numbers of the kinds that the kernel leaves to the library.
DAG native::evalfPower(const BuiltinCall& call) {
  if (argumentCount(call) != 2) wrongParameters(call);
  DAG x = floatArgument(call.arguments[1]), y = floatArgument(call.arguments[2]);
  if (!isFiniteNumber(x) || !isFiniteNumber(y)) wrongParameters(call);
  return floatPower(x, y);
}

namespace {

// x^(1/n) for a float or an exact x.
DAG principalRoot(DAG x, std::int32_t n) {
  if (isFloatValue(x)) return powerOf(x, quotientOf(1, n));
  return exactRoot(x, static_cast<unsigned>(n));
}

// The degree of a root: the index, or the second argument; 0 for another one than an integer of moderate size.
std::int32_t degreeOf(const BuiltinCall& call, DAG& degree) {
  degree = indexOf(call, argumentCount(call) == 2 ? call.arguments[2] : DAG());
  if (!degree || argumentCount(call) > (isTag(call.self, TABLEREF) ? 1u : 2u))
    KernelException("%1 expects an expression and the degree of the root, but received %2 arguments", call.self,
                    immediate(static_cast<std::int32_t>(argumentCount(call))));
  requireAlgebraic(call, call.arguments[1]);
  if (degree == cons0) return poleOf(call.self, degree, ini("undefined")), 0;
  if (!isImmediate(degree) || degree == consm0) return 0;
  const std::int32_t n = immediateValue(degree);
  return n != 0 && std::abs(n) <= 1000000 ? n : 0;
}

}  // namespace

DAG native::root(const BuiltinCall& call) {
  DAG degree;
  if (argumentCount(call) == 0) onlyArgument(call);
  const std::int32_t n = degreeOf(call, degree);
  DAG x = call.arguments[1];
  if (n == 0) return powerOf(x, powerOf(degree, consm1));
  DAG value = std::abs(n) == 1 ? x : principalRoot(x, std::abs(n));
  return n < 0 ? powerOf(value, consm1) : value;
}

// The real root of odd degree of a real number, the principal one of anything else.
DAG native::surd(const BuiltinCall& call) {
  DAG degree;
  if (argumentCount(call) == 0) onlyArgument(call);
  const std::int32_t n = degreeOf(call, degree);
  DAG x = call.arguments[1];
  if (n == 0) return DAG();
  const std::int32_t size = std::abs(n);
  DAG value = size == 1 ? x : DAG();
  if (size > 1 && size % 2 != 0 && ((isRealNumber(x) && consneg(x)) || isKnown(x, Property::negative)))
    value = negativeOf(principalRoot(negativeOf(x), size));
  else if (size > 1 && (isFiniteNumber(x) || isKnown(x, Property::nonnegative))) value = principalRoot(x, size);
  return value && n < 0 ? powerOf(value, consm1) : value;
}
DAG native::evalfSurd(const BuiltinCall& call) {
  if (argumentCount(call) != 2) return standing("surd", call.arguments);
  DAG x = floatArgument(call.arguments[1]);
  DAG both = newl2(3, EXPSEQ);
  both[1] = isFiniteNumber(x) ? simpl(evalf(x)) : x;
  both[2] = call.arguments[2];
  DAG value = isFiniteNumber(x) ? native::surd({simpl(both), naminstall("surd"), call.form}) : DAG();
  return value ? value : standing("surd", simpl(both));
}

}  // namespace korel
