#include "store/collect/collector.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <utility>

#include "builtins/builtins.h"
#include "eval/simplify/simplify.h"
#include "frame/errors.h"
#include "frame/output.h"
#include "numbers/integer/integer.h"
#include "session/driver.h"
#include "session/interface.h"
#include "store/append.h"
#include "store/check/verify.h"
#include "store/collect/collector_phases.h"
#include "store/constants.h"
#include "store/hash.h"
#include "store/integer_cache.h"
#include "store/names.h"
#include "store/objects.h"
#include "store/reference_fields.h"
#include "store/word_map.h"

namespace korel {

std::int64_t nextsfgc = 250000;
std::int64_t ccused = 0;
bool collecting = false;

namespace {

// Words handed out are counted modulo this.
constexpr std::int64_t countWrap = 100000000;

// 1: collect at every opportunity and check the heap. 2: verify every root as well.
int stressLevel() {
  static const int level = [] {
    const char* value = std::getenv("KOREL_GC_STRESS");
    return value == nullptr ? 0 : std::atoi(value);
  }();
  return level;
}

void endCollection(const char*) { collecting = false; }

// What follows a collection may run statements of the language, and fail.
void reportCollection(bool wishes) {
  PushStateKeeper(endCollection, nullptr);
  if (wishes) runLastWishes();
  ++totgcs;
  if (printgcstatus != 0 && defaultNerinVariables.noStatus == 0) sendstatus();
  PopErrorProc();
}

void wrapCounters() {
  if (cused <= countWrap) return;
  cused -= countWrap;
  ccused -= countWrap;
  nextgc -= countWrap;
  nextgcgen -= countWrap;
  ++ocused;
}

// Long loops collect so often that each of the later checks stands for several collections; what is
// wrong with a heap stays wrong, and dead objects are spoilt each time.
bool isCheckDue() {
  constexpr std::int64_t fullyChecked = 1000, checkInterval = 16;
  static std::int64_t collections = 0;
  return stressLevel() >= 2 || ++collections <= fullyChecked || collections % checkInterval == 0;
}

void checkAfterStress() {
  if (!isCheckDue()) return;
  for (const char* violation : {checkHeap(), checkUniqueTables()}) {
    if (violation == nullptr) continue;
    std::fprintf(stderr, "%s\n", violation);
    std::abort();
  }
  if (stressLevel() >= 2) VerifyAll();
}

void swapMarks() {
  std::swap(currentMark, previousMark);
  genc[currentMark] = 1;
  genc[previousMark] = 0;
}

void collect(bool isShort) {
  shortCollection = isShort;
  const std::int64_t before = wordsInUse(), released = releasedWords();
  if (!isShort) swapMarks();
  static GenerationPlan plan;
  planGenerations(plan);

  dissolveFreeLists();
  listRememberTables();
  forEachRoot(mark);
  beginIntegerTraversal();  // addresses are used again from now on
  markNamesInUse();
  hideWeakTables();
  markFromOlderGenerations();
  sweepRememberTables();
  collectLastWishes();
  const std::int64_t tables = sweepWeakTables();
  releaseMarkStack();
  dropDeadIndices(isAlive);

  sweep(plan.newNumber);
  renumberGenerations(plan);
  recordOutcome({isShort, before, released, tables});
  keepMemoryReserve();
}

void runCollection(bool isShort) {
  if (InExternalCall || collecting) return;
  collecting = true;
  runBeginHooks();
  forgetAppendSlack();
  collect(isShort);
  scheduleGeneration();
  nextgc = cused + incrgc;
  reportCollection(true);
  runEndHooks();
  wrapCounters();
  collecting = false;
  if (collectAlways) checkAfterStress();
}

// ---- floats in external calls

constexpr int useCountShift = 12;
constexpr Word useCountMask = 0x3ffu << useCountShift;

bool isFloatOrInteger(DAG s) {
  Tag tag = tagOf(s);
  return tag == INTNEG || tag == INTPOS || tag == FLOAT;
}
// What the small collection may take, unless something holds it.
bool isExpendable(DAG s) {
  return isFloatOrInteger(s) && (controlWord(s) & (simplifiedBit | protectedBit | useCountMask)) == 0;
}

struct FloatCollection {
  WordMap visited;       // objects behind the roots
  WordMap held;          // expendable ones that an object of the heap refers to
  bool complete = true;  // false: memory failed, nothing may be swept
};
FloatCollection floats;

void hold(DAG x) {
  if (!isObject(x) || !isExpendable(x)) return;
  switch (floats.held.insert(x.word, 0)) {
    case WordMap::outOfMemory: floats.complete = false; return;
    case WordMap::present: return;
    case WordMap::added: break;
  }
  if (hasTag(x, FLOAT)) forEachReferenceField(x, [](DAG& field) { hold(field); });
}

DAG pendingObjects;  // visited ones whose fields are still to be looked at, linked through `visited`

void raiseUseCounts(DAG x) {
  if (!isObject(x) || isSimplified(x) || (controlWord(x) & (protectedBit | useCountMask)) != 0) return;
  switch (floats.visited.insert(x.word, static_cast<std::int32_t>(pendingObjects.word))) {
    case WordMap::outOfMemory: floats.complete = false; return;
    case WordMap::present: return;
    case WordMap::added: break;
  }
  pendingObjects = x;
}

void raiseUseCountsBehind(DAG root) {
  raiseUseCounts(root);
  while (pendingObjects) {
    DAG x = pendingObjects;
    pendingObjects = DAG(static_cast<Word>(*floats.visited.find(x.word)));
    if (isFloatOrInteger(x)) controlWord(x) |= Word{1} << useCountShift;
    if (hasTag(x, RTABLE)) walkRtable(x, raiseUseCounts);
    else forEachReferenceField(x, [](DAG& field) { raiseUseCounts(field); });
  }
}

void sweepFloats() {
  totalfree = 0;
  wret = 0;
  FreeRun run;
  Word expected = 0;
  forEachHeapItem([&](DAG s, Word at, Word size) {
    if (at != expected) run.giveBack();
    expected = at + 4 * size;
    if (!s || hasTag(s, GARBAGE)) {
      run.add(at, size);
    } else if (isExpendable(s) && floats.held.find(s.word) == nullptr) {
      wret += size;
      run.add(at, size);
    } else {
      run.giveBack();
    }
  });
  run.giveBack();
}

}  // namespace

bool collectAlways = stressLevel() != 0;

void gc() { runCollection(false); }
void collectInTurn() { runCollection(isShortEnough()); }

// An object that any other refers to stays, whether that one is alive or not: nothing was marked.
void GarbageCollectSoftwareFloats() {
  if (collecting) return;
  collecting = true;
  forgetAppendSlack();
  floats.complete = true;
  forEachRoot(raiseUseCountsBehind);
  dissolveFreeLists();
  forEachHeapItem([](DAG s, Word, Word) {
    if (!s || isExpendable(s)) return;
    if (hasTag(s, RTABLE)) walkRtable(s, hold);
    else forEachReferenceField(s, [](DAG& field) { hold(field); });
  });
  if (floats.complete) sweepFloats();
  floats.visited.release();
  floats.held.release();
  reportCollection(false);
  wrapCounters();
  collecting = false;
}

DAG MemoryUsage() {
  for (TagCensus& row : census) row = {};
  gc();
  DAG rows = newl2(tagCount + 1, EXPSEQ);
  for (int number = 1; number <= tagCount; ++number) {
    // Building the rows leaves the counts as they were: only a collection changes them.
    const TagCensus& row = census[number];
    rows[number] = new2(LIST, new4(EXPSEQ, naminstall(DagIDToName(static_cast<Word>(number))), NewInteger(row.objects),
                                   NewInteger(4 * row.words)));
  }
  return simpl(new3(LIST, rows, ini("matrix")));
}

}  // namespace korel
