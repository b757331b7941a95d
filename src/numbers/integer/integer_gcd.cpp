// Greatest common divisors: machine words, residues by a word, Lehmer's method on groups, and halving for
// long operands.

#include "numbers/integer/integer.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "numbers/integer/integer_functions.h"
#include "numbers/integer/integer_groups.h"
#include "numbers/integer/integer_half_gcd.h"
#include "numbers/integer/integer_lehmer.h"
#include "numbers/integer/integer_space.h"
#include "store/constants.h"

namespace korel {

namespace {

// Groups of the shorter operand, measured with bench/integer_bench.cpp: below, Lehmer's method.
constexpr std::size_t halvingGroups = 300;

/// As `lehmerGcd`, with halving steps while both operands are long.
std::size_t gcdGroups(Group* a, std::size_t na, Group* b, std::size_t nb, Group** result) {
  while (std::min(na, nb) >= halvingGroups) {
    if (na < nb || (na == nb && compareGroups(a, b, na) < 0)) {
      std::swap(a, b);
      std::swap(na, nb);
    }
    std::memset(b + nb, 0, (na - nb) * sizeof(Group));
    if (std::size_t n = takeThirdOff(a, b, na)) {
      na = significantGroups(a, n);
      nb = significantGroups(b, n);
      continue;
    }
    // Too far apart.
    GroupSpace quotient(na - nb + 1);
    divideGroups(quotient, a, na, b, nb);
    na = significantGroups(a, nb);
  }
  return lehmerGcd(a, na, b, nb, result);
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
