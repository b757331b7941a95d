#include "algebra/modular/vector_words.h"

#include <immintrin.h>

namespace korel {

#define KOREL_VECTOR __attribute__((target("avx2,fma")))

bool hasVectorInstructions() {
  static const bool has = __builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma");
  return has;
}

// Products are below 2^31, so that no sum of fewer than 2^33 of them overflows.
KOREL_VECTOR std::uint64_t vectorDot(const Word* x, const Word* y, long n) {
  __m256i even = _mm256_setzero_si256(), odd = _mm256_setzero_si256();
  long i = 0;
  for (; i + 8 <= n; i += 8) {
    __m256i a = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(x + i));
    __m256i b = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(y + i));
    even = _mm256_add_epi64(even, _mm256_mul_epu32(a, b));
    odd = _mm256_add_epi64(odd, _mm256_mul_epu32(_mm256_srli_epi64(a, 32), _mm256_srli_epi64(b, 32)));
  }
  alignas(32) std::uint64_t parts[4];
  _mm256_store_si256(reinterpret_cast<__m256i*>(parts), _mm256_add_epi64(even, odd));
  std::uint64_t sum = parts[0] + parts[1] + parts[2] + parts[3];
  for (; i < n; ++i) sum += static_cast<std::uint64_t>(x[i]) * y[i];
  return sum;
}

KOREL_VECTOR Word* withColumnPadding(Workspace& space, const Word* b, long nb) {
  Word* padded = HardwareRing::take(space, nb + 2 * columnPadding + 8);
  const __m256i zero = _mm256_setzero_si256();
  _mm256_storeu_si256(reinterpret_cast<__m256i*>(padded), zero);
  Word* to = padded + columnPadding;
  long i = 0;
  for (; i + 8 <= nb; i += 8)
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(to + i),
                        _mm256_loadu_si256(reinterpret_cast<const __m256i*>(b + i)));
  _mm256_storeu_si256(reinterpret_cast<__m256i*>(to + i), zero);
  _mm256_storeu_si256(reinterpret_cast<__m256i*>(to + i + 6), zero);
  for (; i < nb; ++i) to[i] = b[i];
  return padded;
}

namespace {

// Four sums below 2^52 modulo m. As floats, whose last bits are integers where 2^52 is added, they tell the nearest
// quotient; what is left lies in [-m/2, m/2].
KOREL_VECTOR inline __m256i reducedSums(__m256i sums, __m256d inverse, __m256i m) {
  const __m256d shift = _mm256_set1_pd(0x1p52);
  const __m256d value = _mm256_sub_pd(_mm256_castsi256_pd(_mm256_or_si256(sums, _mm256_castpd_si256(shift))), shift);
  const __m256i quotient = _mm256_castpd_si256(_mm256_fmadd_pd(value, inverse, shift));
  const __m256i rest = _mm256_sub_epi64(sums, _mm256_mul_epu32(quotient, m));
  return _mm256_add_epi64(rest, _mm256_and_si256(_mm256_cmpgt_epi64(_mm256_setzero_si256(), rest), m));
}

}  // namespace

// Eight columns at a time: a coefficient of a by the eight of b that go to them, even and odd ones apart.
KOREL_VECTOR void vectorColumns(const HardwareRing& ring, Word* r, long n, const Word* a, long na, const Word* padded,
                                long nb) {
  const __m256i m = _mm256_set1_epi64x(ring.m);
  const __m256d inverse = _mm256_set1_pd(ring.reciprocal);
  for (long t = 0; t < n; t += 8) {
    __m256i even = _mm256_setzero_si256(), odd = _mm256_setzero_si256();
    const Word* column = padded + columnPadding + t;
    const long last = t + 8 < na ? t + 8 : na;
    for (long i = t < nb ? 0 : t - nb + 1; i < last; ++i) {
      const __m256i x = _mm256_set1_epi32(static_cast<int>(a[i]));
      const __m256i y = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(column - i));
      even = _mm256_add_epi64(even, _mm256_mul_epu32(x, y));
      odd = _mm256_add_epi64(odd, _mm256_mul_epu32(x, _mm256_srli_epi64(y, 32)));
    }
    even = reducedSums(even, inverse, m);
    odd = reducedSums(odd, inverse, m);
    const __m256i both = _mm256_or_si256(even, _mm256_slli_epi64(odd, 32));
    if (t + 8 <= n) {
      _mm256_storeu_si256(reinterpret_cast<__m256i*>(r + t), both);
      continue;
    }
    alignas(32) Word rest[8];
    _mm256_store_si256(reinterpret_cast<__m256i*>(rest), both);
    for (long j = t; j < n; ++j) r[j] = rest[j - t];
  }
}

