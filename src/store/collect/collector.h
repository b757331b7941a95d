#pragma once
// The collector: a mark and sweep that moves nothing, over generations that are slices of allocation
// time.
//
// Objects carry the label of the generation that made them (generations.h). When a statement ends at
// some level, the generations that allocated only at that level or deeper are released: their objects
// die at the next collection unless a root reaches them. Objects of generations not yet released are
// roots themselves, so that whatever a running statement holds in local variables is safe. A survivor
// carries one of two mark labels, which swap at each collection, and must be reached again next time.
//
// Most collections are short: what an earlier one has reached is tenured and taken as alive, and is looked at
// only where it may have been written since (Ungar's generation scavenging, with a flag for the old space
// and the unchanging tags in place of remembered stores). A full one, which takes tenured objects as well,
// comes when their garbage may be as much as what lives, or has been left for long, and by a call of `gc`.
// And a collection that is due waits for some intervals while next to nothing has been released, if the latest
// one gave back little of what was alive and the user hasn't told the interval.
//
// A collection runs at the end of a statement, or by a call of `gc`, and allocates nothing. The tables
// of names, strings and simplified objects are weak; so are the remember tables of procedures with the
// option `system` or `builtin`. What else is alive is told by the roots that each subsystem registers
// at its start; registering twice has no effect.

#include <cstdint>
#include <cstdio>

#include "store/allocator.h"
#include "store/dag.h"
#include "store/generations.h"

namespace korel {

// ---- running

/// Collect at every opportunity, spoil what died, and check the heap and the unique tables after each
/// collection. Set at start by a value of the environment variable KOREL_GC_STRESS other than "" and
/// "0"; from 2 on every root is verified as well.
extern bool collectAlways;
/// The end of a statement that ran at `level`: releases generations, opens a new one when the present
/// one has had its share of words, and collects when the interval has passed.
void settleGenerations(std::int32_t level);
/// Whether the end of a statement at `level` has any of that to do. The interval holds many generations:
/// that it has passed is seen when the next one is due.
inline bool endIsDue(std::int32_t level) {
  // Most statements end at a level that is known, between the marks.
  return level < gene[gcgen] || cused > nextgcgen;
}
inline void endOfStatement(std::int32_t level) {
  if (endIsDue(level)) settleGenerations(level);
}
/// One full collection. Nothing while an external routine or another collection is running.
void gc();
/// The same, or a short one when that will do.
void collectInTurn();
/// The user's choice: a collection after each `words` words, none of which waits.
void setCollectionInterval(std::int64_t words);
/// The next end of a statement collects.
void demandCollection();
/// Collects what all statements so far have left. Nothing is running.
void collectBetweenStatements();
/// The collection inside external calls: frees integers and floats that nobody holds, and only those.
void GarbageCollectSoftwareFloats();

extern std::int64_t nextsfgc;  // words: value of `cusedext` that triggers the float collection
extern std::int64_t ccused;    // words: mark of the last status report of the interpreter
/// True while a collection is under way.
extern bool collecting;

/// A collection's census: a LIST with attribute `matrix` of [tag name, objects, bytes] for each tag.
DAG MemoryUsage();

// ---- roots, of other subsystems

using Visitor = void (*)(DAG x);

/// The word at `root` is alive, and what it refers to. It may be 0.
void registerRoot(DAG* root);
/// `count` words from `roots` on.
void registerRootArray(DAG* roots, int count);
/// `walk` calls its argument on each reference that it knows.
void registerRootWalker(void (*walk)(Visitor visit));

/// Objects with a last wish, as modules with an unload function. After marking, `collectDead` sorts
/// out those that `isAlive` denies and keeps them by `keep` for once more; after the sweep `run` acts.
void registerLastWish(void (*collectDead)(bool (*isAlive)(DAG), Visitor keep), void (*run)());
/// How rtables are walked (all words behind `s` that refer to objects, ring and data included) and
/// what is done when one dies.
void registerRtables(void (*walk)(DAG s, Visitor visit), void (*die)(DAG s));
/// `begin` runs before a collection looks at anything, `end` behind everything; either may be null.
void registerCollectionHook(void (*begin)(), void (*end)());

/// Calls `visit` on every root, the weak tables left out: constants, standard names, the frames of the
/// running procedures, and all that was registered.
void forEachRoot(Visitor visit);

// ---- instruments

/// Walks the heap and every root: each reference of a live object is an immediate, 0, or the address of
/// a live object, and the labels are in order. Null when so, else a text that tells the first violation
/// (until the next call).
const char* checkHeap();
/// The tables of names, strings and simplified objects: each pair stands in its bucket under the hash
/// of its value, and no two values are equal. Null when so, else what is wrong, as for `checkHeap`.
const char* checkUniqueTables();

struct HeapFigures {
  std::int64_t words = 0;    // of all chunks, their two header words left out
  std::int64_t live = 0;     // words of objects that a collection would now keep
  std::int64_t dead = 0;     // words of objects that it could take
  std::int64_t objects = 0;  // how many of either
};
/// Counts the heap as it stands; the rest of `words` is free.
HeapFigures heapFigures();

}  // namespace korel
