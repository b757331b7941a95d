#include "eval/simplify/unique_pairs.h"

#include "eval/simplify/simplify.h"
#include "store/chain_scan.h"
#include "store/generations.h"
#include "store/hash.h"
#include "store/word_map.h"

namespace korel {

namespace {

// The key that `hashalg` gives the object.
Word keyOf(Tag tag, const Pair* pairs, Word count) {
  Word h = static_cast<Word>(tagNumber(tag));
  if (count == 1) {
    h = pairs[0].coefficient.word + 1027 * (pairs[0].term.word + 1027 * h);
  } else {
    for (Word i = 0; i < count; ++i) {
      Word p = pairs[i].coefficient.word + 1027 * pairs[i].term.word;
      Word q = p + static_cast<Word>(static_cast<std::int32_t>(p) >> 4);
      h += q * (2 * q + 1);
    }
  }
  return h == 0 ? 1 : h;
}

bool samePair(const Pair& a, const Pair& b) { return a.term == b.term && a.coefficient == b.coefficient; }

// Terms differ from each other on both sides, and the counts agree: each pair must only be found.
bool hasPairs(DAG member, const Pair* pairs, Word count) {
  const Pair* own = pairsOf(member);
  Word i = 0;
  while (i < count && samePair(own[i], pairs[i])) ++i;
  for (const Word differing = i; i < count; ++i) {
    Word k = differing;
    while (k < count && !samePair(own[k], pairs[i])) ++k;
    if (k == count) return false;
  }
  return true;
}

// Below, comparing with all words before costs less than the table.
constexpr Word lookUpFrom = 16;

// False when there is no room for the table; `firsts` is then half filled.
bool lookUpFirsts(const DAG* words, Word count, Word step, DAG firsts) {
  WordMap places;
  bool fits = true;
  for (Word i = 0; fits && i < count; ++i) {
    std::int32_t first = static_cast<std::int32_t>(i), *found;
    if (const DAG word = words[i * step]) switch (places.insert(word.word, first, &found)) {
        case WordMap::added: break;
        case WordMap::present: first = *found; break;
        case WordMap::outOfMemory: fits = false; break;
      }
    firsts[i + 1] = immediate(first);
  }
  places.release();
  return fits;
}

}  // namespace

DAG firstOccurrences(const DAG* words, Word count, Word step) {
  DAG firsts = newl2(count + 1, EXPSEQ);
  if (count >= lookUpFrom && lookUpFirsts(words, count, step, firsts)) return firsts;
  for (Word i = 0; i < count; ++i) {
    Word first = 0;
    while (words[first * step] != words[i * step]) ++first;
    firsts[i + 1] = immediate(static_cast<std::int32_t>(first));
  }
  return firsts;
}

DAG uniquePairs(Tag tag, const Pair* pairs, Word count) {
  const Word key = keyOf(tag, pairs, count), header = tag | (2 * count + 1);
  if (DAG chain = simpltab[bucketIndex(key, lengthOf(simpltab))]) {
    const DAG found = pairValue(findInChain(
        chain, key, [=](DAG member) { return headerWord(member) == header && hasPairs(member, pairs, count); }));
    if (found) {
      updategen(found);
      return found;
    }
  }
  DAG made = news(2 * count + 1);
  headerWord(made) = header;
  for (Word i = 0; i < count; ++i) pairsOf(made)[i] = pairs[i];
  assert(hashalg(made) == key);
  return makeUnique(made);
}

}  // namespace korel
