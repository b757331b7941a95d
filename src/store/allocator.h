#pragma once
// The allocator: one word-addressed heap below 4 GiB, with exact-size free lists.
//
// Storage comes from the system in chunks and never goes back; objects never move. Small blocks (1 to
// 11 words) are popped from and pushed on exact lists, larger ones live in four class lists and carry
// their size. Sizes and counters are in 32-bit words; a block for an object of length n has n + 1
// words, since the control word counts.
//
// Free storage can be walked like objects: a free block is a GARBAGE object whose control word links it to
// the next of its list, and whose length is its size. A single word, which no object fits, is 1 (no control
// word is odd) and on no list: the sweep joins it to its neighbours.

#include "store/dag.h"
#include "store/generations.h"

namespace korel {

constexpr int freeListCount = 16;
constexpr Word firstClassSize = 12;  // blocks below have a list of their own size
constexpr Word chunkUnit = 16381;    // words: every chunk is a multiple

extern Word freelist[freeListCount];  // addresses of first free blocks
extern Word allstorage;               // address of the latest chunk: next link, size, then blocks

extern Word lostorage, historage;  // lowest chunk start and highest chunk end so far
extern std::int64_t totalmem;      // words obtained from the system
extern std::int64_t totalfree;     // free words that the last sweep found
extern std::int64_t cused;         // words handed out, modulo 10^8
extern std::int64_t ocused;        // how many times 10^8 has been taken out of `cused`
extern std::int64_t cusedext;      // words handed out inside external calls
extern std::int64_t wret;          // dead words that the last sweep found
extern std::int64_t totgcs;        // collections done
extern bool InExternalCall;
extern bool foreignDAG;  // set only inside `newForeign`: failure gives 0 in place of an error

inline Word& wordAt(Word address) { return *reinterpret_cast<Word*>(static_cast<std::uintptr_t>(address)); }

/// The part of `get_space` behind the exact lists.
Word getLargeSpace(Word n);

/// A block of `n` words, not zeroed. Errors: "object too large" for more than the longest object and its
/// control word; a heap that cannot grow ends the statement with "ran out of memory".
inline Word get_space(Word n) {
  // One pop for a recycled small block: no search, no size word (bench/store_bench.cpp).
  (InExternalCall ? cusedext : cused) += n;
  if (evaluationLevel < genc[gcgen]) genc[gcgen] = evaluationLevel;
  if (n < firstClassSize) {
    Word block = freelist[n];
    if (block != 0) {
      freelist[n] = wordAt(block);
      return block;
    }
  }
  return getLargeSpace(n);
}

/// Makes the words from `block` on a free block, on no list yet. `size` is 2 at least.
constexpr Word maxFreeSize = maxLength + 1;
inline void setFreeSize(Word block, Word size) { wordAt(block + 4) = GARBAGE | (size - 1); }
inline Word freeSize(Word block) { return (wordAt(block + 4) & lengthMask) + 1; }

/// The part of `release_space` beside the exact lists.
void releaseOther(Word block, std::int64_t n);
/// Gives the `n` words at `block` back to the free lists; below 1 nothing happens.
inline void release_space(Word block, std::int64_t n) {
  if (n < 2 || n >= std::int64_t{firstClassSize}) return releaseOther(block, n);
  setFreeSize(block, static_cast<Word>(n));
  wordAt(block) = freelist[n];
  freelist[n] = block;
}
/// Gives back object `s` of length `n`. The caller holds the only reference.
inline void release(DAG s, Word n) { release_space(s.word - 4, std::int64_t{n} + 1); }

/// Whether about so many words can still be handed out: from fresh memory, or from the free lists.
bool hasRoomFor(double words);

/// Holds words back, as far as there are any, for the report that memory has run out.
void keepMemoryReserve();
/// Memory has run out, and no collection between statements has followed yet.
extern bool memoryRanOut;

/// Prints the free lists through the debug output when the debugging flag is set.
void ShowFreeLists();
extern bool debuggingFreeLists;

/// Total words handed out since the start.
inline std::int64_t wordsUsed() { return ocused * 100000000 + cused + cusedext; }

}  // namespace korel
