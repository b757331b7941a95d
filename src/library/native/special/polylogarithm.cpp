#include "library/native/special/polylogarithm.h"

#include <cmath>
#include <complex>

#include "library/native/special/elementary_balls.h"
#include "library/native/special/special_series.h"

namespace korel::special {

namespace {

constexpr std::int64_t largestOrder = 5000;
constexpr double seriesRadius = 0.6;
// Beyond it the expansion in the logarithm gives way to the inversion.
constexpr double logRadius = 4;

double sizeOf(const Complex& z) { return std::hypot(toDouble(z.re), toDouble(z.im)); }

// The sum of z^k/k^s, |z| at most 0.6.
Complex powerSum(const Complex& s, const Complex& z) {
  Complex powerOfZ = z, sum = z;
  std::int64_t order;
  const bool whole = isMachineInteger(s, order) && order >= -60 && order <= largestOrder;
  const double growth = std::max(0.0, -toDouble(s.re));
  const Scratch scratch;
  for (std::int64_t k = 2;; ++k) {
    powerOfZ = cut(powerOfZ * z,
                   -workLimbs() - 2 - static_cast<std::int64_t>(growth * std::log2(static_cast<double>(k)) / 64));
    Complex term;
    if (whole && order >= 0 && order * std::log10(static_cast<double>(k)) < 15) {
      std::int64_t divisor = 1;
      for (std::int64_t i = 0; i < order; ++i) divisor *= k;
      term = powerOfZ / divisor;
    } else {
      term = powerOfZ * (whole ? integerPower(Complex(k), -order) : exp(-(s * ln(Complex(k)))));
    }
    sum = sum + term;
    scratch.keep(powerOfZ, sum);
    passLimbWork(20);
    const Bound left = upperBound(term) * boundOf(8);
    // The ratio is at most 0.6 (1 + 1/k)^growth.
    const bool settles = growth / static_cast<double>(k) < 0.3;
    if (settles && left < upperBound(sum) * powerOfTenBound(-workDigits())) {
      sum = widened(sum, left);
      return sum;
    }
  }
}

// zeta(n) for an integer n other than 1.
Complex zetaAt(std::int64_t n) {
  if (n == 0) return -(Real(1) / 2);
  if (n > 0) return riemannZeta(Complex(n));
  if (n % 2 == 0) return 0;
  // zeta(1 - 2k) = -B(2k)/(2k)
  const std::int64_t k = (1 - n) / 2;
  return -(stirlingCoefficient(k, static_cast<std::int64_t>(3 * workDigits())) * (2 * k - 1));
}

// gamma(1 - s)(-L)^(s - 1) + sum of zeta(s - k) L^k/k! for z = e^L and an integer s; for s > 0 the pole of gamma and
// that of
// zeta make a logarithm.
Complex logarithmicSum(std::int64_t s, const Complex& log) {
  Complex sum(0), term(1);
  const Bound size = upperBound(absolute(log));
  const double ratio = doubleOf(size) / 6.2831;
  const Scratch scratch;
  for (std::int64_t k = 0;; ++k) {
    if (k == s - 1) {
      Real harmonic;
      for (std::int64_t i = 1; i < s; ++i) harmonic = harmonic + Real(1) / i;
      sum = sum + term * (Complex(harmonic) - ln(-log));
    } else {
      const Complex next = term * zetaAt(s - k);
      sum = sum + next;
      // |zeta(-m)/m!| < 4/(2 Pi)^(m + 1)
      if (k > std::max<std::int64_t>(s, 0) + 2 && (k - s) % 2 == 1) {
        const double rest = std::log10(ratio) * 2 + std::log10(3 / (1 - ratio) + 3);
        const Bound left = upperBound(next) * powerOfTenBound(std::max(rest, -14.0) + (s < 0 ? 1 : 0));
        const bool settled = static_cast<double>(k) > 4.0 * std::abs(static_cast<double>(s));
        if (settled && left < upperBound(sum) * powerOfTenBound(-workDigits())) {
          sum = widened(sum, left);
          break;
        }
      }
    }
    term = term * log / (k + 1);
    scratch.keep(sum, term);
    passLimbWork(20);
  }
  if (s > 0) return sum;
  return sum + Complex(factorialBall(-s)) * integerPower(-log, s - 1);
}

// The n-th polynomial of Bernoulli at x.
Complex bernoulliPolynomial(std::int64_t n, const Complex& x) {
  // sum of binomial(n, j) B(j) x^(n - j), by powers from the top
  Complex value(0);
  Real binomial(1);
  for (std::int64_t j = 0; j <= n; ++j) {
    Real number;
    if (j == 0) number = 1;
    else if (j == 1) number = -(Real(1) / 2);
    else if (j % 2 == 0) number = stirlingCoefficient(j / 2, n / 2 + 1) * (j * (j - 1));
    value = value * x + Complex(binomial * number);
    binomial = binomial * (n - j) / (j + 1);
  }
  return value;
}

// Li(n, z) = -(-1)^n Li(n, 1/z) - (2 Pi i)^n/n! B(n, 1/2 + ln(-z)/(2 Pi i)) for a natural n and large |z|.
Complex invertedSum(std::int64_t n, const Complex& z) {
  const Complex inverse = powerSum(Complex(n), Complex(1) / z);
  const Complex twoPiI = timesI(Complex(pi() * 2));
  const Complex x = ln(-z) / twoPiI + Complex(Real(1) / 2);
  Complex turned = integerPower(twoPiI, n) / factorialBall(n) * bernoulliPolynomial(n, x);
  if (isReal(z) && isNegative(z.re)) turned = turned.re;
  return -turned + (n % 2 == 0 ? -inverse : inverse);
}

// Any order: gamma(1 - s)/(2 Pi)^(1 - s) (i^(1 - s) zeta(1 - s, x) + i^(s - 1) zeta(1 - s, 1 - x)), x = 1/2 +
// ln(-z)/(2 Pi i).
Complex byHurwitz(const Complex& s, const Complex& z) {
  const Complex other = Complex(1) - s, twoPiI = timesI(Complex(pi() * 2));
  const Complex x = ln(-z) / twoPiI + Complex(Real(1) / 2);
  const Complex quarter = other / 2, c = cosPi(quarter), d = timesI(sinPi(quarter));
  const Complex sum = (c + d) * hurwitzZeta(other, x, 0) + (c - d) * hurwitzZeta(other, Complex(1) - x, 0);
  return gamma(other) * power(Complex(pi() * 2), -other) * sum;
}

}  // namespace

Complex polylogarithm(const Complex& s, const Complex& z) {
  if (isExactZero(z)) return 0;
  if (isExactZero(z - 1)) return riemannZeta(s);
  std::int64_t order;
  const bool whole = isMachineInteger(s, order);
  if (whole && order == 0) return z / (Complex(1) - z);
  if (whole && order == 1) return -ln(Complex(1) - z);
  // Li(-n, z) is an odd function of ln(-z) for an even n.
  if (whole && order < 0 && order % 2 == 0 && isExactZero(z + 1)) return 0;
  if (sizeOf(z) <= seriesRadius) return powerSum(s, z);
  if (!whole) {
    const Complex value = byHurwitz(s, z);
    return isReal(s) && isReal(z) && signOf(z.re - Real(1)) < 0 ? Complex(value.re) : value;
  }
  if (std::abs(order) > largestOrder) return giveUp();
  Complex log = ln(z);
  if (sizeOf(log) < logRadius) {
    Complex value = logarithmicSum(order, log);
    if (isReal(z) && (order <= 0 || signOf(z.re - Real(1)) < 0)) value = value.re;
    return value;
  }
  if (order > 0) return invertedSum(order, z);
  // Li(-n, z) = -(-1)^n Li(-n, 1/z)
  const Complex inverse = powerSum(s, Complex(1) / z);
  return order % 2 == 0 ? -inverse : inverse;
}

Complex dilogarithm(const Complex& x) {
  if (isExactZero(x - 1)) return 0;
  return polylogarithm(Complex(2), Complex(1) - x);
}

// ---- Lambert's W

namespace {

using Point = std::complex<double>;

bool isRealBranch(std::int64_t k, const Complex& z) {
  if (!isReal(z) || (k != 0 && k != -1)) return false;
  if (k == 0 && signOf(z.re) >= 0) return true;
  return signOf((z * exp(Real(1)) + 1).re) >= 0 && (k == 0 || isNegative(z.re));
}

// A first approximation from the series that is near.
Point roughGuess(std::int64_t k, const Complex& z) {
  const Real e = exp(Real(1));
  const Complex apart = z * e + 1;
  const Point p = std::sqrt(2.0 * Point(toDouble(apart.re), toDouble(apart.im)));
  const bool above = !isNegative(z.im);
  const bool lower = k == (above ? -1 : 1);
  if ((k == 0 || lower) && std::abs(p) < 1) {
    const Point q = k == 0 ? p : -p;
    return -1.0 + q - q * q / 3.0 + q * q * q * (11.0 / 72.0);
  }
  if (k == 0 && sizeOf(z) < 10) {
    const Point l = std::log(1.0 + Point(toDouble(z.re), toDouble(z.im)));
    return l * (1.0 - std::log(1.0 + l) / (2.0 + l));
  }
  const Complex log = ln(z);
  if (k == -1 && isRealBranch(k, z)) {
    // Real below -1: w = ln(-z) - ln(-w)
    const double first = toDouble(log.re), second = std::log(-first);
    return first - second + second / first;
  }
  const Point first(toDouble(log.re), toDouble(log.im) + 2 * 3.141592653589793 * static_cast<double>(k));
  const Point second = std::log(first);
  return first - second + second / first;
}

// Whether w lies on branch k: w + ln w = ln z + 2 Pi i k, but where both are real and k = -1.
bool isOnBranch(std::int64_t k, const Complex& w, const Complex& z) {
  if (isRealBranch(k, z)) return k == 0 ? toDouble(w.re) > -1.0000001 : toDouble(w.re) < -0.9999999;
  const double turns = toDouble(w.im) + toDouble(argument(w)) - toDouble(argument(z));
  return std::abs(turns / 6.283185307179586 - static_cast<double>(k)) < 0.01;
}

// Halley's iteration in doubles from w; whether it comes to rest.
bool refine(Point& w, Point z) {
  constexpr int mostSteps = 40;
  for (int step = 0; step < mostSteps; ++step) {
    const Point e = std::exp(w), f = w * e - z;
    const Point correction = f / (e * (w + 1.0) - (w + 2.0) * f / (2.0 * w + 2.0));
    w -= correction;
    if (!std::isfinite(w.real()) || !std::isfinite(w.imag())) return false;
    if (std::abs(correction) < 1e-13 * std::abs(w)) return true;
  }
  return false;
}

// Where Newton's iteration begins: on the branch where doubles find it.
Point firstGuess(std::int64_t k, const Complex& z) {
  const Point guess = roughGuess(k, z), value(toDouble(z.re), toDouble(z.im));
  constexpr double smallest = 1e-300, largest = 1e300;
  if (isRealBranch(k, z) || !(std::abs(value) > smallest && std::abs(value) < largest)) return guess;
  const Point log = std::log(value) + Point(0, 2 * 3.141592653589793 * static_cast<double>(k));
  for (Point w : {guess, log - std::log(log), Point(-0.5, isNegative(z.im) ? -1.5 : 1.5)}) {
    const Complex found = refine(w, value) ? Complex(realOfDouble(w.real()), realOfDouble(w.imag())) : Complex();
    if (!isExactZero(found) && isOnBranch(k, found, z)) return w;
  }
  return guess;
}

}  // namespace

Complex lambertW(std::int64_t k, const Complex& z) {
  if (isExactZero(z)) return 0;
  if (k > 1000000000 || k < -1000000000) return giveUp();
  const Point guess = firstGuess(k, z);
  if (!std::isfinite(guess.real()) || !std::isfinite(guess.imag())) return giveUp();
  Complex w(realOfDouble(guess.real()), isRealBranch(k, z) ? Real() : realOfDouble(guess.imag()));
  const Scratch scratch;
  constexpr int mostSteps = 100;
  for (int step = 0; step < mostSteps; ++step) {
    const Complex below = w + 1;
    const Complex correction = (w - z * exp(-w)) / below;
    const Bound size = upperBound(correction);
    // How fast the derivative changes, over itself.
    const Bound curvature = upperBound((w + Real(2)) / below);
    const Complex next = w - correction;
    const Bound left = size * size * curvature * boundOf(2);
    if (doubleOf(size * curvature) < 0.1 && left < upperBound(next) * powerOfTenBound(-workDigits())) {
      if (!isOnBranch(k, next, z)) return giveUp();
      return widened(next, left);
    }
    w = next;
    w.re.error = w.im.error = {};
    scratch.keep(w);
    passLimbWork(100);
  }
  return unknown();
}

}  // namespace korel::special
