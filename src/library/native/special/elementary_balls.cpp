#include "library/native/special/elementary_balls.h"

#include <algorithm>
#include <cmath>

#include "numbers/functions/elementary_reals.h"

namespace korel::special {

bool isOverflow = false;

namespace {

// The floats have exponentials of numbers below 2 to this.
constexpr int largestExponent = 45;

// What an elementary function of the floats may be off by.
Real ballOf(const reals::Real& value, Bound more) {
  const Bound own = value.sign == 0 ? Bound() : powerOfTwoBound(value.exponent - reals::workingBits() + 10);
  return widened(Real(value, {}), own + more);
}
// e^r - 1 for a bound r of an error.
Bound growth(Bound r) {
  const double size = doubleOf(r);
  if (size < 1e-10) return r * boundOf(1 + 1e-9);
  return size > 600 ? infiniteBound() : boundOf(std::expm1(size));
}

}  // namespace

Real pi() { return ballOf(reals::pi(), {}); }
Real eulerGamma() { return ballOf(reals::eulerGamma(), {}); }

Real exp(const Real& x) {
  if (isExactZero(x)) return 1;
  if (x.middle.sign == 0) return widened(Real(1), growth(x.error));
  if (x.middle.exponent > largestExponent) {
    // Where not even the sign of x is known, nothing is.
    if (!mayBeZero(x) && isNegative(x)) return {{}, powerOfTwoBound(-(std::int64_t{1} << (largestExponent - 2)))};
    if (!mayBeZero(x)) isOverflow = true;
    return {{}, infiniteBound()};
  }
  const Real whole = ballOf(reals::exp(x.middle), {});
  return isExact(x) ? whole : widened(whole, upperBound(whole) * growth(x.error));
}

Real ln(const Real& x) {
  const Bound below = lowerBound(x);
  if (below.m == 0 || isNegative(x)) return {{}, infiniteBound()};
  if (isExact(x) && reals::compare(x.middle, reals::Real(1)) == 0) return {};
  return ballOf(reals::ln(x.middle), x.error / below);
}

SineCosineBalls sineCosine(const Real& x) {
  if (x.middle.sign == 0) return {widened(Real(), x.error), widened(Real(1), x.error)};
  reals::Real sine, cosine;
  reals::sineCosine(x.middle, &sine, &cosine);
  return {ballOf(sine, x.error), ballOf(cosine, x.error)};
}

Real argument(const Complex& z) {
  if (isReal(z) && !mayBeZero(z.re)) return isNegative(z.re) ? pi() : Real();
  constexpr double fullTurn = 6.2832;
  const Bound below = lowerBound(z);
  if (below.m == 0) return widened(Real(), boundOf(fullTurn / 2));
  if (isExactZero(z.re)) return isNegative(z.im) ? -halved(pi()) : halved(pi());
  Bound error = (z.re.error + z.im.error) / below * boundOf(1.6);
  if (mayBeZero(z.im) && signOf(z.re) < 0) error += boundOf(fullTurn);
  if (z.im.middle.sign == 0) return widened(isNegative(z.re) ? pi() : Real(), error);
  return ballOf(reals::angle(z.im.middle, z.re.middle), error);
}

Real absolute(const Complex& z) {
  if (isReal(z)) return absolute(z.re);
  if (isExactZero(z.re)) return absolute(z.im);
  return sqrt(z.re * z.re + z.im * z.im);
}

Complex exp(const Complex& z) {
  if (isReal(z)) return exp(z.re);
  const SineCosineBalls turn = sineCosine(z.im);
  if (isExactZero(z.re)) return {turn.cosine, turn.sine};
  const Real size = exp(z.re);
  return {size * turn.cosine, size * turn.sine};
}

Complex ln(const Complex& z) {
  if (isReal(z)) {
    if (signOf(z.re) >= 0) return ln(z.re);
    return {ln(-z.re), pi()};
  }
  if (isExactZero(z.re)) return {ln(absolute(z.im)), argument(z)};
  return {halved(ln(z.re * z.re + z.im * z.im)), argument(z)};
}

Complex sqrt(const Complex& z) {
  if (isReal(z)) {
    if (signOf(z.re) >= 0) return sqrt(z.re);
    return {Real(), sqrt(-z.re)};
  }
  const Real size = absolute(z);
  if (signOf(z.re) >= 0) {
    const Real a = sqrt(halved(size + z.re));
    return {a, halved(z.im / a)};
  }
  Real b = sqrt(halved(size - z.re));
  if (mayBeZero(z.im)) b = widened(b, upperBound(b) * boundOf(2));
  if (isNegative(z.im)) b = -b;
  return {halved(z.im / b), b};
}

namespace {

// sinh x and cosh x, the first without cancellation.
SineCosineBalls hyperbolic(const Real& x) {
  if (x.middle.sign == 0 || x.middle.exponent > largestExponent) {
    const Real e = exp(x), inverse = Real(1) / e;
    return {halved(e - inverse), halved(e + inverse)};
  }
  reals::Real sine, cosine;
  reals::hyperbolicSineCosine(x.middle, &sine, &cosine);
  const Real even = ballOf(cosine, {});
  const Bound error = isExact(x) ? Bound() : upperBound(even) * growth(x.error);
  return {ballOf(sine, error), widened(even, error)};
}

// sin and cos of a + ib from those of a.
Complex sineWith(const SineCosineBalls& a, const Real& b) {
  if (isExactZero(b)) return a.sine;
  const SineCosineBalls h = hyperbolic(b);
  return {a.sine * h.cosine, a.cosine * h.sine};
}
Complex cosineWith(const SineCosineBalls& a, const Real& b) {
  if (isExactZero(b)) return a.cosine;
  const SineCosineBalls h = hyperbolic(b);
  return {a.cosine * h.cosine, -(a.sine * h.sine)};
}

bool isOddInteger(const Real& n) { return n.middle.sign != 0 && !isInteger(halved(n)); }

SineCosineBalls sineCosinePi(const Real& x) {
  const Real whole = nearestInteger(x);
  const Real rest = x - whole;
  SineCosineBalls at;
  if (isExactZero(rest)) {
    at = {Real(), Real(1)};
  } else if (isExact(rest) && isExactZero(absolute(rest) * 2 - Real(1))) {
    at = {Real(isNegative(rest) ? -1 : 1), Real()};
  } else {
    at = sineCosine(pi() * rest);
  }
  if (!isOddInteger(whole)) return at;
  return {-at.sine, -at.cosine};
}

}  // namespace

Complex sin(const Complex& z) { return sineWith(sineCosine(z.re), z.im); }
Complex cos(const Complex& z) { return cosineWith(sineCosine(z.re), z.im); }
Complex sinPi(const Complex& z) { return sineWith(sineCosinePi(z.re), isReal(z) ? Real() : pi() * z.im); }
Complex cosPi(const Complex& z) { return cosineWith(sineCosinePi(z.re), isReal(z) ? Real() : pi() * z.im); }

Complex power(const Complex& a, const Complex& b) {
  std::int64_t n;
  if (isMachineInteger(b, n) && n > -100000 && n < 100000) return integerPower(a, n);
  if (isExactZero(a)) return {};
  return exp(b * ln(a));
}

}  // namespace korel::special
