#include "store/allocator.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <utility>

#include "frame/errors.h"
#include "frame/output.h"
#include "store/address_range.h"
#include "store/objects.h"

namespace korel {

Word freelist[freeListCount];
Word allstorage = 0;
Word lostorage = 0, historage = 0;
std::int64_t totalmem = 0;
std::int64_t totalfree = 0;
std::int64_t cused = 0;
std::int64_t ocused = 0;
std::int64_t cusedext = 0;
std::int64_t wret = 0;
std::int64_t totgcs = 0;
bool InExternalCall = false;
bool foreignDAG = false;
bool debuggingFreeLists = false;
bool memoryRanOut = false;

namespace {

constexpr int lastClass = freeListCount - 1;
constexpr int stockPieces = 129;   // pieces of a small size that one large block yields at most
constexpr Word smallestSplit = 3;  // words that a split leaves behind at least

Word& linkOf(Word block) { return wordAt(block); }
// Chunks keep their size as a plain number, which may be more than an object can have.
Word& chunkSize(Word chunk) { return wordAt(chunk + 4); }

constexpr Word firstLastClassSize = 141;
constexpr int classOf(Word n) { return n < 19 ? 12 : n < 35 ? 13 : n < firstLastClassSize ? 14 : lastClass; }

// A list of thousands of blocks that are all a little too small would be walked at every request; what
// fits stands near the head, or a larger block does as well.
constexpr int mostProbes = 8;

// How many blocks have come into the classes below the last, and what it was when a search of them for a size found
// nothing: until another comes in the search need not be made again (bench/files.sh, lines of a file).
std::int64_t blocksCome = 1;
std::int64_t vainSince[firstLastClassSize];

// First block of class `c` that fits `n` exactly or can be split, unlinked; 0 for none near the head.
Word takeFromClass(int c, Word n) {
  Word* link = &freelist[c];
  int probes = c == lastClass ? -1 : mostProbes;
  for (Word block = *link; block != 0 && probes-- != 0; link = &linkOf(block), block = *link) {
    Word size = freeSize(block);
    if (size > n + 2 || size == n) {
      *link = linkOf(block);
      return block;
    }
  }
  return 0;
}

// The same of the last class, with all but `n` words given back, when what is left would be the head again; 0 when not.
Word cutFromHead(Word n) {
  Word& head = freelist[lastClass];
  const Word block = head;
  if (block == 0 || n < firstClassSize || freeSize(block) < n + firstLastClassSize) return 0;
  const Word rest = freeSize(block) - n, next = linkOf(block);
  if (next != 0 && freeSize(next) < rest) return 0;
  head = block + 4 * n;
  linkOf(head) = next;
  setFreeSize(head, rest);
  return block;
}

// Cuts `n` words from the front of `block`, whose size is at least n + 3. A small size also stocks its
// free list, in address order, so that a burst of such objects makes one trip.
Word breakup(Word block, Word n) {
  Word rest = freeSize(block) - n;
  Word at = block + 4 * n;
  if (n >= 3 && n < firstClassSize && rest - n >= smallestSplit && rest > n) {
    Word first = at;
    Word* link = nullptr;
    for (int piece = 0; piece < stockPieces && rest >= n + smallestSplit; ++piece) {
      if (link != nullptr) *link = at;
      link = &linkOf(at);
      setFreeSize(at, n);
      at += 4 * n;
      rest -= n;
    }
    *link = freelist[n];
    freelist[n] = first;
  }
  release_space(at, rest);
  return block;
}

DAG memoryReserve;  // protected, of no use but to be given up; 0 when it has been

// A free block of a fresh chunk with room for `n` words; 0 when memory fails.
Word newChunk(Word n) {
  Word k = (n + 16382) / chunkUnit;
  std::int64_t words = std::int64_t{k} * chunkUnit;
  Word chunk = commitWords(words);
  if (chunk == 0) return 0;
  Word end = chunk + static_cast<Word>(4 * words);
  historage = std::max(historage, end);
  lostorage = lostorage == 0 ? chunk : std::min(lostorage, chunk);
  totalmem += words;
  Word first = allstorage;
  Word block = chunk;
  Word size = static_cast<Word>(words);
  if (first != 0 && first + 4 * chunkSize(first) == chunk) {
    // Directly behind the latest chunk: one chunk of both.
    chunkSize(first) += size;
  } else {
    linkOf(chunk) = allstorage;
    chunkSize(chunk) = size;
    allstorage = chunk;
    block = chunk + 8;
    size -= 2;
  }
  if (size > maxFreeSize) {
    release_space(block + 4 * maxFreeSize, size - maxFreeSize);
    size = maxFreeSize;
  }
  setFreeSize(block, size);
  return block;
}

// The report of the error takes memory, for which the reserve is given up.
[[noreturn]] void runOutOfMemory() {
  memoryRanOut = true;
  if (memoryReserve) {
    DisposeProtected(std::exchange(memoryReserve, DAG()));
    notimpl("ran out of memory");
  }
  std::fputs("System error, ran out of memory\n", stderr);
  std::_Exit(1);
}

}  // namespace

void keepMemoryReserve() {
  constexpr Word reserveWords = 1 << 15;
  if (!memoryReserve) memoryReserve = newForeign(reserveWords);
}

bool hasRoomFor(double words) {
  words -= static_cast<double>(uncommittedWords());
  for (int i = freeListCount - 1; i > 0 && words > 0; --i)
    for (Word block = freelist[i]; block != 0 && words > 0; block = linkOf(block)) words -= freeSize(block);
  return words <= 0;
}

Word getLargeSpace(Word n) {
  if (n > maxFreeSize) {
    if (foreignDAG) return 0;
    KernelException("object too large");
  }
  Word block = 0;
  if (n < firstLastClassSize && vainSince[n] != blocksCome) {
    for (int c = classOf(n); c < lastClass && block == 0; ++c) block = takeFromClass(c, n);
    if (block == 0) vainSince[n] = blocksCome;
  }
  if (block == 0) {
    if (const Word cut = cutFromHead(n)) return cut;
    block = takeFromClass(lastClass, n);
  }
  if (block == 0) block = newChunk(n);
  if (block == 0) {
    if (foreignDAG) return 0;
    runOutOfMemory();
  }
  return freeSize(block) == n ? block : breakup(block, n);
}

void releaseOther(Word block, std::int64_t n) {
  if (n < 1) return;
  if (n == 1) {
    wordAt(block) = 1;
    return;
  }
  while (n > maxFreeSize + 1) {
    releaseOther(block, maxFreeSize);
    block += 4 * maxFreeSize;
    n -= maxFreeSize;
  }
  if (n > maxFreeSize) {
    // One word more than a block can have.
    wordAt(block) = 1;
    block += 4;
    --n;
  }
  if (n < firstClassSize) return release_space(block, n);
  auto size = static_cast<Word>(n);
  setFreeSize(block, size);
  if (size < firstLastClassSize) ++blocksCome;
  Word& head = freelist[classOf(size)];
  // The head is the smallest of what has lately come in: a search that fits it ends at once.
  if (head != 0 && freeSize(head) < size) {
    linkOf(block) = linkOf(head);
    linkOf(head) = block;
  } else {
    linkOf(block) = head;
    head = block;
  }
}

void ShowFreeLists() {
  if (!debuggingFreeLists) return;
  Printf2("\nFree List (GC): ");
  for (int i = 1; i < freeListCount; ++i) {
    long count = 0;
    for (Word block = freelist[i]; block != 0; block = linkOf(block)) ++count;
    Printf2("%ld ", count);
  }
  Printf2("\nSizes of last freelist: ");
  for (Word block = freelist[lastClass]; block != 0; block = linkOf(block)) Printf2("%u ", freeSize(block));
  Printf2("\n");
}

}  // namespace korel
