#pragma once
// Arithmetic on COMPLEX objects, exact and float.
//
// A COMPLEX of length 3 holds real and imaginary part, one of length 2 the imaginary part beside an
// exact zero. Parts are numbers, or `infinity`, its negative, or `undefined`. Float quotients and
// squares are scaled by the larger exponent, so that none overflows unless the result does.

#include <cstdint>

#include "store/dag.h"

namespace korel {

inline bool isComplex(DAG x) { return isTag(x, COMPLEX); }
inline DAG imaginaryPartOf(DAG cx) { return cx[lengthOf(cx) - 1]; }
/// COMPLEX whose first stored part is a FLOAT or HFLOAT.
bool isFloatComplex(DAG x);

/// a + b for numbers, at least one of them COMPLEX; simplified.
DAG cxadd(DAG a, DAG b);
/// a times b, `a` COMPLEX; floats are rounded part by part.
DAG cxmul(DAG a, DAG b);
/// The product by the forms of its operands, at the present `Digits`; unsimplified.
DAG cxdomul(DAG a, DAG b);
/// Product of two COMPLEX of length 3; unsimplified.
DAG cx2opmul(DAG a, DAG b);
/// Product of two parts. A zero annihilates an infinite or undefined partner.
DAG CX_MUL_COMP(DAG a, DAG b);
/// The same for terms of a sum: a float zero stays, with its sign.
DAG CX_MUL_COMP2(DAG a, DAG b);
/// a / b in floats; `b` is a float complex or a number.
DAG cxfdiv(DAG a, DAG b);
/// a^n for COMPLEX `a` and an integer `n` that fits a word.
DAG cxpower(DAG a, DAG n);
DAG cxpower(DAG a, std::int32_t n);
/// a^n for n > 0, exact and float.
DAG cxpower1(std::int64_t n, DAG a);
DAG cxfpower1(DAG a, std::int64_t n, int depth);
/// 1 / z, exact and float. An immediate gives 0: no COMPLEX.
DAG cxinv1(DAG z);
DAG cxfinv1(DAG z);
/// |z| as a float.
DAG cxfabs(DAG z);
/// The parts of any expression.
DAG cxRealPart(DAG x);
DAG cxImaginaryPart(DAG x);
/// True for a real number, and where the imaginary part is a zero.
bool cxIsReal(DAG x);

}  // namespace korel
