// The self-initializing quadratic sieve with one large prime.
//
// For a product a of primes of the factor base and b with b^2 = kn modulo a, the values of
// Q(x) = ((a x + b)^2 - kn) / a near 0 are small, and a Q(x) is a square modulo n. Those that split over the factor
// base, but for one larger prime, are found by sieving; enough of them multiply to a square on both sides. Changing b
// within one a costs one addition a prime (Contini, "Factoring integers with the self-initializing quadratic sieve",
// 1997).

#include <algorithm>
#include <cmath>
#include <cstring>
#include <random>
#include <set>
#include <unordered_map>
#include <utility>

#include "frame/interrupts.h"
#include "numbers/primes/factorization.h"

namespace korel {

namespace {

// What a size of n asks for. Between the rows sizes are interpolated.
struct Parameters {
  double bits;
  double primes;      // in the factor base
  double largePrime;  // its bound, as a multiple of the largest prime
  double blocks;      // of the sieve on each side of 0
};
constexpr Parameters parameterTable[] = {
    // bits primes  large  blocks
    {60,    60,     20,    0.25},
    {100,   150,    30,    0.25},
    {133,   600,    40,    1},
    {166,   1500,   60,    1},
    {200,   4000,   120,   2},
    {212,   5000,   120,   3},
    {233,   9000,   120,   5},
    {249,   18000,  120,   8},
};
constexpr std::int32_t blockLength = 1 << 15;  // bytes: what the nearest cache holds
constexpr std::uint32_t leastSieved = 30;      // smaller primes cost more than they tell
constexpr std::size_t surplus = 40;            // relations beyond the factor base: each halves the risk of no divisor

Parameters parametersFor(double bits) {
  const auto* high = std::find_if(std::begin(parameterTable) + 1, std::end(parameterTable) - 1,
                                  [bits](const Parameters& row) { return row.bits >= bits; });
  const Parameters &a = high[-1], &b = *high;
  const double t = std::clamp((bits - a.bits) / (b.bits - a.bits), 0.0, 1.0);
  auto between = [t](double x, double y) { return x * std::pow(y / x, t); };
  return {bits, between(a.primes, b.primes), between(a.largePrime, b.largePrime), between(a.blocks, b.blocks)};
}

// ---- arithmetic modulo a prime of the base

std::uint32_t powerModulo(std::uint64_t base, std::uint32_t exponent, std::uint32_t p) {
  std::uint64_t r = 1;
  for (base %= p; exponent != 0; exponent >>= 1) {
    if (exponent & 1) r = r * base % p;
    base = base * base % p;
  }
  return static_cast<std::uint32_t>(r);
}
std::uint32_t inverseModuloPrime(std::uint32_t x, std::uint32_t p) {
  std::int64_t r0 = p, r1 = x % p, t0 = 0, t1 = 1;
  while (r1 != 0) {
    const std::int64_t q = r0 / r1;
    r0 = std::exchange(r1, r0 - q * r1);
    t0 = std::exchange(t1, t0 - q * t1);
  }
  return static_cast<std::uint32_t>(t0 < 0 ? t0 + p : t0);
}
/// A root of the square x modulo p (Tonelli and Shanks).
std::uint32_t rootModulo(std::uint32_t x, std::uint32_t p) {
  if (p == 2 || x == 0) return x;
  std::uint32_t odd = p - 1;
  int twos = 0;
  for (; odd % 2 == 0; odd /= 2) ++twos;
  std::uint32_t other = 2;
  while (powerModulo(other, (p - 1) / 2, p) != p - 1) ++other;
  std::uint64_t c = powerModulo(other, odd, p), r = powerModulo(x, (odd + 1) / 2, p), t = powerModulo(x, odd, p);
  while (t != 1) {
    int i = 0;
    for (std::uint64_t s = t; s != 1; s = s * s % p) ++i;
    std::uint64_t b = c;
    for (int k = 0; k < twos - i - 1; ++k) b = b * b % p;
    twos = i;
    c = b * b % p;
    r = r * b % p;
    t = t * c % p;
  }
  return static_cast<std::uint32_t>(r);
}

// ---- the factor base

struct BasePrime {
  std::uint32_t p;
  std::uint32_t root;  // of kn modulo p
  std::uint8_t log;    // to base 2
};

bool isSquareModulo(std::uint32_t x, std::uint32_t p) { return powerModulo(x, (p - 1) / 2, p) == 1; }

/// The small k for which kn has most small primes in its factor base (Knuth and Schroeppel).
Limb bestMultiplier(const Natural& n) {
  constexpr Limb candidates[] = {1,  3,  5,  7,  11, 13, 15, 17, 19, 21, 23, 29, 31, 33, 35, 37,
                                 39, 41, 43, 47, 51, 53, 55, 57, 59, 61, 65, 67, 69, 71, 73};
  constexpr std::size_t count = std::size(candidates);
  double scores[count];
  for (std::size_t i = 0; i < count; ++i) {
    const Limb k = candidates[i], low = n[0] * k & 7;
    scores[i] = (low == 1 ? 2 : low == 5 ? 1 : 0.5) * std::log(2) - 0.5 * std::log(static_cast<double>(k));
  }
  for (std::uint32_t p : primesBelow(1 << 9)) {
    if (p == 2) continue;
    const auto rest = static_cast<std::uint32_t>(residue(n, p));
    const bool isSquare = isSquareModulo(rest, p);
    const double weight = std::log(p) / (p - 1);
    std::vector<bool> squares(p);
    for (std::uint32_t x = 1; x <= p / 2; ++x) squares[x * x % p] = true;
    for (std::size_t i = 0; i < count; ++i) {
      const std::size_t k = candidates[i] % p;
      if (rest == 0 || k == 0) scores[i] += weight;
      else if (squares[k] == isSquare) scores[i] += 2 * weight;
    }
  }
  return candidates[std::max_element(scores, scores + count) - scores];
}

std::vector<BasePrime> factorBase(const Natural& kn, std::size_t count) {
  // About half of the primes belong to it.
  std::uint32_t limit = 1 << 12;
  while (limit < 1 << 20 && primesBelow(limit).size() < 2 * count + 100) limit *= 2;
  std::vector<BasePrime> base{{2, 1, 1}};
  for (std::uint32_t p : primesBelow(limit)) {
    if (p == 2) continue;
    const auto square = static_cast<std::uint32_t>(residue(kn, p));
    if (square != 0 && !isSquareModulo(square, p)) continue;
    base.push_back({p, rootModulo(square, p), static_cast<std::uint8_t>(std::lround(std::log2(p)))});
    if (base.size() == count) break;
  }
  return base;
}

// ---- relations

/// x^2 = product of the factors modulo n, times the square of `large`. Factor 0 is -1, factor i + 1 prime i of the
/// base.
struct Relation {
  Natural x;
  std::vector<std::uint32_t> factors;
  Limb large;
};

// ---- the sieve

class QuadraticSieve {
 public:
  QuadraticSieve(const Natural& n, Limb k);
  /// Collects relations; false when stopped.
  bool collect();
  /// A divisor from the relations, if one of their dependencies gives it.
  bool findDivisor(Natural& divisor) const;

