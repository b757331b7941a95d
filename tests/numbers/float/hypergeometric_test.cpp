// The hypergeometric kernel against partial sums in exact rational arithmetic.

#include <gtest/gtest.h>
#include <vector>

#include "eval/evaluate/evalf.h"
#include "eval/simplify/simplify.h"
#include "kernel_fixture.h"
#include "numbers/arithmetic.h"
#include "numbers/float/float.h"
#include "numbers/float/hypergeometric.h"
#include "numbers/integer_oracle.h"
#include "store/constants.h"
#include "store/objects.h"

namespace korel::test {
namespace {

DAG fraction(std::int64_t p, std::int64_t q) {
  return simpl(mul(immediate(static_cast<std::int32_t>(p)), power(immediate(static_cast<std::int32_t>(q)), -1)));
}

// The first `terms` terms of the series.
DAG exactSum(const std::vector<DAG>& a, const std::vector<DAG>& b, DAG z, int terms) {
  DAG sum = cons0, term = cons1;
  for (int k = 0; k < terms; ++k) {
    sum = simpl(add(sum, term));
    term = simpl(mul(simpl(mul(term, z)), fraction(1, k + 1)));
    for (DAG x : a) term = simpl(mul(term, simpl(add(x, immediate(k)))));
    for (DAG x : b) term = simpl(mul(term, simpl(power(simpl(add(x, immediate(k))), -1))));
  }
  return sum;
}

DAG listOf(const std::vector<DAG>& members) {
  DAG sequence = newl2(static_cast<Word>(members.size() + 1), EXPSEQ);
  for (Word i = 0; i < members.size(); ++i) sequence[i + 1] = members[i];
  return simpl(new2(LIST, simpl(sequence)));
}

// Small parameters and arguments: partial sums pass through 0, terms end, pairs cancel.
TEST(Hypergeometric, PartialSumsAreExact) {
  Random random(61);
  auto number = [&random](std::int64_t least, std::int64_t most) {
    return fraction(least + random.below(most - least + 1), random.below(3) == 0 ? 1 + random.below(4) : 1);
  };
  int zeros = 0;
  for (int i = 0; i < 8000; ++i) {
    std::vector<DAG> a, b;
    for (auto n = random.below(3); n > 0; --n) a.push_back(number(-3, 5));
    for (auto n = random.below(3); n > 0; --n) b.push_back(number(1, 5));
    DAG z = fraction(random.below(13) - 6, 1 + random.below(5));
    if (a.size() > b.size()) z = simpl(mul(z, fraction(1, 7)));
    if (a.size() > b.size() + 1) continue;
    int terms = 2 + static_cast<int>(random.below(30));
    DAG exact = exactSum(a, b, z, terms);
    SCOPED_TRACE(text(listOf(a)) + ", " + text(listOf(b)) + ", " + text(z) + ", " + std::to_string(terms));
    DAG sum = simpl(hypergeom(listOf(a), listOf(b), i % 4 == 0 ? simpl(evalf(z)) : z, immediate(terms)));
    if (isZero(exact)) {
      ++zeros;
      continue;
    }
    if (i % 4 == 0) continue;  // the argument has been rounded: it is the heap that is looked at
    ASSERT_TRUE(isFiniteFloat(sum)) << text(sum);
    DAG error = simpl(absalg(simpl(add(floatrat(sum), simpl(negate(exact))))));
    ASSERT_LT(compcon(simpl(mul(error, immediate(500000000))), simpl(absalg(exact))), 1)
        << text(sum) << " against " << text(simpl(evalf(exact)));
  }
  EXPECT_GT(zeros, 5);
}

}  // namespace
}  // namespace korel::test
