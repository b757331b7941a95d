#pragma once
// What the collector's files share: the phases of a collection, in the order in which they run.

#include "store/allocator.h"
#include "store/collect/collector.h"
#include "store/dag.h"
#include "store/generations.h"
#include "store/reference_fields.h"

namespace korel {

// ---- life and labels

extern Word currentMark;   // label of what this collection (the last one, between two) has reached
extern Word previousMark;  // label of what only the one before has reached

/// Whether the present or latest collection is a short one (collector.h).
extern bool shortCollection;

/// Objects with one of these flags are alive whatever their label: protected ones, and in a short collection
/// those that an earlier one has reached.
inline Word keepingFlags() { return shortCollection ? protectedBit | tenuredBit : protectedBit; }
/// Not to be swept: its generation is not released, it was reached, or a flag keeps it.
inline bool isAlive(DAG s) { return genc[generationOf(s)] != 0 || (controlWord(s) & keepingFlags()) != 0; }
/// Reached by a collection and unchanging since: all that it refers to is tenured as well, so that a short
/// collection passes it by. Names, tables, procedures and modules change, and so may what is not simplified.
inline bool isFrozen(DAG s) {
  const Word flags = controlWord(s);
  if ((flags & tenuredBit) == 0) return false;
  return tagOf(s) <= INTPOS || ((flags & simplifiedBit) != 0 && isUnchanging(tagOf(s)));
}
inline void setLabel(DAG s, Word label) {
  constexpr Word flags = (Word{1} << generationShift) - 1;
  controlWord(s) = (controlWord(s) & flags) | (label << generationShift);
}

// ---- marking (collector_mark.cpp)

struct TagCensus {
  std::int64_t objects;
  std::int64_t words;
};
/// What was marked of each tag, by its number; cleared by whoever wants a count.
extern TagCensus census[tagCount + 1];

/// Marks `x` and all it reaches, stopping at what is marked or of a generation not released. What is marked is
/// tenured; so is what a frozen object refers to, of whatever generation.
void mark(DAG x);
/// Marks all that `s` refers to, and leaves the label of `s`.
void markReferencesOf(DAG s);
/// Marks `s` alone; what it refers to has been seen to.
void keepLabelled(DAG s);
void releaseMarkStack();

// ---- roots and hooks (collector_roots.cpp)

void runBeginHooks();
void runEndHooks();
void collectLastWishes();
void runLastWishes();
/// Calls `visit` on all that rtable `s` refers to.
void walkRtable(DAG s, Visitor visit);
void rtableDies(DAG s);

// ---- weak tables (collector_weak.cpp)

/// Lists the remember tables whose pairs may die, and keeps the marker out of them.
void listRememberTables();
/// Whether the HASHTAB `table` is one of those.
bool isListedTable(DAG table);
/// Marks the names that are assigned or bear attributes.
void markNamesInUse();
/// Makes the tables of names, strings and simplified objects look unmarked, so that the walk over
/// older generations does not enter them.
void hideWeakTables();
/// Drops the dead pairs of the listed remember tables and marks the others.
void sweepRememberTables();
/// Drops the dead entries of the weak tables, then marks the tables. Gives the words of their chains.
std::int64_t sweepWeakTables();

// ---- the heap (collector_sweep.cpp)

/// Empties the free lists: their blocks become dead GARBAGE objects, which the sweep comes upon.
void dissolveFreeLists();
/// Marks what objects of generations not released, and protected objects, refer to; in a short collection,
/// also what tenured objects refer to that may have changed.
void markFromOlderGenerations();
/// Gives back what is dead and relabels what is alive: `newNumber` by old generation.
void sweep(const std::int16_t* newNumber);

/// Visits each run of words: an object, a free block (a GARBAGE object), or one free word (then `s` is 0).
template <class Visit>
void forEachHeapItem(Visit visit) {
  for (Word chunk = allstorage; chunk != 0; chunk = wordAt(chunk)) {
    Word end = chunk + 4 * wordAt(chunk + 4);
    for (Word at = chunk + 8; at < end;) {
      if (wordAt(at) & 1) {
        visit(DAG(), at, Word{1});
        at += 4;
      } else {
        DAG s(at + 4);
        Word size = lengthOf(s) + 1;
        visit(s, at, size);
        at += 4 * size;
      }
    }
  }
}

/// Runs of free words on their way back to the free lists: neighbours are given back as one block.
struct FreeRun {
  Word start = 0;
  std::int64_t size = 0;

  void add(Word at, Word words) {
    if (size == 0) start = at;
    size += words;
  }
  void giveBack() {
    if (size == 0) return;
    totalfree += size;
    release_space(start, size);
    size = 0;
  }
};

// ---- the schedule (collector_schedule.cpp)

/// Words of objects, as far as the latest sweep and what has been taken from the system since can tell.
std::int64_t wordsInUse();
/// Whether the collection that is due may be a short one.
bool isShortEnough();
/// Whether it may wait for the next interval, since too little has been released for it to pay.
bool canCollectionWait();
/// The next generation opens after an interval; where all opportunities to collect are taken, at once.
inline void scheduleGeneration() { nextgcgen = collectAlways ? -1 : cused + incrgen; }

struct CollectionOutcome {
  bool isShort;
  std::int64_t inUseBefore;  // words in use when it began
  std::int64_t released;     // words of generations that had been released
  std::int64_t inTables;     // words of the chains of the weak tables
};
/// To be called behind the sweep, with what went before it.
void recordOutcome(const CollectionOutcome& c);

// ---- generations (collector_generations.cpp)

/// New numbers for the generations that are not released, at most `maxKeptGenerations` of them; 0 for
/// the others.
constexpr int maxKeptGenerations = 512;
struct GenerationPlan {
  std::int16_t newNumber[generationCount];
  int kept;
  std::int32_t level[maxKeptGenerations + 1];  // `genc` and `gene` by new number
  std::int32_t ended[maxKeptGenerations + 1];
  std::int64_t words[maxKeptGenerations + 1];
};
void planGenerations(GenerationPlan& plan);
/// Puts the plan into force, and `gcgen`, `genpat` and `incrgen` with it.
void renumberGenerations(const GenerationPlan& plan);
/// Words handed out in generations that are released now: what may die beside what earlier collections reached.
std::int64_t releasedWords();
/// Sets `incrgen` by the labels that are left.
void setGenerationInterval();

}  // namespace korel
