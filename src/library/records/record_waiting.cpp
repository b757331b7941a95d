// Objects that wait to be simplified until the lines at which that looks have come into the cache.

#include "eval/simplify/simplify.h"
#include "library/records/record_reading.h"

namespace korel {

namespace {

// How far the reading goes on meanwhile, a few hundred nanoseconds: until the bucket has come, which leads to the
// chain, and until that has.
constexpr Word bucketsLate = 4, objectsLate = 12;
static_assert(bucketsLate < objectsLate && objectsLate < WaitingObjects::space);

// Longer objects take longer to hash than the line takes to come.
constexpr Word shortLength = 16;

bool isWaiting(DAG x) { return isObject(x) && !isSimplified(x) && (controlWord(x) & replacedBit) == 0; }

// Parts have come before what they are part of, so that none of its fields waits.
void settleFirst(Reading& r) {
  const WaitingObjects::Entry entry = r.waiting.entries[r.waiting.first++ % WaitingObjects::space];
  DAG s = entry.object;
  for (Word i = 1, n = lengthOf(s); i < n; ++i) s[i] = settledObject(s[i]);
  DAG x = simpl(s);
  if (x == s) return;
  // What an object is replaced by doesn't hold it: nothing else than the reader knows it.
  assert(!isSimplified(s));
  controlWord(s) |= replacedBit;
  s[1] = x;
  if (entry.number != 0) enter(r, entry.number, x);
}

}  // namespace

DAG letWait(Reading& r, Word number, DAG x) {
  WaitingObjects& w = r.waiting;
  w.entries[w.end++ % WaitingObjects::space] = {x, number, lengthOf(x) <= shortLength ? prefetchBucket(x) : 0};
  if (number != 0) enter(r, number, x);
  if (w.end > bucketsLate) prefetchChain(w.entries[(w.end - bucketsLate) % WaitingObjects::space].key);
  if (w.end - w.first > objectsLate) settleFirst(r);
  return x;
}

void settleWaiting(Reading& r) {
  while (r.waiting.first != r.waiting.end) settleFirst(r);
}

void forgetWaiting(Reading& r) {
  for (; r.waiting.first != r.waiting.end; ++r.waiting.first) {
    const Word number = r.waiting.entries[r.waiting.first % WaitingObjects::space].number;
    if (number != 0) enter(r, number, DAG());
  }
}

void settleFields(Reading& r, DAG s) {
  if (onLink(r)) return;  // nothing waits
  for (Word i = 1, n = lengthOf(s); i < n; ++i) {
    if (isWaiting(s[i])) settleWaiting(r);
    s[i] = settledObject(s[i]);
  }
}

DAG nextSettled(Reading& r) {
  DAG x = nextRecord(r);
  if (isWaiting(x)) settleWaiting(r);
  return settledObject(x);
}

}  // namespace korel
