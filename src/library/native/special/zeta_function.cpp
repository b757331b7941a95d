// The zeta functions of Riemann and Hurwitz and their derivatives, by the sum of Euler and Maclaurin (F. Johansson,
// "Rigorous high-precision computation of the Hurwitz zeta function and its derivatives", 2015).

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "library/native/special/elementary_balls.h"
#include "library/native/special/special_series.h"

namespace korel::special {

namespace {

constexpr std::int64_t mostPowers = 200000;
constexpr std::int64_t mostDerivatives = 100;

// A power series in the difference from s, up to the n-th power: what derivatives are read from.
struct Jet {
  Complex* c;
  std::int64_t n;
};
Jet newJet(std::int64_t n) { return {numberSpace<Complex>(n + 1), n}; }
// x (a + t) in place.
void timesLinear(const Jet& x, const Complex& a) {
  for (std::int64_t i = x.n; i >= 0; --i) x.c[i] = i == 0 ? x.c[i] * a : x.c[i] * a + x.c[i - 1];
}
// x / (a + t) in place.
void overLinear(const Jet& x, const Complex& a) {
  for (std::int64_t i = 0; i <= x.n; ++i) x.c[i] = (i == 0 ? x.c[i] : x.c[i] - x.c[i - 1]) / a;
}
void scale(const Jet& x, const Complex& a) {
  for (std::int64_t i = 0; i <= x.n; ++i) x.c[i] = x.c[i] * a;
}
void add(const Jet& sum, const Jet& x, std::int64_t lowest) {
  for (std::int64_t i = 0; i <= x.n; ++i) sum.c[i] = sum.c[i] + cut(x.c[i], lowest);
}
// base^-(s + t)
Jet powerJet(const Complex& base, const Complex& s, std::int64_t n) {
  Jet jet = newJet(n);
  std::int64_t whole;
  if (n == 0 && isMachineInteger(s, whole) && std::abs(whole) < 10000) {
    jet.c[0] = whole >= 0 ? Complex(1) / integerPower(base, whole) : integerPower(base, -whole);
    return jet;
  }
  const Complex log = ln(base);
  jet.c[0] = exp(-(s * log));
  for (std::int64_t i = 1; i <= n; ++i) jet.c[i] = -(jet.c[i - 1] * log) / i;
  return jet;
}
// The sum of (a + k)^-s for k < n; of natural numbers from the powers of their primes.
Jet sumOfPowers(const Complex& s, const Complex& a, std::int64_t count, std::int64_t n) {
  Jet sum = newJet(n);
  std::int64_t first, whole;
  const bool naturals = n == 0 && isMachineInteger(a, first) && first == 1 && !isMachineInteger(s, whole);
  Complex* powers = nullptr;
  if (naturals) powers = newJet(count + 1).c;
  const Scratch scratch;
  for (std::int64_t k = 0; k < count; ++k) {
    Jet term{nullptr, n};
    if (naturals && k > 0) {
      std::int64_t prime = 2;
      while (prime * prime <= k + 1 && (k + 1) % prime != 0) ++prime;
      term = newJet(0);
      term.c[0] =
          prime * prime <= k + 1 ? powers[prime] * powers[(k + 1) / prime] : powerJet(Complex(k + 1), s, 0).c[0];
    } else {
      term = powerJet(a + Real(k), s, n);
    }
    if (naturals) powers[k + 1] = term.c[0];
    add(sum, term, -workLimbs() - 1 + std::max<std::int64_t>(topOf(sum.c[0]), 0));
    if (!naturals && n == 0) scratch.keep(sum.c[0]);
    passLimbWork(100);
  }
  return sum;
}

// The terms with Bernoulli numbers, times base^-s: 1/2 + sum B(2k)/(2k)! (s)_(2k-1) / base^(2k-1), and the bound of
// what remains.
Jet tail(const Complex& s, const Complex& base, std::int64_t n) {
  Jet factor = powerJet(base, s, n), sum = newJet(n);
  const Complex inverse = Complex(1) / square(base);
  add(sum, factor, -workLimbs() - 4);
  scale(sum, Complex(Real(1) / 2));
  // factor = base^-s (s)_(2k-1) / (base^(2k-1) (2k-2)!), so that its coefficient is B(2k)/(2k(2k-1))
  timesLinear(factor, s);
  scale(factor, Complex(1) / base);
  const double size = doubleOf(upperBound(base)), sigma = toDouble(s.re);
  const double turn = std::abs(toDouble(s.im) * std::atan2(toDouble(base.im), toDouble(base.re)));
  const auto guess = static_cast<std::int64_t>(0.5 * workDigits()) + 10;
  const double logs = std::log(size) + 3;
  const Bound small = powerOfTenBound(-workDigits() - 3);
  Bound before = infiniteBound();
  for (std::int64_t k = 1;; ++k) {
    Bound largest;
    const Real coefficient = stirlingCoefficient(k, guess);
    for (std::int64_t i = 0; i <= n; ++i) {
      const Complex term = factor.c[i] * coefficient;
      largest = larger(largest, upperBound(term));
      sum.c[i] = sum.c[i] + cut(term, -workLimbs() - 4);
    }
    timesLinear(factor, s + Real(2 * k - 1));
    timesLinear(factor, s + Real(2 * k));
    scale(factor, inverse / ((2 * k) * (2 * k - 1)));
    passLimbWork(static_cast<std::size_t>(20 * (n + 1)));
    const auto order = static_cast<double>(k);
    const double logPower = std::pow(logs + std::log(2 * order + 2), static_cast<double>(n));
    const double strength =
        sigma + 2 * order > 1 ? 8 * (1 + (doubleOf(upperBound(s)) + 2 * order) / (sigma + 2 * order - 1)) : 0;
    const Bound left = largest * boundOf(strength * logPower * std::exp(std::min(turn, 600.0)));
    if (strength != 0 && (left.m == 0 || left < small || !(largest < before) || k > 20 * guess)) {
      for (std::int64_t i = 0; i <= n; ++i) sum.c[i] = widened(sum.c[i], left);
      return sum;
    }
    before = largest;
  }
}

// At s = -2, -4, ... the sum is a Bernoulli polynomial of odd degree in a, with the rational zeros 0, 1/2 and 1.
bool isBernoulliZero(const Complex& s, const Complex& a) {
  std::int64_t order, twice;
  return isMachineInteger(s, order) && order < 0 && order % 2 == 0 && isMachineInteger(a * 2, twice) && twice >= 0 &&
         twice <= 2;
}

}  // namespace

Complex hurwitzZeta(const Complex& s, const Complex& a, std::int64_t n) {
  if (n == 0 && isBernoulliZero(s, a)) return 0;
  const double size = doubleOf(upperBound(s)), re = toDouble(a.re), im = toDouble(a.im);
  if (n > mostDerivatives || !(size < static_cast<double>(mostPowers))) return giveUp();
  const double needed = 0.5 * workDigits() + 0.7 * size + 5;
  double count = std::max(needed - re, 0.0);
  if (re > 1 && std::abs(im) > needed) count = 0;
  if (!(count < static_cast<double>(mostPowers))) return giveUp();
  const auto powers = static_cast<std::int64_t>(count);
  const Complex base = a + Real(powers);
  Jet value = sumOfPowers(s, a, powers, n);
  // base^(1 - s) / (s - 1)
  Jet integral = powerJet(base, s - Real(1), n);
  overLinear(integral, s - Real(1));
  add(value, integral, -workLimbs() - 4);
  add(value, tail(s, base, n), -workLimbs() - 4);
  return value.c[n] * Complex(factorialBall(n));
}

namespace {

// zeta(n) for an even n > 0, and where Euler's product of few primes has it, for any large real s.
Complex zetaByProduct(const Complex& s) {
  // 1/zeta(s) is the product of 1 - p^-s
  Complex product(1);
  const double sigma = toDouble(s.re);
  const Scratch scratch;
  const double wanted = workDigits();
  for (std::int64_t p = 2;; ++p) {
    bool prime = true;
    for (std::int64_t d = 2; d * d <= p && prime; ++d) prime = p % d != 0;
    if (sigma * std::log10(static_cast<double>(p)) > wanted) {
      const double rest = std::log10(static_cast<double>(p)) * -(sigma - 1) + 1;
      return Complex(1) / widened(product, powerOfTenBound(rest));
    }
    if (!prime) continue;
    product = product * (Complex(1) - powerJet(Complex(p), s, 0).c[0]);
    scratch.keep(product);
    passLimbWork(20);
  }
}

// zeta(3), from 64 zeta(3) = sum of (-1)^k (205 k^2 + 250 k + 77) k!^10/(2k + 1)!^5 (T. Amdeberhan and D. Zeilberger,
// "Hypergeometric series acceleration via the WZ method", 1997): ten bits a term, in single divisions.
Real sumForThree() {
  const auto full = static_cast<std::int64_t>(reals::workingLimbs);
  const Scratch scratch;
  Real power(1), sum;
  for (std::int64_t k = 0;; ++k) {
    const std::int64_t size = power.middle.exponent;
    if (size + 16 + 2 * static_cast<std::int64_t>(std::log2(static_cast<double>(k + 1))) < -64 * full) {
      const auto n = static_cast<double>(k);
      return widened(sum, powerOfTwoBound(6 - 64 * full) * boundOf(n * (n + 2))) / 64;
    }
    const reals::Precision shorter(static_cast<std::size_t>(std::clamp<std::int64_t>(full + 2 + (size >> 6), 2, full)));
    const reals::Real term = reals::times(power.middle, 205 * k * k + 250 * k + 77);
    const std::int64_t m = 2 * k + 3, n = k + 1;
    power.middle = reals::dividedBy(reals::times(reals::times(power.middle, n * n), -n * n * n), m * m);
    power.middle = reals::dividedBy(power.middle, 32 * m * m * m);
    {
      const reals::Precision longer(static_cast<std::size_t>(full));
      sum.middle = sum.middle + term;
    }
    scratch.keep(power, sum);
    passLimbWork(static_cast<std::size_t>(10 * full));
  }
}

// The value of the highest precision so far is kept, outside the stack of limbs.
Real zetaOfThree() {
  static Real kept;
  static std::int64_t precision = 0;
  if (workLimbs() <= precision) return cut(kept, topOf(kept) - workLimbs());
  const Real value = sumForThree();
  const std::size_t size = value.middle.size;
  auto* limbs = static_cast<Limb*>(std::malloc(size * sizeof(Limb)));
  if (limbs == nullptr) return value;
  copyLimbs(limbs, value.middle.limbs, size);
  std::free(const_cast<Limb*>(kept.middle.limbs));
  kept = value;
  kept.middle.limbs = limbs;
  precision = workLimbs();
  return value;
}

// zeta(s) for a natural s >= 2, from the alternating series (H. Cohen, F. Rodriguez Villegas, D. Zagier, "Convergence
// acceleration of alternating series", 2000, algorithm 1): what n terms leave out is 5.8^-n of it.
Real zetaOfInteger(std::int64_t s) {
  const auto full = static_cast<std::int64_t>(reals::workingLimbs);
  const auto n = static_cast<std::int64_t>(workDigits() / 0.7655) + 3;
  const reals::Real base = reals::Real(3) + reals::sqrt(reals::Real(8)), large = reals::power(base, n);
  const reals::Real d = reals::scaled(large + reals::Real(1) / large, -1);
  const Scratch scratch;
  Real b(-1), c(-d, {}), sum;
  for (std::int64_t k = 0; k < n; ++k) {
    c.middle = b.middle - c.middle;
    // c/(k + 1)^s by as few divisions as words allow
    reals::Real term = c.middle;
    std::int64_t divisor = 1;
    for (std::int64_t i = 0; i < s; ++i) {
      if (divisor > INT64_MAX / (k + 1)) {
        term = reals::dividedBy(term, divisor);
        divisor = 1;
      }
      divisor *= k + 1;
    }
    if (divisor > 1) term = reals::dividedBy(term, divisor);
    sum.middle = sum.middle + term;
    b.middle = reals::dividedBy(reals::times(b.middle, 2 * (k + n) * (k - n)), (2 * k + 1) * (k + 1));
    scratch.keep(b, c, sum);
    passLimbWork(static_cast<std::size_t>(10 * full));
  }
  // Relative errors of some n units of b and c, which are below 2 d, in each of n terms.
  const double steps = static_cast<double>(n) * static_cast<double>(n + s + 8);
  const Real eta(sum.middle / d, {});
  const Bound leftOut = powerOfTenBound(-0.7655 * static_cast<double>(n) + 0.5);
  const Real value = widened(eta, powerOfTwoBound(8 - 64 * full) * boundOf(steps) + leftOut);
  // (1 - 2^(1 - s)) zeta(s)
  const Real two = integerPower(Complex(2), s - 1).re;
  return value * two / (two - Real(1));
}

}  // namespace

Complex riemannZeta(const Complex& s) {
  std::int64_t whole;
  if (isMachineInteger(s, whole) && whole >= 2 && whole <= 40) return whole == 3 ? zetaOfThree() : zetaOfInteger(whole);
  const double sigma = toDouble(s.re);
  if (sigma < -1.5) {
    // zeta(s) = 2 (2 Pi)^(s - 1) sin(Pi s/2) gamma(1 - s) zeta(1 - s)
    const Complex other = Complex(1) - s;
    return power(Complex(pi() * 2), -other) * sinPi(s / 2) * gamma(other) * riemannZeta(other) * 2;
  }
  const double wanted = workDigits();
  if (sigma > 1e6 || sigma * std::log10(wanted) > wanted) return zetaByProduct(s);
  return hurwitzZeta(s, Complex(1), 0);
}

}  // namespace korel::special
