// Integer square roots: column by column from the top, and by division of halves for long ones
// (Zimmermann, "Karatsuba square root").

#include "numbers/integer/integer.h"

#include <cmath>
#include <cstring>

#include "numbers/integer/integer_columns.h"
#include "numbers/integer/integer_functions.h"
#include "numbers/integer/integer_groups.h"
#include "store/constants.h"

namespace korel {

namespace {

/// The root nearest to sqrt(n) for n below 10^9.
std::int32_t nearestRoot(std::int32_t n) {
  std::int32_t m = n - 1;
  if (m < 19) return (m * (31 - m) + 108) / 83;
  std::int32_t before = m / 83 + 1;
  std::int32_t g = (before - 1 + m / before + 2) / 2;
  while (g != before) {
    before = g;
    g = (g + m / g + 1) / 2;
  }
  return g;
}

/// Truncated root of n, which is below 10^32: an estimate to 64 bits is off by one at most.
Group rootOfPair(Wide n) {
  auto s = static_cast<Group>(std::sqrt(static_cast<long double>(n)));
  while (Wide{s} * s > n) --s;
  while (Wide{s + 1} * (s + 1) <= n) ++s;
  return s;
}

// Groups of the root, measured with bench/integer_bench.cpp: below, column by column.
constexpr std::size_t halvingGroups = 130;

/// s = the truncated root of a, 2n groups, whose top one is at least a hundredth of the base. With
/// `wantsRest` the remainder stays in a's n lowest groups with the carry returned above them; otherwise
/// what was in a is lost, and 1 or 0 tells whether there is one.
std::int64_t columnRoot(Group* s, Group* a, std::size_t n, bool wantsRest) {
  const Wide pair = Wide{a[2 * n - 1]} * groupBase + a[2 * n - 2];
  const Group first = s[n - 1] = rootOfPair(pair);
  Wide rest = pair - Wide{first} * first;  // at most twice the root
  if (n == 1) {
    if (!wantsRest) return rest != 0;
    a[0] = takeLowest<groupBase>(rest);
    return static_cast<std::int64_t>(rest);
  }
  const Group high = 2 * first;
  rest = rest * groupBase + a[2 * n - 3];
  auto second = static_cast<Group>(rest / high);
  for (rest -= Wide{second} * high; Wide{second} * second > rest * groupBase + a[2 * n - 4]; --second) rest += high;
  s[n - 2] = second;
  // From here on the root is half the quotient of what is left by it.
  ColumnRemainder left(high, 2 * second, rest * groupBase + a[2 * n - 4] - Wide{second} * second);
  for (std::size_t j = n - 2; j-- > 0;) {
    const std::size_t terms = n - 3 - j;
    passGroupWork(terms / 2 + 8);
    s[j] = left.step(a[n - 2 + j], symmetricSum(s + j + 1, s + n - 3, terms), terms);
  }
  if (!wantsRest && left.isBetween(n)) {
    carryQuotient(s, n);
    return 1;
  }
  ColumnCarry column;
  Group borrow = 0;
  for (std::size_t p = 0; p < n - 2; ++p) {
    passGroupWork(p / 2);
    Group low = a[p] - column.put(symmetricSum(s, s + p, p + 1)) - borrow;
    borrow = low >> 63;
    a[p] = low + borrow * groupBase;
  }
  Wide above = left.columns() - column.carry() - borrow;
  a[n - 2] = takeLowest<groupBase>(above);
  a[n - 1] = takeLowest<groupBase>(above);
  auto carry = static_cast<std::int64_t>(above);
  carryQuotient(s, n);
  // A remainder above twice the root: one too few. It goes down by twice the root and 1.
  const Group one = 1;
  for (;;) {
    carry -= static_cast<std::int64_t>(subtractGroups(a, a, n, s, n));
    carry -= static_cast<std::int64_t>(subtractGroups(a, a, n, s, n));
    carry -= static_cast<std::int64_t>(subtractGroups(a, a, n, &one, 1));
    if (carry < 0) break;
    addGroups(s, s, n, &one, 1);
  }
  carry += static_cast<std::int64_t>(addGroups(a, a, n, s, n));
  carry += static_cast<std::int64_t>(addGroups(a, a, n, s, n));
  carry += static_cast<std::int64_t>(addGroups(a, a, n, &one, 1));
  return wantsRest ? carry : carry != 0 || significantGroups(a, n) != 0;
}

/// Halves q and the n groups below it; gives what is left of q.
Group halve(Group* r, const Group* a, std::size_t n, Group q) {
  Group odd = q & 1;
  for (std::size_t i = n; i-- > 0;) {
    Group value = a[i];
    r[i] = value / 2 + (odd != 0 ? groupBase / 2 : 0);
    odd = value & 1;
  }
  return q / 2;
}

/// s = the truncated root of a, 2n groups, whose top one is at least a quarter of the base. The
/// remainder stays in a's n lowest groups with the carry returned above them; a's upper half is lost.
std::int64_t rootGroups(Group* s, Group* a, std::size_t n) {
  if (n < halvingGroups) return columnRoot(s, a, n, true);
  // A step of Newton's method: the root of the upper half of the groups, and its remainder divided by twice
  // the root for the rest.
  const Group one = 1;
  const std::size_t l = n / 2, h = n - l;
  auto q = static_cast<Group>(rootGroups(s + l, a + 2 * l, h));
  if (q != 0) subtractGroups(a + 2 * l, a + 2 * l, h, s + l, h);
  GroupSpace space(2 * n + l + 1);
  Group *quotient = space, *square = space + l + 1;
  divideGroups(quotient, a + l, n, s + l, h);
  q += quotient[l];
  const bool odd = (quotient[0] & 1) != 0;
  q = halve(s, quotient, l, q);
  std::int64_t carry = 0;
  if (odd) carry = static_cast<std::int64_t>(addGroups(a + l, a + l, h, s + l, h));
  // The square of the lower part goes off; a quotient of the whole base has the square base^2.
  multiplyGroups(square, s, l, s, l);
  Group borrow = q + subtractGroups(a, a, 2 * l, square, 2 * l);
  carry -= static_cast<std::int64_t>(l == h ? borrow : subtractGroups(a + 2 * l, a + 2 * l, 1, &borrow, 1));
  if (carry < 0) {
    // One too many: the remainder grows by 2s - 1.
    q = addGroups(s + l, s + l, h, &q, 1);
    carry += static_cast<std::int64_t>(addGroups(a, a, n, s, n) + addGroups(a, a, n, s, n) + 2 * q);
    carry -= static_cast<std::int64_t>(subtractGroups(a, a, n, &one, 1));
    subtractGroups(s, s, n, &one, 1);
  }
  return carry;
}

/// The root of the largest square by which a, 2n groups, may be multiplied: it brings the top group to a
/// quarter of the base, as division by halves wants it.
Group rootFactor(const Group* a, std::size_t n) {
  return rootOfPair(Wide{groupBase} * groupBase / (Wide{a[2 * n - 1]} * groupBase + a[2 * n - 2] + 1));
}

/// r = a times the square of `factor`, 2n groups.
void scaleBySquare(Group* r, const Group* a, std::size_t n, Group factor) {
  scaleGroups(r, a, 2 * n, factor);
  if (factor > 1) scaleGroups(r, r, 2 * n, factor);
}

/// s = the truncated root of a and a group behind it, n + 1 groups: the root of the upper groups, and a
/// quotient for the rest. False when the group behind doesn't tell the root, which may be two less there.
bool guardedRoot(Group* s, const Group* a, std::size_t n) {
  const std::size_t m = n + 1, l = m / 2, h = m - l;
  GroupSpace space(2 * m + l + 1);
  Group *scaled = space, *quotient = space + 2 * m;
  const Group factor = rootFactor(a, n);
  scaled[0] = scaled[1] = 0;
  scaleBySquare(scaled + 2, a, n, factor);
  auto q = static_cast<Group>(rootGroups(s + l, scaled + 2 * l, h));
  if (q != 0) subtractGroups(scaled + 2 * l, scaled + 2 * l, h, s + l, h);
  quotientOfGroups(quotient, scaled + l, m, s + l, h);
  // A carry would make it the next root of the upper groups: too close to tell.
  if (halve(s, quotient, l, q + quotient[l]) != 0) return false;
  if (factor > 1) divideGroupsBy(s, s, m, factor);
  return isGuarded(s[0]);
}

/// The root of a, n groups, truncated or the nearest integer, with a carry in s[n]. Tells whether it is
/// exact. a is lost.
bool exactRoot(Group* s, Group* a, std::size_t n, bool nearest) {
  const Group factor = rootFactor(a, n), one = 1;
  if (factor > 1) scaleBySquare(a, a, n, factor);
  const std::int64_t carry = rootGroups(s, a, n);
  const bool nearer = carry > 0 || compareGroups(a, s, n) > 0;  // the scaled root's successor
  const bool square = carry == 0 && significantGroups(a, n) == 0;
  const Group off = factor > 1 ? divideGroupsBy(s, s, n, factor) : 0;
  s[n] = nearest && 2 * off + (nearer ? 1 : 0) >= factor ? addGroups(s, s, n, &one, 1) : 0;
  return square && off == 0;
}

/// Root of a positive n, truncated or to the nearest integer; `exact` tells whether n is its square.
DAG rootOf(DAG n, bool nearest, bool* exact) {
  const std::size_t count = groupCount(n), half = (count + 1) / 2;
  GroupSpace space(3 * half + 2);
  Group *a = space, *root = space + 2 * half;
  packInteger(n, a);
  if (count < 2 * half) a[count] = 0;
  if (half >= halvingGroups && guardedRoot(root, a, half)) {
    // The group behind the root is at most two too large: it may stand on either side of a half.
    const Group behind = root[0], middle = groupBase / 2, one = 1;
    if (!nearest || behind < middle || behind > middle + guardSlack) {
      if (exact != nullptr) *exact = false;
      root[half + 1] = nearest && behind > middle ? addGroups(root + 1, root + 1, half, &one, 1) : 0;
      return integerOfGroups(root + 1, half + 1, INTPOS);
    }
  }
  const bool square = exactRoot(root, a, half, nearest);
  if (exact != nullptr) *exact = square;
  return integerOfGroups(root, half + 1, INTPOS);
}

}  // namespace

bool rootOfGroups(Group* s, Group* a, std::size_t n) {
  if (n < halvingGroups) return columnRoot(s, a, n, false) != 0;
  GroupSpace root(n + 1);
  if (guardedRoot(root, a, n)) {
    std::memcpy(s, root + 1, n * sizeof(Group));
    return true;
  }
  const bool exact = exactRoot(root, a, n, false);
  std::memcpy(s, root, n * sizeof(Group));
  return !exact;
}

DAG isqrt(DAG n) {
  if (hasTag(n, INTNEG)) return cons0;
  if (isImmediate(n) && immediateValue(n) < 1000000000) return immediate(nearestRoot(immediateValue(n)));
  return rootOf(n, true, nullptr);
}

DAG truncatedRoot(DAG n, bool* exact) { return rootOf(n, false, exact); }

}  // namespace korel
