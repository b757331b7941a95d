// Walks over the heap: what older generations keep, and the sweep.
//
// A chunk is a sequence of objects and free words. Blocks on the free lists are neither, until
// `makeFreeStorageParsable` has made them GARBAGE objects, or ones, which no control word is: its
// low bit is always 0.

#include "store/collector_phases.h"

namespace korel {

namespace {

// `words` of free storage as objects that a walk steps over.
void formatFreeBlock(Word block, std::int64_t words) {
  while (words > 1) {
    Word length = words - 1 > maxLength ? maxLength : static_cast<Word>(words - 1);
    wordAt(block) = 0;
    wordAt(block + 4) = GARBAGE | length;
    block += 4 * (length + 1);
    words -= length + 1;
  }
  if (words == 1) wordAt(block) = 1;
}

void formatFreeList(int index) {
  Word block = freelist[index];
  freelist[index] = 0;
  while (block != 0) {
    Word next = wordAt(block);
    Word size = index < static_cast<int>(firstClassSize) ? static_cast<Word>(index)
                                                         : wordAt(block + 4);
    formatFreeBlock(block, size);
    block = next;
  }
}

// Makes any use of a dead object fall over: each word refers to an address that is never mapped.
void spoil(Word block, Word words) {
  constexpr Word nowhere = 4;
  for (Word i = 0; i < words; ++i) wordAt(block + 4 * i) = nowhere;
}

}  // namespace

void makeFreeStorageParsable() {
  ShowFreeLists();
  for (int index = 1; index < freeListCount; ++index) formatFreeList(index);
}

void markFromOlderGenerations() {
  forEachHeapItem([](DAG s, Word, Word) {
    if (!s) return;
    Word label = generationOf(s);
    if (genc[label] != 0) {
      if (label < firstMarkLabel) markReferencesOf(s);
    } else if (controlWord(s) & protectedBit) {
      mark(s);
    }
  });
}

void sweep(const std::int16_t* newNumber) {
  totalfree = 0;
  wret = 0;
  FreeRun run;
  Word expected = 0;  // where the run goes on; elsewhere begins another chunk
  forEachHeapItem([&](DAG s, Word at, Word size) {
    if (at != expected) run.giveBack();
    expected = at + 4 * size;
    if (!s) {
      run.add(at, 1);
    } else if (isAlive(s)) {
      run.giveBack();
      Word label = generationOf(s);
      if (label <= static_cast<Word>(gcgen)) setLabel(s, static_cast<Word>(newNumber[label]));
    } else {
      if (hasTag(s, RTABLE)) rtableDies(s);
      if (!hasTag(s, GARBAGE)) {
        wret += size;
        if (collectAlways) spoil(at, size);
      }
      run.add(at, size);
    }
  });
  run.giveBack();
}

}  // namespace korel
