// Greatest common divisors: machine words, residues by a word, and Lehmer's method on groups.

#include <algorithm>
#include <cstring>
#include <utility>

#include "numbers/integer.h"
#include "numbers/integer_functions.h"
#include "numbers/integer_groups.h"
#include "numbers/integer_space.h"
#include "store/constants.h"

namespace korel {

namespace {

// ---- Lehmer's method (Knuth, vol. 2, 4.5.2, algorithm L) with leading parts of 32 decimals
//
// Euclid's algorithm on the leading parts yields four factors of up to 16 decimals, which then take both
// operands a whole group down in one pass. The factors make a matrix of determinant 1 or -1, so the gcd
// stays the same even if the last quotient isn't that of the operands; signs are dropped.

struct Factors {
  Group u0, v0, u1, v1;  // a' = |u0 a - v0 b|, b' = |u1 a - v1 b|
  bool first;            // u0 a - v0 b is the positive form, u1 a - v1 b the negative one
};

/// Leading 32 decimals of the number whose top group is a[n-1], shifted up by `scale` = 10^s decimals.
Wide leadingPart(const Group* a, std::size_t n, Group scale) {
  Wide lead = (Wide{a[n - 1]} * groupBase + a[n - 2]) * scale;
  return n > 2 ? lead + a[n - 3] / (groupBase / scale) : lead;
}

Factors euclid(Wide x, Wide y) {
  Factors f{1, 0, 0, 1, true};
  while (y >= groupBase) {
    Group q;
    Wide r = x - y;
    // Most quotients are small (Knuth, 4.5.3): three out of four are below 4.
    if (r < y) {
      q = 1;
    } else if ((r -= y) < y) {
      q = 2;
    } else if ((r -= y) < y) {
      q = 3;
    } else {
      q = static_cast<Group>(x / y);
      r = x - y * q;
    }
    x = y;
    y = r;
    Group u = f.u0 + q * f.u1, v = f.v0 + q * f.v1;
    f.u0 = f.u1;
    f.v0 = f.v1;
    f.u1 = u;
    f.v1 = v;
    f.first = !f.first;
  }
  return f;
}

/// r = |u a - v b| over n groups; r may be a or b.
void combine(Group* r, const Group* a, Group u, const Group* b, Group v, std::size_t n) {
  // Twice the square of the base on top keeps every column positive. The columns are split each by
  // itself; only a carry of -1, 0 or 1 links the steps.
  constexpr Wide bias = 2 * (Wide{groupBase} * groupBase);
  constexpr auto base = static_cast<std::int64_t>(groupBase);
  std::int64_t above = 0, carry = 0;
  for (std::size_t i = 0; i < n; ++i) {
    Parts parts = splitGroup(bias + Wide{u} * a[i] - Wide{v} * b[i]);
    std::int64_t value = static_cast<std::int64_t>(parts.rest) + above + carry;
    // Random signs: masks in place of branches.
    std::int64_t negative = value >> 63, full = (base - 1 - value) >> 63;
    carry = negative - full;
    r[i] = static_cast<Group>(value + (negative & base) - (full & base));
    above = static_cast<std::int64_t>(parts.quotient) - 2 * base;
  }
  if (above + carry >= 0) return;
  Group borrow = 0;
  for (std::size_t i = 0; i < n; ++i) {
    Group digit = r[i] + borrow;
    borrow = digit != 0;
    r[i] = borrow != 0 ? groupBase - digit : 0;
  }
}

Group gcdOfGroups(Group a, Group b) {
  while (b != 0) {
    Group r = a % b;
    a = b;
    b = r;
  }
  return a;
}

/// Greatest common divisor of a and b, neither 0, which it overwrites; either array has room for the
/// longer of them. Its groups come to `*result`,
/// which is one of the arrays; gives their count.
std::size_t gcdGroups(Group* a, std::size_t na, Group* b, std::size_t nb, Group** result) {
  GroupSpace space(std::max(na, nb) + 1);
  Group* spare = space;
  for (;;) {
    passGroupWork(4 * na);
    na = significantGroups(a, na);
    nb = significantGroups(b, nb);
    if (na < nb || (na == nb && compareGroups(a, b, na) < 0)) {
      std::swap(a, b);
      std::swap(na, nb);
    }
    if (nb == 0) break;
    if (na == 1) {
      a[0] = gcdOfGroups(a[0], b[0]);
      break;
    }
    // A pass leaves b a group shorter as often as not, beside a small top group of a.
    if (na - nb <= 1) {
      if (nb < na) b[nb] = 0;
      Group scale = 1;
      while (a[na - 1] < groupBase / 10 / scale) scale *= 10;
      Factors f = euclid(leadingPart(a, na, scale), leadingPart(b, na, scale));
      if (f.v0 != 0) {
        combine(spare, a, f.u0, b, f.v0, na);
        combine(b, a, f.u1, b, f.v1, na);
        std::memcpy(a, spare, na * sizeof(Group));
        continue;
      }
    }
    // Lengths apart, or leading parts that tell nothing: one division.
    GroupSpace quotient(na - nb + 1);
    divideGroups(quotient, a, na, b, nb);
  }
  *result = a;
  return na;
}

/// Residue of a digit string by d, four digits a step.
Group residueOfDigits(const Word* digit, std::size_t count, Group d) {
  const GroupDivisor by(d);
  Group rest = 0;
  for (; count % digitsPerGroup != 0; --count) rest = (rest * BASE + digit[count - 1]) % d;
  for (; count != 0; count -= digitsPerGroup) {
    Group group;
    packGroups(digit + count - digitsPerGroup, digitsPerGroup, &group);
    rest = by.split(Wide{rest} * groupBase + group).rest;
  }
  return rest;
}

std::uint32_t magnitude(std::int32_t value) {
  return value < 0 ? 0u - static_cast<std::uint32_t>(value) : static_cast<std::uint32_t>(value);
}

}  // namespace

std::int32_t gcd(std::int32_t a, std::int32_t b) {
  std::uint32_t x = magnitude(a), y = magnitude(b);
  while (y != 0) {
    std::uint32_t r = x % y;
    x = y;
    y = r;
  }
  return static_cast<std::int32_t>(x);
}

DAG gcdint(DAG a, DAG b) {
  if (isImmediate(a) && isImmediate(b)) return immediate(gcd(immediateValue(a), immediateValue(b)));
  if (isImmediate(a)) return gcdMixed(a, b);
  if (isImmediate(b)) return gcdMixed(b, a);
  return MakeImmediate(SoftIntGcd(a, b));
}

DAG gcdMixed(DAG b, DAG a) {
  std::int32_t small = isImmediate(b) ? immediateValue(b) : IntegerValue(b);
  if (small == 0) return hasTag(a, INTNEG) ? complint(a) : a;
  std::uint32_t d = magnitude(small);
  // A divisor of the base sees only the lowest digit.
  Group rest = static_cast<Word>(BASE) % d == 0 ? digitsOf(a)[0] % d : residueOfDigits(digitsOf(a), digitCount(a), d);
  return NewInteger(static_cast<std::int64_t>(gcdOfGroups(d, rest)));
}

DAG SoftIntGcd(DAG a, DAG b) {
  setHeader(a, INTPOS, lengthOf(a));
  setHeader(b, INTPOS, lengthOf(b));
  if (isHeapZero(b)) return a;
  if (isHeapZero(a)) return b;
  Word la = digitCount(a), lb = digitCount(b);
  std::size_t na = groupsFor(la), nb = groupsFor(lb);
  const std::size_t room = std::max(na, nb);
  GroupSpace x(2 * room);
  Group *y = x + room, *result;
  packGroups(digitsOf(a), la, x);
  packGroups(digitsOf(b), lb, y);
  std::size_t count = gcdGroups(x, na, y, nb, &result);
  if (count == 1 && result[0] == 1) return cons1;
  // No longer than the shorter operand, so it fits in either.
  DAG shorter = la < lb ? a : b;
  Word length = std::min(la, lb);
  std::size_t digits = std::min<std::size_t>(count * digitsPerGroup, length);
  unpackGroups(result, digitsOf(shorter), digits);
  return withDigits(shorter, INTPOS, static_cast<Word>(digits));
}

DAG igcd(DAG a, DAG b) {
  if (isImmediate(a) || isImmediate(b)) {
    DAG g = gcdint(a, b);
    return g == a || g == b ? CopyAlg(g) : g;
  }
  Word la = lengthOf(a), lb = lengthOf(b);
  DAG x = CopyAlg(a), y = CopyAlg(b);
  DAG g = SoftIntGcd(x, y);
  if (g == x || g == y) {
    DAG other = g == x ? y : x;
    release(other, g == x ? lb : la);
    return settled(g, g == x ? la : lb);
  }
  release(x, la);
  release(y, lb);
  return g;
}

void gcdsimpl(DAG a, DAG b, DAG out[2]) {
  if (isImmediate(a) && isImmediate(b)) {
    std::int32_t x = immediateValue(a), y = immediateValue(b), g = gcd(x, y);
    out[0] = g > 1 ? immediate(x / g) : a;
    out[1] = g > 1 ? immediate(y / g) : b;
    return;
  }
  DAG g = igcd(a, b);
  if (g == cons1) {
    out[0] = a;
    out[1] = b;
    return;
  }
  DAG rest;
  out[0] = IntegerDivide(a, g, &rest);
  out[1] = IntegerDivide(b, g, &rest);
  if (!isImmediate(g)) release(g, lengthOf(g));
}

void SoftIntGcdSimpl(DAG a, DAG b, DAG out[2]) { gcdsimpl(MakeImmediate(a), MakeImmediate(b), out); }

}  // namespace korel
