#include "hardware/polynomial_roots.h"

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <cstdlib>
#include <numbers>

#include "frame/interrupts.h"

namespace korel {

namespace {

using Extended = long double;
constexpr Extended extendedRounding = LDBL_EPSILON / 2;

struct Complex {
  Extended re, im;
};
Complex operator+(Complex a, Complex b) { return {a.re + b.re, a.im + b.im}; }
Complex operator-(Complex a, Complex b) { return {a.re - b.re, a.im - b.im}; }
Complex operator*(Complex a, Complex b) { return {a.re * b.re - a.im * b.im, a.re * b.im + a.im * b.re}; }
Extended size(Complex a) { return hypotl(a.re, a.im); }
Complex reciprocal(Complex a) {
  const Extended s = size(a), re = a.re / s, im = a.im / s;
  return {re / s, -im / s};
}
bool isZero(Complex a) { return a.re == 0 && a.im == 0; }

// The polynomial, its coefficients' magnitudes, and the roots under way.
struct Search {
  int degree;
  const Complex* a;
  const Extended* magnitude;
  Complex* root;
  bool* done;
};

// The logarithm of |a[k]| by k has an upper convex hull; a side from i to j tells of j - i roots about the circle
// whose radius is (|a[i]| / |a[j]|)^(1 / (j - i)).
void placeStartingPoints(const Search& s, int* hull, Complex start) {
  auto height = [&](int k) { return logl(s.magnitude[k]); };
  int n = 0;
  for (int k = 0; k <= s.degree; ++k) {
    if (s.magnitude[k] == 0) continue;
    while (n >= 2 && (height(k) - height(hull[n - 2])) * (hull[n - 1] - hull[n - 2]) >=
                         (height(hull[n - 1]) - height(hull[n - 2])) * (k - hull[n - 2]))
      --n;
    hull[n++] = k;
  }
  const Extended turn = 0.7L + atan2l(start.im, start.re);
  for (int side = 0; side + 1 < n; ++side) {
    const int i = hull[side], j = hull[side + 1], count = j - i;
    const Extended radius = expl((height(i) - height(j)) / count);
    for (int k = 0; k < count; ++k) {
      const Extended turns = static_cast<Extended>(k) / count + static_cast<Extended>(i) / s.degree;
      const Extended angle = 2 * std::numbers::pi_v<Extended> * turns + turn;
      s.root[i + k] = {radius * cosl(angle), radius * sinl(angle)};
    }
  }
}

// p'(z) / p(z) for the sum of corrections; `isRoot` when p(z) is within its rounding error of 0. Beyond the unit
// circle the reversed polynomial in 1/z keeps the numbers in range.
Complex logarithmicDerivative(const Search& s, Complex z, bool& isRoot) {
  const bool reversed = size(z) > 1;
  const Complex w = reversed ? reciprocal(z) : z;
  const Extended sizeOfW = size(w);
  auto at = [&](int k) { return reversed ? s.degree - k : k; };
  Complex p = s.a[at(s.degree)], d{0, 0};
  Extended bound = s.magnitude[at(s.degree)];
  for (int k = s.degree - 1; k >= 0; --k) {
    d = d * w + p;
    p = p * w + s.a[at(k)];
    bound = bound * sizeOfW + s.magnitude[at(k)];
  }
  isRoot = size(p) <= 4 * (s.degree + 1) * extendedRounding * bound;
  if (isZero(p)) return {0, 0};
  const Complex ratio = d * reciprocal(p);
  if (!reversed) return ratio;
  // p(z) = z^n q(1/z): p'/p = n/z - q'/(q z^2).
  return (Complex{static_cast<Extended>(s.degree), 0} - ratio * w) * w;
}

// One step of each root. True when all stand still.
bool improveRoots(const Search& s) {
  bool finished = true;
  for (int i = 0; i < s.degree; ++i) {
    if (s.done[i]) continue;
    bool isRoot;
    const Complex newton = logarithmicDerivative(s, s.root[i], isRoot);
    if (isRoot) {
      s.done[i] = true;
      continue;
    }
    Complex pull{0, 0};
    for (int j = 0; j < s.degree; ++j) {
      const Complex difference = s.root[i] - s.root[j];
      if (j != i && !isZero(difference)) pull = pull + reciprocal(difference);
    }
    const Complex denominator = newton - pull;
    if (isZero(denominator)) {
      finished = false;
      s.root[i].re += s.root[i].re * LDBL_EPSILON + LDBL_MIN;
      continue;
    }
    const Complex step = reciprocal(denominator);
    s.root[i] = s.root[i] - step;
    s.done[i] = size(step) <= extendedRounding * size(s.root[i]);
    finished = finished && s.done[i];
  }
  return finished;
}

bool inRange(const Search& s, double* re, double* im) {
  for (int i = 0; i < s.degree; ++i) {
    re[i] = static_cast<double>(s.root[i].re);
    im[i] = static_cast<double>(s.root[i].im);
    if (!std::isfinite(re[i]) || !std::isfinite(im[i])) return false;
  }
  return true;
}

constexpr int mostRounds = 1000;
constexpr int mostDegree = 4096;

}  // namespace

bool findPolynomialRoots(int degree, const double* aRe, const double* aIm, double startRe, double startIm, double* re,
                         double* im) {
  // Roots at 0 are told by the coefficients, and divided out.
  int zeros = 0;
  while (zeros < degree && aRe[zeros] == 0 && aIm[zeros] == 0) ++zeros;
  std::fill(re, re + zeros, 0.0);
  std::fill(im, im + zeros, 0.0);
  const int n = degree - zeros;
  if (n > mostDegree) return false;
  if (n <= 0) return true;
  // What an interrupt leaves behind is used again by the next search.
  static Complex a[mostDegree + 1], root[mostDegree];
  static Extended magnitude[mostDegree + 1];
  static bool done[mostDegree];
  static int hull[mostDegree + 1];
  for (int k = 0; k <= n; ++k) {
    a[k] = {aRe[zeros + k], aIm[zeros + k]};
    magnitude[k] = size(a[k]);
    if (!std::isfinite(magnitude[k])) return false;
  }
  for (int i = 0; i < n; ++i) done[i] = false;
  const Search search{n, a, magnitude, root, done};
  placeStartingPoints(search, hull, {startRe, startIm});
  for (int round = 0; round < mostRounds && !improveRoots(search); ++round) passWork(std::int64_t{40} * n * n);
  return inRange(search, re + zeros, im + zeros);
}

}  // namespace korel
