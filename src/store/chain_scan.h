#pragma once
// The scan of a chain for a key, a cache line at a time.
//
// Each object that is simplified and each string that is made costs one such scan, of a chain that is rarely in
// the nearest cache. Where in the line the key stands is not to be foreseen: a loop over the pairs would leave
// it by a mispredicted branch, and the processor could not go on while the line is under way
// (bench/programs/sequences.krl).

#include <cstdint>

#include "store/address_range.h"
#include "store/hash.h"

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace korel {

/// The first pair from `pair` on whose key is `key`, or the empty one that ends the chain.
/// The line that holds the end is read beyond it.
inline PairAddress scanChain(PairAddress pair, Word key) {
#if defined(__SSE2__)
  const __m128i wanted = _mm_set1_epi32(static_cast<int>(key)), none = _mm_setzero_si128();
  constexpr Word line = 64;
  static_assert(line <= readableBehind);
  for (;; pair += line) {
    const auto* words = reinterpret_cast<const float*>(std::uintptr_t{pair});
    // All bits of the lanes whose keys stop the scan, of the pairs i to i + 3.
    auto stops = [=](int i) {
      const __m128 low = _mm_loadu_ps(words + 2 * i), high = _mm_loadu_ps(words + 2 * i + 4);
      const __m128i keys = _mm_castps_si128(_mm_shuffle_ps(low, high, _MM_SHUFFLE(2, 0, 2, 0)));
      return _mm_or_si128(_mm_cmpeq_epi32(keys, wanted), _mm_cmpeq_epi32(keys, none));
    };
    const __m128i bytes = _mm_packs_epi16(_mm_packs_epi32(stops(0), stops(4)), none);
    const auto mask = static_cast<unsigned>(_mm_movemask_epi8(bytes));
    if (mask != 0) return pair + 8 * static_cast<Word>(__builtin_ctz(mask));
  }
#else
  while (pairKey(pair).word != key && pairKey(pair).word != 0) pair = nextPair(pair);
  return pair;
#endif
}

/// The first pair of `chain` with this key and a value that `matches`, since different values may share
/// a key; else the empty pair that ends the chain.
template <class Matches>
inline PairAddress findInChain(DAG chain, Word key, Matches matches) {
  PairAddress pair = scanChain(chain.word + 4, key);
  while (pairKey(pair).word != 0 && !matches(pairValue(pair))) pair = scanChain(nextPair(pair), key);
  return pair;
}

}  // namespace korel
