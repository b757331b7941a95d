// Lists and polynomials in order, against the library's sort on the same members.

#include <algorithm>
#include <cstring>
#include <gtest/gtest.h>
#include <random>
#include <rapidcheck.h>
#include <string>
#include <vector>

#include "algebra/polynomial_order.h"
#include "eval/simplify/simplify.h"
#include "eval/structure/sort.h"
#include "kernel_fixture.h"
#include "numbers/arithmetic.h"
#include "numbers/integer/integer.h"
#include "store/constants.h"
#include "store/names.h"
#include "store/objects.h"

namespace korel::test {
namespace {

DAG sequenceOf(const std::vector<DAG>& members) {
  DAG s = newl2(static_cast<Word>(members.size() + 1), EXPSEQ);
  for (std::size_t i = 0; i < members.size(); ++i) s[static_cast<std::int64_t>(i) + 1] = members[i];
  return simpl(s);
}
std::vector<DAG> membersOf(DAG sequence) { return {&sequence[1], &sequence[1] + (lengthOf(sequence) - 1)}; }
std::vector<Word> wordsOf(const std::vector<DAG>& members) {
  std::vector<Word> words;
  for (DAG x : members) words.push_back(x.word);
  return words;
}

/// Integers, some of them long, and fractions.
rc::Gen<std::string> numbers() {
  auto small = rc::gen::map(rc::gen::inRange(-20, 20), [](int n) { return std::to_string(n); });
  return rc::gen::oneOf(
      small, small,
      rc::gen::map(rc::gen::pair(rc::gen::inRange(-9, 9), rc::gen::inRange(2, 9)),
                   [](std::pair<int, int> q) { return std::to_string(q.first) + "/" + std::to_string(q.second); }),
      rc::gen::map(rc::gen::inRange(-9, 10), [](int n) { return std::to_string(n) + "*10^20"; }));
}

// With distinct objects for equal values (1 and 1.0), only a stable sort gives the library's order.
TEST(Sort, NumbersAgreeWithAStableSort) {
  EXPECT_TRUE(rc::check([] {
    std::vector<DAG> members;
    for (const std::string& n : *rc::gen::container<std::vector<std::string>>(numbers())) {
      members.push_back(valueOf(n.c_str()));
      if (*rc::gen::inRange(0, 3) == 0) members.push_back(valueOf(("1.0*(" + n + ")").c_str()));
    }
    for (Order order : {Order::ascending, Order::descending}) {
      std::vector<DAG> expected = members;
      std::stable_sort(expected.begin(), expected.end(), [order](DAG a, DAG b) {
        return order == Order::ascending ? compcon(a, b) < 0 : compcon(a, b) > 0;
      });
      std::vector<DAG> sorted = membersOf(sortedSequence(sequenceOf(members), order, DAG()));
      RC_ASSERT(wordsOf(sorted) == wordsOf(expected));
    }
  }));
}

// Long lists go another way than short ones: sorted by digits.
TEST(Sort, LongListsAgreeWithAStableSort) {
  std::mt19937 random(5);
  auto textOfKind = [&](int kind) {
    std::string t;
    switch (kind) {
      case 0: return std::to_string(random() % 5000);
      case 1: return "a common beginning " + std::to_string(random() % 5000);
      case 2: return std::string(random() % 40, 'a');  // each the beginning of the others
      case 3: t = std::string(8 * (random() % 4), 'b'); [[fallthrough]];
      default:
        // Every character but the one that ends a text.
        for (int i = random() % 12; i > 0; --i) t += static_cast<char>(1 + random() % 255);
        return t;
    }
  };
  for (std::size_t size : {199, 200, 201, 1000, 5000})
    for (int kind = 0; kind < 6; ++kind) {
      std::vector<DAG> texts, integers;
      while (texts.size() < size) {
        std::string t = textOfKind(kind == 5 ? static_cast<int>(random() % 5) : kind);
        // A name and a string of the same text stay in their order.
        texts.push_back(random() % 2 == 0 ? strinstall(t.c_str()) : naminstall(t.c_str()));
        Word limit = kind < 3 ? 1000 : 2 * Word{maxImmediate} + 1;
        integers.push_back(immediate(static_cast<std::int32_t>(random() % limit) - (kind < 3 ? 500 : maxImmediate)));
      }
      if (kind == 1) integers[size / 2] = consm0;  // the negative zero stands among the zeros
      auto agrees = [&](const std::vector<DAG>& members, Order order, auto before) {
        std::vector<DAG> expected = members;
        std::stable_sort(expected.begin(), expected.end(), before);
        EXPECT_EQ(wordsOf(membersOf(sortedSequence(sequenceOf(members), order, DAG()))), wordsOf(expected))
            << size << " of kind " << kind << ", order " << static_cast<int>(order);
      };
      agrees(texts, Order::lexicographic, [](DAG a, DAG b) { return std::strcmp(textOf(a), textOf(b)) < 0; });
      agrees(texts, Order::address, [](DAG a, DAG b) { return a.word < b.word; });
      agrees(integers, Order::ascending, [](DAG a, DAG b) { return compcon(a, b) < 0; });
      agrees(integers, Order::descending, [](DAG a, DAG b) { return compcon(a, b) > 0; });
    }
}

TEST(Sort, TextsAndWordsAgreeWithAStableSort) {
  EXPECT_TRUE(rc::check([] {
    std::vector<DAG> members;
    for (const std::string& t : *rc::gen::container<std::vector<std::string>>(
             rc::gen::container<std::string>(rc::gen::inRange<char>('a', 'd'))))
      members.push_back(*rc::gen::inRange(0, 2) == 0 ? strinstall(t.c_str()) : naminstall(t.c_str()));
    std::vector<DAG> byText = members, byWord = members;
    std::stable_sort(byText.begin(), byText.end(), [](DAG a, DAG b) { return std::strcmp(textOf(a), textOf(b)) < 0; });
    std::stable_sort(byWord.begin(), byWord.end(), [](DAG a, DAG b) { return a.word < b.word; });
    DAG sequence = sequenceOf(members);
    RC_ASSERT(wordsOf(membersOf(sortedSequence(sequence, Order::lexicographic, DAG()))) == wordsOf(byText));
    RC_ASSERT(wordsOf(membersOf(sortedSequence(sequence, Order::address, DAG()))) == wordsOf(byWord));
  }));
}

// Whatever an inconsistent procedure answers, nothing is lost, nothing comes twice, and it ends.
TEST(Sort, AnyProcedureGivesAPermutation) {
  DAG coin = valueOf("proc(a, b) option operator; evalb(irem(7*a + 5*b, 3) <> 0) end");
  EXPECT_TRUE(rc::check([coin] {
    std::vector<DAG> members;
    for (int n : *rc::gen::container<std::vector<int>>(rc::gen::inRange(0, 50))) members.push_back(immediate(n));
    std::vector<Word> before = wordsOf(members);
    std::vector<Word> after = wordsOf(membersOf(sortedSequence(sequenceOf(members), Order::procedure, coin)));
    std::sort(before.begin(), before.end());
    std::sort(after.begin(), after.end());
    RC_ASSERT(before == after);
  }));
}

// The terms of a sorted polynomial descend, and it is the object that it was.
TEST(Sort, PolynomialsDescendInPlace) {
  DAG variables = sequenceOf({naminstall("px"), naminstall("py")});
  EXPECT_TRUE(rc::check([variables] {
    std::string source = "pc";
    for (auto [i, j] : *rc::gen::container<std::vector<std::pair<int, int>>>(
             rc::gen::pair(rc::gen::inRange(-3, 6), rc::gen::inRange(0, 6))))
      source += "+" + std::to_string(i + 10) + "*px^(" + std::to_string(i) + ")*py^" + std::to_string(j);
    DAG p = valueOf(source.c_str());
    bool totalDegree = *rc::gen::arbitrary<bool>();
    RC_ASSERT(algsort(p, variables, totalDegree) == p);
    RC_ASSERT(valueOf(source.c_str()) == p);
    if (hasTag(p, SUM))
      for (Word i = 3; i < lengthOf(p); i += 2) RC_ASSERT(compmon(p[i - 2], p[i], variables, totalDegree) >= 0);
  }));
}

// The example of two monomials that only the total degree leaves equal at first.
TEST(Sort, MonomialsCompareByVariablesThenExponents) {
  DAG variables = sequenceOf({naminstall("px"), naminstall("py")});
  DAG a = valueOf("px^2*py"), b = valueOf("px*py^2"), c = valueOf("py^7"), one = cons1;
  EXPECT_EQ(compmon(a, b, variables, false), 1);
  EXPECT_EQ(compmon(a, b, variables, true), 1);
  EXPECT_EQ(compmon(a, c, variables, false), 1);
  EXPECT_EQ(compmon(a, c, variables, true), -1);
  EXPECT_EQ(compmon(one, c, variables, true), -1);
  EXPECT_EQ(compmon(one, valueOf("pk"), variables, true), 0);
}

}  // namespace
}  // namespace korel::test
