#include "numbers/primes/factorization.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <utility>

#include "frame/interrupts.h"
#include "numbers/primes/montgomery.h"

namespace korel {

// ---- rho

Limb rhoDivisor(Limb n) {
  const LimbModulus m(n);
  constexpr int batch = 128;  // differences between two greatest common divisors
  for (Limb c = 1;; ++c) {
    const Limb add = m.form(c);
    Limb y = m.form(2), x = y, before = y, q = m.one(), g = 1;
    for (std::int64_t r = 1; g == 1; r *= 2) {
      x = y;
      for (std::int64_t i = 0; i < r; ++i) y = m.add(m.multiply(y, y), add);
      for (std::int64_t k = 0; k < r && g == 1; k += batch) {
        before = y;
        for (std::int64_t i = 0; i < std::min<std::int64_t>(batch, r - k); ++i) {
          y = m.add(m.multiply(y, y), add);
          q = m.multiply(q, x > y ? x - y : y - x);
        }
        g = std::gcd(q, n);
      }
    }
    if (g == n) {
      // The batch held all factors: once more, one difference at a time.
      g = 1;
      for (y = before; g == 1;) {
        y = m.add(m.multiply(y, y), add);
        g = std::gcd(x > y ? x - y : y - x, n);
      }
    }
    if (g != n) return g;
  }
}

// ---- p - 1

namespace {

/// 1 < gcd(x, n) < n, for a form x.
bool sharesFactor(const MontgomeryModulus& m, const Natural& form, Natural& divisor) {
  Natural value = form;
  dropZeroLimbs(value);
  divisor = greatestCommonDivisor(m.modulus(), std::move(value));
  return !(divisor.size() == 1 && divisor[0] == 1) && divisor != m.modulus();
}

/// The largest power of p up to the bound.
Limb boundedPower(Limb p, Limb bound) {
  Limb power = p;
  while (power <= bound / p) power *= p;
  return power;
}

}  // namespace

Answer pMinusOneDivisor(const Natural& n, std::uint32_t bound, Natural& divisor) {
  const MontgomeryModulus m(n);
  Natural x(m.limbs()), y;
  m.add(x.data(), m.one().data(), m.one().data());
  for (std::uint32_t p : primesBelow(bound)) {
    y = x;
    if (!m.power(x, y, {boundedPower(p, bound)})) return Answer::stopped;
  }
  y = x;
  m.subtract(y.data(), x.data(), m.one().data());
  return sharesFactor(m, y, divisor) ? Answer::yes : Answer::no;
}

// ---- elliptic curves: points (x : z) of Montgomery curves

namespace {

struct Point {
  Natural x, z;
};

struct Curve {
  const MontgomeryModulus& m;
  Natural a24;  // (a + 2) / 4
  Natural s, d, t, u;

  explicit Curve(const MontgomeryModulus& modulus)
      : m(modulus), s(m.limbs()), d(m.limbs()), t(m.limbs()), u(m.limbs()) {}
  void times(Natural& r, const Natural& a, const Natural& b) const { m.multiply(r.data(), a.data(), b.data()); }
  void square(Natural& r) const { m.square(r.data(), r.data()); }

