#pragma once
// Hash tables as objects: HASHTAB of chains, HASH of (key, value) pairs.
//
// One design serves the name and string tables, the table of simplified objects, TABLE entries and
// remember tables. A chain always keeps its last pair empty, so that a scan for a key needs no length
// test; a key is never 0. Chains may hold a key more than once: `hashinsert` never tests.
//
// A table never changes its number of buckets, since others may refer to it. A chain that grows long
// becomes flat instead: its pairs stand at places of their own, found by another hash of the key, with
// free places between them (open addressing, linear probing). So a table of a million entries answers
// as fast as one of a hundred. A scan still ends at a free place, it only begins elsewhere. Tables with
// raw keys keep to plain chains.
//
// Searches answer with the address of a pair, [0] the key and [1] the value, or `notFound`.

#include "store/dag.h"

namespace korel {

/// The address of a pair inside a chain; `notFound` stands for absence throughout.
using PairAddress = Word;
constexpr PairAddress notFound = 2;

inline DAG& pairKey(PairAddress pair) {
  return *reinterpret_cast<DAG*>(static_cast<std::uintptr_t>(pair));
}
inline DAG& pairValue(PairAddress pair) { return (&pairKey(pair))[1]; }
inline PairAddress nextPair(PairAddress pair) { return pair + 8; }

/// Bucket of key `k` in a table of length `length`: 1 to length - 1.
inline Word bucketIndex(Word k, Word length) {
  return ((k + static_cast<Word>(static_cast<std::int32_t>(k) >> 4)) & (length - 2)) + 1;
}

// ---- flat chains

/// Length of the shortest flat chain; no plain one of the same sort is as long.
constexpr Word flatLength = 321;
inline bool isFlat(DAG chain) {
  return lengthOf(chain) >= flatLength && (controlWord(chain) & tableBit) == 0;
}
/// The pair that stays empty at the end of a chain. In a flat one its value counts the pairs in use.
inline PairAddress lastPair(DAG chain) { return chain.word + 4 * (lengthOf(chain) - 2); }
/// Where the scan for key `k` begins in a flat chain: in its first seven eighths, so that a run of pairs
/// finds room behind. Eight keys in a row have neighbouring homes, since that is how arrays are walked;
/// the multiplier spreads such groups over the chain (Knuth, vol. 3, 6.4).
inline PairAddress homeOf(Word k, DAG chain) {
  Word h = (k + static_cast<Word>(static_cast<std::int32_t>(k) >> 4)) >> 8;
  Word groups = lengthOf(chain) / 16;
  Word group = static_cast<Word>((std::uint64_t{(h >> 3) * 2654435769u} * (groups - groups / 8)) >> 32);
  return chain.word + 4 + 64 * group + 8 * (h & 7);
}
/// Where the scan for key `k` begins.
inline PairAddress firstProbe(Word k, DAG chain) {
  return isFlat(chain) ? homeOf(k, chain) : chain.word + 4;
}
/// Calls `visit(pair)` on each pair in use until it answers false; true when it never did.
template <class Visit>
inline bool visitChain(DAG chain, Visit visit) {
  const bool flat = isFlat(chain);
  const PairAddress end = lastPair(chain);
  for (PairAddress pair = chain.word + 4; pair < end; pair = nextPair(pair)) {
    if (pairKey(pair).word != 0) {
      if (!visit(pair)) return false;
    } else if (!flat) {
      break;
    }
  }
  return true;
}
/// Takes `pair` out of its chain; another pair may move to its place.
void removePair(DAG chain, PairAddress pair);

// ---- tables

/// A table of `buckets` (a power of 2) empty chains.
DAG newhashtab(Word buckets);
/// Copy of the table and its chains; keys and values are shared. The raw-key bit is not carried over.
DAG copyhashtab(DAG table);

/// A table of `buckets` chains with the pairs of `table`, which is given back. Tables whose chains grow
/// long are replaced by it: whoever walks a table while statements run walks a copy.
DAG widenedhashtab(DAG table, Word buckets);
/// True when the chains of a table with `pairs` pairs hold more than `perBucket` of them on average.
inline bool isCrowded(DAG table, std::int64_t pairs, Word perBucket) {
  constexpr Word mostBuckets = Word{1} << 22;
  Word buckets = lengthOf(table) - 1;
  return pairs > std::int64_t{perBucket} * buckets && buckets < mostBuckets;
}

/// First pair with key `k`; with collisions the caller walks on by `nextPair`.
inline PairAddress search(Word k, DAG table) {
  DAG chain = table[bucketIndex(k, lengthOf(table))];
  if (!chain) return notFound;
  // The empty last pair ends the scan: no length test (bench/store_bench.cpp).
  for (PairAddress pair = firstProbe(k, chain);; pair = nextPair(pair)) {
    Word key = pairKey(pair).word;
    if (key == k) return k == 0 ? notFound : pair;
    if (key == 0) return notFound;
  }
}
/// The pair with key `k` whose value has exactly these characters.
PairAddress searchstring(Word k, const char* text, DAG table);
/// The same with a comparison of the first strlen(text) characters.
PairAddress searchstringprefix(Word k, const char* text, DAG table);

/// Adds a pair without testing for the key; gives its address.
PairAddress hashinsert(Word k, DAG value, DAG table);
/// One pair per key: an existing pair gets the new value.
PairAddress hashunique(Word k, DAG value, DAG table);
/// Removes every pair with key `k`.
void hashdelete(Word k, DAG table);
/// Removes the first pair with key `k`; its value, or the word 2.
DAG hashremove(Word k, DAG table);
/// Empties the table: `giveBack` releases the chains, otherwise they stay, emptied.
void clearhash(DAG table, bool giveBack);
/// Number of pairs in use.
std::int64_t hashcount(DAG table);
/// EXPSEQ of an EQUATION `key = value` for each pair, in bucket then chain order.
DAG hashseq(DAG table);
/// Calls `f(arg, pair)` for each pair until it answers false; true when none did.
bool hashforeach(DAG table, bool (*f)(void* arg, PairAddress pair), void* arg);
/// True when both have the same length and each bucket holds the same pairs as a set.
bool hashEqualEntries(DAG a, DAG b);

/// Hash of a text; never 0.
Word hashstring(const char* text);
/// Hash of an object's content, by its tag; never 0. SUM and PROD hash as multisets of pairs.
Word hashalg(DAG s);

}  // namespace korel
