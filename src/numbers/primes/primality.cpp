#include "numbers/primes/primality.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "frame/interrupts.h"
#include "numbers/primes/montgomery.h"

namespace korel {

// ---- one limb

namespace {

/// Whether n, odd, is a strong probable prime to the base.
bool passesStrongTest(const LimbModulus& m, Limb base) {
  const Limb n = m.modulus();
  if (base % n == 0) return true;
  const int twos = __builtin_ctzll(n - 1);
  const Limb minusOne = n - m.one();
  Limb x = m.power(m.form(base), (n - 1) >> twos);
  if (x == m.one() || x == minusOne) return true;
  for (int i = 1; i < twos; ++i) {
    x = m.multiply(x, x);
    if (x == minusOne) return true;
  }
  return false;
}

constexpr Limb smallPrimes[] = {2, 3, 5, 7, 11, 13, 17, 19, 23, 29, 31, 37, 41, 43, 47, 53};

}  // namespace

bool isPrimeLimb(Limb n) {
  if (n < 2) return false;
  for (Limb p : smallPrimes)
    if (n % p == 0) return n == p;
  if (n < 59 * 59) return true;
  const LimbModulus m(n);
  for (Limb base : {Limb{2}, Limb{325}, Limb{9375}, Limb{28178}, Limb{450775}, Limb{9780504}, Limb{1795265022}})
    if (!passesStrongTest(m, base)) return false;
  return true;
}

// ---- more limbs

namespace {

/// Steps of a product of n limbs, as the clock counts them.
std::int64_t productSteps(const MontgomeryModulus& m) {
  const auto n = static_cast<std::int64_t>(m.limbs());
  return 2 * n * n + 10;
}

/// 2^exponent with a look at the clock at each bit; false when stopped.
bool powerOfTwoWatched(const MontgomeryModulus& m, const Natural& exponent, Natural& r) {
  r = m.one();
  for (std::size_t i = bitLength(exponent); i-- > 0;) {
    m.square(r.data(), r.data());
    if (bitAt(exponent, i)) m.add(r.data(), r.data(), r.data());
    if (isTimeUp(productSteps(m))) return false;
  }
  return true;
}

Answer strongTestToBase2(const MontgomeryModulus& m) {
  const Natural less = difference(m.modulus(), {1});
  const std::size_t twos = trailingZeros(less);
  Natural minusOne(m.limbs()), zero(m.limbs()), x;
  m.subtract(minusOne.data(), zero.data(), m.one().data());
  if (!powerOfTwoWatched(m, shiftedRight(less, twos), x)) return Answer::stopped;
  if (x == m.one() || x == minusOne) return Answer::yes;
  for (std::size_t i = 1; i < twos; ++i) {
    m.square(x.data(), x.data());
    if (x == minusOne) return Answer::yes;
  }
  return Answer::no;
}

bool isSquare(const Natural& n) {
  const Natural root = truncatedRootOf(n, 2);
  return product(root, root) == n;
}

/// The least p > 2 for which p^2 - 4 is no square modulo n; 0 when one shares a factor with n.
Limb lucasParameter(const Natural& n) {
  for (Limb p = 3;; ++p) {
    // A square has no such p.
    if (p == 13 && isSquare(n)) return 0;
    const int symbol = jacobiSymbol({p * p - 4}, n);
    if (symbol == -1) return p;
    if (symbol == 0) return 0;
  }
}

/// With n + 1 = d 2^s and the sequences of x^2 - p x + 1: U(d) = 0 and V(d) = 2 or -2, or V(d 2^r) = 0, r < s - 1.
Answer extraStrongLucasTest(const MontgomeryModulus& m) {
  const Natural& n = m.modulus();
  const Limb p = lucasParameter(n);
  if (p == 0) return Answer::no;
  const Natural more = sum(n, {1});
  const std::size_t twos = trailingZeros(more);
  const Natural odd = shiftedRight(more, twos);
  const Natural first = m.form({p}), zero(m.limbs());
  Natural two(m.limbs()), minusTwo(m.limbs());
  m.add(two.data(), m.one().data(), m.one().data());
  m.subtract(minusTwo.data(), zero.data(), two.data());
  // V(k) and V(k + 1), from k = 0: V(2k) = V(k)^2 - 2, V(2k + 1) = V(k) V(k + 1) - p.
  Natural v = two, above = first;
  for (std::size_t i = bitLength(odd); i-- > 0;) {
    Natural& doubled = bitAt(odd, i) ? above : v;
    Natural& between = bitAt(odd, i) ? v : above;
    m.multiply(between.data(), v.data(), above.data());
    m.subtract(between.data(), between.data(), first.data());
    m.square(doubled.data(), doubled.data());
    m.subtract(doubled.data(), doubled.data(), two.data());
    if (isTimeUp(2 * productSteps(m))) return Answer::stopped;
  }
  if (v == two || v == minusTwo) {
    // (p^2 - 4) U(d) = 2 V(d + 1) - p V(d).
    Natural left(m.limbs()), right(m.limbs());
    m.multiply(left.data(), two.data(), above.data());
    m.multiply(right.data(), first.data(), v.data());
    if (left == right) return Answer::yes;
  }
  for (std::size_t i = 1; i < twos; ++i) {
    if (v == zero) return Answer::yes;
    m.square(v.data(), v.data());
    m.subtract(v.data(), v.data(), two.data());
  }
  return Answer::no;
}

}  // namespace

Answer isPrimeNatural(const Natural& n) {
  if (n.size() <= 1) return !n.empty() && isPrimeLimb(n[0]) ? Answer::yes : Answer::no;
  if ((n[0] & 1) == 0) return Answer::no;
  for (std::uint32_t p : primesBelow(1 << 10))
    if (residue(n, p) == 0) return Answer::no;
  const MontgomeryModulus m(n);
  const Answer first = strongTestToBase2(m);
  return first == Answer::yes ? extraStrongLucasTest(m) : first;
}

// ---- tables and neighbours

std::span<const std::uint32_t> primesBelow(std::uint32_t limit) {
  static std::vector<std::uint32_t> primes;
  static std::uint32_t known = 0;
  auto below = [limit] { return std::span(primes.begin(), std::lower_bound(primes.begin(), primes.end(), limit)); };
  if (limit <= known) return below();
  known = std::max(limit, std::uint32_t{1} << 10);
  std::vector<bool> composite(known / 2);
  primes.assign(1, 2);
  for (std::uint64_t i = 3; i < known; i += 2) {
    if (composite[i / 2]) continue;
    primes.push_back(static_cast<std::uint32_t>(i));
    for (std::uint64_t j = i * i; j < known; j += 2 * i) composite[j / 2] = true;
  }
  return below();
}

namespace {

/// Candidates near `start` (odd) in steps of 2 up or down: small primes sift a window, the rest is tested.
Answer searchPrime(Natural start, bool upward, Natural& found) {
  constexpr std::uint32_t window = 1 << 12;  // odd numbers
  for (;;) {
    std::vector<bool> sifted(window);
    std::uint32_t end = window;
    if (!upward && start.size() == 1) end = static_cast<std::uint32_t>(std::min<Limb>(window, start[0] / 2 + 1));
    for (std::uint32_t p : primesBelow(1 << 13)) {
      if (p == 2) continue;
      // start + 2i or start - 2i divisible by p; p itself stays.
      const Limb rest = residue(start, p), half = (p + 1) / 2;
      Limb i = (upward ? p - rest : rest) % p * half % p;
      for (; i < end; i += p) sifted[i] = true;
    }
    for (std::uint32_t i = 0; i < end; ++i) {
      const bool isSmall = start.size() <= 1 && (upward ? start[0] < 1 << 14 : start[0] - 2 * i < 1 << 14);
      if (sifted[i] && !isSmall) continue;
      Natural candidate = upward ? sum(start, {2 * Limb{i}}) : difference(start, naturalOfLimb(2 * Limb{i}));
      const Answer answer = isPrimeNatural(candidate);
      if (answer == Answer::no) continue;
      found = std::move(candidate);
      return answer;
    }
    start = upward ? sum(start, {2 * Limb{window}}) : difference(start, {2 * Limb{window}});
  }
}

}  // namespace

Answer nextPrime(const Natural& n, Natural& found) {
  if (n.empty() || (n.size() == 1 && n[0] < 2)) {
    found = {2};
    return Answer::yes;
  }
  return searchPrime(sum(n, {(n[0] & 1) != 0 ? Limb{2} : Limb{1}}), true, found);
}

Answer previousPrime(const Natural& n, Natural& found) {
  if (n.size() == 1 && n[0] == 3) {
    found = {2};
    return Answer::yes;
  }
  return searchPrime(difference(n, {(n[0] & 1) != 0 ? Limb{2} : Limb{1}}), false, found);
}

std::int64_t primeCount(std::int64_t x) {
  if (x < 2) return 0;
  const auto root = [x] {
    auto r = static_cast<std::int64_t>(std::sqrt(static_cast<double>(x)));
    while (r * r > x) --r;
    while ((r + 1) * (r + 1) <= x) ++r;
    return r;
  }();
  // counts[v] for v up to the root, and behind them for x / v: numbers up to v left over by the sieve so far.
  std::vector<std::int64_t> small(static_cast<std::size_t>(root) + 1), large(static_cast<std::size_t>(root) + 1);
  for (std::int64_t i = 1; i <= root; ++i) {
    small[static_cast<std::size_t>(i)] = i - 1;
    large[static_cast<std::size_t>(i)] = x / i - 1;
  }
  for (std::int64_t p = 2; p <= root; ++p) {
    const std::int64_t before = small[static_cast<std::size_t>(p) - 1];
    if (small[static_cast<std::size_t>(p)] == before) continue;
    const std::int64_t square = p * p;
    const std::int64_t end = std::min(root, x / square);
    for (std::int64_t i = 1; i <= end; ++i) {
      const std::int64_t at = i * p;
      large[static_cast<std::size_t>(i)] -=
          (at <= root ? large[static_cast<std::size_t>(at)] : small[static_cast<std::size_t>(x / at)]) - before;
    }
    for (std::int64_t i = root; i >= square; --i)
      small[static_cast<std::size_t>(i)] -= small[static_cast<std::size_t>(i / p)] - before;
    if (isTimeUp(end + std::max<std::int64_t>(0, root - square))) return -1;
  }
  return large[1];
}

}  // namespace korel
