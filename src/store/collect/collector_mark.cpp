// The marker: reaches everything behind a reference, with a work list of its own.
//
// Structures are deeper than the native stack, so that marked objects whose fields are still to be
// looked at wait on a list. Every object is on it at most once.

#include <cstdlib>
#include <cstring>

#include "store/collect/collector_phases.h"
#include "store/constants.h"
#include "store/reference_fields.h"

namespace korel {

Word currentMark = firstMarkLabel;
Word previousMark = firstMarkLabel + 1;
bool shortCollection = false;
TagCensus census[tagCount + 1];

namespace {

// The list begins in place, and grows as memory allows. What finds no room on it is found again by a walk over
// the heap: a collection is wanted most when there is no memory left.
constexpr std::uint32_t placeAtHand = 4096;
Word atHand[placeAtHand];
Word* waiting = atHand;
std::uint32_t waitingCapacity = placeAtHand;
std::uint32_t waitingCount = 0;
bool overflowed = false;

bool growWaiting() {
  const std::size_t bytes = 2 * std::size_t{waitingCapacity} * sizeof(Word);
  auto* larger = static_cast<Word*>(std::realloc(waiting == atHand ? nullptr : waiting, bytes));
  if (larger == nullptr) return false;
  if (waiting == atHand) std::memcpy(larger, atHand, sizeof atHand);
  waiting = larger;
  waitingCapacity *= 2;
  return true;
}

void count(DAG s) {
  TagCensus& row = census[tagNumber(tagOf(s))];
  ++row.objects;
  row.words += lengthOf(s) + 1;
}

inline void enlist(DAG x) {
  // Integers refer to nothing, and most strings neither, having no attributes.
  if (tagOf(x) <= INTPOS || (hasTag(x, STRING) && x[2] == null)) {
    count(x);
    return;
  }
  if (waitingCount == waitingCapacity && !growWaiting()) [[unlikely]] {
    overflowed = true;
    return;
  }
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
  if (isFrozen(s)) reachFields(s, reachFromFrozen);
  else if (hasTag(s, RTABLE)) walkRtable(s, reach);
  else if (!reachFields(s, reach)) tenureNumbers(s);
}

void takeFromWaiting() {
  while (waitingCount != 0) reachReferencesOf(DAG(waiting[--waitingCount]));
}

// What has been reached, and maybe more, gives what it refers to.
[[gnu::noinline]] void workOffOverflow() {
  while (overflowed) {
    overflowed = false;
    forEachHeapItem([](DAG s, Word, Word) {
      if (!s || hasTag(s, GARBAGE) || (hasTag(s, HASHTAB) && isListedTable(s))) return;
      if (generationOf(s) != currentMark && (controlWord(s) & tenuredBit) == 0) return;
      reachReferencesOf(s);
      takeFromWaiting();
    });
  }
}

void work() {
  takeFromWaiting();
  if (overflowed) [[unlikely]]
    workOffOverflow();
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
  if (waiting != atHand) std::free(waiting);
  waiting = atHand;
  waitingCapacity = placeAtHand;
}

}  // namespace korel
