// Generations: when they open and are released, and their new numbers after a collection.

#include <algorithm>

#include "frame/errors.h"
#include "store/collect/collector_phases.h"

namespace korel {

namespace {

// Neighbouring generations that get one number. Those that are not released stand in the order of
// their age; the lowest levels at which they allocated and at which a statement ended do not fall. The
// first is never released, so that it stays by itself: what joined it would never die.
struct Group {
  int last;            // the youngest generation of the group
  std::int32_t level;  // `genc`
  std::int32_t ended;  // `gene`

  bool sameAs(const Group& other) const { return level == other.level && ended == other.ended; }
};

struct Groups {
  Group list[generationCount];
  int count = 0;

  void add(const Group& group) {
    if (count > 1 && list[count - 1].sameAs(group)) list[count - 1].last = group.last;
    else list[count++] = group;
  }

  // The neighbours whose levels are nearest, beyond the first generation's group, become one.
  void mergeNearest() {
    std::int32_t bestGap = noLevel;
    int best = 1;
    for (int i = 1; i + 1 < count; ++i) {
      std::int32_t gap = std::abs(list[i + 1].level - list[i].level);
      if (gap < bestGap || (gap == bestGap && list[i].level < list[best].level)) {
        bestGap = gap;
        best = i;
      }
    }
    list[best] = {list[best + 1].last, std::min(list[best].level, list[best + 1].level),
                  std::min(list[best].ended, list[best + 1].ended)};
    remove(best + 1);
    if (best + 1 < count && list[best].sameAs(list[best + 1])) {
      list[best].last = list[best + 1].last;
      remove(best + 1);
    }
    if (best > 1 && list[best - 1].sameAs(list[best])) {
      list[best - 1].last = list[best].last;
      remove(best);
    }
  }

  void remove(int i) {
    std::copy(list + i + 1, list + count, list + i);
    --count;
  }
};

// Words handed out while each generation was the current one; what joins takes its words along.
std::int64_t wordsOf[generationCount];
std::int64_t openedAt = 0;  // `wordsUsed` when counting for the current one began

void countCurrentGeneration() {
  const std::int64_t now = wordsUsed();
  wordsOf[gcgen] += now - openedAt;
  openedAt = now;
}

// A statement at `level` has ended: generations that allocated only at that level or deeper are
// released, down to one that has been through this for a level as low. At level 2, between the
// statements of the top level, all are.
void releaseGenerations(std::int32_t level) {
  if (level >= gene[gcgen]) return;
  gene[gcgen] = level;
  for (int g = gcgen - 1; g >= 2; --g) {
    if (genc[g] >= level || level == 2) genc[g] = 0;
    if (gene[g] <= level) return;
    gene[g] = level;
  }
}

void openGeneration() {
  countCurrentGeneration();
  ++gcgen;
  wordsOf[gcgen] = 0;
  if (gcgen >= firstMarkLabel) notimpl("gc-7");
  genc[gcgen] = gene[gcgen] = noLevel;
  genpat = static_cast<Word>(gcgen) << generationShift;
  scheduleGeneration();
}

}  // namespace

void settleGenerations(std::int32_t level) {
  releaseGenerations(level);
  // Within external code nothing is collected: the labels of a callback's statements would run out.
  if (cused > nextgcgen && !InExternalCall) openGeneration();
  if (cused > nextgc || collectAlways) {
    if (!canCollectionWait()) collectInTurn();
    setGenerationInterval();
    scheduleGeneration();
    nextgc = cused + incrgc;
  }
}

void collectBetweenStatements() {
  constexpr std::int32_t topLevel = 2;
  // The present generation is released by the end of a statement behind it.
  openGeneration();
  releaseGenerations(topLevel);
  gc();
  memoryRanOut = false;
}

std::int64_t releasedWords() {
  std::int64_t words = 0;
  for (int g = 2; g <= gcgen; ++g)
    if (genc[g] == 0) words += wordsOf[g];
  return words;
}

// The interval shrinks as the labels are used up: two thirds of those left last to the next time.
void setGenerationInterval() { incrgen = 3 * incrgc / (2042 - 2 * gcgen) + 1; }

void planGenerations(GenerationPlan& plan) {
  Groups groups;
  for (int g = 1; g <= gcgen; ++g)
    if (genc[g] != 0) groups.add({g, genc[g], gene[g]});
  while (groups.count > maxKeptGenerations) groups.mergeNearest();
  countCurrentGeneration();

  plan.kept = groups.count;
  int number = 1;
  plan.newNumber[0] = 0;
  for (int g = 1; g <= gcgen; ++g) {
    while (number < groups.count && groups.list[number - 1].last < g) ++number;
    plan.newNumber[g] = static_cast<std::int16_t>(genc[g] == 0 ? 0 : number);
  }
  for (int k = 1; k <= groups.count; ++k) {
    plan.level[k] = groups.list[k - 1].level;
    plan.ended[k] = groups.list[k - 1].ended;
    plan.words[k] = 0;
  }
  for (int g = 1; g <= gcgen; ++g)
    if (plan.newNumber[g] != 0) plan.words[plan.newNumber[g]] += wordsOf[g];
}

void renumberGenerations(const GenerationPlan& plan) {
  int current = plan.newNumber[gcgen];
  for (int k = 1; k <= plan.kept; ++k) {
    genc[k] = plan.level[k];
    gene[k] = plan.ended[k];
    wordsOf[k] = plan.words[k];
  }
  gcgen = current;
  if (gcgen >= firstMarkLabel) notimpl("gc-0");
  setGenerationInterval();
  genpat = static_cast<Word>(gcgen) << generationShift;
}

}  // namespace korel
