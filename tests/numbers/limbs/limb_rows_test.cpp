// Rows of limbs: quotients multiply back, for divisors that make the estimates go wrong too.

#include <algorithm>
#include <gtest/gtest.h>
#include <rapidcheck.h>
#include <vector>

#include "numbers/limbs/limb_rows.h"

namespace {

using namespace korel;
using Row = std::vector<Limb>;

// Limbs of few bits, all ones and all zeros among them: there estimates of quotients fail.
Limb anyLimb() {
  switch (*rc::gen::inRange(0, 4)) {
    case 0: return 0;
    case 1: return ~Limb{0};
    case 2: return ~Limb{0} << *rc::gen::inRange(0, 64);
    default: return *rc::gen::arbitrary<Limb>();
  }
}
Row anyRow(std::size_t n) {
  Row row(n);
  for (Limb& limb : row) limb = anyLimb();
  return row;
}

TEST(LimbRows, QuotientsMultiplyBack) {
  EXPECT_TRUE(rc::check("a = q b + r, r < b", [] {
    const auto nb = static_cast<std::size_t>(*rc::gen::inRange(1, 6));
    const auto nq = static_cast<std::size_t>(*rc::gen::inRange(1, 6));
    Row b = anyRow(nb), a = anyRow(nb + nq);
    b.back() |= Limb{1} << 63;
    a.back() = 0;
    const Row dividend = a;
    Row q(nq);
    const LimbDivisor top(b.back());
    for (std::size_t j = nq; j-- > 0;) q[j] = quotientLimb(&a[j], b.data(), nb, top);
    RC_ASSERT(significantLimbs(a.data(), a.size()) <= nb);
    RC_ASSERT(compareLimbs(a.data(), b.data(), nb) < 0);
    Row product = a;
    for (std::size_t i = 0; i < nq; ++i) {
      const Limb carry = addScaled(&product[i], b.data(), nb, q[i]);
      RC_ASSERT(addLimb(&product[i + nb], nq - i, carry) == 0);
    }
    RC_ASSERT(product == dividend);
  }));
}

TEST(LimbRows, ShiftsAndLimbsUndoThemselves) {
  EXPECT_TRUE(rc::check("up and down, times and by", [] {
    const Row a = anyRow(static_cast<std::size_t>(*rc::gen::inRange(1, 6)));
    const auto k = static_cast<unsigned>(*rc::gen::inRange(0, 64));
    const std::size_t n = a.size();
    Row r(n + 1);
    r[n] = shiftLimbsUp(r.data(), a.data(), n, k);
    shiftLimbsDown(r.data(), r.data(), n + 1, k);
    RC_ASSERT(std::equal(a.begin(), a.end(), r.begin()));
    const Limb d = std::max<Limb>(anyLimb(), 1), rest = *rc::gen::arbitrary<Limb>() % d;
    r[n] = scaleLimbs(r.data(), a.data(), n, d);
    RC_ASSERT(addLimb(r.data(), n + 1, rest) == 0);
    RC_ASSERT(divideLimbs(r.data(), r.data(), n + 1, d) == rest);
    RC_ASSERT(std::equal(a.begin(), a.end(), r.begin()));
    Row difference(n), sum(n);
    const Row b = anyRow(n);
    const Limb borrow = subtractLimbs(difference.data(), a.data(), b.data(), n);
    RC_ASSERT(addLimbs(sum.data(), difference.data(), b.data(), n) == borrow);
    RC_ASSERT(sum == a);
  }));
}

}  // namespace
