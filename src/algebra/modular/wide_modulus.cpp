#include "algebra/modular/wide_modulus.h"

#include <algorithm>
#include <cstring>

#include "numbers/arithmetic.h"
#include "numbers/integer/integer.h"
#include "numbers/integer/integer_groups.h"

namespace korel {

namespace {
long significant(const Limb* x, long count) {
  return static_cast<long>(significantLimbs(x, static_cast<std::size_t>(count)));
}
}  // namespace

// ---- decimal groups and limbs

long limbsFor(DAG integer) {
  if (isImmediate(integer)) return 1;
  // 10^4 is below 2^13.3.
  return static_cast<long>((std::uint64_t{digitCount(integer)} * 133 / 10 + 1) / 64 + 1);
}

void limbsOfInteger(DAG integer, Limb* limbs, long count) {
  std::fill(limbs, limbs + count, 0);
  if (isImmediate(integer)) {
    limbs[0] = static_cast<Limb>(std::abs(immediateValue(integer)));
    return;
  }
  const auto groups = static_cast<long>(groupCount(integer));
  Workspace space;
  auto* group = space.take<Group>(static_cast<std::size_t>(groups));
  packInteger(integer, group);
  long used = 0;
  for (long g = groups - 1; g >= 0; --g) {
    const auto n = static_cast<std::size_t>(used);
    Limb carry = scaleLimbs(limbs, limbs, n, groupBase);
    carry += addLimb(limbs, n, group[g]);
    if (carry != 0) limbs[used++] = carry;
  }
}

DAG integerOfLimbs(const Limb* limbs, long count) {
  count = significant(limbs, count);
  if (count == 0) return cons0;
  if (count == 1 && limbs[0] <= static_cast<Limb>(maxImmediate)) return immediate(static_cast<std::int32_t>(limbs[0]));
  Workspace space;
  auto* rest = space.take<Limb>(static_cast<std::size_t>(count));
  std::memcpy(rest, limbs, static_cast<std::size_t>(count) * sizeof(Limb));
  auto* group = space.take<Group>(static_cast<std::size_t>(count) * 2);
  long groups = 0;
  while (count > 0) {
    group[groups++] = divideLimbs(rest, rest, static_cast<std::size_t>(count), groupBase);
    count = significant(rest, count);
  }
  return integerOfGroups(group, static_cast<std::size_t>(groups), INTPOS);
}

// ---- reduction

namespace {

// x, of count + 1 limbs, modulo the k limbs of `normal`, whose top bit is set; the quotient's count - k + 1 limbs go to
// q unless that is null.
void divideByNormal(Limb* x, long count, const Limb* normal, long k, const LimbDivisor& top, Limb* q) {
  for (long j = count - k; j >= 0; --j) {
    const Limb digit = quotientLimb(x + j, normal, static_cast<std::size_t>(k), top);
    if (q != nullptr) q[j] = digit;
  }
}

Limb shiftLeft(Limb* r, const Limb* x, long count, int shift) {
  return shiftLimbsUp(r, x, static_cast<std::size_t>(count), static_cast<unsigned>(shift));
}
void shiftRight(Limb* r, const Limb* x, long count, int shift) {
  shiftLimbsDown(r, x, static_cast<std::size_t>(count), static_cast<unsigned>(shift));
}

}  // namespace

WideModulus::WideModulus(DAG m, Workspace& space) {
  long room = limbsFor(m);
  auto* plain = space.take<Limb>(static_cast<std::size_t>(room));
  limbsOfInteger(m, plain, room);
  while (room > 1 && plain[room - 1] == 0) --room;
  limbs = room;
  modulus = plain;
  shift = __builtin_clzll(plain[room - 1]);
  auto* shifted = space.take<Limb>(static_cast<std::size_t>(room));
  shiftLeft(shifted, plain, room, shift);
  normal = shifted;
  top = LimbDivisor(shifted[room - 1]);
}

void WideModulus::reduce(Limb* r, Limb* x, long count) const {
  x[count] = shiftLeft(x, x, count, shift);
  divideByNormal(x, count, normal, limbs, top, nullptr);
  shiftRight(r, x, limbs, shift);
}

void WideModulus::residueOf(Limb* r, DAG x) const {
  Workspace space;
  const long count = std::max(limbsFor(x), limbs);
  auto* all = space.take<Limb>(static_cast<std::size_t>(count) + 1);
  limbsOfInteger(x, all, count);
  reduce(r, all, count);
  if (!consneg(x)) return;
  if (significant(r, limbs) != 0) subtractLimbs(r, modulus, r, static_cast<std::size_t>(limbs));
}

// ---- inverses
//
// The extended Euclidean algorithm, many steps at a time (Lehmer; Knuth, vol. 2, 4.5.2, algorithm L). Of the cofactors
// only those of `a` are kept, as magnitudes: their signs alternate.

namespace {

struct EuclidState {
  Limb *large, *small;    // remainders, of `count` limbs
  Limb *before, *latest;  // cofactors' magnitudes, of `room` limbs
  long count;
  long room;
  bool latestIsNegative = false;
};

// x * u + y * v, which is not negative; one of the factors is not positive, the other not negative.
void combineRemainders(Limb* r, const Limb* x, std::int64_t u, const Limb* y, std::int64_t v, long count) {
  if (u < 0 || v > 0) {
    std::swap(x, y);
    std::swap(u, v);
  }
  const auto plus = static_cast<Limb>(u), minus = static_cast<Limb>(-v);
  Limb carry = 0, borrow = 0;
  for (long i = 0; i < count; ++i) {
    DoubleLimb p = DoubleLimb{x[i]} * plus + carry, q = DoubleLimb{y[i]} * minus + borrow;
    carry = static_cast<Limb>(p >> 64);
    const auto low = static_cast<Limb>(p), taken = static_cast<Limb>(q);
    borrow = static_cast<Limb>(q >> 64) + static_cast<Limb>(low < taken);
    r[i] = low - taken;
  }
}
void combineCofactors(Limb* r, const Limb* x, std::int64_t u, const Limb* y, std::int64_t v, long room) {
  const auto a = static_cast<Limb>(std::abs(u)), b = static_cast<Limb>(std::abs(v));
  DoubleLimb carry = 0;
  for (long i = 0; i < room; ++i) {
    DoubleLimb low = DoubleLimb{x[i]} * a + static_cast<Limb>(carry);
    DoubleLimb sum = DoubleLimb{y[i]} * b + static_cast<Limb>(low);
    r[i] = static_cast<Limb>(sum);
    carry = (carry >> 64) + (low >> 64) + (sum >> 64);
  }
}

// As many steps as the top 62 bits decide; false when that is none.
bool lehmerStep(EuclidState& e, Limb* spare) {
  const long n = e.count;
  const int shift = __builtin_clzll(e.large[n - 1]);
  auto top = [&](const Limb* x) {
    Limb bits = x[n - 1] << shift;
    if (shift != 0 && n > 1) bits |= x[n - 2] >> (64 - shift);
    return static_cast<std::int64_t>(bits >> 2);
  };
  std::int64_t x = top(e.large), y = top(e.small);
  std::int64_t a = 1, b = 0, c = 0, d = 1;
  constexpr std::int64_t largestFactor = std::int64_t{1} << 31;
  bool odd = false;
  while (y + c > 0 && y + d > 0) {
    std::int64_t q = (x + a) / (y + c);
    if (q != (x + b) / (y + d) || q > largestFactor) break;
    std::int64_t nextC = a - q * c, nextD = b - q * d;
    if (std::abs(nextC) > largestFactor || std::abs(nextD) > largestFactor) break;
    a = c;
    b = d;
    c = nextC;
    d = nextD;
    std::int64_t rest = x - q * y;
    x = y;
    y = rest;
    odd = !odd;
  }
  if (b == 0) return false;
  Limb* other = spare + e.room;
  combineRemainders(spare, e.large, a, e.small, b, n);
  combineRemainders(other, e.large, c, e.small, d, n);
  std::memcpy(e.large, spare, static_cast<std::size_t>(n) * sizeof(Limb));
  std::memcpy(e.small, other, static_cast<std::size_t>(n) * sizeof(Limb));
  combineCofactors(spare, e.before, a, e.latest, b, e.room);
  combineCofactors(other, e.before, c, e.latest, d, e.room);
  std::memcpy(e.before, spare, static_cast<std::size_t>(e.room) * sizeof(Limb));
  std::memcpy(e.latest, other, static_cast<std::size_t>(e.room) * sizeof(Limb));
  if (odd) e.latestIsNegative = !e.latestIsNegative;
  return true;
}

// One step by a whole division.
void divisionStep(EuclidState& e, Limb* spare) {
  const long n = significant(e.large, e.count), k = significant(e.small, e.count);
  Workspace space;
  auto room = [&](long count) { return space.take<Limb>(static_cast<std::size_t>(count)); };
  Limb *normal = room(k), *x = room(n + 1), *q = room(n - k + 1);
  const int shift = __builtin_clzll(e.small[k - 1]);
  shiftLeft(normal, e.small, k, shift);
  x[n] = shiftLeft(x, e.large, n, shift);
  divideByNormal(x, n, normal, k, LimbDivisor(normal[k - 1]), q);
  std::fill(e.large, e.large + e.count, 0);
  shiftRight(e.large, x, k, shift);
  std::swap(e.large, e.small);
  // before + q * latest
  std::memcpy(spare, e.before, static_cast<std::size_t>(e.room) * sizeof(Limb));
  for (long i = 0; i <= n - k && i < e.room; ++i)
    addScaled(spare + i, e.latest, static_cast<std::size_t>(e.room - i), q[i]);
  std::swap(e.before, e.latest);
  std::memcpy(e.latest, spare, static_cast<std::size_t>(e.room) * sizeof(Limb));
  e.latestIsNegative = !e.latestIsNegative;
}

}  // namespace

bool WideModulus::invert(Limb* r, const Limb* a) const {
  Workspace space;
  const long k = limbs, room = k + 1;
  auto fresh = [&](const Limb* from) {
    auto* x = space.take<Limb>(static_cast<std::size_t>(room));
    std::fill(x, x + room, 0);
    if (from != nullptr) std::memcpy(x, from, static_cast<std::size_t>(k) * sizeof(Limb));
    return x;
  };
  EuclidState e = {fresh(modulus), fresh(a), fresh(nullptr), fresh(nullptr), k, room};
  e.latest[0] = 1;
  auto* spare = space.take<Limb>(static_cast<std::size_t>(2 * room));
  while (significant(e.small, e.count) > 0) {
    e.count = significant(e.large, e.count);
    if (!lehmerStep(e, spare)) divisionStep(e, spare);
  }
  if (significant(e.large, k) != 1 || e.large[0] != 1) return false;
  // `before` belongs to the last remainder that is not zero; its sign is the other one.
  const bool negative = !e.latestIsNegative;
  const auto n = static_cast<std::size_t>(k);
  if (negative) subtractLimbs(r, modulus, e.before, n);
  else copyLimbs(r, e.before, n);
  return true;
}

}  // namespace korel
