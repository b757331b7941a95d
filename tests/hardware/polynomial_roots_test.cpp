// Roots of polynomials: hard ones from the literature, by backward error.

#include <algorithm>
#include <cmath>
#include <complex>
#include <gtest/gtest.h>
#include <random>
#include <vector>

#include "hardware/polynomial_roots.h"
#include "kernel_fixture.h"

namespace korel::test {

namespace {

using Extended = long double;
using Complex = std::complex<Extended>;

// The monic polynomial with these roots, the constant coefficient first.
std::vector<Complex> fromRoots(const std::vector<Complex>& roots) {
  std::vector<Complex> a{1};
  for (const Complex& root : roots) {
    a.push_back(0);
    for (std::size_t k = a.size(); k-- > 0;) a[k] = (k > 0 ? a[k - 1] : Complex(0)) - root * a[k];
  }
  return a;
}

struct Found {
  bool isFound;
  std::vector<Complex> roots;
  // The largest |p(z)| / sum |a[k]| |z|^k over the roots: how much the coefficients would have to change.
  Extended backwardError;
};

Found rootsOf(const std::vector<Complex>& exact) {
  const int degree = static_cast<int>(exact.size()) - 1;
  std::vector<double> re, im, rootRe(static_cast<std::size_t>(degree)), rootIm(rootRe);
  for (const Complex& a : exact) {
    re.push_back(static_cast<double>(a.real()));
    im.push_back(static_cast<double>(a.imag()));
  }
  Found found{};
  found.isFound = findPolynomialRoots(degree, re.data(), im.data(), 1.0, 0.0, rootRe.data(), rootIm.data());
  for (int i = 0; i < degree; ++i) {
    const Complex z(rootRe[i], rootIm[i]);
    found.roots.push_back(z);
    const bool isLarge = std::abs(z) > 1;
    const Complex w = isLarge ? Extended(1) / z : z;
    Complex p = 0;
    Extended sum = 0;
    for (int k = degree; k >= 0; --k) {
      const int at = isLarge ? degree - k : k;
      p = p * w + Complex(re[at], im[at]);
      sum = sum * std::abs(w) + std::abs(Complex(re[at], im[at]));
    }
    found.backwardError = std::max(found.backwardError, std::abs(p) / sum);
  }
  return found;
}

// The distance of each wanted root to the nearest one found.
Extended farthest(const Found& found, const std::vector<Complex>& wanted) {
  Extended worst = 0;
  for (const Complex& z : wanted) {
    Extended nearest = INFINITY;
    for (const Complex& w : found.roots) nearest = std::min(nearest, std::abs(z - w));
    worst = std::max(worst, nearest);
  }
  return worst;
}

// Some roundings of the coefficients for each step of the evaluation.
Extended tolerated(int degree) { return 4 * degree * 2.3e-16L; }

void expectSolved(const char* what, const std::vector<Complex>& a) {
  const Found found = rootsOf(a);
  EXPECT_TRUE(found.isFound) << what;
  EXPECT_LE(found.backwardError, tolerated(static_cast<int>(a.size()) - 1)) << what;
}

}  // namespace

TEST(PolynomialRoots, WilkinsonsPolynomial) {
  std::vector<Complex> wanted;
  for (int k = 1; k <= 20; ++k) wanted.emplace_back(k);
  const Found found = rootsOf(fromRoots(wanted));
  EXPECT_TRUE(found.isFound);
  EXPECT_LE(found.backwardError, tolerated(20));
  // Coefficients of 19 digits do not fit doubles: the roots of those that do lie about so far away.
  EXPECT_LE(farthest(found, wanted), 0.1L);
}

TEST(PolynomialRoots, MultipleAndClusteredRoots) {
  for (int n : {2, 5, 10, 20, 40, 100}) {
    expectSolved("(x - 1)^n", fromRoots(std::vector<Complex>(n, 1)));
    std::vector<Complex> cluster;
    for (int k = 0; k < n; ++k)
      cluster.push_back(Complex(1, 1) + std::polar<Extended>(1e-3L, 6.283185307L * static_cast<Extended>(k) / n));
    expectSolved("a circle of radius 1e-3", fromRoots(cluster));
    std::vector<Complex> pairs;
    for (int k = 0; k < n; ++k) pairs.emplace_back(k % 2 == 0 ? -0.5L : 2.0L, k % 3 == 0 ? 1 : -1);
    expectSolved("few roots of high multiplicity", fromRoots(pairs));
  }
}

TEST(PolynomialRoots, RootsOfUnityAndOfManySizes) {
  for (int n : {1, 2, 3, 17, 64, 100}) {
    std::vector<Complex> a(static_cast<std::size_t>(n) + 1, 0);
    a.front() = -1;
    a.back() = 1;
    const Found found = rootsOf(a);
    EXPECT_TRUE(found.isFound);
    std::vector<Complex> wanted;
    for (int k = 0; k < n; ++k)
      wanted.push_back(std::polar<Extended>(1, 6.283185307179586477L * static_cast<Extended>(k) / n));
    EXPECT_LE(farthest(found, wanted), 1e-15L) << n;
    std::vector<Complex> spread;
    for (int k = 0; k < std::min(n, 40); ++k) spread.emplace_back(std::pow(10.0L, k % 15 - 7), k % 2);
    expectSolved("roots of many sizes", fromRoots(spread));
  }
}

TEST(PolynomialRoots, RandomCoefficients) {
  std::mt19937 random(7);
  std::normal_distribution<double> normal;
  for (int degree = 1; degree <= 100; degree += 9)
    for (int k = 0; k < 5; ++k) {
      std::vector<Complex> a;
      for (int i = 0; i <= degree; ++i) a.emplace_back(normal(random), k % 2 == 0 ? 0 : normal(random));
      expectSolved("random coefficients", a);
    }
}

TEST(PolynomialRoots, ZeroRootsAndExtremes) {
  const Found zeros = rootsOf({0, 0, 0, 2, 1});
  EXPECT_EQ(std::count(zeros.roots.begin(), zeros.roots.end(), Complex(0)), 3);
  EXPECT_LE(farthest(zeros, {-2}), 1e-15L);
  EXPECT_FALSE(rootsOf({1e300L, 1e-300L}).isFound);
  EXPECT_TRUE(rootsOf({1e300L, 1, 1e-300L}).isFound);
}

}  // namespace korel::test
