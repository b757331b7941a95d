// Searches and counts: against a plain recursive walk, and on objects whose tree is astronomically
// larger than the objects themselves.

#include <cstring>
#include <gtest/gtest.h>
#include <rapidcheck.h>
#include <string>

#include "eval/simplify/simplify.h"
#include "eval/structure/operands.h"
#include "eval/structure/substitute.h"
#include "eval/walk/has.h"
#include "eval/walk/measure.h"
#include "kernel_fixture.h"
#include "numbers/arithmetic.h"
#include "numbers/integer/integer.h"
#include "random_expressions.h"
#include "store/constants.h"
#include "store/names.h"
#include "store/objects.h"
#include "store/reference_fields.h"

namespace korel::test {
namespace {

bool plainHas(DAG x, DAG y) {
  if (x == y) return true;
  if (isImmediate(x)) return false;
  if (y == sqrtm1 && hasTag(x, COMPLEX)) return true;
  if (hasTag(x, SUM) || hasTag(x, PROD))
    for (Word i = 1; i < lengthOf(x); i += 2) {
      if (!isImmediate(y) && tagOf(y) == tagOf(x) && lengthOf(y) == 3 && y[1] == x[i] && y[2] == x[i + 1]) return true;
      if (isNumeric(y) && x[i + 1] == y) return true;
    }
  bool found = false;
  forEachPart(x, [&](DAG part) { found = found || plainHas(part, y); });
  return found;
}

TEST(Has, AgreesWithAPlainWalk) {
  EXPECT_TRUE(rc::check([] {
    Recipe r = *recipes(4, allInnerKinds), s = *recipes(1);
    DAG x, y;
    RC_PRE(hasSimplifiedForm(r, &x) && hasSimplifiedForm(s, &y));
    for (DAG part : {y, naminstall("x"), DAG(cons1), sqrtm1, simpl(new3(PROD, naminstall("y"), consm1))}) {
      RC_LOG() << text(part) << " in " << text(x) << "\n";
      RC_ASSERT(has(x, part) == plainHas(x, part));
      RC_ASSERT((numboccur(x, part) != cons0) == has(x, part));
    }
  }));
}

// Words, digits and characters, part by part.
std::int64_t plainLength(DAG x) {
  if (isInteger(x)) return ilength(x);
  if (hasTag(x, NAME) || hasTag(x, STRING)) return static_cast<std::int64_t>(std::strlen(textOf(x)));
  std::int64_t size = lengthOf(x);
  if (hasTag(x, HASHTAB)) size = 0;
  if (hasTag(x, HASH)) size = 0;  // of a table the entries count, not what holds them
  forEachReferenceField(x, [&](DAG field) { size += field ? plainLength(field) : 0; });
  return size;
}

TEST(Has, LengthAgreesWithAPlainWalk) {
  EXPECT_TRUE(rc::check([] {
    DAG x;
    RC_PRE(hasSimplifiedForm(*recipes(4, allInnerKinds), &x));
    RC_LOG() << text(x) << "\n";
    RC_ASSERT(text(length(x)) == std::to_string(plainLength(x)));
  }));
  for (std::size_t n = 0; n < 10; ++n)
    EXPECT_EQ(text(length(strinstall(std::string(n, 'a').c_str()))), std::to_string(n));
}

// f(t, t) again and again: 2^n leaves, n objects.
DAG doubled(int n) {
  DAG t = naminstall("leaf");
  for (int i = 0; i < n; ++i) t = simpl(newCall(naminstall("f"), {t, t}));
  return t;
}

TEST(Has, SharedPartsAreWalkedOnce) {
  DAG t = doubled(400), leaf = naminstall("leaf"), other = naminstall("other");
  EXPECT_TRUE(has(t, leaf));
  EXPECT_FALSE(has(t, other));
  EXPECT_TRUE(hasany(t, simpl(newSequence({leaf, other}))));
  EXPECT_FALSE(hasid(t, FLOAT));
  EXPECT_FALSE(hasparloc(t));
  EXPECT_TRUE(hasCallTo(t, naminstall("f")));
  EXPECT_EQ(text(numboccur(t, leaf)), text(simpl(power(immediate(2), 400))));
  // A call has 3 words, its head one character and its arguments 3 words.
  DAG size = length(t), expected = immediate(4);
  for (int i = 0; i < 400; ++i) expected = simpl(add(mul(immediate(2), expected), immediate(7)));
  EXPECT_EQ(text(size), text(expected));
  DAG replaced = subs(simpl(new3(EQUATION, leaf, other)), t);
  EXPECT_FALSE(has(replaced, leaf));
  EXPECT_EQ(subs(simpl(new3(EQUATION, other, leaf)), replaced), t);
}

// Several things sought at once are found as one by one, whether by their word or in a way of their own.
TEST(Has, AnyOfSeveralIsOneByOne) {
  EXPECT_TRUE(rc::check([] {
    Recipe r = *recipes(4, allInnerKinds), s = *recipes(2), t = *recipes(1);
    DAG x, y, z;
    RC_PRE(hasSimplifiedForm(r, &x) && hasSimplifiedForm(s, &y) && hasSimplifiedForm(t, &z));
    DAG numbers = newSequence({y, z, immediate(2), sqrtm1});
    DAG other = naminstall("other"), many = newSequence({z, other, other, other, other, y});
    for (DAG several : {newSequence({y, z}), newSequence({y, other, z}), numbers, many}) {
      DAG list = simpl(new2(LIST, several)), equations = newl2(lengthOf(several), EXPSEQ);
      bool any = false;
      for (Word i = 1; i < lengthOf(several); ++i) {
        any = any || plainHas(x, several[i]);
        equations[i] = new3(EQUATION, several[i], cons1);
      }
      RC_LOG() << text(list) << " in " << text(x) << "\n";
      RC_ASSERT(hasany(x, several) == any);
      RC_ASSERT(hasLeftSide(x, equations) == any);
      RC_ASSERT(hasany(simpl(new2(LIST, list)), list));
    }
  }));
}

// Long chains of a table have gaps: every entry is found behind them.
TEST(Has, EveryEntryOfALargeTable) {
  DAG table = newhashtab(2), g = naminstall("g");
  std::vector<DAG> keys, values;
  for (int i = 0; i < 2000; ++i) {
    keys.push_back(simpl(newCall(g, {immediate(i)})));
    values.push_back(simpl(newCall(g, {naminstall("v"), immediate(i)})));
    hashinsert(keys[i].word, values[i], table);
  }
  for (int i = 0; i < 2000; i += 7) {
    EXPECT_TRUE(has(table, keys[i]) && has(table, values[i])) << i;
    EXPECT_EQ(numboccur(table, values[i]), cons1) << i;
  }
  EXPECT_FALSE(has(table, naminstall("other")));
}

// Depth is no bound for a search; what builds or counts says when the stack ends.
TEST(Has, DeepObjectsNeedNoStack) {
  DAG x = naminstall("leaf");
  for (int i = 0; i < 1000000; ++i) {
    x = new2(LIST, new2(EXPSEQ, x));
    controlWord(x[1]) |= simplifiedBit;
    controlWord(x) |= simplifiedBit;
  }
  EXPECT_TRUE(has(x, naminstall("leaf")));
  EXPECT_FALSE(has(x, naminstall("other")));
  EXPECT_EQ(errorOf([&] { length(x); }), "too many levels of recursion");
  EXPECT_EQ(errorOf([&] { numboccur(x, naminstall("leaf")); }), "too many levels of recursion");
  EXPECT_EQ(errorOf([&] { subs(simpl(new3(EQUATION, naminstall("leaf"), cons1)), x); }),
            "too many levels of recursion");
  EXPECT_EQ(text(numboccur(doubled(3), naminstall("leaf"))), "8");
}

TEST(Has, LimitsHoldForOneSearch) {
  DAG p = valueOf("proc(a) global seen; seen + a end proc"), seen = naminstall("seen");
  DAG quoted = parsed("'seen + 1'"), call = parsed("g(seen)"), indexed = parsed("t[seen]");
  EXPECT_TRUE(has(p, seen) && has(quoted, seen) && has(call, seen));
  EXPECT_FALSE(hasExceptInPROCorUNEVAL(p, seen) || hasExceptInPROCorUNEVAL(quoted, seen));
  EXPECT_TRUE(hasExceptInPROCorUNEVAL(call, seen) && has(p, seen));
  EXPECT_TRUE(has(indexed, seen) && has(indexed, naminstall("t")));
  EXPECT_TRUE(hasparloc(p) && !hasparloc(call));
  EXPECT_TRUE(hasid(parsed("2.5*x + y"), FLOAT) && hasid(parsed("x^(1/2)"), RATIONAL));
}

}  // namespace
}  // namespace korel::test
