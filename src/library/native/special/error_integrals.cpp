#include "library/native/special/error_integrals.h"

#include <cmath>

#include "library/native/special/elementary_balls.h"
#include "library/native/special/special_series.h"

namespace korel::special {

namespace {

Real half() { return Real(1) / 2; }
Real rootOfPi() { return sqrt(pi()); }

// Beyond this size of the argument a series is hopeless where the asymptotic one doesn't reach.
constexpr double longestSeries = 200000;
bool isTooLarge(const Complex& z) { return !(doubleOf(upperBound(z)) < longestSeries); }

// z 2F2(1, 1; 2, 2; z) = the sum of z^k/(k k!)
Complex entirePart(const Complex& z) {
  const Complex one(1), two(2);
  const Complex upper[] = {one, one}, lower[] = {two, two};
  return z * hypergeometricSum(upper, 2, lower, 2, z);
}

// e^z z E_1(z) by the asymptotic series; |arg z| <= Pi.
Complex scaledE1(const Complex& z, bool& reached) { return asymptoticSum(Complex(1), Complex(1), z, reached); }

// E_1(z).
Complex e1(const Complex& z) {
  if (isReal(z) && signOf(z.re) < 0) return {-exponentialIntegral(-z).re, -pi()};
  if (isAsymptotic(z)) {
    bool reached;
    const Complex sum = scaledE1(z, reached);
    if (reached) return exp(-z) / z * sum;
  }
  if (isTooLarge(z)) return giveUp();
  return -Complex(eulerGamma()) - ln(z) - entirePart(-z);
}

// z 1F1(1; 3/2; z^2), of which erf z = 2/sqrt(Pi) e^-z^2 times.
Complex dawsonSeries(const Complex& z, const Complex& squared) {
  const Complex upper[] = {Complex(1)}, lower[] = {Complex(Real(3) / 2)};
  return z * hypergeometricSum(upper, 1, lower, 1, squared);
}

Complex errorSeries(const Complex& z) {
  const Complex squared = square(z);
  if (signOf(squared.re) >= 0) return dawsonSeries(z, squared) * exp(-squared) * 2 / rootOfPi();
  const Complex upper[] = {Complex(half())}, lower[] = {Complex(Real(3) / 2)};
  return z * hypergeometricSum(upper, 1, lower, 1, -squared) * 2 / rootOfPi();
}

// erfc z for Re z >= 0 and large |z|.
bool asymptoticErfc(const Complex& z, Complex& value) {
  const Complex squared = square(z);
  if (!isAsymptotic(squared)) return false;
  bool reached;
  const Complex sum = asymptoticSum(Complex(half()), Complex(1), squared, reached);
  if (!reached) return false;
  value = exp(-squared) * sum / z / rootOfPi();
  return true;
}

}  // namespace

Complex complementaryErrorFunction(const Complex& z) {
  if (signOf(z.re) < 0) return Complex(2) - complementaryErrorFunction(-z);
  Complex value;
  if (asymptoticErfc(z, value)) return value;
  if (isTooLarge(z)) return giveUp();
  return Complex(1) - errorSeries(z);
}

Complex errorFunction(const Complex& z) {
  if (isExactZero(z.re) && !isReal(z)) return timesI(imaginaryErrorFunction(z.im));
  Complex value;
  if (signOf(z.re) < 0) return -errorFunction(-z);
  if (asymptoticErfc(z, value)) return Complex(1) - value;
  if (isTooLarge(z)) return giveUp();
  return errorSeries(z);
}

Complex imaginaryErrorFunction(const Complex& z) {
  if (!isReal(z)) return -timesI(errorFunction(timesI(z)));
  if (isExactZero(z)) return 0;
  const Complex squared = square(z);
  if (isAsymptotic(squared)) {
    bool reached;
    const Complex sum = asymptoticSum(Complex(half()), Complex(1), -squared, reached);
    if (reached) return exp(squared) * Complex(sum.re) / z / rootOfPi();
  }
  if (isTooLarge(z)) return giveUp();
  const Complex upper[] = {Complex(half())}, lower[] = {Complex(Real(3) / 2)};
  return z * hypergeometricSum(upper, 1, lower, 1, squared) * 2 / rootOfPi();
}

Complex exponentialIntegral(const Complex& z) {
  if (isAsymptotic(z)) {
    bool reached;
    const Complex sum = scaledE1(-z, reached);
    if (reached) {
      const Complex value = exp(z) / z * sum;
      if (isReal(z)) return value.re;
      // Half a turn between ln z and ln(-z), off the real axis.
      return value + timesI(Complex(isNegative(z.im) ? -pi() : pi()));
    }
  }
  if (isTooLarge(z)) return giveUp();
  if (isReal(z)) return ln(absolute(z.re)) + eulerGamma() + entirePart(z).re;
  return ln(z) + Complex(eulerGamma()) + entirePart(z);
}

Complex exponentialIntegral(const Complex& n, const Complex& z) {
  if (isExactZero(z)) return Complex(1) / (n - 1);
  std::int64_t order;
  if (isMachineInteger(n, order)) {
    if (order == 1) return e1(z);
    if (order <= 0 && order > -10000) {
      // E_0(z) = e^-z/z, E_(n-1) = (e^-z + (1 - n) E_n ... )/z
      const Complex e = exp(-z);
      Complex value = e / z;
      for (std::int64_t k = -1; k >= order; --k) value = (e + value * -k) / z;
      return value;
    }
  }
  return power(z, n - Real(1)) * upperGamma(Complex(1) - n, z);
}

Complex upperGamma(const Complex& a, const Complex& z) {
  if (isAsymptotic(z)) {
    bool reached;
    const Complex sum = asymptoticSum(Complex(1), Complex(1) - a, z, reached);
    if (reached) return power(z, a - Real(1)) * exp(-z) * sum;
  }
  if (isTooLarge(z)) return giveUp();
  if (isPole(a)) {
    // gamma(-n, z) = (-1)^n/n! (E_1(z) - e^-z sum of (-1)^k k!/z^(k + 1), k < n)
    std::int64_t n;
    if (!isMachineInteger(a, n) || n < -100000) return giveUp();
    Complex term = Complex(1) / z, sum(0);
    for (std::int64_t k = 0; k < -n; ++k) {
      sum = sum + term;
      term = -(term * (k + 1)) / z;
    }
    const Complex value = (e1(z) - exp(-z) * sum) / factorialBall(-n);
    return n % 2 == 0 ? value : -value;
  }
  const Complex upper[] = {Complex(1)}, lower[] = {a + Real(1)};
  return gamma(a) - power(z, a) * exp(-z) / a * hypergeometricSum(upper, 1, lower, 1, z);
}

Complex logarithmicIntegral(const Complex& z) { return exponentialIntegral(ln(z)); }

namespace {

// z 1F2(1/2; 3/2, 3/2; +-z^2/4): the sine integrals.
Complex sineSeries(const Complex& z, int sign) {
  const Complex threeHalves = Complex(Real(3) / 2);
  const Complex upper[] = {Complex(half())}, lower[] = {threeHalves, threeHalves};
  return z * hypergeometricSum(upper, 1, lower, 2, square(z) * sign / 4);
}
// +-z^2/4 2F3(1, 1; 2, 2, 3/2; +-z^2/4): the cosine integrals less gamma + ln z.
Complex cosineSeries(const Complex& z, int sign) {
  const Complex one(1), two(2), quarter = square(z) * sign / 4;
  const Complex upper[] = {one, one}, lower[] = {two, two, Complex(Real(3) / 2)};
  return quarter * hypergeometricSum(upper, 2, lower, 3, quarter);
}

struct Pair {
  Complex minus, plus;
};
// E_1(-iz) and E_1(iz), Re z > 0, where the asymptotic series reaches.
bool turnedE1(const Complex& z, Pair& e) {
  if (!isAsymptotic(z)) return false;
  bool first, second = true;
  const Complex w = timesI(z);
  e.plus = exp(-w) / w * scaledE1(w, first);
  if (isReal(z)) e.minus = conjugate(e.plus);
  else e.minus = -(exp(w) / w) * scaledE1(-w, second);
  return first && second;
}

}  // namespace

Complex sineIntegral(const Complex& z) {
  if (isExactZero(z)) return 0;
  if (isExactZero(z.re)) return timesI(hyperbolicSineIntegral(z.im));
  if (signOf(z.re) < 0) return -sineIntegral(-z);
  Pair e;
  if (turnedE1(z, e)) {
    if (isReal(z)) return pi() / 2 + e.plus.im;
    return Complex(pi() / 2) - timesI(e.plus - e.minus) / 2;
  }
  if (isTooLarge(z)) return giveUp();
  return sineSeries(z, -1);
}

Complex cosineIntegral(const Complex& z) {
  if (isExactZero(z.re)) {
    const Complex value = hyperbolicCosineIntegral(absolute(z.im));
    return {value.re, isNegative(z.im) ? -pi() / 2 : pi() / 2};
  }
  if (signOf(z.re) < 0) return cosineIntegral(-z) + timesI(Complex(isNegative(z.im) ? -pi() : pi()));
  Pair e;
  if (turnedE1(z, e)) {
    if (isReal(z)) return -e.plus.re;
    return -(e.plus + e.minus) / 2;
  }
  if (isTooLarge(z)) return giveUp();
  return ln(z) + Complex(eulerGamma()) + cosineSeries(z, -1);
}

Complex hyperbolicSineIntegral(const Complex& z) {
  if (!isReal(z)) return -timesI(sineIntegral(timesI(z)));
  if (isExactZero(z)) return 0;
  if (isNegative(z.re)) return -hyperbolicSineIntegral(-z);
  if (isAsymptotic(z)) return (exponentialIntegral(z) + e1(z)) / 2;
  return sineSeries(z, 1);
}

Complex hyperbolicCosineIntegral(const Complex& z) {
  if (!isReal(z)) {
    // Chi(z) = Ci(iz) + ln z - ln(iz)
    const Complex turned = timesI(z);
    return cosineIntegral(turned) + (timesI(Complex(argument(z) - argument(turned))));
  }
  if (isNegative(z.re)) return hyperbolicCosineIntegral(-z) + timesI(Complex(pi()));
  if (isAsymptotic(z)) return (exponentialIntegral(z) - e1(z)) / 2;
  return ln(z) + Complex(eulerGamma()) + cosineSeries(z, 1);
}

}  // namespace korel::special
