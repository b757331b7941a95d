// The gamma function, its logarithm and the derivatives of that: Stirling's series behind as many steps up as it
// takes, and reflection for the left half plane.

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>

#include "library/native/special/elementary_balls.h"
#include "library/native/special/special_series.h"

namespace korel::special {

namespace {

// ---- coefficients of Stirling's series

// The longest row of coefficients so far, outside the arena.
struct StirlingRow {
  Real* values = nullptr;
  Group* groups = nullptr;
  std::int64_t count = 0, precision = 0;
};
StirlingRow row;

// The first `n` tangent numbers, 1, 2, 16, 272, ..., each of `width` groups (R. P. Brent and D. Harvey, "Fast
// computation of Bernoulli, Tangent and Secant numbers", 2011).
Group* tangentNumbers(std::int64_t n, std::int64_t width) {
  Group* t = allocateGroups(n * width);
  std::fill(t, t + n * width, 0);
  std::int64_t* used = reinterpret_cast<std::int64_t*>(allocateGroups(n));
  t[0] = 1;
  used[0] = 1;
  const auto number = [&](std::int64_t i) { return t + i * width; };
  const auto size = [](std::int64_t m) { return static_cast<std::size_t>(m); };
  for (std::int64_t i = 1; i < n; ++i) {
    used[i] = used[i - 1];
    const Group carry = scaleGroups(number(i), number(i - 1), size(used[i - 1]), static_cast<Group>(i));
    if (carry != 0) number(i)[used[i]++] = carry;
  }
  Group* other = allocateGroups(width);
  for (std::int64_t k = 1; k < n; ++k) {
    for (std::int64_t j = k; j < n; ++j) {
      // t[j] = (j - k) t[j - 1] + (j - k + 2) t[j]
      std::int64_t m = std::max(used[j], used[j - 1]);
      const Group carry = scaleGroups(number(j), number(j), size(m), static_cast<Group>(j - k + 2));
      std::fill(other, other + m, 0);
      Group above = j == k ? 0 : scaleGroups(other, number(j - 1), size(used[j - 1]), static_cast<Group>(j - k));
      if (used[j - 1] < m) other[used[j - 1]] = above, above = 0;
      const Group last = addGroups(number(j), number(j), size(m), other, size(m)) + carry + above;
      if (last != 0) number(j)[m++] = last;
      used[j] = m;
    }
    passGroupWork(size((n - k) * used[k]));
  }
  return t;
}

void keepRow(const Real* values, std::int64_t count, std::int64_t precision) {
  auto* kept = static_cast<Real*>(std::malloc(static_cast<std::size_t>(count) * sizeof(Real)));
  auto* groups = static_cast<Group*>(std::malloc(static_cast<std::size_t>(count * precision) * sizeof(Group)));
  if (kept == nullptr || groups == nullptr) {
    std::free(kept);
    std::free(groups);
    return;
  }
  Group* at = groups;
  for (std::int64_t i = 0; i < count; ++i) {
    kept[i] = values[i];
    std::memcpy(at, values[i].groups, static_cast<std::size_t>(values[i].count) * sizeof(Group));
    kept[i].groups = at;
    at += values[i].count;
  }
  std::free(row.values);
  std::free(row.groups);
  row = {kept, groups, count, precision};
}

void computeRow(std::int64_t count) {
  const std::int64_t n = count + count / 4 + 8, before = workGroups;
  const std::int64_t precision = std::max(before + before / 8, row.precision);
  // t(n) < (2n)!
  const double digits = 2.0 * static_cast<double>(n) * std::log10(2.0 * static_cast<double>(n)) + 20;
  const auto width = static_cast<std::int64_t>(digits / 16) + 2;
  const Group* tangents = tangentNumbers(n, width);
  auto* values = reinterpret_cast<Real*>(allocateGroups(n * static_cast<std::int64_t>(sizeof(Real) / sizeof(Group) + 1)));
  const Scratch scratch;
  workGroups = precision;
  Real four(1);
  for (std::int64_t k = 1; k <= n; ++k) {
    four = four * 4;
    Real t;
    t.groups = tangents + (k - 1) * width;
    t.count = static_cast<std::int64_t>(significantGroups(t.groups, static_cast<std::size_t>(width)));
    t.negative = k % 2 == 0;
    values[k - 1] = t / (2 * k - 1) / (four * (four - Real(1)));
  }
  keepRow(values, n, precision);
  workGroups = before;
}

// ---- Stirling's series

// How large |z| is to be for the series to reach the working precision soon.
double stirlingRadius() { return 0.6 * static_cast<double>(workDigits()) + 6; }

// How many steps up z needs.
std::int64_t stepsUp(const Complex& z) {
  const double re = toDouble(z.re), im = toDouble(z.im), radius = stirlingRadius();
  if (re < 0 && re < -1e15) return 0;
  double needed = std::abs(im) >= radius ? 0 : std::sqrt(radius * radius - im * im);
  needed = std::max(needed, std::min(std::abs(im) / 2, radius / 4));
  return re >= needed ? 0 : static_cast<std::int64_t>(std::ceil(needed - re));
}

// sum of c(k) (2k - 1)^order / z^(2k - 1), Re z > 0: order 0 for the logarithm, 1 for Psi (then over z^2k).
Complex stirlingSum(const Complex& z, int order) {
  const Complex inverse = Complex(1) / z, ratio = square(inverse);
  Complex power = order == 0 ? inverse : ratio, sum(0);
  const Bound size = upperBound(absolute(z)), right = lowerBound(absolute(z) + z.re);
  const double angle = std::max(1.0, doubleOf(size * boundOf(2) / right));  // sec^2 of half the argument
  const auto guess = static_cast<std::int64_t>(0.55 * static_cast<double>(workDigits())) + 10;
  const Scratch scratch;
  Bound before = Bound{1, 0} / Bound{};
  double more = 1;
  const std::int64_t lowest = -workGroups - 1;
  for (std::int64_t k = 1;; ++k) {
    const Real coefficient = stirlingCoefficient(k, guess);
    Complex term = power * coefficient;
    if (order != 0) term = term * (2 * k - 1);
    more = std::min(more * angle, 1e300);
    const Bound bound = upperBound(term) * boundOf(more * 1.001);
    if (bound.m == 0 || bound.e < lowest || !(bound < before) || k > 40 * guess) return widened(sum, bound * boundOf(2));
    before = bound;
    sum = sum + cut(term, lowest);
    power = cut(power * ratio, lowest - 2 - coefficient.exponent - coefficient.count);
    scratch.keep(sum, power);
    passGroupWork(10);
  }
}

Real halfLnTwoPi() { return ln(pi() * 2) / 2; }

// ln gamma for Re z > 0 and |z| large.
Complex stirlingLn(const Complex& z) {
  const Real half = Real(1) / 2;
  return (z - half) * ln(z) - z + halfLnTwoPi() + stirlingSum(z, 0);
}

// z (z + 1) ... (z + n - 1)
Complex risingProduct(const Complex& z, std::int64_t n) {
  Complex product(1);
  const Scratch scratch;
  for (std::int64_t k = 0; k < n; ++k) {
    // Four short factors make a longer one first.
    Complex factor = z + Real(k);
    for (int i = 0; i < 3 && k + 1 < n; ++i) factor = factor * (z + Real(++k));
    product = product * factor;
    scratch.keep(product);
    passGroupWork(20);
  }
  return product;
}

bool isLeft(const Complex& z) { return signOf(z.re) < 0 && toDouble(z.re) < -0.5; }

// sum of the arguments of z, z + 1, ..., in doubles: by how many turns the logarithm of the product is off.
Real turnsOfProduct(const Complex& z, std::int64_t n, const Complex& product) {
  if (isReal(z)) return {};
  const double re = toDouble(z.re), im = toDouble(z.im);
  double sum = 0;
  for (std::int64_t k = 0; k < n; ++k) sum += std::atan2(im, re + static_cast<double>(k));
  const double one = toDouble(argument(product));
  return Real(std::llround((sum - one) / 6.283185307179586));
}

}  // namespace

Real stirlingCoefficient(std::int64_t k, std::int64_t count) {
  if (k > row.count || workGroups > row.precision) {
    const Scratch scratch;
    computeRow(std::max({k, count, row.count}));
    scratch.keep();
  }
  Real c = row.values[k - 1];
  if (c.count <= workGroups) return c;
  return cut(c, c.exponent + c.count - workGroups);
}

Real factorialBall(std::int64_t n) { return n < 2 ? Real(1) : risingProduct(Complex(1), n).re; }

bool isPole(const Complex& z) {
  return isReal(z) && z.re.error.m == 0 && z.re.exponent >= 0 && (z.re.count == 0 || z.re.negative);
}

Complex gamma(const Complex& z) {
  std::int64_t n;
  if (isMachineInteger(z, n) && n > 0 && n < 40 * workGroups + 100) return factorialBall(n - 1);
  if (isLeft(z)) return Complex(pi()) / (sinPi(z) * gamma(Complex(1) - z));
  const std::int64_t steps = stepsUp(z);
  const Complex up = exp(stirlingLn(z + Real(steps)));
  return steps == 0 ? up : up / risingProduct(z, steps);
}

Complex reciprocalGamma(const Complex& z) {
  if (isPole(z)) return 0;
  if (isLeft(z)) return sinPi(z) * gamma(Complex(1) - z) / pi();
  const std::int64_t steps = stepsUp(z);
  const Complex up = exp(-stirlingLn(z + Real(steps)));
  return steps == 0 ? up : up * risingProduct(z, steps);
}

Complex lnGamma(const Complex& z) {
  if (isLeft(z)) {
    const Complex other = lnGamma(Complex(1) - z);
    if (isReal(z)) {
      Real whole = nearestInteger(z.re);
      if (signOf(z.re - whole) < 0) whole = whole - Real(1);
      return {ln(pi() / absolute(sinPi(z).re)) - other.re, pi() * whole};
    }
    // ln sin(Pi z) as the continuous function of the upper half plane
    const Complex upper = z.im.negative ? conjugate(z) : z, twice = upper * 2;
    const Real size = exp(-(pi() * twice.im));
    const Complex turn = {cosPi(Complex(twice.re)).re * size, sinPi(Complex(twice.re)).re * size};
    const Complex sine = ln(Complex(1) - turn) - timesI(upper - Real(1) / 2) * pi() - ln(Real(2));
    const Complex result = Complex(ln(pi())) - sine - (z.im.negative ? conjugate(other) : other);
    return z.im.negative ? conjugate(result) : result;
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
    passGroupWork(20);
  }
  return value;
}

namespace {

// The n-th derivative of cot x, from c = cot x: its polynomials in c, each the derivative of the one before times
// -(1 + c^2).
Complex cotangentDerivative(std::int64_t n, const Complex& c) {
  const Scratch scratch;
  const std::int64_t space = (n + 3) * static_cast<std::int64_t>(sizeof(Real) / sizeof(Group));
  Real* p = reinterpret_cast<Real*>(allocateGroups(2 * space));
  Real* next = p + n + 3;
  for (std::int64_t i = 0; i < n + 3; ++i) p[i] = next[i] = Real();
  p[1] = 1;
  for (std::int64_t m = 1; m <= n; ++m) {
    for (std::int64_t i = 0; i <= m + 1; ++i) {
      Real value;
      if (i < m + 1) value = value - p[i + 1] * (i + 1);
      if (i >= 1) value = value - p[i - 1] * (i - 1);
      next[i] = value;
    }
    std::swap(p, next);
    passGroupWork(static_cast<std::size_t>(20 * m));
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
