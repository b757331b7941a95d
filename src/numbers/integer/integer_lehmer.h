#pragma once
// Lehmer's step (Knuth, vol. 2, 4.5.2, algorithm L) on groups, with leading parts of 32 decimals.
//
// Euclid's algorithm on the leading parts yields four factors of up to 16 decimals, which then take both
// operands a whole group down in one pass. The factors make a matrix of determinant 1 or -1, so the gcd
// stays the same even if the last quotient isn't that of the operands.

#include <cstddef>

#include "numbers/integer/integer_groups.h"

namespace korel {

struct LehmerFactors {
  Group u0, v0, u1, v1;  // a' = |u0 a - v0 b|, b' = |u1 a - v1 b|
  bool first;            // u0 a - v0 b is the positive form, u1 a - v1 b the negative one
};

/// Leading 32 decimals of the number whose top group is a[n-1], n at least 2, shifted up by `scale` = 10^s
/// decimals.
inline Wide leadingPart(const Group* a, std::size_t n, Group scale) {
  Wide lead = (Wide{a[n - 1]} * groupBase + a[n - 2]) * scale;
  return n > 2 ? lead + a[n - 3] / (groupBase / scale) : lead;
}

/// Euclid's algorithm on leading parts x >= y until one is below the base. It stops before a remainder
/// below `least`: with twice the base, the factors stay below half the base, so that what they make of
/// the operands is positive whatever stands behind the leading parts.
LehmerFactors euclid(Wide x, Wide y, Wide least);

/// r = |u a - v b| over n groups; r may be a or b.
void absoluteCombination(Group* r, const Group* a, Group u, const Group* b, Group v, std::size_t n);

/// Greatest common divisor of a and b, not both 0, which it overwrites; either array has room for the
/// longer of them. Its groups come to `*result`, which is one of the arrays; gives their count.
std::size_t lehmerGcd(Group* a, std::size_t na, Group* b, std::size_t nb, Group** result);

/// The same for single groups.
inline Group gcdOfGroups(Group a, Group b) {
  while (b != 0) {
    Group r = a % b;
    a = b;
    b = r;
  }
  return a;
}

}  // namespace korel
