// The normal view on random objects: what `op` takes apart goes together again, and what `subsop`, `map`,
// `select` and `subs` make is well formed.

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include "eval/simplify/simplify.h"
#include "eval/structure/map.h"
#include "eval/structure/operands.h"
#include "eval/structure/select_elements.h"
#include "eval/structure/subsop.h"
#include "eval/structure/substitute.h"
#include "eval/walk/has.h"
#include "kernel_fixture.h"
#include "numbers/arithmetic.h"
#include "numbers/float/float.h"
#include "numbers/integer/integer.h"
#include "random_expressions.h"
#include "store/check/verify.h"
#include "store/constants.h"
#include "store/names.h"
#include "store/objects.h"

namespace korel::test {
namespace {

bool is(DAG x, Tag tag) { return !isImmediate(x) && hasTag(x, tag); }
// Tables are never one object with their like.
bool isUnique(DAG x) { return !hasid(x, TABLE); }

DAG randomObject() {
  Recipe r = *recipes(3, allInnerKinds);
  DAG x;
  RC_PRE(hasSimplifiedForm(r, &x));
  return x;
}

// An object from its head and operands alone.
DAG rebuilt(DAG x) {
  std::int64_t n = numterms(x);
  DAG head = op1(0, x);
  auto pairs = [&](Tag tag) {
    DAG result = newl2(static_cast<Word>(2 * n + 1), tag);
    for (std::int64_t i = 1; i <= n; ++i) {
      result[2 * i - 1] = op1(i, x);
      result[2 * i] = cons1;
    }
    return simpl(result);
  };
  if (head == ini("+")) return pairs(SUM);
  if (head == ini("*")) return pairs(PROD);
  if (head == ini("^")) return simpl(new3(POWER, op1(1, x), op1(2, x)));
  if (head == ini("Fraction")) return simpl(newObject(PROD, op1(1, x), cons1, op1(2, x), consm1));
  if (head == ini("Float")) return simpl(newFLOAT(op1(1, x), op1(2, x)));
  DAG operands = newl2(static_cast<Word>(n + 1), EXPSEQ);
  for (std::int64_t i = 1; i <= n; ++i) operands[i] = op1(i, x);
  if (is(x, FUNCTION) || is(x, TABLEREF)) return simpl(new3(tagOf(x), head, operands));
  if (is(x, LIST) || is(x, SET)) return simpl(new2(tagOf(x), operands));
  if (n == 1 && (isInteger(x) || is(x, STRING))) return op1(1, x);
  DAG same = newl2(static_cast<Word>(n + 1), tagOf(x));
  for (std::int64_t i = 1; i <= n; ++i) same[i] = op1(i, x);
  return simpl(same);
}

TEST(Operands, HeadAndOperandsMakeTheObject) {
  EXPECT_TRUE(rc::check([] {
    DAG x = randomObject();
    RC_PRE(!is(x, NAME) && !is(x, MEMBER) && !is(x, TABLE) && !is(x, SERIES) && !is(x, ZPPOLY));
    RC_LOG() << text(x) << "\n";
    RC_ASSERT(rebuilt(x) == x);
  }));
}

TEST(Operands, ReplacingAnOperandByItselfChangesNothing) {
  EXPECT_TRUE(rc::check([] {
    DAG x = randomObject();
    RC_PRE(!is(x, NAME) && !is(x, MEMBER) && !is(x, TABLE));
    RC_LOG() << text(x) << "\n";
    for (std::int64_t i = 1, n = numterms(x); i <= n; ++i) {
      if (is(x, SERIES) && i % 2 == 0) continue;
      RC_ASSERT(subsop(i, op1(i, x), x) == x);
      RC_ASSERT(subsop(i - n - 1, op1(i, x), x) == x);
    }
  }));
}

// Whatever is put anywhere, the result is a well-formed object or an error.
TEST(Operands, ReplacementsMakeWellFormedObjects) {
  EXPECT_TRUE(rc::check([] {
    DAG x = randomObject(), other = randomObject();
    DAG whole = simpl(new2(EXPSEQ, x));
    std::string before = text(x);
    for (std::int64_t i = 0, n = is(x, NAME) ? 1 : numterms(x); i <= n; ++i)
      for (DAG replacement : {other, DAG(null), DAG(cons0), naminstall("x")}) {
        DAG result;
        std::string error = errorOf([&] { result = subsop(i, replacement, x); });
        RC_LOG() << before << " at " << i << " gets " << text(replacement) << " " << error << "\n";
        if (error.empty()) RC_ASSERT(Verify(result));
      }
    // A member reference counts two operands and shows none.
    for (std::int64_t i = 1, n = is(x, NAME) || is(x, MEMBER) ? 0 : numterms(x); i <= n; ++i) {
      DAG part = op1(i, x);
      for (DAG replacement : {other, DAG(null), DAG(cons0)}) {
        DAG result;
        std::string error = errorOf([&] { result = subs(simpl(new3(EQUATION, part, replacement)), x); });
        RC_LOG() << text(part) << " = " << text(replacement) << " in " << before << " " << error << "\n";
        if (error.empty()) RC_ASSERT(Verify(result));
      }
    }
    RC_ASSERT(text(x) == before && simpl(new2(EXPSEQ, x)) == whole);
  }));
}

DAG itself(DAG x, void*) { return x; }

TEST(Mapping, TheIdentityGivesTheSameObject) {
  EXPECT_TRUE(rc::check([] {
    DAG x = randomObject();
    RC_LOG() << text(x) << "\n";
    DAG result = MapFunction({itself, nullptr, OperandWalk::mapping}, x);
    if (is(x, TABLE)) RC_ASSERT(text(result) == text(x));
    else RC_ASSERT(result == x);
  }));
}

// `select` and `remove` share the operands, and `selectremove` is both.
TEST(Mapping, SelectAndRemovePartition) {
  EXPECT_TRUE(rc::check([] {
    DAG x = randomObject();
    RC_PRE(is(x, SUM) || is(x, PROD) || is(x, LIST) || is(x, SET) || is(x, FUNCTION));
    RC_PRE(!is(x, PROD) || multiplication(x));
    DAG type = *rc::gen::element(ini("algebraic"), ini("numeric"), ini("list"), ini("function"));
    Predicate predicate = makePredicate(ini("type"), simpl(new2(EXPSEQ, type)));
    OperandWalk selecting{mselect, &predicate, OperandWalk::selection},
        removing{mremove, &predicate, OperandWalk::selection};
    DAG selected, removed, both;
    // A product in a sum's place, as a list or a relation alone, may have no simplified form.
    RC_PRE(errorOf([&] {
             selected = MapFunction(selecting, x);
             removed = MapFunction(removing, x);
           }).empty());
    both = SelectRemove(predicate, x);
    RC_LOG() << text(x) << " gives " << text(selected) << " and " << text(removed) << "\n";
    RC_ASSERT(both == simpl(new3(EXPSEQ, selected, removed)));
    if (addition(x)) {
      RC_ASSERT(simpl(new5(SUM, selected, cons1, removed, cons1)) == x);
    } else if (multiplication(x)) {
      RC_ASSERT(simpl(new5(PROD, selected, cons1, removed, cons1)) == x);
    } else {
      RC_ASSERT(numterms(selected) + numterms(removed) == numterms(x));
      for (std::int64_t i = 1; i <= numterms(selected); ++i) RC_ASSERT(holdsFor(predicate, op1(i, selected)));
      for (std::int64_t i = 1; i <= numterms(removed); ++i) RC_ASSERT(!holdsFor(predicate, op1(i, removed)));
    }
  }));
}

DAG equation(const char* left, const char* right) { return simpl(new3(EQUATION, naminstall(left), naminstall(right))); }

TEST(Substitution, DisjointEquationsCommute) {
  EXPECT_TRUE(rc::check([] {
    DAG e = randomObject();
    DAG x = equation("x", "fresh1"), y = equation("y", "fresh2");
    RC_LOG() << text(e) << "\n";
    DAG together = subs(simpl(new3(EXPSEQ, x, y)), e);
    DAG apart = subs(x, subs(y, e)), other = subs(y, subs(x, e));
    DAG back = subs(simpl(new3(EXPSEQ, equation("fresh1", "x"), equation("fresh2", "y"))), together);
    RC_ASSERT(!has(together, naminstall("x")) && !has(together, naminstall("y")));
    RC_ASSERT(has(together, naminstall("fresh1")) == has(e, naminstall("x")));
    RC_ASSERT(Verify(together));
    if (!isUnique(e)) return;
    RC_ASSERT(together == apart);
    RC_ASSERT(together == other);
    RC_ASSERT(back == e);
    if (!has(e, naminstall("x")) && !has(e, naminstall("y"))) RC_ASSERT(together == e);
  }));
}

TEST(Substitution, ManyEquationsFindTheSameAsFew) {
  EXPECT_TRUE(rc::check([] {
    DAG e = randomObject();
    DAG many = newl2(32, EXPSEQ);
    const char* const lefts[] = {"x", "y", "z", "f"};
    for (int i = 1; i < 32; ++i) {
      const char* left = i % 8 == 0 ? lefts[i / 8] : "unused";
      many[i] = simpl(new3(EQUATION, naminstall(left), Newint(i)));
    }
    DAG few = newSequence({many[8], many[16], many[24]});
    DAG a, b;
    std::string first = errorOf([&] { a = subs(simpl(many), e); });
    std::string second = errorOf([&] { b = subs(simpl(few), e); });
    RC_LOG() << text(e) << " " << first << " " << second << "\n";
    RC_ASSERT(first == second);
    if (first.empty() && isUnique(e)) RC_ASSERT(a == b);
  }));
}

}  // namespace
}  // namespace korel::test
