// Division of packed operands: the school method on signed columns, and by halves for long operands.

#include <algorithm>
#include <cmath>
#include <cstring>

#include "numbers/integer_groups.h"

namespace korel {

namespace {

using SignedWide = __int128;

// Groups of divisor and quotient, measured with bench/integer_bench.cpp: below, the school method.
constexpr std::size_t halvingGroups = 80;

// ---- the school method
//
// No divisor needs to be normalised and no estimate needs to be low. A column of the running remainder
// is a signed 128-bit sum that is never carried: with quotient digits rounded to nearest from the
// leading three columns in extended precision, the remainder stays within about half the divisor of
// zero, and an estimate that is off by one is put right by the next digit. A column is summed up only
// when it becomes one of the leading three, in registers. Quotient digits are signed until the end.

SignedWide product(std::int64_t q, Group b) { return SignedWide{q} * static_cast<std::int64_t>(b); }

/// Sum of q[i] * b[-i] for i below n.
SignedWide columnSum(const std::int64_t* q, const Group* b, std::size_t n) {
  SignedWide sum = 0, other = 0;
  std::size_t i = 0;
  for (; i + 2 <= n; i += 2) {
    sum += product(q[i], *(b - i));
    other += product(q[i + 1], *(b - i - 1));
  }
  if (i < n) sum += product(q[i], *(b - i));
  return sum + other;
}

long double leading(SignedWide first, SignedWide second, SignedWide third) {
  constexpr long double base = 1e16L;
  return static_cast<long double>(first) +
         (static_cast<long double>(second) + static_cast<long double>(third) / base) / base;
}

/// Takes the lowest group off a signed sum, which keeps the quotient rounded down.
Group takeSigned(SignedWide& sum) {
  if (sum >= 0) {
    auto magnitude = static_cast<Wide>(sum);
    Group rest = takeLowest<groupBase>(magnitude);
    sum = static_cast<SignedWide>(magnitude);
    return rest;
  }
  auto magnitude = static_cast<Wide>(-sum);
  Group rest = takeLowest<groupBase>(magnitude);
  sum = -static_cast<SignedWide>(magnitude);
  if (rest == 0) return 0;
  --sum;
  return groupBase - rest;
}

void schoolDivide(Group* q, Group* a, std::size_t na, const Group* b, std::size_t nb) {
  assert(nb >= 2 && na >= nb && b[nb - 1] != 0);
  std::size_t steps = na - nb + 1;
  GroupSpace space(steps);
  auto* digits = reinterpret_cast<std::int64_t*>(static_cast<Group*>(space));
  const long double divisor =
      leading(static_cast<SignedWide>(b[nb - 1]), static_cast<SignedWide>(b[nb - 2]),
              nb > 2 ? static_cast<SignedWide>(b[nb - 3]) : 0);
  // Column k of the remainder once the digits from `top` down to `j` are known.
  auto column = [&](std::size_t k, std::size_t j) {
    // digits[i] * b[k - i] for i in [max(j, k - nb + 1), min(steps - 1, k)]
    std::size_t from = std::max(j, k + 1 > nb ? k + 1 - nb : 0), to = std::min(steps - 1, k);
    SignedWide sum = static_cast<SignedWide>(a[k]);
    if (from <= to && from < steps) sum -= columnSum(digits + from, b + (k - from), to - from + 1);
    return sum;
  };
  SignedWide first = static_cast<SignedWide>(a[na - 1]), second = static_cast<SignedWide>(a[na - 2]);
  for (std::size_t j = steps; j-- > 0;) {
    std::size_t top = j + nb - 1;  // the leading column, which holds all above it
    SignedWide third = top >= 2 ? column(top - 2, j + 1) : 0;
    std::int64_t digit = std::llrintl(leading(first, second, third) / divisor);
    digits[j] = digit;
    first -= product(digit, b[nb - 1]);
    second -= product(digit, b[nb - 2]);
    if (nb > 2) third -= product(digit, b[nb - 3]);
    if (j == 0) break;
    first = first * static_cast<SignedWide>(groupBase) + second;
    second = third;
  }
  // The remainder's columns, and what is above them.
  SignedWide carry = 0;
  GroupSpace rest(nb);
  for (std::size_t k = 0; k < nb; ++k) {
    carry += column(k, 0);
    rest[k] = takeSigned(carry);
  }
  std::memcpy(a, static_cast<Group*>(rest), nb * sizeof(Group));
  for (Group* above = a + na; above > a + nb;) *--above = 0;
  std::int64_t adjust = 0;
  while (carry < 0) {
    carry += static_cast<std::int64_t>(addGroups(a, a, nb, b, nb));
    --adjust;
  }
  while (carry > 0 || compareGroups(a, b, nb) >= 0) {
    carry -= static_cast<std::int64_t>(subtractGroups(a, a, nb, b, nb));
    ++adjust;
  }
  SignedWide sum = adjust;
  for (std::size_t j = 0; j < steps; ++j) {
    sum += digits[j];
    q[j] = takeSigned(sum);
  }
  assert(sum == 0);
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
  std::size_t h = n / 2;
  divideThreeByTwo(q + h, a + h, b, h);
  divideThreeByTwo(q, a, b, h);
}

/// a by b, whose top group is at least half the base, for a quotient no shorter than b by much: blocks
/// of the dividend of b's padded length. a's top nb groups are below b; q has na - nb groups.
void divideByBlocks(Group* q, Group* a, std::size_t na, const Group* b, std::size_t nb) {
  std::size_t parts = 1;  // a power of two, so that the length halves down to the school method
  while (nb / parts >= halvingGroups) parts *= 2;
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
  for (std::size_t i = blocks - 1; i-- > 0;)
    divideTwoByOne(quotient + i * n, dividend + i * n, divisor, n);
  std::size_t count = na - nb, have = (blocks - 1) * n;
  std::memcpy(q, static_cast<Group*>(quotient), std::min(count, have) * sizeof(Group));
  if (count > have) std::memset(q + have, 0, (count - have) * sizeof(Group));
  std::memcpy(a, dividend + pad, nb * sizeof(Group));
  std::memset(a + nb, 0, (na - nb) * sizeof(Group));
}

void divideByHalves(Group* q, Group* a, std::size_t na, const Group* b, std::size_t nb) {
  // Both times a factor that brings the divisor's top group to half the base.
  Group factor = groupBase / (b[nb - 1] + 1);
  GroupSpace divisor(nb), dividend(na + 1);
  scaleGroups(divisor, b, nb, factor);
  dividend[na] = scaleGroups(dividend, a, na, factor);
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
  divideGroupsBy(a, dividend, nb, factor);
  std::memset(a + nb, 0, (na - nb) * sizeof(Group));
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

}  // namespace korel
