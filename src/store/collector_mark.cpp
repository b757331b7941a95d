// The marker: reaches everything behind a reference, with a work list of its own.
//
// Structures are deeper than the native stack, so that marked objects whose fields are still to be
// looked at wait on a list. Every object is on it at most once.

#include <cstdlib>

#include "frame/errors.h"
#include "store/collector_phases.h"
#include "store/reference_fields.h"

namespace korel {

Word currentMark = firstMarkLabel;
Word previousMark = firstMarkLabel + 1;
bool shortCollection = false;
TagCensus census[tagCount + 1];

namespace {

Word* waiting = nullptr;
std::uint32_t waitingCapacity = 0;
std::uint32_t waitingCount = 0;

void growWaiting() {
  std::uint32_t capacity = waitingCapacity == 0 ? 4096 : 2 * waitingCapacity;
  auto* larger = static_cast<Word*>(std::realloc(waiting, std::size_t{capacity} * sizeof(Word)));
  if (larger == nullptr) {
    // Nothing has been swept: what is left unmarked is still there for the next collection.
    releaseMarkStack();
    collecting = false;
    notimpl("ran out of memory");
  }
  waiting = larger;
  waitingCapacity = capacity;
}

void count(DAG s) {
  TagCensus& row = census[tagNumber(tagOf(s))];
  ++row.objects;
  row.words += lengthOf(s) + 1;
}

inline void enlist(DAG x) {
  if (tagOf(x) <= INTPOS) {  // integers refer to nothing
    count(x);
    return;
  }
  if (waitingCount == waitingCapacity) growWaiting();
  waiting[waitingCount++] = x.word;
}

void reach(DAG x) {
  if (!isObject(x) || genc[generationOf(x)] != 0) return;
  if (shortCollection && (controlWord(x) & tenuredBit) != 0) return;
  setLabel(x, currentMark);
  controlWord(x) |= tenuredBit;
  enlist(x);
}

// What a frozen object refers to will not be looked at again through it, and must be tenured for that.
void reachFromFrozen(DAG x) {
  if (!isObject(x)) return;
  if (genc[generationOf(x)] == 0) return reach(x);
  if ((controlWord(x) & tenuredBit) != 0) return;
  controlWord(x) |= tenuredBit;
  enlist(x);
}

// Long tables are full of numbers and free places, which are passed over by the block
// (bench/collections.sh, "table stores").
constexpr Word block = 16;
bool holdsNoReference(const DAG* words) {
  Word references = 0;
  for (Word j = 0; j < block; ++j) references |= words[j].word & ((words[j].word & 1) - 1);
  return references == 0;
}

// False when `s` refers to no object.
template <class Reach>
inline bool reachFields(DAG s, Reach reachField) {
  bool met = false;
  ReferenceFields fields = referenceFields(s);
  if (fields.extra != 0) reachField(s[fields.extra]);
  // What a long object refers to lies all over the heap: control words are under way some steps before
  // they are asked for.
  constexpr Word ahead = 8;
  for (Word i = fields.first; i < fields.end; i += fields.step) {
    if (fields.step == 1)
      while (i + block <= fields.end && holdsNoReference(&s[i])) i += block;
    if (i >= fields.end) break;
    if (i + ahead < fields.end && isObject(s[i + ahead])) __builtin_prefetch(&s[i + ahead][-1]);
    if (!isObject(s[i])) continue;
    met = true;
    reachField(s[i]);
  }
  return met || fields.extra != 0;
}

// Long lists of numbers are looked at once, not at each collection until their statement ends
// (bench/programs/map_select.krl).
constexpr Word longObject = 64;
void tenureNumbers(DAG s) {
  if (lengthOf(s) >= longObject && isSimplified(s) && isUnchanging(tagOf(s))) controlWord(s) |= tenuredBit;
}

void reachReferencesOf(DAG s) {
  count(s);
  if (isFrozen(s))
    reachFields(s, reachFromFrozen);
  else if (hasTag(s, RTABLE))
    walkRtable(s, reach);
  else if (!reachFields(s, reach))
    tenureNumbers(s);
}

void work() {
  while (waitingCount != 0) reachReferencesOf(DAG(waiting[--waitingCount]));
}

}  // namespace

void mark(DAG x) {
  reach(x);
  work();
}

void markReferencesOf(DAG s) {
  reachReferencesOf(s);
  work();
}

void keepLabelled(DAG s) {
  setLabel(s, currentMark);
  count(s);
}

void releaseMarkStack() {
  std::free(waiting);
  waiting = nullptr;
  waitingCapacity = waitingCount = 0;
}

}  // namespace korel
