#include "library/native/special/hypergeometric_path.h"

#include <algorithm>
#include <cmath>

#include "library/native/special/special_series.h"

namespace korel::special {

namespace {

constexpr int mostParameters = 12;

double sizeOf(const Complex& z) { return std::hypot(toDouble(z.re), toDouble(z.im)); }

// With t = z D, the equation is t (t + b1 - 1) ... (t + bq - 1) f = z (t + a1) ... (t + ap) f, p = q + 1. Of the two
// products the coefficients of z^m D^m; that of the first begins with m = 1.
struct Equation {
  int p;
  Complex lower[mostParameters + 1], upper[mostParameters + 1];
  double size;  // of the parameters
};

// (t + c) times the sum of x[m] z^m D^m, which has `length` terms.
void timesOperator(Complex* x, int length, const Complex& c) {
  for (int m = length; m >= 0; --m) {
    const Complex own = m < length ? x[m] * (c + m) : Complex(0);
    x[m] = m > 0 ? own + x[m - 1] : own;
  }
}

Equation equationOf(const Complex* a, const Complex* b, int q) {
  Equation e{q + 1, {}, {}, 8};
  e.lower[0] = e.upper[0] = 1;
  timesOperator(e.lower, 1, Complex(0));
  for (int i = 0; i < q; ++i) timesOperator(e.lower, i + 2, b[i] - 1);
  for (int i = 0; i <= q; ++i) timesOperator(e.upper, i + 1, a[i]);
  for (int i = 0; i <= q; ++i) e.size += 2 * sizeOf(a[i]) + (i < q ? 2 * sizeOf(b[i]) : 0);
  return e;
}

// Taylor coefficients of f at a point, as many as the equation has orders.
struct State {
  Complex u[mostParameters + 1];
};

// n (n - 1) ... (n - m + 1)
Real falling(std::int64_t n, int m) {
  Real product(1);
  for (int i = 0; i < m; ++i) product = product * (n - i);
  return product;
}
std::int64_t binomial(int n, int k) {
  std::int64_t c = 1;
  for (int i = 1; i <= k; ++i) c = c * (n - k + i) / i;
  return c;
}

// Of the equation at z0 + h, the coefficient of h^j D^m.
Complex coefficientAt(const Equation& e, const Complex& z0, int m, int j) {
  Complex c = -(e.upper[m] * integerPower(z0, m - j) * binomial(m, j));
  if (j < m) c = c + e.lower[m] * integerPower(z0, m - 1 - j) * binomial(m - 1, j);
  return c;
}

// From z0 to z0 + h, |h| a part of the distance from z0 to 0 and 1, so that terms and their errors fall.
State step(const Equation& e, const Complex& z0, const Complex& h, const State& at) {
  const int p = e.p;
  // weights[m][d]: of n!/(n - m)! v(n), n = N + d, in what determines v(N + p), v(k) being u(k) h^k.
  Complex weights[mostParameters + 1][mostParameters + 1], v[mostParameters + 1], sums[mostParameters + 1];
  for (int m = 0; m <= p; ++m)
    for (int d = 0; d <= m; ++d) weights[m][d] = coefficientAt(e, z0, m, m - d) * integerPower(h, p - d);
  for (int k = 0; k < p; ++k) v[k] = at.u[k] * integerPower(h, k);
  for (int k = 0; k < p; ++k)
    for (int m = 0; m <= k; ++m) sums[m] = sums[m] + v[k] * binomial(k, m);
  const Scratch scratch;
  for (std::int64_t n = 0;; ++n) {
    Complex next(0);
    for (int d = 0; d < p; ++d) {
      Complex weight(0);
      for (int m = d; m <= p; ++m) weight = weight + weights[m][d] * falling(n + d, m);
      next = next - weight * v[d];
    }
    next = next / (weights[p][p] * falling(n + p, p));
    for (int d = 0; d + 1 < p; ++d) v[d] = v[d + 1];
    v[p - 1] = next;
    Real choices(1);
    for (int m = 0; m < p; ++m) {
      sums[m] = sums[m] + next * choices;
      choices = choices * (n + p - m) / (m + 1);
    }
    scratch.keepRows(v, sums, p);
    passLimbWork(static_cast<std::size_t>(50 * p * p));
    Bound largest;
    bool isKnown = false;
    for (int d = 0; d < p; ++d) {
      largest = larger(largest, upperBound(v[d]));
      isKnown = isKnown || !mayBeZero(v[d]);
    }
    const double order = static_cast<double>(n + p + 2);
    Bound left = largest * boundOf(4);
    const Bound limit = upperBound(sums[0]) * powerOfTenBound(-workDigits() - 1 - p * std::log10(order));
    // As the terms fall, their errors come to the fore in the end.
    if (static_cast<double>(n) > e.size && (!isKnown || left < limit)) {
      State result;
      for (int m = 0; m < p; ++m) {
        result.u[m] = widened(sums[m], left) / integerPower(h, m);
        left = left * boundOf(order);
      }
      return result;
    }
    if (n > 100000) return {{giveUp()}};
  }
}

// The inputs of a step are taken as they are: the points between are as good as others near them.
Complex exactly(Complex z) {
  z.re.error = z.im.error = {};
  return z;
}

State walk(const Equation& e, Complex z0, const Complex& z1, State at) {
  constexpr int mostSteps = 5000;
  // Bounds of errors grow like powers of the x with x^p = sqrt(2) ((x + part)^p - x^p), which is to be below 1.
  const double part = 0.9 * (std::pow(1.7, 1.0 / e.p) - 1);
  const Scratch scratch;
  for (int steps = 0; steps < mostSteps && !hopeless; ++steps) {
    const Complex rest = z1 - z0;
    if (isExactZero(rest)) return at;
    const double reach = part * std::min(sizeOf(z0), sizeOf(Complex(1) - z0)), length = sizeOf(rest);
    if (length <= reach * 1.05) return step(e, z0, rest, at);
    // A float is as short a number as there is need of.
    const Complex h = exactly(rest * realOfDouble(static_cast<float>(reach / length)));
    at = step(e, z0, h, at);
    z0 = exactly(z0 + h);
  }
  return {{giveUp()}};
}

// u(m) = product of (a)_m / product of (b)_m / m! pFq(a + m; b + m; z)
State startAt(const Complex* a, const Complex* b, int q, const Complex& z) {
  State state;
  Complex upper[mostParameters + 1], lower[mostParameters + 1], factor(1);
  for (int m = 0; m <= q; ++m) {
    for (int i = 0; i <= q; ++i) upper[i] = a[i] + m;
    for (int i = 0; i < q; ++i) lower[i] = b[i] + m;
    state.u[m] = factor * hypergeometricSum(upper, q + 1, lower, q, z);
    for (int i = 0; i <= q; ++i) factor = factor * upper[i];
    for (int i = 0; i < q; ++i) factor = factor / lower[i];
    factor = factor / (m + 1);
  }
  return state;
}

}  // namespace

Complex hypergeometricAlongPath(const Complex* a, const Complex* b, int q, const Complex& z) {
  const double re = toDouble(z.re), im = toDouble(z.im), size = std::hypot(re, im);
  if (q + 1 > mostParameters || !(size < 1e100)) return giveUp();
  const Equation e = equationOf(a, b, q);
  if (size < 1 || std::abs(std::atan2(im, re)) > 0.6) {
    // A short number as the share of the way.
    const Complex start = exactly(z * realOfDouble(powerOfTwo(-2 - static_cast<int>(std::log2(size)))));
    return walk(e, start, z, startAt(a, b, q, start)).u[0];
  }
  // Around 1 on the side of z.
  const Real side(im > 0 ? 1 : -1);
  const Complex first(Real(1) / 4, side * 3 / 8), second(Real(5) / 4, side * 3 / 4);
  const State at = walk(e, first, second, startAt(a, b, q, first));
  return walk(e, second, z, at).u[0];
}

}  // namespace korel::special
