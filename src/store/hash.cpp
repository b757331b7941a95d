#include "store/hash.h"

#include <array>
#include <cstring>

#include "store/object_fields.h"
#include "store/objects.h"

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace korel {

namespace {

constexpr Word newChainLength = 7;  // three pairs, the last of them always empty

DAG newChain(Word k, DAG value, DAG table) {
  DAG chain = newl4(newChainLength, HASH, DAG(k), value);
  controlWord(chain) |= controlWord(table) & tableBit;
  return chain;
}

// Calls `visit(pair)` on each pair of each chain until it answers false.
template <class Visit>
bool visitPairs(DAG table, Visit visit) {
  for (Word b = 1, n = lengthOf(table); b < n; ++b)
    if (table[b] && !visitChain(table[b], visit)) return false;
  return true;
}

// By about a fifth, and at least by five pairs.
void growChain(DAG table, Word bucket) {
  DAG& chain = table[bucket];
  const bool wasLong = isLongChain(chain);
  chain = enlarge(chain, 2 * (lengthOf(chain) / 10) + 10);
  controlWord(chain) |= controlWord(table) & tableBit;
  if (!wasLong && isLongChain(chain)) indexChain(table, bucket);
}

bool isNextToLastInUse(DAG table, Word bucket) {
  const DAG chain = table[bucket];
  const Word nextToLast = lengthOf(chain) - 4;
  // The index spares a look at a far line (bench/collections.sh, "table stores").
  return isLongChain(chain) ? placeOfEnd(table, bucket) > nextToLast : rawField(chain, nextToLast) != 0;
}

// The first free pair.
PairAddress chainEnd(DAG table, Word bucket) {
  const DAG chain = table[bucket];
  if (isLongChain(chain)) return pairAt(chain, placeOfEnd(table, bucket));
  PairAddress pair = firstPair(chain);
  while (pairKey(pair).word != 0) pair = nextPair(pair);
  return pair;
}

PairAddress insertPair(Word k, DAG value, DAG table, bool replace) {
  const Word bucket = bucketIndex(k, lengthOf(table));
  DAG& chain = table[bucket];
  if (!chain) {
    chain = newChain(k, value, table);
    return firstPair(chain);
  }
  // Scanning needs no test for the end as long as the last pair is empty.
  if (isNextToLastInUse(table, bucket)) growChain(table, bucket);
  PairAddress pair;
  if (!isLongChain(chain)) {
    pair = replace ? searchBucket(k, table, bucket) : chainEnd(table, bucket);
  } else if (replace) {
    pair = pairAt(chain, placeForKey(table, bucket, k));
  } else {
    pair = chainEnd(table, bucket);
    indexNewPair(table, bucket, k);
  }
  pairKey(pair) = DAG(k);
  pairValue(pair) = value;
  return pair;
}

bool holdsPair(DAG table, Word bucket, DAG key, DAG value) {
  if (!table[bucket]) return false;
  for (PairAddress pair = searchBucket(key.word, table, bucket); pairKey(pair).word != 0; pair = nextPair(pair))
    if (pairKey(pair) == key && pairValue(pair) == value) return true;
  return false;
}

// Whether each pair in the bucket of `a` stands in that of `b`.
bool bucketWithin(DAG a, DAG b, Word bucket) {
  return !a[bucket] ||
         visitChain(a[bucket], [=](PairAddress pair) { return holdsPair(b, bucket, pairKey(pair), pairValue(pair)); });
}

}  // namespace

DAG newhashtab(Word buckets) { return newl2(buckets + 1, HASHTAB); }

DAG copyhashtab(DAG table) {
  DAG copied = CopyAlg(table);
  for (Word b = 1; b < lengthOf(copied); ++b)
    if (copied[b]) copied[b] = CopyAlg(copied[b]);
  return copied;
}

DAG widenedhashtab(DAG table, Word buckets) {
  DAG wider = newhashtab(buckets);
  controlWord(wider) |= controlWord(table) & tableBit;
  for (Word b = 1, n = lengthOf(table); b < n; ++b) {
    DAG chain = table[b];
    if (!chain) continue;
    visitChain(chain,
               [wider](PairAddress pair) { return hashinsert(pairKey(pair).word, pairValue(pair), wider), true; });
    release(chain, lengthOf(chain));
  }
  release(table, lengthOf(table));
  return wider;
}

namespace {
template <class Matches>
PairAddress searchText(Word k, DAG table, Matches matches) {
  PairAddress pair = search(k, table);
  if (pair == notFound) return notFound;
  for (; pairKey(pair).word != 0; pair = nextPair(pair))
    if (pairKey(pair).word == k && matches(textOf(pairValue(pair)))) return pair;
  return notFound;
}
}  // namespace

PairAddress searchstring(Word k, const char* text, DAG table) {
  return searchText(k, table, [text](const char* found) { return std::strcmp(found, text) == 0; });
}
PairAddress searchstringprefix(Word k, const char* text, DAG table) {
  std::size_t n = std::strlen(text);
  return searchText(k, table, [=](const char* found) { return std::strncmp(found, text, n) == 0; });
}

PairAddress hashinsert(Word k, DAG value, DAG table) { return insertPair(k, value, table, false); }

PairAddress hashunique(Word k, DAG value, DAG table) { return insertPair(k, value, table, true); }

namespace {
// The last pair in use moves over `pair`.
void removePair(DAG table, Word bucket, PairAddress pair) {
  const PairAddress last = chainEnd(table, bucket) - nextPair(0);
  const DAG chain = table[bucket];
  if (isLongChain(chain)) indexRemoval(table, bucket, (pair - chain.word) / 4);
  pairKey(pair) = pairKey(last);
  pairValue(pair) = pairValue(last);
  pairKey(last) = pairValue(last) = DAG();
}
}  // namespace

void hashdelete(Word k, DAG table) {
  for (PairAddress pair = search(k, table); pair != notFound; pair = search(k, table))
    removePair(table, bucketIndex(k, lengthOf(table)), pair);
}

DAG hashremove(Word k, DAG table) {
  PairAddress pair = search(k, table);
  if (pair == notFound) return DAG(notFound);
  DAG value = pairValue(pair);
  removePair(table, bucketIndex(k, lengthOf(table)), pair);
  return value;
}

void clearhash(DAG table, bool giveBack) {
  dropIndex(table);
  for (Word b = 1, n = lengthOf(table); b < n; ++b) {
    DAG chain = table[b];
    if (!chain) continue;
    if (giveBack) {
      release(chain, lengthOf(chain));
      table[b] = DAG();
    } else {
      std::memset(static_cast<void*>(&chain[1]), 0, 4 * (std::size_t{lengthOf(chain)} - 1));
    }
  }
}

std::int64_t hashcount(DAG table) {
  std::int64_t count = 0;
  visitPairs(table, [&count](PairAddress) { return ++count, true; });
  return count;
}

DAG hashseq(DAG table) {
  DAG sequence = newl2(static_cast<Word>(hashcount(table) + 1), EXPSEQ);
  Word at = 1;
  visitPairs(table, [&](PairAddress pair) {
    sequence[at++] = new3(EQUATION, pairKey(pair), pairValue(pair));
    return true;
  });
  return sequence;
}

bool hashforeach(DAG table, bool (*f)(void* arg, PairAddress pair), void* arg) {
  return visitPairs(table, [=](PairAddress pair) { return f(arg, pair); });
}

bool hashEqualEntries(DAG a, DAG b) {
  if (lengthOf(a) != lengthOf(b)) return false;
  for (Word i = 1; i < lengthOf(a); ++i)
    if (!bucketWithin(a, b, i) || !bucketWithin(b, a, i)) return false;
  return true;
}

namespace {

constexpr auto hashFactorTo = [] {  // its powers
  std::array<Word, 17> powers{1};
  for (std::size_t n = 1; n < powers.size(); ++n) powers[n] = hashFactor * powers[n - 1];
  return powers;
}();
inline Word signedCharacter(char c) {
  return static_cast<Word>(static_cast<std::int32_t>(static_cast<signed char>(c)));
}

#if defined(__SSE2__)
constexpr std::size_t hashBlock = 16;

// Goes on from `h` over whole blocks of characters. The eight pairs of a block are summed apart, each by the power of
// the factor to 16, so that the products of a block don't wait for each other; what they weigh beside each
// other is told behind the last block (bench/files.sh, lines of a file).
Word hashBlocks(Word h, const char* text, std::size_t blocks) {
  const __m128i pairOfFactors = _mm_set1_epi32(0x00010000 | static_cast<int>(hashFactor));  // 1027*first + second
  const __m128i step = _mm_set1_epi32(static_cast<int>(hashFactorTo[16]));
  // In each the low half of two 64-bit lanes: of the pairs 0 to 7 of a block, those that the name tells.
  __m128i pairs02 = _mm_setzero_si128(), pairs13 = pairs02, pairs46 = pairs02;
  __m128i pairs57 = _mm_set_epi64x(static_cast<long long>(h), 0);
  for (; blocks > 0; --blocks, text += hashBlock) {
    const __m128i c = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text));
    auto sums = [=](__m128i doubled) { return _mm_madd_epi16(_mm_srai_epi16(doubled, 8), pairOfFactors); };
    const __m128i low = sums(_mm_unpacklo_epi8(c, c)), high = sums(_mm_unpackhi_epi8(c, c));
    pairs02 = _mm_add_epi64(_mm_mul_epu32(pairs02, step), low);
    pairs13 = _mm_add_epi64(_mm_mul_epu32(pairs13, step), _mm_srli_epi64(low, 32));
    pairs46 = _mm_add_epi64(_mm_mul_epu32(pairs46, step), high);
    pairs57 = _mm_add_epi64(_mm_mul_epu32(pairs57, step), _mm_srli_epi64(high, 32));
  }
  auto weighed = [](__m128i sums, int first, int second) {
    return _mm_mul_epu32(sums, _mm_set_epi64x(hashFactorTo[second], hashFactorTo[first]));
  };
  __m128i sum = _mm_add_epi64(_mm_add_epi64(weighed(pairs02, 14, 10), weighed(pairs13, 12, 8)),
                              _mm_add_epi64(weighed(pairs46, 6, 2), weighed(pairs57, 4, 0)));
  sum = _mm_add_epi64(sum, _mm_unpackhi_epi64(sum, sum));
  return static_cast<Word>(_mm_cvtsi128_si32(sum));
}
#endif

}  // namespace

