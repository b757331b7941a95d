#include "numbers/integer/integer_half_gcd.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "numbers/integer/integer_lehmer.h"

namespace korel {

namespace {

// Groups of the operands, measured with bench/integer_bench.cpp: below, one pass of Lehmer's step after
// the other.
constexpr std::size_t recursionGroups = 100;

/// A product of steps (1 q; 0 1) and (1 0; q 1) of Euclid's algorithm: no entry is negative and the
/// determinant is 1. With (a; b) = M (a'; b') the pairs (a, b) and (a', b') have the same gcd.
struct StepMatrix {
  Group* entry[2][2];
  std::size_t count;  // groups of each entry; high ones may be zero
  std::size_t room;
  GroupSpace space;

  explicit StepMatrix(std::size_t groups) : room(groups), space(4 * groups) {
    for (std::size_t i = 0; i < 4; ++i) entry[i / 2][i % 2] = space + i * groups;
    makeUnit();
  }
  void makeUnit() {
    count = 1;
    for (int i = 0; i < 4; ++i) entry[i / 2][i % 2][0] = i == 0 || i == 3;
  }
};

/// Adds a product to an entry, all entries of which have `m.count` groups; gives the count that it needs.
std::size_t addProduct(StepMatrix& m, Group* entry, const Group* product, std::size_t n) {
  n = significantGroups(product, n);
  std::size_t count = m.count;
  if (n > count) {
    std::memset(entry + count, 0, (n - count) * sizeof(Group));
    count = n;
  }
  Group carry = addGroups(entry, entry, count, product, n);
  if (carry != 0) entry[count++] = carry;
  assert(count <= m.room);
  return count;
}

/// Brings all entries to the greatest of the counts.
void evenOut(StepMatrix& m, const std::size_t (&counts)[2][2]) {
  std::size_t most = 1;
  for (auto& row : counts) most = std::max({most, row[0], row[1]});
  for (int i = 0; i < 4; ++i) {
    std::size_t have = counts[i / 2][i % 2];
    std::memset(m.entry[i / 2][i % 2] + have, 0, (most - have) * sizeof(Group));
  }
  m.count = most;
}

/// M (1 q; 0 1) for column 1, M (1 0; q 1) for column 0: q times the other column is added to this one.
void addColumn(StepMatrix& m, int column, const Group* q, std::size_t nq) {
  nq = significantGroups(q, nq);
  GroupSpace product(m.count + nq);
  std::size_t counts[2][2] = {{m.count, m.count}, {m.count, m.count}};
  for (int row = 0; row < 2; ++row) {
    multiplyGroups(product, m.entry[row][1 - column], m.count, q, nq);
    counts[row][column] = addProduct(m, m.entry[row][column], product, m.count + nq);
  }
  evenOut(m, counts);
}

/// r = u a + v b for u and v up to half the base; gives the group that comes out. r may be a or b.
Group combination(Group* r, const Group* a, Group u, const Group* b, Group v, std::size_t n) {
  // The columns are split each by itself; only a carry of 0 or 1 links the steps.
  Group above = 0, carry = 0;
  for (std::size_t i = 0; i < n; ++i) {
    GroupQuotient parts = splitGroup(Wide{u} * a[i] + Wide{v} * b[i]);
    Group sum = parts.rest + above + carry;
    carry = sum >= groupBase;
    r[i] = sum - (carry != 0 ? groupBase : 0);
    above = parts.quotient;
  }
  return above + carry;
}

/// M times the matrix of a Lehmer step.
void timesStep(StepMatrix& m, Group u00, Group u01, Group u10, Group u11, Group* spare) {
  const std::size_t n = m.count;
  bool longer = false;
  for (auto& row : m.entry) {
    Group out0 = combination(spare, row[0], u00, row[1], u10, n);
    Group out1 = combination(row[1], row[0], u01, row[1], u11, n);
    std::memcpy(row[0], spare, n * sizeof(Group));
    longer = longer || out0 != 0 || out1 != 0;
    if (n < m.room) {
      row[0][n] = out0;
      row[1][n] = out1;
    }
  }
  assert(!longer || n < m.room);
  if (longer) ++m.count;
}

/// M times another such matrix.
void timesMatrix(StepMatrix& m, const StepMatrix& by) {
  const std::size_t n = m.count + by.count;
  GroupSpace space(3 * n);
  Group *first = space, *second = space + n, *product = space + 2 * n;
  std::size_t counts[2][2];
  for (int row = 0; row < 2; ++row) {
    for (int column = 0; column < 2; ++column) {
      Group* sum = column == 0 ? first : second;
      multiplyGroups(sum, m.entry[row][0], m.count, by.entry[0][column], by.count);
      multiplyGroups(product, m.entry[row][1], m.count, by.entry[1][column], by.count);
      addGroups(sum, sum, n, product, n);
    }
    for (int column = 0; column < 2; ++column) {
      Group* sum = column == 0 ? first : second;
      counts[row][column] = std::max<std::size_t>(significantGroups(sum, n), 1);
      assert(counts[row][column] <= m.room);
      std::memcpy(m.entry[row][column], sum, counts[row][column] * sizeof(Group));
    }
  }
  evenOut(m, counts);
}

std::size_t longerCount(const Group* a, const Group* b, std::size_t n) {
  while (n > 0 && a[n - 1] == 0 && b[n - 1] == 0) --n;
  return n;
}

/// r, whose n - p groups from place p on are what steps make of a leading part, becomes what they make of
/// the whole: the products of the lower parts with entries of the matrix are added and taken off. What comes
/// out is positive and fits in n groups, which are no fewer than the products'.
void applyBelow(Group* r, std::size_t n, std::size_t p, const Group* plus, const Group* minus, std::size_t count) {
  // A carry beyond n goes as it came.
  std::memcpy(r, plus, p * sizeof(Group));
  addGroups(r + p, r + p, n - p, plus + p, count - p);
  subtractGroups(r, r, n, minus, count);
}

/// Applies the steps that the leading parts of a and b, from place p on, have gone through, to their p
/// groups below. The parts above have been replaced by the outcome, `high` groups. Gives the longer count.
std::size_t applySteps(const StepMatrix& m, Group* a, Group* b, std::size_t n, std::size_t p, std::size_t high) {
  const std::size_t count = p + m.count;
  GroupSpace space(4 * count);
  Group *a11 = space, *b01 = a11 + count, *b00 = b01 + count, *a10 = b00 + count;
  multiplyGroups(a11, a, p, m.entry[1][1], m.count);
  multiplyGroups(b01, b, p, m.entry[0][1], m.count);
  multiplyGroups(b00, b, p, m.entry[0][0], m.count);
  multiplyGroups(a10, a, p, m.entry[1][0], m.count);
  std::memset(a + p + high, 0, (n - p - high) * sizeof(Group));
  std::memset(b + p + high, 0, (n - p - high) * sizeof(Group));
  applyBelow(a, n, p, a11, b01, count);
  applyBelow(b, n, p, b00, a10, count);
  return longerCount(a, b, n);
}

/// One division step that leaves both operands at `least` groups and more; 0 when there is none.
std::size_t divisionStep(Group* a, Group* b, std::size_t n, std::size_t least, StepMatrix& m) {
  int order = compareGroups(a, b, n);
  if (order == 0) return 0;
  Group *longer = order > 0 ? a : b, *shorter = order > 0 ? b : a;
  const std::size_t nl = significantGroups(longer, n), ns = significantGroups(shorter, n);
  if (ns <= least) return 0;
  GroupSpace q(nl - ns + 1);
  divideGroups(q, longer, nl, shorter, ns);
  if (significantGroups(longer, ns) <= least) {
    // One less, and the remainder stays large.
    const Group one = 1;
    subtractGroups(q, q, nl - ns + 1, &one, 1);
    Group carry = addGroups(longer, longer, ns, shorter, ns);
    if (carry != 0) longer[ns] = carry;
    if (significantGroups(q, nl - ns + 1) == 0) return 0;
  }
  addColumn(m, order > 0 ? 1 : 0, q, nl - ns + 1);
  return longerCount(a, b, n);
}

/// A step of Lehmer's, or of a division where that isn't sure; both operands stay at or above the base to
/// the power of `least`. Gives the longer count, 0 when there is no step.
std::size_t step(Group* a, Group* b, std::size_t n, std::size_t least, StepMatrix& m, Group* spare) {
  passGroupWork(8 * n);
  if (n >= least + 2) {
    Group *longer = a, *shorter = b;
    const bool swapped = compareGroups(a, b, n) < 0;
    if (swapped) std::swap(longer, shorter);
    Group scale = 1;
    while (longer[n - 1] < groupBase / 10 / scale) scale *= 10;
    constexpr Wide leastPart = 2 * Wide{groupBase};
    Wide x = leadingPart(longer, n, scale), y = leadingPart(shorter, n, scale);
    LehmerFactors f = euclid(x, y, leastPart);
    if (f.v0 != 0 && y >= leastPart) {
      absoluteCombination(spare, longer, f.u0, shorter, f.v0, n);
      absoluteCombination(shorter, longer, f.u1, shorter, f.v1, n);
      std::memcpy(longer, spare, n * sizeof(Group));
      // The inverse of ((u0, -v0), (-u1, v1)), or of its negative, seen from (a; b). Its determinant is 1
      // when the first form is the positive one, otherwise after an exchange.
      Group m00 = f.v1, m01 = f.v0, m10 = f.u1, m11 = f.u0;
      if (swapped) {
        std::swap(m00, m11);
        std::swap(m01, m10);
      }
      if (!f.first) {
        std::swap(m00, m01);
        std::swap(m10, m11);
        std::swap_ranges(a, a + n, b);
      }
      timesStep(m, m00, m01, m10, m11, spare);
      return longerCount(a, b, n);
    }
  }
  return divisionStep(a, b, n, least, m);
}

/// Euclid's algorithm on a and b, n groups, down to about half of them: both stay at or above the base to
/// the power of n / 2 + 1, so that the entries of M, below the power of n / 2 or so, times anything that
/// may stand behind a and b, leave them positive. Gives the longer count and (a; b) before = M (a; b) after;
/// 0 when there is no step.
std::size_t halfGcd(Group* a, Group* b, std::size_t n, StepMatrix& m) {
  const std::size_t least = n / 2 + 1, threeQuarters = 3 * n / 4 + 1;
  m.makeUnit();
  bool any = false;
  if (n >= recursionGroups) {
    // The leading half takes a quarter off, the leading part of what is left the next quarter.
    std::size_t p = n / 2;
    if (std::size_t high = halfGcd(a + p, b + p, n - p, m)) {
      n = applySteps(m, a, b, n, p, high);
      any = true;
    }
    GroupSpace spare(n + 1);
    while (n > threeQuarters) {
      std::size_t shorter = step(a, b, n, least, m, spare);
      if (shorter == 0) return any ? n : 0;
      n = shorter;
      any = true;
    }
    if (n > least + 2) {
      p = 2 * least - n + 1;
      StepMatrix second((n - p + 1) / 2 + 1);
      if (std::size_t high = halfGcd(a + p, b + p, n - p, second)) {
        n = applySteps(second, a, b, n, p, high);
        timesMatrix(m, second);
        any = true;
      }
    }
  }
  GroupSpace spare(n + 1);
  while (std::size_t shorter = step(a, b, n, least, m, spare)) {
    n = shorter;
    any = true;
  }
  return any ? n : 0;
}

}  // namespace

std::size_t takeThirdOff(Group* a, Group* b, std::size_t n) {
  const std::size_t p = 2 * n / 3;
  StepMatrix m((n - p + 1) / 2 + 1);
  std::size_t high = halfGcd(a + p, b + p, n - p, m);
  return high == 0 ? 0 : applySteps(m, a, b, n, p, high);
}

}  // namespace korel
