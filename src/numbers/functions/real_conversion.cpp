// Binary floats from and to the kernel's numbers. Long integers change base by halves, short ones limb by limb.

#include "numbers/functions/real.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "frame/environment_block.h"
#include "numbers/arithmetic.h"
#include "numbers/float/float.h"
#include "numbers/float/float_rounding.h"
#include "numbers/integer/integer.h"
#include "numbers/integer/integer_groups.h"
#include "store/objects.h"

namespace korel {
namespace reals {

Real realOfRow(int sign, const Limb* row, std::size_t n) {
  while (n > 0 && row[n - 1] == 0) --n;
  if (n == 0) return {};
  Real r;
  r.sign = sign;
  r.limbs = row;
  r.size = static_cast<std::uint32_t>(n);
  const auto shift = static_cast<unsigned>(__builtin_clzll(row[n - 1]));
  Limb* shifted = limbSpace(n);
  shiftLimbsUp(shifted, row, n, shift);
  r.exponent = static_cast<std::int64_t>(n) * 64 - shift;
  r.limbs = shifted;
  while (r.limbs[0] == 0) {
    ++r.limbs;
    --r.size;
  }
  return r;
}

namespace {

/// Limbs that hold the integer part.
std::size_t limbsOf(const Real& x) {
  return (static_cast<std::size_t>(std::max<std::int64_t>(0, x.exponent)) + 63) / 64;
}

// ---- powers of the groups' base by which halves are joined and split

constexpr std::size_t shortGroups = 48;  // changed limb by limb
constexpr int mostLevels = 40;

/// Each power is the square of the one before: 10^(16 shortGroups) is the first.
struct GroupPowers {
  Real power[mostLevels], inverse[mostLevels];
  int count = 0;

