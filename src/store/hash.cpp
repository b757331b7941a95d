#include "store/hash.h"

#include <cstring>

#include "store/objects.h"

namespace korel {

namespace {

constexpr Word newChainLength = 7;  // three pairs, the last of them always empty
// A plain chain of this length becomes flat; up to it, a scan stays within a few cache lines.
constexpr Word longChainLength = 61;
constexpr Word labelMask = ~((Word{1} << generationShift) - 1);

DAG& chainOf(Word k, DAG table) { return table[bucketIndex(k, lengthOf(table))]; }
PairAddress firstPair(DAG chain) { return chain.word + 4; }

// The first free place for key `k`; with `replace`, or the place of that key.
PairAddress placeFor(Word k, DAG chain, bool replace) {
  PairAddress pair = firstProbe(k, chain);
  while (pairKey(pair).word != 0 && !(replace && pairKey(pair).word == k)) pair = nextPair(pair);
  return pair;
}

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

// ---- room for more pairs

// How many pairs a flat chain holds.
Word flatCount(DAG chain) { return static_cast<Word>(immediateValue(pairValue(lastPair(chain)))); }
void setFlatCount(DAG chain, Word count) {
  pairValue(lastPair(chain)) = immediate(static_cast<std::int32_t>(count));
}

// The pairs of `chain`, which is given back, in a flat chain with places for `pairs`.
DAG flattened(DAG chain, Word pairs) {
  for (;; pairs *= 2) {
    if (pairs >= (maxLength >> 1)) pairs = (maxLength >> 1) - 1;
    DAG flat = newl2(2 * pairs + 1, HASH);
    controlWord(flat) = (controlWord(chain) & labelMask) | (controlWord(chain) & protectedBit);
    Word count = 0;
    bool fits = visitChain(chain, [flat, &count](PairAddress pair) {
      PairAddress place = placeFor(pairKey(pair).word, flat, false);
      if (place == lastPair(flat)) return false;
      ++count;
      pairKey(place) = pairKey(pair);
      pairValue(place) = pairValue(pair);
      return true;
    });
    if (fits) {
      setFlatCount(flat, count);
      release(chain, lengthOf(chain));
      return flat;
    }
    // Many keys with one home: a larger chain has a longer end.
    release(flat, lengthOf(flat));
  }
}

// A plain chain grows by about a fifth, and at least by five pairs.
void growChain(DAG& chain, DAG table) {
  const bool rawKeys = (controlWord(table) & tableBit) != 0;
  if (!rawKeys && lengthOf(chain) >= longChainLength) {
    chain = flattened(chain, (flatLength - 1) / 2);
    return;
  }
  chain = enlarge(chain, 2 * (lengthOf(chain) / 10) + 10);
  controlWord(chain) |= controlWord(table) & tableBit;
}

// Puts a pair into a flat chain. At most half of the places are in use, lest scans grow long, and never
// the last, where they end.
PairAddress insertFlat(Word k, DAG value, DAG& chain, bool replace) {
  for (;;) {
    PairAddress place = placeFor(k, chain, replace);
    const bool isNew = pairKey(place).word == 0;
    const Word count = flatCount(chain), pairs = (lengthOf(chain) - 1) / 2;
    if (!isNew || (place != lastPair(chain) && 2 * count < pairs)) {
      if (isNew) setFlatCount(chain, count + 1);
      pairKey(place) = DAG(k);
      pairValue(place) = value;
      return place;
    }
    chain = flattened(chain, 2 * pairs);
  }
}

PairAddress insertPair(Word k, DAG value, DAG table, bool replace) {
  DAG& chain = chainOf(k, table);
  if (!chain) {
    chain = newChain(k, value, table);
    return firstPair(chain);
  }
  // Scanning needs no test for the end as long as the last pair is empty.
  if (!isFlat(chain) && chain[static_cast<std::int64_t>(lengthOf(chain)) - 4].word != 0)
    growChain(chain, table);
  if (isFlat(chain)) return insertFlat(k, value, chain, replace);
  PairAddress pair = placeFor(k, chain, replace);
  pairKey(pair) = DAG(k);
  pairValue(pair) = value;
  return pair;
}

bool holdsPair(DAG chain, DAG key, DAG value) {
  if (!chain) return false;
  for (PairAddress pair = firstProbe(key.word, chain); pairKey(pair).word != 0; pair = nextPair(pair))
    if (pairKey(pair) == key && pairValue(pair) == value) return true;
  return false;
}

bool chainWithin(DAG a, DAG b) {
  return !a || visitChain(a, [b](PairAddress pair) { return holdsPair(b, pairKey(pair), pairValue(pair)); });
}

}  // namespace

DAG newhashtab(Word buckets) { return newl2(buckets + 1, HASHTAB); }

DAG copyhashtab(DAG table) {
  DAG copied = CopyAlg(table);
  for (Word b = 1; b < lengthOf(copied); ++b) {
    DAG chain = copied[b];
    if (!chain) continue;
    const bool wasFlat = isFlat(chain);
    chain = CopyAlg(chain);
    // Without the bit of raw keys a long plain chain would pass for a flat one.
    if (isFlat(chain) && !wasFlat) {
      controlWord(chain) |= tableBit;
      chain = flattened(chain, lengthOf(chain));
    }
    copied[b] = chain;
  }
  return copied;
}

DAG widenedhashtab(DAG table, Word buckets) {
  DAG wider = newhashtab(buckets);
  controlWord(wider) |= controlWord(table) & tableBit;
  for (Word b = 1, n = lengthOf(table); b < n; ++b) {
    DAG chain = table[b];
    if (!chain) continue;
    visitChain(chain, [wider](PairAddress pair) {
      return hashinsert(pairKey(pair).word, pairValue(pair), wider), true;
    });
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

void removePair(DAG chain, PairAddress pair) {
  PairAddress hole = pair;
  if (isFlat(chain)) {
    setFlatCount(chain, flatCount(chain) - 1);
    // Later pairs of the run move up as far as their homes allow (Knuth, vol. 3, 6.4, algorithm R).
    for (PairAddress next = nextPair(hole); pairKey(next).word != 0; next = nextPair(next)) {
      if (homeOf(pairKey(next).word, chain) > hole) continue;
      pairKey(hole) = pairKey(next);
      pairValue(hole) = pairValue(next);
      hole = next;
    }
  } else {
    // The last pair in use moves over `pair`.
    while (pairKey(nextPair(hole)).word != 0) hole = nextPair(hole);
    pairKey(pair) = pairKey(hole);
    pairValue(pair) = pairValue(hole);
  }
  pairKey(hole) = DAG();
  pairValue(hole) = DAG();
}

void hashdelete(Word k, DAG table) {
  for (PairAddress pair = search(k, table); pair != notFound; pair = search(k, table))
    removePair(chainOf(k, table), pair);
}

DAG hashremove(Word k, DAG table) {
  PairAddress pair = search(k, table);
  if (pair == notFound) return DAG(notFound);
  DAG value = pairValue(pair);
  removePair(chainOf(k, table), pair);
  return value;
}

void clearhash(DAG table, bool giveBack) {
  for (Word b = 1, n = lengthOf(table); b < n; ++b) {
    DAG chain = table[b];
    if (!chain) continue;
    if (giveBack) {
      release(chain, lengthOf(chain));
      table[b] = DAG();
    } else {
      std::memset(static_cast<void*>(&chain[1]), 0, 4 * (std::size_t{lengthOf(chain)} - 1));
      if (isFlat(chain)) setFlatCount(chain, 0);
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
    if (!chainWithin(a[i], b[i]) || !chainWithin(b[i], a[i])) return false;
  return true;
}

Word hashstring(const char* text) {
  Word h = 1;
  for (; *text != 0; ++text)
    h = static_cast<Word>(static_cast<std::int32_t>(static_cast<signed char>(*text))) + 1027 * h;
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
      h = s[5].word;
      mix(s[4]);
      mix(s[3]);
      break;
    case MODDEF:
      h = s[9].word;
      mix(s[5]);
      mix(s[4]);
      mix(s[3]);
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
    default:
      h = static_cast<Word>(tagNumber(tag));
      for (Word i = 1; i < n; ++i) mix(s[i]);
      break;
  }
  return h == 0 ? 1 : h;
}

}  // namespace korel
