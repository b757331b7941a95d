#pragma once
// Software floats: decimal numbers of any precision.
//
// A FLOAT holds an integer mantissa and an integer exponent of ten, neither of them normalised:
// trailing zeros stay, so that 1.0 is (10, -1) and differs from 1. as an object. The mantissa may be
// the negative zero `consm0`. The exponent lies between `cons_minfloatexp` and `cons_maxfloatexp`, or
// it is the name `infinity` (an infinity with the mantissa's sign) or `undefined` (no number).
//
// Results carry at most `Digits` digits and are rounded under `Rounding`, both read from the running
// frame. Every exceptional case is a numeric event (numbers/events/numeric_events.h). Results are fresh
// objects, not simplified.

#include <cstdint>

#include "numbers/float/hardware_float.h"
#include "numbers/integer/integer.h"
#include "store/constants.h"
#include "store/dag.h"
#include "store/standard_names.h"

namespace korel {

inline DAG mantissaOf(DAG x) { return x[1]; }
inline DAG exponentOf(DAG x) { return x[2]; }

// Of the words for floats, `isFloatNumber` (store/vocabulary.h) is the widest: FLOAT or HFLOAT.

inline bool isSoftFloat(DAG x) { return isTag(x, FLOAT); }
/// FLOAT with the exponent `infinity`.
inline bool isFloatInfinity(DAG x) { return isSoftFloat(x) && x[2] == ini("infinity"); }
/// FLOAT with the exponent `undefined`.
inline bool isFloatUndefined(DAG x) { return isSoftFloat(x) && x[2] == ini("undefined"); }
/// One of the two above; `x` is a FLOAT.
inline bool isSingular(DAG x) { return isTag(x[2], NAME); }
/// FLOAT with a zero mantissa of either sign.
inline bool isFloatZero(DAG x) { return isSoftFloat(x) && isZeroImmediate(x[1]); }
/// FLOAT that is finite: no infinity, not undefined.
inline bool isFiniteFloat(DAG x) { return isSoftFloat(x) && !isSingular(x); }

/// An integer exponent as a machine number.
inline std::int64_t exponentValue(DAG exponent) {
  return isImmediate(exponent) ? immediateValue(exponent) : LongLongValue(exponent);
}

/// The float of `mantissa` and `exponent`. An exponent that is no integer makes the object as it
/// stands; one out of bounds is an overflow or underflow event named `Float`, as is a number whose
/// first digit has an exponent that leaves a word.
DAG newFLOAT(DAG mantissa, DAG exponent);
/// As `newFLOAT`, with the mantissa rounded to `Digits`; an inexact result is event 5.
/// Error: "Digits has to be an integer greater than 0".
DAG BuildFloat(DAG mantissa, DAG exponent);

/// Sum and product of two floats.
DAG FloatAdd(DAG a, DAG b);
DAG FloatMultiply(DAG a, DAG b);
/// a + b as floats, for any two real numbers.
DAG evalfadd(DAG a, DAG b);
/// a times b as a float, rounded once; `a` and `b` are real numbers, one of them a float. A RATIONAL `b`
/// makes it a quotient.
DAG evalfmul(DAG a, DAG b);
/// a / b as a float for real numbers, rounded once from the exact quotient; a zero `b` is a numeric event.
DAG evalfdiv(DAG a, DAG b);
/// a^n for an integer of any size, by repeated squaring under guard digits.
DAG evalfpwr(DAG a, DAG n);
/// Square root of a real number that isn't negative. Singular floats give themselves.
DAG evalfsqrt(DAG a);
/// The exact number equal to a finite float; what the overflow event gives where no integer holds its parts.
DAG floatrat(DAG x);
/// The float of a RATIONAL.
DAG rationalToFloat(DAG x);

}  // namespace korel
