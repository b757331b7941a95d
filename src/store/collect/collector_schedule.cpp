// When a collection runs, and of which sort: decided by what the latest ones have found.

#include <algorithm>

#include "store/collect/collector_phases.h"

namespace korel {

namespace {

constexpr int mostShort = 15;

std::int64_t keptByFull = 0;  // words in use after the latest full collection
int shortSinceFull = 0;       // collections since
int shortInARow = mostShort;  // short collections that pay before the next full one

std::int64_t keptByLatest = 0;  // words in use after the latest one, the tables of unique objects left out
double deadShare = 1;           // of the words that had been released, how many it found dead
bool gaveLittle = false;        // whether what it found dead was a small share of what was alive
bool fullWanted = false;        // whether what short ones have kept since the latest full one may hold garbage
std::int64_t wantedAt = 1;      // it may when it is more than this part of what is alive: 1/8 to 1/1
bool demanded = false;          // whether the next one that is due must not wait
bool intervalTold = false;      // whether the user has set the interval

// Programs whose objects die when they are old have full collections more often (bench/programs/strings.krl).
void adaptToFull(const CollectionOutcome& c) {
  keptByFull = wordsInUse();
  const bool hadGarbage = c.inUseBefore - keptByFull > keptByFull / 4;
  shortInARow = hadGarbage && !collectAlways ? shortInARow / 2 : std::min(2 * shortInARow + 1, mostShort);
}

}  // namespace

std::int64_t wordsInUse() { return totalmem - totalfree; }

// A full collection costs as much as what lives, which the short ones before it have grown to twice as much
// at most; and what dies among tenured objects is found after a while however little it is.
bool isShortEnough() { return !fullWanted && shortSinceFull < shortInARow && wordsInUse() <= 2 * keptByFull; }

// Walking the heap costs as much for a few dead objects as for many, and what has not been released cannot die,
// but for what an earlier collection reached: the walk of a large heap pays when as much is expected to be dead
// as lives, that of a small one when half an interval is (bench/programs/sequences.krl, strings.krl). Waiting is for
// programs that build something large. Where collections find a quarter of what is alive to be dead, or a full one
// might, and where the user has told the interval, each takes place when it is due.
bool canCollectionWait() {
  constexpr int mostGenerations = 960;  // each interval takes two thirds of the labels that are left
  if (collectAlways || demanded || intervalTold || !gaveLittle || fullWanted || gcgen >= mostGenerations) return false;
  const std::int64_t worthwhile = std::max(keptByLatest - incrgc, incrgc / 2);
  return deadShare * static_cast<double>(releasedWords()) < static_cast<double>(worthwhile);
}

void setCollectionInterval(std::int64_t words) {
  incrgc = words;
  intervalTold = true;
}

void demandCollection() {
  demanded = true;
  nextgc = nextgcgen = cused - 1;  // the next look finds both passed
}

void recordOutcome(const CollectionOutcome& c) {
  demanded = false;
  shortSinceFull = c.isShort ? shortSinceFull + 1 : 0;
  keptByLatest = wordsInUse() - c.inTables;
  // Never so low that a program which turns to making garbage isn't found out.
  const auto released = static_cast<double>(std::max<std::int64_t>(c.released, 1));
  deadShare = std::clamp(static_cast<double>(wret) / released, 0.5, 1.0);
  if (!c.isShort) adaptToFull(c);
  gaveLittle = wret < wordsInUse() / 4;
  // Programs that build something find next to nothing, and ask less and less often.
  if (!gaveLittle) wantedAt = 8;
  else if (!c.isShort && fullWanted) wantedAt = std::max<std::int64_t>(wantedAt / 2, 1);
  fullWanted = c.isShort && wordsInUse() - keptByFull > wordsInUse() / wantedAt;
}

}  // namespace korel