  /// As many as numbers of so many groups ask for, to the working precision.
  explicit GroupPowers(std::size_t groups) {
    for (std::size_t size = shortGroups; size < groups; size *= 2, ++count) {
      constexpr std::int64_t base{groupBase};
      power[count] = count > 0 ? square(power[count - 1]) : reals::power(Real(base), shortGroups);
    }
  }
  /// Inverses to the precision of quotients as long as the power.
  void invert() {
    for (int i = 0; i < count; ++i) {
      Precision p(limbsOf(power[i]) + 2);
      inverse[i] = Real(1) / power[i];
    }
  }
};

/// The number of `count` groups, lowest first; `level` powers are needed to join them.
Real realOfGroups(const Group* groups, std::size_t count, const GroupPowers& powers, int level) {
  if (level > 0) {
    const std::size_t half = shortGroups << (level - 1);
    if (count <= half) return realOfGroups(groups, count, powers, level - 1);
    const Real high = realOfGroups(groups + half, count - half, powers, level - 1);
    return high * powers.power[level - 1] + realOfGroups(groups, half, powers, level - 1);
  }
  // Each group takes 53.2 bits.
  Limb* row = limbSpace(count * 5315085 / 6400000 + 2);
  std::size_t n = 0;
  for (std::size_t i = count; i-- > 0;) {
    Limb carry = scaleLimbs(row, row, n, groupBase);
    carry += addLimb(row, n, groups[i]);
    if (n == 0) carry = groups[i];
    if (carry != 0) row[n++] = carry;
  }
  return realOfRow(1, row, n);
}

Real realOfInteger(DAG x) {
  if (isImmediate(x)) return Real(static_cast<std::int64_t>(immediateValue(x)));
  const std::size_t count = groupCount(x);
  Limb* groups = limbSpace(count);
  packInteger(x, groups);
  const GroupPowers powers(count);
  Real r = realOfGroups(groups, count, powers, powers.count);
  r.sign = isTag(x, INTNEG) ? -1 : 1;
  return r;
}

/// Writes an integer 0 <= x < groupBase^count as `count` groups, lowest first.
void groupsOf(Group* groups, std::size_t count, const Real& x, const GroupPowers& powers, int level) {
  LimbMark mark;
  if (level > 0) {
    const std::size_t half = shortGroups << (level - 1);
    const Real& power = powers.power[level - 1];
    if (count <= half) return groupsOf(groups, count, x, powers, level - 1);
    Real high;
    {
      // The estimate is off by one at most.
      Precision p(limbsOf(power) + 2);
      high = floorOf(x * powers.inverse[level - 1]);
    }
    Precision exact(limbsOf(x) + 1);
    Real low = x - high * power;
    if (low.sign < 0) {
      high = high - Real(1);
      low = low + power;
    } else if (compare(low, power) >= 0) {
      high = high + Real(1);
      low = low - power;
    }
    groupsOf(groups, half, low, powers, level - 1);
    groupsOf(groups + half, count - half, high, powers, level - 1);
    return;
  }
  std::size_t n = limbsOf(x);
  if (n == 0) {
    std::fill_n(groups, count, 0);
    return;
  }
  const auto bits = static_cast<std::size_t>(x.exponent);
  Limb* row = limbSpace(n + 1);
  clearLimbs(row, n);
  // The row as an integer of n limbs, shifted down to its place.
  const std::size_t common = std::min<std::size_t>(n, x.size);
  copyLimbs(row + n - common, x.limbs + x.size - common, common);
  shiftLimbsDown(row, row, n, static_cast<unsigned>(n * 64 - bits));
  for (std::size_t i = 0; i < count; ++i) {
    groups[i] = divideLimbs(row, row, n, groupBase);
    while (n > 0 && row[n - 1] == 0) --n;
  }
}

constexpr int mostFives = 27;
constexpr std::array<Limb, mostFives + 1> fives = [] {
  std::array<Limb, mostFives + 1> r{1};
  for (int i = 1; i <= mostFives; ++i) r[i] = r[i - 1] * 5;
  return r;
}();

// 5^n for n >= 0, with all the working precision though the exponent may be large.
Real powerOfFive(std::int64_t n) {
  if (n <= mostFives) return Real(static_cast<std::int64_t>(fives[static_cast<std::size_t>(n)]));
  Precision p(workingLimbs + 1);
  return power(Real(5), n);
}

constexpr std::int64_t farthestExponent = std::int64_t{1} << 40;

}  // namespace

Real realOf(DAG number) {
  if (isTag(number, HFLOAT)) return realOfDouble(FloatValue(number));
  if (isTag(number, RATIONAL)) return realOfInteger(number[1]) / realOfInteger(number[2]);
  if (!isSoftFloat(number)) return realOfInteger(number);
  const Real mantissa = realOfInteger(mantissaOf(number));
  if (isZero(mantissa)) return mantissa;
  std::int64_t exponent;
  if (!readLongLong(exponentOf(number), exponent) || std::abs(exponent) > farthestExponent)
    exponent = consneg(exponentOf(number)) ? -farthestExponent : farthestExponent;
  const Real five = powerOfFive(std::abs(exponent));
  return scaled(exponent < 0 ? mantissa / five : mantissa * five, exponent);
}

DAG integerOf(const Real& x) {
  if (x.sign == 0 || x.exponent <= 0) return cons0;
  LimbMark mark;
  Precision exact(limbsOf(x) + 1);
  const std::size_t count = static_cast<std::size_t>(x.exponent) * 1000 / 53150 + 2;
  GroupPowers powers(count);
  powers.invert();
  Group* groups = limbSpace(count);
  groupsOf(groups, count, absolute(cut(x)), powers, powers.count);
  std::size_t length = count;
  while (length > 0 && groups[length - 1] == 0) --length;
  return integerOfGroups(groups, length, x.sign < 0 ? INTNEG : INTPOS);
}

Decimal decimalOf(const Real& x) {
  if (x.sign == 0) return {cons0, 0};
  if (std::abs(x.exponent) > farthestExponent)
    return {x.sign < 0 ? consm1 : cons1, x.exponent < 0 ? -farthestExponent : farthestExponent};
  // A short integer comes out as it is.
  if (x.size == 1 && x.exponent > 0 && x.exponent <= 64 && (x.exponent == 64 || x.limbs[0] << x.exponent == 0))
    return {integerOf(x), 0};
  constexpr std::int64_t guardDigits = 10;
  const auto size = static_cast<std::int64_t>(std::floor(static_cast<double>(x.exponent) * 0.30102999566398120));
  const std::int64_t k = precisionDigits() + guardDigits - size;
  Precision p(limbsForDigits(precisionDigits() + guardDigits));
  Real five = powerOfFive(std::abs(k));
  Real shifted = scaled(k < 0 ? x / five : x * five, k);
  const Real whole = floorOf(absolute(shifted));
  DAG mantissa = integerOf(whole);
  // Digits cut off count in directed rounding.
  if (compareMagnitudes(whole, shifted) != 0) mantissa = markTruncated(mantissa);
  return {x.sign < 0 ? complint(mantissa) : mantissa, -k};
}

DAG floatOf(const Real& x) {
  const Decimal d = decimalOf(x);
  return BuildFloat(d.mantissa, NewInteger(d.exponent));
}

}  // namespace reals
}  // namespace korel
