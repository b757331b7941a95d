// The gamma function, its logarithm and the derivatives of that: Stirling's series behind as many steps up as it
// takes, and reflection for the left half plane. Real numbers of modest size have a series of their own
// (gamma_taylor.h) once many are asked for.

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>

#include "library/native/special/elementary_balls.h"
#include "library/native/special/gamma_taylor.h"
#include "library/native/special/special_series.h"

namespace korel::special {

namespace {

// ---- coefficients of Stirling's series

// The longest row of coefficients so far, outside the stack of limbs.
struct StirlingRow {
  Real* values = nullptr;
  Limb* limbs = nullptr;
  std::int64_t count = 0, precision = 0;
};
StirlingRow row;

// The first `n` tangent numbers, 1, 2, 16, 272, ..., each of `width` limbs (R. P. Brent and D. Harvey, "Fast
// computation of Bernoulli, Tangent and Secant numbers", 2011).
Limb* tangentNumbers(std::size_t n, std::size_t width) {
  Limb* t = limbSpace(n * width);
  clearLimbs(t, n * width);
  Limb* used = limbSpace(n);
  const auto number = [&](std::size_t i) { return t + i * width; };
  t[0] = used[0] = 1;
  for (std::size_t i = 1; i < n; ++i) {
    used[i] = used[i - 1];
    const Limb carry = scaleLimbs(number(i), number(i - 1), used[i - 1], i);
    if (carry != 0) number(i)[used[i]++] = carry;
  }
  for (std::size_t k = 1; k < n; ++k) {
    for (std::size_t j = k; j < n; ++j) {
      // t[j] = (j - k) t[j - 1] + (j - k + 2) t[j]
      std::size_t m = std::max(used[j], used[j - 1]);
      Limb carry = scaleLimbs(number(j), number(j), m, j - k + 2);
      if (j > k) {
        const Limb more = addScaled(number(j), number(j - 1), used[j - 1], j - k);
        carry += used[j - 1] == m ? more : addLimb(number(j) + used[j - 1], m - used[j - 1], more);
      }
      if (carry != 0) number(j)[m++] = carry;
      used[j] = m;
    }
    passLimbWork((n - k) * used[k]);
  }
  return t;
}

void keepRow(const Real* values, std::int64_t count, std::int64_t precision) {
  const auto n = static_cast<std::size_t>(count);
  auto* kept = static_cast<Real*>(std::malloc(n * sizeof(Real)));
  auto* limbs = static_cast<Limb*>(std::malloc(n * static_cast<std::size_t>(precision) * sizeof(Limb)));
  if (kept == nullptr || limbs == nullptr) {
    std::free(kept);
    std::free(limbs);
    return;
  }
  Limb* at = limbs;
  for (std::size_t i = 0; i < n; ++i) {
    kept[i] = values[i];
    copyLimbs(at, values[i].middle.limbs, values[i].middle.size);
    kept[i].middle.limbs = at;
    at += values[i].middle.size;
  }
  std::free(row.values);
  std::free(row.limbs);
  row = {kept, limbs, count, precision};
}

void computeRow(std::int64_t count) {
  const std::int64_t n = count + count / 4 + 8;
  const std::int64_t precision = std::max(workLimbs() + workLimbs() / 8, row.precision);
  // t(n) < (2n)!
  const double bits = 2.0 * static_cast<double>(n) * std::log2(2.0 * static_cast<double>(n)) + 20;
  const auto width = static_cast<std::size_t>(bits / 64) + 2;
  const Limb* tangents = tangentNumbers(static_cast<std::size_t>(n), width);
  auto* values = numberSpace<Real>(n);
  const reals::Precision longer(static_cast<std::size_t>(precision));
  Real four(1);
  for (std::int64_t k = 1; k <= n; ++k) {
    four = four * 4;
    Real t(reals::realOfRow(1, tangents + static_cast<std::size_t>(k - 1) * width, width), {});
    if (t.middle.size > reals::workingLimbs) t = cut(t, topOf(t) - precision + 1);
    t = t / (2 * k - 1) / (four * (four - Real(1)));
    values[k - 1] = k % 2 == 0 ? -t : t;
  }
  keepRow(values, n, precision);
}

// ---- Stirling's series

// How large |z| is to be for the series to reach the working precision soon.
double stirlingRadius() { return 0.6 * workDigits() + 6; }

// How many steps up z needs.
std::int64_t stepsUp(const Complex& z) {
  const double re = toDouble(z.re), im = toDouble(z.im), radius = stirlingRadius();
  if (re < 0 && re < -1e15) return 0;
  double needed = std::abs(im) >= radius ? 0 : std::sqrt(radius * radius - im * im);
  needed = std::max(needed, std::min(std::abs(im) / 2, radius / 4));
  return re >= needed ? 0 : static_cast<std::int64_t>(std::ceil(needed - re));
}

// The sum below for a real z in plain floats.
Real realStirlingSum(const Real& z, int order) {
  const auto full = static_cast<std::int64_t>(reals::workingLimbs);
  const auto guess = static_cast<std::int64_t>(0.3 * workDigits()) + 8;
  stirlingCoefficient(1, guess);
  const reals::Real inverse = reals::Real(1) / z.middle, ratio = inverse * inverse;
  const Scratch scratch;
  Real power(order == 0 ? inverse : ratio, {}), sum;
  std::int64_t before = INT64_MAX, limbs = full, k = 1;
  for (;; ++k) {
    const Real coefficient = stirlingCoefficient(k, guess);
    Real term;
    {
      const reals::Precision shorter(static_cast<std::size_t>(limbs));
      term.middle = power.middle * coefficient.middle;
      if (order != 0) term.middle = reals::times(term.middle, 2 * k - 1);
      power.middle = power.middle * ratio;
    }
    const std::int64_t size = term.middle.exponent;
    if (size < -workBits() || size > before || k > 40 * guess) {
      // Each of k terms is off by about so many units of its last bits, and by what z is off.
      const auto n = static_cast<double>(k);
      Bound error = powerOfTwoBound(size + 1) + powerOfTwoBound(6 - 64 * full) * boundOf(n * (n + 2));
      if (!isExact(z)) error += middleBound(sum) * (z.error / lowerBound(z)) * boundOf(2 * n + 2);
      return widened(sum, error);
    }
    before = size;
    sum.middle = sum.middle + term.middle;
    limbs = std::clamp<std::int64_t>(full + 1 + ((size + 63) >> 6), 1, full);
    scratch.keep(sum, power);
    passLimbWork(static_cast<std::size_t>(3 * limbs * limbs));
  }
}

// sum of c(k) (2k - 1)^order / z^(2k - 1), Re z > 0: order 0 for the logarithm, 1 for Psi (then over z^2k).
Complex stirlingSum(const Complex& z, int order) {
  if (isReal(z) && doubleOf(z.re.error / lowerBound(z.re)) < 1e-15) return realStirlingSum(z.re, order);
  const Complex inverse = Complex(1) / z, ratio = square(inverse);
  Complex power = order == 0 ? inverse : ratio, sum(0);
  const Bound size = upperBound(absolute(z)), right = lowerBound(absolute(z) + z.re);
  const double angle = std::max(1.0, doubleOf(size * boundOf(2) / right));  // sec^2 of half the argument
  const auto guess = static_cast<std::int64_t>(0.55 * workDigits()) + 10;
  const Scratch scratch;
  Bound before = infiniteBound();
  double more = 1;
  const std::int64_t lowest = -workLimbs() - 1;
  for (std::int64_t k = 1;; ++k) {
    const Real coefficient = stirlingCoefficient(k, guess);
    Complex term = power * coefficient;
    if (order != 0) term = term * (2 * k - 1);
    more = std::min(more * angle, 1e300);
    const Bound bound = upperBound(term) * boundOf(more * 1.001);
    if (bound.m == 0 || bound.e < lowest || !(bound < before) || k > 40 * guess)
      return widened(sum, bound * boundOf(2));
    before = bound;
    sum = sum + cut(term, lowest);
    power = cut(power * ratio, lowest - 2 - topOf(coefficient));
    scratch.keep(sum, power);
    passLimbWork(10);
  }
}

Real halfLnTwoPi() { return ln(pi() * 2) / 2; }

// ln gamma for Re z > 0 and |z| large.
Complex stirlingLn(const Complex& z) {
  const Real half = Real(1) / 2;
  return (z - half) * ln(z) - z + halfLnTwoPi() + stirlingSum(z, 0);
}

// The same for a real z > 0: each factor adds the relative error of z, and each product its own.
Real risingReal(const Real& z, std::int64_t n) {
  const reals::Real one(1);
  const Scratch scratch;
  reals::Real product = z.middle, factor = z.middle;
  for (std::int64_t k = 1; k < n; ++k) {
    factor = factor + one;
    product = product * factor;
    if (k % 64 == 0) {
      // What has been taken goes back, but for the two numbers.
      Real both[2] = {{product, {}}, {factor, {}}};
      scratch.keep(both[0], both[1]);
      product = both[0].middle;
      factor = both[1].middle;
      passLimbWork(static_cast<std::size_t>(64 * workLimbs() * workLimbs()));
    }
  }
  const Bound size = middleBound({product, {}}), each = powerOfTwoBound(5 - reals::workingBits());
  // Each step up cuts the factor anew.
  Bound error = size * each * boundOf(static_cast<double>(n) * static_cast<double>(n));
  if (!isExact(z)) error += size * (z.error / lowerBound(z)) * boundOf(1.01 * static_cast<double>(n));
  return widened(Real(product, {}), error);
}

bool isLeft(const Complex& z) { return signOf(z.re) < 0 && toDouble(z.re) < -0.5; }
bool isFarUp(const Complex& z) { return std::abs(toDouble(z.im)) > 1e6; }

// sum of the arguments of z, z + 1, ..., in doubles: by how many turns the logarithm of the product is off.
Real turnsOfProduct(const Complex& z, std::int64_t n, const Complex& product) {
  if (isReal(z)) return {};
  const double re = toDouble(z.re), im = toDouble(z.im);
  double sum = 0;
  for (std::int64_t k = 0; k < n; ++k) sum += std::atan2(im, re + static_cast<double>(k));
  const double one = toDouble(argument(product));
  return Real(static_cast<std::int64_t>(std::llround((sum - one) / 6.283185307179586)));
}

}  // namespace

Real stirlingCoefficient(std::int64_t k, std::int64_t count) {
  if (k > row.count || workLimbs() > row.precision) {
    const Scratch scratch;
    computeRow(std::max({k, count, row.count}));
    scratch.keep();
  }
  const Real c = row.values[k - 1];
  return static_cast<std::int64_t>(c.middle.size) <= workLimbs() ? c : cut(c, topOf(c) - workLimbs());
}

Real factorialBall(std::int64_t n) { return n < 2 ? Real(1) : risingProduct(Complex(1), n).re; }

Complex risingProduct(const Complex& z, std::int64_t n) {
  if (isReal(z) && signOf(z.re) > 0 && n > 2) {
    const Bound relative = z.re.error / lowerBound(z.re);
    if (doubleOf(relative) * static_cast<double>(n) < 0.01) return risingReal(z.re, n);
  }
  Complex product(1);
  const Scratch scratch;
  for (std::int64_t k = 0; k < n; ++k) {
    // Four short factors make a longer one first.
    Complex factor = z + Real(k);
    for (int i = 0; i < 3 && k + 1 < n; ++i) factor = factor * (z + Real(++k));
    product = product * factor;
    scratch.keep(product);
    passLimbWork(20);
  }
  return product;
}

bool isPole(const Complex& z) { return isReal(z) && signOf(z.re) <= 0 && isInteger(z.re); }

Complex gamma(const Complex& z) {
  std::int64_t n;
  if (isMachineInteger(z, n) && n > 0 && n < 40 * workLimbs()) return factorialBall(n - 1);
  // Far up the sine grows faster than the other factor falls.
  if (isFarUp(z)) return exp(lnGamma(z));
  Real reciprocal;
  if (reciprocalGammaByTaylor(z, reciprocal)) return Complex(1) / reciprocal;
  if (isLeft(z)) return Complex(pi()) * reciprocalGamma(Complex(1) - z) / sinPi(z);
  const std::int64_t steps = stepsUp(z);
  const Complex up = exp(stirlingLn(z + Real(steps)));
  return steps == 0 ? up : up / risingProduct(z, steps);
}

Complex reciprocalGamma(const Complex& z) {
  std::int64_t n;
  if (isMachineInteger(z, n) && n > 0 && n < 40 * workLimbs()) return Complex(1) / factorialBall(n - 1);
  if (isPole(z)) return 0;
  if (isFarUp(z)) return exp(-lnGamma(z));
  Real value;
  if (reciprocalGammaByTaylor(z, value)) return value;
  if (isLeft(z)) return sinPi(z) * gamma(Complex(1) - z) / pi();
  const std::int64_t steps = stepsUp(z);
  const Complex up = exp(-stirlingLn(z + Real(steps)));
  return steps == 0 ? up : up * risingProduct(z, steps);
}

Complex lnGamma(const Complex& z) {
  std::int64_t n;
  if (isMachineInteger(z, n) && (n == 1 || n == 2)) return 0;
  if (isLeft(z)) {
    const Complex other = lnGamma(Complex(1) - z);
    if (isReal(z)) {
      Real whole = nearestInteger(z.re);
      if (signOf(z.re - whole) < 0) whole = whole - Real(1);
      return {ln(pi() / absolute(sinPi(z).re)) - other.re, pi() * whole};
    }
    // ln sin(Pi z) as the continuous function of the upper half plane
    const Complex upper = isNegative(z.im) ? conjugate(z) : z, twice = upper * 2;
    const Real size = exp(-(pi() * twice.im));
    const Complex turn = {cosPi(Complex(twice.re)).re * size, sinPi(Complex(twice.re)).re * size};
    const Complex sine = ln(Complex(1) - turn) - timesI(upper - Real(1) / 2) * pi() - ln(Real(2));
    const Complex result = Complex(ln(pi())) - sine - (isNegative(z.im) ? conjugate(other) : other);
    return isNegative(z.im) ? conjugate(result) : result;
  }
  const std::int64_t steps = stepsUp(z);
  const Complex up = stirlingLn(z + Real(steps));
  if (steps == 0) return up;
  const Complex product = risingProduct(z, steps);
  if (isReal(z) && signOf(z.re) < 0) return {up.re - ln(absolute(product.re)), -pi()};
  return up - ln(product) - timesI(Complex(pi() * 2 * turnsOfProduct(z, steps, product)));
}

Complex digamma(const Complex& z) {
  if (isLeft(z)) return digamma(Complex(1) - z) - cosPi(z) / sinPi(z) * pi();
  const std::int64_t steps = stepsUp(z);
  const Complex top = z + Real(steps);
  Complex value = ln(top) - Complex(1) / (top * 2) - stirlingSum(top, 1);
  const Scratch scratch;
  for (std::int64_t k = 0; k < steps; ++k) {
    value = value - Complex(1) / (z + Real(k));
    scratch.keep(value);
    passLimbWork(20);
  }
  return value;
}

namespace {

// The n-th derivative of cot x, from c = cot x: its polynomials in c, each the derivative of the one before times
// -(1 + c^2).
Complex cotangentDerivative(std::int64_t n, const Complex& c) {
  const Scratch scratch;
  Real* p = numberSpace<Real>(n + 3);
  Real* next = numberSpace<Real>(n + 3);
  p[1] = 1;
  for (std::int64_t m = 1; m <= n; ++m) {
    for (std::int64_t i = 0; i <= m + 1; ++i) {
      Real value;
      if (i < m + 1) value = value - p[i + 1] * (i + 1);
      if (i >= 1) value = value - p[i - 1] * (i - 1);
      next[i] = value;
    }
    std::swap(p, next);
    passLimbWork(static_cast<std::size_t>(20 * m));
  }
  Complex value(0);
  for (std::int64_t i = n + 1; i >= 0; --i) value = value * c + p[i];
  return value;
}

}  // namespace

Complex polygamma(std::int64_t n, const Complex& z) {
  if (n == 0) return digamma(z);
  if (isLeft(z)) {
    // Psi(n, 1 - z) = (-1)^n (Psi(n, z) + Pi d^n cot(Pi z))
    const Complex other = polygamma(n, Complex(1) - z);
    const Complex turned = cotangentDerivative(n, cosPi(z) / sinPi(z)) * integerPower(Complex(pi()), n + 1);
    return (n % 2 == 0 ? other : -other) - turned;
  }
  const Complex value = hurwitzZeta(Complex(n + 1), z, 0) * factorialBall(n);
  return n % 2 == 0 ? -value : value;
}

}  // namespace korel::special
