#pragma once
// Elementary functions and constants of numbers that know their error. Branches are the principal ones; on a cut the
// value is that of counter-clockwise continuity: arg(-1) is Pi.

#include "library/native/special/ball.h"

namespace korel::special {

/// Set when an exponential is too large for the range of exponents.
extern bool isOverflow;

Real pi();
Real eulerGamma();
Real exp(const Real& x);
/// For x > 0.
Real ln(const Real& x);
struct SineCosineBalls {
  Real sine, cosine;
};
SineCosineBalls sineCosine(const Real& x);
/// The angle of x + iy, in (-Pi, Pi].
Real argument(const Complex& z);
Real absolute(const Complex& z);

Complex exp(const Complex& z);
Complex ln(const Complex& z);
Complex sqrt(const Complex& z);
Complex sin(const Complex& z);
Complex cos(const Complex& z);
/// sin(Pi z), cos(Pi z), reduced exactly.
Complex sinPi(const Complex& z);
Complex cosPi(const Complex& z);
/// The principal value of a^b.
Complex power(const Complex& a, const Complex& b);

}  // namespace korel::special
