// Division of packed operands: the school method on signed columns, and by halves for long operands.

#include <algorithm>
#include <cstring>

#include "numbers/integer_groups.h"

namespace korel {

namespace {

// Groups of divisor and quotient, measured with bench/integer_bench.cpp: below, the school method.
constexpr std::size_t halvingGroups = 32;

// ---- the school method (Knuth, vol. 2, 4.3.1, algorithm D)

/// u[0..nb] -= digit * v[0..nb); true when the result was negative and has wrapped.
bool takeMultiple(Group* u, const Group* v, std::size_t nb, Group digit) {
  // The products are split each by itself; only a borrow of at most 2 links the steps.
  Group above = 0, borrow = 0;
  for (std::size_t i = 0; i < nb; ++i) {
    Parts parts = splitGroup(Wide{digit} * v[i]);
    auto difference = static_cast<std::int64_t>(u[i] - parts.rest - above - borrow);
    borrow = static_cast<Group>(difference < 0) +
             static_cast<Group>(difference < -static_cast<std::int64_t>(groupBase));
    u[i] = static_cast<Group>(difference) + borrow * groupBase;
    above = parts.quotient;
  }
  Group part = above + borrow;
  borrow = u[nb] < part;
  u[nb] += (borrow != 0 ? groupBase : 0) - part;
  return borrow != 0;
}

/// q has na - nb + 1 groups; the remainder stays in a's nb lowest.
void schoolDivide(Group* q, Group* a, std::size_t na, const Group* b, std::size_t nb) {
  assert(nb >= 2 && na >= nb && b[nb - 1] != 0);
  // Both times a factor that brings the divisor's top group to half the base: an estimate from two
  // groups against one is then at most 2 too high.
  Group factor = groupBase / (b[nb - 1] + 1);
  GroupSpace divisor(nb), dividend(na + 1);
  Group *u = dividend, *v = divisor;
  scaleGroups(v, b, nb, factor);
  u[na] = scaleGroups(u, a, na, factor);
  const Group high = v[nb - 1], next = v[nb - 2];
  const GroupDivisor byHigh(high);
  for (std::size_t j = na - nb + 1; j-- > 0;) {
    passGroupWork(nb);
    auto [digit, rest] = byHigh.split(Wide{u[j + nb]} * groupBase + u[j + nb - 1]);
    while (digit >= groupBase || Wide{digit} * next > Wide{rest} * groupBase + u[j + nb - 2]) {
      --digit;
      rest += high;
      if (rest >= groupBase) break;
    }
    if (digit != 0 && takeMultiple(u + j, v, nb, digit)) {
      --digit;
      u[j + nb] += addGroups(u + j, u + j, nb, v, nb);
      u[j + nb] -= u[j + nb] >= groupBase ? groupBase : 0;
    }
    q[j] = digit;
  }
  divideGroupsBy(a, u, nb, factor);
  for (Group* above = a + na; above > a + nb;) *--above = 0;
}

// ---- division by halves (Burnikel and Ziegler, "Fast recursive division"): two long products a level

void divideTwoByOne(Group* q, Group* a, const Group* b, std::size_t n);

/// a (3h groups) by b (2h groups): q has h groups, the remainder stays in a's 2h lowest. The top 2h
/// groups of a are below b.
void divideThreeByTwo(Group* q, Group* a, const Group* b, std::size_t h) {
  const Group* high = b + h;
  if (compareGroups(a + 2 * h, high, h) < 0) {
    divideTwoByOne(q, a + h, high, h);
  } else {
    // The quotient digit would be the base: one less.
    for (std::size_t i = 0; i < h; ++i) q[i] = groupBase - 1;
    subtractGroups(a + 2 * h, a + 2 * h, h, high, h);
    addGroups(a + h, a + h, 2 * h, high, h);
  }
  GroupSpace product(2 * h);
  multiplyGroups(product, q, h, b, h);
  Group borrow = subtractGroups(a, a, 3 * h, product, 2 * h);
  const Group one = 1;
  while (borrow != 0) {
    borrow -= addGroups(a, a, 3 * h, b, 2 * h);
    subtractGroups(q, q, h, &one, 1);
  }
}

/// a (2n groups) by b (n groups, the top one at least half the base): q has n groups, the remainder
/// stays in a's n lowest. a's top half is below b.
void divideTwoByOne(Group* q, Group* a, const Group* b, std::size_t n) {
  if (n % 2 != 0 || n < halvingGroups) {
    GroupSpace quotient(n + 1);
    schoolDivide(quotient, a, 2 * n, b, n);
    std::memcpy(q, static_cast<Group*>(quotient), n * sizeof(Group));
    return;
  }
  std::size_t h = n / 2;
  divideThreeByTwo(q + h, a + h, b, h);
  divideThreeByTwo(q, a, b, h);
}

/// a by b, whose top group is at least half the base, for a quotient no shorter than b by much: blocks
/// of the dividend of b's padded length. a's top nb groups are below b; q has na - nb groups.
void divideByBlocks(Group* q, Group* a, std::size_t na, const Group* b, std::size_t nb) {
  std::size_t parts = 1;  // a power of two, so that the length halves down to the school method
  while (nb / parts >= halvingGroups) parts *= 2;
  std::size_t n = (nb + parts - 1) / parts * parts, pad = n - nb;
  std::size_t blocks = (na + pad + n - 1) / n;
  blocks = std::max<std::size_t>(blocks, 2);
  GroupSpace divisor(n), dividend(blocks * n), quotient((blocks - 1) * n);
  std::memset(divisor, 0, pad * sizeof(Group));
  std::memcpy(divisor + pad, b, nb * sizeof(Group));
  std::memset(dividend, 0, blocks * n * sizeof(Group));
  std::memcpy(dividend + pad, a, na * sizeof(Group));
  // The top block is below the divisor: it is short, or holds a's top groups and zeros below.
  assert(compareGroups(dividend + (blocks - 1) * n, divisor, n) < 0);
  for (std::size_t i = blocks - 1; i-- > 0;)
    divideTwoByOne(quotient + i * n, dividend + i * n, divisor, n);
  std::size_t count = na - nb, have = (blocks - 1) * n;
  std::memcpy(q, static_cast<Group*>(quotient), std::min(count, have) * sizeof(Group));
  if (count > have) std::memset(q + have, 0, (count - have) * sizeof(Group));
  std::memcpy(a, dividend + pad, nb * sizeof(Group));
  std::memset(a + nb, 0, (na - nb) * sizeof(Group));
}

void divideByHalves(Group* q, Group* a, std::size_t na, const Group* b, std::size_t nb) {
  // Both times a factor that brings the divisor's top group to half the base.
  Group factor = groupBase / (b[nb - 1] + 1);
  GroupSpace divisor(nb), dividend(na + 1);
  scaleGroups(divisor, b, nb, factor);
  dividend[na] = scaleGroups(dividend, a, na, factor);
  std::size_t count = na + 1 - nb;  // groups of the quotient
  if (count >= nb) {
    divideByBlocks(q, dividend, na + 1, divisor, nb);
  } else {
    // A short quotient: from the leading groups, then the rest of the divisor is taken off.
    std::size_t drop = nb - count;
    divideByBlocks(q, dividend + drop, na + 1 - drop, divisor + drop, count);
    GroupSpace product(nb);
    multiplyGroups(product, q, count, divisor, drop);
    Group borrow = subtractGroups(dividend, dividend, na + 1, product, nb);
    const Group one = 1;
    while (borrow != 0) {
      borrow -= addGroups(dividend, dividend, na + 1, divisor, nb);
      subtractGroups(q, q, count, &one, 1);
    }
  }
  divideGroupsBy(a, dividend, nb, factor);
  std::memset(a + nb, 0, (na - nb) * sizeof(Group));
}

}  // namespace

void divideGroups(Group* q, Group* a, std::size_t na, const Group* b, std::size_t nb) {
  if (nb == 1) {
    Group rest = divideGroupsBy(q, a, na, b[0]);
    std::memset(a, 0, na * sizeof(Group));
    a[0] = rest;
  } else if (std::min(nb, na - nb + 1) < halvingGroups) {
    schoolDivide(q, a, na, b, nb);
  } else {
    divideByHalves(q, a, na, b, nb);
  }
}

}  // namespace korel
