#include "eval/walk/has.h"

#include <algorithm>

#include "frame/interrupts.h"
#include "store/constants.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

// One search runs at a time: none of the tests starts another.
PartSearch walk;
// What is sought, when it is several objects.
ObjectSet sought;

// For tests that no sequence of arguments passes.
struct NoSequenceRules : StoragePartRules {
  static constexpr bool testsArguments = false;
};
using OutsideProcedures = ClosedPartRules<TagSet{PROC, MODDEF, TABLE}>;
struct OutsideIndices : StoragePartRules {
  [[gnu::always_inline]] static Parts partsOf(DAG x) {
    return hasTag(x, TABLEREF) ? fieldsOf(x, 1, 2) : korel::partsOf(x);
  }
};
using OutsideProceduresAndQuotes = ClosedPartRules<TagSet{PROC, MODDEF, TABLE, UNEVAL}>;

template <class Rules = StoragePartRules, class Test>
bool anyPart(DAG x, Test test) {
  return walk.any<Rules>(x, test, test);
}
// The same where only leaves can pass the test.
template <class Rules, class Test>
bool anyLeaf(DAG x, Test test) {
  return walk.any<Rules>(x, test, [](DAG) { return false; });
}

bool isPairs(DAG x) { return !isImmediate(x) && (hasTag(x, SUM) || hasTag(x, PROD)); }

template <class Test>
bool anySecond(DAG pairs, Test test) {
  for (Word i = 2, n = lengthOf(pairs); i < n; i += 2)
    if (test(pairs[i])) return true;
  return false;
}

template <class Rules>
bool hasPart(DAG x, DAG y) {
  if (x == y) return true;
  if (y == sqrtm1) return anyPart<NumberPartRules<Rules>>(x, [](DAG part) { return hasTag(part, COMPLEX); });
  if (isNumeric(y))
    return anyPart<NumberPartRules<Rules>>(x, [y](DAG part) {
      return part == y || (isPairs(part) && anySecond(part, [y](DAG second) { return second == y; }));
    });
  if (isPairs(y) && lengthOf(y) == 3)
    return anyPart<Rules>(x, [y, tag = tagOf(y)](DAG part) {
      if (part == y) return true;
      if (!hasTag(part, tag)) return false;
      for (Word i = 1, n = lengthOf(part); i < n; i += 2)
        if (part[i] == y[1] && part[i + 1] == y[2]) return true;
      return false;
    });
  if (isTag(y, COMPLEX)) return anyPart<NumberPartRules<Rules>>(x, [y](DAG part) { return part == y; });
  if (isText(y)) return anyLeaf<Rules>(x, [y](DAG part) { return part == y; });
  return anyPart<Rules>(x, [y](DAG part) { return part == y; });
}

}  // namespace

bool has(DAG x, DAG y) { return hasPart<StoragePartRules>(x, y); }
bool hasOutsideIndices(DAG x, DAG y) { return hasPart<OutsideIndices>(x, y); }
bool hasExceptInPROCorUNEVAL(DAG x, DAG y) { return hasPart<OutsideProceduresAndQuotes>(x, y); }

namespace {

// Found by its word alone: no look at coefficients and exponents, no COMPLEX that stands for I.
bool isFoundByWord(DAG y) { return !isNumeric(y) && !isTag(y, COMPLEX) && !(isPairs(y) && lengthOf(y) == 3); }

// Any of member(0), ... member(count - 1) occurs in `x`. Those that are found by their word are sought
// together, in one walk.
template <class Member>
bool hasAnyOf(DAG x, Word count, Member member) {
  passWork(count);
  sought.clear();
  Word together = 0;
  for (Word i = 0; i < count; ++i)
    if (isFoundByWord(member(i)) && (sought.insert(member(i)), sought.contains(member(i)))) ++together;
  // A few names, and the list of them. Comparisons in registers are cheaper than a look into a set.
  DAG whole = count > 0 ? member(count - 1) : DAG();
  Word names = count - (together == count && count > 0 && !isText(whole));
  if (together == count && count > 1 && names <= 4 && !hasTag(whole, EXPSEQ)) {
    auto name = [&](Word i) { return member(i < names ? i : 0); };
    DAG a = name(0), b = name(1), c = name(2), d = name(3);
    // Names that were made together lie together: one comparison is enough for most others.
    Word least = std::min({a.word, b.word, c.word, d.word});
    Word span = std::max({a.word, b.word, c.word, d.word}) - least;
    auto isSought = [=](DAG part) {
      return part.word - least <= span && (part == a || part == b || part == c || part == d);
    };
    if (isText(a) && isText(b) && isText(c) && isText(d))
      return walk.any<NoSequenceRules>(x, isSought, [=](DAG part) { return part == whole; });
  }
  if (together < 2) sought.clear();
  else if (anyPart(x, [](DAG part) { return !isImmediate(part) && sought.contains(part); })) return true;
  for (Word i = 0; i < count; ++i) {
    if (!isImmediate(member(i)) && sought.contains(member(i))) continue;
    passWork(searchSteps);
    if (has(x, member(i))) return true;
  }
  return false;
}

}  // namespace

bool hasany(DAG x, DAG y) {
  if (isImmediate(y)) return has(x, y);
  bool collection = hasTag(y, LIST) || hasTag(y, SET);
  DAG members = collection ? y[1] : y;
  if (isImmediate(members) || !hasTag(members, EXPSEQ)) return has(x, y) || (collection && has(x, members));
  // A list or set also counts as a whole.
  Word count = lengthOf(members) - 1;
  return hasAnyOf(x, count + collection, [&](Word i) { return i < count ? members[i + 1] : y; });
}

bool hasLeftSide(DAG x, DAG equations) {
  return hasAnyOf(x, lengthOf(equations) - 1, [&](Word i) { return equations[i + 1][1]; });
}

namespace {

// Parts, coefficients and exponents for which `isSought` holds.
template <class Sought>
bool hasObject(DAG x, Sought isSought) {
  return anyPart(x, [=](DAG part) { return isSought(part) || (isPairs(part) && anySecond(part, isSought)); });
}

}  // namespace

bool hasid(DAG x, Tag tag) {
  return hasObject(x, [tag](DAG part) { return hasTag(part, tag); });
}
bool hasfloat(DAG x) {
  return hasObject(x, [](DAG part) { return hasTag(part, FLOAT) || hasTag(part, HFLOAT); });
}

bool hasparloc(DAG x) {
  return anyPart(x, [](DAG part) { return isAmong(part, frameReferenceTags); });
}
bool hasparlocExceptInPROC(DAG x) {
  return anyPart<OutsideProcedures>(x, [](DAG part) { return isAmong(part, frameReferenceTags); });
}

bool refersToFrame(DAG x) {
  return walk.any<NoSequenceRules>(
      x, [](DAG part) { return part == ini("%") || part == ini("%%") || part == ini("%%%"); },
      [](DAG part) {
        return isAmong(part, frameReferenceTags | TagSet{MEMBER, PROC, MODDEF});
      });
}

bool hasCallTo(DAG x, DAG head) {
  return anyPart(x, [head](DAG part) { return isCallOf(part, head); });
}

DAG builtin::has(const BuiltinCall& call) {
  if (argumentCount(call) != 2) wrongParameters(call);
  return hasany(call.arguments[1], call.arguments[2]) ? ini("true") : ini("false");
}

}  // namespace korel
