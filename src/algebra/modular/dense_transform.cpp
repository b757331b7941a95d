#include "algebra/modular/dense_transform.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <immintrin.h>

#include "algebra/modular/vector_words.h"
#include "frame/interrupts.h"

namespace korel {

namespace {

#define KOREL_VECTOR __attribute__((target("avx2,fma")))

// ---- the primes

constexpr int rootOrderBits = 24;  // transforms of up to 2^24 points
constexpr int mostPrimes = 64;     // of a wide modulus: coefficients of a product up to 3,100 bits
constexpr Limb primeLimit = Limb{1} << 50;

// A prime c * 2^24 + 1, and its tables: entry h + j is the power j of the root of order 2h, so that each level of a
// transform reads a run of its own. Roots lie in (-p/2, p/2).
struct TransformPrime {
  Limb p = 0;
  Limb root = 0;          // of order 2^24
  double reciprocal = 0;  // 1 / p
  double* roots = nullptr;
  double* backRoots = nullptr;
  long tableLength = 0;
};
TransformPrime primes[mostPrimes];

constexpr Limb multiplyModulo(Limb a, Limb b, Limb p) { return static_cast<Limb>(DoubleLimb{a} * b % p); }
constexpr Limb powerModulo(Limb a, Limb n, Limb p) {
  Limb r = 1;
  for (; n != 0; n >>= 1, a = multiplyModulo(a, a, p))
    if ((n & 1) != 0) r = multiplyModulo(r, a, p);
  return r;
}
bool isPrimeNumber(Limb n) {  // odd; the bases decide below 3.3 * 10^24
  const int twos = __builtin_ctzll(n - 1);
  for (Limb base : {2, 3, 5, 7, 11, 13, 17, 19, 23, 29, 31, 37, 41}) {
    Limb x = powerModulo(base, (n - 1) >> twos, n);
    bool passes = x == 1 || x == n - 1;
    for (int k = 1; k < twos && !passes; ++k) {
      x = multiplyModulo(x, x, n);
      passes = x == n - 1;
    }
    if (!passes) return false;
  }
  return true;
}

// Prime number i, from the largest down.
const TransformPrime& transformPrime(int i) {
  TransformPrime& prime = primes[i];
  if (prime.p != 0) return prime;
  Limb p = i == 0 ? (primeLimit >> rootOrderBits << rootOrderBits) + 1 : transformPrime(i - 1).p;
  do p -= Limb{1} << rootOrderBits;
  while (!isPrimeNumber(p));
  Limb g = 3;  // no square
  while (powerModulo(g, (p - 1) / 2, p) == 1) ++g;
  prime.reciprocal = 1 / static_cast<double>(p);
  prime.root = powerModulo(g, (p - 1) >> rootOrderBits, p);
  prime.p = p;
  return prime;
}

double centered(Limb x, Limb p) { return x > p / 2 ? -static_cast<double>(p - x) : static_cast<double>(x); }

bool prepareTables(int i, long length) {
  transformPrime(i);
  TransformPrime& prime = primes[i];
  if (prime.tableLength >= length) return true;
  const std::size_t bytes = static_cast<std::size_t>(length) * sizeof(double);
  auto* roots = static_cast<double*>(std::aligned_alloc(32, bytes));
  auto* backRoots = static_cast<double*>(std::aligned_alloc(32, bytes));
  if (roots == nullptr || backRoots == nullptr) {
    std::free(roots);
    std::free(backRoots);
    return false;
  }
  std::free(prime.roots);
  std::free(prime.backRoots);
  prime.roots = roots;
  prime.backRoots = backRoots;
  for (long half = 1; half < length; half *= 2) {
    const Limb w = powerModulo(prime.root, (Limb{1} << rootOrderBits) / static_cast<Limb>(2 * half), prime.p);
    Limb power = 1;
    for (long j = 0; j < half; ++j) {
      prime.roots[half + j] = centered(power, prime.p);
      // The inverse of w^j is -w^(half - j).
      prime.backRoots[half + (j == 0 ? 0 : half - j)] = j == 0 ? 1.0 : -prime.roots[half + j];
      power = multiplyModulo(power, w, prime.p);
    }
  }
  prime.tableLength = length;
  return true;
}

// ---- arithmetic on vectors of residues
//
// Products come out below p in magnitude, for factors up to 8p and p/2; sums are reduced to about p/2.

struct VectorPrime {
  __m256d p, inverse;
};

KOREL_VECTOR inline __m256d product(__m256d a, __m256d b, const VectorPrime& v) {
  __m256d high = _mm256_mul_pd(a, b);
  __m256d low = _mm256_fmsub_pd(a, b, high);
  __m256d q = _mm256_round_pd(_mm256_mul_pd(high, v.inverse), _MM_FROUND_TO_NEAREST_INT | _MM_FROUND_NO_EXC);
  return _mm256_add_pd(_mm256_fnmadd_pd(q, v.p, high), low);
}
KOREL_VECTOR inline __m256d reduced(__m256d a, const VectorPrime& v) {
  __m256d q = _mm256_round_pd(_mm256_mul_pd(a, v.inverse), _MM_FROUND_TO_NEAREST_INT | _MM_FROUND_NO_EXC);
  return _mm256_fnmadd_pd(q, v.p, a);
}
KOREL_VECTOR inline double product(double a, double b, double p, double inverse) {
  double high = a * b, low = __builtin_fma(a, b, -high);
  double q = __builtin_rint(high * inverse);
  return __builtin_fma(-q, p, high) + low;
}
KOREL_VECTOR inline double reduced(double a, double p, double inverse) {
  return __builtin_fma(-__builtin_rint(a * inverse), p, a);
}

// ---- transforms; the order of the result is that of reversed bits

// (a, b) to (a + b, (a - b) w), over halves of ever shorter blocks. Depth first, so that the lower levels work in the
// cache.
KOREL_VECTOR void forward(double* x, long n, const double* roots, double p, double inverse) {
  const VectorPrime v = {_mm256_set1_pd(p), _mm256_set1_pd(inverse)};
  const long half = n / 2;
  if (half >= 4) {
    for (long j = 0; j < half; j += 4) {
      __m256d a = _mm256_load_pd(x + j), b = _mm256_load_pd(x + half + j), w = _mm256_load_pd(roots + half + j);
      _mm256_store_pd(x + j, reduced(_mm256_add_pd(a, b), v));
      _mm256_store_pd(x + half + j, product(_mm256_sub_pd(a, b), w, v));
    }
    forward(x, half, roots, p, inverse);
    forward(x + half, half, roots, p, inverse);
    return;
  }
  for (long length = half; length >= 1; length /= 2)
    for (long start = 0; start < n; start += 2 * length)
      for (long j = start; j < start + length; ++j) {
        const double a = x[j], b = x[j + length];
        x[j] = reduced(a + b, p, inverse);
        x[j + length] = product(a - b, roots[length + j - start], p, inverse);
      }
}

// (a, b) to (a + b w, a - b w), over longer and longer blocks.
KOREL_VECTOR void backward(double* x, long n, const double* roots, double p, double inverse) {
  const VectorPrime v = {_mm256_set1_pd(p), _mm256_set1_pd(inverse)};
  const long half = n / 2;
  if (half >= 4) {
    backward(x, half, roots, p, inverse);
    backward(x + half, half, roots, p, inverse);
    for (long j = 0; j < half; j += 4) {
      __m256d a = _mm256_load_pd(x + j), w = _mm256_load_pd(roots + half + j);
      __m256d b = product(_mm256_load_pd(x + half + j), w, v);
      _mm256_store_pd(x + j, reduced(_mm256_add_pd(a, b), v));
      _mm256_store_pd(x + half + j, reduced(_mm256_sub_pd(a, b), v));
    }
    return;
  }
  for (long length = 1; length <= half; length *= 2)
    for (long start = 0; start < n; start += 2 * length)
      for (long j = start; j < start + length; ++j) {
        const double a = x[j], b = product(x[j + length], roots[length + j - start], p, inverse);
        x[j] = reduced(a + b, p, inverse);
        x[j + length] = reduced(a - b, p, inverse);
      }
}

// x = x * y / n, place by place.
KOREL_VECTOR void multiplyPlaces(double* x, const double* y, long n, double factor, double p, double inverse) {
  const VectorPrime v = {_mm256_set1_pd(p), _mm256_set1_pd(inverse)};
  const __m256d f = _mm256_set1_pd(factor);
  for (long j = 0; j < n; j += 4)
    _mm256_store_pd(x + j, product(product(_mm256_load_pd(x + j), _mm256_load_pd(y + j), v), f, v));
}

long transformLength(long terms) {
  long n = 8;
  while (n < terms) n *= 2;
  return n;
}

// x, which holds a, becomes the product with b; both have n places. The same array twice makes a square.
void convolve(double* x, double* y, long n, const TransformPrime& prime) {
  const auto p = static_cast<double>(prime.p);
  const double inverse = 1.0 / p;
  passWork(6 * n);
  forward(x, n, prime.roots, p, inverse);
  if (y != x) forward(y, n, prime.roots, p, inverse);
  const double factor = centered(prime.p - (prime.p - 1) / static_cast<Limb>(n), prime.p);
  multiplyPlaces(x, y, n, factor, p, inverse);
  backward(x, n, prime.backRoots, p, inverse);
  passWork(6 * n);
}

}  // namespace

// ---- words: one prime

bool transformMultiply(const HardwareRing& ring, Word* r, const Word* a, long na, const Word* b, long nb) {
  const long terms = na + nb - 1;
  // The exact coefficients stay below half of the prime.
  constexpr long mostTerms = 1 << 18;
  if (!hasVectorInstructions() || std::min(na, nb) > mostTerms || terms > (1L << rootOrderBits)) return false;
  const long n = transformLength(terms);
  if (!prepareTables(0, n)) return false;
  const TransformPrime& prime = transformPrime(0);
  Workspace space;
  auto* x = space.take<double>(static_cast<std::size_t>(n));
  double* y = a == b && na == nb ? x : space.take<double>(static_cast<std::size_t>(n));
  for (long i = 0; i < na; ++i) x[i] = a[i];
  std::fill(x + na, x + n, 0.0);
  if (y != x) {
    for (long i = 0; i < nb; ++i) y[i] = b[i];
    std::fill(y + nb, y + n, 0.0);
  }
  convolve(x, y, n, prime);
  for (long i = 0; i < terms; ++i) {
    // The nearest residue may be short of 0 by the prime.
    double c = x[i];
    if (c < 0) c += static_cast<double>(prime.p);
    r[i] = ring.reduced(static_cast<std::uint64_t>(c));
  }
  return true;
}

// ---- limbs: as many primes as the exact coefficients need

namespace {

// A factor by which many numbers are multiplied modulo p, below 2^63, without a division (Shoup).
struct FixedFactor {
  Limb factor, quotient, p;  // quotient: factor * 2^64 / p, rounded down

