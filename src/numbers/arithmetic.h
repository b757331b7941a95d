#pragma once
// Arithmetic on number objects: which routine a pair of operands goes to, rationals in lowest terms,
// and what `infinity`, its negative and `undefined` do.
//
// Operands are simplified numbers (integer, RATIONAL, FLOAT, HFLOAT, COMPLEX) or those three special
// values. Results are numbers in canonical form: no RATIONAL with denominator 1 or a common factor,
// the sign on the numerator. Results may be fresh and unsimplified objects.

#include <cstdint>

#include "numbers/integer/integer.h"
#include "store/constants.h"
#include "store/dag.h"
#include "store/standard_names.h"

namespace korel {

DAG addNumbers(DAG a, DAG b);
DAG mulNumbers(DAG a, DAG b);
/// a + b.
inline DAG add(DAG a, DAG b) {
  if (isImmediate(a) && isImmediate(b)) return Newint(immediateValue(a) + immediateValue(b));
  return addNumbers(a, b);
}
/// a * b.
inline DAG mul(DAG a, DAG b) {
  if (b == cons1) return a;
  if (isImmediate(a) && isImmediate(b) && a != consm0 && b != consm0) {
    std::int64_t product = std::int64_t{immediateValue(a)} * immediateValue(b);
    if (fitsImmediate(product)) return immediate(static_cast<std::int32_t>(product));
  }
  return mulNumbers(a, b);
}
/// b^n exactly. Error: "integer too large in context" for the least n on a negative power.
DAG power(DAG b, std::int32_t n);
/// x + 1, fast for loop counters. Error: "invalid type in increment".
DAG increment(DAG x);
/// -x; the call `negate(x)` for what is no number.
DAG negate(DAG x);
/// |x| of a real number; other objects unchanged.
DAG absalg(DAG x);
/// True for a negative real number or negative infinity. The negative zero immediate counts.
bool consneg(DAG x);
/// Order of two real numbers: -1, 0 or 1. Unordered operands are the caller's to exclude.
int compcon(DAG a, DAG b);
/// True when x equals 1 in any numeric form.
bool Equal1(DAG x);
/// True when the integer x equals n.
bool eq(DAG x, std::int32_t n);
/// x truncated toward 0.
DAG mtrunc(DAG x);
/// Remainder of a by b with the sign of a; the quotient through `quotient` unless null.
DAG rem(DAG a, DAG b, DAG* quotient);
/// a times b as a PROD or SUM for `simpl` to finish.
DAG NewPROD(DAG a, DAG b);

// ---- special values

inline bool isExactInfinity(DAG x) { return x == ini("infinity"); }
/// SUM(infinity, -1), the shared object or one that is not simplified yet.
inline bool isExactMinusInfinity(DAG x) {
  return x == consminf || (isObject(x) && headerWord(x) == (SUM | 3) && x[1] == ini("infinity") && x[2] == consm1);
}
inline bool isExactInfinite(DAG x) { return isExactInfinity(x) || isExactMinusInfinity(x); }
inline bool isExactUndefined(DAG x) { return x == ini("undefined"); }
/// `infinity` or its negative.
inline DAG exactInfinity(bool negative) { return negative ? consminf : ini("infinity"); }

/// The zero test: 0 in either form, a float zero, a COMPLEX of zeros.
bool isZero(DAG x);
/// `infinity`, its negative, the float infinities, or a COMPLEX with such a part.
bool isInfinite(DAG x);
/// `undefined`, a float undefined, or a COMPLEX with such a part.
bool isUndefined(DAG x);

}  // namespace korel
