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

}  // namespace korel
