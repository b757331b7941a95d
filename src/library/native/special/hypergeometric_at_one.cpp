#include "library/native/special/hypergeometric_at_one.h"

#include <algorithm>
#include <cmath>

#include "library/native/special/special_series.h"

namespace korel::special {

namespace {

// Partial sums and terms behind the first few, which the parameters shape.
struct Rows {
  Complex *sums, *terms;
};
Rows partialSums(const Complex* a, const Complex* b, int q, std::int64_t first, std::int64_t count) {
  const Rows rows = {numberSpace<Complex>(count), numberSpace<Complex>(count)};
  Complex sum(0), term(1);
  for (std::int64_t k = 0; k < first + count; ++k) {
    if (k >= first) {
      rows.sums[k - first] = sum;
      rows.terms[k - first] = term;
    }
    sum = sum + term;
    Complex above(1), below(k + 1);
    for (int i = 0; i <= q; ++i) above = above * (a[i] + Real(k));
    for (int i = 0; i < q; ++i) below = below * (b[i] + Real(k));
    term = term * above / below;
    passLimbWork(50);
  }
  return rows;
}

// Levin's u transform of n + 1 partial sums (D. Levin, "Development of non-linear transformations for improving
// convergence of sequences", 1973).
Complex transformed(const Rows& rows, std::int64_t n) {
  Complex numerator(0), denominator(0);
  Real binomial(1);
  const Scratch scratch;
  for (std::int64_t j = 0; j <= n; ++j) {
    const Real power = integerPower(Complex(j + 1), n - 2).re;
    const Complex weight = Complex(binomial * power) / rows.terms[j];
    numerator = numerator + weight * rows.sums[j];
    denominator = denominator + weight;
    binomial = binomial * (j - n) / (j + 1);
    scratch.keep(numerator, denominator, binomial);
    passLimbWork(50);
  }
  return numerator / denominator;
}

}  // namespace

Complex hypergeometricAtOne(const Complex* a, const Complex* b, int q) {
  Complex excess(0);
  double size = 0;
  for (int i = 0; i <= q; ++i) {
    excess = excess - a[i];
    size = std::max(size, doubleOf(upperBound(a[i])));
    if (i == q) break;
    excess = excess + b[i];
    size = std::max(size, doubleOf(upperBound(b[i])));
  }
  constexpr double largestParameters = 10000;
  if (!(toDouble(knownInteger(excess).re) > 0) || size > largestParameters) return giveUp();
  // Some 0.9 digits a term, and each costs half a digit of the precision.
  const double digits = std::max(5.0, (workDigits() - 12) / 1.65);
  const auto n = static_cast<std::int64_t>(1.15 * digits) + 12;
  const Rows rows = partialSums(a, b, q, static_cast<std::int64_t>(2 * size), n + 1);
  const Complex value = transformed(rows, n), other = transformed(rows, n - n / 8 - 1);
  const Bound apart = upperBound(value - other);
  const Complex result = widened(value, apart);
  return isReal(value) ? result : Complex(widened(value.re, apart), widened(value.im, apart));
}

}  // namespace korel::special
