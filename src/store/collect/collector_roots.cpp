// What is alive by itself, and what others want done when a collection runs.

#include <iterator>

#include "frame/environment.h"
#include "frame/errors.h"
#include "library/retrieve.h"
#include "numbers/integer/integer.h"
#include "store/collect/collector_phases.h"
#include "store/constants.h"
#include "store/names.h"
#include "store/reference_fields.h"
#include "store/standard_names.h"
#include "text/read/parser.h"

namespace korel {

namespace {

DAG* const constantRoots[] = {
    &consbb,          &cons_maxfloatexp, &cons_minfloatexp, &null,        &emptyset,   &emptylist,   &consf0,
    &consfm0,         &consf1,           &consfm1,          &conscxf0,    &consh,      &sqrtm1,      &conshf0,
    &consfinf,        &consfminf,        &consminf,         &conscxinf,   &conscxfinf, &consfNaN,    &conscxNaN,
    &conscxfNaN,      &consfmaxrep,      &consfminrep,      &order1,      &InertProc,  &DefTestzero, &builtinOptions,
    &rememberOptions, &AliasToKorel,     &KorelToAlias,     &AllIniNames, &aliastab,   &parsestat,   &KaraBuffer,
};

struct RootArray {
  DAG* words;
  int count;
};
struct LastWish {
  void (*collectDead)(bool (*isAlive)(DAG), Visitor keep);
  void (*run)();
};
struct CollectionHook {
  void (*begin)();
  void (*end)();
};
bool operator==(const RootArray& a, const RootArray& b) { return a.words == b.words; }
bool operator==(const LastWish& a, const LastWish& b) { return a.run == b.run; }
bool operator==(const CollectionHook& a, const CollectionHook& b) { return a.begin == b.begin && a.end == b.end; }

// A list that fills at start-up.
template <class Entry, int capacity>
struct Registry {
  Entry entries[capacity];
  int count = 0;

  void add(const Entry& entry) {
    for (const Entry& known : *this)
      if (known == entry) return;
    if (count == capacity) notimpl("too many roots");
    entries[count++] = entry;
  }
  const Entry* begin() const { return entries; }
  const Entry* end() const { return entries + count; }
};

Registry<RootArray, 160> rootArrays;
Registry<void (*)(Visitor), 32> rootWalkers;
Registry<LastWish, 4> lastWishes;
Registry<CollectionHook, 16> hooks;
void (*rtableWalk)(DAG s, Visitor visit) = nullptr;
void (*rtableDeath)(DAG s) = nullptr;

void visitFrame(const Frame& frame, Visitor visit) {
  for (DAG word : {frame.locals, frame.args, frame.procName, frame.proc, frame.currentStatement, frame.ditto1,
                   frame.ditto2, frame.ditto3, frame.inCondition, frame.envVars})
    visit(word);
}

bool isReached(DAG s) { return isAlive(s); }

}  // namespace

void registerRoot(DAG* root) { rootArrays.add({root, 1}); }
void registerRootArray(DAG* roots, int count) { rootArrays.add({roots, count}); }
void registerRootWalker(void (*walk)(Visitor visit)) { rootWalkers.add(walk); }
void registerLastWish(void (*collectDead)(bool (*isAlive)(DAG), Visitor keep), void (*run)()) {
  lastWishes.add({collectDead, run});
}
void registerCollectionHook(void (*begin)(), void (*end)()) { hooks.add({begin, end}); }
void registerRtables(void (*walk)(DAG s, Visitor visit), void (*die)(DAG s)) {
  rtableWalk = walk;
  rtableDeath = die;
}

void forEachRoot(Visitor visit) {
  for (DAG* constant : constantRoots) visit(*constant);
  for (DAG name : ininame) visit(name);
  for (DAG table : builtrem) visit(table);
  for (DAG missed : notinlib) visit(missed);
  // Blocks nested on the native stack share frames; the frames form one chain down to the top level.
  for (const Frame* frame = Environment == nullptr ? nullptr : Environment->frame; frame != nullptr;
       frame = frame->previousFrame)
    visitFrame(*frame, visit);
  visitFrame(TopLevelStack, visit);
  for (const RootArray& array : rootArrays)
    for (int i = 0; i < array.count; ++i) visit(array.words[i]);
  for (auto* walk : rootWalkers) walk(visit);
}

void runBeginHooks() {
  for (const CollectionHook& hook : hooks)
    if (hook.begin != nullptr) hook.begin();
}
void runEndHooks() {
  for (const CollectionHook& hook : hooks)
    if (hook.end != nullptr) hook.end();
}
void collectLastWishes() {
  for (const LastWish& wish : lastWishes) wish.collectDead(isReached, mark);
}
void runLastWishes() {
  for (const LastWish& wish : lastWishes) wish.run();
}

void walkRtable(DAG s, Visitor visit) {
  if (rtableWalk != nullptr) rtableWalk(s, visit);
  else forEachReferenceField(s, [visit](DAG& field) { visit(field); });
}
void rtableDies(DAG s) {
  if (rtableDeath != nullptr) rtableDeath(s);
}

}  // namespace korel
