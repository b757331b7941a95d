#include "store/names.h"

#include <algorithm>
#include <cstring>
#include <vector>

#include "frame/errors.h"
#include "store/chain_scan.h"
#include "store/constants.h"
#include "store/generations.h"
#include "store/objects.h"

namespace korel {

DAG nametab, strtab, simpltab, aliastab, AllIniNames;
std::int64_t simpltabCount = 0, strtabCount = 0;

namespace {

DAG newText(std::string_view text, Tag tag) {
  if (text.size() > longestTextLength) KernelException("object too large");
  const Word n = textLength(text.size());
  DAG s = news(n);
  setHeader(s, tag, n);
  s[1] = DAG();
  s[2] = null;
  s[static_cast<std::int64_t>(n) - 1] = DAG();  // the zero behind the text, and what is left of its word
  // A string of the table is the only one of its text, and so in its final form.
  controlWord(s) |= tag == STRING ? deferredBit | simplifiedBit : deferredBit;
  std::memcpy(textOf(s), text.data(), text.size());
  return s;
}

DAG tableOf(Tag tag) { return tag == NAME ? nametab : strtab; }

// How long a unique object must live when it is found again from a candidate's level.
void outlive(DAG member, DAG candidate) {
  Word wanted = generationOf(candidate);
  if (wanted >= firstMarkLabel || genc[wanted] == 0) wanted = static_cast<Word>(gcgen);
  Word own = generationOf(member);
  if (own < firstMarkLabel && genc[own] != 0 && genc[own] <= genc[wanted]) return;
  constexpr Word flags = (Word{1} << generationShift) - 1;
  controlWord(member) = (wanted << generationShift) | (controlWord(member) & flags);
}

bool isStatementOrProcedure(Tag tag) {
  switch (tag) {
    case PROC: case ASSIGN: case FOR: case IF: case READ: case SAVE: case STATSEQ: case STOP: return true;
    default: return false;
  }
}

// From this many words on the pairs are sorted to compare them.
constexpr Word sortedFromLength = 51;

// The pairs of `s` as numbers in ascending order.
std::vector<std::uint64_t> sortedPairs(DAG s) {
  std::vector<std::uint64_t> pairs;
  pairs.reserve(lengthOf(s) / 2);
  for (Word i = 1, n = lengthOf(s); i < n; i += 2) pairs.push_back(std::uint64_t{s[i].word} << 32 | s[i + 1].word);
  std::sort(pairs.begin(), pairs.end());
  return pairs;
}

// The same pairs in any order. Each pair of `a` must occur in `b` exactly once.
bool samePairs(DAG a, DAG b) {
  Word n = lengthOf(a);
  if (n >= sortedFromLength) return sortedPairs(a) == sortedPairs(b);
  for (Word i = 1; i < n; i += 2) {
    int found = 0;
    for (Word k = 1; k < n; k += 2)
      if (a[i] == b[k] && a[i + 1] == b[k + 1]) ++found;
    if (found != 1) return false;
  }
  return true;
}

// Strings come by the million, and nobody walks their table while it takes one more. Long chains are read line
// by line; more buckets would cost each collection.
inline DAG newTextIn(DAG table, DAG text) {
  constexpr Word stringsPerBucket = 32;
  if (table == strtab && isCrowded(strtab, ++strtabCount, stringsPerBucket)) [[unlikely]]
    strtab = widenedhashtab(strtab, 4 * (lengthOf(strtab) - 1));
  return text;
}

}  // namespace

DAG stringhashunique(Word k, std::string_view text, DAG table) {
  Tag tag = table == nametab ? NAME : STRING;
  DAG& chain = table[bucketIndex(k, lengthOf(table))];
  if (!chain) {
    DAG s = newText(text, tag);
    chain = newl4(7, HASH, DAG(k), s);
    controlWord(chain) |= tableBit;
    return newTextIn(table, s);
  }
  const PairAddress pair = findInChain(chain, k, [text](DAG found) {
    const char* characters = textOf(found);
    return std::strncmp(characters, text.data(), text.size()) == 0 && characters[text.size()] == 0;
  });
  if (DAG found = pairValue(pair)) {
    updategen(found);  // it may have been on its way out
    return found;
  }
  DAG s = newText(text, tag);
  pairKey(pair) = DAG(k);
  pairValue(pair) = s;
  // The last pair has been used: an empty one must follow.
  if (pair + 8 == chain.word + 4 * lengthOf(chain)) {
    chain = enlarge(chain, 2 * (lengthOf(chain) / 10) + 10);
    controlWord(chain) |= tableBit;
  }
  return newTextIn(table, s);
}

void prefetchString(Word k) {
  DAG chain = strtab[bucketIndex(k, lengthOf(strtab))];
  if (!chain) return;
  constexpr int lines = 3, words = 16;  // of the cache; few chains hold more than twenty pairs
  for (int line = 0; line < lines; ++line) __builtin_prefetch(&chain[words * line]);
}

DAG strnaminstall(std::string_view text, Tag tag) { return stringhashunique(hashstring(text), text, tableOf(tag)); }
DAG naminstall(std::string_view text) { return stringhashunique(hashstring(text), text, nametab); }
DAG strinstall(std::string_view text) { return stringhashunique(hashstring(text), text, strtab); }
DAG charinstall(char c) {
  const char text[2] = {c, 0};
  return strinstall(text);
}

PairAddress srchname(const char* text) { return searchstring(hashstring(text), text, nametab); }
PairAddress srchstring(const char* text) { return searchstring(hashstring(text), text, strtab); }
PairAddress srchstringname(const char* text, Tag tag) { return searchstring(hashstring(text), text, tableOf(tag)); }

bool identical(DAG a, DAG b) {
  if (a == b) return true;
  if (isImmediate(a) || isImmediate(b) || headerWord(a) != headerWord(b)) return false;
  Tag tag = tagOf(a);
  if (isStatementOrProcedure(tag)) return false;
  // Objects are short: a loop over their words beats a call. Most of those that are compared are the same.
  Word at = 1, n = lengthOf(a);
  const Word *x = &rawField(a, 0), *y = &rawField(b, 0);
  for (; at + 4 <= n; at += 4) {
    const Word differ = (x[at] ^ y[at]) | (x[at + 1] ^ y[at + 1]) | (x[at + 2] ^ y[at + 2]) | (x[at + 3] ^ y[at + 3]);
    if (differ != 0) break;
  }
  while (at < n && x[at] == y[at]) ++at;
  bool same = at >= n;
  if (!same && (tag == SUM || tag == PROD)) same = samePairs(a, b);
  if (same) outlive(a, b);
  return same;
}

}  // namespace korel
