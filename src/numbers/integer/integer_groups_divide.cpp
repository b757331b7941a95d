// Division of packed operands: column by column, by halves for long operands, by a reciprocal for very long
// ones.

#include "numbers/integer/integer_groups.h"

#include <algorithm>
#include <cstring>

#include "numbers/integer/integer_columns.h"
#include "numbers/integer/integer_reciprocal.h"

namespace korel {

namespace {

// Groups of divisor and quotient, measured with bench/integer_bench.cpp: below the first, the school method,
// from the second on, a reciprocal.
constexpr std::size_t halvingGroups = 160;
constexpr std::size_t reciprocalGroups = 1500;

// ---- the school method, column by column from the top

/// q = u / v, nq groups, and with `wantsRest` the remainder in u's nb lowest groups, else what is in u is
/// lost. u has nq + nb groups, the top nb of them below v; v's top group is at least half the base, nb is
/// 2 or more. Tells whether there is a remainder.
bool columnDivide(Group* q, Group* u, std::size_t nq, const Group* v, std::size_t nb, bool wantsRest) {
  const std::size_t top = nq + nb - 1;
  ColumnRemainder left(v[nb - 1], v[nb - 2], Wide{u[top]} * groupBase + u[top - 1]);
  for (std::size_t j = nq; j-- > 0;) {
    // Of the groups above, those that meet v below its two leading groups.
    const std::size_t terms = std::min(nq - 1 - j, nb - 2);
    passGroupWork(terms + 8);
    Wide sum = terms == 0 ? 0 : columnSum(q + j + 1, v + nb - 3, terms);
    q[j] = left.step(u[j + nb - 2], sum, terms);
  }
  if (!wantsRest && left.isBetween(std::min(nq, nb))) {
    carryQuotient(q, nq);
    return true;
  }
  ColumnCarry column;
  Group borrow = 0;
  for (std::size_t p = 0; p < nb - 2; ++p) {
    const std::size_t terms = std::min(p + 1, nq);
    passGroupWork(terms);
    Group low = u[p] - column.put(columnSum(q, v + p, terms)) - borrow;
    borrow = low >> 63;
    u[p] = low + borrow * groupBase;
  }
  Wide above = left.columns() - column.carry() - borrow;
  u[nb - 2] = takeLowest<groupBase>(above);
  u[nb - 1] = takeLowest<groupBase>(above);
  carryQuotient(q, nq);
  for (auto extra = static_cast<Group>(above); extra != 0 || compareGroups(u, v, nb) >= 0;) {
    extra -= subtractGroups(u, u, nb, v, nb);
    const Group one = 1;
    addGroups(q, q, nq, &one, 1);
  }
  return significantGroups(u, nb) != 0;
}

/// Both operands times a factor that brings the divisor's top group to half the base: the same quotient,
/// and the remainder times the factor. The dividend has a group more.
struct NormalOperands {
  Group factor;
  GroupSpace divisor, dividend;
  NormalOperands(const Group* a, std::size_t na, const Group* b, std::size_t nb)
      : factor(groupBase / (b[nb - 1] + 1)), divisor(nb), dividend(na + 1) {
    scaleGroups(divisor, b, nb, factor);
    dividend[na] = scaleGroups(dividend, a, na, factor);
  }
};

/// q has na - nb + 1 groups; the remainder stays in a's nb lowest.
void schoolDivide(Group* q, Group* a, std::size_t na, const Group* b, std::size_t nb) {
  assert(nb >= 2 && na >= nb && b[nb - 1] != 0);
  NormalOperands normal(a, na, b, nb);
  columnDivide(q, normal.dividend, na - nb + 1, normal.divisor, nb, true);
  divideGroupsBy(a, normal.dividend, nb, normal.factor);
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
  if (n >= reciprocalGroups) {
    divideByReciprocal(q, a, 2 * n, b, n);
    return;
  }
  std::size_t h = n / 2;
  divideThreeByTwo(q + h, a + h, b, h);
  divideThreeByTwo(q, a, b, h);
}

/// A power of two: parts of n groups that the school method divides.
std::size_t halvingParts(std::size_t n) {
  std::size_t parts = 1;
  while (n / parts >= halvingGroups) parts *= 2;
  return parts;
}

/// a by b, whose top group is at least half the base, for a quotient no shorter than b by much: blocks
/// of the dividend of b's padded length. a's top nb groups are below b; q has na - nb groups.
void divideByBlocks(Group* q, Group* a, std::size_t na, const Group* b, std::size_t nb) {
  if (nb >= reciprocalGroups) {
    divideByReciprocal(q, a, na, b, nb);
    return;
  }
  const std::size_t parts = halvingParts(nb);
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
  for (std::size_t i = blocks - 1; i-- > 0;) divideTwoByOne(quotient + i * n, dividend + i * n, divisor, n);
  std::size_t count = na - nb, have = (blocks - 1) * n;
  std::memcpy(q, static_cast<Group*>(quotient), std::min(count, have) * sizeof(Group));
  if (count > have) std::memset(q + have, 0, (count - have) * sizeof(Group));
  std::memcpy(a, dividend + pad, nb * sizeof(Group));
  std::memset(a + nb, 0, (na - nb) * sizeof(Group));
}

void divideByHalves(Group* q, Group* a, std::size_t na, const Group* b, std::size_t nb) {
  NormalOperands normal(a, na, b, nb);
  Group *divisor = normal.divisor, *dividend = normal.dividend;
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
  divideGroupsBy(a, dividend, nb, normal.factor);
  std::memset(a + nb, 0, (na - nb) * sizeof(Group));
}

/// The same without the remainder: q is at most two for each halving too large. What was in a is lost.
void shortTwoByOne(Group* q, Group* a, const Group* b, std::size_t n) {
  if (n % 2 != 0 || n < halvingGroups) {
    columnDivide(q, a, n, b, n, false);
    return;
  }
  // The lower half comes from the leading parts alone.
  std::size_t h = n / 2;
  divideThreeByTwo(q + h, a + h, b, h);
  if (compareGroups(a + 2 * h, b + h, h) < 0) shortTwoByOne(q, a + h, b + h, h);
  else
    for (std::size_t i = 0; i < h; ++i) q[i] = groupBase - 1;
}

/// q = a / b from leading parts of them with at least a group more than q has; false when these don't tell.
/// a is kept.
bool guardedQuotient(Group* q, const Group* a, std::size_t na, const Group* b, std::size_t nb) {
  const std::size_t nq = na - nb + 1, parts = halvingParts(nq + 1);
  const std::size_t n = (nq + parts) / parts * parts, guards = n - nq;
  NormalOperands normal(a, na, b, nb);
  GroupSpace space(4 * n);
  Group *dividend = space, *divisor = space + 2 * n, *quotient = divisor + n;
  auto leading = [](Group* r, std::size_t count, const Group* from, std::size_t have) {
    const std::size_t kept = std::min(count, have);
    std::memset(r, 0, (count - kept) * sizeof(Group));
    std::memcpy(r + count - kept, from + have - kept, kept * sizeof(Group));
  };
  leading(dividend, 2 * n, normal.dividend, na + 1);
  leading(divisor, n, normal.divisor, nb);
  if (compareGroups(dividend + n, divisor, n) >= 0) return false;
  shortTwoByOne(quotient, dividend, divisor, n);
  if (!isGuarded(quotient[guards - 1])) return false;
  std::memcpy(q, quotient + guards, nq * sizeof(Group));
  return true;
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

bool quotientOfGroups(Group* q, Group* a, std::size_t na, const Group* b, std::size_t nb) {
  const std::size_t nq = na - nb + 1;
  if (nb == 1 || std::min(nb, nq) >= halvingGroups) {
    if (nb > 1 && nq <= 2 * nb && guardedQuotient(q, a, na, b, nb)) return true;
    divideGroups(q, a, na, b, nb);
    return significantGroups(a, nb) != 0;
  }
  NormalOperands normal(a, na, b, nb);
  return columnDivide(q, normal.dividend, nq, normal.divisor, nb, false);
}

}  // namespace korel
