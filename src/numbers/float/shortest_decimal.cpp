#include "numbers/float/shortest_decimal.h"

#include <array>
#include <bit>

namespace korel {

namespace {

// ---- the powers of ten

// 10^k as a fraction of 128 bits, the highest of them set, rounded up; the power of two that it is multiplied by is
// floor(log2(10^k)) - 127.
struct Power {
  std::uint64_t high, low;
};
constexpr int leastPower = -292, mostPower = 324;

// A natural number of a fixed number of digits of 32 bits, the lowest first.
struct Natural {
  static constexpr int size = 28;  // 5^324 has 753 bits, 2^895 / 5^292 more than the 128 that are wanted
  std::uint32_t digit[size] = {};

  constexpr void multiply(std::uint32_t factor) {
    std::uint64_t carry = 0;
    for (std::uint32_t& d : digit) {
      carry += std::uint64_t{d} * factor;
      d = static_cast<std::uint32_t>(carry);
      carry >>= 32;
    }
  }
  /// Rounds down, so that a quotient by powers of `divisor` may be had step by step.
  constexpr void divide(std::uint32_t divisor) {
    std::uint64_t rest = 0;
    for (int i = size - 1; i >= 0; --i) {
      rest = rest << 32 | digit[i];
      digit[i] = static_cast<std::uint32_t>(rest / divisor);
      rest %= divisor;
    }
  }
  constexpr int bits() const {
    for (int i = size - 1; i >= 0; --i)
      if (digit[i] != 0) return 32 * i + 32 - std::countl_zero(digit[i]);
    return 0;
  }
  constexpr bool bit(int i) const { return i >= 0 && (digit[i / 32] >> (i % 32) & 1) != 0; }
};

// The 128 leading bits, rounded up if there are others behind them.
constexpr Power leadingBits(const Natural& x, bool goesOn) {
  Power p{0, 0};
  const int n = x.bits();
  for (int i = 1; i <= 128; ++i) {
    p.high = p.high << 1 | p.low >> 63;
    p.low = p.low << 1 | (x.bit(n - i) ? 1 : 0);
  }
  if (goesOn && ++p.low == 0) ++p.high;
  return p;
}

constexpr auto powers = [] {
  constexpr int exactPowers = 55;  // 5^55 is the last with 128 bits at most
  std::array<Power, mostPower - leastPower + 1> table{};
  Natural five, inverse;
  five.digit[0] = 1;
  inverse.digit[Natural::size - 1] = std::uint32_t{1} << 31;
  for (int k = 0; k <= mostPower; ++k, five.multiply(5), inverse.divide(5)) {
    table[static_cast<std::size_t>(k - leastPower)] = leadingBits(five, k > exactPowers);
    if (k > 0 && k <= -leastPower) table[static_cast<std::size_t>(-k - leastPower)] = leadingBits(inverse, true);
  }
  return table;
}();

// ---- logarithms, exact for the exponents of doubles

constexpr int log10OfPowerOf2(int e) { return (e * 1262611) >> 22; }
constexpr int log10OfThreeQuarters(int e) { return (e * 1262611 - 524031) >> 22; }  // of 3/4 * 2^e
constexpr int log2OfPowerOf10(int e) { return (e * 1741647) >> 19; }

// p*c / 2^128, of which the last bit also says whether anything is cut off.
std::uint64_t roundedToOdd(Power p, std::uint64_t c) {
  using Wide = unsigned __int128;
  const Wide low = Wide{p.low} * c, high = Wide{p.high} * c + static_cast<std::uint64_t>(low >> 64);
  const auto cut = static_cast<std::uint64_t>(high);
  return static_cast<std::uint64_t>(high >> 64) | (cut > 1 ? 1 : 0);
}

// Without zeros at the end.
ShortDecimal withoutZeros(std::uint64_t digits, std::int32_t exponent) {
  constexpr std::uint64_t eight = 100000000;
  if (digits % eight == 0) {
    digits /= eight;
    exponent += 8;
  }
  for (; digits % 10 == 0; digits /= 10) ++exponent;
  return {static_cast<std::int64_t>(digits), exponent};
}

}  // namespace

ShortDecimal shortestDecimal(double x) {
  constexpr int fractionBits = 52, leastExponent = -1074;
  const auto bits = std::bit_cast<std::uint64_t>(x);
  const std::uint64_t fraction = bits & ((std::uint64_t{1} << fractionBits) - 1);
  const int biased = static_cast<int>(bits >> fractionBits);
  // x = c * 2^q. Below a power of two its neighbour is nearer than above.
  const std::uint64_t c = biased == 0 ? fraction : fraction | std::uint64_t{1} << fractionBits;
  const int q = biased == 0 ? leastExponent : biased - 1 + leastExponent;
  const bool isUneven = fraction == 0 && biased > 1;
  // Quarters of the last place: x itself, and halfway to its neighbours.
  const std::uint64_t middle = 4 * c, below = middle - 2 + (isUneven ? 1 : 0), above = middle + 2;
  const int k = isUneven ? log10OfThreeQuarters(q) : log10OfPowerOf2(q);
  const int shift = q + log2OfPowerOf10(-k) + 1;
  const Power p = powers[static_cast<std::size_t>(-k - leastPower)];
  // The same in quarters of 10^k. The ends belong to an even c.
  const std::uint64_t odd = c & 1;
  const std::uint64_t v = roundedToOdd(p, middle << shift);
  const std::uint64_t least = roundedToOdd(p, below << shift) + odd, most = roundedToOdd(p, above << shift) - odd;
  const std::uint64_t s = v / 4;
  if (s >= 10) {
    const std::uint64_t tens = s / 10;
    const bool isBelowIn = least <= 40 * tens, isAboveIn = 40 * tens + 40 <= most;
    if (isBelowIn != isAboveIn) return withoutZeros(tens + (isAboveIn ? 1 : 0), k + 1);
  }
  const bool isBelowIn = least <= 4 * s, isAboveIn = 4 * s + 4 <= most;
  if (isBelowIn != isAboveIn) return withoutZeros(s + (isAboveIn ? 1 : 0), k);
  const std::uint64_t half = 4 * s + 2;
  const bool up = v > half || (v == half && (s & 1) != 0);
  return withoutZeros(s + (up ? 1 : 0), k);
}

}  // namespace korel
