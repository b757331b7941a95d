#pragma once
// Sums of products in columns of 128 bits: how products, quotients and roots of groups avoid carries.
//
// A column adds up products of groups and is split once, when it is complete. A quotient or a root takes
// its columns from the top: each new group comes from the columns at hand and the sums of what the groups
// found so far put into the next one. The columns below are never touched unless the remainder is asked
// for, so that a quotient without one costs half (Mulders, "On short multiplications
// and divisions").

#include <cstddef>

#include "numbers/integer/integer_groups.h"

namespace korel {

/// Terms that a column has at most: its quotient by the base then fits in a word.
constexpr std::size_t longestColumn = 1500;

/// Splits columns from the lowest up. The splits don't wait for each other; only a small quotient links
/// the steps.
class ColumnCarry {
 public:
  /// The group at the next column's place.
  Group put(Wide column) {
    GroupQuotient parts = splitGroup(column);
    Group sum = parts.rest + carry_, more = sum / groupBase;
    carry_ = parts.quotient + more;
    return sum - more * groupBase;
  }
  /// What goes into the column above.
  Group carry() const { return carry_; }

 private:
  Group carry_ = 0;
};

/// Sum of a[i] * b[-i] for i below n.
inline Wide columnSum(const Group* a, const Group* b, std::size_t n) {
  Wide sum = 0, other = 0;  // two chains of additions with carry
  std::size_t i = 0;
  for (; i + 4 <= n; i += 4) {
    sum += Wide{a[i]} * b[-static_cast<std::ptrdiff_t>(i)];
    other += Wide{a[i + 1]} * b[-static_cast<std::ptrdiff_t>(i) - 1];
    sum += Wide{a[i + 2]} * b[-static_cast<std::ptrdiff_t>(i) - 2];
    other += Wide{a[i + 3]} * b[-static_cast<std::ptrdiff_t>(i) - 3];
  }
  for (; i < n; ++i) sum += Wide{a[i]} * b[-static_cast<std::ptrdiff_t>(i)];
  return sum + other;
}

/// Sum of a[i] * b[-i] for i below n, where b = a + n - 1: the column of a square.
inline Wide symmetricSum(const Group* a, const Group* b, std::size_t n) {
  Wide sum = columnSum(a, b, n / 2);
  sum += sum;
  return n % 2 == 0 ? sum : sum + Wide{a[n / 2]} * a[n / 2];
}

/// What is left of a dividend while groups of the quotient are found: its columns down to one place
/// above the next, carried into a number that stays below three divisors.
///
/// The divisor is known by its two leading groups, high and next, high at least a tenth of the base. A
/// group found is never too large and rarely one too small; what it leaves goes into the next one, which
/// may then exceed the base, and is carried at the end (`carryQuotient`).
class ColumnRemainder {
 public:
  ColumnRemainder(Group high, Group next, Wide leading)
      : high_(high),
        next_(next),
        shift_(__builtin_clzll(high) - 1),
        fraction_(static_cast<Group>((Wide{1} << (64 + shift_)) / groupBase)),
        by_((high << shift_) + static_cast<Group>(Wide{next} * fraction_ >> 64) + 2),
        columns_(leading) {}

  /// Takes the next column in, the dividend's group less `sum`, which the groups found so far have put
  /// there in `terms` products; gives the next group of the quotient.
  Group step(Group dividend, Wide sum, std::size_t terms) {
    GroupQuotient parts = splitGroup(sum);
    Group low = dividend - parts.rest;
    Group borrow = low >> 63;
    low += borrow * groupBase;
    Wide above = columns_ - parts.quotient - borrow;
    const Wide slack = slackOf(terms);
    Group digit = 0;
    if (above > slack)
      digit = by_.split(((above - slack) << shift_) + static_cast<Group>(Wide{low} * fraction_ >> 64)).quotient;
    columns_ = (above - Wide{digit} * high_) * groupBase + low - Wide{digit} * next_;
    return digit;
  }
  /// What is left, in units of the divisor's second group, before the lower columns.
  Wide columns() const { return columns_; }
  /// True when what is left is surely neither zero nor as much as the divisor, whatever the lower columns
  /// take off for `terms` products each.
  bool isBetween(std::size_t terms) const {
    return columns_ > slackOf(terms) * groupBase && columns_ < Wide{high_} * groupBase + next_;
  }

 private:
  /// What the lower columns may take off, in units of the base: a product for each term, of groups that
  /// may exceed the base, and a few for what the divisor has below its two groups.
  static Wide slackOf(std::size_t terms) { return 2 * terms + 12; }

  Group high_, next_;
  int shift_;
  Group fraction_;  // 2^(64 + shift) / base
  GroupDivisor by_;
  Wide columns_;
};

/// A quotient or root with a group behind it that is off by less than this, either way, is the exact one
/// with a remainder unless that group is so close to zero or to the base.
constexpr Group guardSlack = 1000;
inline bool isGuarded(Group guard) { return guard >= guardSlack && guard < groupBase - guardSlack; }

/// Carries groups found by `ColumnRemainder` that exceed the base.
inline void carryQuotient(Group* q, std::size_t n) {
  Group carry = 0;
  for (std::size_t i = 0; i < n; ++i) {
    q[i] += carry;
    carry = 0;
    while (q[i] >= groupBase) {
      q[i] -= groupBase;
      ++carry;
    }
  }
}

}  // namespace korel