KOREL_VECTOR Word* reversedMultiple(const HardwareRing& ring, Workspace& space, const Word* padded, long nb,
                                    Word factor) {
  Word* result = HardwareRing::take(space, nb + 16);
  const __m256i m = _mm256_set1_epi64x(ring.m), f = _mm256_set1_epi32(static_cast<int>(factor));
  const __m256d inverse = _mm256_set1_pd(ring.reciprocal);
  const __m256i reverse = _mm256_setr_epi32(7, 6, 5, 4, 3, 2, 1, 0);
  long i = 0;
  for (; i < nb; i += 8) {
    const __m256i b = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(padded + nb - 1 - i));
    const __m256i even = reducedSums(_mm256_mul_epu32(b, f), inverse, m);
    const __m256i odd = reducedSums(_mm256_mul_epu32(_mm256_srli_epi64(b, 32), f), inverse, m);
    const __m256i both = _mm256_or_si256(even, _mm256_slli_epi64(odd, 32));
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(result + i), _mm256_permutevar8x32_epi32(both, reverse));
  }
  _mm256_storeu_si256(reinterpret_cast<__m256i*>(result + i), _mm256_setzero_si256());
  return result;
}

namespace {

// From the top down, with one reduction for each coefficient, and two of them at a time, neither of which waits for the
// other: with n1, n2, ... the negative coefficients, q[k] = A + n1 q[k + 1] + n2 q[k + 2] stands for itself in
// q[k - 1] = B + n1 q[k] + n2 q[k + 1] + n3 q[k + 2]. `sumFrom(k, first)` is the dividend's term of q[k] and the
// products from `first` on.
template <class Sum>
[[gnu::always_inline]] inline void quotientInPairs(const HardwareRing& ring, Word* q, long n, const Word* negative,
                                                   long db, Sum sumFrom) {
  long k = n - 1;
  if (n > 4 && db > 2) {
    for (; k >= n - 2; --k) q[k] = ring.reduced(sumFrom(k, 1));
    const std::uint64_t n1 = negative[1], n2 = negative[2], n3 = negative[3];
    const std::uint64_t first = ring.reduced(n2 + n1 * n1), second = ring.reduced(n3 + n1 * n2);
    for (; k >= 1; k -= 2) {
      const std::uint64_t own = sumFrom(k, 3), next = sumFrom(k - 1, 4) + n1 * ring.reduced(own);
      const std::uint64_t x = q[k + 1], y = q[k + 2];
      q[k] = ring.reduced(own + x * n1 + y * n2);
      q[k - 1] = ring.reduced(next + x * first + y * second);
    }
  }
  for (; k >= 0; --k) q[k] = ring.reduced(sumFrom(k, 1));
}

}  // namespace

KOREL_VECTOR void vectorQuotient(const HardwareRing& ring, Word* q, const Word* top, long n, const Word* negative,
                                 long db, Word inverse) {
  _mm256_storeu_si256(reinterpret_cast<__m256i*>(q + n), _mm256_setzero_si256());
  // What is read beyond the last place is 0 there, or in q.
  auto sumFrom = [&](long k, long first) KOREL_VECTOR {
    std::uint64_t sum = std::uint64_t{top[k]} * inverse;
    const long last = n - 1 - k < db ? n - 1 - k : db;
    if (first > last) return sum;
    __m256i sums = _mm256_setzero_si256();
    for (long i = first; i <= last; i += 8) {
      const __m256i x = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(q + k + i));
      const __m256i y = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(negative + i));
      sums = _mm256_add_epi64(sums, _mm256_mul_epu32(x, y));
      sums = _mm256_add_epi64(sums, _mm256_mul_epu32(_mm256_srli_epi64(x, 32), _mm256_srli_epi64(y, 32)));
    }
    const __m128i half = _mm_add_epi64(_mm256_castsi256_si128(sums), _mm256_extracti128_si256(sums, 1));
    const __m128i all = _mm_add_epi64(half, _mm_unpackhi_epi64(half, half));
    return sum + static_cast<std::uint64_t>(_mm_cvtsi128_si64(all));
  };
  quotientInPairs(ring, q, n, negative, db, sumFrom);
}

void shortQuotient(const HardwareRing& ring, Word* q, const Word* top, long n, const Word* negative, long db,
                   Word inverse) {
  auto sumFrom = [&](long k, long first) {
    std::uint64_t sum = std::uint64_t{top[k]} * inverse;
    // The coefficient that was found last comes last.
    for (long i = n - 1 - k < db ? n - 1 - k : db; i >= first; --i) sum += std::uint64_t{q[k + i]} * negative[i];
    return sum;
  };
  quotientInPairs(ring, q, n, negative, db, sumFrom);
}