  void doubled(Point& r, const Point& p) {
    m.add(s.data(), p.x.data(), p.z.data());
    m.subtract(d.data(), p.x.data(), p.z.data());
    square(s);
    square(d);
    m.subtract(t.data(), s.data(), d.data());
    times(r.x, s, d);
    times(u, a24, t);
    m.add(u.data(), u.data(), d.data());
    times(r.z, t, u);
  }
  /// p + q, where `less` is p - q; r may be any of them.
  void added(Point& r, const Point& p, const Point& q, const Point& less) {
    m.subtract(s.data(), p.x.data(), p.z.data());
    m.add(t.data(), q.x.data(), q.z.data());
    times(s, s, t);
    m.add(d.data(), p.x.data(), p.z.data());
    m.subtract(t.data(), q.x.data(), q.z.data());
    times(d, d, t);
    m.add(t.data(), s.data(), d.data());
    m.subtract(u.data(), s.data(), d.data());
    square(t);
    square(u);
    times(t, t, less.z);
    times(u, u, less.x);
    r.x.swap(t);
    r.z.swap(u);
  }
  /// k p, by Montgomery's ladder.
  Point multiple(const Point& p, Limb k) {
    if (k == 1) return p;
    Point low = p, high = p;
    doubled(high, p);
    for (int bit = 62 - __builtin_clzll(k); bit >= 0; --bit) {
      if ((k >> bit & 1) != 0) {
        added(low, low, high, p);
        doubled(high, high);
      } else {
        added(high, low, high, p);
        doubled(low, low);
      }
    }
    return low;
  }
};

/// The curve and point of Suyama's parameter. False when an inverse doesn't exist: then `divisor` is what it shares.
bool startCurve(Curve& curve, Point& p, Limb sigma, Natural& divisor) {
  const MontgomeryModulus& m = curve.m;
  const std::size_t n = m.limbs();
  auto form = [&m](Limb x) { return m.form(naturalOfLimb(x)); };
  auto times = [&m, n](const Natural& a, const Natural& b) {
    Natural r(n);
    m.multiply(r.data(), a.data(), b.data());
    return r;
  };
  const Natural s = form(sigma);
  Natural u = times(s, s), v = times(form(4), s), w(n), t(n);
  m.subtract(u.data(), u.data(), form(5).data());
  const Natural u3 = times(u, times(u, u)), v3 = times(v, times(v, v));
  p = {u3, v3};
  m.subtract(w.data(), v.data(), u.data());
  w = times(w, times(w, w));  // (v - u)^3
  t = times(form(3), u);
  m.add(t.data(), t.data(), v.data());  // 3u + v
  const Natural above = times(w, t), below = times(form(16), times(u3, v));
  const Natural value = m.valueOf(below);
  divisor = greatestCommonDivisor(m.modulus(), value);
  if (divisor != Natural{1}) return false;
  curve.a24 = times(above, m.form(inverseModulo(value, m.modulus())));
  return true;
}

}  // namespace

Answer curveDivisor(const Natural& n, Limb sigma, std::uint32_t bound, Natural& divisor) {
  const MontgomeryModulus m(n);
  Curve curve(m);
  Point p;
  if (!startCurve(curve, p, sigma, divisor)) return divisor != n ? Answer::yes : Answer::no;
  const auto steps = static_cast<std::int64_t>(11 * 2 * m.limbs() * m.limbs() + 50);
  const auto primes = primesBelow(100 * bound);
  std::size_t at = 0;
  for (; at < primes.size() && primes[at] <= bound; ++at) {
    const Limb power = boundedPower(primes[at], bound);
    p = curve.multiple(p, power);
    if (isTimeUp(steps * (64 - __builtin_clzll(power)))) return Answer::stopped;
  }
  if (sharesFactor(m, p.z, divisor)) return Answer::yes;
  // Second stage: q p for the primes q up to 100 times the bound, each as a multiple of the giant step plus or minus a
  // baby step; x(giant) z(baby) - x(baby) z(giant) vanishes for either sign.
  constexpr Limb giant = 210;
  std::vector<Point> baby(giant / 2 + 1);
  const Point twice = curve.multiple(p, 2);
  baby[1] = p;
  baby[3] = curve.multiple(p, 3);
  for (Limb i = 5; i <= giant / 2; i += 2) {
    baby[i] = {Natural(m.limbs()), Natural(m.limbs())};
    curve.added(baby[i], baby[i - 2], twice, baby[i - 4]);
  }
  const Point step = curve.multiple(p, giant);
  Limb k = (bound + giant / 2) / giant;
  if (k == 0) k = 1;
  Point before = curve.multiple(p, k > 1 ? (k - 1) * giant : giant), here = curve.multiple(p, k * giant);
  if (k == 1) before = {m.one(), Natural(m.limbs())};  // the point at infinity
  Natural all = m.one(), left(m.limbs()), right(m.limbs());
  for (; at < primes.size(); ++at) {
    const Limb q = primes[at];
    while (q > k * giant + giant / 2) {
      Point next{Natural(m.limbs()), Natural(m.limbs())};
      if (k == 1) curve.doubled(next, step);
      else curve.added(next, here, step, before);
      before = std::exchange(here, std::move(next));
      ++k;
    }
    const Limb distance = q > k * giant ? q - k * giant : k * giant - q;
    curve.times(left, here.x, baby[distance].z);
    curve.times(right, baby[distance].x, here.z);
    m.subtract(left.data(), left.data(), right.data());
    curve.times(all, all, left);
    if (isTimeUp(steps / 3)) return Answer::stopped;
  }
  return sharesFactor(m, all, divisor) ? Answer::yes : Answer::no;
}

// ---- all together

namespace {

constexpr std::uint32_t trialLimit = 1 << 14;
constexpr int largestSieved = 75;  // decimal digits

/// Decimal digits, within one.
int digitsOf(const Natural& n) { return static_cast<int>(static_cast<double>(bitLength(n)) * 0.30103) + 1; }

/// A prime k with n = root^k; 1 when n is no power, 0 when stopped. n has no factor below `trialLimit`.
unsigned powerOf(const Natural& n, Natural& root) {
  for (std::uint32_t k : primesBelow(static_cast<std::uint32_t>(bitLength(n) / 14 + 1))) {
    root = truncatedRootOf(n, k);
    Natural power{1};
    for (std::uint32_t i = 0; i < k; ++i) power = product(power, root);
    if (power == n) return k;
    // Some four powers of half the length on the average.
    if (isTimeUp(static_cast<std::int64_t>(2 * n.size() * n.size()))) return 0;
  }
  root = n;
  return 1;
}

Answer anyDivisor(const Natural& n, Natural& divisor) {
  if (n.size() == 1 && n[0] < Limb{1} << 63) {
    divisor = {rhoDivisor(n[0])};
    return Answer::yes;
  }
  const int digits = digitsOf(n);
  const std::uint32_t first = digits < 52 ? 300 : 2000;
  Answer answer = Answer::no;
  Limb sigma = 6;
  // What the sieve does in milliseconds gets no other method, and few curves what it does in seconds.
  const int curves = digits < 42 ? 0 : digits < 52 ? 4 : 30;
  if (curves > 0) answer = pMinusOneDivisor(n, 10 * first, divisor);
  if (answer != Answer::no) return answer;
  for (int i = 0; i < curves; ++i) {
    answer = curveDivisor(n, sigma++, first, divisor);
    if (answer != Answer::no) return answer;
  }
  if (digits <= largestSieved) {
    answer = quadraticSieveDivisor(n, divisor);
    if (answer != Answer::no) return answer;
  }
  // Bounds and numbers of curves by the digits of the factor that is hoped for: 20, 25, 30, ...
  struct Effort {
    std::uint32_t bound;
    int curves;
  };
  constexpr Effort efforts[] = {{11000, 74}, {50000, 214}, {250000, 430}, {650000, 904}};
  for (std::size_t level = 0;; level = std::min(level + 1, std::size(efforts) - 1))
    for (int i = 0; i < efforts[level].curves; ++i) {
      answer = curveDivisor(n, sigma++, efforts[level].bound, divisor);
      if (answer != Answer::no) return answer;
    }
}

void note(std::vector<PrimePower>& factors, const Natural& prime, unsigned exponent) {
  for (PrimePower& known : factors) {
    if (known.prime != prime) continue;
    known.exponent += exponent;
    return;
  }
  factors.push_back({prime, exponent});
}

/// Adds the factors of n^exponent, n without small ones.
bool split(const Natural& n, unsigned exponent, std::vector<PrimePower>& factors) {
  if (n == Natural{1}) return true;
  const Answer prime = isPrimeNatural(n);
  if (prime == Answer::stopped) return false;
  if (prime == Answer::yes) {
    note(factors, n, exponent);
    return true;
  }
  Natural root, divisor;
  const unsigned k = powerOf(n, root);
  if (k == 0) return false;
  if (k > 1) return split(root, k * exponent, factors);
  if (anyDivisor(n, divisor) == Answer::stopped) return false;
  Natural rest = n;
  const Natural quotient = divide(rest, divisor);
  return split(divisor, exponent, factors) && split(quotient, exponent, factors);
}

}  // namespace

bool factorNatural(const Natural& n, std::vector<PrimePower>& factors) {
  Natural rest = n;
  for (std::uint32_t p : primesBelow(trialLimit)) {
    if (rest.size() == 1 && rest[0] < Limb{p} * p) break;
    if (isTimeUp(static_cast<std::int64_t>(20 * rest.size()))) return false;
    while (residue(rest, p) == 0) {
      divideByLimb(rest, p);
      note(factors, {p}, 1);
    }
  }
  if (!split(rest, 1, factors)) return false;
  std::sort(factors.begin(), factors.end(),
            [](const PrimePower& a, const PrimePower& b) { return compareNaturals(a.prime, b.prime) < 0; });
  return true;
}

}  // namespace korel
