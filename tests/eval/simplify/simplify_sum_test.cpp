#include <algorithm>
#include <gtest/gtest.h>
#include <map>
#include <random>
#include <rapidcheck.h>
#include <string>
#include <utility>
#include <vector>

#include "eval/simplify/simplify.h"
#include "eval/simplify/unique_pairs.h"
#include "kernel_fixture.h"
#include "numbers/arithmetic.h"
#include "numbers/integer/integer.h"
#include "store/constants.h"
#include "store/names.h"
#include "store/objects.h"

namespace korel::test {
namespace {

using Terms = std::vector<std::pair<int, int>>;  // kinds of term and of coefficient

DAG term(int kind) {
  DAG x = naminstall("x"), y = naminstall("y");
  switch (kind) {
    case 0: return x;
    case 1: return y;
    case 2: return newCall(naminstall("f"), {x});
    case 3: return new5(PROD, x, cons1, y, immediate(2));
    case 4: return new3(POWER, x, immediate(2));
    case 5: return new3(POWER, x, y);
    // What is no term of its own, or no plain one.
    case 6: return immediate(7);
    case 7: return cons0;
    case 8: return new3(RATIONAL, immediate(1), immediate(3));
    case 9: return new5(PROD, new2(COMPLEX, immediate(2)), cons1, x, cons1);
    case 10: return new3(COMPLEX, immediate(1), immediate(2));
    case 11: return new5(PROD, immediate(3), cons1, y, immediate(2));
    case 12: return new5(SUM, x, cons1, y, immediate(-2));
    case 13: return new3(FLOAT, immediate(5), immediate(-1));
    case 14: return ini("infinity");
    default: return ini("undefined");
  }
}
constexpr int plainKinds = 6, separateKinds = 11, finiteKinds = 14, termKinds = 16;

DAG coefficient(int kind) {
  switch (kind) {
    case 0: case 1: return cons1;
    case 2: return consm1;
    case 3: return immediate(3);
    case 4: return immediate(maxImmediate);
    case 5: return cons0;
    case 6: return new3(RATIONAL, immediate(-1), immediate(2));
    case 7: return NewInteger(-5000000000);
    case 8: return new3(FLOAT, immediate(25), immediate(-2));
    case 9: return new3(FLOAT, immediate(1234567891), immediate(-12));
    default: return consm0;
  }
}
constexpr int exactCoefficients = 8, coefficientKinds = 11;

DAG sumOf(const std::vector<Pair>& pairs) {
  DAG s = newl2(static_cast<Word>(2 * pairs.size() + 1), SUM);
  std::copy(pairs.begin(), pairs.end(), pairsOf(s));
  return s;
}

std::vector<Pair> pairsOfTerms(const Terms& terms) {
  std::vector<Pair> pairs;
  for (auto [t, c] : terms) pairs.push_back({simpl(term(t)), coefficient(c)});
  return pairs;
}

void sameOutcome(DAG (*one)(DAG), DAG a, DAG (*other)(DAG), DAG b) {
  DAG x, y;
  std::string error = errorOf([&] { x = one(a); });
  RC_ASSERT(error == errorOf([&] { y = other(b); }));
  if (x != y) RC_FAIL(text(x) + " instead of " + text(y));
}

/// The sum in parts so short that each term is compared with the others.
DAG simplInParts(DAG s) {
  DAG sum = cons0;
  for (Word i = 0, n = pairCount(s); i < n; i += 5) {
    Word length = std::min(n - i, Word{5});
    sum = simpl(new5(SUM, sum, cons1, simpl(copysub(s, 2 * i, 2 * length)), cons1));
  }
  return sum;
}

/// Plain terms with the sum of their coefficients, from left to right, at their first places.
std::vector<Pair> collected(const Terms& terms) {
  std::vector<Pair> pairs = pairsOfTerms(terms), merged;
  std::map<Word, std::size_t> places;
  for (std::size_t i = 0; i < pairs.size(); ++i) {
    auto place = places.find(pairs[i].term.word);
    if (place == places.end()) {
      if (terms[i].first < plainKinds) places[pairs[i].term.word] = merged.size();
      merged.push_back(pairs[i]);
    } else {
      DAG& coefficient = merged[place->second].coefficient;
      coefficient = add(coefficient, pairs[i].coefficient);
    }
  }
  return merged;
}

rc::Gen<Terms> termsOf(int least, int terms, int coefficients) {
  return rc::gen::mapcat(rc::gen::inRange(least, 200), [=](int n) {
    return rc::gen::container<Terms>(static_cast<std::size_t>(n),
                                     rc::gen::pair(rc::gen::inRange(0, terms), rc::gen::inRange(0, coefficients)));
  });
}

TEST(SimplifySum, SortedTermsAgreeWithComparedOnes) {
  auto check = [](const char* description, int kinds, int left) {
    EXPECT_TRUE(rc::check(description, [=] {
      Terms terms = *termsOf(25, kinds, exactCoefficients);
      // A float would make the order of the additions matter, and so would what has no value: the second
      // `undefined` of a sum takes all with it.
      auto isNegative = [](int c) { return c == 2 || c == 6 || c == 7; };
      std::erase_if(terms, [=](auto t) {
        return t.first == 13 || t.first == left || t.first == 15 || (t.first == 14 && isNegative(t.second));
      });
      DAG s = sumOf(pairsOfTerms(terms));
      sameOutcome(simpl, CopyAlg(s), simplInParts, s);
    }));
  };
  check("finite", finiteKinds, -1);
  check("infinities of one sign", termKinds, 10);
}

// Equal terms of a long sum add up from left to right, which floats show.
TEST(SimplifySum, FloatCoefficientsAddFromLeftToRight) {
  EXPECT_TRUE(rc::check([] {
    Terms terms = *termsOf(64, separateKinds, coefficientKinds);
    sameOutcome(simpl, sumOf(pairsOfTerms(terms)), simpl, sumOf(collected(terms)));
  }));
}

// Long sums stand in the order of their terms' words, whatever came first, with a number among them and equal
// terms in plenty or not at all.
TEST(SimplifySum, LongSumsStandInWordOrder) {
  std::mt19937 random(20261125);
  int fresh = 0;
  for (Word n : {25u, 26u, 63u, 64u, 65u, 255u, 1000u, 5000u})
    for (Word kinds : {n, n / 2 + 1, Word{30}}) {
      std::vector<DAG> terms{immediate(12345)};
      for (Word i = 1; i < kinds; ++i) terms.push_back(naminstall(("long" + std::to_string(fresh++)).c_str()));
      std::map<std::int32_t, std::int64_t> expected;
      DAG s = newl2(2 * n + 1, SUM);
      for (Word i = 0; i < n; ++i) {
        // Each kind at least once, then at random.
        DAG x = terms[i < kinds ? kinds - 1 - i : random() % kinds];
        int c = static_cast<int>(random() % 7) - 3;
        pairsOf(s)[i] = {x, immediate(c)};
        if (x == terms[0]) expected[0] += std::int64_t{12345} * c;
        else expected[static_cast<std::int32_t>(x.word)] += c;
      }
      std::vector<std::pair<DAG, DAG>> wanted;
      for (auto [word, c] : expected) {
        if (c == 0) continue;
        if (word == 0) wanted.push_back({NewInteger(c), cons1});
        else wanted.push_back({DAG(static_cast<Word>(word)), immediate(static_cast<int>(c))});
      }
      std::sort(wanted.begin(), wanted.end(), [](auto& a, auto& b) {
        return static_cast<std::int32_t>(a.first.word) < static_cast<std::int32_t>(b.first.word);
      });
      DAG sum = simpl(s);
      std::vector<std::pair<DAG, DAG>> found;
      for (Word i = 0; i < pairCount(sum); ++i) found.push_back({pairsOf(sum)[i].term, pairsOf(sum)[i].coefficient});
      EXPECT_TRUE(found == wanted) << n << " terms of " << kinds << " kinds: " << text(sum);
    }
}

// What `add` gathers is the sum of its elements, and short sums keep the order of first occurrence.
TEST(SimplifySum, AddGathersMultiplesOfMonomials) {
  EXPECT_EQ(evaluated("add((i - 3)*b_^i*a_^(3 - i), i = 1..4)"), "-2*b_*a_^2-b_^2*a_+b_^4/a_");
  EXPECT_EQ(evaluated("add(i*c_^irem(i, 3)*d_^0, i = 1..9)"), "18+12*c_+15*c_^2");
  EXPECT_EQ(evaluated("add(i*(p_ + q_), i = 1..3)"), "6*p_+6*q_");
  EXPECT_EQ(evaluated("add(i*infinity*u_, i = 1..2)"), evaluated("1*infinity*u_ + 2*infinity*u_"));
  EXPECT_EQ(evaluated("add((i - 2)*u_, i = 1..3)"), "0");
  EXPECT_EQ(evaluated("add(0.5*i*v_^i, i = 1..2)"), evaluated("0.5*v_ + 1.0*v_^2"));
}

}  // namespace
}  // namespace korel::test