namespace {

// Two products and a residue are below 2^32 for every hardware modulus.
static_assert(std::uint64_t{2} * largestRawModulus * largestRawModulus + largestRawModulus < (std::uint64_t{1} << 32));

KOREL_VECTOR void addTwoMultiplesByVectors(const HardwareRing& ring, Word* a, const Word* b, long n, Word c1, Word c0) {
  const __m256i m = _mm256_set1_epi32(static_cast<int>(ring.m));
  const __m256i inverse = _mm256_set1_epi32(static_cast<int>(ring.inverse >> 32));
  const __m256i f1 = _mm256_set1_epi32(static_cast<int>(c1)), f0 = _mm256_set1_epi32(static_cast<int>(c0));
  long i = 1;
  for (; i + 8 <= n; i += 8) {
    __m256i below = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(b + i - 1));
    __m256i here = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(b + i));
    __m256i sum = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(a + i));
    sum = _mm256_add_epi32(sum, _mm256_add_epi32(_mm256_mullo_epi32(below, f1), _mm256_mullo_epi32(here, f0)));
    // The quotient by the reciprocal is at most 1 too small.
    __m256i even = _mm256_srli_epi64(_mm256_mul_epu32(sum, inverse), 32);
    __m256i odd = _mm256_mul_epu32(_mm256_srli_epi64(sum, 32), inverse);
    __m256i quotient = _mm256_blend_epi32(even, odd, 0xaa);
    __m256i rest = _mm256_sub_epi32(sum, _mm256_mullo_epi32(quotient, m));
    rest = _mm256_min_epu32(rest, _mm256_sub_epi32(rest, m));
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(a + i), rest);
  }
  for (; i < n; ++i) a[i] = ring.reduced(a[i] + std::uint64_t{c1} * b[i - 1] + std::uint64_t{c0} * b[i]);
}

}  // namespace

void addTwoMultiples(const HardwareRing& ring, Word* a, const Word* b, long n, Word c1, Word c0) {
  if (n <= 0) return;
  a[0] = ring.reduced(a[0] + std::uint64_t{c0} * b[0]);
  if (hasVectorInstructions()) return addTwoMultiplesByVectors(ring, a, b, n, c1, c0);
  for (long i = 1; i < n; ++i) a[i] = ring.reduced(a[i] + std::uint64_t{c1} * b[i - 1] + std::uint64_t{c0} * b[i]);
}

namespace {

KOREL_VECTOR void combineByVectors(const HardwareRing& ring, Word* a, const Word* b, long n, Word c2, Word c1,
                                   Word c0) {
  const __m256i m = _mm256_set1_epi64x(ring.m);
  const __m256d inverse = _mm256_set1_pd(ring.reciprocal);
  const __m256i f2 = _mm256_set1_epi32(static_cast<int>(c2)), f1 = _mm256_set1_epi32(static_cast<int>(c1)),
                f0 = _mm256_set1_epi32(static_cast<int>(c0));
  auto sum = [&](__m256i own, __m256i below, __m256i here) KOREL_VECTOR {
    const __m256i ofB = _mm256_add_epi64(_mm256_mul_epu32(below, f1), _mm256_mul_epu32(here, f0));
    return reducedSums(_mm256_add_epi64(_mm256_mul_epu32(own, f2), ofB), inverse, m);
  };
  long i = 1;
  for (; i + 8 <= n; i += 8) {
    const __m256i own = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(a + i));
    const __m256i below = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(b + i - 1));
    const __m256i here = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(b + i));
    const __m256i even = sum(own, below, here);
    const __m256i odd = sum(_mm256_srli_epi64(own, 32), _mm256_srli_epi64(below, 32), _mm256_srli_epi64(here, 32));
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(a + i), _mm256_or_si256(even, _mm256_slli_epi64(odd, 32)));
  }
  for (; i < n; ++i)
    a[i] = ring.reduced(std::uint64_t{c2} * a[i] + std::uint64_t{c1} * b[i - 1] + std::uint64_t{c0} * b[i]);
}

}  // namespace

void addTwoMultiplesToMultiple(const HardwareRing& ring, Word* a, const Word* b, long n, Word c2, Word c1, Word c0) {
  if (n <= 0) return;
  a[0] = ring.reduced(std::uint64_t{c2} * a[0] + std::uint64_t{c0} * b[0]);
  if (hasVectorInstructions()) return combineByVectors(ring, a, b, n, c2, c1, c0);
  for (long i = 1; i < n; ++i)
    a[i] = ring.reduced(std::uint64_t{c2} * a[i] + std::uint64_t{c1} * b[i - 1] + std::uint64_t{c0} * b[i]);
}

}  // namespace korel
