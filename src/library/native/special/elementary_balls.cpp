#include "library/native/special/elementary_balls.h"

#include <algorithm>

#include "library/native/elementary_functions.h"
#include "library/native/fixed_point.h"
#include "store/constants.h"

namespace korel::special {

namespace {

constexpr double twoPi = 6.2832;

Exact middleOf(const Real& x) {
  const Decimal d = decimalOf(x);
  return decimal(d.mantissa, d.exponent);
}
// A computed value, good to `digits` significant digits, with an error that comes from the argument.
Real ballOf(const Exact& value, std::int64_t digits, Bound more) {
  Real x = value.denominator == cons1 ? realOfDecimal(value.numerator, value.exponent)
                                      : realOfDecimal(value.numerator, value.exponent) / realOfDecimal(value.denominator, 0);
  const Bound own = middleBound(x) * powerOfTenBound(static_cast<double>(1 - digits));
  return widened(x, own + more);
}
Real constant(DAG (*fixedValue)(std::int64_t p)) {
  const std::int64_t p = workDigits() + 8;
  return widened(realOfDecimal(fixedValue(p), -p), powerOfTenBound(static_cast<double>(2 - p)));
}
// e^r - 1 for a bound r of an error.
Bound growth(Bound r) {
  const double size = doubleOf(r);
  if (size < 1e-10) return r * boundOf(1 + 1e-9);
  return size > 600 ? Bound{1, 0} / Bound{} : boundOf(std::expm1(size));
}

}  // namespace

Real pi() { return constant(fixedPi); }
Real eulerGamma() { return constant(fixedGamma); }

Real exp(const Real& x) {
  if (isExactZero(x)) return 1;
  const std::int64_t digits = workDigits() + 4;
  if (x.count == 0) return widened(1, growth(x.error));
  const Exact value = expOf(middleOf(x), digits);
  const Real whole = ballOf(value, digits, {});
  return x.error.m == 0 ? whole : widened(whole, upperBound(whole) * growth(x.error));
}

Real ln(const Real& x) {
  const Bound below = lowerBound(x);
  if (x.count == 0 || x.negative || below.m == 0) return widened(Real(), Bound{1, 0} / Bound{});
  const std::int64_t digits = workDigits() + 4;
  return ballOf(lnOf(middleOf(x), digits), digits, x.error / below);
}

SineCosineBalls sineCosine(const Real& x) {
  if (x.count == 0) {
    Real sine = widened(Real(), x.error), cosine = widened(Real(1), x.error);
    return {sine, cosine};
  }
  const std::int64_t digits = workDigits() + 4;
  const SineAndCosine at = sineAndCosineOf(middleOf(x), digits);
  return {ballOf(at.sine, digits, x.error), ballOf(at.cosine, digits, x.error)};
}

Real argument(const Complex& z) {
  if (isReal(z) && !mayBeZero(z.re)) return z.re.negative ? pi() : Real();
  const Bound below = lowerBound(z);
  if (below.m == 0) return widened(Real(), boundOf(twoPi / 2));
  const std::int64_t digits = workDigits() + 4;
  Bound error = (z.re.error + z.im.error) / below * boundOf(1.6);
  if (mayBeZero(z.im) && signOf(z.re) < 0) error += boundOf(twoPi);
  if (isExactZero(z.re) && !mayBeZero(z.im)) return z.im.negative ? -pi() / 2 : pi() / 2;
  return ballOf(angleOf(middleOf(z.im), middleOf(z.re), digits), digits, error);
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
  return {ln(z.re * z.re + z.im * z.im) / 2, argument(z)};
}

Complex sqrt(const Complex& z) {
  if (isReal(z)) {
    if (signOf(z.re) >= 0) return sqrt(z.re);
    return {Real(), sqrt(-z.re)};
  }
  const Real size = absolute(z);
  if (signOf(z.re) >= 0) {
    const Real a = sqrt((size + z.re) / 2);
    return {a, z.im / a / 2};
  }
  Real b = sqrt((size - z.re) / 2);
  if (mayBeZero(z.im)) b = widened(b, upperBound(b) * boundOf(2));
  if (z.im.negative) b = -b;
  return {z.im / b / 2, b};
}

namespace {

// sin and cos of a + ib from those of a.
Complex sineWith(const SineCosineBalls& a, const Real& b) {
  if (isExactZero(b)) return a.sine;
  const Real e = exp(b), inverse = Real(1) / e;
  return {a.sine * (e + inverse) / 2, a.cosine * (e - inverse) / 2};
}
Complex cosineWith(const SineCosineBalls& a, const Real& b) {
  if (isExactZero(b)) return a.cosine;
  const Real e = exp(b), inverse = Real(1) / e;
  return {a.cosine * (e + inverse) / 2, -(a.sine * (e - inverse)) / 2};
}

bool isOddInteger(const Real& n) { return n.count > 0 && n.exponent == 0 && (n.groups[0] & 1) != 0; }

SineCosineBalls sineCosinePi(const Real& x) {
  const Real whole = nearestInteger(x);
  const Real rest = x - whole;
  SineCosineBalls at;
  if (isExactZero(rest)) {
    at = {Real(), Real(1)};
  } else if (rest.error.m == 0 && isExactZero(absolute(rest) * 2 - Real(1))) {
    at = {Real(rest.negative ? -1 : 1), Real()};
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
