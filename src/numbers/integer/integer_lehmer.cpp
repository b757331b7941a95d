#include "numbers/integer/integer_lehmer.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace korel {

LehmerFactors euclid(Wide x, Wide y, Wide least) {
  LehmerFactors f{1, 0, 0, 1, true};
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
    if (r < least) return f;
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

void absoluteCombination(Group* r, const Group* a, Group u, const Group* b, Group v, std::size_t n) {
  // Twice the square of the base on top keeps every column positive. The columns are split each by
  // itself; only a carry of -1, 0 or 1 links the steps.
  constexpr Wide bias = 2 * (Wide{groupBase} * groupBase);
  constexpr auto base = static_cast<std::int64_t>(groupBase);
  std::int64_t above = 0, carry = 0;
  for (std::size_t i = 0; i < n; ++i) {
    GroupQuotient parts = splitGroup(bias + Wide{u} * a[i] - Wide{v} * b[i]);
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

std::size_t lehmerGcd(Group* a, std::size_t na, Group* b, std::size_t nb, Group** result) {
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
      LehmerFactors f = euclid(leadingPart(a, na, scale), leadingPart(b, na, scale), 0);
      if (f.v0 != 0) {
        absoluteCombination(spare, a, f.u0, b, f.v0, na);
        absoluteCombination(b, a, f.u1, b, f.v1, na);
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

}  // namespace korel
