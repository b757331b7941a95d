#pragma once
// Hash tables as objects: HASHTAB of chains, HASH of (key, value) pairs.
//
// One design serves the name and string tables, the table of simplified objects, TABLE entries and
// remember tables. A chain always keeps its last pair empty, so that a scan for a key needs no length
// test; a key is never 0. Chains may hold a key more than once: `hashinsert` never tests.
//
// A table never changes its number of buckets, since others may refer to it. A chain grows by about a fifth, its
// pairs stand in the order in which they came, and the last takes the place of one that is removed. The keys of a
// long chain are found by an index beside the heap (table_index.h).
//
// Searches answer with the address of a pair, [0] the key and [1] the value, or `notFound`.

#include <string_view>

#include "store/dag.h"
#include "store/table_index.h"

namespace korel {

/// The address of a pair inside a chain; `notFound` stands for absence throughout.
using PairAddress = Word;
constexpr PairAddress notFound = 2;

inline DAG& pairKey(PairAddress pair) { return *reinterpret_cast<DAG*>(static_cast<std::uintptr_t>(pair)); }
inline DAG& pairValue(PairAddress pair) { return (&pairKey(pair))[1]; }
inline PairAddress nextPair(PairAddress pair) { return pair + 8; }

/// Bucket of key `k` in a table of length `length`: 1 to length - 1.
inline Word bucketIndex(Word k, Word length) {
  return ((k + static_cast<Word>(static_cast<std::int32_t>(k) >> 4)) & (length - 2)) + 1;
}

// ---- chains

inline PairAddress firstPair(DAG chain) { return chain.word + 4; }
inline PairAddress pairAt(DAG chain, Word place) { return chain.word + 4 * place; }

/// The first pair with key `k`, or the free one behind all pairs, of the chain in a bucket of `table`.
inline PairAddress searchBucket(Word k, DAG table, Word bucket) {
  DAG chain = table[bucket];
  if (isLongChain(chain)) return pairAt(chain, placeOfKey(table, bucket, k));
  // The empty last pair ends the scan: no length test (bench/store_bench.cpp).
  PairAddress pair = firstPair(chain);
  while (pairKey(pair).word != k && pairKey(pair).word != 0) pair = nextPair(pair);
  return pair;
}
/// Calls `visit(pair)` on each pair in use until it answers false; true when it never did.
template <class Visit>
inline bool visitChain(DAG chain, Visit visit) {
  for (PairAddress pair = firstPair(chain); pairKey(pair).word != 0; pair = nextPair(pair))
    if (!visit(pair)) return false;
  return true;
}
/// Takes out each pair that `isDead(pair)` names: the last pair moves to its place. Gives the number of those that
/// are left. The table's index, if it may have one, is the caller's to drop.
template <class IsDead>
inline Word dropPairs(DAG chain, IsDead isDead) {
  PairAddress end = firstPair(chain);
  while (pairKey(end).word != 0) end = nextPair(end);
  for (PairAddress pair = firstPair(chain); pair != end;) {
    if (!isDead(pair)) {
      pair = nextPair(pair);
      continue;
    }
    end -= nextPair(0);
    pairKey(pair) = pairKey(end);
    pairValue(pair) = pairValue(end);
    pairKey(end) = pairValue(end) = DAG();
  }
  return (end - firstPair(chain)) / nextPair(0);
}

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
  const Word bucket = bucketIndex(k, lengthOf(table));
  if (!table[bucket]) return notFound;
  PairAddress pair = searchBucket(k, table, bucket);
  return pairKey(pair).word == 0 ? notFound : pair;
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

/// The hash is a polynomial in this factor: h = x + 1027*h for each character of a text, or field of most objects.
constexpr Word hashFactor = 1027;
/// Hash of a text without zeros; never 0.
Word hashstring(std::string_view text);
/// Hash of an object's content, by its tag; never 0. SUM and PROD hash as multisets of pairs.
Word hashalg(DAG s);

}  // namespace korel
