#include "structure/has.h"

#include <vector>

#include "store/constants.h"
#include "store/word_map.h"

namespace korel {

bool hasExceptPROC = false, hasExceptUNEVAL = false, NoHasOfArrayRef = false;

void ResetHas() { hasExceptPROC = hasExceptUNEVAL = NoHasOfArrayRef = false; }

namespace {

// Objects yet to be entered, and those that have been met. One walk runs at a time: none of the tests
// starts another.
std::vector<DAG> pending;
WordMap met;

// Below this many objects meeting one twice costs less than remembering them all.
constexpr int rememberFrom = 64;
constexpr std::size_t largestKeptStack = 1u << 18;

bool isLeaf(DAG x) {
  if (isImmediate(x)) return true;
  Tag tag = tagOf(x);
  return tag <= NAME && tag != COMPLEX;
}

// True when `test` holds for `x` or a part of it. `test` is called on each part once, or a few times.
template <class Test>
bool anyPart(DAG x, Test test) {
  if (!x) return false;
  if (test(x)) return true;
  if (isImmediate(x)) return false;
  pending.clear();
  bool found = false, remembers = false;
  int entered = 0;
  pending.push_back(x);
  while (!found && !pending.empty()) {
    DAG object = pending.back();
    pending.pop_back();
    if (remembers) {
      if (met.insert(object.word, 0) == WordMap::present) continue;
    } else if (++entered == rememberFrom) {
      remembers = true;
    }
    forEachPart(object, [&](DAG part) {
      if (found) return;
      if (test(part)) found = true;
      else if (!isLeaf(part)) pending.push_back(part);
    });
  }
  if (remembers) met.release();
  if (pending.capacity() > largestKeptStack) std::vector<DAG>().swap(pending);
  return found;
}

bool isPairs(DAG x) { return !isImmediate(x) && (hasTag(x, SUM) || hasTag(x, PROD)); }

template <class Test>
bool anySecond(DAG pairs, Test test) {
  for (Word i = 2, n = lengthOf(pairs); i < n; i += 2)
    if (test(pairs[i])) return true;
  return false;
}

}  // namespace

bool has(DAG x, DAG y) {
  if (x == y) return true;
  if (y == sqrtm1) return anyPart(x, [](DAG part) { return hasTag(part, COMPLEX); });
  if (isNumeric(y))
    return anyPart(x, [y](DAG part) {
      return part == y || (isPairs(part) && anySecond(part, [y](DAG second) { return second == y; }));
    });
  if (isPairs(y) && lengthOf(y) == 3)
    return anyPart(x, [y, tag = tagOf(y)](DAG part) {
      if (part == y) return true;
      if (!hasTag(part, tag)) return false;
      for (Word i = 1, n = lengthOf(part); i < n; i += 2)
        if (part[i] == y[1] && part[i + 1] == y[2]) return true;
      return false;
    });
  return anyPart(x, [y](DAG part) { return part == y; });
}

bool hasany(DAG x, DAG y) {
  if (isImmediate(y)) return has(x, y);
  if (hasTag(y, LIST) || hasTag(y, SET)) return has(x, y) || hasany(x, y[1]);
  if (!hasTag(y, EXPSEQ)) return has(x, y);
  for (Word i = lengthOf(y) - 1; i > 0; --i)
    if (has(x, y[i])) return true;
  return false;
}

bool hasExceptInPROCorUNEVAL(DAG x, DAG y) {
  hasExceptPROC = hasExceptUNEVAL = true;
  bool found = has(x, y);
  hasExceptPROC = hasExceptUNEVAL = false;
  return found;
}

bool hasid(DAG x, Tag tag) {
  return anyPart(x, [tag](DAG part) {
    return hasTag(part, tag) ||
           (isPairs(part) && anySecond(part, [tag](DAG second) { return hasTag(second, tag); }));
  });
}

bool hasparloc(DAG x) {
  return anyPart(x, [](DAG part) {
    return hasTag(part, LOCAL) || hasTag(part, PARAM) || hasTag(part, LEXICAL);
  });
}

bool hasCallTo(DAG x, DAG head) {
  return anyPart(x, [head](DAG part) {
    return !isImmediate(part) && hasTag(part, FUNCTION) && part[1] == head;
  });
}

DAG hasBuiltin(const BuiltinCall& call) {
  if (argumentCount(call) != 2) wrongParameters(call);
  return hasany(call.arguments[1], call.arguments[2]) ? ini("true") : ini("false");
}

}  // namespace korel
