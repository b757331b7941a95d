// Powers of integers, with a bound on the result's length before anything is allocated.

#include "numbers/integer/integer.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "numbers/events/numeric_events.h"
#include "numbers/integer/integer_functions.h"
#include "numbers/integer/integer_groups.h"
#include "numbers/integer/integer_space.h"
#include "store/constants.h"
#include "store/names.h"

namespace korel {

namespace {

constexpr std::int32_t largestExponent = 891723256;
constexpr std::int64_t largestSpace = 0x4000000;  // words: an object has fewer

// Upper bounds for the decimal logarithm of the leading digits: a base whose two leading digits are p
// lies below s * 10^k with s = p + 1, and log10(s / 10) is at most f in the first row whose bound is
// above s.
struct LeadingBound {
  std::int32_t below, numerator, denominator;
};
constexpr LeadingBound leadingBounds[] = {
    // s below  f
    {12, 875, 21139},
    {14, 523, 4590},
    {16, 355, 2016},
    {18, 277, 1202},
    {21, 146, 485},
    {24, 293, 810},
    {28, 971, 2251},
    {31, 73, 153},
    {37, 331, 595},
    {41, 292, 485},
    {51, 137, 196},
    {57, 413, 552},
    {65, 104, 129},
    {75, 20, 23},
    {87, 157, 168},
    {INT32_MAX, 1, 1},
};
static_assert(std::size(leadingBounds) == 16);

/// The two leading decimal digits; a single digit counts ten times.
std::int32_t leadingPair(DAG base) {
  const Word* digit = digitsOf(base);
  Word count = digitCount(base), top = digit[count - 1];
  if (top >= 1000) return static_cast<std::int32_t>(top / 100);
  if (top >= 100) return static_cast<std::int32_t>(top / 10);
  if (top >= 10) return static_cast<std::int32_t>(top);
  Word next = count > 1 ? digit[count - 2] / 1000 : 0;
  return static_cast<std::int32_t>(top * 10 + next);
}

/// Bound on the decimal length of base^n.
std::int64_t lengthBound(DAG base, std::int64_t n) {
  std::int32_t s = leadingPair(base) + 1;
  const LeadingBound* row = leadingBounds;
  while (s >= row->below) ++row;
  return n * (SoftIntLength(base) - 1) + n * row->numerator / row->denominator;
}

DAG overflow(DAG base, std::int32_t n) {
  DAG operand = MakeImmediate(base);
  return TriggerNumericEvent(overflowEvent, naminstall("power"), operand, Newint(n), ini("undefined"), true);
}

/// base^n for n >= 2 by the bits of n, for a result of at most `length` decimals: square, and multiply
/// where the bit is set, from one space into the other.
DAG binaryPower(DAG base, std::int32_t n, std::size_t length) {
  const std::size_t count = groupCount(base), most = length / (digitsPerGroup * 4) + 2;
  // A product writes a group for each group of its operands: one more than the power may have.
  GroupSpace space(count + 2 * (most + count));
  Group *factor = space, *power = factor + count, *other = power + most + count;
  packInteger(base, factor);
  std::copy(factor, factor + count, power);
  std::size_t used = count;
  auto multiplyBy = [&](const Group* by, std::size_t groups) {
    multiplyGroups(other, power, used, by, groups);
    used = significantGroups(other, used + groups);
    std::swap(power, other);
  };
  for (int bit = 30 - __builtin_clz(static_cast<unsigned>(n)); bit >= 0; --bit) {
    multiplyBy(power, used);
    if ((n >> bit & 1) != 0) multiplyBy(factor, count);
  }
  return integerOfGroups(power, used, hasTag(base, INTNEG) && n % 2 != 0 ? INTNEG : INTPOS);
}

/// base^n for heap base, not 1 or -1, in canonical form; or what the overflow event gives.
DAG heapPower(DAG base, std::int32_t n) {
  if (n > largestExponent || n * (SoftIntLength(base) - 1) / 4 > maxDigitCount) return overflow(base, n);
  std::int64_t length = lengthBound(base, n);
  if (length < 9) {
    std::int32_t factor = SoftIntValue(base), result = factor;
    for (std::int32_t i = 1; i < n; ++i) result *= factor;
    return Newint(result);
  }
  if (digitCount(base) == 1 && digitsOf(base)[0] == 10) {
    return times10p(hasTag(base, INTNEG) && n % 2 != 0 ? consm1 : cons1, n);
  }
  std::int64_t words = length / 4 + 2;
  if (words >= largestSpace) return overflow(base, n);
  if (n == 1) return MakeImmediate(CopyAlg(base));

  return binaryPower(base, n, static_cast<std::size_t>(length));
}

/// base^n for |base| >= 2, when the machine's integers hold it: most powers are squares and cubes
/// (bench/programs/sequences.krl).
bool powerFitsWord(std::int64_t base, std::int32_t n, std::int64_t& product) {
  product = base;
  for (; n > 1; --n)
    if (__builtin_mul_overflow(product, base, &product)) return false;
  return true;
}

bool isUnit(DAG heap) { return digitCount(heap) == 1 && digitsOf(heap)[0] == 1; }
DAG unitPower(bool negative, std::int32_t n) { return negative && n % 2 != 0 ? consm1 : cons1; }

}  // namespace

DAG powint(DAG base, std::int32_t n) {
  assert(n >= 1 && !isZeroImmediate(base));
  if (base == cons1 || base == consm1) return unitPower(base == consm1, n);
  if (!isImmediate(base)) return heapPower(base, n);
  std::int64_t product;
  if (powerFitsWord(immediateValue(base), n, product)) return NewInteger(product);
  DAG heap = NewSoftInt(base);
  DAG result = heapPower(heap, n);
  release(heap, lengthOf(heap));
  return result;
}

DAG SoftIntPower(DAG base, std::int32_t n) {
  if (isUnit(base)) return unitPower(hasTag(base, INTNEG), n);
  DAG result = heapPower(base, n);
  return isImmediate(result) ? NewSoftInt(result) : result;
}

}  // namespace korel
