#include "numbers/primes/natural.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "numbers/integer/integer.h"
#include "numbers/integer/integer_groups.h"

namespace korel {

// ---- conversion

Natural naturalOf(DAG integer) {
  const std::size_t count = groupCount(integer);
  std::vector<Group> groups(count);
  packInteger(integer, groups.data());
  Natural x;
  for (std::size_t i = count; i-- > 0;) {
    Limb carry = scaleLimbs(x.data(), x.data(), x.size(), groupBase);
    carry += addLimb(x.data(), x.size(), groups[i]);
    if (carry != 0) x.push_back(carry);
  }
  return x;
}

DAG integerOf(const Natural& x) {
  Natural rest = x;
  std::vector<Group> groups;
  while (!rest.empty()) groups.push_back(divideByLimb(rest, groupBase));
  if (groups.empty()) return immediate(0);
  return integerOfGroups(groups.data(), groups.size(), INTPOS);
}

// ---- shape

void dropZeroLimbs(Natural& x) { x.resize(significantLimbs(x.data(), x.size())); }

int compareNaturals(const Natural& a, const Natural& b) {
  if (a.size() != b.size()) return a.size() < b.size() ? -1 : 1;
  return compareLimbs(a.data(), b.data(), a.size());
}

std::size_t bitLength(const Natural& x) {
  return x.empty() ? 0 : 64 * x.size() - static_cast<std::size_t>(__builtin_clzll(x.back()));
}

std::size_t trailingZeros(const Natural& x) {
  std::size_t i = 0;
  while (x[i] == 0) ++i;
  return 64 * i + static_cast<std::size_t>(__builtin_ctzll(x[i]));
}

double doubleOf(const Natural& x) {
  double value = 0;
  for (std::size_t i = x.size(); i-- > 0;) value = value * 0x1p64 + static_cast<double>(x[i]);
  return value;
}

// ---- the four operations

Natural sum(const Natural& a, const Natural& b) {
  const Natural& longer = a.size() >= b.size() ? a : b;
  const Natural& shorter = a.size() >= b.size() ? b : a;
  Natural r = longer;
  Limb carry = addLimbs(r.data(), r.data(), shorter.data(), shorter.size());
  carry = addLimb(r.data() + shorter.size(), r.size() - shorter.size(), carry);
  if (carry != 0) r.push_back(carry);
  return r;
}

Natural difference(const Natural& a, const Natural& b) {
  Natural r = a;
  const Limb borrow = subtractLimbs(r.data(), r.data(), b.data(), b.size());
  subtractLimb(r.data() + b.size(), r.size() - b.size(), borrow);
  dropZeroLimbs(r);
  return r;
}

Natural product(const Natural& a, const Natural& b) {
  Natural r(a.size() + b.size());
  for (std::size_t i = 0; i < a.size(); ++i) r[i + b.size()] = addScaled(&r[i], b.data(), b.size(), a[i]);
  dropZeroLimbs(r);
  return r;
}

Natural scaled(const Natural& a, Limb factor) { return product(a, naturalOfLimb(factor)); }

Natural shiftedLeft(const Natural& a, std::size_t bits) {
  if (a.empty()) return a;
  const std::size_t limbs = bits / 64, rest = bits % 64;
  Natural r(a.size() + limbs + 1);
  r.back() = shiftLimbsUp(&r[limbs], a.data(), a.size(), static_cast<unsigned>(rest));
  dropZeroLimbs(r);
  return r;
}

Natural shiftedRight(const Natural& a, std::size_t bits) {
  const std::size_t limbs = bits / 64, rest = bits % 64;
  if (limbs >= a.size()) return {};
  Natural r(a.begin() + static_cast<std::ptrdiff_t>(limbs), a.end());
  shiftLimbsDown(r.data(), r.data(), r.size(), static_cast<unsigned>(rest));
  dropZeroLimbs(r);
  return r;
}

Limb divideByLimb(Natural& a, Limb b) {
  const Limb rest = divideLimbs(a.data(), a.data(), a.size(), b);
  dropZeroLimbs(a);
  return rest;
}

Limb residue(const Natural& a, Limb b) {
  Limb rest = 0;
  if (b >> 32 == 0) {
    // By halves of limbs: a division of one limb is far cheaper than one of two.
    for (std::size_t i = a.size(); i-- > 0;) {
      rest = (rest << 32 | a[i] >> 32) % b;
      rest = (rest << 32 | (a[i] & 0xffffffff)) % b;
    }
    return rest;
  }
  for (std::size_t i = a.size(); i-- > 0;) rest = static_cast<Limb>((DoubleLimb{rest} << 64 | a[i]) % b);
  return rest;
}

Natural divide(Natural& a, const Natural& b) {
  if (compareNaturals(a, b) < 0) return {};
  if (b.size() == 1) {
    const Limb rest = divideByLimb(a, b[0]);
    return std::exchange(a, naturalOfLimb(rest));
  }
  const auto shift = static_cast<std::size_t>(__builtin_clzll(b.back()));
  const Natural d = shiftedLeft(b, shift);
  Natural r = shiftedLeft(a, shift);
  const std::size_t n = d.size(), m = std::max(r.size(), a.size()) + 1 - n;
  r.resize(n + m);
  Natural q(m);
  const LimbDivisor top(d.back());
  for (std::size_t j = m; j-- > 0;) q[j] = quotientLimb(&r[j], d.data(), n, top);
  dropZeroLimbs(q);
  dropZeroLimbs(r);
  a = shiftedRight(r, shift);
  return q;
}

Natural remainder(Natural a, const Natural& b) {
  divide(a, b);
  return a;
}

// ---- divisors, roots, symbols

Natural greatestCommonDivisor(Natural a, Natural b) {
  while (!b.empty()) {
    divide(a, b);
    std::swap(a, b);
  }
  return a;
}

Natural inverseModulo(const Natural& a, const Natural& m) {
  // The cofactors alternate in sign: their magnitudes are kept, and the parity of the steps.
  Natural r0 = m, r1 = remainder(a, m), t0, t1{1};
  bool negative = false;
  while (!r1.empty()) {
    const Natural q = divide(r0, r1);
    std::swap(r0, r1);
    Natural t2 = sum(t0, product(q, t1));
    t0 = std::exchange(t1, std::move(t2));
    negative = !negative;
  }
  return negative ? t0 : difference(m, t0);
}

Natural truncatedRootOf(const Natural& x, unsigned k) {
  if (x.empty() || k == 1) return x;
  // Newton's iteration from above falls until it has arrived: from a double's logarithm, a little raised, in few steps.
  const std::size_t bits = bitLength(x), hidden = bits > 64 ? bits - 64 : 0;
  const double log = (std::log2(doubleOf(shiftedRight(x, hidden))) + static_cast<double>(hidden)) / k;
  const double whole = std::floor(log), scale = 0x1p32 * (1 + 0x1p-24);
  Natural root = shiftedLeft({static_cast<Limb>(std::exp2(log - whole) * scale) + 1}, static_cast<std::size_t>(whole));
  root = sum(shiftedRight(root, 32), {1});
  for (;;) {
    Natural power{1};
    for (unsigned i = 1; i < k; ++i) power = product(power, root);
    Natural rest = x;
    Natural next = sum(scaled(root, k - 1), divide(rest, power));
    divideByLimb(next, k);
    if (compareNaturals(next, root) >= 0) return root;
    root = std::move(next);
  }
}

int jacobiSymbol(Natural a, Natural n) {
  int sign = 1;
  a = remainder(std::move(a), n);
  while (!a.empty()) {
    const std::size_t twos = trailingZeros(a);
    a = shiftedRight(a, twos);
    const Limb low = n[0] & 7;
    if (twos % 2 == 1 && (low == 3 || low == 5)) sign = -sign;
    if ((a[0] & 3) == 3 && (n[0] & 3) == 3) sign = -sign;
    std::swap(a, n);
    a = remainder(std::move(a), n);
  }
  return n.size() == 1 && n[0] == 1 ? sign : 0;
}

}  // namespace korel
