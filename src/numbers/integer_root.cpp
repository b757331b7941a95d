// Integer square roots, by division of halves (Zimmermann, "Karatsuba square root").

#include <cmath>
#include <cstring>

#include "numbers/integer.h"
#include "numbers/integer_functions.h"
#include "numbers/integer_groups.h"
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
  if (n == 1) {
    Wide value = Wide{a[1]} * groupBase + a[0];
    s[0] = rootOfPair(value);
    auto rest = static_cast<Group>(value - Wide{s[0]} * s[0]);  // at most 2s
    a[0] = rest % groupBase;
    return rest >= groupBase;
  }
  // A step of Newton's method: the root of the upper half of the groups, and its remainder divided by twice the root for the rest.
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

/// Root of a positive n, truncated or to the nearest integer; `exact` tells whether n is its square.
DAG rootOf(DAG n, bool nearest, bool* exact) {
  const std::size_t count = groupCount(n), half = (count + 1) / 2;
  GroupSpace space(5 * half + 1);
  Group *scaled = space, *root = space + 2 * half, *square = root + half + 1;
  packInteger(n, scaled);
  if (count < 2 * half) scaled[count] = 0;
  // Times the largest square that leaves room: its root is divided out of the result.
  Wide top = Wide{scaled[2 * half - 1]} * groupBase + scaled[2 * half - 2] + 1;
  const Wide most = Wide{groupBase} * groupBase;
  Group factor = rootOfPair(most / top);
  if (factor > 1) {
    scaleGroups(scaled, scaled, 2 * half, factor);
    scaleGroups(scaled, scaled, 2 * half, factor);
  }
  rootGroups(root, scaled, half);
  if (factor > 1) divideGroupsBy(root, root, half, factor);
  multiplyGroups(square, root, half, root, half);
  packInteger(n, scaled);
  if (count < 2 * half) scaled[count] = 0;
  subtractGroups(scaled, scaled, 2 * half, square, 2 * half);
  std::size_t left = significantGroups(scaled, 2 * half);
  if (exact != nullptr) *exact = left == 0;
  // The next integer is nearer when n exceeds r^2 + r.
  root[half] = 0;
  if (nearest && (left > half || compareGroups(scaled, root, half) > 0)) {
    const Group one = 1;
    root[half] = addGroups(root, root, half, &one, 1);
  }
  return integerOfGroups(root, half + 1, INTPOS);
}

}  // namespace

DAG isqrt(DAG n) {
  if (hasTag(n, INTNEG)) return cons0;
  if (isImmediate(n) && immediateValue(n) < 1000000000) return immediate(nearestRoot(immediateValue(n)));
  return rootOf(n, true, nullptr);
}

DAG truncatedRoot(DAG n, bool* exact) { return rootOf(n, false, exact); }

}  // namespace korel
