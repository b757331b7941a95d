// Greatest common divisors by halves against Lehmer's method.

#include <vector>

#include "numbers/integer/integer_groups.h"
#include "numbers/integer/integer_half_gcd.h"
#include "numbers/integer/integer_lehmer.h"
#include "numbers/integer_oracle.h"
#include "store/objects.h"

namespace korel::test {
namespace {

using Groups = std::vector<Group>;

Groups groupsOf(DAG x) {
  Groups g(groupCount(x));
  packInteger(x, g.data());
  return g;
}

std::string byLehmer(Groups a, Groups b) {
  const std::size_t na = a.size(), nb = b.size(), n = std::max(na, nb);
  a.resize(n);
  b.resize(n);
  Group* result;
  std::size_t count = lehmerGcd(a.data(), na, b.data(), nb, &result);
  return decimal(integerOfGroups(result, count, INTPOS));
}

/// The operands' neighbours in the sequence F(k+1) = F(k) + F(k-1), whose quotients are all 1.
std::pair<DAG, DAG> fibonacci(int k) {
  DAG a = cons1, b = cons1;
  for (int i = 0; i < k; ++i) {
    DAG next = addint(a, b);
    a = b;
    b = next;
  }
  return {a, b};
}

void expectSame(DAG a, DAG b) { ASSERT_EQ(decimal(igcd(a, b)), byLehmer(groupsOf(a), groupsOf(b))); }

// A step keeps the gcd and makes the operands shorter, at every length, close to and far from each other.
TEST(IntegerHalfGcd, AStepKeepsTheGcd) {
  Random random(51);
  for (int i = 0; i < 300; ++i) {
    auto n = static_cast<Word>(20 + random.below(i % 6 == 0 ? 4000 : 500));
    DAG g = random.heapOf(static_cast<Word>(1 + random.below(6)));
    DAG x = mulint(g, random.heapOf(n));
    DAG y = mulint(g, random.heapOf(n - static_cast<Word>(random.below(i % 3 == 0 ? n / 2 : 3))));
    Groups a = groupsOf(x), b = groupsOf(y);
    const std::size_t longer = std::max(a.size(), b.size());
    a.resize(longer);
    b.resize(longer);
    const std::string expected = byLehmer(groupsOf(x), groupsOf(y));
    const Groups before = a, other = b;
    const std::size_t left = takeThirdOff(a.data(), b.data(), longer);
    if (left == 0) {
      ASSERT_TRUE(a == before && b == other) << "case " << i;
      continue;
    }
    ASSERT_LE(left, longer);
    ASSERT_TRUE(left < longer || longer < 40 || i % 6 != 0) << "case " << i << ": " << left << " of " << longer;
    a.resize(left);
    b.resize(left);
    ASSERT_EQ(byLehmer(a, b), expected) << "case " << i << " of seed " << random.seed;
  }
}

TEST(IntegerHalfGcd, AgreesWithLehmersMethod) {
  Random random(52);
  for (int i = 0; i < 25; ++i) {
    auto n = static_cast<Word>(1200 + random.below(4000));
    DAG a = random.heapOf(n), b = random.heapOf(n - static_cast<Word>(random.below(900)));
    if (random.below(2) != 0) negateint(a);
    SCOPED_TRACE("case " + std::to_string(i) + " of seed " + std::to_string(random.seed));
    expectSame(a, b);
    expectSame(b, a);
    DAG g = random.heapOf(static_cast<Word>(1 + random.below(n)));
    expectSame(mulint(g, a), mulint(b, g));
  }
}

// Equal operands, multiples, neighbours, powers, and quotients that are all 1 or all long.
TEST(IntegerHalfGcd, OperandsThatStandOut) {
  Random random(53);
  DAG a = random.heapOf(3000), b = random.heapOf(1500);
  expectSame(a, CopyAlg(a));
  expectSame(a, mulint(a, b));
  expectSame(a, addint(a, cons1));
  expectSame(addint(mulint(a, b), cons1), a);
  expectSame(powint(immediate(6), 9000), powint(immediate(15), 7000));
  expectSame(times10p(cons1, 9000), addint(times10p(cons1, 9000), consm1));
  auto [f, next] = fibonacci(30000);
  expectSame(f, next);
  EXPECT_EQ(igcd(f, next), cons1);
  DAG g = random.heapOf(40);
  EXPECT_EQ(decimal(igcd(mulint(f, g), negateint(mulint(next, g)))), decimal(g));
  // (x; y) = (q x + y; x) with q of as many digits as x has: each quotient takes half.
  DAG x = random.heapOf(3), y = cons1;
  for (int i = 0; i < 10; ++i) {
    DAG longer = addint(mulint(random.heapOf(static_cast<Word>(3 << i)), x), y);
    y = x;
    x = longer;
  }
  expectSame(x, y);
  EXPECT_EQ(igcd(x, y), cons1);
}

}  // namespace
}  // namespace korel::test
