#include "library/native/special/bessel.h"

#include <cmath>
#include <cstdlib>

#include "library/native/special/elementary_balls.h"
#include "library/native/special/special_series.h"

namespace korel::special {

namespace {

// The series cancel about as many digits as the argument is large.
constexpr double longestSeries = 60000;
bool isTooLarge(const Complex& z) { return !(doubleOf(upperBound(z)) < longestSeries); }

bool isLeft(const Complex& z) { return signOf(z.re) < 0; }
// By which half turn z comes from -z: 1 above the negative axis and on it, -1 below.
int halfTurn(const Complex& z) { return isNegative(z.im) ? -1 : 1; }
// e^(i Pi x sign)
Complex turn(const Complex& x, int sign) {
  const Complex c = cosPi(x), s = timesI(sinPi(x));
  return sign > 0 ? c + s : c - s;
}

// (z/2)^v/gamma(v + 1) 0F1(v + 1; sign z^2/4), v no negative integer.
Complex powerSeries(const Complex& v, const Complex& z, int sign) {
  const Complex lower[] = {v + 1};
  const Complex sum = hypergeometricSum(nullptr, 0, lower, 1, square(z) * sign / 4);
  return power(z / 2, v) * reciprocalGamma(v + 1) * sum;
}

// sqrt(2w/Pi) e^w K_v(w), by the asymptotic series in 1/(2w).
bool scaledK(const Complex& v, const Complex& w, Complex& sum) {
  const Complex twice = w * 2;
  if (!isAsymptotic(twice)) return false;
  const Real half = Real(1) / 2;
  bool reached;
  sum = asymptoticSum(v + half, Complex(half) - v, twice, reached);
  return reached;
}

// The two functions of Hankel, for Re z > 0 and large |z|.
struct Hankel {
  Complex first, second;
};
bool hankel(const Complex& v, const Complex& z, Hankel& h) {
  const Complex turned = timesI(z);
  if (!scaledK(v, -turned, h.first)) return false;
  const bool real = isReal(z) && isReal(v);
  if (real) h.second = conjugate(h.first);
  else if (!scaledK(v, turned, h.second)) return false;
  const Complex size = sqrt(Complex(2) / (z * pi()));
  // v/2 + 1/4 of half a turn
  const Complex phase = v / 2 + Real(1) / 4;
  const Complex wave = exp(turned) * turn(phase, -1);
  h.first = h.first * size * wave;
  if (real) h.second = conjugate(h.first);
  else h.second = h.second * size * exp(-turned) * turn(phase, 1);
  return true;
}

// The sum behind the logarithm in the functions of the second kind of order n: of (sign z^2/4)^k/(k! (n + k)!), each
// times
// Psi(k + 1) + Psi(n + k + 1).
Complex psiSum(std::int64_t n, const Complex& z, int sign) {
  const Complex step = square(z) * sign / 4;
  Real weight = eulerGamma() * -2;
  for (std::int64_t k = 1; k <= n; ++k) weight = weight + Real(1) / k;
  Complex term = Complex(1) / factorialBall(n), sum = term * weight;
  const double size = doubleOf(upperBound(step));
  const Scratch scratch;
  for (std::int64_t k = 1;; ++k) {
    term = term * step / k / (n + k);
    weight = weight + Real(1) / k + Real(1) / (n + k);
    const Complex next = term * weight;
    sum = sum + next;
    scratch.keep(term, weight, sum);
    passLimbWork(20);
    const double ratio = size / (static_cast<double>(k + 1) * static_cast<double>(n + k + 1));
    if (ratio > 0.5) continue;
    const Bound rest = upperBound(next) * boundOf(4) + upperBound(term) * boundOf(8);
    if (rest < upperBound(sum) * powerOfTenBound(-workDigits()) || rest.m == 0) return widened(sum, rest);
  }
}

// The finite sum of negative powers, sum of (n - k - 1)!/k! (sign z^2/4)^k (z/2)^-n for k < n.
Complex polarSum(std::int64_t n, const Complex& z, int sign) {
  if (n == 0) return 0;
  const Complex step = square(z) * sign / 4;
  Complex term = factorialBall(n - 1), sum = term;
  for (std::int64_t k = 1; k < n; ++k) {
    term = term * step / (k * (n - k));
    sum = sum + term;
    passLimbWork(20);
  }
  return sum * integerPower(z / 2, -n);
}

constexpr std::int64_t largestOrder = 100000;

}  // namespace

Complex besselJ(const Complex& v, const Complex& z) {
  std::int64_t n;
  const bool whole = isMachineInteger(v, n);
  if (whole && n < 0) return n % 2 == 0 ? besselJ(-v, z) : -besselJ(-v, z);
  if (isExactZero(z)) return isExactZero(v) ? 1 : 0;
  if (isLeft(z)) {
    const Complex value = besselJ(v, -z);
    return whole ? (n % 2 == 0 ? value : -value) : turn(v, halfTurn(z)) * value;
  }
  if (isExactZero(z.re)) return turn(v / 2, halfTurn(z)) * besselI(v, absolute(z.im));
  Hankel h;
  if (hankel(v, z, h)) {
    if (isReal(z) && isReal(v)) return h.first.re;
    return (h.first + h.second) / 2;
  }
  if (isTooLarge(z)) return giveUp();
  return powerSeries(v, z, -1);
}

Complex besselY(const Complex& v, const Complex& z) {
  std::int64_t n;
  const bool whole = isMachineInteger(v, n);
  if (whole && n < 0) return n % 2 == 0 ? besselY(-v, z) : -besselY(-v, z);
  if (isLeft(z)) {
    const int m = halfTurn(z);
    const Complex other = timesI(cosPi(v) * besselJ(v, -z)) * (2 * m);
    return turn(v, -m) * besselY(v, -z) + other;
  }
  Hankel h;
  if (hankel(v, z, h)) {
    if (isReal(z) && isReal(v)) return h.first.im;
    return timesI(h.second - h.first) / 2;
  }
  if (isTooLarge(z)) return giveUp();
  if (!whole) return (cosPi(v) * powerSeries(v, z, -1) - powerSeries(-v, z, -1)) / sinPi(v);
  if (n > largestOrder) return giveUp();
  const Complex tail = psiSum(n, z, -1) * integerPower(z / 2, n);
  return (ln(z / 2) * powerSeries(v, z, -1) * 2 - polarSum(n, z, 1) - tail) / pi();
}

Complex besselI(const Complex& v, const Complex& z) {
  std::int64_t n;
  const bool whole = isMachineInteger(v, n);
  if (whole && n < 0) return besselI(-v, z);
  if (isExactZero(z)) return isExactZero(v) ? 1 : 0;
  if (isLeft(z)) {
    const Complex value = besselI(v, -z);
    return whole ? (n % 2 == 0 ? value : -value) : turn(v, halfTurn(z)) * value;
  }
  if (isExactZero(z.re)) return turn(v / 2, halfTurn(z)) * besselJ(v, absolute(z.im));
  Complex growing, falling;
  if (scaledK(v, -z, growing)) {
    const Complex size = sqrt(z * pi() * 2);
    if (isReal(z) && isReal(v)) return exp(z) * Complex(growing.re) / size;
    if (scaledK(v, z, falling)) {
      const int m = halfTurn(z);
      const Complex small = timesI(turn(v, m) * exp(-z) * falling) * m;
      return (exp(z) * growing + small) / size;
    }
  }
  if (isTooLarge(z)) return giveUp();
  return powerSeries(v, z, 1);
}

Complex besselK(const Complex& v, const Complex& z) {
  std::int64_t n;
  const bool whole = isMachineInteger(v, n);
  if (whole && n < 0) return besselK(-v, z);
  if (isLeft(z)) {
    const int m = halfTurn(z);
    return turn(v, -m) * besselK(v, -z) - timesI(besselI(v, -z) * pi()) * m;
  }
  Complex sum;
  if (scaledK(v, z, sum)) return sqrt(Complex(pi()) / (z * 2)) * exp(-z) * sum;
  if (isTooLarge(z)) return giveUp();
  if (!whole) return (powerSeries(-v, z, 1) - powerSeries(v, z, 1)) * pi() / sinPi(v) / 2;
  if (n > largestOrder) return giveUp();
  const Complex tail = psiSum(n, z, 1) * integerPower(z / 2, n) / 2 - ln(z / 2) * powerSeries(v, z, 1);
  const Complex polar = polarSum(n, z, -1) / 2;
  return n % 2 == 0 ? polar + tail : polar - tail;
}

// ---- Airy's functions

namespace {

// f and g of the series: Ai = f/(3^(2/3) gamma(2/3)) - g/(3^(1/3) gamma(1/3)).
struct AirySeries {
  Complex f, g;
};
Complex overF1(int numerator, const Complex& x) {
  const Complex lower[] = {Complex(Real(numerator) / 3)};
  return hypergeometricSum(nullptr, 0, lower, 1, x);
}
AirySeries airySeries(const Complex& z, bool derivative) {
  const Complex third(Real(1) / 3);
  const Complex x = square(z) * z / 9, root = exp(third * ln(Complex(3)));
  const Complex f = derivative ? square(z) / 2 * overF1(5, x) : overF1(2, x);
  const Complex g = derivative ? overF1(1, x) : z * overF1(4, x);
  return {f * reciprocalGamma(third * 2) / square(root), g * reciprocalGamma(third) / root};
}

Complex twoThirdsPower(const Complex& z) { return z * sqrt(z) * 2 / 3; }
bool isLargeForAiry(const Complex& z) { return isAsymptotic(twoThirdsPower(z) * 2); }

// e^(Pi i k/3)
Complex sixthTurn(int k) { return integerPower(turn(Complex(Real(1) / 3), k > 0 ? 1 : -1), std::abs(k)); }

// For |arg z| <= 2/3 Pi.
bool rightAiry(const Complex& z, bool derivative, Complex& value) {
  const Complex w = twoThirdsPower(z);
  const Complex order(Real(derivative ? 2 : 1) / 3);
  Complex sum;
  if (!scaledK(order, w, sum)) return false;
  const Complex root = sqrt(sqrt(z)), wave = exp(-w) / sqrt(pi()) / 2;
  value = derivative ? -(root * wave * sum) : wave * sum / root;
  return true;
}

bool isNearNegativeAxis(const Complex& z) {
  const double re = toDouble(z.re), im = toDouble(z.im);
  if (std::isinf(re) || std::isinf(im)) return signOf(z.re) < 0;
  return std::abs(std::atan2(im, re)) > 2.1;
}

Complex airy(const Complex& z, bool derivative);

// u Ai(z e^(-2/3 Pi i)) + 1/u Ai(z e^(2/3 Pi i)), u being a turn by so many sixths; for the derivative by its own.
Complex turnedAiry(const Complex& z, int sixths, bool derivative) {
  const int own = derivative ? sixths - 2 : sixths;
  const Complex first = sixthTurn(own) * airy(z * sixthTurn(-2), derivative);
  if (isReal(z)) return first.re * 2;
  return first + sixthTurn(-own) * airy(z * sixthTurn(2), derivative);
}

Complex airy(const Complex& z, bool derivative) {
  if (isLargeForAiry(z)) {
    if (isNearNegativeAxis(z)) return turnedAiry(z, 1, derivative);
    Complex value;
    if (rightAiry(z, derivative, value)) return value;
  }
  if (isTooLarge(z)) return giveUp();
  const AirySeries s = airySeries(z, derivative);
  return s.f - s.g;
}

Complex secondAiry(const Complex& z, bool derivative) {
  if (isLargeForAiry(z)) {
    // e^(Pi i/6) Ai(z e^(2/3 Pi i)) + e^(-Pi i/6) Ai(z e^(-2/3 Pi i))
    const Complex twelfth = turn(Complex(Real(1) / 6), 1), back = turn(Complex(Real(1) / 6), -1);
    const Complex up = z * sixthTurn(2), down = z * sixthTurn(-2);
    const Complex first = (derivative ? sixthTurn(2) * twelfth : twelfth) * airy(up, derivative);
    if (isReal(z)) return first.re * 2;
    return first + (derivative ? sixthTurn(-2) * back : back) * airy(down, derivative);
  }
  if (isTooLarge(z)) return giveUp();
  const AirySeries s = airySeries(z, derivative);
  return (s.f + s.g) * sqrt(Real(3));
}

}  // namespace

Complex airyAi(const Complex& z) { return airy(z, false); }
Complex airyBi(const Complex& z) { return secondAiry(z, false); }
Complex airyAiDerivative(const Complex& z) { return airy(z, true); }
Complex airyBiDerivative(const Complex& z) { return secondAiry(z, true); }

}  // namespace korel::special
