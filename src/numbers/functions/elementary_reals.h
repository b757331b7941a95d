#pragma once
// The elementary functions of Reals, each to the working precision: relative errors stay within a few units of the
// last limb's lowest bits, near zeros of the function too, as far as the argument itself is exact.
//
// Exponential, sine and cosine are Taylor series of an argument halved many times, with about sqrt(N) full products for
// N terms (D. M. Smith, "Efficient multiple-precision evaluation of elementary functions", 1989); logarithm and arc
// tangent invert them, seven times as many bits a step. The others follow from these by formulas without
// cancellation (W. Kahan, "Branch cuts for complex elementary functions", 1987).

#include "numbers/functions/real.h"

namespace korel {
namespace reals {

/// An exponent that no float has stands for the overflow, or the underflow, of e^x.
constexpr std::int64_t outOfRange = std::int64_t{1} << 50;

Real exp(const Real& x);
/// e^x - 1.
Real expMinusOne(const Real& x);
/// ln x for x > 0, and ln(1 + x) for x > -1.
Real ln(const Real& x);
Real lnOnePlus(const Real& x);
/// |x|^y for x that isn't 0.
Real power(const Real& x, const Real& y);

/// Bits before the point of the longest argument of sine and cosine. Beyond: "object too large".
constexpr std::int64_t longestReduction = std::int64_t{1} << 22;
/// Sine and cosine of x; null where one isn't wanted.
void sineCosine(const Real& x, Real* sine, Real* cosine);
inline Real sin(const Real& x) {
  Real r;
  sineCosine(x, &r, nullptr);
  return r;
}
inline Real cos(const Real& x) {
  Real r;
  sineCosine(x, nullptr, &r);
  return r;
}
/// How many bits of x, as far as they are known, cancel when it is reduced by multiples of Pi/2: those before the point
/// and those in which it equals one. -1 when all do.
std::int64_t bitsBesidePi(const Real& x);
Real arctan(const Real& x);
/// The angle of the point (x, y), not the origin, in (-Pi, Pi].
Real angle(const Real& y, const Real& x);

void hyperbolicSineCosine(const Real& x, Real* sine, Real* cosine);
inline Real sinh(const Real& x) {
  Real r;
  hyperbolicSineCosine(x, &r, nullptr);
  return r;
}
inline Real cosh(const Real& x) {
  Real r;
  hyperbolicSineCosine(x, nullptr, &r);
  return r;
}
Real tanh(const Real& x);
Real arcsinh(const Real& x);

}  // namespace reals
}  // namespace korel