  FixedFactor(Limb factor, Limb p)
      : factor(factor), quotient(static_cast<Limb>((DoubleLimb{factor} << 64) / p)), p(p) {}
  /// x * factor modulo p for any x, or p more.
  Limb nearly(Limb x) const { return x * factor - static_cast<Limb>(DoubleLimb{x} * quotient >> 64) * p; }
  Limb operator()(Limb x) const {
    const Limb r = nearly(x);
    return r >= p ? r - p : r;
  }
};

struct PrimeSystem {
  int count;
  long limbs;
  Limb* powers;           // powers[j * limbs + i] is 2^(64 i) modulo prime j
  FixedFactor* inverses;  // of the product of the other primes, modulo prime j
  Limb* complements;      // product of the other primes, modulo m: limbs each
  Limb* whole;            // m less the product of all, modulo m
};

int primesFor(const WideRing& ring, long terms) {
  const long bits = 64 * ring.width - ring.modulus.shift;
  const long needed = 2 * bits + (64 - __builtin_clzll(static_cast<Limb>(terms))) + 3;
  return static_cast<int>(needed / 49 + 1);
}

PrimeSystem makeSystem(const WideRing& ring, Workspace& space, int count) {
  const long k = ring.width;
  auto room = [&](long n) { return space.take<Limb>(static_cast<std::size_t>(n)); };
  PrimeSystem s = {
      count,  k, room(count * k), space.take<FixedFactor>(static_cast<std::size_t>(count)), room((count + 1) * k),
      nullptr};
  s.whole = s.complements + count * k;
  auto* residue = room(k);
  for (int j = 0; j < count; ++j) {
    const Limb p = transformPrime(j).p;
    Limb power = 1;
    for (long i = 0; i < k; ++i) {
      s.powers[j * k + i] = power;
      power = static_cast<Limb>((DoubleLimb{power} << 64) % p);
    }
    Limb others = 1;
    ring.setSmall(s.complements + j * k, 1);
    for (int i = 0; i < count; ++i) {
      if (i == j) continue;
      others = multiplyModulo(others, transformPrime(i).p % p, p);
      ring.setSmall(residue, transformPrime(i).p);
      ring.multiply(s.complements + j * k, s.complements + j * k, residue);
    }
    s.inverses[j] = FixedFactor(powerModulo(others, p - 2, p), p);
  }
  ring.setSmall(residue, transformPrime(0).p);
  ring.multiply(s.whole, s.complements, residue);
  ring.negate(s.whole, s.whole);
  return s;
}

// The residues of n coefficients modulo prime j.
void residues(double* x, long places, const Limb* a, long n, const PrimeSystem& s, int j) {
  const Limb p = transformPrime(j).p;
  const FixedFactor one(1, p), word(static_cast<Limb>((DoubleLimb{1} << 64) % p), p);
  const Limb* powers = s.powers + j * s.limbs;
  for (long i = 0; i < n; ++i) {
    DoubleLimb sum = 0;
    for (long t = 0; t < s.limbs; ++t) sum += DoubleLimb{a[i * s.limbs + t]} * powers[t];
    Limb rest = word.nearly(static_cast<Limb>(sum >> 64)) + one.nearly(static_cast<Limb>(sum));
    if (rest >= 2 * p) rest -= 2 * p;
    x[i] = centered(rest >= p ? rest - p : rest, p);
  }
  std::fill(x + n, x + places, 0.0);
  passWork(n * s.limbs);
}

}  // namespace

bool transformMultiply(const WideRing& ring, Limb* r, const Limb* a, long na, const Limb* b, long nb) {
  const long terms = na + nb - 1, k = ring.width;
  const int count = primesFor(ring, std::min(na, nb));
  if (!hasVectorInstructions() || count > mostPrimes || terms > (1L << rootOrderBits)) return false;
  const long n = transformLength(terms);
  for (int j = 0; j < count; ++j)
    if (!prepareTables(j, n)) return false;
  Workspace space;
  const PrimeSystem s = makeSystem(ring, space, count);
  auto* x = space.take<double>(static_cast<std::size_t>(n * count));
  double* y = a == b && na == nb ? nullptr : space.take<double>(static_cast<std::size_t>(n));
  for (int j = 0; j < count; ++j) {
    residues(x + j * n, n, a, na, s, j);
    if (y != nullptr) residues(y, n, b, nb, s, j);
    convolve(x + j * n, y != nullptr ? y : x + j * n, n, transformPrime(j));
  }
  // c = sum of y_j * complement_j - t * (product of all primes), where y_j is the residue times inverse_j, and t the
  // whole part of the sum of y_j / p_j: c is below an eighth of the product, so that rounding can't hide t.
  auto* sum = space.take<Limb>(static_cast<std::size_t>(k + 3));
  for (long i = 0; i < terms; ++i) {
    std::fill(sum, sum + k + 3, 0);
    double fraction = 0;
    auto addMultiple = [&](Limb factor, const Limb* of) {
      Limb carry = 0;
      for (long t = 0; t < k; ++t) {
        DoubleLimb product = DoubleLimb{factor} * of[t] + sum[t] + carry;
        sum[t] = static_cast<Limb>(product);
        carry = static_cast<Limb>(product >> 64);
      }
      sum[k] += carry;
      sum[k + 1] += static_cast<Limb>(sum[k] < carry);
    };
    for (int j = 0; j < count; ++j) {
      const Limb p = transformPrime(j).p;
      const double c = x[j * n + i];
      const auto residue = c < 0 ? p - static_cast<Limb>(-c) : static_cast<Limb>(c);
      const Limb y_j = s.inverses[j](residue);
      fraction += static_cast<double>(y_j) * transformPrime(j).reciprocal;
      addMultiple(y_j, s.complements + j * k);
    }
    addMultiple(static_cast<Limb>(fraction + 0.25), s.whole);
    ring.modulus.reduce(r + i * k, sum, k + 2);
    passWork(count * k);
  }
  return true;
}

}  // namespace korel