 private:
  bool chooseFactorsOfA();
  void startA();
  void nextB(unsigned number);
  void sieve();
  void sieveBlock(std::int32_t start, std::int32_t length);
  void examine(std::int32_t place);
  bool divideByBase(Natural& value, std::int32_t place, std::vector<std::uint32_t>& factors) const;
  void keep(Relation relation);

  Natural n_, kn_;
  Parameters parameters_;
  std::vector<BasePrime> base_;
  std::int32_t half_;  // the sieve covers -half_ <= x < half_
  Limb largeBound_;
  std::uint8_t startValue_ = 0;

  std::mt19937 random_{20260107};
  std::set<std::vector<std::uint32_t>> usedA_;
  std::vector<std::uint32_t> aFactors_;  // indices in the base
  Natural a_, b_;
  bool bNegative_ = false;
  std::vector<Natural> bParts_;
  std::vector<std::vector<std::uint32_t>> steps_;  // by part: what a change of b moves the places of each prime
  // The places of the two roots of each prime, counted from -half_; for primes that aren't sieved, p.
  std::vector<std::uint32_t> first_, second_;
  std::vector<std::uint32_t> nextFirst_, nextSecond_;
  std::vector<std::uint8_t> block_;

  std::vector<Relation> relations_;
  std::unordered_map<Limb, Relation> partial_;
};

QuadraticSieve::QuadraticSieve(const Natural& n, Limb k)
    : n_(n),
      kn_(scaled(n, k)),
      parameters_(parametersFor(static_cast<double>(bitLength(n)))),
      base_(factorBase(kn_, static_cast<std::size_t>(parameters_.primes))),
      half_(static_cast<std::int32_t>(parameters_.blocks < 1 ? parameters_.blocks * blockLength
                                                             : std::round(parameters_.blocks) * blockLength)),
      largeBound_(static_cast<Limb>(parameters_.largePrime) * base_.back().p),
      block_(blockLength) {
  const std::size_t count = base_.size();
  first_.resize(count);
  second_.resize(count);
  nextFirst_.resize(count);
  nextSecond_.resize(count);
  // Bits that must have been found: those of Q, less the large prime and what small primes and rounding hide.
  const double bits = static_cast<double>(bitLength(kn_)) / 2 + std::log2(half_) - 0.5;
  const double hidden = std::log2(static_cast<double>(largeBound_)) + 8;
  startValue_ = static_cast<std::uint8_t>(std::clamp(128 - (bits - hidden), 0.0, 127.0));
}

/// Random primes whose product is near sqrt(2 kn) / half, the last one to fit. False when chance gave none.
bool QuadraticSieve::chooseFactorsOfA() {
  const double target = std::log(doubleOf(kn_)) / 2 + std::log(2) / 2 - std::log(half_);
  const std::size_t count = base_.size();
  const std::size_t low = std::min<std::size_t>(count / 4 + 3, 300),
                    high = std::max(low + 12, std::min(count, low * 4));
  const double typical = std::log(base_[std::min(count - 1, (low + std::min(high, count)) / 2)].p);
  const int s = std::max(2, static_cast<int>(std::lround(target / typical)));
  for (int tries = 0; tries < 200; ++tries) {
    std::vector<std::uint32_t> chosen;
    double rest = target;
    // The last prime has to lie in the base: where it would be too large, one more takes a part of it.
    while (static_cast<int>(chosen.size()) < s - 1 + tries % 2) {
      const auto i = static_cast<std::uint32_t>(low + random_() % (std::min(high, count) - low));
      if (std::find(chosen.begin(), chosen.end(), i) != chosen.end() || base_[i].root == 0) continue;
      chosen.push_back(i);
      rest -= std::log(base_[i].p);
    }
    const double wanted = std::exp(std::min(rest, 40.0));
    const auto fit = std::lower_bound(base_.begin() + 2, base_.end(), wanted,
                                      [](const BasePrime& prime, double x) { return prime.p < x; });
    if (fit == base_.end() || wanted < 5) continue;
    const auto i = static_cast<std::uint32_t>(fit - base_.begin());
    if (base_[i].root == 0 || std::find(chosen.begin(), chosen.end(), i) != chosen.end()) continue;
    chosen.push_back(i);
    std::sort(chosen.begin(), chosen.end());
    if (!usedA_.insert(chosen).second) continue;
    aFactors_ = std::move(chosen);
    return true;
  }
  return false;
}

void QuadraticSieve::startA() {
  a_ = {1};
  for (std::uint32_t i : aFactors_) a_ = scaled(a_, base_[i].p);
  bParts_.clear();
  b_.clear();
  for (std::uint32_t i : aFactors_) {
    const std::uint32_t q = base_[i].p;
    Natural cofactor = a_;
    divideByLimb(cofactor, q);
    const std::uint32_t inverse = inverseModuloPrime(static_cast<std::uint32_t>(residue(cofactor, q)), q);
    Limb gamma = std::uint64_t{base_[i].root} * inverse % q;
    if (gamma > q / 2) gamma = q - gamma;
    bParts_.push_back(scaled(cofactor, gamma));
    b_ = sum(b_, bParts_.back());
  }
  bNegative_ = false;
  steps_.assign(bParts_.size(), std::vector<std::uint32_t>(base_.size()));
  for (std::size_t i = 0; i < base_.size(); ++i) {
    const std::uint32_t p = base_[i].p;
    first_[i] = second_[i] = p;
    if (p < leastSieved || residue(a_, p) == 0) continue;
    const std::uint64_t inverse = inverseModuloPrime(static_cast<std::uint32_t>(residue(a_, p)), p);
    const std::uint64_t b = residue(b_, p), middle = static_cast<std::uint64_t>(half_) % p;
    first_[i] = static_cast<std::uint32_t>((inverse * (base_[i].root + p - b) + middle) % p);
    second_[i] = static_cast<std::uint32_t>((inverse * (2 * std::uint64_t{p} - base_[i].root - b) + middle) % p);
    for (std::size_t j = 0; j < bParts_.size(); ++j)
      steps_[j][i] = static_cast<std::uint32_t>(2 * inverse * residue(bParts_[j], p) % p);
  }
}

/// From the b with this number to the next, in the order of Gray's code: one part changes its sign.
void QuadraticSieve::nextB(unsigned number) {
  const auto part = static_cast<std::size_t>(__builtin_ctz(number));
  const bool minus = (number >> (part + 1) & 1) == 0;  // b becomes less by twice the part
  const Natural change = scaled(bParts_[part], 2);
  if (minus == bNegative_) {
    b_ = sum(b_, change);
  } else if (compareNaturals(b_, change) >= 0) {
    b_ = difference(b_, change);
  } else {
    b_ = difference(change, b_);
    bNegative_ = !bNegative_;
  }
  const std::vector<std::uint32_t>& step = steps_[part];
  for (std::size_t i = 0; i < base_.size(); ++i) {
    const std::uint32_t p = base_[i].p;
    if (first_[i] == p) continue;
    const std::uint32_t by = minus ? step[i] : step[i] == 0 ? 0 : p - step[i];
    first_[i] = first_[i] + by >= p ? first_[i] + by - p : first_[i] + by;
    second_[i] = second_[i] + by >= p ? second_[i] + by - p : second_[i] + by;
  }
}

void QuadraticSieve::sieve() {
  for (std::size_t i = 0; i < base_.size(); ++i) {
    const bool sieved = first_[i] != base_[i].p;
    nextFirst_[i] = sieved ? first_[i] : UINT32_MAX;
    nextSecond_[i] = sieved && second_[i] != first_[i] ? second_[i] : UINT32_MAX;
  }
  for (std::int32_t start = 0; start < 2 * half_; start += blockLength)
    sieveBlock(start, std::min(blockLength, 2 * half_ - start));
}

void QuadraticSieve::sieveBlock(std::int32_t start, std::int32_t size) {
  std::uint8_t* const block = block_.data();
  const auto length = static_cast<std::uint32_t>(size);
  std::memset(block, startValue_, length);
  for (std::size_t i = 0; i < base_.size(); ++i) {
    const std::uint32_t p = base_[i].p;
    const std::uint8_t log = base_[i].log;
    std::uint32_t low = nextFirst_[i], high = nextSecond_[i];
    if (low == UINT32_MAX) continue;
    if (high == UINT32_MAX) {
      for (; low < length; low += p) block[low] += log;
      nextFirst_[i] = low - length;
      continue;
    }
    if (low > high) std::swap(low, high);
    for (; high < length; high += p, low += p) {
      block[low] += log;
      block[high] += log;
    }
    if (low < length) {
      block[low] += log;
      low += p;
    }
    nextFirst_[i] = low - length;
    nextSecond_[i] = high - length;
  }
  for (std::int32_t at = 0; at < size; at += 32) {
    std::uint64_t words[4];
    std::memcpy(words, block + at, sizeof words);
    if (((words[0] | words[1] | words[2] | words[3]) & 0x8080808080808080u) == 0) continue;
    for (std::int32_t i = at; i < at + 32; ++i)
      if (block[i] >= 128) examine(start + i);
  }
}

/// Strips the primes of the base off `value`, which is Q at the place; what is left is in `value`.
bool QuadraticSieve::divideByBase(Natural& value, std::int32_t place, std::vector<std::uint32_t>& factors) const {
  for (std::size_t i = 0; i < base_.size(); ++i) {
    const std::uint32_t p = base_[i].p;
    if (first_[i] != p) {
      const std::uint32_t rest = static_cast<std::uint32_t>(place) % p;
      if (rest != first_[i] && rest != second_[i]) continue;
    }
    while (residue(value, p) == 0) {
      divideByLimb(value, p);
      factors.push_back(static_cast<std::uint32_t>(i + 1));
    }
  }
  return value.size() == 1 && value[0] < largeBound_;
}

void QuadraticSieve::examine(std::int32_t place) {
  const std::int32_t x = place - half_;
  // a x + b, by magnitude: its square is what counts.
  const Natural ax = scaled(a_, static_cast<Limb>(std::abs(x)));
  const Natural root = (x < 0) == bNegative_          ? sum(ax, b_)
                       : compareNaturals(ax, b_) >= 0 ? difference(ax, b_)
                                                      : difference(b_, ax);
  const Natural square = product(root, root);
  const int sign = compareNaturals(square, kn_);
  Natural value = sign < 0 ? difference(kn_, square) : difference(square, kn_);
  if (value.empty()) return;
  value = [&] {
    Natural rest = value;
    return divide(rest, a_);
  }();
  Relation found{remainder(root, n_), {}, 1};
  if (sign < 0) found.factors.push_back(0);
  for (std::uint32_t i : aFactors_) found.factors.push_back(i + 1);
  if (!divideByBase(value, place, found.factors)) return;
  found.large = value[0];
  keep(std::move(found));
}

void QuadraticSieve::keep(Relation relation) {
  if (relation.large == 1) {
    relations_.push_back(std::move(relation));
    return;
  }
  // Two with the same large prime make one without.
  const auto [place, isNew] = partial_.try_emplace(relation.large, relation);
  if (isNew || place->second.x == relation.x) return;
  const Relation& other = place->second;
  relation.x = remainder(product(relation.x, other.x), n_);
  relation.factors.insert(relation.factors.end(), other.factors.begin(), other.factors.end());
  relations_.push_back(std::move(relation));
}

bool QuadraticSieve::collect() {
  while (relations_.size() < base_.size() + surplus) {
    if (!chooseFactorsOfA()) return true;  // n is too small for the method: no divisor will be found
    startA();
    const unsigned count = 1u << (aFactors_.size() - 1);
    for (unsigned number = 1;; ++number) {
      sieve();
      if (isTimeUp(8 * std::int64_t{half_})) return false;
      if (number == count || relations_.size() >= base_.size() + surplus) break;
      nextB(number);
    }
  }
  return true;
}

// ---- dependencies modulo 2

using Bits = std::vector<std::uint64_t>;
void flip(Bits& bits, std::size_t i) { bits[i / 64] ^= std::uint64_t{1} << (i % 64); }
bool isSet(const Bits& bits, std::size_t i) { return (bits[i / 64] >> (i % 64) & 1) != 0; }
void addTo(Bits& a, const Bits& b) {
  for (std::size_t i = 0; i < a.size(); ++i) a[i] ^= b[i];
}

bool QuadraticSieve::findDivisor(Natural& divisor) const {
  const std::size_t rows = relations_.size(), columns = base_.size() + 1;
  std::vector<Bits> parity(rows, Bits((columns + 63) / 64)), made(rows, Bits((rows + 63) / 64));
  for (std::size_t r = 0; r < rows; ++r) {
    for (std::uint32_t factor : relations_[r].factors) flip(parity[r], factor);
    flip(made[r], r);
  }
  std::vector<bool> isPivot(rows);
  for (std::size_t c = 0; c < columns; ++c) {
    std::size_t pivot = 0;
    while (pivot < rows && (isPivot[pivot] || !isSet(parity[pivot], c))) ++pivot;
    if (pivot == rows) continue;
    isPivot[pivot] = true;
    for (std::size_t r = 0; r < rows; ++r) {
      if (r == pivot || isPivot[r] || !isSet(parity[r], c)) continue;
      addTo(parity[r], parity[pivot]);
      addTo(made[r], made[pivot]);
    }
  }
  for (std::size_t r = 0; r < rows; ++r) {
    if (isPivot[r]) continue;
    // The relations of this row multiply to a square.
    Natural x{1}, y{1};
    std::vector<std::uint32_t> exponents(columns);
    for (std::size_t i = 0; i < rows; ++i) {
      if (!isSet(made[r], i)) continue;
      x = remainder(product(x, relations_[i].x), n_);
      y = remainder(scaled(y, relations_[i].large), n_);
      for (std::uint32_t factor : relations_[i].factors) ++exponents[factor];
    }
    for (std::size_t c = 1; c < columns; ++c)
      for (std::uint32_t e = 0; e < exponents[c] / 2; ++e) y = remainder(scaled(y, base_[c - 1].p), n_);
    divisor = greatestCommonDivisor(n_, sum(x, y));
    if (divisor != Natural{1} && divisor != n_) return true;
  }
  return false;
}

}  // namespace

Answer quadraticSieveDivisor(const Natural& n, Natural& divisor) {
  QuadraticSieve sieve(n, bestMultiplier(n));
  if (!sieve.collect()) return Answer::stopped;
  return sieve.findDivisor(divisor) ? Answer::yes : Answer::no;
}

}  // namespace korel
