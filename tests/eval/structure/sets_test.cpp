// Laws of sets, and that results share what they can.

#include <gtest/gtest.h>
#include <rapidcheck.h>
#include <string>
#include <vector>

#include "eval/simplify/simplify.h"
#include "eval/structure/sets.h"
#include "kernel_fixture.h"
#include "store/check/verify.h"
#include "store/constants.h"
#include "store/names.h"
#include "store/objects.h"

namespace korel::test {
namespace {

constexpr int universeSize = 40;

/// Small integers and names: words of both kinds, in no order that their numbers tell.
DAG element(int n) {
  return n % 3 == 0 ? immediate(n / 3 - 6) : naminstall(("e" + std::to_string(n * 7 % 40)).c_str());
}
DAG setOf(const std::vector<int>& numbers) {
  DAG s = newl2(static_cast<Word>(numbers.size() + 1), EXPSEQ);
  for (std::size_t i = 0; i < numbers.size(); ++i) s[static_cast<std::int64_t>(i) + 1] = element(numbers[i]);
  return simpl(new2(SET, simpl(s)));
}
DAG anySet() { return setOf(*rc::gen::container<std::vector<int>>(rc::gen::inRange(0, universeSize))); }
DAG universe() {
  std::vector<int> all;
  for (int n = 0; n < universeSize; ++n) all.push_back(n);
  return setOf(all);
}

TEST(Sets, Laws) {
  DAG u = universe();
  EXPECT_TRUE(rc::check([u] {
    DAG a = anySet(), b = anySet(), c = anySet();
    auto outside = [u](DAG x) { return setdiff(u, x); };
    // De Morgan, absorption, distribution, and difference as an intersection.
    RC_ASSERT(outside(setunion(a, b)) == setinters(outside(a), outside(b)));
    RC_ASSERT(outside(setinters(a, b)) == setunion(outside(a), outside(b)));
    RC_ASSERT(setunion(a, setinters(a, b)) == a);
    RC_ASSERT(setinters(a, setunion(a, b)) == a);
    RC_ASSERT(setinters(a, setunion(b, c)) == setunion(setinters(a, b), setinters(a, c)));
    RC_ASSERT(setdiff(a, b) == setinters(a, outside(b)));
    RC_ASSERT(setunion(a, b) == setunion(b, a));
    RC_ASSERT(setdiff(setunion(a, b), b) == setdiff(a, b));
  }));
}

TEST(Sets, MembersAreFoundAndNothingElse) {
  EXPECT_TRUE(rc::check([] {
    DAG a = anySet(), b = anySet();
    DAG both = setinters(a, b), either = setunion(a, b), left = setdiff(a, b);
    for (int n = 0; n < universeSize; ++n) {
      DAG x = element(n);
      bool inA = setmember(a, x), inB = setmember(b, x);
      RC_ASSERT(setmember(both, x) == (inA && inB));
      RC_ASSERT(setmember(either, x) == (inA || inB));
      RC_ASSERT(setmember(left, x) == (inA && !inB));
    }
  }));
}

// The operand's sequence serves for the result when it is the result: no new object.
TEST(Sets, ResultsEqualToAnOperandShareIt) {
  EXPECT_TRUE(rc::check([] {
    DAG a = anySet(), part = setinters(a, anySet());
    RC_ASSERT(setunion(a, part) == a);
    RC_ASSERT(setunion(part, a) == a);
    RC_ASSERT(setinters(a, part)[1] == part[1]);
    RC_ASSERT(setdiff(a, setdiff(universe(), a)) == a);
    RC_ASSERT(setdiff(part, a) == emptyset);
  }));
}

// Sorting keeps what occurs twice and returns an ascending sequence as it is.
TEST(Sets, SetsortSortsACopy) {
  DAG s = simpl(newSequence({immediate(5), immediate(-3), immediate(5), immediate(1)}));
  DAG sorted = simpl(setsort(s));
  EXPECT_EQ(text(s), "5, -3, 5, 1");
  EXPECT_EQ(text(sorted), "-3, 1, 5, 5");
  DAG ascending = simpl(newSequence({immediate(1), immediate(2)}));
  EXPECT_EQ(setsort(ascending), ascending);
  EXPECT_EQ(setsort(null), null);
}

}  // namespace
}  // namespace korel::test
