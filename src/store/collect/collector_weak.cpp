// Tables that do not keep their entries alive.

#include "store/collect/collector_phases.h"
#include "store/constants.h"
#include "store/hash.h"
#include "store/names.h"
#include "store/object_fields.h"
#include "store/standard_names.h"

namespace korel {

namespace {

// Remember tables of procedures that say `system` or `builtin`: their results can be worked out again.
// What does not fit into the list is forgotten altogether.
constexpr int maxRememberTables = 100;
DAG rememberTables[maxRememberTables];
int rememberTableCount;

template <class Visit>
void forEachChain(DAG table, Visit visit) {
  if (!isObject(table)) return;  // before the start
  for (Word bucket = 1; bucket < lengthOf(table); ++bucket)
    if (table[bucket]) visit(table[bucket]);
}

template <class Visit>
void forEachPair(DAG table, Visit visit) {
  forEachChain(table, [&](DAG chain) {
    for (Word i = 1; rawField(chain, i) != 0; i += 2) visit(chain[i], chain[i + 1]);
  });
}

bool hasWeakOption(DAG procedure) {
  DAG options = optionsOf(procedure);
  if (!isTag(options, EXPSEQ)) return false;
  for (Word i = 1; i < lengthOf(options); ++i)
    if (options[i] == ini("system") || options[i] == ini("builtin")) return true;
  return false;
}

[[gnu::always_inline]] inline bool isAliveOrPlain(DAG x) { return !isObject(x) || isAlive(x); }

bool isAliveKey(DAG key) {
  if (!isTag(key, EXPSEQ)) return isAliveOrPlain(key);
  for (Word i = 1; i < lengthOf(key); ++i)
    if (!isAliveOrPlain(key[i])) return false;
  return true;
}

void sweepRememberTable(DAG table) {
  dropIndex(table);
  forEachChain(table, [](DAG chain) {
    dropPairs(chain, [](PairAddress pair) {
      const DAG key = pairKey(pair), value = pairValue(pair);
      if (!isAliveKey(key) || !isAliveOrPlain(value)) return true;
      mark(value);
      mark(key);
      return false;
    });
    mark(chain);
  });
}

void makeUnreached(DAG s) {
  setLabel(s, previousMark);
  controlWord(s) &= ~tenuredBit;
}
void hide(DAG table) {
  if (!isObject(table)) return;
  makeUnreached(table);
  forEachChain(table, makeUnreached);
}

// What is left of a weak table is alive on its own account and has been reached, so that only the words of
// the table itself are marked. Gives the number of pairs that stay, and adds the words of the chains to `words`.
//
// Chains that have lost all their pairs stay for the next ones. They go when memory has run out, and when a table that
// was widened for many has few left: strewn over the whole heap, they would leave no large block
// (tests/language/out_of_memory.krl), and every collection would walk the small ones between them.
std::int64_t sweepWeakTable(DAG table, std::int64_t count, std::int64_t& words) {
  const Word buckets = isObject(table) ? lengthOf(table) - 1 : 0;
  constexpr Word wide = 8192;
  const bool dropEmpty = memoryRanOut || (!shortCollection && buckets >= wide && count < buckets / 4);
  std::int64_t kept = 0;
  forEachChain(table, [&](DAG& chain) {
    words += lengthOf(chain) + 1;
    // The values lie all over the heap: their control words are under way before they are asked for.
    for (Word i = 2; i < lengthOf(chain) && rawField(chain, i - 1) != 0; i += 2)
      __builtin_prefetch(reinterpret_cast<const void*>(std::uintptr_t{chain[i].word} - sizeof(Word)));
    Word used = dropPairs(chain, [](PairAddress pair) { return !isAliveOrPlain(pairValue(pair)); });
    kept += used;
    if (used == 0 && dropEmpty) chain = DAG();
    else keepLabelled(chain);
  });
  if (isObject(table)) keepLabelled(table);
  return kept;
}

}  // namespace

void listRememberTables() {
  rememberTableCount = 0;
  forEachPair(nametab, [](DAG, DAG name) {
    DAG procedure = name[1];
    if (!isTag(procedure, PROC) || name == ini("readlib")) return;
    DAG table = rememberOf(procedure);
    if (!isTag(table, HASHTAB) || !hasWeakOption(procedure)) return;
    if (rememberTableCount == maxRememberTables) {
      rememberOf(procedure) = null;
      return;
    }
    rememberTables[rememberTableCount++] = table;
    setLabel(table, currentMark);
    // Chains of a generation not released keep their pairs, as all of its objects do.
    forEachChain(table, [](DAG chain) {
      if (genc[generationOf(chain)] == 0 || generationOf(chain) == currentMark) makeUnreached(chain);
    });
  });
}

bool isListedTable(DAG table) {
  for (int i = 0; i < rememberTableCount; ++i)
    if (rememberTables[i] == table) return true;
  return false;
}

void markNamesInUse() {
  forEachPair(nametab, [](DAG, DAG name) {
    if (name[1] != DAG() || name[2] != null) mark(name);
  });
}

void hideWeakTables() {
  for (DAG table : {simpltab, nametab, strtab}) hide(table);
}

void sweepRememberTables() {
  while (rememberTableCount != 0) sweepRememberTable(rememberTables[--rememberTableCount]);
}

std::int64_t sweepWeakTables() {
  std::int64_t words = 0;
  simpltabCount = sweepWeakTable(simpltab, simpltabCount, words);
  sweepWeakTable(nametab, 0, words);
  strtabCount = sweepWeakTable(strtab, strtabCount, words);
  return words;
}

}  // namespace korel