Word hashstring(std::string_view text) {
  const char* at = text.data();
  std::size_t n = text.size();
  Word h = 1;
#if defined(__SSE2__)
  if (n >= hashBlock) {
    h = hashBlocks(h, at, n / hashBlock);
    at += n / hashBlock * hashBlock;
    n %= hashBlock;
  }
#endif
  // Four characters a step: the products of a step wait for each other only once.
  for (; n >= 4; n -= 4, at += 4)
    h = hashFactorTo[4] * h + (hashFactorTo[3] * signedCharacter(at[0]) + hashFactorTo[2] * signedCharacter(at[1]) +
                               hashFactor * signedCharacter(at[2]) + signedCharacter(at[3]));
  for (; n > 0; --n, ++at) h = signedCharacter(*at) + hashFactor * h;
  return h == 0 ? 1 : h;
}

Word hashalg(DAG s) {
  Tag tag = tagOf(s);
  Word n = lengthOf(s);
  Word h = 0;
  auto mix = [&h](DAG x) { h = x.word + hashFactor * h; };
  switch (tag) {
    case NAME: return s.word;
    case PROC:
      h = bodyOf(s).word;
      mix(rememberOf(s));
      mix(optionsOf(s));
      break;
    case MODDEF:
      h = s[moddefName].word;
      mix(bodyOf(s));
      mix(exportsOf(s));
      mix(optionsOf(s));
      break;
    case SUM: case PROD:
      h = static_cast<Word>(tagNumber(tag));
      if (n >= 4) {
        // Each pair is hashed alone and the hashes added: the order of the pairs does not matter.
        for (Word i = 1; i < n; i += 2) {
          Word p = s[i + 1].word + hashFactor * s[i].word;
          Word q = p + static_cast<Word>(static_cast<std::int32_t>(p) >> 4);
          h += q * (2 * q + 1);
        }
      } else {
        for (Word i = 1; i < n; ++i) mix(s[i]);
      }
      break;
    default: {
      h = static_cast<Word>(tagNumber(tag));
      // Four fields at a time: the same number, but only one product in four waits for the one before.
      constexpr Word f = hashFactor, f2 = f * f, f3 = f2 * f, f4 = f3 * f;
      Word i = 1;
      for (; i + 4 <= n; i += 4)
        h = f4 * h + (f3 * s[i].word + f2 * s[i + 1].word + (f * s[i + 2].word + s[i + 3].word));
      for (; i < n; ++i) mix(s[i]);
      break;
    }
  }
  return h == 0 ? 1 : h;
}

}  // namespace korel
