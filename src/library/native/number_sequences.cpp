// Native library procedures on numbers that a rapidly converging series or product gives: Bernoulli, Euler, partitions.
//
// Each is an integer whose size is known beforehand: it is computed to some bits more, and rounded.

#include <cmath>

#include "frame/errors.h"
#include "library/native/native.h"
#include "numbers/functions/elementary_reals.h"
#include "numbers/functions/real.h"
#include "numbers/integer/integer.h"
#include "numbers/primes/primality.h"
#include "store/objects.h"

namespace korel {

namespace {

using reals::Precision;
using reals::Real;

// Beyond, primes and products would take hours.
constexpr std::int64_t largestIndex = 100000000;

/// The argument, an integer >= 0 that is not too large for a value of that many bits to be computed.
std::int64_t indexArgument(const BuiltinCall& call, Word i, std::int64_t limit) {
  std::int64_t n = 0;
  if (argumentCount(call) < i || !isInteger(call.arguments[i])) wrongParameters(call);
  if (!readLongLong(call.arguments[i], n) || n > limit) KernelException("object too large");
  if (n < 0) wrongParameters(call);
  return n;
}

void setPrecision(double bits) { reals::workingLimbs = static_cast<std::size_t>(std::max(0.0, bits)) / 64 + 2; }

/// first * (first + 1) * ... * last.
Real productOfRange(std::int64_t first, std::int64_t last) {
  LimbMark mark;
  if (last - first > 16) {
    const std::int64_t middle = (first + last) / 2;
    return keep(productOfRange(first, middle) * productOfRange(middle + 1, last), mark);
  }
  Real r(1);
  for (std::int64_t k = first; k <= last; ++k) r = times(r, k);
  passLimbWork(20);
  return keep(r, mark);
}

/// p^s from the highest bit of s down, so that only squares are long.
Real powerOfPrime(std::uint32_t p, std::int64_t s) {
  LimbMark mark;
  Real r(1);
  for (int bit = 63 - __builtin_clzll(static_cast<Limb>(s)); bit >= 0; --bit) {
    r = square(r);
    if ((s >> bit & 1) != 0) r = times(r, p);
  }
  return keep(r, mark);
}

/// The character of a Dirichlet series at a prime.
using Character = int (*)(std::uint32_t p);
int principal(std::uint32_t) { return 1; }
int oddModuloFour(std::uint32_t p) { return p == 2 ? 0 : p % 4 == 1 ? 1 : -1; }

/// The product of 1 - character(p) / p^s over the primes p, to so many bits.
Real eulerProduct(std::int64_t s, Character character, double bits) {
  // p^s is beyond the precision from here on.
  const double last = std::exp2(bits / static_cast<double>(s));
  Real product(1);
  LimbMark mark;
  for (std::uint32_t p : primesBelow(static_cast<std::uint32_t>(std::min(last + 2, 0x1p26)))) {
    if (character(p) == 0) continue;
    // 1 / p^s changes the lowest bits only.
    const double needed = bits - static_cast<double>(s) * std::log2(p);
    if (needed < 0) break;
    Real change;
    {
      Precision short_(static_cast<std::size_t>(needed) / 64 + 2);
      change = p == 2 ? scaled(product, -s) : product / powerOfPrime(p, s);
    }
    product = character(p) > 0 ? product - change : product + change;
    product = keep(product, mark);
  }
  return product;
}

/// The integer nearest to factor * n! * L(s) / (c Pi)^s, where L is the Dirichlet series of the character and c is
/// 2^twos. Its size is `bits`.
DAG nearestInteger(DAG factor, std::int64_t n, std::int64_t s, int twos, Character character, double bits) {
  reals::RealSession session(10);
  // Powers and products of s and n factors may each lose their last bits.
  setPrecision(bits + 3 * std::log2(static_cast<double>(n) + 2) + 20);
  const Real below = scaled(power(reals::pi(), s), twos * s) * eulerProduct(s, character, bits + 8);
  return integerOf(nearest(reals::realOf(factor) * productOfRange(1, n) / below));
}

double bitsOf(DAG positive) {
  return isImmediate(positive) ? std::log2(immediateValue(positive)) : 13.3 * static_cast<double>(lengthOf(positive));
}

/// log2 of n! / (2^twos Pi)^s, a little too large.
double sizeOfQuotient(std::int64_t n, std::int64_t s, int twos) {
  const auto x = static_cast<double>(n);
  return std::lgamma(x + 1) / std::log(2.0) - static_cast<double>(s) * (std::log2(3.14159265358) + twos) + 2;
}

}  // namespace

// bernoulli/numerator(n, d): the magnitude of d*bernoulli(n), where n is even and positive and d a multiple of the
// denominator: 2*d*n!*Zeta(n)/(2*Pi)^n.
DAG native::bernoulliNumerator(const BuiltinCall& call) {
  const std::int64_t n = indexArgument(call, 1, largestIndex);
  if (argumentCount(call) != 2 || n < 2 || n % 2 != 0 || !isInteger(call.arguments[2])) wrongParameters(call);
  DAG twice = mulint(call.arguments[2], immediate(2));
  return nearestInteger(twice, n, n, 1, principal, sizeOfQuotient(n, n, 1) + bitsOf(twice));
}

// eulernumber/magnitude(n): that of eulernumber(n) for an even n: 2*n!*L(n + 1)/(Pi/2)^(n + 1), with the character 1
// and -1 of primes that are 1 and 3 modulo 4.
DAG native::eulernumberMagnitude(const BuiltinCall& call) {
  const std::int64_t n = indexArgument(call, 1, largestIndex);
  if (n % 2 != 0) wrongParameters(call);
  return nearestInteger(immediate(2), n, n + 1, -1, oddModuloFour, sizeOfQuotient(n, n + 1, -1) + 1);
}

namespace {

// ---- partitions

/// Terms of Rademacher's series for n after which the rest is below 1/4 (its bound by Rademacher).
std::int64_t rademacherTerms(double n) {
  double terms = 4;
  while (1.12 / std::sqrt(terms) + 0.0593 * std::sqrt(terms / (n - 1)) * std::sinh(2.5651 * std::sqrt(n) / terms) >
         0.25)
    terms += 1 + std::floor(terms / 16);
  return static_cast<std::int64_t>(terms);
}

/// Calls use(l, sign) for the terms sign * cos(Pi (6l + 1) / (6k)) of Selberg's sum.
template <typename Use>
void selbergTerms(std::int64_t k, std::int64_t n, Use use) {
  // l (3l + 1) / 2 + n modulo k, from one l to the next.
  std::int64_t rest = n % k, step = 2 % k;
  for (std::int64_t l = 0; l < 2 * k; ++l) {
    if (rest == 0) use(6 * l + 1, l % 2 == 0 ? 1 : -1);
    rest += step;
    if (rest >= k) rest -= k;
    step += 3 % k;
    if (step >= k) step -= k;
  }
}

/// The k-th term, (cosh c - sinh c / c) times Selberg's sum, where c = Pi root / (6 k); root is sqrt(24 n - 1).
double shortTerm(std::int64_t k, std::int64_t n, double root) {
  constexpr double pi = 3.14159265358979323846;
  const double c = pi * root / (6 * static_cast<double>(k));
  double total = 0;
  selbergTerms(k, n, [&](std::int64_t l, int sign) {
    total += sign * std::cos(pi * static_cast<double>(l) / (6 * static_cast<double>(k)));
  });
  return total * (std::cosh(c) - std::sinh(c) / c);
}
Real longTerm(std::int64_t k, std::int64_t n, const Real& root) {
  const Real c = dividedBy(reals::pi() * root, 6 * k);
  Real total;
  selbergTerms(k, n, [&](std::int64_t l, int sign) {
    const Real term = cos(dividedBy(times(reals::pi(), l), 6 * k));
    total = sign > 0 ? total + term : total - term;
  });
  if (isZero(total)) return total;
  const Real e = exp(c), inverse = Real(1) / e;
  return scaled(total * (e + inverse - (e - inverse) / c), -1);
}

}  // namespace

// partitioncount(n): the series of Rademacher with Selberg's sums (Johansson, "Efficient implementation of the
// Hardy-Ramanujan-Rademacher formula", 2012), each term to as many bits as it has before the point.
DAG native::partitioncount(const BuiltinCall& call) {
  constexpr std::int64_t limit = 1000000000000;
  const std::int64_t n = indexArgument(call, 1, limit);
  if (n < 2) return immediate(1);
  const std::int64_t terms = rademacherTerms(static_cast<double>(n));
  const double root = std::sqrt(24 * static_cast<double>(n) - 1);
  const double bits = 3.14159265358979 * root / 6 / std::log(2.0);  // of e^c in the first term
  const double guard = 30 + std::log2(static_cast<double>(n));
  constexpr double doubled = 36;  // terms of so few bits are sums of doubles
  reals::RealSession session(10);
  setPrecision(bits + guard);
  const Real whole = sqrt(Real(24 * n - 1));
  Real total;
  double rest = 0;
  LimbMark mark;
  for (std::int64_t k = 1; k <= terms; ++k) {
    passLimbWork(static_cast<std::size_t>(4 * k));
    const double size = bits / static_cast<double>(k);
    if (size < doubled) {
      rest += shortTerm(k, n, root);
      continue;
    }
    Real term;
    {
      Precision short_(1);
      setPrecision(size + guard);
      term = longTerm(k, n, whole);
    }
    total = keep(total + term, mark);
  }
  total = total + reals::realOfDouble(rest);
  return integerOf(nearest(dividedBy(scaled(total, 2), 24 * n - 1)));
}

}  // namespace korel
