#include "store/hash.h"

#include <cstring>

#include "store/object_fields.h"
#include "store/objects.h"

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

Word hashstring(const char* text) {
  // Four characters a step: the products of a step wait for each other only once (bench/files.sh, lines of a file).
  constexpr Word factor = 1027, factor2 = factor * factor, factor3 = factor2 * factor, factor4 = factor3 * factor;
  auto value = [](char c) { return static_cast<Word>(static_cast<std::int32_t>(static_cast<signed char>(c))); };
  Word h = 1;
  for (; text[0] != 0 && text[1] != 0 && text[2] != 0 && text[3] != 0; text += 4)
    h = factor4 * h + (factor3 * value(text[0]) + factor2 * value(text[1]) + factor * value(text[2]) + value(text[3]));
  for (; *text != 0; ++text) h = value(*text) + factor * h;
  return h == 0 ? 1 : h;
}

Word hashalg(DAG s) {
  Tag tag = tagOf(s);
  Word n = lengthOf(s);
  Word h = 0;
  auto mix = [&h](DAG x) { h = x.word + 1027 * h; };
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
          Word p = s[i + 1].word + 1027 * s[i].word;
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
      constexpr Word f = 1027, f2 = f * f, f3 = f2 * f, f4 = f3 * f;
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
