#pragma once
// A memo of integers for one traversal over a structure at a time.
//
// Walks that answer a question about every subexpression (does it hold a certain name? of which type is
// it?) meet shared parts again and again; a direct-mapped cache of 4096 slots spares the second visit.
// A traversal begins with a new clock value, which makes all older entries invalid without clearing.
// There is one cache. A traversal that starts others in its midst keeps the clock value that it began
// with and names it in each access: then it finds its own answers alone.

#include "store/dag.h"

namespace korel {

constexpr Word integerCacheSize = 4096;
extern Word IntHashAddr[integerCacheSize];  // the object
extern Word IntHashRes[integerCacheSize];   // the result for it
extern Word IntHashTime[integerCacheSize];  // clock value of the traversal that stored it
extern Word IntHashClock;

/// Begins a traversal, and gives its clock value: every stored result is forgotten. The collector calls
/// it too, since addresses are used again after it.
Word beginIntegerTraversal();

inline Word integerCacheSlot(DAG x) {
  return static_cast<Word>(static_cast<std::int32_t>(x.word) >> 3) & (integerCacheSize - 1);
}
/// The result stored for `x` in the traversal of that clock value, or null.
inline const Word* cachedInteger(DAG x, Word clock = IntHashClock) {
  Word slot = integerCacheSlot(x);
  return IntHashAddr[slot] == x.word && IntHashTime[slot] == clock ? &IntHashRes[slot] : nullptr;
}
inline void cacheInteger(DAG x, Word result, Word clock = IntHashClock) {
  Word slot = integerCacheSlot(x);
  IntHashAddr[slot] = x.word;
  IntHashTime[slot] = clock;
  IntHashRes[slot] = result;
}

}  // namespace korel
