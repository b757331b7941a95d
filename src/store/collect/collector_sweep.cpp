// Walks over the heap: what older generations keep, and the sweep.
//
// A chunk is a sequence of objects, free blocks among them (allocator.h), and single free words.

#include <utility>

#include "store/collect/collector_phases.h"
#include "store/constants.h"

namespace korel {

namespace {

// Makes any use of a dead object fall over: each word refers to an address that is never mapped.
void spoil(Word block, Word words) {
  constexpr Word nowhere = 4;
  for (Word i = 0; i < words; ++i) wordAt(block + 4 * i) = nowhere;
}

}  // namespace

// Objects that nobody will look at again may refer to a block that was given back by hand, and they are
// roots as long as their generation lasts. A free block that they refer to gets a label as any object, and
// stays by itself: joined to others it would leave them a reference into the middle of something.
void dissolveFreeLists() {
  ShowFreeLists();
  for (Word& head : freelist)
    for (Word block = std::exchange(head, 0); block != 0;) block = std::exchange(wordAt(block), 0);
}

// A short collection takes what is tenured as reached. What such an object refers to need be looked at only
// when it may have been written since.
void markFromOlderGenerations() {
  forEachHeapItem([](DAG s, Word, Word) {
    if (!s || hasTag(s, GARBAGE)) return;
    Word label = generationOf(s);
    if (shortCollection) {
      if (genc[label] != 0 || (controlWord(s) & tenuredBit) != 0) {
        // Most strings bear no attributes.
        if (hasTag(s, STRING) && s[2] == null) return;
        if (!isFrozen(s) && !(hasTag(s, HASHTAB) && isListedTable(s))) markReferencesOf(s);
        return;
      }
    } else if (genc[label] != 0) {
      if (label < firstMarkLabel) markReferencesOf(s);
      return;
    }
    if (controlWord(s) & protectedBit) mark(s);
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
      if (label > static_cast<Word>(gcgen)) return;
      // Tenured, found again, and its new generation released: it is reached in the next full collection or not.
      const bool onlyTenured = genc[label] == 0 && (controlWord(s) & protectedBit) == 0;
      setLabel(s, onlyTenured ? currentMark : static_cast<Word>(newNumber[label]));
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
